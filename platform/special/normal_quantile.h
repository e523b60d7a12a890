// Quantiles of the standard normal distribution, for either tail, without cancellation.
#pragma once

#include "platform/error_record.h"

namespace zomath::platform {

// The probability is not inside (0, 1): the quantile is infinite or does not exist.
inline constexpr int kQuantileProbabilityOutOfRange = 1;

// x with Phi(x) = p, 0 < p < 1.
double normal_quantile(double p, NagError& err);

// x with 1 - Phi(x) = q, 0 < q < 1: the upper-tail quantile, exact for tiny q.
double normal_quantile_upper(double q, NagError& err);

// x with Phi(x) = 0.5 + d, -0.5 < d < 0.5: the quantile near the centre, accurate for tiny d.
double normal_quantile_centered(double d, NagError& err);

// x with erf(x) = y, -1 < y < 1: the centred quantile for |y| <= 1/2 and the tail one beyond,
// where 1 - |y| is exact. Fails with kQuantileProbabilityOutOfRange elsewhere.
double inverse_error_function(double y, NagError& err);

}  // namespace zomath::platform
