#include "platform/polynomial_refinement.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <new>
#include <vector>

#include "core/kernels.h"
#include "platform/householder_qr.h"
#include "platform/workspace.h"
#include "zomath/core.h"

namespace zomath::platform {
namespace {

constexpr double kEps = std::numeric_limits<double>::epsilon();
constexpr int kMaxIterations = 10;
constexpr double kStallLimit = 1e-12;  // the largest last step taken as converged
constexpr int kLanes = 4;              // independent accumulations of V' s

// Error-free transformations: a + b = s + e (kernels' two-sum) and a b = p + e exactly.
using kernels::CompensatedSum;
inline void two_prod(double a, double b, double& p, double& e) {
  p = a * b;
  e = std::fma(a, b, -p);
}

// c0 + c1 x + ... + ck x^k by the compensated Horner scheme: as accurate as Horner's rule in
// doubled precision, returned as hi + lo.
inline void comp_horner(const double* c, int k, double x, double& hi, double& lo) {
  double p = c[k], err = 0;
  for (int j = k - 1; j >= 0; --j) {
    double pp, pe, se;
    two_prod(p, x, pp, pe);
    p = CompensatedSum::two_sum(pp, c[j], se);
    err = err * x + (pe + se);
  }
  hi = p;
  lo = err;
}

// The Euclidean norm, scaled against overflow and underflow.
double norm2(const double* v, int n) {
  double big = 0, ss = 0;
  for (int i = 0; i < n; ++i) big = std::max(big, std::fabs(v[i]));
  if (!(big > 0) || !std::isfinite(big)) return big;
  const double inv = 1 / big;
  for (int i = 0; i < n; ++i) ss += (v[i] * inv) * (v[i] * inv);
  return big * std::sqrt(ss);
}

// The data of the residual passes: the positive-weight rows, their root weights, and the first
// fitted power.
struct Pass {
  const PolynomialData& d;
  const int* rows;
  int m;
  const double* sw;
  int j0;
};

#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__)
#define ZOMATH_FMA_CLONES __attribute__((target_clones("arch=x86-64-v3", "default")))
#else
#define ZOMATH_FMA_CLONES
#endif

// One pass over the rows for the coefficients c and weighted residuals s: rhs = W^1/2 f with
// f = y - W^-1 s - V c, e = y - V c, and -g = V' s in kLanes partial sums (hi + lo each, lane
// by row), all in doubled precision before rounding. Compiled again for processors with FMA,
// where the error-free products are one instruction.
ZOMATH_FMA_CLONES void residual_pass(const Pass& q, const double* c, const double* s,
                                      double* rhs, double* e, double* gHi, double* gLo) {
  const PolynomialData& d = q.d;
  const int order = d.order, p = order + 1 - q.j0;
  std::fill(gHi, gHi + static_cast<std::size_t>(kLanes) * p, 0.0);
  std::fill(gLo, gLo + static_cast<std::size_t>(kLanes) * p, 0.0);
  for (int k = 0; k < q.m; ++k) {
    const int i = q.rows[k];
    const double x = d.x[i], sk = s[k];
    double v, vLo, r1, e1;
    comp_horner(c, order, x, v, vLo);
    r1 = CompensatedSum::two_sum(d.y[i], -v, e1);
    e[k] = r1 + (e1 - vLo);
    double w = sk, wLo = 0;  // s / w to doubled precision
    if (d.w) {
      w = sk / d.w[i];
      wLo = std::fma(-w, d.w[i], sk) / d.w[i];
    }
    double e2;
    const double r2 = CompensatedSum::two_sum(r1, -w, e2);
    rhs[k] = q.sw[k] * (r2 + (e1 + e2 - vLo - wLo));
    double* hi = gHi + static_cast<std::size_t>(k % kLanes) * p;
    double* lo = gLo + static_cast<std::size_t>(k % kLanes) * p;
    double pHi = 1, pLo = 0;  // x^j as hi + lo
    for (int j = 0; j <= order; ++j) {
      if (j >= q.j0) {
        double t, te, sum, se;
        two_prod(pHi, sk, t, te);
        te = std::fma(pLo, sk, te);
        sum = CompensatedSum::two_sum(hi[j - q.j0], t, se);
        hi[j - q.j0] = sum;
        lo[j - q.j0] += se + te;
      }
      double nHi, nLo;
      two_prod(pHi, x, nHi, nLo);
      nLo = std::fma(pLo, x, nLo);
      pHi = nHi + nLo;
      pLo = nLo - (pHi - nHi);
    }
  }
}

}  // namespace

int refine_polynomial(const PolynomialData& d, double* coef, RefinedFit& out, NagError& fail) {
  const int j0 = d.heldIntercept ? 1 : 0, p = d.order + 1 - j0, order = d.order;
  if (p < 1 || d.n < 1 || !d.x || !d.y || !coef)
    return fail.fail(kRefinementBadArgument, "bad size or array");
  const std::unique_ptr<int[]> rows = raw_buffer<int>(d.n);
  int m = 0;
  for (int i = 0; i < d.n; ++i)
    if (!d.w || d.w[i] > 0) rows[m++] = i;
  if (m < p) return fail.fail(kRefinementBadArgument, "fewer points than coefficients", m);

  // A = W^1/2 V D, D scaling each column to unit norm (which leaves the QR's accuracy to the
  // columns' independence, not their sizes).
  // The column-scaled weighted design of the positive-weight points, and its QR.
  HouseholderQr f;
  f.m = m;
  f.p = p;
  f.a = raw_buffer<double>(static_cast<std::size_t>(m) * p);
  const std::unique_ptr<double[]> sw = raw_buffer<double>(m);
  std::vector<double> scale(p);
  auto at = [&](int k, int j) -> double& { return f.a[static_cast<std::size_t>(j) * m + k]; };
  for (int k = 0; k < m; ++k) {
    const int i = rows[k];
    sw[k] = d.w ? std::sqrt(d.w[i]) : 1.0;
    double power = 1;
    for (int j = 0; j <= order; ++j, power *= d.x[i])
      if (j >= j0) at(k, j - j0) = sw[k] * power;
  }
  for (int j = 0; j < p; ++j) {
    double* col = &at(0, j);
    double big = 0, ss = 0;
    for (int k = 0; k < m; ++k) big = std::max(big, std::fabs(col[k]));
    if (!(big > 0) || !std::isfinite(big)) return fail.fail(kRefinementSingular, "column", j);
    const double inv = 1 / big;
    for (int k = 0; k < m; ++k) ss += (col[k] * inv) * (col[k] * inv);
    scale[j] = inv / std::sqrt(ss);
    if (!(scale[j] > 0) || !std::isfinite(scale[j])) return fail.fail(kRefinementSingular, "column", j);
    for (int k = 0; k < m; ++k) col[k] *= scale[j];
  }
  if (f.factorise() != 0) return fail.fail(kRefinementSingular, "QR factorisation refused");
  for (int j = 0; j < p; ++j)  // singular to working precision: nothing to refine with
    if (!(std::fabs(at(j, j)) > p * kEps)) return fail.fail(kRefinementSingular, "rank", j);

  // Unknowns: the coefficients and s = W (y - V c), the weighted residuals. Each step forms the
  // residuals of both blocks, f = y - W^-1 s - V c and g = -V' s, in doubled precision, and
  // solves for the corrections with the factors: with dc = D dx and ds = W^1/2 u,
  // [I A; A' 0] [u; dx] = [W^1/2 f; D g]. The plain residuals y - V c of each pass are kept: the
  // last step moves c by a rounding, which changes the residual sum in the second order only.
  std::vector<double> c(coef, coef + order + 1), s = buffer<double>(m), h(p), dx(p);
  const std::unique_ptr<double[]> rhs = raw_buffer<double>(m), e = raw_buffer<double>(m);
  std::vector<double> gHi(static_cast<std::size_t>(kLanes) * p), gLo(gHi.size());
  const Pass pass{d, rows.get(), m, sw.get(), j0};
  // A lower bound of the condition number, with room, for the rate at which the steps shrink.
  double rMax = 0, rMin = INFINITY;
  for (int j = 0; j < p; ++j) {
    rMax = std::max(rMax, std::fabs(at(j, j)));
    rMin = std::min(rMin, std::fabs(at(j, j)));
  }
  const double rate = 16.0 * p * kEps * rMax / rMin;
  double previous = 0, last = 0;
  bool converged = false;
  for (int it = 0; it < kMaxIterations; ++it) {
    residual_pass(pass, c.data(), s.data(), rhs.get(), e.get(), gHi.data(), gLo.data());
    // R' h = D g, then d = Q' rhs, R dx = d1 - h, u = Q [h; d2].
    for (int j = 0; j < p; ++j) {
      double g = 0, gl = 0;
      for (int l = 0; l < kLanes; ++l) {
        double sum, se;
        sum = CompensatedSum::two_sum(g, gHi[static_cast<std::size_t>(l) * p + j], se);
        g = sum;
        gl += se + gLo[static_cast<std::size_t>(l) * p + j];
      }
      double t = -(g + gl) * scale[j];
      for (int k = 0; k < j; ++k) t -= at(k, j) * h[k];
      h[j] = t / at(j, j);
    }
    if (f.apply('T', rhs.get()) != 0) return fail.fail(kRefinementSingular, "applying Q refused");
    for (int j = p - 1; j >= 0; --j) {
      double t = rhs[j] - h[j];
      for (int k = j + 1; k < p; ++k) t -= at(j, k) * dx[k];
      dx[j] = t / at(j, j);
    }
    std::copy(h.begin(), h.end(), rhs.get());
    if (f.apply('N', rhs.get()) != 0) return fail.fail(kRefinementSingular, "applying Q refused");

    // The size of the step, componentwise in the scaled unknowns (a component far below the
    // largest measured against eps times the largest).
    double largest = 0;
    for (int j = 0; j < p; ++j) largest = std::max(largest, std::fabs(c[j + j0] / scale[j]));
    last = 0;
    for (int j = 0; j < p; ++j) {
      const double size = std::max(std::fabs(c[j + j0] / scale[j]), kEps * largest);
      last = std::max(last, size > 0 ? std::fabs(dx[j]) / size : std::fabs(dx[j]));
      c[j + j0] += scale[j] * dx[j];
    }
    for (int k = 0; k < m; ++k) s[k] += sw[k] * rhs[k];
    if (!std::isfinite(last)) return fail.fail(kRefinementNoContraction, "step not finite");
    // The first step takes in the residuals (s starts at 0) and carries the error of a plain
    // solve; from the second on each step shrinks by about cond * eps, so a step that small
    // times the rate leaves nothing to correct.
    converged = last <= kStallLimit || (it > 0 && last * rate <= kEps);
    if (last <= 4 * kEps || (it > 0 && last * rate <= kEps)) break;
    if (it > 1 && last > 0.5 * previous) break;
    previous = last;
  }
  if (!converged) return fail.fail(kRefinementNoContraction, "no contraction");

  // The residual sum and norm: the kept residuals less the last step's share (a small
  // polynomial, so plain arithmetic serves), and those of the points of weight 0.
  std::vector<double> step(order + 1, 0.0);
  for (int j = 0; j < p; ++j) step[j + j0] = scale[j] * dx[j];
  const std::unique_ptr<double[]> all = raw_buffer<double>(d.n);
  double rss = 0, rssLo = 0;
  for (int k = 0, next = 0; k < d.n; ++k) {
    if (next < m && rows[next] == k) {
      double moved = step[order];
      for (int j = order - 1; j >= 0; --j) moved = moved * d.x[k] + step[j];
      const double r = e[next++] - moved, w = d.w ? d.w[k] : 1.0;
      double t, te, sum, se;
      two_prod(r, r, t, te);
      sum = CompensatedSum::two_sum(rss, w * t, se);
      rss = sum;
      rssLo += se + w * te;
      all[k] = r;
    } else {
      double v, vLo, r, re;
      comp_horner(c.data(), order, d.x[k], v, vLo);
      r = CompensatedSum::two_sum(d.y[k], -v, re);
      all[k] = r + (re - vLo);
    }
  }
  std::copy(c.begin(), c.end(), coef);
  out.rss = rss + rssLo;
  out.residualNorm = norm2(all.get(), d.n);
  return 0;
}

}  // namespace zomath::platform
