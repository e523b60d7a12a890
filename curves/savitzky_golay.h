// The Savitzky-Golay weights, shared by the filter exports and their tests.
#pragma once

#include <cstddef>

namespace zomath::curves {

// Raised for a derivative above the order or a window of fewer than order + 1 points.
constexpr int kSavgolBadShape = -30001;
// The normal equations could not be factorised.
constexpr int kSavgolSingular = -1;

// c[0..nLeft + nRight] weights the samples at offsets -nLeft..nRight: sum c[k] y[i - nLeft + k]
// is coefficient nDeriv of the least-squares polynomial of order nOrder through the window, in
// powers of the offset (the nDeriv-th derivative at the centre divided by nDeriv!). Solved from
// the normal equations sum over the window of k^(i + j) by LU, in units of a power of two that
// keeps the offsets within 1, and refined with residuals in long double. Returns 0 or a code
// above.
int savgol_coefficients(int nLeft, int nRight, int nOrder, int nDeriv, double* c);

// out[i] = sum over k < w of c[k] x[i + k], for i < count.
void correlate(const double* x, std::size_t count, const double* c, std::size_t w, double* out);

}  // namespace zomath::curves
