// Slopes of a curve at its points by differences with the neighbouring points.
#include "zomath/curves.h"

namespace {

// Slope of the chord from (x0, y0) to (x1, y1); NANUM across a zero step or from a NANUM.
double chord_slope(double x0, double y0, double x1, double y1) {
  if (x0 == NANUM || y0 == NANUM || x1 == NANUM || y1 == NANUM || x1 == x0) return NANUM;
  return (y1 - y0) / (x1 - x0);
}

}  // namespace

extern "C" int zomath_derivative(const double* pX, const double* pY, double* pDeriv,
                                 unsigned int nSize, int nMode) {
  if (!pX || !pY || !pDeriv) return ZOMATH_ERR_NULL_POINTER;
  if (nSize < 2) return ZOMATH_ERR_TOO_FEW_FOR_RANGE;
  if (nMode != ZOMATH_DERIV_MEAN && nMode != ZOMATH_DERIV_FORWARD && nMode != ZOMATH_DERIV_BACKWARD)
    return ZOMATH_ERR_BAD_ARGUMENT;
  // Point i + 1 is read before slot i is written, and nothing before it is read again, so the
  // output may share storage with the input.
  double x = pX[0], y = pY[0];
  double back = NANUM;  // slope from the previous point
  for (unsigned int i = 0; i < nSize; ++i) {
    const bool last = i + 1 == nSize;
    double forward = NANUM, xn = 0, yn = 0;
    if (!last) {
      xn = pX[i + 1];
      yn = pY[i + 1];
      forward = chord_slope(x, y, xn, yn);
    }
    double d;
    if (nMode == ZOMATH_DERIV_FORWARD) {
      d = last ? back : forward;
    } else if (nMode == ZOMATH_DERIV_BACKWARD) {
      d = i == 0 ? forward : back;
    } else if (i == 0 || back == NANUM) {
      d = last ? back : forward;
    } else {
      d = last || forward == NANUM ? back : (back + forward) * 0.5;
    }
    pDeriv[i] = d;
    back = forward;
    x = xn;
    y = yn;
  }
  return ZOMATH_OK;
}
