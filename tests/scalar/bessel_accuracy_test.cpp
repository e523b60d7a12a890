// Accuracy of the Bessel, Airy and Kelvin functions in both forms against the mpmath tables of
// tests/data/special (made by tests/tools/make_bessel_reference.py). The error at a point is
// |computed - reference| / scale, where the scale is |reference| away from zeros and the size of
// the oscillation near the zeros of J, Y, Airy and Kelvin functions. Every point of a table is
// in the short form's domain; the prefixed form is checked where its guards let it compute.
//
// Tolerances, in units of the rounding unit 2^-52: the short forms must stay within 1e-14 (45
// units) and the prefixed forms within 5e-14 (225 units). Each bound below is the smallest power
// of two that clears what the implementation reaches by a quarter, so that a regression of a few
// units shows. The Airy functions reach 22 units at x near -5e11, where the phase
// 2/3 |x|^(3/2) = 5e17 carries the error of its double-double representation.
#include <gtest/gtest.h>

#include <cmath>
#include <iostream>
#include <string>

#include "tests/scalar/reference.h"
#include "zomath/scalar.h"

namespace {

using zomath::testing::ErrorStats;
using zomath::testing::load_reference;

constexpr double kEps = 2.220446049250313e-16;

bool anywhere(double) { return true; }
bool within_jy(double x) { return std::fabs(x) <= 1e16; }

struct OneArgCase {
  const char* table;
  double (*short_form)(double);
  double (*prefixed)(double);
  bool (*prefixed_domain)(double);
  double short_tolerance;     // in units of kEps
  double prefixed_tolerance;  // in units of kEps
};

const OneArgCase kOneArgCases[] = {
    {"bessel_j0", bessel_j0, zomath_bessel_j0, within_jy, 2, 4},
    {"bessel_j1", bessel_j1, zomath_bessel_j1, within_jy, 2, 4},
    {"bessel_y0", bessel_y0, zomath_bessel_y0, within_jy, 2, 4},
    {"bessel_y1", bessel_y1, zomath_bessel_y1, within_jy, 2, 4},
    {"bessel_i0", bessel_i0, zomath_bessel_i0, anywhere, 2, 8},
    {"bessel_i1", bessel_i1, zomath_bessel_i1, anywhere, 2, 8},
    {"bessel_k0", bessel_k0, zomath_bessel_k0, anywhere, 2, 8},
    {"bessel_k1", bessel_k1, zomath_bessel_k1, anywhere, 2, 8},
    {"bessel_i0_scaled", bessel_i0_scaled, zomath_bessel_i0_scaled, anywhere, 4, 8},
    {"bessel_i1_scaled", bessel_i1_scaled, zomath_bessel_i1_scaled, anywhere, 2, 8},
    {"bessel_k0_scaled", bessel_k0_scaled, zomath_bessel_k0_scaled, anywhere, 4, 8},
    {"bessel_k1_scaled", bessel_k1_scaled, zomath_bessel_k1_scaled, anywhere, 4, 8},
    {"airy_ai", airy_ai, zomath_airy_ai, anywhere, 32, 32},
    {"airy_bi", airy_bi, zomath_airy_bi, anywhere, 16, 32},
    {"airy_ai_deriv", airy_ai_deriv, zomath_airy_ai_deriv, anywhere, 16, 32},
    {"airy_bi_deriv", airy_bi_deriv, zomath_airy_bi_deriv, anywhere, 32, 32},
    {"kelvin_ber", kelvin_ber, zomath_kelvin_ber, anywhere, 2, 4},
    {"kelvin_bei", kelvin_bei, zomath_kelvin_bei, anywhere, 2, 8},
    {"kelvin_ker", kelvin_ker, zomath_kelvin_ker, anywhere, 2, 4},
    {"kelvin_kei", kelvin_kei, zomath_kelvin_kei, anywhere, 2, 4},
};

struct TwoArgCase {
  const char* table;
  double (*short_form)(double, int);
  double (*prefixed)(double, int);
  double prefixed_bound;  // largest x of the prefixed form
  double short_tolerance;
  double prefixed_tolerance;
};

const TwoArgCase kTwoArgCases[] = {
    {"bessel_i_nu", bessel_i_nu, zomath_bessel_i_nu, 700.9217937, 2, 16},
    {"bessel_i_nu_scaled", bessel_i_nu_scaled, zomath_bessel_i_nu_scaled, 32768.0, 4, 16},
    {"bessel_k_nu", bessel_k_nu, zomath_bessel_k_nu, INFINITY, 2, 8},
    {"bessel_k_nu_scaled", bessel_k_nu_scaled, zomath_bessel_k_nu_scaled, INFINITY, 4, 8},
};

void report(const std::string& what, const ErrorStats& stats, double tolerance) {
  std::cout << what << ": " << stats.describe() << "\n";
  EXPECT_LE(stats.worst(), tolerance * kEps) << what << ": " << stats.describe();
}

TEST(BesselAccuracy, OneArgumentFunctionsInBothForms) {
  for (const OneArgCase& c : kOneArgCases) {
    const auto rows = load_reference(std::string("special/") + c.table + ".csv");
    ASSERT_GE(rows.size(), 300u) << c.table;
    ErrorStats short_stats, prefixed_stats;
    for (const auto& row : rows) {
      const double x = row.args[0];
      short_stats.add(row, c.short_form(x));
      if (c.prefixed_domain(x)) prefixed_stats.add(row, c.prefixed(x));
    }
    report(std::string(c.table) + " short", short_stats, c.short_tolerance);
    report(std::string("zomath_") + c.table, prefixed_stats, c.prefixed_tolerance);
  }
}

TEST(BesselAccuracy, FractionalOrdersInBothForms) {
  for (const TwoArgCase& c : kTwoArgCases) {
    const auto rows = load_reference(std::string("special/") + c.table + ".csv");
    ASSERT_GE(rows.size(), 300u) << c.table;
    ErrorStats short_stats, prefixed_stats;
    for (const auto& row : rows) {
      const double x = row.args[0];
      const int nu = static_cast<int>(row.args[1]);
      short_stats.add(row, c.short_form(x, nu));
      const bool in_domain = nu != 0 && x <= c.prefixed_bound && (x > 0 || nu > 0);
      if (in_domain) prefixed_stats.add(row, c.prefixed(x, nu));
    }
    report(std::string(c.table) + " short", short_stats, c.short_tolerance);
    report(std::string("zomath_") + c.table, prefixed_stats, c.prefixed_tolerance);
  }
}

}  // namespace
