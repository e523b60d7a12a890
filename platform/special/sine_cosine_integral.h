// The sine and cosine integrals Si(x) = integral of sin(t)/t from 0 to x and
// Ci(x) = gamma + ln x + integral of (cos(t) - 1)/t from 0 to x.
#pragma once

#include "platform/error_record.h"

namespace zomath::platform {

// Ci: x <= 0, where the integral has no real value (x = 0: infinite).
inline constexpr int kCosIntegralNonPositive = 1;

// Si(x) for every real x.
double sine_integral(double x);

// Ci(x) for x > 0.
double cosine_integral(double x, NagError& err);

}  // namespace zomath::platform
