// The smoothing exports beyond their reference values: codes and edge cases, the percentile
// filter against sorting every window, the running sum over a long series, the Fourier
// low-pass on sinusoids, derivative scaling, filtering in place and hostile input.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>
#include <set>
#include <thread>
#include <vector>

#include "curves/window_filters.h"
#include "zomath/curves.h"
#include "zomath/stats.h"

namespace {

const double kNan = std::nan("");

// Equal values, or both NaN (NANUM compares equal to itself).
bool same(double a, double b) { return a == b || (a != a && b != b); }

TEST(Smoothing, Codes) {
  std::vector<double> y = {3, 1, 4, 1, 5, 9, 2, 6}, out(8, 7.0), x = {0, 1, 2, 3, 4, 5, 6, 7};
  const std::vector<double> one = {NANUM, NANUM, 2, NANUM, NANUM, NANUM, NANUM, NANUM};
  const std::vector<double> holes(8, NANUM);
  const double* p = y.data();
  double* o = out.data();
  int off[25], dx[25], dy[25];
  struct Case {
    const char* what;
    std::function<int()> call;
    int code;
  };
  const Case cases[] = {
      {"smooth empty", [&] { return zomath_smooth(0, p, o, 1, 0, 0, 1, 2, 0, 50, false, false); }, -5},
      {"smooth null", [&] { return zomath_smooth(8, p, nullptr, 1, 0, 0, 1, 2, 0, 50, false, false); }, -11},
      {"smooth method 3", [&] { return zomath_smooth(8, p, o, 1, 3, 0, 1, 2, 0, 50, false, false); }, -18},
      {"smooth method -1", [&] { return zomath_smooth(8, p, o, 1, -1, 0, 1, 2, 0, 50, false, false); }, -18},
      {"smooth boundary 5", [&] { return zomath_smooth(8, p, o, 1, 1, 5, 1, 2, 0, 50, false, false); }, -18},
      {"smooth median", [&] { return zomath_smooth(8, p, o, 1, 2, 4, 1, 2, 0, 50, false, true); }, 0},
      {"adjave null", [&] { return zomath_adjave_smooth(nullptr, o, 8, 1, 0, false); }, -11},
      {"adjave wide", [&] { return zomath_adjave_smooth(p, o, 8, 8, 0, false); }, -9},
      {"adjave negative", [&] { return zomath_adjave_smooth(p, o, 8, -1, 0, false); }, -9},
      {"adjave mode 6", [&] { return zomath_adjave_smooth(p, o, 8, 1, 6, false); }, -9},
      {"adjave weighted 5", [&] { return zomath_adjave_smooth(p, o, 8, 1, 5, true); }, -9},
      {"adjave plain 5", [&] { return zomath_adjave_smooth(p, o, 8, 7, 5, false); }, 0},
      {"adjave line, one value", [&] { return zomath_adjave_smooth(one.data(), o, 8, 1, 4, false); }, -9},
      {"savgol null", [&] { return zomath_savitsky_golay(p, nullptr, 8, 1, 1, 2, 0, 0); }, -11},
      {"savgol zero width", [&] { return zomath_savitsky_golay(p, o, 8, 0, 0, 1, 0, 1); }, -18},
      {"savgol order 0", [&] { return zomath_savitsky_golay(p, o, 8, 2, 2, 0, 0, 1); }, -18},
      {"savgol deriv > order", [&] { return zomath_savitsky_golay(p, o, 8, 2, 2, 2, 3, 1); }, -18},
      {"savgol window > size", [&] { return zomath_savitsky_golay(p, o, 8, 4, 4, 2, 0, 1); }, -18},
      {"savgol window = size", [&] { return zomath_savitsky_golay(p, o, 8, 3, 4, 2, 0, 0); }, 0},
      {"savgol boundary 6", [&] { return zomath_savitsky_golay(p, o, 8, 1, 1, 2, 0, 6); }, -18},
      {"savgol negative left", [&] { return zomath_savitsky_golay(p, o, 8, -1, 2, 1, 0, 1); }, -18},
      {"derivative equal x", [&] { return zomath_savitsky_golay_derivative(one.data(), p, o, 8, 1, 1, 2, 1, false); }, -1},
      {"derivative 2 points", [&] { return zomath_savitsky_golay_derivative(x.data(), p, o, 2, 1, 1, 2, 1, false); }, -18},
      {"derivative no left", [&] { return zomath_savitsky_golay_derivative(x.data(), p, o, 8, 0, 1, 2, 1, false); }, -18},
      {"median null", [&] { return zomath_median_filter(8, nullptr, o, 1, 50, 0, false); }, -11},
      {"median percent", [&] { return zomath_median_filter(8, p, o, 1, 100.5, 0, false); }, -151},
      {"median NaN percent", [&] { return zomath_median_filter(8, p, o, 1, kNan, 0, false); }, -151},
      {"median wide", [&] { return zomath_median_filter(8, p, o, 4, 50, 0, false); }, -151},
      {"median boundary 6", [&] { return zomath_median_filter(8, p, o, 1, 50, 6, false); }, -151},
      {"median all missing, padded", [&] { return zomath_median_filter(8, holes.data(), o, 1, 50, 2, false); }, -155},
      {"median all missing, shrinking", [&] { return zomath_median_filter(8, holes.data(), o, 1, 50, 0, false); }, 0},
      {"circular null", [&] { return zomath_d_running_ave_circular(nullptr, 8, 3, o, o, 1); }, -11},
      {"circular step 0", [&] { return zomath_d_running_ave_circular(p, 8, 3, o, o, 0); }, -18},
      {"circular empty", [&] { return zomath_d_running_ave_circular(p, 0, 3, o, o, 1); }, 0},
      {"circular no outputs", [&] { return zomath_d_running_ave_circular(p, 8, 3, nullptr, nullptr, 3); }, 3},
      {"fft null", [&] { return zomsp_fft_filter_smoothing(8, nullptr, o, 0.1); }, -11},
      {"fft empty", [&] { return zomsp_fft_filter_smoothing(0, p, o, 0.1); }, ZOMATH_FFT_BAD_SIZE},
      {"fft NaN cut-off", [&] { return zomsp_fft_filter_smoothing(8, p, o, kNan); }, ZOMATH_FFT_BAD_ARGUMENT},
      {"fft NANUM cut-off", [&] { return zomsp_fft_filter_smoothing(8, p, o, NANUM); }, ZOMATH_FFT_BAD_ARGUMENT},
      {"offsets 1 by 1", [&] { return get_sampling_window_offset(nullptr, nullptr, nullptr, 0, 1, 1, 9); }, 0},
      {"offsets even area", [&] { return get_sampling_window_offset(off, dx, dy, 10, 3, 2, 0); }, -1},
      {"offsets disc not square", [&] { return get_sampling_window_offset(off, dx, dy, 10, 5, 3, 1); }, -1},
      {"offsets shape 4", [&] { return get_sampling_window_offset(off, dx, dy, 10, 3, 3, 4); }, -1},
      {"offsets stride 0", [&] { return get_sampling_window_offset(off, dx, dy, 0, 3, 3, 0); }, -1},
      {"offsets null", [&] { return get_sampling_window_offset(off, nullptr, dy, 10, 3, 3, 0); }, -1},
      {"offsets beyond int", [&] { return get_sampling_window_offset(off, dx, dy, 2147483647, 3, 3, 0); }, -1},
      {"offsets disc", [&] { return get_sampling_window_offset(off, dx, dy, 10, 5, 5, 1); }, 13},
  };
  for (const Case& c : cases) EXPECT_EQ(c.call(), c.code) << c.what;
  // A call that fails, or averages a single point, leaves the output alone.
  std::vector<double> untouched(8, 7.0);
  EXPECT_EQ(zomath_adjave_smooth(p, untouched.data(), 1, 0, 0, false), 0);
  EXPECT_EQ(zomsp_fft_filter_smoothing(8, p, untouched.data(), -1.0), ZOMATH_FFT_BAD_ARGUMENT);
  EXPECT_EQ(zomath_savitsky_golay(p, untouched.data(), 8, 4, 4, 2, 0, 1), -18);
  for (double v : untouched) EXPECT_EQ(v, 7.0);
}

TEST(Smoothing, EdgeValues) {
  // Shrinking windows keep the end points; a window of NANUM alone gives NANUM while its
  // neighbours average what they have; a half width of 0 copies the data.
  const std::vector<double> y = {2, 4, NANUM, NANUM, NANUM, 8, 10, 1};
  std::vector<double> out(8);
  ASSERT_EQ(zomath_adjave_smooth(y.data(), out.data(), 8, 1, 0, false), 0);
  const std::vector<double> want = {2, 3, 4, NANUM, 8, 9, 19.0 / 3, 1};
  for (int i = 0; i < 8; ++i) EXPECT_EQ(out[i], want[i]) << i;
  for (unsigned mode : {0u, 1u, 3u, 5u}) {
    ASSERT_EQ(zomath_median_filter(8, y.data(), out.data(), 0, 50, mode, true), 0);
    for (int i = 0; i < 8; ++i) EXPECT_EQ(out[i], y[i]) << mode << " " << i;
  }
  // The cross and the diagonals in their order; the rectangle's dy labels count from -w.
  int off[25], dx[25], dy[25];
  ASSERT_EQ(get_sampling_window_offset(off, dx, dy, 100, 3, 3, ZOMATH_WINDOW_CROSS), 5);
  const int crossX[] = {0, 0, 0, -1, 1}, crossY[] = {-1, 0, 1, 0, 0}, crossOff[] = {-100, 0, 100, -1, 1};
  for (int i = 0; i < 5; ++i) EXPECT_TRUE(dx[i] == crossX[i] && dy[i] == crossY[i] && off[i] == crossOff[i]) << i;
  ASSERT_EQ(get_sampling_window_offset(off, dx, dy, 100, 5, 5, ZOMATH_WINDOW_DIAGONALS), 9);
  const int diagX[] = {-2, -1, 0, 1, 2, -2, -1, 1, 2}, diagY[] = {-2, -1, 0, 1, 2, 2, 1, -1, -2};
  for (int i = 0; i < 9; ++i) EXPECT_TRUE(dx[i] == diagX[i] && dy[i] == diagY[i] && off[i] == dx[i] + 100 * dy[i]) << i;
  ASSERT_EQ(get_sampling_window_offset(off, dx, dy, 100, 5, 3, ZOMATH_WINDOW_RECTANGLE), 15);
  EXPECT_TRUE(dx[0] == -2 && dy[0] == -2 && off[0] == -102);
  EXPECT_TRUE(dx[14] == 2 && dy[14] == 0 && off[14] == 102);
  ASSERT_EQ(get_sampling_window_offset(off, dx, dy, 100, 3, 5, ZOMATH_WINDOW_CROSS), 7);
}

// The window of point i as the percentile filter defines it: positions about i (shrinking
// symmetrically in mode 0), outside the data read as the boundary mode says.
std::vector<double> window_of(const std::vector<double>& y, int i, int half, int mode) {
  const int n = static_cast<int>(y.size());
  const int h = mode == 0 ? std::min({half, i, n - 1 - i}) : half;
  std::vector<double> w;
  for (int p = i - h; p <= i + h; ++p) {
    if (p >= 0 && p < n) w.push_back(y[p]);
    else if (mode == 1) w.push_back(y[p < 0 ? -1 - p : 2 * n - 1 - p]);
    else if (mode == 2) w.push_back(y[p < 0 ? 0 : n - 1]);
    else if (mode == 3) w.push_back(y[(p + n) % n]);
    else w.push_back(0.0);
  }
  return w;
}

TEST(Smoothing, PercentileFilterEqualsSortingEveryWindow) {
  // Random data with many ties, from none to a fifth missing (NANUM, NaN) with infinities and
  // -0, one set with a stretch of NANUM longer than the window: the sliding order gives exactly
  // zomath_percentiles of each window, whether the window is held sorted or as ranks over the
  // whole sequence (the form of wide windows, forced here at every width).
  const int n = 200;
  int windows = 0;
  for (unsigned set = 0; set < 4; ++set) {
    std::mt19937_64 rng(11 + set);
    std::vector<double> y(n);
    for (double& v : y) {
      const unsigned r = rng() % 100;
      const unsigned missing = 6 * set;
      v = r < missing ? NANUM : r < missing + set ? kNan : r == 99 && set ? INFINITY
        : r == 98 && set ? -INFINITY : r < 30 ? (rng() % 2 ? -1.0 : 1.0) * static_cast<double>(rng() % 5)
        : static_cast<double>(rng() % 1000) / 7;
    }
    if (set == 3)
      for (int i = 90; i < 160; ++i) y[i] = NANUM;
    const double percents[] = {0.0, 12.5, 50.0, 73.0, 100.0};
    for (int half : {0, 1, 3, 25, 90})
      for (int mode : {0, 1, 2, 3, 5})
        for (int k = 0; k < 5; ++k) {
          double percent = percents[k];
          const bool edfAver = (k + mode) % 2;
          std::vector<double> out(n), ranked(n);
          ASSERT_EQ(zomath_median_filter(n, y.data(), out.data(), half, percent, mode, edfAver), 0);
          ASSERT_EQ(zomath::curves::percentile_filter(n, y.data(), ranked.data(), half, percent,
                                                      mode, edfAver, 1), 0);
          for (int i = 0; i < n; ++i, ++windows) {
            ASSERT_TRUE(same(out[i], ranked[i])) << set << " " << half << " " << mode << " " << i;
            const std::vector<double> w = window_of(y, i, half, mode);
            double want = NANUM;
            zomath_percentiles(w.data(), static_cast<int>(w.size()), &percent, 1, &want,
                               edfAver ? INTERPOLATE_EDF_AVER : INTERPOLATE_EDF, nullptr);
            ASSERT_TRUE(same(out[i], want)) << set << " " << half << " " << mode << " " << percent
                                            << " " << i << ": " << out[i] << " vs " << want;
          }
        }
  }
  EXPECT_EQ(windows, 4 * 5 * 5 * 5 * n);
}

TEST(Smoothing, RunningMeanDoesNotDrift) {
  // 10^6 values near 1e8 carrying a signal of 1e-3: at every 1000th point the running mean of
  // 101 values stays within one rounding of the mean summed afresh in long double (a plain
  // running sum would be off by hundreds of roundings by the end).
  const int n = 1000000, half = 50;
  std::vector<double> y(n), out(n);
  std::mt19937_64 rng(5);
  std::normal_distribution<double> noise(0.0, 1e-4);
  for (int i = 0; i < n; ++i) y[i] = 1e8 + 1e-3 * std::sin(i / 300.0) + noise(rng);
  ASSERT_EQ(zomath_adjave_smooth(y.data(), out.data(), n, half, 1, false), 0);
  double worst = 0;
  for (int i = half; i < n - half; i += 1000) {
    long double s = 0;
    for (int k = -half; k <= half; ++k) s += y[i + k];
    const double exact = static_cast<double>(s / (2 * half + 1));
    worst = std::max(worst, std::fabs(out[i] - exact) / (std::ldexp(1.0, -52) * exact));
  }
  EXPECT_LE(worst, 1.0);
}

TEST(Smoothing, FourierLowPassKeepsLowAndRemovesHighComponents) {
  // A level, a cosine of k1 cycles and a sine of k2 cycles over the series, the cut-off midway:
  // the level and the cosine pass within 1e-12, the sine is gone.
  const double pi = std::acos(-1.0);
  for (unsigned n : {1u, 2u, 8u, 1024u, 65536u, 7u, 101u, 1009u, 65537u}) {
    const unsigned k1 = n < 4 ? 0 : std::max(1u, n / 8);
    const unsigned k2 = n < 4 ? n - 1 : std::max(k1 + 2, 3 * n / 8);
    std::vector<double> y(n), low(n), out(n, 7.0);
    // Phases reduced exactly to one turn, so that the samples are sinusoids to the last bit.
    auto turn = [n, pi](unsigned long long k, unsigned j) { return 2 * pi * ((k * j) % n) / n; };
    for (unsigned j = 0; j < n; ++j) {
      low[j] = 3 + std::cos(turn(k1, j));
      y[j] = low[j] + (k2 ? 0.5 * std::sin(turn(k2, j) + 0.3) : 0.0);
    }
    const double cutoff = n > 1 ? 0.5 * (k1 + k2) / (n - 1.0) : 0.1;
    ASSERT_EQ(zomsp_fft_filter_smoothing(n, y.data(), out.data(), cutoff), 0) << n;
    double worst = 0;
    for (unsigned j = 0; j < n; ++j) worst = std::max(worst, std::fabs(out[j] - low[j]));
    EXPECT_LT(worst, 1e-12) << n;
    // In place, the same numbers.
    ASSERT_EQ(zomsp_fft_filter_smoothing(n, y.data(), y.data(), cutoff), 0);
    for (unsigned j = 0; j < n; ++j) ASSERT_EQ(y[j], out[j]);
  }
}

TEST(Smoothing, FourierLowPassFromSeveralThreadsAtOnce) {
  // Each call plans and destroys FFTW plans; two host threads filtering at the same time get
  // the single-thread answers (FFTW's planner tables would otherwise race).
  std::vector<double> y(509);
  for (std::size_t j = 0; j < y.size(); ++j) y[j] = std::sin(0.05 * j) + 0.2 * std::cos(1.7 * j);
  std::vector<double> expected(y.size());
  ASSERT_EQ(zomsp_fft_filter_smoothing(y.size(), y.data(), expected.data(), 0.05), 0);
  auto worker = [&](int* mismatches) {
    std::vector<double> out(y.size());
    for (int round = 0; round < 200; ++round) {
      if (zomsp_fft_filter_smoothing(y.size(), y.data(), out.data(), 0.05) != 0 || out != expected)
        ++*mismatches;
    }
  };
  int bad1 = 0, bad2 = 0;
  std::thread t1(worker, &bad1), t2(worker, &bad2);
  t1.join();
  t2.join();
  EXPECT_EQ(bad1 + bad2, 0);
}

TEST(Smoothing, DerivativeInXUnits) {
  // A cubic in x (step 0.5, rising and falling) is reproduced by order 3: the first derivative
  // is p'(x) everywhere, the second p''(x) inside and 2 p''(x) at the ends, which take the
  // factorial a second time.
  auto p1 = [](double x) { return -1 + x + 0.75 * x * x; };
  auto p2 = [](double x) { return 1 + 1.5 * x; };
  for (double step : {0.5, -0.5}) {
    std::vector<double> x(15), y(15), d(15);
    for (int j = 0; j < 15; ++j) {
      x[j] = 2 + step * j;
      y[j] = 1 - x[j] + 0.5 * x[j] * x[j] + 0.25 * x[j] * x[j] * x[j];
    }
    ASSERT_EQ(zomath_savitsky_golay_derivative(x.data(), y.data(), d.data(), 15, 3, -1, 3, 1, false), 0);
    for (int j = 0; j < 15; ++j) EXPECT_NEAR(d[j], p1(x[j]), 1e-11) << step << " " << j;
    ASSERT_EQ(zomath_savitsky_golay_derivative(x.data(), y.data(), d.data(), 15, 3, -1, 3, 2, false), 0);
    for (int j = 0; j < 15; ++j)
      EXPECT_NEAR(d[j], (j < 3 || j >= 12 ? 2 : 1) * p2(x[j]), 1e-10) << step << " " << j;
  }
  // Cleaning: every change of sign of the derivative passes through an exact zero.
  std::vector<double> x(200), y(200), d(200);
  for (int j = 0; j < 200; ++j) {
    x[j] = 0.1 * j;
    y[j] = std::sin(x[j]) + 0.3 * std::sin(3.7 * x[j]);
  }
  ASSERT_EQ(zomath_savitsky_golay_derivative(x.data(), y.data(), d.data(), 200, 4, -1, 2, 1, true), 0);
  int zeros = 0;
  for (int j = 0; j + 1 < 200; ++j) {
    EXPECT_GE(d[j] * d[j + 1], 0) << j;
    zeros += d[j] == 0;
  }
  EXPECT_GE(zeros, 6);
}

TEST(Smoothing, InPlaceEqualsSeparateOutput) {
  std::mt19937_64 rng(2);
  std::normal_distribution<double> g;
  std::vector<double> y(300);
  for (double& v : y) v = g(rng);
  y[40] = NANUM;
  using Filter = std::function<int(const double*, double*)>;
  const Filter filters[] = {
      [](const double* s, double* d) { return zomath_adjave_smooth(s, d, 300, 9, 4, false); },
      [](const double* s, double* d) { return zomath_adjave_smooth(s, d, 300, 9, 1, true); },
      [](const double* s, double* d) { return zomath_savitsky_golay(s, d, 300, 6, 4, 3, 1, 0); },
      [](const double* s, double* d) { return zomath_savitsky_golay(s, d, 300, 6, -1, 3, 0, 3); },
      [](const double* s, double* d) { return zomath_median_filter(300, s, d, 9, 50, 4, true); },
  };
  for (const Filter& f : filters) {
    std::vector<double> apart(300), inPlace = y;
    ASSERT_EQ(f(y.data(), apart.data()), 0);
    ASSERT_EQ(f(inPlace.data(), inPlace.data()), 0);
    for (int i = 0; i < 300; ++i) ASSERT_TRUE(same(inPlace[i], apart[i])) << i;
  }
}

TEST(Smoothing, HostileInputGivesDocumentedCodes) {
  const double big = 1.7e308;
  const std::vector<double> pool = {0, 1, -1, 2, 1e-300, big, -big, INFINITY, -INFINITY, kNan, NANUM};
  const std::set<int> codes = {0, -1, -5, -9, -11, -18, -151, -155, ZOMATH_FFT_BAD_SIZE,
                               ZOMATH_FFT_BAD_ARGUMENT};
  std::mt19937_64 rng(9);
  for (int round = 0; round < 400; ++round) {
    const int n = static_cast<int>(rng() % 12);
    std::vector<double> x(n), y(n), out(n + 1);
    for (int i = 0; i < n; ++i) {
      x[i] = round % 2 ? i : pool[rng() % pool.size()];
      y[i] = pool[rng() % pool.size()];
    }
    const int a = static_cast<int>(rng() % 9) - 2, b = static_cast<int>(rng() % 9) - 2;
    const int mode = static_cast<int>(rng() % 8) - 1, order = static_cast<int>(rng() % 5) - 1;
    const double percent = pool[rng() % pool.size()] * 30;
    EXPECT_TRUE(codes.count(zomath_smooth(n, y.data(), out.data(), a, round % 4, mode, b, order,
                                          a % 3, percent, round % 3 == 0, round % 5 == 0)));
    EXPECT_TRUE(codes.count(zomath_adjave_smooth(y.data(), out.data(), n, a, mode, round % 2)));
    EXPECT_TRUE(codes.count(zomath_savitsky_golay(y.data(), out.data(), n, a, b, order, b, mode)));
    EXPECT_TRUE(codes.count(zomath_savitsky_golay_derivative(x.data(), y.data(), out.data(), n, a,
                                                             b, order, a % 3, round % 2)));
    EXPECT_TRUE(codes.count(zomath_median_filter(n, y.data(), out.data(), a, percent, mode, round % 2)));
    EXPECT_TRUE(codes.count(zomsp_fft_filter_smoothing(n, y.data(), out.data(), percent)));
    const int windows = zomath_d_running_ave_circular(y.data(), n, 1 + rng() % 15, out.data(),
                                                      nullptr, 1 + rng() % 5);
    EXPECT_TRUE(windows == -11 || (windows >= 0 && windows <= n)) << windows;
  }
}

}  // namespace
