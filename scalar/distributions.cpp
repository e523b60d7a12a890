// Distribution functions and their inverses: thin guards around the platform routines. Each
// runs its routine with a fresh error record, copies the code to *pnError and returns NANUM
// for a failure; a NANUM argument gives NANUM with code 0.
#include <climits>
#include <cmath>
#include <initializer_list>

#include "platform/distributions/beta.h"
#include "platform/distributions/bivariate_normal.h"
#include "platform/distributions/chi_square.h"
#include "platform/distributions/discrete.h"
#include "platform/distributions/fisher_f.h"
#include "platform/distributions/gamma_distribution.h"
#include "platform/distributions/noncentral.h"
#include "platform/distributions/normal.h"
#include "platform/distributions/student_t.h"
#include "platform/distributions/studentized_range.h"
#include "platform/distributions/tail.h"
#include "platform/error_record.h"
#include "platform/probability_utility.h"
#include "platform/special/normal_quantile.h"
#include "scalar/short_form.h"
#include "zomath/scalar.h"

namespace {

namespace platform = zomath::platform;
using platform::NagError;
using platform::Tail;

static_assert(ZOMATH_DIST_BAD_ARGUMENT == platform::kDistributionBadArgument &&
              ZOMATH_DIST_BAD_PARAMETER == platform::kDistributionBadParameter &&
              ZOMATH_DIST_NO_CONVERGENCE == platform::kDistributionNoConvergence,
              "the public codes are the platform routines' own");

double missing(int* pnError) {
  if (pnError) *pnError = 0;
  return NANUM;
}

// Runs a platform routine and reports its code; a dependency that gives up is a failure to
// converge.
template <class Routine>
double guarded(int* pnError, Routine routine) {
  return zomath::scalar::run_routine(routine, pnError, platform::kDistributionNoConvergence);
}

// The three probabilities of a count, one picked by nTail: 1 upper, 3 point, others lower.
double pick(const platform::DiscreteProbabilities& p, int nTail) {
  return nTail == ZOMATH_TAIL_UPPER ? p.upper : nTail == ZOMATH_TAIL_POINT ? p.point : p.lower;
}

// Truncation toward zero that saturates instead of overflowing the int.
int truncate_to_int(double v) {
  if (!(v > INT_MIN)) return v < 0 ? INT_MIN : 0;
  if (!(v < INT_MAX)) return INT_MAX;
  return static_cast<int>(v);
}

}  // namespace

