// The noncentral distributions through Boost.Math, whose Poisson-mixture series are summed
// outward from the largest term (Ding; Benton and Krishnamoorthy, Comput. Statist. Data Anal. 43
// (2003) 249-267). A series that exhausts its terms raises an evaluation error, caught here as
// kDistributionNoConvergence. Each tail is asked of Boost directly, never as a complement here,
// but for the tail of the t on the far side of 0 from its noncentrality, which is integrated.
#include "platform/distributions/noncentral.h"

#include <boost/math/distributions/non_central_beta.hpp>
#include <boost/math/distributions/non_central_chi_squared.hpp>
#include <boost/math/distributions/non_central_f.hpp>
#include <boost/math/distributions/non_central_t.hpp>
#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "platform/distributions/gamma_distribution.h"
#include "platform/distributions/gauss_legendre.h"
#include "platform/special/error_function.h"
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

// P(T > t) for t >= 0 and delta < 0: the tail away from the noncentrality, where the series'
// terms alternate in sign and cancel (Boost keeps no digit below about 1e-20 there). With
// d = -delta, T > t means N - d > t S for S = sqrt(V / df), so
//   P(T > t) = integral over w > 0 of phi(w + d) P(df/2, df w^2 / (2 t^2)) dw,
// every term positive. The integrand rises from 0 like w^df and falls like phi(w + d): it is
// integrated by adaptive Gauss-Legendre over 14 units either side of its peak (found by golden
// section), with pieces shrinking geometrically towards w = 0 where the rise is steep.
double noncentral_t_far_tail(double t, double df, double delta) {
  const double d = -delta;
  if (t == 0) return normal_upper_tail(d);
  const long double c = df / (2 * static_cast<long double>(t) * t), a = df / 2.0L;
  const long double logGamma = std::lgamma(a + 1);
  auto integrand = [d, c, a, logGamma](double w) {
    constexpr long double kInvSqrt2Pi = 0.398942280401432677939946059934381868L;
    const long double u = static_cast<long double>(w) + d, x = c * w * w;
    // P(a, x): below x = 1e-10 its series x^a / Gamma(a + 1) (1 - a x / (a + 1)), which keeps
    // the values a double x would flush to 0 at |t| near 1e154.
    NagError unused;
    const long double p = x < 1e-10L ? std::exp(a * std::log(x) - logGamma) * (1 - a * x / (a + 1))
                                     : gamma_probability(static_cast<double>(x), static_cast<double>(a), 1, Tail::Lower, unused);
    return static_cast<double>(kInvSqrt2Pi * std::exp(-u * u / 2) * p);
  };
  auto logIntegrand = [&](double w) { return std::log(integrand(w)); };
  // The peak lies below that of w^df phi(w + d), the root of w^2 + d w = df.
  double lo = 0, hi = 0.5 * (-d + std::sqrt(d * d + 4 * df)) + 1;
  constexpr double kGolden = 0.6180339887498949;
  for (int i = 0; i < 80 && hi - lo > 1e-3; ++i) {
    const double m1 = hi - kGolden * (hi - lo), m2 = lo + kGolden * (hi - lo);
    if (logIntegrand(m1) < logIntegrand(m2)) lo = m1; else hi = m2;
  }
  const double peak = 0.5 * (lo + hi);
  const double from = std::max(0.0, peak - 14), to = peak + 14;
  // The pieces: half units from `from` to `to`, the first, when it starts at 0, cut into pieces
  // 4 times narrower each towards 0. A first pass sizes the tolerance of a second, adaptive one.
  std::vector<std::pair<double, double>> pieces;
  double start = from;
  if (from == 0) {
    const double first = std::min(0.5, to);
    double right = first;
    for (int k = 0; k < 15; ++k, right /= 4) pieces.emplace_back(right / 4, right);
    pieces.emplace_back(0, right);
    start = first;
  }
  const int count = static_cast<int>(std::ceil((to - start) / 0.5));
  for (int k = 0; k < count; ++k) pieces.emplace_back(start + k * (to - start) / count, start + (k + 1) * (to - start) / count);
  double estimate = 0;
  for (const auto& [a, b] : pieces) estimate += detail::integrate(integrand, a, b, 1);
  double sum = 0;
  for (const auto& [a, b] : pieces) sum += detail::integrate_adaptive(integrand, a, b, 1e-16 * estimate, 12);
  return sum;
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
  // The tail on the far side of 0 from delta by quadrature (for t < 0 reflected: P(T <= t) is
  // P(T' > -t) with T' of noncentrality -delta), the other by Boost's series.
  const bool farIsUpper = delta < 0 && t >= 0, farIsLower = delta > 0 && t <= 0;
  if (!farIsUpper && !farIsLower)
    return tail_probability(boost::math::non_central_t_distribution<double, SeriesPolicy>(df, delta),
                            t, tail, err);
  try {
    // Only the one-sided probabilities the tail needs.
    const bool wantsFar = !(tail == Tail::Lower && farIsUpper) && !(tail == Tail::Upper && farIsLower);
    const bool wantsNear = tail != (farIsUpper ? Tail::Upper : Tail::Lower);
    const double far = !wantsFar ? 0
                       : farIsUpper ? noncentral_t_far_tail(t, df, delta)
                                    : noncentral_t_far_tail(-t, df, -delta);
    double near = 0;
    if (wantsNear) {
      const boost::math::non_central_t_distribution<double, SeriesPolicy> dist(df, delta);
      near = farIsUpper ? boost::math::cdf(dist, t) : boost::math::cdf(boost::math::complement(dist, t));
    }
    return farIsUpper ? combine_tails(tail, near, far) : combine_tails(tail, far, near);
  } catch (const std::exception&) {
    return distribution_failure(err, kDistributionNoConvergence, "series did not converge");
  }
}

}  // namespace zomath::platform
