// The rules of the tests beside their values: published figures, the cases where no test can be
// formed, every failure code with the record it leaves, and the agreements that tie a test to
// its interval and its tails together.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "zomath/stats.h"

namespace {

const std::vector<double> kSquares = {0, 0.1, 0.4, 0.9, 1.6, 2.5, 3.6, 4.9, 6.4, 8.1};

int size(const std::vector<double>& v) { return static_cast<int>(v.size()); }

tTestMeanResults one(const std::vector<double>& x, double mu, int tail, int expected = 0) {
  const HypotTestOptions o{0, mu, tail};
  tTestMeanResults r;
  EXPECT_EQ(zomath_one_sample_t_test(x.data(), size(x), &o, &r), expected);
  return r;
}

tTestMean2SampleResults two(const std::vector<double>& x, const std::vector<double>& y,
                            double delta = 0, int tail = 0, tTestResults* welch = nullptr) {
  const HypotTestOptions o{0, delta, tail};
  tTestMean2SampleResults r;
  EXPECT_EQ(zomath_two_sample_t_test(x.data(), size(x), y.data(), size(y), &o, &r, welch), 0);
  return r;
}

tTestMean2SampleResults pair(const std::vector<double>& x, const std::vector<double>& y,
                             double delta = 0, int tail = 0, int expected = 0) {
  const HypotTestOptions o{0, delta, tail};
  tTestMean2SampleResults r;
  EXPECT_EQ(zomath_two_sample_t_test_pair(x.data(), size(x), y.data(), size(y), &o, &r), expected);
  return r;
}

// The published example of the one-sample test (five figures), also through the summary form.
TEST(HypothesisRules, WorkedFigures) {
  const double expected[] = {0.23094, 0.88453, 0.11547};
  for (int tail = 0; tail < 3; ++tail) {
    const tTestMeanResults r = one(kSquares, 4, tail);
    EXPECT_NEAR(r.tValue, -1.2848, 5e-5);
    EXPECT_NEAR(r.Prob, expected[tail], 5e-6);
    EXPECT_EQ(r.DOF, 9);
    double p = 0, t = 0;
    int dof = 0;
    EXPECT_EQ(zomath_t_test_one_sample(r.N, r.Mean, r.SD, &p, 0, &dof, &t, 4, tail), 0);
    EXPECT_DOUBLE_EQ(p, r.Prob);
    EXPECT_DOUBLE_EQ(t, r.tValue);
    EXPECT_EQ(dof, 9);
  }
  // Limits of the mean of {1.5, 2.3} at 95%: -3.1824 (cut short) and 6.98248, about 1.9.
  const tTestMeanResults s = one({1.5, 2.3}, 0, 0);
  const double level = 0.95;
  double lcl, ucl;
  EXPECT_EQ(zomath_confidence_levels_for_mean(&level, 1, &s, &lcl, &ucl), 0);
  EXPECT_NEAR(lcl, -3.18248, 5e-6);
  EXPECT_NEAR(ucl, 6.98248, 5e-6);
}

// Samples with no spread give no statistic and say so by a positive return, the valid count.
TEST(HypothesisRules, OneSampleWithoutSpread) {
  const struct {
    std::vector<double> x;
    int code;
    double mean, sd;
  } cases[] = {{{7.5}, 1, 7.5, NANUM},
               {{NANUM, 7.5, NANUM}, 1, 7.5, NANUM},
               {{3, 3, 3, 3}, 4, 3, 0},
               {{0.1, 0.1, NANUM, 0.1}, 3, 0.1, 0},
               {{NAN, 1, 2}, 3, NAN, NAN}};  // no number to test: no mean to compare
  for (const auto& c : cases) {
    const tTestMeanResults r = one(c.x, 1, TAILED_TEST_TWO, c.code);
    EXPECT_EQ(r.N, c.code);
    EXPECT_EQ(r.DOF, 0);
    if (!std::isnan(c.mean)) {
      EXPECT_EQ(r.Mean, c.mean);
      EXPECT_EQ(r.SD, c.sd);
    }
    EXPECT_EQ(r.tValue, NANUM);
    EXPECT_EQ(r.Prob, NANUM);
  }
  const tTestMeanResults r = one({1, 2}, 0, TAILED_TEST_UPPER);  // two points: one degree
  EXPECT_EQ(r.DOF, 1);
  EXPECT_DOUBLE_EQ(r.tValue, 3);
  EXPECT_NEAR(r.Prob, 0.5 - std::atan(3.0) / M_PI, 1e-15);  // Cauchy's tail on 1 df
}

// Codes, and the record a failed call leaves: counts 0 and missing values.
TEST(HypothesisRules, OneSampleCodes) {
  const double x[] = {1, 2, 4};
  const HypotTestOptions good{0, 1, 0};
  const struct {
    const double* data;
    int n;
    HypotTestOptions o;
    int code;
  } cases[] = {{x, 3, {0, 1, 200}, -151}, {x, 3, {0, 1, -1}, -151}, {x, 3, {0, NAN, 0}, -151},
               {x, 3, {0, NANUM, 0}, -151}, {x, 0, good, -155},     {x, -4, good, -155},
               {nullptr, 3, good, -156}};
  for (const auto& c : cases) {
    tTestMeanResults r{5, 1, 1, 1, 5, 1, 1};
    EXPECT_EQ(zomath_one_sample_t_test(c.data, c.n, &c.o, &r), c.code);
    EXPECT_EQ(r.N + r.DOF, 0);
    for (double v : {r.Mean, r.SD, r.SEM, r.tValue, r.Prob}) EXPECT_EQ(v, NANUM);
  }
  const double missing[] = {NANUM, NANUM};
  tTestMeanResults r;
  EXPECT_EQ(zomath_one_sample_t_test(missing, 2, &good, &r), -155);
  EXPECT_EQ(zomath_one_sample_t_test(x, 3, nullptr, &r), -156);
  EXPECT_EQ(zomath_one_sample_t_test(x, 3, &good, nullptr), -156);

  double p = 0, t = 0;
  int dof = -9;
  EXPECT_EQ(zomath_t_test_one_sample(3, 1, 1, nullptr, 0, &dof, &t, 0, 0), -11);
  EXPECT_EQ(zomath_t_test_one_sample(3, 1, 1, &p, 0, &dof, &t, 0, 3), -51);
  EXPECT_EQ(zomath_t_test_one_sample(0, 1, 1, &p, 0, &dof, &t, 0, 0), -2);
  EXPECT_EQ(p, NANUM);
  for (const int flat : {1, 0}) {  // flat, or an SD of 0: no statistic, return 0
    EXPECT_EQ(zomath_t_test_one_sample(5, 1, flat ? 1 : 0, &p, flat, &dof, &t, 0, 0), 0);
    EXPECT_EQ(dof, 4);
    EXPECT_EQ(p, NANUM);
    EXPECT_EQ(t, NANUM);
  }
}

// The tails fold one two-sided probability: upper and lower add up to 1 and the two-sided one is
// twice the smaller, for every t test, on either side of the hypothesis and at t = 0 exactly.
TEST(HypothesisRules, TailsFoldTogether) {
  const std::vector<double> x = {2.5, 3.5, 1.5, 4.5, 3.0}, y = {1.0, 2.0, 2.5, 1.0, 3.5};
  for (const double delta : {-1.0, 0.0, 1.0, 2.9}) {
    double p[3][4];  // tails by test: one-sample, pooled, Welch, paired
    for (int tail = 0; tail < 3; ++tail) {
      tTestResults w;
      p[tail][0] = one(x, 2 + delta, tail).Prob;
      p[tail][1] = two(x, y, delta, tail, &w).Prob;
      p[tail][2] = w.Prob;
      p[tail][3] = pair(x, y, delta, tail).Prob;
    }
    for (int k = 0; k < 4; ++k) {
      EXPECT_NEAR(p[1][k] + p[2][k], 1, 1e-15) << delta << " " << k;
      EXPECT_NEAR(p[0][k], 2 * std::fmin(p[1][k], p[2][k]), 1e-15) << delta << " " << k;
    }
  }
  for (int tail = 0; tail < 3; ++tail) {  // mean difference 1 exactly: t = 0
    const tTestMean2SampleResults r = pair(x, y, 1, tail);
    EXPECT_EQ(r.tValue, 0);
    EXPECT_EQ(r.Prob, tail == 0 ? 1 : 0.5);
  }
}

TEST(HypothesisRules, TwoSampleCases) {
  const std::vector<double> x = {4.1, 5.2, 3.3, 6.0}, y = {2.0, 3.1, 2.2};
  // Missing values are left out of each sample.
  tTestResults w, wClean;
  const tTestMean2SampleResults r = two({4.1, NANUM, 5.2, 3.3, 6.0}, {NANUM, 2.0, 3.1, 2.2}, 0, 0, &w);
  const tTestMean2SampleResults clean = two(x, y, 0, 0, &wClean);
  EXPECT_EQ(r.N1, 4);
  EXPECT_EQ(r.N2, 3);
  EXPECT_EQ(r.DOF, 5);
  EXPECT_EQ(r.tValue, clean.tValue);
  EXPECT_EQ(w.DOF, wClean.DOF);
  EXPECT_EQ(r.DiffMean, NANUM);
  EXPECT_EQ(r.DiffSEM, NANUM);
  // One constant sample still has a standard error; two of them have none.
  EXPECT_NE(two(x, {2, 2, 2}, 0, 0, &w).tValue, NANUM);
  EXPECT_EQ(w.DOF, 3);  // Satterthwaite's with one variance 0: n1 - 1
  EXPECT_EQ(two({1, 1}, {2, 2}, 0, 0, &w).tValue, NANUM);
  EXPECT_EQ(w.tValue, NANUM);
  // Too few points: summaries, no test.
  const tTestMean2SampleResults small = two({}, {1.5}, 0, 0, &w);
  EXPECT_EQ(small.N1, 0);
  EXPECT_EQ(small.N2, 1);
  EXPECT_EQ(small.Mean2, 1.5);
  EXPECT_EQ(small.tValue, NANUM);
  EXPECT_EQ(w.DOF, NANUM);
  // A bad tail fails after the summaries are written.
  const HypotTestOptions bad{0, 0, 3};
  tTestMean2SampleResults b;
  EXPECT_EQ(zomath_two_sample_t_test(x.data(), 4, y.data(), 3, &bad, &b, nullptr), -151);
  EXPECT_EQ(b.N1, 4);
  EXPECT_EQ(b.tValue, NANUM);
  const HypotTestOptions o{0, 0, 0};
  EXPECT_EQ(zomath_two_sample_t_test(nullptr, 4, y.data(), 3, &o, &b, nullptr), -156);
  EXPECT_EQ(zomath_two_sample_t_test(x.data(), -1, y.data(), 3, &o, &b, nullptr), -155);
  EXPECT_EQ(zomath_two_sample_t_test(x.data(), 4, y.data(), 3, &o, nullptr, nullptr), -156);
}

TEST(HypothesisRules, PairedCases) {
  // One pair: its difference and no test.
  tTestMean2SampleResults r = pair({3.5}, {1.25});
  EXPECT_EQ(r.N1 + r.N2, 2);
  EXPECT_EQ(r.DiffMean, 2.25);
  EXPECT_EQ(r.DOF, 0);
  EXPECT_EQ(r.SD1, NANUM);
  EXPECT_EQ(r.tValue, NANUM);
  // Differences all equal: no spread, no statistic.
  r = pair({1, 2, 4, 8}, {0, 1, 3, 7});
  EXPECT_EQ(r.DiffMean, 1);
  EXPECT_EQ(r.DOF, 3);
  EXPECT_EQ(r.tValue, NANUM);
  EXPECT_EQ(r.Prob, NANUM);
  // An incomplete pair is left out of both samples; DiffSEM is the difference of the SEMs.
  r = pair({1, NANUM, 2, 4, 3}, {0.5, 9, 1.9, NANUM, 2.2}, 0.5, 1);
  const tTestMean2SampleResults clean = pair({1, 2, 3}, {0.5, 1.9, 2.2}, 0.5, 1);
  EXPECT_EQ(r.N1, 3);
  EXPECT_EQ(r.tValue, clean.tValue);
  EXPECT_EQ(r.Prob, clean.Prob);
  EXPECT_DOUBLE_EQ(r.DiffSEM, r.SEM1 - r.SEM2);
  // Codes: sizes, and a bad tail that resets the record (counts 0).
  pair({1, 2}, {1}, 0, 0, -175);
  pair({}, {}, 0, 0, -165);
  pair({NANUM}, {1}, 0, 0, -165);
  r = pair({1, 2, 4}, {0, 1, 1}, 0, 7, -151);
  EXPECT_EQ(r.N1 + r.N2, 0);
  EXPECT_EQ(r.Mean1, NANUM);
}

TEST(HypothesisRules, VarianceTestCases) {
  const std::vector<double> x = {1, 3, 2, 5}, flat = {2, 2, 2};
  ChiSqTestResults c;
  HypotTestOptions o{0, 1.5, 0};
  EXPECT_EQ(zomath_chi_square_test(3, flat.data(), &o, &c), 0);  // SD 0: Chi = Prob = 0
  EXPECT_EQ(c.Chi, 0);
  EXPECT_EQ(c.Prob, 0);
  EXPECT_EQ(zomath_chi_square_test(1, x.data(), &o, &c), 0);
  EXPECT_EQ(c.DOF, 0);
  EXPECT_EQ(c.Chi, NANUM);
  for (const HypotTestOptions bad : {HypotTestOptions{0, 0, 0}, {0, -2, 0}, {0, NANUM, 0}, {0, 1, 5}})
    EXPECT_EQ(zomath_chi_square_test(4, x.data(), &bad, &c), -151);

  // The pooled test reads a record: its degrees of freedom decide.
  ChiSq2SampleResults c2;
  tTestMean2SampleResults s = two(x, {2, 4, 7});
  EXPECT_EQ(zomath_two_sample_chi_square_test(&o, &s, &c2), 0);
  EXPECT_EQ(c2.DOF, 5);
  EXPECT_DOUBLE_EQ(c2.Chi, (3 * s.SD1 * s.SD1 + 2 * s.SD2 * s.SD2) / 1.5);
  const struct {
    double dof, sd1, testValue;
    int tail, code, resultDof;
  } cases[] = {{0, 1, 1, 0, 0, 0},  {-1, 1, 1, 0, 0, -1},  {5, NANUM, 1, 0, 0, 5},
               {-3, 1, 1, 0, -165, 0}, {5, 1, 0, 0, -157, -1}, {5, 1, 1, 9, -157, -1},
               {NAN, 1, 1, 0, -157, -1}, {5, NAN, 1, 0, -157, 0}};
  for (const auto& k : cases) {
    s.DOF = k.dof;
    s.SD1 = k.sd1;
    o = {0, k.testValue, k.tail};
    EXPECT_EQ(zomath_two_sample_chi_square_test(&o, &s, &c2), k.code) << k.dof;
    EXPECT_EQ(c2.DOF, k.resultDof) << k.dof;
    EXPECT_EQ(c2.Chi, NANUM);
  }

  // F test: two-sided is twice the smaller tail, also for an F between 1 and the median: here
  // F = 1.2248 on 50 and 1 degrees of freedom (median 2.17), whose upper tail doubled exceeds 1.
  std::vector<double> many(51);
  for (int i = 0; i < 51; ++i) many[i] = (i % 2) * 1.55;
  const std::vector<double> b = {0, 1};
  FTestResults f[3];
  for (int tail = 0; tail < 3; ++tail) {
    o = {0, 0, tail};
    EXPECT_EQ(zomath_f_test(51, many.data(), 2, b.data(), &o, &f[tail]), 0);
  }
  EXPECT_EQ(f[0].DOF1, 50);
  EXPECT_EQ(f[0].DOF2, 1);
  EXPECT_NEAR(f[1].Prob + f[2].Prob, 1, 1e-15);
  EXPECT_NEAR(f[0].Prob, 2 * f[2].Prob, 1e-15);
  o = {0, 0, 0};
  EXPECT_EQ(zomath_f_test(3, flat.data(), 4, x.data(), &o, &f[0]), 0);  // SD 0: no F
  EXPECT_EQ(f[0].F, NANUM);
  EXPECT_EQ(zomath_f_test(-1, x.data(), -1, x.data(), &o, &f[0]), -310);  // the codes add up
  o.TailType = 3;
  EXPECT_EQ(zomath_f_test(4, x.data(), 4, x.data(), &o, &f[0]), -151);
}

// Each row pair is the pooled two-sample test of those rows; any other tail is two-sided.
TEST(HypothesisRules, RowTests) {
  const double m1[] = {1, 2, 3, 5, /**/ 2, NANUM, 4, 7, /**/ NANUM, NANUM, NANUM, NANUM, /**/ 1, 1, 1, 1};
  const double m2[] = {0, 1, 1, 2, /**/ 1, 3, NANUM, 2, /**/ 1, 2, 3, 4, /**/ 1, 1, 1, 1};
  double t[4], dof[4], p[4];
  EXPECT_EQ(zomath_row_ttest2(4, 4, m1, m2, 0.5, 7, t, dof, p), 0);
  for (int i = 0; i < 2; ++i) {
    std::vector<double> x, y;
    for (int j = 0; j < 4; ++j) {
      if (m1[4 * i + j] != NANUM) x.push_back(m1[4 * i + j]);
      if (m2[4 * i + j] != NANUM) y.push_back(m2[4 * i + j]);
    }
    const tTestMean2SampleResults r = two(x, y, 0.5, TAILED_TEST_TWO);
    EXPECT_EQ(t[i], r.tValue);
    EXPECT_EQ(dof[i], r.DOF);
    EXPECT_EQ(p[i], r.Prob);
  }
  for (int i = 2; i < 4; ++i) EXPECT_TRUE(t[i] == NANUM && dof[i] == NANUM && p[i] == NANUM) << i;
  EXPECT_EQ(zomath_row_ttest2(4, 4, m1, m2, 0.5, TAILED_TEST_LOWER, nullptr, nullptr, p), 0);
  EXPECT_EQ(p[0], two({1, 2, 3, 5}, {0, 1, 1, 2}, 0.5, TAILED_TEST_LOWER).Prob);
  EXPECT_EQ(zomath_row_ttest2(0, 4, m1, m2, 0, 0, t, dof, p), -3);
  EXPECT_EQ(zomath_row_ttest2(4, -1, m1, m2, 0, 0, t, dof, p), -3);
  EXPECT_EQ(zomath_row_ttest2(4, 4, m1, nullptr, 0, 0, t, dof, p), -11);
}

// An interval at level 1 - p of a two-sided test has the tested value as one limit, and each
// level nests inside the higher ones.
TEST(HypothesisRules, IntervalsAgreeWithTests) {
  const std::vector<double> x = {5.1, 4.4, 6.3, 5.8, 4.9, 7.0}, y = {4.0, 4.6, 5.1, 3.9, 5.5, 4.2};
  const double mu = 5.0, delta = 0.3;
  const auto edge = [](double p, double lo, double hi, double tested) {
    EXPECT_GT(p, 0.01);
    EXPECT_NEAR(std::fmin(std::fabs(lo - tested), std::fabs(hi - tested)), 0, 1e-12) << p;
  };
  double lo[2], hi[2];
  const tTestMeanResults r = one(x, mu, TAILED_TEST_TWO);
  double levels[2] = {1 - r.Prob, 0.99};
  EXPECT_EQ(zomath_confidence_levels_for_mean(levels, 2, &r, lo, hi), 0);
  edge(r.Prob, lo[0], hi[0], mu);
  EXPECT_TRUE(lo[1] < lo[0] && hi[0] < hi[1]);

  tTestResults w;
  const tTestMean2SampleResults s = two(x, y, delta, TAILED_TEST_TWO, &w);
  levels[0] = 1 - s.Prob;
  EXPECT_EQ(zomath_two_sample_confidence_levels_for_mean_equal_var(levels, 2, &s, lo, hi), 0);
  edge(s.Prob, lo[0], hi[0], delta);
  EXPECT_TRUE(lo[1] < lo[0] && hi[0] < hi[1]);
  levels[0] = 1 - w.Prob;
  EXPECT_EQ(zomath_two_sample_confidence_levels_for_mean_unequal_var(levels, 1, &s, lo, hi), 0);
  edge(w.Prob, lo[0], hi[0], delta);

  const HypotTestOptions o{0, delta, TAILED_TEST_TWO};
  const tTestMean2SampleResults d = pair(x, y, delta, TAILED_TEST_TWO);
  levels[0] = 1 - d.Prob;
  EXPECT_EQ(zomath_two_sample_confidence_levels_for_mean_pair(levels, 2, &d, &o, lo, hi), 0);
  edge(d.Prob, lo[0], hi[0], delta);
  EXPECT_TRUE(lo[1] < lo[0] && hi[0] < hi[1]);

  // The variance limits at level 1 - p of the two-sided chi-square test meet the tested value.
  ChiSqTestResults c;
  const HypotTestOptions v{0, 0.5, TAILED_TEST_TWO};
  EXPECT_EQ(zomath_chi_square_test(size(x), x.data(), &v, &c), 0);
  levels[0] = 1 - c.Prob;
  EXPECT_EQ(zomath_confidence_levels_for_variance(1, levels, r.SD, r.DOF, lo, hi), 0);
  edge(c.Prob, lo[0], hi[0], 0.5);
}

// Codes of the interval exports, and the limits they leave.
TEST(HypothesisRules, IntervalCodes) {
  const tTestMeanResults base = one({1, 2, 4}, 0, 0);
  const double good[] = {0.9, 0.95}, bad[] = {0.9, 1.0};
  double lo[2], hi[2];
  const auto limits_are = [&](double a, double b) {
    EXPECT_TRUE(lo[0] == a && hi[0] == a && lo[1] == b && hi[1] == b) << lo[0] << " " << lo[1];
  };
  // Means: SD 0 gives the mean, DOF 0 or -1 nothing, DOF below -1 code -1.
  const struct {
    double sd;
    int dof, code;
    double limit;
  } mean[] = {{0, 2, 0, 7.0}, {1, 0, 0, NANUM}, {1, -1, 0, NANUM}, {1, -2, -1, NANUM}};
  for (const auto& k : mean) {
    tTestMeanResults s = base;
    s.Mean = 7;
    s.SD = k.sd;
    s.DOF = k.dof;
    EXPECT_EQ(zomath_confidence_levels_for_mean(good, 2, &s, lo, hi), k.code);
    limits_are(k.limit, k.limit);
  }
  EXPECT_EQ(zomath_confidence_levels_for_mean(bad, 2, &base, lo, hi), -151);
  EXPECT_NE(lo[0], NANUM);  // the levels before the bad one keep their limits
  EXPECT_EQ(lo[1], NANUM);
  EXPECT_EQ(zomath_confidence_levels_for_mean(good, 0, &base, lo, hi), -151);
  EXPECT_EQ(zomath_confidence_levels_for_mean(nullptr, 2, &base, lo, hi), -156);
  EXPECT_EQ(zomath_confidence_levels_for_variance(2, bad, 1, 3, lo, hi), -151);
  EXPECT_EQ(zomath_confidence_levels_for_variance(0, good, 1, 3, lo, hi), -151);
  EXPECT_EQ(zomath_confidence_levels_for_variance(2, good, 1, 0, lo, hi), 0);
  limits_are(NANUM, NANUM);

  // Differences: no levels is no work; a record without a test gives NANUM.
  tTestMean2SampleResults s = two({1, 2, 4}, {3});
  EXPECT_EQ(zomath_two_sample_confidence_levels_for_mean_equal_var(good, 0, &s, lo, hi), 0);
  EXPECT_EQ(zomath_two_sample_confidence_levels_for_mean_equal_var(bad, 2, &s, lo, hi), -151);
  EXPECT_EQ(zomath_two_sample_confidence_levels_for_mean_unequal_var(good, 2, &s, lo, hi), 0);
  limits_are(NANUM, NANUM);
  EXPECT_EQ(zomath_two_sample_confidence_levels_for_mean_unequal_var(good, 2, nullptr, lo, hi), -156);
  const HypotTestOptions o{0, 0, 0};
  s = pair({1, 2, 4}, {1, 1, 1});
  EXPECT_EQ(zomath_two_sample_confidence_levels_for_mean_pair(bad, 2, &s, &o, lo, hi), -151);
  limits_are(NANUM, NANUM);  // every level is checked first
  EXPECT_EQ(zomath_two_sample_confidence_levels_for_mean_pair(good, 0, &s, &o, lo, hi), -151);
  for (const double dof : {0.0, 2.0}) {  // no degrees of freedom, or t = 0 hides the SE
    s.DOF = dof;
    s.tValue = 0;
    EXPECT_EQ(zomath_two_sample_confidence_levels_for_mean_pair(good, 2, &s, &o, lo, hi), 0);
    limits_are(NANUM, NANUM);
  }

  // Variance ratios: levels unchecked (NANUM for a bad one), sizes adding up to 2 or less none.
  const double sds[] = {1.5, 2.0};
  const int sizes[] = {4, 6}, tiny[] = {1, 1};
  EXPECT_EQ(zomath_two_sample_confidence_levels_for_variance(2, bad, sds, sizes, lo, hi), 0);
  EXPECT_TRUE(lo[0] > 0 && lo[0] < 0.5625 && 0.5625 < hi[0]);
  EXPECT_EQ(lo[1], NANUM);
  EXPECT_EQ(zomath_two_sample_confidence_levels_for_variance(2, good, sds, tiny, lo, hi), 0);
  limits_are(NANUM, NANUM);
  EXPECT_EQ(zomath_two_sample_confidence_levels_for_variance(0, good, sds, sizes, lo, hi), -151);
  EXPECT_EQ(zomath_two_sample_confidence_levels_for_variance(2, good, nullptr, sizes, lo, hi), -156);
}

}  // namespace
