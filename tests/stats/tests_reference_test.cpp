// Every test and confidence limit against mpmath at 50 digits (tests/data/stats/
// tests_reference.csv, which SciPy's ttest_1samp, ttest_ind, ttest_rel and its chi-square and F
// tails match within 1e-12 wherever its rounded means allow): one- and two-sample t, Welch's
// degrees of freedom, the paired test, the chi-square and F tests, each tail, and the limits of
// a mean, a variance, a difference of means and a ratio of variances at four levels, on samples
// of 2 to 200 points, a small scale (1e-6) and a mean 1e6 times the spread. The exports take
// differences of means to twice a double's precision and the probabilities each from its own
// tail, so every value is asked to 2e-13 of its scale (|value|; for a limit at least the half
// width of its interval), five times tighter than the 1e-12 that SciPy is held to. (The worst,
// 8e-14, is a Welch probability of 1e-169, where each ulp of t moves p by 200 ulps.)
#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "../scalar/reference.h"
#include "zomath/stats.h"

namespace {

using namespace zomath::testing;

constexpr double kTolerance = 2e-13;

enum Kind {
  kOne,
  kEqual,
  kWelch,
  kPair,
  kChi,
  kChiPooled,
  kF,
  kCiMean,
  kCiVar,
  kCiEqual,
  kCiWelch,
  kCiPair,
  kCiRatio,
  kKinds
};
const char* const kNames[] = {"one-sample t",
                              "pooled t",
                              "Welch t",
                              "paired t",
                              "chi-square",
                              "pooled chi-square",
                              "F",
                              "limits of a mean",
                              "limits of a variance",
                              "limits of a difference (pooled)",
                              "limits of a difference (Welch)",
                              "limits of a paired difference",
                              "limits of a variance ratio"};

std::vector<std::vector<double>> samples() {
  std::vector<std::vector<double>> sets;
  for (const ReferenceRow& row : load_reference("stats/test_samples.csv")) {
    const auto k = static_cast<std::size_t>(row.args[0]);
    if (sets.size() <= k) sets.resize(k + 1);
    sets[k].push_back(row.value);
  }
  return sets;
}

int size(const std::vector<double>& v) { return static_cast<int>(v.size()); }

// Fields 0, 1, 2 of a row of the table: statistic (or lower limit), probability (or upper
// limit), degrees of freedom; `codes` adds up what the exports returned (all 0 expected).
std::array<double, 3> compute(Kind kind, const std::vector<double>& x, const std::vector<double>& y,
                              int tail, double q, int& codes) {
  const HypotTestOptions o{0, q, tail}, plain{0, 0, 0}, paired{0, 0.25, 0};
  const int nx = size(x), ny = size(y);
  tTestMeanResults one;
  tTestMean2SampleResults two, pair;
  tTestResults w;
  codes = zomath_one_sample_t_test(x.data(), nx, kind == kOne ? &o : &plain, &one);
  if (ny > 0) {
    codes += zomath_two_sample_t_test(x.data(), nx, y.data(), ny, kind <= kWelch ? &o : &plain,
                                      &two, &w);
    if (nx == ny)
      codes += zomath_two_sample_t_test_pair(x.data(), nx, y.data(), ny,
                                             kind == kPair ? &o : &paired, &pair);
  }
  ChiSqTestResults chi;
  ChiSq2SampleResults pooled;
  FTestResults f;
  double lo = NAN, hi = NAN;
  switch (kind) {
    case kOne:
      return {one.tValue, one.Prob, double(one.DOF)};
    case kEqual:
      return {two.tValue, two.Prob, two.DOF};
    case kWelch:
      return {w.tValue, w.Prob, w.DOF};
    case kPair:
      return {pair.tValue, pair.Prob, pair.DOF};
    case kChi:
      codes += zomath_chi_square_test(nx, x.data(), &o, &chi);
      return {chi.Chi, chi.Prob, chi.DOF};
    case kChiPooled:
      codes += zomath_two_sample_chi_square_test(&o, &two, &pooled);
      return {pooled.Chi, pooled.Prob, double(pooled.DOF)};
    case kF:
      codes += zomath_f_test(nx, x.data(), ny, y.data(), &o, &f);
      return {f.F, f.Prob, double(f.DOF1)};
    case kCiMean:
      codes += zomath_confidence_levels_for_mean(&q, 1, &one, &lo, &hi);
      break;
    case kCiVar:
      codes += zomath_confidence_levels_for_variance(1, &q, one.SD, one.DOF, &lo, &hi);
      break;
    case kCiEqual:
      codes += zomath_two_sample_confidence_levels_for_mean_equal_var(&q, 1, &two, &lo, &hi);
      break;
    case kCiWelch:
      codes += zomath_two_sample_confidence_levels_for_mean_unequal_var(&q, 1, &two, &lo, &hi);
      break;
    case kCiPair:
      codes += zomath_two_sample_confidence_levels_for_mean_pair(&q, 1, &pair, &paired, &lo, &hi);
      break;
    case kCiRatio: {
      const double sds[2] = {two.SD1, two.SD2};
      const int sizes[2] = {two.N1, two.N2};
      codes += zomath_two_sample_confidence_levels_for_variance(1, &q, sds, sizes, &lo, &hi);
      break;
    }
    case kKinds:
      break;
  }
  return {lo, hi, NAN};
}

TEST(HypothesisTests, AgreeWithHighPrecisionReference) {
  const auto sets = samples();
  const auto rows = load_reference("stats/tests_reference.csv");
  ASSERT_EQ(sets.size(), 12u);
  ASSERT_GT(rows.size(), 1000u);
  const std::vector<double> none;
  ErrorStats stats[kKinds];
  for (const ReferenceRow& row : rows) {
    const auto kind = static_cast<Kind>(row.args[0]);
    const int s2 = static_cast<int>(row.args[2]);
    int codes = 0;
    const auto values = compute(kind, sets.at(static_cast<std::size_t>(row.args[1])),
                                s2 < 0 ? none : sets.at(static_cast<std::size_t>(s2)),
                                static_cast<int>(row.args[3]), row.args[4], codes);
    EXPECT_EQ(codes, 0) << kNames[kind];
    stats[kind].add(row, values[static_cast<std::size_t>(row.args[5])]);
  }
  for (int k = 0; k < kKinds; ++k) {
    EXPECT_GT(stats[k].count(), 0) << kNames[k];
    EXPECT_LE(stats[k].worst(), kTolerance) << kNames[k] << ": " << stats[k].describe();
  }
}

// The tests take their sample statistics by the summary engine's own route: the same numbers.
TEST(HypothesisTests, SummariesAreTheSummaryEngines) {
  for (const auto& x : samples()) {
    const HypotTestOptions o{0, 0, 0};
    tTestMeanResults r;
    int n = 0;
    double mean, sd, sem;
    zomath_one_sample_t_test(x.data(), size(x), &o, &r);
    zomath_basic_summary_stats(size(x), x.data(), &n, &mean, &sd, &sem, nullptr, nullptr, nullptr,
                               nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                               nullptr, DS_SAS1_DF, nullptr);
    EXPECT_TRUE(r.N == n && r.Mean == mean && r.SD == sd && r.SEM == sem) << x.size();
  }
}

}  // namespace
