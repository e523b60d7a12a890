// Helpers that the curve exports share.
#pragma once

#include <cstddef>

namespace zomath::curves {

// zomath_interpolate without the catch: throws ZOMATH_ERROR when working storage can't be had.
int interpolate(const double* pX, double* pY, unsigned int nSize, const double* pSrcX,
                const double* pSrcY, unsigned int nSrcSize, int nMode, double dSmoothing,
                const double* pWeights, double* pDerivs, unsigned int nOptions, int nBoundary);

// Smallest and largest of the n values that are neither NANUM nor NaN; false when there is none.
bool x_range(const double* p, std::size_t n, double& lo, double& hi);

}  // namespace zomath::curves
