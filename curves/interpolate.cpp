// Resampling: zomath_interpolate and its parametric forms, and the arithmetic of two curves.
#include <algorithm>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstring>

#include "core/numeric.h"
#include "curves/curve_reader.h"
#include "curves/curves_internal.h"
#include "platform/smoothing_spline.h"
#include "zomath/curves.h"

namespace zomath::curves {
namespace {

namespace pf = zomath::platform;

static_assert(ZOMATH_SPLINE_KNOT_LIMIT == pf::kSplineKnotLimit &&
                  ZOMATH_SPLINE_SEARCH_FAILED == pf::kSplineSearchFailed &&
                  ZOMATH_SPLINE_ITERATION_LIMIT == pf::kSplineIterationLimit &&
                  ZOMATH_SPLINE_BAD_INPUT == pf::kSplineBadInput &&
                  ZOMATH_SPLINE_NO_MEMORY == pf::kSplineNoMemory,
              "the public smoothing spline codes are the platform's");

// Releases the spline's arrays however the call ends.
struct SplineHolder {
  Nag_Spline spline{0, nullptr, nullptr, 0, 0};
  ~SplineHolder() { pf::release_spline(&spline); }
};

void fill(double* p, std::size_t n, double v) { std::fill(p, p + n, v); }

int read_spline(const SortedSource& src, std::size_t n, const double* pX, double* pY,
                std::size_t nSize, double* pDerivs, int nBoundary) {
  if (has_missing(src.x.Data(), src.y.Data(), n)) {
    fill(pY, nSize, NANUM);
    if (pDerivs) fill(pDerivs, n, NANUM);
    return ZOMATH_OK;
  }
  NRVec<double> m(static_cast<int>(n)), work(static_cast<int>(n));
  spline_second_derivatives(src.x.Data(), src.y.Data(), n,
                            nBoundary == 1 ? SplineEnds::kNotAKnot : SplineEnds::kNatural,
                            m.Data(), work.Data());
  SplineReader read(src.x.Data(), src.y.Data(), m.Data(), n);
  for (std::size_t i = 0; i < nSize; ++i) pY[i] = read(pX[i]);
  if (pDerivs) std::memcpy(pDerivs, m.Data(), n * sizeof(double));
  return ZOMATH_OK;
}

int read_smoothing_spline(const SortedSource& src, std::size_t n, const double* pX, double* pY,
                          std::size_t nSize, double dSmoothing, bool bWeighted,
                          double* pDerivs) {
  if (has_missing(src.x.Data(), src.y.Data(), n)) {
    fill(pY, nSize, NANUM);
    if (pDerivs) fill(pDerivs, n, NANUM);
    return ZOMATH_OK;
  }
  const NRVec<double> ones(1.0, bWeighted ? 1 : static_cast<int>(n));
  const double* w = bWeighted ? src.w.Data() : ones.Data();
  SplineHolder fit;
  pf::NagError fail;
  const int code = pf::fit_smoothing_spline(static_cast<int>(n), src.x.Data(), src.y.Data(), w,
                                            dSmoothing, static_cast<int>(n) + 4, &fit.spline,
                                            nullptr, fail);
  if (code != 0) return code;
  // Inside the source range the spline; outside, the raw end segment.
  const double lo = src.x[0], hi = src.x[static_cast<int>(n) - 1];
  LinearReader outside(src.x.Data(), src.y.Data(), n);
  for (std::size_t i = 0; i < nSize; ++i) {
    const double x = pX[i];
    if (x == NANUM || x != x) {
      pY[i] = x;
    } else if (x >= lo && x <= hi) {
      if (const int rc = pf::evaluate_spline(&fit.spline, x, &pY[i], fail)) return rc;
    } else {
      pY[i] = outside(x);
    }
  }
  if (pDerivs) {
    const std::size_t kept = std::min(n, static_cast<std::size_t>(fit.spline.nKnots));
    std::memcpy(pDerivs, fit.spline.pCoef, kept * sizeof(double));
    fill(pDerivs + kept, n - kept, 0.0);
  }
  return ZOMATH_OK;
}

}  // namespace

int interpolate(const double* pX, double* pY, unsigned int nSize, const double* pSrcX,
                const double* pSrcY, unsigned int nSrcSize, int nMode, double dSmoothing,
                const double* pWeights, double* pDerivs, unsigned int nOptions, int nBoundary) {
  if (!pX || !pY || !pSrcX || !pSrcY) return ZOMATH_ERR_NULL_POINTER;
  if (nSize == 0 || nSrcSize == 0) return ZOMATH_ERR_TOO_FEW_POINTS;
  if ((nMode == 1 && nSrcSize < 2) || (nMode == 2 && nSrcSize < 4)) return ZOMATH_ERR_TOO_FEW_POINTS;
  if (nMode == 2 && !(dSmoothing >= 0)) return ZOMATH_CURVE_ERR_SMOOTHING;
  if (nSrcSize > static_cast<unsigned int>(INT_MAX) - 4) return ZOMATH_ERR_NO_MEMORY;
  if ((nOptions & ZOMATH_INTERP_SOURCE_ORDERED) && zomath_is_monotonic(pSrcX, nSrcSize, false) != 2)
    return ZOMATH_ERR_NOT_MONOTONIC;
  const bool bWeighted = nMode == 2 && pWeights;
  SortedSource src;
  if (!copy_sorted(pSrcX, pSrcY, bWeighted ? pWeights : nullptr, nSrcSize, src))
    return ZOMATH_ERR_NO_MEMORY;
  switch (nMode) {
    case 0: {
      LinearReader read(src.x.Data(), src.y.Data(), nSrcSize);
      for (unsigned int i = 0; i < nSize; ++i) pY[i] = read(pX[i]);
      return ZOMATH_OK;
    }
    case 1:
      return read_spline(src, nSrcSize, pX, pY, nSize, pDerivs, nBoundary);
    case 2:
      return read_smoothing_spline(src, nSrcSize, pX, pY, nSize, dSmoothing, bWeighted, pDerivs);
    default:
      return ZOMATH_ERR_BAD_ARGUMENT;
  }
}

}  // namespace zomath::curves

