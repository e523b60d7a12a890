// The five-number summary exports: zomath_quantiles for one sample and the two row forms.
#include <algorithm>
#include <cstddef>
#include <vector>

#include "core/kernels.h"
#include "stats/percentiles.h"
#include "zomath/stats.h"

namespace zomath::stats {
namespace {

// Record layouts that hosts rely on.
static_assert(offsetof(QuantileOptions, bMin) == 4 && offsetof(QuantileOptions, bQ1) == 6 &&
              offsetof(QuantileOptions, bIMax) == 10 && offsetof(QuantileOptions, bRange) == 12 &&
              sizeof(QuantileOptions) == 16, "QuantileOptions layout");
static_assert(offsetof(QuantileResults, iMin) == 8 && offsetof(QuantileResults, Q1) == 16 &&
              offsetof(QuantileResults, Max) == 40 && offsetof(QuantileResults, iMax) == 48 &&
              offsetof(QuantileResults, IQR) == 56 && offsetof(QuantileResults, Range) == 64 &&
              sizeof(QuantileResults) == 72, "QuantileResults layout");

constexpr QuantileResults kStart = {NANUM, -1, NANUM, NANUM, NANUM, NANUM, -1, NANUM, NANUM};

bool known_rule(int rule) { return static_cast<unsigned int>(rule) <= INTERPOLATE_NONE; }

double difference(double hi, double lo) { return hi == NANUM || lo == NANUM ? NANUM : hi - lo; }

// Values of x[0..n) that are neither NANUM nor NaN.
std::size_t count_valid(const double* x, std::size_t n) {
  std::size_t k = 0;
  for (std::size_t i = 0; i < n; ++i) k += x[i] == x[i] && x[i] != NANUM;
  return k;
}

// zomath_quantiles after its checks. `callers` holds the caller's percents, read before
// anything is written, when both they and their outputs pOut were given (so that the two may
// be one array); otherwise it is empty and pOut null.
int quantiles(const double* x, int n, const QuantileOptions& o, QuantileResults& r,
              const std::vector<double>& callers, double* pOut, const double* w) {
  r = kStart;
  if (pOut) std::fill(pOut, pOut + callers.size(), NANUM);
  if (o.bMin || o.bIMin || o.bMax || o.bIMax || o.bRange) {
    RangeResults range;
    if (const int code = zomath_range(x, n, &range)) return code;
    if (o.bMin) r.Min = range.Min;
    if (o.bIMin) r.iMin = range.iMin;
    if (o.bMax) r.Max = range.Max;
    if (o.bIMax) r.iMax = range.iMax;
    if (o.bRange) r.Range = range.Range;
  }
  const bool lower = o.bQ1 || o.bIQR, upper = o.bQ3 || o.bIQR;
  std::vector<double> list;
  list.reserve(3 + callers.size());
  if (lower) list.push_back(25.0);
  if (o.bMedian) list.push_back(50.0);
  if (upper) list.push_back(75.0);
  list.insert(list.end(), callers.begin(), callers.end());
  if (list.empty()) return ZOMATH_OK;

  const SortedSample sample(x, static_cast<std::size_t>(n), w, list.data(), list.size(),
                            o.nInterpolate, o.nInterpolate == INTERPOLATE_NONE);
  // Tukey's hinges in place of the percentiles 25, 50, 75 when no definition applies and no
  // weight differs from 1.
  const bool hinges = o.nInterpolate == INTERPOLATE_NONE && sample.min_weight() == 1.0 &&
                      sample.max_weight() == 1.0;
  double five[5] = {NANUM, NANUM, NANUM, NANUM, NANUM};
  if (hinges && sample.size() > 0) five_numbers(sample.values(), sample.size(), five);
  std::size_t at = 0;
  auto next = [&](int hinge) {
    const double p = list[at++];
    return hinges ? five[hinge] : sample.percentile(p, o.nInterpolate);
  };
  const double q1 = lower ? next(1) : NANUM;
  if (o.bMedian) r.Median = next(2);
  const double q3 = upper ? next(3) : NANUM;
  if (o.bQ1) r.Q1 = q1;
  if (o.bQ3) r.Q3 = q3;
  if (o.bIQR) r.IQR = difference(q3, q1);
  for (std::size_t i = 0; pOut && i < callers.size(); ++i)
    pOut[i] = sample.percentile(list[at + i], o.nInterpolate);
  return ZOMATH_OK;
}

// The options that ask for exactly the non-null outputs of a row form.
QuantileOptions options_for(int rule, const double* pMin, const double* pMax, const double* pQ1,
                            const double* pMedian, const double* pQ3, const int* piMin = nullptr,
                            const int* piMax = nullptr, const double* pIQR = nullptr,
                            const double* pRange = nullptr) {
  QuantileOptions o{};
  o.nInterpolate = rule;
  o.bMin = pMin;
  o.bIMin = piMin;
  o.bQ1 = pQ1;
  o.bMedian = pMedian;
  o.bQ3 = pQ3;
  o.bMax = pMax;
  o.bIMax = piMax;
  o.bIQR = pIQR;
  o.bRange = pRange;
  return o;
}

template <class T>
void put(T* p, int row, T v) {
  if (p) p[row] = v;
}

}  // namespace
}  // namespace zomath::stats

using namespace zomath;
using namespace zomath::stats;

