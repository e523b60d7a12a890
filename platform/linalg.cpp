#include "platform/linalg.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstring>
#include <limits>
#include <vector>

// LAPACKE's complex type as std::complex, which has the layout of d_complex.
#define lapack_complex_float std::complex<float>
#define lapack_complex_double std::complex<double>
#include <lapacke.h>

namespace zomath::platform {
namespace {

using cplx = std::complex<double>;
static_assert(sizeof(cplx) == sizeof(d_complex), "d_complex and std::complex<double> share a layout");

cplx* as_cplx(d_complex* p) { return reinterpret_cast<cplx*>(p); }

// Working storage that reports failure the library's way.
template <class T>
std::vector<T> buffer(std::size_t n) {
  try {
    return std::vector<T>(n);
  } catch (const std::bad_alloc&) {
    throw ZOMATH_ERROR_NO_MEMORY;
  }
}

bool finite(double x) { return std::isfinite(x); }
bool finite(const d_complex& z) { return std::isfinite(z.re) && std::isfinite(z.im); }

template <class T>
bool all_finite(int m, int n, const T* a, int lda) {
  for (int i = 0; i < m; ++i) {
    const T* row = a + static_cast<std::size_t>(i) * lda;
    for (int j = 0; j < n; ++j)
      if (!finite(row[j])) return false;
  }
  return true;
}

// Checks shared by every routine: sizes, strides and finite entries.
template <class T>
int check_input(int m, int n, const T* a, int lda, NagError& fail) {
  if (m < 1 || n < 1 || lda < n || !a) return fail.fail(kLinalgBadArgument, "bad size or stride");
  if (!all_finite(m, n, a, lda)) return fail.fail(kLinalgNotFinite, "NaN or infinite entry");
  return 0;
}

// Translates a LAPACKE result: workspace failures throw; a negative info is a bad argument.
int lapack_status(lapack_int info, NagError& fail, int nPositiveCode, const char* text) {
  if (info == LAPACK_WORK_MEMORY_ERROR || info == LAPACK_TRANSPOSE_MEMORY_ERROR)
    throw ZOMATH_ERROR_NO_MEMORY;
  if (info < 0) return fail.fail(kLinalgBadArgument, "argument refused", static_cast<int>(-info));
  if (info > 0) return fail.fail(nPositiveCode, text, static_cast<int>(info));
  return 0;
}

}  // namespace

int lu_factor(int m, int n, double* a, int lda, int* pivots, NagError& fail) {
  if (int rc = check_input(m, n, a, lda, fail)) return rc;
  if (!pivots) return fail.fail(kLinalgBadArgument, "null pivot array");
  return lapack_status(LAPACKE_dgetrf(LAPACK_ROW_MAJOR, m, n, a, lda, pivots), fail,
                       kLinalgSingular, "zero pivot: the matrix is singular");
}

int lu_solve(int n, int nrhs, const double* lu, int lda, const int* pivots, double* b, int ldb,
             NagError& fail) {
  if (int rc = check_input(n, n, lu, lda, fail)) return rc;
  if (int rc = check_input(n, nrhs, b, ldb, fail)) return rc;
  if (!pivots) return fail.fail(kLinalgBadArgument, "null pivot array");
  return lapack_status(LAPACKE_dgetrs(LAPACK_ROW_MAJOR, 'N', n, nrhs, lu, lda, pivots, b, ldb),
                       fail, kLinalgBadArgument, "solve refused");
}

int qr(int m, int n, const double* a, int lda, double* q, int ldq, double* r, int ldr,
       NagError& fail) {
  if (int rc = check_input(m, n, a, lda, fail)) return rc;
  if (!q || !r || ldq < m || ldr < n) return fail.fail(kLinalgBadArgument, "bad output");
  // The reflectors are formed into the full m by m Q in place, so the work array is m by
  // max(m, n): A sits in its first n columns.
  const int k = std::min(m, n), width = std::max(m, n);
  auto work = buffer<double>(static_cast<std::size_t>(m) * width);
  auto tau = buffer<double>(static_cast<std::size_t>(k));
  for (int i = 0; i < m; ++i)
    std::memcpy(&work[static_cast<std::size_t>(i) * width], a + static_cast<std::size_t>(i) * lda,
                static_cast<std::size_t>(n) * sizeof(double));
  if (int rc = lapack_status(LAPACKE_dgeqrf(LAPACK_ROW_MAJOR, m, n, work.data(), width, tau.data()),
                             fail, kLinalgBadArgument, "QR factorisation refused"))
    return rc;
  for (int i = 0; i < m; ++i)
    for (int j = 0; j < n; ++j)
      r[static_cast<std::size_t>(i) * ldr + j] = j >= i ? work[static_cast<std::size_t>(i) * width + j] : 0.0;
  if (int rc = lapack_status(LAPACKE_dorgqr(LAPACK_ROW_MAJOR, m, m, k, work.data(), width, tau.data()),
                             fail, kLinalgBadArgument, "forming Q refused"))
    return rc;
  for (int i = 0; i < m; ++i)
    std::memcpy(q + static_cast<std::size_t>(i) * ldq, &work[static_cast<std::size_t>(i) * width],
                static_cast<std::size_t>(m) * sizeof(double));
  return 0;
}

namespace {

// The three steps of the SVD for either element type. Real and complex LAPACK routines differ
// only in their names, so each step is a pair of overloads.
lapack_int reduce(int m, int n, double* a, int lda, double* d, double* e, double* tauq, double* taup) {
  return LAPACKE_dgebrd(LAPACK_ROW_MAJOR, m, n, a, lda, d, e, tauq, taup);
}
lapack_int reduce(int m, int n, cplx* a, int lda, double* d, double* e, cplx* tauq, cplx* taup) {
  return LAPACKE_zgebrd(LAPACK_ROW_MAJOR, m, n, a, lda, d, e, tauq, taup);
}
lapack_int form(char vect, int m, int n, int k, double* a, int lda, const double* tau) {
  return LAPACKE_dorgbr(LAPACK_ROW_MAJOR, vect, m, n, k, a, lda, tau);
}
lapack_int form(char vect, int m, int n, int k, cplx* a, int lda, const cplx* tau) {
  return LAPACKE_zungbr(LAPACK_ROW_MAJOR, vect, m, n, k, a, lda, tau);
}
lapack_int bidiagonal_qr(char uplo, int k, int ncvt, int nru, double* d, double* e, double* vt,
                         int ldvt, double* u, int ldu) {
  return LAPACKE_dbdsqr(LAPACK_ROW_MAJOR, uplo, k, ncvt, nru, 0, d, e, vt, ldvt, u, ldu, nullptr, 1);
}
lapack_int bidiagonal_qr(char uplo, int k, int ncvt, int nru, double* d, double* e, cplx* vt,
                         int ldvt, cplx* u, int ldu) {
  return LAPACKE_zbdsqr(LAPACK_ROW_MAJOR, uplo, k, ncvt, nru, 0, d, e, vt, ldvt, u, ldu, nullptr, 1);
}

template <class T>
void copy_block(int rows, int cols, const T* src, int lds, T* dst, int ldd) {
  for (int i = 0; i < rows; ++i)
    std::memcpy(dst + static_cast<std::size_t>(i) * ldd, src + static_cast<std::size_t>(i) * lds,
                static_cast<std::size_t>(cols) * sizeof(T));
}

template <class T>
int svd_bidiagonal(int m, int n, T* a, int lda, double* s, T* u, int ldu, T* vt, int ldvt,
                   NagError& fail) {
  const int k = std::min(m, n);
  const bool vectors = u && vt;
  if (!s || (vectors && (ldu < k || ldvt < n)) || (!u != !vt))
    return fail.fail(kLinalgBadArgument, "bad output");
  auto e = buffer<double>(static_cast<std::size_t>(std::max(k - 1, 1)));
  auto tauq = buffer<T>(static_cast<std::size_t>(k));
  auto taup = buffer<T>(static_cast<std::size_t>(k));
  if (int rc = lapack_status(reduce(m, n, a, lda, s, e.data(), tauq.data(), taup.data()), fail,
                             kLinalgBadArgument, "bidiagonal reduction refused"))
    return rc;
  if (vectors) {
    // Q is m by k from the first k columns of the reduced matrix, P transposed k by n from its
    // first k rows; each is formed in place in the output.
    copy_block(m, k, a, lda, u, ldu);
    if (int rc = lapack_status(form('Q', m, k, n, u, ldu, tauq.data()), fail, kLinalgBadArgument,
                               "forming Q refused"))
      return rc;
    copy_block(k, n, a, lda, vt, ldvt);
    if (int rc = lapack_status(form('P', k, n, m, vt, ldvt, taup.data()), fail, kLinalgBadArgument,
                               "forming P refused"))
      return rc;
  }
  const char uplo = m >= n ? 'U' : 'L';
  // Without vectors the strides still have to pass the row-major checks.
  return lapack_status(bidiagonal_qr(uplo, k, vectors ? n : 0, vectors ? m : 0, s, e.data(), vt,
                                     vectors ? ldvt : 1, u, vectors ? ldu : k),
                       fail, kLinalgNotConverged, "bidiagonal QR did not converge");
}

}  // namespace

int svd(int m, int n, double* a, int lda, double* s, double* u, int ldu, double* vt, int ldvt,
        NagError& fail) {
  if (int rc = check_input(m, n, a, lda, fail)) return rc;
  return svd_bidiagonal(m, n, a, lda, s, u, ldu, vt, ldvt, fail);
}

int svd(int m, int n, d_complex* a, int lda, double* s, d_complex* u, int ldu, d_complex* vt,
        int ldvt, NagError& fail) {
  if (int rc = check_input(m, n, a, lda, fail)) return rc;
  return svd_bidiagonal(m, n, as_cplx(a), lda, s, as_cplx(u), ldu, as_cplx(vt), ldvt, fail);
}

int invert(int n, double* a, int lda, NagError& fail) {
  if (int rc = check_input(n, n, a, lda, fail)) return rc;
  const std::size_t nn = static_cast<std::size_t>(n) * n;
  auto lu = buffer<double>(nn);
  auto pivots = buffer<lapack_int>(static_cast<std::size_t>(n));
  copy_block(n, n, a, lda, lu.data(), n);
  const double norm1 = LAPACKE_dlange(LAPACK_ROW_MAJOR, '1', n, n, lu.data(), n);
  if (int rc = lapack_status(LAPACKE_dgetrf(LAPACK_ROW_MAJOR, n, n, lu.data(), n, pivots.data()),
                             fail, kLinalgSingular, "zero pivot: the matrix is singular"))
    return rc;
  // A tiny but nonzero pivot left by rounding would give an inverse of noise: the matrix is
  // taken as singular when its condition number exceeds 1 / eps.
  double rcond = 0.0;
  if (int rc = lapack_status(LAPACKE_dgecon(LAPACK_ROW_MAJOR, '1', n, lu.data(), n, norm1, &rcond),
                             fail, kLinalgBadArgument, "condition estimate refused"))
    return rc;
  if (!(rcond >= std::numeric_limits<double>::epsilon()))
    return fail.fail(kLinalgSingular, "the matrix is singular to working precision");
  auto x = buffer<double>(nn);
  for (int i = 0; i < n; ++i) x[static_cast<std::size_t>(i) * n + i] = 1.0;
  if (int rc = lapack_status(LAPACKE_dgetrs(LAPACK_ROW_MAJOR, 'N', n, n, lu.data(), n, pivots.data(),
                                            x.data(), n),
                             fail, kLinalgBadArgument, "solve refused"))
    return rc;
  copy_block(n, n, x.data(), n, a, lda);
  return 0;
}

int generalized_eigenvalues(int n, double* a, int lda, double* b, int ldb, double* alphar,
                            double* alphai, double* beta, NagError& fail) {
  if (int rc = check_input(n, n, a, lda, fail)) return rc;
  if (int rc = check_input(n, n, b, ldb, fail)) return rc;
  if (!alphar || !alphai || !beta) return fail.fail(kLinalgBadArgument, "bad output");
  return lapack_status(LAPACKE_dggev(LAPACK_ROW_MAJOR, 'N', 'N', n, a, lda, b, ldb, alphar, alphai,
                                     beta, nullptr, 1, nullptr, 1),
                       fail, kLinalgNotConverged, "QZ iteration did not converge");
}

}  // namespace zomath::platform
