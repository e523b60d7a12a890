// The measures beside the summary engine: moments about zero, the range, a curve's mean
// ordinate and the statistics of a density.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "zomath/stats.h"

namespace {

constexpr double M = NANUM;

TEST(MomentsAboutZero, ValuesAndEdges) {
  const double x[] = {3, -4};
  const double r = std::sqrt(12.5);
  EXPECT_DOUBLE_EQ(zomath_root_mean_square(x, 2), r);
  EXPECT_DOUBLE_EQ(zomath_absolute_arithmetic_average(x, 2), 3.5);
  EXPECT_DOUBLE_EQ(zomath_skewness(x, 2, -1), (27.0 - 64.0) / (2 * r * r * r));
  EXPECT_DOUBLE_EQ(zomath_kurtosis(x, 2, 2.0), (81.0 + 256.0) / 32);
  // NANUM enters as the tiny number it is; the powers neither overflow nor underflow.
  const double missing[] = {M, M}, huge[] = {1e300, -1e300}, tiny[] = {3e-300, 4e-300};
  EXPECT_DOUBLE_EQ(zomath_root_mean_square(missing, 2), 1.23456789e-300);
  EXPECT_DOUBLE_EQ(zomath_kurtosis(huge, 2, -1), 1.0);
  EXPECT_DOUBLE_EQ(zomath_skewness(tiny, 2, -1), (27.0 + 64.0) / (2 * std::pow(12.5, 1.5)));
  EXPECT_TRUE(std::isinf(zomath_kurtosis(x, 2, 0.0))) << "r = 0 is not guarded";
  EXPECT_EQ(zomath_root_mean_square(nullptr, 0), 0.0);
  EXPECT_EQ(zomath_absolute_arithmetic_average(nullptr, 2), M);
  EXPECT_EQ(zomath_skewness(x, -1, -1), M);
}

TEST(Range, FirstPositionsOfTheExtremes) {
  const struct {
    std::vector<double> x;
    int rc;
    double lo, hi;
    int iLo, iHi;
  } cases[] = {
      {{5, 1, 9, 1, 9}, 0, 1, 9, 1, 2},
      {{M, 4, NAN, M, -2}, 0, -2, 4, 4, 1},
      {{M, M}, ZOMATH_STATS_ERR_NO_VALID, M, M, -1, -1},
      {{NAN}, ZOMATH_STATS_ERR_NO_VALID, M, M, -1, -1},
      {{}, ZOMATH_STATS_ERR_NO_VALID, M, M, -1, -1},
  };
  for (const auto& c : cases) {
    RangeResults r = {1, 2, 3, 4, 5};
    EXPECT_EQ(zomath_range(c.x.data(), int(c.x.size()), &r), c.rc);
    EXPECT_EQ(r.Min, c.lo);
    EXPECT_EQ(r.Max, c.hi);
    EXPECT_EQ(r.iMin, c.iLo);
    EXPECT_EQ(r.iMax, c.iHi);
    EXPECT_EQ(r.Range, c.rc ? M : c.hi - c.lo);
  }
  RangeResults r;
  EXPECT_EQ(zomath_range(nullptr, 3, &r), ZOMATH_ERR_EMPTY_DATA);
  EXPECT_EQ(zomath_range(cases[0].x.data(), 5, nullptr), ZOMATH_ERR_EMPTY_DATA);
}

// The trapezoidal rule is exact for a straight line: y = 2x + 1 has mean ordinate 2 m + 1 over
// any range whose midpoint is m, in either direction and across missing points.
TEST(MathematicalExpectation, MeanOrdinate) {
  const struct {
    std::vector<double> x, y;
    int rc;
    double mean;
  } cases[] = {
      {{0, 1, 2.5, 4}, {1, 3, 6, 9}, 0, 5},
      {{4, 2.5, 1, 0}, {9, 6, 3, 1}, 0, 5},
      {{M, 0, 1, M, 4, 7}, {5, 1, M, 8, 9, M}, 0, 5},
      {{0, 1, 1, 3}, {1, 3, 3, 7}, 0, 4},
      {{0, 2, 1}, {1, 5, 3}, ZOMATH_ERR_NOT_MONOTONIC, M},
      {{1}, {3}, ZOMATH_ERR_TOO_FEW_FOR_RANGE, M},
      {{2, 2}, {3, 5}, ZOMATH_ERR_TOO_FEW_FOR_RANGE, M},
  };
  for (const auto& c : cases) {
    double mean = 7;
    EXPECT_EQ(zomath_mathematical_expectation(int(c.x.size()), c.x.data(), c.y.data(), &mean), c.rc);
    EXPECT_DOUBLE_EQ(mean, c.mean);
  }
  double mean;
  EXPECT_EQ(zomath_mathematical_expectation(2, nullptr, cases[0].y.data(), &mean), ZOMATH_ERR_EMPTY_DATA);
  EXPECT_EQ(zomath_mathematical_expectation(2, cases[0].x.data(), cases[0].y.data(), nullptr),
            ZOMATH_ERR_EMPTY_DATA);
}

TEST(DensityStatistics, PeakMeanMedianSpread) {
  // A triangle on 0..4 peaking at 2, sampled at unit steps.
  const double x[] = {0, 1, 2, 3, 4}, y[] = {0, 1, 2, 1, 0};
  double xPeak, yPeak, mean, median, sd;
  int iPeak;
  EXPECT_EQ(zomath_basic_stats_distribution(5, x, y, &xPeak, &yPeak, &iPeak, &mean, &median, &sd, 1), 0);
  EXPECT_EQ(xPeak, 2);
  EXPECT_EQ(yPeak, 2);
  EXPECT_EQ(iPeak, 2);
  EXPECT_EQ(mean, 2);    // sum x y / sum y = 8 / 4
  EXPECT_EQ(median, 2);  // running sums 0, 1, 3: half of 4 reached at x = 2
  // The mean ordinate of y^2 is (area 0.5 + 2.5 + 2.5 + 0.5) / 4 = 1.5, below Mean^2 = 4.
  EXPECT_EQ(sd, M);
  const double flat[] = {0.5, 3, 3, 3, 3};
  EXPECT_EQ(zomath_basic_stats_distribution(5, x, flat, &xPeak, nullptr, &iPeak, &mean, nullptr, &sd, 0), 0);
  EXPECT_EQ(iPeak, 0) << "any other type takes the smallest y";
  EXPECT_DOUBLE_EQ(mean, 30.0 / 12.5);
  // (0.25 + 9) / 2 + 9 * 3 over a width of 4: 7.90625, above Mean^2 = 5.76.
  EXPECT_DOUBLE_EQ(sd, std::sqrt(7.90625 - 5.76));
  EXPECT_EQ(zomath_basic_stats_distribution(5, x, flat, nullptr, nullptr, nullptr, nullptr, nullptr, &sd, 0), 0);
  EXPECT_EQ(sd, M) << "the spread reads the mean through its pointer";
  const double zero[] = {0, 0, 0, 0, 0};
  EXPECT_EQ(zomath_basic_stats_distribution(5, x, zero, nullptr, nullptr, nullptr, &mean, &median, nullptr, 1), 0);
  EXPECT_EQ(mean, M);
  EXPECT_EQ(median, M);
}

TEST(DensityStatistics, RefusedTables) {
  const double x[] = {0, 1, 2, 3}, y[] = {1, 2, 2, 1};
  const struct {
    int n, at;
    bool inX;
    double value;
    int rc;
  } cases[] = {
      {2, -1, false, 0, ZOMATH_ERR_DENSITY_PARAM},
      {4, 2, true, 1, ZOMATH_ERR_DISTRIBUTION_TABLE},   // x not strictly rising
      {4, 1, false, M, ZOMATH_ERR_DISTRIBUTION_TABLE},  // a y below 0
      {4, 3, false, NAN, ZOMATH_ERR_DISTRIBUTION_TABLE},
      {4, 0, true, M, ZOMATH_ERR_DISTRIBUTION_TABLE},
  };
  for (const auto& c : cases) {
    std::vector<double> xs(x, x + 4), ys(y, y + 4);
    if (c.at >= 0) (c.inX ? xs : ys)[c.at] = c.value;
    double mean = 3;
    int index = 5;
    EXPECT_EQ(zomath_basic_stats_distribution(c.n, xs.data(), ys.data(), nullptr, nullptr, &index,
                                              &mean, nullptr, nullptr, 1), c.rc);
    EXPECT_EQ(mean, M);
    EXPECT_EQ(index, -1);
  }
  EXPECT_EQ(zomath_basic_stats_distribution(4, nullptr, y, nullptr, nullptr, nullptr, nullptr,
                                            nullptr, nullptr, 1), ZOMATH_ERR_EMPTY_DATA);
}

}  // namespace
