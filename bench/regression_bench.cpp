// The multiple regression at 10^5 points by 10 variables and 10^6 by 3: the export with the
// parameter table alone, with the whole report (statistics, ANOVA, matrices, leverages), and
// with weights, beside LAPACK's minimum-norm least-squares driver (?gelsd, what numpy.linalg.lstsq
// calls) on the same design with its column of ones, copied afresh each time as it overwrites it.
// The straight line at 10^6 points, and polynomials of order 2 at 10^6 points and 5 at 10^5,
// beside the multiple regression on the same powers of x, which the fit builds on (the
// difference is the design and the refinement of the coefficients).
#include <benchmark/benchmark.h>
#include <lapacke.h>

#include <cmath>
#include <random>
#include <vector>

#include "zomath/regression.h"

namespace {

struct Problem {
  int n = 0, m = 0;
  std::vector<double> x, y, w, design;  // design: column-major [1 X] for LAPACK
};

const Problem& problem(int n, int m) {
  static Problem p;
  if (p.n != n || p.m != m) {
    std::mt19937_64 rng(11);
    std::normal_distribution<double> g;
    std::uniform_real_distribution<double> u(0.5, 2.0);
    p = Problem{n, m, {}, {}, {}, {}};
    p.x.resize(static_cast<std::size_t>(n) * m);
    for (double& v : p.x) v = g(rng) * 10 + 3;
    for (int i = 0; i < n; ++i) {
      double s = 1.5 + g(rng);
      for (int j = 0; j < m; ++j) s += (j + 1) * 0.1 * p.x[static_cast<std::size_t>(i) * m + j];
      p.y.push_back(s);
      p.w.push_back(u(rng));
    }
    p.design.assign(static_cast<std::size_t>(n) * (m + 1), 1.0);
    for (int i = 0; i < n; ++i)
      for (int j = 0; j < m; ++j)
        p.design[static_cast<std::size_t>(j + 1) * n + i] = p.x[static_cast<std::size_t>(i) * m + j];
  }
  return p;
}

void BM_MultipleRegression(benchmark::State& state) {
  const Problem& p = problem(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  std::vector<FitParameter> fit(p.m + 1);
  for (auto _ : state)
    benchmark::DoNotOptimize(zomath_multiple_linear_regression(
        p.x.data(), p.n, p.m, p.y.data(), nullptr, 0, nullptr, fit.data(), p.m + 1, nullptr,
        nullptr, nullptr, nullptr, 0, 0, nullptr, nullptr));
}

void BM_MultipleRegressionFullReport(benchmark::State& state) {
  const Problem& p = problem(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  const int k = p.m + 1;
  std::vector<FitParameter> fit(k);
  std::vector<double> cov(k * k), corr(k * k), h(p.n);
  FitStats st;
  FitAnovaTable an;
  for (auto _ : state)
    benchmark::DoNotOptimize(zomath_multiple_linear_regression(
        p.x.data(), p.n, p.m, p.y.data(), nullptr, 0, nullptr, fit.data(), k, &st, &an,
        cov.data(), corr.data(), k, k, h.data(), nullptr));
}

void BM_MultipleRegressionWeighted(benchmark::State& state) {
  const Problem& p = problem(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  std::vector<FitParameter> fit(p.m + 1);
  for (auto _ : state)
    benchmark::DoNotOptimize(zomath_multiple_linear_regression(
        p.x.data(), p.n, p.m, p.y.data(), p.w.data(), 0, nullptr, fit.data(), p.m + 1, nullptr,
        nullptr, nullptr, nullptr, 0, 0, nullptr, nullptr));
}

void BM_LapackLeastSquares(benchmark::State& state) {
  const Problem& p = problem(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  const int k = p.m + 1;
  std::vector<double> a(p.design.size()), b(p.n), s(k);
  lapack_int rank = 0;
  for (auto _ : state) {
    a = p.design;
    b = p.y;
    benchmark::DoNotOptimize(LAPACKE_dgelsd(LAPACK_COL_MAJOR, p.n, k, 1, a.data(), p.n, b.data(),
                                            p.n, s.data(), -1.0, &rank));
  }
}

// x on [0, 10], y a noisy cubic.
struct Curve {
  std::vector<double> x, y;
  explicit Curve(int n) {
    std::mt19937_64 rng(5);
    std::normal_distribution<double> g;
    for (int i = 0; i < n; ++i) {
      const double t = 10.0 * i / n;
      x.push_back(t);
      y.push_back(2 - t + 0.3 * t * t - 0.02 * t * t * t + 0.1 * g(rng));
    }
  }
};

void BM_LinearFit(benchmark::State& state) {
  const Curve c(static_cast<int>(state.range(0)));
  FitParameter fit[2];
  for (auto _ : state)
    benchmark::DoNotOptimize(zomath_linear_fit(c.x.data(), c.y.data(), static_cast<int>(c.x.size()),
                                               fit, nullptr, 0, nullptr, nullptr, nullptr,
                                               nullptr, nullptr, nullptr, 0, 0));
}

void BM_PolynomialFit(benchmark::State& state) {
  const Curve c(static_cast<int>(state.range(0)));
  const int order = static_cast<int>(state.range(1));
  std::vector<FitParameter> fit(order + 1);
  for (auto _ : state)
    benchmark::DoNotOptimize(zomath_polynomial_fit(static_cast<int>(c.x.size()), c.x.data(),
                                                   c.y.data(), nullptr, order, nullptr,
                                                   fit.data(), order + 1, nullptr, nullptr,
                                                   nullptr, nullptr, nullptr, -1));
}

void BM_PowersRegression(benchmark::State& state) {
  const Curve c(static_cast<int>(state.range(0)));
  const int order = static_cast<int>(state.range(1)), n = static_cast<int>(c.x.size());
  std::vector<double> design;
  for (double t : c.x)
    for (int j = 1; j <= order; ++j) design.push_back(std::pow(t, j));
  std::vector<FitParameter> fit(order + 1);
  for (auto _ : state)
    benchmark::DoNotOptimize(zomath_multiple_linear_regression(
        design.data(), n, order, c.y.data(), nullptr, 0, nullptr, fit.data(), order + 1,
        nullptr, nullptr, nullptr, nullptr, 0, 0, nullptr, nullptr));
}

void orders(benchmark::internal::Benchmark* b) {
  b->Args({1000000, 2})->Args({100000, 5})->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_LinearFit)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PolynomialFit)->Apply(orders);
BENCHMARK(BM_PowersRegression)->Apply(orders);

void sizes(benchmark::internal::Benchmark* b) {
  b->Args({100000, 10})->Args({1000000, 3})->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_MultipleRegression)->Apply(sizes);
BENCHMARK(BM_MultipleRegressionFullReport)->Apply(sizes);
BENCHMARK(BM_MultipleRegressionWeighted)->Apply(sizes);
BENCHMARK(BM_LapackLeastSquares)->Apply(sizes);

}  // namespace
