#include "regression/fit_records.h"

#include <cmath>
#include <cstddef>

#include "core/numeric.h"
#include "platform/distributions/fisher_f.h"
#include "platform/distributions/student_t.h"

namespace zomath::regression {

// The records cross the interface: natural alignment on 64-bit Linux, field order as declared.
static_assert(offsetof(LinearFitOptions, FixSlope) == 0 && offsetof(LinearFitOptions, FixSlopeAt) == 8 &&
                  offsetof(LinearFitOptions, Reserved1) == 16 &&
                  offsetof(LinearFitOptions, ErrorScaledByReducedChiSq) == 20 &&
                  offsetof(LinearFitOptions, ConfLevel) == 24 &&
                  offsetof(LinearFitOptions, ExclusiveFix) == 32 &&
                  offsetof(LinearFitOptions, FixIntercept) == 33 &&
                  offsetof(LinearFitOptions, FixInterceptAt) == 40 && sizeof(LinearFitOptions) == 48,
              "LinearFitOptions layout");
static_assert(offsetof(FitParameter, value) == 0 && offsetof(FitParameter, Fixed) == 8 &&
                  offsetof(FitParameter, Error) == 16 && offsetof(FitParameter, tValue) == 24 &&
                  offsetof(FitParameter, Prob) == 32 && offsetof(FitParameter, LCL) == 40 &&
                  offsetof(FitParameter, UCL) == 48 && offsetof(FitParameter, Reserved) == 56 &&
                  offsetof(FitParameter, ConfHalfWidth) == 64 && sizeof(FitParameter) == 72,
              "FitParameter layout");
static_assert(offsetof(FitStats, N) == 0 && offsetof(FitStats, RSS) == 24 &&
                  offsetof(FitStats, RSquare) == 48 && offsetof(FitStats, ResidualNorm) == 72 &&
                  sizeof(FitStats) == 80,
              "FitStats layout");
static_assert(offsetof(FitAnovaTable, ModelDF) == 0 && offsetof(FitAnovaTable, ErrorDF) == 24 &&
                  offsetof(FitAnovaTable, TotalMS) == 64 && offsetof(FitAnovaTable, ProbF) == 80 &&
                  sizeof(FitAnovaTable) == 88,
              "FitAnovaTable layout");
static_assert(offsetof(FitSums, SumW) == 0 && offsetof(FitSums, Syy) == 24 &&
                  offsetof(FitSums, MeanY) == 40 && sizeof(FitSums) == 48,
              "FitSums layout");

LinearFitOptions default_fit_options() {
  LinearFitOptions o{};
  o.FixSlope = false;
  o.FixSlopeAt = 1.0;
  o.Reserved1 = 0;
  o.ErrorScaledByReducedChiSq = true;
  o.ConfLevel = 0.95;
  o.ExclusiveFix = false;
  o.FixIntercept = false;
  o.FixInterceptAt = 0.0;
  return o;
}

void fill_nanum(double* p, std::size_t n) {
  if (!p) return;
  for (std::size_t i = 0; i < n; ++i) p[i] = NANUM;
}

void fill_nanum(FitStats* p) {
  if (p) *p = FitStats{NANUM, NANUM, NANUM, NANUM, NANUM, NANUM, NANUM, NANUM, NANUM, NANUM};
}

void fill_nanum(FitAnovaTable* p) {
  if (p)
    *p = FitAnovaTable{NANUM, NANUM, NANUM, NANUM, NANUM, NANUM, NANUM, NANUM, NANUM, NANUM, NANUM};
}

void fill_nanum(FitSums* p) {
  if (p) *p = FitSums{NANUM, NANUM, NANUM, NANUM, NANUM, NANUM};
}

void set_fixed(FitParameter& p, double value) {
  p = FitParameter{value, true, NANUM, NANUM, NANUM, NANUM, NANUM, NANUM, NANUM};
}

double t_critical(double level, double dof) {
  if (is_nanum(level) || is_nanum(dof) || !(dof > 0)) return NANUM;
  platform::NagError err;
  const double t = platform::student_t_quantile(1 - (1 - level) / 2, dof, platform::Tail::Lower, err);
  return err.code || !std::isfinite(t) ? NANUM : t;
}

double f_upper_probability(double f, double df1, double df2) {
  if (is_nanum(f) || std::isnan(f) || !(df1 > 0) || !(df2 > 0)) return NANUM;
  platform::NagError err;
  const double p = platform::f_probability(f, df1, df2, platform::Tail::Upper, err);
  return err.code || std::isnan(p) ? NANUM : p;
}

void set_parameter(FitParameter& p, double v, double e, double c, double d) {
  if (v == 0.0) v = 0.0;  // -0.0 becomes +0.0
  p.value = v;
  p.Fixed = false;
  p.Error = e;
  p.Reserved = NANUM;
  p.tValue = (is_nanum(v) || is_nanum(e) || e == 0.0) ? NANUM : v / e;
  p.ConfHalfWidth = nanum_mul(is_nanum(c) ? NANUM : std::fabs(c), e);
  p.LCL = nanum_sub(v, p.ConfHalfWidth);
  p.UCL = nanum_add(v, p.ConfHalfWidth);
  // Two-tailed probability of |t|, from the upper tail directly so that small ones keep their
  // digits; the degrees are truncated to a whole number.
  p.Prob = NANUM;
  const double df = std::trunc(d);
  if (!is_nanum(p.tValue) && std::isfinite(p.tValue) && df > 0) {
    platform::NagError err;
    const double q = platform::student_t_probability(std::fabs(p.tValue), df,
                                                     platform::Tail::Upper, err);
    if (!err.code && !std::isnan(q)) p.Prob = 2 * q;
  }
}

bool weighted_sums(const double* x, const double* y, const double* w, std::size_t n,
                   bool aboutZero, FitSums& sums) {
  // A missing x or y contributes as a 0 would: the product holding it drops out of its sum.
  auto value = [](const double* p, std::size_t i) { return !p || is_nanum(p[i]) ? 0.0 : p[i]; };
  double sumW = 0, sumWx = 0, sumWy = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const double wi = w ? w[i] : 1.0;
    if (is_nanum(wi)) continue;
    sumW += wi;
    sumWx += wi * value(x, i);
    sumWy += wi * value(y, i);
  }
  if (!(sumW > 0) || !std::isfinite(sumW)) return false;
  const double mx = sumWx / sumW, my = sumWy / sumW;
  // Corrected sums from the deviations (two passes), which is the raw sum less the mean's share
  // without the cancellation of forming it that way.
  const double cx = aboutZero ? 0.0 : mx, cy = aboutZero ? 0.0 : my;
  double sxx = 0, sxy = 0, syy = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const double wi = w ? w[i] : 1.0;
    if (is_nanum(wi)) continue;
    const double dx = value(x, i) - cx, dy = value(y, i) - cy;
    sxx += wi * dx * dx;
    sxy += wi * dx * dy;
    syy += wi * dy * dy;
  }
  sums = x ? FitSums{sumW, sxx, sxy, syy, mx, my} : FitSums{sumW, NANUM, NANUM, syy, NANUM, my};
  return true;
}

