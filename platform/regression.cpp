#include "platform/regression.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <vector>

#include <lapacke.h>

#include "platform/blas_lock.h"
#include "platform/householder_qr.h"
#include "platform/workspace.h"
#include "zomath/core.h"

namespace zomath::platform {
namespace {

constexpr double kEps = std::numeric_limits<double>::epsilon();

// A LAPACK result: workspace failures throw; other failures become `code`.
int lapack_status(lapack_int info, NagError& fail, int code, const char* text) {
  if (info == LAPACK_WORK_MEMORY_ERROR || info == LAPACK_TRANSPOSE_MEMORY_ERROR)
    throw ZOMATH_ERROR_NO_MEMORY;
  return info == 0 ? 0 : fail.fail(code, text, static_cast<int>(info));
}

// A small square matrix, column-major.
struct Square {
  int n = 0;
  std::vector<double> v;
  explicit Square(int size) : n(size), v(buffer<double>(static_cast<std::size_t>(size) * size)) {}
  double& operator()(int i, int j) { return v[static_cast<std::size_t>(j) * n + i]; }
  double operator()(int i, int j) const { return v[static_cast<std::size_t>(j) * n + i]; }
};

// The regression problem: the columns of x, centred on their weighted means when the model
// has an intercept. Centring takes the intercept's share out of every column, so the columns
// left are as independent as the data make them (Longley's condition number drops from 4e4 to
// 1e2 with columns at unit norm), and the fitted values come from small numbers. The centres
// need not be exact means: whatever is left over lies along the intercept's column.
struct Problem {
  int n = 0, ldx = 0, ic = 0, ip = 0, nEff = 0;
  const double *x = nullptr, *y = nullptr, *w = nullptr;
  std::size_t m = 0;  // columns of x
  std::vector<double> xbar;  // the columns' centres (0 without intercept)
  double ybar = 0;

