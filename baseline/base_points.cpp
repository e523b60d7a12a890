// The points of a baseline: those of small curvature that lie near a parabola, those near zero
// in value and slope, and the straight stretches of a curve.
#include <algorithm>
#include <climits>
#include <cmath>

#include "core/nrvec/nrvec.h"
#include "peaks/peaks_internal.h"
#include "zomath/baseline.h"
#include "zomath/curves.h"
#include "zomath/peaks.h"
#include "zomath/regression.h"

namespace zomath::baseline {
namespace {

using peaks::absent;

// The averaging half width at which the noise left after Savitzky-Golay smoothing stops
// changing: 3 points when half widths 5 and 10 leave the same noise within 15%, else the first
// of 15, 20, 25, 30 whose noise is within 15% of the next narrower one's; 30 when none is. -1
// when the curve is too short to be smoothed at a width that is asked for.
int width_from_noise(const double* pY, int n) {
  NRVec<double> s(n);
  const auto noise = [&](int h) {
    if (zomath_savitsky_golay(pY, s.Data(), static_cast<unsigned int>(n), h, h, 2, 0,
                              ZOMATH_BOUNDARY_LINEAR) != 0)
      return NANUM;
    return zomath_get_noise_level(static_cast<unsigned int>(n), s.Data());
  };
  const auto rel = [](double a, double b) { return std::fabs(a - b) / b; };
  double prev = noise(5), next = noise(10);
  if (prev == NANUM || next == NANUM) return -1;
  if (rel(prev, next) < 0.15) return 3;
  for (int h = 15; h <= 30; h += 5) {
    prev = next;
    next = noise(h);
    if (next == NANUM) return -1;
    if (rel(prev, next) <= 0.15) return h;
  }
  return 30;
}

// The small-curvature selection on the working curve: averaging over nHalf, the curvature test
// (bEnds: the end points tested on their own D, else never kept), the parabola and the residual
// cut. Returns the count kept or a code.
int small_curvature(const peaks::Curve& c, double* pXOut, double* pYOut, double dCurvature,
                    double dResidual, int nHalf, bool bEnds, bool bAnyFitCode) {
  const int n = c.n;
  NRVec<double> D(n), d1(n);
  const int rc = zomath_adjave_smooth(c.y, D.Data(), static_cast<unsigned int>(n), nHalf,
                                      ZOMATH_BOUNDARY_NONE, false);
  if (rc != 0) return rc;
  zomath_derivative(c.x, D.Data(), d1.Data(), static_cast<unsigned int>(n), ZOMATH_DERIV_MEAN);
  zomath_derivative(c.x, d1.Data(), D.Data(), static_cast<unsigned int>(n), ZOMATH_DERIV_MEAN);
  double big = 0;
  for (int i = 0; i < n; ++i)
    if (!absent(D[i])) big = std::max(big, std::fabs(D[i]));
  for (int i = 0; i < n; ++i)
    if (!absent(D[i]) && std::fabs(D[i]) > dCurvature * big) D[i] = NANUM;

  int kept = 0;
  const auto keep = [&](int i) {
    pXOut[kept] = c.x[i];
    pYOut[kept] = c.y[i];
    ++kept;
  };
  for (int i = 0; i < n; ++i) {
    const bool end = i == 0 || i == n - 1;
    if (end ? bEnds && !absent(D[i])
            : !absent(D[i - 1]) && !absent(D[i]) && !absent(D[i + 1]))
      keep(i);
  }
  if (kept < 2) return 0;

  FitParameter fit[3];
  LinearFitOptions opt{false, 1.0, 0, false, 0.95, false, false, 0.0};
  const int fc = zomath_polynomial_fit(kept, pXOut, pYOut, nullptr, 2, &opt, fit, 3, nullptr,
                                       nullptr, nullptr, nullptr, nullptr, -1);
  // 1 only says that x was rescaled for the fit.
  if (fc < 0 || (bAnyFitCode && fc != 0 && fc != 1)) return fc;

  // Residuals from the parabola, best fitting first; those up to the cut are kept.
  NRVec<double> r(kept), rx(kept), ry(kept);
  NRVec<int> order(kept);
  for (int k = 0; k < kept; ++k) {
    const double x = pXOut[k];
    r[k] = std::fabs(pYOut[k] - (fit[0].value + x * (fit[1].value + x * fit[2].value)));
    order[k] = k;
    rx[k] = x;
    ry[k] = pYOut[k];
  }
  std::stable_sort(order.Data(), order.Data() + kept, [&](int a, int b) { return r[a] < r[b]; });
  const double rMin = r[order[0]], rMax = r[order[kept - 1]];
  const double cut = (1 - dResidual) * rMin + dResidual * rMax;
  int out = 0;
  while (out < kept && !(r[order[out]] > cut)) {
    pXOut[out] = rx[order[out]];
    pYOut[out] = ry[order[out]];
    ++out;
  }
  return out;
}

}  // namespace
}  // namespace zomath::baseline

