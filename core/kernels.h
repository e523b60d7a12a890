// Typed array kernels, written once over the element type. The exports of the vector families
// and the containers are thin layers over these.
#pragma once

#include <cstddef>

namespace zomath::kernels {

// Positions of the smallest and largest elements of nFirst..nLast (inclusive) that are not
// missing (equal to *pMissing; a null pMissing means none is). The element at nFirst is taken
// first and a later one replaces it only when strictly smaller or larger, so ties go to the
// earliest position. Returns the count of missing elements; both positions are -1 when every
// element is missing.
template <class T>
std::ptrdiff_t minmax(const T* p, std::ptrdiff_t nFirst, std::ptrdiff_t nLast, const T* pMissing,
                      std::ptrdiff_t& iMin, std::ptrdiff_t& iMax) {
  iMin = iMax = -1;
  std::ptrdiff_t missing = 0, i = nFirst;
  if (pMissing) {
    const T m = *pMissing;
    for (; i <= nLast && p[i] == m; ++i) ++missing;
  }
  if (i > nLast) return missing;
  iMin = iMax = i;
  T lo = p[i], hi = p[i];
  if (pMissing) {
    const T m = *pMissing;
    for (++i; i <= nLast; ++i) {
      const T x = p[i];
      if (x == m) {
        ++missing;
      } else if (x < lo) {
        lo = x;
        iMin = i;
      } else if (x > hi) {
        hi = x;
        iMax = i;
      }
    }
  } else {
    for (++i; i <= nLast; ++i) {
      const T x = p[i];
      if (x < lo) {
        lo = x;
        iMin = i;
      } else if (x > hi) {
        hi = x;
        iMax = i;
      }
    }
  }
  return missing;
}

}  // namespace zomath::kernels
