// Pairwise comparison of group means after an analysis of variance: the statistic and
// probability of each pair by the method asked for, the simultaneous intervals of the
// single-step methods, and Holm's step-down walk.
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <type_traits>
#include <vector>

#include "platform/distributions/studentized_range.h"
#include "platform/multiple_comparisons.h"
#include "stats/anova.h"
#include "stats/hypothesis.h"

namespace zomath::stats {
namespace {

template <class T>
void fill(T* p, int n, T v) {
  if (p)
    for (int i = 0; i < n; ++i) p[i] = v;
}

// The probability of pair statistic t = d / s under `method` for k groups, m pairs.
void pair_test(int method, double t, int dof, int k, double m, double& stat, double& prob) {
  switch (method) {
    case COMPARE_TUKEY: {
      stat = std::fabs(t) * std::sqrt(2.0);
      if (stat == 0) {
        prob = 1;
        break;
      }
      platform::NagError err;
      const double lower = platform::studentized_range_lower(stat, dof, k, err);
      prob = err.code ? NANUM : 1 - lower;
      break;
    }
    case COMPARE_SCHEFFE:
      stat = t * t / (k - 1);
      prob = f_upper(stat, k - 1, dof);
      break;
    default: {
      stat = t;
      const double p = student_probability(t, dof, TAILED_TEST_TWO);
      if (p == NANUM || method == COMPARE_FISHER_LSD || method >= COMPARE_HOLM_BONFERRONI)
        prob = p;
      else if (method == COMPARE_BONFERRONI)
        prob = std::min(1.0, m * p);
      else  // COMPARE_SIDAK: 1 - (1 - p)^m, without the cancellation of a small p
        prob = -std::expm1(m * std::log1p(-p));
    }
  }
}

// Holm's walk: the pairs in ascending order of probability (an unusable one last) meet the
// thresholds in their own order; the first that a probability exceeds ends the walk.
void holm_walk(int m, int* index, double* diff, double* sem, double* stat, double* prob,
               const double* alpha, int* sig) {
  std::vector<int> order(m);
  for (int c = 0; c < m; ++c) order[c] = c;
  auto key = [&](int c) { return prob[c] == NANUM || std::isnan(prob[c]) ? INFINITY : prob[c]; };
  std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return key(a) < key(b); });
  auto permute = [&](auto* v) {
    using T = std::remove_pointer_t<decltype(v)>;
    std::vector<T> copy(v, v + m);
    for (int c = 0; c < m; ++c) v[c] = copy[order[c]];
  };
  permute(index);
  permute(diff);
  permute(sem);
  permute(stat);
  permute(prob);
  for (int c = 0; c < m && usable(prob[c]) && prob[c] <= alpha[c]; ++c) sig[c] = 1;
}

}  // namespace
}  // namespace zomath::stats

using namespace zomath::stats;
namespace platform = zomath::platform;

