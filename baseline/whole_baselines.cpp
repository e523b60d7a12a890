// Whole baselines: the curve with its peaks masked and the wide holes bridged, a line through
// quiet points near both ends, and the line through the two end points.
#include <algorithm>
#include <climits>
#include <cmath>

#include "baseline/baseline_internal.h"
#include "core/nrvec/nrvec.h"
#include "zomath/baseline.h"
#include "zomath/curves.h"
#include "zomath/peaks.h"
#include "zomath/vector.h"

namespace zomath::baseline {
namespace {

// Reads the straight line through (x0, y0) and (x1, y1) at the n values of pAt into pOut.
int line_between(double x0, double y0, double x1, double y1, const double* pAt, double* pOut,
                 unsigned int n) {
  const double sx[2] = {x0, x1}, sy[2] = {y0, y1};
  return zomath_interpolate(pAt, pOut, n, sx, sy, 2, ZOMATH_INTERP_LINEAR, 0, nullptr, nullptr,
                            0, 0);
}

// Window of the peak partitions: 25 noise levels in units of half a percent of the y range.
int partition_window(unsigned int nSize, const double* pY) {
  unsigned int lo = 0, hi = 0;
  double range = 0;
  if (zomath_d_minmax(pY, 0, nSize - 1, &lo, &hi) < static_cast<int>(nSize) &&
      lo != static_cast<unsigned int>(-1))
    range = std::fabs(pY[hi] - pY[lo]);
  if (range == 0 || !std::isfinite(range)) range = 1.0;
  const double noise = zomath_get_noise_level(nSize, pY);
  if (noise == NANUM || !std::isfinite(noise)) return 0;
  const double w = std::trunc(25 * noise / (0.005 * range));
  return w < INT_MAX ? static_cast<int>(w) : INT_MAX;
}


}  // namespace
}  // namespace zomath::baseline

using namespace zomath;
using namespace zomath::baseline;

