#include "platform/special/gamma_function.h"

#include <boost/math/special_functions/gamma.hpp>
#include <cmath>

#include "platform/special/quiet_policy.h"

namespace zomath::platform {

double gamma_function(double x, NagError& err) {
  if (std::isnan(x)) return x;
  if (x <= 0.0 && x == std::floor(x)) {
    err.fail(kGammaPole, "gamma: pole at zero or a negative integer");
    return 0.0;
  }
  const double value = boost::math::tgamma(x, QuietPolicy());
  if (std::isinf(value)) {
    err.fail(kGammaOverflow, "gamma: result overflows");
    return 0.0;
  }
  return value;
}

double log_gamma_function(double x, NagError& err) {
  if (std::isnan(x)) return x;
  if (x <= 0.0) {
    err.fail(kLogGammaNonPositive, "log gamma: argument not positive");
    return 0.0;
  }
  const double value = boost::math::lgamma(x, QuietPolicy());
  if (std::isinf(value)) {
    err.fail(kLogGammaOverflow, "log gamma: result overflows");
    return 0.0;
  }
  return value;
}

}  // namespace zomath::platform
