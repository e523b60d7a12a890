#include "platform/moment_sums.h"

#include <cfloat>
#include <cmath>
#include <cstring>
#include <limits>

#include "core/kernels.h"
#include "zomath/core.h"

#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__)
#include <immintrin.h>
#endif

namespace zomath::platform {
namespace {

// The table of the vector logarithm (moment_passes.inc): for the 1/16 of [1, 2) that starts at
// 1 + i/16, the inverse of its middle rounded to a double, and minus the logarithm of that
// rounded inverse, formed in long double.
constexpr int kLogTable = 16;
struct LogTable {
  double inverse[kLogTable];
  double log[kLogTable];
};

const LogTable& log_table() {
  static const LogTable table = [] {
    LogTable t;
    for (int i = 0; i < kLogTable; ++i) {
      t.inverse[i] = 1.0 / (1.0 + (i + 0.5) / kLogTable);
      t.log[i] = static_cast<double>(-std::log(static_cast<long double>(t.inverse[i])));
    }
    return t;
  }();
  return table;
}

using kernels::simd::F8;
using kernels::simd::I8;

// ln 2 = kLn2High + kLn2Low, the high part with 32 significant bits, so that k kLn2High is exact
// for every binary exponent k of a double.
constexpr double kLn2High = 6.93147180369123816490e-01;
constexpr double kLn2Low = 1.90821492927058770002e-10;

#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__)
#define ZOMATH_MOMENT_WIDTHS 1
#pragma GCC push_options
#pragma GCC target("arch=x86-64-v4")
namespace avx512 {
constexpr bool kFusedMultiplyAdd = true;
// t[index] in each lane, from the 16 entries of t held in two registers.
inline F8 lookup(const double* t, I8 index) {
  __m512d lo, hi;
  std::memcpy(&lo, t, sizeof lo);
  std::memcpy(&hi, t + 8, sizeof hi);
  return (F8)_mm512_permutex2var_pd(lo, (__m512i)index, hi);
}
// x = 2^k m with m in [1, 2), subnormals included, by the unit's own exponent instructions.
#define ZOMATH_EXPONENT_UNIT 1
// (The masked forms, all lanes set: the plain ones start from an undefined register, which
// GCC reports as uninitialised.)
inline void decompose(F8 x, F8& k, F8& m) {
  const __m512d v = (__m512d)x;
  k = (F8)_mm512_mask_getexp_pd(v, 0xFF, v);
  m = (F8)_mm512_mask_getmant_pd(v, 0xFF, v, _MM_MANT_NORM_1_2, _MM_MANT_SIGN_zero);
}
#include "platform/moment_passes.inc"
#undef ZOMATH_EXPONENT_UNIT
}  // namespace avx512
#pragma GCC pop_options
#pragma GCC push_options
#pragma GCC target("arch=x86-64-v3")
namespace avx2 {
constexpr bool kFusedMultiplyAdd = true;
inline F8 lookup(const double* t, I8 index) {
  __m256i i[2];
  std::memcpy(i, &index, sizeof i);
  const __m256d r[2] = {_mm256_i64gather_pd(t, i[0], 8), _mm256_i64gather_pd(t, i[1], 8)};
  F8 v;
  std::memcpy(&v, r, sizeof v);
  return v;
}
#include "platform/moment_passes.inc"
}  // namespace avx2
#pragma GCC pop_options
#endif
namespace baseline {
constexpr bool kFusedMultiplyAdd = false;
inline F8 lookup(const double* t, I8 index) {
  F8 v;
  for (int j = 0; j < kernels::kLanes; ++j) v[j] = t[index[j]];
  return v;
}
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

FirstSums first_sums(const double* x, const double* w, std::ptrdiff_t n, bool bSkipMissing,
                     KeyCounts* k) {
  if (k && bSkipMissing) k->counted = true;
  if (!x || n < 1) return FirstSums{};
  if (k && !bSkipMissing) k = nullptr;  // keys only where missing points are skipped
  switch (width()) {
#ifdef ZOMATH_MOMENT_WIDTHS
    case 2: return avx512::first_sums_lanes(x, w, n, bSkipMissing, k);
    case 1: return avx2::first_sums_lanes(x, w, n, bSkipMissing, k);
#endif
    default: return baseline::first_sums_lanes(x, w, n, bSkipMissing, k);
  }
}

double deviation_scale(double maxAbs) {
  if (!(maxAbs > 0) || !std::isfinite(maxAbs)) return 1.0;
  const int e = std::ilogb(maxAbs);
  return std::ldexp(1.0, e < -1022 ? 1022 : (e > 1022 ? -1022 : -e));
}

DeviationSums deviation_sums(const double* x, const double* w, std::ptrdiff_t n, double mean,
                             double meanLow, double scale, bool bRootWeights, bool bSkipMissing,
                             const SecondPassExtras* e) {
  if (e && e->logs) *e->logs = LogSums{};
  if (!x || n < 1) return DeviationSums{};
  if (e && (!bSkipMissing || (!e->next && !e->logs))) e = nullptr;
  switch (width()) {
#ifdef ZOMATH_MOMENT_WIDTHS
    case 2: return avx512::deviation_sums_lanes(x, w, n, mean, meanLow, scale, bRootWeights, bSkipMissing, e);
    case 1: return avx2::deviation_sums_lanes(x, w, n, mean, meanLow, scale, bRootWeights, bSkipMissing, e);
#endif
    default: return baseline::deviation_sums_lanes(x, w, n, mean, meanLow, scale, bRootWeights, bSkipMissing, e);
  }
}

}  // namespace zomath::platform
