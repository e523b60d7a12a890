#include "platform/householder_qr.h"

#include <lapacke.h>

#include <algorithm>

#include "platform/blas_lock.h"
#include "platform/workspace.h"
#include "zomath/core.h"

namespace zomath::platform {

int HouseholderQr::factorise() {
  tau = buffer<double>(static_cast<std::size_t>(p));
  double q1 = 0, q2 = 0;
  lapack_int info = blas([&] {
    return LAPACKE_dgeqrf_work(LAPACK_COL_MAJOR, m, p, a.get(), m, tau.data(), &q1, -1);
  });
  if (!info)
    info = blas([&] {
      return LAPACKE_dormqr_work(LAPACK_COL_MAJOR, 'L', 'T', m, 1, p, a.get(), m, tau.data(),
                                 a.get(), m, &q2, -1);
    });
  if (info == LAPACK_WORK_MEMORY_ERROR || info == LAPACK_TRANSPOSE_MEMORY_ERROR)
    throw ZOMATH_ERROR_NO_MEMORY;
  if (info) return static_cast<int>(info);
  const lapack_int lwork = std::max<lapack_int>(
      {static_cast<lapack_int>(q1), static_cast<lapack_int>(q2), p, 1});
  work = buffer<double>(static_cast<std::size_t>(lwork));
  return static_cast<int>(blas([&] {
    return LAPACKE_dgeqrf_work(LAPACK_COL_MAJOR, m, p, a.get(), m, tau.data(), work.data(), lwork);
  }));
}

int HouseholderQr::apply(char trans, double* v) {
  return static_cast<int>(blas([&] {
    return LAPACKE_dormqr_work(LAPACK_COL_MAJOR, 'L', trans, m, 1, p, a.get(), m, tau.data(), v,
                               m, work.data(), static_cast<lapack_int>(work.size()));
  }));
}

}  // namespace zomath::platform
