/* zomath: regression. The records of the fit family (parameters, goodness of fit, analysis of
 * variance, weighted sums, options), the straight-line and polynomial fits, and the multiple
 * linear regression with the tools of its report: correction after column scaling, residual
 * diagnostics, plot sums, partial regression plots, column normalisation, dummy coding and the
 * information criterion.
 *
 * Matrices are row-major. A result record is filled with NANUM (counts 0) before the checks, so
 * a failed call leaves missing values. This header is plain C. */
#ifndef ZOMATH_REGRESSION_H
#define ZOMATH_REGRESSION_H

#include "zomath/core.h"

#ifndef __cplusplus
#include <stdbool.h>
#endif

/* Options of the fits. With a null pointer the linear fit and the multiple regression take:
 * FixSlope false, FixSlopeAt 1.0, Reserved1 0, ErrorScaledByReducedChiSq true, ConfLevel 0.95,
 * ExclusiveFix false, FixIntercept false, FixInterceptAt 0.0. */
typedef struct LinearFitOptions {
  bool FixSlope;                  /* hold the slope at FixSlopeAt (straight-line fit only) */
  double FixSlopeAt;
  int Reserved1;                  /* copied, read by no fit */
  bool ErrorScaledByReducedChiSq; /* true: errors scaled by the root of the reduced chi-square;
                                     false: the errors that trust the weights alone */
  double ConfLevel;               /* level of LCL and UCL, 0 to 1 */
  bool ExclusiveFix;              /* read only by zomath_reg_plots */
  bool FixIntercept;              /* hold the intercept at FixInterceptAt */
  double FixInterceptAt;
} LinearFitOptions;

/* One fitted parameter. A fixed one carries only `value` (every other double NANUM). */
typedef struct FitParameter {
  double value;         /* the estimate (-0.0 written as +0.0) */
  bool Fixed;           /* given, not fitted */
  double Error;         /* standard error */
  double tValue;        /* value / Error */
  double Prob;          /* two-tailed probability of tValue */
  double LCL;           /* lower confidence limit */
  double UCL;           /* upper confidence limit */
  double Reserved;      /* NANUM */
  double ConfHalfWidth; /* |t critical| * Error */
} FitParameter;

/* Goodness of fit. */
typedef struct FitStats {
  double N;            /* number of points */
  double DOF;          /* residual degrees of freedom */
  double ReducedChiSq; /* RSS / DOF */
  double RSS;          /* residual (weighted) sum of squares */
  double PearsonR;     /* Sxy / sqrt(Sxx Syy) */
  double R;            /* sqrt(RSquare) */
  double RSquare;      /* (Syy - RSS) / Syy */
  double AdjRSquare;   /* adjusted coefficient of determination */
  double RootMSE;      /* sqrt(RSS / DOF) */
  double ResidualNorm; /* Euclidean norm of the plain, unweighted residuals */
} FitStats;

/* Analysis of variance of a fit; TotalMS is always NANUM. */
typedef struct FitAnovaTable {
  double ModelDF, ModelSS, ModelMS;
  double ErrorDF, ErrorSS, ErrorMS;
  double TotalDF, TotalSS, TotalMS;
  double FValue, ProbF;
} FitAnovaTable;

/* Weighted sums: corrected about the weighted means with a free intercept, raw sums of x*x,
 * x*y and y*y about zero under FixIntercept (whatever FixInterceptAt). */
typedef struct FitSums {
  double SumW, Sxx, Sxy, Syy, MeanX, MeanY;
} FitSums;

ZOMATH_EXTERN_C_BEGIN

/* Weighted least squares of pY on the nVars columns of pX (nSize rows, no column of ones), by
 * QR with rank detection: psFit[0] the intercept (fixed under FixIntercept), psFit[1 + i] the
 * coefficient of column i; at most nFitSize records are written. pStats, pAnova, the two
 * matrices (top left ip by ip block of nMatrixRows by nMatrixCols), pLeverage and pFitError
 * (nSize values each) may be null; a null pOptions takes the defaults above, pWeights null means
 * ones and nWeightSize 0 means nSize. With pFitError the weights in pWeights are replaced by
 * their reciprocals (0 by NANUM).
 * Codes: -151 ConfLevel outside 0..1, -156 null pX, pY or psFit, -174 nWeightSize, -98 a matrix
 * or nFitSize too small (or sizes beyond the int range), -108 a negative weight, -212 more
 * parameters than points, -150 an internal step failed; positive: the solver's code, 442 nothing
 * to estimate, 443 no convergence, 444 NaN or infinity, 445 no parameter. Zero residual degrees
 * of freedom return 0 with every error NANUM. */
