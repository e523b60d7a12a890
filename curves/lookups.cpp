// Single-value look-ups, the level search and the asymptote estimators.
#include <algorithm>
#include <climits>
#include <cmath>

#include "curves/curve_reader.h"
#include "curves/curves_internal.h"
#include "zomath/curves.h"

namespace zomath::curves {

bool x_range(const double* p, std::size_t n, double& lo, double& hi) {
  bool any = false;
  lo = hi = NANUM;
  for (std::size_t i = 0; i < n; ++i) {
    const double v = p[i];
    if (v == NANUM || v != v) continue;
    if (!any || v < lo) lo = v;
    if (!any || v > hi) hi = v;
    any = true;
  }
  return any;
}

namespace {

bool valid_point(double x, double y) { return x != NANUM && y != NANUM && x == x && y == y; }

// The points of a curve that carry no NANUM (or NaN), in their order, and the facts the
// asymptote estimators read: the ends in x and the extremes in y, each at its first occurrence.
struct CurveFacts {
  NRVec<double> x, y;
  int n = 0;
  double xl = 0, xr = 0, yl = 0, yr = 0;  // smallest and largest x, and their y
  double ymin = 0, ymax = 0, xa = 0, xb = 0;  // extremes of y, and their x

  void gather(const double* pX, const double* pY, unsigned int nSize) {
    x.SetSize(static_cast<int>(nSize));
    y.SetSize(static_cast<int>(nSize));
    for (unsigned int i = 0; i < nSize; ++i) {
      if (!valid_point(pX[i], pY[i])) continue;
      x[n] = pX[i];
      y[n] = pY[i];
      if (n == 0 || x[n] < xl) { xl = x[n]; yl = y[n]; }
      if (n == 0 || x[n] > xr) { xr = x[n]; yr = y[n]; }
      if (n == 0 || y[n] < ymin) { ymin = y[n]; xa = x[n]; }
      if (n == 0 || y[n] > ymax) { ymax = y[n]; xb = x[n]; }
      ++n;
    }
  }

