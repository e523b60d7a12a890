// The discrete distributions: binomial and Poisson tails are regularized incomplete beta and
// gamma functions (the Poisson ones those of the gamma distribution routines, which stay
// accurate at counts in the millions), so each tail is accurate in its own right at any count;
// the hypergeometric tails are Boost's sums of its terms.
#include "platform/distributions/discrete.h"

#include <boost/math/distributions/binomial.hpp>
#include <boost/math/distributions/hypergeometric.hpp>
#include <cmath>
#include <limits>

#include "platform/distributions/gamma_distribution.h"
#include "platform/distributions/tail.h"
#include "platform/special/quiet_policy.h"

namespace zomath::platform {
namespace {

// Binomial point probabilities by the saddle-point form of Loader, "Fast and accurate computation
// of binomial probabilities" (2000), in long double: ln P(X = k) is assembled from Stirling
// remainders and deviance terms that are small numbers, so no large logarithms cancel (Boost's
// form raises rounded ratios to the powers k and n - k, which costs n ulps).

// ln n! - ln(sqrt(2 pi n) (n / e)^n) for n = 1..30, from mpmath at 40 digits.
constexpr long double kStirlingRemainder[30] = {
    8.106146679532725821967026e-2L, 4.134069595540929409382208e-2L, 2.767792568499833914878929e-2L,
    2.079067210376509311152277e-2L, 1.664469118982119216319487e-2L, 1.387612882307074799874573e-2L,
    1.189670994589177009505572e-2L, 1.041126526197209649747857e-2L, 9.255462182712732917728637e-3L,
    8.330563433362871256469319e-3L, 7.573675487951840794972024e-3L, 6.942840107209529865664153e-3L,
    6.408994188004207068439631e-3L, 5.951370112758847735624416e-3L, 5.55473355196280137103869e-3L,
    5.207655919609640440717997e-3L, 4.901395948434737860716818e-3L, 4.629153749334028592427213e-3L,
    4.385560249232324268287736e-3L, 4.166319691996922457462923e-3L, 3.967954218640859617287637e-3L,
    3.787618068444434577866677e-3L, 3.622960224683094707381198e-3L, 3.472021382978766962945115e-3L,
    3.333155636728092875807019e-3L, 3.204970228055038011184157e-3L, 3.086278682608777063256241e-3L,
    2.976063983550408826021163e-3L, 2.873449362352466387552351e-3L, 2.777674929752693603594904e-3L};

// The same remainder for any n >= 1: the table, then Stirling's series, whose eighth term is
// below 1e-21 of the first from n = 31 on.
long double stirling_remainder(long double n) {
  if (n <= 30) return kStirlingRemainder[static_cast<int>(n) - 1];
  static constexpr long double kSeries[] = {1.0L / 12, -1.0L / 360, 1.0L / 1260, -1.0L / 1680,
                                            1.0L / 1188, -691.0L / 360360, 1.0L / 156,
                                            -3617.0L / 122400};
  const long double n2 = 1 / (n * n);
  long double sum = 0;
  for (int i = 7; i >= 0; --i) sum = sum * n2 + kSeries[i];
  return sum / n;
}

// x ln(x / m) + m - x >= 0, by its series in v = (x - m) / (x + m) where x and m are close.
long double deviance(long double x, long double m) {
  if (std::fabs(x - m) < 0.1L * (x + m)) {
    const long double v = (x - m) / (x + m), v2 = v * v;
    long double sum = (x - m) * v, term = 2 * x * v;
    for (int j = 1; j < 1000; ++j) {
      term *= v2;
      const long double next = sum + term / (2 * j + 1);
      if (next == sum) break;
      sum = next;
    }
    return sum;
  }
  return x * std::log(x / m) + m - x;
}

// P(X = k) of the binomial with n trials, 0 < k < n, success probability p, failure q = 1 - p.
double binomial_point(long double k, long double n, long double p, long double q) {
  constexpr long double kTwoPi = 6.283185307179586476925286766559L;
  const long double lc = stirling_remainder(n) - stirling_remainder(k) - stirling_remainder(n - k) -
                         deviance(k, n * p) - deviance(n - k, n * q);
  return static_cast<double>(std::exp(lc) / std::sqrt(kTwoPi * k * (n - k) / n));
}

DiscreteProbabilities failed(NagError& err, const char* text) {
  err.fail(kDistributionBadParameter, text);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  return {nan, nan, nan};
}

}  // namespace

DiscreteProbabilities binomial_probabilities(int k, int n, double p, NagError& err) {
  if (n < 0 || !(p >= 0 && p <= 1)) return failed(err, "n negative or p outside [0, 1]");
  if (k < 0) return {0, 1, 0};
  // The ends of the support: P(X = 0) = q^n and P(X = n) = p^n, as exp(n ln q) with ln q =
  // log1p(-p) in long double.
  const long double pl = p, ql = 1 - pl;
  if (k >= n) return {1, 0, k == n ? static_cast<double>(std::exp(n * std::log(pl))) : 0};
  // P(X > k) = I_p(k + 1, n - k) without the complement.
  const boost::math::binomial_distribution<double, QuietPolicy> dist(n, p);
  const double lower = boost::math::cdf(dist, k), upper = boost::math::cdf(boost::math::complement(dist, k));
  if (p == 0 || p == 1) return {lower, upper, boost::math::pdf(dist, k)};
  const double point = k == 0 ? static_cast<double>(std::exp(n * std::log1p(-pl)))
                              : binomial_point(k, n, pl, ql);
  return {lower, upper, point};
}

DiscreteProbabilities hypergeometric_probabilities(int k, int m, int n, int l, NagError& err) {
  if (n < 0 || m < 0 || m > n || l < 0 || l > n)
    return failed(err, "population, specified count or sample size out of range");
  const int low = std::max(0, l + m - n), high = std::min(l, m);
  if (k < low) return {0, 1, 0};
  if (k > high) return {1, 0, 0};
  const boost::math::hypergeometric_distribution<double, QuietPolicy> dist(
      static_cast<unsigned>(m), static_cast<unsigned>(l), static_cast<unsigned>(n));
  const auto u = static_cast<unsigned>(k);
  const double point = boost::math::pdf(dist, u);
  if (k == high) return {1, 0, point};
  return {boost::math::cdf(dist, u), boost::math::cdf(boost::math::complement(dist, u)), point};
}

DiscreteProbabilities poisson_probabilities(int k, double lambda, NagError& err) {
  if (!(lambda > 0 && lambda < INFINITY)) return failed(err, "lambda not positive and finite");
  if (k < 0) return {0, 1, 0};
  // P(X <= k) = Q(k + 1, lambda), P(X > k) = P(k + 1, lambda): the tails of Gamma(k + 1) at
  // lambda exchanged, and P(X = k) its density there.
  const double shape = k + 1.0;
  return {gamma_probability(lambda, shape, 1, Tail::Upper, err),
          gamma_probability(lambda, shape, 1, Tail::Lower, err),
          gamma_density(lambda, shape, 1, err)};
}

}  // namespace zomath::platform
