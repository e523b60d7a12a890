/* zomath: descriptive statistics.
 *
 * The summary engine that most statistics of the library call, and the measures built beside
 * it. Data arrive as doubles; a point whose value (or weight) is NANUM is missing and left out
 * wherever a function says so. Outputs named with p are optional: a null pointer skips that
 * output. This header is plain C. */
#ifndef ZOMATH_STATS_H
#define ZOMATH_STATS_H

#include <stdbool.h>

#include "zomath/core.h"

ZOMATH_EXTERN_C_BEGIN

/* ============================================================================================
 * Summary statistics
 * ============================================================================================
 *
 * nMomentDenFlag picks the denominator d of the second moment, and with it the coefficients of
 * skewness and kurtosis and whether the interval statistics exist. n is the number of valid
 * points, W the sum of their weights (W = n without weights), S2 the sum of squared weights.
 * A weight below 0 is read as 0. A flag outside 0..4 has no denominator: every statistic that
 * needs one stays NANUM.
 *
 *   DS_SAS1_DF  0  d = n - 1      bias-corrected skewness and excess kurtosis; SEM, limits
 *   DS_SAS2_N   1  d = n          moment coefficients about the mean
 *   DS_SAS3_WDF 2  d = W - 1      no skewness, kurtosis, SEM or limits
 *   DS_SAS4_WGT 3  d = W          no skewness, kurtosis, SEM or limits
 *   DS_NAG      4  d = W - S2/W   weighted moment coefficients; SEM and limits without weights
 *
 * Codes: -3 a row form with no rows or columns, -11 a null matrix, -19 a row that could not be
 * had, -110 fewer than 3 points of a distribution, -151 (inside) no valid point, -155 a
 * negative size, -156 a null pointer, -158 no valid value for a range, -166 no memory, -174
 * (inside) weights of another length than the data, -196 a confidence level not strictly
 * between 0 and 1, -220 a distribution with x not strictly rising or a y below 0. */

enum {
  DS_SAS1_DF = 0,
  DS_SAS2_N = 1,
  DS_SAS3_WDF = 2,
  DS_SAS4_WGT = 3,
  DS_NAG = 4
};

enum {
  ZOMATH_STATS_ERR_ROW_FETCH = -19,      /* a row of a row form could not be had */
  ZOMATH_STATS_ERR_NO_VALID = -158,      /* no valid value for the minimum and maximum */
  ZOMATH_STATS_ERR_WEIGHT_SIZE = -174,   /* weights of another length than the data */
  ZOMATH_STATS_ERR_CONF_LEVEL = -196     /* confidence level not strictly between 0 and 1 */
};

/* The summary of one sample. Doubles that can't be computed are NANUM. */
typedef struct DescStatResults {
  int N;             /* valid points */
  int Missing;       /* points left out because the value or its weight is NANUM */
  double Mean;       /* weighted mean */
  double SD;         /* standard deviation, sqrt(CorSumSq / d) */
  double SEM;        /* standard error of the mean, SD / sqrt(W) */
  double LCL;        /* lower confidence limit of the mean */
  double UCL;        /* upper confidence limit of the mean */
  double Variance;   /* SD squared */
  double Sum;        /* Mean times WeightSum */
  double Skewness;
  double Kurtosis;   /* excess kurtosis */
  double UncorSumSq; /* sum of w x^2 */
  double CorSumSq;   /* sum of w (x - Mean)^2 */
  double COV;        /* coefficient of variation, SD / Mean */
  double MAD;        /* mean absolute deviation, sum w |x - Mean| / W */
  double SDx2;       /* twice SD */
  double SDx3;       /* three times SD */
  double GeoMean;    /* geometric mean (of |x|, for an even count of negative values) */
  double GeoSD;      /* geometric standard deviation, exp(SD of ln x) */
  double Mode;       /* most frequent value (the smallest of several) */
  double WeightSum;  /* W */
} DescStatResults;

/* Which fields zomath_desc_stats_ex fills, and the denominator. (The order is the one a caller
 * fills, not the record's.) */
typedef struct DescStatOptions {
  int nMomentDenFlag;
  bool bN;
  bool bMissing;
  bool bSum;
  bool bMean;
  bool bMode;
  bool bGeoMean;
  bool bGeoSD;
  bool bLCL;
  bool bUCL;
  bool bSD;
  bool bSDx2;
  bool bSDx3;
  bool bSEM;
  bool bVariance;
  bool bCOV;
  bool bSkewness;
  bool bKurtosis;
  bool bMAD;
  bool bUncorSumSq;
  bool bCorSumSq;
  bool bWeightSum;
} DescStatOptions;

/* Extremes of an array and their first positions in it. */
typedef struct RangeResults {
  double Min;
  double Max;
  int iMin;
  int iMax;
  double Range; /* Max - Min */
} RangeResults;

/* The summary engine. Writes -1 to *pN and *pMissing, 0.0 to *pMAD and NANUM to every other
 * output first. A point is missing when its value or weight (pWeights may be null) is NANUM.
 * Flags 0 and 2 without weights, and flag 4, take the mean, SD and weight sum from the
 * weighted moments of the valid points; the skewness and kurtosis come from the formulas of
 * the flag (under flag 4 from those moments). SEM only under flag 0, or 4 without weights
 * (weights all 1 count as none); COV only for a Mean that isn't 0. No valid point: returns 0
 * with N 0. One valid point x of weight w: Mean x (NANUM for w 0), SD and Variance 0 under
 * flags 1 and 3 (else NANUM), MAD 0, WeightSum w, GeoMean x. Fewer than two weights above 0
 * under flag 4 leaves the start values. Returns 0; -155 nSize < 0; -156 a null pData with
 * nSize > 0; -166 no memory. */
