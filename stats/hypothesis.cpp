#include "stats/hypothesis.h"

#include <cmath>

#include "core/double_double.h"
#include "platform/distributions/student_t.h"
#include "platform/moment_sums.h"
#include "platform/weighted_moments.h"
#include "stats/moments.h"
#include "zomath/stats.h"

namespace zomath::stats {

int sample_summary(const double* x, int n, SampleStats& s) {
  s = SampleStats{};
  if (n < 0) return ZOMATH_ERR_NULL_DATA;
  if (n > 0 && !x) return ZOMATH_ERR_EMPTY_DATA;
  // The route of zomath_basic_summary_stats under n - 1 without weights, taken here so that the
  // first pass's double-double mean is kept: two passes for everything.
  const platform::FirstSums f = scan(x, nullptr, n);
  s.n = static_cast<int>(f.valid);
  if (s.n == 1) {
    int i = n - 1;
    while (x[i] == NANUM) --i;
    s.mean = x[i];
  }
  if (s.n < 2) return ZOMATH_OK;
  const platform::DeviationSums dev = deviations(x, nullptr, n, f, false);
  platform::WeightedMoments m;
  platform::NagError err;
  const int code = platform::weighted_moments_from_sums(f, dev, m, err);
  if (code != 0 && code != platform::kMomentsZeroVariance) return ZOMATH_OK;
  s.mean = m.mean;
  s.sd = m.sd;
  s.sem = m.sd / std::sqrt(f.weightSum);
  // The mean is first.mean + first.meanLow + the deviations' residue: what rounding left out.
  const double low = (f.mean - m.mean) + (f.meanLow + dev.sumD / f.weightSum / dev.scale);
  s.meanLow = std::isfinite(low) ? low : 0;
  return ZOMATH_OK;
}

double mean_minus(const SampleStats& s, double c) {
  dd::Double2 d = dd::two_sum(s.mean, -c);
  d.lo += s.meanLow;
  return d.hi + d.lo;
}

bool all_equal(const double* p, int n) {
  double first = NANUM;
  for (int i = 0; i < n; ++i) {
    if (p[i] == NANUM) continue;
    if (first == NANUM) first = p[i];
    if (p[i] != first) return false;
  }
  return true;
}

double student_probability(double t, double dof, int nTailType, bool bZeroIsUpper) {
  if (!known_tail(nTailType)) return NANUM;
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
