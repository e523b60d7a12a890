// The shared detector, the curve the finders search, the sliding-window extreme, and the exports
// that expose the detector and the mapping of peaks back to the input.
#include <algorithm>
#include <climits>
#include <cmath>

#include "curves/curve_reader.h"
#include "peaks/peaks_internal.h"
#include "zomath/curves.h"
#include "zomath/peaks.h"

namespace zomath::peaks {

void prepare(Curve& c, const double* pX, const double* pY, int n, int order) {
  c.n = n;
  if (order < 0) order = zomath_is_monotonic(pX, static_cast<unsigned int>(n), false);
  if (order == 2 || order == 1) {
    c.x = pX;
    c.y = pY;
    c.rising = order == 2;
    return;
  }
  curves::SortedSource s;
  NRVec<unsigned int> order_of(n);
  if (!curves::copy_sorted(pX, pY, nullptr, static_cast<std::size_t>(n), s, order_of.Data()))
    throw ZOMATH_ERROR_NO_MEMORY;
  c.sx.AttachMemory(s.x.DetachMemory(), n, false);
  c.sy.AttachMemory(s.y.DetachMemory(), n, false);
  c.index.SetSize(n);
  for (int k = 0; k < n; ++k) c.index[k] = static_cast<int>(order_of[k]);
  c.x = c.sx.Data();
  c.y = c.sy.Data();
  c.rising = true;
  c.sorted = true;
}

bool detect(const double* x, const double* y, const double* D, int n, bool rising, bool negative,
            int flags, int mode, const double* missing, PeakList& out) {
  const auto gone = [missing](double v) { return v != v || (missing && v == *missing); };
  const bool anySign = flags & ZOMATH_PEAK_ANY_SIGN;
  if (mode == kSlope || mode == kSmoothSlope) {
    // A zero of the slope whose neighbour on the side the curve climbs from is positive: the
    // one before on rising x for a positive peak, the one after for a negative peak.
    const bool before = negative != rising;
    for (int i = 0; i < n; ++i) {
      const int j = before ? (i > 0 ? i - 1 : 0) : i + 1;
      if (j >= n || D[i] != 0 || !(D[j] > 0) || gone(D[i]) || gone(D[j])) continue;
      const double px = x[i], py = y[i];
      if (gone(px) || gone(py) || (!anySign && (negative ? py > 0 : py < 0))) continue;
      if (!out.add(px, py, i)) return false;
    }
    return true;
  }
  // Curvature: a positive peak is a strict local minimum of D, a negative one a maximum; the
  // first point compares with the second on both sides, so it is never one.
  for (int i = 0; i + 1 < n; ++i) {
    const double prev = D[i > 0 ? i - 1 : 1], d = D[i], next = D[i + 1];
    if (gone(prev) || gone(d) || gone(next)) continue;
    const double a = i > 0 ? d - prev : prev - d, b = next - d;
    if (!(negative ? (a > 0 && b < 0) : (a < 0 && b > 0))) continue;
    const double px = x[i], py = y[i];
    if (gone(px) || gone(py)) continue;
    if (!anySign && (negative ? py > 0 : py < 0)) continue;
    if (!out.add(px, py, i)) return false;
  }
  return true;
}

void map_back(const Curve& c, PeakList& out) {
  if (!c.sorted) return;
  for (int k = 0; k < out.count; ++k) out.idx[k] = c.index[out.idx[k]];
}

namespace {

// Input indices of the points whose x is present, in ascending order of x, equal x by index.
void ascending_order(const double* x, int n, NRVec<int>& order) {
  order.SetSize(n);
  int m = 0;
  const int mono = zomath_is_monotonic(x, static_cast<unsigned int>(n), false);
  if (mono == 2) {
    for (int i = 0; i < n; ++i)
      if (!absent(x[i])) order[m++] = i;
  } else if (mono == 1) {
    for (int i = n - 1; i >= 0; --i)
      if (!absent(x[i])) order[m++] = i;
    for (int a = 0; a < m;) {  // a run of equal x goes back to the order of index
      int b = a + 1;
      while (b < m && x[order[b]] == x[order[a]]) ++b;
      std::reverse(order.Data() + a, order.Data() + b);
      a = b;
    }
  } else {
    for (int i = 0; i < n; ++i)
      if (!absent(x[i])) order[m++] = i;
    std::stable_sort(order.Data(), order.Data() + m, [x](int a, int b) { return x[a] < x[b]; });
  }
  if (m == 0) {
    order.Cleanup();
  } else if (m < n) {
    NRVec<int> kept(order.Data(), m);
    order.AttachMemory(kept.DetachMemory(), m, false);
  }
}

// Input index of the point nearest in x to t among the m ordered points (t present).
int nearest(const double* x, const int* order, int m, double t) {
  const auto first_not_below = [&](double v) {
    int lo = 0, hi = m;
    while (lo < hi) {
      const int mid = lo + (hi - lo) / 2;
      if (x[order[mid]] < v) lo = mid + 1; else hi = mid;
    }
    return lo;
  };
  const int p = first_not_below(t);
  if (p == 0) return order[0];
  const int below = order[first_not_below(x[order[p - 1]])];  // lowest index of that x
  if (p == m) return below;
  const int above = order[p];
  const double dBelow = t - x[below], dAbove = x[above] - t;
  if (dBelow < dAbove) return below;
  if (dAbove < dBelow) return above;
  return std::min(below, above);
}

}  // namespace

void move_to_nearest_x(const double* pX, const double* pY, int n, PeakList& out) {
  NRVec<int> order;
  ascending_order(pX, n, order);
  const int m = order.size();
  if (m == 0) return;
  for (int k = 0; k < out.count; ++k) {
    if (absent(out.x[k])) continue;
    const int i = nearest(pX, order.Data(), m, out.x[k]);
    out.idx[k] = i;
    out.x[k] = pX[i];
    out.y[k] = pY[i];
  }
}

}  // namespace zomath::peaks

