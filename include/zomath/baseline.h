/* zomath: baselines, the slowly varying curve under the peaks. A curve is two parallel double
 * arrays, x and y, owned by the caller and only read; a baseline is written into the caller's
 * pBaseX and pBaseY.
 *
 * Sections: whole baselines (peaks masked and bridged, a line through quiet points near the
 * ends, the line through the end points); the points of a baseline (small curvature, near zero
 * in a smooth curve, straight regions); region tools (base markers, one line a region, cuts by
 * height). Codes: -11 null pointer, -18 a size or argument out of range, -166 no memory for
 * working storage, those below, and those of the routines called, passed on as they come.
 * This header is plain C. */
#ifndef ZOMATH_BASELINE_H
#define ZOMATH_BASELINE_H

#include "zomath/core.h"

/* Codes of the baseline exports beside the shared ones of zomath/core.h. */
enum {
  ZOMATH_BASE_ERR_MARKERS = -5,   /* the marker count is not twice the peak count */
  ZOMATH_BASE_ERR_INDEX = -6,     /* a peak index outside the data */
  ZOMATH_BASE_ERR_REGIONS = -56   /* more straight regions than room for them */
};

/* The straight line fitted to points nStart..nEnd (both included) by
 * zomath_fit_linear_multi_regions: its parameters, their standard errors, R = sqrt(R^2) and the
 * adjusted R^2. */
typedef struct BaseRegionFit {
  int nStart;
  int nEnd;
  double dIntercept;
  double dSlope;
  double dInterceptError;
  double dSlopeError;
  double dR;
  double dAdjRSquare;
} BaseRegionFit;

ZOMATH_EXTERN_C_BEGIN

/* ==== Whole baselines ======================================================================= */

/* The curve with its peaks masked: the peaks of zomath_find_peaks_1st_derivative (nFlags,
 * unsmoothed), each stretch between its inflections (zomath_find_peaks_partition with a window
 * of 5000 noise / y range points) doubled about its centre, and every hole of at least nSize / 10
 * points bridged by the straight line between the points that bound it; narrower holes keep the
 * curve, so narrow peaks stay. No peaks: the curve itself. Codes: -11, -18 (nSize 0 or above
 * INT_MAX, nBaseSize not nSize), the finder's and zomath_interpolate's. */
ZOMATH_API int zomath_create_baseline_by_masking_peaks(unsigned int nSize, const double* pX,
                                                       const double* pY, unsigned int nBaseSize,
                                                       double* pBaseX, double* pBaseY,
                                                       int nFlags);

/* A baseline through quiet points near the ends: the sample of the first e + 1 and last e points
 * (e = trunc(nSize dEndFraction)) is smoothed by zomath_smooth (nSmoothMethod, width
 * dSmoothFraction of the sample, order 2); the runs of three points nearest their smoothed
 * values, under a tolerance 0.1 (total variation) / (sample size) raised by 10% a round for up
 * to 500 rounds until five points qualify (else the sample's two ends), are joined linearly and
 * read at nBaseSize points evenly spaced over the x range (should all lie at one end, the line
 * beyond is carried on from the last two of them). Codes: -11, -2 (nSize < 5,
 * nBaseSize < 2), -18 (dEndFraction not in (0, 0.5], e = 0, dSmoothFraction not in [0, 1],
 * nSize above INT_MAX), the count of NANUM x (positive), zomath_smooth's, zomath_interpolate's. */
ZOMATH_API int zomath_create_baseline_end_weighted_linear(unsigned int nSize, const double* pX,
                                                          const double* pY,
                                                          unsigned int nBaseSize, double* pBaseX,
                                                          double* pBaseY, double dEndFraction,
                                                          int nSmoothMethod,
                                                          double dSmoothFraction);

/* The straight line from the first to the last point, read at nBaseSize points evenly spaced
 * from the first to the last x (one input point: that point repeated). Codes: -11, -18 (a size
 * of 0). */
ZOMATH_API int zomath_init_baseline_by_connect_ends(unsigned int nSize, const double* pX,
                                                    const double* pY, unsigned int nBaseSize,
                                                    double* pBaseX, double* pBaseY);

/* ==== The points of a baseline ============================================================== */

