// Properties that hold whatever the reference: no jump where a kernel switches method, and the
// functional equations of each family, in both forms.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <vector>

#include "zomath/scalar.h"

namespace {

using Fn = std::function<double(double)>;

struct Switch {
  const char* what;
  Fn f;
  double at;  // where an algorithm hands over to another
};

// Two doubles either side of a switch point give values that differ by no more than the
// function's change over those few ulps: a wrong coefficient or a stale constant shows as a step.
TEST(SpecialProperties, NoStepWhereTheMethodChanges) {
  const std::vector<Switch> switches = {
      {"erf |x| = 0.46875", zomath_erf, 0.46875},
      {"erfc x = 4", zomath_erfc, 4.0},
      {"erfcx x = 4", erfcx, 4.0},
      {"E1 x = 1", zomath_exp_integral, 1.0},
      {"Ei x = 40", zomath_exp_integral, -40.0},
      {"Si x = 2", sin_integral, 2.0},
      {"Ci x = 2", cos_integral, 2.0},
      {"own Si x = 38", zomath_sin_integral, 38.0},
      {"own Ci x = 38", zomath_cos_integral, 38.0},
      {"S x = 1.5", fresnel_s, 1.5},
      {"C x = 1.5", fresnel_c, 1.5},
      {"own S x = 5", zomath_fresnel_s, 5.0},
      {"own C x = 5", zomath_fresnel_c, 5.0},
      {"own Gamma x = 10", zomath_gamma, 10.0},
      {"own lnGamma x = 10", zomath_log_gamma, 10.0},
      {"own lnGamma x = 2.5", zomath_log_gamma, 2.5},
      {"own lnGamma x = 0.5", zomath_log_gamma, 0.5},
      {"own psi' x = 20", [](double x) { return zomath_real_polygamma(x, 1); }, 20.0},
      {"own P(12, x) at x = a + 1", [](double x) { return zomath_incomplete_gamma(12.0, x); },
       13.0},
      {"theta_3 at q = exp(-pi)", [](double q) { return jacobian_theta(3, 0.3, q); },
       0.0432139182637722},
      {"own theta_1 at q = exp(-pi)", [](double q) { return zomath_jacobian_theta(1, 0.3, q); },
       0.0432139182637722},
      {"W near the branch point", [](double x) { return lambertW(x, 0, 1, nullptr); }, 0.25},
      {"erfinv |y| = 1/2", erfinv, 0.5},
  };
  for (const auto& s : switches) {
    const double below = s.f(std::nextafter(std::nextafter(s.at, 0.0), 0.0));
    const double above = s.f(std::nextafter(std::nextafter(s.at, INFINITY), INFINITY));
    const double slope = (s.f(s.at * (1 + 1e-6)) - s.f(s.at * (1 - 1e-6))) / (2e-6 * s.at);
    const double allowed = 4e-15 * std::fabs(s.f(s.at)) + 8 * std::fabs(slope * s.at) * 2.3e-16;
    EXPECT_LE(std::fabs(above - below), allowed) << s.what;
  }
}

// Functional equations, within a few units of rounding.
TEST(SpecialProperties, FunctionalEquations) {
  for (double x : {0.3, 1.7, 6.25, 33.5, -2.5, -17.3}) {
    EXPECT_NEAR(gamma_fn(x + 1), x * gamma_fn(x), 1e-14 * std::fabs(x * gamma_fn(x))) << x;
    EXPECT_NEAR(zomath_gamma(x + 1), x * zomath_gamma(x), 4e-14 * std::fabs(x * zomath_gamma(x)));
    EXPECT_EQ(zomath_erf(-x), -zomath_erf(x));
    EXPECT_EQ(ADummyFunction(-x), -ADummyFunction(x));
    EXPECT_NEAR(cumul_normal(x) + cumul_normal(-x), 1.0, 2e-16);
    EXPECT_NEAR(zomath_cumul_normal(x) + zomath_cumul_normal_complem(x), 1.0, 2e-16);
    EXPECT_EQ(zomath_sin_integral(-x), -zomath_sin_integral(x));
    EXPECT_EQ(fresnel_c(-x), -fresnel_c(x));
    // psi(x + 1) = psi(x) + 1/x
    EXPECT_NEAR(zomath_real_polygamma(x + 1, 0), zomath_real_polygamma(x, 0) + 1 / x,
                1e-14 * (std::fabs(1 / x) + std::fabs(zomath_real_polygamma(x + 1, 0))));
  }
  // RF and RD are homogeneous of degrees -1/2 and -3/2; scaling by 4 is exact.
  EXPECT_DOUBLE_EQ(zomath_elliptic_integral_rf(4.0, 8.0, 12.0),
                   zomath_elliptic_integral_rf(1.0, 2.0, 3.0) / 2);
  EXPECT_DOUBLE_EQ(elliptic_integral_rd(4.0, 8.0, 12.0), elliptic_integral_rd(1.0, 2.0, 3.0) / 8);
  // RC(x, x) = 1/sqrt(x); RJ(x, y, z, z) = RD(x, y, z).
  EXPECT_DOUBLE_EQ(zomath_elliptic_integral_rc(2.25, 2.25), 1.0 / 1.5);
  EXPECT_NEAR(zomath_elliptic_integral_rj(0.5, 2.0, 3.0, 3.0),
              zomath_elliptic_integral_rd(0.5, 2.0, 3.0), 1e-15);
  // Jacobi's identity theta_3(0)^4 = theta_2(0)^4 + theta_4(0)^4, across both nome regimes.
  for (double q : {0.01, 0.3, 0.8}) {
    const double t3 = std::pow(zomath_jacobian_theta(3, 0.0, q), 4);
    const double t2 = std::pow(zomath_jacobian_theta(2, 0.0, q), 4);
    const double t4 = std::pow(zomath_jacobian_theta(4, 0.0, q), 4);
    EXPECT_NEAR(t3, t2 + t4, 1e-14 * t3) << q;
  }
  // W(x) e^W(x) = x on both branches.
  for (double x : {-0.3, -0.01, 0.5, 40.0}) {
    const double w = lambertW(x, 0, 0, nullptr);
    EXPECT_NEAR(w * std::exp(w), x, 4e-16 * std::fabs(x) + 1e-300) << x;
    if (x < 0) {
      const double v = lambertW(x, -1, 0, nullptr);
      EXPECT_NEAR(v * std::exp(v), x, 4e-15 * std::fabs(x)) << x;
    }
  }
}

}  // namespace