extern "C" {

int zomath_anova_mean_comparison(const double* pMeans, int nMeans, const int* pCounts,
                                 int nCounts, double dMSE, int nDOF, double dSigLevel,
                                 int nGroups, int* pIndex, int nComparisons, double* pDiff,
                                 int nDiff, double* pLCL, int nLCL, double* pUCL, int nUCL,
                                 double* pSEM, int nSEM, double* pStat, int nStat, double* pProb,
                                 int nProb, int* pSig, int nSig, double* pAlpha, int nAlpha,
                                 int nCompareMethod) {
  fill(pIndex, nComparisons, 0);
  fill(pDiff, nDiff, NANUM);
  fill(pLCL, nLCL, NANUM);
  fill(pUCL, nUCL, NANUM);
  fill(pSEM, nSEM, NANUM);
  fill(pStat, nStat, NANUM);
  fill(pProb, nProb, NANUM);
  fill(pSig, nSig, 0);
  fill(pAlpha, nAlpha, dSigLevel);
  if (!(dSigLevel > 0 && dSigLevel < 1)) return ZOMATH_ANOVA_ERR_SIG_LEVEL;
  if (nCompareMethod < COMPARE_TUKEY || nCompareMethod > COMPARE_HOLM_SIDAK)
    return ZOMATH_ERR_OPTION;
  const int k = nGroups;
  const long long pairs = k > 1 ? static_cast<long long>(k) * (k - 1) / 2 : 0;
  if (k < 0 || nMeans < k || nCounts < k || pairs > nComparisons ||
      std::min({nDiff, nLCL, nUCL, nSEM, nStat, nProb, nSig, nAlpha}) < nComparisons)
    return ZOMATH_ANOVA_ERR_SIZES;
  const bool holm = nCompareMethod >= COMPARE_HOLM_BONFERRONI;
  if (holm && nProb != nAlpha) return ZOMATH_ERR_OPTION;
  if (pairs > 0 && (!pMeans || !pCounts || !pIndex || !pDiff || !pLCL || !pUCL || !pSEM ||
                    !pStat || !pProb || !pSig || !pAlpha))
    return ZOMATH_ERR_EMPTY_DATA;
  if (nDOF < 1) return ZOMATH_ANOVA_ERR_DOF;
  if (pairs == 0) return ZOMATH_OK;

  const int m = static_cast<int>(pairs);
  const std::size_t kk = static_cast<std::size_t>(k);
  std::vector<double> se;  // k by k, strict lower triangle: the standard errors of the differences
  try {
    se.resize(kk * kk);
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
  const bool mseUsable = usable(dMSE) && dMSE >= 0;
  bool intervals = nCompareMethod <= COMPARE_SCHEFFE;
  int c = 0;
  for (int i = 1; i < k; ++i)
    for (int j = 0; j < i; ++j, ++c) {
      pIndex[c] = c;
      const double s = mseUsable && pCounts[i] > 0 && pCounts[j] > 0
                           ? std::sqrt(dMSE * (1.0 / pCounts[i] + 1.0 / pCounts[j]))
                           : NANUM;
      se[i * kk + j] = s;
      pSEM[c] = s;
      const double d = usable(pMeans[i]) && usable(pMeans[j]) ? pMeans[i] - pMeans[j] : NANUM;
      pDiff[c] = d;
      if (holm)  // the threshold of the c-th smallest probability
        pAlpha[c] = nCompareMethod == COMPARE_HOLM_BONFERRONI
                        ? dSigLevel / (m - c)
                        : -std::expm1(std::log1p(-dSigLevel) / (m - c));
      if (s == NANUM || s == 0 || d == NANUM) {
        intervals = false;
        continue;
      }
      if (nCompareMethod != COMPARE_NONE)
        pair_test(nCompareMethod, d / s, nDOF, k, m, pStat[c], pProb[c]);
    }

  if (intervals) {
    platform::NagError fail;
    const int code = platform::simultaneous_intervals(
        static_cast<platform::IntervalType>(nCompareMethod), k, pMeans, nDOF, se.data(), k,
        1 - dSigLevel, pLCL, pUCL, pSig, fail);
    if (code) return code;
  }
  if (holm) {
    try {
      holm_walk(m, pIndex, pDiff, pSEM, pStat, pProb, pAlpha, pSig);
    } catch (...) {
      return ZOMATH_ERR_NO_MEMORY;
    }
  }
  return ZOMATH_OK;
}

int zsANOVA2Way_Means_Comparison(const ANOVA2TotalStats* pLevelStats, int nLevels, double dMSE,
                                 double dDOF, double dSigLevel, int nGroups, int* pIndex,
                                 int nComparisons, double* pDiff, int nDiff, double* pLCL,
                                 int nLCL, double* pUCL, int nUCL, double* pSEM, int nSEM,
                                 double* pStat, int nStat, double* pProb, int nProb, int* pSig,
                                 int nSig, double* pAlpha, int nAlpha, int nCompareMethod) {
  if (!(dSigLevel > 0 && dSigLevel < 1) || nCompareMethod < COMPARE_TUKEY ||
      nCompareMethod > COMPARE_HOLM_SIDAK)
    return ZOMATH_ERR_OPTION;
  if (nLevels < 0 || std::min({nDiff, nLCL, nUCL, nSEM, nStat, nProb, nSig, nAlpha}) < nComparisons)
    return ZOMATH_ANOVA_ERR_SIZES;
  if (!pLevelStats && nLevels > 0) return ZOMATH_ERR_EMPTY_DATA;
  std::vector<double> means;
  std::vector<int> counts;
  try {
    means.resize(nLevels);
    counts.resize(nLevels);
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
  for (int i = 0; i < nLevels; ++i) {
    means[i] = pLevelStats[i].Mean;
    counts[i] = pLevelStats[i].NonMissing;
  }
  const int dof = dDOF >= 1 ? static_cast<int>(std::min(dDOF, double(INT_MAX))) : 0;
  // The comparison's own code is not passed on: its outputs say what it could do.
  zomath_anova_mean_comparison(means.data(), nLevels, counts.data(), nLevels, dMSE, dof,
                               dSigLevel, nGroups, pIndex, nComparisons, pDiff, nDiff, pLCL, nLCL,
                               pUCL, nUCL, pSEM, nSEM, pStat, nStat, pProb, nProb, pSig, nSig,
                               pAlpha, nAlpha, nCompareMethod);
  return ZOMATH_OK;
}

}  // extern "C"