/* Points of small curvature: y averaged over 2 nHalf + 1 points, its second derivative (mean
 * slopes taken twice) kept within dCurvature of its largest magnitude at a point and both
 * neighbours; of those, the ones whose distance from a parabola fitted through them does not
 * exceed (1 - dResidual) rmin + dResidual rmax, written to pXOut, pYOut (room for nSize) best
 * fitting first. Returns their number (0 when fewer than two pass the curvature test), or -11,
 * -18 (nSize < 3 or above INT_MAX), -166, zomath_adjave_smooth's, zomath_polynomial_fit's. */
ZOMATH_API int zomath_find_baseline_part_by_small_curvature(unsigned int nSize, const double* pX,
                                                            const double* pY, double* pXOut,
                                                            double* pYOut, double dCurvature,
                                                            double dResidual, int nHalf);

/* As zomath_find_baseline_part_by_small_curvature with the averaging width chosen where the
 * noise left after Savitzky-Golay smoothing stops changing (half widths 5 to 30; -9 from the
 * averaging when the curve is too short to tell) and the end points never kept. */
ZOMATH_API int zomath_find_baseline_part_by_small_curvature2(unsigned int nSize, const double* pX,
                                                             const double* pY, double* pXOut,
                                                             double* pYOut, double dCurvature,
                                                             double dResidual);

/* The indices (into pIndices, room for nSize) of the points whose |y| is below 5% of the range of
 * y and whose |slope| is below 5% of the range of the slopes. Returns their number, or -11. */
ZOMATH_API int zomath_find_baseline_part_in_smooth_curve(unsigned int nSize, const double* pX,
                                                         const double* pY, int* pIndices);

/* Straight stretches longer than nMinLength points, by zomath_check_linear (dFraction, dFactor,
 * nInitial) from start points nMinLength / 3 apart: pStarts[k], pEnds[k] (room for
 * nMaxRegions). Returns their number, or -11, -18 (nMinLength < 2, nMaxRegions < 0, nSize above
 * INT_MAX), -56, zomath_check_linear's. */
ZOMATH_API int zomath_find_base_regions(unsigned int nSize, const double* pX, const double* pY,
                                        int nMinLength, int nMaxRegions, int* pStarts,
                                        int* pEnds, double dFraction, double dFactor,
                                        int nInitial);

/* ==== Region tools ========================================================================== */

/* Where each peak leaves and rejoins the baseline pBase: from pPeakIdx[g] outwards while
 * |y - base| exceeds half the mean step of pRef, to the ends at most; pMarkers[2g], [2g + 1] the
 * left and right indices, pMarkerX, pMarkerY (2 nPeaks each) their x and y. Codes: -11, -5
 * (nMarkers not 2 nPeaks, nPeaks < 0), -6 (nSize < 1, a peak index outside the data). */
ZOMATH_API int zomath_make_base_markers(int* pMarkers, double* pMarkerX, double* pMarkerY,
                                        int nMarkers, const int* pPeakIdx, int nPeaks,
                                        const double* pX, const double* pY, const double* pRef,
                                        const double* pBase, int nSize);

/* A straight line by zomath_linear_fit through points pStarts[k]..pEnds[k] of each region that
 * holds at least 3 of them, into pFits[k]; shorter regions leave their record as it was. Codes:
 * -11, -18 (nSize above INT_MAX, a region outside the data), the first fit's non-zero code. */
ZOMATH_API int zomath_fit_linear_multi_regions(unsigned int nSize, const double* pX,
                                               const double* pY, unsigned int nRegions,
                                               const int* pStarts, const int* pEnds,
                                               BaseRegionFit* pFits);

/* Cuts the curve, in order of x, into segments: a segment closes before the point that lifts its
 * sample variance above dVariance. pnCounts, pMeans (optional) receive each segment's size and
 * mean (room for nMaxSegments). Returns the number of segments, or -11 (pX, pY, pnCounts),
 * -18 (nSize < 2 or above INT_MAX, dVariance negative or NaN, more than nMaxSegments), -166. */
ZOMATH_API int zomath_cut_to_segments_by_height(unsigned int nSize, const double* pX,
                                                const double* pY, double dVariance,
                                                int nMaxSegments, int* pnCounts, double* pMeans);

ZOMATH_EXTERN_C_END

#endif /* ZOMATH_BASELINE_H */
