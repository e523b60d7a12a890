/* zomath: peak analysis. A curve is two parallel double arrays, x and y, owned by the caller and
 * only read unless an export says otherwise.
 *
 * The finders share one frame. pnSize is in and out: the number of input points going in, which
 * is also the room of pPeakX, pPeakY and pPeakIdx (optional in the finders), and the number of
 * peaks coming out. A curve whose x is neither rising nor falling (ties allowed) is searched on a
 * copy sorted by x, and the peaks are given back as input indices and the x and y there. nFlags:
 * ZOMATH_PEAK_POSITIVE, ZOMATH_PEAK_NEGATIVE, and ZOMATH_PEAK_ANY_SIGN, without which a positive
 * peak needs y above 0 (window finders) or not below 0 (derivative finders), a negative peak the
 * mirror. The derivative finders give the positive peaks first, then the negative ones, each in
 * order of x; the window finders give both in one pass in order of x. A point whose x or y is
 * NANUM (or NaN) is never a peak.
 *
 * Sections: finders; the shared detector and the mapping back; partition and markers;
 * selection and filters; inflection points; noise and order statistics.
 * Codes: -11 null pointer, -18 a size or argument out of range (or a window wider than the data),
 * -166 no memory for working storage, and those below. This header is plain C. */
#ifndef ZOMATH_PEAKS_H
#define ZOMATH_PEAKS_H

#include <stdbool.h>

#include "zomath/core.h"

/* Codes of the peak exports beside the shared ones of zomath/core.h. */
enum {
  ZOMATH_PEAK_ERR_INDEX = -6,         /* a peak or sort index outside the data */
  ZOMATH_PEAK_ERR_KEEP = -25,         /* asked to keep more peaks than there are */
  ZOMATH_PEAK_ERR_COUNT = -32,        /* more peaks than room for them */
  ZOMATH_PEAK_ERR_SMOOTHING = -35,    /* smoothing failed, or window and order unusable */
  ZOMATH_PEAK_ERR_SLOPES = -57,       /* slopes could not be formed (fewer than 2 points) */
  ZOMATH_PEAK_ERR_DETECTOR = -58,     /* the detector could not run, or its lists overflowed */
  ZOMATH_PEAK_ERR_NO_POINTS = -61     /* fewer than 2 points with both x and y present */
};

/* Bits of nFlags. */
#define ZOMATH_PEAK_POSITIVE 1
#define ZOMATH_PEAK_NEGATIVE 2
#define ZOMATH_PEAK_ANY_SIGN 4

/* Mask modes of the shared detector: 0 and 2 read pDeriv as a slope (a peak is an exact zero
 * with the curve climbing towards it), 1 and 3 as a curvature (a positive peak is a strict local
 * minimum, a negative peak a strict local maximum). 2 and 3 name smoothed derivatives. */
#define ZOMATH_PEAK_MASK_SLOPE 0
#define ZOMATH_PEAK_MASK_CURVATURE 1
#define ZOMATH_PEAK_MASK_SMOOTH_SLOPE 2
#define ZOMATH_PEAK_MASK_SMOOTH_CURVATURE 3

/* nMethod of zomath_find_peaks_2nd_derivative (any other value: plain differences). */
#define ZOMATH_PEAK_2ND_PLAIN 0
#define ZOMATH_PEAK_2ND_AVERAGED 1
#define ZOMATH_PEAK_2ND_SAVITZKY_GOLAY 2
#define ZOMATH_PEAK_2ND_SAVITZKY_GOLAY_TWICE 3

ZOMATH_EXTERN_C_BEGIN

/* ==== Finders =============================================================================== */

/* Peaks where the slope changes sign: a zero of the slope with the curve climbing towards it.
 * Unsmoothed: forward and backward chord slopes combined so that a sharp extreme is an exact
 * zero; a flat top is found at its first point in x, a flat bottom at its last. bSmooth: the
 * Savitzky-Golay slope of nWindow points and order nPolyOrder (evenly spaced x), its sign changes
 * forced through zero. Codes: -11 (pnSize, pX, pY, pPeakX, pPeakY), -18 (size below 1), -57
 * (one point), -35 (nWindow < 4, nPolyOrder < 1, nWindow <= nPolyOrder, or the filter failed),
 * -58, -166. */
