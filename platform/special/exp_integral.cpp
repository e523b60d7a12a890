#include "platform/special/exp_integral.h"

#include <boost/math/special_functions/expint.hpp>
#include <cmath>

#include "platform/special/quiet_policy.h"

namespace zomath::platform {

double exp_integral_e1(double x, NagError& err) {
  if (std::isnan(x)) return x;
  if (x == 0.0) {
    err.fail(kExpIntegralZero, "exponential integral: infinite at 0");
    return 0.0;
  }
  if (x > 0.0) return std::isinf(x) ? 0.0 : boost::math::expint(1, x, QuietPolicy());
  const double value = -boost::math::expint(-x, QuietPolicy());
  if (std::isinf(value)) {
    err.fail(kExpIntegralOverflow, "exponential integral: result overflows");
    return 0.0;
  }
  return value;
}

}  // namespace zomath::platform
