// Typed array kernels, written once over the element type. The exports of the vector families
// (core/vector/) and the containers are thin layers over these, so a fix lands in every type.
//
// Missing values: a kernel takes a pointer to the missing value of the element's own type, or
// null when nothing is missing; an element equal to it is skipped by every sum, count, minimum
// and maximum but keeps its place in the index numbering. A NaN is never chosen as a minimum or
// maximum (it would otherwise stop every later comparison).
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

#include "core/nrvec/nrvec.h"
#include "platform/utility.h"

namespace zomath::kernels {

// The widest floating type, for the few sums that are not on a hot path.
using Wide = long double;

// Compiles a function once for the build's baseline and again for wider vector units (AVX2
// with FMA, AVX-512), the loader picking the best the processor has. Hot loops that the
// compiler vectorises are inlined into such functions (see scan_pass).
#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__)
#define ZOMATH_VECTOR_CLONES __attribute__((target_clones("arch=x86-64-v4", "arch=x86-64-v3", "default")))
#else
#define ZOMATH_VECTOR_CLONES
#endif

// Missing-value tests, so that each kernel is compiled once with the test and once without.
struct NoMissing {
  template <class T>
  bool operator()(const T&) const { return false; }
};
template <class T>
struct EqualsMissing {
  T m;
  bool operator()(const T& x) const { return x == m; }
};

// Calls f with the missing-value test that pMissing asks for.
template <class T, class F>
decltype(auto) with_missing(const T* pMissing, F&& f) {
  if (pMissing) return f(EqualsMissing<T>{*pMissing});
  return f(NoMissing{});
}

template <class T>
struct Identity {
  using type = T;
};

template <class T>
bool is_number(const T& x) {
  if constexpr (std::is_floating_point_v<T>) return x == x;
  return true;
}

// The running minimum and maximum and their first positions.
template <class V>
struct Extremes {
  V lo{}, hi{};
  std::ptrdiff_t iMin = -1, iMax = -1;