ZOMATH_API int zomath_multiple_linear_regression(
    const double* pX, unsigned int nSize, unsigned int nVars, const double* pY,
    const double* pWeights, unsigned int nWeightSize, const LinearFitOptions* pOptions,
    FitParameter* psFit, unsigned int nFitSize, FitStats* pStats, FitAnovaTable* pAnova,
    double* pCovariance, double* pCorrelation, unsigned int nMatrixRows, unsigned int nMatrixCols,
    double* pLeverage, double* pFitError);

/* Carries a fit on scaled columns back to the raw ones: pFitOut[i] from pFitIn[i] with value and
 * Error times pScale[i] (a 1.0 is put in front of the scale under FixIntercept), pFitOut[0]
 * copied; pCovOut (optional) = D pCovIn D with D = diag(scale) (cells beyond the scale times 1).
 * -156 a null required pointer, -151 nRows not nCols or a size below 1. */
ZOMATH_API int zomath_MR_results_corrected(const LinearFitOptions* pOptions,
                                           const FitStats* pStats, const FitParameter* pFitIn,
                                           unsigned int nFit, double* pCovIn, unsigned int nRows,
                                           unsigned int nCols, double* pScale, unsigned int nScale,
                                           FitParameter* pFitOut, double* pCovOut);

/* Studentized residuals (internal, external), Cook's distance, Atkinson's T and the residuals
 * standardized by sqrt(dRMS), nResiduals each (outputs optional, NANUM where undefined), of a
 * model with nParams columns in pDesign (nSize rows). pLeverage is used unless null, all 0 or all
 * NANUM; else the leverages are the diagonal of X (X'X)^-1 X' (the pseudo-inverse where X'X is
 * singular). -156 null residuals or design; 366.. the inverse's codes; 451 bad sizes or dRMS. */
ZOMATH_API int zomath_diagnostic_residuals(int nSize, int nParams, double dRMS, int nResiduals,
                                           const double* pResiduals, const double* pDesign,
                                           double* pInternalStudentized,
                                           double* pExternalStudentized, double* pCooksDistance,
                                           double* pAtkinsonT, double* pStandardized,
                                           const double* pLeverage);

/* The weighted sums of x and y into pSums (FitSums above). A null pOptions means no fixing and
 * level 0.95. -165 nSize below 2, -151 ConfLevel outside 0..1 or fixes that exclude each other,
 * -156 null pX, pY or pSums, -150 no positive total weight. */
ZOMATH_API int zomath_reg_plots(const double* pX, const double* pY, const double* pWeights,
                                int nSize, const LinearFitOptions* pOptions, FitSums* pSums);

/* Added-variable plots: for each of the p terms (intercept first unless FixIntercept, then the
 * nVars columns of pX) two columns of pOut (nSize rows, nOutCols = 2p): the term's residual
 * series and the partial residuals b_j * it + e. -156 null, -110 nOutCols not 2p or nVars < 0,
 * -165 nSize below 1, -150 the normal equations could not be solved. */
ZOMATH_API int zomath_partial_reg_plots(const double* pX, int nSize, int nVars, const double* pY,
                                        const LinearFitOptions* pOptions, double* pOut,
                                        int nOutCols);

/* Columns scaled to unit standard deviation: pNormX = pX (dRows by dCols, truncated) with column
 * j times pScale[lead + j] = 1 / SD (n - 1 denominator, NANUM skipped), lead 1 with pScale[0] =
 * 1.0 for the intercept unless FixIntercept; a column without spread keeps the scale 1. -156
 * null, -151 sizes below 1 or not finite, -98 nScale too small, the summary engine's codes. */
ZOMATH_API int zomath_normalize_x(const LinearFitOptions* pOptions, const double* pX, double dRows,
                                  double dCols, double* pNormX, double* pScale, int nScale);

/* Dummy coding of 1-based levels (L the greatest) into pOut, nSize rows, cleared by the caller:
 * nMethod 0 drops level 1 (L - 1 columns), 1 drops level L (L - 1 columns), 2 keeps all (L).
 * -156 null, -151 L below 2 or above nSize or a level below 1, -110 bad nMethod, -112 a level
 * from 1 to L that never occurs (the ones are written). */
ZOMATH_API int zomath_dummy_vars(int nMethod, int nSize, const int* pLevels, double* pOut);

/* Akaike's criterion n ln(RSS / n) + 2K, K = nParams + 1, with 2K(K + 1) / (n - K - 1) added
 * when n / K < 40. With pError: 0, or NANUM and -151 for nSize < 1, nParams < 1,
 * nSize <= nParams + 1 or dRSS < 0 (unchecked without it). A result that is NaN is NANUM. */
ZOMATH_API double zomath_AIC(int nSize, int nParams, double dRSS, int* pError);

