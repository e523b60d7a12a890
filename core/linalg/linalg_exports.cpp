// Exports of the dense linear algebra: argument checks, wrapping of the caller's arrays, and the
// NRMat methods or platform routines behind them.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "core/nrvec/nrvec.h"
#include "platform/linalg.h"
#include "zomath/linalg.h"

namespace {

using zomath::NRMat;
using zomath::NRVec;
using zomath::platform::NagError;

static_assert(ZOMATH_LINALG_SINGULAR == zomath::platform::kLinalgSingular &&
                  ZOMATH_LINALG_NOT_CONVERGED == zomath::platform::kLinalgNotConverged &&
                  ZOMATH_LINALG_NOT_FINITE == zomath::platform::kLinalgNotFinite &&
                  ZOMATH_LINALG_BAD_ARGUMENT == zomath::platform::kLinalgBadArgument,
              "public and platform codes agree");

constexpr int kBadSize = -1;  // size test of the LU family

std::size_t count(int rows, int cols) { return static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols); }

// A read-only caller's matrix seen as an NRMat, without copying.
NRMat<double> view(const double* p, int rows, int cols) {
  return NRMat<double>(rows, cols, const_cast<double*>(p));
}

// svbksb on the caller's arrays; pW may be replaced by a thresholded copy.
bool back_substitute(double* pU, const double* pW, double* pV, int nRows, int nCols, double* pB,
                     double* pX) {
  const NRMat<double> u = view(pU, nRows, nCols), v = view(pV, nCols, nCols);
  const NRVec<double> w(nCols, const_cast<double*>(pW)), b(nRows, pB);
  NRVec<double> x(nCols, pX);
  return u.svbksb(w, v, b, x);
}

// Copies the own SVD's outputs; the caller's arrays are written only on success.
bool own_svd(const double* pA, int nRows, int nCols, double* pU, double* pW, double* pV) {
  NRMat<double> a(pA, nRows, nCols), v;
  NRVec<double> w;
  a.svdcmp(w, v);
  if (pU) std::memcpy(pU, a.Data(), count(nRows, nCols) * sizeof(double));
  std::memcpy(pW, w.Data(), static_cast<std::size_t>(nCols) * sizeof(double));
  std::memcpy(pV, v.Data(), count(nCols, nCols) * sizeof(double));
  return true;
}

// Euclidean norm: the plain sum of squares where it can neither overflow nor lose terms to
// underflow, else the sum of squares scaled by the largest magnitude.
double euclidean_norm(const double* x, std::size_t n) {
  double s = 0.0;
  for (std::size_t i = 0; i < n; ++i) s += x[i] * x[i];
  if (s >= 0x1p-900 && s <= 0x1p+1000) return std::sqrt(s);
  double big = 0.0;
  for (std::size_t i = 0; i < n; ++i) big = std::max(big, std::fabs(x[i]));
  if (big == 0.0 || std::isinf(big) || std::isnan(s)) return std::isnan(s) ? s : big;
  s = 0.0;
  for (std::size_t i = 0; i < n; ++i) {
    const double t = x[i] / big;
    s += t * t;
  }
  return big * std::sqrt(s);
}

// Largest sum of magnitudes over `lines` lines of `len` entries each, entries `step` apart and
// lines `stride` apart (columns or rows of a row-major matrix); -1.0 when there is no line.
double largest_sum(const double* a, std::size_t lines, std::size_t stride, std::size_t len,
                   std::size_t step) {
  double best = -1.0;
  for (std::size_t l = 0; l < lines; ++l) {
    double s = 0.0;
    for (std::size_t k = 0; k < len; ++k) s += std::fabs(a[l * stride + k * step]);
    best = std::max(best, s);
  }
  return best;
}

template <class T>
int transpose_as(int nRows, int nCols, void* pData) {
  NRMat<T> m(nRows, nCols, static_cast<T*>(pData));
  m.Transpose();
  return 0;
}

}  // namespace

