// The two passes over values and optional weights that every moment routine is built from: the
// first finds counts, the weight sums, the weighted mean and the log of the product of |x|; the
// second sums the powers of the deviations from that mean. Both run in vector lanes and keep
// the sums that cancel (the weighted total, the deviations and their squares) with their
// rounding errors, so that the mean is rounded once and a variance loses nothing to a mean far
// larger than the spread.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zomath::platform {

// What the first pass finds. When it skips missing points, a point whose value or weight is
// NANUM is left out of everything; otherwise NANUM is an ordinary number. A weight below 0 is
// counted and read as 0. Without weights every weight is 1.
struct FirstSums {
  std::ptrdiff_t valid = 0;            // points not left out
  std::ptrdiff_t negativeWeights = 0;  // valid points whose weight is below 0
  std::ptrdiff_t nonzeroWeights = 0;   // valid points whose weight (read as above) is not 0
  std::ptrdiff_t negatives = 0;        // valid values below 0
  std::ptrdiff_t zeros = 0;            // valid values equal to 0
  bool weightNotOne = false;           // some valid weight differs from 1 (NaN included)
  double minWeight = 1.0;              // smallest and largest valid weight as given (1 when
  double maxWeight = 1.0;              // no weights or no valid point)
  double weightSum = 0;                // W, the sum of the weights read
  double weightSquares = 0;            // S2, the sum of their squares
  double mean = 0;                     // sum w x / W (NaN when W is 0), rounded
  double meanLow = 0;                  // what the rounding left out: mean + meanLow is the
                                       // quotient to about twice a double's precision
  double maxAbs = 0;                   // largest |x| of a valid point
  double geometricMean = 0;            // exp(mean of ln |x|) over the valid values that are not
                                       // 0, formed in long double (0 when there is none)
};

// The first pass can also count, for the mode, the values of each bucket of keys
// (kernels::group_key, group_bucket): counts[b] grows by the values of bucket b < 2^logBuckets,
// counts[2^logBuckets] by the points that have none (NANUM, NaN) and by the lanes of the last
// vector past the data. Weights are not looked at.
// `counted` tells that a pass did so.
struct KeyCounts {
  int logBuckets = 0;
  std::size_t* counts = nullptr;
  bool counted = false;
};

FirstSums first_sums(const double* x, const double* w, std::ptrdiff_t n, bool bSkipMissing,
                     KeyCounts* pKeyCounts = nullptr);

// Sums over the points that the first pass kept, of the scaled deviations
// d = (x - mean - meanLow) scale, each carried as a double and its small correction,
// with the weights read as the first pass reads them. scale is a power of two that brings the
// data near 1 (deviation_scale), so that no power up to the fourth overflows or underflows and
// the scaling itself is exact.
struct DeviationSums {
  double sumD = 0;    // sum w d: what is left of the mean's error, times W
  double sumD2 = 0;   // sum w d^2
  double sumAbs = 0;  // sum w |d|
  double sumX2 = 0;   // sum w (x scale)^2
  double m3 = 0;      // sum w d^3, or sum w^(3/2) d^3 with root weights
  double m4 = 0;      // sum w d^4, or sum w^2 d^4 with root weights
  double scale = 1;   // the scale of d
  // sum w d^2 without the part that the mean's error puts in it: sumD2 - sumD^2 / W.
  double corrected(double W) const { return sumD2 - sumD * sumD / W; }
};

// The scale for data whose largest |x| is maxAbs: 2^-e with maxAbs in [2^e, 2^(e+1)) (e kept
// within the normal range); 1 when maxAbs is 0 or not finite.
double deviation_scale(double maxAbs);

// What the second pass can gather besides, over the values that are not NANUM (weights not
// looked at): the keys of the values for the mode, each written at keys[next[b]++] for its
// bucket b, the points without one (and the lanes past the data) in the spare bucket
// 2^logBuckets, whose room the first pass counted; and the logarithms for the geometric SD.
struct LogSums {
  double sum = 0;            // sum of d = ln x - shift
  double sumSquares = 0;     // sum of d^2, both compensated
  std::ptrdiff_t count = 0;  // values taken
  bool bad = false;          // a value 0 or below, NaN or infinite: no logarithm
};
struct SecondPassExtras {
  int logBuckets = 0;
  std::size_t* next = nullptr;  // null: no keys
  std::uint64_t* keys = nullptr;
  LogSums* logs = nullptr;      // null: no logarithms
  long double shift = 0;        // a value near the mean logarithm
};

DeviationSums deviation_sums(const double* x, const double* w, std::ptrdiff_t n, double mean,
                             double meanLow, double scale, bool bRootWeights, bool bSkipMissing,
                             const SecondPassExtras* pExtras = nullptr);

}  // namespace zomath::platform
