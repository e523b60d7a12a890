// Guards, failures and properties of the special functions that the reference tables cannot show.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "platform/error_record.h"
#include "platform/special/normal_quantile.h"
#include "zomath/scalar.h"

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

struct Point {
  const char* what;
  std::function<double()> f;
};

// Where a function has no value, both forms say NANUM: poles, overflow, arguments outside the
// domain, and the prefixed forms' own guards.
TEST(SpecialFunctions, NanumWhereNoValueExists) {
  const std::vector<Point> points = {
      {"gamma at 0", [] { return gamma_fn(0.0); }},
      {"gamma at -3", [] { return gamma_fn(-3.0); }},
      {"gamma overflow", [] { return gamma_fn(171.7); }},
      {"own gamma at -3", [] { return zomath_gamma(-3.0); }},
      {"own gamma overflow", [] { return zomath_gamma(171.7); }},
      {"log gamma at 0", [] { return log_gamma(0.0); }},
      {"log gamma negative", [] { return log_gamma(-2.5); }},
      {"own log gamma negative", [] { return zomath_log_gamma(-2.5); }},
      {"E1 at 0", [] { return exp_integral(0.0); }},
      {"E1 overflow", [] { return exp_integral(-720.0); }},
      {"own E1 at 0", [] { return zomath_exp_integral(0.0); }},
      {"own E1 overflow", [] { return zomath_exp_integral(-720.0); }},
      {"Ci at 0", [] { return cos_integral(0.0); }},
      {"Ci negative", [] { return cos_integral(-1.0); }},
      {"own Ci at 0", [] { return zomath_cos_integral(0.0); }},
      {"P with a = 0", [] { return incomplete_gamma(0.0, 1.0); }},
      {"P with x < 0", [] { return incomplete_gamma(1.0, -1.0); }},
      {"own P with a < 0", [] { return zomath_incomplete_gamma(-1.0, 1.0); }},
      {"polygamma order 7", [] { return real_polygamma(1.5, 7); }},
      {"polygamma order -1", [] { return real_polygamma(1.5, -1); }},
      {"polygamma pole", [] { return real_polygamma(-2.0, 1); }},
      {"own polygamma order 7", [] { return zomath_real_polygamma(1.5, 7); }},
      {"own polygamma at 0", [] { return zomath_real_polygamma(0.0, 0); }},
      {"own polygamma within guard of -3", [] { return zomath_real_polygamma(-3.0 + 4e-16, 2); }},
      {"RC with y = 0", [] { return elliptic_integral_rc(1.0, 0.0); }},
      {"RC with x < 0", [] { return elliptic_integral_rc(-1.0, 1.0); }},
      {"own RC with y = 0", [] { return zomath_elliptic_integral_rc(1.0, 0.0); }},
      {"RF with two zeros", [] { return elliptic_integral_rf(0.0, 0.0, 1.0); }},
      {"own RF negative", [] { return zomath_elliptic_integral_rf(1.0, -1.0, 1.0); }},
      {"RD with z = 0", [] { return elliptic_integral_rd(1.0, 1.0, 0.0); }},
      {"own RD with x = y = 0", [] { return zomath_elliptic_integral_rd(0.0, 0.0, 1.0); }},
      {"RJ with r = 0", [] { return elliptic_integral_rj(1.0, 2.0, 3.0, 0.0); }},
      {"own RJ with two zeros", [] { return zomath_elliptic_integral_rj(0.0, 0.0, 3.0, 1.0); }},
      {"theta kind 5", [] { return jacobian_theta(5, 0.1, 0.5); }},
      {"theta with q = 1", [] { return jacobian_theta(3, 0.1, 1.0); }},
      {"theta with q < 0", [] { return jacobian_theta(3, 0.1, -0.1); }},
      {"theta at infinite x", [] { return jacobian_theta(3, kInf, 0.1); }},
      {"own theta kind -1", [] { return zomath_jacobian_theta(-1, 0.1, 0.5); }},
      {"own theta with q = 1", [] { return zomath_jacobian_theta(2, 0.1, 1.0); }},
      {"erfcx overflow", [] { return erfcx(-27.0); }},
      {"erfcinv(2.5)", [] { return erfcinv(2.5); }},
      {"erfcinv(-0.1)", [] { return erfcinv(-0.1); }},
      {"erfcinv(0), infinite", [] { return erfcinv(0.0); }},
      {"erfcinv(2), infinite", [] { return erfcinv(2.0); }},
      {"erfinv(1), infinite", [] { return erfinv(1.0); }},
      {"erfinv(-1.5)", [] { return erfinv(-1.5); }},
      {"Pearson IV with a = 0", [] { return zomath_PearsonIV(0, 0, 1, 0, 0.0, 2, 1); }},
      {"Pearson IV with m = 1/2", [] { return zomath_PearsonIV(0, 0, 1, 0, 1.0, 0.5, 1); }},
  };
  for (const auto& p : points) EXPECT_EQ(p.f(), NANUM) << p.what;
}

