#include "platform/distributions/normal.h"

#include <cmath>

#include "platform/special/error_function.h"

namespace zomath::platform {

double normal_probability(double x, Tail tail, NagError& err) {
  if (std::isnan(x)) return distribution_failure(err, kDistributionBadArgument, "x is NaN");
  switch (tail) {
    case Tail::Lower: return normal_lower_tail(x);
    case Tail::Upper: return normal_upper_tail(x);
    case Tail::Central: return error_function(std::fabs(x) * 0.70710678118654752440);
    default: return combine_tails(tail, normal_lower_tail(x), normal_upper_tail(x));
  }
}

}  // namespace zomath::platform
