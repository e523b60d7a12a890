// Gamma, log-gamma, polygamma and the incomplete gamma ratio: Stirling's series after the
// upward recurrence, reflection for negative arguments, the asymptotic expansions of the
// polygamma functions, and for P(a, x) the power series below x = a + 1 and the Legendre
// continued fraction of Q above it (Abramowitz and Stegun 6.5.29, 6.5.31).
#include <cmath>
#include <limits>

#include "platform/special/trig_pi.h"
#include "core/double_double.h"
#include "scalar/special_kernels.h"
#include "zomath/core.h"

namespace zomath::special {

using namespace zomath::dd;

namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kEps = std::numeric_limits<double>::epsilon();
constexpr double kEulerGamma = 0.5772156649015329;
constexpr double kHalfLogTwoPi = 0.91893853320467274;
constexpr double kRootTwoPi = 2.5066282746310002;
constexpr double kGammaOverflow = 171.62437695630271;  // Gamma(x) > DBL_MAX beyond
constexpr double kStirlingFrom = 10.0;

// B_2j / (2j (2j - 1)), j = 1..9.
const double kStirling[] = {1.0 / 12.0,    -1.0 / 360.0,      1.0 / 1260.0,
                            -1.0 / 1680.0, 1.0 / 1188.0,      -691.0 / 360360.0,
                            1.0 / 156.0,   -3617.0 / 122400.0, 43867.0 / 244188.0};

// ln Gamma(y) - [(y - 1/2) ln y - y + ln sqrt(2 pi)], y >= 10: below 1e-19 after nine terms.
double stirling_correction(double y) {
  const double r = 1.0 / y, r2 = r * r;
  double s = kStirling[8];
  for (int i = 7; i >= 0; --i) s = s * r2 + kStirling[i];
  return s * r;
}

// Gamma(y) for 0 < y <= kGammaOverflow.
double gamma_positive(double y) {
  double divisor = 1.0;
  while (y < kStirlingFrom) {
    divisor *= y;
    y += 1.0;
  }
  // sqrt(2 pi) y^(y - 1/2) e^-y e^S, with y^(y - 1/2) split in two halves so that nothing
  // overflows before the last product.
  const double half = std::pow(y, 0.5 * (y - 0.5));
  const double g = kRootTwoPi * (half * std::exp(-y)) * half * std::exp(stirling_correction(y));
  return g / divisor;
}

bool is_pole(double x) { return x <= 0.0 && x == std::floor(x); }

// zeta(k) - 1, k = 2..30 (values of the Riemann zeta function).
const double kZetaMinusOne[] = {
    0.6449340668482264, 0.2020569031595943, 0.08232323371113819, 0.03692775514336993,
    0.01734306198444914, 0.008349277381922827, 0.00407735619794434, 0.0020083928260822143,
    0.0009945751278180853, 0.0004941886041194645, 0.0002460865533080483,
    0.00012271334757848915, 6.124813505870483e-05, 3.058823630702049e-05,
    1.528225940865187e-05, 7.637197637899763e-06, 3.81729326499984e-06, 1.908212716553939e-06,
    9.539620338727962e-07, 4.769329867878064e-07, 2.38450502727733e-07, 1.1921992596531106e-07,
    5.960818905125948e-08, 2.980350351465228e-08, 1.4901554828365043e-08, 7.45071178983543e-09,
    3.725334024788457e-09, 1.862659723513049e-09, 9.313274324196682e-10};

// ln Gamma(1 + z) + ln(1 + z) = z (1 - gamma) + sum_k (-1)^k (zeta(k) - 1) z^k / k, |z| <= 1/2
// (Abramowitz and Stegun 6.1.33): the terms fall like (z/2)^k, with no cancellation near the
// zeros of ln Gamma at 1 and 2.
double log_gamma_near_one(double z) {
  double power = -z, sum = 0.0;
  for (int k = 2; k <= 30; ++k) {
    power *= -z;  // (-z)^k
    sum += kZetaMinusOne[k - 2] * power / k;
  }
  return z * (1.0 - kEulerGamma) + sum;
}

// ln(x^a e^-x / Gamma(a + 1)), the prefactor of the incomplete gamma series, as hi + lo: an
// exponent of several hundred would otherwise lose its last bits to rounding.
Double2 log_incomplete_prefactor(double a, double x) {
  if (a < kStirlingFrom) {
    return log_dd(x) * a + Double2{-x, 0.0} + Double2{-log_gamma_kernel(a + 1.0), 0.0};
  }
  // With Stirling's series for ln Gamma(a + 1): a ln(x/a) - (x - a) - ln sqrt(2 pi a) - S(a).
  // The large multiple of a logarithm is kept in double-double to the last bit of the exponent.
  const Double2 core = (log_dd(x) + -log_dd(a)) * a + -two_sum(x, -a);
  return core + Double2{-(0.5 * std::log(a) + kHalfLogTwoPi + stirling_correction(a)), 0.0};
}

}  // namespace

