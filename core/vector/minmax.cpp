// Exports of the minmax and minmax_in_range families.
#include <cmath>
#include <cstddef>

#include "core/kernels.h"
#include "zomath/vector.h"

// GCC places its vector-ABI note on the passes of core/kernels.h at the end of this file.
#pragma GCC diagnostic ignored "-Wpsabi"

namespace {

using zomath::kernels::Extremes;

void put(unsigned int* pOut, std::ptrdiff_t i) {
  if (pOut) *pOut = static_cast<unsigned int>(i);
}

using zomath::kernels::EqualsMissing;
using zomath::kernels::NoMissing;
using zomath::kernels::SumResult;

template <class T>
[[gnu::always_inline]] inline SumResult<T> extremes_any(const T* p, std::ptrdiff_t n,
                                                        const T* pMissing) {
  if (pMissing) return zomath::kernels::scan_pass<false>(p, n, EqualsMissing<T>{*pMissing});
  return zomath::kernels::scan_pass<false>(p, n, NoMissing{});
}

// The vectorised scan for each element type, compiled for several vector units.
#define ZOMATH_EXTREMES_KERNEL(T)                                                              \
  ZOMATH_VECTOR_CLONES SumResult<T> extremes_kernel(const T* p, std::ptrdiff_t n,             \
                                                    const T* pMissing) {                       \
    return extremes_any(p, n, pMissing);                                                       \
  }
ZOMATH_EXTREMES_KERNEL(double)
ZOMATH_EXTREMES_KERNEL(float)
ZOMATH_EXTREMES_KERNEL(int)
ZOMATH_EXTREMES_KERNEL(unsigned char)
ZOMATH_EXTREMES_KERNEL(unsigned short)
ZOMATH_EXTREMES_KERNEL(short)
ZOMATH_EXTREMES_KERNEL(char)
#undef ZOMATH_EXTREMES_KERNEL

template <class T>
int minmax(const T* pData, unsigned int nFirst, unsigned int nLast, const T* pMissing,
           unsigned int* pnIndexMin, unsigned int* pnIndexMax) {
  std::ptrdiff_t iMin = -1, iMax = -1, missing = 0;
  if (pData && nLast >= nFirst) {
    const std::ptrdiff_t n = std::ptrdiff_t{nLast} - nFirst + 1;
    const SumResult<T> r = extremes_kernel(pData + nFirst, n, pMissing);
    missing = n - r.valid;
    if (!r.ext.empty()) {
      iMin = r.ext.iMin + nFirst;
      iMax = r.ext.iMax + nFirst;
    }
  }
  put(pnIndexMin, iMin);
  put(pnIndexMax, iMax);
  return static_cast<int>(missing);
}

template <class T>
int minmax_in_range(const T* pData, int nSize, T low, T high, const T* pMissing,
                    unsigned int* pnIndexMin, unsigned int* pnIndexMax) {
  std::ptrdiff_t iMin = -1, iMax = -1, missing = 0;
  if (pData && nSize > 0)
    missing = zomath::kernels::minmax_in_range(pData, nSize, low, high, pMissing, iMin, iMax);
  put(pnIndexMin, iMin);
  put(pnIndexMax, iMax);
  return static_cast<int>(missing);
}

}  // namespace

extern "C" {

int zomath_d_minmax(const double* pData, unsigned int nFirst, unsigned int nLast,
                    unsigned int* pnIndexMin, unsigned int* pnIndexMax) {
  const double missing = NANUM;
  return minmax(pData, nFirst, nLast, &missing, pnIndexMin, pnIndexMax);
}

#define ZOMATH_MINMAX(L, T)                                                                 \
  int zomath_##L##_minmax(const T* pData, unsigned int nFirst, unsigned int nLast,          \
                          const T* pMissing, unsigned int* pnIndexMin,                      \
                          unsigned int* pnIndexMax) {                                       \
    return minmax(pData, nFirst, nLast, pMissing, pnIndexMin, pnIndexMax);                  \
  }
ZOMATH_MINMAX(f, float)
ZOMATH_MINMAX(i, int)
ZOMATH_MINMAX(b, unsigned char)
ZOMATH_MINMAX(us, unsigned short)
ZOMATH_MINMAX(s, short)
ZOMATH_MINMAX(c, char)
#undef ZOMATH_MINMAX

int zomath_z_minmax(const d_complex* pData, unsigned int nFirst, unsigned int nLast,
                    int* pnIndexMin, int* pnIndexMax) {
  // Real part, imaginary part, phase, magnitude, tracked side by side.
  Extremes<double> e[4];
  int missing = 0;
  for (std::ptrdiff_t i = nFirst; pData && i <= static_cast<std::ptrdiff_t>(nLast); ++i) {
    const d_complex z = pData[i];
    if (z.re == NANUM || z.im == NANUM) {
      ++missing;
      continue;
    }
    if (z.re != z.re || z.im != z.im) continue;
    const double q[4] = {z.re, z.im, std::atan2(z.im, z.re), std::hypot(z.re, z.im)};
    for (int k = 0; k < 4; ++k) {
      if (e[k].empty()) {
        e[k].seed(q[k], i);
      } else {
        e[k].offer(q[k], i);
      }
    }
  }
  for (int k = 0; k < 4; ++k) {
    if (pnIndexMin) pnIndexMin[k] = static_cast<int>(e[k].iMin);
    if (pnIndexMax) pnIndexMax[k] = static_cast<int>(e[k].iMax);
  }
  return missing;
}

#define ZOMATH_MINMAX_IN_RANGE(L, T)                                                        \
  int zomath_##L##_minmax_in_range(const T* pData, int nSize, T low, T high,                \
                                   const T* pMissing, unsigned int* pnIndexMin,             \
                                   unsigned int* pnIndexMax) {                              \
    return minmax_in_range(pData, nSize, low, high, pMissing, pnIndexMin, pnIndexMax);      \
  }
ZOMATH_MINMAX_IN_RANGE(d, double)
ZOMATH_MINMAX_IN_RANGE(f, float)
ZOMATH_MINMAX_IN_RANGE(i, int)
ZOMATH_MINMAX_IN_RANGE(b, unsigned char)
ZOMATH_MINMAX_IN_RANGE(us, unsigned short)
#undef ZOMATH_MINMAX_IN_RANGE

}  // extern "C"
