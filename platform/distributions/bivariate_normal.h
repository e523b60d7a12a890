// The standard bivariate normal distribution function.
#pragma once

#include "platform/error_record.h"

namespace zomath::platform {

// Failure codes of bivariate_normal_lower.
constexpr int kBivariateNormalBadCorrelation = 1;  // |rho| > 1 or rho not a number
constexpr int kBivariateNormalBadArgument = 2;     // x or y is NaN

// P(X <= x, Y <= y) for standard normal X, Y with correlation rho, to about 1e-15 absolute.
// x and y may be infinite; rho = +-1 gives the degenerate limits.
double bivariate_normal_lower(double x, double y, double rho, NagError& err);

}  // namespace zomath::platform
