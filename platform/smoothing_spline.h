// The cubic smoothing spline with automatic knots, and the evaluation of a cubic spline in
// B-spline form.
//
// fit_smoothing_spline finds, for data (x_i, y_i) with weights w_i and a smoothing factor
// s >= 0, the cubic spline S with the fewest knots and the smoothest third derivative such that
// sum (w_i (y_i - S(x_i)))^2 <= s. Knots are added where the residuals are largest until the
// least-squares spline meets the bound; then the jumps of the third derivative at the knots are
// penalised with a weight 1/p and p is found by rational iteration so that the residual sum is s
// within 0.001 s. s = 0 gives the interpolating spline; a large s (infinity too) the
// least-squares cubic. Where a knot would fall on an x tied with a knot already there, an inner
// data point of the interval takes it, so that tied x do not double knots.
// P. Dierckx, J. Comput. Appl. Math. 1 (1975) 165-184, and "Curve and Surface Fitting with
// Splines", Oxford 1993, chapter 5.
#pragma once

#include "platform/error_record.h"
#include "zomath/records.h"

namespace zomath::platform {

// Codes of fit_smoothing_spline. After 2 and 3, and after 1 when the knots ran out, the spline
// of the last step is still returned.
//
// The knots ran out before the residual sum came down to s: the budget nest is spent, or tied x
// leave no interval a knot can go into, or leave the coefficients undetermined (no spline then).
constexpr int kSplineKnotLimit = 1;
// The search for p left the bracket that a convex, decreasing f(p) keeps: s is too small for
// the rounding of the residual sums.
constexpr int kSplineSearchFailed = 2;
// Twenty rounds of the search for p without |f(p) - s| < 0.001 s.
constexpr int kSplineIterationLimit = 3;
// Fewer than 4 points, x decreasing somewhere or all equal, a weight not positive, data not
// finite, s negative or NaN, nest below 8. No spline.
constexpr int kSplineBadInput = 10;
// Working storage could not be had.
constexpr int kSplineNoMemory = 73;

// Codes of evaluate_spline.
constexpr int kSplineOutsideInterval = 1;  // x is not within [t[3], t[n-4]] (NaN included)
constexpr int kSplineBadKnots = 2;         // fewer than 8 knots, or a null array

// Fits the smoothing spline to m points with x non-decreasing, a cold start, and at most nest
// knots (nest = m + 4 is the most an interpolating spline needs). When a spline comes back,
// *pSpline holds nKnots knots and nKnots coefficients (the last 4 are 0), both from std::malloc:
// release them with release_spline; *pResidual (if not null) receives its weighted residual
// sum. Otherwise *pSpline is empty. fail is reset first.
int fit_smoothing_spline(int m, const double* x, const double* y, const double* w, double s,
                         int nest, Nag_Spline* pSpline, double* pResidual, NagError& fail);

// Value of the spline at x in [t[3], t[n-4]]. The search for the knot interval starts from
// pSpline->nLastInterval and leaves the interval found there, so that increasing x costs a step,
// not a search; the result does not depend on where the search starts.
int evaluate_spline(Nag_Spline* pSpline, double x, double* pValue, NagError& fail);

// Frees the coefficients, then the knots; clears the pointers and the count.
void release_spline(Nag_Spline* pSpline);

}  // namespace zomath::platform
