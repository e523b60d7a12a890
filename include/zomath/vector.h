/* zomath: typed vector kernels and small utilities on arrays.
 *
 * Type letters: d double, f float, i int, ui unsigned int, s short, us unsigned short,
 * b unsigned char, c char, z d_complex. Where a kernel takes pMissing, an element equal to
 * *pMissing is missing (null: nothing is); the d forms without that argument treat NANUM as
 * missing. A missing element is skipped by every sum, count, minimum and maximum but keeps its
 * place in the index numbering. Index results are 0-based positions; -1 means none (as an
 * unsigned index, 0xFFFFFFFF). A NaN is never chosen as a minimum or maximum. Outputs are
 * written only through pointers that aren't null.
 *
 * The kernels trust their caller: they check no sizes against the arrays. A null data pointer
 * is read as an empty array. The utilities check what their comments say. This header is
 * plain C. */
#ifndef ZOMATH_VECTOR_H
#define ZOMATH_VECTOR_H

#include "zomath/core.h"

ZOMATH_EXTERN_C_BEGIN

/* ---- minmax: positions of the extremes of nFirst..nLast (inclusive). The first element that
 * isn't missing is taken first; a later one replaces the minimum only when strictly smaller,
 * the maximum only when strictly larger, so ties go to the earliest position. Returns the
 * count of missing elements in the range; both indices are -1 when none qualifies. */
ZOMATH_API int zomath_d_minmax(const double* pData, unsigned int nFirst, unsigned int nLast,
                               unsigned int* pnIndexMin, unsigned int* pnIndexMax);
ZOMATH_API int zomath_f_minmax(const float* pData, unsigned int nFirst, unsigned int nLast,
                               const float* pMissing, unsigned int* pnIndexMin,
                               unsigned int* pnIndexMax);
ZOMATH_API int zomath_i_minmax(const int* pData, unsigned int nFirst, unsigned int nLast,
                               const int* pMissing, unsigned int* pnIndexMin,
                               unsigned int* pnIndexMax);
ZOMATH_API int zomath_b_minmax(const unsigned char* pData, unsigned int nFirst,
                               unsigned int nLast, const unsigned char* pMissing,
                               unsigned int* pnIndexMin, unsigned int* pnIndexMax);
ZOMATH_API int zomath_us_minmax(const unsigned short* pData, unsigned int nFirst,
                                unsigned int nLast, const unsigned short* pMissing,
                                unsigned int* pnIndexMin, unsigned int* pnIndexMax);
ZOMATH_API int zomath_s_minmax(const short* pData, unsigned int nFirst, unsigned int nLast,
                               const short* pMissing, unsigned int* pnIndexMin,
                               unsigned int* pnIndexMax);
ZOMATH_API int zomath_c_minmax(const char* pData, unsigned int nFirst, unsigned int nLast,
                               const char* pMissing, unsigned int* pnIndexMin,
                               unsigned int* pnIndexMax);
/* Four extremes at once, in this order of the 4-element outputs: real part, imaginary part,
 * phase (atan2(im, re)), magnitude (hypot(re, im)). An element with either half NANUM is
 * missing, one with a NaN half is never chosen. Returns the count of missing elements. */
ZOMATH_API int zomath_z_minmax(const d_complex* pData, unsigned int nFirst, unsigned int nLast,
                               int* pnIndexMin, int* pnIndexMax);

/* ---- minmax_in_range: as minmax over the whole array (nSize elements), but only elements with
 * low <= x <= high can be chosen; the others are passed over. Returns the count of missing
 * elements. */
ZOMATH_API int zomath_d_minmax_in_range(const double* pData, int nSize, double dLow,
                                        double dHigh, const double* pMissing,
                                        unsigned int* pnIndexMin, unsigned int* pnIndexMax);
ZOMATH_API int zomath_f_minmax_in_range(const float* pData, int nSize, float fLow, float fHigh,
                                        const float* pMissing, unsigned int* pnIndexMin,
                                        unsigned int* pnIndexMax);
ZOMATH_API int zomath_i_minmax_in_range(const int* pData, int nSize, int nLow, int nHigh,
                                        const int* pMissing, unsigned int* pnIndexMin,
                                        unsigned int* pnIndexMax);
ZOMATH_API int zomath_b_minmax_in_range(const unsigned char* pData, int nSize,
                                        unsigned char nLow, unsigned char nHigh,
                                        const unsigned char* pMissing,
                                        unsigned int* pnIndexMin, unsigned int* pnIndexMax);
