// The tools around the multiple regression's report: residual diagnostics, plot sums, partial
// regression plots, column normalisation, dummy coding and Akaike's criterion.
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <vector>

#include "core/nrvec/nrvec.h"
#include "core/numeric.h"
#include "platform/linalg.h"
#include "platform/regression.h"
#include "regression/fit_records.h"
#include "zomath/linalg.h"
#include "zomath/regression.h"
#include "zomath/stats.h"

namespace {

using namespace zomath;
using namespace zomath::regression;

// Z'Z of an n by p row-major matrix.
NRMat<double> cross_product(const double* z, int n, int p) {
  NRMat<double> a(0.0, p, p);
  for (int i = 0; i < n; ++i) {
    const double* zi = z + static_cast<std::size_t>(i) * p;
    for (int j = 0; j < p; ++j)
      for (int k = 0; k <= j; ++k) a[j][k] += zi[j] * zi[k];
  }
  for (int j = 0; j < p; ++j)
    for (int k = j + 1; k < p; ++k) a[j][k] = a[k][j];
  return a;
}

// (Z'Z)^-1 in place by the inverse; where that reports a singular matrix (or, with anyFailure,
// any failure) the pseudo-inverse takes its place. Returns 0 or the code that ended it.
int invert_normal_matrix(NRMat<double>& a, bool anyFailure) {
  const int p = a.nrows();
  const int rc = zomath_inverse(a.Data(), p);
  if (rc == 0) return 0;
  if (rc != platform::kLinalgSingular && !anyFailure) return rc;
  NRMat<double> pinv(p, p);
  if (int rc2 = zomath_pinv(a.Data(), pinv.Data(), p, p, -1.0)) return rc2;
  a = pinv;
  return 0;
}

}  // namespace

