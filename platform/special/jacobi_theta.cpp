// The Fourier series in q for small q; for q near 1 the series after Jacobi's imaginary
// transformation (Poisson summation; Whittaker and Watson, A Course of Modern Analysis, 21.51),
// in which q = exp(-pi t) and each term is a Gaussian exp(-pi (x + n)^2 / t).
#include "platform/special/jacobi_theta.h"

#include <cmath>

#include "platform/special/trig_pi.h"

namespace zomath::platform {

namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kTiny = 1e-18;             // relative size of a negligible term
constexpr double kTransformNome = 0.0432139182637722;  // exp(-pi): t = 1, both series alike

// theta_1 at 0 <= x <= 1/2.
double theta1(double x, double q) {
  if (q == 0.0) return 0.0;
  if (q <= kTransformNome) {
    double sum = 0.0;
    for (int n = 0; n < 40; ++n) {
      const double h = n + 0.5;
      const double w = std::pow(q, h * h);
      double s, c;
      sincos_pi((2 * n + 1) * x, s, c);
      sum += (n % 2 == 0 ? 2.0 : -2.0) * w * s;
      if (w < kTiny * std::fabs(sum) || w == 0.0) break;
    }
    return sum;
  }
  // Pairs of Gaussians at x -/+ (n + 1/2) combine into
  // exp(-pi (x - n - 1/2)^2 / t) * (1 - exp(-4 pi (n + 1/2) x / t)), free of cancellation.
  const double t = -std::log(q) / kPi;
  double sum = 0.0;
  for (int n = 0; n < 1000; ++n) {
    const double h = n + 0.5;
    const double near = std::exp(-kPi * (x - h) * (x - h) / t);
    const double term = near * -std::expm1(-4.0 * kPi * h * x / t);
    sum += (n % 2 == 0) ? term : -term;
    if (std::fabs(term) <= kTiny * std::fabs(sum) || near == 0.0) break;
  }
  return sum / std::sqrt(t);
}

// theta_3 at 0 <= x <= 1/2.
double theta3(double x, double q) {
  if (q <= kTransformNome) {
    double sum = 0.0;
    for (int n = 1; n < 40; ++n) {
      const double w = std::pow(q, static_cast<double>(n) * n);
      double s, c;
      sincos_pi(2.0 * n * x, s, c);
      sum += 2.0 * w * c;
      if (w < kTiny) break;
    }
    return 1.0 + sum;
  }
  const double t = -std::log(q) / kPi;
  double sum = std::exp(-kPi * x * x / t);
  for (int n = 1; n < 1000; ++n) {
    const double a = std::exp(-kPi * (x - n) * (x - n) / t);
    const double b = std::exp(-kPi * (x + n) * (x + n) / t);
    sum += a + b;
    if (a < kTiny * sum) break;
  }
  return sum / std::sqrt(t);
}

}  // namespace

double jacobi_theta(int k, double x, double q, NagError& err) {
  if (k < 0 || k > 4) return err.fail(kThetaBadKind, "theta: kind outside 0..4"), 0.0;
  if (std::isnan(x) || std::isnan(q)) return x + q;
  if (!(q >= 0.0 && q < 1.0)) return err.fail(kThetaBadNome, "theta: q outside [0, 1)"), 0.0;
  if (std::isinf(x)) return err.fail(kThetaInfiniteArgument, "theta: x is infinite"), 0.0;

  const ThetaReduction red = reduce_theta_argument(k, x);
  return red.sign * (red.base == 1 ? theta1(red.a, q) : theta3(red.a, q));
}

ThetaReduction reduce_theta_argument(int k, double x) {
  // x = n + r exactly, |r| <= 1/2. theta_1 and theta_2 change sign with each unit step of x;
  // theta_1 is odd, the others even with period 1 or 2; theta_2(x) = theta_1(1/2 - x) and
  // theta_4(x) = theta_3(1/2 - x) for 0 <= x <= 1/2.
  const double n = std::nearbyint(x);
  const double r = x - n;
  const double a = std::fabs(r);
  const double flip = (std::fmod(n, 2.0) == 0.0) ? 1.0 : -1.0;
  switch (k) {
    case 1: return {1, a, flip * std::copysign(1.0, r)};
    case 2: return {1, 0.5 - a, flip};
    case 3: return {3, a, 1.0};
    default: return {3, 0.5 - a, 1.0};
  }
}

}  // namespace zomath::platform
