#include "platform/two_sample_t.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/double_double.h"
#include "platform/distributions/student_t.h"

namespace zomath::platform {
namespace {

bool usable_sd(double s) { return s >= 0 && s < INFINITY; }

// The standard error of mean(x) - mean(y) and its degrees of freedom. Both SDs are divided by
// the larger first, so that neither their squares nor Satterthwaite's fourth powers overflow or
// underflow between 1e-300 and 1e300; the degrees of freedom don't depend on the scale.
void standard_error(const SampleSummary& x, const SampleSummary& y, Variances variances, double& se,
                    double& df) {
  const double m = std::max(x.sd, y.sd), u = x.sd / m, v = y.sd / m;
  const double nx = x.n, ny = y.n;
  if (variances == Variances::Equal) {
    df = nx + ny - 2;
    const double pooled = ((nx - 1) * u * u + (ny - 1) * v * v) / df;
    se = m * std::sqrt(pooled * (1 / nx + 1 / ny));
  } else {
    const double a = u * u / nx, b = v * v / ny;
    df = (a + b) * (a + b) / (a * a / (nx - 1) + b * b / (ny - 1));
    se = m * std::sqrt(a + b);
  }
}

// (mean x - mean y) - c, from the means' double-double values, rounded once at the end.
double difference_of_means(const SampleSummary& x, const SampleSummary& y, double c) {
  dd::Double2 d = dd::two_sum(x.mean, -y.mean);
  d.lo += x.meanLow - y.meanLow;
  d = dd::add(dd::quick_two_sum(d.hi, d.lo), -c);
  return d.hi + d.lo;
}

}  // namespace

TwoSampleT two_sample_t(const SampleSummary& x, const SampleSummary& y, Variances variances,
                        Tail tail, double difference, double level, double* interval,
                        NagError& err) {
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  TwoSampleT r{nan, nan, nan};
  if (interval) interval[0] = interval[1] = nan;
  if (x.n < 2 || y.n < 2) {
    err.fail(kTwoSampleTooFew, "a sample of fewer than 2 points");
    return r;
  }
  if (!usable_sd(x.sd) || !usable_sd(y.sd) || (x.sd == 0 && y.sd == 0)) {
    err.fail(kTwoSampleBadSpread, "SD below 0, not finite, or both 0");
    return r;
  }
  if (!std::isfinite(x.mean) || !std::isfinite(y.mean) || !std::isfinite(difference)) {
    err.fail(kTwoSampleBadMean, "mean or difference not finite");
    return r;
  }
  if (tail != Tail::TwoSided && tail != Tail::Upper && tail != Tail::Lower) {
    err.fail(kTwoSampleBadTail, "tail not two-sided, upper or lower");
    return r;
  }
  if (interval && !(level > 0 && level < 1)) {
    err.fail(kTwoSampleBadLevel, "level not strictly between 0 and 1");
    return r;
  }
  double se, df;
  standard_error(x, y, variances, se, df);
  if (!(se > 0)) {
    err.fail(kTwoSampleBadSpread, "standard error underflows");
    return r;
  }
  const double t = difference_of_means(x, y, difference) / se;
  NagError inner;
  const double prob = student_t_probability(t, df, tail, inner);
  double half = 0;
  if (interval && inner.code == 0) half = student_t_quantile(level, df, Tail::Central, inner) * se;
  if (inner.code != 0) {
    err.fail(kTwoSampleNoQuantile, inner.message, inner.code);
    return r;
  }
  if (interval) {
    const double d = difference_of_means(x, y, 0);
    interval[0] = d - half;
    interval[1] = d + half;
  }
  return TwoSampleT{t, df, prob};
}

}  // namespace zomath::platform
