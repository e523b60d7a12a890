#include "platform/frequency.h"

#include <algorithm>
#include <cmath>

namespace zomath::platform {

int frequency_table(const double* pData, int nSize, int nClasses, const double* pBoundaries,
                    int* pnCounts, double* pMin, double* pMax, NagError& err) {
  err.reset();
  if (!pData || nSize < 1) return err.fail(kFrequencyTooFewData, "no data", nSize);
  if (nClasses < 2 || !pBoundaries || !pnCounts)
    return err.fail(kFrequencyTooFewClasses, "fewer than two classes", nClasses);
  const double* const end = pBoundaries + (nClasses - 1);
  for (const double* b = pBoundaries; b != end; ++b) {
    if (!std::isfinite(*b) || (b != pBoundaries && !(b[-1] < *b)))
      return err.fail(kFrequencyNotIncreasing, "class boundaries not strictly increasing",
                      static_cast<int>(b - pBoundaries));
  }
  std::fill(pnCounts, pnCounts + nClasses, 0);
  double lo = 0, hi = 0;
  bool any = false;
  for (int i = 0; i < nSize; ++i) {
    const double x = pData[i];
    if (x != x) continue;
    // The number of boundaries at or below x is the class index.
    ++pnCounts[std::upper_bound(pBoundaries, end, x) - pBoundaries];
    if (!any) {
      lo = hi = x;
      any = true;
    } else {
      lo = std::min(lo, x);
      hi = std::max(hi, x);
    }
  }
  if (pMin) *pMin = lo;
  if (pMax) *pMax = hi;
  return 0;
}

}  // namespace zomath::platform