ZOMATH_API int zomath_basic_summary_stats(int nSize, const double* pData, int* pN, double* pMean,
                                          double* pSD, double* pSEM, double* pVariance,
                                          double* pSum, double* pSkewness, double* pKurtosis,
                                          double* pUncorSumSq, double* pCorSumSq, double* pCOV,
                                          double* pMAD, int* pMissing, double* pWeightSum,
                                          double* pGeoMean, int nMomentDenFlag,
                                          const double* pWeights);

/* The statistics that zomath_basic_summary_stats leaves out. Writes NANUM to each output and
 * false to *pbMultiModal first; returns 0 at once when no point is valid. Mode: the most
 * frequent value that is neither NANUM nor NaN, weights not looked at; NANUM when no value
 * repeats; the smallest of several, with *pbMultiModal true. GeoSD: exp(SD of ln x) under the
 * flag, without weights; NANUM when a valid value is 0 or below. SDx2, SDx3: 2 SD, 3 SD. LCL,
 * UCL: Mean -+ t SD / sqrt(W), t the two-sided Student deviate of the level dConfLevel on N - 1
 * degrees of freedom, only where SEM exists; a level outside [0, 1) gives NANUM. Returns 0, or
 * the code of zomath_basic_summary_stats. */
ZOMATH_API int zomath_opt_summary_stats(int nSize, const double* pData, double dConfLevel,
                                        double* pMode, bool* pbMultiModal, double* pGeoSD,
                                        double* pLCL, double* pUCL, double* pSDx2,
                                        double* pSDx3, int nMomentDenFlag,
                                        const double* pWeights);

/* Every field of DescStatResults for one sample, from the moment engine alone (so a weight
 * below 0 is read as 0 on every flag). Writes N and Missing, and NANUM to every double but SEM,
 * LCL, UCL, COV, Mode and WeightSum, before its checks; with no valid point those six keep what
 * they held. One valid point of weight w reports WeightSum as w truncated to a whole number and
 * MAD NANUM. A negative GeoMean is NANUM. Returns 0; -155 nSize < 0; -156 a null pResults, or
 * a null pData with nSize > 0; -166 no memory; -196 dConfLevel not strictly between 0 and 1. */
ZOMATH_API int zomath_desc_stats(const double* pData, int nSize, DescStatResults* pResults,
                                 const double* pWeights, double dConfLevel, int nMomentDenFlag);

/* The fields that pOptions asks for, for each of nSubsets consecutive slices of the data (and
 * weights): slice i starts at the sum of the sizes before it and ends before the sum up to it
 * (pSubsetSizes holds doubles); an end of 0 means the end of the data, so one size of 0.0 takes
 * the whole sample, and a slice outside the data is empty (N 0). Unasked fields are NANUM and
 * -1. pResults and pbMultiModal (may be null) hold nSubsets items. Returns 0 (also for
 * nSubsets 0); -151 nSubsets < 0; -155 nSize < 0; -156 a null pointer; or the first failing
 * code of a slice, whose record is written. */
ZOMATH_API int zomath_desc_stats_ex(const double* pData, int nSize, const double* pSubsetSizes,
                                    int nSubsets, const DescStatOptions* pOptions,
                                    DescStatResults* pResults, const double* pWeights,
                                    double dConfLevel, bool* pbMultiModal);

/* One value a row of the row-major nRows x nCols matrix in each non-null output, from the row
 * without its NANUM, unweighted, limits at the level 0.95; pN holds the count as a double. A
 * row with no valid value gets NANUM in every output (pN too). Returns 0; -11 a null matrix;
 * -3 nRows or nCols below 1; -19 no memory for a row. */
ZOMATH_API int zomath_row_desc_stats(int nRows, int nCols, const double* pMatrix, double* pMean,
                                     double* pSD, double* pSEM, double* pMin, double* pMax,
                                     double* pSum, double* pN, double* pLCL, double* pUCL,
                                     int nMomentDenFlag);

/* As zomath_row_desc_stats, with the other statistics of a row. pMissing counts the NANUM of
 * each row, but is 0 for a row that holds nothing else; pbMultiModal is false there. */
ZOMATH_API int zomath_row_desc_stats_ex(int nRows, int nCols, const double* pMatrix,
                                        double* pMean, double* pSD, double* pSEM, double* pMin,
                                        double* pMax, double* pSum, double* pN, double* pLCL,
                                        double* pUCL, double* pVariance, double* pSkewness,
                                        double* pKurtosis, double* pUncorSumSq,
                                        double* pCorSumSq, double* pCOV, double* pMAD,
                                        int* pMissing, double* pGeoMean, double* pMode,
                                        bool* pbMultiModal, double* pGeoSD, double* pSDx2,
                                        double* pSDx3, int nMomentDenFlag);

/* Moments about zero, for signal work: NANUM is an ordinary number here and no mean is taken
 * out. 0.0 for nSize 0; NANUM for a negative nSize or a null pData.
 * zomath_root_mean_square: sqrt(sum x^2 / n); zomath_absolute_arithmetic_average: sum |x| / n;
 * zomath_skewness: sum x^3 / (n r^3); zomath_kurtosis: sum x^4 / (n r^4) (no - 3), where r is
 * dRMS, or the root mean square when dRMS is below 0 (r = 0 gives an infinity or NaN). */
ZOMATH_API double zomath_root_mean_square(const double* pData, int nSize);
ZOMATH_API double zomath_absolute_arithmetic_average(const double* pData, int nSize);
ZOMATH_API double zomath_skewness(const double* pData, int nSize, double dRMS);
ZOMATH_API double zomath_kurtosis(const double* pData, int nSize, double dRMS);

/* Smallest and largest value that isn't NANUM (NaN is never chosen), their first positions and
 * their difference. Returns 0; -156 a null pointer; -158 no such value (indices -1, NANUM). */
