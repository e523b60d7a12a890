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

#include <map>
#include <vector>

#include "../scalar/reference.h"
#include "zomath/stats.h"

namespace {

using namespace zomath::testing;

constexpr double kTolerance = 2e-13;

enum Kind { kOne, kEqual, kWelch, kPair, kChi, kChiPooled, kF, kCiMean, kCiVar, kCiEqual,
            kCiWelch, kCiPair, kCiRatio, kKinds };
const char* const kNames[] = {"one-sample t", "pooled t", "Welch t", "paired t", "chi-square",
                              "pooled chi-square", "F", "limits of a mean",
                              "limits of a variance", "limits of a difference (pooled)",
                              "limits of a difference (Welch)", "limits of a paired difference",
                              "limits of a variance ratio"};

// The test value the paired limits are recovered with: the limits don't depend on it.
constexpr double kPairedTestValue = 0.25;

std::vector<std::vector<double>> samples() {
  std::vector<std::vector<double>> sets;
  for (const ReferenceRow& row : load_reference("stats/test_samples.csv")) {
    const auto k = static_cast<std::size_t>(row.args[0]);
    if (sets.size() <= k) sets.resize(k + 1);
    sets[k].push_back(row.value);
  }
  return sets;
}

struct Case {
  const std::vector<double>& x;
  const std::vector<double>& y;
  int tail;
  double parameter;
  int field;
};

int size(const std::vector<double>& v) { return static_cast<int>(v.size()); }

tTestMean2SampleResults two_sample(const Case& c, double testValue = 0, int tail = 0,
                                   tTestResults* welch = nullptr) {
  const HypotTestOptions o{0, testValue, tail};
  tTestMean2SampleResults r;
  EXPECT_EQ(zomath_two_sample_t_test(c.x.data(), size(c.x), c.y.data(), size(c.y), &o, &r, welch), 0);
  return r;
}

tTestMeanResults one_sample(const Case& c, double testValue = 0, int tail = 0) {
  const HypotTestOptions o{0, testValue, tail};
  tTestMeanResults r;
  EXPECT_EQ(zomath_one_sample_t_test(c.x.data(), size(c.x), &o, &r), 0);
  EXPECT_EQ(r.DOF, r.N - 1);
  return r;
}

tTestMean2SampleResults paired(const Case& c, double testValue, int tail) {
  const HypotTestOptions o{0, testValue, tail};
  tTestMean2SampleResults r;
  EXPECT_EQ(zomath_two_sample_t_test_pair(c.x.data(), size(c.x), c.y.data(), size(c.y), &o, &r), 0);
  return r;
}

// Lower and upper limit at one level from an interval export.
template <class Export>
double limit(const Case& c, Export call) {
  double limits[2] = {0, 0};
  EXPECT_EQ(call(&c.parameter, &limits[0], &limits[1]), 0);
  return limits[c.field];
}

double compute(Kind kind, const Case& c) {
  const HypotTestOptions o{0, c.parameter, c.tail};
  switch (kind) {
    case kOne: {
      const tTestMeanResults r = one_sample(c, c.parameter, c.tail);
      return c.field == 0 ? r.tValue : r.Prob;
    }
    case kEqual: {
      const tTestMean2SampleResults r = two_sample(c, c.parameter, c.tail);
      EXPECT_EQ(r.DOF, r.N1 + r.N2 - 2);
      return c.field == 0 ? r.tValue : r.Prob;
    }
    case kWelch: {
      tTestResults w;
      two_sample(c, c.parameter, c.tail, &w);
      return c.field == 0 ? w.tValue : c.field == 1 ? w.Prob : w.DOF;
    }
    case kPair: {
      const tTestMean2SampleResults r = paired(c, c.parameter, c.tail);
      return c.field == 0 ? r.tValue : r.Prob;
    }
    case kChi: {
      ChiSqTestResults r;
      EXPECT_EQ(zomath_chi_square_test(size(c.x), c.x.data(), &o, &r), 0);
      EXPECT_EQ(r.DOF, size(c.x) - 1);
      return c.field == 0 ? r.Chi : r.Prob;
    }
    case kChiPooled: {
      const tTestMean2SampleResults summary = two_sample(c);
      ChiSq2SampleResults r;
      EXPECT_EQ(zomath_two_sample_chi_square_test(&o, &summary, &r), 0);
      EXPECT_EQ(r.DOF, size(c.x) + size(c.y) - 2);
      return c.field == 0 ? r.Chi : r.Prob;
    }
    case kF: {
      FTestResults r;
      EXPECT_EQ(zomath_f_test(size(c.x), c.x.data(), size(c.y), c.y.data(), &o, &r), 0);
      EXPECT_EQ(r.DOF1, size(c.x) - 1);
      EXPECT_EQ(r.DOF2, size(c.y) - 1);
      return c.field == 0 ? r.F : r.Prob;
    }
    case kCiMean: {
      const tTestMeanResults s = one_sample(c);
      return limit(c, [&](const double* p, double* l, double* u) {
        return zomath_confidence_levels_for_mean(p, 1, &s, l, u);
      });
    }
    case kCiVar: {
      const tTestMeanResults s = one_sample(c);
      return limit(c, [&](const double* p, double* l, double* u) {
        return zomath_confidence_levels_for_variance(1, p, s.SD, s.DOF, l, u);
      });
    }
    case kCiEqual:
    case kCiWelch: {
      const tTestMean2SampleResults s = two_sample(c);
      return limit(c, [&](const double* p, double* l, double* u) {
        return kind == kCiEqual ? zomath_two_sample_confidence_levels_for_mean_equal_var(p, 1, &s, l, u)
                                : zomath_two_sample_confidence_levels_for_mean_unequal_var(p, 1, &s, l, u);
      });
    }
    case kCiPair: {
      const HypotTestOptions po{0, kPairedTestValue, TAILED_TEST_TWO};
      const tTestMean2SampleResults s = paired(c, kPairedTestValue, TAILED_TEST_TWO);
      return limit(c, [&](const double* p, double* l, double* u) {
        return zomath_two_sample_confidence_levels_for_mean_pair(p, 1, &s, &po, l, u);
      });
    }
    case kCiRatio: {
      const tTestMean2SampleResults s = two_sample(c);
      const double sds[2] = {s.SD1, s.SD2};
      const int sizes[2] = {s.N1, s.N2};
      return limit(c, [&](const double* p, double* l, double* u) {
        return zomath_two_sample_confidence_levels_for_variance(1, p, sds, sizes, l, u);
      });
    }
    case kKinds: break;
  }
  return NAN;
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
    const Case c{sets.at(static_cast<std::size_t>(row.args[1])),
                 s2 < 0 ? none : sets.at(static_cast<std::size_t>(s2)), static_cast<int>(row.args[3]),
                 row.args[4], static_cast<int>(row.args[5])};
    stats[kind].add(row, compute(kind, c));
  }
  for (int k = 0; k < kKinds; ++k) {
    EXPECT_GT(stats[k].count(), 0) << kNames[k];
    EXPECT_LE(stats[k].worst(), kTolerance) << kNames[k] << ": " << stats[k].describe();
  }
}

}  // namespace
