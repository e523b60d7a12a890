// Bivariate normal probabilities by Genz's method: Drezner and Wesolowsky's integral over the
// correlation with Gauss-Legendre rules for |rho| < 0.925, and for higher correlations an
// asymptotic expansion about |rho| = 1 plus a Gauss-Legendre correction.
// A. Genz, Statistics and Computing 14 (2004) 251-260.
#include "platform/distributions/bivariate_normal.h"

#include "platform/special/error_function.h"

#include <boost/math/quadrature/gauss.hpp>
#include <cmath>
#include <limits>
#include <utility>

namespace zomath::platform {
namespace {

constexpr double kPi = 3.141592653589793238462643;
constexpr double kSqrt2Pi = 2.506628274631000502415765;

// The N-point Gauss-Legendre rule on [-1, 1] applied to f: Boost holds the non-negative nodes
// and their weights, so each node stands for the pair +-node.
template <unsigned N, class F>
double symmetric_rule(F f) {
  const auto& x = boost::math::quadrature::gauss<double, N>::abscissa();
  const auto& w = boost::math::quadrature::gauss<double, N>::weights();
  double sum = 0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    if (x[i] == 0) sum += w[i] * f(0.0);  // only for odd N
    else sum += w[i] * (f(x[i]) + f(-x[i]));
  }
  return sum;
}

template <class F>
double rule_for(double absRho, F f) {
  if (absRho < 0.3) return symmetric_rule<6>(f);
  if (absRho < 0.75) return symmetric_rule<12>(f);
  return symmetric_rule<20>(f);
}

// P(X > h, Y > k) with correlation r, for finite h and k.
double upper_orthant(double h, double k, double r) {
  double hk = h * k;
  if (std::fabs(r) < 0.925) {
    double bvn = normal_lower_tail(-h) * normal_lower_tail(-k);
    if (r != 0) {
      const double hs = (h * h + k * k) / 2, asr = std::asin(r);
      const double sum = rule_for(std::fabs(r), [&](double t) {
        const double sn = std::sin(asr * (t + 1) / 2);
        return std::exp((sn * hk - hs) / (1 - sn * sn));
      });
      bvn += sum * asr / (4 * kPi);
    }
    return bvn;
  }
  if (r < 0) {
    k = -k;
    hk = -hk;
  }
  double bvn = 0;
  if (std::fabs(r) < 1) {
    const double as = (1 - r) * (1 + r);
    double a = std::sqrt(as);
    const double bs = (h - k) * (h - k);
    const double c = (4 - hk) / 8, d = (12 - hk) / 16;
    const double e0 = -(bs / as + hk) / 2;
    if (e0 > -100) bvn = a * std::exp(e0) * (1 - c * (bs - as) * (1 - d * bs / 5) / 3 + c * d * as * as / 5);
    if (-hk < 100) {
      const double b = std::sqrt(bs);
      bvn -= std::exp(-hk / 2) * kSqrt2Pi * normal_lower_tail(-b / a) * b *
             (1 - c * bs * (1 - d * bs / 5) / 3);
    }
    a /= 2;
    bvn += a * symmetric_rule<20>([&](double t) {
      const double xs = (a * (t + 1)) * (a * (t + 1));
      const double rs = std::sqrt(1 - xs);
      const double e = -(bs / xs + hk) / 2;
      if (e <= -100) return 0.0;
      return std::exp(e) * (std::exp(-hk * (1 - rs) / (2 * (1 + rs))) / rs - (1 + c * xs * (1 + d * xs)));
    });
    bvn = -bvn / (2 * kPi);
  }
  if (r > 0) return bvn + normal_lower_tail(-std::max(h, k));
  bvn = -bvn;
  if (k > h) {  // add P(h < X < k) without cancellation
    bvn += (h < 0) ? normal_lower_tail(k) - normal_lower_tail(h)
                   : normal_lower_tail(-h) - normal_lower_tail(-k);
  }
  return bvn;
}

}  // namespace

double bivariate_normal_lower(double x, double y, double rho, NagError& err) {
  if (!(std::fabs(rho) <= 1)) {
    err.fail(kBivariateNormalBadCorrelation, "correlation outside [-1, 1]");
    return 0;
  }
  if (std::isnan(x) || std::isnan(y)) {
    err.fail(kBivariateNormalBadArgument, "argument is NaN");
    return 0;
  }
  constexpr double inf = std::numeric_limits<double>::infinity();
  if (x == -inf || y == -inf) return 0;
  if (x == inf) return normal_lower_tail(y);
  if (y == inf) return normal_lower_tail(x);
  if (x > y) std::swap(x, y);  // exactly symmetric in x and y
  const double p = upper_orthant(-x, -y, rho);
  return std::min(1.0, std::max(0.0, p));
}

}  // namespace zomath::platform
