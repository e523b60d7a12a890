// How far from a starting point the data stay one straight line: a window of line fits walks
// along the data until its intercept leaves that of the first fit by more than a given number
// of its standard errors.
#include <algorithm>
#include <climits>
#include <cmath>

#include "zomath/curves.h"
#include "zomath/regression.h"

namespace {

// The intercept of the line through points a..b (inclusive, either order, clipped to the n
// points). False when no line can be fitted there.
bool window_intercept(const double* pX, const double* pY, long long n, long long a, long long b,
                      FitParameter& intercept) {
  const long long lo = std::max(0LL, std::min(a, b)), hi = std::min(n - 1, std::max(a, b));
  if (hi - lo < 1) return false;
  FitParameter fit[2];
  const int code = zomath_linear_fit(pX + lo, pY + lo, static_cast<int>(hi - lo + 1), fit, nullptr,
                                     0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 0, 0);
  intercept = fit[0];
  return code == 0 && intercept.value != NANUM;
}

}  // namespace

extern "C" int zomath_check_linear(unsigned int nSize, const double* pX, const double* pY,
                                   int* pnEnd, double dFraction, double dFactor,
                                   unsigned int nStart, bool bForward, int nInitial, int nStep) {
  if (!pX || !pY || !pnEnd) return ZOMATH_ERR_NULL_POINTER;
  if (nSize == 0 || nSize > static_cast<unsigned int>(INT_MAX) || nStart >= nSize ||
      !(dFraction >= 0) || dFactor != dFactor)
    return ZOMATH_ERR_BAD_ARGUMENT;
  const long long n = nSize, dir = bForward ? 1 : -1;
  const long long start = bForward ? nStart : n - nStart - 1;
  // A span beyond the data is cut by the stop, but it still sets the default step.
  const long long span = static_cast<long long>(std::min(std::trunc(n * dFraction), 1e15));
  const long long stop = std::clamp(start + dir * span, -1LL, n);
  const long long step = dir * (nStep > 0 ? nStep : std::max(1LL, span / 10));
  const long long initial = nInitial != 0 ? dir * std::llabs(nInitial) : 3 * step;

  *pnEnd = static_cast<int>(start);
  FitParameter reference;
  if (!window_intercept(pX, pY, n, start, start + initial, reference)) return ZOMATH_OK;
  long long cur = start + 4 * step, passed = 0;
  bool departed = false, last = false;
  while (!last) {
    last = dir * (cur - stop) >= 0;
    if (last) cur = stop - dir;
    // A window without an error for its intercept can't be judged a line: the walk ends there.
    FitParameter a;
    departed = !window_intercept(pX, pY, n, cur - 3 * step, cur, a) || a.Error == NANUM ||
               dFactor * a.Error < std::fabs(a.value - reference.value);
    if (departed) break;
    ++passed;
    if (!last) cur += step;
  }
  if (passed > 0) *pnEnd = static_cast<int>(departed ? cur - step : stop - dir);
  return ZOMATH_OK;
}
