#include "platform/random.h"

#include <lapacke.h>
#include <sys/random.h>

#include <algorithm>
#include <chrono>
#include <climits>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <random>
#include <vector>

#include "core/nrvec/nrvec.h"
#include "platform/blas_lock.h"
#include "zomath/core.h"

namespace zomath::platform {

namespace {

using Engine = std::mt19937_64;

// Finalizer of SplitMix64 (Steele, Lea and Flood, OOPSLA 2014): spreads every input bit over
// the output, so that neighbouring clock readings give unrelated seeds.
std::uint64_t mix64(std::uint64_t z) {
  z += 0x9e3779b97f4a7c15ULL;
  z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ULL;
  z = (z ^ (z >> 27)) * 0x94d049bb133111ebULL;
  return z ^ (z >> 31);
}

// A generator seeded from 64 bits of the kernel's entropy (one getrandom call, or
// std::random_device where that is missing) mixed with the clock, so that no two calls share
// a sequence. The engine's own single-value seeding is used: a seed sequence over its whole
// state would cost tens of microseconds a call, which a host drawing a few values at a time
// would feel, and 2^64 streams are plenty for non-repeatable sampling.
Engine fresh_engine() {
  std::uint64_t entropy = 0;
  if (getrandom(&entropy, sizeof(entropy), GRND_NONBLOCK) != static_cast<ssize_t>(sizeof(entropy))) {
    try {
      std::random_device device;
      entropy = (static_cast<std::uint64_t>(device()) << 32) ^ device();
    } catch (...) {
      entropy = 0;  // the clock alone still differs from call to call
    }
  }
  const auto ticks = static_cast<std::uint64_t>(
      std::chrono::high_resolution_clock::now().time_since_epoch().count());
  return Engine(mix64(entropy) ^ mix64(ticks ^ 0x6a09e667f3bcc909ULL));
}

// Uniform on (0, 1]: never 0, so its logarithm is finite.
inline double open_unit(Engine& rng) {
  return 1.0 - static_cast<double>(rng() >> 11) * 0x1.0p-53;
}
// Uniform on [0, 1).
inline double unit(Engine& rng) { return static_cast<double>(rng() >> 11) * 0x1.0p-53; }

bool ok(double x) { return std::isfinite(x) && x != NANUM; }

int bad(NagError& fail) { return fail.fail(kRandomBadParameter, "parameter out of range"); }

template <class T, class Draw>
int fill(int n, T* out, Draw draw) {
  Engine rng = fresh_engine();
  for (int i = 0; i < n; ++i) out[i] = draw(rng);
  return 0;
}

template <class T, class Dist>
int fill_from(int n, T* out, Dist dist) {
  Engine rng = fresh_engine();
  for (int i = 0; i < n; ++i) out[i] = dist(rng);
  return 0;
}

// log of a Gamma(shape, 1) variate, exact also for shapes so small that the variate itself
// underflows: Gamma(a) = Gamma(a + 1) U^(1/a) (Marsaglia and Tsang, ACM TOMS 2000).
double log_gamma_variate(Engine& rng, double shape) {
  if (shape >= 1) return std::log(std::gamma_distribution<double>(shape, 1.0)(rng));
  const double g = std::gamma_distribution<double>(shape + 1, 1.0)(rng);
  return std::log(g) + std::log(open_unit(rng)) / shape;
}

int to_int(double x) { return x >= static_cast<double>(INT_MAX) ? INT_MAX : static_cast<int>(x); }

// Index of the first entry of an increasing table above u * total: inversion of a discrete
// distribution given by its (unnormalised) cumulative weights.
int search(const double* cdf, int count, double t) {
  const int i = static_cast<int>(std::upper_bound(cdf, cdf + count, t) - cdf);
  return std::min(i, count - 1);
}

}  // namespace

int random_normal(int n, double mean, double variance, double* out, NagError& fail) {
  fail.reset();
  if (!ok(mean) || !ok(variance) || variance < 0) return bad(fail);
  return fill_from(n, out, std::normal_distribution<double>(mean, std::sqrt(variance)));
}

int random_uniform(int n, double low, double high, double* out, NagError& fail) {
  fail.reset();
  if (!ok(low) || !ok(high) || low > high) return bad(fail);
  if (std::isfinite(high - low))
    return fill_from(n, out, std::uniform_real_distribution<double>(low, high));
  // A range wider than the largest double: weigh the ends instead of scaling the width.
  return fill(n, out, [&](Engine& rng) {
    const double u = unit(rng);
    return low * (1 - u) + high * u;
  });
}

int random_beta(int n, double a, double b, double* out, NagError& fail) {
  fail.reset();
  if (!ok(a) || !ok(b) || a <= 0 || b <= 0) return bad(fail);
  // X / (X + Y) of two gamma variates, from their logarithms: 1 / (1 + exp(ln Y - ln X)).
  return fill(n, out, [&](Engine& rng) {
    const double lx = log_gamma_variate(rng, a), ly = log_gamma_variate(rng, b);
    return 1.0 / (1.0 + std::exp(ly - lx));
  });
}

int random_cauchy(int n, double a, double b, double* out, NagError& fail) {
  fail.reset();
  if (!ok(a) || !ok(b) || b <= 0) return bad(fail);
  return fill_from(n, out, std::cauchy_distribution<double>(a, b));
}

int random_gamma(int n, double a, double b, double* out, NagError& fail) {
  fail.reset();
  if (!ok(a) || !ok(b) || a <= 0 || b <= 0) return bad(fail);
  return fill_from(n, out, std::gamma_distribution<double>(a, b));
}

int random_logistic(int n, double a, double b, double* out, NagError& fail) {
  fail.reset();
  if (!ok(a) || !ok(b) || b <= 0) return bad(fail);
  return fill(n, out, [&](Engine& rng) {
    const double u = open_unit(rng);  // (0, 1]; u = 1 would give +inf, so reflect it
    const double v = u < 1 ? u : 0.5;
    return a + b * std::log(v / (1 - v));
  });
}

int random_lognormal(int n, double mu, double variance, double* out, NagError& fail) {
  fail.reset();
  if (!ok(mu) || !ok(variance) || variance < 0) return bad(fail);
  std::normal_distribution<double> normal(mu, std::sqrt(variance));
  return fill(n, out, [&](Engine& rng) { return std::exp(normal(rng)); });
}

int random_weibull(int n, double a, double b, double* out, NagError& fail) {
  fail.reset();
  if (!ok(a) || !ok(b) || a <= 0 || b <= 0) return bad(fail);
  return fill(n, out, [&](Engine& rng) { return std::pow(-b * std::log(open_unit(rng)), 1 / a); });
}

int random_exponential(int n, double a, double* out, NagError& fail) {
  fail.reset();
  if (!ok(a) || a <= 0) return bad(fail);
  return fill(n, out, [&](Engine& rng) { return -a * std::log(open_unit(rng)); });
}

int random_chi_square(int n, int df, double* out, NagError& fail) {
  fail.reset();
  if (df < 1) return bad(fail);
  return fill_from(n, out, std::chi_squared_distribution<double>(df));
}

int random_student_t(int n, int df, double* out, NagError& fail) {
  fail.reset();
  if (df < 1) return bad(fail);
  return fill_from(n, out, std::student_t_distribution<double>(df));
}

int random_fisher_f(int n, int df1, int df2, double* out, NagError& fail) {
  fail.reset();
  if (df1 < 1 || df2 < 1) return bad(fail);
  return fill_from(n, out, std::fisher_f_distribution<double>(df1, df2));
}

int random_triangular(int n, double a, double b, double c, double* out, NagError& fail) {
  fail.reset();
  if (!ok(a) || !ok(b) || !ok(c) || !(a <= b && b <= c) || !std::isfinite(c - a))
    return bad(fail);
  if (a == c) return fill(n, out, [&](Engine&) { return a; });
  // Inversion of the distribution function, the rising and the falling side.
  const double width = c - a, split = (b - a) / width;
  return fill(n, out, [&](Engine& rng) {
    const double u = unit(rng);
    return u < split ? a + std::sqrt(u * width * (b - a))
                     : c - std::sqrt((1 - u) * width * (c - b));
  });
}

int random_binomial(int n, int trials, double p, int* out, NagError& fail) {
  fail.reset();
  if (trials < 0 || !ok(p) || p < 0 || p > 1) return bad(fail);
  return fill_from(n, out, std::binomial_distribution<int>(trials, p));
}

int random_geometric(int n, double p, int* out, NagError& fail) {
  fail.reset();
  if (!ok(p) || p <= 0 || p > 1) return bad(fail);
  if (p == 1) return fill(n, out, [](Engine&) { return 0; });
  // Inversion: floor(ln U / ln(1 - p)), U on (0, 1].
  const double scale = 1 / std::log1p(-p);
  return fill(n, out, [&](Engine& rng) { return to_int(std::floor(std::log(open_unit(rng)) * scale)); });
}

int random_negative_binomial(int n, int failures, double p, int* out, NagError& fail) {
  fail.reset();
  if (failures < 1 || !ok(p) || p < 0 || p >= 1) return bad(fail);
  if (p == 0) return fill(n, out, [](Engine&) { return 0; });
  // A Poisson variate whose mean is a gamma variate of shape `failures`, scale p / (1 - p).
  std::gamma_distribution<double> gamma(failures, p / (1 - p));
  return fill(n, out, [&](Engine& rng) {
    const double mean = gamma(rng);
    if (!(mean > 0)) return 0;
    if (mean > 4e9) return INT_MAX;
    const long long k = std::poisson_distribution<long long>(mean)(rng);
    return k > INT_MAX ? INT_MAX : static_cast<int>(k);
  });
}

int random_hypergeometric(int n, int sample, int population, int specified, int* out,
                          NagError& fail) {
  fail.reset();
  if (population < 0 || sample < 0 || specified < 0 || sample > population ||
      specified > population)
    return bad(fail);
  const long long l = sample, m = specified, k = population;
  const int lo = static_cast<int>(std::max(0LL, m + l - k));
  const int hi = static_cast<int>(std::min(l, m));
  // Weights relative to the mode by the ratio of neighbouring probabilities, kept while they
  // are above 1e-20 of the mode's: what lies beyond is below what a double variate resolves.
  const int mode =
      std::clamp(static_cast<int>(static_cast<double>(l + 1) * (m + 1) / (k + 2)), lo, hi);
  std::vector<double> up{1.0}, down;
  for (long long i = mode; i < hi; ++i) {
    const double r = static_cast<double>((l - i) * (m - i)) / ((i + 1) * (k - m - l + i + 1));
    const double w = up.back() * r;
    if (w < 1e-20) break;
    up.push_back(w);
  }
  double w = 1.0;
  for (long long i = mode; i > lo; --i) {
    const double r = static_cast<double>(i * (k - m - l + i)) / ((l - i + 1) * (m - i + 1));
    w *= r;
    if (w < 1e-20) break;
    down.push_back(w);
  }
  const int first = mode - static_cast<int>(down.size());
  const int count = static_cast<int>(down.size() + up.size());
  std::vector<double> cdf(static_cast<std::size_t>(count));
  double sum = 0;
  int j = 0;
  for (auto it = down.rbegin(); it != down.rend(); ++it) cdf[j++] = sum += *it;
  for (double v : up) cdf[j++] = sum += v;
  return fill(n, out, [&](Engine& rng) { return first + search(cdf.data(), count, unit(rng) * sum); });
}

int random_poisson(int n, double lambda, int* out, NagError& fail) {
  fail.reset();
  if (!ok(lambda) || lambda < 0 || lambda > 1e9) return bad(fail);
  if (lambda == 0) return fill(n, out, [](Engine&) { return 0; });
  return fill_from(n, out, std::poisson_distribution<int>(lambda));
}

int random_uniform_integer(int n, int low, int high, int* out, NagError& fail) {
  fail.reset();
  if (low > high) return bad(fail);
  return fill_from(n, out, std::uniform_int_distribution<int>(low, high));
}

int random_discrete(int n, const double* table, int count, int first, bool cumulative, int* out,
                    NagError& fail) {
  fail.reset();
  if (!table || count < 1 || static_cast<long long>(first) + count - 1 > INT_MAX) return bad(fail);
  NRVec<double> cdf(count);
  double sum = 0, previous = 0;
  for (int i = 0; i < count; ++i) {
    const double p = table[i];
    if (!(p >= 0 && p <= 1) || (cumulative && p < previous))
      return fail.fail(kRandomBadTable, "not a probability table", i);
    previous = p;
    cdf[i] = cumulative ? p : (sum += p);
  }
  const double total = cdf[count - 1];
  if (!(std::fabs(total - 1) <= kRandomTableTolerance))
    return fail.fail(kRandomBadTable, "the probabilities do not sum to 1");
  const double* c = cdf.Data();
  return fill(n, out, [&](Engine& rng) { return first + search(c, count, unit(rng) * total); });
}

int random_permutation(int n, int* out, NagError& fail) {
  fail.reset();
  std::iota(out, out + n, 0);
  Engine rng = fresh_engine();
  std::shuffle(out, out + n, rng);
  return 0;
}

int random_multivariate_normal(int count, int dim, const double* mean, const double* cov,
                               double* out, NagError& fail) {
  fail.reset();
  if (count < 1 || dim < 1 || !mean || !cov || !out) return bad(fail);
  const std::size_t d = static_cast<std::size_t>(dim);
  double scale = 0;
  for (std::size_t i = 0; i < d; ++i) {
    if (!ok(mean[i])) return bad(fail);
    for (std::size_t j = 0; j < d; ++j) {
      if (!ok(cov[i * d + j])) return bad(fail);
      scale = std::max(scale, std::fabs(cov[i * d + j]));
    }
  }
  for (std::size_t i = 0; i < d; ++i)
    for (std::size_t j = 0; j < i; ++j)
      if (std::fabs(cov[i * d + j] - cov[j * d + i]) > 1e-12 * scale)
        return fail.fail(kRandomNotPositiveSemidefinite, "covariance not symmetric");
  // C = V diag(lambda) V', and the factor L = V diag(sqrt(lambda)) takes standard normal z to
  // L z of covariance C. The eigen decomposition, unlike Cholesky, accepts a singular C.
  NRVec<double> factor(cov, dim * dim), lambda(dim);
  if (blas([&] {
        return LAPACKE_dsyev(LAPACK_ROW_MAJOR, 'V', 'L', dim, factor.Data(), dim, lambda.Data());
      }) != 0)
    return fail.fail(kRandomNoConvergence, "eigenvalues did not converge");
  const double floor = -1e2 * dim * 2.220446049250313e-16 * std::max(scale, lambda[dim - 1]);
  for (int j = 0; j < dim; ++j) {
    if (lambda[j] < floor)
      return fail.fail(kRandomNotPositiveSemidefinite, "covariance has a negative eigenvalue", j);
    const double root = std::sqrt(std::max(lambda[j], 0.0));
    for (int i = 0; i < dim; ++i) factor[i * dim + j] *= root;
  }
  Engine rng = fresh_engine();
  std::normal_distribution<double> normal;
  NRVec<double> z(dim);
  for (int r = 0; r < count; ++r) {
    for (int j = 0; j < dim; ++j) z[j] = normal(rng);
    double* x = out + static_cast<std::size_t>(r) * d;
    for (int i = 0; i < dim; ++i) {
      double s = mean[i];
      for (int j = 0; j < dim; ++j) s += factor[i * dim + j] * z[j];
      x[i] = s;
    }
  }
  return 0;
}

}  // namespace zomath::platform
