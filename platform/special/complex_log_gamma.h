// The principal branch of ln Gamma(z) for complex z.
#pragma once

#include "zomath/core.h"
#include "platform/error_record.h"

namespace zomath::platform {

// z is zero or a negative integer: a pole.
inline constexpr int kComplexLogGammaPole = 1;
// Re z below -1e6 (or a part infinite): beyond the reach of the upward recurrence.
inline constexpr int kComplexLogGammaOutOfRange = 2;

// ln Gamma(z), continuous off the negative real axis and real on the positive one.
d_complex complex_log_gamma(d_complex z, NagError& err);

}  // namespace zomath::platform
