// 10^7 normal and uniform variates through normrnd and unifrnd, each beside the standard
// library's distribution on the same engine (std::mt19937_64) filling the same array; and the
// named function table's call beside the direct call of the function it names.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "zomath/scalar.h"

namespace {

constexpr int kVariates = 10000000;

void BM_normrnd(benchmark::State& state) {
  std::vector<double> out(kVariates);
  for (auto _ : state) {
    benchmark::DoNotOptimize(normrnd(out.data(), kVariates, 1.0, 4.0));
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kVariates);
}

void BM_std_normal_distribution(benchmark::State& state) {
  std::vector<double> out(kVariates);
  std::mt19937_64 rng(std::random_device{}());
  for (auto _ : state) {
    std::normal_distribution<double> normal(1.0, 2.0);
    for (double& x : out) x = normal(rng);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kVariates);
}

void BM_unifrnd(benchmark::State& state) {
  std::vector<double> out(kVariates);
  for (auto _ : state) {
    benchmark::DoNotOptimize(unifrnd(out.data(), kVariates, -1.0, 3.0));
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kVariates);
}

void BM_std_uniform_real_distribution(benchmark::State& state) {
  std::vector<double> out(kVariates);
  std::mt19937_64 rng(std::random_device{}());
  for (auto _ : state) {
    std::uniform_real_distribution<double> uniform(-1.0, 3.0);
    for (double& x : out) x = uniform(rng);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kVariates);
}

// The table's mode 2 on tcdf against tcdf itself, 10^6 arguments an iteration.
constexpr int kCalls = 1000000;

std::vector<double> t_arguments() {
  std::mt19937_64 rng(3);
  std::uniform_real_distribution<double> t(-6, 6);
  std::vector<double> v(kCalls);
  for (double& x : v) x = t(rng);
  return v;
}

void BM_table_tcdf(benchmark::State& state) {
  const auto ts = t_arguments();
  unsigned long index = 0;
  zomath_ZT_functions(ZOMATH_ZT_LOOKUP, const_cast<char*>("tcdf"), &index, nullptr, nullptr);
  for (auto _ : state) {
    double sum = 0, args[4] = {0, 7, 0, 0}, r = 0;
    for (double t : ts) {
      args[0] = t;
      zomath_ZT_functions(ZOMATH_ZT_CALL, nullptr, &index, args, &r);
      sum += r;
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kCalls);
}

void BM_direct_tcdf(benchmark::State& state) {
  const auto ts = t_arguments();
  for (auto _ : state) {
    double sum = 0;
    int err = 0;
    for (double t : ts) sum += tcdf(t, 7, 2, &err);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kCalls);
}

}  // namespace

BENCHMARK(BM_normrnd)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_std_normal_distribution)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_unifrnd)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_std_uniform_real_distribution)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_table_tcdf)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_direct_tcdf)->Unit(benchmark::kMillisecond);
