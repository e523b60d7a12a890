#include "platform/moment_sums.h"

#include <cmath>
#include <cstring>
#include <limits>

#include "core/kernels.h"
#include "zomath/core.h"

// GCC places its vector-ABI note on the inlined passes below; no vector crosses a call.
#pragma GCC diagnostic ignored "-Wpsabi"

namespace zomath::platform {
namespace {

using kernels::CompensatedSum;
using kernels::kLanes;
using F8 = kernels::simd::F8;
using I8 = kernels::simd::I8;

constexpr long long kAbsMask = 0x7FFFFFFFFFFFFFFFll;
constexpr long long kMantissa = 0x000FFFFFFFFFFFFFll;
constexpr long long kOneBits = 0x3FF0000000000000ll;  // the exponent field of 1.0

[[gnu::always_inline]] inline F8 load(const double* p) { return kernels::simd::load<F8>(p); }

// The first `count` doubles of p, and `fill` in the lanes after them.
[[gnu::always_inline]] inline F8 load_part(const double* p, std::ptrdiff_t count, double fill) {
  double buf[kLanes];
  for (int j = 0; j < kLanes; ++j) buf[j] = j < count ? p[j] : fill;
  F8 v;
  std::memcpy(&v, buf, sizeof v);
  return v;
}

// Lanes j < count.
[[gnu::always_inline]] inline I8 first_lanes(std::ptrdiff_t count) {
  const I8 index = {0, 1, 2, 3, 4, 5, 6, 7};
  return index < (I8{} + count);
}

// Knuth's two-sum: a + b = t + e exactly.
[[gnu::always_inline]] inline F8 two_sum(F8 a, F8 b, F8& e) {
  const F8 t = a + b;
  const F8 z = t - a;
  e = (a - (t - z)) + (b - z);
  return t;
}

// Dekker's product: a b = p + e exactly (for |a|, |b| below 2^995), with Veltkamp's split, so
// that it needs no fused multiply-add.
[[gnu::always_inline]] inline void split(F8 a, F8& hi, F8& lo) {
  const F8 t = a * 134217729.0;  // 2^27 + 1
  hi = t - (t - a);
  lo = a - hi;
}
[[gnu::always_inline]] inline F8 two_prod(F8 a, F8 b, F8& e) {
  const F8 p = a * b;
  F8 ah, al, bh, bl;
  split(a, ah, al);
  split(b, bh, bl);
  e = ((ah * bh - p) + ah * bl + al * bh) + al * bl;
  return p;
}

[[gnu::always_inline]] inline F8 abs(F8 v) { return (F8)((I8)v & kAbsMask); }

// Lane by lane; the file is compiled without errno for the maths functions, so this is one
// vector instruction.
[[gnu::always_inline]] inline F8 sqrt(F8 v) {
  F8 r;
  for (int j = 0; j < kLanes; ++j) r[j] = std::sqrt(v[j]);
  return r;
}

// A weight as the passes read it: 0 for a point left out or a weight below 0, NaN kept.
[[gnu::always_inline]] inline F8 read_weight(F8 w, I8 keep) {
  const F8 zero = {};
  const F8 kept = keep ? w : zero;
  return (kept < zero) ? zero : kept;
}

// Which lanes hold a point that counts: all live ones, or those whose value and weight are not
// NANUM.
template <bool kWeighted, bool kSkip>
[[gnu::always_inline]] inline I8 kept(F8 x, F8 w, I8 live) {
  if constexpr (kSkip) {
    const F8 nanum = F8{} + NANUM;
    live &= (x != nanum);
    if constexpr (kWeighted) live &= (w != nanum);
  }
  return live;
}

// ---- first pass ----------------------------------------------------------------------------

// The product of |x| is kept as a mantissa product in [1, 2^kRenormEvery) and an exponent sum,
// so that sum ln |x| costs one logarithm a lane instead of one a point.
constexpr int kRenormEvery = 256;

struct FirstLanes {
  F8 s{}, c{};    // sum w x and its rounding errors
  F8 ws{}, wc{};  // sum w and its rounding errors
  F8 w2{};
  F8 wlo = F8{} + HUGE_VAL, whi = F8{} - HUGE_VAL;
  F8 amax{};
  F8 prod = F8{} + 1.0;
  I8 cnt{}, negW{}, nzW{}, neg{}, zer{}, special{}, notOne{}, expo{};

