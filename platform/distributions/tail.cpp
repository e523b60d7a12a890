#include "platform/distributions/tail.h"

#include <algorithm>
#include <limits>

namespace zomath::platform {

double distribution_failure(NagError& err, int code, const char* text) {
  err.fail(code, text);
  return std::numeric_limits<double>::quiet_NaN();
}

Tail tail_from_code(int nTail) {
  switch (nTail) {
    case 1: return Tail::Upper;
    case 3: return Tail::Central;
    case 4: return Tail::Nearer;
    case 0: return Tail::TwoSided;
    case 5: return Tail::Farther;
    default: return Tail::Lower;
  }
}

double combine_tails(Tail tail, double lower, double upper, double central) {
  const double smaller = std::min(lower, upper);
  switch (tail) {
    case Tail::Lower: return lower;
    case Tail::Upper: return upper;
    case Tail::Central: return central >= 0 ? central : std::max(0.0, 1 - 2 * smaller);
    case Tail::Nearer: return smaller;
    case Tail::TwoSided: return std::min(1.0, 2 * smaller);
    case Tail::Farther: return std::max(lower, upper);
  }
  return lower;
}

double tails_from_smaller(Tail tail, bool lowerIsSmaller, double smaller) {
  const double larger = 1 - smaller;
  return lowerIsSmaller ? combine_tails(tail, smaller, larger) : combine_tails(tail, larger, smaller);
}

bool quantile_target(double p, Tail tail, QuantileTarget& target, NagError& err) {
  bool lower;
  if (tail == Tail::Lower && p >= 0 && p < 1) {
    lower = true;
  } else if (tail == Tail::Upper && p > 0 && p <= 1) {
    lower = false;
  } else {
    err.fail(kDistributionBadArgument, "p or tail out of range");
    return false;
  }
  target = p <= 0.5 ? QuantileTarget{!lower, p} : QuantileTarget{lower, 1 - static_cast<long double>(p)};
  return true;
}

}  // namespace zomath::platform
