// Special functions in their two forms. The short form is a thin guard around a platform
// routine: NANUM in gives NANUM, and a failure of the routine (a pole, an overflow, an argument
// where the function has no value) gives NANUM. The prefixed form calls the library's own
// kernel, with the guards of its own.
#include <cmath>
#include <initializer_list>

#include "core/symbol_version.h"
#include "platform/error_record.h"
#include "platform/special/carlson.h"
#include "platform/special/complex_log_gamma.h"
#include "platform/special/error_function.h"
#include "platform/special/exp_integral.h"
#include "platform/special/fresnel.h"
#include "platform/special/gamma_function.h"
#include "platform/special/incomplete_gamma.h"
#include "platform/special/jacobi_theta.h"
#include "platform/special/lambert_w.h"
#include "platform/special/normal_quantile.h"
#include "platform/special/polygamma.h"
#include "platform/special/sine_cosine_integral.h"
#include "scalar/special_kernels.h"
#include "scalar/short_form.h"
#include "zomath/scalar.h"

namespace {

using zomath::platform::NagError;
namespace platform = zomath::platform;
namespace special = zomath::special;

constexpr double kRootHalf = 0.7071067811865476;  // 1/sqrt 2

}  // namespace

extern "C" {

// ---- Short forms -------------------------------------------------------------------------

double exp_integral(double x) {
  if (x == NANUM) return NANUM;
  return zomath::scalar::run_routine([&](NagError& e) { return platform::exp_integral_e1(x, e); });
}

double cos_integral(double x) {
  if (x == NANUM) return NANUM;
  return zomath::scalar::run_routine([&](NagError& e) { return platform::cosine_integral(x, e); });
}

double sin_integral(double x) { return x == NANUM ? NANUM : platform::sine_integral(x); }

double gamma_fn(double x) {
  if (x == NANUM) return NANUM;
  return zomath::scalar::run_routine([&](NagError& e) { return platform::gamma_function(x, e); });
}

double log_gamma(double x) {
  if (x == NANUM) return NANUM;
  return zomath::scalar::run_routine([&](NagError& e) { return platform::log_gamma_function(x, e); });
}

double incomplete_gamma(double a, double x) {
  if (zomath::scalar::any_nanum({a, x})) return NANUM;
  return zomath::scalar::run_routine([&](NagError& e) { return platform::incomplete_gamma_p(a, x, e); });
}

double real_polygamma(double x, int k) {
  if (x == NANUM) return NANUM;
  return zomath::scalar::run_routine([&](NagError& e) { return platform::polygamma(x, k, e); });
}

double cumul_normal(double x) { return x == NANUM ? NANUM : platform::normal_lower_tail(x); }

double cumul_normal_complem(double x) {
  return x == NANUM ? NANUM : platform::normal_upper_tail(x);
}

double erfc_fn(double x) {
  return x == NANUM ? NANUM : platform::complementary_error_function(x);
}

double ADummyFunction(double x) { return x == NANUM ? NANUM : platform::error_function(x); }

double fresnel_s(double x) { return x == NANUM ? NANUM : platform::fresnel_sine(x); }

double fresnel_c(double x) { return x == NANUM ? NANUM : platform::fresnel_cosine(x); }

double elliptic_integral_rc(double x, double y) {
  if (zomath::scalar::any_nanum({x, y})) return NANUM;
  return zomath::scalar::run_routine([&](NagError& e) { return platform::carlson_rc(x, y, e); });
}

double elliptic_integral_rf(double x, double y, double z) {
  if (zomath::scalar::any_nanum({x, y, z})) return NANUM;
  return zomath::scalar::run_routine([&](NagError& e) { return platform::carlson_rf(x, y, z, e); });
}

double elliptic_integral_rd(double x, double y, double z) {
  if (zomath::scalar::any_nanum({x, y, z})) return NANUM;
  return zomath::scalar::run_routine([&](NagError& e) { return platform::carlson_rd(x, y, z, e); });
}

double elliptic_integral_rj(double x, double y, double z, double r) {
  if (zomath::scalar::any_nanum({x, y, z, r})) return NANUM;
  return zomath::scalar::run_routine([&](NagError& e) { return platform::carlson_rj(x, y, z, r, e); });
}

double jacobian_theta(int k, double x, double q) {
  if (zomath::scalar::any_nanum({x, q})) return NANUM;
  return zomath::scalar::run_routine([&](NagError& e) { return platform::jacobi_theta(k, x, q, e); });
}

// ---- Prefixed forms ----------------------------------------------------------------------

double zomath_exp_integral(double x) {
  return x == NANUM ? NANUM : special::exp_integral_kernel(x);
}

double zomath_cos_integral(double x) {
  if (x == NANUM || x <= 0.0) return NANUM;
  return special::cosine_integral_kernel(x);
}

double zomath_sin_integral(double x) {
  return x == NANUM ? NANUM : special::sine_integral_kernel(x);
}

double zomath_gamma(double x) { return x == NANUM ? NANUM : special::gamma_kernel(x); }

double zomath_log_gamma(double x) { return x == NANUM ? NANUM : special::log_gamma_kernel(x); }

double zomath_incomplete_gamma(double a, double x) {
  return zomath::scalar::any_nanum({a, x}) ? NANUM : special::incomplete_gamma_kernel(a, x);
}

double zomath_real_polygamma(double x, int k) {
  return x == NANUM ? NANUM : special::polygamma_kernel(x, k);
}

double zomath_erf(double x) {
  return x == NANUM ? NANUM : special::error_kernel(x, special::ErrorKind::Erf);
}

double zomath_erfc(double x) {
  return x == NANUM ? NANUM : special::error_kernel(x, special::ErrorKind::Erfc);
}

double zomath_cumul_normal(double x) {
  return x == NANUM ? NANUM : special::normal_upper_kernel(-x);
}

double zomath_cumul_normal_complem(double x) {
  return x == NANUM ? NANUM : special::normal_upper_kernel(x);
}

double zomath_fresnel_s(double x) { return x == NANUM ? NANUM : special::fresnel_s_kernel(x); }

double zomath_fresnel_c(double x) { return x == NANUM ? NANUM : special::fresnel_c_kernel(x); }

double zomath_elliptic_integral_rc(double x, double y) {
  return zomath::scalar::any_nanum({x, y}) ? NANUM : special::carlson_rc_kernel(x, y);
}

double zomath_elliptic_integral_rf(double x, double y, double z) {
  return zomath::scalar::any_nanum({x, y, z}) ? NANUM : special::carlson_rf_kernel(x, y, z);
}

double zomath_elliptic_integral_rd(double x, double y, double z) {
  return zomath::scalar::any_nanum({x, y, z}) ? NANUM : special::carlson_rd_kernel(x, y, z);
}

double zomath_elliptic_integral_rj(double x, double y, double z, double r) {
  return zomath::scalar::any_nanum({x, y, z, r}) ? NANUM : special::carlson_rj_kernel(x, y, z, r);
}

double zomath_jacobian_theta(int k, double x, double q) {
  return zomath::scalar::any_nanum({x, q}) ? NANUM : special::theta_kernel(k, x, q);
}

// ---- Functions with one form -------------------------------------------------------------

double erfcx(double x) {
  return x == NANUM ? NANUM : special::error_kernel(x, special::ErrorKind::Erfcx);
}

double erfcinv(double y) {
  if (y == NANUM) return NANUM;
  if (std::isnan(y)) return y;
  if (!(y >= 0.0 && y <= 2.0)) return NANUM;
  const double x = zomath::scalar::run_routine([&](NagError& e) { return platform::normal_quantile(0.5 * y, e); });
  return x == NANUM ? NANUM : -x * kRootHalf;
}

double erfinv(double y) {
  if (y == NANUM) return NANUM;
  if (std::isnan(y)) return y;
  return zomath::scalar::run_routine([&](NagError& e) { return platform::inverse_error_function(y, e); });
}

double lambertW(double x, int nBranch, int nOffset, int* pnError) {
  if (pnError) *pnError = 0;
  if (x == NANUM) return NANUM;
  if (nBranch != 0 && nBranch != -1) {
    if (pnError) *pnError = platform::kLambertBadBranch;
    return NANUM;
  }
  bool admitted;
  if (nOffset != 0) {
    admitted = nBranch == 0 ? x >= 0.0 : x < 0.0;
  } else {
    const double branchPoint = -std::exp(-1.0);
    admitted = nBranch == 0 ? x >= branchPoint : (x >= branchPoint && x < 0.0);
  }
  if (!admitted) {
    if (pnError) *pnError = platform::kLambertOutOfDomain;
    return NANUM;
  }
  NagError err;
  err.reset();
  const double w = platform::lambert_w(x, nBranch, nOffset != 0, err);
  if (pnError) *pnError = err.code;
  return err.code != 0 ? NANUM : w;
}

double zomath_PearsonIV(double x, double y0, double A, double xc, double a, double m, double nu) {
  if (zomath::scalar::any_nanum({x, y0, A, xc, a, m, nu})) return NANUM;
  if (!(a > 0.0) || !(m > 0.5) || !std::isfinite(x + y0 + A + xc + a + m + nu)) return NANUM;
  // k = |Gamma(m + i nu/2) / Gamma(m)|^2 / (a B(m - 1/2, 1/2)), B(m - 1/2, 1/2) =
  // Gamma(m - 1/2) sqrt(pi) / Gamma(m).
  NagError err;
  err.reset();
  const d_complex lg = platform::complex_log_gamma({m, 0.5 * nu}, err);
  if (err.code != 0) return NANUM;
  const double logRatio =
      lg.re - special::log_gamma_kernel(m);  // ln |Gamma(m + i nu/2) / Gamma(m)|
  constexpr double kRootPi = 1.7724538509055160;
  double gammaQuotient;  // Gamma(m) / Gamma(m - 1/2)
  if (m < 171.0) {
    gammaQuotient = special::gamma_kernel(m) / special::gamma_kernel(m - 0.5);
  } else {
    gammaQuotient = std::exp(special::log_gamma_kernel(m) - special::log_gamma_kernel(m - 0.5));
  }
  const double k = std::exp(2.0 * logRatio) * gammaQuotient / (a * kRootPi);
  const double u = (x - xc) / a;
  return y0 + A * k * std::exp(-m * std::log1p(u * u) - nu * std::atan(u));
}

}  // extern "C"

// The C library's names, as non-default versions only (see core/symbol_version.h).
ZOMATH_EXPORT_SHADOWED(gamma_fn, gamma);
ZOMATH_EXPORT_SHADOWED(erfc_fn, erfc);
ZOMATH_EXPORT_SHADOWED(ADummyFunction, erf);
