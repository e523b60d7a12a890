// Preparing curves: sorting, order tests, first differences, duplicates, grouping by x, missing
// values and the sorted copy of a curve that the peak finders work on.
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstring>

#include "core/nrvec/nrvec.h"
#include "curves/curve_reader.h"
#include "zomath/curves.h"
#include "zomath/sort.h"
#include "zomath/stats.h"
#include "zomath/vector.h"

static_assert(offsetof(CurveRecord, nSize) == 0 && offsetof(CurveRecord, pX) == 8 &&
                  offsetof(CurveRecord, pY) == 16 && offsetof(CurveRecord, nReserved) == 24 &&
                  sizeof(CurveRecord) == 32,
              "CurveRecord layout");

namespace {

using zomath::NRVec;

void* ascending() { return reinterpret_cast<void*>(&Compare_double_Ascend); }
void* descending() { return reinterpret_cast<void*>(&Compare_double_Descend); }

// Sorts x in place with y following; false when the sorter had no memory.
bool sort_pairs(double* pX, double* pY, int n, bool bAscending) {
  if (n < 2) return true;
  CQSort sorter(pX, n, sizeof(double), pY, sizeof(double), n);
  return sorter.Sort(0, n - 1, bAscending ? ascending() : descending()) != 0;
}

// The y statistic of a run of merged points, NANUM left out.
double run_statistic(const double* y, std::size_t count, int nMode, double* pWork) {
  std::size_t k = 0;
  for (std::size_t i = 0; i < count; ++i)
    if (y[i] != NANUM) pWork[k++] = y[i];
  if (k == 0) return NANUM;
  switch (nMode) {
    case 1: {
      // NaN sorts last: std::sort needs a strict weak order.
      std::sort(pWork, pWork + k, [](double a, double b) { return a < b || (b != b && a == a); });
      return k % 2 ? pWork[k / 2] : (pWork[k / 2 - 1] + pWork[k / 2]) * 0.5;
    }
    case 2:
      return *std::min_element(pWork, pWork + k);
    case 3:
      return *std::max_element(pWork, pWork + k);
    case 4: {
      double s = 0;
      for (std::size_t i = 0; i < k; ++i) s += pWork[i];
      return s;
    }
    default: {
      double s = 0;
      for (std::size_t i = 0; i < k; ++i) s += pWork[i];
      return s / static_cast<double>(k);
    }
  }
}

// The shared part of the two groupings: checks, the sort in the edges' direction, and the
// signed copy of the edges that lets one comparison serve both directions. Returns 0 or a code.
int prepare_groups(int nSize, double* pX, double* pY, int nEdges, const double* pEdges,
                   int* pLastIndices, NRVec<double>& edges) {
  if (nSize < 1 || nEdges < 1) return ZOMATH_ERR_SIZE;
  if (!pX || !pY || !pEdges || !pLastIndices) return ZOMATH_ERR_NULL_POINTER;
  double lo = pX[0], hi = pX[0], smallest = pEdges[0];
  for (int i = 1; i < nSize; ++i) {
    lo = std::min(lo, pX[i]);
    hi = std::max(hi, pX[i]);
  }
  for (int g = 1; g < nEdges; ++g) smallest = std::min(smallest, pEdges[g]);
  if (!(smallest >= lo && smallest <= hi)) return ZOMATH_CURVE_ERR_EDGE_OUTSIDE;
  const int order = zomath_is_monotonic(pEdges, static_cast<unsigned int>(nEdges), true);
  if (order == 0) return ZOMATH_CURVE_ERR_EDGE_ORDER;
  const bool rising = order == 2;
  if (!sort_pairs(pX, pY, nSize, rising)) return ZOMATH_ERR_NO_MEMORY;
  edges = NRVec<double>(pEdges, nEdges);
  if (!rising)
    for (int g = 0; g < nEdges; ++g) edges[g] = -edges[g];
  return rising ? 1 : -1;
}

}  // namespace

