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
  if (pCumulative)
    for (int i = 0; i < nSize; ++i) pCumulative[i] = NANUM;
  if (!pX || !pY) return ZOMATH_ERR_NULL_POINTER;
  auto valid = [pX, pY](int i) { return pX[i] != NANUM && pY[i] != NANUM; };
  // Two valid points at least, and x going one way.
  int count = 0, direction = 0;
  double previous = 0;
  for (int i = 0; i < nSize; ++i) {
    if (!valid(i)) continue;
    if (count++ > 0) {
      const double step = pX[i] - previous;
      const int way = step > 0 ? 1 : (step < 0 ? -1 : 0);
      if (way != 0 && direction != 0 && way != direction) return ZOMATH_ERR_NOT_MONOTONIC;
      if (way != 0) direction = way;
    }
    previous = pX[i];
  }
  if (count < 2) return ZOMATH_ERR_TOO_FEW_FOR_RANGE;
  // The running area with its rounding errors; an infinite or NaN total stands as it is.
  zomath::kernels::CompensatedSum area;
  auto total = [&area] { return std::isfinite(area.s) ? area.value() : area.s; };
  int last = -1;
  for (int i = 0; i < nSize; ++i) {
    if (valid(i)) {
      if (last >= 0) area.add((pX[i] - pX[last]) * (0.5 * pY[last] + 0.5 * pY[i]));
      last = i;
    }
    if (pCumulative) pCumulative[i] = total();
  }
  if (pArea) *pArea = total();
  return ZOMATH_OK;
}

}  // extern "C"
