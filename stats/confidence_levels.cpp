// Exports of the confidence limits that go with the tests: of a mean, a variance, a difference
// of means (pooled, unequal variances, paired) and a ratio of variances, for several levels.
#include <cmath>
#include <limits>

#include "platform/distributions/chi_square.h"
#include "platform/distributions/fisher_f.h"
#include "platform/distributions/student_t.h"
#include "platform/two_sample_t.h"
#include "stats/moments.h"
#include "zomath/stats.h"

namespace zomath::stats {
namespace {

bool valid_level(double c) { return c > 0 && c < 1; }

// Writes NANUM to the limits of every level; a null array is skipped.
void clear_limits(int nLevels, double* pLCLs, double* pUCLs) {
  for (int i = 0; i < nLevels; ++i) {
    if (pLCLs) pLCLs[i] = NANUM;
    if (pUCLs) pUCLs[i] = NANUM;
  }
}

void put_limits(int i, double lower, double upper, double* pLCLs, double* pUCLs) {
  const bool finite = std::isfinite(lower) && std::isfinite(upper);
  if (pLCLs) pLCLs[i] = finite ? lower : NANUM;
  if (pUCLs) pUCLs[i] = finite ? upper : NANUM;
}

// The F quantile with probability q beyond it in `tail`; the safeguarded search takes over where
// the fast inversion can't confirm its result. NaN when it has no value.
double f_quantile(double q, double df1, double df2, platform::Tail tail) {
  platform::NagError err;
  double f = platform::f_quantile(q, df1, df2, tail, err);
  if (err.code == platform::kFQuantileInaccurate) {
    err.reset();
    f = platform::f_quantile_by_search(q, df1, df2, tail, err);
  }
  return err.code == 0 ? f : std::numeric_limits<double>::quiet_NaN();
}

int two_sample_mean_limits(const double* pLevels, int nLevels,
                           const tTestMean2SampleResults* pSummary, double* pLCLs, double* pUCLs,
                           platform::Variances variances) {
  if (!pSummary) return ZOMATH_ERR_EMPTY_DATA;
  if (nLevels < 0) return ZOMATH_ERR_OPTION;
  if (nLevels == 0) return ZOMATH_OK;
  if (!pLevels) return ZOMATH_ERR_EMPTY_DATA;
  clear_limits(nLevels, pLCLs, pUCLs);
  const tTestMean2SampleResults& s = *pSummary;
  // A missing SD is no spread at all; the test routine refuses it.
  const auto sd = [](double v) {
    return v == NANUM ? std::numeric_limits<double>::quiet_NaN() : v;
  };
  const platform::SampleSummary x{s.N1, s.Mean1, sd(s.SD1)}, y{s.N2, s.Mean2, sd(s.SD2)};
  for (int i = 0; i < nLevels; ++i) {
    if (!valid_level(pLevels[i])) return ZOMATH_ERR_OPTION;
    platform::NagError err;
    double interval[2];
    platform::two_sample_t(x, y, variances, platform::Tail::TwoSided, 0, pLevels[i], interval, err);
    if (err.code == 0) put_limits(i, interval[0], interval[1], pLCLs, pUCLs);
  }
  return ZOMATH_OK;
}

}  // namespace
}  // namespace zomath::stats

using namespace zomath::stats;
namespace platform = zomath::platform;