// NANUM in any argument gives NANUM; NaN gives NaN.
TEST(SpecialFunctions, MissingAndNaNArguments) {
  using Unary = double (*)(double);
  const Unary unary[] = {exp_integral,         zomath_exp_integral, cos_integral,
                         zomath_cos_integral,  sin_integral,        zomath_sin_integral,
                         gamma_fn,             zomath_gamma,        log_gamma,
                         zomath_log_gamma,     cumul_normal,        cumul_normal_complem,
                         zomath_cumul_normal,  zomath_cumul_normal_complem,
                         ADummyFunction,       erfc_fn,             zomath_erf,
                         zomath_erfc,          erfcx,               erfinv,
                         erfcinv,              fresnel_s,           fresnel_c,
                         zomath_fresnel_s,     zomath_fresnel_c};
  for (Unary f : unary) {
    EXPECT_EQ(f(NANUM), NANUM);
    EXPECT_TRUE(std::isnan(f(kNaN)));
  }
  EXPECT_EQ(incomplete_gamma(NANUM, 1.0), NANUM);
  EXPECT_EQ(zomath_incomplete_gamma(1.0, NANUM), NANUM);
  EXPECT_EQ(real_polygamma(NANUM, 1), NANUM);
  EXPECT_EQ(zomath_real_polygamma(NANUM, 1), NANUM);
  EXPECT_EQ(elliptic_integral_rc(1.0, NANUM), NANUM);
  EXPECT_EQ(zomath_elliptic_integral_rf(1.0, NANUM, 2.0), NANUM);
  EXPECT_EQ(elliptic_integral_rd(NANUM, 1.0, 2.0), NANUM);
  EXPECT_EQ(zomath_elliptic_integral_rj(1.0, 1.0, 2.0, NANUM), NANUM);
  EXPECT_EQ(jacobian_theta(3, NANUM, 0.5), NANUM);
  EXPECT_EQ(zomath_jacobian_theta(3, 0.5, NANUM), NANUM);
  EXPECT_EQ(zomath_PearsonIV(0, 0, 1, 0, 1, 2, NANUM), NANUM);
  int code = -1;
  EXPECT_EQ(lambertW(NANUM, 0, 0, &code), NANUM);
  EXPECT_EQ(code, 0);
}

TEST(SpecialFunctions, ExactValues) {
  EXPECT_EQ(erfcinv(1.0), 0.0);
  EXPECT_EQ(erfinv(0.0), 0.0);
  EXPECT_EQ(gamma_fn(5.0), 24.0);
  EXPECT_EQ(ADummyFunction(0.0), 0.0);
  EXPECT_EQ(sin_integral(kInf), std::acos(-1.0) / 2);
  EXPECT_EQ(zomath_fresnel_c(-kInf), -0.5);
  EXPECT_EQ(incomplete_gamma(2.0, 0.0), 0.0);
  EXPECT_EQ(zomath_incomplete_gamma(2.0, kInf), 1.0);
  EXPECT_EQ(jacobian_theta(1, 3.0, 0.5), 0.0);  // theta_1 vanishes at the integers
  EXPECT_EQ(zomath_jacobian_theta(2, -2.5, 0.9), 0.0);  // theta_2 at the half-integers
  EXPECT_EQ(jacobian_theta(3, 0.3, 0.0), 1.0);
  // theta_0 is theta_4.
  EXPECT_EQ(jacobian_theta(0, 0.3, 0.4), jacobian_theta(4, 0.3, 0.4));
  EXPECT_EQ(zomath_jacobian_theta(0, 0.3, 0.4), zomath_jacobian_theta(4, 0.3, 0.4));
}

