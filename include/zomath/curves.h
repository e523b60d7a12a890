/* zomath: curve processing. A curve is two parallel double arrays, x and y, owned by the caller
 * and only read unless an export says it works in place.
 *
 * Sections: resampling; look-ups and level search; order, duplicates, grouping and missing
 * values; curve arithmetic and derivatives. Codes: -11 null pointer, -15 too few points, -18 a
 * bad size, mode or value, -166 no memory for working storage, and those named below. This
 * header is plain C. */
#ifndef ZOMATH_CURVES_H
#define ZOMATH_CURVES_H

#include <stdbool.h>
#include <stddef.h>

#include "zomath/core.h"

/* Codes of the curve exports beside the shared ones of zomath/core.h. */
enum {
  ZOMATH_CURVE_ERR_EDGE_ORDER = -3,       /* group edges not strictly monotonic */
  ZOMATH_CURVE_ERR_METHOD = -10,          /* unknown parameterisation */
  ZOMATH_CURVE_ERR_DIMENSIONS = -12,      /* fewer than 2 dimensions */
  ZOMATH_CURVE_ERR_NO_POINTS = -13,       /* no points */
  ZOMATH_CURVE_ERR_SMOOTHING = -14,       /* negative (or NaN) smoothing factor */
  ZOMATH_CURVE_ERR_SORT = -33,            /* the sort of the duplicates removal failed */
  ZOMATH_CURVE_ERR_EDGE_OUTSIDE = -37     /* smallest group edge outside the x range */
};

/* Positive codes of the smoothing spline (mode 2 of zomath_interpolate). */
enum {
  ZOMATH_SPLINE_KNOT_LIMIT = 1,       /* s not reachable with nSrcSize + 4 knots, or x tied too often */
  ZOMATH_SPLINE_SEARCH_FAILED = 2,    /* search for the smoothing parameter failed: s too small */
  ZOMATH_SPLINE_ITERATION_LIMIT = 3,  /* 20 rounds without |residual sum - s| < 0.001 s */
  ZOMATH_SPLINE_BAD_INPUT = 10,       /* weight not positive, data not finite, all x equal */
  ZOMATH_SPLINE_NO_MEMORY = 73
};

/* Modes of zomath_interpolate, its option bit and its boundary value. */
#define ZOMATH_INTERP_LINEAR 0
#define ZOMATH_INTERP_SPLINE 1
#define ZOMATH_INTERP_SMOOTHING 2
#define ZOMATH_INTERP_SOURCE_ORDERED 0x10000000u
#define ZOMATH_SPLINE_NOT_A_KNOT 1

/* Modes of zomath_derivative. */
#define ZOMATH_DERIV_MEAN 0
#define ZOMATH_DERIV_FORWARD 2
#define ZOMATH_DERIV_BACKWARD 4

/* One curve of a list: nSize points at pX, pY; nReserved is not read. */
typedef struct CurveRecord {
  unsigned int nSize;
  const double* pX;
  const double* pY;
  unsigned int nReserved;
} CurveRecord;

ZOMATH_EXTERN_C_BEGIN

/* ==== Resampling ============================================================================ */

/* pY[i] = the curve through the source at pX[i]. nMode 0 linear (extrapolates along the end
 * segments; one source point is read only at its own x), 1 cubic spline (natural; nBoundary 1
 * and 5 or more points: not-a-knot; continued as the end cubics outside), 2 smoothing spline
 * with automatic knots, weighted residual sum <= dSmoothing (weights pWeights or 1), read inside
 * the source range and along the raw end segments outside. The source is copied and sorted by x
 * unless nOptions has ZOMATH_INTERP_SOURCE_ORDERED, which only tests it (-17 unless
 * non-decreasing). NANUM x gives NANUM; a NANUM in the source gives NANUM where it is used
 * (mode 0: its segments; modes 1 and 2: everywhere). pDerivs (optional, nSrcSize doubles):
 * mode 1 the second derivatives at the sorted source points, mode 2 the B-spline coefficients
 * (zeros beyond them). Codes: -11, -15 (sizes 0; mode 1 < 2, mode 2 < 4 points), -14, -17, -18
 * (mode, after the sort), -166, ZOMATH_SPLINE_* (mode 2). Tied source x: mode 0 reads the y of
 * the tied point its bisection meets; mode 1 solves the pieces between ties apart. */
