// Fresnel integrals S(x) = integral of sin(pi t^2 / 2) and C(x) = integral of cos(pi t^2 / 2)
// from 0 to x. Defined for every real x, so these routines never fail; NaN gives NaN.
#pragma once

namespace zomath::platform {

double fresnel_sine(double x);
double fresnel_cosine(double x);

}  // namespace zomath::platform
