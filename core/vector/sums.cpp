// Exports of the sum, mean_variance and cumulative_sum families.
#include <algorithm>
#include <cmath>
#include <cstddef>

#include "core/kernels.h"
#include "zomath/vector.h"

// GCC places its vector-ABI note on the passes of core/kernels.h at the end of this file.
#pragma GCC diagnostic ignored "-Wpsabi"

namespace {

using zomath::kernels::EqualsMissing;
using zomath::kernels::NoMissing;
using zomath::kernels::SumResult;

template <class T>
[[gnu::always_inline]] inline SumResult<T> sum_any(const T* p, std::ptrdiff_t n, const T* pMissing) {
  if (pMissing) return zomath::kernels::scan_pass<true>(p, n, EqualsMissing<T>{*pMissing});
  return zomath::kernels::scan_pass<true>(p, n, NoMissing{});
}

template <class T>
[[gnu::always_inline]] inline double mean_variance_any(const T* p, std::ptrdiff_t n,
                                                       const T* pMissing, double* pVariance,
                                                       std::ptrdiff_t* pnValid) {
  if (pMissing)
    return zomath::kernels::mean_variance_pass(p, n, EqualsMissing<T>{*pMissing}, pVariance, pnValid);
  return zomath::kernels::mean_variance_pass(p, n, NoMissing{}, pVariance, pnValid);
}

// One vectorised pass per element type, each compiled for several vector units.
#define ZOMATH_SUM_KERNEL(T)                                                                   \
  ZOMATH_VECTOR_CLONES SumResult<T> sum_kernel(const T* p, std::ptrdiff_t n, const T* pMissing) { \
    return sum_any(p, n, pMissing);                                                            \
  }
#define ZOMATH_MEAN_VARIANCE_KERNEL(T)                                                         \
  ZOMATH_VECTOR_CLONES double mean_variance_kernel(const T* p, std::ptrdiff_t n,               \
                                                   const T* pMissing, double* pVariance,       \
                                                   std::ptrdiff_t* pnValid) {                  \
    return mean_variance_any(p, n, pMissing, pVariance, pnValid);                              \
  }
ZOMATH_SUM_KERNEL(double)
ZOMATH_SUM_KERNEL(float)
ZOMATH_SUM_KERNEL(unsigned char)
ZOMATH_SUM_KERNEL(unsigned short)
ZOMATH_SUM_KERNEL(unsigned int)
ZOMATH_MEAN_VARIANCE_KERNEL(double)
ZOMATH_MEAN_VARIANCE_KERNEL(float)
ZOMATH_MEAN_VARIANCE_KERNEL(unsigned short)
ZOMATH_MEAN_VARIANCE_KERNEL(unsigned char)
#undef ZOMATH_SUM_KERNEL
#undef ZOMATH_MEAN_VARIANCE_KERNEL

template <class T>
double sum(const T* pData, int nSize, const T* pMissing, T* pMin, T* pMax, int* pnIndexMin,
           int* pnIndexMax, int* pnValid) {
  SumResult<T> r;
  if (pData && nSize > 0) r = sum_kernel(pData, nSize, pMissing);
  const bool any = !r.ext.empty();
  if (pMin) *pMin = any ? r.ext.lo : T(0);
  if (pMax) *pMax = any ? r.ext.hi : T(0);
  if (pnIndexMin) *pnIndexMin = static_cast<int>(r.ext.iMin);
  if (pnIndexMax) *pnIndexMax = static_cast<int>(r.ext.iMax);
  if (pnValid) *pnValid = static_cast<int>(r.valid);
  return r.sum;
}

template <class T>
double mean_variance(const T* pData, int nSize, double* pVariance, int* pnValid,
                     const T* pMissing) {
  std::ptrdiff_t valid = 0;
  const double mean = mean_variance_kernel(pData, pData ? std::max(nSize, 0) : 0, pMissing,
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