extern "C" {

int zomath_create_baseline_by_masking_peaks(unsigned int nSize, const double* pX,
                                            const double* pY, unsigned int nBaseSize,
                                            double* pBaseX, double* pBaseY, int nFlags) {
  if (!pX || !pY || !pBaseX || !pBaseY) return ZOMATH_ERR_NULL_POINTER;
  if (nSize == 0 || nSize > static_cast<unsigned int>(INT_MAX) || nBaseSize != nSize)
    return ZOMATH_ERR_BAD_ARGUMENT;
  const int n = static_cast<int>(nSize);
  try {
    const int w = partition_window(nSize, pY);
    NRVec<double> px(n), py(n);
    NRVec<int> pidx(n);
    int np = n;
    const int rc = zomath_find_peaks_1st_derivative(&np, pX, pY, px.Data(), py.Data(),
                                                    pidx.Data(), nFlags, false, 0, 0);
    if (rc != 0) return rc;
    std::copy(pX, pX + n, pBaseX);
    if (pBaseY != pY) std::copy(pY, pY + n, pBaseY);
    if (np == 0) return ZOMATH_OK;

    // Peaks in order of x, each masked over its stretch between inflections, doubled.
    NRVec<int> order(np);
    for (int k = 0; k < np; ++k) order[k] = k;
    std::stable_sort(order.Data(), order.Data() + np,
                     [&](int a, int b) { return px[a] < px[b]; });
    NRVec<double> sortedX(np);
    for (int k = 0; k < np; ++k) sortedX[k] = px[order[k]];
    NRVec<int> left(np), right(np);
    partitions(nSize, pX, pY, sortedX.Data(), np, w, left.Data(), right.Data());
    NRVec<int> cover(n + 1);  // difference array of the masked stretches
    for (int k = 0; k <= n; ++k) cover[k] = 0;
    for (int k = 0; k < np; ++k) {
      if (left[k] < 0) continue;  // its partition failed
      // The inflections below and above in x, taken in index order (on falling x the one below
      // comes later).
      const long long lo = std::min(left[k], right[k]), hi = std::max(left[k], right[k]);
      const long long mid = (lo + hi) / 2;
      const long long a = std::max(0LL, 2 * lo - mid);
      const long long b = std::min<long long>(n - 1, 2 * hi - mid);
      if (b - a < 2) continue;
      ++cover[a + 1];
      --cover[b];
    }

    // Walk the kept points; a hole of at least a tenth of the data is bridged. The first and
    // the last point are never masked, so every hole has a point on either side.
    const int wide = n / 10;
    int depth = 0, prev = -1;
    for (int i = 0; i < n; ++i) {
      depth += cover[i];
      if (depth > 0) continue;
      if (prev >= 0 && i - prev > 1 && i - prev >= wide) {
        const int r = line_between(pX[prev], pY[prev], pX[i], pY[i], pX + prev + 1,
                                   pBaseY + prev + 1, static_cast<unsigned int>(i - prev - 1));
        if (r != 0) return r;
      }
      prev = i;
    }
    return ZOMATH_OK;
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

int zomath_create_baseline_end_weighted_linear(unsigned int nSize, const double* pX,
                                               const double* pY, unsigned int nBaseSize,
                                               double* pBaseX, double* pBaseY,
                                               double dEndFraction, int nSmoothMethod,
                                               double dSmoothFraction) {
  if (!pX || !pY || !pBaseX || !pBaseY) return ZOMATH_ERR_NULL_POINTER;
  if (nSize < 5 || nBaseSize < 2) return ZOMATH_ERR_TOO_FEW_ITEMS;
  if (nSize > static_cast<unsigned int>(INT_MAX) || !(dEndFraction > 0 && dEndFraction <= 0.5) ||
      !(dSmoothFraction >= 0 && dSmoothFraction <= 1))
    return ZOMATH_ERR_BAD_ARGUMENT;
  const int n = static_cast<int>(nSize);
  const int e = static_cast<int>(n * dEndFraction);
  if (e <= 0) return ZOMATH_ERR_BAD_ARGUMENT;
  unsigned int iMin = 0, iMax = 0;
  const int missing = zomath_d_minmax(pX, 0, nSize - 1, &iMin, &iMax);
  if (missing != 0) return missing;
  const double xMin = pX[iMin], xMax = pX[iMax];
  try {
    // The sample: the first e + 1 and the last e points, or the whole curve.
    const int m = std::min(2 * e + 1, n);
    NRVec<double> sx(m), sy(m), smooth(m);
    for (int j = 0; j < m; ++j) {
      const int i = (m < n && j > e) ? n - m + j : j;
      sx[j] = pX[i];
      sy[j] = pY[i];
    }
    int w = static_cast<int>(m * dSmoothFraction);
    if (w == 0) w = 1;
    int half = (w - 1) / 2;
    if (nSmoothMethod == ZOMATH_SMOOTH_SAVITZKY_GOLAY) half = std::max(half, 1);
    // Only points w and more from the ends of the sample are tested, and their windows lie
    // inside it, so Savitzky-Golay is needed there alone.
    if (nSmoothMethod != ZOMATH_SMOOTH_SAVITZKY_GOLAY ||
        !quadratic_smooth_interior(sy.Data(), smooth.Data(), m, half)) {
      const int rc = zomath_smooth(m, sy.Data(), smooth.Data(), half, nSmoothMethod,
                                   ZOMATH_BOUNDARY_NONE, -1, 2, 0, 50, false, false);
      if (rc != 0) return rc;
    }

    const QuietRuns runs = quiet_runs(sy.Data(), smooth.Data(), m, w);
    NRVec<double> qx(runs.count > 0 ? runs.count : 2), qy(qx.size());
    if (runs.count > 0) {
      for (int k = 0; k < runs.count; ++k) {
        qx[k] = sx[runs.index[k]];
        qy[k] = sy[runs.index[k]];
      }
    } else {
      qx[0] = sx[0];
      qy[0] = sy[0];
      qx[1] = sx[m - 1];
      qy[1] = sy[m - 1];
    }
    const double step = (xMax - xMin) / (nBaseSize - 1);
    for (unsigned int k = 0; k + 1 < nBaseSize; ++k) pBaseX[k] = xMin + k * step;
    pBaseX[nBaseSize - 1] = xMax;
    return zomath_interpolate(pBaseX, pBaseY, nBaseSize, qx.Data(), qy.Data(),
                              static_cast<unsigned int>(qx.size()), ZOMATH_INTERP_LINEAR, 0,
                              nullptr, nullptr, 0, 0);
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

int zomath_init_baseline_by_connect_ends(unsigned int nSize, const double* pX, const double* pY,
                                         unsigned int nBaseSize, double* pBaseX,
                                         double* pBaseY) {
  if (!pX || !pY || !pBaseX || !pBaseY) return ZOMATH_ERR_NULL_POINTER;
  if (nSize == 0 || nBaseSize == 0) return ZOMATH_ERR_BAD_ARGUMENT;
  const double x0 = pX[0], y0 = pY[0];
  const double x1 = nSize > 1 ? pX[nSize - 1] : x0, y1 = nSize > 1 ? pY[nSize - 1] : y0;
  const bool xGone = x0 == NANUM || x1 == NANUM, yGone = y0 == NANUM || y1 == NANUM;
  // The line read at evenly spaced x, by the fraction of the way along, so that equal end x
  // need no division and the last point is the last input point.
  const double step = nBaseSize > 1 ? (x1 - x0) / (nBaseSize - 1) : 0;
  for (unsigned int k = 0; k < nBaseSize; ++k) {
    const bool last = k + 1 == nBaseSize && nBaseSize > 1;
    const double t = nBaseSize > 1 ? static_cast<double>(k) / (nBaseSize - 1) : 0;
    pBaseX[k] = xGone ? NANUM : last ? x1 : x0 + k * step;
    pBaseY[k] = yGone ? NANUM : last ? y1 : y0 + (y1 - y0) * t;
  }
  return ZOMATH_OK;
}

}  // extern "C"
