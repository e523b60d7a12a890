// The exponential integral E1(x) = integral from x to infinity of exp(-t) / t dt.
#pragma once

#include "platform/error_record.h"

namespace zomath::platform {

// x = 0, where E1 is infinite.
inline constexpr int kExpIntegralZero = 1;
// x below about -709.7: |E1(x)| = Ei(-x) overflows.
inline constexpr int kExpIntegralOverflow = 2;

// E1(x) for x != 0; for x < 0 the Cauchy principal value, -Ei(-x).
double exp_integral_e1(double x, NagError& err);

}  // namespace zomath::platform
