// The derivative finders: every extreme of Gaussian peaks on a sloped baseline at the index
// SciPy's find_peaks gives and nothing else, in every order of x; flat tops; the shoulder that
// only the second derivative sees; smoothing that ignores noise; the detector as an export.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "tests/peaks/peak_data.h"

namespace zomath::testing {
namespace {

Finder first_derivative(int flags, bool smooth = false, int window = 0, int order = 0) {
  return [=](int* n, const double* x, const double* y, double* px, double* py, int* pi) {
    return zomath_find_peaks_1st_derivative(n, x, y, px, py, pi, flags, smooth, window, order);
  };
}

TEST(FirstDerivative, FindsTheExtremesOfGaussiansInEveryOrderOfX) {
  const GaussianSet& s = gaussian_set();
  const int n = static_cast<int>(s.x.size());
  ASSERT_EQ(n, 800);
  const std::vector<int> p = permutation(n, 5);
  const std::vector<double> rx(s.x.rbegin(), s.x.rend()), ry(s.y.rbegin(), s.y.rend());
  for (int flags = 1; flags < 8; ++flags) {
    // Maxima with y >= 0 (any y with bit 4), then minima with y <= 0; each group in order of x.
    std::vector<int> expected, reversed;
    for (int group : {1, 2}) {
      std::vector<int> part;
      for (int i : group == 1 ? s.maxima : s.minima)
        if ((flags & group) && ((flags & 4) || (group == 1 ? s.y[i] >= 0 : s.y[i] <= 0))) part.push_back(i);
      expected.insert(expected.end(), part.begin(), part.end());
      for (auto it = part.rbegin(); it != part.rend(); ++it) reversed.push_back(n - 1 - *it);
    }
    const Peaks got = run(first_derivative(flags), s.x, s.y);
    EXPECT_EQ(got.idx, expected) << flags;
    for (std::size_t k = 0; k < got.idx.size(); ++k) EXPECT_EQ(got.y[k], s.y[got.idx[k]]);
    EXPECT_EQ(run(first_derivative(flags), permuted(s.x, p), permuted(s.y, p)).idx, moved(expected, p)) << flags;
    EXPECT_EQ(run(first_derivative(flags), rx, ry).idx, reversed) << flags;  // falling x, as it stands
  }
}

// A flat top is found at its first point in x, a flat bottom at its last, whichever way x runs.
TEST(FirstDerivative, FlatTopsAndBottoms) {
  const std::vector<double> y = {0, 1, 3, 3, 3, 1, 0, -2, -2, -2, 0, 1};
  std::vector<double> x(12);
  for (int i = 0; i < 12; ++i) x[i] = 0.5 * i;
  EXPECT_EQ(run(first_derivative(3), x, y).idx, (std::vector<int>{2, 9}));
  EXPECT_EQ(run(first_derivative(3), {x.rbegin(), x.rend()}, {y.rbegin(), y.rend()}).idx, (std::vector<int>{9, 2}));
  const std::vector<int> p = permutation(12, 1);
  EXPECT_EQ(run(first_derivative(3), permuted(x, p), permuted(y, p)).idx, moved({2, 9}, p));
  EXPECT_EQ(run(first_derivative(3), {1.0}, {1.0}).rc, ZOMATH_PEAK_ERR_SLOPES);
  for (auto [window, order] : {std::pair{3, 1}, {5, 0}, {5, 5}})
    EXPECT_EQ(run(first_derivative(3, true, window, order), x, y).rc, ZOMATH_PEAK_ERR_SMOOTHING);
}

// On a sloped baseline with noise the smoothed slope finds the two maxima, within two points of
// those of the noise-free curve (a scan of its closed form), where the plain slope finds noise.
TEST(FirstDerivative, SmoothedSlopeIgnoresNoise) {
  const auto f = [](double t) {
    return 0.2 * t + 3 * std::exp(-0.5 * std::pow((t - 15) / 2, 2)) + 2 * std::exp(-0.5 * std::pow((t - 40) / 3, 2));
  };
  const auto top = [&](double t) {
    for (double u = t - 2; u <= t + 2; u += 1e-4) t = f(u) > f(t) ? u : t;
    return t;
  };
  std::vector<double> x, y;
  std::mt19937_64 rng(4);
  std::normal_distribution<double> noise(0.0, 0.01);
  for (int i = 0; i < 600; ++i) x.push_back(0.1 * i), y.push_back(f(x.back()) + noise(rng));
  EXPECT_GT(run(first_derivative(1), x, y).idx.size(), 20u);
  const Peaks p = run(first_derivative(1, true, 31, 2), x, y);
  ASSERT_EQ(p.idx.size(), 2u);
  EXPECT_NEAR(p.x[0], top(15), 0.2);
  EXPECT_NEAR(p.x[1], top(40), 0.2);
}

// A peak with a shoulder on its right: one maximum of y, two minima of the second derivative,
// found by every form within a step or two (0.025) of the minima of the closed form.
TEST(SecondDerivative, EveryFormFindsTheShoulder) {
  std::vector<double> x, y;
  const auto curvature = [](double t) {
    const auto g = [t](double a, double c, double w) {
      const double u = (t - c) / w;
      return a * std::exp(-0.5 * u * u) * (u * u - 1) / (w * w);
    };
    return g(5, 0, 1) + g(2.5, 1.8, 0.8);
  };
  const auto least = [&](double t) {
    for (double u = t - 1; u <= t + 1; u += 1e-5) t = curvature(u) < curvature(t) ? u : t;
    return t;
  };
  for (int i = 0; i <= 440; ++i) {
    const double t = -5 + 0.025 * i;
    x.push_back(t);
    y.push_back(5 * std::exp(-0.5 * t * t) + 2.5 * std::exp(-0.5 * std::pow((t - 1.8) / 0.8, 2)));
  }
  EXPECT_EQ(run(first_derivative(1), x, y).idx.size(), 1u);
  struct Case {
    int method, window, order;
    double cutoff;  // > 0: the Fourier form
  };
  for (const Case& c : {Case{0, 0, 0, 0}, Case{1, 5, 0, 0}, Case{1, -1, 0, 0}, Case{2, 9, 2, 0}, Case{3, 9, 2, 0},
                        Case{2, 21, 4, 0}, Case{0, 0, 0, 0.05}}) {
    std::vector<double> d(441);
    const Finder f = [&](int* n, const double* a, const double* b, double* px, double* py, int* pi) {
      return c.cutoff > 0 ? zomsp_find_peaks_2nd_derivative(n, a, b, px, py, pi, 1, c.cutoff, d.data())
                          : zomath_find_peaks_2nd_derivative(n, a, b, px, py, pi, 1, c.method, d.data(), c.window,
                                                             c.order);
    };
    const Peaks p = run(f, x, y);
    std::vector<double> at;  // the end fits of the smoothed forms also mark the far tails
    for (std::size_t k = 0; k < p.x.size(); ++k)
      if (p.y[k] > 0.05) at.push_back(p.x[k]);
    ASSERT_EQ(at.size(), 2u) << c.method << " " << c.window << " " << c.cutoff;
    EXPECT_NEAR(at[0], least(-0.1), 0.06) << c.method << " " << c.window;
    EXPECT_NEAR(at[1], least(1.8), 0.06) << c.method << " " << c.window;
    if (c.method == 0 && c.cutoff == 0) {  // the second derivative comes back at the input points
      const std::vector<int> perm = permutation(441, 9);
      const std::vector<double> plain = d;
      EXPECT_EQ(run(f, permuted(x, perm), permuted(y, perm)).x, p.x);
      EXPECT_EQ(d, permuted(plain, perm));
    }
  }
  for (auto [method, window, order] : {std::tuple{1, 0, 0}, {2, 3, 2}, {3, 9, 9}})
    EXPECT_EQ(run([&](int* n, const double* a, const double* b, double* px, double* py, int* pi) {
                return zomath_find_peaks_2nd_derivative(n, a, b, px, py, pi, 1, method, nullptr, window, order);
              }, x, y).rc, ZOMATH_PEAK_ERR_SMOOTHING) << method;
}

// The detector as an export: appends within its room, reads the missing value given.
TEST(Detector, AppendsWithinRoom) {
  const double x[6] = {0, 1, 2, 3, 4, 5}, y[6] = {1, 2, 3, 2, 1, 2}, missing = -1;
  const double slope[6] = {1, 1, 0, -1, 0, 1}, curvature[6] = {0, -1, -2, -1, 0, 1};
  double px[6], py[6];
  int pi[6] = {9}, count = 1;
  const auto call = [&](const double* d, bool negative, int mode, const double* m) {
    return zomath_find_peak_by_derivative_centralized(6, x, y, d, &count, px, py, pi, negative, 5, mode, m);
  };
  EXPECT_EQ(call(slope, false, ZOMATH_PEAK_MASK_SLOPE, nullptr) + call(curvature, false, 1, nullptr) +
                call(curvature, true, 1, &missing), 0);  // the dip at 4 reads -1 on its left
  EXPECT_EQ(std::vector<int>(pi, pi + count), (std::vector<int>{9, 2, 2}));
  count = 6;  // no room left
  EXPECT_EQ(call(slope, false, 0, nullptr), ZOMATH_PEAK_ERR_COUNT);
  EXPECT_EQ(call(slope, false, 4, nullptr), ZOMATH_PEAK_ERR_DETECTOR);
}

}  // namespace
}  // namespace zomath::testing
