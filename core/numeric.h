// Missing-value tests, NANUM-aware arithmetic, tolerance comparison and decimal rounding:
// the helpers every export builds on.
#pragma once

#include <cmath>

#include "zomath/core.h"

namespace zomath {

constexpr double kNanum = NANUM;

inline bool is_nanum(double x) { return x == NANUM; }

// Missing: NANUM for double, either half NANUM for d_complex; other types have no missing value.
template <class T>
inline bool is_missing(const T&) { return false; }
template <>
inline bool is_missing<double>(const double& x) { return x == NANUM; }
template <>
inline bool is_missing<d_complex>(const d_complex& z) { return z.re == NANUM || z.im == NANUM; }

// Each returns NANUM when either operand is NANUM; the quotient also when the divisor is 0.0.
inline double nanum_add(double a, double b) { return (a == NANUM || b == NANUM) ? NANUM : a + b; }
inline double nanum_sub(double a, double b) { return (a == NANUM || b == NANUM) ? NANUM : a - b; }
inline double nanum_mul(double a, double b) { return (a == NANUM || b == NANUM) ? NANUM : a * b; }
inline double nanum_div(double a, double b) {
  return (a == NANUM || b == NANUM || b == 0.0) ? NANUM : a / b;
}

// True when |a - b| < tol, strictly: a tolerance of 0 makes nothing equal, and a NaN in any
// operand gives false.
inline bool is_near(double a, double b, double tol) { return std::fabs(a - b) < tol; }

// Rounds x to nDecimals decimal places, half away from zero. nDecimals of 309 or more (read as
// unsigned, so a negative count too) returns x unchanged, as do NANUM, NaN and infinities.
double round_decimals(double x, int nDecimals);

}  // namespace zomath
