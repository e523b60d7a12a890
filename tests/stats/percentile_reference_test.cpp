// Percentiles, five-number summaries and density percentiles against exact rational references
// (tests/data/stats/percentile_reference.csv, checked there against NumPy 1.24 and SciPy). The
// samples hold ties, missing values and weights, values near the largest double, percents of
// 0, 100, beyond both, and at the ties g = 0 and g = 0.5 of every definition. A percentile is
// one value of the sample, the mean of two or a point between two, rounded once from long
// double: it must come within one unit in the last place of the sample's largest magnitude,
// and be NANUM exactly where the reference has none.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <vector>

#include "platform/hinges.h"
#include "stats/percentiles.h"
#include "stats_data.h"

namespace {

using namespace zomath::testing;

constexpr double kUlp = 2.220446049250313e-16;

const std::vector<Sample>& samples() {
  static const std::vector<Sample> sets = load_samples("stats/percentile_samples.csv");
  return sets;
}

// Reference rows of one kind, by set and then by the first argument.
std::map<int, std::map<double, std::vector<ReferenceRow>>> rows_of_kind(int kind) {
  std::map<int, std::map<double, std::vector<ReferenceRow>>> out;
  for (const ReferenceRow& row : load_reference("stats/percentile_reference.csv"))
    if (row.args[0] == kind) out[int(row.args[1])][row.args[2]].push_back(row);
  return out;
}

void add(ErrorStats& stats, const ReferenceRow& row, double got, const char* what) {
  EXPECT_EQ(got == NANUM, row.value == NANUM)
      << what << ": set " << row.args[1] << ", definition " << row.args[2] << ", percent "
      << row.args[3] << ": got " << got << ", reference " << row.value;
  stats.add(row, got);
}

// Every definition of every sample, through zomath_percentiles with all percents of a sample
// in one call, and through the percent list of zomath_quantiles, which must give the same
// numbers. Sets 12 and 13 have equal weights, which count as none: they must reproduce sets 2
// and 5. A weighted sample gives the weighted rule under each definition.
TEST(PercentileReference, EveryDefinition) {
  const auto table = rows_of_kind(0);
  ASSERT_FALSE(table.empty());
  const std::map<int, int> sameAs = {{12, 2}, {13, 5}};
  ErrorStats stats;
  for (int set = 0; set < 20; ++set) {
    const auto alias = sameAs.find(set);
    const auto it = table.find(alias == sameAs.end() ? set : alias->second);
    if (it == table.end()) continue;
    const Sample& s = samples()[set];
    for (const auto& [rule, refs] : it->second) {
      std::vector<double> percents;
      for (const ReferenceRow& row : refs) percents.push_back(row.args[3]);
      const int m = int(percents.size());
      for (int r = (rule < 0 ? 0 : int(rule)); r <= (rule < 0 ? 5 : int(rule)); ++r) {
        std::vector<double> got(m, 42.0), listed(m, 42.0);
        ASSERT_EQ(zomath_percentiles(s.x.data(), s.size(), percents.data(), m, got.data(), r,
                                     s.weights()), 0);
        QuantileOptions o{};
        o.nInterpolate = r;
        QuantileResults q;
        ASSERT_EQ(zomath_quantiles(s.x.data(), s.size(), &o, &q, percents.data(), m,
                                   listed.data(), s.weights()), 0);
        for (int i = 0; i < m; ++i) {
          add(stats, refs[i], got[i], "zomath_percentiles");
          EXPECT_EQ(listed[i], got[i]) << "zomath_quantiles list, set " << set << ", definition " << r;
        }
      }
    }
  }
  EXPECT_LE(stats.worst(), kUlp) << stats.describe();
  EXPECT_GT(stats.count(), 2000);
}

// Tukey's hinges of 1 to 20 points: the depth rule (used below 5 points) and the platform
// routine (5 and more) must each give them for every n, and zomath_quantiles report them. Each is a value of the sample or the mean of two, rounded
// once, like the reference: they must be equal.
TEST(PercentileReference, FiveNumberSummaryOfOneToTwentyPoints) {
  const auto table = rows_of_kind(1);
  ASSERT_EQ(table.size(), 20u);
  for (const auto& [set, byWhich] : table) {
    const Sample& s = samples()[set];
    const int n = s.size();
    ASSERT_EQ(n, set - 100);
    double want[5];
    for (const auto& [which, rows] : byWhich) want[int(which)] = rows[0].value;
    std::vector<double> sorted = s.x;
    std::sort(sorted.begin(), sorted.end());

    double byDepth[5], byPlatform[5];
    zomath::stats::five_numbers_by_depth(sorted.data(), n, byDepth);
    zomath::platform::NagError err;
    ASSERT_EQ(zomath::platform::five_number_summary(sorted.data(), n, byPlatform, err), 0);

    const QuantileOptions all = {INTERPOLATE_NONE, true, true, true, true, true, true, true, true, true};
    QuantileResults q;
    ASSERT_EQ(zomath_quantiles(s.x.data(), n, &all, &q, nullptr, 0, nullptr, nullptr), 0);
    const double reported[5] = {q.Min, q.Q1, q.Median, q.Q3, q.Max};
    EXPECT_EQ(q.IQR, q.Q3 - q.Q1) << n;
    EXPECT_EQ(q.Range, q.Max - q.Min) << n;
    EXPECT_EQ(s.x[q.iMin], q.Min) << n;
    EXPECT_EQ(s.x[q.iMax], q.Max) << n;

    for (int i = 0; i < 5; ++i) {
      EXPECT_EQ(byDepth[i], want[i]) << "depth rule, n " << n << ", number " << i;
      EXPECT_EQ(byPlatform[i], want[i]) << "platform routine, n " << n << ", number " << i;
      EXPECT_EQ(reported[i], want[i]) << "zomath_quantiles, n " << n << ", number " << i;
    }
  }
}

// Percentiles of three curves read as densities: the x by linear interpolation of the
// cumulative trapezoid areas, which the library sums in doubles and the reference exactly. x
// is as sensitive as 1 / y to an error in the area: in the far tail (f = 1 - 1e-13, where the
// density is 1e-5 of its peak) one unit in the last place of the total area moves it by 1e-11
// of the extent. The x must come within 1e-12 of the curve's x extent, the interval index be
// the same.
TEST(PercentileReference, DensityPercentiles) {
  const auto table = rows_of_kind(2);
  ASSERT_EQ(table.size(), 3u);
  ErrorStats stats;
  for (const auto& [curve, byFraction] : table) {
    const Sample& s = samples()[curve];
    std::vector<double> fractions;
    for (const auto& entry : byFraction) fractions.push_back(entry.first);
    const int m = int(fractions.size());
    std::vector<double> got(m);
    std::vector<int> at(m);
    ASSERT_EQ(zomath_percentiles_distribution(s.size(), s.x.data(), s.w.data(), fractions.data(), m,
                                              got.data(), at.data()), 0);
    int k = 0;
    for (const auto& [f, rows] : byFraction) {
      for (const ReferenceRow& row : rows) {
        if (row.args[3] == 1) {
          EXPECT_EQ(at[k], int(row.value)) << "curve " << curve << ", f " << f;
          continue;
        }
        EXPECT_EQ(got[k] == NANUM, row.value == NANUM) << "curve " << curve << ", f " << f;
        stats.add(row, got[k]);
      }
      ++k;
    }
  }
  EXPECT_LE(stats.worst(), 1e-12) << stats.describe();
}

}  // namespace
