// Power series for small x; beyond, the continued fraction of E1(ix) = -Ci(x) + i(Si(x) - pi/2)
// (Abramowitz and Stegun 5.1.22), evaluated by the modified Lentz method (Thompson and Barnett,
// J. Comput. Phys. 64, 1986).
#include "platform/special/sine_cosine_integral.h"

#include <cmath>
#include <complex>
#include <limits>

namespace zomath::platform {

namespace {

constexpr double kEulerGamma = 0.5772156649015329;
constexpr double kHalfPi = 1.5707963267948966;
constexpr double kEps = std::numeric_limits<double>::epsilon();
constexpr double kSeriesLimit = 2.0;  // below, the series loses less than a digit

// Si(x) and Ci(x) - gamma - ln x by their power series in x, for 0 <= x <= kSeriesLimit.
void series(double x, double& si, double& ci_rest) {
  const double x2 = x * x;
  double s = x;    // (-1)^k x^(2k+1) / (2k+1)!
  double c = 1.0;  // (-1)^k x^(2k) / (2k)!
  si = x;
  ci_rest = 0.0;
  for (int k = 1; k < 60; ++k) {
    c *= -x2 / ((2.0 * k - 1.0) * (2.0 * k));
    s *= -x2 / ((2.0 * k) * (2.0 * k + 1.0));
    const double dCi = c / (2 * k), dSi = s / (2 * k + 1);
    ci_rest += dCi;
    si += dSi;
    if (std::fabs(dSi) <= kEps * std::fabs(si) && std::fabs(dCi) <= kEps * std::fabs(ci_rest))
      break;
  }
}

// E1(ix) for x >= kSeriesLimit.
std::complex<double> e1_imaginary(double x) {
  using C = std::complex<double>;
  constexpr double kTiny = 1e-300;
  C b(1.0, x);
  C c(1.0 / kTiny, 0.0);
  C d = 1.0 / b;
  C h = d;
  for (int i = 2; i < 100000; ++i) {
    const double a = -static_cast<double>(i - 1) * (i - 1);
    b += 2.0;
    d = 1.0 / (a * d + b);
    c = b + a / c;
    const C del = c * d;
    h *= del;
    if (std::abs(del.real() - 1.0) + std::abs(del.imag()) < kEps) break;
  }
  return C(std::cos(x), -std::sin(x)) * h;
}

}  // namespace

double sine_integral(double x) {
  if (std::isnan(x)) return x;
  const double ax = std::fabs(x);
  double si;
  if (std::isinf(x)) {
    si = kHalfPi;
  } else if (ax <= kSeriesLimit) {
    double rest;
    series(ax, si, rest);
  } else {
    si = kHalfPi + e1_imaginary(ax).imag();
  }
  return std::copysign(si, x);
}

double cosine_integral(double x, NagError& err) {
  if (std::isnan(x)) return x;
  if (x <= 0.0) {
    err.fail(kCosIntegralNonPositive, "cosine integral: x must be positive");
    return 0.0;
  }
  if (std::isinf(x)) return 0.0;
  if (x <= kSeriesLimit) {
    double si, rest;
    series(x, si, rest);
    return kEulerGamma + std::log(x) + rest;
  }
  return -e1_imaginary(x).real();
}

}  // namespace zomath::platform