using namespace zomath;
using namespace zomath::baseline;

extern "C" {

int zomath_find_baseline_part_by_small_curvature(unsigned int nSize, const double* pX,
                                                 const double* pY, double* pXOut, double* pYOut,
                                                 double dCurvature, double dResidual,
                                                 int nHalf) {
  if (!pX || !pY || !pXOut || !pYOut) return ZOMATH_ERR_NULL_POINTER;
  if (nSize < 3 || nSize > static_cast<unsigned int>(INT_MAX)) return ZOMATH_ERR_BAD_ARGUMENT;
  try {
    peaks::Curve c;
    peaks::prepare(c, pX, pY, static_cast<int>(nSize));
    return small_curvature(c, pXOut, pYOut, dCurvature, dResidual, nHalf, true, false);
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

int zomath_find_baseline_part_by_small_curvature2(unsigned int nSize, const double* pX,
                                                  const double* pY, double* pXOut,
                                                  double* pYOut, double dCurvature,
                                                  double dResidual) {
  if (!pX || !pY || !pXOut || !pYOut) return ZOMATH_ERR_NULL_POINTER;
  if (nSize < 3 || nSize > static_cast<unsigned int>(INT_MAX)) return ZOMATH_ERR_BAD_ARGUMENT;
  try {
    const int n = static_cast<int>(nSize);
    peaks::Curve c;
    peaks::prepare(c, pX, pY, n);
    const int w = width_from_noise(c.y, n);
    return small_curvature(c, pXOut, pYOut, dCurvature, dResidual, (w - 1) / 2, false, true);
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

int zomath_find_baseline_part_in_smooth_curve(unsigned int nSize, const double* pX,
                                              const double* pY, int* pIndices) {
  if (!pX || !pY || !pIndices) return ZOMATH_ERR_NULL_POINTER;
  if (nSize < 2 || nSize > static_cast<unsigned int>(INT_MAX)) return 0;
  const int n = static_cast<int>(nSize);
  try {
    NRVec<double> s(n);
    zomath_derivative(pX, pY, s.Data(), nSize, ZOMATH_DERIV_MEAN);
    const auto range = [n](const double* v) {
      double lo = INFINITY, hi = -INFINITY;
      for (int i = 0; i < n; ++i)
        if (!absent(v[i])) lo = std::min(lo, v[i]), hi = std::max(hi, v[i]);
      return hi - lo;
    };
    const double yCut = 0.05 * range(pY), sCut = 0.05 * range(s.Data());
    int found = 0;
    for (int i = 0; i < n; ++i)
      if (!absent(pY[i]) && !absent(s[i]) && std::fabs(pY[i]) < yCut && std::fabs(s[i]) < sCut)
        pIndices[found++] = i;
    return found;
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

int zomath_find_base_regions(unsigned int nSize, const double* pX, const double* pY,
                             int nMinLength, int nMaxRegions, int* pStarts, int* pEnds,
                             double dFraction, double dFactor, int nInitial) {
  if (!pX || !pY || !pStarts || !pEnds) return ZOMATH_ERR_NULL_POINTER;
  if (nSize > static_cast<unsigned int>(INT_MAX) || nMinLength < 2 || nMaxRegions < 0)
    return ZOMATH_ERR_BAD_ARGUMENT;
  const int n = static_cast<int>(nSize);
  const int step = static_cast<int>(nMinLength / 3.0 + 0.5);
  int found = 0;
  for (int start = 0; start < n - step;) {
    int end = start;
    const int rc = zomath_check_linear(nSize, pX, pY, &end, dFraction, dFactor,
                                       static_cast<unsigned int>(start), true, nInitial, 0);
    if (rc < 0) return rc;
    if (end - start > nMinLength) {
      if (found == nMaxRegions) return ZOMATH_BASE_ERR_REGIONS;
      pStarts[found] = start;
      pEnds[found] = end;
      ++found;
      start = end + 1;
    } else {
      start += step;
    }
  }
  return found;
}

}  // extern "C"
