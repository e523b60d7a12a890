// Airy functions Ai, Bi and their derivatives, all four from one evaluation:
// - -10 <= x <= 1: the Maclaurin series of the two solutions f and g, summed in double-double
//   because on the negative axis the terms grow to 1e9 times the result;
// - x > 1: Bessel functions of order 1/3 and 2/3 at zeta = 2/3 x^(3/2) from the I, K kernel;
// - x < -10: Hankel's expansions of J of orders +-1/3 and +-2/3 at zeta, with zeta and its
//   reduction modulo pi/2 carried in double-double so that the phase stays exact.
// Abramowitz & Stegun 10.4.2-10.4.5 and 10.4.14-10.4.31 (NBS, 1964).
#include <cmath>
#include <limits>

#include "core/double_double.h"
#include "scalar/bessel_kernels.h"

namespace zomath::special {
namespace {

using dd::Double2;

constexpr double kPi = 3.141592653589793;
constexpr double kNegativeSeriesFrom = -10.0;
constexpr Double2 kAi0 = {0.3550280538878172, 2.05233632436212e-17};    // Ai(0)
constexpr Double2 kAiPrime0 = {0.2588194037928068, -2.522243111610832e-17};  // -Ai'(0)
constexpr Double2 kSqrt3 = {1.7320508075688772, 1.0035084221806903e-16};

// f, g and their derivatives (A&S 10.4.3) summed in double-double.
AiryValues maclaurin(double x) {
  const Double2 x3 = dd::mul(dd::two_prod(x, x), x);
  Double2 t = {1.0, 0.0}, u = {x, 0.0};                // terms of f and g
  Double2 tp = dd::mul(dd::two_prod(x, x), 0.5);       // terms of f' from k = 1
  Double2 up = {1.0, 0.0};                             // terms of g'
  Double2 f = t, g = u, fp = tp, gp = up;
  double largest = std::fmax(1.0, std::fabs(x));
  for (int k = 1; k < 200; ++k) {
    const double k3 = 3.0 * k;
    t = dd::div(dd::mul(t, x3), (k3 - 1) * k3);
    u = dd::div(dd::mul(u, x3), k3 * (k3 + 1));
    if (k >= 2) tp = dd::div(dd::mul(tp, x3), (k3 - 3) * (k3 - 1));
    up = dd::div(dd::mul(up, x3), (k3 - 2) * k3);
    f = dd::add(f, t);
    g = dd::add(g, u);
    if (k >= 2) fp = dd::add(fp, tp);
    gp = dd::add(gp, up);
    const double m = std::fmax(std::fmax(std::fabs(t.hi), std::fabs(u.hi)),
                               std::fmax(std::fabs(tp.hi), std::fabs(up.hi)));
    largest = std::fmax(largest, m);
    if (m < 1e-34 * largest) break;
  }
  const Double2 c1f = dd::mul(f, kAi0), c2g = dd::mul(g, kAiPrime0);
  const Double2 c1fp = dd::mul(fp, kAi0), c2gp = dd::mul(gp, kAiPrime0);
  AiryValues r;
  r.ai = dd::add(c1f, dd::neg(c2g)).hi;
  r.bi = dd::mul(dd::add(c1f, c2g), kSqrt3).hi;
  r.ai_deriv = dd::add(c1fp, dd::neg(c2gp)).hi;
  r.bi_deriv = dd::mul(dd::add(c1fp, c2gp), kSqrt3).hi;
  return r;
}

Double2 zeta_of(double ax) {  // 2/3 ax^(3/2)
  return dd::mul(dd::mul(dd::sqrt(ax), ax), dd::kTwoThirds);
}

// x > 1: Ai = sqrt(x/3)/pi K_1/3, Ai' = -x/(pi sqrt 3) K_2/3, Bi = sqrt(x/3) (I_-1/3 + I_1/3),
// Bi' = x/sqrt 3 (I_-2/3 + I_2/3), all at zeta (A&S 10.4.14-10.4.17).
AiryValues positive(double x) {
  const Double2 zeta = zeta_of(x);
  const BesselIK b = bessel_ik_scaled(-1.0 / 3.0, zeta.hi);  // orders -1/3 and 2/3
  // I_-v = I_v + (2/pi) sin(v pi) K_v; (2/pi) sin(pi/3) = (2/pi) sin(2 pi/3) = sqrt 3 / pi.
  const double reflect = 0.5513288954217921 * std::exp(-2.0 * zeta.hi);
  const double i_m13 = b.i_mu, i_23 = b.i_mu1;
  const double i_13 = i_m13 - reflect * b.k_mu;
  const double i_m23 = i_23 + reflect * b.k_mu1;
  AiryValues r;
  const double root = std::sqrt(x / 3.0);
  r.ai = scale_by_exp(root / kPi * b.k_mu * (1.0 - zeta.lo), -zeta.hi);
  r.ai_deriv = scale_by_exp(-x / (kPi * 1.7320508075688772) * b.k_mu1 * (1.0 - zeta.lo), -zeta.hi);
  r.bi = scale_by_exp(root * (i_m13 + i_13) * (1.0 + zeta.lo), zeta.hi);
  r.bi_deriv = scale_by_exp(x / 1.7320508075688772 * (i_m23 + i_23) * (1.0 + zeta.lo), zeta.hi);
  return r;
}

// J_v(zeta) for v = +-1/3 or +-2/3 by Hankel's expansion, given sin and cos of zeta and the
// phase offset alpha = (v/2 + 1/4) pi through its cosine and sine.
double hankel_j(double v, double zeta, double sz, double cz, double ca, double sa) {
  const double mu = 4.0 * v * v;
  double term = 1.0, p = 1.0, q = 0.0;
  for (int k = 1; k < 200; ++k) {
    const double ratio = (mu - (2.0 * k - 1) * (2.0 * k - 1)) / (8.0 * k * zeta);
    if (std::fabs(ratio) >= 1.0) break;
    term *= ratio;
    // P = a0 - a2 + a4 - ..., Q = a1 - a3 + a5 - ...
    switch (k & 3) {
      case 0: p += term; break;
      case 1: q += term; break;
      case 2: p -= term; break;
      default: q -= term; break;
    }
    if (std::fabs(term) < 1e-17) break;
  }
  const double cchi = cz * ca + sz * sa;  // cos(zeta - alpha)
  const double schi = sz * ca - cz * sa;  // sin(zeta - alpha)
  return std::sqrt(2.0 / (kPi * zeta)) * (p * cchi - q * schi);
}

// x < -10 (A&S 10.4.15, 10.4.16, 10.4.18, 10.4.19 with z = -x).
AiryValues negative(double x) {
  const double z = -x;
  const Double2 zeta = zeta_of(z);
  double sz, cz;
  dd::sincos(zeta, sz, cz);
  constexpr double kC = 0.9659258262890683, kS = 0.25881904510252074;  // cos, sin of pi/12
  // alpha: v = 1/3 -> 5pi/12, -1/3 -> pi/12, 2/3 -> 7pi/12, -2/3 -> -pi/12.
  const double j13 = hankel_j(1.0 / 3, zeta.hi, sz, cz, kS, kC);
  const double jm13 = hankel_j(-1.0 / 3, zeta.hi, sz, cz, kC, kS);
  const double j23 = hankel_j(2.0 / 3, zeta.hi, sz, cz, -kS, kC);
  const double jm23 = hankel_j(-2.0 / 3, zeta.hi, sz, cz, kC, -kS);
  AiryValues r;
  const double rz = std::sqrt(z);
  r.ai = rz / 3.0 * (j13 + jm13);
  r.bi = rz / 1.7320508075688772 * (jm13 - j13);
  r.ai_deriv = z / 3.0 * (j23 - jm23);
  r.bi_deriv = z / 1.7320508075688772 * (jm23 + j23);
  return r;
}

}  // namespace

AiryValues airy_all(double x) {
  constexpr double kInf = std::numeric_limits<double>::infinity();
  // Past x = 200 Ai and Ai' are below the smallest double and Bi, Bi' above the largest; below
  // -1e200 zeta itself overflows, and only the decaying Ai, Bi have a limit (0).
  if (x > 200.0) return {0.0, kInf, -0.0, kInf};
  if (x < -1e200) return {0.0, 0.0, std::nan(""), std::nan("")};
  if (x > 1.0) return positive(x);
  if (x >= kNegativeSeriesFrom) return maclaurin(x);
  return negative(x);
}

}  // namespace zomath::special
