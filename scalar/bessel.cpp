// Bessel, Airy and Kelvin functions in their two forms. The short forms guard the platform
// routines: NANUM in gives NANUM, a routine's failure gives NANUM. The prefixed forms run the
// library's own kernels behind their domain guards and give NANUM outside them.
#include <cmath>

#include "platform/error_record.h"
#include "platform/special/airy.h"
#include "platform/special/bessel.h"
#include "platform/special/kelvin.h"
#include "scalar/bessel_kernels.h"
#include "scalar/short_form.h"
#include "zomath/scalar.h"

namespace {

namespace pf = zomath::platform;
namespace sp = zomath::special;
using pf::NagError;

template <class Routine>
double guarded(double x, Routine routine) {
  if (x == NANUM) return NANUM;
  return zomath::scalar::run_routine([&](NagError& err) { return routine(x, err); });
}

template <class Routine>
double guarded(double x, int nu, Routine routine) {
  if (x == NANUM) return NANUM;
  return zomath::scalar::run_routine([&](NagError& err) { return routine(x, nu, err); });
}

// A finite result, or NANUM.
double finite_or_nanum(double v) { return std::isfinite(v) ? v : NANUM; }

// A finite argument that isn't NANUM. A NaN argument is answered with NaN before this test.
bool usable(double x) { return std::isfinite(x) && x != NANUM; }

// ---- Prefixed forms ----

constexpr double kLargestJY = 1e16;         // the C library's j0..y1 are used up to here
constexpr double kLargestINu = 700.9217937;  // exp(x) stays far from overflow
constexpr double kLargestINuScaled = 32768.0;

double own_i0(double x, bool scaled) {
  if (std::isnan(x)) return x;
  if (!usable(x)) return NANUM;
  const double ax = std::fabs(x);
  const double s = sp::i0_scaled(ax);
  return scaled ? s : finite_or_nanum(sp::scale_by_exp(s, ax));
}

double own_i1(double x, bool scaled) {
  if (std::isnan(x)) return x;
  if (!usable(x)) return NANUM;
  const double ax = std::fabs(x);
  double s = sp::i1_scaled(ax);
  if (x < 0) s = -s;
  return scaled ? s : finite_or_nanum(sp::scale_by_exp(s, ax));
}

double own_k(double x, int order, bool scaled) {
  if (std::isnan(x)) return x;
  if (!usable(x) || !(x > 0)) return NANUM;
  double k0, k1;
  sp::k01_scaled(x, k0, k1);
  const double s = order == 0 ? k0 : k1;
  return finite_or_nanum(scaled ? s : sp::scale_by_exp(s, -x));
}

// I and K of order v = |n|/4 (scaled) from the kernel at mu = v, or mu = v - 1 for v = 3/4.
void own_fractional(int n, double x, double& i_v, double& k_v) {
  const int m = n < 0 ? -n : n;
  const sp::BesselIK b = sp::bessel_ik_scaled(m == 3 ? -0.25 : m / 4.0, x);
  i_v = m == 3 ? b.i_mu1 : b.i_mu;
  k_v = m == 3 ? b.k_mu1 : b.k_mu;
}

bool order_ok(int n) { return n != 0 && n > -4 && n < 4; }

double own_i_nu(double x, int n, bool scaled) {
  if (std::isnan(x)) return x;
  const double bound = scaled ? kLargestINuScaled : kLargestINu;
  if (x == NANUM || !order_ok(n) || !(x >= 0 && x <= bound)) return NANUM;
  if (x == 0) return n > 0 ? 0.0 : NANUM;
  double i_v, k_v;
  own_fractional(n, x, i_v, k_v);
  double s = i_v;
  if (n < 0) {
    // I_-v = I_v + (2/pi) sin(pi v) K_v; scaled, the K term carries exp(-2x).
    const double v = -n / 4.0;
    s += 2.0 / 3.141592653589793 * std::sin(3.141592653589793 * v) * k_v * std::exp(-2.0 * x);
  }
  return scaled ? s : finite_or_nanum(sp::scale_by_exp(s, x));
}

double own_k_nu(double x, int n, bool scaled) {
  if (std::isnan(x)) return x;
  if (!usable(x) || !order_ok(n) || !(x > 0)) return NANUM;
  double i_v, k_v;
  own_fractional(n, x, i_v, k_v);
  return finite_or_nanum(scaled ? k_v : sp::scale_by_exp(k_v, -x));
}

// One of the four Airy values at x.
double own_airy(double x, double sp::AiryValues::*which) {
  if (std::isnan(x)) return x;
  if (!usable(x)) return NANUM;
  return finite_or_nanum(sp::airy_all(x).*which);
}

// Past |x| = 1100 ber and bei have overflowed and ker, kei underflowed to 0.
constexpr double kKelvinBeyond = 1100.0;

// ber, bei (first kind, at |x|) or ker, kei (x > 0); `real` picks ber or ker.
double own_kelvin(double x, bool first_kind, bool real) {
  if (std::isnan(x)) return x;
  if (!usable(x)) return NANUM;
  double re, im;
  if (first_kind) {
    if (!(std::fabs(x) < kKelvinBeyond)) return NANUM;
    sp::kelvin_ber_bei(std::fabs(x), re, im);
  } else {
    if (!(x > 0)) return NANUM;
    if (x >= kKelvinBeyond) return 0.0;
    sp::kelvin_ker_kei(x, re, im);
  }
  return finite_or_nanum(real ? re : im);
}

}  // namespace

