// Densities by their formulas, and the Weibull distribution function and quantile. Each density
// sets *pnError to 0, then to ZOMATH_ERR_DENSITY_PARAM with NANUM for a bad parameter, a NaN
// argument or a value that does not exist (an infinite x at an infinite location); a NANUM
// argument passes through as NANUM with code 0. The exponent of each exponential is carried in
// double-double where rounding it would cost digits: exp(-z) with z rounded moves the result by
// z ulps.
#include <cfloat>
#include <cmath>
#include <initializer_list>

#include "core/double_double.h"
#include "platform/distributions/beta.h"
#include "platform/distributions/gamma_distribution.h"
#include "platform/error_record.h"
#include "platform/special/gamma_function.h"
#include "scalar/short_form.h"
#include "zomath/scalar.h"
#include "zomath/vector.h"

namespace {

namespace dd = zomath::dd;
namespace platform = zomath::platform;

constexpr double kInvSqrt2Pi = 0.39894228040143267794;
constexpr double kPi = 3.14159265358979323846;
// Values above this are normal doubles with every bit: the direct products are used only there.
constexpr double kSafeMinimum = DBL_MIN / DBL_EPSILON;

bool any_nan(std::initializer_list<double> args) {
  for (double a : args)
    if (std::isnan(a)) return true;
  return false;
}

double bad_parameter(int* pnError) {
  if (pnError) *pnError = ZOMATH_ERR_DENSITY_PARAM;
  return NANUM;
}

// exp(-z) for z = hi + lo: the low part enters by the first-order term.
double exp_minus(dd::Double2 z) { return std::exp(-z.hi) * (1 - z.lo); }

// exp(-d^2 / (2 s^2)) for d = hi + lo, s > 0.
double gaussian_factor(dd::Double2 d, double s) {
  const dd::Double2 z = d / s;
  return exp_minus(z * z * 0.5);
}

}  // namespace

