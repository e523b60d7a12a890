// Dense linear algebra at 10, 100 and 500 square: the SVD by divide and conquer and the
// library's own Golub-Reinsch SVD beside LAPACK's QR-iteration driver (?gesvd), the
// pseudo-inverse, and the inverse beside LAPACK's factor-and-invert pair. Each iteration copies its input afresh (the
// routines overwrite it), so the copy cost is shared.
#include <benchmark/benchmark.h>
#include <lapacke.h>

#include <random>
#include <vector>

#include "zomath/linalg.h"

namespace {

const std::vector<double>& input(int n) {
  static std::vector<double> data;
  static int size = 0;
  if (size != n) {
    std::mt19937_64 rng(7);
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    data.resize(static_cast<std::size_t>(n) * n);
    for (double& x : data) x = u(rng);
    size = n;
  }
  return data;
}

void BM_SvdDivideConquer(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const auto& a = input(n);
  std::vector<double> work(a.size()), s(n), u(a.size()), vt(a.size());
  for (auto _ : state) {
    work = a;
    benchmark::DoNotOptimize(zomath_svd(n, n, work.data(), s.data(), u.data(), vt.data()));
  }
}

void BM_SvdOwn(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const auto& a = input(n);
  std::vector<double> work(a.size()), w(n), v(a.size());
  for (auto _ : state) {
    work = a;
    benchmark::DoNotOptimize(zomath_svdcmp_2(work.data(), n, n, w.data(), v.data()));
  }
}

void BM_SvdLapackDriver(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const auto& a = input(n);
  std::vector<double> work(a.size()), s(n), u(a.size()), vt(a.size()), superb(n);
  for (auto _ : state) {
    work = a;
    benchmark::DoNotOptimize(LAPACKE_dgesvd(LAPACK_ROW_MAJOR, 'S', 'S', n, n, work.data(), n, s.data(),
                                            u.data(), n, vt.data(), n, superb.data()));
  }
}

void BM_Pinv(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const auto& a = input(n);
  std::vector<double> x(a.size());
  for (auto _ : state) benchmark::DoNotOptimize(zomath_pinv(a.data(), x.data(), n, n, -1.0));
}

void BM_Inverse(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const auto& a = input(n);
  std::vector<double> work(a.size());
  for (auto _ : state) {
    work = a;
    benchmark::DoNotOptimize(zomath_inverse(work.data(), n));
  }
}

void BM_InverseLapackGetri(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const auto& a = input(n);
  std::vector<double> work(a.size());
  std::vector<lapack_int> piv(n);
  for (auto _ : state) {
    work = a;
    LAPACKE_dgetrf(LAPACK_ROW_MAJOR, n, n, work.data(), n, piv.data());
    benchmark::DoNotOptimize(LAPACKE_dgetri(LAPACK_ROW_MAJOR, n, work.data(), n, piv.data()));
  }
}

}  // namespace

#define ZOMATH_SIZES ->Arg(10)->Arg(100)->Arg(500)->Unit(benchmark::kMicrosecond)
BENCHMARK(BM_SvdDivideConquer) ZOMATH_SIZES;
BENCHMARK(BM_SvdOwn) ZOMATH_SIZES;
BENCHMARK(BM_SvdLapackDriver) ZOMATH_SIZES;
BENCHMARK(BM_Pinv) ZOMATH_SIZES;
BENCHMARK(BM_Inverse) ZOMATH_SIZES;
BENCHMARK(BM_InverseLapackGetri) ZOMATH_SIZES;
