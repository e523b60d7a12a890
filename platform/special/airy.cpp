// Airy functions on Boost.Math for x >= -10. Boost forms zeta = 2/3 |x|^(3/2) in long double, so
// on the oscillating negative axis its phase error grows like 1e-19 zeta; below -10 the routines
// use the asymptotic expansions in u_k and v_k (Olver, Asymptotics and Special Functions, 1974,
// ch. 11; DLMF 9.7.9-9.7.12) with zeta and its reduction modulo pi/2 in double-double.
#include "platform/special/airy.h"

#include <boost/math/special_functions/airy.hpp>
#include <cmath>

#include "core/double_double.h"
#include "platform/special/quiet_policy.h"

namespace zomath::platform {
namespace {

namespace bm = boost::math;
constexpr double kAsymptoticBelow = -10.0;
constexpr double kInvSqrtPi = 0.5641895835477563;

// Ai, Bi (derivative = false) or Ai', Bi' (derivative = true) at x < -10.
void oscillating(double x, bool derivative, double& a, double& b) {
  if (x < -1e200) {  // zeta overflows: Ai and Bi tend to 0, Ai' and Bi' have no limit
    a = b = derivative ? std::nan("") : 0.0;
    return;
  }
  const double z = -x;
  const dd::Double2 zeta = dd::mul(dd::mul(dd::sqrt(z), z), dd::kTwoThirds);
  double s, c;  // sin and cos of zeta - pi/4
  dd::sincos(dd::add(zeta, dd::neg(dd::kQuarterPi)), s, c);
  // even = sum (-1)^k w_2k / zeta^2k, odd = sum (-1)^k w_2k+1 / zeta^2k+1, w = u or v, where
  // u_k = u_{k-1} (6k-5)(6k-3)(6k-1) / ((2k-1) 216 k) and v_k = -(6k+1)/(6k-1) u_k.
  double u = 1.0, power = 1.0, even = 1.0, odd = 0.0, previous = 1.0;
  for (int k = 1; k < 200; ++k) {
    u *= (6.0 * k - 5) * (6.0 * k - 3) * (6.0 * k - 1) / ((2.0 * k - 1) * 216.0 * k);
    power /= zeta.hi;
    const double w = derivative ? -(6.0 * k + 1) / (6.0 * k - 1) * u : u;
    const double term = w * power;
    if (std::fabs(term) > std::fabs(previous)) break;  // past the smallest term
    previous = term;
    switch (k & 3) {
      case 0: even += term; break;
      case 1: odd += term; break;
      case 2: even -= term; break;
      default: odd -= term; break;
    }
    if (std::fabs(term) < 1e-17) break;
  }
  const double quarter = std::sqrt(std::sqrt(z));
  if (!derivative) {
    const double amp = kInvSqrtPi / quarter;
    a = amp * (c * even + s * odd);
    b = amp * (c * odd - s * even);
  } else {
    const double amp = kInvSqrtPi * quarter;
    a = amp * (s * even - c * odd);
    b = amp * (c * even + s * odd);
  }
}

// Ai (sign +1) or Bi (sign -1) near 0 by Taylor's series: Boost returns the value at 0 once
// |x|^3 / 6 is below its rounding unit, dropping the linear term.
constexpr double kTaylorBelow = 1e-4;
double near_zero(double x, double sign) {
  constexpr double kA0 = 0.3550280538878172, kA1 = -0.2588194037928068;  // Ai(0), Ai'(0)
  constexpr double kSqrt3 = 1.7320508075688772;
  const double v0 = sign > 0 ? kA0 : kSqrt3 * kA0;
  const double v1 = sign > 0 ? kA1 : -kSqrt3 * kA1;
  const double x3 = x * x * x;
  return v0 + v1 * x + (v0 * x3 / 6.0 + v1 * x3 * x / 12.0);
}

double checked(double value, NagError& err) {
  if (std::isinf(value)) err.fail(kAiryOverflow, "the value overflows");
  return value;
}

}  // namespace

double airy_ai(double x) {
  if (std::isnan(x)) return x;
  if (std::isinf(x) || x < -1e200) return 0.0;
  if (x < kAsymptoticBelow) {
    double a, b;
    oscillating(x, false, a, b);
    return a;
  }
  if (std::fabs(x) < kTaylorBelow) return near_zero(x, +1);
  return bm::airy_ai(x, QuietPolicy());
}

double airy_bi(double x, NagError& err) {
  if (std::isnan(x)) return x;
  if (x < -1e200) return 0.0;
  if (x < kAsymptoticBelow) {
    double a, b;
    oscillating(x, false, a, b);
    return b;
  }
  if (x == INFINITY) return checked(x, err);
  if (std::fabs(x) < kTaylorBelow) return near_zero(x, -1);
  return checked(bm::airy_bi(x, QuietPolicy()), err);
}

double airy_ai_deriv(double x, NagError& err) {
  if (std::isnan(x)) return x;
  if (x < -1e200) return err.fail(kAiryNoLimit, "no limit at -infinity"), 0.0;
  if (x == INFINITY) return 0.0;
  if (x < kAsymptoticBelow) {
    double a, b;
    oscillating(x, true, a, b);
    return a;
  }
  return bm::airy_ai_prime(x, QuietPolicy());
}

double airy_bi_deriv(double x, NagError& err) {
  if (std::isnan(x)) return x;
  if (x < -1e200) return err.fail(kAiryNoLimit, "no limit at -infinity"), 0.0;
  if (x < kAsymptoticBelow) {
    double a, b;
    oscillating(x, true, a, b);
    return b;
  }
  if (x == INFINITY) return checked(x, err);
  return checked(bm::airy_bi_prime(x, QuietPolicy()), err);
}

}  // namespace zomath::platform