extern "C" {

void zomath_sort_xy(double* pX, double* pY, unsigned int nSize, bool bAscending) {
  if (!pX || !pY || nSize < 2 || nSize > static_cast<unsigned int>(INT_MAX)) return;
  sort_pairs(pX, pY, static_cast<int>(nSize), bAscending);
}

int zomath_is_monotonic(const double* p, unsigned int nSize, bool bStrict) {
  if (!p) return ZOMATH_ERR_NULL_POINTER;
  if (nSize == 0) return ZOMATH_ERR_SIZE;
  bool rising = true, falling = true;
  for (unsigned int i = 1; i < nSize && rising; ++i) rising = bStrict ? p[i - 1] < p[i] : p[i - 1] <= p[i];
  if (rising) return 2;
  for (unsigned int i = 1; i < nSize && falling; ++i) falling = bStrict ? p[i - 1] > p[i] : p[i - 1] >= p[i];
  return falling ? 1 : 0;
}

int zomath_mean_increment(unsigned int nSize, const double* pData, double* pMeans, int nSegments,
                          double* pSDs, int* pnCounts, unsigned int nUsed) {
  if (!pData || !pMeans) return ZOMATH_ERR_NULL_POINTER;
  if (nSize < 2 || nSegments < 1) return ZOMATH_ERR_TOO_FEW_POINTS;
  if (nUsed == 0 || nUsed >= nSize) nUsed = nSize;
  const unsigned int length = nUsed / static_cast<unsigned int>(nSegments);
  if (length < 2) return ZOMATH_ERR_TOO_FEW_FOR_RANGE;
  if (length > static_cast<unsigned int>(INT_MAX) || nUsed - (nSegments - 1) * length > static_cast<unsigned int>(INT_MAX))
    return ZOMATH_ERR_NO_MEMORY;
  try {
    const unsigned int longest = nUsed - (nSegments - 1) * length;
    NRVec<double> diff(static_cast<int>(longest - 1));
    for (int s = 0; s < nSegments; ++s) {
      const unsigned int first = s * length;
      const unsigned int count = s == nSegments - 1 ? nUsed - first : length;
      for (unsigned int i = 1; i < count; ++i)
        diff[static_cast<int>(i - 1)] = zomath::nanum_sub(pData[first + i], pData[first + i - 1]);
      double variance;
      int valid;
      pMeans[s] = zomath_d_mean_variance(diff.Data(), static_cast<int>(count - 1), &variance, &valid);
      if (pSDs) pSDs[s] = valid >= 2 ? std::sqrt(variance) : NANUM;
      if (pnCounts) pnCounts[s] = static_cast<int>(count);
    }
    return ZOMATH_OK;
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

int zomath_check_order(unsigned int nSize, const double* pData, double* pMeanInc,
                       double* pSDInc, int* pnCount, double dConfidence) {
  if (nSize < 2 || !(dConfidence >= 0 && dConfidence <= 1)) return ZOMATH_ERR_TOO_FEW_POINTS;
  double mean, sd;
  int count;
  if (const int code = zomath_mean_increment(nSize, pData, &mean, 1, &sd, &count, 0)) return code;
  if (pMeanInc) *pMeanInc = mean;
  if (pSDInc) *pSDInc = sd;
  if (pnCount) *pnCount = count;
  // A step that never changes decides by its sign (a NaN step by none); differences with a
  // NANUM are left out, as in the mean.
  int valid = 0;
  bool constant = true;
  double step = 0;
  for (unsigned int i = 1; i < nSize; ++i) {
    const double d = zomath::nanum_sub(pData[i], pData[i - 1]);
    if (d == NANUM) continue;
    if (valid++ == 0) {
      step = d;
    } else if (!(d == step)) {
      constant = false;
    }
  }
  if (valid == 0) return 0;
  if (constant) return step > 0 ? 2 : step < 0 ? 1 : 0;
  // Otherwise the mean step is judged by one-sided t tests against 0, rising first.
  const double alpha = 1 - dConfidence;
  for (const int tail : {TAILED_TEST_UPPER, TAILED_TEST_LOWER}) {
    double p;
    zomath_t_test_one_sample(valid, mean, sd, &p, 0, nullptr, nullptr, 0.0, tail);
    if (p != NANUM && p < alpha) return tail == TAILED_TEST_UPPER ? 2 : 1;
  }
  return 0;
}

int zomath_check_order_curve(unsigned int nSize, const double* pData, int nCurves,
                             double* pMeanInc, double* pSDInc, int* pnCounts) {
  if (nSize == 0 || nCurves < 1 || nSize / static_cast<unsigned int>(nCurves) < 2)
    return ZOMATH_ERR_TOO_FEW_ITEMS;
  if (!pData) return ZOMATH_ERR_NULL_OUTPUT;
  const unsigned int length = nSize / static_cast<unsigned int>(nCurves);
  int first = 0, last = 0;
  bool agree = true;
  for (int s = 0; s < nCurves; ++s) {
    const unsigned int begin = static_cast<unsigned int>(s) * length;
    const unsigned int count = s == nCurves - 1 ? nSize - begin : length;
    last = zomath_check_order(count, pData + begin, pMeanInc ? pMeanInc + s : nullptr,
                              pSDInc ? pSDInc + s : nullptr, pnCounts ? pnCounts + s : nullptr,
                              0.8);
    if (last < 0) return last;
    if (s == 0) first = last;
    agree = agree && last == first;
  }
  // Segments without order, like falling ones, answer 1.
  if (!agree) return 0;
  return last == 2 ? 2 : 1;
}

int zomath_check_order_multiple_curves(unsigned int nCurves, const CurveRecord* pCurves,
                                       int nSegments, double* pMeanInc, double* pSDInc,
                                       int* pnCounts) {
  if (nCurves < 2) return ZOMATH_ERR_TOO_FEW_ITEMS;
  if (!pCurves) return ZOMATH_ERR_NULL_OUTPUT;
  for (unsigned int c = 0; c < nCurves; ++c)
    if (!pCurves[c].pX || !pCurves[c].pY) return ZOMATH_ERR_NULL_OUTPUT;
  int first = 0;
  bool agree = true;
  for (unsigned int c = 0; c < nCurves; ++c) {
    // nSegments is at least 1 from the second curve on: the first call refuses anything less.
    const std::size_t at = static_cast<std::size_t>(c) * static_cast<std::size_t>(nSegments);
    const int r = zomath_check_order_curve(pCurves[c].nSize, pCurves[c].pX, nSegments,
                                           pMeanInc ? pMeanInc + at : nullptr,
                                           pSDInc ? pSDInc + at : nullptr,
                                           pnCounts ? pnCounts + at : nullptr);
    if (r < 0) return r;
    if (c == 0) first = r;
    agree = agree && r == first;
  }
  // Read the other way round from the segment test: 0 the curves share an order, 1 they
  // share having none, 2 they disagree.
  if (!agree) return 2;
  return first == 0 ? 1 : 0;
}

int zomath_xy_remove_duplicates(double* pX, double* pY, unsigned int nSize, int nMode,
                                double dTolerance, bool bSort, double* pDupX,
                                double* pDupCounts, int* pnDupGroups) {
  if (nMode >= 5) return ZOMATH_ERR_BAD_ARGUMENT;
  if (!pX || !pY) return ZOMATH_ERR_NULL_POINTER;
  if (nSize < 2 || nSize > static_cast<unsigned int>(INT_MAX)) return ZOMATH_ERR_BAD_ARGUMENT;
  if (pnDupGroups) *pnDupGroups = 0;
  if (!(dTolerance > 0)) dTolerance = 1e-08;
  if (bSort && !sort_pairs(pX, pY, static_cast<int>(nSize), true)) return ZOMATH_CURVE_ERR_SORT;
  try {
    NRVec<double> work(static_cast<int>(nSize));
    double lo = pX[0], hi = pX[0];
    for (unsigned int i = 1; i < nSize; ++i) {
      lo = std::min(lo, pX[i]);
      hi = std::max(hi, pX[i]);
    }
    const double threshold = (hi - lo) * dTolerance;
    auto apart = [&](unsigned int i) { return std::fabs(pX[i] - pX[i + 1]) > threshold; };
    unsigned int kept = 0, slot = 0, i = 0;
    while (i + 1 < nSize) {
      if (apart(i)) {
        pX[kept] = pX[i];
        pY[kept] = pY[i];
        ++kept;
        ++i;
        continue;
      }
      unsigned int j = i + 1;
      while (j + 1 < nSize && !apart(j)) ++j;
      const double x = pX[(i + j) >> 1];
      const double y = run_statistic(pY + i, j - i + 1, nMode, work.Data());
      if (pDupCounts) pDupCounts[slot] = j - i + 1;
      if (pDupX) {
        pDupX[slot++] = x;
        if (pnDupGroups) ++*pnDupGroups;
      }
      pX[kept] = x;
      pY[kept] = y;
      ++kept;
      i = j + 1;
    }
    if (i + 1 == nSize) {  // the last gap kept the last point apart
      pX[kept] = pX[i];
      pY[kept] = pY[i];
      ++kept;
    }
    return static_cast<int>(kept);
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

int zomath_group_xy_by_x(int nSize, double* pX, double* pY, int nEdges, const double* pEdges,
                         int* pLastIndices) {
  try {
    NRVec<double> edges;
    const int sign = prepare_groups(nSize, pX, pY, nEdges, pEdges, pLastIndices, edges);
    if (sign != 1 && sign != -1) return sign;
    int i = 0;
    for (int g = 0; g < nEdges; ++g) {
      while (i < nSize && sign * pX[i] <= edges[g]) ++i;
      pLastIndices[g] = i - 1;
    }
    return ZOMATH_OK;
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

int zomath_group_xy_by_x_new(int nSize, double* pX, double* pY, int nEdges, const double* pEdges,
                             int* pLastIndices) {
  try {
    NRVec<double> edges;
    const int sign = prepare_groups(nSize, pX, pY, nEdges, pEdges, pLastIndices, edges);
    if (sign != 1 && sign != -1) return sign;
    int i = 0, groups = 0;
    for (int g = 0; g < nEdges; ++g) {
      while (i < nSize && sign * pX[i] < edges[g]) ++i;
      const int last = i - 1;
      if (last != (groups ? pLastIndices[groups - 1] : -1)) pLastIndices[groups++] = last;
    }
    // The last group takes every point that no edge closed.
    if (groups == 0) groups = 1;
    pLastIndices[groups - 1] = nSize - 1;
    return groups;
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

int zomath_1d_remove_missingvalue(double* pX, double* pY, unsigned int nSize, double dMissing,
                                  int* pnIndices) {
  if (!pX || !pY || nSize == 0 || nSize > static_cast<unsigned int>(INT_MAX)) return -1;
  unsigned int kept = 0;
  for (unsigned int i = 0; i < nSize; ++i) {
    if (pX[i] == dMissing || pY[i] == dMissing) continue;
    pX[kept] = pX[i];
    pY[kept] = pY[i];
    if (pnIndices) pnIndices[kept] = static_cast<int>(i);
    ++kept;
  }
  return static_cast<int>(kept);
}

bool zomath_generate_data_for_non_monotonic(unsigned int nSize, const double* pX,
                                            const double* pY, double* pXOut, double* pYOut,
                                            int* pnIndices, bool bResample) {
  if (!pX || !pY || !pXOut || !pYOut || nSize == 0 || nSize > static_cast<unsigned int>(INT_MAX))
    return false;
  try {
    const int n = static_cast<int>(nSize);
    zomath::curves::SortedSource s;
    NRVec<unsigned int> order(n);
    if (!zomath::curves::copy_sorted(pX, pY, nullptr, nSize, s, order.Data())) return false;
    double first, last, step;
    const int inc = zomath_d_get_vector_inc(nSize, s.x.Data(), 1e-08, &first, &last, &step);
    const bool resample = bResample && inc != 1 && inc != -1;
    if (resample) {
      // Each x read back through the curve: a tied x takes the y its bisection meets.
      NRVec<double> read_y(n);
      zomath::curves::LinearReader read(s.x.Data(), s.y.Data(), nSize);
      for (int i = 0; i < n; ++i) read_y[i] = read(s.x[i]);
      std::memcpy(pYOut, read_y.Data(), nSize * sizeof(double));
    } else {
      std::memcpy(pYOut, s.y.Data(), nSize * sizeof(double));
    }
    std::memcpy(pXOut, s.x.Data(), nSize * sizeof(double));
    if (pnIndices)
      for (int i = 0; i < n; ++i) pnIndices[i] = static_cast<int>(order[i]);
    return resample;
  } catch (...) {
    return false;
  }
}

}  // extern "C"
