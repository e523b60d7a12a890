// Peak stretches for many peaks at once, and the quiet points near the ends of a curve.
#include <algorithm>
#include <cmath>
#include <limits>

#include "baseline/baseline_internal.h"
#include "peaks/peaks_internal.h"
#include "zomath/core.h"
#include "zomath/curves.h"
#include "zomath/peaks.h"

namespace zomath::baseline {

void partitions(unsigned int nSize, const double* pX, const double* pY, const double* pPeakX,
                int np, int w, int* pLeft, int* pRight) {
  const int n = static_cast<int>(nSize);
  NRVec<int> changes;
  int nc = 0;
  if (peaks::inflections(pX, pY, n, w, changes, nc) != 0) {
    std::fill(pLeft, pLeft + np, -1);
    std::fill(pRight, pRight + np, -1);
    return;
  }
  // The changes nearest the peak in x below and above it, the first in curve order among
  // equal x: by bisection where x is monotonic, else by a scan.
  const int order = zomath_is_monotonic(pX, nSize, false);
  const bool rising = order == 2;
  const int* first = changes.Data();
  const int* last = first + nc;
  const auto at = [&](const int* lo, const int* hi, auto pred) {
    return std::partition_point(lo, hi, pred);
  };
  for (int k = 0; k < np; ++k) {
    const double c = pPeakX[k];
    pLeft[k] = 0;
    pRight[k] = n - 1;
    if (std::isnan(c)) {
      pLeft[k] = pRight[k] = -1;
    } else if (order != 1 && order != 2) {
      peaks::nearest_inflections(pX, first, nc, c, pLeft[k], pRight[k]);
    } else if (rising) {
      const int* b = at(first, last, [&](int i) { return pX[i] < c; });
      if (b != first) {
        const double v = pX[b[-1]];
        pLeft[k] = *at(first, b, [&](int i) { return pX[i] < v; });
      }
      const int* a = at(b, last, [&](int i) { return pX[i] <= c; });
      if (a != last) pRight[k] = *a;
    } else {
      const int* p = at(first, last, [&](int i) { return pX[i] >= c; });
      if (p != last) pLeft[k] = *p;
      const int* q = at(first, p, [&](int i) { return pX[i] > c; });
      if (q != first) {
        const double v = pX[q[-1]];
        pRight[k] = *at(first, q, [&](int i) { return pX[i] > v; });
      }
    }
  }
}

// Savitzky-Golay smoothing of order 2 over 2h + 1 points, at the points whose window lies inside
// the m values (h..m - h - 1; the rest untouched), from sums of y, k y and k^2 y that slide with
// the window and are summed afresh every window length so that no rounding builds up: O(m)
// whatever h, where the filter's own convolution costs O(m h). The weights are
// (3 (3h^2 + 3h - 1) - 15 k^2) / ((2h + 1)(4h^2 + 4h - 3)). False when a value is not finite.
bool quadratic_smooth_interior(const double* y, double* out, int m, int h) {
  for (int i = 0; i < m; ++i)
    if (!std::isfinite(y[i])) return false;
  const double hh = h, a = 3 * (3 * hh * hh + 3 * hh - 1), den = (2 * hh + 1) * (4 * hh * hh + 4 * hh - 3);
  double s0 = 0, s1 = 0, s2 = 0;
  for (int i = h, fresh = 0; i + h < m; ++i, --fresh) {
    if (fresh == 0) {
      s0 = s1 = s2 = 0;
      for (int k = -h; k <= h; ++k) {
        s0 += y[i + k];
        s1 += k * y[i + k];
        s2 += static_cast<double>(k) * k * y[i + k];
      }
      fresh = 2 * h + 1;
    } else {
      // The window moved by one: offsets k become k - 1.
      const double out0 = y[i - h - 1], in = y[i + h];
      const double t0 = s0 - out0 + in;
      const double t1 = s1 + hh * out0 + (hh + 1) * in;
      const double t2 = s2 - hh * hh * out0 + (hh + 1) * (hh + 1) * in;
      s0 = t0;
      s1 = t1 - t0;
      s2 = t2 - 2 * t1 + t0;
    }
    out[i] = (a * s0 - 15 * s2) / den;
  }
  return true;
}

QuietRuns quiet_runs(const double* raw, const double* smooth, int m, int w) {
  QuietRuns out;
  const int lo = w, hi = m - w - 1;  // the indices that can be collected
  const int nq = hi - lo - 1;        // starts of runs of three among them
  if (nq < 5) return out;
  double total = 0;
  for (int i = 1; i < m; ++i) total += std::fabs(raw[i] - raw[i - 1]);
  NRVec<double> q(nq), sorted(nq);
  for (int j = 0; j < nq; ++j) {
    double v = 0;
    for (int k = lo + j; k < lo + j + 3; ++k) {
      const double r = std::fabs(raw[k] - smooth[k]);
      v = r != r ? std::numeric_limits<double>::infinity() : std::max(v, r);
    }
    q[j] = sorted[j] = v;
  }
  std::nth_element(sorted.Data(), sorted.Data() + 4, sorted.Data() + nq);
  const double fifth = sorted[4];
  double t = 0.1 * total / m;
  int round = 0;
  while (round < 500 && !(fifth < t)) {
    t *= 1.1;
    ++round;
  }
  if (round == 500) return out;
  out.index.SetSize(nq);
  for (int j = 0; j < nq; ++j)
    if (q[j] < t) out.index[out.count++] = lo + j;
  return out;
}

}  // namespace zomath::baseline