extern "C" {

int zomath_confidence_levels_for_mean(const double* pLevels, int nLevels,
                                      const tTestMeanResults* pSummary, double* pLCLs,
                                      double* pUCLs) {
  if (!pLevels || !pSummary) return ZOMATH_ERR_EMPTY_DATA;
  if (nLevels < 1) return ZOMATH_ERR_OPTION;
  clear_limits(nLevels, pLCLs, pUCLs);
  const tTestMeanResults& s = *pSummary;
  if (s.SD == 0) {
    for (int i = 0; i < nLevels; ++i) put_limits(i, s.Mean, s.Mean, pLCLs, pUCLs);
    return ZOMATH_OK;
  }
  if (s.DOF == 0 || s.DOF == -1) return ZOMATH_OK;
  if (s.DOF < -1) return ZOMATH_ERR_NOT_FOUND;
  for (int i = 0; i < nLevels; ++i) {
    if (!valid_level(pLevels[i])) return ZOMATH_ERR_OPTION;
    double lower, upper;
    confidence_limits(s.Mean, s.SD, s.N, s.N, DS_SAS1_DF, false, pLevels[i], lower, upper);
    if (lower != NANUM) put_limits(i, lower, upper, pLCLs, pUCLs);
  }
  return ZOMATH_OK;
}

int zomath_confidence_levels_for_variance(int nLevels, const double* pLevels, double dSD,
                                          double dDOF, double* pLCLs, double* pUCLs) {
  if (!pLevels) return ZOMATH_ERR_EMPTY_DATA;
  if (nLevels < 1) return ZOMATH_ERR_OPTION;
  clear_limits(nLevels, pLCLs, pUCLs);
  for (int i = 0; i < nLevels; ++i) {
    const double c = pLevels[i];
    if (!valid_level(c)) return ZOMATH_ERR_OPTION;
    if (!(dDOF > 0) || dSD == NANUM) continue;
    // (1 - c) / 2 beyond each quantile, formed without rounding for c >= 1/2; each quantile is
    // found from its own tail.
    const double q = (1 - c) / 2, s = dSD * dSD * dDOF;
    platform::NagError err;
    const double high = platform::chi_square_quantile(q, dDOF, platform::Tail::Upper, err);
    const double low = platform::chi_square_quantile(q, dDOF, platform::Tail::Lower, err);
    if (err.code == 0) put_limits(i, s / high, s / low, pLCLs, pUCLs);
  }
  return ZOMATH_OK;
}

int zomath_two_sample_confidence_levels_for_mean_equal_var(const double* pLevels, int nLevels,
                                                           const tTestMean2SampleResults* pSummary,
                                                           double* pLCLs, double* pUCLs) {
  return two_sample_mean_limits(pLevels, nLevels, pSummary, pLCLs, pUCLs,
                                platform::Variances::Equal);
}

int zomath_two_sample_confidence_levels_for_mean_unequal_var(
    const double* pLevels, int nLevels, const tTestMean2SampleResults* pSummary, double* pLCLs,
    double* pUCLs) {
  return two_sample_mean_limits(pLevels, nLevels, pSummary, pLCLs, pUCLs,
                                platform::Variances::Unequal);
}

int zomath_two_sample_confidence_levels_for_mean_pair(const double* pLevels, int nLevels,
                                                      const tTestMean2SampleResults* pSummary,
                                                      const HypotTestOptions* pOptions,
                                                      double* pLCLs, double* pUCLs) {
  if (!pLevels || !pSummary || !pOptions) return ZOMATH_ERR_EMPTY_DATA;
  if (nLevels < 1) return ZOMATH_ERR_OPTION;
  clear_limits(nLevels, pLCLs, pUCLs);
  for (int i = 0; i < nLevels; ++i)
    if (!valid_level(pLevels[i])) return ZOMATH_ERR_OPTION;
  const tTestMean2SampleResults& s = *pSummary;
  if (s.DOF == 0) return ZOMATH_OK;
  // The standard error of the differences, recovered from the test made with these options.
  if (s.DiffMean == NANUM || s.tValue == NANUM || s.tValue == 0 || pOptions->dTestValue == NANUM ||
      !(s.DOF > 0))
    return ZOMATH_OK;
  const double se = (s.DiffMean - pOptions->dTestValue) / s.tValue;
  for (int i = 0; i < nLevels; ++i) {
    platform::NagError err;
    const double q = platform::student_t_quantile(pLevels[i], s.DOF, platform::Tail::Central, err);
    if (err.code != 0) continue;
    const double w = std::fabs(se * q);
    put_limits(i, s.DiffMean - w, s.DiffMean + w, pLCLs, pUCLs);
  }
  return ZOMATH_OK;
}

int zomath_two_sample_confidence_levels_for_variance(int nLevels, const double* pLevels,
                                                     const double* pSDs, const int* pSizes,
                                                     double* pLCLs, double* pUCLs) {
  if (!pLevels || !pSDs || !pSizes) return ZOMATH_ERR_EMPTY_DATA;
  if (nLevels < 1) return ZOMATH_ERR_OPTION;
  clear_limits(nLevels, pLCLs, pUCLs);
  const double n1 = pSizes[0], n2 = pSizes[1];
  if (!(n1 + n2 > 2) || pSDs[0] == NANUM || pSDs[1] == NANUM) return ZOMATH_OK;
  const double ratio = pSDs[0] / pSDs[1], f = ratio * ratio;
  for (int i = 0; i < nLevels; ++i) {
    const double c = pLevels[i];
    if (!valid_level(c)) continue;
    const double q = (1 - c) / 2;
    const double high = f_quantile(q, n1 - 1, n2 - 1, platform::Tail::Upper);
    const double low = f_quantile(q, n1 - 1, n2 - 1, platform::Tail::Lower);
    put_limits(i, f / high, f / low, pLCLs, pUCLs);
  }
  return ZOMATH_OK;
}

}  // extern "C"
