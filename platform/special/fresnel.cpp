// Power series for small x; beyond, C(x) + i S(x) = (1 + i)/2 [1 - e^{i pi x^2/2} (1 - i) x h]
// with h from the continued fraction of the complementary error function (Abramowitz and
// Stegun 7.1.15), evaluated by the modified Lentz method (Thompson and Barnett, J. Comput.
// Phys. 64, 1986).
#include "platform/special/fresnel.h"

#include <cmath>
#include <complex>
#include <limits>

#include "platform/special/trig_pi.h"

namespace zomath::platform {

namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kEps = std::numeric_limits<double>::epsilon();
constexpr double kSeriesLimit = 1.5;

// C(x) and S(x) for 0 <= x, together.
void fresnel(double x, double& c, double& s) {
  if (x > 1e20) {  // the oscillation, of amplitude 1/(pi x), is below half an ulp of 1/2
    c = s = 0.5;
    return;
  }
  if (x <= kSeriesLimit) {
    // Sum over n of (-1)^{n(n-1)/2} t^n / n! * x / (2n + 1), t = pi x^2 / 2: even n build C,
    // odd n build S.
    const double t = 0.5 * kPi * x * x;
    double term = x;  // t^n / n! * x
    c = x;
    s = 0.0;
    for (int n = 1; n < 80; ++n) {
      term *= t / n;
      const double sign = ((n / 2) % 2 == 0) ? 1.0 : -1.0;
      const double d = sign * term / (2 * n + 1);
      if (n % 2 == 0) {
        c += d;
      } else {
        s += d;
      }
      if (term / (2 * n + 1) < kEps * std::fmin(c, s == 0.0 ? c : s)) break;
    }
    return;
  }
  using C = std::complex<double>;
  constexpr double kTiny = 1e-300;
  const double pix2 = kPi * x * x;  // only steers the fraction; the phase is exact below
  C b(1.0, -pix2);
  C cc(1.0 / kTiny, 0.0);
  C d = 1.0 / b;
  C h = d;
  double n = -1.0;
  for (int k = 2; k < 100000; ++k) {
    n += 2.0;
    const double a = -n * (n + 1.0);
    b += 4.0;
    d = 1.0 / (a * d + b);
    cc = b + a / cc;
    const C del = cc * d;
    h *= del;
    if (std::abs(del.real() - 1.0) + std::abs(del.imag()) < kEps) break;
  }
  h *= C(x, -x);
  double sn, cs;
  sincos_half_pi_square(x, sn, cs);
  const C cs_ = C(0.5, 0.5) * (1.0 - C(cs, sn) * h);
  c = cs_.real();
  s = cs_.imag();
}

}  // namespace

double fresnel_sine(double x) {
  if (std::isnan(x)) return x;
  double c, s;
  fresnel(std::fabs(x), c, s);
  return std::copysign(s, x);
}

double fresnel_cosine(double x) {
  if (std::isnan(x)) return x;
  double c, s;
  fresnel(std::fabs(x), c, s);
  return std::copysign(c, x);
}

}  // namespace zomath::platform