  bool empty() const { return iMin < 0; }
  void seed(V x, std::ptrdiff_t i) {
    lo = hi = x;
    iMin = iMax = i;
  }
  // Strict comparisons: ties stay with the earlier position.
  void offer(V x, std::ptrdiff_t i) {
    if (x < lo) {
      lo = x;
      iMin = i;
    } else if (x > hi) {
      hi = x;
      iMax = i;
    }
  }
};

// Scans nFirst..nLast (inclusive) for the extremes among the elements that are not missing and
// that accept() lets through. Returns the count of missing elements.
template <class T, class Missing, class Accept>
std::ptrdiff_t scan_extremes(const T* p, std::ptrdiff_t nFirst, std::ptrdiff_t nLast,
                             Missing isMissing, Accept accept, Extremes<T>& e) {
  std::ptrdiff_t missing = 0, i = nFirst;
  for (; i <= nLast; ++i) {
    if (isMissing(p[i])) {
      ++missing;
    } else if (accept(p[i]) && is_number(p[i])) {
      e.seed(p[i], i);
      break;
    }
  }
  for (++i; i <= nLast; ++i) {
    const T x = p[i];
    if (isMissing(x)) {
      ++missing;
    } else if (accept(x)) {
      e.offer(x, i);
    }
  }
  return missing;
}

// Positions of the smallest and largest elements of nFirst..nLast (inclusive) that are not
// missing (equal to *pMissing; a null pMissing means none is). The first such element is taken
// first and a later one replaces it only when strictly smaller or larger, so ties go to the
// earliest position. Returns the count of missing elements; both positions are -1 when no
// element qualifies (all missing, an empty range).
template <class T>
std::ptrdiff_t minmax(const T* p, std::ptrdiff_t nFirst, std::ptrdiff_t nLast, const T* pMissing,
                      std::ptrdiff_t& iMin, std::ptrdiff_t& iMax) {
  Extremes<T> e;
  const std::ptrdiff_t missing = with_missing(pMissing, [&](auto isMissing) {
    return scan_extremes(p, nFirst, nLast, isMissing, [](const T&) { return true; }, e);
  });
  iMin = e.iMin;
  iMax = e.iMax;
  return missing;
}

// As minmax over the whole array, but only elements with low <= x <= high can be chosen;
// the others are passed over. Returns the count of missing elements.
template <class T>
std::ptrdiff_t minmax_in_range(const T* p, std::ptrdiff_t n, T low, T high, const T* pMissing,
                               std::ptrdiff_t& iMin, std::ptrdiff_t& iMax) {
  Extremes<T> e;
  const std::ptrdiff_t missing = with_missing(pMissing, [&](auto isMissing) {
    return scan_extremes(p, 0, n - 1, isMissing,
                         [low, high](const T& x) { return low <= x && x <= high; }, e);
  });
  iMin = e.iMin;
  iMax = e.iMax;
  return missing;
}

// Sums of the sum and mean_variance families. Floating elements are added in double with
// compensation (Neumaier's scheme: the rounding error of every addition, found exactly by the
// branch-free two-sum, is summed apart and added at the end), integer elements exactly in 64
// bits. The compensated error is within eps |S| + O(n^2 eps^2) sum |x|, below the n 2^-64 sum |x|
// of a long double accumulation for any n under 2^40, and the loops vectorise: kLanes
// independent accumulators, one per vector lane. A total that is not finite (a NaN or
// infinite element, or an overflow of double that later terms may undo) is redone in long
// double, so that such data sums as a plain wide accumulation does.

// Independent accumulators of the vectorised passes, enough to fill an AVX-512 register.
constexpr int kLanes = 8;

// GCC notes that passing such vectors would change the ABI; those of the passes below live in
// inlined code and never cross a call.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpsabi"

// Eight-lane vectors of GCC's vector extension: one AVX-512 register, two AVX ones or four SSE2
// ones, whichever the function is compiled for.
namespace simd {
typedef double F8 __attribute__((vector_size(64)));
typedef long long I8 __attribute__((vector_size(64)));
template <class T>
struct Lanes {
  typedef T type __attribute__((vector_size(kLanes * sizeof(T))));
};
// kLanes elements from p (no alignment needed), converted element by element to V.
template <class V, class T>
[[gnu::always_inline]] inline V load(const T* p) {
  typename Lanes<T>::type v;
  std::memcpy(&v, p, sizeof v);
  return __builtin_convertvector(v, V);
}
}  // namespace simd

// Lanes of x that are not missing: all of them, or those unequal to the missing value.
template <class F8>
[[gnu::always_inline]] inline simd::I8 missing_mask(NoMissing, const F8&) {
  return simd::I8{} - 1;
}
template <class T, class F8>
[[gnu::always_inline]] inline simd::I8 missing_mask(const EqualsMissing<T>& m, const F8& x) {
  return ~(x == static_cast<double>(m.m));  // as x != m, but GCC keeps == in vector form
}

// Running sum plus, apart, the sum of the rounding errors of each addition.
struct CompensatedSum {
  double s = 0.0, c = 0.0;
  // Knuth's two-sum: t + e == s + x exactly, whatever the magnitudes.
  static double two_sum(double a, double b, double& e) {
    const double t = a + b;
    const double z = t - a;
    e = (a - (t - z)) + (b - z);
    return t;
  }
  void add(double x) {
    double e;
    s = two_sum(s, x, e);
    c += e;
  }
  void merge(double s2, double c2) {
    add(s2);
    c += c2;
  }
  double value() const { return s + c; }
  // value() / n, rounded once but for a last-bit tie: the quotient of the head corrected by
  // its exact remainder and by what the head left out.
  double mean(double n) const {
    double lo;
    const double hi = two_sum(s, c, lo);
    const double q = hi / n;
    return q + (std::fma(-q, n, hi) + lo) / n;
  }
};

// Accumulator of an element type: 64-bit integers for integers, compensated double otherwise.
template <class T>
using SumWord = std::conditional_t<std::is_integral_v<T>,
                                   std::conditional_t<std::is_signed_v<T>, long long, unsigned long long>,
                                   double>;

// Plain long double total of the elements that are not missing, for data whose compensated
// total is not finite; a total beyond the double range becomes an infinity of its sign.
template <class T, class Missing>
double wide_total(const T* p, std::ptrdiff_t n, Missing isMissing) {
  long double w = 0;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    if (isMissing(p[i])) continue;
    w += static_cast<long double>(p[i]);
    if (w != w) return std::numeric_limits<double>::quiet_NaN();  // it stays NaN; x87 is slow on one
  }
  if (w > std::numeric_limits<double>::max()) return HUGE_VAL;
  if (w < -std::numeric_limits<double>::max()) return -HUGE_VAL;
  return static_cast<double>(w);
}

