// Reading a curve at any x: the sorted working copy of a source, linear reading with its exact
// rules at the ends and on data points, and the cubic spline through the source points.
//
// The readers take the x to read one at a time and keep the bracket of the last one, so that
// output x that arrive in order cost a step each instead of a search; the bracket found is the
// one a bisection from the whole range finds, so the order of the output x never changes a
// value.
#pragma once

#include <cstddef>

#include "core/nrvec/nrvec.h"

namespace zomath::curves {

// The source of a resampling, copied and in ascending order of x, y (and weights) following.
struct SortedSource {
  NRVec<double> x, y, w;
};

// Copies n points (and weights when pW is given); sorts them by x with CQSort unless they are
// already in non-decreasing order, which keeps tied points in their input order. pOrder (n
// entries, optional) receives the input index of each sorted point. False when the sort could
// not run. Throws ZOMATH_ERROR when the copies can't be had.
bool copy_sorted(const double* pX, const double* pY, const double* pW, std::size_t n,
                 SortedSource& out, unsigned int* pOrder = nullptr);

// True when any x or y of the n points is NANUM.
bool has_missing(const double* pX, const double* pY, std::size_t n);

// Linear reading of a source sorted by x (n >= 1). Below the first x the first segment is
// continued, above the last x the last one, from the last point. Inside, the value is the one
// of a bisection over the whole source that returns the source y where it meets an x equal to
// the one read, and otherwise the line through the final bracket. A single point is read only
// at its own x (NANUM elsewhere, NaN included). Otherwise NANUM reads as NANUM and NaN as NaN,
// and a bracket with a NANUM end gives NANUM.
class LinearReader {
public:
  LinearReader(const double* pX, const double* pY, std::size_t n) : x_(pX), y_(pY), n_(n) {}
  double operator()(double x);

private:
  double bisect(double x) const;
  double line(std::size_t lo, std::size_t hi, double x) const;

  const double* x_;
  const double* y_;
  std::size_t n_;
  std::size_t hint_ = 0;  // first index whose x is not below the last x read
};

// End conditions of the cubic spline through the source points.
enum class SplineEnds {
  kNatural,   // second derivative 0 at both ends
  kNotAKnot,  // the second and the next-to-last points are not knots (from 5 points on)
};

// Cubic spline through a source sorted by x (n >= 2): M receives the second derivative at each
// point. A run of tied x splits the source into pieces that are solved apart, each with the end
// conditions asked for, so that the tie affects nothing beyond it. work holds n doubles.
void spline_second_derivatives(const double* pX, const double* pY, std::size_t n,
                               SplineEnds ends, double* pM, double* pWork);

// Reads the spline given by the source and its second derivatives. Outside the source the end
// cubic is continued. A read that falls in a bracket of zero width (beyond a tied end pair)
// gives NANUM, as do NANUM; NaN gives NaN.
class SplineReader {
public:
  SplineReader(const double* pX, const double* pY, const double* pM, std::size_t n)
      : x_(pX), y_(pY), m_(pM), n_(n) {}
  double operator()(double x);

private:
  const double* x_;
  const double* y_;
  const double* m_;
  std::size_t n_;
  std::size_t lo_ = 0;  // bracket of the last x read
};

// First index in [0, n) whose element is not below x (n when none), for an ascending v and an x
// that is not NaN, found without branches on the data.
std::size_t lower_bound(const double* v, std::size_t n, double x);
// First index whose element is above x (n when none).
std::size_t upper_bound(const double* v, std::size_t n, double x);

}  // namespace zomath::curves
