// The F distribution through the incomplete beta function: with y = df1 f / (df1 f + df2) and
// 1 - y = df2 / (df1 f + df2), both formed in long double, P(F <= f) = I_y(df1/2, df2/2). Each
// tail is evaluated from whichever of y and 1 - y is the smaller, so a tail near 1 - y = 1e-30
// keeps its digits.
#include "platform/distributions/fisher_f.h"

#include <boost/math/special_functions/beta.hpp>
#include <cmath>
#include <utility>

#include "platform/distributions/incomplete_functions.h"
#include "platform/distributions/quantile_search.h"
#include "platform/special/quiet_policy.h"

namespace zomath::platform {
namespace {

constexpr int kPolishSteps = 4;    // Newton steps the fast inversion may take to confirm itself
constexpr int kSearchSteps = 400;  // evaluations of the full search (bisection needs about 70)

bool valid_df(double d) { return d > 0 && d < INFINITY; }

struct FTails {
  long double a, b, d1, d2;
  // P(F <= f) or P(F > f); with `slope`, also f times the derivative of that tail.
  long double value(long double f, bool upper, long double* slope = nullptr) const {
    const long double den = d1 * f + d2, y = d1 * f / den, yc = d2 / den;
    long double density;
    long double* want = slope ? &density : nullptr;
    const long double t = y <= 0.5L ? detail::incomplete_beta(a, b, y, upper, want)
                                    : detail::incomplete_beta(b, a, yc, !upper, want);
    if (slope) *slope = (upper ? -1 : 1) * density * y * yc;  // as dy/df = y (1 - y) / f
    return t;
  }
  std::pair<long double, long double> operator()(long double f, bool upper) const {
    long double slope;
    const long double t = value(f, upper, &slope);
    return {t, slope};
  }
};

// The tail (upper or not) and target the quantile search uses: the smaller of p and 1 - p.
struct Target {
  bool upper;
  long double q;
};

// Checks p against `tail`; on success sets the search target, else records the failure.
bool quantile_target(double p, Tail tail, Target& target, NagError& err) {
  bool lower;
  if (tail == Tail::Lower && p >= 0 && p < 1) {
    lower = true;
  } else if (tail == Tail::Upper && p > 0 && p <= 1) {
    lower = false;
  } else {
    err.fail(kDistributionBadArgument, "p or tail out of range");
    return false;
  }
  // Searching the smaller tail; 1 - p is exact for p >= 0.5.
  target = p <= 0.5 ? Target{!lower, p} : Target{lower, 1 - static_cast<long double>(p)};
  return true;
}

}  // namespace

double f_probability(double f, double df1, double df2, Tail tail, NagError& err) {
  if (std::isnan(f)) return distribution_failure(err, kDistributionBadArgument, "f is NaN");
  if (!valid_df(df1) || !valid_df(df2))
    return distribution_failure(err, kDistributionBadParameter, "df not positive and finite");
  double lower = 0, upper = 1;
  if (std::isinf(f)) {
    lower = f > 0 ? 1 : 0;
    upper = 1 - lower;
  } else if (f > 0) {
    const FTails tails{df1 / 2.0L, df2 / 2.0L, df1, df2};
    // The smaller tail directly (below the mean of the beta variable, a / (a + b), the lower
    // one), the other as its complement, at least about 1/2.
    const long double y = df1 * static_cast<long double>(f) / (df1 * static_cast<long double>(f) + df2);
    if (y < df1 / (static_cast<long double>(df1) + df2)) {
      lower = static_cast<double>(tails.value(f, false));
      upper = 1 - lower;
    } else {
      upper = static_cast<double>(tails.value(f, true));
      lower = 1 - upper;
    }
  }
  return combine_tails(tail, lower, upper);
}

double f_quantile(double p, double df1, double df2, Tail tail, NagError& err) {
  if (!valid_df(df1) || !valid_df(df2))
    return distribution_failure(err, kDistributionBadParameter, "df not positive and finite");
  Target target;
  if (!quantile_target(p, tail, target, err)) return std::nan("");
  if (target.q == 0) return target.upper ? INFINITY : 0.0;
  // Start: the inverse incomplete beta function, y and 1 - y together.
  double start = std::nan("");
  try {
    double yc = 0;
    const double q = static_cast<double>(target.q);
    const double y = target.upper ? boost::math::ibetac_inv(df1 / 2, df2 / 2, q, &yc, QuietPolicy())
                                  : boost::math::ibeta_inv(df1 / 2, df2 / 2, q, &yc, QuietPolicy());
    start = df2 * y / (df1 * yc);
  } catch (...) {
    // Its internal root finder gave up: leave the start unusable.
  }
  const FTails tails{df1 / 2.0L, df2 / 2.0L, df1, df2};
  const bool upper = target.upper;
  const detail::SearchResult r = detail::search_quantile(
      [&](long double f) { return tails(f, upper); }, !upper, target.q, start, kPolishSteps);
  if (!r.converged) err.fail(kFQuantileInaccurate, "F quantile not confirmed to full accuracy");
  return r.v;
}

double f_quantile_by_search(double p, double df1, double df2, Tail tail, NagError& err) {
  if (!valid_df(df1) || !valid_df(df2))
    return distribution_failure(err, kDistributionBadParameter, "df not positive and finite");
  Target target;
  if (!quantile_target(p, tail, target, err)) return std::nan("");
  if (target.q == 0) return target.upper ? INFINITY : 0.0;
  const FTails tails{df1 / 2.0L, df2 / 2.0L, df1, df2};
  const bool upper = target.upper;
  // The median of F is near 1 for all but tiny degrees of freedom: a start inside the bracket.
  const detail::SearchResult r = detail::search_quantile(
      [&](long double f) { return tails(f, upper); }, !upper, target.q, 1.0, kSearchSteps);
  if (!r.converged) {
    err.fail(kDistributionNoConvergence, "F quantile search did not converge");
    return std::nan("");
  }
  return r.v;
}

}  // namespace zomath::platform