ZOMATH_API int zomath_range(const double* pData, int nSize, RangeResults* pResults);

/* The mean ordinate of the curve (x, y): its area by zomath_integrate divided by the extent
 * from the first to the last valid x. *pResult is NANUM until known. Returns 0; -156 a null
 * pointer; -7 fewer than 2 valid points or no extent; -17 x both rising and falling. */
ZOMATH_API int zomath_mathematical_expectation(int nSize, const double* pX, const double* pY,
                                               double* pResult);

/* The curve (x, y) read as a density: x strictly rising, finite, y >= 0 and finite. Into the
 * non-null outputs (NANUM and -1 until known): the peak (nPeakType 1 the largest y, any other
 * the smallest) with its x, y and index; Mean = sum x y / sum y (NANUM for y all 0); Median =
 * the x at which the running sum of y first reaches half the total (NANUM for y all 0); SD =
 * sqrt(mean ordinate of y^2 - Mean^2), only when pMean is wanted and that difference is above
 * 0. Returns 0; -156 a null pX or pY; -110 nSize < 3; -220 x not strictly rising or a y below 0,
 * NaN, infinite or NANUM; -166 no memory. */
ZOMATH_API int zomath_basic_stats_distribution(int nSize, const double* pX, const double* pY,
                                               double* pXPeak, double* pYPeak, int* pIndexPeak,
                                               double* pMean, double* pMedian, double* pSD,
                                               int nPeakType);

/* ============================================================================================
 * Percentiles and quantiles
 * ============================================================================================
 *
 * nInterpolate picks the definition of a percentile. With the n valid values sorted as
 * x(1) <= ... <= x(n), p the percent, q = n p / 100 ((n + 1) p / 100 for definition 3), k the
 * whole part of q and g = q - k: k = 0 gives x(1) and k >= n gives x(n) under every
 * definition; otherwise
 *
 *   INTERPOLATE_EDF_AVER          0  x(k + 1) for g > 0, (x(k) + x(k + 1)) / 2 for g = 0
 *   INTERPOLATE_NEAREST_NEIGHBOR  1  x(k) for g < 0.5, x(k + 1) for g > 0.5, and at g = 0.5
 *                                    the even-numbered of the two
 *   INTERPOLATE_EDF               2  x(k + 1) for g > 0, x(k) for g = 0
 *   INTERPOLATE_WEIGHT_AVER_RIGHT 3  (1 - g) x(k) + g x(k + 1), q from n + 1
 *   INTERPOLATE_WEIGHT_AVER_LEFT  4  (1 - g) x(k) + g x(k + 1)
 *   INTERPOLATE_NONE              5  none: NANUM (the ends still come out)
 *
 * q is formed as (p n) / 100 and the rest follows in long double, so g is 0 or 0.5 exactly
 * where that quotient is. A percent outside 0..100 (or NaN) gives NANUM in its slot and no
 * error. A point is missing when its value or its weight is NANUM; a NaN value, having no place
 * in an order, is left out as well. Weights that are not all equal over the valid points make
 * the sample weighted, and the definition is then not read: with C(i) the running weight sums
 * of the sorted values and T = C(n) p / 100, the percentile is the x(i) within whose weight T
 * falls, or (x(i) + x(i + 1)) / 2 where T equals C(i) (x(n) at the last).
 *
 * Codes: -3 a row form with no rows or columns, -11 a null matrix, -19 no memory for a row,
 * -37 percent arguments that don't fit together, -108 a weight below 0, infinite or NaN, -110
 * fewer than 3 points of a distribution, -151 nInterpolate outside 0..5, -155 a size or percent
 * count below 1, -156 a null pointer, -158 no valid value for the minimum and maximum, -166 no
 * memory, -220 a distribution with x not strictly rising or a y below 0. */

enum {
  INTERPOLATE_EDF_AVER = 0,
  INTERPOLATE_NEAREST_NEIGHBOR = 1,
  INTERPOLATE_EDF = 2,
  INTERPOLATE_WEIGHT_AVER_RIGHT = 3,
  INTERPOLATE_WEIGHT_AVER_LEFT = 4,
  INTERPOLATE_NONE = 5
};

enum {
  ZOMATH_STATS_ERR_PERCENT_ARGS = -37,    /* percents and their outputs don't fit together */
  ZOMATH_STATS_ERR_NEGATIVE_WEIGHT = -108 /* a weight below 0, infinite or NaN */
};

/* Which fields of QuantileResults zomath_quantiles fills; a false one keeps its start value. */
typedef struct QuantileOptions {
  int nInterpolate; /* the percentile definition, 0..5 */
  bool bMin;
  bool bIMin;
  bool bQ1;
  bool bMedian;
  bool bQ3;
  bool bMax;
  bool bIMax;
  bool bIQR;
  bool bRange;
} QuantileOptions;

/* The five-number summary of a sample. Start values: NANUM, and -1 for the positions. */
typedef struct QuantileResults {
  double Min;
  int iMin;      /* first position of Min in the caller's array */
  double Q1;     /* percentile 25, or the lower hinge */
  double Median; /* percentile 50, or the median of the hinges */
  double Q3;     /* percentile 75, or the upper hinge */
  double Max;
  int iMax;      /* first position of Max in the caller's array */
  double IQR;    /* Q3 - Q1, of the same kind */
  double Range;  /* Max - Min */
} QuantileResults;

/* The percentile of the sample (pWeights may be null) at each of pPercents[0..nPercents) into
 * pPercentiles, in the same order (the two may be one array), under definition nInterpolate or
 * the weighted rule. Sorts the valid values once. All NANUM when no value is valid. Returns 0;
 * -155 nSize or nPercents below 1; -156 a null pData, pPercents or pPercentiles; -151
 * nInterpolate outside 0..5; -108 a bad weight; -166 no memory (outputs NANUM on failure). */
