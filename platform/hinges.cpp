#include "platform/hinges.h"

namespace zomath::platform {
namespace {

// The value at depth d2 / 2 (counted from 1) of ascending x: x(d) for a whole depth, else the
// mean of the two values beside it, taken in long double so that it cannot overflow.
double at_depth(const double* x, std::size_t d2) {
  if (d2 % 2 == 0) return x[d2 / 2 - 1];
  return static_cast<double>((static_cast<long double>(x[d2 / 2 - 1]) + x[d2 / 2]) / 2);
}

}  // namespace

int five_number_summary(const double* x, std::size_t n, double out[5], NagError& err) {
  err.reset();
  if (!x || !out || n < 1) return err.fail(kHingesNoData, "no data", static_cast<int>(n));
  // Depths doubled, so that they stay whole: the median's is n + 1, a hinge's the median's
  // whole part plus one; the upper hinge counts from the top, at n + 1 less the depth.
  const std::size_t median2 = n + 1;
  const std::size_t hinge2 = median2 / 2 + 1;
  out[0] = x[0];
  out[1] = at_depth(x, hinge2);
  out[2] = at_depth(x, median2);
  out[3] = at_depth(x, 2 * (n + 1) - hinge2);
  out[4] = x[n - 1];
  return 0;
}

}  // namespace zomath::platform
