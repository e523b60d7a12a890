// Boost computes an incomplete function and its derivative together (the derivative is the
// power-term prefix the function is built on), but offers the pair only through its internal
// entry points; they are called here, in one place, so that the searches pay one evaluation a
// step instead of two.
#include "platform/distributions/incomplete_functions.h"

#include <boost/math/special_functions/beta.hpp>
#include <boost/math/special_functions/gamma.hpp>
#include <boost/math/special_functions/detail/igamma_inverse.hpp>
#include <boost/math/special_functions/detail/t_distribution_inv.hpp>
#include <cmath>

#include "platform/special/quiet_policy.h"

namespace zomath::platform::detail {
namespace {

// The quiet policy as Boost's public functions hand it to their internals.
using InternalPolicy = boost::math::policies::normalise<
    QuietPolicy, boost::math::policies::promote_float<false>,
    boost::math::policies::promote_double<false>>::type;

}  // namespace

long double incomplete_beta(long double a, long double b, long double x, bool complement,
                            long double* density) {
  if (a == 0.5L && b == 0.5L) {
    // The arcsine case, which Boost takes from sqrt(1 - x) for the complement (1 exactly for
    // x below 1e-19) and whose derivative it leaves undivided: (2/pi) asin(sqrt x) and
    // (2/pi) acos(sqrt x) keep every digit.
    constexpr long double kPi = 3.14159265358979323846264338327950288L;
    const long double r = std::sqrt(x);
    if (density) *density = 1 / (kPi * std::sqrt(x * (1 - x)));
    return (complement ? std::acos(r) : std::asin(r)) * (2 / kPi);
  }
  if (!density) {
    return complement ? boost::math::ibetac(a, b, x, QuietPolicy()) : boost::math::ibeta(a, b, x, QuietPolicy());
  }
  return boost::math::detail::ibeta_imp(a, b, x, InternalPolicy(), complement, true, density);
}

long double incomplete_gamma(long double a, long double z, bool upper, long double* density) {
  if (!density) {
    return upper ? boost::math::gamma_q(a, z, QuietPolicy()) : boost::math::gamma_p(a, z, QuietPolicy());
  }
  return boost::math::detail::gamma_incomplete_imp(a, z, true, upper, InternalPolicy(), density);
}

double gamma_quantile_estimate(double a, double q, bool upper) {
  bool tenDigits = false;
  return boost::math::detail::find_inverse_gamma<double>(a, upper ? 1 - q : q, upper ? q : 1 - q,
                                                         InternalPolicy(), &tenDigits);
}

double t_quantile_estimate(double q, double df) {
  return boost::math::detail::inverse_students_t(df, q, 1 - q, InternalPolicy());
}

}  // namespace zomath::platform::detail