ZOMATH_API int zomath_percentiles(const double* pData, int nSize, const double* pPercents,
                                  int nPercents, double* pPercentiles, int nInterpolate,
                                  const double* pWeights);

/* The fields of QuantileResults that pOptions asks for, and the percentiles of pPercents (null
 * or nPercents 0 for none; used only when pPercentiles is given too). Min, Max, their first
 * positions and Range are those of zomath_range (weights not read). Q1, Median, Q3 and IQR are
 * the percentiles 25, 50, 75 under pOptions->nInterpolate or the weighted rule; for
 * INTERPOLATE_NONE with no weight other than 1 they are Tukey's hinges instead (so 1.5, 2.5,
 * 3.5 for {1, 2, 3, 4}). Returns 0 (also for nSize 0, with start values); -155 nSize below 0;
 * -108 a bad weight; -156 a null pData, pOptions or pResults; -151 nInterpolate outside 0..5;
 * -158 Min or Max asked of a sample with no valid value; -166 no memory. */
ZOMATH_API int zomath_quantiles(const double* pData, int nSize, const QuantileOptions* pOptions,
                                QuantileResults* pResults, const double* pPercents,
                                int nPercents, double* pPercentiles, const double* pWeights);

/* For each row of the row-major nRows x nCols matrix, into each non-null output: a row of 1 to
 * 4 valid values as zomath_quantiles gives it under nInterpolate, a row of 5 or more Tukey's
 * five numbers whatever nInterpolate (never interpolated), a row with none NANUM. Returns 0;
 * -11 a null matrix; -3 nRows or nCols below 1; -151 nInterpolate outside 0..5; -19 no memory. */
ZOMATH_API int zomath_row_quantiles(int nRows, int nCols, const double* pMatrix, double* pMin,
                                    double* pMax, double* pQ1, double* pMedian, double* pQ3,
                                    int nInterpolate);

/* Each row through zomath_quantiles under nInterpolate, whatever its size, into the non-null
 * outputs; piMin and piMax count columns. Row i of the nRows x nPercents matrix pPercentiles
 * gets the row's percentiles. A row with no valid value gets NANUM, and 0 in piMin and piMax.
 * Returns 0; -11 a null matrix; -3 nRows or nCols below 1; -37 pPercentiles without pPercents,
 * or pPercents with nPercents below 1; -151 nInterpolate outside 0..5; -19 no memory; or the
 * code of a row. */
ZOMATH_API int zomath_row_quantiles_ex(int nRows, int nCols, const double* pMatrix, double* pMin,
                                       double* pMax, double* pQ1, double* pMedian, double* pQ3,
                                       int* piMin, int* piMax, double* pIQR, double* pRange,
                                       const double* pPercents, int nPercents,
                                       double* pPercentiles, int nInterpolate);

/* Percentiles of the curve (x, y) read as a density, x strictly rising and y >= 0 (all finite):
 * for each fraction f of pPercents (strictly between 0 and 1), the x at which the cumulative
 * trapezoid area reaches f times the total, linear between points, and in pIndices the point
 * that starts that interval. f equal to 0 or 1 (to 12 digits) gives the first or last x and
 * point; any other f outside (0, 1) gives NANUM and 0. Outputs may be null. Returns 0; -156 a
 * null pX, pY or pPercents; -110 nSize below 3; -155 nPercents below 1; -220 x not strictly
 * rising or a y below 0, NaN, infinite or NANUM; -166 no memory. */
ZOMATH_API int zomath_percentiles_distribution(int nSize, const double* pX, const double* pY,
                                               const double* pPercents, int nPercents,
                                               double* pPercentiles, int* pIndices);

/* ============================================================================================
 * Hypothesis tests
 * ============================================================================================
 *
 * Tests on means and variances and the confidence limits that go with them. Sample statistics
 * come from zomath_basic_summary_stats with the denominator n - 1, without the NANUM of the data.
 * Every export fills its result record with NANUM (counts with 0 or -1) before its checks, so a
 * caller who ignores the code reads missing values. The Student probabilities are
 * P2 = P(|T| >= |t|) = I(d / (d + t^2); d / 2, 1 / 2), the regularized incomplete beta function,
 * folded to the tail: the upper tail is P2 / 2 for t > 0 and 1 - P2 / 2 otherwise, the lower tail
 * the other way round.
 *
 * Codes: -1 negative degrees of freedom for the limits of a mean, -2 and -51 the size and tail of
 * zomath_t_test_one_sample, -3 no rows or columns, -11 a null pointer where the export says so,
 * -19 no memory for a row, -151 a tail, test value or level out of range, or no levels, -155 an
 * empty sample, -156 a null pointer, -157 bad options of the two-sample chi-square test, -165
 * too few pairs or negative degrees of freedom, -166 no memory, -175 paired samples of different
 * sizes. */

/* The alternative of a test. */
enum {
  TAILED_TEST_TWO = 0,   /* two-sided */
  TAILED_TEST_UPPER = 1, /* the statistic is larger than under the hypothesis */
  TAILED_TEST_LOWER = 2  /* the statistic is smaller */
};

enum {
  ZOMATH_TEST_ERR_SUMMARY_TAIL = -51,  /* zomath_t_test_one_sample: TailType outside 0..2 */
  ZOMATH_TEST_ERR_CHI2_OPTIONS = -157  /* zomath_two_sample_chi_square_test: bad options */
};

typedef struct HypotTestOptions {
  double dReserved;  /* read by no export */
  double dTestValue; /* hypothesized mean, difference of means, or variance */
  int TailType;      /* TAILED_TEST_* */
} HypotTestOptions;