// Huge arguments reach the asymptotic value instead of an overflow inside the method.
TEST(SpecialFunctions, ExtremeArguments) {
  const double halfPi = std::acos(-1.0) / 2;
  const struct {
    const char* what;
    double value, expected, tolerance;
  } rows[] = {
      {"C(1e200)", fresnel_c(1e200), 0.5, 0.0},
      {"own S(1e30)", zomath_fresnel_s(-1e30), -0.5, 0.0},
      {"S(1e9)", fresnel_s(1e9), 0.5, 4e-10},
      {"Si(1e300)", sin_integral(1e300), halfPi, 2e-16},
      {"own Si(1e300)", zomath_sin_integral(-1e300), -halfPi, 2e-16},
      {"Ci(1e300)", cos_integral(1e300), 0.0, 1e-300},
      {"own Ci(1e300)", zomath_cos_integral(1e300), 0.0, 1e-300},
      {"E1(1e300)", zomath_exp_integral(1e300), 0.0, 0.0},
      {"erfcx(1e300)", erfcx(1e300), 5.641895835477563e-301, 1e-315},
      {"theta_1 at an integer", jacobian_theta(1, 1e300, 0.5), 0.0, 0.0},
      {"own theta_3 far out", zomath_jacobian_theta(3, -1e300, 0.5),
       zomath_jacobian_theta(3, 0.0, 0.5), 0.0},
      {"own psi(1e300)", zomath_real_polygamma(1e300, 0), 690.77552789821368, 2e-13},
      {"own Gamma(-1e20)", zomath_gamma(-1e20), NANUM, 0.0},
      {"W(1e300)", lambertW(1e300, 0, 0, nullptr), 684.24720862976085, 1e-12},
  };
  for (const auto& r : rows) EXPECT_NEAR(r.value, r.expected, r.tolerance) << r.what;
}

// The argument rules of lambertW and its error codes.
TEST(SpecialFunctions, LambertWGuards) {
  const double branchPoint = -std::exp(-1.0);
  struct Row {
    double x;
    int branch, offset;
    bool defined;
    int code;
  } rows[] = {
      {branchPoint, 0, 0, true, 0},   {branchPoint, -1, 0, true, 0},
      {branchPoint - 1e-16, 0, 0, false, 2}, {0.0, -1, 0, false, 2},
      {0.5, -1, 0, false, 2},         {0.0, 0, 1, true, 0},
      {-1e-3, 0, 1, false, 2},        {0.1, -1, 1, false, 2},
      {-0.1, -1, 1, false, 2},        {1.0, 1, 0, false, 1},
      {1.0, -2, 0, false, 1},
  };
  for (const auto& r : rows) {
    int code = -1;
    const double w = lambertW(r.x, r.branch, r.offset, &code);
    EXPECT_EQ(w != NANUM, r.defined) << r.x << " " << r.branch << " " << r.offset;
    EXPECT_EQ(code, r.code) << r.x << " " << r.branch << " " << r.offset;
  }
  EXPECT_DOUBLE_EQ(lambertW(branchPoint, 0, 0, nullptr), -1.0);
  EXPECT_DOUBLE_EQ(lambertW(branchPoint, -1, 0, nullptr), -1.0);
  EXPECT_DOUBLE_EQ(lambertW(0.0, 0, 1, nullptr), -1.0);
  EXPECT_DOUBLE_EQ(lambertW(std::exp(1.0), 0, 0, nullptr), 1.0);
}