template <class T>
struct SumResult {
  double sum = 0;
  std::ptrdiff_t valid = 0;
  Extremes<T> ext;
};

// Count and extremes (first positions) of the elements that are not missing, and their sum
// unless kWithSum is false. Always inlined, so that each caller compiled for a wider vector
// unit gets its own vector code.
template <bool kWithSum, class T, class Missing>
[[gnu::always_inline]] inline SumResult<T> scan_pass(const T* p, std::ptrdiff_t n, Missing isMissing) {
  using A = SumWord<T>;
  constexpr bool kFloat = std::is_floating_point_v<A>;
  SumResult<T> r;
  CompensatedSum fsum;
  A isum = 0;
  auto add = [&](T x) {
    if constexpr (!kWithSum) return;
    else if constexpr (kFloat) fsum.add(static_cast<double>(x));
    else isum += static_cast<A>(x);
  };
  std::ptrdiff_t i = 0, valid = 0;
  // Up to the first element that can seed the extremes (not missing, not NaN).
  for (; i < n; ++i) {
    const T x = p[i];
    if (isMissing(x)) continue;
    add(x);
    ++valid;
    if (is_number(x)) {
      r.ext.seed(x, i++);
      break;
    }
  }
  if (!r.ext.empty() && n - i >= kLanes) {
    // kLanes lanes, each with its own sum, count and extremes, in vector registers. Values
    // are compared as doubles (exact for every element type); a missing element adds 0 and
    // can't win.
    using simd::F8;
    using simd::I8;
    const F8 seed = F8{} + static_cast<double>(r.ext.lo);
    F8 lo = seed, hi = seed, fs = {}, fc = {};
    I8 iLo = I8{} + r.ext.iMin, iHi = iLo, is = {}, cnt = {};
    I8 idx = I8{0, 1, 2, 3, 4, 5, 6, 7} + i;
    for (; i + kLanes <= n; i += kLanes, idx += kLanes) {
      const F8 x = simd::load<F8>(p + i);
      const I8 keep = missing_mask(isMissing, x);
      cnt -= keep;
      if constexpr (!kWithSum) {
      } else if constexpr (kFloat) {
        const F8 v = keep ? x : F8{};
        const F8 t = fs + v;
        const F8 z = t - fs;
        fc += (fs - (t - z)) + (v - z);
        fs = t;
      } else {
        is += keep & simd::load<I8>(p + i);
      }
      const I8 below = keep & (x < lo), above = keep & (x > hi);
      lo = below ? x : lo;
      iLo = below ? idx : iLo;
      hi = above ? x : hi;
      iHi = above ? idx : iHi;
    }
    // Lanes merged: the smallest value wins, and between equal ones the earliest position.
    for (int j = 0; j < kLanes; ++j) {
      if constexpr (kFloat) fsum.merge(fs[j], fc[j]);
      else isum += static_cast<A>(is[j]);
      valid += cnt[j];
      const T vlo = static_cast<T>(lo[j]), vhi = static_cast<T>(hi[j]);
      if (vlo < r.ext.lo || (vlo == r.ext.lo && iLo[j] < r.ext.iMin)) {
        r.ext.lo = vlo;
        r.ext.iMin = iLo[j];
      }
      if (vhi > r.ext.hi || (vhi == r.ext.hi && iHi[j] < r.ext.iMax)) {
        r.ext.hi = vhi;
        r.ext.iMax = iHi[j];
      }
    }
  }
  for (; i < n; ++i) {
    const T x = p[i];
    if (isMissing(x)) continue;
    add(x);
    ++valid;
    r.ext.offer(x, i);
  }
  r.valid = valid;
  if constexpr (!kWithSum) {
  } else if constexpr (kFloat) {
    r.sum = fsum.value();
    if (!std::isfinite(r.sum)) r.sum = wide_total(p, n, isMissing);
  } else {
    r.sum = static_cast<double>(isum);
  }
  return r;
}

