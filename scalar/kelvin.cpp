// Kelvin functions ber, bei, ker, kei: ber + i bei = I0(z) and ker + i kei = K0(z) with
// z = x exp(i pi/4).
// - x <= 5: the power series in long double (Abramowitz & Stegun 9.9.10, 9.9.12);
// - x > 5: K0(w) = exp(-w) exp(-i arg(w)/2) * integral of exp(-|w| s^2) / sqrt(2 + s^2 exp(-i arg w))
//   over the real line, the Laplace integral of K0 on the ray where w t is real, summed by the
//   trapezoidal rule, which converges geometrically for this analytic integrand (Trefethen &
//   Weideman, SIAM Review 56, 2014); I0(z) = (K0(z exp(-i pi)) - K0(z)) / (pi i). The phase
//   x / sqrt 2 of exp(-+z) is carried in double-double.
#include <cmath>
#include <complex>

#include "core/double_double.h"
#include "scalar/bessel_kernels.h"

namespace zomath::special {
namespace {

using dd::Double2;
using Complex = std::complex<double>;

constexpr double kPi = 3.141592653589793;
constexpr double kSeriesTo = 5.0;

struct Series {
  long double ber, bei, ker_sum, kei_sum;
};

// ber, bei and the psi-weighted sums of ker and kei, term by term: t_m = (x^2/4)^m / (m!)^2
// with signs + + - - by m mod 4, even m to ber, odd m to bei.
Series power_series(double x) {
  const long double q = 0.25L * static_cast<long double>(x) * x;
  constexpr long double kEulerGamma = 0.577215664901532860606512090082402431L;
  long double t = 1.0L, harmonic = 0.0L;
  Series s = {1.0L, 0.0L, -kEulerGamma, 0.0L};  // m = 0: psi(1) = -gamma
  for (int m = 1; m < 400; ++m) {
    t *= q / (static_cast<long double>(m) * m);
    harmonic += 1.0L / m;
    const long double signed_t = (m & 2) ? -t : t;
    const long double psi = harmonic - kEulerGamma;
    if (m & 1) {
      s.bei += signed_t;
      s.kei_sum += psi * signed_t;
    } else {
      s.ber += signed_t;
      s.ker_sum += psi * signed_t;
    }
    if (t < 1e-22L * (fabsl(s.ber) + fabsl(s.bei) + 1e-300L) && t * psi < 1e-22L) break;
  }
  return s;
}

// The trapezoidal sum for the integral of exp(-x s^2) / sqrt(2 + s^2 rot) over the real line.
// The integrand's nearest singularities lie at distance `reach` from the real axis; the step
// balances the discretisation error exp(-2 pi d / h + x d^2) against 1e-17.
Complex laplace_integral(double x, Complex rot, double reach) {
  const double d = 0.85 * reach;
  double h = 2.0 * kPi * d / (40.0 + x * d * d);
  const double h_saddle = kPi / std::sqrt(40.0 * x);  // strip width pi / (h x) inside d
  if (kPi / (h_saddle * x) <= d && h_saddle > h) h = h_saddle;
  const double s_max = std::sqrt(42.0 / x);
  Complex sum = 1.0 / std::sqrt(Complex(2.0, 0.0));
  for (int j = 1;; ++j) {
    const double s = j * h;
    if (s > s_max) break;
    const double s2 = s * s;
    sum += 2.0 * std::exp(-x * s2) / std::sqrt(2.0 + s2 * rot);
  }
  return h * sum;
}

Double2 phase_of(double x) { return dd::mul(dd::kInvSqrt2, x); }  // x / sqrt 2

// K0(x e^{i pi/4}) without its factor exp(-x/sqrt 2): exp(-i(x/sqrt2 + pi/8)) * integral.
Complex k0_unscaled_part(double x, const Double2& beta) {
  const Complex integral = laplace_integral(x, Complex(0.7071067811865476, -0.7071067811865476),
                                            1.3065629648763766);  // sqrt2 sin(5pi/8)
  double s, c;
  dd::sincos(dd::add(beta, dd::kEighthPi), s, c);
  return Complex(c, -s) * integral;
}

}  // namespace

void kelvin_ber_bei(double x, double& ber, double& bei) {
  if (x <= kSeriesTo) {
    const Series s = power_series(x);
    ber = static_cast<double>(s.ber);
    bei = static_cast<double>(s.bei);
    return;
  }
  const Double2 beta = phase_of(x);
  // K0(z e^{-i pi}) = exp(z) exp(i 3pi/8) * integral with rotation exp(i 3pi/4).
  const Complex integral = laplace_integral(x, Complex(-0.7071067811865476, 0.7071067811865476),
                                            0.5411961001461970);  // sqrt2 sin(pi/8)
  double s, c;
  dd::sincos(dd::add(beta, dd::mul(dd::kEighthPi, 3.0)), s, c);
  const Complex grow = Complex(c, s) * integral;                      // times exp(x/sqrt2)
  const Complex decay = k0_unscaled_part(x, beta);                    // times exp(-x/sqrt2)
  // I0 = -(i/pi) (A - B): real part (Im A - Im B)/pi, imaginary part (Re B - Re A)/pi.
  const double up = 1.0 + beta.lo, down = std::exp(-2.0 * beta.hi);
  ber = scale_by_exp((grow.imag() * up - decay.imag() * down) / kPi, beta.hi);
  bei = scale_by_exp((decay.real() * down - grow.real() * up) / kPi, beta.hi);
}

void kelvin_ker_kei(double x, double& ker, double& kei) {
  if (x <= kSeriesTo) {
    const Series s = power_series(x);
    const long double lg = logl(0.5L * x);
    constexpr long double kQuarterPi = 0.785398163397448309615660845819875721L;
    ker = static_cast<double>(-lg * s.ber + kQuarterPi * s.bei + s.ker_sum);
    kei = static_cast<double>(-lg * s.bei - kQuarterPi * s.ber + s.kei_sum);
    return;
  }
  const Double2 beta = phase_of(x);
  const Complex k0 = k0_unscaled_part(x, beta) * (1.0 - beta.lo);
  ker = scale_by_exp(k0.real(), -beta.hi);
  kei = scale_by_exp(k0.imag(), -beta.hi);
}

}  // namespace zomath::special
