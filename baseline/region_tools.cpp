// Tools for a baseline built by hand: where peaks leave and rejoin it, one straight line a
// region, and the cut of a curve into segments of small variance.
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>

#include "core/nrvec/nrvec.h"
#include "zomath/baseline.h"
#include "zomath/regression.h"

static_assert(offsetof(BaseRegionFit, nStart) == 0 && offsetof(BaseRegionFit, nEnd) == 4 &&
                  offsetof(BaseRegionFit, dIntercept) == 8 && offsetof(BaseRegionFit, dSlope) == 16 &&
                  offsetof(BaseRegionFit, dInterceptError) == 24 &&
                  offsetof(BaseRegionFit, dSlopeError) == 32 && offsetof(BaseRegionFit, dR) == 40 &&
                  offsetof(BaseRegionFit, dAdjRSquare) == 48 && sizeof(BaseRegionFit) == 56,
              "BaseRegionFit");

using namespace zomath;

extern "C" {

int zomath_make_base_markers(int* pMarkers, double* pMarkerX, double* pMarkerY, int nMarkers,
                             const int* pPeakIdx, int nPeaks, const double* pX, const double* pY,
                             const double* pRef, const double* pBase, int nSize) {
  if (!pMarkers || !pMarkerX || !pMarkerY || !pPeakIdx || !pX || !pY || !pRef || !pBase)
    return ZOMATH_ERR_NULL_POINTER;
  if (nPeaks < 0 || nPeaks > INT_MAX / 2 || nMarkers != 2 * nPeaks) return ZOMATH_BASE_ERR_MARKERS;
  if (nPeaks == 0) return ZOMATH_OK;
  if (nSize < 1) return ZOMATH_BASE_ERR_INDEX;
  for (int g = 0; g < nPeaks; ++g)
    if (pPeakIdx[g] < 0 || pPeakIdx[g] >= nSize) return ZOMATH_BASE_ERR_INDEX;
  double steps = 0;
  for (int i = 0; i + 1 < nSize; ++i) steps += std::fabs(pRef[i + 1] - pRef[i]);
  const double t = 0.5 * steps / nSize;
  // A point stands off the baseline while |y - base| exceeds t (a NaN difference does not).
  const auto off = [&](int k) { return std::fabs(pY[k] - pBase[k]) > t; };
  for (int g = 0; g < nPeaks; ++g) {
    int a = pPeakIdx[g], b = a;
    while (a > 0 && off(a)) --a;
    while (b < nSize - 1 && off(b)) ++b;
    pMarkers[2 * g] = a;
    pMarkers[2 * g + 1] = b;
    pMarkerX[2 * g] = pX[a];
    pMarkerX[2 * g + 1] = pX[b];
    pMarkerY[2 * g] = pY[a];
    pMarkerY[2 * g + 1] = pY[b];
  }
  return ZOMATH_OK;
}

int zomath_fit_linear_multi_regions(unsigned int nSize, const double* pX, const double* pY,
                                    unsigned int nRegions, const int* pStarts, const int* pEnds,
                                    BaseRegionFit* pFits) {
  if (!pX || !pY || !pStarts || !pEnds || !pFits) return ZOMATH_ERR_NULL_POINTER;
  if (nSize > static_cast<unsigned int>(INT_MAX)) return ZOMATH_ERR_BAD_ARGUMENT;
  const int n = static_cast<int>(nSize);
  for (unsigned int k = 0; k < nRegions; ++k) {
    const int a = pStarts[k], b = pEnds[k];
    if (static_cast<long long>(b) - a < 2) continue;  // too short to fit: left as it was
    if (a < 0 || b >= n) return ZOMATH_ERR_BAD_ARGUMENT;
    FitParameter fit[2];
    FitStats stats;
    const int rc = zomath_linear_fit(pX + a, pY + a, b - a + 1, fit, nullptr, 0, nullptr,
                                     &stats, nullptr, nullptr, nullptr, nullptr, 0, 0);
    if (rc != 0) return rc;
    pFits[k] = BaseRegionFit{a,           b,           fit[0].value, fit[1].value,
                             fit[0].Error, fit[1].Error, stats.R,      stats.AdjRSquare};
  }
  return ZOMATH_OK;
}

int zomath_cut_to_segments_by_height(unsigned int nSize, const double* pX, const double* pY,
                                     double dVariance, int nMaxSegments, int* pnCounts,
                                     double* pMeans) {
  if (!pX || !pY || !pnCounts) return ZOMATH_ERR_NULL_POINTER;
  if (nSize < 2 || nSize > static_cast<unsigned int>(INT_MAX) || !(dVariance >= 0))
    return ZOMATH_ERR_BAD_ARGUMENT;
  const int n = static_cast<int>(nSize);
  try {
    // y in order of x (ties in input order).
    NRVec<int> order(n);
    for (int i = 0; i < n; ++i) order[i] = i;
    std::stable_sort(order.Data(), order.Data() + n, [&](int a, int b) { return pX[a] < pX[b]; });
    // Running mean and sum of squared deviations (Welford): the variance that the sums of y and
    // y^2 define, without their cancellation on data far from 0.
    int segments = 0, count = 1;
    double mean = pY[order[0]], m2 = 0;
    const auto close = [&](int c, double m) {
      if (segments >= nMaxSegments) return false;
      pnCounts[segments] = c;
      if (pMeans) pMeans[segments] = m;
      ++segments;
      return true;
    };
    for (int k = 1; k < n; ++k) {
      const double y = pY[order[k]];
      const double delta = y - mean;
      const double nextMean = mean + delta / (count + 1);
      const double nextM2 = m2 + delta * (y - nextMean);
      if (nextM2 / count > dVariance) {
        if (!close(count, mean)) return ZOMATH_ERR_BAD_ARGUMENT;
        count = 1;
        mean = y;
        m2 = 0;
      } else {
        ++count;
        mean = nextMean;
        m2 = nextM2;
      }
    }
    if (!close(count, mean)) return ZOMATH_ERR_BAD_ARGUMENT;
    return segments;
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

}  // extern "C"