ZOMATH_API int zomath_us_minmax_in_range(const unsigned short* pData, int nSize,
                                         unsigned short nLow, unsigned short nHigh,
                                         const unsigned short* pMissing,
                                         unsigned int* pnIndexMin, unsigned int* pnIndexMax);

/* ---- sum: the sum of the elements (accumulated in long double), their minimum, maximum, first
 * position of each and (d form) the count of elements that aren't NANUM. The other forms count
 * every element. With no element: sum 0, values 0, indices -1, count 0. */
ZOMATH_API double zomath_d_sum(const double* pData, int nSize, double* pMin, double* pMax,
                               int* pnIndexMin, int* pnIndexMax, int* pnValid);
ZOMATH_API double zomath_f_sum(const float* pData, int nSize, float* pMin, float* pMax,
                               int* pnIndexMin, int* pnIndexMax);
ZOMATH_API double zomath_b_sum(const unsigned char* pData, int nSize, unsigned char* pMin,
                               unsigned char* pMax, int* pnIndexMin, int* pnIndexMax);
ZOMATH_API double zomath_us_sum(const unsigned short* pData, int nSize, unsigned short* pMin,
                                unsigned short* pMax, int* pnIndexMin, int* pnIndexMax);
ZOMATH_API double zomath_ui_sum(const unsigned int* pData, int nSize, unsigned int* pMin,
                                unsigned int* pMax, int* pnIndexMin, int* pnIndexMax);

/* ---- mean_variance: returns the mean of the valid elements and gives their variance, the
 * corrected two-pass form (sum d^2 - (sum d)^2 / n) / (n - 1), d = x - mean. No valid element:
 * mean and variance NANUM; one: variance 0. */
ZOMATH_API double zomath_d_mean_variance(const double* pData, int nSize, double* pVariance,
                                         int* pnValid);
ZOMATH_API double zomath_f_mean_variance(const float* pData, int nSize, double* pVariance,
                                         int* pnValid, const float* pMissing);
ZOMATH_API double zomath_us_mean_variance(const unsigned short* pData, int nSize,
                                          double* pVariance, int* pnValid,
                                          const unsigned short* pMissing);
ZOMATH_API double zomath_b_mean_variance(const unsigned char* pData, int nSize,
                                         double* pVariance, int* pnValid,
                                         const unsigned char* pMissing);

/* ---- stretch, in place: x < from-low becomes to-low, x > from-high to-high, anything between
 * to-low + 0.5 + (to-high - to-low) (x - from-low) / (from-high - from-low). The us form
 * truncates, so the half rounds it; the d and f forms keep the half (from-low maps to
 * to-low + 0.5). The d form leaves NANUM alone. Returns 0, or -3 (changing nothing) when
 * from-high equals from-low or their difference isn't finite, or pData is null. */
ZOMATH_API int zomath_d_stretch(double* pData, int nSize, double dFromLow, double dFromHigh,
                                double dToLow, double dToHigh);
ZOMATH_API int zomath_f_stretch(float* pData, int nSize, float fFromLow, float fFromHigh,
                                float fToLow, float fToHigh);
ZOMATH_API int zomath_us_stretch(unsigned short* pData, int nSize, unsigned short nFromLow,
                                 unsigned short nFromHigh, unsigned short nToLow,
                                 unsigned short nToHigh);

/* ---- frequency_count: clears pnCounts[0..nBins-1] and counts the elements into bins of width
 * inc from start; bin k holds [k * inc + start, (k + 1) * inc + start), so a value on an edge
 * belongs to the bin it starts. Values outside the bins, NaN, infinities and NANUM are
 * dropped. Returns 0, or -1 (counts left alone) for an increment of 0, a start or increment
 * that isn't finite, or a null pnCounts. */
ZOMATH_API int zomath_d_frequency_count(const double* pData, int nSize, unsigned int* pnCounts,
                                        unsigned int nBins, double dStart, double dInc);
ZOMATH_API int zomath_f_frequency_count(const float* pData, int nSize, unsigned int* pnCounts,
                                        unsigned int nBins, float fStart, float fInc);
ZOMATH_API int zomath_b_frequency_count(const unsigned char* pData, int nSize,
                                        unsigned int* pnCounts, unsigned int nBins,
                                        unsigned char nStart, unsigned char nInc);
