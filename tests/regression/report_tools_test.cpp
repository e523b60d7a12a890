// The tools of the regression report: residual diagnostics (codes, the pseudo-inverse fallback),
// plot sums, partial regression plots, dummy coding and Akaike's criterion.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "zomath/regression.h"

namespace {

// A design whose last column repeats the first: X'X is singular, and the leverages are those
// of the first two columns alone.
TEST(DiagnosticResiduals, SingularDesignTakesThePseudoInverse) {
  const int n = 8;
  std::vector<double> full, two, y;
  for (int i = 0; i < n; ++i) {
    const double a = 1 + i, b = std::cos(i);
    full.insert(full.end(), {a, b, a});
    two.insert(two.end(), {a, b});
    y.push_back(0.5 * a + b + 0.1 * std::sin(3 * i));
  }
  const LinearFitOptions o{false, 1.0, 0, true, 0.95, false, true, 0.0};
  FitParameter fit[3];
  FitStats st;
  std::vector<double> h(n), res(n);
  ASSERT_EQ(zomath_multiple_linear_regression(two.data(), n, 2, y.data(), nullptr, 0, &o, fit, 3,
                                              &st, nullptr, nullptr, nullptr, 0, 0, h.data(), nullptr),
            0);
  for (int i = 0; i < n; ++i) res[i] = y[i] - fit[1].value * two[2 * i] - fit[2].value * two[2 * i + 1];
  std::vector<double> in(n), inRef(n), zeros(n, 0.0);
  // Leverages all 0 count as not given: computed from the singular design (through the
  // pseudo-inverse), they are those of the two independent columns.
  ASSERT_EQ(zomath_diagnostic_residuals(n, 3, st.ReducedChiSq, n, res.data(), full.data(),
                                        in.data(), nullptr, nullptr, nullptr, nullptr, zeros.data()),
            0);
  ASSERT_EQ(zomath_diagnostic_residuals(n, 2, st.ReducedChiSq, n, res.data(), two.data(),
                                        inRef.data(), nullptr, nullptr, nullptr, nullptr, h.data()),
            0);
  // The internally studentized residuals depend on the leverages alone.
  for (int i = 0; i < n; ++i) EXPECT_NEAR(in[i], inRef[i], 1e-9 * std::fabs(inRef[i]) + 1e-12);
}

// Codes, and the missing values a point with leverage 1 or a failed call leaves.
TEST(DiagnosticResiduals, CodesAndUndefinedPoints) {
  const double res[] = {0.5, -0.25, 0.0, 1.0}, design[] = {1, 1, 1, 1}, h[] = {0.25, 0.25, 1.0, 0.5};
  double in[4], ex[4], cook[4], atk[4], st[4];
  auto call = [&](int n, int p, double rms, int nres, const double* r, const double* lev) {
    return zomath_diagnostic_residuals(n, p, rms, nres, r, design, in, ex, cook, atk, st, lev);
  };
  EXPECT_EQ(call(4, 1, 1.0, 4, nullptr, h), -156);
  for (int bad : {call(4, 1, 1.0, 5, res, h), call(4, 4, 1.0, 4, res, h), call(4, 1, 0.0, 4, res, h),
                  call(0, 1, 1.0, 4, res, h)}) {
    EXPECT_EQ(bad, 451);
    EXPECT_EQ(in[0], NANUM);
    EXPECT_EQ(atk[3], NANUM);
  }
  ASSERT_EQ(call(4, 1, 0.25, 4, res, h), 0);
  EXPECT_DOUBLE_EQ(in[0], 0.5 / std::sqrt(0.25 * 0.75));
  EXPECT_DOUBLE_EQ(st[3], 2.0);
  EXPECT_DOUBLE_EQ(cook[1], in[1] * in[1] * 0.25 / 0.75);
  EXPECT_TRUE(in[2] == NANUM && ex[2] == NANUM && cook[2] == NANUM && atk[2] == NANUM);
}

// Weighted sums with missing values, and a mean of 1e9 that naive sums would cancel away.
TEST(RegPlots, SumsAndCodes) {
  const double x[] = {1e9 + 1, 1e9 + 2, NANUM, 1e9 + 4, 1e9 + 5};
  const double y[] = {1, 3, 5, NANUM, 9}, w[] = {1, 2, 1, 1, NANUM};
  FitSums s;
  ASSERT_EQ(zomath_reg_plots(x, y, w, 5, nullptr, &s), 0);
  // SumW over the valid weights; a missing x or y drops out of the sums that hold it.
  EXPECT_EQ(s.SumW, 5);
  const double mx = (1e9 + 1 + 2 * (1e9 + 2) + 1e9 + 4) / 5, my = (1 + 6 + 5) / 5.0;
  EXPECT_DOUBLE_EQ(s.MeanX, mx);
  EXPECT_DOUBLE_EQ(s.MeanY, my);
  // The sums about the means, with a missing x or y standing as 0 beside its weight.
  double sxx = 0, syy = 0;
  const double xs[] = {1e9 + 1, 1e9 + 2, 0, 1e9 + 4}, ys[] = {1, 3, 5, 0}, ws[] = {1, 2, 1, 1};
  for (int i = 0; i < 4; ++i) {
    sxx += ws[i] * (xs[i] - mx) * (xs[i] - mx);
    syy += ws[i] * (ys[i] - my) * (ys[i] - my);
  }
  EXPECT_NEAR(s.Sxx, sxx, 1e-15 * sxx);
  EXPECT_NEAR(s.Syy, syy, 1e-15 * syy);
  LinearFitOptions o{true, 1.0, 0, true, 0.95, false, true, 0.0};
  EXPECT_EQ(zomath_reg_plots(x, y, w, 1, nullptr, &s), -165);
  EXPECT_EQ(s.SumW, NANUM);
  EXPECT_EQ(zomath_reg_plots(x, y, w, 5, &o, &s), -151);  // slope and intercept both held
  o = LinearFitOptions{true, 1.0, 0, true, 0.95, true, false, 0.0};
  EXPECT_EQ(zomath_reg_plots(x, y, w, 5, &o, &s), -151);  // exclusive fix with a held slope
  o.FixSlope = false;
  o.ConfLevel = 1.5;
  EXPECT_EQ(zomath_reg_plots(x, y, w, 5, &o, &s), -151);
  EXPECT_EQ(zomath_reg_plots(nullptr, y, w, 5, nullptr, &s), -156);
  // Held intercept: raw sums about zero.
  o = LinearFitOptions{false, 1.0, 0, true, 0.95, false, true, 3.0};
  const double x2[] = {1, 2, 3}, y2[] = {2, 4, 7};
  ASSERT_EQ(zomath_reg_plots(x2, y2, nullptr, 3, &o, &s), 0);
  EXPECT_EQ(s.Sxx, 14);
  EXPECT_EQ(s.Sxy, 31);
  EXPECT_EQ(s.Syy, 69);
}

// The added-variable plot of a term: the least-squares slope of its second column on its first,
// through the origin, is the term's coefficient in the full fit.
TEST(PartialRegPlots, SlopeOfEachPlotIsTheCoefficient) {
  const int n = 10, m = 2;
  std::vector<double> x, y;
  for (int i = 0; i < n; ++i) {
    x.insert(x.end(), {static_cast<double>(i), std::sin(1.3 * i)});
    y.push_back(1 + 0.7 * i - 2 * std::sin(1.3 * i) + 0.2 * std::cos(2.1 * i));
  }
  FitParameter fit[3];
  ASSERT_EQ(zomath_multiple_linear_regression(x.data(), n, m, y.data(), nullptr, 0, nullptr, fit, 3,
                                              nullptr, nullptr, nullptr, nullptr, 0, 0, nullptr, nullptr),
            0);
  std::vector<double> out(n * 6);
  ASSERT_EQ(zomath_partial_reg_plots(x.data(), n, m, y.data(), nullptr, out.data(), 6), 0);
  for (int j = 0; j < 3; ++j) {
    double uv = 0, uu = 0;
    for (int i = 0; i < n; ++i) {
      uv += out[i * 6 + 2 * j] * out[i * 6 + 2 * j + 1];
      uu += out[i * 6 + 2 * j] * out[i * 6 + 2 * j];
    }
    EXPECT_NEAR(uv / uu, fit[j].value, 1e-10 * std::fabs(fit[j].value));
  }
  EXPECT_EQ(zomath_partial_reg_plots(x.data(), n, m, y.data(), nullptr, out.data(), 4), -110);
  const LinearFitOptions held{false, 1.0, 0, true, 0.95, false, true, 0.0};
  EXPECT_EQ(zomath_partial_reg_plots(x.data(), n, m, y.data(), &held, out.data(), 4), 0);
  EXPECT_EQ(zomath_partial_reg_plots(x.data(), n, m, nullptr, nullptr, out.data(), 6), -156);
}

TEST(DummyVars, Methods) {
  const int levels[] = {1, 3, 2, 3};
  // Rows of the expected matrices, level by level.
  const std::vector<std::vector<double>> expected[] = {
      {{0, 0}, {0, 1}, {1, 0}, {0, 1}},                  // first level the reference
      {{1, 0}, {0, 0}, {0, 1}, {0, 0}},                  // last level the reference
      {{1, 0, 0}, {0, 0, 1}, {0, 1, 0}, {0, 0, 1}}};     // every level
  for (int method = 0; method < 3; ++method) {
    std::vector<double> out(12, 0.0);
    ASSERT_EQ(zomath_dummy_vars(method, 4, levels, out.data()), 0);
    const std::size_t cols = expected[method][0].size();
    for (std::size_t i = 0; i < 4; ++i)
      for (std::size_t j = 0; j < cols; ++j) EXPECT_EQ(out[i * cols + j], expected[method][i][j]);
  }
  std::vector<double> out(12, 0.0);
  const int absent[] = {1, 3, 3, 1}, one[] = {1, 1, 1, 1}, many[] = {1, 5, 2, 3}, zero[] = {0, 2, 1, 2};
  EXPECT_EQ(zomath_dummy_vars(2, 4, absent, out.data()), -112);
  EXPECT_EQ(out[5], 1.0);  // the ones are written all the same (row 1, level 3)
  EXPECT_EQ(zomath_dummy_vars(0, 4, one, out.data()), -151);
  EXPECT_EQ(zomath_dummy_vars(0, 4, many, out.data()), -151);
  EXPECT_EQ(zomath_dummy_vars(0, 4, zero, out.data()), -151);
  EXPECT_EQ(zomath_dummy_vars(3, 4, levels, out.data()), -110);
  EXPECT_EQ(zomath_dummy_vars(0, 4, nullptr, out.data()), -156);
}

TEST(AIC, SmallSampleTermAndChecks) {
  int err = 1;
  // n 10, K 3: n / K below 40, so 2K(K+1) / (n - K - 1) = 4 is added.
  EXPECT_DOUBLE_EQ(zomath_AIC(10, 2, 20.0, &err), 10 * std::log(2.0) + 6 + 4);
  EXPECT_EQ(err, 0);
  EXPECT_DOUBLE_EQ(zomath_AIC(120, 2, 60.0, &err), 120 * std::log(0.5) + 6);
  EXPECT_DOUBLE_EQ(zomath_AIC(119, 2, 60.0, &err), 119 * std::log(60.0 / 119) + 6 + 24.0 / 115);
  for (auto args : {std::vector<double>{3, 2, 1}, {0, 1, 1}, {10, 0, 1}, {10, 2, -1}, {10, 2, NANUM}}) {
    err = 0;
    EXPECT_EQ(zomath_AIC(static_cast<int>(args[0]), static_cast<int>(args[1]), args[2], &err), NANUM);
    EXPECT_EQ(err, -151);
  }
  EXPECT_EQ(zomath_AIC(10, 2, 0.0, &err), -HUGE_VAL);  // a perfect fit passes the check
  EXPECT_EQ(err, 0);
  EXPECT_EQ(zomath_AIC(3, 2, -1.0, nullptr), NANUM);    // unchecked: the log of a negative
}

}  // namespace
