// The multiple linear regression export and the correction of its results after column scaling.
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <vector>

#include "core/nrvec/nrvec.h"
#include "core/numeric.h"
#include "platform/regression.h"
#include "regression/fit_records.h"
#include "zomath/linalg.h"
#include "zomath/regression.h"

namespace {

using namespace zomath;
using namespace zomath::regression;

// The relative tolerance handed to the solver's rank test (see platform/regression.h).
constexpr double kRankTolerance = 1e-20;

int fit_multiple(const double* pX, unsigned nSize, unsigned nVars, const double* pY,
                 const double* pWeights, unsigned nWeightSize, const LinearFitOptions* pOptions,
                 FitParameter* psFit, unsigned nFitSize, FitStats* pStats, FitAnovaTable* pAnova,
                 double* pCovariance, double* pCorrelation, unsigned nMatrixRows,
                 unsigned nMatrixCols, double* pLeverage, double* pFitError) {
  const LinearFitOptions opt = pOptions ? *pOptions : default_fit_options();
  const std::size_t cells = static_cast<std::size_t>(nMatrixRows) * nMatrixCols;
  fill_nanum(pStats);
  fill_nanum(pAnova);
  fill_nanum(pCovariance, cells);
  fill_nanum(pCorrelation, cells);
  if (psFit)
    for (unsigned i = 0; i < nFitSize; ++i) set_fixed(psFit[i], NANUM);

  if (!(opt.ConfLevel >= 0 && opt.ConfLevel <= 1)) return kErrOption;
  if (!pX || !pY || !psFit) return kErrNullData;
  if (nWeightSize != 0 && nWeightSize != nSize) return kErrWeightCount;
  const bool matrices = pCovariance || pCorrelation;
  const unsigned long long need = 1ULL + nVars;
  if ((matrices && (nMatrixRows < need || nMatrixCols < need)) || nFitSize < nVars) return kErrTooSmall;
  if (nSize > INT_MAX || nVars >= INT_MAX) return kErrTooSmall;
  const int n = static_cast<int>(nSize), m = static_cast<int>(nVars);

  if (pWeights)
    for (int i = 0; i < n; ++i)
      if (pWeights[i] < 0) return kErrNegativeWeight;

  // The held intercept is taken off y, and the model has no column of ones.
  const bool fixIntercept = opt.FixIntercept;
  NRVec<double> shifted;
  if (fixIntercept) {
    shifted = NRVec<double>(pY, n);
    for (int i = 0; i < n; ++i) shifted[i] -= opt.FixInterceptAt;
  }
  const double* y = fixIntercept ? shifted.Data() : pY;
  const int ip = fixIntercept ? m : m + 1;
  if (ip > n) return kErrTooManyParameters;

  const std::size_t nPacked = static_cast<std::size_t>(ip) * (ip + 1) / 2;
  std::vector<double> b(std::max(ip, 1)), se(std::max(ip, 1)), cov(std::max<std::size_t>(nPacked, 1)),
      covUnscaled(cov.size());
  NRVec<double> res(n), h;  // uninitialised: the solver writes every element
  const bool wantH = pLeverage || pFitError;
  if (wantH) h.SetSize(n);
  platform::RegressionOutputs out;
  out.b = b.data();
  out.se = se.data();
  out.cov = cov.data();
  out.covUnscaled = covUnscaled.data();
  out.res = res.Data();
  out.h = wantH ? h.Data() : nullptr;
  platform::RegressionSummary sum;
  platform::NagError fail;
  const int rc = platform::multiple_regression(
      fixIntercept ? platform::Mean::Zero : platform::Mean::Include, n, m, pX, m,
      y, pWeights, kRankTolerance, out, sum, fail);
  // No residual degrees of freedom leaves the fit standing with its errors missing.
  if (rc != 0 && rc != platform::kRegressionNoResidualDof) return rc;
  const bool noDof = rc == platform::kRegressionNoResidualDof;
  const double rss = sum.rss, df = sum.df;
  const double meanSquare = df != 0 ? rss / df : NANUM;

  // The covariance of the estimates: s^2 C, or C itself when the errors trust the weights.
  const bool scaled = opt.ErrorScaledByReducedChiSq;
  const std::vector<double>& c = scaled ? cov : covUnscaled;
  if (!scaled)
    for (int j = 0; j < ip; ++j)
      se[j] = noDof ? NANUM : std::sqrt(covUnscaled[platform::packed_index(j, j)]);
  if (matrices) {
    NRMat<double> full(ip, ip), corr(ip, ip);
    for (int i = 0; i < ip; ++i)
      for (int j = 0; j < ip; ++j) full[i][j] = noDof ? NANUM : c[platform::packed_index(i, j)];
    correlation_from_covariance(full.Data(), corr.Data(), ip, ip);
    for (int i = 0; i < ip; ++i) {
      const std::size_t row = static_cast<std::size_t>(i) * nMatrixCols;
      if (pCovariance) std::copy(full[i], full[i] + ip, pCovariance + row);
      if (pCorrelation) std::copy(corr[i], corr[i] + ip, pCorrelation + row);
    }
  }

  // Sums over the first nSize values of pX as stored (the x column when nVars is 1), y as given;
  // a model of the intercept alone has no x to sum.
  FitSums sums;
  if (!weighted_sums(m ? pX : nullptr, pY, pWeights, nSize, fixIntercept, sums)) return kErrInternal;
  const double modelDF = fixIntercept ? sum.rank : sum.rank - 1;
  const double tc = t_critical(opt.ConfLevel, df);

  // Parameters.
  const unsigned records = std::min<unsigned>(nFitSize, static_cast<unsigned>(m) + 1);
  for (unsigned k = 0; k < records; ++k) {
    if (fixIntercept && k == 0) {
      set_fixed(psFit[0], opt.FixInterceptAt);
      continue;
    }
    const int j = fixIntercept ? static_cast<int>(k) - 1 : static_cast<int>(k);
    set_parameter(psFit[k], b[j], se[j], tc, df);
  }

  fill_report(nSize, rss, df, modelDF, sums, zomath_norm(res.Data(), nSize), pStats, pAnova);
  if (pLeverage) std::copy(h.Data(), h.Data() + n, pLeverage);
  if (pFitError) {
    // s sqrt(h / w). The reciprocal weights are left in the caller's array, which the fit's
    // users rely on.
    double* w = const_cast<double*>(pWeights);
    const double s = is_nanum(meanSquare) ? NANUM : std::sqrt(meanSquare);
    for (int i = 0; i < n; ++i) {
      double inv = 1.0;
      if (w) {
        inv = nanum_div(1.0, w[i]);
        w[i] = inv;
      }
      const double hw = nanum_mul(h[i], inv);
      pFitError[i] = nanum_mul(s, is_nanum(hw) ? NANUM : std::sqrt(hw));
    }
  }
  return 0;
}

}  // namespace

