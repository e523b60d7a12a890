// The standard bivariate normal distribution function.
#pragma once

#include "platform/distributions/tail.h"
#include "platform/error_record.h"

namespace zomath::platform {

// Failure codes of bivariate_normal_lower, those of all distribution routines.
inline constexpr int kBivariateNormalBadCorrelation = kDistributionBadParameter;  // |rho| > 1 or NaN
inline constexpr int kBivariateNormalBadArgument = kDistributionBadArgument;      // x or y is NaN

// P(X <= x, Y <= y) for standard normal X, Y with correlation rho, to about 1e-15 absolute.
// x and y may be infinite; rho = +-1 gives the degenerate limits.
double bivariate_normal_lower(double x, double y, double rho, NagError& err);

}  // namespace zomath::platform