extern "C" {

int zomath_quantiles(const double* pData, int nSize, const QuantileOptions* pOptions,
                     QuantileResults* pResults, const double* pPercents, int nPercents,
                     double* pPercentiles, const double* pWeights) {
  auto fail = [&](int code) {
    if (pResults) *pResults = kStart;
    if (pPercentiles && nPercents > 0) std::fill(pPercentiles, pPercentiles + nPercents, NANUM);
    return code;
  };
  if (nSize == 0) return fail(ZOMATH_OK);
  if (nSize < 0) return fail(ZOMATH_ERR_NULL_DATA);
  if (pWeights)
    if (const int code = check_weights(pWeights, nSize)) return fail(code);
  if (!pData || !pOptions || !pResults) return fail(ZOMATH_ERR_EMPTY_DATA);
  if (!known_rule(pOptions->nInterpolate)) return fail(ZOMATH_ERR_OPTION);
  try {
    const bool list = pPercents && pPercentiles && nPercents > 0;
    const std::vector<double> callers = list ? std::vector<double>(pPercents, pPercents + nPercents)
                                             : std::vector<double>();
    if (!list && pPercentiles && nPercents > 0) std::fill(pPercentiles, pPercentiles + nPercents, NANUM);
    return quantiles(pData, nSize, *pOptions, *pResults, callers, list ? pPercentiles : nullptr,
                     pWeights);
  } catch (...) {
    return fail(ZOMATH_ERR_NO_MEMORY);
  }
}

int zomath_row_quantiles(int nRows, int nCols, const double* pMatrix, double* pMin, double* pMax,
                         double* pQ1, double* pMedian, double* pQ3, int nInterpolate) {
  if (!pMatrix) return ZOMATH_ERR_NULL_POINTER;
  if (nRows < 1 || nCols < 1) return ZOMATH_ERR_ROW_NULL;
  if (!known_rule(nInterpolate)) return ZOMATH_ERR_OPTION;
  const QuantileOptions o = options_for(nInterpolate, pMin, pMax, pQ1, pMedian, pQ3);
  const std::vector<double> none;
  NRVec<double> sorted;
  for (int r = 0; r < nRows; ++r) {
    const double* x = pMatrix + static_cast<std::size_t>(r) * nCols;
    double five[5] = {NANUM, NANUM, NANUM, NANUM, NANUM};
    try {
      kernels::sorted_values(x, nCols, sorted);
      const std::size_t valid = static_cast<std::size_t>(sorted.size());
      if (valid >= 5) {
        // Five or more values: Tukey's five numbers, whatever the definition.
        five_numbers(sorted.Data(), valid, five);
      } else if (valid > 0) {
        QuantileResults q;
        if (const int code = quantiles(x, nCols, o, q, none, nullptr, nullptr)) return code;
        five[0] = q.Min;
        five[1] = q.Q1;
        five[2] = q.Median;
        five[3] = q.Q3;
        five[4] = q.Max;
      }
    } catch (...) {
      return ZOMATH_STATS_ERR_ROW_FETCH;
    }
    put(pMin, r, five[0]);
    put(pQ1, r, five[1]);
    put(pMedian, r, five[2]);
    put(pQ3, r, five[3]);
    put(pMax, r, five[4]);
  }
  return ZOMATH_OK;
}

int zomath_row_quantiles_ex(int nRows, int nCols, const double* pMatrix, double* pMin,
                            double* pMax, double* pQ1, double* pMedian, double* pQ3, int* piMin,
                            int* piMax, double* pIQR, double* pRange, const double* pPercents,
                            int nPercents, double* pPercentiles, int nInterpolate) {
  if (!pMatrix) return ZOMATH_ERR_NULL_POINTER;
  if (nRows < 1 || nCols < 1) return ZOMATH_ERR_ROW_NULL;
  if ((!pPercents && pPercentiles) || (pPercents && nPercents < 1)) return ZOMATH_STATS_ERR_PERCENT_ARGS;
  if (!known_rule(nInterpolate)) return ZOMATH_ERR_OPTION;
  const QuantileOptions o =
      options_for(nInterpolate, pMin, pMax, pQ1, pMedian, pQ3, piMin, piMax, pIQR, pRange);
  const bool list = pPercents && pPercentiles;
  std::vector<double> callers;
  try {
    if (list) callers.assign(pPercents, pPercents + nPercents);
  } catch (...) {
    return ZOMATH_STATS_ERR_ROW_FETCH;
  }
  for (int r = 0; r < nRows; ++r) {
    const double* x = pMatrix + static_cast<std::size_t>(r) * nCols;
    double* out = list ? pPercentiles + static_cast<std::size_t>(r) * nPercents : nullptr;
    QuantileResults q = kStart;
    if (count_valid(x, nCols) == 0) {
      q.iMin = q.iMax = 0;
      if (out) std::fill(out, out + nPercents, NANUM);
    } else {
      try {
        if (const int code = quantiles(x, nCols, o, q, callers, out, nullptr)) return code;
      } catch (...) {
        return ZOMATH_STATS_ERR_ROW_FETCH;
      }
    }
    put(pMin, r, q.Min);
    put(pMax, r, q.Max);
    put(pQ1, r, q.Q1);
    put(pMedian, r, q.Median);
    put(pQ3, r, q.Q3);
    put(piMin, r, q.iMin);
    put(piMax, r, q.iMax);
    put(pIQR, r, q.IQR);
    put(pRange, r, q.Range);
  }
  return ZOMATH_OK;
}

}  // extern "C"
