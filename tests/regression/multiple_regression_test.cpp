// What a caller of the multiple regression relies on: its codes and the missing values a failed
// call leaves, the two-point line, the held intercept, zero weights, the matrices, invariance
// under rescaled and shifted columns, and the way back from scaled columns.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <vector>

#include "zomath/regression.h"

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

LinearFitOptions options(bool fixIntercept = false, double at = 0.0, bool scaled = true,
                         double level = 0.95) {
  return LinearFitOptions{false, 1.0, 0, scaled, level, false, fixIntercept, at};
}

// A 12 by 3 design with a known answer plus a little noise.
struct Data {
  std::vector<double> x, y, w;
  unsigned n = 12, m = 3;
  Data() {
    for (unsigned i = 0; i < n; ++i) {
      const double t = i;
      x.insert(x.end(), {t, std::sin(t) * 10, t * t / 7 + std::cos(3 * t)});
      y.push_back(2 + 0.5 * t - 0.3 * std::sin(t) * 10 + 0.1 * (t * t / 7) + 0.01 * std::cos(5 * t));
      w.push_back(1 + (i % 3));
    }
  }
};

struct Call {
  std::vector<FitParameter> fit = std::vector<FitParameter>(4);
  FitStats stats;
  FitAnovaTable anova;
  std::vector<double> cov = std::vector<double>(25), corr = std::vector<double>(25);
  unsigned nFit = 4, cells = 25;  // what the last call was given
  int run(const double* x, unsigned n, unsigned m, const double* y, const double* w,
          const LinearFitOptions* o, unsigned records = 4, unsigned rows = 5, unsigned cols = 5) {
    nFit = records;
    cells = rows * cols;
    return zomath_multiple_linear_regression(x, n, m, y, w, 0, o, fit.data(), records, &stats,
                                             &anova, cov.data(), corr.data(), rows, cols, nullptr,
                                             nullptr);
  }
};

bool all_nanum(const double* p, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i)
    if (p[i] != NANUM) return false;
  return true;
}

// Each fault gives its code, and the outputs hold missing values, not old ones.
TEST(MultipleRegression, CodesLeaveMissingValues) {
  const Data d;
  std::vector<double> negW = d.w, nanX = d.x, zeros(d.x.size(), 0.0), zeroW(d.n, 0.0);
  negW[4] = -1;
  nanX[7] = kNaN;
  const LinearFitOptions ok = options(), badLevel = options(false, 0, true, 1.5),
                         nanLevel = options(false, 0, true, kNaN), held = options(true, 1.0);
  struct Row {
    const char* what;
    std::function<int(Call&)> call;
    int code;
  } rows[] = {
      {"level 1.5", [&](Call& c) { return c.run(d.x.data(), d.n, d.m, d.y.data(), nullptr, &badLevel); }, -151},
      {"level NaN", [&](Call& c) { return c.run(d.x.data(), d.n, d.m, d.y.data(), nullptr, &nanLevel); }, -151},
      {"null x", [&](Call& c) { return c.run(nullptr, d.n, d.m, d.y.data(), nullptr, &ok); }, -156},
      {"null y", [&](Call& c) { return c.run(d.x.data(), d.n, d.m, nullptr, nullptr, &ok); }, -156},
      {"weight count", [&](Call& c) {
         return zomath_multiple_linear_regression(d.x.data(), d.n, d.m, d.y.data(), d.w.data(), 5, &ok,
                                                  c.fit.data(), 4, &c.stats, &c.anova, c.cov.data(),
                                                  c.corr.data(), 5, 5, nullptr, nullptr);
       }, -174},
      {"matrix 3 wide", [&](Call& c) { return c.run(d.x.data(), d.n, d.m, d.y.data(), nullptr, &ok, 4, 5, 3); }, -98},
      {"two records", [&](Call& c) { return c.run(d.x.data(), d.n, d.m, d.y.data(), nullptr, &ok, 2); }, -98},
      {"negative weight", [&](Call& c) { return c.run(d.x.data(), d.n, d.m, d.y.data(), negW.data(), &ok); }, -108},
      {"nSize equal to nVars", [&](Call& c) { return c.run(d.x.data(), 3, 3, d.y.data(), nullptr, &ok); }, -212},
      {"no points", [&](Call& c) { return c.run(d.x.data(), 0, 3, d.y.data(), nullptr, &ok); }, -212},
      {"NaN in x", [&](Call& c) { return c.run(nanX.data(), d.n, d.m, d.y.data(), nullptr, &ok); }, 444},
      {"zero design", [&](Call& c) { return c.run(zeros.data(), d.n, d.m, d.y.data(), nullptr, &held); }, 442},
      {"zero weights", [&](Call& c) { return c.run(d.x.data(), d.n, d.m, d.y.data(), zeroW.data(), &ok); }, 442},
      {"held intercept, no column", [&](Call& c) { return c.run(d.x.data(), d.n, 0, d.y.data(), nullptr, &held); }, 445},
  };
  for (auto& row : rows) {
    SCOPED_TRACE(row.what);
    Call c;
    for (auto& f : c.fit) f.value = 7;
    c.cov.assign(25, 7.0);
    EXPECT_EQ(row.call(c), row.code);
    EXPECT_TRUE(all_nanum(&c.stats.N, 10));
    EXPECT_TRUE(all_nanum(&c.anova.ModelDF, 11));
    EXPECT_TRUE(all_nanum(c.cov.data(), c.cells));
    EXPECT_TRUE(c.fit[0].Fixed && c.fit[0].value == NANUM && c.fit[c.nFit - 1].value == NANUM);
  }
}

