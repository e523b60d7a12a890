// The stretch of a peak between its inflections, and the left and right markers of peaks.
#include <algorithm>
#include <climits>
#include <cmath>

#include "curves/curve_reader.h"
#include "peaks/peaks_internal.h"
#include "zomath/curves.h"
#include "zomath/peaks.h"

namespace zomath::peaks {
namespace {

// The curve in ascending order of x: the caller's when x is non-decreasing, reversed when it is
// non-increasing, else a sorted copy. input(k) is the input index of point k.
struct View {
  const double* x = nullptr;
  const double* y = nullptr;
  int n = 0;
  int kind = 0;  // 0 as given, 1 reversed, 2 sorted
  NRVec<double> vx, vy;
  NRVec<int> order, where;  // sorted: input index of point k, and point of input index i

  View(const double* pX, const double* pY, int nn) : n(nn) {
    const int mono = zomath_is_monotonic(pX, static_cast<unsigned int>(n), false);
    if (mono == 2) {
      x = pX;
      y = pY;
      return;
    }
    vx.SetSize(n);
    vy.SetSize(n);
    if (mono == 1) {
      kind = 1;
      for (int k = 0; k < n; ++k) {
        vx[k] = pX[n - 1 - k];
        vy[k] = pY[n - 1 - k];
      }
    } else {
      kind = 2;
      curves::SortedSource s;
      NRVec<unsigned int> o(n);
      if (!curves::copy_sorted(pX, pY, nullptr, static_cast<std::size_t>(n), s, o.Data()))
        throw ZOMATH_ERROR_NO_MEMORY;
      order.SetSize(n);
      where.SetSize(n);
      for (int k = 0; k < n; ++k) {
        vx[k] = s.x[k];
        vy[k] = s.y[k];
        order[k] = static_cast<int>(o[k]);
        where[order[k]] = k;
      }
    }
    x = vx.Data();
    y = vy.Data();
  }
  int input(int k) const { return kind == 0 ? k : kind == 1 ? n - 1 - k : order[k]; }
  int point(int i) const { return kind == 0 ? i : kind == 1 ? n - 1 - i : where[i]; }
};

// Points whose |y| lies below the height (or is absent): where a peak has ended.
NRVec<char> below_height(const View& v, double dHeight) {
  NRVec<char> low(v.n);
  for (int k = 0; k < v.n; ++k) low[k] = absent(v.y[k]) || std::fabs(v.y[k]) < dHeight;
  return low;
}

// The point of smallest |y| from a to b (inclusive, either order), the one nearest a on a tie.
int valley(const View& v, int a, int b) {
  const int step = a <= b ? 1 : -1;
  int best = -1;
  for (int k = a;; k += step) {
    if (!absent(v.y[k]) && (best < 0 || std::fabs(v.y[k]) < std::fabs(v.y[best]))) best = k;
    if (k == b) break;
  }
  return best < 0 ? a : best;
}

// One marker of the peak at p, walking towards the limit (exclusive of beyond it) in direction
// dir: past dMinWidth, then on while the points stand at or above the height and the next one
// is within dMaxWidth; a point below the height ends the walk as the marker, otherwise the
// valley between the walk's end and the peak is.
int walk(const View& v, const NRVec<char>& low, int p, int limit, int dir, double maxW,
         double minW) {
  const double c = v.x[p];
  int k = p + dir;
  if ((k - limit) * dir > 0) k = limit;
  if (k < 0 || k >= v.n) return p;
  while (k != limit && std::fabs(c - v.x[k]) < minW) k += dir;
  while (k != limit && !low[k] && std::fabs(c - v.x[k + dir]) < maxW) k += dir;
  return low[k] ? k : valley(v, k, p);
}

// Width limits: the largest cut to the x range, a negative smallest taken as 0.
void cut_widths(const View& v, double& maxW, double& minW) {
  const double range = v.x[v.n - 1] - v.x[0];
  if (maxW > range) maxW = range;
  if (minW < 0) minW = 0;
}

// Markers of the peaks (points of the view, in the caller's order) between their neighbours,
// within the widths cut to the view.
void markers(const View& v, const NRVec<int>& peaks, int* pMarkers, double dHeight, double maxW,
             double minW) {
  cut_widths(v, maxW, minW);
  const int np = peaks.size();
  const NRVec<char> low = below_height(v, dHeight);
  NRVec<int> byX(np);
  for (int g = 0; g < np; ++g) byX[g] = g;
  std::stable_sort(byX.Data(), byX.Data() + np, [&](int a, int b) { return peaks[a] < peaks[b]; });
  for (int s = 0; s < np; ++s) {
    const int g = byX[s], p = peaks[g];
    const int lo = s > 0 ? peaks[byX[s - 1]] : 0, hi = s + 1 < np ? peaks[byX[s + 1]] : v.n - 1;
    const int a = v.input(walk(v, low, p, lo, -1, maxW, minW));
    const int b = v.input(walk(v, low, p, hi, 1, maxW, minW));
    pMarkers[2 * g] = std::min(a, b);
    pMarkers[2 * g + 1] = std::max(a, b);
  }
}

bool bad_frame(unsigned int nSize, int nPeaks, int nMarkers) {
  return nSize == 0 || nSize > static_cast<unsigned int>(INT_MAX) || nPeaks < 1 ||
         nPeaks > INT_MAX / 2 || nMarkers < 2 * nPeaks;
}

}  // namespace

int inflections(const double* pX, const double* pY, int n, int w, NRVec<int>& at, int& count) {
  const unsigned int size = static_cast<unsigned int>(n);
  NRVec<double> s(n);
  const int half = (w - 1) / 2;
  if (zomath_savitsky_golay(pY, s.Data(), size, half, half, 2, 0, ZOMATH_BOUNDARY_LINEAR) != 0) {
    if (w > 3) return ZOMATH_PEAK_ERR_SMOOTHING;
    std::copy(pY, pY + n, s.Data());
  }
  at.SetSize(n);
  count = 0;
  if (n < 2) return ZOMATH_OK;
  NRVec<double> d1(n);
  zomath_derivative(pX, s.Data(), d1.Data(), size, ZOMATH_DERIV_MEAN);
  zomath_derivative(pX, d1.Data(), s.Data(), size, ZOMATH_DERIV_MEAN);
  // Each change counted at its second point.
  for (int i = 1; i < n; ++i)
    if (!absent(s[i]) && !absent(s[i - 1]) && s[i] * s[i - 1] < 0 && !absent(pX[i]))
      at[count++] = i;
  return ZOMATH_OK;
}

void nearest_inflections(const double* pX, const int* at, int count, double c, int& left,
                         int& right) {
  double below = -INFINITY, above = INFINITY;
  for (int k = 0; k < count; ++k) {
    const int i = at[k];
    if (pX[i] < c && pX[i] > below) {
      below = pX[i];
      left = i;
    } else if (pX[i] > c && pX[i] < above) {
      above = pX[i];
      right = i;
    }
  }
}

}  // namespace zomath::peaks