extern "C" {

int zomath_lu(double* pA, int* pnPivots, int nRows, int nCols) {
  if (!pA || !pnPivots) return ZOMATH_ERR_NULL_POINTER;
  if (nRows < 1 || nCols < 1) return kBadSize;
  NagError fail;
  return zomath::platform::lu_factor(nRows, nCols, pA, nCols, pnPivots, fail);
}

int zomath_lu_solve(double* pA, double* pB, int* pnPivots, int nSize, int nRhs) {
  if (!pA || !pB || !pnPivots) return ZOMATH_ERR_NULL_POINTER;
  if (nSize < 1 || nRhs < 1) return kBadSize;
  NagError fail;
  if (int rc = zomath::platform::lu_factor(nSize, nSize, pA, nSize, pnPivots, fail)) return rc;
  fail.reset();
  return zomath::platform::lu_solve(nSize, nRhs, pA, nSize, pnPivots, pB, nRhs, fail);
}

int zomath_qr(const double* pA, double* pQ, double* pR, int nRows, int nCols) {
  if (!pA || !pQ || !pR) return ZOMATH_ERR_NULL_POINTER;
  if (nRows < 1 || nCols < 1) return kBadSize;
  NRMat<double> q(nRows, nRows, pQ), r(nRows, nCols, pR);
  return view(pA, nRows, nCols).QR(q, r);
}

int zomath_svd(int nRows, int nCols, double* pA, double* pS, double* pU, double* pVT) {
  if (!pA || !pS) return ZOMATH_ERR_NULL_POINTER;
  if (nRows < 1 || nCols < 1) return ZOMATH_ERR_SIZE;
  const int k = std::min(nRows, nCols);
  const NRMat<double> a = view(pA, nRows, nCols);
  NRVec<double> s(k, pS);
  if (!pU && !pVT) return a.SVD(s);
  NRMat<double> u = pU ? NRMat<double>(nRows, k, pU) : NRMat<double>(nRows, k);
  NRMat<double> vt = pVT ? NRMat<double>(k, nCols, pVT) : NRMat<double>(k, nCols);
  return a.SVD(s, u, vt);
}

int zomath_svd_complex(int nRows, int nCols, d_complex* pA, double* pS, d_complex* pU,
                       d_complex* pVT) {
  if (!pA || !pS) return ZOMATH_ERR_NULL_POINTER;
  if (nRows < 1 || nCols < 1) return ZOMATH_ERR_SIZE;
  const int k = std::min(nRows, nCols);
  NRMat<d_complex> a(pA, nRows, nCols);
  NRMat<d_complex> u, vt;
  if (pU || pVT) {
    u.SetSize(nRows, k);
    vt.SetSize(k, nCols);
  }
  NagError fail;
  const int rc = zomath::platform::svd(nRows, nCols, a.Data(), nCols, pS, u.Data(), k, vt.Data(),
                                       nCols, fail);
  if (rc == 0 && pU) std::memcpy(pU, u.Data(), count(nRows, k) * sizeof(d_complex));
  if (rc == 0 && pVT) std::memcpy(pVT, vt.Data(), count(k, nCols) * sizeof(d_complex));
  return rc;
}

bool zomath_svdcmp_2(double* pA, int nRows, int nCols, double* pW, double* pV) {
  try {
    if (!pA || !pW || !pV || nRows < 1 || nCols < 1) return false;
    return own_svd(pA, nRows, nCols, pA, pW, pV);
  } catch (...) {
    return false;
  }
}

int zomath_ex_svdcmp(const double* pA, int nRows, int nCols, double* pW, double* pV) {
  if (!pA || !pW || !pV) return ZOMATH_ERR_NULL_POINTER;
  if (nRows < 1 || nCols < 1) return 1;
  try {
    own_svd(pA, nRows, nCols, nullptr, pW, pV);
  } catch (int) {
    return 1;
  }
  return 0;
}

bool zomath_svbksb(double* pU, double* pW, double* pV, int nRows, int nCols, double* pB,
                   double* pX) {
  try {
    if (!pU || !pW || !pV || !pB || !pX || nRows < 1 || nCols < 1) return false;
    return back_substitute(pU, pW, pV, nRows, nCols, pB, pX);
  } catch (...) {
    return false;
  }
}

bool zomath_svbksb_2(double* pU, double* pW, double* pV, int nRows, int nCols, double* pB,
                     double* pX) {
  return zomath_svbksb(pU, pW, pV, nRows, nCols, pB, pX);
}

int zomath_ex_svbksb(double* pU, double* pW, double* pV, int nRows, int nCols, double* pB,
                     double* pX, double dTolerance) {
  if (!pU || !pW || !pV || !pB || !pX) return ZOMATH_ERR_NULL_POINTER;
  if (nRows < 1 || nCols < 1) return 1;
  NRVec<double> w(pW, nCols);
  for (int j = 0; j < nCols; ++j)
    if (w[j] < dTolerance) w[j] = 0.0;
  return back_substitute(pU, w.Data(), pV, nRows, nCols, pB, pX) ? 0 : 1;
}

int zomath_pinv(const double* pA, double* pPinv, int nRows, int nCols, double dTolerance) {
  if (!pA || !pPinv) return ZOMATH_ERR_NULL_POINTER;
  if (nRows < 1 || nCols < 1) return 1;
  NRMat<double> out(nCols, nRows, pPinv);
  return view(pA, nRows, nCols).Pinv(out, dTolerance);
}

int zomath_inverse(double* pA, int nSize) {
  if (!pA) return ZOMATH_ERR_NULL_POINTER;
  if (nSize < 1) return kBadSize;
  NagError fail;
  return zomath::platform::invert(nSize, pA, nSize, fail);
}

int zomath_transpose(int nRows, int nCols, int nType, void* pData) {
  if (!pData) return ZOMATH_ERR_NULL_POINTER;
  if (nRows < 1 || nCols < 1) return ZOMATH_ERR_SIZE;
  switch (nType) {
    case 0: return transpose_as<double>(nRows, nCols, pData);
    case 1:
    case 3: return transpose_as<int>(nRows, nCols, pData);
    case 2: return transpose_as<unsigned short>(nRows, nCols, pData);
    case 4:
    case 7: return transpose_as<unsigned int>(nRows, nCols, pData);  // moves float bits unchanged
    case 10: return transpose_as<d_complex>(nRows, nCols, pData);
    default: return 0;
  }
}

double zomath_norm(const double* pV, unsigned int nSize) {
  if (!pV || nSize == 0) return NANUM;
  const double r = euclidean_norm(pV, nSize);
  return std::isnan(r) ? NANUM : r;
}

double zomath_norm2(const double* pA, unsigned int nRows, unsigned int nCols, int nType) {
  if ((nRows == 0 && nCols == 0) || nType < 1 || nType > 4) return NANUM;
  const std::size_t rows = nRows, cols = nCols, n = rows * cols;
  if (n > 0 && !pA) return NANUM;
  bool infinite = false;
  for (std::size_t k = 0; k < n; ++k) {
    if (std::isnan(pA[k])) return NANUM;
    infinite = infinite || std::isinf(pA[k]);
  }
  if (infinite) return HUGE_VAL;
  switch (nType) {
    case 1: return largest_sum(pA, cols, 1, rows, cols);
    case 2: {
      if (n == 0) return 0.0;
      if (rows > 0x7fffffff || cols > 0x7fffffff) return NANUM;
      NRVec<double> s;
      if (view(pA, static_cast<int>(rows), static_cast<int>(cols)).SVD(s) != 0) return NANUM;
      return s[0];
    }
    case 3: return largest_sum(pA, rows, cols, cols, 1);
    default: return euclidean_norm(pA, n);
  }
}

int zomath_real_eigenvalues(int nSize, double* pA, int nStride, double* pEigen) {
  if (!pA || !pEigen) return ZOMATH_ERR_NULL_POINTER;
  if (nSize < 1 || nStride < nSize) return ZOMATH_ERR_SIZE;
  NRMat<double> a(nSize, nSize), b(0.0, nSize, nSize);
  for (int i = 0; i < nSize; ++i) {
    std::memcpy(a[i], pA + static_cast<std::size_t>(i) * nStride, static_cast<std::size_t>(nSize) * sizeof(double));
    b[i][i] = 1.0;
  }
  NRVec<double> alphar(nSize), alphai(nSize), beta(nSize);
  std::fill(pEigen, pEigen + 2 * static_cast<std::size_t>(nSize), NANUM);
  NagError fail;
  const int rc = zomath::platform::generalized_eigenvalues(nSize, a.Data(), nSize, b.Data(), nSize,
                                                           alphar.Data(), alphai.Data(), beta.Data(), fail);
  if (rc != 0) return rc;
  for (int j = 0; j < nSize; ++j) {
    if (beta[j] == 0.0) continue;  // an infinite eigenvalue stays NANUM
    pEigen[2 * j] = alphar[j] / beta[j];
    pEigen[2 * j + 1] = alphai[j] / beta[j];
  }
  return 0;
}

void covert_lower_triangle_vector_to_matrix(const double* pV, unsigned int nCount, double* pM,
                                            unsigned int nSize) {
  const unsigned long long n = nSize;
  if (!pV || !pM || nCount != n * (n - (n > 0)) / 2) return;
  std::size_t k = 0;
  for (std::size_t i = 1; i < n; ++i)
    for (std::size_t j = 0; j < i; ++j, ++k) pM[i * n + j] = pM[j * n + i] = pV[k];
}

}  // extern "C"
