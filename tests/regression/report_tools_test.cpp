// The tools of the regression report: residual diagnostics (codes, the pseudo-inverse fallback),
// plot sums, partial regression plots, dummy coding and Akaike's criterion.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "zomath/regression.h"

namespace {

// A design whose third column repeats the first: X'X is singular, so the leverages come from
// the pseudo-inverse, and they are those of the first two columns (the same column space).
TEST(DiagnosticResiduals, SingularDesignTakesThePseudoInverse) {
  const int n = 8;
  std::vector<double> full, two, res, zeros(n, 0.0), h(n), in(n), ref(n);
  for (int i = 0; i < n; ++i) {
    full.insert(full.end(), {1.0 + i, std::cos(i), 1.0 + i});
    two.insert(two.end(), {1.0 + i, std::cos(i)});
    res.push_back(0.1 * std::sin(3 * i));
  }
  const LinearFitOptions o{false, 1.0, 0, true, 0.95, false, true, 0.0};
  FitParameter fit[3];
  ASSERT_EQ(zomath_multiple_linear_regression(two.data(), n, 2, res.data(), nullptr, 0, &o, fit, 3,
                                              nullptr, nullptr, nullptr, nullptr, 0, 0, h.data(), nullptr),
            0);
  // Leverages all 0 count as not given. The internal residuals depend on the leverages alone.
  ASSERT_EQ(zomath_diagnostic_residuals(n, 3, 0.01, n, res.data(), full.data(), in.data(), nullptr,
                                        nullptr, nullptr, nullptr, zeros.data()),
            0);
  ASSERT_EQ(zomath_diagnostic_residuals(n, 2, 0.01, n, res.data(), two.data(), ref.data(), nullptr,
                                        nullptr, nullptr, nullptr, h.data()),
            0);
  for (int i = 0; i < n; ++i) EXPECT_NEAR(in[i], ref[i], 1e-9 * std::fabs(ref[i]));
}

// Codes, and the missing values a point with leverage 1 or a failed call leaves.
TEST(DiagnosticResiduals, CodesAndUndefinedPoints) {
  const double res[] = {0.5, -0.25, 0.0, 1.0, 0.0}, design[] = {1, 1, 1, 1},
               h[] = {0.25, 0.25, 1.0, 0.5, 0.0};
  double in[5], ex[5], cook[5], atk[5], st[5];  // room for the call that claims 5 residuals
  auto call = [&](int n, int p, double rms, int nres, const double* r) {
    return zomath_diagnostic_residuals(n, p, rms, nres, r, design, in, ex, cook, atk, st, h);
  };
  EXPECT_EQ(call(4, 1, 1.0, 4, nullptr), -156);
  for (int rc : {call(4, 1, 1.0, 5, res), call(4, 4, 1.0, 4, res), call(4, 1, 0.0, 4, res)}) {
    EXPECT_EQ(rc, 451);
    EXPECT_TRUE(in[0] == NANUM && atk[3] == NANUM);
  }
  ASSERT_EQ(call(4, 1, 0.25, 4, res), 0);
  EXPECT_TRUE(in[2] == NANUM && ex[2] == NANUM && cook[2] == NANUM && atk[2] == NANUM);
}

// Weighted sums with missing values, about a mean of 1e9 that raw sums would cancel away; the
// raw sums under a held intercept; and the codes.
TEST(RegPlots, SumsAndCodes) {
  const double x[] = {1e9 + 1, 1e9 + 2, NANUM, 1e9 + 4, 1e9 + 5}, y[] = {1, 3, 5, NANUM, 9},
               w[] = {1, 2, 1, 1, NANUM};
  FitSums s;
  ASSERT_EQ(zomath_reg_plots(x, y, w, 5, nullptr, &s), 0);
  // The point of missing weight drops out; a missing x or y stands as 0 beside its weight. The
  // exact sums (rational arithmetic) are 8.000000036e17 and 15.2.
  EXPECT_EQ(s.SumW, 5);
  EXPECT_DOUBLE_EQ(s.MeanX, 800000001.8);
  EXPECT_DOUBLE_EQ(s.MeanY, 2.4);
  EXPECT_NEAR(s.Sxx, 8.000000036e17, 1e-15 * 8e17);
  EXPECT_NEAR(s.Syy, 15.2, 1e-15 * 15.2);
  LinearFitOptions o{false, 1.0, 0, true, 0.95, false, true, 3.0};
  const double x2[] = {1, 2, 3}, y2[] = {2, 4, 7};
  ASSERT_EQ(zomath_reg_plots(x2, y2, nullptr, 3, &o, &s), 0);
  EXPECT_TRUE(s.Sxx == 14 && s.Sxy == 31 && s.Syy == 69);
  EXPECT_EQ(zomath_reg_plots(x, y, w, 1, nullptr, &s), -165);
  EXPECT_EQ(s.SumW, NANUM);
  EXPECT_EQ(zomath_reg_plots(nullptr, y, w, 5, nullptr, &s), -156);
  const LinearFitOptions bad[] = {{true, 1.0, 0, true, 0.95, false, true, 0.0},    // both held
                                  {true, 1.0, 0, true, 0.95, true, false, 0.0},    // exclusive
                                  {false, 1.0, 0, true, 1.5, false, false, 0.0}};  // level
  for (const LinearFitOptions& b : bad) EXPECT_EQ(zomath_reg_plots(x, y, w, 5, &b, &s), -151);
}

// The added-variable plot of a term: the least-squares slope of its second column on its first,
// through the origin, is the term's coefficient in the full fit.
TEST(PartialRegPlots, SlopeOfEachPlotIsTheCoefficient) {
  const int n = 10;
  std::vector<double> x, y, out(n * 6);
  for (int i = 0; i < n; ++i) {
    x.insert(x.end(), {1.0 * i, std::sin(1.3 * i)});
    y.push_back(1 + 0.7 * i - 2 * std::sin(1.3 * i) + 0.2 * std::cos(2.1 * i));
  }
  FitParameter fit[3];
  ASSERT_EQ(zomath_multiple_linear_regression(x.data(), n, 2, y.data(), nullptr, 0, nullptr, fit, 3,
                                              nullptr, nullptr, nullptr, nullptr, 0, 0, nullptr, nullptr),
            0);
  ASSERT_EQ(zomath_partial_reg_plots(x.data(), n, 2, y.data(), nullptr, out.data(), 6), 0);
  for (int j = 0; j < 3; ++j) {
    double uv = 0, uu = 0;
    for (int i = 0; i < n; ++i) {
      uv += out[i * 6 + 2 * j] * out[i * 6 + 2 * j + 1];
      uu += out[i * 6 + 2 * j] * out[i * 6 + 2 * j];
    }
    EXPECT_NEAR(uv / uu, fit[j].value, 1e-10 * std::fabs(fit[j].value));
  }
  const LinearFitOptions held{false, 1.0, 0, true, 0.95, false, true, 0.0};
  EXPECT_EQ(zomath_partial_reg_plots(x.data(), n, 2, y.data(), nullptr, out.data(), 4), -110);
  EXPECT_EQ(zomath_partial_reg_plots(x.data(), n, 2, y.data(), &held, out.data(), 4), 0);
  EXPECT_EQ(zomath_partial_reg_plots(x.data(), n, 2, nullptr, nullptr, out.data(), 6), -156);
}

TEST(DummyVars, MethodsAndCodes) {
  const int levels[] = {1, 3, 2, 3};
  // The column of the 1 in each row, -1 for none: first level the reference, last, none.
  const int col[3][4] = {{-1, 1, 0, 1}, {0, -1, 1, -1}, {0, 2, 1, 2}};
  for (int method = 0; method < 3; ++method) {
    const int cols = method == 2 ? 3 : 2;
    std::vector<double> out(12, 0.0);
    ASSERT_EQ(zomath_dummy_vars(method, 4, levels, out.data()), 0);
    for (int i = 0; i < 4; ++i)
      for (int j = 0; j < cols; ++j) EXPECT_EQ(out[i * cols + j], j == col[method][i] ? 1 : 0);
  }
  std::vector<double> out(12, 0.0);
  const int absent[] = {1, 3, 3, 1}, one[] = {1, 1, 1, 1}, many[] = {1, 5, 2, 3}, zero[] = {0, 2, 1, 2};
  EXPECT_EQ(zomath_dummy_vars(2, 4, absent, out.data()), -112);
  EXPECT_EQ(out[5], 1.0);  // the ones are written all the same (row 1, level 3)
  for (const int* bad : {one, many, zero}) EXPECT_EQ(zomath_dummy_vars(0, 4, bad, out.data()), -151);
  EXPECT_EQ(zomath_dummy_vars(3, 4, levels, out.data()), -110);
  EXPECT_EQ(zomath_dummy_vars(0, 4, nullptr, out.data()), -156);
}

TEST(AIC, SmallSampleTermAndChecks) {
  int err = 1;
  // n 10, K 3: n / K below 40, so 2K(K + 1) / (n - K - 1) = 4 is added; at n 120 it is not.
  EXPECT_DOUBLE_EQ(zomath_AIC(10, 2, 20.0, &err), 10 * std::log(2.0) + 6 + 4);
  EXPECT_EQ(err, 0);
  EXPECT_DOUBLE_EQ(zomath_AIC(120, 2, 60.0, &err), 120 * std::log(0.5) + 6);
  for (auto a : {std::vector<double>{3, 2, 1}, {0, 1, 1}, {10, 0, 1}, {10, 2, -1}, {10, 2, NANUM}}) {
    err = 0;
    EXPECT_EQ(zomath_AIC(static_cast<int>(a[0]), static_cast<int>(a[1]), a[2], &err), NANUM);
    EXPECT_EQ(err, -151);
  }
  EXPECT_EQ(zomath_AIC(10, 2, 0.0, &err), -HUGE_VAL);  // a perfect fit passes the check
  EXPECT_EQ(zomath_AIC(3, 2, -1.0, nullptr), NANUM);    // unchecked: the log of a negative
}

}  // namespace
