// Student's t distribution with df > 0 degrees of freedom (df may be +infinity: the normal).
#pragma once

#include "platform/distributions/tail.h"
#include "platform/error_record.h"

namespace zomath::platform {

// The `tail` probability of t. Fails with kDistributionBadArgument for NaN t and
// kDistributionBadParameter for df not above 0.
double student_t_probability(double t, double df, Tail tail, NagError& err);

// The t whose `tail` probability is p: Lower and Upper for 0 < p < 1; TwoSided the t >= 0 with
// P(|T| >= t) = p, 0 < p <= 1; Central the t >= 0 with P(|T| < t) = p, 0 <= p < 1; Nearer the
// t >= 0 with P(T > t) = p, 0 < p <= 0.5; Farther the t >= 0 with P(T <= t) = p, 0.5 <= p < 1.
// Other p fail with kDistributionBadArgument.
double student_t_quantile(double p, double df, Tail tail, NagError& err);

}  // namespace zomath::platform
