// 10^6 evaluations of erf, gamma and the Lambert W function: the short form (a guard around the
// platform routine), the prefixed form (the library's own kernel) where one exists, and the plain
// Boost.Math call that the short forms build on.
#include <benchmark/benchmark.h>

#include <boost/math/special_functions/erf.hpp>
#include <boost/math/special_functions/gamma.hpp>
#include <boost/math/special_functions/lambert_w.hpp>
#include <vector>

#include "zomath/scalar.h"

namespace {

constexpr int kCount = 1000000;

std::vector<double> spread(double lo, double hi) {
  std::vector<double> x(kCount);
  for (int i = 0; i < kCount; ++i) x[i] = lo + (hi - lo) * (i + 0.5) / kCount;
  return x;
}

template <class F>
void run(benchmark::State& state, double lo, double hi, F f) {
  const std::vector<double> x = spread(lo, hi);
  for (auto _ : state) {
    double sum = 0.0;
    for (double v : x) sum += f(v);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kCount);
}

void ErfShort(benchmark::State& s) { run(s, -5, 5, ADummyFunction); }
void ErfOwn(benchmark::State& s) { run(s, -5, 5, zomath_erf); }
void ErfBoost(benchmark::State& s) { run(s, -5, 5, [](double v) { return boost::math::erf(v); }); }

void GammaShort(benchmark::State& s) { run(s, 0.1, 170, gamma_fn); }
void GammaOwn(benchmark::State& s) { run(s, 0.1, 170, zomath_gamma); }
void GammaBoost(benchmark::State& s) {
  run(s, 0.1, 170, [](double v) { return boost::math::tgamma(v); });
}

void LambertWShort(benchmark::State& s) {
  run(s, -0.3, 100, [](double v) { return lambertW(v, 0, 0, nullptr); });
}
void LambertWBoost(benchmark::State& s) {
  run(s, -0.3, 100, [](double v) { return boost::math::lambert_w0(v); });
}

}  // namespace

BENCHMARK(ErfShort)->Unit(benchmark::kMillisecond);
BENCHMARK(ErfOwn)->Unit(benchmark::kMillisecond);
BENCHMARK(ErfBoost)->Unit(benchmark::kMillisecond);
BENCHMARK(GammaShort)->Unit(benchmark::kMillisecond);
BENCHMARK(GammaOwn)->Unit(benchmark::kMillisecond);
BENCHMARK(GammaBoost)->Unit(benchmark::kMillisecond);
BENCHMARK(LambertWShort)->Unit(benchmark::kMillisecond);
BENCHMARK(LambertWBoost)->Unit(benchmark::kMillisecond);