using namespace zomath;
using namespace zomath::peaks;

extern "C" {

int zomath_find_peak_by_derivative_centralized(unsigned int nSize, const double* pX,
                                               const double* pY, const double* pDeriv,
                                               int* pnPeaks, double* pPeakX, double* pPeakY,
                                               int* pPeakIdx, bool bNegative, int nFlags,
                                               int nMaskMode, const double* pMissing) {
  if (!pX || !pY || !pDeriv || !pnPeaks || !pPeakX || !pPeakY || !pPeakIdx)
    return ZOMATH_ERR_NULL_POINTER;
  if (nMaskMode < kSlope || nMaskMode > kSmoothCurvature || nSize > static_cast<unsigned int>(INT_MAX))
    return ZOMATH_PEAK_ERR_DETECTOR;
  const int n = static_cast<int>(nSize);
  if (*pnPeaks < 0 || *pnPeaks > n) return ZOMATH_PEAK_ERR_COUNT;
  bool rising = true;
  for (int i = 1; i < n && rising; ++i) rising = pX[i - 1] <= pX[i];
  PeakList out{pPeakX, pPeakY, pPeakIdx, *pnPeaks, n};
  if (!detect(pX, pY, pDeriv, n, rising, bNegative, nFlags, nMaskMode, pMissing, out))
    return ZOMATH_PEAK_ERR_COUNT;
  *pnPeaks = out.count;
  return ZOMATH_OK;
}

int zomath_adjust_data_of_peaks(unsigned int nSize, const double* pX, const double* pY, int nPeaks,
                                double* pPeakX, double* pPeakY, int* pPeakIdx,
                                const int* pnSortIndex, bool bNearestX) {
  if (!pX || !pY || !pPeakX || !pPeakY || !pPeakIdx) return ZOMATH_ERR_NULL_POINTER;
  if (nSize == 0 || nSize > static_cast<unsigned int>(INT_MAX) || nPeaks < 0)
    return ZOMATH_ERR_BAD_ARGUMENT;
  const int n = static_cast<int>(nSize);
  const auto inside = [n](int i) { return i >= 0 && i < n; };
  try {
    if (!pnSortIndex && bNearestX) {
      for (int k = 0; k < nPeaks; ++k)
        if (absent(pPeakX[k])) return ZOMATH_ERR_BAD_ARGUMENT;
      NRVec<int> order;
      ascending_order(pX, n, order);
      if (order.size() == 0) return ZOMATH_ERR_BAD_ARGUMENT;
      for (int k = 0; k < nPeaks; ++k) pPeakIdx[k] = nearest(pX, order.Data(), order.size(), pPeakX[k]);
    } else {
      for (int k = 0; k < nPeaks; ++k)
        if (!inside(pPeakIdx[k]) || (pnSortIndex && !inside(pnSortIndex[pPeakIdx[k]])))
          return ZOMATH_PEAK_ERR_INDEX;
      if (pnSortIndex)
        for (int k = 0; k < nPeaks; ++k) pPeakIdx[k] = pnSortIndex[pPeakIdx[k]];
    }
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
  for (int k = 0; k < nPeaks; ++k) {
    pPeakX[k] = pX[pPeakIdx[k]];
    pPeakY[k] = pY[pPeakIdx[k]];
  }
  return ZOMATH_OK;
}

}  // extern "C"
