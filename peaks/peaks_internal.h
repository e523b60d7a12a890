// What the peak exports share: the curve they search (the caller's or a copy sorted by x), the
// list the finders write into, the shared detector, the test of a window's extreme and the
// mapping of peaks back to the input.
#pragma once

#include <cstddef>

#include "core/nrvec/nrvec.h"
#include "zomath/core.h"
#include "zomath/peaks.h"

namespace zomath::peaks {

// A value that takes no part: NANUM or NaN.
inline bool absent(double v) { return v == NANUM || v != v; }

// The curve a finder searches. x is rising or falling (ties allowed) as given; otherwise the
// points are copied in ascending order of x and index[k] is the input index of point k.
struct Curve {
  const double* x = nullptr;
  const double* y = nullptr;
  int n = 0;
  bool rising = true;  // x non-decreasing (always so for a sorted copy)
  bool sorted = false;
  NRVec<double> sx, sy;
  NRVec<int> index;
};

// Takes the caller's curve (n >= 1) as it stands or sorts a copy, by the order of x (2 rising,
// 1 falling, 0 neither, as zomath_is_monotonic answers; -1: find it). Throws ZOMATH_ERROR.
void prepare(Curve& c, const double* pX, const double* pY, int n, int order = -1);

// The peak list of a finder: the caller's three arrays (idx may point at working storage) with
// their room and the number written.
struct PeakList {
  double* x;
  double* y;
  int* idx;
  int count;
  int room;
  bool add(double px, double py, int i) {
    if (count >= room) return false;
    x[count] = px;
    y[count] = py;
    idx[count] = i;
    ++count;
    return true;
  }
};

// A finder's output arrays, with working storage for the indices when the caller gave none.
struct Output {
  NRVec<int> own;
  PeakList list;
  Output(double* px, double* py, int* pi, int room) : list{px, py, pi, 0, room} {
    if (!pi) {
      own.SetSize(room);
      list.idx = own.Data();
    }
  }
};

enum MaskMode { kSlope = 0, kCurvature = 1, kSmoothSlope = 2, kSmoothCurvature = 3 };

// The shared detector: appends to out, in order of index, the points that D marks as peaks of
// the given polarity under the mask mode (slope modes read the climbing side in the direction of
// x). Without ZOMATH_PEAK_ANY_SIGN a positive peak needs y >= 0, a negative one y <= 0. A D, x
// or y equal to missing (when given) or NaN marks nothing. False when out overflows.
bool detect(const double* x, const double* y, const double* D, int n, bool rising, bool negative,
            int flags, int mode, const double* missing, PeakList& out);

// Maps the peaks of out from the searched curve back to the input: through the sort index when
// the curve is a sorted copy (whose x and y are the input's numbers).
void map_back(const Curve& c, PeakList& out);

// The inflections of a curve for the partition of its peaks: the indices i >= 1, ascending, at
// which the second derivative (zomath_derivative twice) of the curve smoothed by Savitzky-Golay
// of order 2 over w points changes sign, NANUM and NaN x or derivatives left out. A failed
// smoothing gives ZOMATH_PEAK_ERR_SMOOTHING when w > 3, else the raw curve is used. Throws
// ZOMATH_ERROR.
int inflections(const double* pX, const double* pY, int n, int w, NRVec<int>& at, int& count);

// Of the `count` inflections at[], the nearest to peak x c below it and above it in x (the first
// in curve order among equal x), whichever way x runs; left and right keep their values where
// there is none on that side.
void nearest_inflections(const double* pX, const int* at, int count, double c, int& left,
                         int& right);

// Moves each peak to the input point nearest to its x (the lowest index among equally near),
// taking that point's x and y. Peaks whose x is absent keep their entries. Throws ZOMATH_ERROR.
void move_to_nearest_x(const double* pX, const double* pY, int n, PeakList& out);

// Whether y[i] is the first extreme of the present values among y[i - r] .. y[i + r]: above
// (largest) or below every one before it, and not beaten by one after it. Neighbours are read
// nearest first until one beats the centre; absent values take no part. Summed over all centres
// this is O(n log r) whatever the data, monotonic data included: centres that read d or more
// neighbours each lie at least d apart, since of two closer ones, one beats the other.
inline bool first_extreme(const double* y, int i, int r, bool largest) {
  const double v = y[i];
  for (int k = 1; k <= r; ++k) {
    const double a = y[i - k], b = y[i + k];
    if (largest ? (a >= v && a != NANUM) || (b > v && b != NANUM)
                : (a <= v && a != NANUM) || (b < v && b != NANUM))
      return false;
  }
  return true;
}

// Median absolute deviation of the second differences of y, scaled to the standard deviation
// of white noise; NANUM when no three consecutive values are present. Throws ZOMATH_ERROR.
double noise_level(const double* y, std::size_t n);

}  // namespace zomath::peaks
