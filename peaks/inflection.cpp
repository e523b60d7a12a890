// Inflection points of a peak by Newton's method on central differences of the linearly read
// curve, and the trimming of a curve between maxima of its second derivative.
#include <algorithm>
#include <climits>
#include <cmath>

#include "curves/curve_reader.h"
#include "peaks/peaks_internal.h"
#include "zomath/curves.h"
#include "zomath/peaks.h"

namespace zomath::peaks {
namespace {

// The points of the curve with both x and y finite, sorted by x; false when fewer than 2.
bool valid_sorted(const double* pX, const double* pY, int n, curves::SortedSource& s) {
  NRVec<double> x(n), y(n);
  int m = 0;
  for (int i = 0; i < n; ++i)
    if (!absent(pX[i]) && !absent(pY[i]) && std::isfinite(pX[i]) && std::isfinite(pY[i])) {
      x[m] = pX[i];
      y[m++] = pY[i];
    }
  if (m < 2) return false;
  if (!curves::copy_sorted(x.Data(), y.Data(), nullptr, static_cast<std::size_t>(m), s))
    throw ZOMATH_ERROR_NO_MEMORY;
  return true;
}

// Value and first three derivatives of the last round, in that order.
struct Round {
  double v[4] = {NANUM, NANUM, NANUM, NANUM};
};

// Newton's iteration for a zero of the second derivative, from x within lo..hi, on the sorted
// curve of n >= 2 points read with steps h of its mean spacing; at most 100 rounds.
double iterate(double x, double lo, double hi, const double* sx, const double* sy, int n,
               Round& last) {
  const double h = (sx[n - 1] - sx[0]) / (n - 1);
  curves::LinearReader read(sx, sy, static_cast<std::size_t>(n));
  for (int round = 0; round < 100; ++round) {
    const double y0 = read(x - 3 * h), y1 = read(x - h), y2 = read(x), y3 = read(x + h),
                 y4 = read(x + 3 * h);
    const double first = (y3 - y1) / (2 * h), second = (y1 + y3 - 2 * y2) / (h * h),
                 third = (y4 - 3 * y3 + 3 * y1 - y0) / (8 * h * h * h);
    last.v[0] = y2;
    last.v[1] = first;
    last.v[2] = second;
    last.v[3] = third;
    if (!std::isfinite(first) || !std::isfinite(second) || !std::isfinite(third)) break;
    if (std::fabs(second) <= 1e-12 || third == 0) break;
    double d = -second / third;
    if (!std::isfinite(d)) break;  // a step that overflows would never be halved into range
    while ((x + d < lo || x + d > hi) && std::fabs(d) > 1e-12) d *= 0.5;
    x += d;
  }
  return x;
}

}  // namespace
}  // namespace zomath::peaks

using namespace zomath;
using namespace zomath::peaks;

extern "C" {

double zomath_iterate_for_finding_inflection(double dStart, double dLow, double dHigh,
                                             unsigned int nSize, const double* pX,
                                             const double* pY, double* pdValue, double* pdFirst,
                                             double* pdSecond, double* pdThird) {
  Round last;
  double x = dStart;
  if (pX && pY && nSize >= 2 && nSize <= static_cast<unsigned int>(INT_MAX)) {
    try {
      zomath::curves::SortedSource s;
      if (valid_sorted(pX, pY, static_cast<int>(nSize), s))
        x = iterate(dStart, dLow, dHigh, s.x.Data(), s.y.Data(), s.x.size(), last);
    } catch (...) {
      x = dStart;
    }
  }
  double* out[4] = {pdValue, pdFirst, pdSecond, pdThird};
  for (int k = 0; k < 4; ++k)
    if (out[k]) *out[k] = last.v[k];
  return x;
}

int zomath_find_inflection_point(unsigned int nSize, const double* pX, const double* pY, double dX,
                                 double dHalfWidth, double* pXLeft, double* pXRight,
                                 double* pWidth) {
  if (!pX || !pY || !pXLeft || !pXRight || !pWidth) return ZOMATH_ERR_NULL_POINTER;
  if (nSize == 0 || nSize > static_cast<unsigned int>(INT_MAX)) return ZOMATH_ERR_BAD_ARGUMENT;
  try {
    zomath::curves::SortedSource s;
    if (!valid_sorted(pX, pY, static_cast<int>(nSize), s)) return ZOMATH_PEAK_ERR_NO_POINTS;
    const int n = s.x.size();
    if (!(dX >= s.x[0] && dX <= s.x[n - 1]) || !(dHalfWidth > 0) || !std::isfinite(dHalfWidth))
      return ZOMATH_ERR_BAD_ARGUMENT;
    const double w = dHalfWidth;
    Round l, r;
    const double xl = iterate(dX - 0.5 * w, dX - 3 * w, dX, s.x.Data(), s.y.Data(), n, l);
    const double xr = iterate(dX + 0.5 * w, dX, dX + 3 * w, s.x.Data(), s.y.Data(), n, r);
    // Where the tangents at the two inflections cross zero.
    const double width = (xr - r.v[0] / r.v[1]) - (xl - l.v[0] / l.v[1]);
    *pXLeft = xl;
    *pXRight = xr;
    *pWidth = std::isfinite(width) ? width : NANUM;
    return ZOMATH_OK;
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

int zomath_trim_peak_part_by_2nd_derivative(unsigned int nSize, double* pX,
                                            double* pY) {
  if (!pX || !pY) return ZOMATH_ERR_NULL_POINTER;
  if (nSize < 3 || nSize > static_cast<unsigned int>(INT_MAX)) return ZOMATH_OK;
  try {
    const int n = static_cast<int>(nSize);
    NRVec<double> x(pX, n), y(pY, n), d1(n), D(n);
    zomath_derivative(pX, pY, d1.Data(), nSize, ZOMATH_DERIV_MEAN);
    zomath_derivative(pX, d1.Data(), D.Data(), nSize, ZOMATH_DERIV_MEAN);
    // Blanks the working copy between alternate maxima of D; the copy is not handed back.
    bool blank = false;
    for (int i = 1; i + 1 < n; ++i) {
      if (blank) x[i] = y[i] = NANUM;
      if (D[i] > D[i - 1] && D[i] > D[i + 1]) blank = !blank;
    }
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
  return ZOMATH_OK;
}

}  // extern "C"
