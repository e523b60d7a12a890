// The polynomial fit (the powers of x as the columns of a multiple regression, or the mean
// alone for order 0), the evaluation of a polynomial, and the confidence and prediction bands
// of a fitted one.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "core/numeric.h"
#include "platform/polynomial_refinement.h"
#include "regression/fit_records.h"
#include "zomath/linalg.h"
#include "zomath/regression.h"
#include "zomath/stats.h"
#include "zomath/vector.h"

namespace {

using namespace zomath;
using namespace zomath::regression;

// The defaults of the polynomial fit for a null option pointer: the errors trust the weights.
LinearFitOptions polynomial_default_options() {
  LinearFitOptions o = default_fit_options();
  o.FixSlopeAt = 0.0;
  o.Reserved1 = 1;
  o.ErrorScaledByReducedChiSq = false;
  return o;
}

// Order 0: the weighted mean of y, with the statistics of a model that explains nothing.
int fit_mean(int nSize, const double* pY, const double* pWeights, const LinearFitOptions* pOptions,
             FitParameter* psFit, FitStats* pStats, FitAnovaTable* pAnova) {
  const double level = pOptions ? pOptions->ConfLevel : 0.95;
  if (!(level >= 0 && level <= 1)) return kErrOption;
  if (pWeights)
    for (int i = 0; i < nSize; ++i)
      if (pWeights[i] < 0 && !is_nanum(pWeights[i])) return kErrNegativeWeight;
  int n = 0;
  double mean = NANUM, sd = NANUM, total = NANUM, lcl = NANUM, ucl = NANUM;
  const int code = zomath_basic_summary_stats(nSize, pY, &n, &mean, &sd, nullptr, nullptr,
                                              nullptr, nullptr, nullptr, nullptr, &total,
                                              nullptr, nullptr, nullptr, nullptr, nullptr,
                                              DS_SAS1_DF, pWeights) +
                   zomath_opt_summary_stats(nSize, pY, level, nullptr, nullptr, nullptr, &lcl,
                                            &ucl, nullptr, nullptr, DS_SAS1_DF, pWeights);
  if (code != 0) return code;
  FitParameter& c = psFit[0];
  c.value = mean;
  c.Error = sd;
  c.LCL = lcl;
  c.UCL = ucl;

  // Plain residuals of the points the mean was taken over.
  const CompletePoints p = complete_points(nullptr, pY, pWeights, nSize);
  std::vector<double> r(p.n);
  double rss = 0;
  for (int i = 0; i < p.n; ++i) {
    r[i] = nanum_sub(p.y[i], mean);
    if (!is_nanum(r[i])) rss += r[i] * r[i];
  }
  const double dof = n - 1.0;
  const double ms = dof != 0 ? rss / dof : NANUM;
  if (pStats) {
    FitStats& s = *pStats;
    s.N = n;
    s.DOF = dof;
    s.RSS = rss;
    s.RSquare = (is_nanum(total) || total == 0) ? NANUM : (total - rss) / total;
    s.R = (is_nanum(s.RSquare) || s.RSquare < 0) ? NANUM : std::sqrt(s.RSquare);
    s.AdjRSquare = (is_nanum(s.RSquare) || dof == 0) ? NANUM : 1 - (dof / dof) * (1 - s.RSquare);
    s.ReducedChiSq = ms;
    s.RootMSE = is_nanum(ms) ? NANUM : std::sqrt(ms);
    s.ResidualNorm = zomath_norm(r.data(), static_cast<unsigned>(p.n));
  }
  if (pAnova) {
    FitAnovaTable& a = *pAnova;
    a.ModelDF = 0;
    a.ModelSS = a.ModelMS = NANUM;
    a.ErrorDF = dof;
    a.ErrorSS = rss;
    a.ErrorMS = ms;
    a.TotalDF = dof;
    a.TotalSS = total;
    a.TotalMS = NANUM;
    // The missing value over the error mean square: a tiny number that hosts have always read
    // here in place of an F.
    a.FValue = (is_nanum(ms) || ms == 0) ? NANUM : NANUM / ms;
    a.ProbF = NANUM;
  }
  return 0;
}

// The scale test on a range lo..hi: far from zero (with farTest), or a relative spread below 1%
// (always true for a range centred on a negative value).
bool badly_scaled(double lo, double hi, bool farTest) {
  if (farTest && (lo > 10000 || hi < -10000)) return true;
  return (hi - lo) / ((hi + lo) * 0.5) < 0.01;
}

bool range_badly_scaled(const double* v, int n, bool farTest) {
  unsigned iMin = 0, iMax = 0;
  zomath_d_minmax(v, 0, static_cast<unsigned>(n - 1), &iMin, &iMax);
  if (static_cast<int>(iMin) < 0 || iMin >= static_cast<unsigned>(n)) return false;
  return badly_scaled(v[iMin], v[iMax], farTest);
}

struct Outputs {
  FitParameter* fit;
  int fitSize;
  FitStats* stats;
  FitAnovaTable* anova;
  double* cov;
  double* corr;
  double* leverage;  // n values of the complete points
};

class RegressionCall {
 public:
  RegressionCall(const CompletePoints& p, int order, const LinearFitOptions& opt)
      : p_(p), order_(order), m_(order + 1), opt_(opt) {}
  int operator()(const double* design, FitParameter* fit, const Outputs& o, double* cov) const {
    return zomath_multiple_linear_regression(design, p_.n, order_, p_.y, p_.w, 0, &opt_, fit,
                                             o.fitSize, o.stats, o.anova, cov, o.corr, m_, m_,
                                             o.leverage, nullptr);
  }

