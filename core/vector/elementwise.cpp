// Exports that rewrite, test or gather elements: stretch, linear_transform, replace, count and
// the copy family.
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>

#include "core/kernels.h"
#include "core/nrvec/nrvec.h"
#include "zomath/vector.h"

namespace {

template <class T>
int stretch(T* pData, int nSize, double fromLow, double fromHigh, double toLow, double toHigh,
            const T* pKeep) {
  if (!pData) return ZOMATH_ERR_ROW_NULL;
  const bool ok = zomath::kernels::stretch(pData, std::max(nSize, 0), fromLow, fromHigh, toLow,
                                           toHigh, pKeep);
  return ok ? ZOMATH_OK : ZOMATH_ERR_ROW_NULL;
}

template <class T>
void gather(unsigned int nSize, const unsigned int* pnIndices, T* pDest, const T* pSource,
            unsigned int nSourceSize) {
  if (!pnIndices || !pDest || !pSource) return;
  try {
    zomath::kernels::gather(nSize, pnIndices, pDest, pSource, nSourceSize);
  } catch (...) {
    // No memory for the copy of an overlapping source: the destination stays as it was.
  }
}

}  // namespace

extern "C" {

int zomath_d_stretch(double* pData, int nSize, double dFromLow, double dFromHigh, double dToLow,
                     double dToHigh) {
  const double missing = NANUM;
  return stretch(pData, nSize, dFromLow, dFromHigh, dToLow, dToHigh, &missing);
}

int zomath_f_stretch(float* pData, int nSize, float fFromLow, float fFromHigh, float fToLow,
                     float fToHigh) {
  return stretch<float>(pData, nSize, fFromLow, fFromHigh, fToLow, fToHigh, nullptr);
}

int zomath_us_stretch(unsigned short* pData, int nSize, unsigned short nFromLow,
                      unsigned short nFromHigh, unsigned short nToLow, unsigned short nToHigh) {
  return stretch<unsigned short>(pData, nSize, nFromLow, nFromHigh, nToLow, nToHigh, nullptr);
}

#define ZOMATH_COPY(L, T)                                                                     \
  void zomath_##L##_copy(unsigned int nSize, const unsigned int* pnIndices, T* pDest,         \
                         const T* pSource, unsigned int nSourceSize) {                        \
    gather(nSize, pnIndices, pDest, pSource, nSourceSize);                                    \
  }
ZOMATH_COPY(d, double)
ZOMATH_COPY(f, float)
ZOMATH_COPY(ui, unsigned int)
ZOMATH_COPY(us, unsigned short)
ZOMATH_COPY(b, unsigned char)
#undef ZOMATH_COPY

int zomath_linear_transform(double* pData, unsigned int nFirst, unsigned int nEnd, int nToLow,
                            int nToHigh, double dFromMin, double dFromMax, unsigned int nFlags) {
  if (!pData) return ZOMATH_ERR_NULL_POINTER;
  const std::ptrdiff_t n = nEnd > nFirst ? std::ptrdiff_t{nEnd} - nFirst : 0;
  // A limit given as NANUM is the plain minimum or maximum of the range (NANUM counts as a
  // value there).
  if (dFromMin == NANUM || dFromMax == NANUM) {
    if (n == 0) return ZOMATH_ERR_NOT_FOUND;
    std::ptrdiff_t iMin, iMax;
    zomath::kernels::minmax<double>(pData, nFirst, nEnd - 1, nullptr, iMin, iMax);
    if (iMin < 0) return ZOMATH_ERR_NOT_FOUND;  // nothing but NaN
    if (dFromMin == NANUM) dFromMin = pData[iMin];
    if (dFromMax == NANUM) dFromMax = pData[iMax];
  }
  const double span = dFromMax - dFromMin;
  if (span == 0.0 || !std::isfinite(span)) return ZOMATH_ERR_NOT_FOUND;
  const double toLow = nToLow, toHigh = nToHigh;
  const double s = (toHigh - toLow) / span;
  const bool keepFraction = nFlags & 1u, clampLow = !(nFlags & 2u), clampHigh = !(nFlags & 4u);
  // The range fixes the count and the limits only: the output starts at element 0.
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const double y = (pData[i] - dFromMin) * s + toLow;
    if (clampLow && y < toLow) {
      pData[i] = toLow;
    } else if (clampHigh && y > toHigh) {
      pData[i] = toHigh;
    } else {
      pData[i] = keepFraction ? y : std::trunc(y + 0.5);
    }
  }
  return ZOMATH_OK;
}

int zomath_count(double dValue, unsigned int nSize, const double* pData, int nCondition) {
  if (nSize == 0) return 0;
  if (!pData) return ZOMATH_ERR_NOT_FOUND;
  try {
    // The matrix code counts; the vector is seen as rows of at most INT_MAX elements.
    long long total = 0;
    for (unsigned int done = 0; done < nSize;) {
      const int part = static_cast<int>(std::min<unsigned int>(nSize - done, INT_MAX));
      const zomath::NRMat<double> row(1, part, const_cast<double*>(pData) + done);
      const int c = row.Count(dValue, nCondition);
      if (c < 0) return c;
      total += c;
      done += static_cast<unsigned int>(part);
    }
    return static_cast<int>(std::min<long long>(total, INT_MAX));
  } catch (...) {
    return ZOMATH_ERR_NOT_FOUND;
  }
}

int zomath_replace_data_in_vector(int nSize, double* pData, double dThreshold, double dReplace,
                                  unsigned int nFlags) {
  if (!pData) return ZOMATH_ERR_NULL_POINTER;
  if (nSize < 1) return ZOMATH_ERR_BAD_ARGUMENT;
  try {
    zomath::NRMat<double> row(1, nSize, pData);
    row.Replace(dThreshold, dReplace, nFlags);  // refused flags change nothing
  } catch (...) {
    // Wrapping needs one row pointer; without it nothing changes.
  }
  return ZOMATH_OK;
}

}  // extern "C"