/* Straight line y = psFit[0] + psFit[1] x by weighted least squares (pWeights null: ones;
 * nWeightSize 0: nSize), the slope held at FixSlopeAt or the intercept at FixInterceptAt (a held
 * one is a fixed record). A point with a NANUM x, y or weight takes no part; zero weights count
 * in DOF, which goes by the points (n - 2, n - 1 with one held). Optional: statistics, ANOVA
 * (F = (Syy - RSS) / RSS DOF), the sums (raw about zero under FixIntercept, which RSquare and
 * TotalSS use), 2 by 2 covariance and correlation in matrices of nMatrixRows by nMatrixCols.
 * Every output is NANUM first. Codes: -165 fewer than 2 points, -174 weight count, -108 a weight
 * below 0, -196 ConfLevel outside 0..1, -156 null pX, pY or psFit, -151 both held or a held
 * value missing or not finite, -98 a matrix below 2 by 2, -150 no positive total weight; 444 a
 * NaN or infinity. Two points of a free line, or x without spread, go through the multiple
 * regression and return its code (errors NANUM where nothing is left to estimate them). */
ZOMATH_API int zomath_linear_fit(const double* pX, const double* pY, int nSize,
                                 FitParameter* psFit, const double* pWeights, int nWeightSize,
                                 const LinearFitOptions* pOptions, FitStats* pStats,
                                 FitAnovaTable* pAnova, FitSums* pSums, double* pCovariance,
                                 double* pCorrelation, unsigned int nMatrixRows,
                                 unsigned int nMatrixCols);

/* Polynomial psFit[k] x^k, k = 0..nOrder, by weighted least squares through the multiple
 * regression on the powers of x; psFit[0] is fixed under FixIntercept. A null pOptions takes the
 * regression's defaults but with errors that trust the weights (ErrorScaledByReducedChiSq
 * false). A badly scaled design (x beyond 1e4 in size or spread below 1% of its centre, y of
 * spread below 1% of its centre, or nOrder above 5) is fitted on columns at unit SD and carried
 * back; the coefficients are then polished by refinement with doubled-precision residuals.
 * Covariance and correlation ((nOrder+1)^2 cells; row and column 0 NANUM under FixIntercept) are
 * those of the raw powers; pLeverage (nSize) may be null. Points with a NANUM x, y or weight are
 * left out (leverage NANUM). nOrder 0: the weighted mean (n - 1 SD as its Error, with limits
 * at ConfLevel, 0.95 for a null pOptions), writing only value, Error, LCL and UCL of psFit[0];
 * FValue is then NANUM / ErrorMS.
 * Result: 1 when x was badly scaled, else 0 (a solver's positive code is not passed on, the
 * records stay NANUM); -165 nSize below 2, -156 null pX, pY or psFit, -151 nOrder below 0 or
 * ConfLevel outside 0..1, -98 nFitSize below nOrder + 1, -99 a matrix of fewer than nCovSize
 * cells (nCovSize < 0: unchecked), -108 a negative weight, -212 more parameters than points,
 * -150 internal failure, the summary engine's codes for order 0. */
ZOMATH_API int zomath_polynomial_fit(int nSize, const double* pX, const double* pY,
                                     const double* pWeights, int nOrder,
                                     const LinearFitOptions* pOptions, FitParameter* psFit,
                                     int nFitSize, FitStats* pStats, FitAnovaTable* pAnova,
                                     double* pCovariance, double* pCorrelation,
                                     double* pLeverage, int nCovSize);

/* pY[i] = sum of pCoef[k] pX[i]^k for k = 0..nOrder (0 for nOrder below 0; NANUM for a NANUM
 * x). False for a null pX or pY, or a null pCoef with nOrder >= 0. */
ZOMATH_API bool zomath_polynomial(const double* pX, double* pY, int nSize, const double* pCoef,
                                  int nOrder);

/* Bands about a fitted polynomial pYFit at pX: yfit -+ dTCritical sqrt(V), V = x' C x over the
 * (nOrder+1)^2 covariance pCovariance (intercept terms left out under FixIntercept), plus the
 * new observation's variance for prediction bands (bConfidence 0); V is in units of dMSE when
 * the errors trust the weights. A V that isn't positive gives a NANUM half-width (limits on the
 * fit); a NANUM x or yfit gives NANUM limits. -156 a null pointer, -165 nSize below 1, -151
 * nOrder below 0 or dConfLevel not strictly between 0 and 1. */
ZOMATH_API int zomath_calc_conf_and_pred_bands_for_polynomial(
    const double* pX, const double* pYFit, int nSize, const double* pCovariance,
    const LinearFitOptions* pOptions, int nOrder, double dConfLevel, double dMSE,
    double dTCritical, double* pLower, double* pUpper, int bConfidence);

ZOMATH_EXTERN_C_END

#endif /* ZOMATH_REGRESSION_H */
