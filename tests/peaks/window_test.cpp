// The window finders against SciPy's argrelmax and argrelmin and against a scan of every window
// written from their definition: ties, missing values, each flag combination, each order of x.
// Peaks are positions: every comparison is exact.
#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "tests/peaks/peak_data.h"

namespace zomath::testing {
namespace {

bool missing(double v) { return v == NANUM || v != v; }

// Peaks by definition: i is the first maximum (else the first minimum) of the present values of
// the window i - r(i) .. i + r(i), with the sign the flags ask for, and rises(i, r).
template <class Radius, class Rises>
std::vector<int> scan_every_window(const std::vector<double>& y, int first, int last, int flags,
                                   bool signTest, Radius radius, Rises rises) {
  const bool any = !signTest || (flags & 4);
  std::vector<int> out;
  for (int i = first; i <= last; ++i) {
    int top = -1, bottom = -1;
    for (int j = i - radius(i); j <= i + radius(i); ++j) {
      if (missing(y[j])) continue;
      if (top < 0 || y[j] > y[top]) top = j;
      if (bottom < 0 || y[j] < y[bottom]) bottom = j;
    }
    const bool positive = (flags & 1) && top == i && (any || y[i] > 0);
    if ((positive || ((flags & 2) && bottom == i && (any || y[i] < 0))) && rises(i, radius(i)))
      out.push_back(i);
  }
  return out;
}

Finder local_maximum(int flags, int h, bool extremes = false) {
  return [=](int* n, const double* x, const double* y, double* px, double* py, int* pi) {
    return (extremes ? zomath_find_local_extremes : zomath_find_peaks_by_local_maximum)(n, x, y, px, py, pi,
                                                                                       flags, h);
  };
}

TEST(WindowFinder, MatchesScipyArgrelOnDistinctValues) {
  const std::vector<double> y = power_series(1500);
  std::vector<double> x(1500);
  for (int i = 0; i < 1500; ++i) x[i] = 0.25 * i;
  std::map<std::pair<int, int>, std::vector<int>> scipy;  // (order, kind) -> indices
  for (const ReferenceRow& r : load_reference("peaks/extrema.csv"))  // SciPy also tests the ends
    if (r.value >= r.args[0] && r.value < 1500 - r.args[0])
      scipy[{static_cast<int>(r.args[0]), static_cast<int>(r.args[1])}].push_back(static_cast<int>(r.value));
  ASSERT_EQ(scipy.size(), 8u);
  for (const auto& [key, expected] : scipy)
    EXPECT_EQ(run(local_maximum(key.second | 4, key.first), x, y).idx, expected) << key.first << " " << key.second;
}

// Values -8..8 with ties, a few missing; x rising, falling or shuffled (the finder sorts, so its
// peaks are those of the sorted curve, given back as input indices); every flag combination.
TEST(WindowFinder, EveryWindowScannedAgrees) {
  const int n = 400;
  std::vector<double> y = power_series(n), x(n);
  for (double& v : y) v = std::fmod(v, 17.0) - 8.0;
  y[37] = y[38] = y[200] = NANUM;
  const std::vector<int> p = permutation(n, 3);
  for (int order = 0; order < 3; ++order) {
    for (int i = 0; i < n; ++i) x[i] = order == 1 ? 50.0 - 0.5 * i : 0.5 * i;
    const std::vector<double> xs = order == 2 ? permuted(x, p) : x, ys = order == 2 ? permuted(y, p) : y;
    for (int flags = 0; flags < 8; ++flags)
      for (int h : {0, 1, 2, 7, 30}) {
        for (bool extremes : {false, true}) {
          std::vector<int> expected = scan_every_window(y, h, n - h - 1, flags, !extremes, [h](int) { return h; },
                                                        [](int, int) { return true; });
          if (order == 2 && !extremes) expected = moved(expected, p);  // extremes: no mapping back
          const Peaks got = run(local_maximum(flags, h, extremes), xs, ys);
          EXPECT_EQ(got.idx, expected) << order << " " << flags << " " << h << " " << extremes;
          for (std::size_t k = 0; k < got.idx.size() && !extremes; ++k)
            EXPECT_TRUE(got.x[k] == xs[got.idx[k]] && got.y[k] == ys[got.idx[k]]);
        }
      }
  }
}

TEST(WindowFinder, FlatDataAndWindowLimits) {
  const std::vector<double> x = {0, 1, 2, 3, 4, 5, 6}, up(7, 2.0), down(7, -2.0);
  EXPECT_TRUE(run(local_maximum(3, 2), x, up).idx.empty());     // the flat window's first point wins
  EXPECT_EQ(run(local_maximum(3, 0), x, up).idx.size(), 7u);    // one point: its own maximum
  EXPECT_EQ(run(local_maximum(3, 0), x, down).idx.size(), 7u);  // y < 0: negative peaks instead
  for (int h : {3, -1}) EXPECT_EQ(run(local_maximum(3, h), x, up).rc, ZOMATH_ERR_BAD_ARGUMENT) << h;
}

Finder search_window(int flags, double width, double height) {
  return [=](int* n, const double* x, const double* y, double* px, double* py, int* pi) {
    return zomath_find_peaks_by_search_window(n, x, y, px, py, pi, flags, width, height);
  };
}

TEST(SearchWindow, EveryShrinkingWindowScannedAgrees) {
  const int n = 300;
  std::vector<double> y = power_series(n), x(n);
  for (double& v : y) v = std::fmod(v, 23.0) - 9.0;
  y[100] = NANUM;
  for (int i = 0; i < n; ++i) x[i] = 0.5 * i;
  const std::vector<int> p = permutation(n, 11);
  for (double width : {0.0, 1.0, 2.6, 10.0, 149.9})
    for (double height : {-1.0, 0.0, 4.0, 100.0})  // 100: above the amplitude, so nothing
      for (int flags : {1, 2, 3, 5, 7}) {
        const int h = (static_cast<int>(width / 0.5) | 1) / 2;
        const auto radius = [h, n](int i) { return std::min(h, std::min(i, n - 1 - i)); };
        const auto rises = [&](int i, int r) {
          return !missing(y[i - r]) && !missing(y[i + r]) && std::fabs(y[i] - y[i - r]) >= height &&
                 std::fabs(y[i] - y[i + r]) >= height;
        };
        const std::vector<int> expected = scan_every_window(y, 0, n - 1, flags, true, radius, rises);
        EXPECT_EQ(run(search_window(flags, width, height), x, y).idx, expected) << width << " " << height;
        EXPECT_EQ(run(search_window(flags, width, height), permuted(x, p), permuted(y, p)).idx, moved(expected, p));
        EXPECT_TRUE(height < 50 || expected.empty());
      }
  EXPECT_EQ(run(search_window(1, 151.0, 0.0), x, y).rc, ZOMATH_ERR_BAD_ARGUMENT);  // wider than the data
}

// Uneven x are read on an even grid; each peak comes back as the input point nearest in x.
TEST(SearchWindow, UnevenStepsGiveInputPoints) {
  std::vector<double> x(200), y(200);
  for (int i = 0; i < 200; ++i) x[i] = i + 0.01 * std::sin(1.7 * i);
  for (int i = 0; i < 200; ++i)
    y[i] = 4 * std::exp(-0.5 * std::pow((x[i] - x[60]) / 6, 2)) + 3 * std::exp(-0.5 * std::pow((x[i] - x[140]) / 5, 2));
  const Peaks p = run(search_window(1, 21.0, 1.0), x, y);
  EXPECT_EQ(p.idx, (std::vector<int>{60, 140}));
  EXPECT_EQ(p.y, (std::vector<double>{y[60], y[140]}));
}

}  // namespace
}  // namespace zomath::testing