ZOMATH_API int zomath_find_peaks_1st_derivative(int* pnSize, const double* pX, const double* pY,
                                                double* pPeakX, double* pPeakY, int* pPeakIdx,
                                                int nFlags, bool bSmooth, int nWindow,
                                                int nPolyOrder);

/* Peaks at the strict local minima (negative peaks: maxima) of the second derivative, which also
 * finds shoulders. nMethod: 1 differences, each smoothed by adjacent averaging over nWindow
 * points (nWindow < 0: a width from the noise level; 0 gives -35), 2 the Savitzky-Golay second
 * derivative, 3 the Savitzky-Golay slope taken twice (nWindow >= 4, nPolyOrder >= 1, nWindow >
 * nPolyOrder, else -35), other values plain differences. pSecondDeriv (optional, nSize doubles)
 * receives the second derivative at the input points. Codes as the first-derivative finder. */
ZOMATH_API int zomath_find_peaks_2nd_derivative(int* pnSize, const double* pX, const double* pY,
                                                double* pPeakX, double* pPeakY, int* pPeakIdx,
                                                int nFlags, int nMethod, double* pSecondDeriv,
                                                int nWindow, int nPolyOrder);

/* As zomath_find_peaks_2nd_derivative, each difference smoothed by the Fourier low-pass filter
 * with dCutoff. Codes as above, or the filter's code. */
ZOMATH_API int zomsp_find_peaks_2nd_derivative(int* pnSize, const double* pX, const double* pY,
                                               double* pPeakX, double* pPeakY, int* pPeakIdx,
                                               int nFlags, double dCutoff, double* pSecondDeriv);

/* Peaks at the centres of windows of 2 nHalf + 1 points that are the window's first maximum
 * (positive) or, failing that, its first minimum (negative); the first and last nHalf points are
 * never peaks, and on a flat window only its first point can be one. Missing values take no part.
 * Codes: -11, -18 (size below 1, nHalf < 0, 2 nHalf + 1 >= size), -166. */
ZOMATH_API int zomath_find_peaks_by_local_maximum(int* pnSize, const double* pX, const double* pY,
                                                  double* pPeakX, double* pPeakY, int* pPeakIdx,
                                                  int nFlags, int nHalf);

/* The same scan without the sign test (ZOMATH_PEAK_ANY_SIGN implied) and without the mapping
 * back: on a curve whose x is neither rising nor falling the indices, x and y are those of the
 * copy sorted by x. */
ZOMATH_API int zomath_find_local_extremes(int* pnSize, const double* pX, const double* pY,
                                          double* pPeakX, double* pPeakY, int* pPeakIdx,
                                          int nFlags, int nHalf);

/* Peaks that are the first extreme of a window dWidth wide in x (an odd number of steps of the
 * curve, shrinking symmetrically to the end point near the ends) and differ by at least
 * dMinHeight from both ends of it. Unevenly spaced x are read on an even grid and each peak is
 * moved to the input point nearest in x. Codes: -11, -18 (size below 3, dWidth negative or NaN,
 * dMinHeight NaN, a window wider than the data), -166. */
ZOMATH_API int zomath_find_peaks_by_search_window(int* pnSize, const double* pX, const double* pY,
                                                  double* pPeakX, double* pPeakY, int* pPeakIdx,
                                                  int nFlags, double dWidth, double dMinHeight);

/* ==== The shared detector and the mapping back ============================================== */

/* Appends to the *pnPeaks peaks already in pPeakX, pPeakY, pPeakIdx (room for nSize) the peaks of
 * polarity bNegative that pDeriv marks under nMaskMode (see ZOMATH_PEAK_MASK_*), in order of
 * index. In slope modes the climbing side is read in the direction of x (x non-decreasing, or
 * else taken as falling). *pMissing (null: none) marks missing derivatives, x and y; a
 * derivative that is NaN or missing marks nothing. Codes: -11, -58 (unknown mask mode), -32
 * (*pnPeaks negative, or more peaks than nSize). */