  void renormalise() {
    const I8 bits = (I8)prod;
    expo += (bits >> 52) - 1023;
    prod = (F8)((bits & kMantissa) | kOneBits);
  }
};

template <bool kWeighted, bool kSkip>
[[gnu::always_inline]] inline void first_block(FirstLanes& L, F8 xv, F8 wv, I8 live) {
  const F8 zero = {}, one = zero + 1.0;
  const I8 keep = kept<kWeighted, kSkip>(xv, wv, live);
  L.cnt -= keep;
  const F8 xr = keep ? xv : zero;
  F8 p, pe;
  if constexpr (kWeighted) {
    const I8 below = keep & (wv < zero);
    L.negW -= below;
    const F8 wr = read_weight(wv, keep);
    L.nzW -= (wr != zero);
    L.wlo = (keep & (wv < L.wlo)) ? wv : L.wlo;
    L.whi = (keep & (wv > L.whi)) ? wv : L.whi;
    L.notOne |= keep & (wv != one);
    F8 e;
    L.ws = two_sum(L.ws, wr, e);
    L.wc += e;
    L.w2 += wr * wr;
    p = two_prod(wr, xr, pe);
  } else {
    L.nzW -= keep;
    p = xr;
    pe = zero;
  }
  F8 e;
  L.s = two_sum(L.s, p, e);
  L.c += e + pe;
  L.neg -= (xr < zero);
  const I8 bits = (I8)xr & kAbsMask;
  const F8 a = (F8)bits;
  L.amax = (a > L.amax) ? a : L.amax;  // NaN never wins
  const I8 field = bits >> 52;
  const I8 isZero = keep & (bits == 0);
  L.zer -= isZero;
  // Subnormals, infinities and NaN have no mantissa of this form: their log is taken apart.
  const I8 special = keep & ~isZero & ((field == 0) | (field == 2047));
  L.special |= special;
  const I8 use = keep & ~isZero & ~special;
  L.prod *= use ? (F8)((bits & kMantissa) | kOneBits) : one;
  L.expo += use & (field - 1023);
}

// Calls f(x, w) for every point that counts, w read as the passes read it (1 without weights).
template <class F>
void for_each_point(const double* x, const double* w, std::ptrdiff_t n, bool bSkip, F f) {
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const double wi = w ? w[i] : 1.0;
    if (bSkip && (x[i] == NANUM || wi == NANUM)) continue;
    f(x[i], wi < 0 ? 0.0 : wi);
  }
}

template <bool kWeighted, bool kSkip>
[[gnu::always_inline]] inline FirstSums first_pass(const double* x, const double* w,
                                                   std::ptrdiff_t n) {
  const F8 one = F8{} + 1.0;
  FirstLanes L;
  std::ptrdiff_t i = 0;
  int blocks = 0;
  for (; i + kLanes <= n; i += kLanes) {
    first_block<kWeighted, kSkip>(L, load(x + i), kWeighted ? load(w + i) : one, I8{} - 1);
    if (++blocks == kRenormEvery) {
      L.renormalise();
      blocks = 0;
    }
  }
  if (i < n) {
    const std::ptrdiff_t r = n - i;
    first_block<kWeighted, kSkip>(L, load_part(x + i, r, 0.0),
                                  kWeighted ? load_part(w + i, r, 1.0) : one, first_lanes(r));
  }
  L.renormalise();

  FirstSums out;
  CompensatedSum sum, weights;
  long long expo = 0;
  bool special = false, notOne = false;
  long double logs = 0;
  for (int j = 0; j < kLanes; ++j) {
    sum.merge(L.s[j], L.c[j]);
    weights.merge(L.ws[j], L.wc[j]);
    out.weightSquares += L.w2[j];
    out.valid += L.cnt[j];
    out.negativeWeights += L.negW[j];
    out.nonzeroWeights += L.nzW[j];
    out.negatives += L.neg[j];
    out.zeros += L.zer[j];
    if (L.amax[j] > out.maxAbs) out.maxAbs = L.amax[j];
    special = special || L.special[j];
    notOne = notOne || L.notOne[j];
    expo += L.expo[j];
    logs += std::log(static_cast<long double>(L.prod[j]));
  }
  out.weightNotOne = notOne;
  if (kWeighted && out.valid > 0) {
    double lo = HUGE_VAL, hi = -HUGE_VAL;
    for (int j = 0; j < kLanes; ++j) {
      if (L.wlo[j] < lo) lo = L.wlo[j];
      if (L.whi[j] > hi) hi = L.whi[j];
    }
    if (lo > hi) lo = hi = std::numeric_limits<double>::quiet_NaN();  // every weight NaN
    out.minWeight = lo;
    out.maxWeight = hi;
  }
  // The mean log is large where the values are far from 1 (-460 near 1e-200): it stays in
  // long double, so that its rounding costs the geometric mean nothing.
  long double logSum = logs + expo * 0.693147180559945309417232121458L;
  if (special) {
    logSum = 0;
    for_each_point(x, w, n, kSkip, [&logSum](double xi, double) {
      if (xi != 0) logSum += std::log(std::fabs(static_cast<long double>(xi)));
    });
  }
  const std::ptrdiff_t logged = out.valid - out.zeros;
  if (logged > 0) out.geometricMean = static_cast<double>(std::exp(logSum / logged));

  if (kWeighted) {
    out.weightSum = weights.value();
    out.mean = std::numeric_limits<double>::quiet_NaN();
    if (out.weightSum != 0) {
      // (s + c) / (W + Wc) as a double and the remainder of its rounding.
      const double q = sum.s / weights.s;
      const double r = std::fma(-q, weights.s, sum.s);
      out.mean = q + (r + sum.c - q * weights.c) / weights.s;
      out.meanLow = (std::fma(-out.mean, weights.s, sum.s) + sum.c - out.mean * weights.c) / weights.s;
    }
  } else {
    out.weightSum = out.weightSquares = static_cast<double>(out.valid);
    const double n = static_cast<double>(out.valid);
    out.mean = out.valid ? sum.mean(n) : std::numeric_limits<double>::quiet_NaN();
    if (out.valid) out.meanLow = (std::fma(-out.mean, n, sum.s) + sum.c) / n;
  }
  // A total beyond the range of doubles, or a product too large to split: a long double
  // accumulation decides, as for the plain sums.
  if (!std::isfinite(out.mean) && std::isfinite(out.weightSum) && out.weightSum != 0) {
    long double s = 0, ws = 0;
    for_each_point(x, w, n, kSkip, [&](double xi, double wi) {
      s += static_cast<long double>(wi) * xi;
      ws += wi;
    });
    out.mean = static_cast<double>(s / ws);
    out.meanLow = 0;
  }
  if (!std::isfinite(out.meanLow)) out.meanLow = 0;
  return out;
}

// ---- deviation pass ------------------------------------------------------------------------

struct DeviationLanes {
  F8 s1{}, e1{}, s2{}, e2{}, sa{}, sx{}, m3{}, m4{};
};

template <bool kWeighted, bool kRoot, bool kSkip>
[[gnu::always_inline]] inline void deviation_block(DeviationLanes& L, F8 xv, F8 wv, I8 live,
                                                   F8 mean, F8 meanLow, F8 scale) {
  const F8 zero = {};
  const I8 keep = kept<kWeighted, kSkip>(xv, wv, live);
  F8 e;
  const F8 t = two_sum(xv, -mean, e);
  // d = dh + dl: the deviation from the mean to twice a double's precision, scaled (exactly:
  // scale is a power of two). A point left out has d = 0, whatever the mean. The powers of d
  // take dl to first order, which leaves nothing of it above the rounding of a double.
  const F8 dh = keep ? t * scale : zero;
  const F8 dl = keep ? (e - meanLow) * scale : zero;
  const F8 xs = keep ? xv * scale : zero;
  const F8 q = dh * dh;
  const F8 q2 = 2.0 * dh * dl;               // d^2 = q + q2
  const F8 c3 = q * (dh + 3.0 * dl);          // d^3
  const F8 c4 = q * (q + 2.0 * q2);           // d^4
  const F8 ad = abs(dh + dl);
  if constexpr (kWeighted) {
    const F8 wr = read_weight(wv, keep);
    L.s1 = two_sum(L.s1, wr * dh, e);
    L.e1 += e + wr * dl;
    L.s2 = two_sum(L.s2, wr * q, e);
    L.e2 += e + wr * q2;
    L.sa += wr * ad;
    L.sx += wr * xs * xs;
    const F8 w3 = kRoot ? wr * sqrt(wr) : wr;
    const F8 w4 = kRoot ? wr * wr : wr;
    L.m3 += w3 * c3;
    L.m4 += w4 * c4;
  } else {
    L.s1 = two_sum(L.s1, dh, e);
    L.e1 += e + dl;
    L.s2 = two_sum(L.s2, q, e);
    L.e2 += e + q2;
    L.sa += ad;
    L.sx += xs * xs;
    L.m3 += c3;
    L.m4 += c4;
  }
}

template <bool kWeighted, bool kRoot, bool kSkip>
[[gnu::always_inline]] inline DeviationSums deviation_pass(const double* x, const double* w,
                                                           std::ptrdiff_t n, double mean,
                                                           double meanLow, double scale) {
  const F8 one = F8{} + 1.0, m = F8{} + mean, ml = F8{} + meanLow, u = F8{} + scale;
  DeviationLanes L;
  std::ptrdiff_t i = 0;
  for (; i + kLanes <= n; i += kLanes)
    deviation_block<kWeighted, kRoot, kSkip>(L, load(x + i), kWeighted ? load(w + i) : one,
                                             I8{} - 1, m, ml, u);
  if (i < n) {
    const std::ptrdiff_t r = n - i;
    deviation_block<kWeighted, kRoot, kSkip>(L, load_part(x + i, r, 0.0),
                                             kWeighted ? load_part(w + i, r, 1.0) : one,
                                             first_lanes(r), m, ml, u);
  }
  CompensatedSum d1, d2;
  DeviationSums out;
  for (int j = 0; j < kLanes; ++j) {
    d1.merge(L.s1[j], L.e1[j]);
    d2.merge(L.s2[j], L.e2[j]);
    out.sumAbs += L.sa[j];
    out.sumX2 += L.sx[j];
    out.m3 += L.m3[j];
    out.m4 += L.m4[j];
  }
  out.sumD = d1.value();
  out.sumD2 = d2.value();
  return out;
}

// One function a variant, each compiled for several vector units.
#define ZOMATH_FIRST_PASS(NAME, W, S)                                                         \
  ZOMATH_VECTOR_CLONES FirstSums NAME(const double* x, const double* w, std::ptrdiff_t n) {    \
    return first_pass<W, S>(x, w, n);                                                         \
  }
ZOMATH_FIRST_PASS(first_plain, false, false)
ZOMATH_FIRST_PASS(first_plain_skip, false, true)
ZOMATH_FIRST_PASS(first_weighted, true, false)
ZOMATH_FIRST_PASS(first_weighted_skip, true, true)
#undef ZOMATH_FIRST_PASS

#define ZOMATH_DEVIATION_PASS(NAME, W, R, S)                                                  \
  ZOMATH_VECTOR_CLONES DeviationSums NAME(const double* x, const double* w, std::ptrdiff_t n,  \
                                          double mean, double low, double scale) {             \
    return deviation_pass<W, R, S>(x, w, n, mean, low, scale);                                      \
  }
ZOMATH_DEVIATION_PASS(deviations_plain, false, false, false)
ZOMATH_DEVIATION_PASS(deviations_plain_skip, false, false, true)
ZOMATH_DEVIATION_PASS(deviations_weighted, true, false, false)
ZOMATH_DEVIATION_PASS(deviations_weighted_skip, true, false, true)
ZOMATH_DEVIATION_PASS(deviations_root, true, true, false)
ZOMATH_DEVIATION_PASS(deviations_root_skip, true, true, true)
#undef ZOMATH_DEVIATION_PASS

}  // namespace

