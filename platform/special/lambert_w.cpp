// Away from the branch point, Boost.Math's Lambert W. Within 1/4 of z = -1/e, the series in
// p = sqrt(2 (e z + 1)) of Corless et al. (Adv. Comput. Math. 5, 1996, eq. 4.22) followed by
// Newton steps on (v - 1) e^v + 1 = e (z + 1/e), w = v - 1, both written in the offset so that
// nothing cancels.
#include "platform/special/lambert_w.h"

#include <boost/math/special_functions/lambert_w.hpp>
#include <cmath>

#include "platform/special/quiet_policy.h"

namespace zomath::platform {

namespace {

constexpr double kInvEHi = 0.36787944117144233;  // 1/e = hi + lo
constexpr double kInvELo = -1.2428753672788363e-17;
constexpr double kEHi = 2.718281828459045;  // e = hi + lo
constexpr double kELo = 1.4456468917292502e-16;
constexpr double kNearBranch = 0.25;

// (v - 1) e^v + 1 = sum_{n>=2} (n - 1) v^n / n!, accurately for small |v|.
double branch_residual(double v) {
  if (std::fabs(v) > 0.5) return (v - 1.0) * std::exp(v) + 1.0;
  double term = v;  // v^n / n!
  double sum = 0.0;
  for (int n = 2; n < 40; ++n) {
    term *= v / n;
    const double d = (n - 1) * term;
    sum += d;
    if (std::fabs(d) <= 1e-17 * std::fabs(sum)) break;
  }
  return sum;
}

// W(-1/e + delta), 0 <= delta <= kNearBranch.
double near_branch(double delta, int nBranch) {
  const double ed = delta * kEHi + delta * kELo;  // e * delta
  const double p = (nBranch == 0 ? 1.0 : -1.0) * std::sqrt(2.0 * ed);
  static const double c[] = {-1.0,
                             1.0,
                             -1.0 / 3.0,
                             11.0 / 72.0,
                             -43.0 / 540.0,
                             769.0 / 17280.0,
                             -221.0 / 8505.0,
                             680863.0 / 43545600.0,
                             -1963.0 / 204120.0,
                             226287557.0 / 37623398400.0};
  double w = c[9];
  for (int i = 8; i >= 0; --i) w = w * p + c[i];
  double v = w + 1.0;
  for (int it = 0; it < 30 && v != 0.0; ++it) {
    const double f = branch_residual(v) - ed;
    const double step = f / (v * std::exp(v));
    v -= step;
    if (std::fabs(step) <= 1e-17 * std::fabs(v)) break;
  }
  return v - 1.0;
}

}  // namespace

double lambert_w(double x, int nBranch, bool bOffset, NagError& err) {
  if (nBranch != 0 && nBranch != -1) return err.fail(kLambertBadBranch, "W: bad branch"), 0.0;
  if (std::isnan(x)) return x;
  // delta = z + 1/e, carried to twice the working precision when z is given.
  double delta;
  if (bOffset) {
    delta = x;
  } else {
    const double s = x + kInvEHi;
    delta = s + kInvELo;
    // The double nearest -1/e lies 1.2e-17 below it: read it as the branch point itself.
    if (delta < 0.0 && delta > -2.0 * -kInvELo) delta = 0.0;
  }
  if (delta < 0.0 || (nBranch == -1 && (bOffset ? x >= kInvEHi : x >= 0.0))) {
    err.fail(kLambertOutOfDomain, "W: no real value on this branch");
    return 0.0;
  }
  if (delta <= kNearBranch) return near_branch(delta, nBranch);
  const double z = bOffset ? x - kInvEHi : x;
  if (nBranch == 0) return std::isinf(z) ? z : boost::math::lambert_w0(z, QuietPolicy());
  return boost::math::lambert_wm1(z, QuietPolicy());
}

}  // namespace zomath::platform
