// Order tests, first differences, duplicates, grouping by x, missing values and the sorted copy
// of a curve.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "zomath/curves.h"

namespace {

using V = std::vector<double>;

TEST(Preparation, IsMonotonic) {
  struct Case {
    V data;
    bool strict;
    int want;
  };
  const double nan = std::nan("");
  const Case cases[] = {
      {{1, 1, 2}, false, 2}, {{1, 1, 2}, true, 0},  {{3, 2, 2}, false, 1}, {{3, 2, 1}, true, 1},
      {{5, 5, 5}, false, 2}, {{5, 5, 5}, true, 0},  {{7}, true, 2},        {{1, 3, 2}, false, 0},
      {{1, nan, 2}, false, 0},
  };
  for (const Case& c : cases)
    EXPECT_EQ(zomath_is_monotonic(c.data.data(), c.data.size(), c.strict), c.want)
        << c.data.size() << " " << c.strict;
  EXPECT_EQ(zomath_is_monotonic(nullptr, 3, false), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(zomath_is_monotonic(cases[0].data.data(), 0, false), ZOMATH_ERR_SIZE);
}

TEST(Preparation, MeanIncrementPerSegment) {
  // Steps 1, 1, 1 | 2, 4, 6, 8 (the last segment takes the remainder; the step between
  // segments belongs to neither).
  const double d[8] = {0, 1, 2, 3, 10, 14, 20, 28};
  double mean[2], sd[2];
  int count[2];
  ASSERT_EQ(zomath_mean_increment(8, d, mean, 2, sd, count, 0), 0);
  EXPECT_EQ(mean[0], 1);
  EXPECT_EQ(sd[0], 0);
  EXPECT_EQ(mean[1], 6);
  EXPECT_NEAR(sd[1], 2, 1e-15);
  EXPECT_EQ(count[0], 4);
  EXPECT_EQ(count[1], 4);
  // nUsed limits the data; one difference has no standard deviation; a missing value drops
  // the differences it takes part in.
  ASSERT_EQ(zomath_mean_increment(8, d, mean, 1, sd, nullptr, 2), 0);
  EXPECT_EQ(mean[0], 1);
  EXPECT_EQ(sd[0], NANUM);
  const double m[4] = {0, 1, NANUM, 5};
  ASSERT_EQ(zomath_mean_increment(4, m, mean, 1, nullptr, nullptr, 0), 0);
  EXPECT_EQ(mean[0], 1);
  EXPECT_EQ(zomath_mean_increment(8, d, mean, 5, sd, count, 0), ZOMATH_ERR_TOO_FEW_FOR_RANGE);
  EXPECT_EQ(zomath_mean_increment(1, d, mean, 1, sd, count, 0), ZOMATH_ERR_TOO_FEW_POINTS);
  EXPECT_EQ(zomath_mean_increment(8, d, nullptr, 1, sd, count, 0), ZOMATH_ERR_NULL_POINTER);
}

TEST(Preparation, RemoveDuplicatesByMode) {
  // Runs {1, 1 + 1e-9, 1 + 2e-9} and {3, 3}, apart from 2 and 4; the range is 3, so a
  // tolerance of 0 becomes 1e-8 of it (3e-8) and still merges the first run.
  const V x = {1, 1 + 1e-9, 1 + 2e-9, 2, 3, 3, 4}, y = {4, NANUM, 1, 5, 2, 6, 9};
  struct Case {
    int mode;
    double first, second;
  };
  const Case cases[] = {{0, 2.5, 4}, {1, 2.5, 4}, {2, 1, 2}, {3, 4, 6}, {4, 5, 8}, {-3, 2.5, 4}};
  for (const Case& c : cases) {
    V px = x, py = y, dupX(4, -1), dupN(4, -1);
    int groups = -1;
    ASSERT_EQ(zomath_xy_remove_duplicates(px.data(), py.data(), 7, c.mode, 0, false, dupX.data(),
                                          dupN.data(), &groups), 4) << c.mode;
    EXPECT_EQ(V(px.begin(), px.begin() + 4), (V{1 + 1e-9, 2, 3, 4}));
    EXPECT_EQ(V(py.begin(), py.begin() + 4), (V{c.first, 5, c.second, 9})) << c.mode;
    EXPECT_EQ(groups, 2);
    EXPECT_EQ(dupX, (V{1 + 1e-9, 3, -1, -1}));
    EXPECT_EQ(dupN, (V{3, 2, -1, -1}));
  }
  // Without pDupX the counts keep overwriting the first slot, and no group is counted.
  V px = x, py = y, dupN(2, -1);
  int groups = -1;
  ASSERT_EQ(zomath_xy_remove_duplicates(px.data(), py.data(), 7, 0, 0, false, nullptr,
                                        dupN.data(), &groups), 4);
  EXPECT_EQ(dupN, (V{2, -1}));
  EXPECT_EQ(groups, 0);
  // Sorting first; a run at the end takes the last point in.
  V sx = {5, 1, 5}, sy = {1, 2, 3};
  ASSERT_EQ(zomath_xy_remove_duplicates(sx.data(), sy.data(), 3, 0, 0.1, true, nullptr, nullptr,
                                        nullptr), 2);
  EXPECT_EQ(sx[1], 5);
  EXPECT_EQ(sy[1], 2);
  EXPECT_EQ(zomath_xy_remove_duplicates(sx.data(), sy.data(), 3, 5, 0, false, nullptr, nullptr,
                                        nullptr), ZOMATH_ERR_BAD_ARGUMENT);
}

TEST(Preparation, GroupByX) {
  // Rising edges on unsorted data: the data are sorted in place, y following.
  V x = {3, 1, 2, 5, 4}, y = {30, 10, 20, 50, 40};
  int last[5];
  const double edges[5] = {1, 2.5, 3, 8, 9};  // more edges than groups of data
  ASSERT_EQ(zomath_group_xy_by_x(5, x.data(), y.data(), 5, edges, last), 0);
  EXPECT_EQ(x, (V{1, 2, 3, 4, 5}));
  EXPECT_EQ(y, (V{10, 20, 30, 40, 50}));
  EXPECT_EQ((std::vector<int>(last, last + 5)), (std::vector<int>{0, 1, 2, 4, 4}));
  // The new form: a point on an edge opens the next group (so x = 1 and 3 move up), empty
  // groups go, the last group takes the rest.
  ASSERT_EQ(zomath_group_xy_by_x_new(5, x.data(), y.data(), 5, edges, last), 2);
  EXPECT_EQ((std::vector<int>(last, last + 2)), (std::vector<int>{1, 4}));
  // Falling edges sort the data descending.
  const double down[2] = {4.5, 2.5};
  ASSERT_EQ(zomath_group_xy_by_x(5, x.data(), y.data(), 2, down, last), 0);
  EXPECT_EQ(x, (V{5, 4, 3, 2, 1}));
  EXPECT_EQ((std::vector<int>(last, last + 2)), (std::vector<int>{0, 2}));
  // Codes: the smallest edge outside the data, edges not strictly monotonic, sizes.
  const double outside[2] = {0, 2}, flat[3] = {1, 2, 2};
  EXPECT_EQ(zomath_group_xy_by_x(5, x.data(), y.data(), 2, outside, last), ZOMATH_CURVE_ERR_EDGE_OUTSIDE);
  EXPECT_EQ(zomath_group_xy_by_x_new(5, x.data(), y.data(), 3, flat, last), ZOMATH_CURVE_ERR_EDGE_ORDER);
  EXPECT_EQ(zomath_group_xy_by_x(0, x.data(), y.data(), 2, down, last), ZOMATH_ERR_SIZE);
  EXPECT_EQ(zomath_group_xy_by_x(5, x.data(), nullptr, 2, down, last), ZOMATH_ERR_NULL_POINTER);
}

TEST(Preparation, RemoveMissingValues) {
  V x = {1, 2, -9, 4, 5}, y = {10, -9, 30, 40, 50};
  int idx[5];
  ASSERT_EQ(zomath_1d_remove_missingvalue(x.data(), y.data(), 5, -9, idx), 3);
  EXPECT_EQ(V(x.begin(), x.begin() + 3), (V{1, 4, 5}));
  EXPECT_EQ(V(y.begin(), y.begin() + 3), (V{10, 40, 50}));
  EXPECT_EQ((std::vector<int>(idx, idx + 3)), (std::vector<int>{0, 3, 4}));
  EXPECT_EQ(zomath_1d_remove_missingvalue(x.data(), y.data(), 0, -9, idx), -1);
  EXPECT_EQ(zomath_1d_remove_missingvalue(nullptr, y.data(), 5, -9, idx), -1);
}

TEST(Preparation, SortedCopyForThePeakFinders) {
  const double x[5] = {3, 1, 2, 2, 0}, y[5] = {30, 10, 20, 25, 0};
  double xo[5], yo[5];
  int idx[5];
  // Uneven, so with bResample each x is read back through the sorted curve: the tied x = 2
  // take the y that the bisection meets at that x.
  ASSERT_TRUE(zomath_generate_data_for_non_monotonic(5, x, y, xo, yo, idx, true));
  EXPECT_EQ((V(xo, xo + 5)), (V{0, 1, 2, 2, 3}));
  EXPECT_EQ(yo[2], yo[3]);
  EXPECT_TRUE(yo[2] == 20 || yo[2] == 25);
  EXPECT_EQ(yo[4], 30);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(x[idx[i]], xo[i]);
  ASSERT_FALSE(zomath_generate_data_for_non_monotonic(5, x, y, xo, yo, idx, false));
  for (int i = 0; i < 5; ++i) EXPECT_EQ(y[idx[i]], yo[i]);
  // Evenly spaced once sorted: the sorted y, no reading.
  const double ex[4] = {3, 0, 2, 1}, ey[4] = {3, 0, 2, 1};
  EXPECT_FALSE(zomath_generate_data_for_non_monotonic(4, ex, ey, xo, yo, idx, true));
  EXPECT_EQ((V(yo, yo + 4)), (V{0, 1, 2, 3}));
}

}  // namespace
