// The beta distribution with shapes a > 0 and b > 0 on [0, 1].
#pragma once

#include "platform/distributions/tail.h"
#include "platform/error_record.h"

namespace zomath::platform {

// The `tail` probability of x; x <= 0 has lower probability 0 and x >= 1 lower probability 1.
// Fails with kDistributionBadArgument for NaN x and kDistributionBadParameter for a shape that
// is not a positive finite number.
double beta_probability(double x, double a, double b, Tail tail, NagError& err);

// The density x^(a-1) (1-x)^(b-1) / B(a, b); 0 outside [0, 1], infinite at an end where the
// exponent is negative. Fails as beta_probability.
double beta_density(double x, double a, double b, NagError& err);

// The x with P(X <= x) = p, 0 <= p <= 1. Fails as beta_probability, kDistributionBadArgument for
// p outside [0, 1], and kDistributionNoConvergence if the search does not settle.
double beta_quantile(double p, double a, double b, NagError& err);

}  // namespace zomath::platform
