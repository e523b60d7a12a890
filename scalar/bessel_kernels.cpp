// Modified Bessel functions I and K of real order: power series for small x, Steed's continued
// fraction for K with the Wronskian for I at moderate x, Hankel's expansion for large x.
// Temme, J. Comput. Phys. 19, 1975 (series for K of small order); Thompson & Barnett,
// J. Comput. Phys. 64, 1986 (Steed's continued fractions for K and the ratio of I).
#include "scalar/bessel_kernels.h"

#include <cmath>

namespace zomath::special {
namespace {

constexpr double kEps = 1e-17;
constexpr double kPi = 3.141592653589793;
using Real = long double;
constexpr Real kPiL = 3.141592653589793238462643383279502884L;
constexpr Real kLn2L = 0.693147180559945309417232121458176568L;
constexpr Real kEulerGammaL = 0.577215664901532860606512090082402431L;
constexpr double kSeriesToI = 20.0;    // power series for I0, I1 up to here
constexpr double kSeriesToK = 2.0;     // series for K (and CF1 + Wronskian for I) up to here
constexpr double kHankelFrom = 25.0;   // general orders: Hankel's expansion from here
constexpr int kMaxIterations = 10000;

// Hankel's expansion: sign -1 gives exp(-x) I_v(x), sign +1 gives exp(x) K_v(x). The terms
// a_k(v) / x^k shrink while k < 2x; summation stops at the rounding level or the smallest term.
double hankel_scaled(double v, double x, int sign) {
  const double mu = 4.0 * v * v;
  double term = 1.0, sum = 1.0;
  for (int k = 1; k < 200; ++k) {
    const double ratio = (mu - (2.0 * k - 1) * (2.0 * k - 1)) / (8.0 * k * x);
    if (std::fabs(ratio) >= 1.0) break;
    term *= sign > 0 ? ratio : -ratio;
    sum += term;
    if (std::fabs(term) < kEps * std::fabs(sum)) break;
  }
  const double root_x = std::sqrt(x);  // sqrt(x) apart, so that 2 pi x can't overflow
  return sign > 0 ? 1.2533141373155003 / root_x * sum : sum / (2.5066282746310002 * root_x);
}

// Taylor coefficients of 1/Gamma(1 + z) about 0 (Abramowitz & Stegun 6.1.34, extended to 20
// digits), enough for |z| <= 1/2 to the rounding level of long double.
constexpr Real kRecipGamma[] = {
    1.0L, 0.57721566490153286061L, -0.65587807152025388108L, -0.042002635034095235529L,
    0.1665386113822914895L, -0.042197734555544336748L, -0.0096219715278769735621L,
    0.0072189432466630995424L, -0.0011651675918590651121L, -0.00021524167411495097282L,
    0.00012805028238811618615L, -0.000020134854780788238656L, -1.2504934821426706573e-6L,
    1.1330272319816958824e-6L, -2.0563384169776071035e-7L, 6.1160951044814158179e-9L,
    5.0020076444692229301e-9L, -1.1812745704870201446e-9L, 1.0434267116911005105e-10L,
    7.782263439905071254e-12L, -3.6968056186422057082e-12L, 5.100370287454475979e-13L,
    -2.0583260535665067832e-14L, -5.3481225394230179824e-15L, 1.2267786282382607902e-15L,
    -1.1812593016974587695e-16L, 1.1866922547516003326e-18L, 1.4123806553180317816e-18L};

// Temme's auxiliary functions of mu: 1/Gamma(1 + mu), 1/Gamma(1 - mu),
// gam1 = (1/Gamma(1 - mu) - 1/Gamma(1 + mu)) / (2 mu), gam2 = (1/Gamma(1 - mu) + 1/Gamma(1 + mu)) / 2,
// from the even and odd parts of the Taylor series, so that gam1 has no cancellation at mu = 0.
void temme_gammas(Real mu, Real& gplus, Real& gminus, Real& gam1, Real& gam2) {
  const int n = sizeof(kRecipGamma) / sizeof(kRecipGamma[0]);
  Real even = 0.0L, odd = 0.0L;
  const Real mu2 = mu * mu;
  for (int k = (n - 1) & ~1; k >= 0; k -= 2) even = even * mu2 + kRecipGamma[k];
  for (int k = ((n - 1) & 1) ? n - 1 : n - 2; k >= 1; k -= 2) odd = odd * mu2 + kRecipGamma[k];
  // 1/Gamma(1 + mu) = even + mu * odd, 1/Gamma(1 - mu) = even - mu * odd.
  gplus = even + mu * odd;
  gminus = even - mu * odd;
  gam1 = -odd;
  gam2 = even;
}

// K_mu and x K_{mu+1} for 0 < x <= 2 by Temme's series (unscaled; x K_{mu+1} stays finite
// where K_{mu+1} alone overflows). The sums cancel to about a tenth of their terms near x = 2,
// so they run in long double.
void temme_k(double mu_in, double x_in, double& kmu, double& xkmu1) {
  const Real mu = mu_in, x = x_in;
  Real gplus, gminus, gam1, gam2;
  temme_gammas(mu, gplus, gminus, gam1, gam2);
  const Real x2 = 0.5L * x;
  const Real pimu = kPiL * mu;
  const Real fact = pimu == 0.0L ? 1.0L : pimu / sinl(pimu);
  const Real d = kLn2L - logl(x);  // -ln(x/2), with x/2 possibly below the smallest double
  const Real e = mu * d;
  // (x/2)^-mu = exp(e). Where |e| is large the rounding of d would be magnified, so the power
  // is formed by pow, and cosh, sinh from it.
  Real ee, cosh_e, sinh_term;  // sinh_term = sinh(e) / e * d = sinh(e) / mu
  if (fabsl(e) > 1.0L) {
    ee = powl(x, -mu) * powl(2.0L, mu);
    cosh_e = 0.5L * (ee + 1.0L / ee);
    sinh_term = 0.5L * (ee - 1.0L / ee) / mu;
  } else {
    ee = expl(e);
    cosh_e = coshl(e);
    sinh_term = e == 0.0L ? d : sinhl(e) / e * d;
  }
  Real ff = fact * (gam1 * cosh_e + gam2 * sinh_term);
  Real sum = ff;
  Real p = 0.5L * ee / gplus;    // (x/2)^-mu Gamma(1 + mu) / 2
  Real q = 0.5L / (ee * gminus);  // (x/2)^mu Gamma(1 - mu) / 2
  Real c = 1.0L;
  const Real dq = x2 * x2;
  Real sum1 = p;
  const Real mu2 = mu * mu;
  for (int i = 1; i < kMaxIterations; ++i) {
    ff = (i * ff + p + q) / (static_cast<Real>(i) * i - mu2);
    c *= dq / i;
    p /= (i - mu);
    q /= (i + mu);
    const Real del = c * ff;
    sum += del;
    sum1 += c * (p - i * ff);
    if (fabsl(del) < 1e-21L * fabsl(sum)) break;
  }
  kmu = static_cast<double>(sum);
  xkmu1 = static_cast<double>(sum1 * 2.0L);
}

// exp(x) K_mu and exp(x) x K_{mu+1} for x >= 2 by Steed's continued fraction.
void steed_k_scaled(double mu, double x, double& kmu, double& xkmu1) {
  double b = 2.0 * (1.0 + x);
  double d = 1.0 / b;
  double h = d, delh = d;
  double q1 = 0.0, q2 = 1.0;
  const double a1 = 0.25 - mu * mu;
  double q = a1, c = a1, a = -a1;
  double s = 1.0 + q * delh;
  for (int i = 2; i < kMaxIterations; ++i) {
    a -= 2 * (i - 1);
    c = -a * c / i;
    const double qnew = (q1 - b * q2) / a;
    q1 = q2;
    q2 = qnew;
    q += c * qnew;
    b += 2.0;
    d = 1.0 / (b + a * d);
    delh = (b * d - 1.0) * delh;
    h += delh;
    const double dels = q * delh;
    s += dels;
    if (std::fabs(dels) < kEps * std::fabs(s)) break;
  }
  kmu = std::sqrt(kPi / (2.0 * x)) / s;
  xkmu1 = kmu * (mu + x + 0.5 - a1 * h);
}

// I_{mu+1}(x) / (x I_mu(x)) from the continued fraction
// I_{mu+1} / I_mu = 1 / (2(mu+1)/x + 1 / (2(mu+2)/x + ...)), evaluated by the modified Lentz
// method (I_{mu+n} is the minimal solution of the recurrence). Divided by x so that it stays
// representable for x down to the smallest double.
double i_ratio_over_x(double mu, double x) {
  // Below 1e-150 the fraction is x / (2(mu + 1)) to far below the rounding level.
  if (x < 1e-150) return 0.5 / (mu + 1.0);
  constexpr double kTiny = 1e-300;
  double f = kTiny, c = kTiny, d = 0.0;
  for (int k = 1; k < kMaxIterations; ++k) {
    const double b = 2.0 * (mu + k) / x;
    d = b + d;
    d = d == 0.0 ? 1.0 / kTiny : 1.0 / d;
    c = b + 1.0 / c;
    if (c == 0.0) c = kTiny;
    const double delta = c * d;
    f *= delta;
    if (std::fabs(delta - 1.0) < kEps) break;
  }
  return f / x;
}

}  // namespace

double scale_by_exp(double s, double v) {
  if (std::fabs(v) < 700.0) return s * std::exp(v);
  const double h = 0.5 * v;
  const double eh = std::exp(h);
  return (s * eh) * eh;
}

double i0_scaled(double x) {
  if (x > kSeriesToI) return hankel_scaled(0.0, x, -1);
  const double q = 0.25 * x * x;
  double term = 1.0, sum = 1.0;
  for (int k = 1; k < kMaxIterations; ++k) {
    term *= q / (static_cast<double>(k) * k);
    sum += term;
    if (term < kEps * sum) break;
  }
  return sum * std::exp(-x);
}

double i1_scaled(double x) {
  if (x > kSeriesToI) return hankel_scaled(1.0, x, -1);
  const double q = 0.25 * x * x;
  double term = 0.5 * x, sum = term;
  for (int k = 1; k < kMaxIterations; ++k) {
    term *= q / (static_cast<double>(k) * (k + 1));
    sum += term;
    if (term < kEps * sum) break;
  }
  return sum * std::exp(-x);
}

void k01_scaled(double x, double& k0, double& k1) {
  if (x >= kHankelFrom) {
    k0 = hankel_scaled(0.0, x, +1);
    k1 = hankel_scaled(1.0, x, +1);
    return;
  }
  if (x > kSeriesToK) {
    steed_k_scaled(0.0, x, k0, k1);
    k1 /= x;
    return;
  }
  // K0 = -(ln(x/2) + gamma) I0 + sum H_k t_k,
  // K1 = 1/x + ln(x/2) I1 - (x/4) sum (psi(k+1) + psi(k+2)) q^k / (k! (k+1)!),
  // with t_k = q^k / (k!)^2, q = x^2/4, H_k the harmonic numbers (Abramowitz & Stegun 9.6.13,
  // 9.6.11). Near x = 2 the terms cancel to a tenth of their size: the sums run in long double.
  const Real lx = x;
  const Real q = 0.25L * lx * lx;
  const Real lg = logl(lx) - kLn2L;
  Real t0 = 1.0L, t1 = 1.0L;  // q^k/(k!)^2 and q^k/(k!(k+1)!)
  Real i0 = 1.0L, i1 = 1.0L, s0 = 0.0L;
  Real harmonic = 0.0L;
  Real s1 = 1.0L - 2.0L * kEulerGammaL;  // psi(1) + psi(2) at k = 0
  for (int k = 1; k < kMaxIterations; ++k) {
    t0 *= q / (static_cast<Real>(k) * k);
    t1 *= q / (static_cast<Real>(k) * (k + 1));
    harmonic += 1.0L / k;
    i0 += t0;
    i1 += t1;
    s0 += harmonic * t0;
    const Real psi_sum = 2.0L * harmonic + 1.0L / (k + 1) - 2.0L * kEulerGammaL;
    s1 += psi_sum * t1;
    if (t0 < 1e-21L * i0 && t1 * fabsl(psi_sum) < 1e-21L * fabsl(s1)) break;
  }
  i1 *= 0.5L * lx;
  const Real ex = expl(lx);
  k0 = static_cast<double>((-(lg + kEulerGammaL) * i0 + s0) * ex);
  k1 = static_cast<double>((1.0L / lx + lg * i1 - 0.25L * lx * s1) * ex);
}

BesselIK bessel_ik_scaled(double mu, double x) {
  BesselIK r;
  if (x >= kHankelFrom) {
    r.i_mu = hankel_scaled(mu, x, -1);
    r.i_mu1 = hankel_scaled(mu + 1.0, x, -1);
    r.k_mu = hankel_scaled(mu, x, +1);
    r.k_mu1 = hankel_scaled(mu + 1.0, x, +1);
    return r;
  }
  double xk_mu1;  // x K_{mu+1}, scaled
  if (x <= kSeriesToK) {
    temme_k(mu, x, r.k_mu, xk_mu1);
    const double ex = std::exp(x);
    r.k_mu *= ex;
    xk_mu1 *= ex;
  } else {
    steed_k_scaled(mu, x, r.k_mu, xk_mu1);
  }
  r.k_mu1 = xk_mu1 / x;
  // Wronskian: I_mu K_{mu+1} + I_{mu+1} K_mu = 1/x.
  const double ratio_over_x = i_ratio_over_x(mu, x);
  r.i_mu = 1.0 / (xk_mu1 + ratio_over_x * x * x * r.k_mu);
  r.i_mu1 = ratio_over_x * (x * r.i_mu);
  return r;
}

}  // namespace zomath::special
