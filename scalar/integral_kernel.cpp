// Exponential, sine, cosine and Fresnel integrals. E1: power series up to x = 1, then the
// continued fraction of Abramowitz and Stegun 5.1.22; Ei: power series up to 40, then the
// asymptotic series. Si, Ci and the Fresnel integrals: power series summed in double-double
// arithmetic, which absorbs their cancellation, up to where the asymptotic expansions of the
// auxiliary functions f and g (A&S 5.2.34-35, 7.3.27-28) reach full precision.
#include <cmath>
#include <limits>

#include "platform/special/trig_pi.h"
#include "core/double_double.h"
#include "scalar/special_kernels.h"
#include "zomath/core.h"

namespace zomath::special {

using namespace zomath::dd;

namespace {

constexpr double kEps = std::numeric_limits<double>::epsilon();
constexpr double kPi = 3.141592653589793;
constexpr double kHalfPi = 1.5707963267948966;
constexpr Double2 kEulerGamma{0.5772156649015329, -4.942915152430645e-18};
constexpr Double2 kHalfPiDD{1.5707963267948966, 6.123233995736766e-17};

// Ei(t) for t > 0.
double ei_positive(double t) {
  if (t <= 40.0) {
    double term = 1.0, sum = 0.0;  // term = t^k / k!
    for (int k = 1; k < 400; ++k) {
      term *= t / k;
      const double d = term / k;
      sum += d;
      if (d <= 0.25 * kEps * sum) break;
    }
    return kEulerGamma.hi + std::log(t) + sum;
  }
  // e^t / t * sum k! / t^k, stopped at the smallest term; e^t taken in halves against overflow.
  double term = 1.0, sum = 1.0;
  for (int k = 1; k < 200; ++k) {
    const double next = term * k / t;
    if (next > term) break;
    term = next;
    sum += term;
    if (term <= 0.25 * kEps * sum) break;
  }
  const double half = std::exp(0.5 * t);
  return half * (half / t) * sum;
}

// E1(x) for x > 0.
double e1_positive(double x) {
  if (x <= 1.0) {
    double term = 1.0, sum = 0.0;  // term = (-1)^(k+1) x^k / k!
    for (int k = 1; k < 100; ++k) {
      term *= (k == 1 ? x : -x / k);
      const double d = term / k;
      sum += d;
      if (std::fabs(d) <= 0.25 * kEps * std::fabs(sum)) break;
    }
    return -kEulerGamma.hi - std::log(x) + sum;
  }
  constexpr double kTiny = 1e-300;
  double b = x + 1.0, c = 1.0 / kTiny, d = 1.0 / b, h = d;
  for (int i = 1; i < 10000; ++i) {
    const double an = -static_cast<double>(i) * i;
    b += 2.0;
    d = 1.0 / (an * d + b);
    c = b + an / c;
    const double del = c * d;
    h *= del;
    if (std::fabs(del - 1.0) <= 0.5 * kEps) break;
  }
  return h * std::exp(-x);
}

// Si(x) and Ci(x) - gamma - ln x, x > 0, by their power series in double-double.
constexpr double kSiCiSeriesLimit = 38.0;
void si_ci_series(double x, Double2& si, Double2& ciRest) {
  Double2 u{1.0, 0.0};  // x^n / n!
  si = {0.0, 0.0};
  ciRest = {0.0, 0.0};
  for (int n = 1; n < 400; ++n) {
    u = u * x / static_cast<double>(n);
    const double sign = ((n / 2) % 2 == 0) ? 1.0 : -1.0;  // (-1)^floor(n/2)
    const Double2 term = u / (sign * n);
    if (n % 2 == 1) {
      si = si + term;
    } else {
      ciRest = ciRest + term;
    }
    if (n > x && u.hi < 1e-34 * (1.0 + std::fabs(si.hi))) break;
  }
}

// The auxiliary functions f and g of Si and Ci for x >= kSiCiSeriesLimit:
// Si = pi/2 - f cos x - g sin x, Ci = f sin x - g cos x.
void si_ci_auxiliary(double x, double& f, double& g) {
  const double r2 = 1.0 / (x * x);
  double tf = 1.0, sf = 1.0;  // (2k)! / x^2k with alternating signs
  double tg = 1.0, sg = 1.0;  // (2k+1)! / x^2k
  for (int k = 1; k < 60; ++k) {
    const double nf = -tf * (2.0 * k - 1) * (2.0 * k) * r2;
    const double ng = -tg * (2.0 * k) * (2.0 * k + 1) * r2;
    if (std::fabs(nf) > std::fabs(tf) || std::fabs(ng) > std::fabs(tg)) break;
    tf = nf;
    tg = ng;
    sf += tf;
    sg += tg;
    if (std::fabs(tf) < 1e-18 && std::fabs(tg) < 1e-18) break;
  }
  f = sf / x;
  g = sg * r2;
}

// C(x) and S(x) for x >= 0.
constexpr double kFresnelSeriesLimit = 5.0;
void fresnel(double x, double& c, double& s) {
  if (x > 1e20) {  // the oscillation, of amplitude 1/(pi x), is below half an ulp of 1/2
    c = s = 0.5;
    return;
  }
  if (x <= kFresnelSeriesLimit) {
    // sum over n of (-1)^floor(n/2) t^n / n! * x / (2n + 1), t = pi x^2 / 2: even n give C,
    // odd n give S.
    const Double2 t = kHalfPiDD * two_prod(x, x);
    Double2 u{x, 0.0};  // t^n / n! * x
    Double2 sumC{x, 0.0}, sumS{0.0, 0.0};
    for (int n = 1; n < 400; ++n) {
      u = u * t / static_cast<double>(n);
      const double sign = ((n / 2) % 2 == 0) ? 1.0 : -1.0;
      const Double2 term = u / (sign * (2 * n + 1));
      if (n % 2 == 0) {
        sumC = sumC + term;
      } else {
        sumS = sumS + term;
      }
      if (n > t.hi && u.hi < 1e-34 * x) break;
    }
    c = sumC.hi + sumC.lo;
    s = sumS.hi + sumS.lo;
    return;
  }
  // f = 1/(pi x) sum (-1)^m (4m-1)!! / (pi x^2)^(2m), g = 1/(pi^2 x^3) sum (-1)^m (4m+1)!! /
  // (pi x^2)^(2m), stopped at the smallest term.
  const double w = 1.0 / (kPi * x * x);
  const double w2 = w * w;
  double tf = 1.0, sf = 1.0, tg = 1.0, sg = 1.0;
  for (int m = 1; m < 100; ++m) {
    const double nf = -tf * (4.0 * m - 3) * (4.0 * m - 1) * w2;
    const double ng = -tg * (4.0 * m - 1) * (4.0 * m + 1) * w2;
    if (std::fabs(nf) > std::fabs(tf) || std::fabs(ng) > std::fabs(tg)) break;
    tf = nf;
    tg = ng;
    sf += tf;
    sg += tg;
    if (std::fabs(tf) < 1e-18 && std::fabs(tg) < 1e-18) break;
  }
  const double f = sf / (kPi * x);
  const double g = sg * w / (kPi * x);
  double sn, cs;
  platform::sincos_half_pi_square(x, sn, cs);
  c = 0.5 + f * sn - g * cs;
  s = 0.5 - f * cs - g * sn;
}

}  // namespace

double exp_integral_kernel(double x) {
  if (std::isnan(x)) return x;
  if (x == 0.0) return NANUM;
  if (x > 0.0) return std::isinf(x) ? 0.0 : e1_positive(x);
  const double v = -ei_positive(-x);
  return std::isinf(v) ? NANUM : v;
}

double sine_integral_kernel(double x) {
  if (std::isnan(x)) return x;
  const double ax = std::fabs(x);
  double si;
  if (std::isinf(x)) {
    si = kHalfPi;
  } else if (ax <= kSiCiSeriesLimit) {
    Double2 s, c;
    si_ci_series(ax, s, c);
    si = s.hi + s.lo;
  } else {
    double f, g;
    si_ci_auxiliary(ax, f, g);
    si = kHalfPi - f * std::cos(ax) - g * std::sin(ax);
  }
  return std::copysign(si, x);
}

double cosine_integral_kernel(double x) {
  if (std::isnan(x)) return x;
  if (!(x > 0.0)) return NANUM;
  if (std::isinf(x)) return 0.0;
  if (x <= kSiCiSeriesLimit) {
    Double2 s, rest;
    si_ci_series(x, s, rest);
    const Double2 ci = kEulerGamma + log_dd(x) + rest;
    return ci.hi + ci.lo;
  }
  double f, g;
  si_ci_auxiliary(x, f, g);
  return f * std::sin(x) - g * std::cos(x);
}

double fresnel_s_kernel(double x) {
  if (std::isnan(x)) return x;
  double c, s;
  fresnel(std::fabs(x), c, s);
  return std::copysign(s, x);
}

double fresnel_c_kernel(double x) {
  if (std::isnan(x)) return x;
  double c, s;
  fresnel(std::fabs(x), c, s);
  return std::copysign(c, x);
}

}  // namespace zomath::special
