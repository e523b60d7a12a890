// Domains and failures of the Bessel, Airy and Kelvin functions: where each form returns NANUM,
// what it returns at the edges of its guards, for NaN and infinities, and the symmetries that
// the reference tables (which hold each function on one side only in places) don't pin down.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>

#include "zomath/scalar.h"

namespace {

constexpr double kNaN = NAN;
constexpr double kInf = INFINITY;

using OneArg = double (*)(double);
using TwoArg = double (*)(double, int);

struct OneArgPoint {
  const char* what;
  OneArg f;
  double x;
  double expected;  // NANUM, or an exact value
};

// Values that are exact by definition or by the function's limit, and every NANUM of a guard.
const OneArgPoint kOneArgPoints[] = {
    // Undefined at and left of 0: the short form fails, the prefixed form's guard refuses.
    {"bessel_y0(0)", bessel_y0, 0.0, NANUM},
    {"zomath_bessel_y0(0)", zomath_bessel_y0, 0.0, NANUM},
    {"bessel_y1(-1)", bessel_y1, -1.0, NANUM},
    {"zomath_bessel_y1(-1)", zomath_bessel_y1, -1.0, NANUM},
    {"bessel_k0(0)", bessel_k0, 0.0, NANUM},
    {"zomath_bessel_k0(0)", zomath_bessel_k0, 0.0, NANUM},
    {"bessel_k1(-2)", bessel_k1, -2.0, NANUM},
    {"zomath_bessel_k1_scaled(0)", zomath_bessel_k1_scaled, 0.0, NANUM},
    {"bessel_k0_scaled(-1)", bessel_k0_scaled, -1.0, NANUM},
    {"kelvin_ker(0)", kelvin_ker, 0.0, NANUM},
    {"kelvin_kei(-3)", kelvin_kei, -3.0, NANUM},
    {"zomath_kelvin_ker(0)", zomath_kelvin_ker, 0.0, NANUM},
    {"zomath_kelvin_kei(-3)", zomath_kelvin_kei, -3.0, NANUM},
    // Overflow: no double holds the value.
    {"bessel_y1(1e-309)", bessel_y1, 1e-309, NANUM},
    {"bessel_k1(1e-309)", bessel_k1, 1e-309, NANUM},
    {"bessel_i0(714)", bessel_i0, 714.0, NANUM},
    {"bessel_i1(-714)", bessel_i1, -714.0, NANUM},
    {"zomath_bessel_i0(714)", zomath_bessel_i0, 714.0, NANUM},
    {"airy_bi(105)", airy_bi, 105.0, NANUM},
    {"airy_bi_deriv(105)", airy_bi_deriv, 105.0, NANUM},
    {"zomath_airy_bi(105)", zomath_airy_bi, 105.0, NANUM},
    {"kelvin_ber(1020)", kelvin_ber, 1020.0, NANUM},
    {"zomath_kelvin_bei(-1020)", zomath_kelvin_bei, -1020.0, NANUM},
    // The C library's J and Y are used only up to 1e16.
    {"zomath_bessel_j0(2e16)", zomath_bessel_j0, 2e16, NANUM},
    {"zomath_bessel_j1(-2e16)", zomath_bessel_j1, -2e16, NANUM},
    {"zomath_bessel_y0(2e16)", zomath_bessel_y0, 2e16, NANUM},
    // Exact values at 0.
    {"bessel_j0(0)", bessel_j0, 0.0, 1.0},
    {"zomath_bessel_j1(0)", zomath_bessel_j1, 0.0, 0.0},
    {"bessel_i0(0)", bessel_i0, 0.0, 1.0},
    {"zomath_bessel_i1_scaled(0)", zomath_bessel_i1_scaled, 0.0, 0.0},
    {"kelvin_ber(0)", kelvin_ber, 0.0, 1.0},
    {"zomath_kelvin_bei(0)", zomath_kelvin_bei, 0.0, 0.0},
    // Limits at infinity in the short forms; the prefixed forms refuse infinities.
    {"bessel_j0(inf)", bessel_j0, kInf, 0.0},
    {"bessel_y1(inf)", bessel_y1, kInf, 0.0},
    {"bessel_k0(inf)", bessel_k0, kInf, 0.0},
    {"bessel_i0(-inf)", bessel_i0, -kInf, NANUM},
    {"bessel_i0_scaled(inf)", bessel_i0_scaled, kInf, 0.0},
    {"airy_ai(-inf)", airy_ai, -kInf, 0.0},
    {"airy_bi(inf)", airy_bi, kInf, NANUM},
    {"airy_ai_deriv(-inf)", airy_ai_deriv, -kInf, NANUM},
    {"kelvin_ker(inf)", kelvin_ker, kInf, 0.0},
    {"kelvin_bei(inf)", kelvin_bei, kInf, NANUM},
    {"zomath_bessel_k0(inf)", zomath_bessel_k0, kInf, NANUM},
    {"zomath_airy_ai(-inf)", zomath_airy_ai, -kInf, NANUM},
    // Far out the decaying functions underflow to 0 rather than fail.
    {"airy_ai(300)", airy_ai, 300.0, 0.0},
    {"zomath_airy_ai(300)", zomath_airy_ai, 300.0, 0.0},
    {"bessel_k0(800)", bessel_k0, 800.0, 0.0},
    {"zomath_bessel_k1(800)", zomath_bessel_k1, 800.0, 0.0},
    {"zomath_kelvin_kei(2000)", zomath_kelvin_kei, 2000.0, 0.0},
};

TEST(BesselGuards, OneArgumentDomainsAndLimits) {
  for (const OneArgPoint& p : kOneArgPoints) EXPECT_EQ(p.f(p.x), p.expected) << p.what;
}

struct TwoArgPoint {
  const char* what;
  TwoArg f;
  double x;
  int nu;
  double expected;
};

// The fractional family: order nu / 4. The short forms accept nu in -3..3 and fail only where no
// value exists; the prefixed forms refuse n = 0, |n| >= 4 and x beyond their bounds.
const TwoArgPoint kTwoArgPoints[] = {
    {"bessel_i_nu(1, 4)", bessel_i_nu, 1.0, 4, NANUM},
    {"bessel_k_nu(1, -4)", bessel_k_nu, 1.0, -4, NANUM},
    {"bessel_i_nu(-1, 1)", bessel_i_nu, -1.0, 1, NANUM},
    {"bessel_i_nu(0, -1)", bessel_i_nu, 0.0, -1, NANUM},
    {"bessel_i_nu(0, 2)", bessel_i_nu, 0.0, 2, 0.0},
    {"bessel_i_nu(0, 0)", bessel_i_nu, 0.0, 0, 1.0},
    {"bessel_i_nu_scaled(0, -3)", bessel_i_nu_scaled, 0.0, -3, NANUM},
    {"bessel_i_nu(714, 1)", bessel_i_nu, 714.0, 1, NANUM},
    {"bessel_k_nu(0, 1)", bessel_k_nu, 0.0, 1, NANUM},
    {"bessel_k_nu_scaled(-1, 2)", bessel_k_nu_scaled, -1.0, 2, NANUM},
    {"zomath_bessel_i_nu(1, 0)", zomath_bessel_i_nu, 1.0, 0, NANUM},
    {"zomath_bessel_i_nu(1, 4)", zomath_bessel_i_nu, 1.0, 4, NANUM},
    {"zomath_bessel_i_nu(0, 1)", zomath_bessel_i_nu, 0.0, 1, 0.0},
    {"zomath_bessel_i_nu(0, -1)", zomath_bessel_i_nu, 0.0, -1, NANUM},
    {"zomath_bessel_i_nu(-0.5, 2)", zomath_bessel_i_nu, -0.5, 2, NANUM},
    {"zomath_bessel_i_nu(700.9217938, 1)", zomath_bessel_i_nu, 700.9217938, 1, NANUM},
    {"zomath_bessel_i_nu_scaled(32768.01, 3)", zomath_bessel_i_nu_scaled, 32768.01, 3, NANUM},
    {"zomath_bessel_k_nu(0, 2)", zomath_bessel_k_nu, 0.0, 2, NANUM},
    {"zomath_bessel_k_nu_scaled(1, -5)", zomath_bessel_k_nu_scaled, 1.0, -5, NANUM},
};

TEST(BesselGuards, FractionalOrderDomains) {
  for (const TwoArgPoint& p : kTwoArgPoints) EXPECT_EQ(p.f(p.x, p.nu), p.expected) << p.what;
  // The edges themselves are inside.
  EXPECT_TRUE(std::isfinite(zomath_bessel_i_nu(700.9217937, -3)));
  EXPECT_NE(zomath_bessel_i_nu(700.9217937, -3), NANUM);
  EXPECT_NE(zomath_bessel_i_nu_scaled(32768.0, 3), NANUM);
  // K is even in its order.
  EXPECT_EQ(bessel_k_nu(1.5, -3), bessel_k_nu(1.5, 3));
  EXPECT_EQ(zomath_bessel_k_nu(1.5, -2), zomath_bessel_k_nu(1.5, 2));
}

const OneArg kShortForms[] = {bessel_j0, bessel_j1, bessel_y0, bessel_y1, bessel_i0, bessel_i1,
                              bessel_k0, bessel_k1, bessel_i0_scaled, bessel_i1_scaled,
                              bessel_k0_scaled, bessel_k1_scaled, airy_ai, airy_bi,
                              airy_ai_deriv, airy_bi_deriv, kelvin_ber, kelvin_bei, kelvin_ker,
                              kelvin_kei};
const OneArg kPrefixedForms[] = {
    zomath_bessel_j0, zomath_bessel_j1, zomath_bessel_y0, zomath_bessel_y1,
    zomath_bessel_i0, zomath_bessel_i1, zomath_bessel_k0, zomath_bessel_k1,
    zomath_bessel_i0_scaled, zomath_bessel_i1_scaled, zomath_bessel_k0_scaled,
    zomath_bessel_k1_scaled, zomath_airy_ai, zomath_airy_bi, zomath_airy_ai_deriv,
    zomath_airy_bi_deriv, zomath_kelvin_ber, zomath_kelvin_bei, zomath_kelvin_ker,
    zomath_kelvin_kei};
const TwoArg kFractional[] = {bessel_i_nu, bessel_i_nu_scaled, bessel_k_nu, bessel_k_nu_scaled,
                              zomath_bessel_i_nu, zomath_bessel_i_nu_scaled, zomath_bessel_k_nu,
                              zomath_bessel_k_nu_scaled};

TEST(BesselGuards, MissingAndNotANumber) {
  for (size_t i = 0; i < sizeof(kShortForms) / sizeof(kShortForms[0]); ++i) {
    EXPECT_EQ(kShortForms[i](NANUM), NANUM) << "short form " << i;
    EXPECT_TRUE(std::isnan(kShortForms[i](kNaN))) << "short form " << i;
    EXPECT_EQ(kPrefixedForms[i](NANUM), NANUM) << "prefixed form " << i;
    EXPECT_TRUE(std::isnan(kPrefixedForms[i](kNaN))) << "prefixed form " << i;
  }
  for (size_t i = 0; i < sizeof(kFractional) / sizeof(kFractional[0]); ++i) {
    EXPECT_EQ(kFractional[i](NANUM, 1), NANUM) << "fractional " << i;
    const double nan_value = kFractional[i](kNaN, 1);
    EXPECT_TRUE(std::isnan(nan_value)) << "fractional " << i;
  }
}

// The tables hold J1, I1 and the Kelvin functions on a few negative points only; the symmetries
// must hold exactly everywhere.
TEST(BesselGuards, Symmetries) {
  for (double x : {1e-8, 0.7, 3.0, 17.5, 240.0, 650.0}) {
    EXPECT_EQ(bessel_j1(-x), -bessel_j1(x)) << x;
    EXPECT_EQ(zomath_bessel_i1(-x), -zomath_bessel_i1(x)) << x;
    EXPECT_EQ(zomath_bessel_i0_scaled(-x), zomath_bessel_i0_scaled(x)) << x;
    EXPECT_EQ(kelvin_ber(-x), kelvin_ber(x)) << x;
    EXPECT_EQ(zomath_kelvin_bei(-x), zomath_kelvin_bei(x)) << x;
  }
}

// One kernel gives all four Airy values, so the Wronskian Ai Bi' - Ai' Bi = 1/pi ties them
// together at points between the table's rows, across every branch of the kernel.
TEST(BesselGuards, AiryWronskian) {
  for (double x : {-1e6, -123.4, -10.0001, -9.9999, -3.3, -0.2, 0.0, 0.9999, 1.0001, 5.5, 30.0}) {
    const double w = zomath_airy_ai(x) * zomath_airy_bi_deriv(x) -
                     zomath_airy_ai_deriv(x) * zomath_airy_bi(x);
    const double scale = std::fabs(zomath_airy_ai(x) * zomath_airy_bi_deriv(x)) +
                         std::fabs(zomath_airy_ai_deriv(x) * zomath_airy_bi(x));
    EXPECT_NEAR(w, 1.0 / M_PI, 8 * DBL_EPSILON * scale) << x;
  }
}

}  // namespace
