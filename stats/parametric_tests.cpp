// Exports of the tests on means and variances: one- and two-sample t tests, the paired test,
// the chi-square tests of a variance and the F test of two.
#include <cmath>
#include <cstddef>
#include <limits>

#include "core/nrvec/nrvec.h"
#include "platform/distributions/chi_square.h"
#include "platform/distributions/fisher_f.h"
#include "platform/two_sample_t.h"
#include "stats/hypothesis.h"
#include "zomath/stats.h"

namespace zomath::stats {
namespace {

// Record layouts that hosts rely on: 32-bit counts, doubles on their natural boundaries.
static_assert(offsetof(HypotTestOptions, dTestValue) == 8 &&
                  offsetof(HypotTestOptions, TailType) == 16 && sizeof(HypotTestOptions) == 24,
              "HypotTestOptions layout");
static_assert(offsetof(tTestMeanResults, Mean) == 8 && offsetof(tTestMeanResults, SEM) == 24 &&
                  offsetof(tTestMeanResults, DOF) == 32 &&
                  offsetof(tTestMeanResults, tValue) == 40 &&
                  offsetof(tTestMeanResults, Prob) == 48 && sizeof(tTestMeanResults) == 56,
              "tTestMeanResults layout");
static_assert(offsetof(tTestMean2SampleResults, Mean1) == 8 &&
                  offsetof(tTestMean2SampleResults, N2) == 32 &&
                  offsetof(tTestMean2SampleResults, Mean2) == 40 &&
                  offsetof(tTestMean2SampleResults, DiffMean) == 64 &&
                  offsetof(tTestMean2SampleResults, DOF) == 80 &&
                  offsetof(tTestMean2SampleResults, Prob) == 96 &&
                  sizeof(tTestMean2SampleResults) == 104,
              "tTestMean2SampleResults layout");
static_assert(offsetof(tTestResults, tValue) == 8 && sizeof(tTestResults) == 24, "tTestResults");
static_assert(offsetof(ChiSqTestResults, Chi) == 8 && sizeof(ChiSqTestResults) == 24,
              "ChiSqTestResults layout");
static_assert(offsetof(ChiSq2SampleResults, Chi) == 8 &&
                  offsetof(ChiSq2SampleResults, Prob) == 16 && sizeof(ChiSq2SampleResults) == 24,
              "ChiSq2SampleResults layout");
static_assert(offsetof(FTestResults, DOF2) == 4 && offsetof(FTestResults, F) == 8 &&
                  offsetof(FTestResults, Prob) == 16 && sizeof(FTestResults) == 24,
              "FTestResults layout");

void clear(tTestMean2SampleResults& r, int count) {
  r.N1 = r.N2 = count;
  r.Mean1 = r.SD1 = r.SEM1 = r.Mean2 = r.SD2 = r.SEM2 = NANUM;
  r.DiffMean = r.DiffSEM = r.DOF = r.tValue = r.Prob = NANUM;
}

// The platform's tail for TailType; any other value than upper or lower reads as two-sided.
platform::Tail tail_of(int nTailType) {
  return nTailType == TAILED_TEST_UPPER   ? platform::Tail::Upper
         : nTailType == TAILED_TEST_LOWER ? platform::Tail::Lower
                                          : platform::Tail::TwoSided;
}

// The two samples' counts, means, SDs and standard errors.
void put_samples(tTestMean2SampleResults& r, const SampleStats& a, const SampleStats& b) {
  r.N1 = a.n;
  r.Mean1 = a.mean;
  r.SD1 = a.sd;
  r.SEM1 = a.sem;
  r.N2 = b.n;
  r.Mean2 = b.mean;
  r.SD2 = b.sd;
  r.SEM2 = b.sem;
}

// The probability of a chi-square or F statistic for a test's tail, each tail computed directly;
// two-sided is twice the smaller tail. NANUM where the distribution has no value.
template <class Probability>
double tail_probability(int nTailType, Probability probability) {
  platform::NagError err;
  const double p = probability(tail_of(nTailType), err);
  return err.code == 0 ? p : NANUM;
}

// A summary for the test routine, which reads a missing SD as no spread at all.
platform::SampleSummary as_sample(const SampleStats& s) {
  return {s.n, s.mean, s.sd == NANUM ? std::numeric_limits<double>::quiet_NaN() : s.sd, s.meanLow};
}

}  // namespace

}  // namespace zomath::stats

using namespace zomath::stats;
using zomath::NRVec;
namespace platform = zomath::platform;

