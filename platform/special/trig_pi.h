// Sine and cosine of pi times an exactly represented argument, without the rounding of pi * x
// growing with |x|: the reduction to a quarter period is exact.
#pragma once

namespace zomath::platform {

// sin(pi v) and cos(pi v).
void sincos_pi(double v, double& s, double& c);

// sin(pi x^2 / 2) and cos(pi x^2 / 2), with x^2 carried to twice the working precision.
void sincos_half_pi_square(double x, double& s, double& c);

}  // namespace zomath::platform
