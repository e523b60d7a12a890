// Student's t through the incomplete beta function: with z = t^2 / (df + t^2),
// P(|T| < |t|) = I_z(1/2, df/2). z and 1 - z are formed in long double and the incomplete beta
// evaluated there, so that their rounding costs nothing even at df = 1e15 and |t| = 37, where a
// double z would cost 1e-13 of the tail probability.
#include "platform/distributions/student_t.h"

#include <boost/math/special_functions/beta.hpp>
#include <cmath>

#include "platform/distributions/incomplete_functions.h"
#include "platform/distributions/normal.h"
#include "platform/distributions/quantile_search.h"
#include "platform/special/normal_quantile.h"
#include "platform/special/quiet_policy.h"

namespace zomath::platform {
namespace {

// For v = |t| and z = v^2 / (df + v^2): the central probability P(|T| < v) = I_z(1/2, df/2)
// when `central`, else the two-sided P(|T| >= v) = 1 - I_z, each from the smaller of z and 1 - z;
// with `slope`, also v times the derivative in v of that probability.
long double symmetric_value(long double v, long double nu, bool central, long double* slope = nullptr) {
  const long double v2 = v * v, z = v2 / (nu + v2), zc = nu / (nu + v2);
  long double density;
  const long double c = z < 0.5L ? detail::incomplete_beta(0.5L, nu / 2, z, !central, slope ? &density : nullptr)
                                 : detail::incomplete_beta(nu / 2, 0.5L, zc, central, slope ? &density : nullptr);
  if (slope) *slope = (central ? 2 : -2) * z * zc * density;  // as dz/dv = 2 z (1 - z) / v
  return c;
}

// P(|T| >= |t|) when `twoSided`, else P(|T| < |t|), each computed directly.
double symmetric_probability(double t, double df, bool twoSided) {
  if (std::isinf(t)) return twoSided ? 0.0 : 1.0;
  if (std::isinf(df)) {
    NagError unused;
    return normal_probability(t, twoSided ? Tail::TwoSided : Tail::Central, unused);
  }
  return static_cast<double>(symmetric_value(std::fabs(static_cast<long double>(t)), df, !twoSided));
}

// The central probability (central) or the upper tail P(T > v), half the two-sided one, with
// its derivatives for the quantile search; the density (1 + v^2/df)^(-(df+1)/2) gives the rate.
detail::TailPoint symmetric_tail(long double v, long double nu, bool central) {
  long double slope;
  const long double c = symmetric_value(v, nu, central, &slope);
  const long double rate = 1 - (nu + 1) * v * v / (nu + v * v);
  return central ? detail::TailPoint{c, slope, rate} : detail::TailPoint{c / 2, slope / 2, rate};
}

constexpr int kSearchSteps = 400;

// The t >= 0 with P(T > t) = q, 0 < q <= 1/2, or (central) with P(|T| < t) = q, 0 <= q < 1,
// for the q near 0 that the tail form would round. A cheap estimate (Hill's, for the tail
// (1 - q) / 2 in the central case, whose rounding costs it about 1e-16 / q; below q = 1e-4 the
// inverse incomplete beta function for z = t^2 / (df + t^2)) refined by the search.
double symmetric_quantile(double q, double df, bool central, NagError& err) {
  if (central ? q == 0 : q == 0.5) return 0;
  if (std::isinf(df)) return central ? normal_quantile_centered(q / 2, err) : normal_quantile_upper(q, err);
  double start = std::nan("");
  try {
    if (!central || q > 1e-4) {
      start = -detail::t_quantile_estimate(central ? (1 - q) / 2 : q, df);
    } else {
      double zc = 0;
      const double z = boost::math::ibeta_inv(0.5, df / 2, q, &zc, QuietPolicy());
      start = std::sqrt(df * (z / zc));
    }
  } catch (...) {
    // The estimate gave up: the search starts from the middle of its bracket.
  }
  const detail::SearchResult r = detail::search_quantile(
      [df, central](long double v) { return symmetric_tail(v, df, central); }, central, q, start,
      kSearchSteps);
  if (!r.converged) return distribution_failure(err, kDistributionNoConvergence, "t quantile search failed");
  return r.v;
}

double upper_quantile(double q, double df, NagError& err) { return symmetric_quantile(q, df, false, err); }
double central_quantile(double c, double df, NagError& err) { return symmetric_quantile(c, df, true, err); }

// The t with P(T <= t) = p, 0 < p < 1. Near the centre (1/4 < p < 3/4) from the central
// probability |2p - 1|, exact there, so that a t near 0 keeps its relative accuracy.
double lower_quantile(double p, double df, NagError& err) {
  if (p < 0.25) return -upper_quantile(p, df, err);
  if (p > 0.75) return upper_quantile(1 - p, df, err);
  return std::copysign(central_quantile(std::fabs(2 * p - 1), df, err), p - 0.5);
}

}  // namespace

double student_t_probability(double t, double df, Tail tail, NagError& err) {
  if (std::isnan(t)) return distribution_failure(err, kDistributionBadArgument, "t is NaN");
  if (!(df > 0)) return distribution_failure(err, kDistributionBadParameter, "df not above 0");
  if (tail == Tail::Central) return symmetric_probability(t, df, false);
  const double smaller = 0.5 * symmetric_probability(t, df, true);
  const double larger = 1 - smaller;
  return t < 0 ? combine_tails(tail, smaller, larger) : combine_tails(tail, larger, smaller);
}

double student_t_quantile(double p, double df, Tail tail, NagError& err) {
  if (!(df > 0)) return distribution_failure(err, kDistributionBadParameter, "df not above 0");
  if (std::isnan(p)) return distribution_failure(err, kDistributionBadArgument, "p is NaN");
  auto bad = [&] { return distribution_failure(err, kDistributionBadArgument, "p out of range"); };
  // Each case is an upper-tail probability at most 1/4 or a central one, formed without
  // rounding: 1 - p, 2p - 1 and 1 - 2p are exact where they are used.
  switch (tail) {
    case Tail::Lower:
      if (!(p > 0 && p < 1)) return bad();
      return lower_quantile(p, df, err);
    case Tail::Upper:
      if (!(p > 0 && p < 1)) return bad();
      return -lower_quantile(p, df, err);
    case Tail::TwoSided:
      if (!(p > 0 && p <= 1)) return bad();
      return p <= 0.5 ? upper_quantile(p / 2, df, err) : central_quantile(1 - p, df, err);
    case Tail::Central:
      if (!(p >= 0 && p < 1)) return bad();
      return p >= 0.5 ? upper_quantile((1 - p) / 2, df, err) : central_quantile(p, df, err);
    case Tail::Nearer:
      if (!(p > 0 && p <= 0.5)) return bad();
      return p < 0.25 ? upper_quantile(p, df, err) : central_quantile(1 - 2 * p, df, err);
    case Tail::Farther:
      if (!(p >= 0.5 && p < 1)) return bad();
      return p > 0.75 ? upper_quantile(1 - p, df, err) : central_quantile(2 * p - 1, df, err);
  }
  return bad();
}

}  // namespace zomath::platform
