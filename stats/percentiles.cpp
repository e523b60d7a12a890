// The percentile rules, the sorted sample they read, and the percentile exports:
// zomath_percentiles and zomath_percentiles_distribution.
#include "stats/percentiles.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>

#include "core/kernels.h"
#include "platform/hinges.h"
#include "platform/utility.h"
#include "zomath/stats.h"
#include "zomath/vector.h"

namespace zomath::stats {
namespace {

bool in_percent_range(double p) { return p >= 0 && p <= 100; }

// (a + b) / 2, rounded once and free of overflow.
double mean_of(double a, double b) {
  return static_cast<double>((static_cast<long double>(a) + b) / 2);
}

// (1 - g) a + g b, rounded once. g = 0 and a = b give a itself, also for infinite a.
double between(double a, double b, long double g) {
  if (g == 0 || a == b) return a;
  return static_cast<double>((1 - g) * a + g * b);
}

template <class T>
std::unique_ptr<T[]> block(std::size_t n) {
  std::unique_ptr<T[]> p(new (std::nothrow) T[n ? n : 1]);
  if (!p) throw ZOMATH_ERROR_NO_MEMORY;
  return p;
}

}  // namespace

double percentile_of_sorted(const double* x, std::size_t n, double percent, int rule) {
  if (n == 0 || !in_percent_range(percent)) return NANUM;
  // q = (p n) / 100 in this order, in long double: p n is exact for any n below 2^11 and the
  // ties g = 0 and g = 0.5 are those of the exact quotient for the percents a caller writes.
  const long double count = static_cast<long double>(n) + (rule == INTERPOLATE_WEIGHT_AVER_RIGHT);
  const long double q = static_cast<long double>(percent) * count / 100;
  const long double whole = std::floor(q);
  if (whole < 1) return x[0];
  if (whole >= static_cast<long double>(n)) return x[n - 1];
  const long double g = q - whole;
  const std::size_t k = static_cast<std::size_t>(whole);  // 1 <= k < n: x(k) is x[k - 1]
  const double a = x[k - 1], b = x[k];
  switch (rule) {
    case INTERPOLATE_EDF_AVER: return g > 0 ? b : mean_of(a, b);
    case INTERPOLATE_NEAREST_NEIGHBOR:
      if (g != 0.5L) return g < 0.5L ? a : b;
      return k % 2 ? b : a;  // the even-numbered of x(k) and x(k + 1)
    case INTERPOLATE_EDF: return g > 0 ? b : a;
    case INTERPOLATE_WEIGHT_AVER_RIGHT:
    case INTERPOLATE_WEIGHT_AVER_LEFT: return between(a, b, g);
    default: return NANUM;
  }
}

double weighted_percentile_of_sorted(const double* x, const long double* c, std::size_t n,
                                     double percent) {
  if (n == 0 || !in_percent_range(percent)) return NANUM;
  // c[n - 1] p is exact for p <= 100, so T never exceeds c[n - 1].
  const long double t = c[n - 1] * percent / 100;
  std::size_t lo = 0, hi = n;
  // hi < n only where t < c[hi], so every step either answers or narrows [lo, hi); the bound
  // on the steps only guards against sums that are not ordered.
  for (int step = 0; lo < hi && step < 130; ++step) {
    const std::size_t mid = (lo + hi) / 2;
    if (t == c[mid]) return mid + 1 < n ? mean_of(x[mid], x[mid + 1]) : x[mid];
    if (t < c[mid]) {
      if (mid == 0 || c[mid - 1] < t) return x[mid];
      hi = mid;
    } else {
      if (mid + 1 >= n) return x[mid];
      if (t < c[mid + 1]) return x[mid + 1];
      lo = mid;
    }
  }
  return NANUM;
}

void five_numbers_by_depth(const double* x, std::size_t n, double out[5]) {
  // 1-based positions as the rule states them; x(i) is x[i - 1].
  const std::size_t h = (n + n % 2) / 2;
  const std::size_t d = (h + h % 2) / 2;
  out[0] = x[0];
  out[2] = n % 2 ? x[h - 1] : mean_of(x[h - 1], x[h]);
  if (h % 2) {
    out[1] = x[d - 1];
    out[3] = x[n - d];
  } else {
    out[1] = mean_of(x[d - 1], x[d]);
    out[3] = mean_of(x[n - d - 1], x[n - d]);
  }
  out[4] = x[n - 1];
}

void five_numbers(const double* x, std::size_t n, double out[5]) {
  if (n < 5) return five_numbers_by_depth(x, n, out);
  platform::NagError err;
  platform::five_number_summary(x, n, out, err);
}

int check_weights(const double* w, int n) {
  for (int i = 0; i < n; ++i) {
    const double v = w[i];
    if (v != NANUM && (!(v >= 0) || std::isinf(v)))
      return ZOMATH_STATS_ERR_NEGATIVE_WEIGHT;
  }
  return ZOMATH_OK;
}

SortedSample::SortedSample(const double* x, std::size_t n, const double* w) {
  auto valid = [](double v) { return v == v && v != NANUM; };
  if (!w) {
    kernels::sorted_values(x, n, values_);
    return;
  }
  // The weights of the valid points: their extremes, and whether a point drops out for its
  // weight alone.
  std::size_t count = 0, weightMissing = 0;
  double lo = 1.0, hi = 1.0;
  for (std::size_t i = 0; i < n; ++i) {
    if (!valid(x[i])) continue;
    if (w[i] == NANUM) {
      ++weightMissing;
      continue;
    }
    const double wi = w[i] < 0 ? 0.0 : w[i];
    lo = count ? std::min(lo, wi) : wi;
    hi = count ? std::max(hi, wi) : wi;
    ++count;
  }
  minWeight_ = lo;
  maxWeight_ = hi;
  weighted_ = lo != hi;
  if (!weighted_) {
    if (weightMissing == 0) {
      kernels::sorted_values(x, n, values_);
    } else {
      const std::unique_ptr<double[]> kept = block<double>(count);
      std::size_t k = 0;
      for (std::size_t i = 0; i < n; ++i)
        if (valid(x[i]) && w[i] != NANUM) kept[k++] = x[i];
      kernels::sorted_values(kept.get(), count, values_);
    }
    return;
  }
  // Pairs sorted by value; the order among equal values moves no percentile, since a search
  // that stops inside a run of equal values answers that value.
  struct Pair {
    double x, w;
  };
  const std::unique_ptr<Pair[]> pairs = block<Pair>(count);
  std::size_t k = 0;
  for (std::size_t i = 0; i < n; ++i)
    if (valid(x[i]) && w[i] != NANUM) pairs[k++] = {x[i], w[i] < 0 ? 0.0 : w[i]};
  std::sort(pairs.get(), pairs.get() + count, [](const Pair& a, const Pair& b) { return a.x < b.x; });
  values_.SetSize(static_cast<int>(count));
  cumulative_ = block<long double>(count);
  long double sum = 0;
  for (std::size_t i = 0; i < count; ++i) {
    values_[static_cast<int>(i)] = pairs[i].x;
    cumulative_[i] = sum += pairs[i].w;
  }
}

double SortedSample::percentile(double percent, int rule) const {
  if (weighted_) return weighted_percentile_of_sorted(values_.Data(), cumulative_.get(), size(), percent);
  return percentile_of_sorted(values_.Data(), size(), percent, rule);
}

}  // namespace zomath::stats

