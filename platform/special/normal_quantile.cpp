// Wichura, "The percentage points of the normal distribution", Applied Statistics 37 (1988),
// algorithm AS 241 (PPND16): rational approximations accurate to about 1e-16.
#include "platform/special/normal_quantile.h"

#include <cmath>

namespace zomath::platform {

namespace {

template <int N>
double horner(const double (&c)[N], double x) {
  double s = c[N - 1];
  for (int i = N - 2; i >= 0; --i) s = s * x + c[i];
  return s;
}

// Central region |d| <= 0.425, d = p - 0.5.
double central(double d) {
  static const double a[] = {3.3871328727963666080e0, 1.3314166789178437745e+2,
                             1.9715909503065514427e+3, 1.3731693765509461125e+4,
                             4.5921953931549871457e+4, 6.7265770927008700853e+4,
                             3.3430575583588128105e+4, 2.5090809287301226727e+3};
  static const double b[] = {1.0,
                             4.2313330701600911252e+1, 6.8718700749205790830e+2,
                             5.3941960214247511077e+3, 2.1213794301586595867e+4,
                             3.9307895800092710610e+4, 2.8729085735721942674e+4,
                             5.2264952788528545610e+3};
  const double r = 0.180625 - d * d;
  return d * horner(a, r) / horner(b, r);
}

// Tail region: the magnitude of the quantile for the smaller tail probability t < 0.075.
double tail(double t) {
  static const double c[] = {1.42343711074968357734e0, 4.63033784615654529590e0,
                             5.76949722146069140550e0, 3.64784832476320460504e0,
                             1.27045825245236838258e0, 2.41780725177450611770e-1,
                             2.27238449892691845833e-2, 7.74545014278341407640e-4};
  static const double d[] = {1.0,
                             2.05319162663775882187e0, 1.67638483018380384940e0,
                             6.89767334985100004550e-1, 1.48103976427480074590e-1,
                             1.51986665636164571966e-2, 5.47593808499534494600e-4,
                             1.05075007164441684324e-9};
  static const double e[] = {6.65790464350110377720e0, 5.46378491116411436990e0,
                             1.78482653991729133580e0, 2.96560571828504891230e-1,
                             2.65321895265761230930e-2, 1.24266094738807843860e-3,
                             2.71155556874348757815e-5, 2.01033439929228813265e-7};
  static const double f[] = {1.0,
                             5.99832206555887937690e-1, 1.36929880922735805310e-1,
                             1.48753612908506148525e-2, 7.86869131145613259100e-4,
                             1.84631831751005468180e-5, 1.42151175831644588870e-7,
                             2.04426310338993978564e-15};
  double r = std::sqrt(-std::log(t));
  if (r <= 5.0) {
    r -= 1.6;
    return horner(c, r) / horner(d, r);
  }
  r -= 5.0;
  return horner(e, r) / horner(f, r);
}

}  // namespace

double normal_quantile_centered(double d, NagError& err) {
  if (std::isnan(d)) return d;
  if (!(d > -0.5 && d < 0.5)) {
    err.fail(kQuantileProbabilityOutOfRange, "probability outside (0, 1)");
    return 0.0;
  }
  if (std::fabs(d) <= 0.425) return central(d);
  const double t = 0.5 - std::fabs(d);  // exact: |d| lies in (0.425, 0.5)
  return std::copysign(tail(t), d);
}

double normal_quantile(double p, NagError& err) {
  if (std::isnan(p)) return p;
  if (!(p > 0.0 && p < 1.0)) {
    err.fail(kQuantileProbabilityOutOfRange, "probability outside (0, 1)");
    return 0.0;
  }
  if (p < 0.075) return -tail(p);  // the lower tail straight from p, with no 0.5 - p
  // p - 0.5 is exact for p >= 0.25; below, its rounding moves x by under 1e-16.
  return normal_quantile_centered(p - 0.5, err);
}

double normal_quantile_upper(double q, NagError& err) {
  const double x = normal_quantile(q, err);
  return err.code != 0 ? x : -x;
}

double inverse_error_function(double y, NagError& err) {
  constexpr double kRootHalf = 0.70710678118654752440;
  if (std::isnan(y)) return y;
  if (std::fabs(y) <= 0.5) return normal_quantile_centered(0.5 * y, err) * kRootHalf;
  const double x = normal_quantile_upper(0.5 * (1.0 - std::fabs(y)), err);
  return std::copysign(x * kRootHalf, y);
}

}  // namespace zomath::platform