 private:
  const CompletePoints& p_;
  int order_, m_;
  const LinearFitOptions& opt_;
};

// Order 1 and above on the complete points. Returns the fit's result: a regression's negative
// code, or 1 for a badly scaled x and 0 otherwise (a solver's positive code is not passed on,
// and leaves the records missing); a failure of the first call on the normalised path, or of
// the normalisation, leaves with its code as it is.
int fit_powers(const CompletePoints& p, int order, const LinearFitOptions& opt, const Outputs& o) {
  const int n = p.n, m = order + 1;
  const std::size_t cells = static_cast<std::size_t>(m) * m;
  const bool held = opt.FixIntercept;
  // The checks of the regression that come before its count of parameters, so that a design
  // that can't be had (more parameters than points) is refused before it is built.
  if (!(opt.ConfLevel >= 0 && opt.ConfLevel <= 1)) return kErrOption;
  if (p.w)
    for (int i = 0; i < n; ++i)
      if (p.w[i] < 0) return kErrNegativeWeight;
  if (order + (held ? 0 : 1) > n) return kErrTooManyParameters;

  std::vector<double> design(static_cast<std::size_t>(n) * order);
  for (int i = 0; i < n; ++i) {
    double power = p.x[i];
    for (int j = 0; j < order; ++j, power *= p.x[i])
      design[static_cast<std::size_t>(i) * order + j] = power;
  }
  const bool badX = range_badly_scaled(p.x, n, true);
  const int success = badX ? 1 : 0;
  const bool direct = !badX && order <= 5 && !range_badly_scaled(p.y, n, false);
  const RegressionCall regress(p, order, opt);

  int rc = 0;
  double rssErrors = NANUM, rssCov = NANUM;  // the residual sums behind the errors, the matrix
  const double* last = design.data();
  std::vector<double> normalised;
  if (direct) {
    rc = regress(design.data(), o.fit, o, o.cov);
    rssErrors = rssCov = o.stats->RSS;
  } else {
    // The covariance reported is always that of the raw powers.
    std::vector<double> rawCov;
    if (o.cov) {
      rawCov.resize(cells);
      if ((rc = regress(design.data(), o.fit, o, rawCov.data())) != 0) return rc;
      rssCov = o.stats->RSS;
    }
    // Columns at unit standard deviation, fitted, and carried back to the raw powers.
    normalised.resize(design.size());
    std::vector<double> scale(m);
    if ((rc = zomath_normalize_x(&opt, design.data(), n, order, normalised.data(), scale.data(),
                                 m)) != 0)
      return rc;
    std::vector<FitParameter> scaled(o.fitSize);
    rc = regress(normalised.data(), scaled.data(), o, nullptr);
    if (rc < 0) return rc;
    if (rc > 0) return success;
    last = normalised.data();
    rssErrors = o.stats->RSS;
    zomath_MR_results_corrected(&opt, o.stats, scaled.data(), m, nullptr, 0, 0, scale.data(),
                                held ? order : m, o.fit, nullptr);
    if (o.cov) std::copy(rawCov.begin(), rawCov.end(), o.cov);
  }
  if (held) {
    shift_past_intercept(o.cov, m, m);
    shift_past_intercept(o.corr, m, m);
  }
  if (rc < 0) return rc;
  if (rc > 0 || o.anova->ModelDF != order) return success;  // failed, or rank deficient

  // Polish the coefficients; the report follows the residual sum they leave.
  std::vector<double> coef(m);
  for (int j = 0; j < m; ++j) coef[j] = o.fit[j].value;
  platform::PolynomialData data;
  data.x = p.x;
  data.y = p.y;
  data.w = p.w;
  data.n = n;
  data.order = order;
  data.heldIntercept = held;
  platform::RefinedFit refined;
  platform::NagError fail;
  if (platform::refine_polynomial(data, coef.data(), refined, fail) != 0) return success;
  const double dof = o.stats->DOF, rss = refined.rss;
  const double tc = t_critical(opt.ConfLevel, dof);
  const bool scaled = opt.ErrorScaledByReducedChiSq;
  auto rescale = [&](double e, double before) {
    return (!scaled || is_nanum(e) || !(before > 0)) ? e : e * std::sqrt(rss / before);
  };
  for (int j = held ? 1 : 0; j < m; ++j)
    set_parameter(o.fit[j], coef[j], rescale(o.fit[j].Error, rssErrors), tc, dof);
  if (o.cov && scaled && rssCov > 0)
    for (std::size_t k = 0; k < cells; ++k) o.cov[k] = nanum_mul(o.cov[k], rss / rssCov);
  FitSums sums;
  if (weighted_sums(last, p.y, p.w, n, held, sums))
    fill_report(n, rss, dof, o.anova->ModelDF, sums, refined.residualNorm, o.stats, o.anova);
  return success;
}

int fit_polynomial(int nSize, const double* pX, const double* pY, const double* pWeights,
                   int nOrder, const LinearFitOptions* pOptions, FitParameter* psFit,
                   int nFitSize, FitStats* pStats, FitAnovaTable* pAnova, double* pCovariance,
                   double* pCorrelation, double* pLeverage, int nCovSize) {
  if (nSize < 2) return kErrTooFew;
  if (!pX || !pY || !psFit) return kErrNullData;
  if (nOrder < 0) return kErrOption;
  const long long m = nOrder + 1LL;
  if (nFitSize < m) return kErrTooSmall;
  if ((pCovariance || pCorrelation) && nCovSize >= 0 && nCovSize < m * m) return kErrCovarianceSize;
  if (nOrder == 0) return fit_mean(nSize, pY, pWeights, pOptions, psFit, pStats, pAnova);

  // Missing values are refused by a regression as ordinary numbers; a point with a missing x, y
  // or weight is left out here, and its leverage is missing.
  const LinearFitOptions opt = pOptions ? *pOptions : polynomial_default_options();
  const std::size_t cells = static_cast<std::size_t>(m) * m;
  for (int i = 0; i < nFitSize; ++i) set_fixed(psFit[i], NANUM);
  fill_nanum(pStats);
  fill_nanum(pAnova);
  fill_nanum(pCovariance, cells);
  fill_nanum(pCorrelation, cells);
  fill_nanum(pLeverage, static_cast<std::size_t>(nSize));
  const CompletePoints p = complete_points(pX, pY, pWeights, nSize);
  FitStats stats;
  FitAnovaTable anova;
  fill_nanum(&stats);
  fill_nanum(&anova);
  std::vector<double> leverage(pLeverage && p.dropped ? p.n : 0);
  const Outputs o{psFit, nFitSize, pStats ? pStats : &stats, pAnova ? pAnova : &anova,
                  pCovariance, pCorrelation, p.dropped && pLeverage ? leverage.data() : pLeverage};
  const int rc = fit_powers(p, nOrder, opt, o);
  if (pLeverage && p.dropped)
    for (int k = 0; k < p.n; ++k) pLeverage[p.index[k]] = leverage[k];
  return rc;
}

}  // namespace