ZOMATH_API int zomath_interpolate(const double* pX, double* pY, unsigned int nSize,
                                  const double* pSrcX, const double* pSrcY, unsigned int nSrcSize,
                                  int nMode, double dSmoothing, const double* pWeights,
                                  double* pDerivs, unsigned int nOptions, int nBoundary);

/* One parameter value a point of a curve in nDim dimensions (pPoints row-major, row d holding
 * coordinate d of all nPoints points): nMethod 0 the index, 1 centripetal (T[i] = T[i-1] +
 * |P[i] - P[i-1]|^(1/2)). Codes: -13 no points, -12 nDim < 2, -11, -10 unknown method. */
ZOMATH_API int zomath_parametric_interpolate_range(double* pT, const double* pPoints,
                                                   unsigned int nPoints, unsigned int nDim,
                                                   int nMethod);

/* Each coordinate row of pPoints read against pT at the nNewPoints values pNewT into the rows of
 * pNewPoints, by zomath_interpolate (natural spline in mode 1). -15 for no points or nDim < 2,
 * -11, or the first failure of zomath_interpolate (later rows unwritten). */
ZOMATH_API int zomath_parametric_interpolate_eval(const double* pT, const double* pPoints,
                                                  unsigned int nPoints, const double* pNewT,
                                                  double* pNewPoints, unsigned int nNewPoints,
                                                  unsigned int nDim, int nMode,
                                                  double dSmoothing, const double* pWeights);

/* ==== Look-ups and level search ============================================================= */

/* *pYOut = y at dX on the line through the bracketing points (extrapolating); an exact hit on a
 * bisection's middle point gives that point's y. bSorted: x already ascending (else a sorted
 * copy is used). bUniform: the segment is trunc((dX - x0) / (x1 - x0)), with anything outside
 * 0 .. n - 2 taken as the last segment. NANUM dX gives NANUM. Codes: -11, -18 (nSize < 2),
 * -166. */
ZOMATH_API int zomath_y_form_x(unsigned int nSize, const double* pX, const double* pY, double dX,
                               double* pYOut, bool bSorted, bool bUniform);

/* *pXOut = the x of the point whose y is nearest dY (no interpolation; between two equally near,
 * the higher y). Points with a NANUM are passed over; none left, or dY NANUM, gives NANUM.
 * Codes: -11, -18 (nSize < 2), -166. */
ZOMATH_API int zomath_x_from_y(unsigned int nSize, const double* pX, const double* pY, double dY,
                               double* pXOut);

/* Every x (up to nMaxXs) where the curve reaches dY, in curve order: a point within dTolerance
 * (inclusive) gives its x and index i; a strict crossing between points i - 1 and i is bisected
 * with fnYAtX(pCtx1, pCtx2, pCtx3, x, &y) for up to nMaxIter rounds, giving the last middle and
 * index -i. A level beyond the y range by more than dReach gives no x; within reach it is
 * clamped to the extreme. Unused slots: NANUM and -nSize. Points with a NANUM are passed over.
 * Codes: -18 dY NANUM, -11 (pX, pY, pXs, pCtx1, pCtx3, fnYAtX null), -2 (nSize 0, nMaxXs 0 or
 * above nSize), -1 fnYAtX answered false, -166. */
ZOMATH_API int zomath_find_xs(double dY, unsigned int nSize, const double* pX, const double* pY,
                              unsigned int nMaxXs, double* pXs, void* pCtx1, void* pCtx2,
                              void* pCtx3, bool (*fnYAtX)(void*, void*, void*, double, double*),
                              int* pIndices, double dReach, double dTolerance,
                              unsigned int nMaxIter);

/* Estimate of the y of a horizontal asymptote: the y at the flatter end when the extremes of y
 * lie far apart in x, otherwise the mean of the end values. Points with a NANUM are passed over.
 * Codes: -11, -2 (fewer than 2 points), -166. */
ZOMATH_API int zomath_yatasymt(unsigned int nSize, const double* pX, const double* pY,
                               double* pYOut);

/* Estimate of the x of a vertical asymptote: the x of the y extreme that the steeper end rises
 * to, or the middle of two extremes that lie close together. Codes as zomath_yatasymt. */
ZOMATH_API int zomath_xatasymt(unsigned int nSize, const double* pX, const double* pY,
                               double* pXOut);

/* ==== Order, duplicates, grouping and missing values ======================================== */

/* Sorts the points in place by x (ascending or descending), y following; introsort, so tied
 * x may change order. Nothing happens for a null array or nSize < 2. */
