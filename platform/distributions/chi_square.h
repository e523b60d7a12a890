// The chi-square distribution with df > 0 degrees of freedom.
#pragma once

#include "platform/distributions/tail.h"
#include "platform/error_record.h"

namespace zomath::platform {

// The `tail` probability of x; x <= 0 has lower probability 0. Fails with
// kDistributionBadArgument for NaN x and kDistributionBadParameter for df not above 0 or infinite.
double chi_square_probability(double x, double df, Tail tail, NagError& err);

// The x with P(X <= x) = p (Tail::Lower) or P(X > x) = p (Tail::Upper); 0 <= p < 1 for the
// lower tail, 0 < p <= 1 for the upper (the probability 1 beyond x = 0). Other tails and p
// fail with kDistributionBadArgument.
double chi_square_quantile(double p, double df, Tail tail, NagError& err);

}  // namespace zomath::platform
