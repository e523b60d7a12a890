#include "platform/special/carlson.h"

#include <boost/math/special_functions/ellint_rc.hpp>
#include <boost/math/special_functions/ellint_rd.hpp>
#include <boost/math/special_functions/ellint_rf.hpp>
#include <boost/math/special_functions/ellint_rj.hpp>
#include <cmath>

#include "platform/special/quiet_policy.h"

namespace zomath::platform {

namespace {

int zeros(double x, double y, double z) { return (x == 0.0) + (y == 0.0) + (z == 0.0); }

double finish(double value, NagError& err) {
  if (!std::isfinite(value)) {
    err.fail(kCarlsonOverflow, "elliptic integral: result overflows");
    return 0.0;
  }
  return value;
}

}  // namespace

double carlson_rc(double x, double y, NagError& err) {
  if (std::isnan(x) || std::isnan(y)) return x + y;
  if (x < 0.0) return err.fail(kCarlsonDomain, "RC: x is negative"), 0.0;
  if (y == 0.0) return err.fail(kCarlsonPole, "RC: y is zero"), 0.0;
  if (std::isinf(x) || std::isinf(y)) return 0.0;
  return finish(boost::math::ellint_rc(x, y, QuietPolicy()), err);
}

double carlson_rf(double x, double y, double z, NagError& err) {
  if (std::isnan(x + y + z)) return x + y + z;
  if (x < 0.0 || y < 0.0 || z < 0.0 || zeros(x, y, z) > 1)
    return err.fail(kCarlsonDomain, "RF: negative argument or two zeros"), 0.0;
  if (std::isinf(x + y + z)) return 0.0;
  return finish(boost::math::ellint_rf(x, y, z, QuietPolicy()), err);
}

double carlson_rd(double x, double y, double z, NagError& err) {
  if (std::isnan(x + y + z)) return x + y + z;
  if (x < 0.0 || y < 0.0 || z < 0.0 || (x == 0.0 && y == 0.0))
    return err.fail(kCarlsonDomain, "RD: negative argument or x = y = 0"), 0.0;
  if (z == 0.0) return err.fail(kCarlsonPole, "RD: z is zero"), 0.0;
  if (std::isinf(x + y + z)) return 0.0;
  return finish(boost::math::ellint_rd(x, y, z, QuietPolicy()), err);
}

double carlson_rj(double x, double y, double z, double r, NagError& err) {
  if (std::isnan(x + y + z + r)) return x + y + z + r;
  if (x < 0.0 || y < 0.0 || z < 0.0 || zeros(x, y, z) > 1)
    return err.fail(kCarlsonDomain, "RJ: negative argument or two zeros"), 0.0;
  if (r == 0.0) return err.fail(kCarlsonPole, "RJ: r is zero"), 0.0;
  if (std::isinf(x + y + z) || std::isinf(r)) return 0.0;
  return finish(boost::math::ellint_rj(x, y, z, r, QuietPolicy()), err);
}

}  // namespace zomath::platform
