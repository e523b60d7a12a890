// The t tests at 10^3 to 10^7 points beside a plain loop that takes the mean and variance in two
// passes and the probability from the Student distribution function: the ratio of the export to
// that loop is the figure to read. The row form on 10^4 and 10^5 rows of 10 beside the same loop
// row by row.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

#include "zomath/scalar.h"
#include "zomath/stats.h"

namespace {

const std::vector<double>& sample(std::size_t n, int which) {
  static std::vector<double> data[2];
  if (data[which].size() != n) {
    std::mt19937_64 rng(42 + which);
    std::normal_distribution<double> normal(100 + which, 15);
    data[which].resize(n);
    for (double& v : data[which]) v = normal(rng);
  }
  return data[which];
}

void sizes(benchmark::internal::Benchmark* b) {
  for (long n : {1000L, 100000L, 10000000L}) b->Arg(n);
  b->Unit(benchmark::kMicrosecond);
}

void finish(benchmark::State& state, long points) {
  state.SetItemsProcessed(state.iterations() * points);
}

// Mean and variance (n - 1) of x in two passes, without looking for NANUM.
void plain_moments(const double* x, long n, double& mean, double& var) {
  double s = 0;
  for (long i = 0; i < n; ++i) s += x[i];
  mean = s / n;
  double ss = 0;
  for (long i = 0; i < n; ++i) ss += (x[i] - mean) * (x[i] - mean);
  var = ss / (n - 1);
}

void BM_OneSampleTTest(benchmark::State& state) {
  const auto& x = sample(state.range(0), 0);
  const HypotTestOptions o{0, 100.1, TAILED_TEST_TWO};
  tTestMeanResults r;
  for (auto _ : state) {
    zomath_one_sample_t_test(x.data(), static_cast<int>(x.size()), &o, &r);
    benchmark::DoNotOptimize(r.Prob);
  }
  finish(state, state.range(0));
}

void BM_OneSampleTPlainLoop(benchmark::State& state) {
  const auto& x = sample(state.range(0), 0);
  const long n = state.range(0);
  for (auto _ : state) {
    double mean, var;
    plain_moments(x.data(), n, mean, var);
    const double t = (mean - 100.1) / std::sqrt(var / n);
    benchmark::DoNotOptimize(tcdf(t, n - 1.0, 0, nullptr));
  }
  finish(state, n);
}

// Both tests (pooled and Welch) of two samples of n points each.
void BM_TwoSampleTTest(benchmark::State& state) {
  const auto &x = sample(state.range(0), 0), &y = sample(state.range(0), 1);
  const int n = static_cast<int>(x.size());
  const HypotTestOptions o{0, 0, TAILED_TEST_TWO};
  tTestMean2SampleResults r;
  tTestResults w;
  for (auto _ : state) {
    zomath_two_sample_t_test(x.data(), n, y.data(), n, &o, &r, &w);
    benchmark::DoNotOptimize(r.Prob + w.Prob);
  }
  finish(state, 2 * state.range(0));
}

void BM_TwoSampleTPlainLoop(benchmark::State& state) {
  const auto &x = sample(state.range(0), 0), &y = sample(state.range(0), 1);
  const long n = state.range(0);
  for (auto _ : state) {
    double m1, v1, m2, v2;
    plain_moments(x.data(), n, m1, v1);
    plain_moments(y.data(), n, m2, v2);
    const double pooled = ((n - 1) * v1 + (n - 1) * v2) / (2 * n - 2);
    const double t = (m1 - m2) / std::sqrt(pooled * 2.0 / n);
    const double a = v1 / n, b = v2 / n, df = (a + b) * (a + b) / ((a * a + b * b) / (n - 1));
    const double tw = (m1 - m2) / std::sqrt(a + b);
    benchmark::DoNotOptimize(tcdf(t, 2 * n - 2.0, 0, nullptr) + tcdf(tw, df, 0, nullptr));
  }
  finish(state, 2 * n);
}

constexpr int kCols = 10;

void rows(benchmark::internal::Benchmark* b) {
  for (long r : {10000L, 100000L}) b->Arg(r);
  b->Unit(benchmark::kMillisecond);
}

void BM_RowTTest2(benchmark::State& state) {
  const int nRows = static_cast<int>(state.range(0));
  const auto &a = sample(static_cast<std::size_t>(nRows) * kCols, 0),
             &b = sample(static_cast<std::size_t>(nRows) * kCols, 1);
  std::vector<double> t(nRows), dof(nRows), p(nRows);
  for (auto _ : state) {
    zomath_row_ttest2(nRows, kCols, a.data(), b.data(), 0, 0, t.data(), dof.data(), p.data());
    benchmark::DoNotOptimize(p.data());
  }
  finish(state, nRows);
}

void BM_RowTTest2PlainLoop(benchmark::State& state) {
  const int nRows = static_cast<int>(state.range(0));
  const auto &a = sample(static_cast<std::size_t>(nRows) * kCols, 0),
             &b = sample(static_cast<std::size_t>(nRows) * kCols, 1);
  std::vector<double> p(nRows);
  for (auto _ : state) {
    for (int i = 0; i < nRows; ++i) {
      double m1, v1, m2, v2;
      plain_moments(a.data() + i * kCols, kCols, m1, v1);
      plain_moments(b.data() + i * kCols, kCols, m2, v2);
      const double t = (m1 - m2) / std::sqrt((v1 + v2) / 2 * (2.0 / kCols));
      p[i] = tcdf(t, 2 * kCols - 2.0, 0, nullptr);
    }
    benchmark::DoNotOptimize(p.data());
  }
  finish(state, nRows);
}

}  // namespace

BENCHMARK(BM_OneSampleTTest)->Apply(sizes);
BENCHMARK(BM_OneSampleTPlainLoop)->Apply(sizes);
BENCHMARK(BM_TwoSampleTTest)->Apply(sizes);
BENCHMARK(BM_TwoSampleTPlainLoop)->Apply(sizes);
BENCHMARK(BM_RowTTest2)->Apply(rows);
BENCHMARK(BM_RowTTest2PlainLoop)->Apply(rows);