extern "C" {

double normcdf(double x, int nTail, int* pnError) {
  if (x == NANUM) return missing(pnError);
  return guarded(pnError, [&](NagError& e) {
    return platform::normal_probability(x, platform::tail_from_code(nTail), e);
  });
}

double tcdf(double t, double df, int nTail, int* pnError) {
  if (zomath::scalar::any_nanum({t, df})) return missing(pnError);
  return guarded(pnError, [&](NagError& e) {
    return platform::student_t_probability(t, df, platform::tail_from_code(nTail), e);
  });
}

double chi2cdf(double x, double df, int nTail, int* pnError) {
  if (zomath::scalar::any_nanum({x, df})) return missing(pnError);
  return guarded(pnError, [&](NagError& e) {
    return platform::chi_square_probability(x, df, platform::tail_from_code(nTail), e);
  });
}

double fcdf(double f, double ndf, double ddf, int nTail, int* pnError) {
  if (zomath::scalar::any_nanum({f, ndf, ddf})) return missing(pnError);
  return guarded(pnError, [&](NagError& e) {
    return platform::f_probability(f, ndf, ddf, platform::tail_from_code(nTail), e);
  });
}

double betacdf(double x, double a, double b, int nTail, int* pnError) {
  if (zomath::scalar::any_nanum({x, a, b})) return missing(pnError);
  return guarded(pnError, [&](NagError& e) {
    return platform::beta_probability(x, a, b, platform::tail_from_code(nTail), e);
  });
}

double gamcdf(double g, double a, double b, int nTail, int* pnError) {
  if (zomath::scalar::any_nanum({g, a, b})) return missing(pnError);
  return guarded(pnError, [&](NagError& e) {
    return platform::gamma_probability(g, a, b, platform::tail_from_code(nTail), e);
  });
}

double srangecdf(double q, double v, int nGroups, int* pnError) {
  if (zomath::scalar::any_nanum({q, v})) return missing(pnError);
  return guarded(pnError, [&](NagError& e) {
    return platform::studentized_range_lower(q, v, nGroups, e);
  });
}

double bivarnormcdf(double x, double y, double dCorr, int* pnError) {
  if (zomath::scalar::any_nanum({x, y, dCorr})) return missing(pnError);
  return guarded(pnError, [&](NagError& e) {
    return platform::bivariate_normal_lower(x, y, dCorr, e);
  });
}

double ncbetacdf(double x, double a, double b, double dLambda, int* pnError) {
  if (zomath::scalar::any_nanum({x, a, b, dLambda})) return missing(pnError);
  return guarded(pnError, [&](NagError& e) {
    return platform::noncentral_beta_probability(x, a, b, dLambda, Tail::Lower, e);
  });
}

double ncchi2cdf(double x, double f, double dLambda, int* pnError) {
  if (zomath::scalar::any_nanum({x, f, dLambda})) return missing(pnError);
  return guarded(pnError, [&](NagError& e) {
    return platform::noncentral_chi_square_probability(x, f, dLambda, Tail::Lower, e);
  });
}

double ncfcdf(double x, double df1, double df2, double dLambda, int* pnError) {
  if (zomath::scalar::any_nanum({x, df1, df2, dLambda})) return missing(pnError);
  return guarded(pnError, [&](NagError& e) {
    return platform::noncentral_f_probability(x, df1, df2, dLambda, Tail::Lower, e);
  });
}

double nctcdf(double x, double df, double dDelta, int* pnError, int nMaxIter) {
  if (zomath::scalar::any_nanum({x, df, dDelta})) return missing(pnError);
  return guarded(pnError, [&](NagError& e) {
    if (nMaxIter < 1) return platform::distribution_failure(e, platform::kDistributionBadParameter,
                                                            "iteration limit below 1");
    return platform::noncentral_t_probability(x, df, dDelta, Tail::Lower, e);
  });
}

double binocdf(int k, int n, double p, int nTail, int* pnError) {
  if (p == NANUM) return missing(pnError);
  return guarded(pnError, [&](NagError& e) {
    return pick(platform::binomial_probabilities(k, n, p, e), nTail);
  });
}

double hygecdf(int k, int m, int n, int l, int nTail, int* pnError) {
  return guarded(pnError, [&](NagError& e) {
    return pick(platform::hypergeometric_probabilities(k, m, n, l, e), nTail);
  });
}

double poisscdf(int k, double dLambda, int nTail, int* pnError) {
  if (dLambda == NANUM) return missing(pnError);
  return guarded(pnError, [&](NagError& e) {
    return pick(platform::poisson_probabilities(k, dLambda, e), nTail);
  });
}

double norminv(double p, int* pnError) {
  if (p == NANUM) return missing(pnError);
  return guarded(pnError, [&](NagError& e) {
    if (!(p > 0 && p < 1))
      return platform::distribution_failure(e, platform::kDistributionBadArgument, "p outside (0, 1)");
    return platform::normal_quantile(p, e);
  });
}

double tinv(double p, double df, int nTail, int* pnError) {
  if (zomath::scalar::any_nanum({p, df})) return missing(pnError);
  return guarded(pnError, [&](NagError& e) {
    return platform::student_t_quantile(p, df, platform::tail_from_code(nTail), e);
  });
}

double chi2inv(double p, double df, int* pnError) {
  if (zomath::scalar::any_nanum({p, df})) return missing(pnError);
  return guarded(pnError, [&](NagError& e) {
    return platform::chi_square_quantile(p, df, Tail::Lower, e);
  });
}

double finv(double p, double df1, double df2, int* pnError) {
  if (zomath::scalar::any_nanum({p, df1, df2})) return missing(pnError);
  NagError err;
  double value = 0;
  try {
    value = platform::f_quantile(p, df1, df2, Tail::Lower, err);
  } catch (...) {
    err.fail(platform::kDistributionNoConvergence, "iteration gave up");
  }
  // The inverse's accuracy failure is recovered by the F table routine's search, for the
  // degrees of freedom truncated to integers; that failure itself is not reported.
  if (err.code == platform::kFQuantileInaccurate) {
    if (pnError) *pnError = 0;
    return platform::Ftable(p, truncate_to_int(df1), truncate_to_int(df2));
  }
  if (pnError) *pnError = err.code;
  return err.code != 0 ? NANUM : value;
}

double betainv(double p, double a, double b, int* pnError) {
  if (zomath::scalar::any_nanum({p, a, b})) return missing(pnError);
  return guarded(pnError, [&](NagError& e) { return platform::beta_quantile(p, a, b, e); });
}

double gaminv(double p, double a, double b, int* pnError) {
  if (zomath::scalar::any_nanum({p, a, b})) return missing(pnError);
  return guarded(pnError, [&](NagError& e) {
    return platform::gamma_quantile(p, a, b, Tail::Lower, e);
  });
}

double srangeinv(double p, double v, int nGroups, int* pnError) {
  if (zomath::scalar::any_nanum({p, v})) return missing(pnError);
  return guarded(pnError, [&](NagError& e) {
    return platform::studentized_range_quantile(p, v, nGroups, e);
  });
}

}  // extern "C"
