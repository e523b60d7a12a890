// Mean, standard deviation, coefficients of skewness and kurtosis and the weight sum of a
// weighted sample, with the definitions of the statistical routine that the summary exports'
// moment denominator DS_NAG names. With weights w (all 1 when none are given), W = sum w and
// S2 = sum w^2, d = W - S2 / W:
//   mean = sum w x / W,  sd = sqrt(sum w (x - mean)^2 / d),
//   skewness = sum w (x - mean)^3 / (d sd^3),  kurtosis = sum w (x - mean)^4 / (d sd^4) - 3.
// A point of weight 0 takes no part. NANUM is an ordinary number here.
#pragma once

#include <cstddef>

#include "platform/error_record.h"
#include "platform/moment_sums.h"

namespace zomath::platform {

// Failure codes of weighted_moments (NagError::code).
inline constexpr int kMomentsNoData = 1;          // n < 1 or a null x: nothing is written
inline constexpr int kMomentsNegativeWeight = 2;  // a weight below 0: nothing is written
// Fewer than two weights above 0, so d is 0: only weightSum is written, and mean when one
// weight is above 0.
inline constexpr int kMomentsTooFewWeights = 3;
// Every value of weight above 0 is the same: mean, weightSum and sd (0) are written, the
// coefficients of skewness and kurtosis, which do not exist, are not.
inline constexpr int kMomentsZeroVariance = 4;

struct WeightedMoments {
  double mean;
  double sd;
  double skewness;
  double kurtosis;
  double weightSum;
};

// The moments of x[0..n) with weights w (null: all 1). Resets err; returns 0 with every field
// written, or a code above (also in err) with the fields it names written.
int weighted_moments(const double* x, std::ptrdiff_t n, const double* w, WeightedMoments& out,
                     NagError& err);

// The same from the two passes over the points, for a caller that has made them:
// first_sums(x, w, n, false) and deviation_sums without root weights, from first's mean and
// at deviation_scale(first.maxAbs). Returns as weighted_moments for n >= 1.
int weighted_moments_from_sums(const FirstSums& first, const DeviationSums& dev,
                               WeightedMoments& out, NagError& err);

}  // namespace zomath::platform