// The Pearson IV peak has area A: a fault in the normalising constant shows here.
TEST(SpecialFunctions, PearsonIVHasUnitArea) {
  const struct {
    double a, m, nu;
  } shapes[] = {{1.5, 2.5, 3.0}, {0.4, 1.2, -0.7}, {2.0, 6.0, 25.0}};
  for (const auto& s : shapes) {
    double sum = 0.0;
    const double h = 0.002;
    for (double x = -300.0; x <= 300.0; x += h)
      sum += zomath_PearsonIV(x, 0.0, 2.0, 1.0, s.a, s.m, s.nu);
    EXPECT_NEAR(sum * h, 2.0, 2e-4) << s.a << " " << s.m << " " << s.nu;
  }
}

// The quantile routine for either tail fails outside (0, 1) and agrees with itself.
TEST(SpecialFunctions, NormalQuantileTails) {
  using zomath::platform::NagError;
  for (double p : {0.0, 1.0, -0.5, 1.5}) {
    NagError err;
    zomath::platform::normal_quantile(p, err);
    EXPECT_EQ(err.code, zomath::platform::kQuantileProbabilityOutOfRange) << p;
  }
  for (double q : {1e-300, 1e-20, 0.01, 0.3}) {
    NagError err;
    EXPECT_EQ(zomath::platform::normal_quantile_upper(q, err),
              -zomath::platform::normal_quantile(q, err));
    EXPECT_EQ(err.code, 0);
  }
  NagError err;
  EXPECT_NEAR(zomath::platform::normal_quantile_upper(0.025, err), 1.959963984540054, 1e-15);
  EXPECT_NEAR(zomath::platform::normal_quantile_centered(1e-20, err), 2.5066282746310002e-20,
              1e-35);
}

// Complex helpers: NANUM in either half, and the guards at zero.
TEST(ComplexHelpers, MissingHalvesAndZero) {
  using Op = d_complex (*)(d_complex);
  const Op ops[] = {sqrtz, sinz, cosz, tanz, logz, expz};
  for (Op f : ops) {
    for (d_complex z : {d_complex{NANUM, 1.0}, d_complex{1.0, NANUM}}) {
      const d_complex r = f(z);
      EXPECT_EQ(r.re, NANUM);
      EXPECT_EQ(r.im, NANUM);
    }
  }
  EXPECT_EQ(cabsz({2.0, NANUM}), NANUM);
  EXPECT_EQ(cabsz({3.0, -4.0}), 5.0);
  const d_complex zero{0.0, 0.0}, two{2.0, 0.0};
  const auto isMissing = [](d_complex z) { return z.re == NANUM && z.im == NANUM; };
  const auto is = [](d_complex z, double re, double im) { return z.re == re && z.im == im; };
  EXPECT_TRUE(isMissing(ipow(zero, -1)));
  EXPECT_TRUE(is(ipow(zero, 2), 0.0, 0.0));
  EXPECT_TRUE(is(ipow({3.0, 4.0}, 0), 1.0, 0.0));
  EXPECT_TRUE(is(ipow({0.0, 1.0}, 2), -1.0, 0.0));
  EXPECT_TRUE(is(ipow({2.0, 0.0}, -2), 0.25, 0.0));
  EXPECT_TRUE(isMissing(ipow({NANUM, 0.0}, 2)));
  EXPECT_TRUE(isMissing(rpow(zero, -1.0)));
  EXPECT_TRUE(is(rpow(zero, 2.0), 0.0, 0.0));
  EXPECT_TRUE(isMissing(rpow(two, NANUM)));
  EXPECT_TRUE(isMissing(cpowz(zero, {1.0, 1.0})));
  EXPECT_TRUE(isMissing(cpowz(zero, {-1.0, 0.0})));
  EXPECT_TRUE(is(cpowz(zero, {2.0, 0.0}), 0.0, 0.0));
  EXPECT_TRUE(is(cpowz(zero, zero), 1.0, 0.0));
  EXPECT_TRUE(isMissing(cpowz(two, {0.0, NANUM})));
  EXPECT_TRUE(isMissing(logz(zero)));
  EXPECT_TRUE(isMissing(expz({1000.0, 1.0})));  // overflow has no finite value
}

}  // namespace