ZOMATH_API int zomath_find_peak_by_derivative_centralized(unsigned int nSize, const double* pX,
                                                          const double* pY, const double* pDeriv,
                                                          int* pnPeaks, double* pPeakX,
                                                          double* pPeakY, int* pPeakIdx,
                                                          bool bNegative, int nFlags,
                                                          int nMaskMode, const double* pMissing);

/* Gives nPeaks peaks back in terms of the input curve (nSize points). pnSortIndex given: each
 * pPeakIdx indexes a copy sorted by x whose point k is input point pnSortIndex[k]. Otherwise,
 * with bNearestX, each peak moves to the input point nearest to pPeakX (the lowest index among
 * equally near), as after resampling; without it pPeakIdx already indexes the input. pPeakX and
 * pPeakY receive the input's x and y there. Nothing is written on failure. Codes: -11, -18
 * (nSize 0, nPeaks < 0, a peak x NANUM or NaN in the nearest mode, no x to be near to), -6. */
ZOMATH_API int zomath_adjust_data_of_peaks(unsigned int nSize, const double* pX, const double* pY,
                                           int nPeaks, double* pPeakX, double* pPeakY,
                                           int* pPeakIdx, const int* pnSortIndex, bool bNearestX);

/* ==== Partition and markers ================================================================= */

/* The stretch of the peak at dPeakX between the nearest inflections: the sign changes of the
 * second derivative of y after Savitzky-Golay smoothing over nWindow points (order 2; not
 * smoothed for nWindow <= 3 when the filter cannot run). *pnLeft, *pnRight: the indices of the
 * nearest below and above dPeakX in x, 0 and nSize - 1 where there is none. Codes: -11, -18
 * (size 0, dPeakX NaN), -35 (filter failed with nWindow > 3), -166. */
ZOMATH_API int zomath_find_peaks_partition(unsigned int nSize, const double* pX, const double* pY,
                                           double dPeakX, int* pnLeft, int* pnRight, int nWindow);

/* Left and right markers of each peak, between its neighbouring peaks in x: walking out from the
 * peak past dMinWidth in x, on while |y| stays at or above dHeight and the next point lies within
 * dMaxWidth (cut to the x range); a point below dHeight (or NANUM) there is the marker, otherwise
 * the point of smallest |y| between the walk's end and the peak (the farthest on a tie).
 * pMarkers[2g], [2g + 1]: the pair of the caller's peak g, smaller input index first. Codes:
 * -11, -18 (nSize 0, nPeaks < 1, nMarkers < 2 nPeaks, dMaxWidth < dMinWidth or NaN), -6 (a peak
 * index outside the data), -166. */
ZOMATH_API int zomath_find_markers_of_peaks_by_height_and_width(
    unsigned int nSize, const double* pX, const double* pY, int nPeaks, const int* pPeakIdx,
    int nMarkers, int* pMarkers, double dHeight, double dMaxWidth, double dMinWidth);

/* Markers with a width range for each peak: the nearest points below dHeight on either side at
 * an x distance from pMinWidths[g] up to but not including pMaxWidths[g] (cut to the x range),
 * or -1 and -1 when either side has none. The width arrays are only read. Codes as above (-18
 * also for pMaxWidths[g] < pMinWidths[g]). */
ZOMATH_API int zomath_find_markers_of_peaks_by_height_and_full_width(
    unsigned int nSize, const double* pX, const double* pY, int nPeaks, const int* pPeakIdx,
    int nMarkers, int* pMarkers, double dHeight, double* pMaxWidths,
    double* pMinWidths);

/* As zomath_find_markers_of_peaks_by_height_and_width with peaks given by x: each centre stands
 * at the first point (in order of x) at or above it, the last point when there is none. Codes
 * as there (-18 also for a centre NANUM or NaN). */
ZOMATH_API int zomath_find_markers_of_peak_centers_by_height_and_width(
    unsigned int nSize, const double* pX, const double* pY, int nPeaks, const double* pCenters,
    int nMarkers, int* pMarkers, double dHeight, double dMaxWidth, double dMinWidth);

/* ==== Selection and filters ================================================================= */

/* Scans pData[nFirst..nLast] (NANUM trimmed from both ends) for points that rise at least
 * dMinRise above the points nWindow before and a step after (dMinRise < 0: fall at least as far
 * below them), taking the window's extreme, at least dMinHeight above the minimum when dMinHeight
 * is positive. Stores at most nMaxPeaks - 1 indices. Returns their number, or -1 (null array,
 * nLast < nFirst, nothing present, window of 0). pData must hold nLast + 1 values. */
