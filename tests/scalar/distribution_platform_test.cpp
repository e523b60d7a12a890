// Bivariate normal and studentized range routines against their reference tables, and the
// identities that pin them down independently.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>

#include "platform/distributions/bivariate_normal.h"
#include "platform/distributions/studentized_range.h"
#include "tests/scalar/reference.h"

namespace {

using zomath::platform::NagError;
using zomath::testing::ErrorStats;
using zomath::testing::load_reference;

double normal_lower(double x) { return 0.5 * std::erfc(-x / std::sqrt(2.0)); }

// Absolute error; Genz's method is good to about 1e-16 on this grid, which reaches
// |rho| = 1 - 1e-6 and both sides of the rule changes at 0.3, 0.75 and 0.925.
TEST(BivariateNormal, MatchesReferenceTable) {
  const auto rows = load_reference("distributions/bivariate_normal.csv");
  ASSERT_GT(rows.size(), 1000u);
  ErrorStats stats;
  for (const auto& row : rows) {
    NagError err;
    const double x = row.args[0], y = row.args[1], rho = row.args[2];
    const double p = zomath::platform::bivariate_normal_lower(x, y, rho, err);
    ASSERT_EQ(err.code, 0);
    stats.add(row, p);
    NagError swapped;  // symmetric in its arguments
    EXPECT_EQ(zomath::platform::bivariate_normal_lower(y, x, rho, swapped), p);
  }
  std::printf("bivariate normal: %s\n", stats.describe().c_str());
  EXPECT_LE(stats.worst(), 1e-15);
}

TEST(BivariateNormal, LimitsAndBadArguments) {
  constexpr double inf = std::numeric_limits<double>::infinity();
  NagError err;
  EXPECT_DOUBLE_EQ(zomath::platform::bivariate_normal_lower(inf, 0.5, 0.3, err), normal_lower(0.5));
  EXPECT_DOUBLE_EQ(zomath::platform::bivariate_normal_lower(-1.0, inf, -0.9, err), normal_lower(-1.0));
  EXPECT_EQ(zomath::platform::bivariate_normal_lower(-inf, 2.0, 0.5, err), 0.0);
  EXPECT_EQ(zomath::platform::bivariate_normal_lower(inf, inf, 0.5, err), 1.0);
  EXPECT_NEAR(zomath::platform::bivariate_normal_lower(0.4, -1.2, 0.0, err),
              normal_lower(0.4) * normal_lower(-1.2), 1e-16);
  EXPECT_NEAR(zomath::platform::bivariate_normal_lower(0, 0, 0.5, err), 1.0 / 3.0, 1e-16);
  EXPECT_EQ(err.code, 0);
  for (double rho : {1.0000001, -2.0, std::nan("")}) {
    NagError bad;
    zomath::platform::bivariate_normal_lower(0, 0, rho, bad);
    EXPECT_EQ(bad.code, zomath::platform::kBivariateNormalBadCorrelation) << rho;
  }
  NagError nanArg;
  zomath::platform::bivariate_normal_lower(std::nan(""), 0, 0.5, nanArg);
  EXPECT_EQ(nanArg.code, zomath::platform::kBivariateNormalBadArgument);
}

// Absolute error against SciPy's quadrature (itself confirmed by mpmath on the known-variance
// rows, which differs from this routine by up to 5e-13 at high q); the target is 1e-9.
TEST(StudentizedRange, MatchesReferenceTable) {
  const auto rows = load_reference("distributions/studentized_range.csv");
  ASSERT_EQ(rows.size(), 360u);
  ErrorStats stats;
  for (const auto& row : rows) {
    NagError err;
    stats.add(row, zomath::platform::studentized_range_lower(row.args[0], row.args[1],
                                                             static_cast<int>(row.args[2]), err));
    ASSERT_EQ(err.code, 0);
  }
  std::printf("studentized range: %s\n", stats.describe().c_str());
  EXPECT_LE(stats.worst(), 1e-12);
}

TEST(StudentizedRange, TwoGroupsWithKnownVarianceIsAHalfNormal) {
  // The range of two standard normals is sqrt(2) |Z|: P(range <= w) = 2 Phi(w / sqrt 2) - 1.
  for (double w : {0.01, 0.5, 1.0, 2.77, 5.0, 9.0}) {
    NagError err;
    const double p = zomath::platform::studentized_range_lower(
        w, std::numeric_limits<double>::infinity(), 2, err);
    EXPECT_NEAR(p, std::erf(w / 2), 1e-15) << w;
  }
}

TEST(StudentizedRange, QuantileInvertsTheDistribution) {
  // Round trips, and two entries of the classic 5% table (3 groups, 10 df: 3.877; 5 groups,
  // 20 df: 4.232), printed to three decimals.
  for (double p : {0.01, 0.5, 0.9, 0.95, 0.99, 0.999}) {
    for (double v : {1.0, 4.0, 20.0, 1e4}) {
      for (int groups : {2, 6, 20}) {
        NagError err;
        const double q = zomath::platform::studentized_range_quantile(p, v, groups, err);
        ASSERT_EQ(err.code, 0);
        EXPECT_NEAR(zomath::platform::studentized_range_lower(q, v, groups, err), p, 1e-12)
            << p << " " << v << " " << groups;
      }
    }
  }
  NagError err;
  EXPECT_NEAR(zomath::platform::studentized_range_quantile(0.95, 10, 3, err), 3.877, 5e-4);
  EXPECT_NEAR(zomath::platform::studentized_range_quantile(0.95, 20, 5, err), 4.232, 5e-4);
}

TEST(StudentizedRange, BadArguments) {
  struct Case { double q, v; int groups; int code; };
  const Case cases[] = {
      {3, 0.5, 3, zomath::platform::kStudentizedRangeBadDf},
      {3, std::nan(""), 3, zomath::platform::kStudentizedRangeBadDf},
      {3, 10, 1, zomath::platform::kStudentizedRangeBadGroups},
      {std::nan(""), 10, 3, zomath::platform::kStudentizedRangeBadArgument},
  };
  for (const Case& c : cases) {
    NagError err;
    zomath::platform::studentized_range_lower(c.q, c.v, c.groups, err);
    EXPECT_EQ(err.code, c.code) << c.q << " " << c.v << " " << c.groups;
  }
  NagError ok;
  EXPECT_EQ(zomath::platform::studentized_range_lower(-1, 10, 3, ok), 0.0);
  EXPECT_EQ(zomath::platform::studentized_range_lower(std::numeric_limits<double>::infinity(), 10, 3, ok), 1.0);
  EXPECT_EQ(ok.code, 0);
  for (double p : {0.0, 1.0, -0.5, std::nan("")}) {
    NagError err;
    zomath::platform::studentized_range_quantile(p, 10, 3, err);
    EXPECT_EQ(err.code, zomath::platform::kStudentizedRangeBadProbability) << p;
  }
}

}  // namespace
