// What the baseline exports share: the stretches of many peaks between their inflections in one
// pass, and the choice of quiet points near the ends of a curve.
#pragma once

#include "core/nrvec/nrvec.h"

namespace zomath::baseline {

// For each of the np peak x in pPeakX, the indices of the nearest inflections below and above
// it in x, as zomath_find_peaks_partition with window w gives them; -1 and -1 where that export
// fails. The inflections are found once; monotonic x are searched by bisection (O(n w + np log n)),
// other x by a scan a peak.
// Throws ZOMATH_ERROR.
void partitions(unsigned int nSize, const double* pX, const double* pY, const double* pPeakX,
                int np, int w, int* pLeft, int* pRight);

// The quiet points of a sample of m values: with r = |raw - smooth| at indices w..m - w - 1,
// the j whose r[j], r[j + 1] and r[j + 2] all lie below a tolerance t, t starting at 0.1 (total
// variation of raw) / m and raised by 10% a round, at the first of 500 rounds that finds five;
// none when no round does. Each round's set grows with t, so the round is found from the fifth
// smallest max(r[j], r[j + 1], r[j + 2]) in O(m). Throws ZOMATH_ERROR.
struct QuietRuns {
  NRVec<int> index;  // ascending
  int count = 0;
};
QuietRuns quiet_runs(const double* raw, const double* smooth, int m, int w);

// Savitzky-Golay smoothing of order 2 over 2h + 1 points at the points h..m - h - 1 (the others
// untouched) in O(m) whatever h; false, with nothing written, when a value is not finite.
bool quadratic_smooth_interior(const double* y, double* out, int m, int h);

}  // namespace zomath::baseline
