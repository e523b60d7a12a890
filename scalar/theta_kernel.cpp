// Jacobi theta functions by Jacobi's triple products: in the nome q itself for small q, and for
// q near 1 in the nome q' = exp(-pi / t), q = exp(-pi t), after the imaginary transformation
// (Whittaker and Watson, A Course of Modern Analysis, 21.3 and 21.51), where the trigonometric
// factors become hyperbolic ones. Conventions as the platform routine: period 1 in x.
#include <cmath>

#include "platform/special/jacobi_theta.h"
#include "platform/special/trig_pi.h"
#include "scalar/special_kernels.h"
#include "zomath/core.h"

namespace zomath::special {

namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kTransformNome = 0.0432139182637722;  // exp(-pi)
constexpr double kNegligible = 1e-18;

// theta_1 and theta_3 at 0 <= x <= 1/2.
double theta1(double x, double q) {
  if (q == 0.0) return 0.0;
  if (q <= kTransformNome) {
    // 2 q^(1/4) sin(pi x) prod (1 - q^2n)(1 - 2 q^2n cos(2 pi x) + q^4n)
    double s, c;
    platform::sincos_pi(x, s, c);
    double s2, c2;
    platform::sincos_pi(2.0 * x, s2, c2);
    double product = 2.0 * std::pow(q, 0.25) * s;
    double q2n = 1.0;
    for (int n = 1; n < 60; ++n) {
      q2n *= q * q;
      product *= (1.0 - q2n) * (1.0 - 2.0 * q2n * c2 + q2n * q2n);
      if (q2n < kNegligible) break;
    }
    return product;
  }
  // t^(-1/2) e^(-pi (x - 1/2)^2 / t) (1 - e^(-2 pi x / t))
  //   * prod (1 - q'^2n)(1 - q'^2n (e^(2 pi x/t) + e^(-2 pi x/t)) + q'^4n)
  const double t = -std::log(q) / kPi;
  const double h = x - 0.5;
  double product = std::exp(-kPi * h * h / t) * -std::expm1(-2.0 * kPi * x / t) / std::sqrt(t);
  for (int n = 1; n < 200; ++n) {
    const double q2n = std::exp(-2.0 * kPi * n / t);
    const double up = std::exp(-2.0 * kPi * (n - x) / t);    // q'^2n e^(2 pi x / t)
    const double down = std::exp(-2.0 * kPi * (n + x) / t);  // q'^2n e^(-2 pi x / t)
    product *= (1.0 - q2n) * (1.0 - up - down + q2n * q2n);
    if (up < kNegligible) break;
  }
  return product;
}

double theta3(double x, double q) {
  if (q <= kTransformNome) {
    // prod (1 - q^2n)(1 + 2 q^(2n-1) cos(2 pi x) + q^(4n-2))
    double s2, c2;
    platform::sincos_pi(2.0 * x, s2, c2);
    double product = 1.0, qOdd = q;  // q^(2n-1)
    for (int n = 1; n < 60; ++n) {
      const double q2n = qOdd * q;
      product *= (1.0 - q2n) * (1.0 + 2.0 * qOdd * c2 + qOdd * qOdd);
      if (qOdd < kNegligible) break;
      qOdd = q2n * q;
    }
    return product;
  }
  // t^(-1/2) e^(-pi x^2 / t) prod (1 - q'^2n)(1 + q'^(2n-1) (e^(2 pi x/t) + e^(-2 pi x/t)) +
  // q'^(4n-2))
  const double t = -std::log(q) / kPi;
  double product = std::exp(-kPi * x * x / t) / std::sqrt(t);
  for (int n = 1; n < 200; ++n) {
    const double q2n = std::exp(-2.0 * kPi * n / t);
    const double qOdd = std::exp(-kPi * (2 * n - 1) / t);
    const double up = std::exp(-kPi * (2 * n - 1 - 2.0 * x) / t);
    const double down = std::exp(-kPi * (2 * n - 1 + 2.0 * x) / t);
    product *= (1.0 - q2n) * (1.0 + up + down + qOdd * qOdd);
    if (up < kNegligible) break;
  }
  return product;
}

}  // namespace

double theta_kernel(int k, double x, double q) {
  if (k < 0 || k > 4) return NANUM;
  if (std::isnan(x) || std::isnan(q)) return x + q;
  if (!(q >= 0.0 && q < 1.0) || std::isinf(x)) return NANUM;
  const platform::ThetaReduction red = platform::reduce_theta_argument(k, x);
  return red.sign * (red.base == 1 ? theta1(red.a, q) : theta3(red.a, q));
}

}  // namespace zomath::special
