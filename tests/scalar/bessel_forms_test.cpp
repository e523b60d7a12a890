// The two forms of each Bessel, Airy and Kelvin function are separate computations: on a dense
// sweep between and beyond the rows of the reference tables, and across every switch between
// methods (series, continued fractions, asymptotic expansions), they must agree to the sum of
// their accuracies. The difference is scaled as in the reference tables: by |value|, or near a
// zero of an oscillating function by an eighth of the modulus of its pair.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "zomath/scalar.h"

namespace {

constexpr double kEps = 2.220446049250313e-16;

using OneArg = double (*)(double);

// Geometric sweep from lo to hi (both positive) with the switch points of the kernels added,
// each with its neighbours a few units away.
std::vector<double> sweep(double lo, double hi, int count) {
  std::vector<double> xs;
  for (int i = 0; i < count; ++i) xs.push_back(lo * std::pow(hi / lo, i / (count - 1.0)));
  for (double edge : {1.0, 2.0, 5.0, 10.0, 20.0, 25.0, 700.0}) {
    if (edge < lo || edge > hi) continue;
    for (double x = edge, k = 0; k < 3; ++k, x = std::nextafter(x, 0.0)) xs.push_back(x);
    for (double x = edge, k = 0; k < 3; ++k, x = std::nextafter(x, INFINITY)) xs.push_back(x);
  }
  return xs;
}

struct Agreement {
  std::string worst_at;
  double worst = 0;
  void add(double x, double a, double b, double scale) {
    const double d = std::fabs(a - b) / scale;
    if (!(d <= worst)) {
      worst = d;
      worst_at = std::to_string(x) + ": " + std::to_string(a) + " vs " + std::to_string(b);
    }
  }
};

struct Pair {
  const char* name;
  OneArg short_form, prefixed;
  OneArg partner;  // the other member of an oscillating pair, or null for a monotone function
  double oscillates_from;  // |x| from which the modulus of the pair sets the scale
  bool odd_or_even_in_x;  // also swept over negative x
  double lo, hi;
  double tolerance;  // units of kEps
};

double y0_abs(double x) { return bessel_y0(std::fabs(x)); }
double y1_abs(double x) { return bessel_y1(std::fabs(x)); }

const Pair kPairs[] = {
    {"j0", bessel_j0, zomath_bessel_j0, y0_abs, 1.5, true, 1e-3, 1e6, 8},
    {"j1", bessel_j1, zomath_bessel_j1, y1_abs, 2.5, true, 1e-3, 1e6, 8},
    {"y0", bessel_y0, zomath_bessel_y0, bessel_j0, 0.5, false, 1e-3, 1e6, 8},
    {"y1", bessel_y1, zomath_bessel_y1, bessel_j1, 1.5, false, 1e-3, 1e6, 8},
    {"i0", bessel_i0, zomath_bessel_i0, nullptr, 0.0, true, 1e-6, 713.0, 16},
    {"i1", bessel_i1, zomath_bessel_i1, nullptr, 0.0, true, 1e-6, 713.0, 16},
    {"k0", bessel_k0, zomath_bessel_k0, nullptr, 0.0, false, 1e-6, 700.0, 16},
    {"k1", bessel_k1, zomath_bessel_k1, nullptr, 0.0, false, 1e-6, 700.0, 16},
    {"i0_scaled", bessel_i0_scaled, zomath_bessel_i0_scaled, nullptr, 0.0, true, 1e-6, 1e6, 16},
    {"k1_scaled", bessel_k1_scaled, zomath_bessel_k1_scaled, nullptr, 0.0, false, 1e-6, 1e6, 16},
    {"ber", kelvin_ber, zomath_kelvin_ber, kelvin_bei, 1.0, true, 1e-3, 1000.0, 16},
    {"bei", kelvin_bei, zomath_kelvin_bei, kelvin_ber, 1.0, true, 1e-3, 1000.0, 16},
    {"ker", kelvin_ker, zomath_kelvin_ker, kelvin_kei, 1.0, false, 1e-3, 1000.0, 16},
    {"kei", kelvin_kei, zomath_kelvin_kei, kelvin_ker, 1.0, false, 1e-3, 1000.0, 16},
};

TEST(BesselForms, OneArgumentFormsAgreeOnADenseSweep) {
  for (const Pair& p : kPairs) {
    Agreement agreement;
    for (double ax : sweep(p.lo, p.hi, 3000)) {
      for (double x : {ax, -ax}) {
        if (x < 0 && !p.odd_or_even_in_x) continue;
        const double a = p.short_form(x), b = p.prefixed(x);
        double scale = std::fabs(a);
        if (p.partner && ax >= p.oscillates_from) {
          scale = std::max(scale, std::hypot(a, p.partner(x)) / 8);
        }
        agreement.add(x, a, b, scale);
      }
    }
    EXPECT_LE(agreement.worst, p.tolerance * kEps) << p.name << " at " << agreement.worst_at;
  }
}

TEST(BesselForms, AiryFormsAgreeOnADenseSweep) {
  const OneArg short_forms[] = {airy_ai, airy_bi, airy_ai_deriv, airy_bi_deriv};
  const OneArg prefixed[] = {zomath_airy_ai, zomath_airy_bi, zomath_airy_ai_deriv,
                             zomath_airy_bi_deriv};
  std::vector<double> xs = sweep(1e-4, 100.0, 2000);
  for (double x : sweep(1e-4, 1e9, 2000)) xs.push_back(-x);
  for (int f = 0; f < 4; ++f) {
    Agreement agreement;
    for (double x : xs) {
      const double a = short_forms[f](x), b = prefixed[f](x);
      const double partner = short_forms[f ^ 1](x);  // Ai with Bi, Ai' with Bi'
      const double scale = x < 0 ? std::max(std::fabs(a), std::hypot(a, partner) / 8) : std::fabs(a);
      agreement.add(x, a, b, scale);
    }
    EXPECT_LE(agreement.worst, 32 * kEps) << "Airy function " << f << " at " << agreement.worst_at;
  }
}

TEST(BesselForms, FractionalOrderFormsAgreeOnADenseSweep) {
  using TwoArg = double (*)(double, int);
  const TwoArg short_forms[] = {bessel_i_nu, bessel_i_nu_scaled, bessel_k_nu, bessel_k_nu_scaled};
  const TwoArg prefixed[] = {zomath_bessel_i_nu, zomath_bessel_i_nu_scaled, zomath_bessel_k_nu,
                             zomath_bessel_k_nu_scaled};
  const double upper[] = {700.0, 32768.0, 700.0, 1e6};
  for (int f = 0; f < 4; ++f) {
    Agreement agreement;
    for (int nu : {-3, -2, -1, 1, 2, 3}) {
      for (double x : sweep(1e-6, upper[f], 600)) {
        agreement.add(x, short_forms[f](x, nu), prefixed[f](x, nu), std::fabs(short_forms[f](x, nu)));
      }
    }
    EXPECT_LE(agreement.worst, 32 * kEps) << "fractional function " << f << " at "
                                          << agreement.worst_at;
  }
}

}  // namespace
