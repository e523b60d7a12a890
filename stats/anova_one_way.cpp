// The one-way analysis of variance, the tests of equal variance that run through the same
// engine (Levene, Brown-Forsythe), and the table of a fitted model about zero.
#include <algorithm>
#include <cmath>
#include <cstddef>

#include "core/double_double.h"
#include "core/nrvec/nrvec.h"
#include "platform/distributions/fisher_f.h"
#include "stats/anova.h"
#include "stats/hypothesis.h"

namespace zomath::stats {
namespace {

static_assert(offsetof(ANOVATable, SSq1) == 8 && offsetof(ANOVATable, DOF2) == 24 &&
                  offsetof(ANOVATable, MeanSq3) == 64 && offsetof(ANOVATable, PValue) == 80 &&
                  sizeof(ANOVATable) == 88,
              "ANOVATable layout");
static_assert(offsetof(ANOVAFitSummary, CoefVar) == 8 &&
                  offsetof(ANOVAFitSummary, GrandMean) == 24 && sizeof(ANOVAFitSummary) == 32,
              "ANOVAFitSummary layout");

void clear(tTestMeanResults& r) {
  r.N = r.DOF = -1;
  r.Mean = r.SD = r.SEM = r.tValue = r.Prob = NANUM;
}

// The group's valid values, transformed about their own centre: |x - c|, (x - c)^2. The centre
// is carried as c + low to twice a double's precision (the mean with what its rounding left out,
// the median of an even count as the exact half sum of its two middle values), so that a
// deviation keeps its digits when the values are far larger than their spread.
void transform(double* v, int n, int method, const SampleStats& s) {
  double c = s.mean, low = s.meanLow;
  if (method == ANOVA_BROWN) {
    const int h = n / 2;
    std::nth_element(v, v + h, v + n);
    if (n % 2) {
      c = v[h];
      low = 0;
    } else {
      const dd::Double2 sum = dd::two_sum(*std::max_element(v, v + h), v[h]);
      c = sum.hi / 2;
      low = sum.lo / 2;
    }
  }
  for (int i = 0; i < n; ++i) {
    const double d = (v[i] - c) - low;
    v[i] = method == ANOVA_LEVENESQ ? d * d : std::fabs(d);
  }
}

}  // namespace

void clear(ANOVATable* t) {
  if (!t) return;
  t->DOF1 = t->SSq1 = t->MeanSq1 = t->DOF2 = t->SSq2 = t->MeanSq2 = NANUM;
  t->DOF3 = t->SSq3 = t->MeanSq3 = t->FValue = t->PValue = NANUM;
}

double f_upper(double f, double df1, double df2) {
  if (f == NANUM || std::isnan(f) || !(df1 > 0) || !(df2 > 0)) return NANUM;
  platform::NagError err;
  const double p = platform::f_probability(f, df1, df2, platform::Tail::Upper, err);
  return err.code || std::isnan(p) ? NANUM : p;
}

double ratio(double a, double b) { return a == NANUM || b == NANUM || b == 0 ? NANUM : a / b; }

int one_way_engine(const double* pData, int nSize, int nGroups, const int* pGroupSizes,
                   tTestMeanResults* pGroupStats, int nGroupStats, ANOVATable* pTable,
                   int nMethod, OneWayTotals* pTotals) {
  if (pGroupStats)
    for (int g = 0; g < nGroupStats; ++g) clear(pGroupStats[g]);
  clear(pTable);
  if (pTotals) *pTotals = OneWayTotals{};
  if ((nSize > 0 && !pData) || (nGroups > 0 && !pGroupSizes)) return ZOMATH_ERR_EMPTY_DATA;
  if (nMethod < 0 || nMethod > 4) return ZOMATH_ERR_OPTION;
  if (nSize < 0 || nGroups < 0 || (pGroupStats && nGroups > nGroupStats))
    return ZOMATH_ANOVA_ERR_SIZES;
  long long used = 0;
  int largest = 0;
  for (int g = 0; g < nGroups; ++g) {
    if (pGroupSizes[g] < 0) return ZOMATH_ANOVA_ERR_SIZES;
    used += pGroupSizes[g];
    largest = std::max(largest, pGroupSizes[g]);
  }
  if (used > nSize) return ZOMATH_ANOVA_ERR_SIZES;

  const bool transformed = nMethod >= ANOVA_LEVENE && nMethod <= ANOVA_BROWN;
  NRVec<double> work, means, lows;
  NRVec<int> counts;
  try {
    if (transformed) work.SetSize(std::max(largest, 1));
    means.SetSize(std::max(nGroups, 1));
    lows.SetSize(std::max(nGroups, 1));
    counts.SetSize(std::max(nGroups, 1));
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }

  // Per group: the summary, the grand total to twice a double's precision, and the within
  // sum of squares (N - 1) SD^2.
  dd::Double2 total;
  double within = 0;
  int n = 0, k = 0;
  bool finite = true;
  const bool constant = all_equal(pData, static_cast<int>(used));  // the groups lie end to end
  const double* group = pData;
  for (int g = 0; g < nGroups; group += pGroupSizes[g], ++g) {
    const int len = pGroupSizes[g];
    SampleStats s;
    sample_summary(group, len, s);
    if (transformed && s.n > 0) {
      int m = 0;
      for (int i = 0; i < len; ++i)
        if (group[i] != NANUM) work[m++] = group[i];
      transform(work.Data(), m, nMethod, s);
      sample_summary(work.Data(), m, s);
    }
    counts[g] = s.n;
    means[g] = s.mean;
    lows[g] = s.meanLow;
    if (pGroupStats) {
      tTestMeanResults& r = pGroupStats[g];
      r.N = s.n;
      r.Mean = s.mean;
      r.SD = s.sd;
      r.SEM = s.sem;
    }
    if (s.n == 0) continue;
    ++k;
    n += s.n;
    total = dd::add(total, dd::mul(dd::Double2{s.mean, s.meanLow}, static_cast<double>(s.n)));
    if (s.n > 1) {
      finite = finite && s.sd != NANUM && std::isfinite(s.sd);
      within += (s.n - 1.0) * s.sd * s.sd;
    }
    finite = finite && std::isfinite(s.mean);
  }
  if (n == 0) return ZOMATH_OK;

  const dd::Double2 grand = dd::div(total, static_cast<double>(n));
  if (pTotals) {
    pTotals->n = n;
    pTotals->grandMean = grand.hi;
    pTotals->constant = constant;
  }
  double between = 0;
  for (int g = 0; g < nGroups; ++g) {
    if (counts[g] == 0) continue;
    const dd::Double2 d = dd::add(dd::Double2{means[g], lows[g]}, dd::neg(grand));
    const double dv = d.hi + d.lo;
    between += counts[g] * dv * dv;
  }
  finite = finite && std::isfinite(between) && std::isfinite(within);
  if (!pTable) return ZOMATH_OK;
  ANOVATable& t = *pTable;
  t.DOF1 = k - 1;
  t.DOF2 = n - k;
  t.DOF3 = n - 1;
  if (!finite) return ZOMATH_OK;
  t.SSq1 = between;
  t.MeanSq1 = t.DOF1 > 0 ? between / t.DOF1 : NANUM;
  t.SSq2 = within;
  t.MeanSq2 = t.DOF2 > 0 ? within / t.DOF2 : NANUM;
  t.SSq3 = between + within;
  if (n > 2 && k > 1 && !constant) {
    t.FValue = t.MeanSq1 == NANUM ? NANUM : ratio(t.MeanSq1, t.MeanSq2);
    t.PValue = f_upper(t.FValue, t.DOF1, t.DOF2);
  }
  return ZOMATH_OK;
}

}  // namespace zomath::stats

