// The two-sample t test on summaries: Student's test with a pooled variance, or Welch's with
// Satterthwaite's degrees of freedom, and the confidence interval of the difference of means.
#pragma once

#include "platform/distributions/tail.h"
#include "platform/error_record.h"

namespace zomath::platform {

// Failure codes of two_sample_t (0 is success).
inline constexpr int kTwoSampleTooFew = 1;      // a sample of fewer than 2 points
inline constexpr int kTwoSampleBadSpread = 2;   // an SD below 0, NaN or infinite, or both SDs 0
inline constexpr int kTwoSampleBadLevel = 3;    // a confidence level not strictly between 0 and 1
inline constexpr int kTwoSampleBadTail = 4;     // a tail other than TwoSided, Upper or Lower
inline constexpr int kTwoSampleBadMean = 5;     // a mean or the tested difference NaN or infinite
inline constexpr int kTwoSampleNoQuantile = 6;  // the t quantile search did not settle

// Count, mean and standard deviation (denominator n - 1) of one sample. mean + meanLow is the
// mean to about twice a double's precision where the caller knows it (0: the mean as rounded),
// so that a difference of close means keeps its digits.
struct SampleSummary {
  int n;
  double mean;
  double sd;
  double meanLow = 0;
};

enum class Variances { Equal, Unequal };

struct TwoSampleT {
  double t;     // (mean x - mean y - difference) / standard error
  double df;    // nx + ny - 2, or Satterthwaite's for unequal variances
  double prob;  // P(T > t) for Upper, P(T <= t) for Lower, P(|T| >= |t|) for TwoSided
};

// The test of mean(x) - mean(y) against `difference`. With `interval` given, also the two-sided
// `level` confidence interval of mean(x) - mean(y) (whatever the tail): interval[0] the lower
// limit, interval[1] the upper. On failure every result is NaN and err holds the code above.
TwoSampleT two_sample_t(const SampleSummary& x, const SampleSummary& y, Variances variances,
                        Tail tail, double difference, double level, double* interval,
                        NagError& err);

}  // namespace zomath::platform