ZOMATH_API void zomath_sort_xy(double* pX, double* pY, unsigned int nSize, bool bAscending);

/* 2 rising, 1 falling, 0 neither (strictly with bStrict, else ties allowed; rising is tested
 * first, so a constant or single-element sequence without bStrict answers 2). -11 null,
 * -5 nSize 0. */
ZOMATH_API int zomath_is_monotonic(const double* p, unsigned int nSize, bool bStrict);

/* The first nUsed points (all for 0 or nUsed >= nSize) cut into nSegments consecutive segments
 * of nUsed / nSegments points, the last taking the rest: the mean (pMeans) and sample standard
 * deviation (pSDs, optional; NANUM from fewer than 2 differences) of each segment's first
 * differences, and its length (pnCounts, optional). Differences with a NANUM are left out.
 * Codes: -11, -15 (nSize < 2 or nSegments < 1), -7 a segment below 2 points, -166. */
ZOMATH_API int zomath_mean_increment(unsigned int nSize, const double* pData, double* pMeans,
                                     int nSegments, double* pSDs, int* pnCounts,
                                     unsigned int nUsed);

/* The order of a sequence judged by its mean step: 2 rising, 1 falling, 0 neither. Steps that
 * are all equal answer by their sign (0 for none); otherwise one-sided t tests of the first
 * differences against 0, rising first, answer when their probability is below 1 - dConfidence
 * (so a confidence of 1 answers 0). Differences with a NANUM are left out; none left: 0.
 * pMeanInc, pSDInc, pnCount (optional): as zomath_mean_increment with one segment. Codes: -15
 * (nSize < 2, dConfidence outside 0..1 or NaN), then those of zomath_mean_increment (-11,
 * -166). */
ZOMATH_API int zomath_check_order(unsigned int nSize, const double* pData, double* pMeanInc,
                                  double* pSDInc, int* pnCount, double dConfidence);

/* zomath_check_order at confidence 0.8 on nCurves consecutive segments of nSize / nCurves points
 * (the last taking the rest): 2 all rising, 1 all falling or all without order, 0 segments that
 * disagree. Every segment is judged; the optional arrays get one entry a segment. Codes: -2
 * (nSize 0, nCurves < 1, segments below 2 points), -8 null pData. */
ZOMATH_API int zomath_check_order_curve(unsigned int nSize, const double* pData, int nCurves,
                                        double* pMeanInc, double* pSDInc, int* pnCounts);

/* zomath_check_order_curve on the x of each curve with nSegments segments, read the other way
 * round: 0 the curves agree on an order (rising or falling), 1 they agree on none, 2 they
 * disagree. The optional arrays get nSegments entries a curve, curve after curve. Codes: -2
 * (nCurves < 2), -8 (null pCurves, or a null pX or pY in it), or the first curve's failure. */
ZOMATH_API int zomath_check_order_multiple_curves(unsigned int nCurves, const CurveRecord* pCurves,
                                                  int nSegments, double* pMeanInc,
                                                  double* pSDInc, int* pnCounts);

/* How far from nStart (counted from the far end when bForward is false) the points stay one
 * straight line. A window of 3 steps (nStep, or a tenth of the span nSize * dFraction when not
 * positive) walks over the span, step by step, until the intercept of its line fit differs from
 * that of the first fit (from the start to |nInitial| points on, or 3 steps for 0) by more than
 * dFactor of its standard error, or it cannot be fitted. *pnEnd: the end of the last window that
 * passed, start when none did, the span's last index when all did. Codes: -11 (pX, pY, pnEnd),
 * -18 (nSize 0 or above INT_MAX, nStart >= nSize, dFraction negative or NaN, dFactor NaN). */
ZOMATH_API int zomath_check_linear(unsigned int nSize, const double* pX, const double* pY,
                                   int* pnEnd, double dFraction, double dFactor,
                                   unsigned int nStart, bool bForward, int nInitial, int nStep);

/* Merges, in place, runs of neighbours whose x gaps are within dTolerance (1e-8 when not
 * positive) times the x range: the run becomes one point at its middle x with the median
 * (nMode 1), minimum (2), maximum (3), sum (4) or mean (other values below 5) of its y, NANUM
 * left out (NANUM when nothing is left). bSort sorts by x first. pDupX receives each merged x
 * and moves a cursor that pDupCounts (run lengths) shares, so pDupCounts alone keeps
 * overwriting its first slot; *pnDupGroups the number of merged runs. Returns the new size, or
 * -18 (nMode >= 5, nSize < 2), -11, -33, -166. */
