#include "platform/special/polygamma.h"

#include <boost/math/special_functions/digamma.hpp>
#include <boost/math/special_functions/polygamma.hpp>
#include <cmath>

#include "platform/special/quiet_policy.h"

namespace zomath::platform {

double polygamma(double x, int k, NagError& err) {
  if (k < 0 || k > 6) {
    err.fail(kPolygammaBadOrder, "polygamma: order outside 0..6");
    return 0.0;
  }
  if (std::isnan(x)) return x;
  if (std::isinf(x)) {  // psi grows like ln x; its derivatives vanish
    if (x > 0.0 && k > 0) return 0.0;
    err.fail(x > 0.0 ? kPolygammaOverflow : kPolygammaPole, "polygamma: infinite argument");
    return 0.0;
  }
  if (x <= 0.0 && x == std::floor(x)) {
    err.fail(kPolygammaPole, "polygamma: pole at zero or a negative integer");
    return 0.0;
  }
  const double value = k == 0 ? boost::math::digamma(x, QuietPolicy())
                              : boost::math::polygamma(k, x, QuietPolicy());
  if (!std::isfinite(value)) {
    err.fail(kPolygammaOverflow, "polygamma: result overflows");
    return 0.0;
  }
  return value;
}

}  // namespace zomath::platform
