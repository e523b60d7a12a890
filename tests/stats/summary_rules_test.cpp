// The rules of the summary statistics that callers rely on: what each denominator yields, the
// treatment of missing points and weights, and the edge cases of small or degenerate samples.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "zomath/stats.h"

namespace {

struct Basic {
  int rc, n, missing;
  double mean, sd, sem, variance, sum, skewness, kurtosis, uncor, cor, cov, mad, weightSum, geoMean;
};

Basic basic(const std::vector<double>& x, int flag, const std::vector<double>& w = {}) {
  Basic b;
  b.rc = zomath_basic_summary_stats(int(x.size()), x.data(), &b.n, &b.mean, &b.sd, &b.sem,
                                    &b.variance, &b.sum, &b.skewness, &b.kurtosis, &b.uncor,
                                    &b.cor, &b.cov, &b.mad, &b.missing, &b.weightSum, &b.geoMean,
                                    flag, w.empty() ? nullptr : w.data());
  return b;
}

// The library's own reference figures: a weight below 0 counts as 0, on every denominator.
TEST(SummaryStatistics, NegativeWeightsCountAsZero) {
  const std::vector<double> x = {7, 1, 11, 11, 7, 11, 3, 1, 2, 21, 1, 11, 10};
  const std::vector<double> w = {0.3, -0.8, 0.9, 0.6, 0.15, 0.36, 0, 0.2, -0.9, 0.54, -0.1, 0.3, 0};
  for (int flag = 0; flag <= 4; ++flag) {
    const Basic b = basic(x, flag, w);
    EXPECT_EQ(b.rc, 0);
    EXPECT_EQ(b.n, 13);
    EXPECT_NEAR(b.weightSum, 3.35, 1e-15) << flag;
    EXPECT_NEAR(b.sum, 38.45, 1e-14) << flag;
  }
}

}  // namespace
