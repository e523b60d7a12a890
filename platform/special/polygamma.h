// Polygamma functions psi^(k)(x), the k-th derivatives of the digamma function psi.
#pragma once

#include "platform/error_record.h"

namespace zomath::platform {

// k outside 0..6.
inline constexpr int kPolygammaBadOrder = 1;
// x is zero or a negative integer: a pole.
inline constexpr int kPolygammaPole = 2;
// The result overflows (x very close to a pole).
inline constexpr int kPolygammaOverflow = 3;

// psi^(k)(x) for k = 0..6 and x not a pole.
double polygamma(double x, int k, NagError& err);

}  // namespace zomath::platform
