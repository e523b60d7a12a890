// Bessel J0, K1 and Airy Ai over 10^6 arguments: the short form (guard + platform routine) and
// the prefixed form (own kernel, or the C library's j0) beside the plain Boost.Math call.
// Arguments: J0 on [0, 100], K1 on (0, 50], Ai on [-20, 20], uniformly at random.
#include <benchmark/benchmark.h>

#include <boost/math/special_functions/airy.hpp>
#include <boost/math/special_functions/bessel.hpp>
#include <random>
#include <vector>

#include "zomath/scalar.h"

namespace {

constexpr std::size_t kCount = 1000000;

const std::vector<double>& arguments(double lo, double hi) {
  static std::vector<double> data;
  static double cached_lo = 0, cached_hi = 0;
  if (data.empty() || cached_lo != lo || cached_hi != hi) {
    std::mt19937_64 rng(7);
    std::uniform_real_distribution<double> uniform(lo, hi);
    data.resize(kCount);
    for (double& x : data) {
      do x = uniform(rng);
      while (x == 0.0);
    }
    cached_lo = lo;
    cached_hi = hi;
  }
  return data;
}

template <class F>
void run(benchmark::State& state, double lo, double hi, F f) {
  const std::vector<double>& xs = arguments(lo, hi);
  for (auto _ : state) {
    double sum = 0;
    for (double x : xs) sum += f(x);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kCount));
}

void BM_J0_Boost(benchmark::State& s) {
  run(s, 0, 100, [](double x) { return boost::math::cyl_bessel_j(0, x); });
}
void BM_J0_Short(benchmark::State& s) { run(s, 0, 100, bessel_j0); }
void BM_J0_Prefixed(benchmark::State& s) { run(s, 0, 100, zomath_bessel_j0); }

void BM_K1_Boost(benchmark::State& s) {
  run(s, 0, 50, [](double x) { return boost::math::cyl_bessel_k(1, x); });
}
void BM_K1_Short(benchmark::State& s) { run(s, 0, 50, bessel_k1); }
void BM_K1_Prefixed(benchmark::State& s) { run(s, 0, 50, zomath_bessel_k1); }

void BM_Ai_Boost(benchmark::State& s) {
  run(s, -20, 20, [](double x) { return boost::math::airy_ai(x); });
}
void BM_Ai_Short(benchmark::State& s) { run(s, -20, 20, airy_ai); }
void BM_Ai_Prefixed(benchmark::State& s) { run(s, -20, 20, zomath_airy_ai); }

}  // namespace

BENCHMARK(BM_J0_Boost)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_J0_Short)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_J0_Prefixed)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_K1_Boost)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_K1_Short)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_K1_Prefixed)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Ai_Boost)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Ai_Short)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Ai_Prefixed)->Unit(benchmark::kMillisecond);
