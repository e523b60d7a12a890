// Peaks as the extremes of sliding windows: a window of points, and a window of x width with a
// minimum rise.
#include <algorithm>
#include <climits>
#include <cmath>

#include "curves/curves_internal.h"
#include "peaks/peaks_internal.h"
#include "zomath/peaks.h"
#include "zomath/vector.h"

namespace zomath::peaks {
namespace {

// Centres i = first..last with windows i - r(i) .. i + r(i). A centre that is the first maximum
// of its window is a positive peak, else one that is the first minimum a negative peak, when its
// sign allows; accept(i, r) adds a further condition.
template <class Radius, class Accept>
bool scan(const double* x, const double* y, int first, int last, int flags, bool signTest,
          Radius radius, Accept accept, PeakList& out) {
  const bool wantMax = flags & ZOMATH_PEAK_POSITIVE, wantMin = flags & ZOMATH_PEAK_NEGATIVE;
  const bool anySign = !signTest || (flags & ZOMATH_PEAK_ANY_SIGN);
  if (!wantMax && !wantMin) return true;
  for (int i = first; i <= last; ++i) {
    const double v = y[i];
    if (absent(v) || absent(x[i])) continue;
    const int r = radius(i);
    const bool positive = wantMax && (anySign || v > 0) && first_extreme(y, i, r, true);
    if (!positive && !(wantMin && (anySign || v < 0) && first_extreme(y, i, r, false))) continue;
    if (accept(i, r) && !out.add(x[i], v, i)) return false;
  }
  return true;
}

int window_finder(int* pnSize, const double* pX, const double* pY, double* pPeakX,
                  double* pPeakY, int* pPeakIdx, int nFlags, int nHalf, bool bSignAndMap) {
  if (!pnSize || !pX || !pY || !pPeakX || !pPeakY) return ZOMATH_ERR_NULL_POINTER;
  const int n = *pnSize;
  if (n < 1 || nHalf < 0 || 2LL * nHalf + 1 >= n) return ZOMATH_ERR_BAD_ARGUMENT;
  try {
    Curve c;
    prepare(c, pX, pY, n);
    Output o(pPeakX, pPeakY, pPeakIdx, n);
    const auto radius = [nHalf](int) { return nHalf; };
    const auto any = [](int, int) { return true; };
    if (!scan(c.x, c.y, nHalf, n - nHalf - 1, nFlags, bSignAndMap, radius, any, o.list))
      return ZOMATH_PEAK_ERR_COUNT;
    if (bSignAndMap) map_back(c, o.list);
    *pnSize = o.list.count;
    return ZOMATH_OK;
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

}  // namespace
}  // namespace zomath::peaks

using namespace zomath;
using namespace zomath::peaks;

extern "C" {

int zomath_find_peaks_by_local_maximum(int* pnSize, const double* pX, const double* pY,
                                       double* pPeakX, double* pPeakY, int* pPeakIdx, int nFlags,
                                       int nHalf) {
  return window_finder(pnSize, pX, pY, pPeakX, pPeakY, pPeakIdx, nFlags, nHalf, true);
}

int zomath_find_local_extremes(int* pnSize, const double* pX, const double* pY, double* pPeakX,
                               double* pPeakY, int* pPeakIdx, int nFlags, int nHalf) {
  return window_finder(pnSize, pX, pY, pPeakX, pPeakY, pPeakIdx, nFlags, nHalf, false);
}

int zomath_find_peaks_by_search_window(int* pnSize, const double* pX, const double* pY,
                                       double* pPeakX, double* pPeakY, int* pPeakIdx, int nFlags,
                                       double dWidth, double dMinHeight) {
  if (!pnSize || !pX || !pY || !pPeakX || !pPeakY) return ZOMATH_ERR_NULL_POINTER;
  const int n = *pnSize;
  if (n < 3 || !(dWidth >= 0) || std::isnan(dMinHeight)) return ZOMATH_ERR_BAD_ARGUMENT;
  try {
    Curve c;
    NRVec<double> gridX, gridY;
    double first, last, step;
    const int inc = zomath_d_get_vector_inc(static_cast<unsigned int>(n), pX, 1e-08, &first,
                                            &last, &step);
    const bool resample = inc == 2 || inc == -2;
    if (inc == 1 || inc == -1) {
      c.x = pX;
      c.y = pY;
      c.n = n;
    } else if (resample) {
      // Uneven steps: the curve read linearly on n evenly spaced x from the first to the last.
      first = pX[0];
      last = pX[n - 1];
      step = (last - first) / (n - 1);
      gridX.SetSize(n);
      gridY.SetSize(n);
      for (int i = 0; i < n; ++i) gridX[i] = first + i * step;
      gridX[n - 1] = last;
      const int rc = zomath::curves::interpolate(gridX.Data(), gridY.Data(), n, pX, pY, n, 0, 1.0,
                                                 nullptr, nullptr, 0, 0);
      if (rc != 0) return rc;
      c.x = gridX.Data();
      c.y = gridY.Data();
      c.n = n;
    } else {
      prepare(c, pX, pY, n);
      step = (c.x[n - 1] - c.x[0]) / (n - 1);
    }
    const double steps = dWidth / std::fabs(step);
    if (!(steps <= n)) return ZOMATH_ERR_BAD_ARGUMENT;
    int w = static_cast<int>(steps);
    if (w % 2 == 0) ++w;
    if (w > n) return ZOMATH_ERR_BAD_ARGUMENT;
    const int h = w / 2;
    const double* y = c.y;
    // The window shrinks symmetrically towards the ends, down to the end point alone.
    const auto radius = [h, n](int i) { return std::min(h, std::min(i, n - 1 - i)); };
    const auto rises = [y, dMinHeight](int i, int r) {
      const double a = y[i - r], b = y[i + r];
      return !absent(a) && !absent(b) && std::fabs(y[i] - a) >= dMinHeight &&
             std::fabs(y[i] - b) >= dMinHeight;
    };
    Output o(pPeakX, pPeakY, pPeakIdx, n);
    if (!scan(c.x, y, 0, n - 1, nFlags, true, radius, rises, o.list))
      return ZOMATH_PEAK_ERR_COUNT;
    if (resample)
      move_to_nearest_x(pX, pY, n, o.list);
    else
      map_back(c, o.list);
    *pnSize = o.list.count;
    return ZOMATH_OK;
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

}  // extern "C"
