#include "regression/polynomial_refinement.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include "zomath/linalg.h"

namespace zomath::regression {
namespace {

constexpr double kEps = std::numeric_limits<double>::epsilon();
constexpr int kMaxIterations = 10;
constexpr double kStallLimit = 1e-12;  // the largest last step taken as converged

// Error-free transformations: a + b = s + e and a b = p + e exactly.
inline void two_sum(double a, double b, double& s, double& e) {
  s = a + b;
  const double bb = s - a;
  e = (a - (s - bb)) + (b - bb);
}
inline void two_prod(double a, double b, double& p, double& e) {
  p = a * b;
  e = std::fma(a, b, -p);
}

// Householder QR of an m by p column-major matrix, m >= p, in place: R on and above the
// diagonal, each reflector below it (its leading 1 implied) with its factor in tau.
class Householder {
 public:
  Householder(int m, int p) : m_(m), p_(p), a_(static_cast<std::size_t>(m) * p), tau_(p) {}
  double& at(int i, int j) { return a_[static_cast<std::size_t>(j) * m_ + i]; }
  double r(int i, int j) const { return a_[static_cast<std::size_t>(j) * m_ + i]; }

  void factor() {
    for (int k = 0; k < p_; ++k) {
      double* c = &at(0, k);
      double ss = 0;
      for (int i = k; i < m_; ++i) ss += c[i] * c[i];
      const double norm = std::sqrt(ss);
      if (norm == 0) continue;  // tau 0: the identity
      const double alpha = c[k] > 0 ? -norm : norm, v0 = c[k] - alpha, scale = 1 / v0;
      for (int i = k + 1; i < m_; ++i) c[i] *= scale;
      tau_[k] = -v0 / alpha;
      c[k] = alpha;
      for (int j = k + 1; j < p_; ++j) reflect(k, &at(0, j));
    }
  }
  // v = Q' v, or v = Q v.
  void apply_qt(double* v) const {
    for (int k = 0; k < p_; ++k) reflect(k, v);
  }
  void apply_q(double* v) const {
    for (int k = p_ - 1; k >= 0; --k) reflect(k, v);
  }

