// The analysis of variance against references made by tests/tools/make_anova_reference.py:
// exact sums (rational arithmetic on the data's doubles) and mpmath probabilities, checked there
// against SciPy (f_oneway, levene) and statsmodels (anova_lm type III, pairwise_tukeyhsd,
// multipletests). Errors are relative to the reference; the worst of each group is printed.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "../scalar/reference.h"
#include "zomath/stats.h"

namespace {

using zomath::testing::ErrorStats;
using zomath::testing::load_reference;
using zomath::testing::ReferenceRow;

// Sums, mean squares and F follow from exact sums through a few roundings, probabilities from
// the platform's F and t routines (1e-14 and better): 1e-12 leaves room for a design whose
// sums cancel (the two-way table's differences of residual sums, statsmodels' own to 1e-13).
// The studentized range is integrated to about 1e-12 absolute, and SciPy's reference is no
// closer: 1e-10 for its probabilities and the Tukey-Kramer limits.
constexpr double kTolerance = 1e-12;
constexpr double kStudentizedRangeTolerance = 1e-10;

// Rows of a table keyed by their arguments.
std::map<std::vector<double>, ReferenceRow> by_args(const std::vector<ReferenceRow>& rows) {
  std::map<std::vector<double>, ReferenceRow> m;
  for (const auto& r : rows) m[r.args] = r;
  return m;
}

void report(const char* what, const ErrorStats& e, double tolerance) {
  std::printf("%-34s %4d values, worst %.2e, rms %.2e\n", what, e.count(), e.worst(), e.rms());
  EXPECT_LE(e.worst(), tolerance) << what << ": " << e.describe();
}

struct OneWaySet {
  std::vector<double> data;
  std::vector<int> sizes;
};

std::vector<OneWaySet> one_way_sets() {
  std::vector<OneWaySet> sets;
  for (const auto& r : load_reference("stats/anova_samples.csv")) {
    const std::size_t s = static_cast<std::size_t>(r.args[0]), g = static_cast<std::size_t>(r.args[1]);
    if (sets.size() <= s) sets.resize(s + 1);
    if (sets[s].sizes.size() <= g) sets[s].sizes.resize(g + 1, 0);
    sets[s].data.push_back(r.value);
    ++sets[s].sizes[g];
  }
  return sets;
}

TEST(AnovaReference, OneWayAndEqualVarianceTables) {
  const auto sets = one_way_sets();
  const auto ref = by_args(load_reference("stats/anova_reference.csv"));
  ASSERT_EQ(sets.size(), 7u);
  ErrorStats tables, probabilities, fit;
  for (std::size_t s = 0; s < sets.size(); ++s) {
    const OneWaySet& set = sets[s];
    const int n = static_cast<int>(set.data.size()), k = static_cast<int>(set.sizes.size());
    std::vector<tTestMeanResults> groups(k);
    for (int method = 0; method <= 3; ++method) {
      ANOVATable t;
      ANOVAFitSummary f;
      const int code = method == 0 ? zomath_anova_one_way(set.data.data(), n, k, set.sizes.data(),
                                                           groups.data(), k, &f, &t)
                                   : zomath_anova_equal_variance_test(set.data.data(), n, k,
                                                                      set.sizes.data(),
                                                                      groups.data(), k, &t, method);
      ASSERT_EQ(code, 0) << "set " << s << " method " << method;
      auto check = [&](ErrorStats& e, int quantity, double value) {
        const auto it = ref.find({double(s), double(method), double(quantity)});
        ASSERT_NE(it, ref.end()) << s << " " << method << " " << quantity;
        e.add(it->second, value);
      };
      const double values[] = {t.SSq1, t.SSq2, t.MeanSq1, t.MeanSq2, t.FValue};
      for (int q = 0; q < 5; ++q) check(tables, q, values[q]);
      check(probabilities, 5, t.PValue);
      if (method == 0) {
        check(fit, 6, f.RSquare);
        check(fit, 7, f.GrandMean);
        check(fit, 8, f.RootMSE);
      }
    }
  }
  report("one-way sums, mean squares, F", tables, kTolerance);
  report("one-way probabilities", probabilities, kTolerance);
  report("R-squared, grand mean, root MSE", fit, kTolerance);
}

TEST(AnovaReference, MeanComparisons) {
  struct Inputs {
    std::vector<double> means;
    std::vector<int> counts;
    double mse = 0, alpha = 0;
    int dof = 0;
  };
  std::map<int, Inputs> sets;
  for (const auto& r : load_reference("stats/comparison_inputs.csv")) {
    Inputs& in = sets[static_cast<int>(r.args[0])];
    in.counts.push_back(static_cast<int>(r.args[2]));
    in.mse = r.args[3];
    in.dof = static_cast<int>(r.args[4]);
    in.alpha = r.args[5];
    in.means.push_back(r.value);
  }
  const auto ref = by_args(load_reference("stats/comparison_reference.csv"));
  ASSERT_EQ(sets.size(), 5u);
  ErrorStats values, probabilities, tukey, limits, tukeyLimits;
  int flags = 0, flagErrors = 0;
  for (const auto& [s, in] : sets) {
    const int k = static_cast<int>(in.means.size()), m = k * (k - 1) / 2;
    for (int method : {1, 2, 3, 4, 5, 7, 8}) {
      std::vector<int> index(m), sig(m);
      std::vector<double> diff(m), lcl(m), ucl(m), sem(m), stat(m), prob(m), alpha(m);
      ASSERT_EQ(zomath_anova_mean_comparison(in.means.data(), k, in.counts.data(), k, in.mse,
                                             in.dof, in.alpha, k, index.data(), m, diff.data(), m,
                                             lcl.data(), m, ucl.data(), m, sem.data(), m,
                                             stat.data(), m, prob.data(), m, sig.data(), m,
                                             alpha.data(), m, method),
                0);
      for (int c = 0; c < m; ++c) {
        auto row = [&](int quantity) {
          return ref.at({double(s), double(method), double(c), double(quantity)});
        };
        EXPECT_EQ(index[c], row(8).value) << s << " " << method << " " << c;
        values.add(row(0), diff[c]);
        values.add(row(1), sem[c]);
        values.add(row(2), stat[c]);
        if (method == COMPARE_TUKEY) {  // absolute: the probabilities are 1 - P(Q <= q)
          ReferenceRow p = row(3);
          p.scale = 1;
          tukey.add(p, prob[c]);
        } else {
          probabilities.add(row(3), prob[c]);
        }
        if (method <= COMPARE_SCHEFFE) {
          ErrorStats& e = method == COMPARE_TUKEY ? tukeyLimits : limits;
          e.add(row(4), lcl[c]);
          e.add(row(5), ucl[c]);
        } else {
          values.add(row(7), alpha[c]);
        }
        ++flags;
        flagErrors += sig[c] != row(6).value;
      }
    }
  }
  report("differences, errors, statistics", values, kTolerance);
  report("t and F probabilities", probabilities, kTolerance);
  report("studentized range probabilities", tukey, kStudentizedRangeTolerance);
  report("simultaneous limits", limits, kTolerance);
  report("Tukey-Kramer limits", tukeyLimits, kStudentizedRangeTolerance);
  EXPECT_EQ(flagErrors, 0) << "of " << flags << " significance flags";
}

TEST(AnovaReference, TwoWayTypeThreeTables) {
  struct Set {
    std::vector<int> a, b;
    std::vector<double> y;
  };
  std::map<int, Set> sets;
  for (const auto& r : load_reference("stats/anova2_samples.csv")) {
    Set& s = sets[static_cast<int>(r.args[0])];
    s.a.push_back(static_cast<int>(r.args[1]));
    s.b.push_back(static_cast<int>(r.args[2]));
    s.y.push_back(r.value);
  }
  const auto ref = by_args(load_reference("stats/anova2_reference.csv"));
  ASSERT_EQ(sets.size(), 5u);
  ErrorStats sums, probabilities;
  int dofErrors = 0;
  for (const auto& [s, set] : sets) {
    const int n = static_cast<int>(set.y.size());
    const int na = *std::max_element(set.a.begin(), set.a.end());
    const int nb = *std::max_element(set.b.begin(), set.b.end());
    for (int inter : {0, 1}) {
      ANOVA2Table t;
      ASSERT_EQ(zomath_stats_anova_two_way_compute_anova_table(inter, set.a.data(), na,
                                                                set.b.data(), nb, set.y.data(), n,
                                                                nullptr, nullptr, nullptr,
                                                                nullptr, &t),
                0);
      const ANOVA2TableRow* rows[] = {&t.FactorA, &t.FactorB, &t.Interaction,
                                      &t.Model,   &t.Error,   &t.CorrectedTotal};
      for (int r = 0; r < 6; ++r) {
        if (r == 2 && !inter) {
          EXPECT_EQ(t.Interaction.DOF, 0);
          EXPECT_EQ(t.Interaction.SSq, NANUM);
          continue;
        }
        const std::vector<double> key{double(s), double(inter), double(r)};
        auto at = [&](int q) {
          auto k = key;
          k.push_back(q);
          return ref.find(k);
        };
        dofErrors += rows[r]->DOF != at(0)->second.value;
        sums.add(at(1)->second, rows[r]->SSq);
        if (r == 5) continue;
        sums.add(at(2)->second, rows[r]->MeanSq);
        if (r == 4) continue;
        sums.add(at(3)->second, rows[r]->FValue);
        probabilities.add(at(4)->second, rows[r]->PValue);
      }
    }
  }
  EXPECT_EQ(dofErrors, 0);
  report("two-way sums, mean squares, F", sums, kTolerance);
  report("two-way probabilities", probabilities, kTolerance);
}

TEST(AnovaReference, FittedModelTable) {
  const auto rows = load_reference("stats/fit_table_reference.csv");
  std::map<int, std::map<int, double>> cases;
  for (const auto& r : rows) cases[static_cast<int>(r.args[0])][static_cast<int>(r.args[1])] = r.value;
  ASSERT_EQ(cases.size(), 2u);
  ErrorStats e;
  for (const auto& [c, q] : cases) {
    std::vector<double> x, y, w;
    for (int i = 0; q.count(10 + i); ++i) {
      x.push_back(q.at(10 + i));
      y.push_back(q.at(1000 + i));
      w.push_back(q.at(2000 + i));
    }
    const int n = static_cast<int>(x.size()), params = static_cast<int>(q.at(3000));
    ANOVATable t;
    double corrected[3];
    ASSERT_EQ(zomath_nlsf_anova(n, x.data(), y.data(), params, q.at(3001), &t,
                                w[0] == NANUM ? nullptr : w.data(), corrected),
              0);
    EXPECT_EQ(t.DOF1, params);
    EXPECT_EQ(t.DOF2, n - params);
    EXPECT_EQ(t.DOF3, n);
    EXPECT_EQ(corrected[0], n - 1);
    const double got[] = {t.SSq1, t.MeanSq1, t.MeanSq2, t.SSq3, t.FValue, t.PValue, corrected[1]};
    for (int k = 0; k < 7; ++k)
      for (const auto& r : rows)
        if (r.args[0] == c && r.args[1] == k) e.add(r, got[k]);
  }
  report("fitted-model tables", e, kTolerance);
}

}  // namespace
