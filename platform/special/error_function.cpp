#include "platform/special/error_function.h"

#include <boost/math/special_functions/erf.hpp>
#include <cmath>

#include "platform/special/quiet_policy.h"

namespace zomath::platform {

double error_function(double x) { return boost::math::erf(x, QuietPolicy()); }

double complementary_error_function(double x) { return boost::math::erfc(x, QuietPolicy()); }

namespace {

// 0.5 * erfc(x / sqrt 2). The quotient x / sqrt 2 is formed as an unevaluated sum hi + lo, and
// the rounding lo is carried into erfc by its first derivative: without that, the relative error
// in the far tail grows like x^2 * eps (1e-13 at x = -37).
double half_erfc_of_scaled(double x) {
  constexpr double kRootHalfHi = 0.7071067811865476;  // 1/sqrt 2 = hi + lo
  constexpr double kRootHalfLo = -4.833646656726457e-17;
  constexpr double kTwoOverRootPi = 1.1283791670955126;
  if (std::isinf(x)) return x > 0 ? 0.0 : 1.0;  // the correction below would be inf - inf
  const double hi = x * kRootHalfHi;
  const double lo = std::fma(x, kRootHalfHi, -hi) + x * kRootHalfLo;
  const double value = boost::math::erfc(hi, QuietPolicy());
  return 0.5 * (value - lo * kTwoOverRootPi * std::exp(-hi * hi));
}

}  // namespace

double normal_lower_tail(double x) { return half_erfc_of_scaled(-x); }

double normal_upper_tail(double x) { return half_erfc_of_scaled(x); }

}  // namespace zomath::platform
