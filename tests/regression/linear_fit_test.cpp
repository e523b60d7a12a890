// The straight-line fit: published worked figures, its codes and the missing values a failed
// call leaves, statsmodels WLS for every way of holding a parameter (make_fit_reference.py),
// zero weights and missing points, and the report when the residual sum exceeds the total.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

#include "reference_case.h"
#include "zomath/regression.h"

namespace {

LinearFitOptions options(bool scaled = true, double level = 0.95) {
  return LinearFitOptions{false, 1.0, 0, scaled, level, false, false, 0.0};
}

struct Line {
  FitParameter fit[2];
  FitStats stats;
  FitAnovaTable anova;
  FitSums sums;
  double cov[9], corr[9];
  int run(const std::vector<double>& x, const std::vector<double>& y, const double* w,
          const LinearFitOptions* o) {
    return zomath_linear_fit(x.data(), y.data(), static_cast<int>(x.size()), fit, w, 0, o,
                             &stats, &anova, &sums, cov, corr, 3, 3);
  }
};

// The figures printed for three small data sets, each to half a unit in its last printed place
// (t critical with one degree of freedom for three points); the two-point line has no error to
// give. Per parameter: value, Error, tValue, Prob, LCL, UCL ("" not printed).
TEST(LinearFit, WorkedFigures) {
  struct Row {
    std::vector<double> x, y;
    std::vector<std::string> expected;
  } rows[] = {
      {{1.1, 3.3, -3.7, 7.8}, {2.2, 3.1, -2.1, 3.6},
       {"0.64474", "0.72748", "0.89", "0.469", "-2.48536", "3.77485",
        "0.49659", "0.15632", "3.18", "0.0864", "-0.17601", "1.16919"}},
      {{1.1, 6.2, 0.5}, {2.2, 1.3, 2.55},
       {"2.54343", "0.13361", "19.04", "0.0334", "0.84576", "4.24109", "-0.2026", "", "", "", "",
        ""}},
      {{1.1, 3.2}, {2.2, 5.3}, {"0.57619", "NANUM", "NANUM", "NANUM", "NANUM", "NANUM",
                                "1.47619", "NANUM", "NANUM", "NANUM", "NANUM", "NANUM"}},
  };
  for (const Row& r : rows) {
    Line l;
    ASSERT_EQ(l.run(r.x, r.y, nullptr, nullptr), 0);
    for (int p = 0; p < 2; ++p) {
      const FitParameter& f = l.fit[p];
      const double got[] = {f.value, f.Error, f.tValue, f.Prob, f.LCL, f.UCL};
      for (int k = 0; k < 6; ++k) {
        const std::string& want = r.expected[6 * p + k];
        if (want == "NANUM") {
          EXPECT_EQ(got[k], NANUM) << p << " " << k;
        } else if (!want.empty()) {
          const double places = static_cast<double>(want.size() - want.find('.') - 1);
          EXPECT_NEAR(got[k], std::stod(want), 0.5 * std::pow(10.0, -places)) << p << " " << k;
        }
      }
    }
  }
}

// Each fault gives its code, checked in order, and every output holds missing values.
TEST(LinearFit, CodesLeaveMissingValues) {
  const std::vector<double> x{1, 2, 3, 4}, y{2, 3, 5, 4}, negative{1, -1, 1, 1};
  std::vector<double> nanX = x;
  nanX[2] = std::numeric_limits<double>::quiet_NaN();
  LinearFitOptions both = options(), level = options(true, 1.0 + 1e-12), nanHeld = options();
  both.FixSlope = both.FixIntercept = true;
  nanHeld.FixSlope = true;
  nanHeld.FixSlopeAt = NANUM;
  struct Row {
    const double *x, *y, *w;
    int n, nw;
    const LinearFitOptions* o;
    bool records;
    unsigned rows;
    int code;
  } rows[] = {
      {x.data(), y.data(), nullptr, 1, 0, nullptr, true, 3, -165},
      {x.data(), y.data(), nullptr, -3, 0, nullptr, false, 3, -165},
      {x.data(), y.data(), x.data(), 4, 3, nullptr, true, 3, -174},
      {x.data(), y.data(), negative.data(), 4, 0, &level, true, 3, -108},
      {x.data(), y.data(), nullptr, 4, 0, &level, true, 3, -196},
      {nullptr, y.data(), nullptr, 4, 0, nullptr, true, 3, -156},
      {x.data(), nullptr, nullptr, 4, 0, nullptr, true, 3, -156},
      {x.data(), y.data(), nullptr, 4, 0, nullptr, false, 3, -156},
      {x.data(), y.data(), nullptr, 4, 0, &both, true, 1, -151},
      {x.data(), y.data(), nullptr, 4, 0, &nanHeld, true, 3, -151},
      {x.data(), y.data(), nullptr, 4, 0, nullptr, true, 1, -98},
      {nanX.data(), y.data(), nullptr, 4, 0, nullptr, true, 3, 444},
  };
  for (const Row& r : rows) {
    Line l;
    l.fit[1].value = 7;
    FitParameter* fit = r.records ? l.fit : nullptr;
    EXPECT_EQ(zomath_linear_fit(r.x, r.y, r.n, fit, r.w, r.nw, r.o, &l.stats, &l.anova, &l.sums,
                                l.cov, l.corr, r.rows, 3),
              r.code);
    if (fit) {
      EXPECT_TRUE(l.fit[1].Fixed && l.fit[1].value == NANUM && l.fit[0].Error == NANUM);
    }
    EXPECT_TRUE(l.stats.RSquare == NANUM && l.anova.FValue == NANUM && l.sums.Syy == NANUM);
    EXPECT_TRUE(l.cov[3 * r.rows - 1] == NANUM && l.corr[0] == NANUM);
  }
}

// Every option combination against statsmodels WLS on 30 weighted points: estimates, errors,
// t, probabilities, limits, residual sum, R-squared and F within 1e-10 relative.
TEST(LinearFit, AgreesWithStatsmodels) {
  const zomath_test::Case c = zomath_test::load_case("linear_fit.csv");
  const std::vector<double>&x = c.at("x"), &y = c.at("y"), &w = c.at("w");
  for (int k = 0; c.count("c" + std::to_string(k) + ".options"); ++k) {
    const std::string key = "c" + std::to_string(k) + ".";
    const std::vector<double> o = c.at(key + "options");
    const LinearFitOptions opt{o[0] != 0, o[1], 0, o[4] != 0, o[5], false, o[2] != 0, o[3]};
    SCOPED_TRACE(key);
    Line l;
    ASSERT_EQ(l.run(x, y, w.data(), &opt), 0);
    const double most =
        zomath_test::worst_fit(c, key, l.fit, opt.FixIntercept, opt.FixSlope ? 1 : 2,
                               opt.ErrorScaledByReducedChiSq, l.stats, l.anova);
    std::printf("  %-4s held slope %d, intercept %d at %4.1f, scaled %d, level %.2f: %.1e\n",
                key.c_str(), opt.FixSlope, opt.FixIntercept, o[3], o[4] != 0, o[5], most);
    EXPECT_LT(most, 1e-10);
    // The covariance diagonal holds the squared errors of the free parameters only.
    for (int p = 0; p < 2; ++p) {
      const bool held = p == 0 ? opt.FixIntercept : opt.FixSlope;
      EXPECT_EQ(l.fit[p].Fixed, held);
      if (held)
        EXPECT_EQ(l.cov[4 * p], NANUM);
      else
        EXPECT_NEAR(l.cov[4 * p], l.fit[p].Error * l.fit[p].Error, 1e-14 * l.cov[4 * p]);
    }
  }
}

// A zero weight keeps its point in the degrees of freedom (the errors grow by
// sqrt(df / DOF) against the fit without it), while a missing x, y or weight leaves its point
// out altogether; the covariance and correlation blocks follow the errors.
TEST(LinearFit, ZeroWeightsAndMissingPoints) {
  const std::vector<double> x{0.5, 1.5, 2.0, 3.5, 4.0, 6.0}, y{1.1, 2.3, 2.2, 4.1, 4.0, 6.9};
  std::vector<double> w{1, 2, 1, 0.5, 1, 2}, x5(x.begin(), x.end() - 1), y5(y.begin(), y.end() - 1);
  Line all5, zero, missing;
  ASSERT_EQ(all5.run(x5, y5, w.data(), nullptr), 0);
  w.back() = 0;
  ASSERT_EQ(zero.run(x, y, w.data(), nullptr), 0);
  w.back() = NANUM;
  ASSERT_EQ(missing.run(x, y, w.data(), nullptr), 0);
  for (int p = 0; p < 2; ++p) {
    EXPECT_NEAR(zero.fit[p].value, all5.fit[p].value, 1e-13);
    EXPECT_NEAR(zero.fit[p].Error, all5.fit[p].Error * std::sqrt(3.0 / 4.0), 1e-13);
    EXPECT_NEAR(missing.fit[p].Error, all5.fit[p].Error, 1e-13);
  }
  EXPECT_EQ(zero.stats.DOF, 4);
  EXPECT_EQ(missing.stats.DOF, 3);
  EXPECT_NEAR(zero.cov[4], zero.fit[1].Error * zero.fit[1].Error, 1e-15);
  EXPECT_NEAR(zero.cov[1], -zero.cov[4] * zero.sums.MeanX, 1e-15);
  EXPECT_NEAR(zero.corr[1] * std::sqrt(zero.cov[0] * zero.cov[4]), zero.cov[1], 1e-15);
  EXPECT_EQ(zero.cov[2], NANUM);  // outside the 2 by 2 block
}

// A held intercept far from the data: a residual sum above the total leaves R-squared, R,
// Pearson's r, the model sum and F missing, while the model mean square of the free slope is
// still formed; the levels 0 and 1 are accepted. x without spread goes to the multiple
// regression, which gives the minimum-norm line through the mean.
TEST(LinearFit, HeldParametersAndRecovery) {
  const std::vector<double> x{1, 2, 3, 4, 5}, y{1.2, 1.9, 3.2, 3.9, 5.1}, flat(5, 2.0);
  LinearFitOptions far = options(true, 0.0);
  far.FixIntercept = true;
  far.FixInterceptAt = 40;
  Line l;
  ASSERT_EQ(l.run(x, y, nullptr, &far), 0);
  EXPECT_GT(l.stats.RSS, l.sums.Syy);
  for (double v : {l.stats.RSquare, l.stats.R, l.stats.PearsonR, l.anova.ModelSS, l.anova.FValue})
    EXPECT_EQ(v, NANUM);
  EXPECT_DOUBLE_EQ(l.anova.ModelMS, l.sums.Syy - l.stats.RSS);
  EXPECT_EQ(l.fit[1].LCL, l.fit[1].value);  // level 0: an interval of width 0
  const LinearFitOptions certain = options(true, 1.0);
  ASSERT_EQ(l.run(flat, y, nullptr, &certain), 0);
  EXPECT_NEAR(l.fit[0].value, 3.06 / 5, 1e-14);  // b0 + 2 b1 = mean y, (b0, b1) along (1, 2)
  EXPECT_NEAR(l.fit[1].value, 3.06 * 2 / 5, 1e-14);
  EXPECT_EQ(l.anova.ModelDF, 0);
}

}  // namespace
