// Kelvin functions from the modified Bessel functions of complex argument z = x exp(i pi/4):
// ber + i bei = I0(z), ker + i kei = K0(z). In long double complex arithmetic, so that the
// phase x / sqrt 2 stays accurate to 1e-16 up to x = 1010 and nothing overflows on the way:
// - x <= 2: the power series of I0 and K0;
// - 2 < x < 20: K0 and K1 by Steed's continued fraction, I1/I0 by the continued fraction of
//   the ratio, and I0 from the Wronskian I0 K1 + I1 K0 = 1/z;
// - x >= 20: Hankel's expansions of I0 and K0, whose truncation error exp(-2x) is below 1e-17.
// Thompson & Barnett, Comput. Phys. Commun. 47, 1987 (Steed's method for complex argument).
#include "platform/special/kelvin.h"

#include <cfloat>
#include <cmath>
#include <complex>

namespace zomath::platform {
namespace {

using Complex = std::complex<long double>;
using Real = long double;

constexpr Real kPi = 3.141592653589793238462643383279502884L;
constexpr Real kEulerGamma = 0.577215664901532860606512090082402431L;
constexpr Real kInvSqrt2 = 0.707106781186547524400844362104849039L;
constexpr Real kEps = 1e-18L;  // a hundredth of the double rounding unit, ten long double units
constexpr int kMaxIterations = 100000;

struct KelvinPair {
  Complex i0, k0;
};

KelvinPair series(Real x) {
  const Complex z(x * kInvSqrt2, x * kInvSqrt2);
  const Complex q = 0.25L * z * z;
  Complex term = 1.0L, i0 = 1.0L, weighted = 0.0L;
  Real harmonic = 0.0L;
  for (int k = 1; k < kMaxIterations; ++k) {
    term *= q / (static_cast<Real>(k) * k);
    harmonic += 1.0L / k;
    i0 += term;
    weighted += harmonic * term;
    if (std::abs(term) * (1.0L + harmonic) < kEps * std::abs(i0)) break;
  }
  const Complex log_half_z(logl(0.5L * x), kPi / 4);
  return {i0, -(log_half_z + kEulerGamma) * i0 + weighted};
}

// exp(z) K0(z), exp(z) K1(z) by Steed's continued fraction (order 0).
void steed_k(const Complex& z, Complex& k0, Complex& k1) {
  Complex b = 2.0L * (1.0L + z);
  Complex d = 1.0L / b;
  Complex h = d, delh = d;
  Complex q1 = 0.0L, q2 = 1.0L;
  const Real a1 = 0.25L;
  Complex q = a1, c = a1;
  Real a = -a1;
  Complex s = 1.0L + q * delh;
  for (int i = 2; i < kMaxIterations; ++i) {
    a -= 2 * (i - 1);
    c = -a * c / static_cast<Real>(i);
    const Complex qnew = (q1 - b * q2) / a;
    q1 = q2;
    q2 = qnew;
    q += c * qnew;
    b += 2.0L;
    d = 1.0L / (b + a * d);
    delh = (b * d - 1.0L) * delh;
    h += delh;
    const Complex dels = q * delh;
    s += dels;
    if (std::abs(dels) < kEps * std::abs(s)) break;
  }
  k0 = std::sqrt(kPi / (2.0L * z)) / s;
  k1 = k0 * (z + 0.5L - a1 * h) / z;
}

// I1(z) / I0(z) = 1 / (2/z + 1 / (4/z + ...)), modified Lentz.
Complex i_ratio(const Complex& z) {
  const Real tiny = 1e-1000L;  // its square is still a long double: plain complex division works
  Complex f = tiny, c = tiny, d = 0.0L;
  for (int k = 1; k < kMaxIterations; ++k) {
    const Complex b = 2.0L * static_cast<Real>(k) / z;
    d = b + d;
    if (d == 0.0L) d = tiny;
    d = 1.0L / d;
    c = b + 1.0L / c;
    if (c == 0.0L) c = tiny;
    const Complex delta = c * d;
    f *= delta;
    if (std::abs(delta - 1.0L) < kEps) break;
  }
  return f;
}

KelvinPair continued_fractions(Real x) {
  const Real beta = x * kInvSqrt2;
  const Complex z(beta, beta);
  Complex k0s, k1s;
  steed_k(z, k0s, k1s);
  const Complex ratio = i_ratio(z);
  const Complex i0s = 1.0L / (z * (k1s + ratio * k0s));  // exp(-z) I0(z)
  const Complex rot(cosl(beta), sinl(beta));                // exp(i beta)
  const Real grow = expl(beta);
  return {i0s * rot * grow, k0s * std::conj(rot) / grow};
}

// K0(z) ~ sqrt(pi/2z) e^-z S+, I0(z) ~ (e^z S- + i e^-z S+) / sqrt(2 pi z) for arg z = pi/4,
// with S+- = sum (+-1)^k a_k / z^k, a_k = a_{k-1} (-(2k-1)^2) / (8k) (DLMF 10.40.2, 10.40.5).
KelvinPair hankel(Real x) {
  const Real beta = x * kInvSqrt2;
  const Complex z(beta, beta);
  Complex term = 1.0L, plus = 1.0L, minus = 1.0L;
  Real previous = 1.0L;
  for (int k = 1; k < 200; ++k) {
    term *= -static_cast<Real>((2 * k - 1) * (2 * k - 1)) / (8.0L * k * z);
    const Real size = std::abs(term);
    if (size > previous) break;
    previous = size;
    plus += term;
    minus += (k & 1) ? -term : term;
    if (size < kEps) break;
  }
  const Complex rot(cosl(beta), sinl(beta));  // exp(i beta)
  const Real grow = expl(beta);
  const Complex root = std::sqrt(2.0L * kPi * z);
  const Complex k0 = kPi / root * std::conj(rot) / grow * plus;
  const Complex i0 = (grow * rot * minus + Complex(0.0L, 1.0L) * std::conj(rot) / grow * plus) / root;
  return {i0, k0};
}

KelvinPair evaluate(double x) {
  const Real ax = fabsl(static_cast<Real>(x));
  if (ax <= 2.0L) return series(ax);
  return ax < 20.0L ? continued_fractions(ax) : hankel(ax);
}

double to_double(Real v, NagError& err) {
  if (!(fabsl(v) <= DBL_MAX)) {
    err.fail(kKelvinOverflow, "the value overflows");
    return v > 0 ? HUGE_VAL : -HUGE_VAL;
  }
  return static_cast<double>(v);
}

// Past |x| = 1100 every value has overflowed (ber, bei) or underflowed to 0 (ker, kei).
constexpr double kBeyond = 1100.0;

}  // namespace

double kelvin_ber(double x, NagError& err) {
  if (std::isnan(x)) return x;
  if (!(std::fabs(x) < kBeyond)) return to_double(HUGE_VALL, err);
  if (x == 0) return 1.0;
  return to_double(evaluate(x).i0.real(), err);
}

double kelvin_bei(double x, NagError& err) {
  if (std::isnan(x)) return x;
  if (!(std::fabs(x) < kBeyond)) return to_double(HUGE_VALL, err);
  if (x == 0) return 0.0;
  return to_double(evaluate(x).i0.imag(), err);
}

double kelvin_ker(double x, NagError& err) {
  if (x <= 0) return err.fail(kKelvinArgNotPositive, "x must be positive"), 0.0;
  if (std::isnan(x)) return x;
  if (x >= kBeyond) return 0.0;
  return to_double(evaluate(x).k0.real(), err);
}

double kelvin_kei(double x, NagError& err) {
  if (x <= 0) return err.fail(kKelvinArgNotPositive, "x must be positive"), 0.0;
  if (std::isnan(x)) return x;
  if (x >= kBeyond) return 0.0;
  return to_double(evaluate(x).k0.imag(), err);
}

}  // namespace zomath::platform
