// Dense factorisations over LAPACK (through LAPACKE, row-major): LU with partial pivoting and
// its solve, QR with the explicit Q, the singular value decomposition by bidiagonal reduction
// and divide and conquer (real and complex), the inverse by LU, and the eigenvalues of a
// general real pencil.
//
// Matrices are row-major with a row stride (leading dimension) of at least their column count.
// Each routine returns 0 or one of the codes below, and on failure also records it in `fail`
// (which the caller resets before the call). Every routine first refuses a NaN or an infinity
// in its input, so no iteration ever runs on one. Workspace that cannot be had throws
// ZOMATH_ERROR_NO_MEMORY.
#pragma once

#include "platform/error_record.h"
#include "zomath/core.h"

namespace zomath::platform {

// Singular matrix: an exactly zero pivot of an LU factorisation; for the inverse also a matrix
// singular to working precision (reciprocal condition number below 2^-52). Callers that can
// fall back on a pseudo-inverse test for this code.
constexpr int kLinalgSingular = 366;
// The bidiagonal iteration of an SVD, or the QZ iteration of the eigenvalue problem, did
// not converge.
constexpr int kLinalgNotConverged = 367;
// An input entry is NaN or infinite.
constexpr int kLinalgNotFinite = 368;
// A size or leading dimension the routine cannot take (below 1, or a stride below the width).
constexpr int kLinalgBadArgument = 369;

// P A = L U in place for an m by n matrix: L unit lower (below the diagonal), U upper. pivots
// receives min(m, n) one-based row indices: row i was interchanged with row pivots[i]. A zero
// pivot gives kLinalgSingular with the factorisation complete.
int lu_factor(int m, int n, double* a, int lda, int* pivots, NagError& fail);

// Solves A X = B (nrhs columns of B, overwritten by X) from the factors of lu_factor.
int lu_solve(int n, int nrhs, const double* lu, int lda, const int* pivots, double* b, int ldb,
             NagError& fail);

// A = Q R for an m by n matrix: q (m by m, stride ldq >= m) orthogonal, r (m by n, stride
// ldr >= n) upper trapezoidal with zeros below the diagonal. a is not changed.
int qr(int m, int n, const double* a, int lda, double* q, int ldq, double* r, int ldr,
       NagError& fail);

// Thin SVD A = U diag(s) VT of an m by n matrix, k = min(m, n): the matrix is reduced to
// bidiagonal form (after a QR factorisation when it is far from square), and divide and
// conquer on the bidiagonal finishes (LAPACK's ?gesdd). s receives k values in descending
// order; u (m by k, stride ldu >= k) and vt (k by n, stride ldvt >= n) may both be null for
// the values alone. a is overwritten. Complex VT is the conjugate transpose of V.
int svd(int m, int n, double* a, int lda, double* s, double* u, int ldu, double* vt, int ldvt,
        NagError& fail);
int svd(int m, int n, d_complex* a, int lda, double* s, d_complex* u, int ldu, d_complex* vt,
        int ldvt, NagError& fail);

// Inverse of an n by n matrix in place: LU with partial pivoting, a condition check, then the
// inverse from the factors (LAPACK's ?getri). On kLinalgSingular (or any failure) a is left as it was.
int invert(int n, double* a, int lda, NagError& fail);

// Eigenvalues of the pencil A - lambda B, n by n, by the QZ algorithm: lambda_j = (alphar[j] +
// i alphai[j]) / beta[j], complex pairs adjacent with the positive imaginary part first. a and
// b are overwritten.
int generalized_eigenvalues(int n, double* a, int lda, double* b, int ldb, double* alphar,
                            double* alphai, double* beta, NagError& fail);

}  // namespace zomath::platform
