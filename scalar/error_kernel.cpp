// erf, erfc and erfcx by the rational Chebyshev approximations of W. J. Cody, "Rational
// Chebyshev approximations for the error function", Math. Comp. 23 (1969), on |x| <= 0.46875,
// 0.46875 < |x| <= 4 and |x| > 4, with reflection for negative x.
#include <cmath>

#include "scalar/special_kernels.h"
#include "zomath/core.h"

namespace zomath::special {

namespace {

constexpr double kOneOverRootPi = 5.6418958354775628695e-1;

// erf(x) / x on |x| <= 0.46875, as a rational function of x^2.
double small_ratio(double x) {
  static const double a[] = {3.16112374387056560e00, 1.13864154151050156e02,
                             3.77485237685302021e02, 3.20937758913846947e03,
                             1.85777706184603153e-1};
  static const double b[] = {2.36012909523441209e01, 2.44024637934444173e02,
                             1.28261652607737228e03, 2.84423683343917062e03};
  const double z = x * x;
  double num = a[4] * z, den = z;
  for (int i = 0; i < 3; ++i) {
    num = (num + a[i]) * z;
    den = (den + b[i]) * z;
  }
  return (num + a[3]) / (den + b[3]);
}

// erfcx(y) for y > 0.46875.
double scaled_tail(double y) {
  if (y <= 4.0) {
    static const double c[] = {5.64188496988670089e-1, 8.88314979438837594e00,
                               6.61191906371416295e01, 2.98635138197400131e02,
                               8.81952221241769090e02, 1.71204761263407058e03,
                               2.05107837782607147e03, 1.23033935479799725e03,
                               2.15311535474403846e-8};
    static const double d[] = {1.57449261107098347e01, 1.17693950891312499e02,
                               5.37181101862009858e02, 1.62138957456669019e03,
                               3.29079923573345963e03, 4.36261909014324716e03,
                               3.43936767414372164e03, 1.23033935480374942e03};
    double num = c[8] * y, den = y;
    for (int i = 0; i < 7; ++i) {
      num = (num + c[i]) * y;
      den = (den + d[i]) * y;
    }
    return (num + c[7]) / (den + d[7]);
  }
  static const double p[] = {3.05326634961232344e-1, 3.60344899949804439e-1,
                             1.25781726111229246e-1, 1.60837851487422766e-2,
                             6.58749161529837803e-4, 1.63153871373020978e-2};
  static const double q[] = {2.56852019228982242e00, 1.87295284992346047e00,
                             5.27905102951428412e-1, 6.05183413124413191e-2,
                             2.33520497626869185e-3};
  const double z = 1.0 / (y * y);
  double num = p[5] * z, den = z;
  for (int i = 0; i < 4; ++i) {
    num = (num + p[i]) * z;
    den = (den + q[i]) * z;
  }
  const double r = z * (num + p[4]) / (den + q[4]);
  return (kOneOverRootPi - r) / y;
}

// exp(-y^2) and exp(y^2) without the rounding of y^2: y = ysq + (y - ysq) with ysq a multiple
// of 1/16, so that ysq^2 is exact and the rest is small.
double exp_minus_square(double y) {
  const double ysq = std::trunc(y * 16.0) / 16.0;
  const double del = (y - ysq) * (y + ysq);
  return std::exp(-ysq * ysq) * std::exp(-del);
}
double exp_square(double y) {
  const double ysq = std::trunc(y * 16.0) / 16.0;
  const double del = (y - ysq) * (y + ysq);
  return std::exp(ysq * ysq) * std::exp(del);
}

}  // namespace

double error_kernel(double x, ErrorKind kind) {
  if (std::isnan(x)) return x;
  const double y = std::fabs(x);
  if (y <= 0.46875) {
    const double e = x * small_ratio(x);
    switch (kind) {
      case ErrorKind::Erf: return e;
      case ErrorKind::Erfc: return 1.0 - e;
      default: return exp_square(x) * (1.0 - e);
    }
  }
  // erfc(|x|) = exp(-x^2) erfcx(|x|); beyond 27.3 it underflows to 0.
  const double tailScaled = std::isinf(y) ? 0.0 : scaled_tail(y);
  if (kind == ErrorKind::Erfcx) {
    if (x > 0.0) return tailScaled;
    const double v = 2.0 * exp_square(y) - tailScaled;
    return std::isinf(v) ? NANUM : v;  // 2 exp(x^2) overflows below x = -26.63
  }
  const double tail = y > 27.3 ? 0.0 : exp_minus_square(y) * tailScaled;
  if (kind == ErrorKind::Erf) return x > 0.0 ? 1.0 - tail : tail - 1.0;
  return x > 0.0 ? tail : 2.0 - tail;
}

double normal_upper_kernel(double x) {
  if (std::isnan(x)) return x;
  // x / sqrt 2 = hi + lo; the rounding lo enters through the derivative of erfc, which keeps the
  // far tails accurate (the plain quotient costs x^2 eps of relative error).
  constexpr double kRootHalfHi = 0.7071067811865476, kRootHalfLo = -4.833646656726457e-17;
  const double hi = x * kRootHalfHi;
  const double lo = std::fma(x, kRootHalfHi, -hi) + x * kRootHalfLo;
  const double value = error_kernel(hi, ErrorKind::Erfc);
  const double slope = std::fabs(hi) > 27.3 ? 0.0 : 2.0 * kOneOverRootPi * exp_minus_square(hi);
  return 0.5 * (value - lo * slope);
}

}  // namespace zomath::special