// Mean of the elements that are not missing, and the corrected two-pass variance
// (sum d^2 - (sum d)^2 / n) / (n - 1) with d = x - mean; the second term takes out most of the
// rounding error of the mean. Every d and d^2 is carried with its rounding error (two-sum and
// fma), so the sums see the exact deviations and squares. n of 0 gives NANUM for both, n of 1
// a variance of 0. Always inlined, as scan_pass.
template <class T, class Missing>
[[gnu::always_inline]] inline double mean_variance_pass(const T* p, std::ptrdiff_t n,
                                                        Missing isMissing, double* pVariance,
                                                        std::ptrdiff_t* pnValid) {
  using A = SumWord<T>;
  constexpr bool kFloat = std::is_floating_point_v<A>;
  A s[kLanes] = {}, c[kLanes] = {};
  std::ptrdiff_t cnt[kLanes] = {};
  std::ptrdiff_t i = 0;
  for (; i + kLanes <= n; i += kLanes) {
    for (std::ptrdiff_t j = 0; j < kLanes; ++j) {
      const T x = p[i + j];
      const bool keep = !isMissing(x);
      const A v = keep ? static_cast<A>(x) : A(0);
      cnt[j] += keep;
      if constexpr (kFloat) {
        const double t = s[j] + v;
        const double z = t - s[j];
        c[j] += (s[j] - (t - z)) + (v - z);
        s[j] = t;
      } else {
        s[j] += v;
      }
    }
  }
  CompensatedSum fsum;
  A isum = 0;
  std::ptrdiff_t valid = 0;
  for (std::ptrdiff_t j = 0; j < kLanes; ++j) {
    if constexpr (kFloat) fsum.merge(s[j], c[j]);
    else isum += s[j];
    valid += cnt[j];
  }
  for (; i < n; ++i) {
    if (isMissing(p[i])) continue;
    if constexpr (kFloat) fsum.add(static_cast<double>(p[i]));
    else isum += static_cast<A>(p[i]);
    ++valid;
  }
  if (pnValid) *pnValid = valid;
  if (valid == 0) {
    if (pVariance) *pVariance = NANUM;
    return static_cast<double>(NANUM);
  }
  double mean;
  if constexpr (kFloat) {
    mean = fsum.mean(static_cast<double>(valid));
    // An overflowing total, or a NaN or infinite element: the plain wide sum decides.
    if (!std::isfinite(mean)) {
      long double w = 0;
      for (std::ptrdiff_t k = 0; k < n && w == w; ++k)
        if (!isMissing(p[k])) w += static_cast<long double>(p[k]);
      mean = static_cast<double>(w / valid);
    }
  } else {
    mean = static_cast<double>(isum) / static_cast<double>(valid);
  }
  if (!pVariance) return mean;
  if (valid == 1) {
    *pVariance = 0.0;
    return mean;
  }
  // Lanes of sum d (s1, with its error e1) and sum d^2 (s2, with e2); d = dh + dl exactly, and
  // d^2 = dh^2 + 2 dh dl to far below the rounding of the result (dl^2 is dropped).
  double s1[kLanes] = {}, e1[kLanes] = {}, s2[kLanes] = {}, e2[kLanes] = {};
  auto step = [mean](double x, double& s1j, double& e1j, double& s2j, double& e2j) {
    double dl;
    const double dh = CompensatedSum::two_sum(x, -mean, dl);
    double e;
    s1j = CompensatedSum::two_sum(s1j, dh, e);
    e1j += e + dl;
    const double q = dh * dh;
    const double ql = std::fma(dh, dh, -q) + 2.0 * dh * dl;
    s2j = CompensatedSum::two_sum(s2j, q, e);
    e2j += e + ql;
  };
  for (i = 0; i + kLanes <= n; i += kLanes) {
    for (std::ptrdiff_t j = 0; j < kLanes; ++j) {
      const T x = p[i + j];
      // A missing element stands in as the mean: its deviation is 0 and adds nothing.
      const double v = isMissing(x) ? mean : static_cast<double>(x);
      step(v, s1[j], e1[j], s2[j], e2[j]);
    }
  }
  for (; i < n; ++i)
    if (!isMissing(p[i])) step(static_cast<double>(p[i]), s1[0], e1[0], s2[0], e2[0]);
  CompensatedSum d1, d2;
  for (std::ptrdiff_t j = 0; j < kLanes; ++j) {
    d1.merge(s1[j], e1[j]);
    d2.merge(s2[j], e2[j]);
  }
  const double sd = d1.value(), sdd = d2.value();
  *pVariance = (sdd - sd * sd / static_cast<double>(valid)) / static_cast<double>(valid - 1);
  return mean;
}

