// Filters of peak lists, picking by rise, reading at indices and the mapping back, the k-th value,
// the noise level against noise of known deviation, and the inflections of a Gaussian.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "tests/peaks/peak_data.h"

namespace zomath::testing {
namespace {

struct List {
  std::vector<double> x = {1, 2, 3, 4, 5, 6}, y = {2, -7, 0.5, 7, NANUM, -3};
  std::vector<int> idx = {10, 20, 30, 40, 50, 60};
};

TEST(Filters, KeepTheTallestFirst) {
  for (auto [height, count, order] : {std::tuple{1.0, 4, std::vector<int>{20, 40, 60, 10, -1, -1}},
                                      {7.5, 0, std::vector<int>(6, -1)}}) {
    List a;
    int n = 6;  // ties of |y| keep their order; NANUM and those below the height go
    ASSERT_EQ(zomath_test_peaks_by_height(&n, a.x.data(), a.y.data(), a.idx.data(), height), 0);
    EXPECT_EQ(n, count);
    EXPECT_EQ(a.idx, order);
  }
  for (auto [keep, order] : {std::pair{6, std::vector<int>{20, 40, 60, 10, 30, 50}},
                             {2, std::vector<int>{20, 40, -1, -1, -1, -1}}}) {
    List a;
    ASSERT_EQ(zomath_test_peaks_by_number(6, a.x.data(), a.y.data(), a.idx.data(), keep), 0);
    EXPECT_EQ(a.idx, order);
    EXPECT_EQ(a.y[2], keep == 6 ? -3 : NANUM);
  }
  List a;
  EXPECT_EQ(zomath_test_peaks_by_number(6, a.x.data(), a.y.data(), a.idx.data(), 7), ZOMATH_PEAK_ERR_KEEP);
}

TEST(KMinMax, IsTheKthOfTheSortedValues) {
  std::vector<double> v = power_series(301), sorted;
  v[7] = NANUM;
  v[100] = NAN;
  for (double a : v)
    if (a == a && a != NANUM) sorted.push_back(a);
  std::sort(sorted.begin(), sorted.end());
  for (int k = 0; k < 299; ++k) EXPECT_EQ(zomath_find_k_min_max(v.data(), 301, k), sorted[k]) << k;
  for (int k : {-1, 299, 301}) EXPECT_EQ(zomath_find_k_min_max(v.data(), 301, k), NANUM) << k;
}

TEST(PickPeaks, RisesAboveBothSides) {
  std::vector<double> y(100, 0.0);
  for (int c : {20, 50, 80})
    for (int d = -3; d <= 3; ++d) y[c + d] = 10 - 3 * std::abs(d);
  y[0] = y[1] = y[99] = NANUM;  // trimmed
  int idx[8];
  EXPECT_EQ(zomath_pick_peaks(y.data(), 0, 99, idx, 8, 5, 5.0, 0.0, -1), 3);
  EXPECT_EQ(std::vector<int>(idx, idx + 3), (std::vector<int>{20, 50, 80}));
  EXPECT_EQ(zomath_pick_peaks(y.data(), 0, 99, idx, 3, 5, 5.0, 0.0, -1), 2);   // room for 3 - 1
  EXPECT_EQ(zomath_pick_peaks(y.data(), 0, 99, idx, 8, 5, 5.0, 20.0, -1), 0);  // none 20 above the floor
  for (double& v : y) v = v == NANUM ? v : -v;
  EXPECT_EQ(zomath_pick_peaks(y.data(), 0, 99, idx, 8, 5, -5.0, 0.0, 2), 3);
  EXPECT_EQ(std::vector<int>(idx, idx + 3), (std::vector<int>{20, 50, 80}));
  EXPECT_EQ(zomath_pick_peaks(y.data(), 0, 99, idx, 8, 0, 5.0, 0.0, -1), -1);
}

TEST(IndexReading, MatchAndMapBack) {
  const std::vector<double> x = {5, 1, 4, 2, 3}, y = {50, 10, 40, 20, 30};
  std::vector<int> idx = {1, 5};
  double px[2] = {7, 7}, py[2] = {7, 7};
  EXPECT_EQ(zomath_match_peaks_centers_by_index(x.data(), y.data(), 5, idx.data(), px, py, 2), ZOMATH_PEAK_ERR_INDEX);
  EXPECT_EQ(px[0], 7);  // nothing written
  const int order[5] = {1, 3, 4, 2, 0};  // the copy sorted by x: 1, 2, 3, 4, 5
  idx = {4, 1};
  ASSERT_EQ(zomath_adjust_data_of_peaks(5, x.data(), y.data(), 2, px, py, idx.data(), order, false), 0);
  EXPECT_EQ(idx, (std::vector<int>{0, 3}));
  EXPECT_EQ(px[1], 2);
  px[0] = 3.4;
  px[1] = 1.5;  // equally near 1 and 2: the lower index
  ASSERT_EQ(zomath_adjust_data_of_peaks(5, x.data(), y.data(), 2, px, py, idx.data(), nullptr, true), 0);
  EXPECT_EQ(idx, (std::vector<int>{4, 1}));
  EXPECT_EQ(py[0], 30);
}

// The noise of 10^4 points of smooth curves with white noise of known deviation added is found
// within 5% (the estimator's own spread there is about 1.5%), however tall or many the peaks:
// flat, sloped and curved baselines, with 8 or 40 peaks 5 to 1000 deviations tall.
TEST(NoiseLevel, FindsTheDeviationOfWhiteNoise) {
  const int n = 10000;
  std::mt19937_64 rng(42);
  std::uniform_real_distribution<double> u(0.0, 1.0);
  for (double sigma : {1e-3, 1.0, 250.0})
    for (int shape = 0; shape < 4; ++shape) {
      std::normal_distribution<double> noise(0.0, sigma);
      std::vector<double> y(n, 0.0);
      for (int i = 0; i < n && shape; ++i) y[i] = sigma * (3 + 0.002 * i + 5 * std::sin(i / 700.0));
      for (int k = 0; shape >= 2 && k < (shape == 3 ? 40 : 8); ++k) {
        const double c = u(rng) * n, w = 15 + 45 * u(rng), a = sigma * (5 + 995 * u(rng));
        for (int i = 0; i < n; ++i) y[i] += a * std::exp(-0.5 * std::pow((i - c) / w, 2));
      }
      for (double& v : y) v += noise(rng);
      EXPECT_NEAR(zomath_get_noise_level(n, y.data()) / sigma, 1.0, 0.05) << sigma << " " << shape;
    }
  const std::vector<double> line = {1, 2, 3, 4, NANUM, 6, 7};
  EXPECT_EQ(zomath_get_noise_level(7, line.data()), 0.0);
  EXPECT_EQ(zomath_get_noise_level(2, line.data()), NANUM);
}

// A Gaussian of width 2 has its inflections at -+2 with slopes -+3 e^(-1/2) / 2, and its tangents
// there meet zero 4 widths apart. Central differences of the linearly read curve, step 0.05, place
// them within 1e-3 (4e-3 for the width, which adds four such errors).
TEST(Inflection, OfAGaussian) {
  std::vector<double> x, y;
  for (int i = 0; i <= 400; ++i) x.push_back(-10 + 0.05 * i), y.push_back(3 * std::exp(-0.5 * std::pow(x.back() / 2, 2)));
  double left, right, width, value, first, second, third;
  ASSERT_EQ(zomath_find_inflection_point(401, x.data(), y.data(), 0.0, 1.5, &left, &right, &width), 0);
  EXPECT_NEAR(left, -2, 1e-3);
  EXPECT_NEAR(right, 2, 1e-3);
  EXPECT_NEAR(width, 8, 4e-3);
  EXPECT_NEAR(zomath_iterate_for_finding_inflection(1.0, 0.0, 6.0, 401, x.data(), y.data(), &value, &first, &second,
                                                    &third), 2, 1e-3);
  EXPECT_NEAR(first, -1.5 * std::exp(-0.5), 1e-3);
  EXPECT_NEAR(second, 0, 1e-9);
  EXPECT_EQ(zomath_find_inflection_point(401, x.data(), y.data(), 11.0, 1.5, &left, &right, &width),
            ZOMATH_ERR_BAD_ARGUMENT);
  const std::vector<double> none(401, NANUM);
  EXPECT_EQ(zomath_find_inflection_point(401, x.data(), none.data(), 0.0, 1.5, &left, &right, &width),
            ZOMATH_PEAK_ERR_NO_POINTS);
}

}  // namespace
}  // namespace zomath::testing