extern "C" {

int zomath_polynomial_fit(int nSize, const double* pX, const double* pY, const double* pWeights,
                          int nOrder, const LinearFitOptions* pOptions, FitParameter* psFit,
                          int nFitSize, FitStats* pStats, FitAnovaTable* pAnova,
                          double* pCovariance, double* pCorrelation, double* pLeverage,
                          int nCovSize) {
  try {
    return fit_polynomial(nSize, pX, pY, pWeights, nOrder, pOptions, psFit, nFitSize, pStats,
                          pAnova, pCovariance, pCorrelation, pLeverage, nCovSize);
  } catch (...) {
    return kErrInternal;
  }
}

bool zomath_polynomial(const double* pX, double* pY, int nSize, const double* pCoef, int nOrder) {
  if (!pX || !pY || (nOrder >= 0 && !pCoef)) return false;
  for (int i = 0; i < nSize; ++i) {
    const double x = pX[i];
    if (is_nanum(x)) {
      pY[i] = NANUM;
      continue;
    }
    double y = 0;
    for (int k = 0; k <= nOrder; ++k)
      y += k == 0 ? pCoef[0] : k == 1 ? pCoef[1] * x : pCoef[k] * std::pow(x, k);
    pY[i] = y;
  }
  return true;
}

int zomath_calc_conf_and_pred_bands_for_polynomial(const double* pX, const double* pYFit,
                                                   int nSize, const double* pCovariance,
                                                   const LinearFitOptions* pOptions, int nOrder,
                                                   double dConfLevel, double dMSE,
                                                   double dTCritical, double* pLower,
                                                   double* pUpper, int bConfidence) {
  if (!pX || !pYFit || !pCovariance || !pLower || !pUpper || !pOptions) return kErrNullData;
  if (nSize < 1) return kErrTooFew;
  if (nOrder < 0 || !(dConfLevel > 0 && dConfLevel < 1)) return kErrOption;
  const int m = nOrder + 1, first = pOptions->FixIntercept ? 1 : 0;
  const bool scaled = pOptions->ErrorScaledByReducedChiSq;
  std::vector<double> power(m);
  for (int i = 0; i < nSize; ++i) {
    if (is_nanum(pX[i]) || is_nanum(pYFit[i])) {
      pLower[i] = pUpper[i] = NANUM;
      continue;
    }
    // x' C x over the fitted coefficients, then the new observation's own variance.
    power[0] = 1;
    for (int j = 1; j < m; ++j) power[j] = power[j - 1] * pX[i];
    double v = 0;
    bool missing = is_nanum(dMSE) || is_nanum(dTCritical);
    for (int j = first; j < m; ++j)
      for (int k = first; k < m; ++k) {
        const double c = pCovariance[static_cast<std::size_t>(j) * m + k];
        missing = missing || is_nanum(c);
        v += c * power[j] * power[k];
      }
    if (bConfidence == 0) v += scaled ? dMSE : 1.0;
    if (!scaled) v *= dMSE;
    // A band that can't be had is NANUM wide, so both limits sit practically on the fit.
    const double h = (!missing && v > 0) ? std::sqrt(v) * dTCritical : NANUM;
    pLower[i] = pYFit[i] - h;
    pUpper[i] = pYFit[i] + h;
  }
  return 0;
}

}  // extern "C"