extern "C" {

int zomath_diagnostic_residuals(int nSize, int nParams, double dRMS, int nResiduals,
                                const double* pResiduals, const double* pDesign,
                                double* pInternalStudentized, double* pExternalStudentized,
                                double* pCooksDistance, double* pAtkinsonT, double* pStandardized,
                                const double* pLeverage) {
  if (!pResiduals || !pDesign) return kErrNullData;
  const std::size_t nres = nResiduals > 0 ? static_cast<std::size_t>(nResiduals) : 0;
  for (double* p : {pInternalStudentized, pExternalStudentized, pCooksDistance, pAtkinsonT,
                    pStandardized})
    fill_nanum(p, nres);
  if (nSize < 1 || nParams < 1 || nResiduals < 1 || nResiduals > nSize)
    return platform::kDiagnosticsBadArgument;
  try {
    if (pStandardized && !is_nanum(dRMS) && dRMS > 0)
      for (std::size_t i = 0; i < nres; ++i)
        pStandardized[i] = is_nanum(pResiduals[i]) ? NANUM : pResiduals[i] / std::sqrt(dRMS);

    // The caller's leverages unless they are all 0 or all missing.
    std::vector<double> h(nres);
    bool given = false;
    if (pLeverage) {
      const auto [lo, hi] = std::minmax_element(pLeverage, pLeverage + nres);
      given = !((*lo == 0 && *hi == 0) || (is_nanum(*lo) && is_nanum(*hi)));
    }
    if (given) {
      std::copy(pLeverage, pLeverage + nres, h.begin());
    } else {
      NRMat<double> m = cross_product(pDesign, nSize, nParams);
      if (int rc = invert_normal_matrix(m, false)) return rc;
      for (std::size_t i = 0; i < nres; ++i) {
        const double* xi = pDesign + i * nParams;
        double s = 0;
        for (int j = 0; j < nParams; ++j) {
          double t = 0;
          for (int k = 0; k < nParams; ++k) t += m[j][k] * xi[k];
          s += xi[j] * t;
        }
        h[i] = s;
      }
    }
    for (double& v : h)
      if (is_nanum(v)) v = -1.0;  // outside [0, 1): the point gets missing values
    std::vector<double> res(pResiduals, pResiduals + nres);
    for (double& r : res)
      if (is_nanum(r)) r = NAN;
    std::vector<double> internal(nres), external(nres), cook(nres), atkinson(nres);
    platform::DiagnosticOutputs out{internal.data(), external.data(), cook.data(), atkinson.data()};
    platform::NagError fail;
    if (int rc = platform::residual_diagnostics(nSize, nParams, nResiduals, res.data(), h.data(),
                                                dRMS, out, fail))
      return rc;
    auto put = [&](double* p, const std::vector<double>& v) {
      if (p) std::copy(v.begin(), v.end(), p);
    };
    put(pInternalStudentized, internal);
    put(pExternalStudentized, external);
    put(pCooksDistance, cook);
    put(pAtkinsonT, atkinson);
    return 0;
  } catch (...) {
    return kErrInternal;
  }
}

int zomath_reg_plots(const double* pX, const double* pY, const double* pWeights, int nSize,
                     const LinearFitOptions* pOptions, FitSums* pSums) {
  fill_nanum(pSums);
  LinearFitOptions opt = default_fit_options();
  if (pOptions) opt = *pOptions;
  if (nSize < 2) return kErrTooFew;
  if (!(opt.ConfLevel >= 0 && opt.ConfLevel <= 1)) return kErrOption;
  if (!pX || !pY || !pSums) return kErrNullData;
  if ((opt.FixIntercept && opt.FixSlope) || (opt.ExclusiveFix && (opt.FixSlope || opt.FixIntercept)))
    return kErrOption;
  return weighted_sums(pX, pY, pWeights, static_cast<std::size_t>(nSize), opt.FixIntercept, *pSums)
             ? 0
             : kErrInternal;
}

int zomath_partial_reg_plots(const double* pX, int nSize, int nVars, const double* pY,
                             const LinearFitOptions* pOptions, double* pOut, int nOutCols) {
  if (!pX || !pY || !pOut) return kErrNullData;
  const bool intercept = !(pOptions && pOptions->FixIntercept);
  if (nVars < 0) return kErrColumns;
  const long long p = static_cast<long long>(nVars) + (intercept ? 1 : 0);
  if (nOutCols != 2 * p || p < 1) return kErrColumns;
  if (nSize < 1) return kErrTooFew;
  try {
    const int q = static_cast<int>(p);
    const std::size_t n = static_cast<std::size_t>(nSize);
    // Z = [1 X] or X.
    NRMat<double> z(nSize, q);
    for (std::size_t i = 0; i < n; ++i) {
      int k = 0;
      if (intercept) z[i][k++] = 1.0;
      for (int j = 0; j < nVars; ++j) z[i][k++] = pX[i * nVars + j];
    }
    NRMat<double> m = cross_product(z.Data(), nSize, q);
    if (invert_normal_matrix(m, true)) return kErrInternal;
    // U = (Z'Z)^-1 Z' (q by n), b = U y, e = y - Z b.
    NRMat<double> u(0.0, q, nSize);
    for (int j = 0; j < q; ++j)
      for (std::size_t i = 0; i < n; ++i) {
        double s = 0;
        for (int k = 0; k < q; ++k) s += m[j][k] * z[i][k];
        u[j][i] = s;
      }
    std::vector<double> b(q, 0.0), e(n);
    for (int j = 0; j < q; ++j)
      for (std::size_t i = 0; i < n; ++i) b[j] += u[j][i] * pY[i];
    for (std::size_t i = 0; i < n; ++i) {
      double fit = 0;
      for (int k = 0; k < q; ++k) fit += z[i][k] * b[k];
      e[i] = pY[i] - fit;
    }
    for (int j = 0; j < q; ++j) {
      double uu = 0;
      for (std::size_t i = 0; i < n; ++i) uu += u[j][i] * u[j][i];
      for (std::size_t i = 0; i < n; ++i) {
        double* row = pOut + i * nOutCols;
        const double a = uu > 0 ? u[j][i] / uu : NANUM;
        row[2 * j] = a;
        row[2 * j + 1] = is_nanum(a) ? NANUM : b[j] * a + e[i];
      }
    }
    return 0;
  } catch (...) {
    return kErrInternal;
  }
}

int zomath_normalize_x(const LinearFitOptions* pOptions, const double* pX, double dRows,
                       double dCols, double* pNormX, double* pScale, int nScale) {
  if (!pX || !pNormX || !pScale) return kErrNullData;
  if (!(dRows >= 1 && dRows <= INT_MAX) || !(dCols >= 1 && dCols <= INT_MAX)) return kErrOption;
  const int rows = static_cast<int>(dRows), cols = static_cast<int>(dCols);
  const int lead = pOptions && pOptions->FixIntercept ? 0 : 1;  // the intercept's 1.0
  if (nScale < static_cast<long long>(cols) + lead) return kErrTooSmall;
  try {
    std::vector<double> column(rows), scale(static_cast<std::size_t>(cols) + lead, 1.0);
    for (int j = 0; j < cols; ++j) {
      for (int i = 0; i < rows; ++i) column[i] = pX[static_cast<std::size_t>(i) * cols + j];
      double sd = NANUM;
      if (int rc = zomath_basic_summary_stats(rows, column.data(), nullptr, nullptr, &sd, nullptr,
                                              nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                              nullptr, nullptr, nullptr, nullptr, nullptr, 0,
                                              nullptr))
        return rc;
      // A column without spread (or without a standard deviation) keeps its scale.
      if (!is_nanum(sd) && std::isfinite(sd) && sd > 0) scale[lead + j] = 1.0 / sd;
    }
    for (int i = 0; i < rows; ++i)
      for (int j = 0; j < cols; ++j) {
        const std::size_t k = static_cast<std::size_t>(i) * cols + j;
        pNormX[k] = nanum_mul(pX[k], scale[lead + j]);
      }
    std::copy(scale.begin(), scale.end(), pScale);
    return 0;
  } catch (...) {
    return kErrInternal;
  }
}

int zomath_dummy_vars(int nMethod, int nSize, const int* pLevels, double* pOut) {
  if (!pLevels || !pOut) return kErrNullData;
  if (nSize < 1) return kErrOption;
  const int levels = *std::max_element(pLevels, pLevels + nSize);
  if (levels < 2 || levels > nSize) return kErrOption;
  if (nMethod < 0 || nMethod > 2) return kErrColumns;
  if (*std::min_element(pLevels, pLevels + nSize) < 1) return kErrOption;
  const int cols = nMethod == 2 ? levels : levels - 1;
  std::vector<bool> seen(static_cast<std::size_t>(levels) + 1, false);
  for (int i = 0; i < nSize; ++i) {
    const int v = pLevels[i];
    seen[v] = true;
    int col = -1;
    if (nMethod == 0) col = v == 1 ? -1 : v - 2;
    else if (nMethod == 1) col = v == levels ? -1 : v - 1;
    else col = v - 1;
    if (col >= 0) pOut[static_cast<std::size_t>(i) * cols + col] = 1.0;
  }
  for (int v = 1; v <= levels; ++v)
    if (!seen[v]) return kErrAbsentLevel;
  return 0;
}

double zomath_AIC(int nSize, int nParams, double dRSS, int* pError) {
  if (pError) {
    *pError = 0;
    if (nSize < 1 || nParams < 1 || nSize <= static_cast<long long>(nParams) + 1 || !(dRSS >= 0) ||
        is_nanum(dRSS)) {
      *pError = kErrOption;
      return NANUM;
    }
  }
  const double n = nSize, k = static_cast<double>(nParams) + 1;
  double aic = n * std::log(dRSS / n) + 2 * k;
  if (n / k < 40) aic += 2 * k * (k + 1) / (n - k - 1);
  return std::isnan(aic) ? NANUM : aic;
}

}  // extern "C"
