// Error functions and the normal distribution function. Defined for every real argument, so
// these routines never fail; NaN gives NaN.
#pragma once

namespace zomath::platform {

double error_function(double x);                // erf(x)
double complementary_error_function(double x);  // erfc(x) = 1 - erf(x), without cancellation

// Phi(x) and 1 - Phi(x) of the standard normal, each accurate in its own tail.
double normal_lower_tail(double x);
double normal_upper_tail(double x);

}  // namespace zomath::platform