#pragma GCC diagnostic pop

// Linear map of [fromLow, fromHigh] onto [toLow, toHigh], in place: below and above the range
// the ends, inside toLow + 0.5 + (toHigh - toLow) (x - fromLow) / (fromHigh - fromLow). The half
// rounds the integer forms, which truncate afterwards; floating forms keep it. Elements equal
// to *pKeep (when given) are left alone. Returns false, changing nothing, when the source range
// is empty (fromHigh == fromLow) or not finite.
template <class T>
bool stretch(T* p, std::ptrdiff_t n, double fromLow, double fromHigh, double toLow, double toHigh,
             const T* pKeep) {
  const double span = fromHigh - fromLow;
  if (span == 0.0 || !std::isfinite(span)) return false;
  const double reach = toHigh - toLow;
  with_missing(pKeep, [&](auto isKept) {
    for (std::ptrdiff_t i = 0; i < n; ++i) {
      const T x = p[i];
      if (isKept(x)) continue;
      const double v = static_cast<double>(x);
      double y;
      if (v < fromLow) {
        y = toLow;
      } else if (v > fromHigh) {
        y = toHigh;
      } else {
        y = toLow + 0.5 + reach * (v - fromLow) / span;
      }
      if constexpr (std::is_integral_v<T>) {
        y = std::trunc(y);
        if (!(y >= static_cast<double>(std::numeric_limits<T>::lowest()))) y = std::numeric_limits<T>::lowest();
        if (y > static_cast<double>(std::numeric_limits<T>::max())) y = std::numeric_limits<T>::max();
      }
      p[i] = static_cast<T>(y);
    }
    return 0;
  });
  return true;
}

// Counts of the elements in nBins bins of width inc laid from start, each element placed by
// nice_bin_index; elements outside the bins, NaN, infinities and NANUM are dropped. Returns 0,
// or -1, leaving pnCounts alone, for an increment of 0, a start or increment that is not a
// finite number, or a null pnCounts with bins to fill.
template <class T>
int frequency_count(const T* p, std::ptrdiff_t n, unsigned int* pnCounts, unsigned int nBins,
                    double start, double inc) {
  if (inc == 0.0 || !std::isfinite(inc) || !std::isfinite(start)) return -1;
  if (nBins == 0) return 0;
  if (!pnCounts) return -1;
  for (unsigned int k = 0; k < nBins; ++k) pnCounts[k] = 0;
  if (!p) return 0;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const int k = platform::nice_bin_index(static_cast<double>(p[i]), start, inc);
    if (k >= 0 && static_cast<unsigned int>(k) < nBins) ++pnCounts[k];
  }
  return 0;
}

// Running sums over n elements into out[0..n-1]; a missing element repeats the running total
// (0 before any value). The total is kept in the element type itself, so small integer types
// wrap (int wraps as two's complement rather than overflowing). Returns the count of missing
// elements.
template <class T>
std::ptrdiff_t cumulative_sum(const T* p, std::ptrdiff_t n, T* out, const T* pMissing) {
  using Acc = typename std::conditional_t<std::is_integral_v<T> && std::is_signed_v<T>,
                                          std::make_unsigned<T>, Identity<T>>::type;
  return with_missing(pMissing, [&](auto isMissing) {
    Acc total = 0;
    std::ptrdiff_t missing = 0;
    for (std::ptrdiff_t i = 0; i < n; ++i) {
      const T x = p[i];
      if (isMissing(x)) {
        ++missing;
      } else {
        total = static_cast<Acc>(total + static_cast<Acc>(x));
      }
      out[i] = static_cast<T>(total);
    }
    return missing;
  });
}