extern "C" {

int zomath_one_sample_t_test(const double* pData, int nSize, const HypotTestOptions* pOptions,
                             tTestMeanResults* pResults) {
  if (!pResults) return ZOMATH_ERR_EMPTY_DATA;
  tTestMeanResults& r = *pResults;
  r.N = r.DOF = 0;
  r.Mean = r.SD = r.SEM = r.tValue = r.Prob = NANUM;
  if (!pOptions) return ZOMATH_ERR_EMPTY_DATA;
  if (!known_tail(pOptions->TailType) || !usable(pOptions->dTestValue))
    return ZOMATH_ERR_OPTION;
  if (nSize < 1) return ZOMATH_ERR_NULL_DATA;
  if (!pData) return ZOMATH_ERR_EMPTY_DATA;
  SampleStats s;
  if (const int code = sample_summary(pData, nSize, s)) return code;
  if (s.n < 1) return ZOMATH_ERR_NULL_DATA;
  r.N = s.n;
  r.Mean = s.mean;
  r.SD = s.sd;
  r.SEM = s.sem;
  r.DOF = s.n - 1;
  // No test without spread: one point, or every value the same (its SD may be a rounding
  // residue rather than 0). The positive return is the count of valid values.
  const bool constant = all_equal(pData, nSize);
  const double t =
      constant ? NANUM : mean_minus(s, pOptions->dTestValue) * std::sqrt(double(s.n)) / s.sd;
  if (constant || std::isnan(t)) {
    r.DOF = 0;
    return s.n;
  }
  r.tValue = t;
  r.Prob = student_probability(t, r.DOF, pOptions->TailType);
  return ZOMATH_OK;
}

int zomath_t_test_one_sample(int nSize, double dMean, double dSD, double* pProb, int nFlat,
                             int* pDOF, double* pT, double dTestValue, int TailType) {
  if (!pProb) return ZOMATH_ERR_NULL_POINTER;
  *pProb = NANUM;
  if (pT) *pT = NANUM;
  if (!known_tail(TailType))
    return ZOMATH_TEST_ERR_SUMMARY_TAIL;
  if (nSize < 1) return ZOMATH_ERR_TOO_FEW_ITEMS;
  if (pDOF) *pDOF = nSize - 1;
  if (nFlat == 1 || nSize == 1 || !(dSD > 0) || dMean == NANUM || dTestValue == NANUM)
    return ZOMATH_OK;
  const double t = (dMean - dTestValue) * std::sqrt(double(nSize)) / dSD;
  if (std::isnan(t)) return ZOMATH_OK;
  if (pT) *pT = t;
  *pProb = student_probability(t, nSize - 1, TailType);
  return ZOMATH_OK;
}

int zomath_two_sample_t_test(const double* pData1, int nSize1, const double* pData2, int nSize2,
                             const HypotTestOptions* pOptions,
                             tTestMean2SampleResults* pEqualResults,
                             tTestResults* pUnequalResults) {
  if (!pEqualResults) return ZOMATH_ERR_EMPTY_DATA;
  tTestMean2SampleResults& r = *pEqualResults;
  clear(r, -1);
  if (pUnequalResults)
    pUnequalResults->DOF = pUnequalResults->tValue = pUnequalResults->Prob = NANUM;
  if (!pOptions) return ZOMATH_ERR_EMPTY_DATA;
  if (nSize1 < 0 || nSize2 < 0) return ZOMATH_ERR_NULL_DATA;
  if ((nSize1 > 0 && !pData1) || (nSize2 > 0 && !pData2)) return ZOMATH_ERR_EMPTY_DATA;
  SampleStats a, b;
  if (const int code = sample_summary(pData1, nSize1, a)) return code;
  if (const int code = sample_summary(pData2, nSize2, b)) return code;
  put_samples(r, a, b);
  const int tail = pOptions->TailType;
  if (!known_tail(tail) || !usable(pOptions->dTestValue))
    return ZOMATH_ERR_OPTION;
  r.DOF = double(a.n) + double(b.n) - 2;
  const platform::Tail platformTail = tail_of(tail);
  const platform::SampleSummary x = as_sample(a), y = as_sample(b);
  // A test that can't be formed (too few points, no spread) leaves its results missing.
  platform::NagError err;
  const platform::TwoSampleT equal = platform::two_sample_t(
      x, y, platform::Variances::Equal, platformTail, pOptions->dTestValue, 0, nullptr, err);
  if (err.code == 0) {
    r.tValue = equal.t;
    r.Prob = equal.prob;
  }
  if (pUnequalResults) {
    err.reset();
    const platform::TwoSampleT welch = platform::two_sample_t(
        x, y, platform::Variances::Unequal, platformTail, pOptions->dTestValue, 0, nullptr, err);
    if (err.code == 0) *pUnequalResults = tTestResults{welch.df, welch.t, welch.prob};
  }
  return ZOMATH_OK;
}

int zomath_two_sample_t_test_pair(const double* pData1, int nSize1, const double* pData2,
                                  int nSize2, const HypotTestOptions* pOptions,
                                  tTestMean2SampleResults* pResults) {
  if (!pResults) return ZOMATH_ERR_EMPTY_DATA;
  tTestMean2SampleResults& r = *pResults;
  clear(r, -1);
  if (!pOptions) return ZOMATH_ERR_EMPTY_DATA;
  if (nSize1 != nSize2) return ZOMATH_ERR_SIZE_MISMATCH;
  if (nSize1 < 1) return ZOMATH_ERR_TOO_FEW_DATA;
  if (!pData1 || !pData2) return ZOMATH_ERR_EMPTY_DATA;
  // The pairs in which neither value is missing, and their differences.
  NRVec<double> x, y, d;
  int n = 0;
  try {
    x.SetSize(nSize1);
    y.SetSize(nSize1);
    d.SetSize(nSize1);
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
  for (int i = 0; i < nSize1; ++i) {
    if (pData1[i] == NANUM || pData2[i] == NANUM) continue;
    x[n] = pData1[i];
    y[n] = pData2[i];
    d[n] = pData1[i] - pData2[i];
    ++n;
  }
  if (n < 1) return ZOMATH_ERR_TOO_FEW_DATA;
  if (n == 1) {
    r.N1 = r.N2 = 1;
    r.Mean1 = x[0];
    r.Mean2 = y[0];
    r.DiffMean = x[0] - y[0];
    r.DOF = 0;
    return ZOMATH_OK;
  }
  SampleStats a, b, diff;
  if (const int code = sample_summary(x.Data(), n, a)) return code;
  if (const int code = sample_summary(y.Data(), n, b)) return code;
  if (const int code = sample_summary(d.Data(), n, diff)) return code;
  put_samples(r, a, b);
  // The mean difference as the mean of the differences: the same number, without the
  // cancellation of two close means.
  r.DiffMean = diff.mean;
  r.DOF = n - 1;
  r.DiffSEM = (a.sem == NANUM || b.sem == NANUM) ? NANUM : a.sem - b.sem;
  // The SD of the differences, from the differences themselves: the same as
  // sqrt(SD1^2 + SD2^2 - 2 cov), without that form's cancellation for closely paired samples.
  if (!(diff.sd > 0)) return ZOMATH_OK;
  const double t = mean_minus(diff, pOptions->dTestValue) * std::sqrt(double(n)) / diff.sd;
  const int tail = pOptions->TailType;
  if (!known_tail(tail) || !usable(pOptions->dTestValue)) {
    clear(r, 0);
    return ZOMATH_ERR_OPTION;
  }
  if (std::isnan(t)) return ZOMATH_OK;
  r.tValue = t;
  r.Prob = student_probability(t, r.DOF, tail, true);
  return ZOMATH_OK;
}

int zomath_chi_square_test(int nSize, const double* pData, const HypotTestOptions* pOptions,
                           ChiSqTestResults* pResults) {
  if (!pResults) return ZOMATH_ERR_EMPTY_DATA;
  ChiSqTestResults& r = *pResults;
  r.DOF = 0;
  r.Chi = r.Prob = NANUM;
  if (!pOptions) return ZOMATH_ERR_EMPTY_DATA;
  const double sigma2 = pOptions->dTestValue;
  const int tail = pOptions->TailType;
  if (!(sigma2 > 0 && sigma2 < INFINITY) || !known_tail(tail))
    return ZOMATH_ERR_OPTION;
  SampleStats s;
  if (const int code = sample_summary(pData, nSize, s)) return code;
  if (s.sd == 0) {
    r.Chi = r.Prob = 0;
    return ZOMATH_OK;
  }
  if (s.n < 2) return ZOMATH_OK;
  r.DOF = s.n - 1;
  const double chi = s.sd * s.sd / sigma2 * r.DOF;
  if (std::isnan(chi)) return ZOMATH_OK;
  r.Chi = chi;
  r.Prob = tail_probability(tail, [&](platform::Tail t, platform::NagError& e) {
    return platform::chi_square_probability(chi, r.DOF, t, e);
  });
  return ZOMATH_OK;
}

int zomath_two_sample_chi_square_test(const HypotTestOptions* pOptions,
                                      const tTestMean2SampleResults* pSummary,
                                      ChiSq2SampleResults* pResults) {
  if (!pResults) return ZOMATH_ERR_EMPTY_DATA;
  ChiSq2SampleResults& r = *pResults;
  r.DOF = -1;
  r.Chi = r.Prob = NANUM;
  if (!pOptions || !pSummary) return ZOMATH_ERR_EMPTY_DATA;
  const double sigma2 = pOptions->dTestValue;
  const int tail = pOptions->TailType;
  const double dof = pSummary->DOF;
  if (!(sigma2 > 0 && sigma2 < INFINITY) || !known_tail(tail) ||
      !(std::fabs(dof) < 2147483648.0))
    return ZOMATH_TEST_ERR_CHI2_OPTIONS;
  r.DOF = static_cast<int>(dof);
  const tTestMean2SampleResults& s = *pSummary;
  if (s.SD1 == NANUM || s.SD2 == NANUM || r.DOF == -1 || r.DOF == 0) return ZOMATH_OK;
  if (r.DOF < -1) {
    r.DOF = 0;
    return ZOMATH_ERR_TOO_FEW_DATA;
  }
  const double pooled = ((s.N2 - 1.0) * s.SD2 * s.SD2 + (s.N1 - 1.0) * s.SD1 * s.SD1) / dof;
  const double chi = pooled / sigma2 * r.DOF;
  if (std::isnan(chi)) {
    r.DOF = 0;
    return ZOMATH_TEST_ERR_CHI2_OPTIONS;
  }
  r.Chi = chi;
  r.Prob = tail_probability(tail, [&](platform::Tail t, platform::NagError& e) {
    return platform::chi_square_probability(chi, r.DOF, t, e);
  });
  return ZOMATH_OK;
}

int zomath_f_test(int nSize1, const double* pData1, int nSize2, const double* pData2,
                  const HypotTestOptions* pOptions, FTestResults* pResults) {
  if (!pResults) return ZOMATH_ERR_EMPTY_DATA;
  FTestResults& r = *pResults;
  r.DOF1 = r.DOF2 = 0;
  r.F = r.Prob = NANUM;
  if (!pOptions) return ZOMATH_ERR_EMPTY_DATA;
  const int tail = pOptions->TailType;
  if (!known_tail(tail)) return ZOMATH_ERR_OPTION;
  SampleStats a, b;
  const int code1 = sample_summary(pData1, nSize1, a), code2 = sample_summary(pData2, nSize2, b);
  if (code1 != 0 || code2 != 0) return code1 + code2;
  // Degrees of freedom of the valid points: a missing value is no observation.
  r.DOF1 = a.n - 1;
  r.DOF2 = b.n - 1;
  if (a.n < 2 || b.n < 2 || !(a.sd > 0) || !(b.sd > 0)) return ZOMATH_OK;
  const double ratio = a.sd / b.sd, f = ratio * ratio;
  if (std::isnan(f)) return ZOMATH_OK;
  r.F = f;
  r.Prob = tail_probability(tail, [&](platform::Tail t, platform::NagError& e) {
    return platform::f_probability(f, r.DOF1, r.DOF2, t, e);
  });
  return ZOMATH_OK;
}

int zomath_row_ttest2(int nRows, int nCols, const double* pMatrix1, const double* pMatrix2,
                      double dTestValue, int TailType, double* pT, double* pDOF, double* pProb) {
  if (!pMatrix1 || !pMatrix2) return ZOMATH_ERR_NULL_POINTER;
  if (nRows < 1 || nCols < 1) return ZOMATH_ERR_ROW_NULL;
  NRVec<double> row1, row2;
  try {
    row1.SetSize(nCols);
    row2.SetSize(nCols);
  } catch (...) {
    return ZOMATH_STATS_ERR_ROW_FETCH;
  }
  const platform::Tail tail = tail_of(TailType);
  const double shift = dTestValue == NANUM ? std::numeric_limits<double>::quiet_NaN() : dTestValue;
  for (int i = 0; i < nRows; ++i) {
    const std::size_t at = static_cast<std::size_t>(i) * static_cast<std::size_t>(nCols);
    int n1 = 0, n2 = 0;
    for (int j = 0; j < nCols; ++j) {
      if (pMatrix1[at + j] != NANUM) row1[n1++] = pMatrix1[at + j];
      if (pMatrix2[at + j] != NANUM) row2[n2++] = pMatrix2[at + j];
    }
    platform::TwoSampleT result{NANUM, NANUM, NANUM};
    SampleStats a, b;
    if (n1 > 0 && n2 > 0 && sample_summary(row1.Data(), n1, a) == 0 &&
        sample_summary(row2.Data(), n2, b) == 0) {
      platform::NagError err;
      const platform::TwoSampleT test = platform::two_sample_t(
          as_sample(a), as_sample(b), platform::Variances::Equal, tail, shift, 0, nullptr, err);
      if (err.code == 0) result = test;
    }
    if (pT) pT[i] = result.t;
    if (pDOF) pDOF[i] = result.df;
    if (pProb) pProb[i] = result.prob;
  }
  return ZOMATH_OK;
}

}  // extern "C"
