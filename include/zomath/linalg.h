/* zomath: dense linear algebra on row-major double (and complex) matrices.
 *
 * Factorisations run on LAPACK; zomath_svdcmp_2 and zomath_ex_svdcmp are the library's own
 * Golub-Reinsch SVD. NANUM is an ordinary number here. Codes: 0 success; a positive code is the
 * factorisation's failure (ZOMATH_LINALG_*, below). This header is plain C. */
#ifndef ZOMATH_LINALG_H
#define ZOMATH_LINALG_H

#include "zomath/core.h"

#ifndef __cplusplus
#include <stdbool.h>
#endif

/* The positive codes of the factorisations. */
enum {
  ZOMATH_LINALG_SINGULAR = 366,       /* zero pivot; inverse: singular to working precision */
  ZOMATH_LINALG_NOT_CONVERGED = 367,  /* the SVD or eigenvalue iteration did not converge */
  ZOMATH_LINALG_NOT_FINITE = 368,     /* a NaN or infinite entry */
  ZOMATH_LINALG_BAD_ARGUMENT = 369    /* a size or stride the routine refused */
};

ZOMATH_EXTERN_C_BEGIN

/* P A = L U in place for an nRows by nCols A (L unit lower below the diagonal, U upper);
 * pnPivots gets min(nRows, nCols) one-based row interchanges. -11 null, -1 a size below 1; else
 * 0 or 366 for a zero pivot (the factors are still complete). */
ZOMATH_API int zomath_lu(double* pA, int* pnPivots, int nRows, int nCols);

/* Solves A X = B: factors the nSize by nSize pA in place as zomath_lu does and, only when that
 * gives 0, overwrites the nSize by nRhs pB with X. -11 null, -1 a size below 1, else 0 or the
 * factorisation's code. */
ZOMATH_API int zomath_lu_solve(double* pA, double* pB, int* pnPivots, int nSize, int nRhs);

/* A = Q R: pQ nRows by nRows orthogonal, pR nRows by nCols upper trapezoidal. A is not
 * changed. -11 null, -1 a size below 1, else 0 or a positive code. */
ZOMATH_API int zomath_qr(const double* pA, double* pQ, double* pR, int nRows, int nCols);

/* Thin SVD A = U diag(S) VT with k = min(nRows, nCols): pS k values in descending order, pU
 * nRows by k, pVT k by nCols; pU and pVT may be null when the vectors are not wanted. pA is not
 * changed. -11 null pA or pS, -5 a size below 1, else 0 or a positive code. */
ZOMATH_API int zomath_svd(int nRows, int nCols, double* pA, double* pS, double* pU, double* pVT);
/* The same for a complex matrix; pS is real and pVT holds the conjugate transpose of V. */
ZOMATH_API int zomath_svd_complex(int nRows, int nCols, d_complex* pA, double* pS, d_complex* pU,
                                  d_complex* pVT);

/* The library's own SVD: pA (nRows by nCols) is overwritten with U, pW gets nCols singular
 * values (unsorted), pV the nCols by nCols V (not transposed). With nRows < nCols the values
 * and columns beyond nRows are zero. False, with the arrays unchanged, for a null pointer, a
 * size below 1, a NaN or infinite entry, or no convergence in 30 rounds. */
ZOMATH_API bool zomath_svdcmp_2(double* pA, int nRows, int nCols, double* pW, double* pV);
/* As zomath_svdcmp_2 on a copy, giving only pW and pV. 0; 1 for a size below 1 or a failed
 * decomposition; -11 null. */
ZOMATH_API int zomath_ex_svdcmp(const double* pA, int nRows, int nCols, double* pW, double* pV);

/* x = V diag(1 / w) U' b from the output of zomath_svdcmp_2 (U nRows by nCols, w nCols, V nCols
 * by nCols, b nRows, x nCols); a w of 0 contributes nothing. pX may be pB when nRows equals
 * nCols. False for a null pointer or a size below 1. The two names are one routine. */
ZOMATH_API bool zomath_svbksb(double* pU, double* pW, double* pV, int nRows, int nCols, double* pB,
                              double* pX);
ZOMATH_API bool zomath_svbksb_2(double* pU, double* pW, double* pV, int nRows, int nCols,
                                double* pB, double* pX);
/* As zomath_svbksb with the singular values below dTolerance taken as 0 (pW is not changed).
 * 0; 1 for a size below 1; -11 null. */
ZOMATH_API int zomath_ex_svbksb(double* pU, double* pW, double* pV, int nRows, int nCols,
                                double* pB, double* pX, double dTolerance);

/* Moore-Penrose pseudo-inverse, nCols by nRows, into pPinv. Singular values at or below
 * dTolerance are dropped; dTolerance <= 0 (or NaN) means max(nRows, nCols) * s_max * 2^-52.
 * 0 (an all-zero result when nothing is kept); 1 for a size below 1, a NaN or infinite entry, a
 * failed SVD or a kept value whose reciprocal would overflow, with pPinv set to NANUM after the
 * last three; -11 null. */
ZOMATH_API int zomath_pinv(const double* pA, double* pPinv, int nRows, int nCols,
                           double dTolerance);

/* Inverse of the nSize by nSize pA in place, by LU. -11 null, -1 nSize below 1; 366 when A is
 * singular or singular to working precision (condition number above 2^52), 368 for a NaN or
 * infinite entry: pA is left as it was on every failure. */
ZOMATH_API int zomath_inverse(double* pA, int nSize);

/* Transposes an nRows by nCols matrix in place. nType: 0 double; 1, 3 int; 2 two-byte; 4, 7
 * four-byte forms; 10 d_complex; another type does nothing and returns 0. -11 null, -5 a size
 * below 1. */
ZOMATH_API int zomath_transpose(int nRows, int nCols, int nType, void* pData);

/* Euclidean norm of nSize values, without overflow or underflow in between. NANUM for nSize 0,
 * a null pointer or a NaN entry. */
ZOMATH_API double zomath_norm(const double* pV, unsigned int nSize);

/* Norm of an nRows by nCols matrix. nType 1: largest column sum of magnitudes (-1.0 when there
 * are no columns); 2: largest singular value; 3: largest row sum of magnitudes (-1.0 when there
 * are no rows); 4: Frobenius. NANUM for both sizes 0, an unknown type, a null pointer with
 * entries to read or a NaN entry; an infinite entry gives infinity. */
ZOMATH_API double zomath_norm2(const double* pA, unsigned int nRows, unsigned int nCols, int nType);

/* Eigenvalues of the nSize by nSize pA (row stride nStride) as the generalised problem
 * A x = lambda I x: pEigen gets nSize pairs (real, imaginary), complex pairs adjacent. pA is
 * not changed. -11 null, -5 nSize < 1 or nStride < nSize; else 0, or 367 (no convergence) or
 * 368 (NaN or infinite entry) with pEigen all NANUM. */
ZOMATH_API int zomath_real_eigenvalues(int nSize, double* pA, int nStride, double* pEigen);

/* Writes the packed strict lower triangle pV (row after row: (1,0), (2,0), (2,1), ...) into
 * both triangles of the nSize by nSize pM, leaving its diagonal. Nothing happens unless both
 * pointers are given and nCount equals nSize (nSize - 1) / 2. */
ZOMATH_API void covert_lower_triangle_vector_to_matrix(const double* pV, unsigned int nCount,
                                                       double* pM, unsigned int nSize);

ZOMATH_EXTERN_C_END

#endif /* ZOMATH_LINALG_H */
