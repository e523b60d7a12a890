// Baselines at 10^4, 10^5 and 10^6 points of a spectrum (bands of a fixed width in points,
// one every 500 points, on a sloped baseline with white noise of SD 0.005): the end-weighted
// line (ends of 15%, Savitzky-Golay over a tenth of the sample) and the masking baseline, each
// beside a plain pass over the data (the noise level, one linear sweep), with the growth fitted
// by Google Benchmark's complexity report.
#include <benchmark/benchmark.h>

#include <cmath>
#include <map>
#include <random>
#include <vector>

#include "zomath/baseline.h"
#include "zomath/curves.h"
#include "zomath/peaks.h"

namespace {

struct Spectrum {
  std::vector<double> x, y, bx, by;
};

const Spectrum& spectrum(int n) {
  static std::map<int, Spectrum> cache;
  Spectrum& s = cache[n];
  if (s.x.empty()) {
    std::mt19937_64 rng(3);
    std::normal_distribution<double> g(0, 0.005);
    s.x.resize(n), s.y.resize(n), s.bx.resize(n), s.by.resize(n);
    for (int i = 0; i < n; ++i) {
      s.x[i] = i;
      const double u = (i % 500 - 250) / 12.0;
      const bool inside = i > n / 10 && i < n - n / 10;  // quiet ends
      s.y[i] = 0.1 + 2e-6 * i + (inside ? std::exp(-0.5 * u * u) : 0) + g(rng);
    }
  }
  return s;
}

void end_weighted(benchmark::State& state, int method) {
  const int n = static_cast<int>(state.range(0));
  Spectrum s = spectrum(n);
  for (auto _ : state)
    benchmark::DoNotOptimize(zomath_create_baseline_end_weighted_linear(
        n, s.x.data(), s.y.data(), n, s.bx.data(), s.by.data(), 0.15, method, 0.1));
  state.SetComplexityN(n);
}
void BM_EndWeightedBaseline(benchmark::State& state) {
  end_weighted(state, ZOMATH_SMOOTH_SAVITZKY_GOLAY);
}
// The median filter of the sample, its windows a tenth of the sample wide, held as ranks from 4096
// points.
void BM_EndWeightedBaselineMedian(benchmark::State& state) {
  end_weighted(state, ZOMATH_SMOOTH_PERCENTILE);
}
BENCHMARK(BM_EndWeightedBaseline)->RangeMultiplier(10)->Range(10000, 1000000)
    ->Unit(benchmark::kMillisecond)->Complexity(benchmark::oNLogN);
BENCHMARK(BM_EndWeightedBaselineMedian)->RangeMultiplier(10)->Range(10000, 1000000)
    ->Unit(benchmark::kMillisecond)->Complexity(benchmark::oNLogN);

void BM_MaskingBaseline(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  Spectrum s = spectrum(n);
  for (auto _ : state)
    benchmark::DoNotOptimize(zomath_create_baseline_by_masking_peaks(
        n, s.x.data(), s.y.data(), n, s.bx.data(), s.by.data(), ZOMATH_PEAK_POSITIVE));
  state.SetComplexityN(n);
}
BENCHMARK(BM_MaskingBaseline)->RangeMultiplier(10)->Range(10000, 1000000)
    ->Unit(benchmark::kMillisecond)->Complexity(benchmark::oNLogN);

// References: the noise level (a median of second differences, one of the steps of the
// masking baseline) and a plain sweep that reads the line through the ends at every point.
void BM_NoiseLevelReference(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const Spectrum& s = spectrum(n);
  for (auto _ : state) benchmark::DoNotOptimize(zomath_get_noise_level(n, s.y.data()));
  state.SetComplexityN(n);
}
BENCHMARK(BM_NoiseLevelReference)->RangeMultiplier(10)->Range(10000, 1000000)
    ->Unit(benchmark::kMillisecond)->Complexity(benchmark::oNLogN);

void BM_LineSweepReference(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  Spectrum s = spectrum(n);
  for (auto _ : state) {
    const double slope = (s.y[n - 1] - s.y[0]) / (s.x[n - 1] - s.x[0]);
    for (int i = 0; i < n; ++i) s.by[i] = s.y[0] + slope * (s.x[i] - s.x[0]);
    benchmark::DoNotOptimize(s.by.data());
    benchmark::ClobberMemory();
  }
  state.SetComplexityN(n);
}
BENCHMARK(BM_LineSweepReference)->RangeMultiplier(10)->Range(10000, 1000000)
    ->Unit(benchmark::kMillisecond)->Complexity(benchmark::oN);

}  // namespace
