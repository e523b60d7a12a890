#include "stats/hypothesis.h"

#include <cmath>

#include "core/double_double.h"
#include "platform/distributions/student_t.h"
#include "platform/moment_sums.h"
#include "zomath/stats.h"

namespace zomath::stats {

int sample_summary(const double* x, int n, SampleStats& s) {
  s = SampleStats{};
  const int code = zomath_basic_summary_stats(n, x, &s.n, &s.mean, &s.sd, &s.sem, nullptr, nullptr,
                                              nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                              nullptr, nullptr, nullptr, DS_SAS1_DF, nullptr);
  if (code == 0 && s.n >= 2 && s.mean != NANUM) {
    // The first pass of the summary once more, for the part of the mean that rounding drops.
    const platform::FirstSums f = platform::first_sums(x, nullptr, n, true);
    if (std::isfinite(f.meanLow)) s.meanLow = (f.mean - s.mean) + f.meanLow;
  }
  return code;
}

double mean_minus(const SampleStats& s, double c) {
  dd::Double2 d = dd::two_sum(s.mean, -c);
  d.lo += s.meanLow;
  return d.hi + d.lo;
}

double student_probability(double t, double dof, int nTailType, bool bZeroIsUpper) {
  if (nTailType < TAILED_TEST_TWO || nTailType > TAILED_TEST_LOWER) return NANUM;
  platform::NagError err;
  // The two-sided probability is computed directly, never as a complement, so that its small
  // values keep their relative accuracy; the fold adds no error where the result is below 1/2.
  const double p2 = platform::student_t_probability(t, dof, platform::Tail::TwoSided, err);
  if (err.code != 0) return NANUM;
  if (nTailType == TAILED_TEST_TWO) return p2;
  const bool positive = bZeroIsUpper ? t >= 0 : t > 0;
  const bool beyond = (nTailType == TAILED_TEST_UPPER) == positive;
  return beyond ? p2 / 2 : 1 - p2 / 2;
}

}  // namespace zomath::stats
