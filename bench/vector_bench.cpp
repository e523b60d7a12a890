// Vector kernels on doubles beside a plain loop that computes the same thing, at 10^6 and 10^7
// elements, without and with NANUM present (every 100th element); the median beside a copy and
// std::nth_element.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <vector>

#include "zomath/vector.h"

namespace {

const std::vector<double>& input(std::size_t n, bool withMissing) {
  static std::vector<double> data;
  static std::size_t size = 0;
  static bool missing = false;
  if (size != n || missing != withMissing) {
    std::mt19937_64 rng(42);
    std::normal_distribution<double> normal(100, 15);
    data.resize(n);
    for (std::size_t i = 0; i < n; ++i) data[i] = (withMissing && i % 100 == 7) ? NANUM : normal(rng);
    size = n;
    missing = withMissing;
  }
  return data;
}

// One output buffer for both cumulative sums, so that both write to the same place.
std::vector<double>& output(std::size_t n) {
  static std::vector<double> out;
  out.resize(n);
  return out;
}

void args(benchmark::internal::Benchmark* b) {
  for (long n : {1000000L, 10000000L})
    for (long missing : {0L, 1L}) b->Args({n, missing});
  b->Unit(benchmark::kMillisecond);
}

void finish(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_Minmax(benchmark::State& state) {
  const auto& d = input(state.range(0), state.range(1));
  unsigned lo, hi;
  for (auto _ : state) {
    benchmark::DoNotOptimize(zomath_d_minmax(d.data(), 0, unsigned(d.size() - 1), &lo, &hi));
    benchmark::DoNotOptimize(lo + hi);
  }
  finish(state);
}

void BM_MinmaxPlainLoop(benchmark::State& state) {
  const auto& d = input(state.range(0), state.range(1));
  for (auto _ : state) {
    long lo = -1, hi = -1, missing = 0;
    double vlo = 0, vhi = 0;
    for (long i = 0, n = long(d.size()); i < n; ++i) {
      const double x = d[i];
      if (x == NANUM) {
        ++missing;
      } else if (lo < 0) {
        vlo = vhi = x;
        lo = hi = i;
      } else if (x < vlo) {
        vlo = x;
        lo = i;
      } else if (x > vhi) {
        vhi = x;
        hi = i;
      }
    }
    benchmark::DoNotOptimize(missing + lo + hi);
  }
  finish(state);
}

void BM_Sum(benchmark::State& state) {
  const auto& d = input(state.range(0), state.range(1));
  double lo, hi;
  int iLo, iHi, valid;
  for (auto _ : state) {
    benchmark::DoNotOptimize(zomath_d_sum(d.data(), int(d.size()), &lo, &hi, &iLo, &iHi, &valid));
    benchmark::DoNotOptimize(iLo + iHi + valid);
  }
  finish(state);
}

// The export accumulates in long double; so does its plain twin.
void BM_SumPlainLoop(benchmark::State& state) {
  const auto& d = input(state.range(0), state.range(1));
  for (auto _ : state) {
    long double s = 0;
    long lo = -1, hi = -1, valid = 0;
    double vlo = 0, vhi = 0;
    for (long i = 0, n = long(d.size()); i < n; ++i) {
      const double x = d[i];
      if (x == NANUM) continue;
      s += x;
      ++valid;
      if (lo < 0) {
        vlo = vhi = x;
        lo = hi = i;
      } else if (x < vlo) {
        vlo = x;
        lo = i;
      } else if (x > vhi) {
        vhi = x;
        hi = i;
      }
    }
    benchmark::DoNotOptimize(double(s) + vlo + vhi);
    benchmark::DoNotOptimize(lo + hi + valid);
  }
  finish(state);
}

void BM_MeanVariance(benchmark::State& state) {
  const auto& d = input(state.range(0), state.range(1));
  double variance;
  int valid;
  for (auto _ : state) {
    benchmark::DoNotOptimize(zomath_d_mean_variance(d.data(), int(d.size()), &variance, &valid));
    benchmark::DoNotOptimize(variance);
  }
  finish(state);
}

void BM_MeanVariancePlainLoop(benchmark::State& state) {
  const auto& d = input(state.range(0), state.range(1));
  for (auto _ : state) {
    long double s = 0;
    long valid = 0;
    for (double x : d)
      if (x != NANUM) {
        s += x;
        ++valid;
      }
    const long double mean = s / valid;
    long double s1 = 0, s2 = 0;
    for (double x : d)
      if (x != NANUM) {
        const long double e = x - mean;
        s1 += e;
        s2 += e * e;
      }
    benchmark::DoNotOptimize(double(mean) + double((s2 - s1 * s1 / valid) / (valid - 1)));
  }
  finish(state);
}

void BM_CumulativeSum(benchmark::State& state) {
  const auto& d = input(state.range(0), state.range(1));
  auto& out = output(d.size());
  const double missing = NANUM;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        zomath_d_cumulative_sum(d.data(), 0, unsigned(d.size()), out.data(), &missing));
    benchmark::ClobberMemory();
  }
  finish(state);
}

