// The library's own singular value decomposition: Householder reduction to bidiagonal form,
// accumulation of the transformations, then the implicitly shifted QR iteration on the
// bidiagonal.
// Golub and Reinsch, "Singular value decomposition and least squares solutions", Numerische
// Mathematik 14, 1970.
//
// Storage is row-major, so the Householder updates run row by row (a column of dot products
// gathered, then a rank-one update), and the QR iteration rotates rows of U' and V'.
#include <algorithm>
#include <cmath>
#include <limits>

#include "core/nrvec/nrvec.h"

namespace zomath {
namespace {

constexpr int kMaxRounds = 30;

// |a| with the sign of b.
double with_sign(double a, double b) { return std::copysign(std::fabs(a), b); }

// p, q <- c p + s q, c q - s p over n entries.
void rotate(double* p, double* q, int n, double c, double s) {
  for (int t = 0; t < n; ++t) {
    const double x = p[t], z = q[t];
    p[t] = x * c + z * s;
    q[t] = z * c - x * s;
  }
}

void transpose_into(const NRMat<double>& a, NRMat<double>& t) {
  for (int i = 0; i < a.nrows(); ++i)
    for (int j = 0; j < a.ncols(); ++j) t[j][i] = a[i][j];
}

// A = U diag(w) V' for m >= n: a (m by n) becomes U, w and v (n by n) are sized by the caller.
void golub_reinsch(NRMat<double>& a, NRVec<double>& w, NRMat<double>& v) {
  const int m = a.nrows(), n = a.ncols();
  NRVec<double> e(0.0, n);  // superdiagonal: e[i] couples w[i - 1] and w[i]; e[0] stays 0
  NRVec<double> tmp(0.0, std::max(m, n));
  double g = 0.0, scale = 0.0, anorm = 0.0;

  // 1. Bidiagonalisation. Step i reflects from the left to clear column i below the diagonal,
  //    then from the right to clear row i beyond the superdiagonal. The vectors of the
  //    reflections stay in a; each is scaled by the sum of magnitudes to avoid overflow.
  for (int i = 0; i < n; ++i) {
    const int l = i + 1;
    e[i] = scale * g;
    g = scale = 0.0;
    for (int k = i; k < m; ++k) scale += std::fabs(a[k][i]);
    if (scale != 0.0) {
      double s = 0.0;
      for (int k = i; k < m; ++k) {
        a[k][i] /= scale;
        s += a[k][i] * a[k][i];
      }
      const double f = a[i][i];
      g = -with_sign(std::sqrt(s), f);
      const double h = f * g - s;
      a[i][i] = f - g;
      if (l < n) {
        std::fill(&tmp[l], &tmp[0] + n, 0.0);
        for (int k = i; k < m; ++k) {
          const double aki = a[k][i];
          const double* row = a[k];
          for (int j = l; j < n; ++j) tmp[j] += aki * row[j];
        }
        for (int j = l; j < n; ++j) tmp[j] /= h;
        for (int k = i; k < m; ++k) {
          const double aki = a[k][i];
          double* row = a[k];
          for (int j = l; j < n; ++j) row[j] += tmp[j] * aki;
        }
      }
      for (int k = i; k < m; ++k) a[k][i] *= scale;
    }
    w[i] = scale * g;

    g = scale = 0.0;
    if (l < n) {
      double* ri = a[i];
      for (int k = l; k < n; ++k) scale += std::fabs(ri[k]);
      if (scale != 0.0) {
        double s = 0.0;
        for (int k = l; k < n; ++k) {
          ri[k] /= scale;
          s += ri[k] * ri[k];
        }
        const double f = ri[l];
        g = -with_sign(std::sqrt(s), f);
        const double h = f * g - s;
        ri[l] = f - g;
        for (int k = l; k < n; ++k) tmp[k] = ri[k] / h;
        for (int j = l; j < m; ++j) {
          double* rj = a[j];
          double dot = 0.0;
          for (int k = l; k < n; ++k) dot += rj[k] * ri[k];
          for (int k = l; k < n; ++k) rj[k] += dot * tmp[k];
        }
        for (int k = l; k < n; ++k) ri[k] *= scale;
      }
    }
    anorm = std::max(anorm, std::fabs(w[i]) + std::fabs(e[i]));
  }

  // 2. V from the right reflections, last first. Dividing twice (by the pivot entry, then by
  //    the superdiagonal) avoids an underflow of their product.
  for (int i = n - 1; i >= 0; --i) {
    const int l = i + 1;
    if (l < n) {
      const double gi = e[l];
      const double* ri = a[i];
      if (gi != 0.0) {
        for (int j = l; j < n; ++j) v[j][i] = (ri[j] / ri[l]) / gi;
        std::fill(&tmp[l], &tmp[0] + n, 0.0);
        for (int k = l; k < n; ++k) {
          const double aik = ri[k];
          const double* vk = v[k];
          for (int j = l; j < n; ++j) tmp[j] += aik * vk[j];
        }
        for (int k = l; k < n; ++k) {
          const double vki = v[k][i];
          double* vk = v[k];
          for (int j = l; j < n; ++j) vk[j] += tmp[j] * vki;
        }
      }
      for (int j = l; j < n; ++j) v[i][j] = v[j][i] = 0.0;
    }
    v[i][i] = 1.0;
  }

  // 3. U in place from the left reflections, last first.
  for (int i = n - 1; i >= 0; --i) {
    const int l = i + 1;
    double* ri = a[i];
    for (int j = l; j < n; ++j) ri[j] = 0.0;
    if (w[i] != 0.0) {
      const double gi = 1.0 / w[i];
      if (l < n) {
        std::fill(&tmp[l], &tmp[0] + n, 0.0);
        for (int k = l; k < m; ++k) {
          const double aki = a[k][i];
          const double* row = a[k];
          for (int j = l; j < n; ++j) tmp[j] += aki * row[j];
        }
        for (int j = l; j < n; ++j) tmp[j] = (tmp[j] / ri[i]) * gi;
        for (int k = i; k < m; ++k) {
          const double aki = a[k][i];
          double* row = a[k];
          for (int j = l; j < n; ++j) row[j] += tmp[j] * aki;
        }
      }
      for (int k = i; k < m; ++k) a[k][i] *= gi;
    } else {
      for (int k = i; k < m; ++k) a[k][i] = 0.0;
    }
    ri[i] += 1.0;
  }

  // 4. Diagonalisation of the bidiagonal, one singular value at a time from the bottom. The
  //    rotations act on columns of U and V, which are rows of their transposes.
  NRMat<double> ut(n, m), vt(n, n);
  transpose_into(a, ut);
  transpose_into(v, vt);
  const double tol = std::numeric_limits<double>::epsilon() * anorm;
  for (int k = n - 1; k >= 0; --k) {
    for (int round = 0;; ++round) {
      // Find the top l of the unreduced block ending at k: e[l] is negligible (the bidiagonal
      // splits there; e[0] always is), or w[l - 1] is, and then e[l] is rotated away first.
      int l = k;
      bool cancel = false;
      for (; l > 0; --l) {
        if (std::fabs(e[l]) <= tol) break;
        if (std::fabs(w[l - 1]) <= tol) {
          cancel = true;
          break;
        }
      }
      if (cancel) {
        const int top = l - 1;
        double c = 0.0, s = 1.0;
        for (int i = l; i <= k; ++i) {
          const double f = s * e[i];
          e[i] *= c;
          if (std::fabs(f) <= tol) break;
          const double wi = w[i];
          const double h = std::hypot(f, wi);
          w[i] = h;
          c = wi / h;
          s = -f / h;
          rotate(ut[top], ut[i], m, c, s);
        }
      }
      const double z = w[k];
      if (l == k) {
        if (z < 0.0) {  // make the value non-negative, with its column of V
          w[k] = -z;
          for (int j = 0; j < n; ++j) vt[k][j] = -vt[k][j];
        }
        break;
      }
      if (round == kMaxRounds - 1) throw kSvdNoConvergence;

      // Shift: the eigenvalue of the trailing 2 by 2 of B'B nearer its last diagonal entry.
      double x = w[l];
      const int km = k - 1;
      double y = w[km], gg = e[km], h = e[k];
      double f = ((y - z) * (y + z) + (gg - h) * (gg + h)) / (2.0 * h * y);
      gg = std::hypot(f, 1.0);
      f = ((x - z) * (x + z) + h * ((y / (f + with_sign(gg, f))) - h)) / x;

      // Chase the bulge from l down to k with rotations from the right and the left.
      double c = 1.0, s = 1.0;
      for (int j = l; j <= km; ++j) {
        const int i = j + 1;
        gg = e[i];
        y = w[i];
        h = s * gg;
        gg *= c;
        double r = std::hypot(f, h);
        e[j] = r;
        if (r != 0.0) {
          c = f / r;
          s = h / r;
        } else {
          c = 1.0;
          s = 0.0;
        }
        f = x * c + gg * s;
        gg = gg * c - x * s;
        h = y * s;
        y *= c;
        rotate(vt[j], vt[i], n, c, s);
        r = std::hypot(f, h);
        w[j] = r;
        if (r != 0.0) {
          c = f / r;
          s = h / r;
        }
        f = c * gg + s * y;
        x = c * y - s * gg;
        rotate(ut[j], ut[i], m, c, s);
      }
      e[l] = 0.0;
      e[k] = f;
      w[k] = x;
    }
  }
  transpose_into(ut, a);
  transpose_into(vt, v);
}

}  // namespace

template <>
bool NRMat<double>::svdcmp(NRVec<double>& vW, NRMat<double>& mV) {
  if (!IsValid()) return false;
  const std::size_t count = static_cast<std::size_t>(nn) * mm;
  for (std::size_t k = 0; k < count; ++k)
    if (!std::isfinite(v[0][k])) throw kSvdNoConvergence;  // no iteration could converge
  const int m = nn, n = mm;
  vW.SetSize(n);
  mV.SetSize(n, n);
  if (m >= n) {
    golub_reinsch(*this, vW, mV);
    return true;
  }
  // Fewer rows than columns: decompose A' = U1 diag(w1) V1', so that A = V1 diag(w1) U1'.
  // U is V1 padded with zero columns, V is U1 padded likewise, w is w1 padded with zeros.
  NRMat<double> u1(n, m), v1(m, m);
  NRVec<double> w1(m);
  transpose_into(*this, u1);
  golub_reinsch(u1, w1, v1);
  vW = 0.0;
  mV = 0.0;
  *this = 0.0;
  for (int j = 0; j < m; ++j) vW[j] = w1[j];
  for (int i = 0; i < n; ++i)
    for (int j = 0; j < m; ++j) mV[i][j] = u1[i][j];
  for (int i = 0; i < m; ++i)
    for (int j = 0; j < m; ++j) v[i][j] = v1[i][j];
  return true;
}

}  // namespace zomath
