// Exports of the sum, mean_variance and cumulative_sum families.
#include <cfloat>
#include <cmath>
#include <cstddef>

#include "core/kernels.h"
#include "zomath/vector.h"

namespace {

template <class T>
double sum(const T* pData, int nSize, const T* pMissing, T* pMin, T* pMax, int* pnIndexMin,
           int* pnIndexMax, int* pnValid) {
  zomath::kernels::SumResult<T> r;
  if (pData && nSize > 0) r = zomath::kernels::sum(pData, nSize, pMissing);
  const bool any = !r.ext.empty();
  if (pMin) *pMin = any ? r.ext.lo : T(0);
  if (pMax) *pMax = any ? r.ext.hi : T(0);
  if (pnIndexMin) *pnIndexMin = static_cast<int>(r.ext.iMin);
  if (pnIndexMax) *pnIndexMax = static_cast<int>(r.ext.iMax);
  if (pnValid) *pnValid = static_cast<int>(r.valid);
  // A total beyond the double range becomes an infinity of its sign.
  if (r.sum > DBL_MAX) return HUGE_VAL;
  if (r.sum < -DBL_MAX) return -HUGE_VAL;
  return static_cast<double>(r.sum);
}

template <class T>
double mean_variance(const T* pData, int nSize, double* pVariance, int* pnValid,
                     const T* pMissing) {
  std::ptrdiff_t valid = 0;
  const double mean = zomath::kernels::mean_variance(pData, pData ? nSize : 0, pMissing,
                                                     pVariance, &valid);
  if (pnValid) *pnValid = static_cast<int>(valid);
  return mean;
}

template <class T>
int cumulative_sum(const T* pData, unsigned int nFirst, unsigned int nEnd, T* pOut,
                   const T* pMissing) {
  if (!pData || !pOut) return 0;
  // At least element nFirst goes out, even for an empty range.
  const std::ptrdiff_t n = nEnd > nFirst ? std::ptrdiff_t{nEnd} - nFirst : 1;
  return static_cast<int>(zomath::kernels::cumulative_sum(pData + nFirst, n, pOut, pMissing));
}

}  // namespace

extern "C" {

double zomath_d_sum(const double* pData, int nSize, double* pMin, double* pMax, int* pnIndexMin,
                    int* pnIndexMax, int* pnValid) {
  const double missing = NANUM;
  return sum(pData, nSize, &missing, pMin, pMax, pnIndexMin, pnIndexMax, pnValid);
}

#define ZOMATH_SUM(L, T)                                                                     \
  double zomath_##L##_sum(const T* pData, int nSize, T* pMin, T* pMax, int* pnIndexMin,      \
                          int* pnIndexMax) {                                                 \
    return sum<T>(pData, nSize, nullptr, pMin, pMax, pnIndexMin, pnIndexMax, nullptr);       \
  }
ZOMATH_SUM(f, float)
ZOMATH_SUM(b, unsigned char)
ZOMATH_SUM(us, unsigned short)
ZOMATH_SUM(ui, unsigned int)
#undef ZOMATH_SUM

double zomath_d_mean_variance(const double* pData, int nSize, double* pVariance, int* pnValid) {
  const double missing = NANUM;
  return mean_variance(pData, nSize, pVariance, pnValid, &missing);
}

#define ZOMATH_MEAN_VARIANCE(L, T)                                                          \
  double zomath_##L##_mean_variance(const T* pData, int nSize, double* pVariance,           \
                                    int* pnValid, const T* pMissing) {                      \
    return mean_variance(pData, nSize, pVariance, pnValid, pMissing);                       \
  }
ZOMATH_MEAN_VARIANCE(f, float)
ZOMATH_MEAN_VARIANCE(us, unsigned short)
ZOMATH_MEAN_VARIANCE(b, unsigned char)
#undef ZOMATH_MEAN_VARIANCE

#define ZOMATH_CUMULATIVE_SUM(L, T)                                                         \
  int zomath_##L##_cumulative_sum(const T* pData, unsigned int nFirst, unsigned int nEnd,   \
                                  T* pOut, const T* pMissing) {                             \
    return cumulative_sum(pData, nFirst, nEnd, pOut, pMissing);                             \
  }
ZOMATH_CUMULATIVE_SUM(d, double)
ZOMATH_CUMULATIVE_SUM(f, float)
ZOMATH_CUMULATIVE_SUM(i, int)
ZOMATH_CUMULATIVE_SUM(us, unsigned short)
ZOMATH_CUMULATIVE_SUM(b, unsigned char)
#undef ZOMATH_CUMULATIVE_SUM

}  // extern "C"
