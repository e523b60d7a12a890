// Least-squares regression: weighted multiple regression with rank detection, the straight line
// about the mean or about zero, and the residual diagnostics of a fitted model.
//
// Inside the platform NANUM is an ordinary number; NaN and infinities are refused. Each routine
// returns 0 or one of the codes below, and on failure also records it in `fail` (which the
// caller resets before the call). Workspace that cannot be had throws ZOMATH_ERROR_NO_MEMORY.
#pragma once

#include <cstddef>

#include "platform/error_record.h"

namespace zomath::platform {

// No residual degrees of freedom: the positive-weight observations are as many as the rank.
// The fit stands (estimates, residuals, leverages, rank, rss and df = 0 are all written and the
// unscaled covariance too); the standard errors and the scaled covariance are NANUM.
constexpr int kRegressionNoResidualDof = 441;
// Nothing can be estimated: no observation has a positive weight, or every column of the
// weighted design is zero (rank 0). Only the residuals (y itself) are written.
constexpr int kRegressionSingular = 442;
// The singular value decomposition of the triangular factor did not converge.
constexpr int kRegressionNotConverged = 443;
// A NaN or an infinity in x, y or the weights.
constexpr int kRegressionNotFinite = 444;
// A size below 1, a stride below the column count, no parameter to fit, a null required array,
// a negative weight, or a tolerance that is negative or not finite.
constexpr int kRegressionBadArgument = 445;

// Codes of simple_regression besides kRegressionNotFinite and kRegressionBadArgument. With 462
// and 467 nothing is estimated (every output NANUM): the caller takes the multiple regression,
// which copes with both. With 463 every output stands.
//   462: the points of positive weight leave no residual degree of freedom (fewer than three
//        about the mean, fewer than two about zero).
//   463: the line passes through every point to working precision (rss at most 16 eps^2 of the
//        weighted sum of y squared): the errors are 0 or at rounding level; go on.
//   467: x has no spread over the points of positive weight (all equal about the mean, all zero
//        about zero), so the slope is not determined.
constexpr int kSimpleNoResidualDof = 462;
constexpr int kSimpleExactFit = 463;
constexpr int kSimpleNoSpread = 467;

// Code of residual_diagnostics: a count below 1, more residuals than observations, no residual
// degree of freedom (ip >= n), a null residual or leverage array, or a mean square that is not
// a positive finite number.
constexpr int kDiagnosticsBadArgument = 451;

// Whether the model carries an intercept (a column of ones in front of the columns of x).
enum class Mean { Include, Zero };

// The place of (i, j) of a symmetric matrix packed by rows of its lower triangle, either order.
inline std::size_t packed_index(int i, int j) {
  return i >= j ? static_cast<std::size_t>(i) * (i + 1) / 2 + j
                : static_cast<std::size_t>(j) * (j + 1) / 2 + i;
}

// Outputs of multiple_regression, each optional (null: not computed). ip is the number of
// parameters: the columns of x, plus one for the intercept, which comes first.
struct RegressionOutputs {
  double* b = nullptr;            // ip estimates
  double* se = nullptr;           // ip standard errors, sqrt(s^2 C_jj), s^2 = rss / df
  double* cov = nullptr;          // ip (ip + 1) / 2: s^2 C packed by rows of the lower
                                  // triangle, (i, j) for j <= i at i (i + 1) / 2 + j
  double* covUnscaled = nullptr;  // C = (X'WX)^-1, or its pseudo-inverse, packed the same way
  double* res = nullptr;          // n residuals y - X b, unweighted, zero weights included
  double* h = nullptr;            // n leverages: the diagonal of the weighted hat matrix
                                  // W^1/2 X C X' W^1/2 (0 where the weight is 0)
};

struct RegressionSummary {
  int rank = 0;      // numerical rank of the weighted design
  bool svd = false;  // rank below ip: the estimates are the pseudo-inverse solution
  int df = 0;        // residual degrees of freedom: positive-weight observations minus rank
  double rss = 0;    // weighted residual sum of squares, sum w r^2
};

// Weighted least squares of y on the m columns of x (n rows, row stride ldx), with an intercept
// first under Mean::Include; w null means ones, zero weights take no part. With an intercept the
// columns are centred on their weighted means first. Householder QR of W^1/2 X (LAPACK's
// dgeqrf), then the SVD of the triangular factor with its columns scaled to unit norm (Chan, ACM
// TOMS 8, 1982): the rank counts the singular values above sqrt(tol) times the largest, so tol
// bounds the eigenvalue ratio of the scaled cross-product matrix (1e-20 drops directions weaker
// than 1e-10 of the strongest, well above rounding: exact collinearity is caught whatever the
// columns' scale). Full rank: back substitution. Rank r < ip: the minimum-norm estimates and the
// pseudo-inverse of X'WX in the caller's coordinates, as the pseudo-inverse of the design gives
// them. Returns 0, kRegressionNoResidualDof (fit written), or a failure.
int multiple_regression(Mean mean, int n, int m, const double* x, int ldx, const double* y,
                        const double* w, double tol, const RegressionOutputs& out,
                        RegressionSummary& summary, NagError& fail);

// A straight line y = a + b x by weighted least squares, about the mean (Mean::Include) or
// through the origin (Mean::Zero: a = 0, seA = 0). Means and corrected sums by two passes with
// the correction term (Chan, Golub and LeVeque, The American Statistician 37, 1983); the rss
// from the residuals themselves.
struct SimpleFit {
  double a = 0, b = 0;      // intercept and slope
  double seA = 0, seB = 0;  // their standard errors, with s^2 = rss / df
  double rsq = 0;           // 1 - rss / Syy (Syy about the mean, or about zero); NANUM for Syy 0
  double rss = 0;           // weighted residual sum of squares
  int df = 0;               // positive-weight points minus the parameters (2, or 1 about zero)
};
int simple_regression(Mean mean, int n, const double* x, const double* y, const double* w,
                      SimpleFit& fit, NagError& fail);

// Outputs of residual_diagnostics, each optional, nres values.
struct DiagnosticOutputs {
  double* internal = nullptr;  // r / sqrt(s^2 (1 - h)), internally studentized
  double* external = nullptr;  // r / sqrt(s_(i)^2 (1 - h)), s_(i) without point i
  double* cook = nullptr;      // Cook's distance, internal^2 h / (ip (1 - h))
  double* atkinson = nullptr;  // Atkinson's T, |external| sqrt((n - ip) / ip * h / (1 - h))
};

// Studentized residuals and influence of the first nres of n observations of a model with ip
// parameters, from the residuals, the leverages and the residual mean square s^2 (Cook and
// Weisberg, Residuals and Influence in Regression, 1982; Atkinson, Biometrika 68, 1981). A point
// whose residual is not finite or whose leverage is outside [0, 1) gets NANUM; so do the
// external and Atkinson values where s_(i) is not positive (or n - ip is 1).
int residual_diagnostics(int n, int ip, int nres, const double* res, const double* h, double rms,
                         const DiagnosticOutputs& out, NagError& fail);

}  // namespace zomath::platform
