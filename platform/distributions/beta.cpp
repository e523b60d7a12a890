// The beta distribution through Boost's regularized incomplete beta function. The quantile
// starts from Boost's inversion and is confirmed, and where needed found, by a Halley search on
// the smaller tail, in the variable x or 1 - x whichever holds the quantile below 1/2, so that
// a quantile near 1 and one near 0 both keep their relative accuracy.
#include "platform/distributions/beta.h"

#include <boost/math/special_functions/beta.hpp>
#include <cmath>

#include "platform/distributions/incomplete_functions.h"
#include "platform/distributions/quantile_search.h"
#include "platform/special/quiet_policy.h"

namespace zomath::platform {
namespace {

constexpr int kSearchSteps = 400;

bool valid_shape(double s) { return s > 0 && s < INFINITY; }

}  // namespace

double beta_probability(double x, double a, double b, Tail tail, NagError& err) {
  if (std::isnan(x)) return distribution_failure(err, kDistributionBadArgument, "x is NaN");
  if (!valid_shape(a) || !valid_shape(b))
    return distribution_failure(err, kDistributionBadParameter, "shape not positive and finite");
  if (!(x > 0)) return combine_tails(tail, 0, 1);
  if (!(x < 1)) return combine_tails(tail, 1, 0);
  // The smaller tail directly: below the mean a / (a + b), the lower one (Boost's complement of
  // a tiny tail can come back as exactly 1).
  const bool lowerIsSmaller = x < a / (a + b);
  return tails_from_smaller(tail, lowerIsSmaller, lowerIsSmaller ? boost::math::ibeta(a, b, x, QuietPolicy())
                                                                 : boost::math::ibetac(a, b, x, QuietPolicy()));
}

double beta_density(double x, double a, double b, NagError& err) {
  if (std::isnan(x)) return distribution_failure(err, kDistributionBadArgument, "x is NaN");
  if (!valid_shape(a) || !valid_shape(b))
    return distribution_failure(err, kDistributionBadParameter, "shape not positive and finite");
  if (x < 0 || x > 1) return 0;
  // At the ends the density is the limit of its power: 0, 1 / B, or infinite.
  if (x == 0 || x == 1) {
    const double e = x == 0 ? a : b;
    if (e > 1) return 0;
    if (e < 1) return INFINITY;
    return 1 / boost::math::beta(a, b, QuietPolicy());
  }
  // Boost forms 1 - x itself: exact for a double x >= 1/2.
  return boost::math::ibeta_derivative(a, b, x, QuietPolicy());
}

double beta_quantile(double p, double a, double b, NagError& err) {
  if (!valid_shape(a) || !valid_shape(b))
    return distribution_failure(err, kDistributionBadParameter, "shape not positive and finite");
  if (!(p >= 0 && p <= 1)) return distribution_failure(err, kDistributionBadArgument, "p outside [0, 1]");
  if (p == 0 || p == 1) return p;
  // Which half holds the quantile decides the variable: v = x below 1/2, else v = 1 - x, which
  // is distributed as Beta(b, a) with the tails exchanged.
  const bool lowHalf = p <= boost::math::ibeta(a, b, 0.5, QuietPolicy());
  const long double sa = lowHalf ? a : b, sb = lowHalf ? b : a;
  // P(V <= v) is p or 1 - p; the search takes the smaller tail of V, whose probability is
  // min(p, 1 - p), exact as 1 - p is for p >= 1/2.
  const bool upper = lowHalf ? p > 0.5 : p < 0.5;
  const long double target = p <= 0.5 ? p : 1 - static_cast<long double>(p);
  auto tails = [&](long double v) {
    long double density;
    const long double t = detail::incomplete_beta(sa, sb, v, upper, &density);
    return detail::TailPoint{t, upper ? -v * density : v * density, sa - (sb - 1) * v / (1 - v)};
  };
  double start = std::nan("");
  try {
    double startComplement = 0;
    const double x = boost::math::ibeta_inv(a, b, p, &startComplement, QuietPolicy());
    start = lowHalf ? x : startComplement;
  } catch (...) {
    // Its root finder gave up: the search starts from the middle of its bracket.
  }
  const detail::SearchResult r =
      detail::search_quantile(tails, !upper, target, start, kSearchSteps, std::log(0.6L));
  if (!r.converged) return distribution_failure(err, kDistributionNoConvergence, "beta quantile search failed");
  return lowHalf ? r.v : 1 - r.v;
}

}  // namespace zomath::platform
