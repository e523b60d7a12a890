// The straight-line fit y = intercept + slope x: weighted least squares with the slope or the
// intercept optionally held, and its report (parameters, statistics, analysis of variance,
// weighted sums, covariance and correlation).
#include <cmath>
#include <cstddef>
#include <vector>

#include "core/numeric.h"
#include "platform/regression.h"
#include "regression/fit_records.h"
#include "zomath/linalg.h"
#include "zomath/regression.h"

namespace {

using namespace zomath;
using namespace zomath::regression;

// The fitted line and its standard errors, before the report is written.
struct Line {
  double a = NANUM, b = NANUM;    // intercept, slope
  double ea = NANUM, eb = NANUM;  // their errors
  double rss = NANUM;
  double dof = 0;  // residual degrees of freedom by point count
  double k = 1;    // model degrees of freedom: 0 with the slope held
};

bool finite_data(const CompletePoints& p) {
  for (int i = 0; i < p.n; ++i)
    if (!std::isfinite(p.x[i]) || !std::isfinite(p.y[i]) || (p.w && !std::isfinite(p.w[i])))
      return false;
  return true;
}

// The held slope: the intercept through the weighted means, and the error of that mean.
Line held_slope(const CompletePoints& p, const FitSums& sums, double slope) {
  Line l;
  l.k = 0;
  l.dof = p.n - 1;
  l.b = slope;
  l.a = sums.MeanY - slope * sums.MeanX;
  // The residual sum from the residuals themselves: Syy - 2 b Sxy + b^2 Sxx is the same number
  // but cancels badly when the line fits well.
  double rss = 0;
  for (int i = 0; i < p.n; ++i) {
    const double r = p.y[i] - (l.a + l.b * p.x[i]);
    rss += (p.w ? p.w[i] : 1.0) * r * r;
  }
  l.rss = rss;
  l.ea = std::sqrt(rss / l.dof / sums.SumW);
  l.eb = 0;
  return l;
}

int fit_line(const double* pX, const double* pY, int nSize, FitParameter* psFit,
             const double* pWeights, int nWeightSize, const LinearFitOptions* pOptions,
             FitStats* pStats, FitAnovaTable* pAnova, FitSums* pSums, double* pCovariance,
             double* pCorrelation, unsigned nMatrixRows, unsigned nMatrixCols) {
  const LinearFitOptions opt = pOptions ? *pOptions : default_fit_options();
  const std::size_t cells = static_cast<std::size_t>(nMatrixRows) * nMatrixCols;
  fill_nanum(pStats);
  fill_nanum(pAnova);
  fill_nanum(pSums);
  fill_nanum(pCovariance, cells);
  fill_nanum(pCorrelation, cells);
  if (psFit) set_fixed(psFit[0], NANUM), set_fixed(psFit[1], NANUM);

  if (nSize < 2) return kErrTooFew;
  if (nWeightSize != 0 && nWeightSize != nSize) return kErrWeightCount;
  if (pWeights)  // a missing weight is not negative: it leaves its point out
    for (int i = 0; i < nSize; ++i)
      if (pWeights[i] < 0 && !is_nanum(pWeights[i])) return kErrNegativeWeight;
  if (!(opt.ConfLevel >= 0 && opt.ConfLevel <= 1)) return kErrConfLevel;
  if (!pX || !pY || !psFit) return kErrNullData;
  if (opt.FixSlope && opt.FixIntercept) return kErrOption;
  const double held = opt.FixSlope ? opt.FixSlopeAt : opt.FixIntercept ? opt.FixInterceptAt : 0.0;
  if (is_nanum(held) || !std::isfinite(held)) return kErrOption;
  if ((pCovariance || pCorrelation) && (nMatrixRows < 2 || nMatrixCols < 2)) return kErrTooSmall;

  const CompletePoints p = complete_points(pX, pY, pWeights, nSize);
  if (p.n < 2) return kErrTooFew;
  if (!finite_data(p)) return platform::kRegressionNotFinite;
  FitSums sums;
  if (!weighted_sums(p.x, p.y, p.w, p.n, opt.FixIntercept, sums)) return kErrInternal;

  Line l;
  if (opt.FixSlope) {
    l = held_slope(p, sums, opt.FixSlopeAt);
  } else {
    // About the mean, or about zero after the held intercept is taken off y.
    std::vector<double> shifted;
    const double* y = p.y;
    if (opt.FixIntercept) {
      shifted.assign(p.y, p.y + p.n);
      for (double& v : shifted) v -= opt.FixInterceptAt;
      y = shifted.data();
    }
    platform::SimpleFit f;
    platform::NagError fail;
    const int rc = platform::simple_regression(
        opt.FixIntercept ? platform::Mean::Zero : platform::Mean::Include, p.n, p.x, y, p.w, f,
        fail);
    if (rc == platform::kSimpleNoResidualDof || rc == platform::kSimpleNoSpread) {
      // Too few points of positive weight, or no spread in x: the multiple regression copes.
      const int code = zomath_multiple_linear_regression(
          p.x, p.n, 1, p.y, p.w, 0, &opt, psFit, 2, pStats, pAnova, pCovariance, pCorrelation,
          nMatrixRows, nMatrixCols, nullptr, nullptr);
      if (opt.FixIntercept) {
        shift_past_intercept(pCovariance, 2, nMatrixCols);
        shift_past_intercept(pCorrelation, 2, nMatrixCols);
      }
      if (pSums) *pSums = sums;
      return code;
    }
    if (rc != 0 && rc != platform::kSimpleExactFit) return rc;
    l.dof = p.n - (opt.FixIntercept ? 1 : 2);
    // The errors came with the degrees of freedom of the points of positive weight; the fit
    // reports them by point count.
    const double factor = std::sqrt(f.df / l.dof);
    l.a = opt.FixIntercept ? opt.FixInterceptAt : f.a;
    l.b = f.b;
    l.ea = opt.FixIntercept ? NANUM : f.seA * factor;
    l.eb = f.seB * factor;
    l.rss = f.rss;
  }

  const double s = std::sqrt(l.rss / l.dof);
  const double tc = t_critical(opt.ConfLevel, l.dof);
  if (!opt.ErrorScaledByReducedChiSq) {
    l.ea = nanum_div(l.ea, s);
    l.eb = nanum_div(l.eb, s);
  }
  if (opt.FixIntercept)
    set_fixed(psFit[0], l.a);
  else
    set_parameter(psFit[0], l.a, l.ea, tc, l.dof);
  if (opt.FixSlope)
    set_fixed(psFit[1], l.b);
  else
    set_parameter(psFit[1], l.b, l.eb, tc, l.dof);

  const double syy = sums.Syy, rss = l.rss, dof = l.dof, k = l.k;
  const bool explained = syy != 0 && rss <= syy;
  if (pStats) {
    std::vector<double> r(p.n);
    for (int i = 0; i < p.n; ++i) r[i] = p.y[i] - (l.a + l.b * p.x[i]);
    FitStats& st = *pStats;
    st.N = p.n;
    st.DOF = dof;
    st.RSS = rss;
    st.PearsonR = (explained && sums.Sxx * syy > 0) ? sums.Sxy / std::sqrt(sums.Sxx * syy) : NANUM;
    st.ReducedChiSq = rss / dof;
    st.RSquare = explained ? (syy - rss) / syy : NANUM;
    st.R = explained ? std::sqrt(st.RSquare) : NANUM;
    st.AdjRSquare = syy != 0 ? 1 - (rss / dof) / (syy / (k + dof)) : NANUM;
    st.RootMSE = s;
    st.ResidualNorm = zomath_norm(r.data(), static_cast<unsigned>(p.n));
  }
  if (pAnova) {
    FitAnovaTable& an = *pAnova;
    an.ModelDF = k;
    an.ModelSS = rss <= syy ? syy - rss : NANUM;
    an.ModelMS = k != 0 ? (syy - rss) / k : NANUM;
    an.ErrorDF = dof;
    an.ErrorSS = rss;
    an.ErrorMS = rss / dof;
    an.TotalDF = k + dof;
    an.TotalSS = syy;
    an.TotalMS = NANUM;
    // (Model SS / RSS) times the error degrees of freedom: the F of one model degree, written
    // also with the slope held.
    an.FValue = (rss != 0 && rss <= syy) ? ((syy - rss) / rss) * dof : NANUM;
    an.ProbF = f_upper_probability(an.FValue, 1, std::trunc(dof));
  }
  if (pSums) *pSums = sums;
  if (pCovariance || pCorrelation) {
    double c[4] = {NANUM, NANUM, NANUM, NANUM}, corr[4];
    if (!opt.FixIntercept) c[0] = nanum_mul(l.ea, l.ea);
    if (!opt.FixSlope) c[3] = nanum_mul(l.eb, l.eb);
    if (!opt.FixSlope && !opt.FixIntercept) c[1] = c[2] = nanum_mul(-c[3], sums.MeanX);
    correlation_from_covariance(c, corr, 2, 2);
    for (int i = 0; i < 2; ++i)
      for (int j = 0; j < 2; ++j) {
        const std::size_t at = static_cast<std::size_t>(i) * nMatrixCols + j;
        if (pCovariance) pCovariance[at] = c[2 * i + j];
        if (pCorrelation) pCorrelation[at] = corr[2 * i + j];
      }
  }
  return 0;
}

}  // namespace

extern "C" int zomath_linear_fit(const double* pX, const double* pY, int nSize,
                                 FitParameter* psFit, const double* pWeights, int nWeightSize,
                                 const LinearFitOptions* pOptions, FitStats* pStats,
                                 FitAnovaTable* pAnova, FitSums* pSums, double* pCovariance,
                                 double* pCorrelation, unsigned int nMatrixRows,
                                 unsigned int nMatrixCols) {
  try {
    return fit_line(pX, pY, nSize, psFit, pWeights, nWeightSize, pOptions, pStats, pAnova, pSums,
                    pCovariance, pCorrelation, nMatrixRows, nMatrixCols);
  } catch (...) {
    return kErrInternal;
  }
}
