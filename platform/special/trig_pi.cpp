#include "platform/special/trig_pi.h"

#include <cmath>

namespace zomath::platform {

namespace {
constexpr double kPi = 3.141592653589793;
constexpr double kPiLo = 1.2246467991473532e-16;  // pi = kPi + kPiLo
}  // namespace

void sincos_pi(double v, double& s, double& c) {
  if (!std::isfinite(v)) {
    s = c = v - v;  // NaN
    return;
  }
  if (std::fabs(v) >= 4503599627370496.0) {  // 2^52 and beyond: v is an integer
    s = 0.0;
    c = std::fmod(v, 2.0) == 0.0 ? 1.0 : -1.0;
    return;
  }
  // v = n/2 + r with |r| <= 1/4, exactly; the quadrant n mod 4 picks the formula.
  const double n = std::nearbyint(2.0 * v);
  const double r = v - 0.5 * n;
  const double a = kPi * r + kPiLo * r;
  const double sr = std::sin(a), cr = std::cos(a);
  switch (static_cast<int>(n - 4.0 * std::floor(0.25 * n))) {
    case 0: s = sr; c = cr; break;
    case 1: s = cr; c = -sr; break;
    case 2: s = -sr; c = -cr; break;
    default: s = -cr; c = sr; break;
  }
}

void sincos_half_pi_square(double x, double& s, double& c) {
  // x^2 = hi + lo exactly, so pi x^2 / 2 = pi (hi/2) + pi (lo/2); hi/2 is reduced modulo 2
  // exactly and the two angles are added by the addition theorems.
  const double hi = x * x;
  const double lo = std::fma(x, x, -hi);
  double sv, cv, sl, cl;
  sincos_pi(std::fmod(0.5 * hi, 2.0), sv, cv);
  sincos_pi(0.5 * lo, sl, cl);
  s = sv * cl + cv * sl;
  c = cv * cl - sv * sl;
}

}  // namespace zomath::platform