FirstSums first_sums(const double* x, const double* w, std::ptrdiff_t n, bool bSkipMissing) {
  if (!x || n < 1) return FirstSums{};
  if (w) return bSkipMissing ? first_weighted_skip(x, w, n) : first_weighted(x, w, n);
  return bSkipMissing ? first_plain_skip(x, w, n) : first_plain(x, w, n);
}

double deviation_scale(double maxAbs) {
  if (!(maxAbs > 0) || !std::isfinite(maxAbs)) return 1.0;
  const int e = std::ilogb(maxAbs);
  return std::ldexp(1.0, e < -1022 ? 1022 : (e > 1022 ? -1022 : -e));
}

DeviationSums deviation_sums(const double* x, const double* w, std::ptrdiff_t n, double mean,
                             double meanLow, double scale, bool bRootWeights, bool bSkipMissing) {
  if (!x || n < 1) return DeviationSums{};
  if (!w) return bSkipMissing ? deviations_plain_skip(x, w, n, mean, meanLow, scale)
                              : deviations_plain(x, w, n, mean, meanLow, scale);
  if (bRootWeights) return bSkipMissing ? deviations_root_skip(x, w, n, mean, meanLow, scale)
                                        : deviations_root(x, w, n, mean, meanLow, scale);
  return bSkipMissing ? deviations_weighted_skip(x, w, n, mean, meanLow, scale)
                      : deviations_weighted(x, w, n, mean, meanLow, scale);
}

}  // namespace zomath::platform