// Two points and a free line: the line through them, every error missing, and 0.
TEST(MultipleRegression, TwoPointsGiveTheLineWithoutErrors) {
  const double x[] = {1.1, 3.2}, y[] = {2.2, 5.3};
  const LinearFitOptions o = options();
  Call c;
  ASSERT_EQ(c.run(x, 2, 1, y, nullptr, &o), 0);
  EXPECT_NEAR(c.fit[0].value, 0.5761904761904762, 1e-14);
  EXPECT_NEAR(c.fit[1].value, 1.4761904761904762, 1e-14);
  for (int j = 0; j < 2; ++j)
    for (double v : {c.fit[j].Error, c.fit[j].tValue, c.fit[j].Prob, c.fit[j].LCL, c.fit[j].UCL})
      EXPECT_EQ(v, NANUM);
  EXPECT_EQ(c.stats.DOF, 0);
  EXPECT_EQ(c.anova.ErrorMS, NANUM);
  EXPECT_EQ(c.cov[0], NANUM);
}

// A held intercept: the slopes are those of y - held through the origin, psFit[0] is fixed at
// the held value, and the total sum of squares is that of the input y about zero.
TEST(MultipleRegression, HeldIntercept) {
  const Data d;
  std::vector<double> shifted = d.y;
  for (double& v : shifted) v -= 2.5;
  const LinearFitOptions held = options(true, 2.5), origin = options(true, 0.0);
  Call a, b;
  ASSERT_EQ(a.run(d.x.data(), d.n, d.m, d.y.data(), d.w.data(), &held), 0);
  ASSERT_EQ(b.run(d.x.data(), d.n, d.m, shifted.data(), d.w.data(), &origin), 0);
  EXPECT_TRUE(a.fit[0].Fixed);
  EXPECT_EQ(a.fit[0].value, 2.5);
  EXPECT_EQ(a.fit[0].Error, NANUM);
  for (int j = 1; j <= 3; ++j) {
    EXPECT_NEAR(a.fit[j].value, b.fit[j].value, 1e-12 * std::fabs(b.fit[j].value));
    EXPECT_NEAR(a.fit[j].Error, b.fit[j].Error, 1e-12 * b.fit[j].Error);
  }
  double syy = 0;
  for (unsigned i = 0; i < d.n; ++i) syy += d.w[i] * d.y[i] * d.y[i];
  EXPECT_NEAR(a.anova.TotalSS, syy, 1e-13 * syy);
  EXPECT_EQ(a.anova.ModelDF, 3);
  EXPECT_EQ(a.anova.ErrorDF, d.n - 3);
  // The covariance block is the slopes' (3 by 3), the rest of the buffer missing.
  EXPECT_NEAR(a.cov[0], a.fit[1].Error * a.fit[1].Error, 1e-13 * a.cov[0]);
  EXPECT_EQ(a.cov[3], NANUM);
  EXPECT_EQ(a.cov[15], NANUM);
}