ZOMATH_API int zomath_us_frequency_count(const unsigned short* pData, int nSize,
                                         unsigned int* pnCounts, unsigned int nBins,
                                         unsigned short nStart, unsigned short nInc);

/* ---- cumulative_sum over nFirst..nEnd-1 into pOut[0..]: a missing element repeats the running
 * total. pOut[0] is written even when nEnd <= nFirst (element nFirst, or 0 if missing), so
 * pData[nFirst] must be readable. The total is kept in the element type: the us form wraps at
 * 16 bits, the b form at 8, the i form at 32. Returns the count of missing elements written. */
ZOMATH_API int zomath_d_cumulative_sum(const double* pData, unsigned int nFirst,
                                       unsigned int nEnd, double* pOut, const double* pMissing);
ZOMATH_API int zomath_f_cumulative_sum(const float* pData, unsigned int nFirst,
                                       unsigned int nEnd, float* pOut, const float* pMissing);
ZOMATH_API int zomath_i_cumulative_sum(const int* pData, unsigned int nFirst, unsigned int nEnd,
                                       int* pOut, const int* pMissing);
ZOMATH_API int zomath_us_cumulative_sum(const unsigned short* pData, unsigned int nFirst,
                                        unsigned int nEnd, unsigned short* pOut,
                                        const unsigned short* pMissing);
ZOMATH_API int zomath_b_cumulative_sum(const unsigned char* pData, unsigned int nFirst,
                                       unsigned int nEnd, unsigned char* pOut,
                                       const unsigned char* pMissing);

/* ---- copy, a gather: pDest[k] = pSource[pnIndices[k]] for k < nSize where the index is below
 * nSourceSize; other destinations are left alone. Source and destination may be the same
 * array (or overlap). */
ZOMATH_API void zomath_d_copy(unsigned int nSize, const unsigned int* pnIndices, double* pDest,
                              const double* pSource, unsigned int nSourceSize);
ZOMATH_API void zomath_f_copy(unsigned int nSize, const unsigned int* pnIndices, float* pDest,
                              const float* pSource, unsigned int nSourceSize);
ZOMATH_API void zomath_ui_copy(unsigned int nSize, const unsigned int* pnIndices,
                               unsigned int* pDest, const unsigned int* pSource,
                               unsigned int nSourceSize);
ZOMATH_API void zomath_us_copy(unsigned int nSize, const unsigned int* pnIndices,
                               unsigned short* pDest, const unsigned short* pSource,
                               unsigned int nSourceSize);
ZOMATH_API void zomath_b_copy(unsigned int nSize, const unsigned int* pnIndices,
                              unsigned char* pDest, const unsigned char* pSource,
                              unsigned int nSourceSize);

/* ---- get_vector_inc: spacing of a strictly monotonic vector. 0 for fewer than 2 elements or
 * data not strictly monotonic (or not finite). When no step lies further from the mean step m
 * than |tolerance * m|: writes first, last and first step, returns +1 increasing, -1
 * decreasing; otherwise writes nothing and returns +2 or -2. */
ZOMATH_API int zomath_d_get_vector_inc(unsigned int nSize, const double* pData,
                                       double dRelTolerance, double* pFirst, double* pLast,
                                       double* pInc);
ZOMATH_API int zomath_i_get_vector_inc(unsigned int nSize, const int* pData, int nRelTolerance,
                                       int* pFirst, int* pLast, int* pInc);

/* ---- find_most: the lower edge of the fullest of nBins equal bins from the minimum to the
 * maximum (earliest on a tie), and its share of the counted values. The maximum drops out when
 * it falls on the top edge; equal values give that value with share 1. d form: NANUM skipped;
 * NANUM (share 0) for no value, nBins 0 or an infinite range. us form: integer bin widths of at
 * least 1; -1 (share 0) where the d form gives NANUM. */
ZOMATH_API double zomath_d_find_most(const double* pData, int nSize, unsigned int nBins,
                                     double* pFraction);
ZOMATH_API int zomath_us_find_most(const unsigned short* pData, int nSize, unsigned int nBins,
                                   double* pFraction);

/* ---- utilities on double arrays ---- */

/* n! in long double, returned as a double (+infinity above 170!); NANUM for negative n. */
ZOMATH_API double zomath_fac(int n);