/* One-sample t test; also the group statistics of the analysis of variance (N..SEM). */
typedef struct tTestMeanResults {
  int N;         /* valid points */
  double Mean;
  double SD;
  double SEM;
  int DOF;       /* N - 1 */
  double tValue;
  double Prob;
} tTestMeanResults;

/* Two-sample t tests: the summaries of both samples and the test. */
typedef struct tTestMean2SampleResults {
  int N1;
  double Mean1;
  double SD1;
  double SEM1;
  int N2;
  double Mean2;
  double SD2;
  double SEM2;
  double DiffMean; /* Mean1 - Mean2 (paired test) */
  double DiffSEM;  /* SEM1 - SEM2 (paired test) */
  double DOF;
  double tValue;
  double Prob;
} tTestMean2SampleResults;

/* Welch's test beside Student's in zomath_two_sample_t_test. */
typedef struct tTestResults {
  double DOF;
  double tValue;
  double Prob;
} tTestResults;

typedef struct ChiSqTestResults {
  double DOF;
  double Chi;
  double Prob;
} ChiSqTestResults;

typedef struct ChiSq2SampleResults {
  int DOF;
  double Chi;
  double Prob;
} ChiSq2SampleResults;

typedef struct FTestResults {
  int DOF1;
  int DOF2;
  double F;
  double Prob;
} FTestResults;

/* Student's t test of the mean of the data (NANUM left out) against pOptions->dTestValue:
 * t = (Mean - dTestValue) sqrt(N) / SD on N - 1 degrees of freedom. One valid point, a constant
 * sample, or data holding NaN or an infinity leave tValue, Prob NANUM and DOF 0 and return N
 * (> 0): no test. Returns 0;
 * -156 a null pointer (pData only with nSize > 0); -151 TailType outside 0..2 or a dTestValue that
 * is NaN, infinite or NANUM; -155 nSize < 1 or no valid point. */
ZOMATH_API int zomath_one_sample_t_test(const double* pData, int nSize,
                                        const HypotTestOptions* pOptions,
                                        tTestMeanResults* pResults);

/* The same test from a summary: *pProb (required) and *pT (optional) of the sample of nSize
 * points with mean dMean and SD dSD; *pDOF = nSize - 1. nFlat 1, nSize 1, or a dSD that is not
 * above 0 writes NANUM to *pProb and *pT and returns 0. Returns 0; -11 a null pProb; -51
 * TailType outside 0..2; -2 nSize < 1. */
ZOMATH_API int zomath_t_test_one_sample(int nSize, double dMean, double dSD, double* pProb,
                                        int nFlat, int* pDOF, double* pT, double dTestValue,
                                        int TailType);

/* Student's (pooled variance) and Welch's (unequal variances, Satterthwaite's degrees of
 * freedom) tests of Mean1 - Mean2 against dTestValue, each sample without its NANUM. Into
 * *pEqualResults the summaries (N 0 for an empty sample), DOF = N1 + N2 - 2 and Student's t and
 * Prob; into *pUnequalResults (optional) Welch's DOF, t and Prob. DiffMean and DiffSEM are left
 * NANUM. A sample of fewer than 2 points, or both SDs 0, leaves the tests NANUM and returns 0.
 * Returns 0; -156 a null pointer (pData only with its size above 0); -155 a size below 0;
 * -151 TailType outside 0..2 or a dTestValue not finite (the summaries are written). */
ZOMATH_API int zomath_two_sample_t_test(const double* pData1, int nSize1, const double* pData2,
                                        int nSize2, const HypotTestOptions* pOptions,
                                        tTestMean2SampleResults* pEqualResults,
                                        tTestResults* pUnequalResults);

/* The paired t test of mean(x - y) against dTestValue, over the positions where neither sample
 * is NANUM. DiffMean = Mean1 - Mean2 (taken as the mean of the differences, which keeps its
 * digits when the means are close), DOF = N1 - 1, DiffSEM = SEM1 - SEM2; t = (DiffMean -
 * dTestValue) sqrt(N1) / SD of the differences. At t = 0 the upper tail is P2 / 2 and the lower
 * 1 - P2 / 2 (both 1/2). One pair: DiffMean and the means, no test, return 0; differences all
 * equal: tValue, Prob NANUM, return 0. Returns 0; -156 a null pointer; -175 nSize1 != nSize2;
 * -165 no pair (the sizes below 1, or every pair missing); -166 no memory; -151 TailType outside
 * 0..2 or a dTestValue not finite, checked when the probability is formed (the record is then
 * reset: NANUM, counts 0). */
ZOMATH_API int zomath_two_sample_t_test_pair(const double* pData1, int nSize1,
                                             const double* pData2, int nSize2,
                                             const HypotTestOptions* pOptions,
                                             tTestMean2SampleResults* pResults);

/* The chi-square test of the variance of the data (NANUM left out) against dTestValue:
 * Chi = (N - 1) SD^2 / dTestValue on N - 1 degrees of freedom; upper tail P(X > Chi), lower
 * P(X <= Chi), two-sided twice the smaller. SD 0: Chi = Prob = 0. Fewer than 2 valid points:
 * DOF 0, Chi and Prob NANUM. Returns 0; -156 a null pointer (pData only with nSize > 0); -151
 * dTestValue not above 0 (or infinite) or TailType outside 0..2; -155 nSize < 0. */
ZOMATH_API int zomath_chi_square_test(int nSize, const double* pData,
                                      const HypotTestOptions* pOptions,
                                      ChiSqTestResults* pResults);

/* The chi-square test of the pooled variance of a filled two-sample record against
 * dTestValue: Chi = ((N1 - 1) SD1^2 + (N2 - 1) SD2^2) / dTestValue on DOF = the record's DOF
 * truncated. SD1 or SD2 NANUM, or DOF -1 or 0: Chi, Prob NANUM, return 0. Returns 0; -156 a
 * null pointer; -157 dTestValue not above 0 (or infinite), TailType outside 0..2, a DOF that is
 * NaN or beyond the int range, or a Chi that is NaN (then DOF 0); -165 DOF below -1 (then DOF
 * 0). */