 private:
  void reflect(int k, double* v) const {
    const double* c = &a_[static_cast<std::size_t>(k) * m_];
    double s = v[k];
    for (int i = k + 1; i < m_; ++i) s += c[i] * v[i];
    s *= tau_[k];
    v[k] -= s;
    for (int i = k + 1; i < m_; ++i) v[i] -= s * c[i];
  }
  int m_, p_;
  std::vector<double> a_, tau_;
};

// c0 + c1 x + ... + ck x^k by the compensated Horner scheme: as accurate as Horner's rule in
// doubled precision, returned as hi + lo.
inline void comp_horner(const double* c, int k, double x, double& hi, double& lo) {
  double p = c[k], err = 0;
  for (int j = k - 1; j >= 0; --j) {
    double pp, pe, se;
    two_prod(p, x, pp, pe);
    two_sum(pp, c[j], p, se);
    err = err * x + (pe + se);
  }
  hi = p;
  lo = err;
}

}  // namespace

bool refine_polynomial(const PolynomialData& d, double* coef, RefinedFit& out) {
  const int j0 = d.heldIntercept ? 1 : 0, p = d.order + 1 - j0, order = d.order;
  if (p < 1 || d.n < 1) return false;
  std::vector<int> rows;
  rows.reserve(d.n);
  for (int i = 0; i < d.n; ++i)
    if (!d.w || d.w[i] > 0) rows.push_back(i);
  const int m = static_cast<int>(rows.size());
  if (m < p) return false;

  // The design W^1/2 V D, D scaling each column to unit norm (which leaves the QR's accuracy
  // to the columns' independence, not their sizes).
  Householder qr(m, p);
  std::vector<double> sw(m), scale(p);
  for (int k = 0; k < m; ++k) {
    const int i = rows[k];
    sw[k] = d.w ? std::sqrt(d.w[i]) : 1.0;
    double power = 1;
    for (int j = 0; j <= order; ++j, power *= d.x[i])
      if (j >= j0) qr.at(k, j - j0) = sw[k] * power;
  }
  for (int j = 0; j < p; ++j) {
    double big = 0, ss = 0;
    for (int k = 0; k < m; ++k) big = std::max(big, std::fabs(qr.at(k, j)));
    if (!(big > 0) || !std::isfinite(big)) return false;
    for (int k = 0; k < m; ++k) ss += (qr.at(k, j) / big) * (qr.at(k, j) / big);
    scale[j] = 1 / (big * std::sqrt(ss));
    if (!(scale[j] > 0) || !std::isfinite(scale[j])) return false;
    for (int k = 0; k < m; ++k) qr.at(k, j) *= scale[j];
  }
  qr.factor();
  for (int j = 0; j < p; ++j)  // singular to working precision: nothing to refine with
    if (!(std::fabs(qr.r(j, j)) > p * kEps)) return false;

  // Unknowns: the coefficients and s = W (y - V c), the weighted residuals. Each step forms the
  // residuals of both blocks, f = y - W^-1 s - V c and g = -V' s, in doubled precision, and
  // solves for the corrections with the factors: with A = W^1/2 V D, dc = D dx, ds = W^1/2 u,
  // [I A; A' 0] [u; dx] = [W^1/2 f; D g].
  std::vector<double> c(coef, coef + order + 1), s(m, 0.0), f(m), gHi(p), gLo(p), h(p), dx(p);
  double previous = 0, last = 0;
  for (int it = 0; it < kMaxIterations; ++it) {
    std::fill(gHi.begin(), gHi.end(), 0.0);
    std::fill(gLo.begin(), gLo.end(), 0.0);
    for (int k = 0; k < m; ++k) {
      const int i = rows[k];
      const double x = d.x[i], sk = s[k];
      double v, vLo;
      comp_horner(c.data(), order, x, v, vLo);
      double q = sk, qLo = 0;  // s / w, exactly q + qLo to doubled precision
      if (d.w) {
        q = sk / d.w[i];
        qLo = std::fma(-q, d.w[i], sk) / d.w[i];
      }
      double r1, e1, r2, e2;
      two_sum(d.y[i], -v, r1, e1);
      two_sum(r1, -q, r2, e2);
      f[k] = sw[k] * (r2 + (e1 + e2 - vLo - qLo));
      // g_j = -sum x^j s, the powers carried as hi + lo.
      double pHi = 1, pLo = 0;
      for (int j = 0; j <= order; ++j) {
        if (j >= j0) {
          double t, te, sum, se;
          two_prod(pHi, sk, t, te);
          te = std::fma(pLo, sk, te);
          two_sum(gHi[j - j0], t, sum, se);
          gHi[j - j0] = sum;
          gLo[j - j0] += se + te;
        }
        double nHi, nLo;
        two_prod(pHi, x, nHi, nLo);
        nLo = std::fma(pLo, x, nLo);
        pHi = nHi + nLo;
        pLo = nLo - (pHi - nHi);
      }
    }
    // R' h = D g, then d = Q' f, R dx = d1 - h, u = Q [h; d2].
    for (int j = 0; j < p; ++j) {
      double t = -(gHi[j] + gLo[j]) * scale[j];
      for (int k = 0; k < j; ++k) t -= qr.r(k, j) * h[k];
      h[j] = t / qr.r(j, j);
    }
    qr.apply_qt(f.data());
    for (int j = p - 1; j >= 0; --j) {
      double t = f[j] - h[j];
      for (int k = j + 1; k < p; ++k) t -= qr.r(j, k) * dx[k];
      dx[j] = t / qr.r(j, j);
    }
    std::copy(h.begin(), h.end(), f.begin());
    qr.apply_q(f.data());

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
    for (int k = 0; k < m; ++k) s[k] += sw[k] * f[k];
    if (!std::isfinite(last)) return false;
    if (last <= 4 * kEps) break;
    // The first step takes in the residuals (s starts at 0) and carries the error of a plain
    // solve; from the second on each step should shrink by about cond * eps.
    if (it > 1 && last > 0.5 * previous) break;
    previous = last;
  }
  // An iteration that stalls well above the rounding of the coefficients did not contract: the
  // given ones stand.
  if (last > kStallLimit) return false;

  // The residuals of the refined coefficients, in doubled precision before rounding.
  std::vector<double> res(d.n);
  double rss = 0, rssLo = 0;
  for (int i = 0; i < d.n; ++i) {
    double v, vLo, r, e;
    comp_horner(c.data(), order, d.x[i], v, vLo);
    two_sum(d.y[i], -v, r, e);
    res[i] = r + (e - vLo);
    double t, te, sum, se;
    two_prod(res[i], res[i], t, te);
    const double w = d.w ? d.w[i] : 1.0;
    two_sum(rss, w * t, sum, se);
    rss = sum;
    rssLo += se + w * te;
  }
  std::copy(c.begin(), c.end(), coef);
  out.rss = rss + rssLo;
  out.residualNorm = zomath_norm(res.data(), static_cast<unsigned>(d.n));
  return true;
}

}  // namespace zomath::regression