extern "C" {

double normpdf(double x, double mu, double sigma, int* pnError) {
  if (pnError) *pnError = 0;
  if (zomath::scalar::any_nanum({x, mu, sigma})) return NANUM;
  if (any_nan({x, mu, sigma}) || !(sigma > 0)) return bad_parameter(pnError);
  const dd::Double2 d = dd::two_sum(x, -mu);
  if (std::isnan(d.hi)) return bad_parameter(pnError);  // x and mu the same infinity
  if (std::isinf(d.hi) || std::isinf(sigma)) return 0;
  return gaussian_factor(d, sigma) * kInvSqrt2Pi / sigma;
}

double lognpdf(double x, double mu, double sigma, int* pnError) {
  if (pnError) *pnError = 0;
  if (zomath::scalar::any_nanum({x, mu, sigma})) return NANUM;
  if (any_nan({x, mu, sigma}) || !(x > 0 && sigma > 0)) return bad_parameter(pnError);
  if (std::isinf(mu)) return bad_parameter(pnError);
  if (std::isinf(x) || std::isinf(sigma)) return 0;
  return gaussian_factor(dd::add(dd::log_dd(x), -mu), sigma) * kInvSqrt2Pi / sigma / x;
}

double exppdf(double x, double mu, int* pnError) {
  if (pnError) *pnError = 0;
  if (zomath::scalar::any_nanum({x, mu})) return NANUM;
  if (any_nan({x, mu}) || !(x >= 0 && mu > 0) || std::isinf(mu)) return bad_parameter(pnError);
  if (std::isinf(x)) return 0;
  return mu * exp_minus(dd::two_prod(mu, x));
}

double cauchypdf(double x, double a, double b, int* pnError) {
  if (pnError) *pnError = 0;
  if (zomath::scalar::any_nanum({x, a, b})) return NANUM;
  if (any_nan({x, a, b}) || !(b > 0)) return bad_parameter(pnError);
  // (b / pi) / ((x - a)^2 + b^2) as 1 / (pi b (1 + u^2)), u = (x - a) / b, which cannot overflow
  // before the value underflows.
  const double u = (x - a) / b;
  if (std::isnan(u)) return bad_parameter(pnError);  // x and a the same infinity, or b infinite
  return 1 / (kPi * b * (1 + u * u));
}

double lappdf(double x, double mu, double b, int* pnError) {
  if (pnError) *pnError = 0;
  if (zomath::scalar::any_nanum({x, mu, b})) return NANUM;
  if (any_nan({x, mu, b}) || !(b > 0)) return bad_parameter(pnError);
  dd::Double2 d = dd::two_sum(x, -mu);
  if (std::isnan(d.hi)) return bad_parameter(pnError);
  if (std::isinf(d.hi) || std::isinf(b)) return 0;
  if (d.hi < 0) d = dd::neg(d);
  return exp_minus(d / b) / (2 * b);
}

double gampdf(double x, double a, double b, int* pnError) {
  if (pnError) *pnError = 0;
  if (zomath::scalar::any_nanum({x, a, b})) return NANUM;
  if (any_nan({x, a, b}) || !(x >= 0 && a > 0 && b > 0) || std::isinf(a) || std::isinf(b))
    return bad_parameter(pnError);
  if (std::isinf(x)) return 0;
  if (x == 0) return a < 1 ? INFINITY : a == 1 ? 1 / b : 0;
  // x^(a-1) e^(-x/b) / (b^a Gamma(a)) where each factor is a normal double and Gamma(a) finite;
  // beyond that (large shapes, far tails) the platform's form of the same density, which never
  // forms the factors apart.
  platform::NagError err;
  const double g = a <= 170 ? platform::gamma_function(a, err) : 0;
  if (err.code == 0 && g > 0) {
    const double power = std::pow(x, a - 1), scale = std::pow(b, a);
    const double e = exp_minus(dd::div(dd::Double2{x, 0}, b));
    const double v = power * e / (scale * g);
    if (std::isnormal(power) && std::isnormal(scale) && std::isnormal(e) && v > kSafeMinimum)
      return v;
  }
  platform::NagError unused;
  return platform::gamma_density(x, a, b, unused);
}

double poisspdf(int k, double lambda, int* pnError) {
  if (pnError) *pnError = 0;
  if (zomath::scalar::any_nanum({lambda})) return NANUM;
  if (std::isnan(lambda) || !(k >= 0 && lambda > 0) || std::isinf(lambda))
    return bad_parameter(pnError);
  // Below k = 100 the product lambda^k e^-lambda / k! wherever its factors stay normal doubles;
  // from k = 100 (and where they would not) the same value as the density of Gamma(k + 1) at
  // lambda, which keeps every digit where the logarithmic form exp(k ln lambda - lambda - ln k!)
  // would lose k ln lambda units of rounding to cancellation.
  if (k < 100) {
    const double power = std::pow(lambda, k), e = std::exp(-lambda);
    const double v = power * e / zomath_fac(k);
    if (std::isnormal(e) && std::isfinite(power) && v > kSafeMinimum) return v;
  }
  platform::NagError unused;
  return platform::gamma_density(lambda, k + 1.0, 1.0, unused);
}

double betapdf(double x, double a, double b, int* pnError) {
  if (pnError) *pnError = 0;
  if (zomath::scalar::any_nanum({x, a, b})) return NANUM;
  platform::NagError err;
  const double v = platform::beta_density(x, a, b, err);
  if (pnError) *pnError = err.code;
  return err.code != 0 ? NANUM : v;
}

double wblpdf(double x, double a, double b, int* pnError) {
  if (pnError) *pnError = 0;
  if (zomath::scalar::any_nanum({x, a, b})) return NANUM;
  if (any_nan({x, a, b}) || !(a > 0 && b > 0) || std::isinf(a) || std::isinf(b))
    return bad_parameter(pnError);
  if (x < 0 || std::isinf(x)) return 0;
  if (x == 0) return b < 1 ? INFINITY : b == 1 ? 1 / a : 0;
  const double u = x / a, power = std::pow(u, b - 1);
  return (b / a) * power * std::exp(-power * u);
}

double wblcdf(double x, double a, double b, int* pnError) {
  if (pnError) *pnError = 0;
  if (zomath::scalar::any_nanum({x, a, b}) || any_nan({x, a, b}) || !(a > 0 && b > 0)) return NANUM;
  if (x < 0) return 0;
  return -std::expm1(-std::pow(x / a, b));
}

double wblinv(double p, double a, double b, int* pnError) {
  if (pnError) *pnError = 0;
  if (zomath::scalar::any_nanum({p, a, b}) || any_nan({p, a, b}) || !(a > 0 && b > 0 && p >= 0 && p <= 1))
    return NANUM;
  return a * std::pow(-std::log1p(-p), 1 / b);
}

}  // extern "C"
