// Exports that look values up or compare arrays: zomath_array_find_indices,
// zomath_binary_search, zomath_find_nearest_index, zomath_find_nearest_values,
// zomath_is_inside_range, zomath_check_infinity, zomath_split_vector_by_value,
// zomath_compare_data, zomath_get_median_in_vector, zomath_fac.
#include <cfloat>
#include <climits>
#include <cmath>

#include "core/kernels.h"
#include "core/nrvec/nrvec.h"
#include "zomath/vector.h"

namespace {

// Last position whose element is not above v, in an ascending array of n >= 1 elements.
int find_index(const double* pSorted, unsigned int n, double v) {
  if (v != v || v < pSorted[0]) return -1;
  if (v >= pSorted[n - 1]) return static_cast<int>(n - 1);
  unsigned int lo = 0, hi = n - 1;
  while (hi - lo > 1) {
    const unsigned int mid = lo + (hi - lo) / 2;
    if (pSorted[mid] <= v) {
      lo = mid;
    } else {
      hi = mid;
    }
  }
  return static_cast<int>(lo);
}

bool sorted_ends_ok(const double* pSorted, unsigned int nSize) {
  return pSorted && nSize >= 1 && nSize <= static_cast<unsigned int>(INT_MAX) &&
         !(pSorted[0] > pSorted[nSize - 1]);
}

}  // namespace

extern "C" {

int zomath_array_find_indices(const double* pSorted, unsigned int nSize, const double* pValues,
                              int nValues, int* pnIndices) {
  if (!sorted_ends_ok(pSorted, nSize) || !pValues || !pnIndices || nValues < 0)
    return ZOMATH_ERR_BAD_ARGUMENT;
  for (int k = 0; k < nValues; ++k) pnIndices[k] = find_index(pSorted, nSize, pValues[k]);
  return ZOMATH_OK;
}

int zomath_binary_search(const double* pSorted, unsigned int nSize, double dValue, int* pnIndex) {
  if (!sorted_ends_ok(pSorted, nSize) || !pnIndex) return ZOMATH_ERR_BAD_ARGUMENT;
  *pnIndex = find_index(pSorted, nSize, dValue);
  return ZOMATH_OK;
}

int zomath_find_nearest_index(const double* pData, int nSize, double dValue, int* pnLower,
                              int* pnUpper, int* pnNearest) {
  if (!pData || nSize < 1) return ZOMATH_ERR_BAD_ARGUMENT;
  double lower = -DBL_MAX, upper = DBL_MAX;
  int iLower = -1, iUpper = -1;
  // The scan stops at the first element that improves neither bound, so on unsorted data it
  // sees only a leading stretch: hosts rely on that.
  for (int i = 0; i < nSize; ++i) {
    const double x = pData[i];
    if (x == NANUM) continue;
    if (x < dValue && x > lower) {
      lower = x;
      iLower = i;
    } else if (x > dValue && x < upper) {
      upper = x;
      iUpper = i;
    } else {
      if (x == dValue) {
        lower = upper = x;
        iLower = iUpper = i;
      }
      break;
    }
  }
  if (pnLower) *pnLower = iLower;
  if (pnUpper) *pnUpper = iUpper;
  if (pnNearest) *pnNearest = (upper - dValue < dValue - lower) ? iUpper : iLower;
  return (iLower >= 0 && iUpper >= 0) ? ZOMATH_OK : ZOMATH_ERR_NOT_FOUND;
}

int zomath_find_nearest_values(double* pOut, int nSize, const double* pData, int nCount,
                               const double* pX, int bInterpolate) {
  if (!pOut || !pData || !pX) return ZOMATH_ERR_NULL_POINTER;
  if (nSize < 1 || nCount < 1) return ZOMATH_ERR_TOO_FEW_ITEMS;
  const double last = nSize - 1;
  for (int k = 0; k < nCount; ++k) {
    const double x = pX[k];
    if (x != x) {
      pOut[k] = NANUM;
    } else if (x <= 0) {
      pOut[k] = pData[0];
    } else if (x >= last) {
      pOut[k] = pData[nSize - 1];
    } else {
      const int a = static_cast<int>(x);
      const int b = static_cast<int>(std::ceil(x));
      const double fa = pData[a], fb = pData[b];
      if (bInterpolate & 1) {
        pOut[k] = (a == b) ? fa : zomath::nanum_add(fa, zomath::nanum_mul(x - a, zomath::nanum_sub(fb, fa)));
      } else {
        pOut[k] = (b - x < x - a) ? fb : fa;
      }
    }
  }
  return ZOMATH_OK;
}

int zomath_is_inside_range(double x, double a, double b, int bInclusive) {
  const double lo = a < b ? a : b, hi = a < b ? b : a;
  return (lo < x && x < hi) || (bInclusive && (x == a || x == b));
}

int zomath_check_infinity(const double* pData, int nSize, int* pnFlags, int nFlagSize) {
  if (!pData || !pnFlags || nSize != nFlagSize) return 0;
  int count = 0;
  for (int k = 0; k < nSize; ++k) {
    pnFlags[k] = std::isinf(pData[k]) ? 1 : 0;
    count += pnFlags[k];
  }
  return count;
}

int zomath_split_vector_by_value(unsigned int nSize, const double* pData, double dValue,
                                 unsigned int* pnPairs) {
  if (!pData || !pnPairs || nSize == 0) return 0;
  int pairs = 0;
  unsigned int i = 0;
  for (;;) {
    while (i < nSize && pData[i] == dValue) ++i;
    const unsigned int start = i;
    while (i < nSize && pData[i] != dValue) ++i;
    pnPairs[2 * pairs] = start;
    pnPairs[2 * pairs + 1] = i;
    ++pairs;
    if (i >= nSize) break;
  }
  return pairs;
}

int zomath_compare_data(unsigned int nSize, const double* pA, const double* pB, int* pbEqual,
                        double dTolerance) {
  if (!pA || !pB || !pbEqual || nSize < 1) return ZOMATH_ERR_BAD_ARGUMENT;
  bool equal = dTolerance != NANUM;
  for (unsigned int k = 0; equal && k < nSize; ++k) {
    const bool missingA = pA[k] == NANUM, missingB = pB[k] == NANUM;
    equal = (missingA && missingB) ||
            (!missingA && !missingB && std::fabs(pA[k] - pB[k]) <= dTolerance);
  }
  *pbEqual = equal;
  return ZOMATH_OK;
}

int zomath_get_median_in_vector(int nSize, const double* pData, double* pMedian) {
  if (pMedian) *pMedian = NANUM;
  if (nSize < 1 || !pData || !pMedian) return ZOMATH_ERR_BAD_ARGUMENT;
  try {
    double median;
    if (!zomath::kernels::median(pData, static_cast<std::size_t>(nSize), median))
      return ZOMATH_ERR_BAD_ARGUMENT;  // NaN has no place in an order
    *pMedian = median;
  } catch (...) {
    return ZOMATH_ERR_SORT_FAILED;
  }
  return ZOMATH_OK;
}

double zomath_fac(int n) {
  if (n < 0) return NANUM;
  long double f = 1;
  for (int k = 2; k <= n && f <= DBL_MAX; ++k) f *= k;
  return static_cast<double>(f);
}

}  // extern "C"