using zomath::curves::interpolate;

extern "C" {

int zomath_interpolate(const double* pX, double* pY, unsigned int nSize, const double* pSrcX,
                       const double* pSrcY, unsigned int nSrcSize, int nMode, double dSmoothing,
                       const double* pWeights, double* pDerivs, unsigned int nOptions,
                       int nBoundary) {
  try {
    return interpolate(pX, pY, nSize, pSrcX, pSrcY, nSrcSize, nMode, dSmoothing, pWeights,
                       pDerivs, nOptions, nBoundary);
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

int zomath_parametric_interpolate_range(double* pT, const double* pPoints, unsigned int nPoints,
                                        unsigned int nDim, int nMethod) {
  if (nPoints == 0) return ZOMATH_CURVE_ERR_NO_POINTS;
  if (nDim < 2) return ZOMATH_CURVE_ERR_DIMENSIONS;
  if (!pT || !pPoints) return ZOMATH_ERR_NULL_POINTER;
  if (nMethod != 0 && nMethod != 1) return ZOMATH_CURVE_ERR_METHOD;
  if (nMethod == 0) {
    for (unsigned int i = 0; i < nPoints; ++i) pT[i] = i;
    return ZOMATH_OK;
  }
  // Centripetal: steps of the square root of the chord length; a missing coordinate makes the
  // step, and every value after it, missing.
  pT[0] = 0;
  for (unsigned int i = 1; i < nPoints; ++i) {
    double sum = 0;
    for (unsigned int d = 0; d < nDim && sum != NANUM; ++d) {
      const double* row = pPoints + static_cast<std::size_t>(d) * nPoints;
      const double diff = zomath::nanum_sub(row[i], row[i - 1]);
      sum = diff == NANUM ? NANUM : sum + diff * diff;
    }
    pT[i] = zomath::nanum_add(pT[i - 1], sum == NANUM ? NANUM : std::sqrt(std::sqrt(sum)));
  }
  return ZOMATH_OK;
}

int zomath_parametric_interpolate_eval(const double* pT, const double* pPoints,
                                       unsigned int nPoints, const double* pNewT,
                                       double* pNewPoints, unsigned int nNewPoints,
                                       unsigned int nDim, int nMode, double dSmoothing,
                                       const double* pWeights) {
  if (nPoints == 0 || nNewPoints == 0 || nDim < 2) return ZOMATH_ERR_TOO_FEW_POINTS;
  if (!pT || !pPoints || !pNewT || !pNewPoints) return ZOMATH_ERR_NULL_POINTER;
  for (unsigned int d = 0; d < nDim; ++d) {
    const int rc = zomath_interpolate(pNewT, pNewPoints + static_cast<std::size_t>(d) * nNewPoints,
                                      nNewPoints, pT, pPoints + static_cast<std::size_t>(d) * nPoints,
                                      nPoints, nMode, dSmoothing, pWeights, nullptr, 0, 0);
    if (rc != 0) return rc;
  }
  return ZOMATH_OK;
}

int zomath_simple_math(int nSizeOut, double* pXOut, double* pYOut, int nSize1, const double* pX1,
                       const double* pY1, int nSize2, const double* pX2, const double* pY2,
                       int nOperator, int nXMode, int nInterpolation, double dOption) {
  if (!pXOut || !pYOut || !pX1 || !pY1 || !pX2 || !pY2) return ZOMATH_ERR_NULL_POINTER;
  if (nSize1 < 1 || nSize2 < 1 || nSizeOut < nSize1) return ZOMATH_ERR_SIZE;
  if (nXMode != 0 && nXMode != 1) return ZOMATH_ERR_BAD_ARGUMENT;
  try {
    // Work on copies, so that outputs may share storage with the inputs.
    zomath::NRVec<double> x(nSize1), y1(nSize1), y2(nSize1);
    if (nXMode == 0) {
      std::memcpy(x.Data(), pX1, sizeof(double) * nSize1);
    } else {
      double lo1, hi1, lo2, hi2;
      const bool any1 = zomath::curves::x_range(pX1, nSize1, lo1, hi1);
      const bool any2 = zomath::curves::x_range(pX2, nSize2, lo2, hi2);
      const double lo = std::max(lo1, lo2), hi = std::min(hi1, hi2);
      if (!any1 || !any2 || !(lo <= hi)) {
        std::fill(pXOut, pXOut + nSize1, NANUM);
        std::fill(pYOut, pYOut + nSize1, NANUM);
        return ZOMATH_OK;
      }
      const double step = nSize1 > 1 ? (hi - lo) / (nSize1 - 1) : 0.0;
      for (int i = 0; i < nSize1; ++i) x[i] = lo + i * step;
      x[nSize1 - 1] = nSize1 > 1 ? hi : lo;
    }
    int rc = interpolate(x.Data(), y1.Data(), nSize1, pX1, pY1, nSize1, nInterpolation, dOption,
                         nullptr, nullptr, 0, 0);
    if (rc == 0)
      rc = interpolate(x.Data(), y2.Data(), nSize1, pX2, pY2, nSize2, nInterpolation, dOption,
                       nullptr, nullptr, 0, 0);
    if (rc != 0) return rc;
    std::memcpy(pXOut, x.Data(), sizeof(double) * nSize1);
    if (nOperator < 0 || nOperator > 4) return ZOMATH_OK;
    for (int i = 0; i < nSize1; ++i) {
      const double a = y1[i], b = y2[i];
      double r;
      switch (nOperator) {
        case 0: r = zomath::nanum_add(a, b); break;
        case 1: r = zomath::nanum_sub(a, b); break;
        case 2: r = zomath::is_near(b, 0.0, DBL_MIN) ? NANUM : zomath::nanum_div(a, b); break;
        case 3: r = zomath::nanum_mul(a, b); break;
        default:
          r = (a == NANUM || b == NANUM) ? NANUM : std::pow(a, b);
          if (r != r && a == a && b == b) r = NANUM;  // a negative base to a fractional power
          break;
      }
      pYOut[i] = r;
    }
    return ZOMATH_OK;
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

}  // extern "C"
