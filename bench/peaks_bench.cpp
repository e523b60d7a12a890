// Peak finders on 10^6 points: the window finder (nHalf 10) on random, rising and falling data
// beside a plain scan of each window that stops at the first point that beats the centre, as
// scipy.signal.argrelmax does it; the first-derivative finder on a smooth curve and on noise
// beside a plain loop over neighbours; the search window, the second derivative and the noise
// level.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

#include "zomath/peaks.h"

namespace {

constexpr int kSize = 1000000;

enum Shape { kRandom = 0, kRising = 1, kFalling = 2, kSmooth = 3 };

struct Curve {
  std::vector<double> x, y, px, py;
  std::vector<int> idx;
};

const Curve& curve(int shape) {
  static Curve c[4];
  Curve& d = c[shape];
  if (d.x.empty()) {
    std::mt19937_64 rng(17);
    std::normal_distribution<double> g;
    d.x.resize(kSize);
    d.y.resize(kSize);
    for (int i = 0; i < kSize; ++i) {
      d.x[i] = 0.001 * i;
      const double t = d.x[i];
      switch (shape) {
        case kRandom: d.y[i] = g(rng); break;
        case kRising: d.y[i] = i; break;
        case kFalling: d.y[i] = -i; break;
        default: d.y[i] = std::sin(3 * t) + 0.5 * std::sin(11.1 * t) + 0.1 * t; break;
      }
    }
    d.px.resize(kSize);
    d.py.resize(kSize);
    d.idx.resize(kSize);
  }
  return d;
}

void BM_LocalMaximum(benchmark::State& state) {
  Curve& c = const_cast<Curve&>(curve(static_cast<int>(state.range(0))));
  int found = 0;
  for (auto _ : state) {
    int n = kSize;
    zomath_find_peaks_by_local_maximum(&n, c.x.data(), c.y.data(), c.px.data(), c.py.data(), c.idx.data(),
                                       ZOMATH_PEAK_POSITIVE | ZOMATH_PEAK_ANY_SIGN, 10);
    found = n;
  }
  state.counters["peaks"] = found;
  state.SetItemsProcessed(state.iterations() * kSize);
}
BENCHMARK(BM_LocalMaximum)->Arg(kRandom)->Arg(kRising)->Arg(kFalling)->Unit(benchmark::kMillisecond);

// Each centre against its neighbours, nearest first, until one is not below it.
void BM_LocalMaximumPlainLoop(benchmark::State& state) {
  Curve& c = const_cast<Curve&>(curve(static_cast<int>(state.range(0))));
  const int h = 10;
  int found = 0;
  for (auto _ : state) {
    int n = 0;
    for (int i = h; i < kSize - h; ++i) {
      const double v = c.y[i];
      bool top = true;
      for (int k = 1; k <= h && top; ++k) top = c.y[i - k] < v && c.y[i + k] <= v;
      if (top) c.idx[n++] = i;
    }
    found = n;
    benchmark::DoNotOptimize(c.idx.data());
  }
  state.counters["peaks"] = found;
  state.SetItemsProcessed(state.iterations() * kSize);
}
BENCHMARK(BM_LocalMaximumPlainLoop)->Arg(kRandom)->Arg(kRising)->Arg(kFalling)->Unit(benchmark::kMillisecond);

void BM_FirstDerivative(benchmark::State& state) {
  Curve& c = const_cast<Curve&>(curve(static_cast<int>(state.range(0))));
  int found = 0;
  for (auto _ : state) {
    int n = kSize;
    zomath_find_peaks_1st_derivative(&n, c.x.data(), c.y.data(), c.px.data(), c.py.data(), c.idx.data(),
                                     ZOMATH_PEAK_POSITIVE | ZOMATH_PEAK_ANY_SIGN, false, 0, 0);
    found = n;
  }
  state.counters["peaks"] = found;
  state.SetItemsProcessed(state.iterations() * kSize);
}
BENCHMARK(BM_FirstDerivative)->Arg(kSmooth)->Arg(kRandom)->Unit(benchmark::kMillisecond);

// The points above the one before and not below the one after.
void BM_FirstDerivativePlainLoop(benchmark::State& state) {
  Curve& c = const_cast<Curve&>(curve(static_cast<int>(state.range(0))));
  int found = 0;
  for (auto _ : state) {
    int n = 0;
    for (int i = 1; i + 1 < kSize; ++i)
      if (c.y[i] > c.y[i - 1] && c.y[i] >= c.y[i + 1]) c.idx[n++] = i;
    found = n;
    benchmark::DoNotOptimize(c.idx.data());
  }
  state.counters["peaks"] = found;
  state.SetItemsProcessed(state.iterations() * kSize);
}
BENCHMARK(BM_FirstDerivativePlainLoop)->Arg(kSmooth)->Arg(kRandom)->Unit(benchmark::kMillisecond);

void BM_SecondDerivative(benchmark::State& state) {
  Curve& c = const_cast<Curve&>(curve(kSmooth));
  for (auto _ : state) {
    int n = kSize;
    zomath_find_peaks_2nd_derivative(&n, c.x.data(), c.y.data(), c.px.data(), c.py.data(), c.idx.data(),
                                     ZOMATH_PEAK_POSITIVE | ZOMATH_PEAK_ANY_SIGN,
                                     static_cast<int>(state.range(0)), nullptr, 11, 2);
  }
  state.SetItemsProcessed(state.iterations() * kSize);
}
BENCHMARK(BM_SecondDerivative)->Arg(ZOMATH_PEAK_2ND_PLAIN)->Unit(benchmark::kMillisecond);

void BM_SearchWindow(benchmark::State& state) {
  Curve& c = const_cast<Curve&>(curve(static_cast<int>(state.range(0))));
  for (auto _ : state) {
    int n = kSize;
    zomath_find_peaks_by_search_window(&n, c.x.data(), c.y.data(), c.px.data(), c.py.data(), c.idx.data(),
                                       ZOMATH_PEAK_POSITIVE | ZOMATH_PEAK_NEGATIVE | ZOMATH_PEAK_ANY_SIGN,
                                       0.5, 0.1);
  }
  state.SetItemsProcessed(state.iterations() * kSize);
}
BENCHMARK(BM_SearchWindow)->Arg(kSmooth)->Arg(kRandom)->Unit(benchmark::kMillisecond);

void BM_NoiseLevel(benchmark::State& state) {
  const Curve& c = curve(kRandom);
  for (auto _ : state) benchmark::DoNotOptimize(zomath_get_noise_level(kSize, c.y.data()));
  state.SetItemsProcessed(state.iterations() * kSize);
}
BENCHMARK(BM_NoiseLevel)->Unit(benchmark::kMillisecond);

}  // namespace