ZOMATH_API int zomath_xy_remove_duplicates(double* pX, double* pY, unsigned int nSize, int nMode,
                                           double dTolerance, bool bSort, double* pDupX,
                                           double* pDupCounts, int* pnDupGroups);

/* Sorts the points in place in the direction of the (strictly monotonic) edges, y following,
 * and gives for each edge the index of the last point at or before it (-1 for none, nSize - 1
 * once the data are passed). Codes: -5 nSize or nEdges < 1, -11, -37 smallest edge outside the
 * x range, -3 edges not strictly monotonic, -166. */
ZOMATH_API int zomath_group_xy_by_x(int nSize, double* pX, double* pY, int nEdges,
                                    const double* pEdges, int* pLastIndices);

/* As zomath_group_xy_by_x, but a point on an edge opens the next group, empty groups are
 * dropped and the last group takes every remaining point. Returns the number of groups. */
ZOMATH_API int zomath_group_xy_by_x_new(int nSize, double* pX, double* pY, int nEdges,
                                        const double* pEdges, int* pLastIndices);

/* Removes, in place, the points whose x or y equals dMissing; the rest keep their order and
 * pnIndices (optional) receives their input indices. Returns the number kept, or -1 for a null
 * array or nSize 0 (or above INT_MAX). */
ZOMATH_API int zomath_1d_remove_missingvalue(double* pX, double* pY, unsigned int nSize,
                                             double dMissing, int* pnIndices);

/* A copy of the curve sorted by x: pXOut the sorted x, pnIndices (optional) the input index of
 * each. pYOut the sorted y, result false, when bResample is false or the sorted x are evenly
 * spaced (relative tolerance 1e-8); otherwise the curve read linearly at the sorted x, result
 * true (tied x then take the y that the reading meets). False also for null arrays or nSize 0. */
ZOMATH_API bool zomath_generate_data_for_non_monotonic(unsigned int nSize, const double* pX,
                                                       const double* pY, double* pXOut,
                                                       double* pYOut, int* pnIndices,
                                                       bool bResample);

/* ==== Curve arithmetic and derivatives ====================================================== */

/* Combines two curves on nSize1 output points: x1 itself (nXMode 0) or evenly spaced over the
 * overlap of the two x ranges (nXMode 1; no overlap: NANUM in both outputs, return 0). Both
 * curves are read there by zomath_interpolate (mode nInterpolation, smoothing dOption, natural
 * ends), then y1 + y2, y1 - y2, y1 / y2, y1 * y2 or y1 ^ y2 for nOperator 0 to 4 (another
 * operator leaves pYOut alone). NANUM in, NANUM out; a divisor whose magnitude is below the
 * smallest normal double, or a power with no real value, gives NANUM. Codes: -11, -5 (a size
 * below 1 or nSizeOut < nSize1), -18 unknown nXMode, or the code of zomath_interpolate. */
ZOMATH_API int zomath_simple_math(int nSizeOut, double* pXOut, double* pYOut, int nSize1,
                                  const double* pX1, const double* pY1, int nSize2,
                                  const double* pX2, const double* pY2, int nOperator,
                                  int nXMode, int nInterpolation, double dOption);

/* Slopes of the curve at its points: nMode 0 the mean of the slopes to the two neighbours
 * (the one there is at the ends, or where the other is missing), 2 the forward slope, 4 the
 * backward slope (the other one at the last, first point). A slope across a zero x step or
 * from a NANUM is NANUM. pDeriv may be pY. Modes 1 and 3 are reserved. Codes: -11, -7 (fewer
 * than 2 points), -18 (another mode). */
ZOMATH_API int zomath_derivative(const double* pX, const double* pY, double* pDeriv,
                                 unsigned int nSize, int nMode);

/* ==== Smoothing ============================================================================= */

/* Boundary modes of the window filters: what a window reads beyond the ends of the data. */
#define ZOMATH_BOUNDARY_NONE 0     /* averaging and percentiles shrink the window symmetrically;
                                      Savitzky-Golay fits the first and the last window */
