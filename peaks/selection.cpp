// Picking peaks by their rise, filtering peak lists by height and number, reading peaks at
// indices, the noise level of a curve and the k-th smallest value.
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>

#include "core/kernels.h"
#include "peaks/peaks_internal.h"
#include "zomath/peaks.h"

namespace zomath::peaks {

// Noise from second differences: 1.4826 MAD / sqrt(6), Hampel's (1974) scale estimate applied
// to the difference-based pseudo-residuals of Gasser, Sroka and Jennen-Steinmetz (1986).
double noise_level(const double* y, std::size_t n) {
  if (n < 3) return NANUM;
  NRVec<double> d(static_cast<int>(n - 2));
  std::size_t m = 0;
  for (std::size_t i = 1; i + 1 < n; ++i) {
    const double a = y[i - 1], b = y[i], c = y[i + 1];
    if (a == NANUM || b == NANUM || c == NANUM) continue;
    const double v = (a - b) + (c - b);
    if (std::isfinite(v)) d[static_cast<int>(m++)] = v;
  }
  if (m == 0) return NANUM;
  const double centre = kernels::median_by_selection(d.Data(), m);
  for (std::size_t k = 0; k < m; ++k) d[static_cast<int>(k)] = std::fabs(d[static_cast<int>(k)] - centre);
  // 1 / the third quartile of the standard normal, and the 6 sigma^2 variance of a second
  // difference of white noise.
  return 1.482602218505602 * kernels::median_by_selection(d.Data(), m) / std::sqrt(6.0);
}

namespace {

// Order of the peaks by |y|, tallest first, ties in their order, absent heights last.
NRVec<int> by_height(const double* y, int n) {
  NRVec<int> order(n);
  for (int k = 0; k < n; ++k) order[k] = k;
  const auto height = [y](int k) { return absent(y[k]) ? -1.0 : std::fabs(y[k]); };
  std::stable_sort(order.Data(), order.Data() + n,
                   [&](int a, int b) { return height(a) > height(b); });
  return order;
}

// Rewrites the peak list in the given order, keeping `keep` entries; the rest become NANUM, -1.
void rewrite(int n, double* x, double* y, int* idx, const NRVec<int>& order, int keep) {
  NRVec<double> ox(x, n), oy(y, n);
  NRVec<int> oi(idx, n);
  for (int k = 0; k < n; ++k) {
    const bool kept = k < keep;
    x[k] = kept ? ox[order[k]] : NANUM;
    y[k] = kept ? oy[order[k]] : NANUM;
    idx[k] = kept ? oi[order[k]] : -1;
  }
}

}  // namespace
}  // namespace zomath::peaks

using namespace zomath;
using namespace zomath::peaks;

