// The two-way analysis of variance: level, cell and total statistics, and the table of type III
// sums from regressions on effect-coded factor columns; the count of values per cell.
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <vector>

#include "platform/regression.h"
#include "stats/anova.h"
#include "stats/hypothesis.h"

namespace zomath::stats {
namespace {

static_assert(offsetof(ANOVA2TotalStats, Mean) == 8 && offsetof(ANOVA2TotalStats, VAR) == 32 &&
                  offsetof(ANOVA2TotalStats, Missing) == 40 &&
                  offsetof(ANOVA2TotalStats, NonMissing) == 44 && sizeof(ANOVA2TotalStats) == 48,
              "ANOVA2TotalStats layout");
static_assert(offsetof(ANOVA2TableRow, SSq) == 8 && offsetof(ANOVA2TableRow, PValue) == 32 &&
                  sizeof(ANOVA2TableRow) == 40,
              "ANOVA2TableRow layout");
static_assert(offsetof(ANOVA2Table, FactorB) == 40 && offsetof(ANOVA2Table, Model) == 120 &&
                  offsetof(ANOVA2Table, CorrectedTotal) == 200 && sizeof(ANOVA2Table) == 240,
              "ANOVA2Table layout");

void clear(ANOVA2TotalStats* s, std::size_t n) {
  if (!s) return;
  for (std::size_t i = 0; i < n; ++i) {
    s[i].N = s[i].Missing = s[i].NonMissing = -1;
    s[i].Mean = s[i].SD = s[i].SEM = s[i].VAR = NANUM;
  }
}

void clear(ANOVA2TableRow& r) {
  r.DOF = 0;
  r.SSq = r.MeanSq = r.FValue = r.PValue = NANUM;
}

// The statistics of x[0..n) into out; returns the summary they come from.
SampleStats summarise(const double* x, int n, ANOVA2TotalStats& out) {
  SampleStats s;
  sample_summary(x, n, s);
  out.N = n;
  out.NonMissing = s.n;
  out.Missing = n - s.n;
  out.Mean = s.mean;
  out.SD = s.sd;
  out.SEM = s.sem;
  out.VAR = s.sd == NANUM ? NANUM : s.sd * s.sd;
  return s;
}

// Statistics of the groups of x that key[i] (0..groups-1) names, by one counting sort.
void group_statistics(const double* x, int n, const std::vector<int>& key, std::size_t groups,
                      ANOVA2TotalStats* out) {
  std::vector<int> start(groups + 1, 0);
  for (int i = 0; i < n; ++i) ++start[key[i] + 1];
  for (std::size_t g = 0; g < groups; ++g) start[g + 1] += start[g];
  std::vector<double> sorted(static_cast<std::size_t>(n));
  std::vector<int> next(start.begin(), start.end() - 1);
  for (int i = 0; i < n; ++i) sorted[next[key[i]]++] = x[i];
  for (std::size_t g = 0; g < groups; ++g)
    summarise(sorted.data() + start[g], start[g + 1] - start[g], out[g]);
}

struct Fit {
  int code = 0;
  double rss = 0;
  int rank = 0;
  int df = 0;
};

// Least squares of y on an intercept and the m columns of x (row stride m).
Fit regress(const std::vector<double>& x, int n, int m, const std::vector<double>& y) {
  platform::NagError fail;
  platform::RegressionSummary s;
  Fit f;
  f.code = platform::multiple_regression(platform::Mean::Include, n, m, m ? x.data() : nullptr, m,
                                         y.data(), nullptr, 1e-20, platform::RegressionOutputs{},
                                         s, fail);
  if (f.code == platform::kRegressionNoResidualDof) f.code = 0;
  f.rss = s.rss;
  f.rank = s.rank;
  f.df = s.df;
  return f;
}

// The effect-coded row of a factor at `level` (1..levels): a 1 in the level's column, or -1 in
// every column for the last level.
void effect_code(int level, int levels, double* row) {
  for (int j = 0; j + 1 < levels; ++j)
    row[j] = level == levels ? -1.0 : (level == j + 1 ? 1.0 : 0.0);
}

void set_test(ANOVA2TableRow& r, const ANOVA2TableRow& error) {
  r.MeanSq = r.DOF > 0 ? r.SSq / r.DOF : NANUM;
  r.FValue = r.MeanSq == NANUM || error.MeanSq == NANUM ? NANUM : ratio(r.MeanSq, error.MeanSq);
  r.PValue = f_upper(r.FValue, r.DOF, error.DOF);
}

int two_way_table(int bInteraction, const int* a, int na, const int* b, int nb, const double* y,
                  int n, ANOVA2TotalStats* pStatsA, ANOVA2TotalStats* pStatsB,
                  ANOVA2TotalStats* pTotal, ANOVA2TotalStats* pCells, ANOVA2Table* pTable) {
  std::vector<int> key(static_cast<std::size_t>(n));
  if (pStatsA) {
    for (int i = 0; i < n; ++i) key[i] = a[i] - 1;
    group_statistics(y, n, key, na, pStatsA);
  }
  if (pStatsB) {
    for (int i = 0; i < n; ++i) key[i] = b[i] - 1;
    group_statistics(y, n, key, nb, pStatsB);
  }
  if (pCells) {
    for (int i = 0; i < n; ++i) key[i] = (a[i] - 1) * nb + (b[i] - 1);
    group_statistics(y, n, key, static_cast<std::size_t>(na) * nb, pCells);
  }
  ANOVA2TotalStats total;
  const SampleStats s = summarise(y, n, total);
  if (pTotal) *pTotal = total;
  const int nValid = total.NonMissing;
  if (!pTable || nValid == 0) return ZOMATH_OK;

  // The model sees the valid observations only, y about its mean (to twice a double's
  // precision, so that a large constant costs the residuals nothing).
  const int ca = na - 1, cb = nb - 1;
  const long long columns = ca + cb + (bInteraction ? static_cast<long long>(ca) * cb : 0);
  if (columns > INT_MAX / 2) return ZOMATH_ERR_NO_MEMORY;
  const int p = static_cast<int>(columns), cab = p - ca - cb;
  const std::size_t cols = static_cast<std::size_t>(p);
  std::vector<double> x(static_cast<std::size_t>(nValid) * cols), yc(nValid);
  std::vector<double> ea(ca + 1), eb(cb + 1);
  double lo = INFINITY, hi = -INFINITY;
  for (int i = 0, r = 0; i < n; ++i) {
    if (y[i] == NANUM) continue;
    lo = std::min(lo, y[i]);
    hi = std::max(hi, y[i]);
    yc[r] = (y[i] - s.mean) - s.meanLow;
    double* row = x.data() + r * cols;
    effect_code(a[i], na, ea.data());
    effect_code(b[i], nb, eb.data());
    std::copy(ea.begin(), ea.begin() + ca, row);
    std::copy(eb.begin(), eb.begin() + cb, row + ca);
    if (bInteraction)
      for (int j = 0; j < ca; ++j)
        for (int l = 0; l < cb; ++l) row[ca + cb + j * cb + l] = ea[j] * eb[l];
    ++r;
  }
  const Fit full = regress(x, nValid, p, yc);
  if (full.code) return full.code;

  ANOVA2Table& t = *pTable;
  t.Error.DOF = full.df;
  t.Error.SSq = full.rss;
  t.Error.MeanSq = full.df > 0 ? full.rss / full.df : NANUM;
  // Each source: the model without its columns, which the others keep in their order.
  struct Source {
    ANOVA2TableRow* row;
    int first, count;
  } sources[] = {{&t.FactorA, 0, ca}, {&t.FactorB, ca, cb}, {&t.Interaction, ca + cb, cab}};
  std::vector<double> reduced;
  for (const Source& src : sources) {
    if (src.row == &t.Interaction && !bInteraction) continue;
    ANOVA2TableRow& r = *src.row;
    r.DOF = 0;
    r.SSq = 0;
    if (src.count > 0) {
      const std::size_t keep = cols - src.count;
      reduced.resize(static_cast<std::size_t>(nValid) * keep);
      for (int i = 0; i < nValid; ++i) {
        const double* from = x.data() + i * cols;
        double* to = reduced.data() + i * keep;
        to = std::copy(from, from + src.first, to);
        std::copy(from + src.first + src.count, from + cols, to);
      }
      const Fit fit = regress(reduced, nValid, static_cast<int>(keep), yc);
      if (fit.code) return fit.code;
      r.DOF = full.rank - fit.rank;
      r.SSq = std::max(0.0, fit.rss - full.rss);
    }
    set_test(r, t.Error);
  }
  const double corrected = nValid > 1 ? (nValid - 1.0) * total.SD * total.SD : 0.0;
  t.Model.DOF = full.rank - 1;
  t.Model.SSq = std::max(0.0, corrected - full.rss);
  set_test(t.Model, t.Error);
  t.CorrectedTotal.DOF = t.Model.DOF + t.Error.DOF;
  t.CorrectedTotal.SSq = corrected;

  if (lo == hi) {  // constant data: nothing to explain and no error
    for (ANOVA2TableRow* r : {&t.FactorA, &t.FactorB, &t.Interaction, &t.Model}) {
      if (r == &t.Interaction && !bInteraction) continue;
      r->SSq = 0;
      r->MeanSq = r->DOF > 0 ? 0.0 : NANUM;
      r->FValue = r->PValue = NANUM;
    }
    t.Error.SSq = 0;
    t.Error.MeanSq = t.Error.DOF > 0 ? 0.0 : NANUM;
    t.CorrectedTotal.SSq = 0;
  }
  return ZOMATH_OK;
}

}  // namespace
}  // namespace zomath::stats

