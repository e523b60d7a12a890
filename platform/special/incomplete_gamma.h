// Regularised incomplete gamma functions P(a, x) and Q(a, x) = 1 - P(a, x).
#pragma once

#include "platform/error_record.h"

namespace zomath::platform {

// a <= 0 (or infinite): no distribution of that shape.
inline constexpr int kIncompleteGammaBadShape = 1;
// x < 0.
inline constexpr int kIncompleteGammaNegativeX = 2;

// P(a, x) = gamma(a, x) / Gamma(a), a > 0, x >= 0 (x may be +infinity).
double incomplete_gamma_p(double a, double x, NagError& err);

// Q(a, x) = Gamma(a, x) / Gamma(a), same domain, accurate where it is tiny.
double incomplete_gamma_q(double a, double x, NagError& err);

}  // namespace zomath::platform
