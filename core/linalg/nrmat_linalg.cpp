// The NRMat<double> factorisation methods: QR and SVD through the platform layer, the
// back-substitution of the own SVD, and the pseudo-inverse.
#include <algorithm>
#include <cblas.h>
#include <cmath>

#include "core/nrvec/nrvec.h"
#include "platform/blas_lock.h"
#include "platform/linalg.h"

namespace zomath {

using platform::NagError;

template <>
int NRMat<double>::QR(NRMat<double>& mQ, NRMat<double>& mR) const {
  if (!IsValid()) return platform::kLinalgBadArgument;
  mQ.SetSize(nn, nn);
  mR.SetSize(nn, mm);
  NagError fail;
  return platform::qr(nn, mm, v[0], mm, mQ.Data(), nn, mR.Data(), mm, fail);
}

template <>
int NRMat<double>::SVD(NRVec<double>& vS, NRMat<double>& mU, NRMat<double>& mVT) const {
  if (!IsValid()) return platform::kLinalgBadArgument;
  const int k = std::min(nn, mm);
  NRMat<double> a(*this);  // the reduction overwrites its input
  vS.SetSize(k);
  mU.SetSize(nn, k);
  mVT.SetSize(k, mm);
  NagError fail;
  return platform::svd(nn, mm, a.Data(), mm, vS.Data(), mU.Data(), k, mVT.Data(), mm, fail);
}

template <>
int NRMat<double>::SVD(NRVec<double>& vS) const {
  if (!IsValid()) return platform::kLinalgBadArgument;
  NRMat<double> a(*this);
  vS.SetSize(std::min(nn, mm));
  NagError fail;
  return platform::svd(nn, mm, a.Data(), mm, vS.Data(), static_cast<double*>(nullptr), 1,
                       static_cast<double*>(nullptr), 1, fail);
}

template <>
bool NRMat<double>::svbksb(const NRVec<double>& vW, const NRMat<double>& mV,
                           const NRVec<double>& vB, NRVec<double>& vX) const {
  const int m = nn, n = mm;
  if (!IsValid() || !vW.IsValid() || !mV.IsValid() || !vB.IsValid() || vW.size() != n ||
      mV.nrows() != n || mV.ncols() != n || vB.size() != m)
    return false;
  // t = diag(1 / w) U' b, gathered row by row of U; then x = V t.
  NRVec<double> t(0.0, n);
  for (int i = 0; i < m; ++i) {
    const double bi = vB[i];
    const double* ui = v[i];
    for (int j = 0; j < n; ++j) t[j] += ui[j] * bi;
  }
  for (int j = 0; j < n; ++j) t[j] = vW[j] != 0.0 ? t[j] / vW[j] : 0.0;
  NRVec<double> x(0.0, n);
  for (int i = 0; i < n; ++i) {
    const double* vi = mV[i];
    double s = 0.0;
    for (int j = 0; j < n; ++j) s += vi[j] * t[j];
    x[i] = s;
  }
  vX = x;  // b and x may be the same array: it is written only now
  return true;
}

template <>
int NRMat<double>::Pinv(NRMat<double>& mPinv, double dTolerance) const {
  if (!IsValid()) return 1;
  const int m = nn, n = mm;
  mPinv.SetSize(n, m);
  // Work on the tall one of A and A'; pinv(A') = pinv(A)'.
  const bool wide = m < n;
  NRMat<double> a(*this);
  if (wide) a.Transpose();
  const int p = a.nrows(), q = a.ncols();  // p >= q
  NRVec<double> s;
  NRMat<double> u, vt;
  if (a.SVD(s, u, vt) != 0) {
    mPinv = NANUM;
    return 1;
  }
  const double tol = dTolerance > 0.0 ? dTolerance : std::max(m, n) * s[0] * 0x1p-52;
  int rank = 0;
  for (; rank < q && s[rank] > tol; ++rank) {
    const double sr = s[rank];
    if (!(sr >= 1.0 || sr * 1.7e+307 > 1.0)) {  // 1 / sr would overflow
      mPinv = NANUM;
      return 1;
    }
    s[rank] = 1.0 / sr;
  }
  if (rank == 0) {
    mPinv = 0.0;
    return 0;
  }
  // W = diag(1 / s) VT over the kept rows; then pinv(A) = W' U' for a tall A, and
  // pinv(A) = (W' U')' = U W for a wide one (U and W of A' there).
  for (int k = 0; k < rank; ++k)
    for (int j = 0; j < q; ++j) vt[k][j] *= s[k];
  if (!wide) {
    platform::blas([&] {
      return cblas_dgemm(CblasRowMajor, CblasTrans, CblasTrans, q, p, rank, 1.0, vt.Data(), q,
                         u.Data(), q, 0.0, mPinv.Data(), m);
    });
  } else {
    platform::blas([&] {
      return cblas_dgemm(CblasRowMajor, CblasNoTrans, CblasNoTrans, p, q, rank, 1.0, u.Data(), q,
                         vt.Data(), q, 0.0, mPinv.Data(), m);
    });
  }
  return 0;
}

}  // namespace zomath
