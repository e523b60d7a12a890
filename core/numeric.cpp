#include "core/numeric.h"

namespace zomath {

double round_decimals(double x, int nDecimals) {
  if (static_cast<unsigned int>(nDecimals) >= 309u) return x;
  if (x == NANUM || !std::isfinite(x)) return x;
  const double a = std::fabs(x);
  const double whole = std::floor(a);
  const double fraction = a - whole;
  if (fraction == 0.0) return x;
  const double scale = std::pow(10.0, nDecimals);
  const double r = whole + std::floor(fraction * scale + 0.5) / scale;
  return x < 0 ? -r : r;
}

}  // namespace zomath