// Zero weights take no part: the fit is that of the other rows, and the residual degrees of
// freedom count the positive weights.
TEST(MultipleRegression, ZeroWeightsDropTheirRows) {
  const Data d;
  std::vector<double> w = d.w, xs, ys, ws;
  for (unsigned i : {2u, 5u, 9u}) w[i] = 0;
  for (unsigned i = 0; i < d.n; ++i)
    if (w[i] > 0) {
      xs.insert(xs.end(), d.x.begin() + 3 * i, d.x.begin() + 3 * i + 3);
      ys.push_back(d.y[i]);
      ws.push_back(w[i]);
    }
  const LinearFitOptions o = options();
  Call a, b;
  ASSERT_EQ(a.run(d.x.data(), d.n, d.m, d.y.data(), w.data(), &o), 0);
  ASSERT_EQ(b.run(xs.data(), d.n - 3, d.m, ys.data(), ws.data(), &o), 0);
  for (int j = 0; j < 4; ++j) {
    EXPECT_NEAR(a.fit[j].value, b.fit[j].value, 1e-11 * std::fabs(b.fit[j].value));
    EXPECT_NEAR(a.fit[j].Error, b.fit[j].Error, 1e-11 * b.fit[j].Error);
  }
  EXPECT_EQ(a.stats.DOF, d.n - 3 - 4);
  EXPECT_NEAR(a.anova.FValue, b.anova.FValue, 1e-11 * b.anova.FValue);
}

// The matrices fill the top left ip by ip block of their buffers: variances equal to the squared
// errors, a unit diagonal of correlations, symmetry; the other cells stay missing.
TEST(MultipleRegression, CovarianceAndCorrelationBlocks) {
  const Data d;
  const LinearFitOptions o = options();
  Call c;
  ASSERT_EQ(c.run(d.x.data(), d.n, d.m, d.y.data(), d.w.data(), &o), 0);
  for (int i = 0; i < 5; ++i)
    for (int j = 0; j < 5; ++j) {
      const double v = c.cov[i * 5 + j], r = c.corr[i * 5 + j];
      if (i == 4 || j == 4) {
        EXPECT_TRUE(v == NANUM && r == NANUM);
        continue;
      }
      EXPECT_EQ(v, c.cov[j * 5 + i]);
      if (i == j) {
        EXPECT_NEAR(v, c.fit[i].Error * c.fit[i].Error, 1e-13 * v);
        EXPECT_NEAR(r, 1.0, 1e-15);
      } else {
        EXPECT_NEAR(r, v / (c.fit[i].Error * c.fit[j].Error), 1e-13);
      }
    }
}

// The same fit seen through rescaled or shifted columns: a column times 1e9 gives its
// coefficient times 1e-9 and leaves the rest; a column shifted by 1e6 moves only the intercept.
// Both leave the tests unchanged. Rank detection must not mistake scale for collinearity.
TEST(MultipleRegression, InvariantUnderRescaledAndShiftedColumns) {
  const Data d;
  const LinearFitOptions o = options();
  Call base;
  ASSERT_EQ(base.run(d.x.data(), d.n, d.m, d.y.data(), d.w.data(), &o), 0);
  for (double scale : {1e-9, 1e9}) {
    std::vector<double> x = d.x;
    for (unsigned i = 0; i < d.n; ++i) x[3 * i + 1] *= scale;
    Call c;
    ASSERT_EQ(c.run(x.data(), d.n, d.m, d.y.data(), d.w.data(), &o), 0);
    EXPECT_NEAR(c.fit[2].value * scale, base.fit[2].value, 1e-12 * std::fabs(base.fit[2].value));
    EXPECT_NEAR(c.fit[3].value, base.fit[3].value, 1e-12 * std::fabs(base.fit[3].value));
    EXPECT_NEAR(c.fit[2].tValue, base.fit[2].tValue, 1e-11 * std::fabs(base.fit[2].tValue));
    EXPECT_EQ(c.anova.ModelDF, 3);
  }
  std::vector<double> x = d.x;
  for (unsigned i = 0; i < d.n; ++i) x[3 * i] += 1e6;
  Call c;
  ASSERT_EQ(c.run(x.data(), d.n, d.m, d.y.data(), d.w.data(), &o), 0);
  EXPECT_NEAR(c.fit[0].value, base.fit[0].value - 1e6 * base.fit[1].value,
              1e-9 * std::fabs(1e6 * base.fit[1].value));
  for (int j = 1; j <= 3; ++j)
    EXPECT_NEAR(c.fit[j].value, base.fit[j].value, 1e-9 * std::fabs(base.fit[j].value));
  EXPECT_NEAR(c.anova.FValue, base.anova.FValue, 1e-9 * base.anova.FValue);
}

