// Sorting doubles: the library's sorters beside std::sort and std::stable_sort on the same
// data, alone and with a companion int array (beside sorting an index array by key).
// Every variant copies its input afresh inside the timed loop, so the copy cost is shared.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

#include "zomath/sort.h"

namespace {

const std::vector<double>& input(std::size_t n) {
  static std::vector<double> data;
  if (data.size() != n) {
    std::mt19937_64 rng(42);
    std::normal_distribution<double> normal;
    data.resize(n);
    for (double& x : data) x = normal(rng);
  }
  return data;
}

void* ascend() { return reinterpret_cast<void*>(Compare_double_Ascend); }

template <class Sorter>
void BM_Sorter(benchmark::State& state) {
  const auto& src = input(static_cast<std::size_t>(state.range(0)));
  std::vector<double> work(src.size());
  for (auto _ : state) {
    work = src;
    Sorter s(work.data(), static_cast<int>(work.size()), sizeof(double));
    s.Sort(0, static_cast<int>(work.size()) - 1, ascend());
    benchmark::DoNotOptimize(work.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class Sorter>
void BM_SorterCompanion(benchmark::State& state) {
  const auto& src = input(static_cast<std::size_t>(state.range(0)));
  std::vector<double> work(src.size());
  std::vector<int> companion(src.size());
  for (auto _ : state) {
    work = src;
    std::iota(companion.begin(), companion.end(), 0);
    Sorter s(work.data(), static_cast<int>(work.size()), sizeof(double), companion.data(),
             sizeof(int), static_cast<int>(companion.size()));
    s.Sort(0, static_cast<int>(work.size()) - 1, ascend());
    benchmark::DoNotOptimize(companion.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_StdSort(benchmark::State& state) {
  const auto& src = input(static_cast<std::size_t>(state.range(0)));
  std::vector<double> work(src.size());
  for (auto _ : state) {
    work = src;
    std::sort(work.begin(), work.end());
    benchmark::DoNotOptimize(work.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_StdStableSort(benchmark::State& state) {
  const auto& src = input(static_cast<std::size_t>(state.range(0)));
  std::vector<double> work(src.size());
  for (auto _ : state) {
    work = src;
    std::stable_sort(work.begin(), work.end());
    benchmark::DoNotOptimize(work.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// What a caller would do without a companion sort: sort indices by key, then gather.
void BM_StdSortIndexArray(benchmark::State& state) {
  const auto& src = input(static_cast<std::size_t>(state.range(0)));
  std::vector<double> work(src.size());
  std::vector<int> index(src.size());
  for (auto _ : state) {
    work = src;
    std::iota(index.begin(), index.end(), 0);
    std::sort(index.begin(), index.end(), [&](int a, int b) { return work[a] < work[b]; });
    benchmark::DoNotOptimize(index.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void sizes(benchmark::internal::Benchmark* b) {
  for (long n = 1000; n <= 10000000; n *= 10) b->Arg(n);
  b->Unit(benchmark::kMillisecond);
}

}  // namespace

BENCHMARK(BM_StdSort)->Apply(sizes);
BENCHMARK_TEMPLATE(BM_Sorter, CQSort)->Apply(sizes);
BENCHMARK(BM_StdStableSort)->Apply(sizes);
BENCHMARK_TEMPLATE(BM_Sorter, CMergeSort)->Apply(sizes);
BENCHMARK(BM_StdSortIndexArray)->Apply(sizes);
BENCHMARK_TEMPLATE(BM_SorterCompanion, CQSort)->Apply(sizes);
BENCHMARK_TEMPLATE(BM_SorterCompanion, CMergeSort)->Apply(sizes);