/* Maps nEnd - nFirst elements linearly, in place, writing from pData[0] whatever nFirst is;
 * the range nFirst..nEnd-1 gives only the count and where a limit equal to NANUM is taken
 * from (plain minimum or maximum, NANUM not treated). y = (x - dFromMin) * s + nToLow,
 * s = (nToHigh - nToLow) / (dFromMax - dFromMin). nFlags bit 0 clear: y becomes the integer
 * part of y + 0.5; bit 1 clear: y below nToLow becomes nToLow; bit 2 clear: y above nToHigh
 * becomes nToHigh (tested on the unrounded y). Returns 0; -1 when dFromMax - dFromMin is 0 or
 * not finite, or a limit is wanted from an empty range; -11 for a null pData. */
ZOMATH_API int zomath_linear_transform(double* pData, unsigned int nFirst, unsigned int nEnd,
                                       int nToLow, int nToHigh, double dFromMin,
                                       double dFromMax, unsigned int nFlags);

/* Number of elements x for which the condition holds: 0 x >= v, 1 x > v, 2 x <= v, 3 x < v,
 * 4 x == v, 5 x != v (NANUM compares as the number it is, so condition 4 with NANUM counts
 * missing values). 0 for nSize 0; -1 for another condition or a null pData. */
ZOMATH_API int zomath_count(double dValue, unsigned int nSize, const double* pData,
                            int nCondition);

/* In place: elements matching nFlags become dReplace. Bits: 1 x < t, 2 x == t, 4 x > t;
 * 8 compare against |t| (-|t| < x < |t|, x == +-|t|, x outside -|t|..|t|); 16 write
 * +|dReplace|, or -|dReplace| where x < 0; 32 an element that doesn't match becomes NANUM.
 * NANUM compares as the number it is. -11 for a null pData, -18 for nSize < 1; else 0, also
 * when the flags are refused (0, or 64 and above) and nothing changes. */
ZOMATH_API int zomath_replace_data_in_vector(int nSize, double* pData, double dThreshold,
                                             double dReplace, unsigned int nFlags);

/* For each value v: -1 if v < pSorted[0] (or v is NaN), nSize - 1 if v >= the last, else the
 * last position whose element isn't above v (bisection). pSorted must be ascending. -18 for a
 * null pointer, nSize < 1 or above INT_MAX, nValues < 0, or pSorted[0] > pSorted[nSize-1]. */
ZOMATH_API int zomath_array_find_indices(const double* pSorted, unsigned int nSize,
                                         const double* pValues, int nValues, int* pnIndices);
/* The one-value case of zomath_array_find_indices, with the same codes. */
ZOMATH_API int zomath_binary_search(const double* pSorted, unsigned int nSize, double dValue,
                                    int* pnIndex);

/* Neighbours of dValue by a scan from element 0 (NANUM skipped): an element below dValue and
 * above the lower bound so far becomes the lower, failing that one above dValue and below the
 * upper bound so far the upper; any other element ends the scan (on unsorted data, the first
 * that improves neither), and if it equals dValue both take its position. Nearest is the lower
 * unless the upper is strictly closer. Returns 0 when both were found, else -1 (missing ones
 * -1); -18 for a null pData or nSize < 1. */
ZOMATH_API int zomath_find_nearest_index(const double* pData, int nSize, double dValue,
                                         int* pnLower, int* pnUpper, int* pnNearest);

/* pOut[k] = pData read at the fractional index pX[k], k < nCount: x <= 0 the first element,
 * x >= nSize - 1 the last; else linear between the neighbours when bit 0 of bInterpolate is
 * set (NANUM when a neighbour is NANUM), otherwise the nearer neighbour (the lower on a tie).
 * A NaN index gives NANUM. -11 for a null pointer, -2 for nSize or nCount below 1. */
ZOMATH_API int zomath_find_nearest_values(double* pOut, int nSize, const double* pData,
                                          int nCount, const double* pX, int bInterpolate);

/* Turns *pMin..*pMax into a round axis range and returns its number of steps (at most
 * INT_MAX). Equal ends widen by 10% of |min| each way (0..0 becomes -1..1). The increment is
 * *pInc when given and not 0, else (max - min) / nSteps (nSteps at least 1); with nSteps > 0 it
 * is rounded to one significant digit and written back (negative for a reversed range). The
 * ends become multiples of it, outwards. -11 for a null pMin or pMax; -18, changing nothing,
 * for ends or increment that are NANUM or not finite, or an increment or result that can't be
 * formed (0, overflow). */
