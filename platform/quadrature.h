// Adaptive quadrature of the QUADPACK family over GSL: 21-point Gauss-Kronrod bisection with
// Wynn's epsilon extrapolation on a finite interval (QAGS), and the same on (0, 1] after the
// change of variable x = a + (1 - t) / t for a half-infinite or infinite interval (QAGI).
//
// Each routine resets `fail`, returns 0 with the estimate in *pResult, or one of the codes
// below with *pResult left as it was. The GSL error handler is switched off around the call and
// put back afterwards, so a failure never aborts the host.
#pragma once

#include "platform/error_record.h"

namespace zomath::platform {

// The sub-interval budget was spent before the error estimate met the tolerance.
constexpr int kQuadTooManySubintervals = 1;
// Roundoff stopped the error estimate from reaching the tolerance (on an interval or in the
// extrapolation table).
constexpr int kQuadRoundoff = 2;
// The integrand behaves too badly on some sub-interval to be bisected further (a
// non-integrable singularity, a jump that the bisection cannot isolate).
constexpr int kQuadBadIntegrand = 3;
// The extrapolation did not converge, or the integral diverges or converges too slowly.
constexpr int kQuadNoConvergence = 4;
// A bound or tolerance the routine cannot take (NaN, a negative tolerance, an infinite bound
// where a finite one is expected, a null integrand, a budget below 1).
constexpr int kQuadBadArgument = 70;
// The workspace of the sub-intervals could not be had.
constexpr int kQuadNoMemory = 73;

// f(x, data): the integrand with its caller's context.
using Integrand = double (*)(double x, void* data);

struct QuadratureOptions {
  double absTolerance = 1e-5;
  double relTolerance = 1e-7;
  int maxSubintervals = 500;
};

// Integral of f from a to b, both finite; a > b gives the negative of the integral from b to a.
// *pAbsError (if not null) receives the estimate of the absolute error, also on failure.
int integrate_finite(Integrand f, void* data, double a, double b, const QuadratureOptions& opt,
                     double* pResult, double* pAbsError, NagError& fail);

// Which way an interval runs off to infinity.
enum class InfiniteRange { kUpper, kLower, kBoth };

// Integral of f over [bound, +inf) (kUpper), (-inf, bound] (kLower) or the whole line (kBoth,
// bound ignored). bound must be finite for the half-infinite ranges.
int integrate_infinite(Integrand f, void* data, double bound, InfiniteRange range,
                       const QuadratureOptions& opt, double* pResult, double* pAbsError,
                       NagError& fail);

}  // namespace zomath::platform
