// Gamma and chi-square probabilities through the regularized incomplete gamma functions
// P(a, z) and Q(a, z), z = x / b. The quotient is formed in long double and the functions
// evaluated there: a double z would cost z * 1e-16 of a far upper tail.
//
// For large shapes Boost's series and continued fractions take their factor z^a e^-z / Gamma(a)
// from a power (z / c)^a, whose rounding grows with a (5e-12 of the value at a = 5e7). There the
// tails come from Temme's uniform asymptotic expansion (Temme, SIAM J. Math. Anal. 10 (1979);
// DiDonato and Morris, ACM TOMS 12 (1986) 377-393), which Boost carries to long double accuracy
// and which depends on the shape only through a log1pmx(sigma), sigma = (z - a) / a, and so
// keeps every digit however large a is.
#include <boost/math/special_functions/gamma.hpp>
#include <boost/math/special_functions/log1p.hpp>
#include <cmath>

#include "platform/distributions/chi_square.h"
#include "platform/distributions/gamma_distribution.h"
#include "platform/distributions/incomplete_functions.h"
#include "platform/distributions/quantile_search.h"
#include "platform/special/quiet_policy.h"

namespace zomath::platform {
namespace {

bool positive_finite(double v) { return v > 0 && v < INFINITY; }

// Shapes from which the expansion replaces the series and fractions, and the |sigma| up to which
// it holds (beyond, the tails are below 1e-270 for these shapes).
constexpr long double kTemmeShape = 1e4L;
constexpr long double kTemmeReach = 0.4L;
constexpr int kSearchSteps = 400;

bool use_temme(long double a, long double z) {
  return a > kTemmeShape && std::fabs((z - a) / a) < kTemmeReach;
}

long double standard_gamma_density(long double a, long double z);

// P(a, z) (upper false) or Q(a, z) (upper true), in long double; with `density`, also the
// density z^(a-1) e^-z / Gamma(a).
long double incomplete_gamma_tail(long double a, long double z, bool upper, long double* density = nullptr) {
  if (use_temme(a, z)) {
    // The expansion gives the smaller tail: P below the mean, Q above.
    const long double smaller = boost::math::detail::igamma_temme_large(
        a, z, QuietPolicy(), static_cast<const boost::integral_constant<int, 64>*>(nullptr));
    if (density) *density = standard_gamma_density(a, z);
    return upper == (z >= a) ? smaller : 1 - smaller;
  }
  return detail::incomplete_gamma(a, z, upper, density);
}

// The density of Gamma(a, 1) at z, z^(a-1) e^-z / Gamma(a). For large shapes written
// exp(a log1pmx(sigma) - s(a)) sqrt(a / 2 pi) / z, with s(a) the remainder of Stirling's series
// for ln Gamma(a): no power of a is formed, so no rounding is multiplied by a.
long double standard_gamma_density(long double a, long double z) {
  if (a <= kTemmeShape) return boost::math::gamma_p_derivative(a, z, QuietPolicy());
  const long double sigma = (z - a) / a, ia = 1 / a, ia2 = ia * ia;
  const long double stirling = ia * (1.0L / 12 - ia2 * (1.0L / 360 - ia2 / 1260));
  constexpr long double kTwoPi = 6.283185307179586476925286766559L;
  return std::exp(a * boost::math::log1pmx(sigma, QuietPolicy()) - stirling) *
         std::sqrt(a / kTwoPi) / z;
}

double probability(double x, double a, double b, Tail tail, NagError& err) {
  if (std::isnan(x)) return distribution_failure(err, kDistributionBadArgument, "x is NaN");
  if (!positive_finite(a) || !positive_finite(b))
    return distribution_failure(err, kDistributionBadParameter, "shape or scale not positive");
  if (!(x > 0)) return combine_tails(tail, 0, 1);
  const long double z = static_cast<long double>(x) / b, shape = a;
  const bool lowerIsSmaller = z < shape;  // below the mean
  return tails_from_smaller(tail, lowerIsSmaller, static_cast<double>(incomplete_gamma_tail(shape, z, !lowerIsSmaller)));
}

// The quantile starts from the estimate of DiDonato and Morris and is found by the Halley search
// on the smaller tail, evaluated as above.
double quantile(double p, double a, double b, Tail tail, NagError& err) {
  if (!positive_finite(a) || !positive_finite(b))
    return distribution_failure(err, kDistributionBadParameter, "shape or scale not positive");
  QuantileTarget target;
  if (!quantile_target(p, tail, target, err)) return std::nan("");
  const bool upper = target.upper;
  const long double q = target.q;
  if (q == 0) return upper ? INFINITY : 0;
  double start = std::nan("");
  try {
    start = detail::gamma_quantile_estimate(a, static_cast<double>(q), upper);
  } catch (...) {
    // The estimate gave up: the search starts from the middle of its bracket.
  }
  const long double shape = a;
  auto tails = [shape, upper](long double z) {
    long double density;
    const long double t = incomplete_gamma_tail(shape, z, upper, &density);
    return detail::TailPoint{t, upper ? -z * density : z * density, shape - z};
  };
  const detail::SearchResult r = detail::search_quantile(tails, !upper, q, start, kSearchSteps);
  if (!r.converged) return distribution_failure(err, kDistributionNoConvergence, "gamma quantile search failed");
  return b * r.v;
}

}  // namespace

double gamma_density(double x, double a, double b, NagError& err) {
  if (std::isnan(x)) return distribution_failure(err, kDistributionBadArgument, "x is NaN");
  if (!positive_finite(a) || !positive_finite(b))
    return distribution_failure(err, kDistributionBadParameter, "shape or scale not positive");
  if (x < 0 || std::isinf(x)) return 0;
  if (x == 0) return a < 1 ? INFINITY : a == 1 ? 1 / b : 0;
  return static_cast<double>(standard_gamma_density(a, static_cast<long double>(x) / b) / b);
}

double gamma_probability(double x, double a, double b, Tail tail, NagError& err) {
  return probability(x, a, b, tail, err);
}

double gamma_quantile(double p, double a, double b, Tail tail, NagError& err) {
  return quantile(p, a, b, tail, err);
}

double chi_square_probability(double x, double df, Tail tail, NagError& err) {
  return probability(x, df / 2, 2, tail, err);
}

double chi_square_quantile(double p, double df, Tail tail, NagError& err) {
  return quantile(p, df / 2, 2, tail, err);
}

}  // namespace zomath::platform
