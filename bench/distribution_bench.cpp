// Distribution functions over 10^6 arguments an iteration, each beside the plain Boost.Math call
// on the same arguments (default policy, so its double precision work is done in long double as
// the library's is). The studentized range, a double integral with no Boost counterpart, takes
// 10^3 arguments an iteration. Arguments are spread over realistic ranges: both tails and the
// centre, small and moderate degrees of freedom.
#include <benchmark/benchmark.h>

#include <boost/math/distributions/chi_squared.hpp>
#include <boost/math/distributions/fisher_f.hpp>
#include <boost/math/distributions/normal.hpp>
#include <boost/math/distributions/students_t.hpp>
#include <random>
#include <vector>

#include "zomath/scalar.h"

namespace {

constexpr std::size_t kCount = 1000000;

struct Point {
  double x;   // variate or probability
  double a;   // degrees of freedom
  double b;   // second degrees of freedom
};

// kCount points: x uniform on [lo, hi], a and b whole numbers in [1, aMax] and [1, bMax].
std::vector<Point> points(double lo, double hi, int aMax, int bMax, std::size_t n = kCount) {
  std::mt19937_64 rng(11);
  std::uniform_real_distribution<double> x(lo, hi);
  std::uniform_int_distribution<int> a(1, aMax), b(1, bMax);
  std::vector<Point> v(n);
  for (Point& p : v) p = {x(rng), static_cast<double>(a(rng)), static_cast<double>(b(rng))};
  return v;
}

template <class F>
void run(benchmark::State& state, const std::vector<Point>& pts, F f) {
  for (auto _ : state) {
    double sum = 0;
    for (const Point& p : pts) sum += f(p);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * pts.size()));
}

const std::vector<Point>& normal_points() {
  static const auto v = points(-9, 9, 1, 1);
  return v;
}
const std::vector<Point>& t_points() {
  static const auto v = points(-12, 12, 100, 1);
  return v;
}
const std::vector<Point>& probability_points() {
  static const auto v = points(1e-9, 1 - 1e-9, 100, 1);
  return v;
}
const std::vector<Point>& f_points() {
  static const auto v = points(0.01, 12, 20, 100);
  return v;
}

void BM_normcdf(benchmark::State& s) {
  run(s, normal_points(), [](const Point& p) { int e; return normcdf(p.x, 2, &e); });
}
void BM_BoostNormalCdf(benchmark::State& s) {
  const boost::math::normal_distribution<double> d;
  run(s, normal_points(), [&](const Point& p) { return boost::math::cdf(d, p.x); });
}

void BM_tcdf(benchmark::State& s) {
  run(s, t_points(), [](const Point& p) { int e; return tcdf(p.x, p.a, 2, &e); });
}
void BM_BoostStudentsTCdf(benchmark::State& s) {
  run(s, t_points(), [](const Point& p) {
    return boost::math::cdf(boost::math::students_t_distribution<double>(p.a), p.x);
  });
}

void BM_tinv(benchmark::State& s) {
  run(s, probability_points(), [](const Point& p) { int e; return tinv(p.x, p.a, 2, &e); });
}
void BM_BoostStudentsTQuantile(benchmark::State& s) {
  run(s, probability_points(), [](const Point& p) {
    return boost::math::quantile(boost::math::students_t_distribution<double>(p.a), p.x);
  });
}

void BM_fcdf(benchmark::State& s) {
  run(s, f_points(), [](const Point& p) { int e; return fcdf(p.x, p.a, p.b, 2, &e); });
}
void BM_BoostFisherFCdf(benchmark::State& s) {
  run(s, f_points(), [](const Point& p) {
    return boost::math::cdf(boost::math::fisher_f_distribution<double>(p.a, p.b), p.x);
  });
}

void BM_chi2inv(benchmark::State& s) {
  run(s, probability_points(), [](const Point& p) { int e; return chi2inv(p.x, p.a, &e); });
}
void BM_BoostChiSquaredQuantile(benchmark::State& s) {
  run(s, probability_points(), [](const Point& p) {
    return boost::math::quantile(boost::math::chi_squared_distribution<double>(p.a), p.x);
  });
}

void BM_srangecdf(benchmark::State& s) {
  static const auto pts = points(0.5, 8, 100, 10, 1000);
  run(s, pts, [](const Point& p) {
    int e;
    return srangecdf(p.x, p.a, 1 + static_cast<int>(p.b), &e);
  });
}

}  // namespace

BENCHMARK(BM_normcdf)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BoostNormalCdf)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_tcdf)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BoostStudentsTCdf)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_tinv)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BoostStudentsTQuantile)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_fcdf)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BoostFisherFCdf)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_chi2inv)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BoostChiSquaredQuantile)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_srangecdf)->Unit(benchmark::kMillisecond);