// An exactly collinear column is found whatever its scale: the rank, and with it the model
// degrees of freedom, drops by one; the fit itself (R-squared) is that of the other columns.
TEST(MultipleRegression, CollinearColumnLowersTheRank) {
  const Data d;
  const LinearFitOptions o = options();
  std::vector<double> two;  // the first two columns
  for (unsigned i = 0; i < d.n; ++i) two.insert(two.end(), {d.x[3 * i], d.x[3 * i + 1]});
  Call base;
  ASSERT_EQ(base.run(two.data(), d.n, 2, d.y.data(), nullptr, &o), 0);
  for (double k : {1.0, 1e-8, 1e8}) {
    std::vector<double> x;
    for (unsigned i = 0; i < d.n; ++i) x.insert(x.end(), {d.x[3 * i], d.x[3 * i + 1], k * d.x[3 * i]});
    Call c;
    ASSERT_EQ(c.run(x.data(), d.n, 3, d.y.data(), nullptr, &o), 0);
    EXPECT_EQ(c.anova.ModelDF, 2);
    EXPECT_EQ(c.stats.DOF, d.n - 3);
    EXPECT_NEAR(c.stats.RSquare, base.stats.RSquare, 1e-13);
    // Minimum norm: column 0's effect is shared as b0 : b2 = 1 : k.
    EXPECT_NEAR(c.fit[1].value + k * c.fit[3].value, base.fit[1].value, 1e-10 * std::fabs(base.fit[1].value));
  }
}

// Results on columns divided by their scales, carried back, are the results on the raw columns.
TEST(MultipleRegression, CorrectionBackFromScaledColumns) {
  const Data d;
  for (bool held : {false, true}) {
    SCOPED_TRACE(held ? "held intercept" : "free intercept");
    const LinearFitOptions o = options(held, held ? 1.5 : 0.0);
    std::vector<double> scale = {held ? 0.0 : 1.0}, x = d.x;
    if (held) scale.clear();
    const double s[] = {10.0, 0.25, 1e3};
    for (double v : s) scale.push_back(v);
    for (unsigned i = 0; i < d.n; ++i)
      for (int j = 0; j < 3; ++j) x[3 * i + j] *= s[j];
    Call raw, scaled;
    ASSERT_EQ(raw.run(d.x.data(), d.n, d.m, d.y.data(), d.w.data(), &o), 0);
    ASSERT_EQ(scaled.run(x.data(), d.n, d.m, d.y.data(), d.w.data(), &o, 4, 4, 4), 0);
    std::vector<FitParameter> back(4);
    std::vector<double> cov(16);
    ASSERT_EQ(zomath_MR_results_corrected(&o, &scaled.stats, scaled.fit.data(), 4, scaled.cov.data(),
                                          4, 4, scale.data(), static_cast<unsigned>(scale.size()),
                                          back.data(), cov.data()),
              0);
    EXPECT_EQ(back[0].Fixed, held);
    for (int j = 0; j < 4; ++j)
      for (double FitParameter::*f : {&FitParameter::value, &FitParameter::Error, &FitParameter::tValue,
                                      &FitParameter::Prob, &FitParameter::LCL, &FitParameter::UCL})
        EXPECT_NEAR(back[j].*f, raw.fit[j].*f, 1e-11 * std::fabs(raw.fit[j].*f) + 1e-300);
    const int ip = held ? 3 : 4;
    for (int i = 0; i < ip; ++i)
      for (int j = 0; j < ip; ++j)
        EXPECT_NEAR(cov[i * 4 + j], raw.cov[i * 5 + j], 1e-11 * std::fabs(raw.cov[i * 5 + i]));
  }
  LinearFitOptions o = options();
  FitStats st{};
  FitParameter in[2] = {}, out[2];
  double c[6] = {}, sc[2] = {1, 1};
  EXPECT_EQ(zomath_MR_results_corrected(&o, &st, in, 2, c, 2, 3, sc, 2, out, c), -151);
  EXPECT_EQ(zomath_MR_results_corrected(&o, nullptr, in, 2, c, 2, 2, sc, 2, out, c), -156);
}

}  // namespace
