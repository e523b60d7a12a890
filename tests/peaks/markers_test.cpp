// Markers and the partition: each peak bounded between its neighbours, at the first points below
// the height or in the valleys, within the width limits, the same pairs in every order of x and
// by index or by centre; the stretch of a peak between its inflections.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "tests/peaks/peak_data.h"

namespace zomath::testing {
namespace {

// Three peaks at x = 20, 45, 75 (indices 40, 90, 150); the first valley stays above 0.01.
struct ThreePeaks {
  std::vector<double> x, y;
  std::vector<int> peaks = {40, 90, 150};
  ThreePeaks() {
    for (int i = 0; i < 200; ++i) {
      const double t = 0.5 * i;
      x.push_back(t);
      y.push_back(5 * std::exp(-0.5 * std::pow((t - 20) / 3, 2)) + 3 * std::exp(-0.5 * std::pow((t - 45) / 4, 2)) +
                  4 * std::exp(-0.5 * std::pow((t - 75) / 5, 2)));
    }
  }
};

std::vector<int> markers(const std::vector<double>& x, const std::vector<double>& y, const std::vector<int>& peaks,
                         double height, double maxW, double minW) {
  std::vector<int> m(2 * peaks.size());
  const int rc = zomath_find_markers_of_peaks_by_height_and_width(
      static_cast<unsigned>(x.size()), x.data(), y.data(), static_cast<int>(peaks.size()), peaks.data(),
      static_cast<int>(m.size()), m.data(), height, maxW, minW);
  return rc == 0 ? m : std::vector<int>{rc};
}

// The first point below the height walking out from p in direction dir, from `from` points on.
int first_below(const std::vector<double>& y, int p, int dir, double height, int from = 1) {
  int k = p + from * dir;
  while (std::fabs(y[k]) >= height) k += dir;
  return k;
}

TEST(Markers, AtTheHeightInTheValleyOrAtTheWidth) {
  const ThreePeaks c;
  std::vector<int> expected;
  for (int p : c.peaks) expected.push_back(first_below(c.y, p, -1, 0.5)), expected.push_back(first_below(c.y, p, 1, 0.5));
  EXPECT_EQ(markers(c.x, c.y, c.peaks, 0.5, 1e9, 0), expected);
  // Peaks in another order get their own pairs.
  EXPECT_EQ(markers(c.x, c.y, {150, 40, 90}, 0.5, 1e9, 0),
            (std::vector<int>{expected[4], expected[5], expected[0], expected[1], expected[2], expected[3]}));
  // Below 0.01 the first valley is never reached: both sides meet at its lowest point.
  const std::vector<int> low = markers(c.x, c.y, c.peaks, 0.01, 1e9, 0);
  const int valley = static_cast<int>(std::min_element(c.y.begin() + 40, c.y.begin() + 91) - c.y.begin());
  EXPECT_EQ(low[1], valley);
  EXPECT_EQ(low[2], valley);
  // A maximum width of 2 stops the walk 3 points out, where |y| is least; a minimum width beyond
  // the neighbours takes the walk to them.
  EXPECT_EQ(markers(c.x, c.y, c.peaks, 0.5, 2, 0), (std::vector<int>{37, 43, 87, 93, 147, 153}));
  EXPECT_EQ(markers(c.x, c.y, {90}, 0.5, 300, 200), (std::vector<int>{0, 199}));
  EXPECT_EQ(markers(c.x, c.y, c.peaks, 0.5, 1, 2), std::vector<int>{ZOMATH_ERR_BAD_ARGUMENT});
  EXPECT_EQ(markers(c.x, c.y, {40, 200}, 0.5, 10, 0), std::vector<int>{ZOMATH_PEAK_ERR_INDEX});
}

TEST(Markers, SamePairsInEveryOrderOfXAndByCentre) {
  const ThreePeaks c;
  const int n = 200;
  const std::vector<int> m = markers(c.x, c.y, c.peaks, 0.5, 12, 1);
  std::vector<int> rp, reversed;  // falling x: the same points, smaller index first
  for (int g = 0; g < 3; ++g) {
    rp.push_back(n - 1 - c.peaks[g]);
    reversed.push_back(n - 1 - m[2 * g + 1]);
    reversed.push_back(n - 1 - m[2 * g]);
  }
  EXPECT_EQ(markers({c.x.rbegin(), c.x.rend()}, {c.y.rbegin(), c.y.rend()}, rp, 0.5, 12, 1), reversed);
  const std::vector<int> p = permutation(n, 2);
  std::vector<int> sm = markers(permuted(c.x, p), permuted(c.y, p), moved(c.peaks, p), 0.5, 12, 1);
  for (int g = 0; g < 3; ++g) {
    EXPECT_LT(sm[2 * g], sm[2 * g + 1]);
    EXPECT_EQ(std::minmax(p[sm[2 * g]], p[sm[2 * g + 1]]), std::minmax(m[2 * g], m[2 * g + 1]));
  }
  const double centres[3] = {19.8, 45.0, 74.9};  // a centre between points stands at the next one
  std::vector<int> byCentre(6);
  ASSERT_EQ(zomath_find_markers_of_peak_centers_by_height_and_width(n, c.x.data(), c.y.data(), 3, centres, 6,
                                                                    byCentre.data(), 0.5, 12, 1), 0);
  EXPECT_EQ(byCentre, m);
}

TEST(Markers, FullWidthTakesTheNearestPointsWithinEachRange) {
  const ThreePeaks c;
  double maxW[3] = {30, 30, 3}, minW[3] = {1, 9, 1};
  std::vector<int> m(6);
  ASSERT_EQ(zomath_find_markers_of_peaks_by_height_and_full_width(200, c.x.data(), c.y.data(), 3, c.peaks.data(), 6,
                                                                  m.data(), 0.5, maxW, minW), 0);
  // Peak 1 from 9 (18 points) out, over its neighbours' flanks; peak 2: nothing within 3.
  EXPECT_EQ(m, (std::vector<int>{first_below(c.y, 40, -1, 0.5), first_below(c.y, 40, 1, 0.5),
                                 first_below(c.y, 90, -1, 0.5, 18), first_below(c.y, 90, 1, 0.5, 18), -1, -1}));
}

// The stretch of a peak between the sign changes of the second derivative: at its inflections,
// x = c -+ the width of a Gaussian, within a step.
TEST(Partition, EndsAtTheInflections) {
  std::vector<double> x, y;
  for (int i = 0; i <= 400; ++i) {
    x.push_back(-10 + 0.05 * i);
    y.push_back(std::exp(-0.5 * std::pow(x.back() + 4, 2)) + 2 * std::exp(-0.5 * std::pow((x.back() - 3) / 1.5, 2)));
  }
  const std::vector<double> rx(x.rbegin(), x.rend()), ry(y.rbegin(), y.rend());
  int left = -1, right = -1;
  for (int window : {3, 9}) {  // unsmoothed, and smoothed over 9 points
    ASSERT_EQ(zomath_find_peaks_partition(401, x.data(), y.data(), 3.0, &left, &right, window), 0);
    EXPECT_NEAR(x[left], 1.5, 0.06);
    EXPECT_NEAR(x[right], 4.5, 0.06);
    ASSERT_EQ(zomath_find_peaks_partition(401, rx.data(), ry.data(), 3.0, &left, &right, window), 0);
    EXPECT_NEAR(rx[left], 1.5, 0.06);  // left and right in x, whichever way x runs
    EXPECT_NEAR(rx[right], 4.5, 0.06);
  }
  ASSERT_EQ(zomath_find_peaks_partition(401, x.data(), y.data(), 9.0, &left, &right, 3), 0);
  EXPECT_EQ(right, 400);  // beyond the last inflection: the end of the data
  EXPECT_EQ(zomath_find_peaks_partition(5, x.data(), y.data(), 3.0, &left, &right, 9), ZOMATH_PEAK_ERR_SMOOTHING);
}

}  // namespace
}  // namespace zomath::testing
