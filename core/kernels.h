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
#include <limits>
#include <type_traits>

#include "core/nrvec/nrvec.h"
#include "platform/utility.h"

namespace zomath::kernels {

// Sums of every family are accumulated in the widest floating type.
using Wide = long double;

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

// Sum of the elements that are not missing, with their extremes and count, in one pass.
template <class T>
struct SumResult {
  Wide sum = 0;
  std::ptrdiff_t valid = 0;
  Extremes<T> ext;
};

template <class T>
SumResult<T> sum(const T* p, std::ptrdiff_t n, const T* pMissing) {
  SumResult<T> r;
  with_missing(pMissing, [&](auto isMissing) {
    Wide s = 0;
    std::ptrdiff_t valid = 0, i = 0;
    for (; i < n; ++i) {
      const T x = p[i];
      if (isMissing(x)) continue;
      s += static_cast<Wide>(x);
      ++valid;
      if (is_number(x)) {
        r.ext.seed(x, i);
        break;
      }
    }
    for (++i; i < n; ++i) {
      const T x = p[i];
      if (isMissing(x)) continue;
      s += static_cast<Wide>(x);
      ++valid;
      r.ext.offer(x, i);
    }
    r.sum = s;
    r.valid = valid;
    return 0;
  });
  return r;
}

// Mean of the elements that are not missing, and the corrected two-pass variance
// (sum d^2 - (sum d)^2 / n) / (n - 1) with d = x - mean; the second term takes out most of the
// rounding error of the mean. n of 0 gives NANUM for both, n of 1 a variance of 0.
template <class T>
double mean_variance(const T* p, std::ptrdiff_t n, const T* pMissing, double* pVariance,
                     std::ptrdiff_t* pnValid) {
  return with_missing(pMissing, [&](auto isMissing) {
    Wide s = 0;
    std::ptrdiff_t valid = 0;
    for (std::ptrdiff_t i = 0; i < n; ++i) {
      if (isMissing(p[i])) continue;
      s += static_cast<Wide>(p[i]);
      ++valid;
    }
    if (pnValid) *pnValid = valid;
    if (valid == 0) {
      if (pVariance) *pVariance = NANUM;
      return static_cast<double>(NANUM);
    }
    const Wide mean = s / valid;
    if (pVariance) {
      Wide s1 = 0, s2 = 0;
      for (std::ptrdiff_t i = 0; i < n; ++i) {
        if (isMissing(p[i])) continue;
        const Wide d = static_cast<Wide>(p[i]) - mean;
        s1 += d;
        s2 += d * d;
      }
      *pVariance = valid > 1 ? static_cast<double>((s2 - s1 * s1 / valid) / (valid - 1)) : 0.0;
    }
    return static_cast<double>(mean);
  });
}

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

}  // namespace zomath::kernels