double gamma_kernel(double x) {
  if (std::isnan(x)) return x;
  if (is_pole(x) || x > kGammaOverflow) return NANUM;
  if (x > 0.0) return gamma_positive(x);
  // Gamma(x) = pi / (sin(pi x) (-x) Gamma(-x)), with -x exact; below -171.6 it underflows to 0.
  double s, c;
  platform::sincos_pi(x, s, c);
  return kPi / (s * -x * gamma_positive(-x));
}

double log_gamma_kernel(double x) {
  if (std::isnan(x)) return x;
  if (!(x > 0.0)) return NANUM;
  if (x < 1e-8) return -std::log(x) - kEulerGamma * x;
  // Around the zeros at 1 and 2: ln Gamma(1 + z) and ln Gamma(2 + z) = ln Gamma(1 + z) +
  // ln(1 + z), z = x - 1 or x - 2 exactly.
  if (x >= 0.5 && x <= 1.5) return log_gamma_near_one(x - 1.0) - std::log1p(x - 1.0);
  if (x > 1.5 && x <= 2.5) return log_gamma_near_one(x - 2.0);
  if (x < kStirlingFrom) return std::log(gamma_positive(x));
  const double v = (x - 0.5) * std::log(x) - x + kHalfLogTwoPi + stirling_correction(x);
  return std::isinf(v) ? NANUM : v;
}