ZOMATH_API int zomath_round_range(double* pMin, double* pMax, double* pInc, int nSteps);

/* Replaces the data, in place, by class centres: classes of width dTolerance from the rounded
 * minimum (zomath_round_range with dTolerance as increment, unrounded), each value counted into
 * its class and written back as the class's centre, so the array comes back sorted. -11 for a
 * null pData, -15 for nSize < 1, -18 (nothing changed) for a tolerance that isn't a positive
 * finite number, data holding NaN or infinities, more than 2^24 classes, or class edges too
 * close to tell apart at the data's magnitude; -166 when memory fails. */
ZOMATH_API int zomath_round_with_tolerance(int nSize, double* pData, double dTolerance);

/* True (1) when x lies strictly between a and b (either order), or bInclusive is not 0 and x
 * equals a or b. */
ZOMATH_API int zomath_is_inside_range(double x, double a, double b, int bInclusive);

/* pnFlags[k] = 1 where the element is +infinity or -infinity, else 0. Returns the count of
 * ones; 0 for a null pointer or nSize different from nFlagSize. */
ZOMATH_API int zomath_check_infinity(const double* pData, int nSize, int* pnFlags,
                                     int nFlagSize);

/* pOut[k] = k * dStep + dStart, each term from k. -18 for a null pOut, nSize < 1, or a start
 * or step that is NANUM or not finite. */
ZOMATH_API int zomath_create_equal_spaced_vec(double* pOut, int nSize, double dStart,
                                              double dStep);

/* Splits the vector at runs of dValue: writes the start and exclusive end of each run of other
 * elements as pairs into pnPairs and returns the number of pairs. A vector ending in dValue
 * adds a last, empty pair (nSize, nSize). pnPairs needs room for 2 * (nSize / 2 + 1) values.
 * 0 for a null pointer or nSize 0. */
ZOMATH_API int zomath_split_vector_by_value(unsigned int nSize, const double* pData,
                                            double dValue, unsigned int* pnPairs);

/* *pbEqual = 1 when dTolerance isn't NANUM and at each position both elements are NANUM or
 * neither is and |a - b| <= dTolerance; else 0. Returns 0; -18 for a null pointer or
 * nSize < 1. */
ZOMATH_API int zomath_compare_data(unsigned int nSize, const double* pA, const double* pB,
                                   int* pbEqual, double dTolerance);

/* Median of the nSize values (NANUM is not removed): the middle value of the sorted data, or
 * the mean of the two middle values. *pMedian is NANUM until it is known. -18 for nSize < 1, a
 * null pointer or data holding NaN; -65 when working memory fails. */
ZOMATH_API int zomath_get_median_in_vector(int nSize, const double* pData, double* pMedian);

/* ---- arrays read as a sample or a curve ---- */

/* The distinct values of pData[0..nSize-1] in ascending order and how often each occurs; NANUM
 * and NaN are left out, -0 and +0 are one value, 0. *pnDistinct goes in as the room in pValues
 * and pnCounts (either may be null) and comes out as the number of distinct values. Returns 0;
 * -11 a null pnDistinct, or a null pData with nSize > 0; -18 nSize < 0, or more distinct values
 * than the room (the arrays are left alone); -166 no memory. */
ZOMATH_API int zomath_discrete_frequencies(int nSize, const double* pData, double* pValues,
                                           int* pnCounts, int* pnDistinct);

/* The area under the curve through (pX[i], pY[i]) by the trapezoidal rule: the integral of y dx
 * from the first point to the last, so negative where x falls. A point whose x or y is NANUM is
 * left out and the curve runs straight across it. x must be monotonic: equal neighbours add
 * nothing, but a change of direction is refused. *pArea gets the total; pCumulative (nSize
 * elements, may be null) the area from the first valid point to each point: 0 up to that
 * point, the running area repeated at a missing one. NaN or infinite values give a NaN or
 * infinite area. Both are NANUM until known. Returns 0; -11 a null pX or pY; -7 fewer than 2
 * valid points; -17 x both rising and falling. */
ZOMATH_API int zomath_integrate(int nSize, const double* pX, const double* pY, double* pArea,
                                double* pCumulative);

ZOMATH_EXTERN_C_END

#endif /* ZOMATH_VECTOR_H */
