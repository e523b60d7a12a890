// The gamma function and its logarithm.
#pragma once

#include "platform/error_record.h"

namespace zomath::platform {

// x is zero or a negative integer: a pole of Gamma.
inline constexpr int kGammaPole = 1;
// |Gamma(x)| overflows: x above 171.62437695630271.
inline constexpr int kGammaOverflow = 2;
// log_gamma_function: x <= 0, where this routine does not define ln Gamma.
inline constexpr int kLogGammaNonPositive = 1;
// log_gamma_function: ln Gamma(x) overflows, x above about 2.55e305.
inline constexpr int kLogGammaOverflow = 2;

// Gamma(x) for x not a pole; values below the smallest double come back as 0.
double gamma_function(double x, NagError& err);

// ln Gamma(x) for x > 0.
double log_gamma_function(double x, NagError& err);

}  // namespace zomath::platform
