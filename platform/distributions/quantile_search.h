// Newton's method on the logarithm of a tail probability, for the quantile routines: used to
// confirm and polish a quantile from a fast inversion, and as the safeguarded search that
// always converges. Internal to the distribution routines.
#pragma once

#include <cmath>
#include <limits>
#include <utility>

namespace zomath::platform::detail {

// The result of a search: the variate and whether its relative accuracy reached kSearchTolerance.
struct SearchResult {
  double v;
  bool converged;
};

// A Newton step in ln v of at most this size is taken as converged: the step that follows it
// moves v by its square, far below a rounding.
inline constexpr long double kSearchTolerance = 1e-10L;

// Finds v > 0 with T(v) = target, where `tail(v)` returns the pair (T(v), v T'(v)) of a tail
// probability evaluated in long double, increasing in v (a lower tail) when `increasing`, else
// decreasing (an upper tail). Starts from `start` when it is a positive finite number; steps that
// leave the bracket known to hold the root, or that come from an underflowed T, are replaced by
// bisection in ln v. At most `maxSteps` evaluations. A root below the smallest double comes back
// as 0 and one above e^logUpper as e^logUpper (infinity for the default), both converged.
template <class TailFn>
SearchResult search_quantile(TailFn tail, bool increasing, long double target, double start,
                             int maxSteps, long double logUpper = 709.79L) {
  constexpr long double kLowest = -745.2L;  // ln of the smallest subnormal double
  const long double logTarget = std::log(target);
  long double lo = kLowest, hi = logUpper;  // the root of h(u) = ln T(e^u) - ln target, in u
  long double u = (start > 0 && std::isfinite(start)) ? std::log(static_cast<long double>(start))
                                                      : 0.5L * (lo + hi);
  if (!(u > lo && u < hi)) u = 0.5L * (lo + hi);
  for (int step = 0; step < maxSteps; ++step) {
    const std::pair<long double, long double> tv = tail(std::exp(u));
    const long double t = tv.first, slope = tv.second;  // slope = v T'(v) = dT/du
    const long double h = t > 0 ? std::log(t) - logTarget : -std::numeric_limits<long double>::infinity();
    // T below the target means the root lies above u for an increasing tail, below for a
    // decreasing one.
    const bool rootAbove = (h < 0) == increasing;
    // At an end of the range with the root beyond it: the quantile is 0 or e^logUpper.
    if (u >= logUpper && rootAbove) return {static_cast<double>(std::exp(logUpper)), true};
    if (u <= kLowest && !rootAbove) return {0.0, true};
    if (rootAbove) lo = u; else hi = u;
    long double next = 0.5L * (lo + hi);
    if (t > 0 && std::isfinite(h) && slope != 0 && std::isfinite(slope)) {
      const long double du = -h * t / slope;
      if (std::fabs(du) <= kSearchTolerance) return {static_cast<double>(std::exp(u + du)), true};
      next = u + du;
      // A step beyond an end of the range tries that end; one outside the bracket bisects.
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
