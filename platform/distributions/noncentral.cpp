// The noncentral distributions through Boost.Math, whose Poisson-mixture series are summed
// outward from the largest term (Ding; Benton and Krishnamoorthy, Comput. Statist. Data Anal. 43
// (2003) 249-267). A series that exhausts its terms raises an evaluation error, caught here as
// kDistributionNoConvergence. Each tail is asked of Boost directly, never as a complement here.
#include "platform/distributions/noncentral.h"

#include <boost/math/distributions/non_central_beta.hpp>
#include <boost/math/distributions/non_central_chi_squared.hpp>
#include <boost/math/distributions/non_central_f.hpp>
#include <boost/math/distributions/non_central_t.hpp>
#include <cmath>

#include "platform/special/quiet_policy.h"

namespace zomath::platform {
namespace {

// The quiet policy, but a series that does not converge throws, to be caught below.
using SeriesPolicy = boost::math::policies::normalise<
    QuietPolicy, boost::math::policies::evaluation_error<boost::math::policies::throw_on_error>>::type;

bool positive_finite(double v) { return v > 0 && v < INFINITY; }
bool valid_noncentrality(double v) { return v >= 0 && v < INFINITY; }

// The tail of `dist` at x, both one-sided probabilities asked of Boost directly where needed.
template <class Dist>
double tail_probability(const Dist& dist, double x, Tail tail, NagError& err) {
  try {
    if (tail == Tail::Lower) return boost::math::cdf(dist, x);
    if (tail == Tail::Upper) return boost::math::cdf(boost::math::complement(dist, x));
    return combine_tails(tail, boost::math::cdf(dist, x),
                         boost::math::cdf(boost::math::complement(dist, x)));
  } catch (const std::exception&) {
    return distribution_failure(err, kDistributionNoConvergence, "series did not converge");
  }
}

}  // namespace

double noncentral_chi_square_probability(double x, double df, double lambda, Tail tail, NagError& err) {
  if (std::isnan(x)) return distribution_failure(err, kDistributionBadArgument, "x is NaN");
  if (!positive_finite(df) || !valid_noncentrality(lambda))
    return distribution_failure(err, kDistributionBadParameter, "df or noncentrality out of range");
  if (x <= 0) return combine_tails(tail, 0, 1);
  if (std::isinf(x)) return combine_tails(tail, 1, 0);
  return tail_probability(boost::math::non_central_chi_squared_distribution<double, SeriesPolicy>(df, lambda),
                          x, tail, err);
}

double noncentral_beta_probability(double x, double a, double b, double lambda, Tail tail, NagError& err) {
  if (std::isnan(x)) return distribution_failure(err, kDistributionBadArgument, "x is NaN");
  if (!positive_finite(a) || !positive_finite(b) || !valid_noncentrality(lambda))
    return distribution_failure(err, kDistributionBadParameter, "shape or noncentrality out of range");
  if (x <= 0) return combine_tails(tail, 0, 1);
  if (x >= 1) return combine_tails(tail, 1, 0);
  return tail_probability(boost::math::non_central_beta_distribution<double, SeriesPolicy>(a, b, lambda),
                          x, tail, err);
}

double noncentral_f_probability(double x, double df1, double df2, double lambda, Tail tail, NagError& err) {
  if (std::isnan(x)) return distribution_failure(err, kDistributionBadArgument, "x is NaN");
  if (!positive_finite(df1) || !positive_finite(df2) || !valid_noncentrality(lambda))
    return distribution_failure(err, kDistributionBadParameter, "df or noncentrality out of range");
  if (x <= 0) return combine_tails(tail, 0, 1);
  if (std::isinf(x)) return combine_tails(tail, 1, 0);
  return tail_probability(boost::math::non_central_f_distribution<double, SeriesPolicy>(df1, df2, lambda),
                          x, tail, err);
}

double noncentral_t_probability(double t, double df, double delta, Tail tail, NagError& err) {
  if (std::isnan(t)) return distribution_failure(err, kDistributionBadArgument, "t is NaN");
  if (!positive_finite(df) || !std::isfinite(delta))
    return distribution_failure(err, kDistributionBadParameter, "df or noncentrality out of range");
  if (std::isinf(t)) return combine_tails(tail, t > 0 ? 1 : 0, t > 0 ? 0 : 1);
  return tail_probability(boost::math::non_central_t_distribution<double, SeriesPolicy>(df, delta),
                          t, tail, err);
}

}  // namespace zomath::platform