ZOMATH_API int zomath_pick_peaks(const double* pData, unsigned int nFirst, unsigned int nLast,
                                 int* pPeakIdx, unsigned int nMaxPeaks, unsigned int nWindow,
                                 double dMinRise, double dMinHeight, int nStep);

/* Keeps the peaks with |y| at or above dMinHeight, tallest first (ties in their order), and sets
 * *pnPeaks; the entries after them become NANUM and -1. A NANUM or NaN y is dropped. Codes: -11,
 * -18 (*pnPeaks < 1, dMinHeight NaN). */
ZOMATH_API int zomath_test_peaks_by_height(int* pnPeaks, double* pPeakX, double* pPeakY,
                                           int* pPeakIdx, double dMinHeight);

/* Sorts the peaks by |y|, tallest first (ties in their order, NANUM and NaN last), and keeps
 * nKeep; the rest become NANUM and -1. Codes: -11, -18 (nPeaks or nKeep < 1), -25. */
ZOMATH_API int zomath_test_peaks_by_number(int nPeaks, double* pPeakX, double* pPeakY,
                                           int* pPeakIdx, int nKeep);

/* pPeakX[k], pPeakY[k] = pX, pY at pPeakIdx[k]. Nothing is written unless every index lies in
 * 0..nSize - 1. Codes: -11, -6. */
ZOMATH_API int zomath_match_peaks_centers_by_index(const double* pX, const double* pY, int nSize,
                                                   const int* pPeakIdx, double* pPeakX,
                                                   double* pPeakY, int nPeaks);

/* ==== Inflection points ===================================================================== */

/* The inflections either side of a peak at dX: Newton searches on the linearly read curve from
 * dX -+ dHalfWidth / 2, kept within 3 dHalfWidth of dX, into *pXLeft, *pXRight; *pWidth the
 * distance between the zeros of the tangents there (NANUM where a tangent is flat). Points with
 * a NANUM or a value that is not finite are left out. Codes: -11, -18 (nSize 0, dX outside the
 * x range, dHalfWidth not positive and finite), -61 (fewer than 2 points left), -166. */
ZOMATH_API int zomath_find_inflection_point(unsigned int nSize, const double* pX, const double* pY,
                                            double dX, double dHalfWidth, double* pXLeft,
                                            double* pXRight, double* pWidth);

/* Newton iteration for a zero of the second derivative from dStart within dLow..dHigh, on central
 * differences of step (x range) / (nSize - 1) of the linearly read curve; at most 100 rounds.
 * Returns the x reached (dStart when the curve cannot be read: null arrays, fewer than 2 points);
 * the optional outputs get the value and the first three derivatives of the last round. */
ZOMATH_API double zomath_iterate_for_finding_inflection(double dStart, double dLow, double dHigh,
                                                        unsigned int nSize, const double* pX,
                                                        const double* pY, double* pdValue,
                                                        double* pdFirst, double* pdSecond,
                                                        double* pdThird);

/* Blanks a working copy of the curve between alternate maxima of its second derivative; the
 * copy is dropped, so the call has no effect beyond its code. Codes: 0, -11, -166. */
ZOMATH_API int zomath_trim_peak_part_by_2nd_derivative(unsigned int nSize, double* pX,
                                                       double* pY);

/* ==== Noise and order statistics ============================================================ */

/* Standard deviation of the white noise on a sampled curve, robust to peaks and baselines: the
 * median absolute deviation of the second differences of y, scaled for normal noise. Values
 * NANUM or not finite take no part. NANUM for a null array or fewer than 3 values in a row. */
ZOMATH_API double zomath_get_noise_level(unsigned int nSize, const double* pY);

/* The k-th smallest value (k = 0 the minimum) of the values that are neither NANUM nor NaN;
 * NANUM for a null array or k outside 0..count - 1. */
ZOMATH_API double zomath_find_k_min_max(const double* pData, int nSize, int k);

ZOMATH_EXTERN_C_END

#endif /* ZOMATH_PEAKS_H */
