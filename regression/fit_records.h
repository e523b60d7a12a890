// What the fits share in filling their records: the NANUM start, the parameter rule, the
// weighted sums, the correlation form of a covariance matrix and the t critical value.
#pragma once

#include <cstddef>
#include <vector>

#include "zomath/regression.h"

namespace zomath::regression {

// Return codes of the regression family.
constexpr int kErrTooSmall = -98;             // a matrix, record or scale buffer too small
constexpr int kErrCovarianceSize = -99;       // a covariance buffer smaller than the model's
constexpr int kErrNegativeWeight = -108;      // a weight below 0
constexpr int kErrColumns = -110;             // wrong column count; a method out of range
constexpr int kErrAbsentLevel = -112;         // a level of a factor never occurs
constexpr int kErrInternal = -150;            // an internal step failed (memory, solver)
constexpr int kErrOption = ZOMATH_ERR_OPTION;        // -151: option or value out of range
constexpr int kErrNullData = ZOMATH_ERR_EMPTY_DATA;  // -156: a required array is null
constexpr int kErrTooFew = ZOMATH_ERR_TOO_FEW_DATA;  // -165: too few points
constexpr int kErrWeightCount = -174;         // weight count differs from the point count
constexpr int kErrConfLevel = -196;           // the straight-line fit's level outside 0..1
constexpr int kErrTooManyParameters = -212;   // more parameters than points

// The defaults a null option pointer stands for in the linear fit and the multiple regression.
LinearFitOptions default_fit_options();

// Every double NANUM (and a fixed-NANUM parameter: Fixed true). Null pointers are skipped.
void fill_nanum(FitStats* p);
void fill_nanum(FitAnovaTable* p);
void fill_nanum(FitSums* p);
void fill_nanum(double* p, std::size_t n);
void set_fixed(FitParameter& p, double value);

// A free parameter with estimate v, error e, t critical c and d degrees of freedom: -0.0 becomes
// +0.0; tValue v / e (NANUM for a missing v or e, or e 0); ConfHalfWidth |c| e; LCL and UCL
// v -+ it; Prob the two-tailed probability of tValue with int(d) degrees. Missing inputs give
// missing outputs.
void set_parameter(FitParameter& p, double v, double e, double c, double d);

// The t with lower-tail probability 1 - (1 - level) / 2 at dof degrees; NANUM where it has none
// (dof not positive, level 1).
double t_critical(double level, double dof);

// P(F > f) with df1 and df2 degrees; NANUM for a missing f or degrees not positive.
double f_upper_probability(double f, double df1, double df2);

// The weighted sums of n points. Free intercept: Sxx, Sxy, Syy about the weighted means; about
// zero (raw sums) otherwise. A point with a NANUM weight takes no part; a NANUM x or y drops out
// of every sum that holds it while its weight still counts in SumW, as the sums of products with
// a missing factor would have it. w null means ones; x null leaves MeanX, Sxx and Sxy NANUM.
// False when the total weight is not positive.
bool weighted_sums(const double* x, const double* y, const double* w, std::size_t n,
                   bool aboutZero, FitSums& sums);

// The goodness-of-fit block and the analysis of variance of a least-squares fit of n points
// with residual sum rss on df degrees of freedom and modelDF model degrees, from the weighted
// sums (Syy the total; PearsonR from Sxx, Sxy). Null outputs are skipped.
void fill_report(double n, double rss, double df, double modelDF, const FitSums& sums,
                 double residualNorm, FitStats* pStats, FitAnovaTable* pAnova);

// The points of a fit whose x, y and weight are all present. With none missing the pointers
// are the caller's arrays (x and w may be null); otherwise they point at compact copies, and
// index gives each kept point's position in the caller's arrays.
struct CompletePoints {
  const double *x = nullptr, *y = nullptr, *w = nullptr;
  int n = 0;
  bool dropped = false;
  std::vector<int> index;  // filled only when a point was dropped
  std::vector<double> xs, ys, ws;
};
CompletePoints complete_points(const double* x, const double* y, const double* w, int n);

// corr(i, j) = cov(i, j) / sqrt(cov(i, i) cov(j, j)) over the top left k by k block of row-major
// matrices with the given row stride; NANUM where a diagonal is negative, 0 or NANUM.
void correlation_from_covariance(const double* cov, double* corr, int k, std::size_t stride);

// Under a held intercept the multiple regression puts the columns' block at the top left of its
// matrices; a fit that reports the intercept as parameter 0 moves the top left k - 1 by k - 1
// block of row-major mat (row stride `stride`) one row and one column down, leaving row and
// column 0 missing. A null mat is left alone.
void shift_past_intercept(double* mat, int k, std::size_t stride);

}  // namespace zomath::regression
