#include "platform/moment_sums.h"

#include <cfloat>
#include <cmath>
#include <cstring>
#include <limits>

#include "core/kernels.h"
#include "zomath/core.h"

namespace zomath::platform {
namespace {

#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__)
#define ZOMATH_MOMENT_WIDTHS 1
#pragma GCC push_options
#pragma GCC target("arch=x86-64-v4")
namespace avx512 {
#include "platform/moment_passes.inc"
}  // namespace avx512
#pragma GCC pop_options
#pragma GCC push_options
#pragma GCC target("arch=x86-64-v3")
namespace avx2 {
#include "platform/moment_passes.inc"
}  // namespace avx2
#pragma GCC pop_options
#endif
namespace baseline {
#include "platform/moment_passes.inc"
}  // namespace baseline

// The widest vector unit the processor has: 2 AVX-512, 1 AVX2 with FMA, 0 the baseline.
int width() {
#ifdef ZOMATH_MOMENT_WIDTHS
  if (__builtin_cpu_supports("x86-64-v4")) return 2;
  if (__builtin_cpu_supports("x86-64-v3")) return 1;
#endif
  return 0;
}

}  // namespace

FirstSums first_sums(const double* x, const double* w, std::ptrdiff_t n, bool bSkipMissing) {
  if (!x || n < 1) return FirstSums{};
  switch (width()) {
#ifdef ZOMATH_MOMENT_WIDTHS
    case 2: return avx512::first_sums_lanes(x, w, n, bSkipMissing);
    case 1: return avx2::first_sums_lanes(x, w, n, bSkipMissing);
#endif
    default: return baseline::first_sums_lanes(x, w, n, bSkipMissing);
  }
}

double deviation_scale(double maxAbs) {
  if (!(maxAbs > 0) || !std::isfinite(maxAbs)) return 1.0;
  const int e = std::ilogb(maxAbs);
  return std::ldexp(1.0, e < -1022 ? 1022 : (e > 1022 ? -1022 : -e));
}

DeviationSums deviation_sums(const double* x, const double* w, std::ptrdiff_t n, double mean,
                             double meanLow, double scale, bool bRootWeights, bool bSkipMissing) {
  if (!x || n < 1) return DeviationSums{};
  switch (width()) {
#ifdef ZOMATH_MOMENT_WIDTHS
    case 2: return avx512::deviation_sums_lanes(x, w, n, mean, meanLow, scale, bRootWeights, bSkipMissing);
    case 1: return avx2::deviation_sums_lanes(x, w, n, mean, meanLow, scale, bRootWeights, bSkipMissing);
#endif
    default: return baseline::deviation_sums_lanes(x, w, n, mean, meanLow, scale, bRootWeights, bSkipMissing);
  }
}

}  // namespace zomath::platform