extern "C" {

// ---- Short forms ----

double bessel_j0(double x) { return x == NANUM ? NANUM : pf::bessel_j0(x); }
double bessel_j1(double x) { return x == NANUM ? NANUM : pf::bessel_j1(x); }
double bessel_y0(double x) { return guarded(x, pf::bessel_y0); }
double bessel_y1(double x) { return guarded(x, pf::bessel_y1); }
double bessel_i0(double x) { return guarded(x, pf::bessel_i0); }
double bessel_i1(double x) { return guarded(x, pf::bessel_i1); }
double bessel_k0(double x) { return guarded(x, pf::bessel_k0); }
double bessel_k1(double x) { return guarded(x, pf::bessel_k1); }
double bessel_i0_scaled(double x) { return x == NANUM ? NANUM : pf::bessel_i0_scaled(x); }
double bessel_i1_scaled(double x) { return x == NANUM ? NANUM : pf::bessel_i1_scaled(x); }
double bessel_k0_scaled(double x) { return guarded(x, pf::bessel_k0_scaled); }
double bessel_k1_scaled(double x) { return guarded(x, pf::bessel_k1_scaled); }
double bessel_i_nu(double x, int nu) { return guarded(x, nu, pf::bessel_i_nu); }
double bessel_i_nu_scaled(double x, int nu) { return guarded(x, nu, pf::bessel_i_nu_scaled); }
double bessel_k_nu(double x, int nu) { return guarded(x, nu, pf::bessel_k_nu); }
double bessel_k_nu_scaled(double x, int nu) { return guarded(x, nu, pf::bessel_k_nu_scaled); }
double airy_ai(double x) { return x == NANUM ? NANUM : pf::airy_ai(x); }
double airy_bi(double x) { return guarded(x, pf::airy_bi); }
double airy_ai_deriv(double x) { return guarded(x, pf::airy_ai_deriv); }
double airy_bi_deriv(double x) { return guarded(x, pf::airy_bi_deriv); }
double kelvin_ber(double x) { return guarded(x, pf::kelvin_ber); }
double kelvin_bei(double x) { return guarded(x, pf::kelvin_bei); }
double kelvin_ker(double x) { return guarded(x, pf::kelvin_ker); }
double kelvin_kei(double x) { return guarded(x, pf::kelvin_kei); }

// ---- Prefixed forms ----

double zomath_bessel_j0(double x) {
  if (std::isnan(x)) return x;
  return x == NANUM || !(std::fabs(x) <= kLargestJY) ? NANUM : ::j0(x);
}
double zomath_bessel_j1(double x) {
  if (std::isnan(x)) return x;
  return x == NANUM || !(std::fabs(x) <= kLargestJY) ? NANUM : ::j1(x);
}
double zomath_bessel_y0(double x) {
  if (std::isnan(x)) return x;
  return x == NANUM || !(x > 0 && x <= kLargestJY) ? NANUM : finite_or_nanum(::y0(x));
}
double zomath_bessel_y1(double x) {
  if (std::isnan(x)) return x;
  return x == NANUM || !(x > 0 && x <= kLargestJY) ? NANUM : finite_or_nanum(::y1(x));
}
double zomath_bessel_i0(double x) { return own_i0(x, false); }
double zomath_bessel_i1(double x) { return own_i1(x, false); }
double zomath_bessel_k0(double x) { return own_k(x, 0, false); }
double zomath_bessel_k1(double x) { return own_k(x, 1, false); }
double zomath_bessel_i0_scaled(double x) { return own_i0(x, true); }
double zomath_bessel_i1_scaled(double x) { return own_i1(x, true); }
double zomath_bessel_k0_scaled(double x) { return own_k(x, 0, true); }
double zomath_bessel_k1_scaled(double x) { return own_k(x, 1, true); }
double zomath_bessel_i_nu(double x, int n) { return own_i_nu(x, n, false); }
double zomath_bessel_i_nu_scaled(double x, int n) { return own_i_nu(x, n, true); }
double zomath_bessel_k_nu(double x, int n) { return own_k_nu(x, n, false); }
double zomath_bessel_k_nu_scaled(double x, int n) { return own_k_nu(x, n, true); }

double zomath_airy_ai(double x) { return own_airy(x, &sp::AiryValues::ai); }
double zomath_airy_bi(double x) { return own_airy(x, &sp::AiryValues::bi); }
double zomath_airy_ai_deriv(double x) { return own_airy(x, &sp::AiryValues::ai_deriv); }
double zomath_airy_bi_deriv(double x) { return own_airy(x, &sp::AiryValues::bi_deriv); }
double zomath_kelvin_ber(double x) { return own_kelvin(x, true, true); }
double zomath_kelvin_bei(double x) { return own_kelvin(x, true, false); }
double zomath_kelvin_ker(double x) { return own_kelvin(x, false, true); }
double zomath_kelvin_kei(double x) { return own_kelvin(x, false, false); }

}  // extern "C"
