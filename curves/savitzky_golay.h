// The Savitzky-Golay weights, shared by the filter exports and their tests.
#pragma once

#include <cstddef>

namespace zomath::curves {

// Raised for a derivative above the order or a window of fewer than order + 1 points.
constexpr int kSavgolBadShape = -30001;
// The normal equations could not be factorised, or are too ill-conditioned for the weights to
// be had to 15 digits (orders above about 22).
constexpr int kSavgolSingular = -1;
// The last correction of the refined weights, relative to the largest, that counts as solved.
constexpr double kSavgolRefinedTo = 1e-15;

// c[0..nLeft + nRight] weights the samples at offsets -nLeft..nRight: sum c[k] y[i - nLeft + k]
// is coefficient nDeriv of the least-squares polynomial of order nOrder through the window, in
// powers of the offset (the nDeriv-th derivative at offset 0 divided by nDeriv!). Solved from
// the normal equations (sums over the window of the powers of the offset) by LU, in an offset
// centred on the window and scaled by a power of two, and refined with residuals in quadruple
// precision: the weights come out correctly rounded. Returns 0 or a code above.
int savgol_coefficients(int nLeft, int nRight, int nOrder, int nDeriv, double* c);

// out[i] = sum over k < w of c[k] x[i + k], for i < count.
void correlate(const double* x, std::size_t count, const double* c, std::size_t w, double* out);

}  // namespace zomath::curves