#define ZOMATH_BOUNDARY_REFLECT 1  /* about the half sample: position -1 reads element 0 */
#define ZOMATH_BOUNDARY_REPEAT 2   /* the end value */
#define ZOMATH_BOUNDARY_PERIODIC 3 /* position -1 reads the last element, position n the first */
#define ZOMATH_BOUNDARY_LINEAR 4   /* a straight line through the end data */
#define ZOMATH_BOUNDARY_ZERO 5     /* zeros (Savitzky-Golay, percentiles); 0 in plain averaging */

/* Methods of zomath_smooth and shapes of get_sampling_window_offset. */
#define ZOMATH_SMOOTH_ADJACENT_AVERAGING 0
#define ZOMATH_SMOOTH_SAVITZKY_GOLAY 1
#define ZOMATH_SMOOTH_PERCENTILE 2
#define ZOMATH_WINDOW_RECTANGLE 0
#define ZOMATH_WINDOW_DISC 1
#define ZOMATH_WINDOW_CROSS 2
#define ZOMATH_WINDOW_DIAGONALS 3

/* Codes of the smoothing exports beside the shared ones. The Fourier filter's are positive. */
enum {
  ZOMATH_SMOOTH_ERR_WINDOW = -9,  /* averaging: window too wide, boundary not supported, or
                                     linear extension without two values at an end */
  ZOMATH_FFT_BAD_SIZE = 1,        /* no points, or more than INT_MAX */
  ZOMATH_FFT_BAD_FILTER_TYPE = 2, /* unknown filter type */
  ZOMATH_FFT_BAD_ARGUMENT = 3,    /* cut-off NaN or below 0 */
  ZOMATH_FFT_NO_MEMORY = 4        /* working storage or a transform plan could not be had */
};

/* One of the three window filters by nMethod (ZOMATH_SMOOTH_*), nLeft the half width of each:
 * zomath_adjave_smooth (reads bWeighted), zomath_savitsky_golay (nRight, nPolyOrder, nDeriv)
 * or zomath_median_filter (dPercent, bEdfAver), with nBoundary 0 to 4. pDst may be pSrc.
 * Codes: -5 nSize < 1, -11, -18 nMethod above 2 or nBoundary above 4 (negatives included),
 * then the filter's own. */
ZOMATH_API int zomath_smooth(int nSize, const double* pSrc, double* pDst, int nLeft, int nMethod,
                             int nBoundary, int nRight, int nPolyOrder, int nDeriv,
                             double dPercent, bool bWeighted, bool bEdfAver);

/* Moving average over the 2 nHalf + 1 points about each point, NANUM left out (a window of
 * NANUM alone gives NANUM). Plain: a running sum with its rounding errors carried, so the
 * cost does not depend on nHalf and nothing drifts; weighted: offset k weighs
 * 1 - (k / (nHalf + 1))^2. Mode 0 (and 5 when plain) shrinks the window to stay centred, so
 * the end points are their own; mode 4 continues from each end the line through its first two
 * values that are not NANUM: position -k reads v0 + k (v0 - v1). nSize 1 returns 0 with pDst
 * unwritten. pDst may be pSrc. Codes: -11, -9 (nHalf < 0 or >= nSize, a mode outside 0..5, 5
 * when weighted, mode 4 with fewer than two values at an end), -166. */
ZOMATH_API int zomath_adjave_smooth(const double* pSrc, double* pDst, unsigned int nSize,
                                    int nHalf, int nBoundary, bool bWeighted);

/* Savitzky-Golay filter over offsets -nLeft..nRight (nRight < 0: nLeft) with a polynomial of
 * order nPolyOrder: coefficient nDeriv of the local polynomial in index units (the nDeriv-th
 * derivative / nDeriv!). Boundary 0 fits the first and the last window whole and reads those
 * polynomials at the first nLeft + 1 (nDeriv > 0: nLeft) and last nRight points, as true
 * nDeriv-th derivatives; 1 to 5 pad the data (mode 4 with the line through the two end points)
 * and filter every point alike. NANUM is an ordinary number here (the end fits leave it out;
 * an end fit without values gives NANUM). pDst may be pSrc. Codes: -11, -18 (nLeft < 0,
 * nPolyOrder < 1, nDeriv < 0 or above the order, nBoundary > 5, window shorter than
 * nPolyOrder + 1 points or longer than nSize), -1 the weights could not be had to 15 digits
 * (orders above about 22), -166. */
ZOMATH_API int zomath_savitsky_golay(const double* pSrc, double* pDst, unsigned int nSize,
                                     int nLeft, int nRight, int nPolyOrder, int nDeriv,
                                     unsigned int nBoundary);