// Gather: dest[k] = source[indices[k]] for every index below nSourceSize; other destinations are
// left alone. Source and destination may overlap: the part of the source that the indices reach
// is then read from a copy. Throws ZOMATH_ERROR_NO_MEMORY when that copy can't be had.
template <class T>
void gather(std::size_t n, const unsigned int* pnIndices, T* pDest, const T* pSource,
            unsigned int nSourceSize) {
  if (n == 0 || nSourceSize == 0) return;
  auto run = [&](const T* src) {
    for (std::size_t k = 0; k < n; ++k)
      if (pnIndices[k] < nSourceSize) pDest[k] = src[pnIndices[k]];
  };
  const auto destBegin = reinterpret_cast<std::uintptr_t>(pDest);
  const auto destEnd = reinterpret_cast<std::uintptr_t>(pDest + n);
  const auto srcBegin = reinterpret_cast<std::uintptr_t>(pSource);
  const auto srcEnd = reinterpret_cast<std::uintptr_t>(pSource + nSourceSize);
  if (destEnd <= srcBegin || srcEnd <= destBegin) return run(pSource);
  unsigned int reach = 0;
  for (std::size_t k = 0; k < n; ++k)
    if (pnIndices[k] < nSourceSize && pnIndices[k] >= reach) reach = pnIndices[k] + 1;
  if (reach == 0) return;
  if (reach > static_cast<unsigned int>(std::numeric_limits<int>::max())) throw ZOMATH_ERROR_NO_MEMORY;
  const NRVec<T> copy(pSource, static_cast<int>(reach));
  run(copy.Data());
}

// Spacing of a strictly monotonic vector. Returns 0 for fewer than 2 elements, data that is not
// strictly monotonic or not finite; else +1 or -1 (increasing, decreasing) when every step lies
// within |relTol * m| of the mean step m, writing first, last and the first step; else +2 or -2,
// writing nothing.
template <class T>
int vector_inc(std::size_t n, const T* p, double relTol, T* pFirst, T* pLast, T* pInc) {
  if (n < 2 || !p) return 0;
  // Steps as double; integer steps are exact and can't overflow this way.
  auto step = [p](std::size_t i) {
    if constexpr (std::is_integral_v<T>)
      return static_cast<double>(static_cast<long long>(p[i + 1]) - static_cast<long long>(p[i]));
    else
      return static_cast<double>(p[i + 1]) - static_cast<double>(p[i]);
  };
  if constexpr (std::is_floating_point_v<T>) {
    for (std::size_t i = 0; i < n; ++i)
      if (!std::isfinite(p[i])) return 0;
  }
  const bool up = p[1] > p[0];
  Wide total = 0;
  for (std::size_t i = 0; i + 1 < n; ++i) {
    if (up ? !(p[i + 1] > p[i]) : !(p[i + 1] < p[i])) return 0;
    total += step(i);
  }
  const double mean = static_cast<double>(total / static_cast<Wide>(n - 1));
  if (!std::isfinite(mean)) return 0;
  const double limit = std::fabs(relTol * mean);
  for (std::size_t i = 0; i + 1 < n; ++i)
    if (!(std::fabs(step(i) - mean) <= limit)) return up ? 2 : -2;
  if (pFirst) *pFirst = p[0];
  if (pLast) *pLast = p[n - 1];
  if (pInc) {
    if constexpr (std::is_integral_v<T>) {
      const long long d = static_cast<long long>(p[1]) - static_cast<long long>(p[0]);
      *pInc = static_cast<T>(std::clamp<long long>(d, std::numeric_limits<T>::lowest(),
                                                   std::numeric_limits<T>::max()));
    } else {
      *pInc = static_cast<T>(p[1] - p[0]);
    }
  }
  return up ? 1 : -1;
}

