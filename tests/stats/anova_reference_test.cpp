// The analysis of variance against references made by tests/tools/make_anova_reference.py:
// exact sums (rational arithmetic on the data's doubles) and mpmath probabilities, checked there
// against SciPy (f_oneway, levene) and statsmodels (anova_lm type III, pairwise_tukeyhsd,
// multipletests). Errors are relative to the reference; the worst of each group is printed.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <vector>

#include "../scalar/reference.h"
#include "zomath/stats.h"

namespace {

using zomath::testing::ErrorStats;
using zomath::testing::load_reference;
using Key = std::vector<double>;

// Sums, mean squares and F follow from exact sums through a few roundings, probabilities from
// the platform's F and t routines (1e-14 and better): 1e-12 leaves room for a design whose
// sums cancel (the two-way table's differences of residual sums, statsmodels' own to 1e-13).
// The studentized range is integrated to about 1e-12 absolute, and SciPy's reference is no
// closer: 1e-10 for its probabilities (absolute) and the Tukey-Kramer limits.
constexpr double kTolerance = 1e-12;
constexpr double kStudentizedRangeTolerance = 1e-10;

struct Table {
  std::map<Key, zomath::testing::ReferenceRow> rows;
  explicit Table(const char* path) {
    for (const auto& r : load_reference(path)) rows[r.args] = r;
  }
  // Adds the error of `value` at key + {quantity} to e.
  void check(ErrorStats& e, Key key, double quantity, double value, bool absolute = false) const {
    key.push_back(quantity);
    const auto it = rows.find(key);
    ASSERT_NE(it, rows.end());
    auto row = it->second;
    if (absolute) row.scale = 1;
    e.add(row, value);
  }
};

void report(const char* what, const ErrorStats& e, double tolerance) {
  std::printf("%-34s %4d values, worst %.2e, rms %.2e\n", what, e.count(), e.worst(), e.rms());
  EXPECT_LE(e.worst(), tolerance) << what << ": " << e.describe();
}

// Rows "set, i, j, value, 1" of a samples table: per set, the i and j columns and the values.
struct Columns {
  std::vector<int> i, j;
  std::vector<double> v;
};
std::map<int, Columns> samples(const char* path) {
  std::map<int, Columns> sets;
  for (const auto& r : load_reference(path)) {
    Columns& c = sets[static_cast<int>(r.args[0])];
    c.i.push_back(static_cast<int>(r.args[1]));
    c.j.push_back(r.args.size() > 2 ? static_cast<int>(r.args[2]) : 0);
    c.v.push_back(r.value);
  }
  return sets;
}

TEST(AnovaReference, OneWayAndEqualVarianceTables) {
  const Table ref("stats/anova_reference.csv");
  const auto sets = samples("stats/anova_samples.csv");
  ASSERT_EQ(sets.size(), 7u);
  ErrorStats tables, probabilities, fit;
  for (const auto& [s, c] : sets) {
    std::vector<int> sizes(c.i.back() + 1);
    for (int g : c.i) ++sizes[g];
    const int n = static_cast<int>(c.v.size()), k = static_cast<int>(sizes.size());
    for (int method = 0; method <= 3; ++method) {
      ANOVATable t;
      ANOVAFitSummary f;
      ASSERT_EQ(method ? zomath_anova_equal_variance_test(c.v.data(), n, k, sizes.data(), nullptr,
                                                          0, &t, method)
                       : zomath_anova_one_way(c.v.data(), n, k, sizes.data(), nullptr, 0, &f, &t),
                0);
      const Key key{double(s), double(method)};
      const double got[] = {t.SSq1, t.SSq2, t.MeanSq1, t.MeanSq2, t.FValue, t.PValue,
                            f.RSquare, f.GrandMean, f.RootMSE};
      for (int q = 0; q < (method ? 6 : 9); ++q)
        ref.check(q == 5 ? probabilities : q > 5 ? fit : tables, key, q, got[q]);
    }
  }
  report("one-way sums, mean squares, F", tables, kTolerance);
  report("one-way probabilities", probabilities, kTolerance);
  report("R-squared, grand mean, root MSE", fit, kTolerance);
}

TEST(AnovaReference, MeanComparisons) {
  const Table ref("stats/comparison_reference.csv");
  std::map<int, std::vector<zomath::testing::ReferenceRow>> inputs;
  for (const auto& r : load_reference("stats/comparison_inputs.csv"))
    inputs[static_cast<int>(r.args[0])].push_back(r);
  ASSERT_EQ(inputs.size(), 5u);
  ErrorStats values, probabilities, tukey, limits, tukeyLimits, flags;
  for (const auto& [s, rows] : inputs) {
    std::vector<double> means;
    std::vector<int> counts;
    for (const auto& r : rows) {
      means.push_back(r.value);
      counts.push_back(static_cast<int>(r.args[2]));
    }
    const double mse = rows[0].args[3], alpha = rows[0].args[5];
    const int dof = static_cast<int>(rows[0].args[4]);
    const int k = static_cast<int>(means.size()), m = k * (k - 1) / 2;
    for (int method : {1, 2, 3, 4, 5, 7, 8}) {
      std::vector<int> index(m), sig(m);
      std::vector<double> diff(m), lcl(m), ucl(m), sem(m), stat(m), prob(m), level(m);
      ASSERT_EQ(zomath_anova_mean_comparison(means.data(), k, counts.data(), k, mse, dof, alpha, k,
                                             index.data(), m, diff.data(), m, lcl.data(), m,
                                             ucl.data(), m, sem.data(), m, stat.data(), m,
                                             prob.data(), m, sig.data(), m, level.data(), m,
                                             method),
                0);
      const bool studentized = method == COMPARE_TUKEY;
      for (int c = 0; c < m; ++c) {
        const Key key{double(s), double(method), double(c)};
        ref.check(flags, key, 8, index[c], true);
        ref.check(flags, key, 6, sig[c], true);
        ref.check(values, key, 0, diff[c]);
        ref.check(values, key, 1, sem[c]);
        ref.check(values, key, 2, stat[c]);
        ref.check(studentized ? tukey : probabilities, key, 3, prob[c], studentized);
        if (method <= COMPARE_SCHEFFE) {
          ref.check(studentized ? tukeyLimits : limits, key, 4, lcl[c]);
          ref.check(studentized ? tukeyLimits : limits, key, 5, ucl[c]);
        } else {
          ref.check(values, key, 7, level[c]);
        }
      }
    }
  }
  report("pair numbers and significance flags", flags, 0);
  report("differences, errors, statistics", values, kTolerance);
  report("t and F probabilities", probabilities, kTolerance);
  report("studentized range probabilities", tukey, kStudentizedRangeTolerance);
  report("simultaneous limits", limits, kTolerance);
  report("Tukey-Kramer limits", tukeyLimits, kStudentizedRangeTolerance);
}

TEST(AnovaReference, TwoWayTypeThreeTables) {
  const Table ref("stats/anova2_reference.csv");
  const auto sets = samples("stats/anova2_samples.csv");
  ASSERT_EQ(sets.size(), 5u);
  ErrorStats sums, probabilities, degrees;
  for (const auto& [s, c] : sets) {
    const int na = *std::max_element(c.i.begin(), c.i.end());
    const int nb = *std::max_element(c.j.begin(), c.j.end());
    for (int inter : {0, 1}) {
      ANOVA2Table t;
      ASSERT_EQ(zomath_stats_anova_two_way_compute_anova_table(
                    inter, c.i.data(), na, c.j.data(), nb, c.v.data(), int(c.v.size()), nullptr,
                    nullptr, nullptr, nullptr, &t),
                0);
      const ANOVA2TableRow* rows[] = {&t.FactorA, &t.FactorB, &t.Interaction,
                                      &t.Model,   &t.Error,   &t.CorrectedTotal};
      for (int r = 0; r < 6; ++r) {
        if (r == 2 && !inter) continue;
        const Key key{double(s), double(inter), double(r)};
        ref.check(degrees, key, 0, rows[r]->DOF, true);
        ref.check(sums, key, 1, rows[r]->SSq);
        if (r < 5) ref.check(sums, key, 2, rows[r]->MeanSq);
        if (r < 4) ref.check(sums, key, 3, rows[r]->FValue);
        if (r < 4) ref.check(probabilities, key, 4, rows[r]->PValue);
      }
    }
  }
  report("two-way degrees of freedom", degrees, 0);
  report("two-way sums, mean squares, F", sums, kTolerance);
  report("two-way probabilities", probabilities, kTolerance);
}

TEST(AnovaReference, FittedModelTable) {
  const Table ref("stats/fit_table_reference.csv");
  ErrorStats e;
  for (double c : {0.0, 1.0}) {
    auto input = [&](int q) { return ref.rows.at({c, double(q)}).value; };
    std::vector<double> x, y, w;
    for (int i = 0; ref.rows.count({c, 10.0 + i}); ++i) {
      x.push_back(input(10 + i));
      y.push_back(input(1000 + i));
      w.push_back(input(2000 + i));
    }
    const int n = static_cast<int>(x.size()), params = static_cast<int>(input(3000));
    ANOVATable t;
    double corrected[3];
    ASSERT_EQ(zomath_nlsf_anova(n, x.data(), y.data(), params, input(3001), &t,
                                w[0] == NANUM ? nullptr : w.data(), corrected),
              0);
    EXPECT_EQ(t.DOF1 + t.DOF2, t.DOF3);
    EXPECT_EQ(t.DOF2, n - params);
    EXPECT_EQ(corrected[0], n - 1);
    const double got[] = {t.SSq1, t.MeanSq1, t.MeanSq2, t.SSq3, t.FValue, t.PValue, corrected[1]};
    for (int q = 0; q < 7; ++q) ref.check(e, {c}, q, got[q]);
  }
  report("fitted-model tables", e, kTolerance);
}

}  // namespace