using namespace zomath::stats;

extern "C" {

int zomath_stats_anova_two_way_compute_anova_table(
    int bInteraction, const int* pFactorA, int nLevelsA, const int* pFactorB, int nLevelsB,
    const double* pData, int nSize, ANOVA2TotalStats* pStatsA, ANOVA2TotalStats* pStatsB,
    ANOVA2TotalStats* pTotal, ANOVA2TotalStats* pCells, ANOVA2Table* pTable) {
  const std::size_t na = nLevelsA > 0 ? nLevelsA : 0, nb = nLevelsB > 0 ? nLevelsB : 0;
  clear(pStatsA, na);
  clear(pStatsB, nb);
  clear(pTotal, 1);
  clear(pCells, na * nb);
  if (pTable)
    for (ANOVA2TableRow* r : {&pTable->FactorA, &pTable->FactorB, &pTable->Interaction,
                              &pTable->Model, &pTable->Error, &pTable->CorrectedTotal})
      clear(*r);
  if (bInteraction != 0 && bInteraction != 1) return ZOMATH_ERR_OPTION;
  if (nSize > 0 && (!pFactorA || !pFactorB || !pData)) return ZOMATH_ERR_EMPTY_DATA;
  if (nSize < 0 || nLevelsA < 1 || nLevelsB < 1 || na * nb > INT_MAX)
    return ZOMATH_ANOVA_ERR_SIZES;
  for (int i = 0; i < nSize; ++i)
    if (pFactorA[i] < 1 || pFactorA[i] > nLevelsA || pFactorB[i] < 1 || pFactorB[i] > nLevelsB)
      return ZOMATH_ERR_OPTION;
  try {
    return two_way_table(bInteraction, pFactorA, nLevelsA, pFactorB, nLevelsB, pData, nSize,
                         pStatsA, pStatsB, pTotal, pCells, pTable);
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

int zomath_anova2_count_values_per_cell(int nSize, const double* pData, const int* pFactorA,
                                        const int* pFactorB, int* pnLevelsA, int* pnLevelsB,
                                        int* pCounts, int nCounts) {
  if (!pnLevelsA || !pnLevelsB) return ZOMATH_ERR_EMPTY_DATA;
  *pnLevelsA = *pnLevelsB = 0;
  if (nSize > 0 && (!pData || !pFactorA || !pFactorB)) return ZOMATH_ERR_EMPTY_DATA;
  if (nSize < 0) return ZOMATH_ANOVA_ERR_SIZES;
  try {
    // The distinct values of each factor, ascending.
    std::vector<int> la(pFactorA, pFactorA + nSize), lb(pFactorB, pFactorB + nSize);
    for (std::vector<int>* v : {&la, &lb}) {
      std::sort(v->begin(), v->end());
      v->erase(std::unique(v->begin(), v->end()), v->end());
    }
    *pnLevelsA = static_cast<int>(la.size());
    *pnLevelsB = static_cast<int>(lb.size());
    if (!pCounts) return ZOMATH_OK;
    const std::size_t cells = la.size() * lb.size();
    if (nCounts < 0 || static_cast<std::size_t>(nCounts) < cells) return ZOMATH_ANOVA_ERR_SIZES;
    std::fill(pCounts, pCounts + cells, 0);
    for (int i = 0; i < nSize; ++i) {
      if (pData[i] == NANUM) continue;
      const std::size_t ia = std::lower_bound(la.begin(), la.end(), pFactorA[i]) - la.begin();
      const std::size_t ib = std::lower_bound(lb.begin(), lb.end(), pFactorB[i]) - lb.begin();
      ++pCounts[ia * lb.size() + ib];
    }
    return ZOMATH_OK;
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

}  // extern "C"
