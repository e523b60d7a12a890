// What the window filters (adjacent averaging, Savitzky-Golay, the percentile filter) share:
// the boundary modes, the pads that stand beyond the ends of the data, and a private copy of
// the source when the caller filters in place.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zomath::curves {

// Boundary modes: what the window reads beyond the ends of the data.
enum Boundary : int {
  kBoundaryShrink = 0,    // no padding: the window shrinks or the ends are fitted
  kBoundaryReflect = 1,   // position -1 reads element 0, position n element n - 1
  kBoundaryRepeat = 2,    // the end value
  kBoundaryPeriodic = 3,  // position -1 reads element n - 1, position n element 0
  kBoundaryLinear = 4,    // a straight line through the end data
  kBoundaryZero = 5       // zeros
};

// Pads of modes 1 to 5: left[j] stands at position -1 - j (j < nLeft), right[j] at n + j
// (j < nRight); nLeft and nRight are at most n. Mode 4 continues the straight line fitted
// (zomath_linear_fit, x = 0, 1, ...) to the nLine first points on the left and the nLine last
// on the right, NANUM left out. A chunk of one point, of fewer than two points that are not
// NANUM, whose fit fails, or whose values agree to 11 digits (span at most 1e-11 of their
// largest magnitude) gives a flat pad at the mean of its first two values that are not NANUM
// (NANUM when there is none).
void build_pads(const double* src, std::size_t n, int mode, std::size_t nLeft,
                std::size_t nRight, std::size_t nLine, double* left, double* right);

// The data with the pads around them, read by position.
struct PaddedSource {
  const double* src;
  std::ptrdiff_t n;
  const double* left;
  const double* right;
  double operator()(std::ptrdiff_t pos) const {
    return pos < 0 ? left[-1 - pos] : pos >= n ? right[pos - n] : src[pos];
  }
};

// src itself, or a copy of it in `copy` when dst overlaps it (a filter called in place).
// Throws ZOMATH_ERROR_NO_MEMORY when the copy can't be had.
const double* unaliased_source(const double* src, const double* dst, std::size_t n,
                               std::vector<double>& copy);

// The running percentile behind zomath_median_filter. Windows of rankedFromWidth points or more
// hold their values as ranks over the whole sequence (O(log n) a step) rather than as a sorted
// copy (up to w moves a step); both give the same values, which the tests hold them to.
constexpr std::size_t kRankedWindowFrom = 4096;
int percentile_filter(int nSize, const double* pSrc, double* pDst, int nHalf, double dPercent,
                      unsigned int nBoundary, bool bEdfAver, std::size_t rankedFromWidth);

}  // namespace zomath::curves
