// What a caller of the multiple regression relies on: its codes and the missing values a failed
// call leaves, the two-point line, the held intercept, zero weights, the matrices, rank detection
// whatever the columns' scale, and the way back from scaled columns.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "zomath/regression.h"

namespace {

LinearFitOptions options(bool held = false, double at = 0.0, double level = 0.95) {
  return LinearFitOptions{false, 1.0, 0, true, level, false, held, at};
}

// A 12 by 3 design, a response near a known plane, and weights 1 to 3.
struct Data {
  std::vector<double> x, y, w;
  unsigned n = 12, m = 3;
  Data() {
    for (unsigned i = 0; i < n; ++i) {
      const double t = i;
      x.insert(x.end(), {t, std::sin(t) * 10, t * t / 7 + std::cos(3 * t)});
      y.push_back(2 + 0.5 * t - 3 * std::sin(t) + t * t / 70 + 0.01 * std::cos(5 * t));
      w.push_back(1 + (i % 3));
    }
  }
};

struct Call {
  std::vector<FitParameter> fit = std::vector<FitParameter>(4);
  FitStats stats;
  FitAnovaTable anova;
  std::vector<double> cov = std::vector<double>(25, 7.0), corr = std::vector<double>(25);
  int run(const double* x, unsigned n, unsigned m, const double* y, const double* w,
          LinearFitOptions o, unsigned records = 4, unsigned cols = 5, unsigned nw = 0) {
    return zomath_multiple_linear_regression(x, n, m, y, w, nw, &o, fit.data(), records, &stats,
                                             &anova, cov.data(), corr.data(), 5, cols, nullptr,
                                             nullptr);
  }
};

// Each fault gives its code, and the outputs hold missing values, not old ones.
TEST(MultipleRegression, CodesLeaveMissingValues) {
  const Data d;
  std::vector<double> negW = d.w, nanX = d.x, zeros(d.x.size(), 0.0), zeroW(d.n, 0.0);
  negW[4] = -1;
  nanX[7] = std::numeric_limits<double>::quiet_NaN();
  const double *x = d.x.data(), *y = d.y.data();
  struct Row {
    const double *x, *y, *w;
    unsigned n, m;
    LinearFitOptions o;
    unsigned records, cols, nw;
    int code;
  } rows[] = {
      {x, y, nullptr, 12, 3, options(false, 0, 1.5), 4, 5, 0, -151},
      {x, y, nullptr, 12, 3, options(false, 0, NAN), 4, 5, 0, -151},
      {nullptr, y, nullptr, 12, 3, options(), 4, 5, 0, -156},
      {x, nullptr, nullptr, 12, 3, options(), 4, 5, 0, -156},
      {x, y, d.w.data(), 12, 3, options(), 4, 5, 5, -174},      // weight count
      {x, y, nullptr, 12, 3, options(), 4, 3, 0, -98},          // matrix 3 wide
      {x, y, nullptr, 12, 3, options(), 2, 5, 0, -98},          // two records for three columns
      {x, y, negW.data(), 12, 3, options(), 4, 5, 0, -108},
      {x, y, nullptr, 3, 3, options(), 4, 5, 0, -212},          // nSize equal to nVars
      {x, y, nullptr, 0, 3, options(), 4, 5, 0, -212},
      {nanX.data(), y, nullptr, 12, 3, options(), 4, 5, 0, 444},
      {zeros.data(), y, nullptr, 12, 3, options(true), 4, 5, 0, 442},  // nothing to estimate
      {x, y, zeroW.data(), 12, 3, options(), 4, 5, 0, 442},
      {x, y, nullptr, 12, 0, options(true), 4, 5, 0, 445},      // no parameter at all
  };
  for (const Row& r : rows) {
    Call c;
    EXPECT_EQ(c.run(r.x, r.n, r.m, r.y, r.w, r.o, r.records, r.cols, r.nw), r.code) << r.code;
    EXPECT_EQ(c.stats.N, NANUM);
    EXPECT_EQ(c.anova.ProbF, NANUM);
    EXPECT_EQ(c.cov[5 * r.cols - 1], NANUM);
    EXPECT_TRUE(c.fit[0].Fixed && c.fit[0].value == NANUM && c.fit[r.records - 1].Error == NANUM);
  }
}

// Two points and a free line: the line through them, every error missing, and 0.
TEST(MultipleRegression, TwoPointsGiveTheLineWithoutErrors) {
  const double x[] = {1.1, 3.2}, y[] = {2.2, 5.3};
  Call c;
  ASSERT_EQ(c.run(x, 2, 1, y, nullptr, options()), 0);
  EXPECT_NEAR(c.fit[0].value, 0.5761904761904762, 1e-14);
  EXPECT_NEAR(c.fit[1].value, 1.4761904761904762, 1e-14);
  for (const FitParameter& p : {c.fit[0], c.fit[1]})
    for (double v : {p.Error, p.tValue, p.Prob, p.LCL, p.UCL}) EXPECT_EQ(v, NANUM);
  EXPECT_EQ(c.stats.DOF, 0);
  EXPECT_EQ(c.cov[0], NANUM);
}

// The intercept alone: the weighted mean of y with the standard error of a weighted mean.
TEST(MultipleRegression, InterceptAlone) {
  const double y[] = {1, 2, 4, 7}, w[] = {1, 2, 2, 1};
  Call c;
  ASSERT_EQ(c.run(y, 4, 0, y, w, options()), 0);  // no column: x is not read
  const double mean = 20.0 / 6, ss = (1 - mean) * (1 - mean) + 2 * (2 - mean) * (2 - mean) +
                                     2 * (4 - mean) * (4 - mean) + (7 - mean) * (7 - mean);
  EXPECT_NEAR(c.fit[0].value, mean, 1e-15 * mean);
  EXPECT_NEAR(c.fit[0].Error, std::sqrt(ss / 3 / 6), 1e-14);
  EXPECT_TRUE(c.anova.ModelDF == 0 && c.stats.DOF == 3 && c.stats.PearsonR == NANUM);
}

// A held intercept: the slopes are those of y - held through the origin, psFit[0] is fixed at
// the held value, the total sum of squares is that of the input y about zero, and the matrices
// fill their top left 3 by 3 block (variances the squared errors, unit correlations).
TEST(MultipleRegression, HeldIntercept) {
  const Data d;
  std::vector<double> shifted = d.y;
  for (double& v : shifted) v -= 2.5;
  Call a, b;
  ASSERT_EQ(a.run(d.x.data(), d.n, d.m, d.y.data(), d.w.data(), options(true, 2.5)), 0);
  ASSERT_EQ(b.run(d.x.data(), d.n, d.m, shifted.data(), d.w.data(), options(true, 0.0)), 0);
  EXPECT_TRUE(a.fit[0].Fixed && a.fit[0].value == 2.5 && a.fit[0].Error == NANUM);
  for (int j = 1; j <= 3; ++j) {
    EXPECT_NEAR(a.fit[j].value, b.fit[j].value, 1e-12 * std::fabs(b.fit[j].value));
    EXPECT_NEAR(a.fit[j].Error, b.fit[j].Error, 1e-12 * b.fit[j].Error);
    EXPECT_NEAR(a.cov[6 * (j - 1)], a.fit[j].Error * a.fit[j].Error, 1e-13 * a.cov[6 * (j - 1)]);
    EXPECT_NEAR(a.corr[6 * (j - 1)], 1.0, 1e-15);
    EXPECT_EQ(a.cov[5 * (j - 1) + 3], NANUM);
  }
  EXPECT_NEAR(a.corr[1], a.cov[1] / (a.fit[1].Error * a.fit[2].Error), 1e-13);
  double syy = 0;
  for (unsigned i = 0; i < d.n; ++i) syy += d.w[i] * d.y[i] * d.y[i];
  EXPECT_NEAR(a.anova.TotalSS, syy, 1e-13 * syy);
  EXPECT_EQ(a.anova.ModelDF, 3);
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
  Call a, b;
  ASSERT_EQ(a.run(d.x.data(), d.n, d.m, d.y.data(), w.data(), options()), 0);
  ASSERT_EQ(b.run(xs.data(), d.n - 3, d.m, ys.data(), ws.data(), options()), 0);
  for (int j = 0; j < 4; ++j) {
    EXPECT_NEAR(a.fit[j].value, b.fit[j].value, 1e-11 * std::fabs(b.fit[j].value));
    EXPECT_NEAR(a.fit[j].Error, b.fit[j].Error, 1e-11 * b.fit[j].Error);
  }
  EXPECT_EQ(a.stats.DOF, d.n - 3 - 4);
}

// A copy of column 0 times 1, 1e-8 or 1e8 added as column 2 is exactly collinear at every
// scale: the rank and the model degrees of freedom drop by one, R-squared stays, and the two
// columns share column 0's coefficient (equally at k = 1, the minimum-norm solution).
TEST(MultipleRegression, RankDetectionIgnoresScale) {
  const Data d;
  std::vector<double> two;
  for (unsigned i = 0; i < d.n; ++i) two.insert(two.end(), {d.x[3 * i], d.x[3 * i + 1]});
  Call base;
  ASSERT_EQ(base.run(two.data(), d.n, 2, d.y.data(), nullptr, options()), 0);
  for (double k : {1.0, 1e-8, 1e8}) {
    std::vector<double> x;
    for (unsigned i = 0; i < d.n; ++i) x.insert(x.end(), {d.x[3 * i], d.x[3 * i + 1], k * d.x[3 * i]});
    Call c;
    ASSERT_EQ(c.run(x.data(), d.n, 3, d.y.data(), nullptr, options()), 0);
    EXPECT_EQ(c.anova.ModelDF, 2);
    EXPECT_NEAR(c.stats.RSquare, base.stats.RSquare, 1e-13);
    const double b1 = base.fit[1].value;
    EXPECT_NEAR(c.fit[1].value + k * c.fit[3].value, b1, 1e-10 * std::fabs(b1));
    EXPECT_TRUE(k != 1 || std::fabs(c.fit[3].value - c.fit[1].value) < 1e-12 * std::fabs(b1));
  }
}

// Columns normalised to unit standard deviation, fitted, and the results carried back with the
// scale: the results on the raw columns. Both with the intercept free and held.
TEST(MultipleRegression, NormalisedColumnsAndTheWayBack) {
  const Data d;
  for (bool held : {false, true}) {
    const LinearFitOptions o = options(held, held ? 1.5 : 0.0);
    std::vector<double> x(d.x.size()), scale(4);
    ASSERT_EQ(zomath_normalize_x(&o, d.x.data(), d.n, d.m, x.data(), scale.data(), 4), 0);
    EXPECT_TRUE(held || scale[0] == 1.0);  // the intercept's place
    double mean = 0, ss = 0;  // column 2 of the normalised matrix has SD 1
    for (unsigned i = 0; i < d.n; ++i) mean += x[3 * i + 2] / d.n;
    for (unsigned i = 0; i < d.n; ++i) ss += (x[3 * i + 2] - mean) * (x[3 * i + 2] - mean);
    EXPECT_NEAR(ss / (d.n - 1), 1.0, 1e-14);
    Call raw, scaled;
    ASSERT_EQ(raw.run(d.x.data(), d.n, d.m, d.y.data(), d.w.data(), o), 0);
    ASSERT_EQ(scaled.run(x.data(), d.n, d.m, d.y.data(), d.w.data(), o), 0);
    std::vector<FitParameter> back(4);
    std::vector<double> cov(25);
    ASSERT_EQ(zomath_MR_results_corrected(&o, &scaled.stats, scaled.fit.data(), 4, scaled.cov.data(),
                                          5, 5, scale.data(), held ? 3 : 4, back.data(), cov.data()),
              0);
    for (int j = 0; j < 4; ++j)
      for (double FitParameter::*f : {&FitParameter::value, &FitParameter::Error, &FitParameter::Prob,
                                      &FitParameter::LCL, &FitParameter::UCL})
        EXPECT_NEAR(back[j].*f, raw.fit[j].*f, 1e-11 * std::fabs(raw.fit[j].*f)) << held << j;
    for (int k = 0; k < 25; ++k) EXPECT_NEAR(cov[k], raw.cov[k], 1e-11 * std::fabs(raw.cov[k]));
  }
  // A constant column keeps the scale 1; codes.
  const LinearFitOptions o = options();
  const double constant[] = {2, 2, 2};
  double n3[3], sc[2];
  ASSERT_EQ(zomath_normalize_x(&o, constant, 3, 1, n3, sc, 2), 0);
  EXPECT_TRUE(sc[1] == 1 && n3[2] == 2);
  EXPECT_EQ(zomath_normalize_x(&o, constant, 3, 1, n3, sc, 1), -98);
  EXPECT_EQ(zomath_normalize_x(&o, constant, 0, 1, n3, sc, 2), -151);
  EXPECT_EQ(zomath_normalize_x(&o, nullptr, 3, 1, n3, sc, 2), -156);
  FitStats st{};
  FitParameter in[2] = {}, out[2];
  double c[6] = {};
  EXPECT_EQ(zomath_MR_results_corrected(&o, &st, in, 2, c, 2, 3, sc, 2, out, c), -151);
  EXPECT_EQ(zomath_MR_results_corrected(&o, nullptr, in, 2, c, 2, 2, sc, 2, out, c), -156);
}

}  // namespace