  double weight(int i) const { return w ? w[i] : 1.0; }
  double column(int i, std::size_t t) const {
    return x[static_cast<std::size_t>(i) * ldx + t] - xbar[t];
  }
};

// Q R of the weighted, centred design: positive-weight rows only, column-major, padded with
// zero rows to at least ip rows so that R is square; c = Q' sqrt(w) (y - ybar).
struct Factor : HouseholderQr {  // m rows, p = ip columns
  std::vector<double> c;
  std::vector<int> obs;  // row of a -> observation
  double r(int i, int j) const { return a[static_cast<std::size_t>(j) * m + i]; }
};

int factorise(const Problem& p, Factor& f, NagError& fail) {
  const int ip = p.ip;
  f.p = ip;
  f.m = std::max(p.nEff, ip);
  const std::size_t rows = static_cast<std::size_t>(f.m);
  f.a = raw_buffer<double>(rows * ip);
  for (int j = 0; j < ip; ++j)  // the padding rows
    std::fill(f.a.get() + j * rows + p.nEff, f.a.get() + (j + 1) * rows, 0.0);
  f.c = buffer<double>(rows);
  f.obs = buffer<int>(static_cast<std::size_t>(p.nEff));
  for (int i = 0, k = 0; i < p.n; ++i) {
    if (!(p.weight(i) > 0)) continue;
    const double sw = p.w ? std::sqrt(p.w[i]) : 1.0;
    if (p.ic) f.a[k] = sw;
    for (std::size_t t = 0; t < p.m; ++t) f.a[(t + p.ic) * rows + k] = sw * p.column(i, t);
    f.c[k] = sw * (p.y[i] - p.ybar);
    f.obs[k++] = i;
  }
  const int rc =
      lapack_status(f.factorise(), fail, kRegressionBadArgument, "QR factorisation refused");
  if (rc) return rc;
  return lapack_status(f.apply('T', f.c.data()), fail, kRegressionBadArgument,
                       "applying Q refused");
}

// The SVD of R D, D scaling the columns of R (which have the norms of the design's) to 1.
struct ScaledSvd {
  std::vector<double> d, s;
  Square u, vt;
  explicit ScaledSvd(int ip) : d(buffer<double>(ip)), s(buffer<double>(ip)), u(ip), vt(ip) {}
};

int scaled_svd(const Factor& f, ScaledSvd& z, NagError& fail) {
  const int ip = f.p;
  Square rd(ip);
  for (int j = 0; j < ip; ++j) {
    double norm = 0;
    for (int i = 0; i <= j; ++i) norm = std::hypot(norm, f.r(i, j));
    z.d[j] = norm > 0 ? 1.0 / norm : 1.0;
    for (int i = 0; i <= j; ++i) rd(i, j) = f.r(i, j) * z.d[j];
  }
  return lapack_status(blas([&] {
                         return LAPACKE_dgesdd(LAPACK_COL_MAJOR, 'A', ip, ip, rd.v.data(), ip,
                                               z.s.data(), z.u.v.data(), ip, z.vt.v.data(), ip);
                       }),
                       fail, kRegressionNotConverged, "SVD of the triangular factor failed");
}

// Full rank: c* = R^-1 c, C = R^-1 R^-T.
int solve_triangular(const Factor& f, std::vector<double>& cs, Square& cc, NagError& fail) {
  const int ip = f.p;
  Square rinv(ip);
  for (int j = 0; j < ip; ++j)
    for (int i = 0; i <= j; ++i) rinv(i, j) = f.r(i, j);
  std::copy(f.c.begin(), f.c.begin() + ip, cs.begin());
  int rc = lapack_status(blas([&] {
                           return LAPACKE_dtrtrs(LAPACK_COL_MAJOR, 'U', 'N', 'N', ip, 1,
                                                 rinv.v.data(), ip, cs.data(), ip);
                         }),
                         fail, kRegressionSingular, "zero diagonal in R");
  if (!rc)
    rc = lapack_status(
        blas([&] { return LAPACKE_dtrtri(LAPACK_COL_MAJOR, 'U', 'N', ip, rinv.v.data(), ip); }),
        fail, kRegressionSingular, "zero diagonal in R");
  if (rc) return rc;
  for (int i = 0; i < ip; ++i)
    for (int j = 0; j <= i; ++j) {
      double s = 0;
      for (int k = i; k < ip; ++k) s += rinv(i, k) * rinv(j, k);
      cc(i, j) = cc(j, i) = s;
    }
  return 0;
}

// Rank r < ip: with R D = U S V', c* = D V_r S_r^-1 U_r' c, a least-squares solution in the
// centred coordinates, from which the residuals come.
void solve_truncated(const Factor& f, const ScaledSvd& z, int rank, std::vector<double>& cs) {
  const int ip = f.p;
  auto coef = buffer<double>(static_cast<std::size_t>(rank));
  for (int t = 0; t < rank; ++t) {
    double d = 0;
    for (int i = 0; i < ip; ++i) d += z.u(i, t) * f.c[i];
    coef[t] = d / z.s[t];
  }
  for (int j = 0; j < ip; ++j) {
    double d = 0;
    for (int t = 0; t < rank; ++t) d += z.vt(t, j) * coef[t];
    cs[j] = z.d[j] * d;
  }
}

// From the centred coordinates back to the caller's: beta = S c* (plus ybar in the intercept)
// and C = S C S', with S = [1 -xbar'; 0 I].
void uncentre(const Problem& p, std::vector<double>& beta, Square& cc) {
  if (!p.ic) return;
  const int ip = p.ip;
  for (std::size_t t = 0; t < p.m; ++t) beta[0] -= beta[t + 1] * p.xbar[t];
  beta[0] += p.ybar;
  for (int k = 0; k < ip; ++k)  // row 0 of S C
    for (std::size_t t = 0; t < p.m; ++t) cc(0, k) -= p.xbar[t] * cc(static_cast<int>(t) + 1, k);
  for (int k = 0; k < ip; ++k)  // column 0 of (S C) S'
    for (std::size_t t = 0; t < p.m; ++t) cc(k, 0) -= cc(k, static_cast<int>(t) + 1) * p.xbar[t];
}

// Under rank deficiency: the minimum-norm estimates and the pseudo-inverse of X'WX in the
// caller's coordinates. The null space of the design is S D V(:, r:); the Householder Q of its
// basis, formed in full, gives in its last r columns an orthonormal basis B of the row space.
// Then beta = B z, z the least-squares solution of Q M z = c with M = R S^-1 B (full column
// rank), plus ybar times the row-space part of the intercept's unit vector; and C = B (M'M)^-1 B'.
// Working in the row space directly spares the cancellation of projecting a large solution.
int solve_min_norm(const Problem& p, const Factor& f, const ScaledSvd& z, int rank,
                   std::vector<double>& beta, Square& cc, NagError& fail) {
  const int ip = p.ip, k = ip - rank;
  const std::size_t nc = p.m;
  Square basis(ip);
  for (int c = 0; c < k; ++c) {
    for (int j = 0; j < ip; ++j) basis(j, c) = z.d[j] * z.vt(rank + c, j);
    if (p.ic)
      for (std::size_t t = 0; t < nc; ++t) basis(0, c) -= p.xbar[t] * basis(static_cast<int>(t) + 1, c);
  }
  auto tau = buffer<double>(static_cast<std::size_t>(ip));
  int rc = lapack_status(
      blas([&] { return LAPACKE_dgeqrf(LAPACK_COL_MAJOR, ip, k, basis.v.data(), ip, tau.data()); }),
      fail, kRegressionBadArgument, "QR of the null space refused");
  if (!rc)
    rc = lapack_status(blas([&] {
                         return LAPACKE_dorgqr(LAPACK_COL_MAJOR, ip, ip, k, basis.v.data(), ip,
                                               tau.data());
                       }),
                       fail, kRegressionBadArgument, "forming the row space refused");
  if (rc) return rc;
  auto b = [&](int j, int c) { return basis(j, k + c); };  // the row-space basis, ip by rank
  // M = R S^-1 B, with S^-1 = [1 xbar'; 0 I].
  auto m = buffer<double>(static_cast<std::size_t>(ip) * rank);
  auto sb = buffer<double>(static_cast<std::size_t>(ip));
  for (int c = 0; c < rank; ++c) {
    for (int j = 0; j < ip; ++j) sb[j] = b(j, c);
    if (p.ic)
      for (std::size_t t = 0; t < nc; ++t) sb[0] += p.xbar[t] * b(static_cast<int>(t) + 1, c);
    for (int i = 0; i < ip; ++i) {
      double d = 0;
      for (int l = i; l < ip; ++l) d += f.r(i, l) * sb[l];
      m[static_cast<std::size_t>(c) * ip + i] = d;
    }
  }
  auto ct = buffer<double>(static_cast<std::size_t>(ip));
  std::copy(f.c.begin(), f.c.begin() + ip, ct.begin());
  rc = lapack_status(
      blas([&] { return LAPACKE_dgeqrf(LAPACK_COL_MAJOR, ip, rank, m.data(), ip, tau.data()); }),
      fail, kRegressionBadArgument, "QR of the reduced design refused");
  if (!rc)
    rc = lapack_status(blas([&] {
                         return LAPACKE_dormqr(LAPACK_COL_MAJOR, 'L', 'T', ip, 1, rank, m.data(),
                                               ip, tau.data(), ct.data(), ip);
                       }),
                       fail, kRegressionBadArgument, "applying Q refused");
  if (!rc)
    rc = lapack_status(blas([&] {
                         return LAPACKE_dtrtrs(LAPACK_COL_MAJOR, 'U', 'N', 'N', rank, 1, m.data(),
                                               ip, ct.data(), ip);
                       }),
                       fail, kRegressionSingular, "zero diagonal in the reduced factor");
  if (!rc)
    rc = lapack_status(
        blas([&] { return LAPACKE_dtrtri(LAPACK_COL_MAJOR, 'U', 'N', rank, m.data(), ip); }), fail,
        kRegressionSingular, "zero diagonal in the reduced factor");
  if (rc) return rc;
  if (p.ic)
    for (int c = 0; c < rank; ++c) ct[c] += p.ybar * b(0, c);
  for (int j = 0; j < ip; ++j) {
    double d = 0;
    for (int c = 0; c < rank; ++c) d += b(j, c) * ct[c];
    beta[j] = d;
  }
  // G = R_M^-1 R_M^-T (rank by rank), then C = B G B'.
  auto rinv = [&](int i, int j) { return j >= i ? m[static_cast<std::size_t>(j) * ip + i] : 0.0; };
  Square g(rank);
  for (int i = 0; i < rank; ++i)
    for (int j = 0; j < rank; ++j) {
      double d = 0;
      for (int l = std::max(i, j); l < rank; ++l) d += rinv(i, l) * rinv(j, l);
      g(i, j) = d;
    }
  for (int i = 0; i < ip; ++i)
    for (int j = 0; j < ip; ++j) {
      double d = 0;
      for (int c = 0; c < rank; ++c)
        for (int e = 0; e < rank; ++e) d += b(i, c) * g(c, e) * b(j, e);
      cc(i, j) = d;
    }
  return 0;
}

// Leverages: squared row norms of the thin Q, or of Q U_r under rank deficiency. Overwrites the
// factor.
int leverages(const Problem& p, Factor& f, const ScaledSvd& z, int rank, double* h, NagError& fail) {
  std::fill(h, h + p.n, 0.0);
  if (rank == 0) return 0;
  const int ip = f.p;
  if (int rc = lapack_status(blas([&] {
                               return LAPACKE_dorgqr(LAPACK_COL_MAJOR, f.m, ip, ip, f.a.get(),
                                                     f.m, f.tau.data());
                             }),
                             fail, kRegressionBadArgument, "forming Q refused"))
    return rc;
  const std::size_t rows = static_cast<std::size_t>(f.m);
  const double* q = f.a.get();
  std::unique_ptr<double[]> qu;
  if (rank < ip) {
    qu = raw_buffer<double>(rows * rank);
    std::fill(qu.get(), qu.get() + rows * rank, 0.0);
    for (int t = 0; t < rank; ++t)
      for (int j = 0; j < ip; ++j) {
        const double u = z.u(j, t);
        const double* qj = q + static_cast<std::size_t>(j) * rows;
        double* qt = qu.get() + static_cast<std::size_t>(t) * rows;
        for (std::size_t k = 0; k < rows; ++k) qt[k] += qj[k] * u;
      }
    q = qu.get();
  }
  for (int k = 0; k < p.nEff; ++k) {
    double s = 0;
    for (int j = 0; j < rank; ++j) {
      const double v = q[static_cast<std::size_t>(j) * rows + k];
      s += v * v;
    }
    h[f.obs[k]] = s;
  }
  return 0;
}

}  // namespace

int multiple_regression(Mean mean, int n, int m, const double* x, int ldx, const double* y,
                        const double* w, double tol, const RegressionOutputs& out,
                        RegressionSummary& summary, NagError& fail) {
  summary = RegressionSummary{};
  if (n < 1 || m < 0 || !y || (m > 0 && (!x || ldx < m)) || !(tol >= 0) || !std::isfinite(tol))
    return fail.fail(kRegressionBadArgument, "bad size, stride, array or tolerance");
  Problem p;
  p.n = n;
  p.ldx = ldx;
  p.x = x;
  p.y = y;
  p.w = w;
  p.m = static_cast<std::size_t>(m);
  const std::size_t nc = p.m;
  p.ic = mean == Mean::Include ? 1 : 0;
  p.ip = static_cast<int>(nc) + p.ic;
  const int ip = p.ip;
  if (ip < 1) return fail.fail(kRegressionBadArgument, "no parameter to fit");
  // Checks and the weighted sums of the centres in one pass over the data.
  p.xbar = buffer<double>(nc);
  double sumW = 0;
  for (int i = 0; i < n; ++i) {
    const double wi = p.weight(i);
    if (wi < 0) return fail.fail(kRegressionBadArgument, "negative weight", i);
    const double* xi = x ? x + static_cast<std::size_t>(i) * ldx : nullptr;
    bool finite = std::isfinite(wi) && std::isfinite(y[i]);
    for (std::size_t t = 0; t < nc; ++t) {
      const double v = xi[t];
      finite = finite && std::isfinite(v);
      p.xbar[t] += wi * v;
    }
    if (!finite) return fail.fail(kRegressionNotFinite, "NaN or infinite value", i);
    if (wi > 0) ++p.nEff;
    sumW += wi;
    p.ybar += wi * y[i];
  }
  if (p.ic && sumW > 0) {
    // A sum that overflowed leaves its column uncentred.
    p.ybar = std::isfinite(p.ybar) ? p.ybar / sumW : 0.0;
    for (double& v : p.xbar) v = std::isfinite(v) ? v / sumW : 0.0;
  } else {
    p.ybar = 0;
    std::fill(p.xbar.begin(), p.xbar.end(), 0.0);
  }

  auto cs = buffer<double>(ip);  // solution in centred coordinates
  Square cc(ip);                 // its generalised inverse of the cross products
  int rank = 0;
  Factor f;
  ScaledSvd z(ip);
  if (p.nEff > 0) {
    if (int rc = factorise(p, f, fail)) return rc;
    if (int rc = scaled_svd(f, z, fail)) return rc;
    const double threshold = std::sqrt(tol) * z.s[0];
    // Never above the count of positive weights (the padding rows add nothing but rounding).
    if (z.s[0] > 0)
      while (rank < std::min(ip, p.nEff) && z.s[rank] > threshold) ++rank;
    if (rank == ip) {
      if (int rc = solve_triangular(f, cs, cc, fail)) return rc;
    } else if (rank > 0) {
      solve_truncated(f, z, rank, cs);
    }
  }
  summary.rank = rank;
  summary.svd = rank < ip;

  // Residuals from the centred data, where the fitted values are small numbers; zero weights
  // included.
  double rss = 0;
  for (int i = 0; i < n; ++i) {
    double fit = p.ic ? cs[0] : 0.0;
    for (std::size_t t = 0; t < nc; ++t) fit += cs[t + p.ic] * p.column(i, t);
    const double r = (y[i] - p.ybar) - fit;
    if (out.res) out.res[i] = r;
    rss += p.weight(i) * r * r;
  }
  summary.rss = rss;
  summary.df = p.nEff - rank;

  std::vector<double> beta = cs;
  if (rank == ip) {
    uncentre(p, beta, cc);
  } else if (rank > 0) {
    if (int rc = solve_min_norm(p, f, z, rank, beta, cc, fail)) return rc;
  }
  if (out.b) std::copy(beta.begin(), beta.end(), out.b);
  if (out.h)
    if (int rc = leverages(p, f, z, rank, out.h, fail)) return rc;

  const std::size_t packed = static_cast<std::size_t>(ip) * (ip + 1) / 2;
  if (out.covUnscaled)
    for (int i = 0; i < ip; ++i)
      for (int j = 0; j <= i; ++j) out.covUnscaled[packed_index(i, j)] = cc(i, j);
  if (rank == 0 || summary.df == 0) {
    if (out.se) std::fill(out.se, out.se + ip, NANUM);
    if (out.cov) std::fill(out.cov, out.cov + packed, NANUM);
    if (rank == 0)
      return fail.fail(kRegressionSingular, p.nEff ? "every column of the design is zero"
                                                   : "no observation has a positive weight");
    return fail.fail(kRegressionNoResidualDof, "no residual degrees of freedom");
  }
  const double s2 = rss / summary.df;
  if (out.se)
    for (int j = 0; j < ip; ++j) out.se[j] = std::sqrt(s2 * cc(j, j));
  if (out.cov)
    for (int i = 0; i < ip; ++i)
      for (int j = 0; j <= i; ++j) out.cov[packed_index(i, j)] = s2 * cc(i, j);
  return 0;
}

int simple_regression(Mean mean, int n, const double* x, const double* y, const double* w,
                      SimpleFit& fit, NagError& fail) {
  fit = SimpleFit{NANUM, NANUM, NANUM, NANUM, NANUM, NANUM, 0};
  if (n < 1 || !x || !y) return fail.fail(kRegressionBadArgument, "bad size or array");
  double sumW = 0, sumWx = 0, sumWy = 0;
  int nEff = 0;
  bool spread = false;
  double firstX = 0;
  for (int i = 0; i < n; ++i) {
    const double wi = w ? w[i] : 1.0;
    if (wi < 0) return fail.fail(kRegressionBadArgument, "negative weight", i);
    if (!std::isfinite(wi) || !std::isfinite(x[i]) || !std::isfinite(y[i]))
      return fail.fail(kRegressionNotFinite, "NaN or infinite value", i);
    if (!(wi > 0)) continue;
    if (nEff == 0) firstX = x[i];
    spread = spread || (mean == Mean::Include ? x[i] != firstX : x[i] != 0.0);
    ++nEff;
    sumW += wi;
    sumWx += wi * x[i];
    sumWy += wi * y[i];
  }
  const int params = mean == Mean::Include ? 2 : 1;
  if (nEff <= params) return fail.fail(kSimpleNoResidualDof, "no residual degree of freedom", nEff);
  if (!spread) return fail.fail(kSimpleNoSpread, "x has no spread");

  // Means, refined by the mean deviation of a second pass; then the corrected sums.
  double mx = 0, my = 0;
  if (mean == Mean::Include) {
    mx = sumWx / sumW;
    my = sumWy / sumW;
    double dx = 0, dy = 0;
    for (int i = 0; i < n; ++i) {
      const double wi = w ? w[i] : 1.0;
      dx += wi * (x[i] - mx);
      dy += wi * (y[i] - my);
    }
    mx += dx / sumW;
    my += dy / sumW;
  }
  double sxx = 0, sxy = 0, syy = 0, syyRaw = 0;
  for (int i = 0; i < n; ++i) {
    const double wi = w ? w[i] : 1.0;
    const double dx = x[i] - mx, dy = y[i] - my;
    sxx += wi * dx * dx;
    sxy += wi * dx * dy;
    syy += wi * dy * dy;
    syyRaw += wi * y[i] * y[i];
  }
  const double b = sxy / sxx;
  const double a = mean == Mean::Include ? my - b * mx : 0.0;
  double rss = 0;
  for (int i = 0; i < n; ++i) {
    const double wi = w ? w[i] : 1.0;
    const double r = y[i] - (a + b * x[i]);
    rss += wi * r * r;
  }
  const int df = nEff - params;
  const double s2 = rss / df;
  fit.a = a;
  fit.b = b;
  fit.seB = std::sqrt(s2 / sxx);
  fit.seA = mean == Mean::Include ? std::sqrt(s2 * (1.0 / sumW + mx * mx / sxx)) : 0.0;
  fit.rsq = syy > 0 ? 1.0 - rss / syy : NANUM;
  fit.rss = rss;
  fit.df = df;
  if (rss <= 16 * kEps * kEps * syyRaw) return fail.fail(kSimpleExactFit, "exact fit");
  return 0;
}

int residual_diagnostics(int n, int ip, int nres, const double* res, const double* h, double rms,
                         const DiagnosticOutputs& out, NagError& fail) {
  if (n < 1 || ip < 1 || nres < 1 || nres > n || ip >= n || !res || !h || !(rms > 0) ||
      !std::isfinite(rms))
    return fail.fail(kDiagnosticsBadArgument, "bad size, array or mean square");
  const double df = static_cast<double>(n) - ip;
  for (int i = 0; i < nres; ++i) {
    double in = NANUM, ex = NANUM, cook = NANUM, atk = NANUM;
    const double hi = h[i], ri = res[i];
    if (std::isfinite(ri) && hi >= 0 && hi < 1) {
      const double t = ri / std::sqrt(rms * (1 - hi));
      in = t;
      cook = t * t * hi / (ip * (1 - hi));
      // s_(i)^2 = s^2 (n - ip - t^2) / (n - ip - 1).
      const double rest = df - t * t;
      if (df > 1 && rest > 0) {
        ex = t * std::sqrt((df - 1) / rest);
        atk = std::fabs(ex) * std::sqrt(df / ip * hi / (1 - hi));
      }
    }
    if (out.internal) out.internal[i] = in;
    if (out.external) out.external[i] = ex;
    if (out.cook) out.cook[i] = cook;
    if (out.atkinson) out.atkinson[i] = atk;
  }
  return 0;
}

}  // namespace zomath::platform
