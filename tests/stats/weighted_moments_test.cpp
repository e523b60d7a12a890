// The weighted moments routine of the platform layer: its definitions against mpmath (the
// DS_NAG rows of tests/data/stats/summary.csv for the samples it can take), its codes, and the
// scale invariance that the vector passes promise from 2^-1000 to 2^1000.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "platform/weighted_moments.h"
#include "stats_data.h"

namespace {

using namespace zomath::testing;
using zomath::platform::NagError;
using zomath::platform::weighted_moments;
using zomath::platform::WeightedMoments;

TEST(WeightedMoments, AgainstTheReferenceTable) {
  const auto samples = load_samples();
  std::vector<ReferenceRow> rows[8];
  for (const ReferenceRow& row : load_reference("stats/summary.csv"))
    if (row.args[1] == DS_NAG) rows[int(row.args[0])].push_back(row);
  // Set 2 holds missing points and weights below 0, which the routine doesn't take.
  for (int k : {0, 1, 3, 4, 5, 6, 7}) {
    const Sample& s = samples[k];
    WeightedMoments m;
    NagError err;
    ASSERT_EQ(weighted_moments(s.x.data(), s.size(), s.weights(), m, err), 0) << k;
    const struct {
      double got;
      int field;
    } checks[] = {{m.mean, kMean}, {m.sd, kSD}, {m.skewness, kSkewness}, {m.kurtosis, kKurtosis},
                  {m.weightSum, kWeightSum}};
    for (const auto& c : checks) {
      const ReferenceRow& ref = rows[k][c.field];
      EXPECT_LE(std::fabs(c.got - ref.value), 1e-14 * ref.scale) << "set " << k << ", field " << c.field;
    }
  }
}

TEST(WeightedMoments, Codes) {
  const double x[] = {1, 2, 4, 4};
  const struct {
    std::vector<double> w;
    int n, code;
    bool mean, sd;  // written
    double meanValue;
  } cases[] = {
      {{}, 0, zomath::platform::kMomentsNoData, false, false, 0},
      {{1, -1e-300, 1, 1}, 4, zomath::platform::kMomentsNegativeWeight, false, false, 0},
      {{0, 0, 0, 0}, 4, zomath::platform::kMomentsTooFewWeights, false, false, 0},
      {{0, 3, 0, 0}, 4, zomath::platform::kMomentsTooFewWeights, true, false, 2},
      {{0, 0, 1, 2}, 4, zomath::platform::kMomentsZeroVariance, true, true, 4},
      {{1, 0, 0, 1}, 4, 0, true, true, 2.5},
  };
  for (const auto& c : cases) {
    WeightedMoments m = {-9, -9, -9, -9, -9};
    NagError err;
    err.code = 77;
    EXPECT_EQ(weighted_moments(x, c.n, c.w.empty() ? nullptr : c.w.data(), m, err), c.code);
    EXPECT_EQ(err.code, c.code);
    EXPECT_EQ(m.mean, c.mean ? c.meanValue : -9);
    EXPECT_EQ(m.sd == -9, !c.sd);
    if (c.code == zomath::platform::kMomentsZeroVariance) {
      EXPECT_EQ(m.sd, 0);
    }
    if (c.code != 0) {
      EXPECT_EQ(m.skewness, -9);
    }
  }
}

// Multiplying the data by 2^k scales the mean and SD by exactly 2^k in exact arithmetic and
// leaves the shape coefficients alone; the routine and the moment engine must come within a
// few roundings of that however far the powers of the deviations fall outside the doubles.
TEST(WeightedMoments, ScaleInvariance) {
  const Sample s = load_samples()[0];
  WeightedMoments base;
  NagError err;
  ASSERT_EQ(weighted_moments(s.x.data(), s.size(), s.w.data(), base, err), 0);
  for (int k : {-1000, -600, -100, 100, 600, 1000}) {
    std::vector<double> x = s.x;
    for (double& v : x) v = std::ldexp(v, k);
    WeightedMoments m;
    ASSERT_EQ(weighted_moments(x.data(), s.size(), s.w.data(), m, err), 0) << k;
    EXPECT_NEAR(std::ldexp(m.mean, -k), base.mean, 1e-15 * base.mean) << k;
    EXPECT_NEAR(std::ldexp(m.sd, -k), base.sd, 1e-15 * base.sd) << k;
    EXPECT_NEAR(m.skewness, base.skewness, 1e-14) << k;
    EXPECT_NEAR(m.kurtosis, base.kurtosis, 1e-14) << k;
    for (int flag : {DS_SAS1_DF, DS_NAG}) {
      DescStatResults a, b;
      ASSERT_EQ(zomath_desc_stats(s.x.data(), s.size(), &a, s.w.data(), 0.95, flag), 0);
      ASSERT_EQ(zomath_desc_stats(x.data(), s.size(), &b, s.w.data(), 0.95, flag), 0);
      EXPECT_NEAR(std::ldexp(b.SD, -k), a.SD, 1e-15 * a.SD) << k;
      EXPECT_NEAR(std::ldexp(b.MAD, -k), a.MAD, 1e-15 * a.MAD) << k;
      EXPECT_NEAR(std::ldexp(b.GeoMean, -k), a.GeoMean, 1e-15 * a.GeoMean) << k;
      EXPECT_NEAR(b.Skewness, a.Skewness, 1e-14) << k;
      EXPECT_NEAR(b.Kurtosis, a.Kurtosis, 1e-14) << k;
    }
  }
}

}  // namespace
