#include "platform/probability_utility.h"

#include <cmath>
#include <initializer_list>

#include "platform/distributions/beta.h"
#include "platform/distributions/chi_square.h"
#include "platform/distributions/fisher_f.h"
#include "platform/distributions/student_t.h"
#include "platform/error_record.h"
#include "platform/special/incomplete_gamma.h"
#include "platform/special/normal_quantile.h"
#include "zomath/core.h"

namespace zomath::platform {
namespace {

// Runs a routine with a fresh error record: NANUM for a NANUM or NaN argument and for a
// failure.
template <class Routine>
double checked(std::initializer_list<double> args, Routine routine) {
  for (double a : args)
    if (a == NANUM || std::isnan(a)) return NANUM;
  NagError err;
  const double v = routine(err);
  return err.code != 0 || std::isnan(v) ? NANUM : v;
}

}  // namespace

double incbeta(double x, double a, double b) {
  if (!(x >= 0 && x <= 1)) return NANUM;
  return checked({x, a, b}, [&](NagError& e) { return beta_probability(x, a, b, Tail::Lower, e); });
}

double incgamma(double x, double a) {
  return checked({x, a}, [&](NagError& e) { return incomplete_gamma_p(a, x, e); });
}

double invchisq(double x, int df) {
  return checked({x}, [&](NagError& e) { return chi_square_probability(x, df, Tail::Lower, e); });
}

double invt(double t, int df) {
  return checked({t}, [&](NagError& e) { return student_t_probability(t, df, Tail::Lower, e); });
}

double invf(double f, int df1, int df2) {
  return checked({f}, [&](NagError& e) { return f_probability(f, df1, df2, Tail::Lower, e); });
}

double inverf(double y) {
  return checked({y}, [&](NagError& e) { return inverse_error_function(y, e); });
}

double Ftable(double p, int df1, int df2) {
  return checked({p}, [&](NagError& e) { return f_quantile_by_search(p, df1, df2, Tail::Lower, e); });
}

double tTable(double p, int df) {
  return checked({p}, [&](NagError& e) { return student_t_quantile(p, df, Tail::Lower, e); });
}

}  // namespace zomath::platform