  // The curve read linearly at q1 and q2, a tenth of the x range in from each end.
  void read_inner(double& v1, double& v2) const {
    SortedSource s;
    if (!copy_sorted(x.Data(), y.Data(), nullptr, static_cast<std::size_t>(n), s))
      throw ZOMATH_ERROR_NO_MEMORY;
    LinearReader read(s.x.Data(), s.y.Data(), static_cast<std::size_t>(n));
    v1 = read(0.9 * xl + 0.1 * xr);
    v2 = read(0.9 * xr + 0.1 * xl);
  }
};

double y_asymptote(const CurveFacts& f) {
  if (2 * (f.xr - f.xl) / 3 <= std::fabs(f.xb - f.xa)) {
    double v1, v2;
    f.read_inner(v1, v2);
    return std::fabs(v1 - f.yl) < std::fabs(f.yr - v2) ? f.yl : f.yr;
  }
  return (f.yl + f.yr) * 0.5;
}

double x_asymptote(const CurveFacts& f) {
  if (2 * (f.ymax - f.ymin) / 3 <= std::fabs(f.yr - f.yl)) {
    double v1, v2;
    f.read_inner(v1, v2);
    return v1 - f.yl < f.yr - v2 ? f.xb : f.xa;
  }
  if (std::fabs(f.xb - f.xa) <= (f.xr - f.xl) / 3) return (f.xa + f.xb) * 0.5;
  const double ya = y_asymptote(f);
  return std::fabs(f.ymin - ya) < f.ymax - ya ? f.xb : f.xa;
}

template <class Estimate>
int asymptote(unsigned int nSize, const double* pX, const double* pY, double* pOut,
              Estimate estimate) {
  if (!pX || !pY || !pOut) return ZOMATH_ERR_NULL_POINTER;
  *pOut = NANUM;
  if (nSize < 2) return ZOMATH_ERR_TOO_FEW_ITEMS;
  if (nSize > static_cast<unsigned int>(INT_MAX)) return ZOMATH_ERR_NO_MEMORY;
  try {
    CurveFacts f;
    f.gather(pX, pY, nSize);
    if (f.n < 2) return ZOMATH_ERR_TOO_FEW_ITEMS;
    *pOut = estimate(f);
    return ZOMATH_OK;
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

}  // namespace
}  // namespace zomath::curves

using namespace zomath::curves;

extern "C" {

int zomath_y_form_x(unsigned int nSize, const double* pX, const double* pY, double dX,
                    double* pYOut, bool bSorted, bool bUniform) {
  if (!pX || !pY || !pYOut) return ZOMATH_ERR_NULL_POINTER;
  if (nSize < 2) return ZOMATH_ERR_BAD_ARGUMENT;
  *pYOut = NANUM;
  try {
    SortedSource src;
    const double* x = pX;
    const double* y = pY;
    if (!bSorted) {
      if (nSize > static_cast<unsigned int>(INT_MAX) || !copy_sorted(pX, pY, nullptr, nSize, src))
        return ZOMATH_ERR_NO_MEMORY;
      x = src.x.Data();
      y = src.y.Data();
    }
    if (dX == NANUM || dX != dX) {
      *pYOut = dX;
      return ZOMATH_OK;
    }
    const std::size_t n = nSize;
    std::size_t lo, hi;
    if (bUniform) {
      // A segment index at or beyond n - 1, negative ones included, is the last segment.
      const double q = std::trunc((dX - x[0]) / (x[1] - x[0]));
      lo = q >= 0 && q < static_cast<double>(n - 1) ? static_cast<std::size_t>(q) : n - 2;
      hi = lo + 1;
    } else {
      lo = 0;
      hi = n - 1;
      while (hi - lo > 1) {
        const std::size_t mid = (lo + hi) / 2;
        if (x[mid] == dX) {
          *pYOut = y[mid];
          return ZOMATH_OK;
        }
        if (dX < x[mid]) {
          hi = mid;
        } else {
          lo = mid;
        }
      }
    }
    const double x0 = x[lo], x1 = x[hi], y0 = y[lo], y1 = y[hi];
    if (x0 == NANUM || x1 == NANUM || y0 == NANUM || y1 == NANUM) return ZOMATH_OK;
    *pYOut = (dX - x0) * (y1 - y0) / (x1 - x0) + y0;
    return ZOMATH_OK;
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

int zomath_x_from_y(unsigned int nSize, const double* pX, const double* pY, double dY,
                    double* pXOut) {
  if (!pX || !pY || !pXOut) return ZOMATH_ERR_NULL_POINTER;
  if (nSize < 2) return ZOMATH_ERR_BAD_ARGUMENT;
  *pXOut = NANUM;
  if (dY == NANUM || dY != dY) return ZOMATH_OK;
  if (nSize > static_cast<unsigned int>(INT_MAX)) return ZOMATH_ERR_NO_MEMORY;
  try {
    zomath::NRVec<double> ys(static_cast<int>(nSize)), xs(static_cast<int>(nSize));
    std::size_t n = 0;
    for (unsigned int i = 0; i < nSize; ++i) {
      if (!valid_point(pX[i], pY[i])) continue;
      ys[static_cast<int>(n)] = pY[i];
      xs[static_cast<int>(n)] = pX[i];
      ++n;
    }
    if (n == 0) return ZOMATH_OK;
    SortedSource s;  // by y, x following
    if (!copy_sorted(ys.Data(), xs.Data(), nullptr, n, s)) return ZOMATH_ERR_NO_MEMORY;
    const double* y = s.x.Data();
    const double* x = s.y.Data();
    std::size_t lo = 0, hi = n - 1;
    while (hi - lo > 1) {
      const std::size_t mid = (lo + hi) / 2;
      if (y[mid] == dY) {
        *pXOut = x[mid];
        return ZOMATH_OK;
      }
      if (dY < y[mid]) {
        hi = mid;
      } else {
        lo = mid;
      }
    }
    *pXOut = std::fabs(y[hi] - dY) <= std::fabs(dY - y[lo]) ? x[hi] : x[lo];
    return ZOMATH_OK;
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

int zomath_find_xs(double dY, unsigned int nSize, const double* pX, const double* pY,
                   unsigned int nMaxXs, double* pXs, void* pCtx1, void* pCtx2, void* pCtx3,
                   bool (*fnYAtX)(void*, void*, void*, double, double*), int* pIndices,
                   double dReach, double dTolerance, unsigned int nMaxIter) {
  if (dY == NANUM) return ZOMATH_ERR_BAD_ARGUMENT;
  if (!pX || !pY || !pXs || !pCtx1 || !pCtx3 || !fnYAtX) return ZOMATH_ERR_NULL_POINTER;
  if (nSize == 0 || nMaxXs == 0 || nSize < nMaxXs) return ZOMATH_ERR_TOO_FEW_ITEMS;
  if (nSize > static_cast<unsigned int>(INT_MAX)) return ZOMATH_ERR_BAD_ARGUMENT;
  const int unused = -static_cast<int>(nSize);
  unsigned int found = 0;
  auto record = [&](double x, int index) {
    pXs[found] = x;
    if (pIndices) pIndices[found] = index;
    ++found;
  };
  double lo, hi;
  double level = dY;
  const bool any = x_range(pY, nSize, lo, hi);
  const bool reachable = any && !(dY < lo - dReach) && !(dY > hi + dReach);
  if (reachable) {
    if (level < lo) {
      level = lo;
    } else if (level > hi) {
      level = hi;
    }
    for (unsigned int i = 0; i < nSize && found < nMaxXs; ++i) {
      if (!valid_point(pX[i], pY[i])) continue;
      const double y = pY[i];
      if (std::fabs(level - y) <= dTolerance) {
        record(pX[i], static_cast<int>(i));
        continue;
      }
      if (i == 0 || !valid_point(pX[i - 1], pY[i - 1])) continue;
      const double yp = pY[i - 1];
      const bool rising = yp < level - dTolerance && y > level + dTolerance;
      const bool falling = yp > level + dTolerance && y < level - dTolerance;
      if (!rising && !falling) continue;
      double below = rising ? pX[i - 1] : pX[i], above = rising ? pX[i] : pX[i - 1];
      double mid = (below + above) * 0.5;
      for (unsigned int r = 0; r < nMaxIter; ++r) {
        mid = (below + above) * 0.5;
        double v;
        if (!fnYAtX(pCtx1, pCtx2, pCtx3, mid, &v)) return ZOMATH_ERR_NOT_FOUND;
        if (std::fabs(v - level) < dTolerance) break;
        if (v - level > dTolerance) {
          above = mid;
        } else {
          below = mid;
        }
      }
      record(mid, -static_cast<int>(i));
    }
  }
  for (unsigned int k = found; k < nMaxXs; ++k) {
    pXs[k] = NANUM;
    if (pIndices) pIndices[k] = unused;
  }
  return ZOMATH_OK;
}

int zomath_yatasymt(unsigned int nSize, const double* pX, const double* pY, double* pYOut) {
  return asymptote(nSize, pX, pY, pYOut, y_asymptote);
}

int zomath_xatasymt(unsigned int nSize, const double* pX, const double* pY, double* pXOut) {
  return asymptote(nSize, pX, pY, pXOut, x_asymptote);
}

}  // extern "C"
