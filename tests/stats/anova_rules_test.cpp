// The behaviours of the analysis of variance exports that a caller relies on: degenerate
// designs, the codes and what a failed call leaves, the Holm walk, the two-way layout.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "zomath/scalar.h"
#include "zomath/stats.h"

namespace {

const double kNaN = std::nan("");

struct OneWay {
  int code;
  ANOVATable t;
  ANOVAFitSummary f;
  tTestMeanResults g[4];
};

OneWay one_way(const std::vector<double>& x, const std::vector<int>& sizes) {
  OneWay r;
  r.code = zomath_anova_one_way(x.data(), int(x.size()), int(sizes.size()), sizes.data(), r.g, 4,
                                &r.f, &r.t);
  return r;
}

TEST(AnovaRules, DegenerateOneWayDesigns) {
  // One group: no between degrees. One point a group: no within degrees. Constant data: no
  // test, R-squared 0. An empty group is no group. NaN data: no sums.
  const OneWay one = one_way({1, 2, 4}, {3}), points = one_way({1, 5, 2}, {1, 1, 1});
  const OneWay flat = one_way({3, 3, NANUM, 3, 3}, {2, 3});
  const OneWay empty = one_way({1, 2, NANUM, 4, 6}, {2, 1, 2});
  const OneWay nan = one_way({1, kNaN, 2, 3}, {2, 2});
  for (const OneWay* r : {&one, &points, &flat, &empty, &nan}) EXPECT_EQ(r->code, 0);
  EXPECT_EQ(one.t.DOF1, 0);
  EXPECT_NEAR(one.t.SSq2, 14.0 / 3, 1e-15);
  EXPECT_EQ(points.t.DOF2, 0);
  EXPECT_NEAR(points.t.SSq1, 26.0 / 3, 4e-15);
  for (double v : {one.t.MeanSq1, one.t.FValue, one.t.PValue, points.t.MeanSq2, points.t.FValue,
                   flat.t.FValue, flat.t.PValue, nan.t.SSq1, nan.t.FValue})
    EXPECT_EQ(v, NANUM);
  EXPECT_EQ(flat.f.RSquare, 0);
  EXPECT_EQ(flat.t.SSq1 + flat.t.SSq2, 0);
  EXPECT_EQ(flat.g[1].N, 2);
  EXPECT_EQ(empty.g[1].N, 0);
  EXPECT_EQ(empty.t.DOF1, 1);
  EXPECT_EQ(empty.t.DOF2, 2);
}

TEST(AnovaRules, OneWayTailAndCodes) {
  // A tail beyond the groups is not read.
  const std::vector<double> x = {1.5, 2.25, 1.75, 3.5, 3.0, 4.25, 2.0, 2.75, kNaN, 1e308};
  EXPECT_EQ(one_way(x, {3, 3, 2}).t.FValue,
            one_way(std::vector<double>(x.begin(), x.begin() + 8), {3, 3, 2}).t.FValue);
  // Codes, each leaving NANUM and counts of -1.
  const double d[] = {1, 2, 3, 4};
  const int two[] = {2, 2}, negative[] = {2, -1};
  const struct {
    const double* data;
    int n, groups;
    const int* sizes;
    int records, method, code;
  } cases[] = {{nullptr, 4, 2, two, 3, 0, -156}, {d, 4, 2, nullptr, 3, 0, -156},
               {d, 4, 2, two, 3, 5, -151},       {d, 4, 2, two, 3, -1, -151},
               {d, 4, 2, two, 1, 0, -98},        {d, 4, 2, negative, 3, 0, -98},
               {d, 3, 2, two, 3, 1, -98},        {d, -1, 0, two, 3, 0, -98}};
  for (const auto& c : cases) {
    tTestMeanResults g[3];
    ANOVATable t;
    t.FValue = t.DOF1 = g[0].N = 7;
    EXPECT_EQ(zomath_anova_equal_variance_test(c.data, c.n, c.groups, c.sizes, g, c.records, &t,
                                               c.method),
              c.code);
    EXPECT_TRUE(t.FValue == NANUM && t.DOF1 == NANUM && g[0].N == -1);
  }
  EXPECT_EQ(zomath_anova_equal_variance_test(d, 4, 2, two, nullptr, 0, nullptr, 4), 0);
}

struct Comparison {
  int code;
  std::vector<int> index, sig;
  std::vector<double> diff, lcl, ucl, sem, stat, prob, alpha;
};

// The comparison of k means with outputs of k (k - 1) / 2 + extra values, filled with 7 before.
Comparison compare(const std::vector<double>& means, const std::vector<int>& counts, int dof,
                   int method, double level = 0.05, int extra = 0) {
  const int k = int(means.size()), m = k * (k - 1) / 2 + extra;
  Comparison c;
  c.index.assign(m, 7);
  c.sig.assign(m, 7);
  for (auto* v : {&c.diff, &c.lcl, &c.ucl, &c.sem, &c.stat, &c.prob, &c.alpha}) v->assign(m, 7);
  c.code = zomath_anova_mean_comparison(
      means.data(), k, counts.data(), k, 0.5, dof, level, k, c.index.data(), m, c.diff.data(), m,
      c.lcl.data(), m, c.ucl.data(), m, c.sem.data(), m, c.stat.data(), m, c.prob.data(), m,
      c.sig.data(), m, c.alpha.data(), m, method);
  return c;
}

TEST(AnovaRules, PairWithoutCountSkipsEveryInterval) {
  for (int method = COMPARE_TUKEY; method <= COMPARE_NONE; ++method) {
    const Comparison c = compare({1, 5, 9}, {4, 0, 5}, 6, method, 0.05, 1);
    EXPECT_EQ(c.code, 0);
    EXPECT_EQ(c.sem[0], NANUM);  // pairs (1, 0) and (2, 1) hold the empty group
    EXPECT_EQ(c.sem[2], NANUM);
    EXPECT_NEAR(c.sem[1], std::sqrt(0.5 * (0.25 + 0.2)), 1e-16);
    EXPECT_EQ(c.diff[2], 4);
    EXPECT_EQ(c.prob[1] == NANUM, method == COMPARE_NONE);
    for (int p = 0; p < 3; ++p) EXPECT_TRUE(c.lcl[p] == NANUM && c.sig[p] == 0);
    EXPECT_TRUE(c.diff[3] == NANUM && c.index[3] == 0);  // room beyond the pairs: start values
  }
}

TEST(AnovaRules, HolmWalkStopsAtTheFirstFailure) {
  // Means 0, a, b with equal counts: pairs (1,0), (2,0), (2,1) have two-sided p of 0.03, tiny,
  // 0.04. Thresholds for 3 pairs at 0.05: 0.0167, 0.025, 0.05. The walk passes the tiny one,
  // fails 0.03 > 0.025, and leaves 0.04 unmarked though it is below its threshold.
  const int dof = 20;
  const double se = std::sqrt(0.5 * 2 / 5);
  const double a = tinv(0.03, dof, 0, nullptr) * se, b = a + tinv(0.04, dof, 0, nullptr) * se;
  for (int method : {COMPARE_HOLM_BONFERRONI, COMPARE_HOLM_SIDAK}) {
    const Comparison c = compare({0, a, b}, {5, 5, 5}, dof, method);
    ASSERT_EQ(c.code, 0);
    EXPECT_EQ(c.index, (std::vector<int>{1, 0, 2}));
    EXPECT_NEAR(c.prob[1], 0.03, 1e-14);
    EXPECT_NEAR(c.prob[2], 0.04, 1e-14);
    EXPECT_EQ(c.sig, (std::vector<int>{1, 0, 0}));
    EXPECT_NEAR(c.alpha[0], method == COMPARE_HOLM_BONFERRONI ? 0.05 / 3 : 1 - std::cbrt(0.95),
                1e-17);
    EXPECT_EQ(c.alpha[2], 0.05);
    EXPECT_EQ(c.lcl[0], NANUM);
  }
}

TEST(AnovaRules, ComparisonCodes) {
  const struct {
    int dof, method;
    double level;
    int extra, code;
  } cases[] = {{5, 1, 0.0, 0, -196},  {5, 1, 1.0, 0, -196}, {5, 1, kNaN, 0, -196},
               {5, 0, 0.05, 0, -151}, {5, 9, 0.05, 0, -151}, {5, 1, 0.05, -1, -98},
               {0, 1, 0.05, 0, -170}};
  for (const auto& c : cases) {
    const Comparison r = compare({1, 2, 4}, {3, 3, 3}, c.dof, c.method, c.level, c.extra);
    EXPECT_EQ(r.code, c.code) << c.method << " " << c.level;
    EXPECT_TRUE(r.index[0] == 0 && r.prob[0] == NANUM);
    EXPECT_TRUE(r.alpha[0] == c.level || std::isnan(c.level));
  }
  const double means[] = {1, 2, 4};
  const int counts[] = {3, 3, 3};
  double d[3], p[4], a[3];
  int i[3], s[3];
  // Holm needs probability and threshold arrays of one size; every method its arrays.
  EXPECT_EQ(zomath_anova_mean_comparison(means, 3, counts, 3, 1, 5, 0.05, 3, i, 3, d, 3, d, 3, d,
                                         3, d, 3, d, 3, p, 4, s, 3, a, 3, 7),
            -151);
  EXPECT_EQ(zomath_anova_mean_comparison(means, 3, counts, 3, 1, 5, 0.05, 3, i, 3, d, 3, d, 3, d,
                                         3, d, 3, d, 3, p, 3, s, 3, nullptr, 3, 1),
            -156);
  // The two-way form checks its own arguments, then returns 0 whatever the comparison says.
  const ANOVA2TotalStats levels[2] = {{4, 1.0, 1, 0.5, 1, 0, 4}, {4, 3.0, 1, 0.5, 1, 1, 3}};
  auto two_way = [&](double dof, int method, int room) {
    return zsANOVA2Way_Means_Comparison(levels, 2, 1, dof, 0.05, 2, i, room, d, 1, d, 1, d, 1, d,
                                        1, d, 1, p, 1, s, 1, a, 1, method);
  };
  EXPECT_EQ(two_way(0.5, 2, 1), 0);  // nDOF 0 inside
  EXPECT_EQ(p[0], NANUM);
  EXPECT_EQ(two_way(6, 2, 1), 0);
  // Means 3 and 1 on 3 and 4 valid points (NonMissing), one pair: Bonferroni is the t test.
  EXPECT_NEAR(p[0], tcdf(2 / std::sqrt(1.0 / 4 + 1.0 / 3), 6, 0, nullptr), 1e-15);
  EXPECT_EQ(two_way(6, 0, 1), -151);
  EXPECT_EQ(two_way(6, 1, 2), -98);
}

TEST(AnovaRules, TwoWayLayoutAndDegenerateData) {
  // 2 x 3 levels, a missing value in cell (2, 3), cell (2, 2) empty.
  const std::vector<int> a = {1, 1, 1, 1, 2, 2, 2, 2, 2}, b = {1, 1, 2, 3, 1, 3, 3, 1, 3};
  const std::vector<double> y = {4, 6, 5, 9, 7, NANUM, 12, 8, 10};
  ANOVA2TotalStats sa[2], sb[3], total, cells[6];
  ANOVA2Table t;
  auto table = [&](int inter, const int* fa, int na, const double* data, int n) {
    return zomath_stats_anova_two_way_compute_anova_table(inter, fa, na, b.data(), 3, data, n, sa,
                                                           sb, &total, cells, &t);
  };
  ASSERT_EQ(table(1, a.data(), 2, y.data(), 9), 0);
  EXPECT_TRUE(total.N == 9 && total.Missing == 1 && sa[1].N == 5 && sa[1].NonMissing == 4);
  EXPECT_EQ(sa[1].Mean, 9.25);
  EXPECT_EQ(sb[2].Mean, 31.0 / 3);
  EXPECT_EQ(cells[5].Mean, 11);  // cell (2, 3) at (2 - 1) 3 + (3 - 1)
  EXPECT_EQ(cells[4].N, 0);
  // The empty cell takes one degree from the interaction; the degrees still add up.
  EXPECT_EQ(t.Interaction.DOF, 1);
  EXPECT_TRUE(t.Model.DOF + t.Error.DOF == 7 && t.CorrectedTotal.DOF == 7);
  EXPECT_NEAR(t.CorrectedTotal.SSq, 49.875, 1e-13);

  // Constant data: nothing to explain and no error; the degrees stand.
  const std::vector<double> flat(9, 2.5);
  ASSERT_EQ(table(0, a.data(), 2, flat.data(), 9), 0);
  for (const ANOVA2TableRow* r : {&t.FactorA, &t.FactorB, &t.Model})
    EXPECT_TRUE(r->SSq == 0 && r->MeanSq == 0 && r->FValue == NANUM);
  EXPECT_TRUE(t.FactorB.DOF == 2 && t.Error.SSq == 0);
  EXPECT_TRUE(t.Interaction.DOF == 0 && t.Interaction.SSq == NANUM);

  // Codes, each leaving the start values; NaN data reach the regression, whose code comes back.
  const int bad[] = {1, 3};
  const struct {
    int inter;
    const int* fa;
    int na, n, code;
  } cases[] = {{2, a.data(), 2, 9, -151}, {0, bad, 2, 2, -151}, {0, nullptr, 2, 9, -156},
               {0, a.data(), 0, 9, -98},  {0, a.data(), 2, -1, -98}};
  for (const auto& c : cases) {
    EXPECT_EQ(table(c.inter, c.fa, c.na, y.data(), c.n), c.code);
    EXPECT_TRUE(total.N == -1 && t.Model.SSq == NANUM && sa[0].Mean == NANUM);
  }
  std::vector<double> withNaN = y;
  withNaN[0] = kNaN;
  EXPECT_GT(table(0, a.data(), 2, withNaN.data(), 9), 0);
}

TEST(AnovaRules, CountsPerCellAndFittedModelCodes) {
  const int a[] = {10, -3, 10, 7, -3, 10}, b[] = {2, 2, 5, 5, 2, 2};
  const double y[] = {1, 2, 3, NANUM, 5, 6};
  int na = -1, nb = -1, counts[6];
  EXPECT_EQ(zomath_anova2_count_values_per_cell(6, y, a, b, &na, &nb, counts, 6), 0);
  EXPECT_TRUE(na == 3 && nb == 2);
  // A -3, 7, 10 by B 2, 5; the NANUM at (7, 5) not counted.
  EXPECT_EQ(std::vector<int>(counts, counts + 6), (std::vector<int>{2, 0, 0, 0, 2, 1}));
  EXPECT_EQ(zomath_anova2_count_values_per_cell(6, y, a, b, &na, &nb, counts, 5), -98);
  EXPECT_EQ(na * nb, 6);
  EXPECT_EQ(zomath_anova2_count_values_per_cell(6, y, a, b, &na, &nb, nullptr, 0), 0);
  EXPECT_EQ(zomath_anova2_count_values_per_cell(6, nullptr, a, b, &na, &nb, counts, 6), -156);
  EXPECT_EQ(zomath_anova2_count_values_per_cell(-1, y, a, b, &na, &nb, counts, 6), -98);

  const double x[] = {1, 2, 3, 4}, fy[] = {2, 3, 5, 4}, w[] = {1, -1, 1, 1};
  ANOVATable t;
  double total[3] = {7, 7, 7};
  EXPECT_EQ(zomath_nlsf_anova(4, nullptr, fy, 2, 1.0, &t, nullptr, total), -156);
  EXPECT_EQ(total[0], NANUM);
  EXPECT_EQ(zomath_nlsf_anova(1, x, fy, 2, 1.0, &t, nullptr, total), -150);
  EXPECT_EQ(zomath_nlsf_anova(4, x, fy, 2, 1.0, &t, w, total), -150);
  // A model that explains nothing (SSE = U = 54): MeanSq1 0 and no F.
  EXPECT_EQ(zomath_nlsf_anova(4, x, fy, 2, 54.0, &t, nullptr, total), 0);
  EXPECT_TRUE(t.MeanSq1 == 0 && t.FValue == NANUM && total[1] == 5 && total[2] == NANUM);
}

}  // namespace
