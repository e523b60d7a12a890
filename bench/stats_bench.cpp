// The summary statistics on doubles at 10^6 and 10^7 points, without and with NANUM (every
// 100th point) and weights, beside a plain two-pass loop that computes the mean, SD, skewness
// and kurtosis of the same points: the ratio of the export to that loop is the figure to read.
// zomath_basic_summary_stats runs under n - 1 (which without weights takes the weighted moments
// routine, then the moment engine for the rest) and under n (the moment engine alone).
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "zomath/stats.h"

namespace {

struct Input {
  std::vector<double> x, w;
};

const Input& input(std::size_t n, bool withMissing) {
  static Input data;
  static std::size_t size = 0;
  static bool missing = false;
  if (size != n || missing != withMissing) {
    std::mt19937_64 rng(42);
    std::normal_distribution<double> normal(100, 15);
    std::uniform_real_distribution<double> uniform(0.5, 2.0);
    data.x.resize(n);
    data.w.resize(n);
    for (std::size_t i = 0; i < n; ++i) {
      data.x[i] = (withMissing && i % 100 == 7) ? NANUM : normal(rng);
      data.w[i] = uniform(rng);
    }
    size = n;
    missing = withMissing;
  }
  return data;
}

void args(benchmark::internal::Benchmark* b) {
  for (long n : {1000000L, 10000000L})
    for (long missing : {0L, 1L})
      for (long weights : {0L, 1L}) b->Args({n, missing, weights});
  b->ArgNames({"n", "missing", "weights"});
  b->Unit(benchmark::kMillisecond);
}

void finish(benchmark::State& state) { state.SetItemsProcessed(state.iterations() * state.range(0)); }

const double* weights(const Input& d, const benchmark::State& state) {
  return state.range(2) ? d.w.data() : nullptr;
}

void basic(benchmark::State& state, int flag) {
  const Input& d = input(state.range(0), state.range(1));
  const int n = static_cast<int>(d.x.size());
  int count, missing;
  double mean, sd, sem, var, sum, skew, kurt, uncor, cor, cov, mad, w, geo;
  for (auto _ : state) {
    zomath_basic_summary_stats(n, d.x.data(), &count, &mean, &sd, &sem, &var, &sum, &skew, &kurt,
                               &uncor, &cor, &cov, &mad, &missing, &w, &geo, flag, weights(d, state));
    benchmark::DoNotOptimize(sd + skew + kurt + mad + geo);
  }
  finish(state);
}

void BM_BasicSummaryStats_DenominatorNMinus1(benchmark::State& state) { basic(state, DS_SAS1_DF); }
void BM_BasicSummaryStats_DenominatorN(benchmark::State& state) { basic(state, DS_SAS2_N); }

void BM_DescStats(benchmark::State& state) {
  const Input& d = input(state.range(0), state.range(1));
  DescStatResults r;
  for (auto _ : state) {
    zomath_desc_stats(d.x.data(), static_cast<int>(d.x.size()), &r, weights(d, state), 0.95, DS_SAS1_DF);
    benchmark::DoNotOptimize(r.SD + r.Mode + r.GeoSD);
  }
  finish(state);
}

// zomath_desc_stats_ex on one slice, every field asked for, and every field but the mode: the
// difference between the two rows is what the mode costs, its keys gathered in the two passes
// and counted after them.
void desc_stats_ex(benchmark::State& state, bool bMode) {
  const Input& d = input(state.range(0), state.range(1));
  DescStatOptions o;
  std::memset(&o, 1, sizeof o);
  o.nMomentDenFlag = DS_SAS1_DF;
  o.bMode = bMode;
  const double size = 0.0;  // one slice, the whole sample
  DescStatResults r;
  bool multiModal;
  for (auto _ : state) {
    zomath_desc_stats_ex(d.x.data(), static_cast<int>(d.x.size()), &size, 1, &o, &r, weights(d, state),
                         0.95, &multiModal);
    benchmark::DoNotOptimize(r.SD + r.Mode + r.GeoSD);
  }
  finish(state);
}

void BM_DescStatsEx_EveryField(benchmark::State& state) { desc_stats_ex(state, true); }
void BM_DescStatsEx_AllButMode(benchmark::State& state) { desc_stats_ex(state, false); }

// Mean, then the second, third and fourth central moments, skipping NANUM; the bias-corrected
// coefficients of the denominator n - 1 at the end.
void BM_TwoPassPlainLoop(benchmark::State& state) {
  const Input& d = input(state.range(0), state.range(1));
  const double* w = weights(d, state);
  const std::size_t n = d.x.size();
  for (auto _ : state) {
    double sw = 0, swx = 0;
    long count = 0;
    for (std::size_t i = 0; i < n; ++i) {
      if (d.x[i] == NANUM) continue;
      const double wi = w ? w[i] : 1.0;
      sw += wi;
      swx += wi * d.x[i];
      ++count;
    }
    const double mean = swx / sw;
    double s2 = 0, s3 = 0, s4 = 0;
    for (std::size_t i = 0; i < n; ++i) {
      if (d.x[i] == NANUM) continue;
      const double wi = w ? w[i] : 1.0;
      const double e = d.x[i] - mean, e2 = e * e;
      s2 += wi * e2;
      s3 += wi * e2 * e;
      s4 += wi * e2 * e2;
    }
    const double c = static_cast<double>(count), v = s2 / (c - 1), sd = std::sqrt(v);
    const double skew = c / ((c - 1) * (c - 2)) * s3 / (sd * v);
    const double kurt = c * (c + 1) / ((c - 1) * (c - 2) * (c - 3)) * s4 / (v * v) -
                        3 * (c - 1) * (c - 1) / ((c - 2) * (c - 3));
    benchmark::DoNotOptimize(mean + sd + skew + kurt);
  }
  finish(state);
}

BENCHMARK(BM_BasicSummaryStats_DenominatorNMinus1)->Apply(args);
BENCHMARK(BM_BasicSummaryStats_DenominatorN)->Apply(args);
BENCHMARK(BM_DescStats)->Apply(args);
BENCHMARK(BM_DescStatsEx_EveryField)->Apply(args);
BENCHMARK(BM_DescStatsEx_AllButMode)->Apply(args);
BENCHMARK(BM_TwoPassPlainLoop)->Apply(args);

// zomath_percentiles at 3 percents (the quartiles) and at 101 (0, 1, ..., 100) under the
// interpolating definition 4, beside std::sort of a copy of the same points and the same
// look-ups: the ratio of the two is the figure to read.
void percentile_args(benchmark::internal::Benchmark* b) {
  for (long n : {1000000L, 10000000L})
    for (long m : {3L, 101L}) b->Args({n, m});
  b->ArgNames({"n", "percents"});
  b->Unit(benchmark::kMillisecond);
}

std::vector<double> percent_list(long m) {
  if (m == 3) return {25, 50, 75};
  std::vector<double> p(m);
  for (long i = 0; i < m; ++i) p[i] = 100.0 * i / (m - 1);
  return p;
}

void BM_Percentiles(benchmark::State& state) {
  const Input& d = input(state.range(0), false);
  const std::vector<double> p = percent_list(state.range(1));
  std::vector<double> out(p.size());
  for (auto _ : state) {
    zomath_percentiles(d.x.data(), static_cast<int>(d.x.size()), p.data(), static_cast<int>(p.size()),
                       out.data(), INTERPOLATE_WEIGHT_AVER_LEFT, nullptr);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_StdSortCopyAndLookups(benchmark::State& state) {
  const Input& d = input(state.range(0), false);
  const std::vector<double> p = percent_list(state.range(1));
  std::vector<double> out(p.size()), work;
  for (auto _ : state) {
    work.assign(d.x.begin(), d.x.end());
    std::sort(work.begin(), work.end());
    const double n = static_cast<double>(work.size());
    for (std::size_t i = 0; i < p.size(); ++i) {
      const double q = p[i] * n / 100, k = std::floor(q), g = q - k;
      out[i] = k < 1 ? work.front() : k >= n ? work.back()
                     : (1 - g) * work[static_cast<std::size_t>(k) - 1] + g * work[static_cast<std::size_t>(k)];
    }
    benchmark::DoNotOptimize(out.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(BM_Percentiles)->Apply(percentile_args);
BENCHMARK(BM_StdSortCopyAndLookups)->Apply(percentile_args);

}  // namespace
