#include "platform/weighted_moments.h"

#include <cmath>

#include "platform/moment_sums.h"

namespace zomath::platform {

int weighted_moments(const double* x, std::ptrdiff_t n, const double* w, WeightedMoments& out,
                     NagError& err) {
  err.reset();
  if (!x || n < 1) return err.fail(kMomentsNoData, "fewer than one value");
  const FirstSums first = first_sums(x, w, n, false);
  DeviationSums dev;
  // The second pass only when the first leaves something to compute.
  if (first.negativeWeights == 0 && first.nonzeroWeights >= 2)
    dev = deviation_sums(x, w, n, first.mean, first.meanLow, deviation_scale(first.maxAbs), false, false);
  return weighted_moments_from_sums(first, dev, out, err);
}

int weighted_moments_from_sums(const FirstSums& first, const DeviationSums& dev,
                               WeightedMoments& out, NagError& err) {
  err.reset();
  if (first.negativeWeights > 0)
    return err.fail(kMomentsNegativeWeight, "a weight below 0", static_cast<int>(first.negativeWeights));
  const double W = first.weightSum;
  if (first.nonzeroWeights < 2) {
    out.weightSum = W;
    if (first.nonzeroWeights == 1) out.mean = first.mean;
    return err.fail(kMomentsTooFewWeights, "fewer than two weights above 0");
  }
  const double scale = dev.scale;
  const double d = W - first.weightSquares / W;
  const double corSumSq = dev.corrected(W);  // in units of scale^-2
  out.weightSum = W;
  out.mean = first.mean + (first.meanLow + (dev.sumD / W) / scale);
  if (corSumSq == 0) {
    out.sd = 0;
    return err.fail(kMomentsZeroVariance, "zero variance");
  }
  const double variance = corSumSq / d, sd = std::sqrt(variance);
  out.sd = sd / scale;
  out.skewness = dev.m3 / (d * sd * variance);
  out.kurtosis = dev.m4 / (d * variance * variance) - 3.0;
  return 0;
}

}  // namespace zomath::platform