// The most populated of nBins equal bins between the minimum and maximum of the elements that
// are not missing: its lower edge, and (pFraction) its share of the elements counted. Bins are
// counted as frequency_count does, so the maximum itself drops out when it falls on the upper
// edge. Ties go to the lowest bin. Integer types use integer bin widths of at least 1. When all
// values are equal that value comes back with a share of 1. Returns false when there is no
// value, no bin or the range is not finite. Throws ZOMATH_ERROR_NO_MEMORY when the counts can't
// be had.
template <class T>
bool find_most(const T* p, std::ptrdiff_t n, unsigned int nBins, const T* pMissing, double& dMost,
               double& dFraction) {
  if (!p || n < 1 || nBins == 0) return false;
  std::ptrdiff_t iMin, iMax;
  minmax(p, std::ptrdiff_t{0}, n - 1, pMissing, iMin, iMax);
  if (iMin < 0) return false;
  const T lo = p[iMin], hi = p[iMax];
  if (!std::isfinite(static_cast<double>(lo)) || !std::isfinite(static_cast<double>(hi))) return false;
  T width;
  if constexpr (std::is_integral_v<T>) {
    width = static_cast<T>(std::max<long long>(1, (static_cast<long long>(hi) - lo) / nBins));
  } else {
    width = static_cast<T>((hi - lo) / nBins);
  }
  if (width == 0) {
    dMost = static_cast<double>(lo);
    dFraction = 1.0;
    return true;
  }
  if (nBins > static_cast<unsigned int>(std::numeric_limits<int>::max())) return false;
  NRVec<unsigned int> counts(static_cast<int>(nBins));
  if (frequency_count(p, n, counts.Data(), nBins, static_cast<double>(lo),
                      static_cast<double>(width)) != 0)
    return false;
  unsigned int best = 0;
  std::uint64_t total = 0;
  for (unsigned int k = 0; k < nBins; ++k) {
    total += counts[static_cast<int>(k)];
    if (counts[static_cast<int>(k)] > counts[static_cast<int>(best)]) best = k;
  }
  if constexpr (std::is_integral_v<T>) {
    dMost = static_cast<double>(static_cast<long long>(best) * width + lo);
  } else {
    dMost = best * static_cast<double>(width) + static_cast<double>(lo);
  }
  dFraction = total ? static_cast<double>(counts[static_cast<int>(best)]) / static_cast<double>(total) : 0.0;
  return true;
}

// Median of n doubles by selection, reordering work. An odd count gives the middle value, an
// even one the mean of the two middle values: the same numbers a full sort gives. The data
// must hold no NaN (it has no place in an order).
double median_by_selection(double* work, std::size_t n);

// Median of n >= 1 doubles, as median_by_selection gives it, without changing them and without
// copying all of a large array. Returns false, leaving out alone, when one of them is NaN.
// Throws ZOMATH_ERROR_NO_MEMORY when working storage can't be had.
bool median(const double* p, std::size_t n, double& out);

// The values of p[0..n) that are neither NANUM nor NaN, in ascending order, into out (resized
// to their count; -0 and +0 are equal, in either order). Throws ZOMATH_ERROR_NO_MEMORY when
// working storage can't be had.
void sorted_values(const double* p, std::size_t n, NRVec<double>& out);

// The most frequent of the values of p[0..n) that are neither NANUM nor NaN (-0 and +0 are one
// value, 0): how often it occurs, the smallest value that occurs that often, and how many
// distinct values do (so for values all distinct: 1, the smallest, their count). count 0 when
// there is no value. Throws ZOMATH_ERROR_NO_MEMORY when
// working storage can't be had.
struct MostFrequent {
  double value = 0;
  std::size_t count = 0;
  std::size_t ties = 0;
};
MostFrequent most_frequent(const double* p, std::size_t n);

// Grouping of equal values for most_frequent and for passes that gather the values themselves.
// A value's key mixes its bits (-0 read as +0) by a bijection, so that equal keys are equal
// values while the keys of close values lie far apart; the top bits of a key pick its bucket.
constexpr std::uint64_t kGroupMix = 0x9E3779B97F4A7C15ull;  // odd: the product is a bijection
inline std::uint64_t group_key(double x) {
  x += 0.0;
  std::uint64_t u;
  std::memcpy(&u, &x, sizeof u);
  return (u ^ (u >> 32)) * kGroupMix;
}
double group_value(std::uint64_t key);
// log2 of the bucket count for n values: buckets of a few hundred keys, that the cache holds.
int group_log_buckets(std::size_t n);
inline std::size_t group_bucket(std::uint64_t key, int logBuckets) {
  return logBuckets ? static_cast<std::size_t>(key >> (64 - logBuckets)) : 0;
}
// most_frequent of the values whose keys are grouped by bucket, bucket b in keys[at[b]] to
// keys[at[b + 1] - 1]; `least` is the smallest of them, the answer when every value is distinct.
// Throws ZOMATH_ERROR_NO_MEMORY when working storage can't be had.
MostFrequent most_frequent_grouped(const std::uint64_t* keys, const std::size_t* at,
                                   int logBuckets, double least);

}  // namespace zomath::kernels
