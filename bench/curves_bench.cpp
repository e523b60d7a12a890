// Resampling of 10^5 sorted source points at 10^6 output x, in random order and in order (the
// moving bracket), linearly beside a plain std::upper_bound loop and by natural cubic spline;
// the smoothing spline of 10^4 points at moderate and at small smoothing.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "curves/window_filters.h"
#include "zomath/curves.h"

namespace {

struct Data {
  std::vector<double> sx, sy, at, out;
};

// Source of range(0) / 10 points on [0, 100]; range(0) output x, sorted when range(1) is 1.
const Data& data(long n, bool sorted) {
  static Data d;
  static long size = 0;
  static bool inOrder = false;
  if (size != n || inOrder != sorted) {
    std::mt19937_64 rng(7);
    std::uniform_real_distribution<double> u(0.0, 100.0);
    d.sx.resize(n / 10);
    for (double& v : d.sx) v = u(rng);
    std::sort(d.sx.begin(), d.sx.end());
    d.sy.resize(d.sx.size());
    for (std::size_t i = 0; i < d.sx.size(); ++i) d.sy[i] = std::sin(d.sx[i]);
    d.at.resize(n);
    for (double& v : d.at) v = u(rng);
    if (sorted) std::sort(d.at.begin(), d.at.end());
    d.out.resize(n);
    size = n;
    inOrder = sorted;
  }
  return d;
}

void args(benchmark::internal::Benchmark* b) {
  b->Args({1000000, 0})->Args({1000000, 1})->Unit(benchmark::kMillisecond);
}

void BM_InterpolateLinear(benchmark::State& state) {
  Data& d = const_cast<Data&>(data(state.range(0), state.range(1)));
  for (auto _ : state) {
    zomath_interpolate(d.at.data(), d.out.data(), d.at.size(), d.sx.data(), d.sy.data(),
                       d.sx.size(), 0, 1.0, nullptr, nullptr, 0, 0);
    benchmark::DoNotOptimize(d.out.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// What numpy.interp does inside the range: a search and the line through the bracket.
void BM_InterpolateLinearPlainLoop(benchmark::State& state) {
  Data& d = const_cast<Data&>(data(state.range(0), state.range(1)));
  const std::size_t n = d.sx.size();
  for (auto _ : state) {
    for (std::size_t i = 0; i < d.at.size(); ++i) {
      const double x = d.at[i];
      std::size_t j = std::upper_bound(d.sx.begin(), d.sx.end(), x) - d.sx.begin();
      j = std::clamp<std::size_t>(j, 1, n - 1);
      d.out[i] = d.sy[j - 1] + (x - d.sx[j - 1]) * (d.sy[j] - d.sy[j - 1]) / (d.sx[j] - d.sx[j - 1]);
    }
    benchmark::DoNotOptimize(d.out.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_InterpolateNaturalSpline(benchmark::State& state) {
  Data& d = const_cast<Data&>(data(state.range(0), state.range(1)));
  for (auto _ : state) {
    zomath_interpolate(d.at.data(), d.out.data(), d.at.size(), d.sx.data(), d.sy.data(),
                       d.sx.size(), 1, 1.0, nullptr, nullptr, 0, 0);
    benchmark::DoNotOptimize(d.out.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// 10^4 noisy points of a sine (noise 0.1), read back at their own x; s = m * 0.01 matches the
// noise (about 30 knots), s = m * 0.001 asks for far more knots than the signal needs.
void BM_SmoothingSpline(benchmark::State& state) {
  const int m = 10000;
  std::mt19937_64 rng(3);
  std::uniform_real_distribution<double> u(0.0, 10.0);
  std::normal_distribution<double> noise(0.0, 0.1);
  std::vector<double> x(m), y(m), out(m);
  for (double& v : x) v = u(rng);
  std::sort(x.begin(), x.end());
  for (int i = 0; i < m; ++i) y[i] = std::sin(x[i]) + noise(rng);
  const double s = m * (state.range(0) ? 0.001 : 0.01);
  for (auto _ : state) {
    const int rc = zomath_interpolate(x.data(), out.data(), m, x.data(), y.data(), m, 2, s,
                                      nullptr, nullptr, 0, 0);
    benchmark::DoNotOptimize(rc);
  }
  state.SetItemsProcessed(state.iterations() * m);
}

BENCHMARK(BM_InterpolateLinear)->Apply(args);
BENCHMARK(BM_InterpolateLinearPlainLoop)->Apply(args);
BENCHMARK(BM_InterpolateNaturalSpline)->Apply(args);
BENCHMARK(BM_SmoothingSpline)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace

// Smoothing of 10^6 noisy points. Adjacent averaging at half widths 5, 50 and 500 (a running
// sum: the time should not depend on the width) beside a plain running-sum loop; Savitzky-Golay
// with window 21 and order 3 (ends fitted, and reflected); the percentile filter (the median)
// with half width 50; the Fourier low-pass of 2^20 and of 10^6 + 3 (a prime) points.
namespace {

const std::vector<double>& noisy(std::size_t n) {
  static std::vector<double> y;
  if (y.size() != n) {
    std::mt19937_64 rng(4);
    std::normal_distribution<double> noise(0.0, 0.2);
    y.resize(n);
    for (std::size_t i = 0; i < n; ++i) y[i] = std::sin(i * 1e-3) + noise(rng);
  }
  return y;
}

void BM_AdjacentAveraging(benchmark::State& state) {
  const std::vector<double>& y = noisy(1000000);
  std::vector<double> out(y.size());
  for (auto _ : state) {
    zomath_adjave_smooth(y.data(), out.data(), y.size(), state.range(0), 1, false);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetItemsProcessed(state.iterations() * y.size());
}

// The uncompensated running sum over the interior, what a plain filter does.
void BM_AdjacentAveragingPlainLoop(benchmark::State& state) {
  const std::vector<double>& y = noisy(1000000);
  std::vector<double> out(y.size());
  const long h = state.range(0), n = static_cast<long>(y.size());
  for (auto _ : state) {
    double s = 0;
    for (long k = 0; k <= 2 * h; ++k) s += y[k];
    for (long i = h + 1; i < n - h; ++i) {
      s += y[i + h] - y[i - h - 1];
      out[i] = s / (2 * h + 1);
    }
    benchmark::DoNotOptimize(out.data());
  }
  state.SetItemsProcessed(state.iterations() * y.size());
}

void BM_SavitzkyGolay(benchmark::State& state) {
  const std::vector<double>& y = noisy(1000000);
  std::vector<double> out(y.size());
  for (auto _ : state) {
    zomath_savitsky_golay(y.data(), out.data(), y.size(), 10, 10, 3, 0, state.range(0));
    benchmark::DoNotOptimize(out.data());
  }
  state.SetItemsProcessed(state.iterations() * y.size());
}

void BM_PercentileFilter(benchmark::State& state) {
  const std::vector<double>& y = noisy(1000000);
  std::vector<double> out(y.size());
  for (auto _ : state) {
    zomath_median_filter(y.size(), y.data(), out.data(), state.range(0), 50, 1, false);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetItemsProcessed(state.iterations() * y.size());
}

// The two forms of the running percentile's window at half widths from 50 to 5000 on 10^6
// points: a sorted copy (up to w moves a step) and ranks over the whole sequence (O(log n) a
// step after one sort). The crossing sets curves::kRankedWindowFrom.
void percentile_form(benchmark::State& state, std::size_t rankedFrom) {
  const std::vector<double>& y = noisy(1000000);
  std::vector<double> out(y.size());
  for (auto _ : state) {
    zomath::curves::percentile_filter(y.size(), y.data(), out.data(), state.range(0), 50, 1,
                                      false, rankedFrom);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetItemsProcessed(state.iterations() * y.size());
}
void BM_PercentileWindowSorted(benchmark::State& state) { percentile_form(state, SIZE_MAX); }
void BM_PercentileWindowRanked(benchmark::State& state) { percentile_form(state, 1); }

void BM_FourierLowPass(benchmark::State& state) {
  const std::vector<double>& y = noisy(state.range(0));
  std::vector<double> out(y.size());
  for (auto _ : state) {
    zomsp_fft_filter_smoothing(y.size(), y.data(), out.data(), 0.01);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetItemsProcessed(state.iterations() * y.size());
}

}  // namespace

BENCHMARK(BM_AdjacentAveraging)->Arg(5)->Arg(50)->Arg(500)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_AdjacentAveragingPlainLoop)->Arg(50)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SavitzkyGolay)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PercentileFilter)->Arg(5)->Arg(50)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PercentileWindowSorted)->Arg(50)->Arg(200)->Arg(500)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PercentileWindowRanked)->Arg(50)->Arg(200)->Arg(500)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FourierLowPass)->Arg(1 << 20)->Arg(1000003)->Unit(benchmark::kMillisecond);