/* The nDeriv-th derivative of y in x units for evenly spaced x, by zomath_savitsky_golay with
 * boundary 0 (nRight -1: nLeft), times |1 / (x1 - x0)|^nDeriv nDeriv! (the ends, already true
 * derivatives, take the factorial as well), negated for falling x and odd nDeriv. bClean: each
 * change of sign between neighbours is made to pass through an exact 0 (the second of the pair
 * is set to 0). NANUM outputs stay NANUM. Codes: -11, -1 the first two x equal (to 12 digits),
 * -18 (nSize < 3, nLeft or nRight < 1, nSize < nLeft + nRight), those of zomath_savitsky_golay. */
ZOMATH_API int zomath_savitsky_golay_derivative(const double* pX, const double* pY,
                                                double* pDeriv, unsigned int nSize, int nLeft,
                                                int nRight, int nPolyOrder, int nDeriv,
                                                bool bClean);

/* Running percentile dPercent of the 2 nHalf + 1 points about each point, by the rule
 * INTERPOLATE_EDF_AVER (bEdfAver) or INTERPOLATE_EDF of zomath_percentiles, NANUM and NaN left
 * out; the median at 50. The window is kept sorted as it slides (at most 2 nHalf + 1 moves a
 * point). Mode 0 shrinks the window to stay centred; 1 to 5 pad the data from the nHalf end
 * points (mode 4: the line fitted through them). A window without values gives NANUM.
 * pDst may be pSrc. Codes: -11, -151 (dPercent outside 0..100, nHalf < 0,
 * nSize < 2 nHalf + 1, nBoundary > 5), -155 every padded window was NANUM alone, -166. */
ZOMATH_API int zomath_median_filter(int nSize, const double* pSrc, double* pDst, int nHalf,
                                    double dPercent, unsigned int nBoundary, bool bEdfAver);

/* Mean (pAve) and standard deviation (pSD, n - 1 denominator) of the nWindow values starting
 * at 0, nStep, 2 nStep, ... below nSize, a window past the end continuing from the start
 * (NANUM left out; no value: NANUM). Either output may be null; each needs one slot a window.
 * Returns the number of windows, or -11 (null pData), -18 (nStep or nWindow 0, nWindow or
 * nSize above INT_MAX), -166. */
ZOMATH_API int zomath_d_running_ave_circular(const double* pData, unsigned int nSize,
                                             unsigned int nWindow, double* pAve, double* pSD,
                                             unsigned int nStep);

/* Low-pass Fourier filter. The data, taken as one period, are transformed; bin k (k cycles
 * over the series) stands at f = k / (nSize - 1) and is multiplied by 1 for
 * f <= dCutoff - d, 0 for f >= dCutoff + d and a raised cosine between, d = 1 / (2 (nSize - 1)),
 * so 1/2 at dCutoff (the level, k = 0, always passes); then transformed back. dCutoff is thus
 * about cycles per sample (the bins end near 0.5). A NaN or infinity spreads to every output;
 * NANUM is an ordinary number. pDst may be pSrc and is written only on success. Codes: -11,
 * ZOMATH_FFT_* (nSize 0 or above INT_MAX, dCutoff NaN or below 0, no memory). */
ZOMATH_API int zomsp_fft_filter_smoothing(unsigned int nSize, const double* pSrc, double* pDst,
                                          double dCutoff);

/* Offsets of the cells of a nWidth by nHeight window (area odd) about its centre in a
 * row-major image of row stride nStride: pOffsets[i] = dx + dy nStride, dx and dy in pDX and
 * pDY (room for nWidth nHeight each). Shapes: 0 rectangle row by row (pDY counts from
 * -nWidth/2 whatever the height), 1 disc dx^2 + dy^2 <= (nWidth/2)^2 row by row, 2 cross (the
 * column, then the row left and right of the centre), 3 both diagonals (dx = dy, then the
 * other from the left, then from the right); 1 and 3 square only. Returns the count; 0 for a
 * 1 by 1 window (nothing written); -1 for a size or stride below 1, an even area, an unknown
 * shape, a null array, or an offset beyond the int range. */
ZOMATH_API int get_sampling_window_offset(int* pOffsets, int* pDX, int* pDY, int nStride,
                                          int nWidth, int nHeight, int nShape);

ZOMATH_EXTERN_C_END

#endif /* ZOMATH_CURVES_H */