double polygamma_kernel(double x, int k) {
  if (k < 0 || k > 6 || x == NANUM) return NANUM;
  if (std::isnan(x)) return x;
  const double n = std::nearbyint(x);
  if (x <= 0.0 && std::fabs(x - n) <= 2.220446e-16 * std::fabs(n)) return NANUM;
  if (std::isinf(x)) return NANUM;

  double factorial = 1.0;  // k!
  for (int i = 2; i <= k; ++i) factorial *= i;
  const double sign = (k % 2 == 0) ? 1.0 : -1.0;  // (-1)^k

  if (x < 0.0) {
    // psi^(k)(x) = (-1)^k psi^(k)(1 - x) - pi^(k+1) P_k(cot pi x), where P_0(c) = c and
    // P_(j+1)(c) = -(1 + c^2) P_j'(c) give the derivatives of cot.
    double s, c;
    platform::sincos_pi(x, s, c);
    const double cot = c / s;
    double p[8] = {0.0, 1.0};  // coefficients of P_j, lowest first
    for (int j = 0; j < k; ++j) {
      double d[8] = {0.0};
      for (int i = 1; i <= j + 1; ++i) d[i - 1] = i * p[i];  // P_j'
      double next[8] = {0.0};
      for (int i = 0; i <= j; ++i) {
        next[i] -= d[i];
        next[i + 2] -= d[i];
      }
      for (int i = 0; i < 8; ++i) p[i] = next[i];
    }
    double poly = 0.0;
    for (int i = k + 1; i >= 0; --i) poly = poly * cot + p[i];
    const double reflected = polygamma_kernel(1.0 - x, k);
    if (reflected == NANUM) return NANUM;
    const double v = sign * reflected - std::pow(kPi, k + 1) * poly;
    return std::isfinite(v) ? v : NANUM;
  }

  // Upward recurrence psi^(k)(y) = psi^(k)(y + 1) - (-1)^k k! / y^(k+1), then the asymptotic
  // expansion at y >= 20.
  constexpr double kAsymptoticFrom = 20.0;
  double y = x, shift = 0.0;
  while (y < kAsymptoticFrom) {
    shift += std::pow(y, -(k + 1));
    y += 1.0;
  }
  // Bernoulli numbers B_2j, j = 1..10.
  static const double b2j[] = {1.0 / 6.0, -1.0 / 30.0, 1.0 / 42.0, -1.0 / 30.0, 5.0 / 66.0,
                               -691.0 / 2730.0, 7.0 / 6.0, -3617.0 / 510.0, 43867.0 / 798.0,
                               -174611.0 / 330.0};
  double asym;
  const double r = 1.0 / y;
  if (k == 0) {
    double s = 0.0, rp = r * r;
    for (int j = 1; j <= 10; ++j, rp *= r * r) s += b2j[j - 1] / (2 * j) * rp;
    asym = std::log(y) - 0.5 * r - s;
  } else {
    // (k-1)!/y^k + k!/(2 y^(k+1)) + sum B_2j (2j+k-1)! / ((2j)! y^(2j+k)), times (-1)^(k+1).
    const double kFactorialLess = factorial / k;
    double s = kFactorialLess * std::pow(r, k) + 0.5 * factorial * std::pow(r, k + 1);
    double ratio = factorial / k;  // (2j + k - 1)! / (2j)!, built up term by term
    double rp = std::pow(r, k + 2);
    for (int j = 1; j <= 10; ++j, rp *= r * r) {
      // (2j+k-1)!/(2j)! from (2j+k-3)!/(2j-2)!
      ratio *= (2.0 * j + k - 2) * (2.0 * j + k - 1) / ((2.0 * j - 1) * (2.0 * j));
      s += b2j[j - 1] * ratio * rp;
    }
    asym = -sign * s;
  }
  const double v = asym - sign * factorial * shift;
  return std::isfinite(v) ? v : NANUM;
}

double incomplete_gamma_kernel(double a, double x) {
  if (std::isnan(a) || std::isnan(x)) return a + x;
  if (!(a > 0.0) || std::isinf(a) || x < 0.0) return NANUM;
  if (x == 0.0) return 0.0;
  if (std::isinf(x)) return 1.0;
  const Double2 logPrefactor = log_incomplete_prefactor(a, x);
  const double prefactor = std::exp(logPrefactor.hi) * (1.0 + logPrefactor.lo);
  if (x < a + 1.0) {
    // P = x^a e^-x / Gamma(a + 1) * sum_n x^n / ((a + 1) ... (a + n))
    double term = 1.0, sum = 1.0;
    for (int n = 1; n < 100000; ++n) {
      term *= x / (a + n);
      sum += term;
      if (term <= kEps * 0.25 * sum) break;
    }
    return prefactor * sum;
  }
  // Q = x^a e^-x / Gamma(a) * 1/(x + 1 - a - 1 (1 - a)/(x + 3 - a - 2 (2 - a)/(x + 5 - a - ...)))
  constexpr double kTiny = 1e-300;
  double b = x + 1.0 - a;
  double c = 1.0 / kTiny;
  double d = 1.0 / b;
  double h = d;
  for (int i = 1; i < 100000; ++i) {
    const double an = -i * (i - a);
    b += 2.0;
    d = an * d + b;
    if (std::fabs(d) < kTiny) d = kTiny;
    c = b + an / c;
    if (std::fabs(c) < kTiny) c = kTiny;
    d = 1.0 / d;
    const double del = d * c;
    h *= del;
    if (std::fabs(del - 1.0) <= kEps * 0.25) break;
  }
  const double q = a * prefactor * h;
  return 1.0 - q;
}

}  // namespace zomath::special
