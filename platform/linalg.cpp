#include "platform/linalg.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstring>
#include <limits>
#include <type_traits>
#include <vector>

// LAPACKE's complex type as std::complex, which has the layout of d_complex.
#define lapack_complex_float std::complex<float>
#define lapack_complex_double std::complex<double>
#include <lapacke.h>

#include "platform/blas_lock.h"
#include "platform/workspace.h"

namespace zomath::platform {

std::mutex& blas_mutex() {
  static std::mutex m;
  return m;
}

namespace {

using cplx = std::complex<double>;
static_assert(sizeof(cplx) == sizeof(d_complex), "d_complex and std::complex<double> share a layout");

cplx* as_cplx(d_complex* p) { return reinterpret_cast<cplx*>(p); }

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
  return lapack_status(blas([&] { return LAPACKE_dgetrf(LAPACK_ROW_MAJOR, m, n, a, lda, pivots); }),
                       fail, kLinalgSingular, "zero pivot: the matrix is singular");
}

int lu_solve(int n, int nrhs, const double* lu, int lda, const int* pivots, double* b, int ldb,
             NagError& fail) {
  if (int rc = check_input(n, n, lu, lda, fail)) return rc;
  if (int rc = check_input(n, nrhs, b, ldb, fail)) return rc;
  if (!pivots) return fail.fail(kLinalgBadArgument, "null pivot array");
  return lapack_status(
      blas([&] { return LAPACKE_dgetrs(LAPACK_ROW_MAJOR, 'N', n, nrhs, lu, lda, pivots, b, ldb); }),
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
  if (int rc = lapack_status(blas([&] {
                               return LAPACKE_dgeqrf(LAPACK_ROW_MAJOR, m, n, work.data(), width,
                                                     tau.data());
                             }),
                             fail, kLinalgBadArgument, "QR factorisation refused"))
    return rc;
  for (int i = 0; i < m; ++i)
    for (int j = 0; j < n; ++j)
      r[static_cast<std::size_t>(i) * ldr + j] = j >= i ? work[static_cast<std::size_t>(i) * width + j] : 0.0;
  if (int rc = lapack_status(blas([&] {
                               return LAPACKE_dorgqr(LAPACK_ROW_MAJOR, m, m, k, work.data(), width,
                                                     tau.data());
                             }),
                             fail, kLinalgBadArgument, "forming Q refused"))
    return rc;
  for (int i = 0; i < m; ++i)
    std::memcpy(q + static_cast<std::size_t>(i) * ldq, &work[static_cast<std::size_t>(i) * width],
                static_cast<std::size_t>(m) * sizeof(double));
  return 0;
}

namespace {

// ?gesdd, real and complex, with the workspace LAPACK asks for. The real form ignores rwork.
lapack_int gesdd(char job, int m, int n, double* a, int lda, double* s, double* u, int ldu,
                 double* vt, int ldvt, double* work, lapack_int lwork, double*, lapack_int* iwork) {
  return blas([&] {
    return LAPACKE_dgesdd_work(LAPACK_COL_MAJOR, job, m, n, a, lda, s, u, ldu, vt, ldvt, work,
                               lwork, iwork);
  });
}
lapack_int gesdd(char job, int m, int n, cplx* a, int lda, double* s, cplx* u, int ldu, cplx* vt,
                 int ldvt, cplx* work, lapack_int lwork, double* rwork, lapack_int* iwork) {
  return blas([&] {
    return LAPACKE_zgesdd_work(LAPACK_COL_MAJOR, job, m, n, a, lda, s, u, ldu, vt, ldvt, work,
                               lwork, rwork, iwork);
  });
}

double real_part(double x) { return x; }
double real_part(const cplx& z) { return z.real(); }

// A row-major A is the column-major A^T. With A = U S V^H, A^T = conj(V) S U^T, so LAPACK's
// column-major driver run on A^T puts V^H, read row-major, where it writes its U, and U, read
// row-major, where it writes its V^H: no transposition anywhere. The bidiagonal is finished by
// divide and conquer (?bdsdc), which gives the values of the QR iteration to rounding and is
// several times faster when the vectors are wanted.
template <class T>
int svd_divide_conquer(int m, int n, T* a, int lda, double* s, T* u, int ldu, T* vt, int ldvt,
                       NagError& fail) {
  const int k = std::min(m, n), big = std::max(m, n);
  const bool vectors = u && vt;
  if (!s || (vectors && (ldu < k || ldvt < n)) || (!u != !vt))
    return fail.fail(kLinalgBadArgument, "bad output");
  const char job = vectors ? 'S' : 'N';
  T dummy{};
  T* uu = vectors ? vt : &dummy;
  T* vv = vectors ? u : &dummy;
  const int lduu = vectors ? ldvt : 1, ldvv = vectors ? ldu : 1;
  const std::size_t kk = static_cast<std::size_t>(k);
  auto iwork = buffer<lapack_int>(8 * kk);
  // Real workspace of the complex driver: the larger of its two documented bounds.
  auto rwork = buffer<double>(std::is_same_v<T, double>
                                  ? 1
                                  : std::max(7 * kk, kk * std::max<std::size_t>(5 * kk + 7, 2 * big + 2 * kk + 1)));
  T query{};
  if (int rc = lapack_status(gesdd(job, n, m, a, lda, s, uu, lduu, vv, ldvv, &query, -1,
                                   rwork.data(), iwork.data()),
                             fail, kLinalgBadArgument, "workspace query refused"))
    return rc;
  const lapack_int lwork = std::max<lapack_int>(static_cast<lapack_int>(real_part(query)), 1);
  auto work = buffer<T>(static_cast<std::size_t>(lwork));
  return lapack_status(gesdd(job, n, m, a, lda, s, uu, lduu, vv, ldvv, work.data(), lwork,
                             rwork.data(), iwork.data()),
                       fail, kLinalgNotConverged, "the bidiagonal iteration did not converge");
}

template <class T>
void copy_block(int rows, int cols, const T* src, int lds, T* dst, int ldd) {
  for (int i = 0; i < rows; ++i)
    std::memcpy(dst + static_cast<std::size_t>(i) * ldd, src + static_cast<std::size_t>(i) * lds,
                static_cast<std::size_t>(cols) * sizeof(T));
}

}  // namespace

int svd(int m, int n, double* a, int lda, double* s, double* u, int ldu, double* vt, int ldvt,
        NagError& fail) {
  if (int rc = check_input(m, n, a, lda, fail)) return rc;
  return svd_divide_conquer(m, n, a, lda, s, u, ldu, vt, ldvt, fail);
}

int svd(int m, int n, d_complex* a, int lda, double* s, d_complex* u, int ldu, d_complex* vt,
        int ldvt, NagError& fail) {
  if (int rc = check_input(m, n, a, lda, fail)) return rc;
  return svd_divide_conquer(m, n, as_cplx(a), lda, s, as_cplx(u), ldu, as_cplx(vt), ldvt, fail);
}

int invert(int n, double* a, int lda, NagError& fail) {
  if (int rc = check_input(n, n, a, lda, fail)) return rc;
  // A row-major A is the column-major A^T, and inv(A^T) = inv(A)^T: inverting the column-major
  // matrix in place leaves inv(A) in row-major order. The work is done on a copy so that A
  // stays as it was on failure.
  const std::size_t nn = static_cast<std::size_t>(n) * n;
  auto lu = buffer<double>(nn);
  auto pivots = buffer<lapack_int>(static_cast<std::size_t>(n));
  auto iwork = buffer<lapack_int>(static_cast<std::size_t>(n));
  auto work4 = buffer<double>(4 * static_cast<std::size_t>(n));
  copy_block(n, n, a, lda, lu.data(), n);
  // The 1-norm of A is the infinity norm of A^T.
  const double norm1 = blas(
      [&] { return LAPACKE_dlange_work(LAPACK_COL_MAJOR, 'I', n, n, lu.data(), n, work4.data()); });
  if (int rc = lapack_status(blas([&] {
                               return LAPACKE_dgetrf_work(LAPACK_COL_MAJOR, n, n, lu.data(), n,
                                                          pivots.data());
                             }),
                             fail, kLinalgSingular, "zero pivot: the matrix is singular"))
    return rc;
  // A tiny but nonzero pivot left by rounding would give an inverse of noise: the matrix is
  // taken as singular when its condition number exceeds 1 / eps. The estimate costs O(n^2)
  // beside the O(n^3) factorisation; in the infinity norm of A^T it is that of A in the 1-norm.
  double rcond = 0.0;
  if (int rc = lapack_status(blas([&] {
                               return LAPACKE_dgecon_work(LAPACK_COL_MAJOR, 'I', n, lu.data(), n,
                                                          norm1, &rcond, work4.data(),
                                                          iwork.data());
                             }),
                             fail, kLinalgBadArgument, "condition estimate refused"))
    return rc;
  if (!(rcond >= std::numeric_limits<double>::epsilon()))
    return fail.fail(kLinalgSingular, "the matrix is singular to working precision");
  double query = 0.0;
  if (int rc = lapack_status(blas([&] {
                               return LAPACKE_dgetri_work(LAPACK_COL_MAJOR, n, lu.data(), n,
                                                          pivots.data(), &query, -1);
                             }),
                             fail, kLinalgBadArgument, "workspace query refused"))
    return rc;
  const lapack_int lwork = std::max<lapack_int>(static_cast<lapack_int>(query), n);
  auto work = buffer<double>(static_cast<std::size_t>(lwork));
  if (int rc = lapack_status(blas([&] {
                               return LAPACKE_dgetri_work(LAPACK_COL_MAJOR, n, lu.data(), n,
                                                          pivots.data(), work.data(), lwork);
                             }),
                             fail, kLinalgSingular, "zero pivot: the matrix is singular"))
    return rc;
  copy_block(n, n, lu.data(), n, a, lda);
  return 0;
}

int generalized_eigenvalues(int n, double* a, int lda, double* b, int ldb, double* alphar,
                            double* alphai, double* beta, NagError& fail) {
  if (int rc = check_input(n, n, a, lda, fail)) return rc;
  if (int rc = check_input(n, n, b, ldb, fail)) return rc;
  if (!alphar || !alphai || !beta) return fail.fail(kLinalgBadArgument, "bad output");
  return lapack_status(blas([&] {
                         return LAPACKE_dggev(LAPACK_ROW_MAJOR, 'N', 'N', n, a, lda, b, ldb, alphar,
                                              alphai, beta, nullptr, 1, nullptr, 1);
                       }),
                       fail, kLinalgNotConverged, "QZ iteration did not converge");
}

}  // namespace zomath::platform
