// Jacobi theta functions of a real argument x and nome q, with period 1 in x:
//   theta_1(x, q) = 2 sum_{n>=0} (-1)^n q^{(n+1/2)^2} sin((2n+1) pi x)
//   theta_2(x, q) = 2 sum_{n>=0} q^{(n+1/2)^2} cos((2n+1) pi x)
//   theta_3(x, q) = 1 + 2 sum_{n>=1} q^{n^2} cos(2 n pi x)
//   theta_4(x, q) = theta_0(x, q) = 1 + 2 sum_{n>=1} (-1)^n q^{n^2} cos(2 n pi x)
#pragma once

#include "platform/error_record.h"

namespace zomath::platform {

// k outside 0..4.
inline constexpr int kThetaBadKind = 1;
// q outside 0 <= q < 1.
inline constexpr int kThetaBadNome = 2;
// x infinite.
inline constexpr int kThetaInfiniteArgument = 3;

double jacobi_theta(int k, double x, double q, NagError& err);

// The symmetries that bring theta_k(x), k = 0..4 and x finite, to theta_1 or theta_3 at
// 0 <= a <= 1/2: theta_k(x) = sign * theta_base(a), with the reduction exact.
struct ThetaReduction {
  int base;     // 1 or 3
  double a;     // in [0, 1/2]
  double sign;  // +1 or -1
};
ThetaReduction reduce_theta_argument(int k, double x);

}  // namespace zomath::platform
