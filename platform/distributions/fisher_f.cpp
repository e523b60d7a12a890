// The F distribution through the incomplete beta function: with y = df1 f / (df1 f + df2) and
// 1 - y = df2 / (df1 f + df2), both formed in long double, P(F <= f) = I_y(df1/2, df2/2). Each
// tail is evaluated from whichever of y and 1 - y is the smaller, so a tail near 1 - y = 1e-30
// keeps its digits.
#include "platform/distributions/fisher_f.h"

#include <boost/math/special_functions/beta.hpp>
#include <cmath>

#include "platform/distributions/incomplete_functions.h"
#include "platform/distributions/quantile_search.h"
#include "platform/special/quiet_policy.h"

namespace zomath::platform {
namespace {

constexpr int kPolishSteps = 4;    // steps the fast inversion may take to confirm itself
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
  // With the rate 1 + f g'(f) / g(f) = a - (a + b) y of the density g, for the search.
  detail::TailPoint operator()(long double f, bool upper) const {
    long double slope;
    const long double t = value(f, upper, &slope);
    return {t, slope, a - (a + b) * (d1 * f / (d1 * f + d2))};
  }
};

}  // namespace

double f_probability(double f, double df1, double df2, Tail tail, NagError& err) {
  if (std::isnan(f)) return distribution_failure(err, kDistributionBadArgument, "f is NaN");
  if (!valid_df(df1) || !valid_df(df2))
    return distribution_failure(err, kDistributionBadParameter, "df not positive and finite");
  if (!(f > 0)) return combine_tails(tail, 0, 1);
  if (std::isinf(f)) return combine_tails(tail, 1, 0);
  const FTails tails{df1 / 2.0L, df2 / 2.0L, df1, df2};
  // Below the mean of the beta variable y, a / (a + b), the lower tail is the smaller.
  const long double y = df1 * static_cast<long double>(f) / (df1 * static_cast<long double>(f) + df2);
  const bool lowerIsSmaller = y < df1 / (static_cast<long double>(df1) + df2);
  return tails_from_smaller(tail, lowerIsSmaller, static_cast<double>(tails.value(f, !lowerIsSmaller)));
}

namespace {

// The quantile by the search from `start` (Boost's inversion when fromInversion, else 1, near
// the median for all but tiny degrees of freedom) in at most maxSteps evaluations. Returns false
// for bad arguments (recorded in err), else the search's result in r.
bool search(double p, double df1, double df2, Tail tail, bool fromInversion, int maxSteps,
            detail::SearchResult& r, NagError& err) {
  if (!valid_df(df1) || !valid_df(df2)) {
    err.fail(kDistributionBadParameter, "df not positive and finite");
    return false;
  }
  QuantileTarget target;
  if (!quantile_target(p, tail, target, err)) return false;
  const bool upper = target.upper;
  if (target.q == 0) {
    r = {upper ? INFINITY : 0.0, true};
    return true;
  }
  double start = 1;
  if (fromInversion) {
    start = std::nan("");
    try {
      double yc = 0;  // the inverse gives y and 1 - y together
      const double q = static_cast<double>(target.q);
      const double y = upper ? boost::math::ibetac_inv(df1 / 2, df2 / 2, q, &yc, QuietPolicy())
                             : boost::math::ibeta_inv(df1 / 2, df2 / 2, q, &yc, QuietPolicy());
      start = df2 * y / (df1 * yc);
    } catch (...) {
      // Its internal root finder gave up: the start stays unusable.
    }
  }
  const FTails tails{df1 / 2.0L, df2 / 2.0L, df1, df2};
  r = detail::search_quantile([&](long double f) { return tails(f, upper); }, !upper, target.q,
                              start, maxSteps);
  return true;
}

}  // namespace

double f_quantile(double p, double df1, double df2, Tail tail, NagError& err) {
  detail::SearchResult r;
  if (!search(p, df1, df2, tail, true, kPolishSteps, r, err)) return std::nan("");
  if (!r.converged) err.fail(kFQuantileInaccurate, "F quantile not confirmed to full accuracy");
  return r.v;
}

double f_quantile_by_search(double p, double df1, double df2, Tail tail, NagError& err) {
  detail::SearchResult r;
  if (!search(p, df1, df2, tail, false, kSearchSteps, r, err)) return std::nan("");
  if (!r.converged) return distribution_failure(err, kDistributionNoConvergence, "F quantile search failed");
  return r.v;
}

}  // namespace zomath::platform