ZOMATH_API int zomath_two_sample_chi_square_test(const HypotTestOptions* pOptions,
                                                 const tTestMean2SampleResults* pSummary,
                                                 ChiSq2SampleResults* pResults);

/* The F test of equal variances: F = SD1^2 / SD2^2 on N1 - 1 and N2 - 1 degrees of freedom,
 * each sample without its NANUM; upper tail P(X > F), lower P(X <= F), two-sided twice the
 * smaller (so never above 1, also for an F between 1 and the median). Fewer than 2 valid points
 * in a sample or an SD of 0: F, Prob NANUM, return 0. Returns 0; -156 a null pOptions or
 * pResults; -151 TailType outside 0..2; else the sum of the two samples' summary codes (-155 a
 * size below 0, -156 a null pData with its size above 0, -166 no memory). */
ZOMATH_API int zomath_f_test(int nSize1, const double* pData1, int nSize2, const double* pData2,
                             const HypotTestOptions* pOptions, FTestResults* pResults);

/* Student's pooled-variance test of row r of the row-major nRows x nCols pMatrix1 against row
 * r of pMatrix2, each without its NANUM, of the difference of means against dTestValue.
 * TailType 1 upper, 2 lower, any other value two-sided. Into the non-null outputs (nRows each)
 * t, N1 + N2 - 2 and the probability; NANUM for a row pair with fewer than 2 valid points in a
 * row or both SDs 0. Returns 0; -11 a null matrix; -3 nRows or nCols below 1; -19 no memory. */
ZOMATH_API int zomath_row_ttest2(int nRows, int nCols, const double* pMatrix1,
                                 const double* pMatrix2, double dTestValue, int TailType,
                                 double* pT, double* pDOF, double* pProb);

/* Confidence limits of a mean for each of nLevels levels c: Mean -+ t SD / sqrt(N), t the
 * two-sided Student deviate of c on N - 1 degrees of freedom. The limits (pLCLs, pUCLs hold
 * nLevels each; either may be null) start NANUM. SD 0: every limit is Mean, return 0. DOF 0 or
 * -1: NANUM, return 0. Returns 0; -156 a null pLevels or pSummary; -151 nLevels < 1 or a level
 * not strictly between 0 and 1 (the limits of the levels before it are written); -1 DOF < -1. */
ZOMATH_API int zomath_confidence_levels_for_mean(const double* pLevels, int nLevels,
                                                 const tTestMeanResults* pSummary,
                                                 double* pLCLs, double* pUCLs);

/* Confidence limits of a variance with dDOF degrees of freedom and sample SD dSD: S / q upper
 * and S / q lower, S = dSD^2 dDOF, q the chi-square quantiles with (1 - c) / 2 beyond them.
 * dDOF not above 0 (or NANUM), or dSD NANUM, leaves NANUM. Returns 0; -156 a null pLevels;
 * -151 nLevels < 1 or a level not strictly between 0 and 1 (earlier levels are written). */
ZOMATH_API int zomath_confidence_levels_for_variance(int nLevels, const double* pLevels,
                                                     double dSD, double dDOF, double* pLCLs,
                                                     double* pUCLs);

/* Confidence limits of Mean1 - Mean2 from the record's N, Mean and SD of each sample, by
 * Student's pooled variance (_equal_var) or Welch's unequal variances (_unequal_var). A level
 * whose interval can't be formed (fewer than 2 points in a sample, both SDs 0) gets NANUM.
 * Returns 0 (also for nLevels 0); -156 a null pLevels or pSummary; -151 nLevels < 0 or a level
 * not strictly between 0 and 1 (earlier levels are written). */
ZOMATH_API int zomath_two_sample_confidence_levels_for_mean_equal_var(
    const double* pLevels, int nLevels, const tTestMean2SampleResults* pSummary, double* pLCLs,
    double* pUCLs);
ZOMATH_API int zomath_two_sample_confidence_levels_for_mean_unequal_var(
    const double* pLevels, int nLevels, const tTestMean2SampleResults* pSummary, double* pLCLs,
    double* pUCLs);

/* Confidence limits of the mean difference of a paired test: DiffMean -+ w, with the standard
 * error of the differences recovered from the record's test as (DiffMean - dTestValue) /
 * tValue (so pOptions must be those of the test) and w its multiple by the two-sided Student
 * deviate of c on DOF degrees of freedom. DOF 0, or a tValue of 0 or NANUM, leaves NANUM.
 * Returns 0; -156 a null pLevels, pSummary or pOptions; -151 nLevels < 1 or a level not
 * strictly between 0 and 1 (no limit is then written but NANUM). */
ZOMATH_API int zomath_two_sample_confidence_levels_for_mean_pair(
    const double* pLevels, int nLevels, const tTestMean2SampleResults* pSummary,
    const HypotTestOptions* pOptions, double* pLCLs, double* pUCLs);

/* Confidence limits of the ratio of two variances, pSDs[0]^2 / pSDs[1]^2 of samples of
 * pSizes[0] and pSizes[1] points: F / q upper and F / q lower, q the F quantiles on
 * pSizes[0] - 1 and pSizes[1] - 1 degrees of freedom with (1 - c) / 2 beyond them. Sizes below 2,
 * an SD NANUM, or a level outside (0, 1) give NANUM limits. Returns 0; -156 a null pLevels,
 * pSDs or pSizes; -151 nLevels < 1. */
ZOMATH_API int zomath_two_sample_confidence_levels_for_variance(int nLevels,
                                                                const double* pLevels,
                                                                const double* pSDs,
                                                                const int* pSizes, double* pLCLs,
                                                                double* pUCLs);