void fill_report(double n, double rss, double df, double modelDF, const FitSums& sums,
                 double residualNorm, FitStats* pStats, FitAnovaTable* pAnova) {
  const double meanSquare = (df != 0 && !is_nanum(rss)) ? rss / df : NANUM;
  const double syy = sums.Syy;
  const bool explained = !is_nanum(syy) && !is_nanum(rss) && rss <= syy;
  if (pStats) {
    FitStats& s = *pStats;
    s.N = n;
    s.DOF = df;
    s.RSS = rss;
    const bool xSums = !is_nanum(sums.Sxx) && sums.Sxx * syy > 0;
    s.PearsonR = (explained && syy != 0 && xSums) ? sums.Sxy / std::sqrt(sums.Sxx * syy) : NANUM;
    s.RSquare = (explained && syy != 0) ? (syy - rss) / syy : NANUM;
    s.R = is_nanum(s.RSquare) ? NANUM : std::sqrt(s.RSquare);
    s.AdjRSquare = (is_nanum(s.RSquare) || df == 0)
                       ? NANUM
                       : 1 - ((modelDF + df) / df) * (1 - s.RSquare);
    s.ReducedChiSq = meanSquare;
    s.RootMSE = is_nanum(meanSquare) ? NANUM : std::sqrt(meanSquare);
    s.ResidualNorm = residualNorm;
  }
  if (pAnova) {
    FitAnovaTable& a = *pAnova;
    a.ModelDF = modelDF;
    a.ModelSS = explained ? syy - rss : NANUM;
    a.ModelMS = (explained && modelDF != 0) ? (syy - rss) / modelDF : NANUM;
    a.ErrorDF = df;
    a.ErrorSS = rss;
    a.ErrorMS = meanSquare;
    a.TotalDF = modelDF + df;
    a.TotalSS = syy;
    a.TotalMS = NANUM;
    a.FValue = (is_nanum(a.ErrorMS) || a.ErrorMS == 0 || is_nanum(a.ModelMS))
                   ? NANUM
                   : a.ModelMS / a.ErrorMS;
    a.ProbF = f_upper_probability(a.FValue, modelDF, df);
  }
}

CompletePoints complete_points(const double* x, const double* y, const double* w, int n) {
  CompletePoints c;
  auto present = [&](int i) {
    return !(x && is_nanum(x[i])) && !is_nanum(y[i]) && !(w && is_nanum(w[i]));
  };
  int kept = 0;
  for (int i = 0; i < n; ++i) kept += present(i);
  if (kept == n) {
    c.x = x, c.y = y, c.w = w, c.n = n;
    return c;
  }
  c.dropped = true;
  c.index.reserve(kept);
  for (int i = 0; i < n; ++i)
    if (present(i)) {
      c.index.push_back(i);
      if (x) c.xs.push_back(x[i]);
      c.ys.push_back(y[i]);
      if (w) c.ws.push_back(w[i]);
    }
  c.x = x ? c.xs.data() : nullptr;
  c.y = c.ys.data();
  c.w = w ? c.ws.data() : nullptr;
  c.n = kept;
  return c;
}

void correlation_from_covariance(const double* cov, double* corr, int k, std::size_t stride) {
  for (int i = 0; i < k; ++i)
    for (int j = 0; j < k; ++j) {
      const double cii = cov[i * stride + i], cjj = cov[j * stride + j], cij = cov[i * stride + j];
      const bool ok = !is_nanum(cii) && !is_nanum(cjj) && !is_nanum(cij) && cii > 0 && cjj > 0;
      corr[i * stride + j] = ok ? cij / (std::sqrt(cii) * std::sqrt(cjj)) : NANUM;
    }
}

void shift_past_intercept(double* mat, int k, std::size_t stride) {
  if (!mat) return;
  for (int i = k - 1; i >= 0; --i)
    for (int j = k - 1; j >= 0; --j)
      mat[i * stride + j] = (i == 0 || j == 0) ? NANUM : mat[(i - 1) * stride + (j - 1)];
}

}  // namespace zomath::regression