using namespace zomath;
using namespace zomath::peaks;

extern "C" {

int zomath_find_peaks_partition(unsigned int nSize, const double* pX, const double* pY,
                                double dPeakX, int* pnLeft, int* pnRight, int nWindow) {
  if (!pX || !pY || !pnLeft || !pnRight) return ZOMATH_ERR_NULL_POINTER;
  if (nSize == 0 || nSize > static_cast<unsigned int>(INT_MAX) || std::isnan(dPeakX))
    return ZOMATH_ERR_BAD_ARGUMENT;
  const int n = static_cast<int>(nSize);
  try {
    NRVec<int> at;
    int count = 0;
    if (const int rc = inflections(pX, pY, n, nWindow, at, count)) return rc;
    int left = 0, right = n - 1;
    nearest_inflections(pX, at.Data(), count, dPeakX, left, right);
    *pnLeft = left;
    *pnRight = right;
    return ZOMATH_OK;
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

int zomath_find_markers_of_peaks_by_height_and_width(unsigned int nSize, const double* pX,
                                                     const double* pY, int nPeaks,
                                                     const int* pPeakIdx, int nMarkers,
                                                     int* pMarkers, double dHeight,
                                                     double dMaxWidth, double dMinWidth) {
  if (!pX || !pY || !pPeakIdx || !pMarkers) return ZOMATH_ERR_NULL_POINTER;
  if (bad_frame(nSize, nPeaks, nMarkers) || !(dMaxWidth >= dMinWidth)) return ZOMATH_ERR_BAD_ARGUMENT;
  const int n = static_cast<int>(nSize);
  for (int g = 0; g < nPeaks; ++g)
    if (pPeakIdx[g] < 0 || pPeakIdx[g] >= n) return ZOMATH_PEAK_ERR_INDEX;
  try {
    const View v(pX, pY, n);
    NRVec<int> peaks(nPeaks);
    for (int g = 0; g < nPeaks; ++g) peaks[g] = v.point(pPeakIdx[g]);
    markers(v, peaks, pMarkers, dHeight, dMaxWidth, dMinWidth);
    return ZOMATH_OK;
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

int zomath_find_markers_of_peak_centers_by_height_and_width(unsigned int nSize, const double* pX,
                                                            const double* pY, int nPeaks,
                                                            const double* pCenters, int nMarkers,
                                                            int* pMarkers, double dHeight,
                                                            double dMaxWidth, double dMinWidth) {
  if (!pX || !pY || !pCenters || !pMarkers) return ZOMATH_ERR_NULL_POINTER;
  if (bad_frame(nSize, nPeaks, nMarkers) || !(dMaxWidth >= dMinWidth)) return ZOMATH_ERR_BAD_ARGUMENT;
  for (int g = 0; g < nPeaks; ++g)
    if (absent(pCenters[g])) return ZOMATH_ERR_BAD_ARGUMENT;
  const int n = static_cast<int>(nSize);
  try {
    const View v(pX, pY, n);
    NRVec<int> peaks(nPeaks);
    for (int g = 0; g < nPeaks; ++g) {
      const int k = static_cast<int>(curves::lower_bound(v.x, static_cast<std::size_t>(n), pCenters[g]));
      peaks[g] = k < n ? k : n - 1;
    }
    markers(v, peaks, pMarkers, dHeight, dMaxWidth, dMinWidth);
    return ZOMATH_OK;
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

int zomath_find_markers_of_peaks_by_height_and_full_width(unsigned int nSize, const double* pX,
                                                          const double* pY, int nPeaks,
                                                          const int* pPeakIdx, int nMarkers,
                                                          int* pMarkers, double dHeight,
                                                          double* pMaxWidths,
                                                          double* pMinWidths) {
  if (!pX || !pY || !pPeakIdx || !pMarkers || !pMaxWidths || !pMinWidths)
    return ZOMATH_ERR_NULL_POINTER;
  if (bad_frame(nSize, nPeaks, nMarkers)) return ZOMATH_ERR_BAD_ARGUMENT;
  const int n = static_cast<int>(nSize);
  for (int g = 0; g < nPeaks; ++g) {
    if (!(pMaxWidths[g] >= pMinWidths[g])) return ZOMATH_ERR_BAD_ARGUMENT;
    if (pPeakIdx[g] < 0 || pPeakIdx[g] >= n) return ZOMATH_PEAK_ERR_INDEX;
  }
  try {
    const View v(pX, pY, n);
    const NRVec<char> low = below_height(v, dHeight);
    for (int g = 0; g < nPeaks; ++g) {
      double maxW = pMaxWidths[g], minW = pMinWidths[g];
      cut_widths(v, maxW, minW);
      const int p = v.point(pPeakIdx[g]);
      // The nearest point below the height on each side at a distance in [minW, maxW).
      const auto side = [&](int dir) {
        for (int k = p + dir; k >= 0 && k < v.n; k += dir) {
          const double d = std::fabs(v.x[p] - v.x[k]);
          if (!(d < maxW)) break;
          if (low[k] && d >= minW) return k;
        }
        return -1;
      };
      const int a = side(-1), b = side(1);
      const bool pair = a >= 0 && b >= 0;
      pMarkers[2 * g] = pair ? std::min(v.input(a), v.input(b)) : -1;
      pMarkers[2 * g + 1] = pair ? std::max(v.input(a), v.input(b)) : -1;
    }
    return ZOMATH_OK;
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

}  // extern "C"
