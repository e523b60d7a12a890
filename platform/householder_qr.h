// Householder QR of a column-major matrix in place (LAPACK's dgeqrf), kept for products of Q or
// Q' with one column (dormqr): the least-squares step of the regression and of the polynomial
// refinement. The workspace is sized once for both.
#pragma once

#include <memory>
#include <vector>

namespace zomath::platform {

struct HouseholderQr {
  int m = 0, p = 0;             // rows (m >= p) and columns; the leading dimension is m
  std::unique_ptr<double[]> a;  // m p: R on and above the diagonal, the reflectors below
  std::vector<double> tau;      // p reflector factors
  std::vector<double> work;

  // Factorises a (sized by the caller, tau by this). Returns LAPACK's info: 0, or minus the
  // argument refused. Throws ZOMATH_ERROR_NO_MEMORY when workspace can't be had.
  int factorise();
  // v (m entries) becomes Q v for trans 'N', Q' v for 'T'; LAPACK's info.
  int apply(char trans, double* v);
};

}  // namespace zomath::platform