extern "C" {

int zomath_pick_peaks(const double* pData, unsigned int nFirst, unsigned int nLast, int* pPeakIdx,
                      unsigned int nMaxPeaks, unsigned int nWindow, double dMinRise,
                      double dMinHeight, int nStep) {
  if (!pData || !pPeakIdx || nLast < nFirst || nLast >= static_cast<unsigned int>(INT_MAX))
    return -1;
  std::size_t first = nFirst, end = static_cast<std::size_t>(nLast) + 1;
  while (first < end && pData[first] == NANUM) ++first;
  while (end > first && pData[end - 1] == NANUM) --end;
  double lowest = INFINITY;
  for (std::size_t i = first; i < end; ++i)
    if (!absent(pData[i])) lowest = std::min(lowest, pData[i]);
  if (first == end || lowest == INFINITY) return -1;
  const std::size_t w = std::min<std::size_t>(nWindow, (end - first) / 2);
  if (w == 0) return -1;
  const std::size_t r = nStep >= 0 && static_cast<std::size_t>(nStep) < w ? static_cast<std::size_t>(nStep) : w;
  const std::size_t stride = std::max<std::size_t>(1, r / 2);
  const bool up = dMinRise >= 0;
  int count = 0;
  long long previous = -1;
  if (nMaxPeaks <= 1) return 0;
  for (std::size_t i = first + w; i + r < end;) {
    const double v = pData[i], a = pData[i - w], b = pData[i + r];
    const bool candidate = !absent(v) && !absent(a) && !absent(b) &&
                           (up ? v - a >= dMinRise && v - b >= dMinRise
                               : v - a <= dMinRise && v - b <= dMinRise);
    if (!candidate) {
      i += stride;
      continue;
    }
    std::size_t peak = i;
    if (r > 1) {  // the window's first extreme
      peak = i - w;
      for (std::size_t k = i - w; k <= i + r; ++k) {
        const double u = pData[k];
        if (absent(u)) continue;
        if (absent(pData[peak]) || (up ? u > pData[peak] : u < pData[peak])) peak = k;
      }
    }
    if (static_cast<long long>(peak) != previous &&
        (dMinHeight <= 0 || pData[peak] >= lowest + dMinHeight)) {
      pPeakIdx[count++] = static_cast<int>(peak);
      previous = static_cast<long long>(peak);
      if (static_cast<unsigned int>(count) >= nMaxPeaks - 1) break;
    }
    i += w;
  }
  return count;
}

int zomath_test_peaks_by_height(int* pnPeaks, double* pPeakX, double* pPeakY, int* pPeakIdx,
                                double dMinHeight) {
  if (!pnPeaks || !pPeakX || !pPeakY || !pPeakIdx) return ZOMATH_ERR_NULL_POINTER;
  const int n = *pnPeaks;
  if (n < 1 || std::isnan(dMinHeight)) return ZOMATH_ERR_BAD_ARGUMENT;
  try {
    const NRVec<int> order = by_height(pPeakY, n);
    int keep = 0;
    while (keep < n && !absent(pPeakY[order[keep]]) && std::fabs(pPeakY[order[keep]]) >= dMinHeight)
      ++keep;
    rewrite(n, pPeakX, pPeakY, pPeakIdx, order, keep);
    *pnPeaks = keep;
    return ZOMATH_OK;
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

int zomath_test_peaks_by_number(int nPeaks, double* pPeakX, double* pPeakY, int* pPeakIdx,
                                int nKeep) {
  if (!pPeakX || !pPeakY || !pPeakIdx) return ZOMATH_ERR_NULL_POINTER;
  if (nPeaks < 1 || nKeep < 1) return ZOMATH_ERR_BAD_ARGUMENT;
  if (nKeep > nPeaks) return ZOMATH_PEAK_ERR_KEEP;
  try {
    rewrite(nPeaks, pPeakX, pPeakY, pPeakIdx, by_height(pPeakY, nPeaks), nKeep);
    return ZOMATH_OK;
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

int zomath_match_peaks_centers_by_index(const double* pX, const double* pY, int nSize,
                                        const int* pPeakIdx, double* pPeakX, double* pPeakY,
                                        int nPeaks) {
  if (!pX || !pY || !pPeakIdx || !pPeakX || !pPeakY) return ZOMATH_ERR_NULL_POINTER;
  for (int k = 0; k < nPeaks; ++k)
    if (pPeakIdx[k] < 0 || pPeakIdx[k] >= nSize) return ZOMATH_PEAK_ERR_INDEX;
  for (int k = 0; k < nPeaks; ++k) {
    pPeakX[k] = pX[pPeakIdx[k]];
    pPeakY[k] = pY[pPeakIdx[k]];
  }
  return ZOMATH_OK;
}

double zomath_get_noise_level(unsigned int nSize, const double* pY) {
  if (!pY || nSize > static_cast<unsigned int>(INT_MAX)) return NANUM;
  try {
    return noise_level(pY, nSize);
  } catch (...) {
    return NANUM;
  }
}

double zomath_find_k_min_max(const double* pData, int nSize, int k) {
  if (!pData || nSize < 1 || k < 0 || k >= nSize) return NANUM;
  try {
    NRVec<double> v(nSize);
    int m = 0;
    for (int i = 0; i < nSize; ++i)
      if (!absent(pData[i])) v[m++] = pData[i];
    if (k >= m) return NANUM;
    std::nth_element(v.Data(), v.Data() + k, v.Data() + m);
    return v[k];
  } catch (...) {
    return NANUM;
  }
}

}  // extern "C"
