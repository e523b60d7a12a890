#include "platform/special/incomplete_gamma.h"

#include <boost/math/special_functions/gamma.hpp>
#include <cmath>

#include "platform/special/quiet_policy.h"

namespace zomath::platform {

namespace {

bool check(double a, double x, NagError& err) {
  if (!(a > 0.0) || std::isinf(a)) {
    err.fail(kIncompleteGammaBadShape, "incomplete gamma: a must be positive and finite");
    return false;
  }
  if (x < 0.0) {
    err.fail(kIncompleteGammaNegativeX, "incomplete gamma: x is negative");
    return false;
  }
  return true;
}

}  // namespace

double incomplete_gamma_p(double a, double x, NagError& err) {
  if (std::isnan(a) || std::isnan(x)) return a + x;
  if (!check(a, x, err)) return 0.0;
  if (std::isinf(x)) return 1.0;
  return boost::math::gamma_p(a, x, QuietPolicy());
}

double incomplete_gamma_q(double a, double x, NagError& err) {
  if (std::isnan(a) || std::isnan(x)) return a + x;
  if (!check(a, x, err)) return 0.0;
  if (std::isinf(x)) return 0.0;
  return boost::math::gamma_q(a, x, QuietPolicy());
}

}  // namespace zomath::platform
