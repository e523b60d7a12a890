// The rules of the tests beside their values: published figures, the cases where no test can be
// formed, the failure codes with the record they leave, and the agreements that tie a test to
// its tails and to its interval.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "zomath/stats.h"

namespace {

using Data = std::vector<double>;

int size(const Data& v) { return static_cast<int>(v.size()); }

tTestMeanResults one(const Data& x, double mu, int tail, int expected = 0) {
  const HypotTestOptions o{0, mu, tail};
  tTestMeanResults r;
  EXPECT_EQ(zomath_one_sample_t_test(x.data(), size(x), &o, &r), expected);
  return r;
}

tTestMean2SampleResults two(const Data& x, const Data& y, double delta = 0, int tail = 0,
                            tTestResults* welch = nullptr) {
  const HypotTestOptions o{0, delta, tail};
  tTestMean2SampleResults r;
  EXPECT_EQ(zomath_two_sample_t_test(x.data(), size(x), y.data(), size(y), &o, &r, welch), 0);
  return r;
}

tTestMean2SampleResults pair(const Data& x, const Data& y, double delta = 0, int tail = 0,
                             int expected = 0) {
  const HypotTestOptions o{0, delta, tail};
  tTestMean2SampleResults r;
  EXPECT_EQ(zomath_two_sample_t_test_pair(x.data(), size(x), y.data(), size(y), &o, &r), expected);
  return r;
}

// The published one-sample example (five figures), also through the summary form, and the
// published limits of the mean of {1.5, 2.3}: -3.1824 (cut short) and 6.98248, about 1.9.
TEST(HypothesisRules, WorkedFigures) {
  const Data squares = {0, 0.1, 0.4, 0.9, 1.6, 2.5, 3.6, 4.9, 6.4, 8.1};
  const double expected[] = {0.23094, 0.88453, 0.11547};
  for (int tail = 0; tail < 3; ++tail) {
    const tTestMeanResults r = one(squares, 4, tail);
    EXPECT_NEAR(r.tValue, -1.2848, 5e-5);
    EXPECT_NEAR(r.Prob, expected[tail], 5e-6);
    double p = 0, t = 0;
    int dof = 0;
    EXPECT_EQ(zomath_t_test_one_sample(r.N, r.Mean, r.SD, &p, 0, &dof, &t, 4, tail), 0);
    EXPECT_TRUE(p == r.Prob && t == r.tValue && dof == 9 && r.DOF == 9);
  }
  const tTestMeanResults s = one({1.5, 2.3}, 0, 0);
  const double level = 0.95;
  double lcl, ucl;
  EXPECT_EQ(zomath_confidence_levels_for_mean(&level, 1, &s, &lcl, &ucl), 0);
  EXPECT_NEAR(lcl, -3.18248, 5e-6);
  EXPECT_NEAR(ucl, 6.98248, 5e-6);
  EXPECT_NEAR(one({1, 2}, 0, TAILED_TEST_UPPER).Prob, 0.5 - std::atan(3.0) / M_PI, 1e-15);
}

// Where no statistic exists the exports say so without dividing by zero.
TEST(HypothesisRules, NoSpread) {
  const struct {
    Data x;
    int code;
    double mean, sd;
  } noTest[] = {{{7.5}, 1, 7.5, NANUM},
                {{NANUM, 7.5, NANUM}, 1, 7.5, NANUM},
                {{3, 3, 3, 3}, 4, 3, 0},
                {{0.1, 0.1, NANUM, 0.1}, 3, 0.1, 0}};
  for (const auto& c : noTest) {  // a positive return, the count of valid values
    const tTestMeanResults r = one(c.x, 1, TAILED_TEST_TWO, c.code);
    EXPECT_TRUE(r.N == c.code && r.DOF == 0 && r.Mean == c.mean && r.SD == c.sd);
    EXPECT_TRUE(r.tValue == NANUM && r.Prob == NANUM);
  }
  tTestMean2SampleResults r = pair({3.5}, {1.25});  // one pair: its difference, no test
  EXPECT_TRUE(r.N1 == 1 && r.DiffMean == 2.25 && r.DOF == 0 && r.SD1 == NANUM && r.tValue == NANUM);
  r = pair({1, 2, 4, 8}, {0, 1, 3, 7});  // differences all 1
  EXPECT_TRUE(r.DiffMean == 1 && r.DOF == 3 && r.tValue == NANUM && r.Prob == NANUM);
  tTestResults w;
  EXPECT_EQ(two({1, 1}, {2, 2}, 0, 0, &w).tValue, NANUM);  // no standard error
  EXPECT_EQ(w.tValue, NANUM);
  EXPECT_NE(two({4.1, 5.2, 3.3, 6.0}, {2, 2, 2}, 0, 0, &w).tValue, NANUM);  // one constant sample
  EXPECT_EQ(w.DOF, 3);  // Satterthwaite's with one variance 0: n1 - 1
  const HypotTestOptions o{0, 1.5, 0};
  const Data flat = {2, 2, 2};
  ChiSqTestResults c;
  EXPECT_EQ(zomath_chi_square_test(3, flat.data(), &o, &c), 0);
  EXPECT_TRUE(c.Chi == 0 && c.Prob == 0);
  tTestMeanResults s = one(flat, 0, 0, 3);
  double level = 0.9, lo, hi;
  EXPECT_EQ(zomath_confidence_levels_for_mean(&level, 1, &s, &lo, &hi), 0);
  EXPECT_TRUE(lo == 2 && hi == 2);
}

// At t = 0 exactly every tail of the paired test is 1/2 (two-sided 1), whichever way t = 0
// counts.
TEST(HypothesisRules, TailsAtZeroAndTheFTest) {
  const Data x = {2.5, 3.5, 1.5, 4.5, 3.0}, y = {1.0, 2.0, 2.5, 1.0, 3.5};  // differences mean 1
  for (int tail = 0; tail < 3; ++tail) EXPECT_EQ(pair(x, y, 1, tail).Prob, tail == 0 ? 1 : 0.5);
  // F two-sided is twice the smaller tail, also between 1 and the median: F = 1.2248 on 50 and 1
  // degrees of freedom (median 2.17), whose upper tail doubled would exceed 1.
  Data many(51);
  for (int i = 0; i < 51; ++i) many[i] = (i % 2) * 1.55;
  const Data b = {0, 1};
  FTestResults f[3];
  for (int tail = 0; tail < 3; ++tail) {
    const HypotTestOptions o{0, 0, tail};
    EXPECT_EQ(zomath_f_test(51, many.data(), 2, b.data(), &o, &f[tail]), 0);
  }
  EXPECT_TRUE(f[0].DOF1 == 50 && f[0].DOF2 == 1 && f[1].Prob > 0.5);
  EXPECT_NEAR(f[0].Prob, 2 * f[2].Prob, 1e-15);
}

// Missing values: each sample of the two-sample test loses its own, the paired test whole pairs.
TEST(HypothesisRules, MissingValues) {
  tTestResults w, wClean;
  const tTestMean2SampleResults r =
      two({4.1, NANUM, 5.2, 3.3, 6.0}, {NANUM, 2.0, 3.1, 2.2}, 0, 0, &w);
  const tTestMean2SampleResults clean = two({4.1, 5.2, 3.3, 6.0}, {2.0, 3.1, 2.2}, 0, 0, &wClean);
  EXPECT_TRUE(r.N1 == 4 && r.N2 == 3 && r.DOF == 5 && r.tValue == clean.tValue &&
              w.DOF == wClean.DOF);
  EXPECT_TRUE(r.DiffMean == NANUM && r.DiffSEM == NANUM);
  const tTestMean2SampleResults p = pair({1, NANUM, 2, 4, 3}, {0.5, 9, 1.9, NANUM, 2.2}, 0.5, 1);
  const tTestMean2SampleResults q = pair({1, 2, 3}, {0.5, 1.9, 2.2}, 0.5, 1);
  EXPECT_TRUE(p.N1 == 3 && p.tValue == q.tValue && p.Prob == q.Prob &&
              p.DiffSEM == p.SEM1 - p.SEM2);
}

// Each failure code, and the record it leaves: counts 0 or -1, doubles NANUM.
TEST(HypothesisRules, Codes) {
  const Data x = {1, 2, 4}, y = {0, 1, 1}, nanums = {NANUM, NANUM};
  const double *X = x.data(), *Y = y.data(), *M = nanums.data();
  const HypotTestOptions good{0, 1, 0}, tail200{0, 1, 200}, tail3{0, 1, 3}, zero{0, 0, 0},
      nanTest{0, NAN, 0};
  tTestMeanResults r1, badDof = one(x, 0, 0);
  tTestMean2SampleResults r2, s2 = two(x, {2, 4, 7}), negDof = s2, zeroDof = s2;
  badDof.DOF = -2;
  negDof.DOF = -3;
  zeroDof.DOF = 0;
  ChiSqTestResults c;
  ChiSq2SampleResults c2;
  FTestResults f;
  double p, t, lo[2], hi[2];
  const double L[] = {0.9, 1.0}, sds[] = {1, 2};
  const int sizes[] = {3, 3};
  EXPECT_EQ(zomath_one_sample_t_test(X, 3, &tail200, &r1), -151);
  EXPECT_TRUE(r1.N == 0 && r1.DOF == 0 && r1.Mean == NANUM && r1.Prob == NANUM);
  EXPECT_EQ(zomath_one_sample_t_test(X, 3, &nanTest, &r1), -151);
  EXPECT_EQ(zomath_one_sample_t_test(X, 0, &good, &r1), -155);
  EXPECT_EQ(zomath_one_sample_t_test(M, 2, &good, &r1), -155);
  EXPECT_EQ(zomath_one_sample_t_test(nullptr, 3, &good, &r1), -156);
  EXPECT_EQ(zomath_t_test_one_sample(3, 1, 1, nullptr, 0, nullptr, &t, 0, 0), -11);
  EXPECT_EQ(zomath_t_test_one_sample(3, 1, 1, &p, 0, nullptr, &t, 0, 3), -51);
  EXPECT_EQ(zomath_t_test_one_sample(0, 1, 1, &p, 0, nullptr, &t, 0, 0), -2);
  EXPECT_EQ(zomath_two_sample_t_test(X, 3, Y, 3, &tail3, &r2, nullptr), -151);
  EXPECT_EQ(zomath_two_sample_t_test(X, -1, Y, 3, &good, &r2, nullptr), -155);
  EXPECT_EQ(zomath_two_sample_t_test_pair(X, 3, Y, 2, &good, &r2), -175);
  EXPECT_EQ(zomath_two_sample_t_test_pair(X, 0, Y, 0, &good, &r2), -165);
  EXPECT_EQ(zomath_two_sample_t_test_pair(M, 2, Y, 2, &good, &r2), -165);
  EXPECT_EQ(zomath_two_sample_t_test_pair(X, 3, Y, 3, &tail3, &r2), -151);
  EXPECT_TRUE(r2.N1 == 0 && r2.N2 == 0 && r2.Mean1 == NANUM);  // reset after a bad tail
  EXPECT_EQ(zomath_chi_square_test(3, X, &zero, &c), -151);
  EXPECT_EQ(zomath_chi_square_test(3, X, &tail3, &c), -151);
  EXPECT_EQ(zomath_two_sample_chi_square_test(&zero, &s2, &c2), -157);
  EXPECT_EQ(zomath_two_sample_chi_square_test(&tail3, &s2, &c2), -157);
  EXPECT_EQ(zomath_two_sample_chi_square_test(&good, &negDof, &c2), -165);
  EXPECT_EQ(zomath_two_sample_chi_square_test(&good, &zeroDof, &c2), 0);
  EXPECT_TRUE(c2.DOF == 0 && c2.Chi == NANUM);
  EXPECT_EQ(zomath_f_test(3, X, 3, Y, &tail3, &f), -151);
  EXPECT_EQ(zomath_f_test(-1, X, -1, Y, &good, &f), -310);  // the summary codes add up
  EXPECT_EQ(zomath_row_ttest2(0, 3, X, Y, 0, 0, lo, hi, &p), -3);
  EXPECT_EQ(zomath_row_ttest2(1, 3, X, nullptr, 0, 0, lo, hi, &p), -11);
  EXPECT_EQ(zomath_confidence_levels_for_mean(L, 0, &r1, lo, hi), -151);
  EXPECT_EQ(zomath_confidence_levels_for_mean(L, 1, &badDof, lo, hi), -1);
  EXPECT_EQ(zomath_confidence_levels_for_variance(2, L, 1, 3, lo, hi), -151);
  EXPECT_EQ(zomath_two_sample_confidence_levels_for_mean_equal_var(L, 2, &s2, lo, hi), -151);
  EXPECT_EQ(zomath_two_sample_confidence_levels_for_mean_unequal_var(L, 0, &s2, lo, hi), 0);
  EXPECT_EQ(zomath_two_sample_confidence_levels_for_mean_pair(L, 2, &s2, &good, lo, hi), -151);
  EXPECT_EQ(zomath_two_sample_confidence_levels_for_variance(0, L, sds, sizes, lo, hi), -151);
  EXPECT_EQ(zomath_two_sample_confidence_levels_for_variance(2, L, sds, sizes, lo, hi), 0);
  EXPECT_TRUE(lo[0] < 0.25 && 0.25 < hi[0] && lo[1] == NANUM);  // a bad level: NANUM, no code
}

// Each row pair is the pooled two-sample test of those rows; any other tail is two-sided.
TEST(HypothesisRules, RowTests) {
  const double m1[] = {1, 2, 3, 5, 2, NANUM, 4, 7, NANUM, NANUM, NANUM, NANUM, 1, 1, 1, 1};
  const double m2[] = {0, 1, 1, 2, 1, 3, NANUM, 2, 1, 2, 3, 4, 1, 1, 1, 1};
  double t[4], dof[4], p[4];
  EXPECT_EQ(zomath_row_ttest2(4, 4, m1, m2, 0.5, 7, t, dof, p), 0);
  const tTestMean2SampleResults r[2] = {two({1, 2, 3, 5}, {0, 1, 1, 2}, 0.5),
                                        two({2, 4, 7}, {1, 3, 2}, 0.5)};
  for (int i = 0; i < 2; ++i)
    EXPECT_TRUE(t[i] == r[i].tValue && dof[i] == r[i].DOF && p[i] == r[i].Prob);
  for (int i = 2; i < 4; ++i) EXPECT_TRUE(t[i] == NANUM && dof[i] == NANUM && p[i] == NANUM) << i;
}

// Odd values anywhere give a documented code and never a probability outside [0, 1] or a NaN
// where NANUM is promised (the sanitizer build runs this too).
TEST(HypothesisRules, OddInputs) {
  const std::vector<Data> samples = {
      {NAN, 1, 2}, {INFINITY, 1, 2}, {1e308, -1e308, 1e308}, {1e-320, 2e-320, 5e-321}, {NANUM, 1}};
  const auto probability = [](double p) { return p == NANUM || (p >= 0 && p <= 1); };
  const double L[] = {0.95, NAN};
  for (const auto& x : samples) {
    for (const auto& y : samples) {
      for (const double test : {1.0, -HUGE_VAL}) {
        const HypotTestOptions o{0, test, 0}, v{0, 1, 0};
        const double *X = x.data(), *Y = y.data();
        const int nx = size(x), ny = size(y);
        tTestMeanResults r1;
        tTestMean2SampleResults r2, r3;
        tTestResults w;
        FTestResults f;
        ChiSqTestResults c;
        ChiSq2SampleResults c2;
        double lo[2], hi[2];
        const int c1 = zomath_one_sample_t_test(X, nx, &o, &r1);
        EXPECT_TRUE(c1 >= 0 || c1 == -151) << c1;
        EXPECT_EQ(zomath_two_sample_t_test(X, nx, Y, ny, &o, &r2, &w), test == 1 ? 0 : -151);
        const int c3 = nx != ny ? 0 : zomath_two_sample_t_test_pair(X, nx, Y, ny, &o, &r3);
        EXPECT_TRUE(c3 == 0 || c3 == -151) << c3;
        zomath_f_test(nx, X, ny, Y, &o, &f);
        zomath_chi_square_test(nx, X, &v, &c);
        zomath_two_sample_chi_square_test(&v, &r2, &c2);
        EXPECT_TRUE(probability(r1.Prob) && probability(r2.Prob) && probability(w.Prob) &&
                    (nx != ny || probability(r3.Prob)) && probability(f.Prob) &&
                    probability(c.Prob) && probability(c2.Prob));
        EXPECT_EQ(zomath_two_sample_confidence_levels_for_mean_equal_var(L, 2, &r2, lo, hi), -151);
        EXPECT_FALSE(std::isnan(lo[0]) || std::isnan(hi[0]) || std::isnan(lo[1]));
        zomath_confidence_levels_for_mean(L, 1, &r1, lo, hi);
        zomath_confidence_levels_for_variance(1, L, r1.SD, r1.DOF, lo, hi);
        EXPECT_FALSE(std::isnan(lo[0]) || std::isnan(hi[0]));
      }
    }
  }
}

}  // namespace