using namespace zomath;
using namespace zomath::stats;

extern "C" {

int zomath_percentiles(const double* pData, int nSize, const double* pPercents, int nPercents,
                       double* pPercentiles, int nInterpolate, const double* pWeights) {
  // The outputs are NANUM on every failure; on success each percent is read before its slot
  // is written, so the percents may be overwritten in place.
  auto fail = [&](int code) {
    if (pPercentiles && nPercents > 0) std::fill(pPercentiles, pPercentiles + nPercents, NANUM);
    return code;
  };
  if (nSize <= 0 || nPercents <= 0) return fail(ZOMATH_ERR_NULL_DATA);
  if (!pData || !pPercents || !pPercentiles) return fail(ZOMATH_ERR_EMPTY_DATA);
  if (static_cast<unsigned int>(nInterpolate) > INTERPOLATE_NONE) return fail(ZOMATH_ERR_OPTION);
  if (pWeights)
    if (const int code = check_weights(pWeights, nSize)) return fail(code);
  try {
    const SortedSample sample(pData, static_cast<std::size_t>(nSize), pWeights);
    for (int i = 0; i < nPercents; ++i) pPercentiles[i] = sample.percentile(pPercents[i], nInterpolate);
  } catch (...) {
    return fail(ZOMATH_ERR_NO_MEMORY);
  }
  return ZOMATH_OK;
}

int zomath_percentiles_distribution(int nSize, const double* pX, const double* pY,
                                    const double* pPercents, int nPercents,
                                    double* pPercentiles, int* pIndices) {
  auto fail = [&](int code) {
    for (int i = 0; i < nPercents; ++i) {
      if (pPercentiles) pPercentiles[i] = NANUM;
      if (pIndices) pIndices[i] = -1;
    }
    return code;
  };
  if (!pX || !pY || !pPercents) return fail(ZOMATH_ERR_EMPTY_DATA);
  if (nSize < 3) return fail(ZOMATH_ERR_DENSITY_PARAM);
  if (nPercents <= 0) return fail(ZOMATH_ERR_NULL_DATA);
  for (int i = 0; i < nSize; ++i) {
    const bool finite = std::isfinite(pX[i]) && std::isfinite(pY[i]) && pX[i] != NANUM;
    if (!finite || !(pY[i] >= 0) || (i > 0 && !(pX[i] > pX[i - 1])))
      return fail(ZOMATH_ERR_DISTRIBUTION_TABLE);
  }
  NRVec<double> area;
  try {
    area.SetSize(nSize);
  } catch (...) {
    return fail(ZOMATH_ERR_NO_MEMORY);
  }
  double total;
  if (const int code = zomath_integrate(nSize, pX, pY, &total, area.Data())) return fail(code);
  const int last = nSize - 1;
  using platform::compare_doubles;
  for (int i = 0; i < nPercents; ++i) {
    const double f = pPercents[i];
    double x = NANUM;
    int index = 0;
    if (!(f > 0 && f < 1)) {
      // At or beyond the ends: the ends themselves to the library's tolerance, else nothing.
      if (compare_doubles(f, 0.0, '=')) {
        x = pX[0];
      } else if (compare_doubles(f, 1.0, '=')) {
        x = pX[last];
        index = last;
      }
    } else {
      // Bisection for the interval [A(lo), A(hi)) that holds T, then the line through it.
      const double t = f * area[last];
      int lo = 0, hi = last;
      while (hi - lo > 1) {
        const int mid = (lo + hi) / 2;
        (t < area[mid] ? hi : lo) = mid;
      }
      const double a0 = area[lo], a1 = area[hi];
      x = compare_doubles(t, a0, '=') || a1 == a0
              ? pX[lo]
              : pX[lo] + (pX[hi] - pX[lo]) * ((t - a0) / (a1 - a0));
      index = lo;
    }
    if (pPercentiles) pPercentiles[i] = x;
    if (pIndices) pIndices[i] = index;
  }
  return ZOMATH_OK;
}

}  // extern "C"