using namespace zomath::stats;

extern "C" {

int zomath_anova_equal_variance_test(const double* pData, int nSize, int nGroups,
                                     const int* pGroupSizes, tTestMeanResults* pGroupStats,
                                     int nGroupStats, ANOVATable* pTable, int nMethod) {
  return one_way_engine(pData, nSize, nGroups, pGroupSizes, pGroupStats, nGroupStats, pTable,
                        nMethod);
}

int zomath_anova_one_way(const double* pData, int nSize, int nGroups, const int* pGroupSizes,
                         tTestMeanResults* pGroupStats, int nGroupStats, ANOVAFitSummary* pFit,
                         ANOVATable* pTable) {
  if (pFit) pFit->RSquare = pFit->CoefVar = pFit->RootMSE = pFit->GrandMean = NANUM;
  ANOVATable table;
  OneWayTotals totals;
  const int code = one_way_engine(pData, nSize, nGroups, pGroupSizes, pGroupStats, nGroupStats,
                                  &table, 0, &totals);
  if (pTable) *pTable = table;
  if (code || !pFit || totals.n == 0) return code;
  ANOVAFitSummary& f = *pFit;
  f.GrandMean = totals.grandMean;
  if (totals.n >= 3 && table.MeanSq2 != NANUM) {
    f.RootMSE = std::sqrt(table.MeanSq2);
    f.CoefVar = ratio(f.RootMSE, f.GrandMean);
  }
  f.RSquare = totals.constant ? 0.0 : ratio(table.SSq1, table.SSq3);
  return ZOMATH_OK;
}

int zomath_nlsf_anova(int nSize, const double* pX, const double* pY, int nParams, double dSSE,
                      ANOVATable* pTable, const double* pWeights, double* pCorrectedTotal) {
  clear(pTable);
  if (pCorrectedTotal) pCorrectedTotal[0] = pCorrectedTotal[1] = pCorrectedTotal[2] = NANUM;
  if (!pX || !pY || !pTable) return ZOMATH_ERR_EMPTY_DATA;
  if (nSize < 2) return ZOMATH_ANOVA_ERR_FIT;
  if (pWeights)
    for (int i = 0; i < nSize; ++i)
      if (pWeights[i] < 0 || std::isnan(pWeights[i])) return ZOMATH_ANOVA_ERR_FIT;
  // The weighted sums of y about zero and about its weighted mean, as the summary engine keeps
  // them (a point whose y or weight is NANUM takes no part).
  int valid = 0;
  double uncorrected = NANUM, corrected = NANUM;
  if (zomath_basic_summary_stats(nSize, pY, &valid, nullptr, nullptr, nullptr, nullptr, nullptr,
                                 nullptr, nullptr, &uncorrected, &corrected, nullptr, nullptr,
                                 nullptr, nullptr, nullptr, DS_SAS1_DF, pWeights) != 0 ||
      valid < 1 || uncorrected == NANUM || corrected == NANUM)
    return ZOMATH_ANOVA_ERR_FIT;

  ANOVATable& t = *pTable;
  const double sse = std::isfinite(dSSE) ? dSSE : NANUM;
  t.DOF2 = static_cast<double>(nSize) - nParams;
  t.SSq2 = sse;
  t.MeanSq2 = t.DOF2 > 0 ? ratio(sse, t.DOF2) : NANUM;
  t.DOF1 = nParams;
  t.SSq1 = sse == NANUM ? NANUM : uncorrected - sse;
  t.MeanSq1 = nParams > 0 ? ratio(t.SSq1, nParams) : NANUM;
  t.DOF3 = nSize;
  t.SSq3 = uncorrected;
  // The probability is read on nParams - 1 and DOF2 degrees, not on the table's DOF1.
  if (t.MeanSq1 != 0) t.FValue = t.MeanSq1 == NANUM ? NANUM : ratio(t.MeanSq1, t.MeanSq2);
  t.PValue = f_upper(t.FValue, nParams - 1.0, t.DOF2);
  if (pCorrectedTotal) {
    pCorrectedTotal[0] = nSize - 1.0;
    pCorrectedTotal[1] = corrected;
  }
  return ZOMATH_OK;
}

}  // extern "C"
