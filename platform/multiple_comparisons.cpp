// Simultaneous intervals for pairwise differences of means (Hochberg and Tamhane, Multiple
// Comparison Procedures, Wiley 1987, ch. 2 and 3; Tukey-Kramer: Kramer, Biometrics 12, 1956).
#include "platform/multiple_comparisons.h"

#include <cmath>

#include "platform/distributions/fisher_f.h"
#include "platform/distributions/student_t.h"
#include "platform/distributions/studentized_range.h"

namespace zomath::platform {
namespace {

double failed(NagError& fail, int code, const char* text, int detail = 0) {
  fail.fail(code, text, detail);
  return NAN;
}

}  // namespace

double simultaneous_critical_value(IntervalType type, int k, double d, double level,
                                   NagError& fail) {
  if (k < 2) return failed(fail, kIntervalsTooFewGroups, "fewer than two means");
  if (!(d >= 1)) return failed(fail, kIntervalsBadDof, "residual degrees of freedom below 1");
  if (!(level > 0 && level < 1)) return failed(fail, kIntervalsBadLevel, "level outside (0, 1)");
  const double alpha = 1 - level;
  const double pairs = 0.5 * k * (k - 1.0);
  NagError err;
  double t = NAN;
  switch (type) {
    case IntervalType::TukeyKramer:
      t = studentized_range_quantile(level, d, k, err) / std::sqrt(2.0);
      break;
    case IntervalType::Bonferroni:
      t = student_t_quantile(alpha / (2 * pairs), d, Tail::Upper, err);
      break;
    case IntervalType::DunnSidak: {
      // 1 - (1 - a)^(1 / m) without the cancellation of a small a.
      const double each = -std::expm1(std::log1p(-alpha) / pairs);
      t = student_t_quantile(each / 2, d, Tail::Upper, err);
      break;
    }
    case IntervalType::Lsd:
      t = student_t_quantile(alpha / 2, d, Tail::Upper, err);
      break;
    case IntervalType::Scheffe: {
      double f = f_quantile(alpha, k - 1.0, d, Tail::Upper, err);
      if (err.code == kFQuantileInaccurate) {
        err.reset();
        f = f_quantile_by_search(alpha, k - 1.0, d, Tail::Upper, err);
      }
      t = std::sqrt((k - 1.0) * f);
      break;
    }
    default:
      return failed(fail, kIntervalsBadArgument, "unknown interval type");
  }
  if (err.code != 0 || !std::isfinite(t))
    return failed(fail, kIntervalsNoCriticalValue, "no critical value", err.code);
  return t;
}

int simultaneous_intervals(IntervalType type, int k, const double* means, double d,
                           const double* se, int ldse, double level, double* lcl, double* ucl,
                           int* sig, NagError& fail) {
  if (k >= 2 && (!means || !se || !lcl || !ucl || !sig || ldse < k))
    return fail.fail(kIntervalsBadArgument, "null array or stride below k");
  const double t = simultaneous_critical_value(type, k, d, level, fail);
  if (fail.code) return fail.code;
  for (int i = 0; i < k; ++i) {
    if (!std::isfinite(means[i]))
      return fail.fail(kIntervalsBadStandardError, "mean not finite", i);
    for (int j = 0; j < i; ++j) {
      const double s = se[static_cast<long>(i) * ldse + j];
      if (!(s > 0) || !std::isfinite(s))
        return fail.fail(kIntervalsBadStandardError, "standard error not positive", i);
    }
  }
  long c = 0;
  for (int i = 1; i < k; ++i)
    for (int j = 0; j < i; ++j, ++c) {
      const double diff = means[i] - means[j];
      const double half = t * se[static_cast<long>(i) * ldse + j];
      lcl[c] = diff - half;
      ucl[c] = diff + half;
      sig[c] = lcl[c] > 0 || ucl[c] < 0 ? 1 : 0;
    }
  return 0;
}

}  // namespace zomath::platform