extern "C" {

int zomath_multiple_linear_regression(const double* pX, unsigned int nSize, unsigned int nVars,
                                      const double* pY, const double* pWeights,
                                      unsigned int nWeightSize, const LinearFitOptions* pOptions,
                                      FitParameter* psFit, unsigned int nFitSize,
                                      FitStats* pStats, FitAnovaTable* pAnova,
                                      double* pCovariance, double* pCorrelation,
                                      unsigned int nMatrixRows, unsigned int nMatrixCols,
                                      double* pLeverage, double* pFitError) {
  try {
    return fit_multiple(pX, nSize, nVars, pY, pWeights, nWeightSize, pOptions, psFit, nFitSize,
                        pStats, pAnova, pCovariance, pCorrelation, nMatrixRows, nMatrixCols,
                        pLeverage, pFitError);
  } catch (...) {
    return kErrInternal;
  }
}

int zomath_MR_results_corrected(const LinearFitOptions* pOptions, const FitStats* pStats,
                                const FitParameter* pFitIn, unsigned int nFit, double* pCovIn,
                                unsigned int nRows, unsigned int nCols, double* pScale,
                                unsigned int nScale, FitParameter* pFitOut, double* pCovOut) {
  if (!pOptions || !pStats || !pFitIn || !pScale || !pFitOut || (pCovOut && !pCovIn))
    return kErrNullData;
  if (nFit < 1 || nScale < 1) return kErrOption;
  if (pCovOut) {
    if (nRows != nCols || nRows < 1) return kErrOption;
    // D C D with D = diag(scale), 1 beyond the scale's end.
    auto d = [&](unsigned i) { return i < nScale ? pScale[i] : 1.0; };
    for (unsigned i = 0; i < nRows; ++i)
      for (unsigned j = 0; j < nCols; ++j) {
        const std::size_t k = static_cast<std::size_t>(i) * nCols + j;
        pCovOut[k] = nanum_mul(nanum_mul(d(i), pCovIn[k]), d(j));
      }
  }
  const double dof = pStats->DOF;
  const double tc = t_critical(pOptions->ConfLevel, dof);
  pFitOut[0] = pFitIn[0];
  // Under a held intercept the scale covers the columns only: its entry 0 is the intercept's 1.
  const bool shifted = pOptions->FixIntercept;
  auto scale = [&](unsigned i) -> double {
    const unsigned k = shifted ? i - 1 : i;
    return k < nScale ? pScale[k] : 1.0;
  };
  for (unsigned i = 1; i < nFit; ++i) {
    const double s = scale(i);
    const double v = nanum_mul(pFitIn[i].value, s), e = nanum_mul(pFitIn[i].Error, s);
    set_parameter(pFitOut[i], v, e, tc, dof);
  }
  return 0;
}

}  // extern "C"