void BM_CumulativeSumPlainLoop(benchmark::State& state) {
  const auto& d = input(state.range(0), state.range(1));
  auto& out = output(d.size());
  for (auto _ : state) {
    double total = 0;
    long missing = 0;
    for (std::size_t i = 0; i < d.size(); ++i) {
      if (d[i] == NANUM) {
        ++missing;
      } else {
        total += d[i];
      }
      out[i] = total;
    }
    benchmark::DoNotOptimize(missing);
    benchmark::ClobberMemory();
  }
  finish(state);
}

void median_args(benchmark::internal::Benchmark* b) {
  b->Args({10000000L, 0})->Unit(benchmark::kMillisecond);
}

void BM_Median(benchmark::State& state) {
  const auto& d = input(state.range(0), false);
  double median;
  for (auto _ : state) {
    benchmark::DoNotOptimize(zomath_get_median_in_vector(int(d.size()), d.data(), &median));
    benchmark::DoNotOptimize(median);
  }
  finish(state);
}

// The same work by hand: a copy (the caller's data stays as it is) and a selection.
void BM_MedianNthElement(benchmark::State& state) {
  const auto& d = input(state.range(0), false);
  std::vector<double> work;
  for (auto _ : state) {
    work = d;
    const std::size_t h = work.size() / 2;
    std::nth_element(work.begin(), work.begin() + h, work.end());
    double median = work[h];
    if (work.size() % 2 == 0) median = 0.5 * (median + *std::max_element(work.begin(), work.begin() + h));
    benchmark::DoNotOptimize(median);
  }
  finish(state);
}

// What the median cost when it sorted its copy in full.
void BM_MedianFullSort(benchmark::State& state) {
  const auto& d = input(state.range(0), false);
  std::vector<double> work;
  for (auto _ : state) {
    work = d;
    std::sort(work.begin(), work.end());
    const std::size_t h = work.size() / 2;
    benchmark::DoNotOptimize(work.size() % 2 ? work[h] : 0.5 * (work[h - 1] + work[h]));
  }
  finish(state);
}

}  // namespace

BENCHMARK(BM_Minmax)->Apply(args);
BENCHMARK(BM_MinmaxPlainLoop)->Apply(args);
BENCHMARK(BM_Sum)->Apply(args);
BENCHMARK(BM_SumPlainLoop)->Apply(args);
BENCHMARK(BM_MeanVariance)->Apply(args);
BENCHMARK(BM_MeanVariancePlainLoop)->Apply(args);
BENCHMARK(BM_CumulativeSum)->Apply(args);
BENCHMARK(BM_CumulativeSumPlainLoop)->Apply(args);
BENCHMARK(BM_Median)->Apply(median_args);
BENCHMARK(BM_MedianNthElement)->Apply(median_args);
BENCHMARK(BM_MedianFullSort)->Apply(median_args);