/* ============================================================================================
 * Analysis of variance
 * ============================================================================================
 *
 * Groups are consecutive stretches of one data array, given by their sizes; NANUM points are
 * left out of their group. Sums of squares are formed from group means known to twice a
 * double's precision, so a constant far larger than the spread (1e12 + 0.1 x) costs no digits.
 * F probabilities are upper tails P(F > f), computed directly. A table's doubles start NANUM
 * and its counts 0 (group and level counts -1), so a failed call leaves missing values.
 *
 * Codes: -98 sizes that don't fit together (group sizes adding to more than nSize, more groups
 * than records, an output shorter than the pairs it must hold, fewer than one level); -150 the
 * corrected total of a fitted model could not be had; -151 nMethod, bInteraction, nCompareMethod
 * or a factor level out of range; -156 a null pointer; -166 no memory; -170 nDOF below 1; -196
 * dSigLevel not strictly between 0 and 1; positive: the code of the regression under the
 * two-way table, or of the simultaneous intervals. */

enum {
  ANOVA_LEVENE = 1,   /* Levene's test: |x - group mean| */
  ANOVA_LEVENESQ = 2, /* (x - group mean)^2 */
  ANOVA_BROWN = 3     /* Brown and Forsythe's test: |x - group median| */
};

enum {
  COMPARE_TUKEY = 1,           /* Tukey-Kramer: the studentized range */
  COMPARE_BONFERRONI = 2,      /* two-tailed t times the number of pairs, at most 1 */
  COMPARE_SIDAK = 3,           /* 1 - (1 - two-tailed t)^(number of pairs) */
  COMPARE_FISHER_LSD = 4,      /* two-tailed t */
  COMPARE_SCHEFFE = 5,         /* upper F of t^2 / (k - 1) on k - 1 and nDOF degrees */
  COMPARE_NONE = 6,            /* accepted; nothing is computed */
  COMPARE_HOLM_BONFERRONI = 7, /* two-tailed t, Holm's step-down thresholds alpha / (m - c) */
  COMPARE_HOLM_SIDAK = 8       /* two-tailed t, thresholds 1 - (1 - alpha)^(1 / (m - c)) */
};

enum {
  ZOMATH_ANOVA_ERR_SIZES = -98,      /* sizes that don't fit together */
  ZOMATH_ANOVA_ERR_FIT = -150,       /* zomath_nlsf_anova: no corrected total */
  ZOMATH_ANOVA_ERR_DOF = -170,       /* nDOF below 1 */
  ZOMATH_ANOVA_ERR_SIG_LEVEL = -196  /* dSigLevel not strictly between 0 and 1 */
};

/* A one-way table: between groups (model), within groups (error), total. */
typedef struct ANOVATable {
  double DOF1;
  double SSq1;
  double MeanSq1;
  double DOF2;
  double SSq2;
  double MeanSq2;
  double DOF3;
  double SSq3;
  double MeanSq3; /* always NANUM */
  double FValue;  /* MeanSq1 / MeanSq2 */
  double PValue;  /* P(F > FValue) on DOF1 and DOF2 degrees */
} ANOVATable;

typedef struct ANOVAFitSummary {
  double RSquare;   /* SSq1 / SSq3; 0 for constant data */
  double CoefVar;   /* RootMSE / GrandMean */
  double RootMSE;   /* sqrt(MeanSq2) */
  double GrandMean; /* mean of the valid points of all groups */
} ANOVAFitSummary;

/* Statistics of one level, one cell or all data of a two-way layout. */
typedef struct ANOVA2TotalStats {
  int N; /* observations, missing ones included */
  double Mean;
  double SD;
  double SEM;
  double VAR;
  int Missing;    /* observations whose value is NANUM */
  int NonMissing; /* N - Missing */
} ANOVA2TotalStats;

typedef struct ANOVA2TableRow {
  int DOF;
  double SSq;
  double MeanSq;
  double FValue;
  double PValue;
} ANOVA2TableRow;

typedef struct ANOVA2Table {
  ANOVA2TableRow FactorA;
  ANOVA2TableRow FactorB;
  ANOVA2TableRow Interaction;
  ANOVA2TableRow Model;
  ANOVA2TableRow Error;
  ANOVA2TableRow CorrectedTotal;
} ANOVA2Table;

/* The one-way analysis of nGroups groups, pGroupSizes[g] points each, read in turn from the
 * start of pData (a tail beyond their sum is not read). Into pGroupStats[g] N, Mean, SD, SEM of
 * the group's valid points (DOF, tValue, Prob keep -1 and NANUM). k, the groups with a valid
 * point, give DOF1 = k - 1 and DOF2 = n - k. F and its probability need n > 2, k > 1, data not
 * all equal and MeanSq2 above 0. pGroupStats, pFit and pTable may be null. Returns 0; -156 a
 * null pData or pGroupSizes; -98 a negative size, nGroups above nGroupStats (with pGroupStats)
 * or group sizes adding to more than nSize; -166 no memory. */
ZOMATH_API int zomath_anova_one_way(const double* pData, int nSize, int nGroups,
                                    const int* pGroupSizes, tTestMeanResults* pGroupStats,
                                    int nGroupStats, ANOVAFitSummary* pFit, ANOVATable* pTable);

/* The one-way table of the groups' values after the transform of nMethod: 0 and 4 none,
 * ANOVA_LEVENE |x - mean|, ANOVA_LEVENESQ (x - mean)^2, ANOVA_BROWN |x - median| (the centre is
 * the group's own); pGroupStats receives the statistics of the transformed values. Codes as
 * zomath_anova_one_way, and -151 nMethod outside 0..4. */
