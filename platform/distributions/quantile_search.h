// Halley's method on the logarithm of a tail probability, for the quantile routines: used to
// confirm and polish a quantile from a fast estimate, and as the safeguarded search that always
// converges. Internal to the distribution routines.
#pragma once

#include <cmath>
#include <limits>

namespace zomath::platform::detail {

// A tail probability T at v and its derivatives in u = ln v: slope = v T'(v), and
// rate = (d slope / du) / slope, which for a density f is 1 + v f'(v) / f(v) (NaN if unknown).
struct TailPoint {
  long double t;
  long double slope;
  long double rate;
};

// The result of a search: the variate and whether its relative accuracy was confirmed.
struct SearchResult {
  double v;
  bool converged;
};

// A Halley step in ln v of at most this size is taken as converged: the error after it is of
// the order of its cube, far below a rounding. A Newton step (rate unknown) must be below the
// square root of the rounding for the same.
inline constexpr long double kHalleyTolerance = 1e-7L;
inline constexpr long double kNewtonTolerance = 1e-10L;

// Finds v > 0 with T(v) = target, where `tail(v)` returns the TailPoint of a tail probability
// evaluated in long double, increasing in v (a lower tail) when `increasing`, else decreasing
// (an upper tail), for v up to e^logUpper (by default the largest double). Starts from `start`
// when it is a positive finite number. Steps are taken on h(u) = ln T(e^u) - ln target, which is
// close to linear in the tails; a step that leaves the bracket known to hold the root, or that
// comes from an underflowed T, is replaced by bisection in u, and one beyond an end of the range
// tries that end. At most `maxSteps` evaluations. A root below the smallest double comes back as
// 0 and one above e^logUpper as e^logUpper (infinity for the default), both converged.
template <class TailFn>
SearchResult search_quantile(TailFn tail, bool increasing, long double target, double start,
                             int maxSteps, long double logUpper = 709.79L) {
  constexpr long double kLowest = -745.2L;  // ln of the smallest subnormal double
  const long double logTarget = std::log(target);
  long double lo = kLowest, hi = logUpper;  // the bracket of the root in u
  long double u = (start > 0 && std::isfinite(start)) ? std::log(static_cast<long double>(start))
                                                      : 0.5L * (lo + hi);
  if (!(u > lo && u < hi)) u = 0.5L * (lo + hi);
  for (int step = 0; step < maxSteps; ++step) {
    const TailPoint p = tail(std::exp(u));
    const long double h = p.t > 0 ? std::log(p.t) - logTarget : -std::numeric_limits<long double>::infinity();
    // T below the target means the root lies above u for an increasing tail, below for a
    // decreasing one.
    const bool rootAbove = (h < 0) == increasing;
    // At an end of the range with the root beyond it: the quantile is 0 or e^logUpper.
    if (u >= logUpper && rootAbove) return {static_cast<double>(std::exp(logUpper)), true};
    if (u <= kLowest && !rootAbove) return {0.0, true};
    if (rootAbove) lo = u; else hi = u;
    long double next = 0.5L * (lo + hi);
    const long double h1 = p.slope / p.t;  // h'(u)
    if (p.t > 0 && std::isfinite(h) && h1 != 0 && std::isfinite(h1)) {
      long double du = -h / h1;  // Newton
      long double tolerance = kNewtonTolerance;
      const long double h2 = h1 * (p.rate - h1);  // h''(u)
      const long double halley = 1 - h * h2 / (2 * h1 * h1);
      if (std::isfinite(halley) && halley > 0.5L && halley < 2) {
        du /= halley;
        tolerance = kHalleyTolerance;
      }
      if (std::fabs(du) <= tolerance) return {static_cast<double>(std::exp(u + du)), true};
      next = u + du;
      if (next >= logUpper && hi == logUpper) next = logUpper;
      else if (next <= kLowest && lo == kLowest) next = kLowest;
      else if (!(next > lo && next < hi)) next = 0.5L * (lo + hi);
    }
    if (hi - lo < 1e-17L * (1 + std::fabs(u))) break;  // bracket closed below the precision of u
    u = next;
  }
  const bool closed = hi - lo < 1e-15L * (1 + std::fabs(u));
  if (closed && lo >= logUpper - 1e-12L) return {static_cast<double>(std::exp(logUpper)), true};
  if (closed && hi <= kLowest + 1e-12L) return {0.0, true};
  return {static_cast<double>(std::exp(u)), closed};
}

}  // namespace zomath::platform::detail
