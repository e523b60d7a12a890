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
constexpr double kEulerGamma = 0.5772156649015329;
constexpr double kLn2 = 0.6931471805599453;
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
// digits), enough for |z| <= 1/2 to the rounding level.
constexpr double kRecipGamma[] = {
    1.0, 0.57721566490153286061, -0.65587807152025388108, -0.042002635034095235529,
    0.1665386113822914895, -0.042197734555544336748, -0.0096219715278769735621,
    0.0072189432466630995424, -0.0011651675918590651121, -0.00021524167411495097282,
    0.00012805028238811618615, -0.000020134854780788238656, -1.2504934821426706573e-6,
    1.1330272319816958824e-6, -2.0563384169776071035e-7, 6.1160951044814158179e-9,
    5.0020076444692229301e-9, -1.1812745704870201446e-9, 1.0434267116911005105e-10,
    7.782263439905071254e-12, -3.6968056186422057082e-12, 5.100370287454475979e-13,
    -2.0583260535665067832e-14, -5.3481225394230179824e-15, 1.2267786282382607902e-15,
    -1.1812593016974587695e-16, 1.1866922547516003326e-18, 1.4123806553180317816e-18};

// Temme's auxiliary functions of mu: 1/Gamma(1 + mu), 1/Gamma(1 - mu),
// gam1 = (1/Gamma(1 - mu) - 1/Gamma(1 + mu)) / (2 mu), gam2 = (1/Gamma(1 - mu) + 1/Gamma(1 + mu)) / 2,
// from the even and odd parts of the Taylor series, so that gam1 has no cancellation at mu = 0.
void temme_gammas(double mu, double& gplus, double& gminus, double& gam1, double& gam2) {
  const int n = sizeof(kRecipGamma) / sizeof(kRecipGamma[0]);
  double even = 0.0, odd = 0.0;
  const double mu2 = mu * mu;
  for (int k = (n - 1) & ~1; k >= 0; k -= 2) even = even * mu2 + kRecipGamma[k];
  for (int k = ((n - 1) & 1) ? n - 1 : n - 2; k >= 1; k -= 2) odd = odd * mu2 + kRecipGamma[k];
  // 1/Gamma(1 + mu) = even + mu * odd, 1/Gamma(1 - mu) = even - mu * odd.
  gplus = even + mu * odd;
  gminus = even - mu * odd;
  gam1 = -odd;
  gam2 = even;
}

// K_mu and x K_{mu+1} for 0 < x <= 2 by Temme's series (unscaled; x K_{mu+1} stays finite
// where K_{mu+1} alone overflows).
void temme_k(double mu, double x, double& kmu, double& xkmu1) {
  double gplus, gminus, gam1, gam2;
  temme_gammas(mu, gplus, gminus, gam1, gam2);
  const double x2 = 0.5 * x;
  const double pimu = kPi * mu;
  const double fact = std::fabs(pimu) < 1e-300 ? 1.0 : pimu / std::sin(pimu);
  const double d = kLn2 - std::log(x);  // -ln(x/2), with x/2 possibly below the smallest double
  const double e = mu * d;
  // (x/2)^-mu = exp(e). Where |e| is large the rounding of d would be magnified, so the power
  // is formed by pow, and cosh, sinh from it.
  double ee, cosh_e, sinh_e_over_e;
  if (std::fabs(e) > 1.0) {
    ee = std::pow(x, -mu) * std::pow(2.0, mu);
    cosh_e = 0.5 * (ee + 1.0 / ee);
    sinh_e_over_e = 0.5 * (ee - 1.0 / ee) / e;
  } else {
    ee = std::exp(e);
    cosh_e = std::cosh(e);
    sinh_e_over_e = e == 0.0 ? 1.0 : std::sinh(e) / e;
  }
  // gam2 sinh(e)/e d = gam2 sinh(e) / mu: written with d only where e is small.
  const double sinh_term = std::fabs(e) > 1.0 ? sinh_e_over_e * e / mu : sinh_e_over_e * d;
  double ff = fact * (gam1 * cosh_e + gam2 * sinh_term);
  double sum = ff;
  double p = 0.5 * ee / gplus;    // (x/2)^-mu Gamma(1 + mu) / 2
  double q = 0.5 / (ee * gminus);  // (x/2)^mu Gamma(1 - mu) / 2
  double c = 1.0;
  const double dq = x2 * x2;
  double sum1 = p;
  const double mu2 = mu * mu;
  for (int i = 1; i < kMaxIterations; ++i) {
    ff = (i * ff + p + q) / (i * static_cast<double>(i) - mu2);
    c *= dq / i;
    p /= (i - mu);
    q /= (i + mu);
    const double del = c * ff;
    sum += del;
    sum1 += c * (p - i * ff);
    if (std::fabs(del) < kEps * std::fabs(sum)) break;
  }
  kmu = sum;
  xkmu1 = sum1 * 2.0;
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
  // 9.6.11).
  const double q = 0.25 * x * x;
  const double lg = std::log(x) - kLn2;
  double t0 = 1.0, t1 = 1.0;  // q^k/(k!)^2 and q^k/(k!(k+1)!)
  double i0 = 1.0, i1 = 1.0, s0 = 0.0;
  double harmonic = 0.0;
  double s1 = -2.0 * kEulerGamma + 1.0;  // psi(1) + psi(2) at k = 0
  for (int k = 1; k < kMaxIterations; ++k) {
    t0 *= q / (static_cast<double>(k) * k);
    t1 *= q / (static_cast<double>(k) * (k + 1));
    harmonic += 1.0 / k;
    i0 += t0;
    i1 += t1;
    s0 += harmonic * t0;
    const double psi_sum = 2.0 * harmonic + 1.0 / (k + 1) - 2.0 * kEulerGamma;
    s1 += psi_sum * t1;
    if (t0 < kEps * i0 && t1 * std::fabs(psi_sum) < kEps * std::fabs(s1)) break;
  }
  i1 *= 0.5 * x;
  const double ex = std::exp(x);
  k0 = (-(lg + kEulerGamma) * i0 + s0) * ex;
  k1 = (1.0 / x + lg * i1 - 0.25 * x * s1) * ex;
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