ZOMATH_API int zomath_anova_equal_variance_test(const double* pData, int nSize, int nGroups,
                                                const int* pGroupSizes,
                                                tTestMeanResults* pGroupStats, int nGroupStats,
                                                ANOVATable* pTable, int nMethod);

/* Pairwise comparison of k = nGroups means with counts pCounts and the error mean square dMSE on
 * nDOF degrees. The m = k (k - 1) / 2 pairs run (1,0), (2,0), (2,1), (3,0), ...: pIndex the pair
 * number, pDiff mean i - mean j, pSEM sqrt(dMSE (1/n_i + 1/n_j)), pStat and pProb by
 * nCompareMethod (COMPARE_*), pLCL and pUCL the simultaneous limits at 1 - dSigLevel (methods 1
 * to 5, only when every pair has a positive finite pSEM), pSig 1 where a pair differs. The Holm
 * methods sort the pairs by pProb (the unusable last) and mark them while pProb <= pAlpha, the
 * thresholds in order; pAlpha is dSigLevel for the other methods. Each output holds
 * nComparisons >= m values (the size arguments say how many it has); start values 0 and NANUM.
 * Returns 0; -196 dSigLevel outside (0, 1); -151 nCompareMethod outside 1..8, or for the Holm
 * methods sizes of pProb and pAlpha that differ; -156 a null array; -98 a size too small or
 * negative; -170 nDOF below 1; -166 no memory; positive: the intervals could not be formed. */
ZOMATH_API int zomath_anova_mean_comparison(
    const double* pMeans, int nMeans, const int* pCounts, int nCounts, double dMSE, int nDOF,
    double dSigLevel, int nGroups, int* pIndex, int nComparisons, double* pDiff, int nDiff,
    double* pLCL, int nLCL, double* pUCL, int nUCL, double* pSEM, int nSEM, double* pStat,
    int nStat, double* pProb, int nProb, int* pSig, int nSig, double* pAlpha, int nAlpha,
    int nCompareMethod);

/* The two-way table of pData by the factors pFactorA and pFactorB (level numbers 1..nLevelsA and
 * 1..nLevelsB, one a point), with the interaction when bInteraction is 1. Statistics of each
 * level into pStatsA[nLevelsA] and pStatsB[nLevelsB], of all data into pTotal, of cell (a, b)
 * into pCells[(a - 1) nLevelsB + (b - 1)] (each may be null). The NANUM points are dropped and
 * the rest regressed on effect-coded columns (a level of a factor against its last level);
 * type III sums: the residual sum of the model without a source's columns less the full one's,
 * on the rank they remove. Constant data: sums and mean squares 0, no F. Returns 0; -151
 * bInteraction not 0 or 1, or a level out of range; -156 a null pData or factor; -98 nSize
 * below 0, a level count below 1 or more cells than an int counts; -166 no memory; positive:
 * the regression's code. */
ZOMATH_API int zomath_stats_anova_two_way_compute_anova_table(
    int bInteraction, const int* pFactorA, int nLevelsA, const int* pFactorB, int nLevelsB,
    const double* pData, int nSize, ANOVA2TotalStats* pStatsA, ANOVA2TotalStats* pStatsB,
    ANOVA2TotalStats* pTotal, ANOVA2TotalStats* pCells, ANOVA2Table* pTable);

/* The valid values (not NANUM) of each cell of a two-way layout whose factors take any int
 * values: *pnLevelsA and *pnLevelsB the distinct values of each, and pCounts[i nB + j] the count
 * at the i-th smallest value of A and the j-th smallest of B. pCounts may be null (only the
 * level counts). Returns 0; -156 a null pData, factor or level count; -98 nSize below 0, or
 * nCounts below nA nB (the level counts are written); -166 no memory. */
ZOMATH_API int zomath_anova2_count_values_per_cell(int nSize, const double* pData,
                                                   const int* pFactorA, const int* pFactorB,
                                                   int* pnLevelsA, int* pnLevelsB, int* pCounts,
                                                   int nCounts);

/* zomath_anova_mean_comparison of the levels of one factor, from their statistics (Mean, and
 * NonMissing as the count) and the error row of the two-way table (dDOF truncated to an int).
 * Returns -151 for dSigLevel outside (0, 1) or nCompareMethod outside 1..8, -156 a null
 * pLevelStats, -98 nLevels below 0 or an output size below nComparisons; otherwise 0, whatever
 * the comparison returned (its outputs then keep their start values). */
ZOMATH_API int zsANOVA2Way_Means_Comparison(
    const ANOVA2TotalStats* pLevelStats, int nLevels, double dMSE, double dDOF,
    double dSigLevel, int nGroups, int* pIndex, int nComparisons, double* pDiff, int nDiff,
    double* pLCL, int nLCL, double* pUCL, int nUCL, double* pSEM, int nSEM, double* pStat,
    int nStat, double* pProb, int nProb, int* pSig, int nSig, double* pAlpha, int nAlpha,
    int nCompareMethod);

/* The table of a fitted model of nParams parameters with residual sum dSSE, about zero: with
 * U = sum w y^2 over the valid points (pWeights null: 1), model nParams and U - dSSE, error
 * nSize - nParams and dSSE, total nSize and U; PValue on nParams - 1 and DOF2 degrees.
 * pCorrectedTotal, if given, receives nSize - 1, sum w (y - mean)^2 and NANUM. Returns 0; -156
 * a null pX, pY or pTable; -150 fewer than 2 valid points or a weight below 0. */
ZOMATH_API int zomath_nlsf_anova(int nSize, const double* pX, const double* pY, int nParams,
                                 double dSSE, ANOVATable* pTable, const double* pWeights,
                                 double* pCorrectedTotal);


ZOMATH_EXTERN_C_END

#endif /* ZOMATH_STATS_H */
