// The one-way analysis of variance at 10^3 to 10^7 points in 4 groups beside a plain loop that
// forms the group means and the two sums of squares in two passes (the ratio is the figure to
// read); Levene's test at the same sizes; the Tukey-Kramer comparison of 10 to 100 means; the
// two-way table of 10^4 and 10^5 points on 4 x 5 levels with the interaction.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "zomath/stats.h"

namespace {

struct Design {
  std::vector<double> y;
  std::vector<int> sizes, a, b;
};

const Design& design(long n) {
  static Design d;
  if (static_cast<long>(d.y.size()) != n) {
    std::mt19937_64 rng(7);
    std::normal_distribution<double> normal(0, 1);
    d.y.resize(n);
    d.a.resize(n);
    d.b.resize(n);
    for (long i = 0; i < n; ++i) {
      d.a[i] = 1 + static_cast<int>(i % 4);
      d.b[i] = 1 + static_cast<int>((i / 4) % 5);
      d.y[i] = 10 + 0.01 * (4 * i / n) + normal(rng);
    }
    d.sizes.assign(4, static_cast<int>(n / 4));
  }
  return d;
}

void sizes(benchmark::internal::Benchmark* b) {
  for (long n : {1000L, 100000L, 10000000L}) b->Arg(n);
  b->Unit(benchmark::kMicrosecond);
}

void BM_OneWay(benchmark::State& state) {
  const Design& d = design(state.range(0));
  ANOVATable t;
  const int method = static_cast<int>(state.range(1));
  for (auto _ : state) {
    zomath_anova_equal_variance_test(d.y.data(), static_cast<int>(d.y.size()), 4, d.sizes.data(),
                                     nullptr, 0, &t, method);
    benchmark::DoNotOptimize(t.PValue);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_OneWayPlainLoop(benchmark::State& state) {
  const Design& d = design(state.range(0));
  const long m = state.range(0) / 4;
  for (auto _ : state) {
    double means[4], grand = 0, within = 0, between = 0;
    for (int g = 0; g < 4; ++g) {
      double s = 0;
      for (long i = g * m; i < (g + 1) * m; ++i) s += d.y[i];
      means[g] = s / m;
      grand += s;
    }
    grand /= 4.0 * m;
    for (int g = 0; g < 4; ++g) {
      for (long i = g * m; i < (g + 1) * m; ++i)
        within += (d.y[i] - means[g]) * (d.y[i] - means[g]);
      between += m * (means[g] - grand) * (means[g] - grand);
    }
    benchmark::DoNotOptimize(between / 3 / (within / (4 * m - 4)));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_TukeyKramer(benchmark::State& state) {
  const int k = static_cast<int>(state.range(0)), m = k * (k - 1) / 2;
  std::vector<double> means(k), d(m), l(m), u(m), se(m), st(m), p(m), al(m);
  std::vector<int> counts(k), index(m), sig(m);
  for (int g = 0; g < k; ++g) {
    means[g] = 0.05 * g;
    counts[g] = 10 + g % 3;
  }
  for (auto _ : state) {
    zomath_anova_mean_comparison(means.data(), k, counts.data(), k, 1.0, 10 * k, 0.05, k,
                                 index.data(), m, d.data(), m, l.data(), m, u.data(), m, se.data(),
                                 m, st.data(), m, p.data(), m, sig.data(), m, al.data(), m,
                                 COMPARE_TUKEY);
    benchmark::DoNotOptimize(p[0]);
  }
  state.SetItemsProcessed(state.iterations() * m);
}

void BM_TwoWay(benchmark::State& state) {
  const Design& d = design(state.range(0));
  ANOVA2Table t;
  for (auto _ : state) {
    zomath_stats_anova_two_way_compute_anova_table(1, d.a.data(), 4, d.b.data(), 5, d.y.data(),
                                                   static_cast<int>(d.y.size()), nullptr, nullptr,
                                                   nullptr, nullptr, &t);
    benchmark::DoNotOptimize(t.Model.PValue);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

}  // namespace

BENCHMARK(BM_OneWay)
    ->ArgsProduct({{1000, 100000, 10000000}, {0, ANOVA_LEVENE}})
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_OneWayPlainLoop)->Apply(sizes);
BENCHMARK(BM_TukeyKramer)->Arg(10)->Arg(100)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_TwoWay)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);
