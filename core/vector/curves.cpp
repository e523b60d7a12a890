// Exports that read an array as a sample or a curve: zomath_discrete_frequencies and
// zomath_integrate.
#include <cmath>
#include <cstddef>

#include "core/kernels.h"
#include "core/nrvec/nrvec.h"
#include "zomath/vector.h"

extern "C" {

int zomath_discrete_frequencies(int nSize, const double* pData, double* pValues, int* pnCounts,
                                int* pnDistinct) {
  if (!pnDistinct || (nSize > 0 && !pData)) return ZOMATH_ERR_NULL_POINTER;
  if (nSize < 0) return ZOMATH_ERR_BAD_ARGUMENT;
  const int room = *pnDistinct;
  try {
    zomath::NRVec<double> sorted;
    zomath::kernels::sorted_values(pData, static_cast<std::size_t>(nSize), sorted);
    const int m = sorted.size();
    int distinct = 0;
    for (int i = 0; i < m; ++i) distinct += i == 0 || sorted[i] != sorted[i - 1];
    *pnDistinct = distinct;
    if ((pValues || pnCounts) && distinct > room) return ZOMATH_ERR_BAD_ARGUMENT;
    for (int i = 0, k = 0; i < m; ++k) {
      int j = i + 1;
      while (j < m && sorted[j] == sorted[i]) ++j;
      if (pValues) pValues[k] = sorted[i] + 0.0;  // -0 becomes 0
      if (pnCounts) pnCounts[k] = j - i;
      i = j;
    }
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
  return ZOMATH_OK;
}

int zomath_integrate(int nSize, const double* pX, const double* pY, double* pArea,
                     double* pCumulative) {
  if (pArea) *pArea = NANUM;
  // One pass: the area as it grows, the count of valid points and the way x goes. A refusal
  // found on the way puts the cumulative areas back to NANUM. The running area keeps its
  // rounding errors; an infinite or NaN one stands as it is.
  zomath::kernels::CompensatedSum area;
  auto total = [&area] { return std::isfinite(area.s) ? area.value() : area.s; };
  auto refuse = [pCumulative, nSize](int code) {
    if (pCumulative)
      for (int i = 0; i < nSize; ++i) pCumulative[i] = NANUM;
    return code;
  };
  if (!pX || !pY) return refuse(ZOMATH_ERR_NULL_POINTER);
  int last = -1, direction = 0, count = 0;
  for (int i = 0; i < nSize; ++i) {
    if (pX[i] != NANUM && pY[i] != NANUM) {
      ++count;
      if (last >= 0) {
        const double step = pX[i] - pX[last];
        const int way = step > 0 ? 1 : (step < 0 ? -1 : 0);
        if (way != 0 && direction != 0 && way != direction) return refuse(ZOMATH_ERR_NOT_MONOTONIC);
        if (way != 0) direction = way;
        area.add(step * (0.5 * pY[last] + 0.5 * pY[i]));
      }
      last = i;
    }
    if (pCumulative) pCumulative[i] = total();
  }
  if (count < 2) return refuse(ZOMATH_ERR_TOO_FEW_FOR_RANGE);
  if (pArea) *pArea = total();
  return ZOMATH_OK;
}

}  // extern "C"
