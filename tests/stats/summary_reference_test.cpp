// Every field of the summary against mpmath at 50 digits (tests/data/stats/summary.csv), for
// weighted and unweighted samples with missing points, zero and negative weights, a mean 1e8
// times the spread, ties, unit weights and values near 1e-200 and 1e200, under each moment
// denominator, through each export that gives the field. The exports round each sum once,
// carry the deviations from the mean to twice a double's precision and scale them by a power
// of two, so every field is asked to 1e-14 of its scale (|value|; the spread for a mean; at
// least 1 for skewness and kurtosis, which pass through 0). A statistic that does not exist
// must be NANUM, one beyond the range of doubles an infinity.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <vector>

#include "stats_data.h"

namespace {

using namespace zomath::testing;

constexpr double kTolerance = 1e-14;

// Rows of summary.csv by set and flag, indexed by field.
std::map<std::pair<int, int>, std::vector<ReferenceRow>> reference() {
  std::map<std::pair<int, int>, std::vector<ReferenceRow>> table;
  for (const ReferenceRow& row : load_reference("stats/summary.csv")) {
    auto& fields = table[{int(row.args[0]), int(row.args[1])}];
    fields.resize(kFieldCount);
    fields[int(row.args[2])] = row;
  }
  return table;
}

// The record as each export fills it; fields an export doesn't give stay NaN and are skipped.
DescStatResults by_basic(const Sample& s, int flag) {
  DescStatResults r = filled(NAN);
  EXPECT_EQ(zomath_basic_summary_stats(s.size(), s.x.data(), &r.N, &r.Mean, &r.SD, &r.SEM,
                                       &r.Variance, &r.Sum, &r.Skewness, &r.Kurtosis,
                                       &r.UncorSumSq, &r.CorSumSq, &r.COV, &r.MAD, &r.Missing,
                                       &r.WeightSum, &r.GeoMean, flag, s.weights()),
            0);
  bool multi;
  EXPECT_EQ(zomath_opt_summary_stats(s.size(), s.x.data(), 0.95, &r.Mode, &multi, &r.GeoSD,
                                     &r.LCL, &r.UCL, &r.SDx2, &r.SDx3, flag, s.weights()),
            0);
  return r;
}

DescStatResults by_desc(const Sample& s, int flag) {
  DescStatResults r = filled(NAN);
  EXPECT_EQ(zomath_desc_stats(s.x.data(), s.size(), &r, s.weights(), 0.95, flag), 0);
  return r;
}

// The whole sample as one slice (a size of 0.0), every field asked for.
DescStatResults by_slices(const Sample& s, int flag) {
  DescStatOptions o;
  o.nMomentDenFlag = flag;
  for (bool* b : {&o.bN, &o.bMissing, &o.bSum, &o.bMean, &o.bMode, &o.bGeoMean, &o.bGeoSD,
                  &o.bLCL, &o.bUCL, &o.bSD, &o.bSDx2, &o.bSDx3, &o.bSEM, &o.bVariance, &o.bCOV,
                  &o.bSkewness, &o.bKurtosis, &o.bMAD, &o.bUncorSumSq, &o.bCorSumSq,
                  &o.bWeightSum})
    *b = true;
  const double whole = 0.0;
  DescStatResults r = filled(NAN);
  bool multi;
  EXPECT_EQ(zomath_desc_stats_ex(s.x.data(), s.size(), &whole, 1, &o, &r, s.weights(), 0.95, &multi), 0);
  return r;
}

TEST(SummaryReference, EveryFieldOfEveryExportUnderEachDenominator) {
  const auto samples = load_samples();
  const auto table = reference();
  ASSERT_EQ(samples.size(), 8u);
  ASSERT_EQ(table.size(), samples.size() * 5);
  const struct {
    const char* name;
    DescStatResults (*run)(const Sample&, int);
  } exports[] = {{"zomath_basic_summary_stats with zomath_opt_summary_stats", by_basic},
                 {"zomath_desc_stats", by_desc},
                 {"zomath_desc_stats_ex", by_slices}};
  for (const auto& e : exports) {
    ErrorStats errors;
    for (const auto& [key, rows] : table) {
      const DescStatResults r = e.run(samples[key.first], key.second);
      for (int i = 0; i < kFieldCount; ++i) {
        const ReferenceRow& row = rows[i];
        const double got = field(r, i);
        if (std::isnan(got)) continue;  // not given by this export
        const std::string where = std::string(e.name) + ", set " + std::to_string(key.first) +
                                  ", flag " + std::to_string(key.second) + ", field " +
                                  std::to_string(i);
        if (row.value == NANUM || std::isinf(row.value) || i <= kMissing) {
          EXPECT_EQ(got, row.value) << where;
          continue;
        }
        ReferenceRow located = row;
        located.args = {double(key.first), double(key.second), double(i)};
        errors.add(located, got);
        EXPECT_LE(std::fabs(got - row.value), kTolerance * row.scale) << where << ": got " << got;
      }
    }
    std::printf("%s: %s\n", e.name, errors.describe().c_str());
  }
}

}  // namespace
