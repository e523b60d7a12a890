// Peaks from derivatives: the sign changes of the slope, and the minima (maxima for negative
// peaks) of the second derivative, plain or smoothed.
#include <algorithm>
#include <cmath>

#include "core/kernels.h"
#include "peaks/peaks_internal.h"
#include "zomath/curves.h"
#include "zomath/peaks.h"

namespace zomath::peaks {
namespace {

const double kMissing = NANUM;

// The polarities nFlags asks for, positive first.
template <class F>
bool for_each_polarity(int flags, F f) {
  if ((flags & ZOMATH_PEAK_POSITIVE) && !f(false)) return false;
  if ((flags & ZOMATH_PEAK_NEGATIVE) && !f(true)) return false;
  return true;
}

// Signs of slopes as codes: 0 falling, 1 flat, 2 rising, 3 missing (across a zero step of x,
// from a NANUM, or NaN, where the slope is NANUM). Taken from the signs of the differences, so
// no quotient can underflow to 0.
enum : unsigned char { kFall = 0, kFlat = 1, kRise = 2, kGone = 3 };

// Sign of the slope at a point combined, for peaks of one polarity, from the forward slope f and
// the backward slope g: flat at a sharp extreme (opposite signs), their common sign where they
// agree. Where one of them is flat the point keeps the other's sign only on the side away from
// the top of a flat stretch, so that the stretch's first point in x is the zero next to the
// climb. Falling x reverses the signs of the slopes against the order of the points, so the rule
// is mirrored there.
unsigned char combined_sign(int f, int g, bool negative, bool rising) {
  if (f == kGone || g == kGone) return kGone;
  const int sf = f - 1, sg = g - 1;
  if (sf * sg < 0) return kFlat;
  if (sf * sg > 0) return static_cast<unsigned char>(f);
  const bool mean = (negative == rising) ? sf <= sg : sg <= sf;
  return static_cast<unsigned char>(mean ? sf + sg + 1 : kFlat);
}

// Slope code of the chord from point i to i + 1.
inline int chord_code(const double* x, const double* y, int i) {
  const double x0 = x[i], x1 = x[i + 1], y0 = y[i], y1 = y[i + 1];
  const double dx = x1 - x0, dy = y1 - y0;
  const bool gone = (x0 == NANUM) | (x1 == NANUM) | (y0 == NANUM) | (y1 == NANUM) | (dx == 0) |
                    (dx != dx) | (dy != dy);
  const int sign = ((dy > 0) - (dy < 0)) * ((dx > 0) - (dx < 0));
  return gone ? kGone : sign + 1;
}

// The points where the combined slope can be zero or missing, and the slope codes of the chords
// where such points are dense. An event is a point where the chords either side differ in sign,
// or one is flat, NaN or touches a NANUM; or an end. Elsewhere both chords share a sign, which
// is then the slope's, and no peak can be. The same pass tells the order of x as
// zomath_is_monotonic answers it (2 rising, 1 falling, 0 neither; ties allowed).
//
// The data are read in blocks of kEventBlock chords by loops without branches, so that they
// vectorise; the product of a chord's two differences stands for its sign in the search for
// events (a product that underflows to 0 only adds a point to look at). A block with many events
// (noise) also gets the exact codes of its chords, so that each is worked out once.
constexpr int kEventBlock = 256;

// The search for events, compiled for the baseline and for wider vector units. Returns their
// number; order receives the order of x.
ZOMATH_VECTOR_CLONES int find_slope_events(const double* x, const double* y, int n, int* ev,
                                           unsigned char* cc, unsigned char* dense, int& order) {
  constexpr int kBlock = kEventBlock;
  double chord[kBlock + 1], step[kBlock + 1], gone[kBlock + 2], code[kBlock + 1];
  int steps = n == 2 ? (x[0] <= x[1] ? 0 : 1) | (x[0] >= x[1] ? 0 : 2) : 0;  // bit 1: not rising,
  int found = 0;                                                             // bit 2: not falling
  ev[found++] = 0;
  for (int b = 0, s = 1; s < n - 1; ++b, s += kBlock) {  // points s .. s + len - 1
    const int len = std::min(kBlock, n - 1 - s), before = found;
    const double* bx = x + s - 1;
    const double* by = y + s - 1;
    for (int k = 0; k <= len; ++k) {
      chord[k] = (by[k + 1] - by[k]) * (bx[k + 1] - bx[k]);
      step[k] = (bx[k] <= bx[k + 1] ? 0.0 : 1.0) + (bx[k] >= bx[k + 1] ? 0.0 : 2.0);
    }
    for (int k = 0; k < len + 2; ++k) gone[k] = (bx[k] == NANUM ? 1.0 : 0.0) + (by[k] == NANUM ? 1.0 : 0.0);
    for (int k = 0; k <= len; ++k) steps |= static_cast<int>(step[k]);
    for (int k = 0; k < len; ++k) {
      ev[found] = s + k;
      found += (chord[k] * chord[k + 1] > 0 ? 0.0 : 1.0) + gone[k] + gone[k + 1] + gone[k + 2] != 0;
    }
    dense[b] = found - before > len / 8;
    if (!dense[b]) continue;
    for (int k = 0; k <= len; ++k) {
      const double x0 = bx[k], x1 = bx[k + 1], y0 = by[k], y1 = by[k + 1];
      const double dx = x1 - x0, dy = y1 - y0;
      const double sx = (dx > 0 ? 1.0 : 0.0) - (dx < 0 ? 1.0 : 0.0), sy = (dy > 0 ? 1.0 : 0.0) - (dy < 0 ? 1.0 : 0.0);
      const double faults = (x0 == NANUM ? 1.0 : 0.0) + (x1 == NANUM ? 1.0 : 0.0) + (y0 == NANUM ? 1.0 : 0.0) +
                            (y1 == NANUM ? 1.0 : 0.0) + (dx == 0 ? 1.0 : 0.0) + (dx != dx ? 1.0 : 0.0) +
                            (dy != dy ? 1.0 : 0.0);
      const double missing = faults != 0 ? 1.0 : 0.0;
      code[k] = 1.0 + 2.0 * missing + (1.0 - missing) * (sx * sy);  // selected by arithmetic
    }
    for (int k = 0; k <= len; ++k) cc[s - 1 + k] = static_cast<unsigned char>(code[k]);
  }
  if (n > 1) ev[found++] = n - 1;
  order = !(steps & 1) ? 2 : !(steps & 2) ? 1 : 0;
  return found;
}

struct SlopeEvents {
  static constexpr int kBlock = kEventBlock;
  NRVec<int> at;                // the events, ascending
  NRVec<unsigned char> codes;   // chord j's code, where dense[j / kBlock] is set
  NRVec<unsigned char> dense;
  int count = 0;
  int order = 0;

  SlopeEvents(const double* x, const double* y, int n)
      : at(n), codes(n), dense(static_cast<unsigned char>(0), n / kBlock + 2) {
    count = find_slope_events(x, y, n, at.Data(), codes.Data(), dense.Data(), order);
  }
};

// Peaks where the unsmoothed slope changes sign: a combined slope of zero, among the events,
// whose neighbour on the side the curve climbs from rises.
bool slope_sign_peaks(const Curve& c, const SlopeEvents& e, int flags, PeakList& out) {
  const int n = c.n, last = n - 2;
  const unsigned char* const dense = e.dense.Data();
  const unsigned char* const codes = e.codes.Data();
  const int* const at = e.at.Data();
  const auto chord = [&](int j) {
    return dense[j / SlopeEvents::kBlock] ? codes[j] : chord_code(c.x, c.y, j);
  };
  const bool anySign = flags & ZOMATH_PEAK_ANY_SIGN;
  NRVec<int> found_at(e.count);
  int* const hits = found_at.Data();
  return for_each_polarity(flags, [&](bool negative) {
    unsigned char table[4][4];
    for (int f = 0; f < 4; ++f)
      for (int g = 0; g < 4; ++g) table[f][g] = combined_sign(f, g, negative, c.rising);
    // The forward slope at i is the chord to i + 1 (at the last point, the one before); the
    // backward slope is the forward one at i - 1 (at the first point, its own).
    const auto slope = [&](int i) { return table[chord(std::min(i, last))][chord(i > 0 ? i - 1 : 0)]; };
    // Without branches on the data, which would be mispredicted at every other point of noise.
    const bool before = negative != c.rising;
    int found = 0;
    for (int k = 0; k < e.count; ++k) {
      const int i = at[k], j = before ? std::max(i - 1, 0) : i + 1;
      hits[found] = i;
      found += (j < n) & (slope(i) == kFlat) & (slope(std::min(j, n - 1)) == kRise);
    }
    for (int k = 0; k < found; ++k) {
      const int i = hits[k];
      const double px = c.x[i], py = c.y[i];
      if (absent(px) || absent(py) || (!anySign && (negative ? py > 0 : py < 0))) continue;
      if (!out.add(px, py, i)) return false;
    }
    return true;
  });
}

// The first-derivative finder without smoothing: the order of x comes with the events, so the
// curve is read once more only when it must be sorted.
int slope_finder(int* pnSize, const double* pX, const double* pY, double* pPeakX, double* pPeakY,
                 int* pPeakIdx, int flags) {
  if (!pnSize || !pX || !pY || !pPeakX || !pPeakY) return ZOMATH_ERR_NULL_POINTER;
  const int n = *pnSize;
  if (n < 1) return ZOMATH_ERR_BAD_ARGUMENT;
  if (n < 2) return ZOMATH_PEAK_ERR_SLOPES;
  try {
    Output o(pPeakX, pPeakY, pPeakIdx, n);
    const SlopeEvents raw(pX, pY, n);
    Curve c;
    prepare(c, pX, pY, n, raw.order);
    if (!(c.sorted ? slope_sign_peaks(c, SlopeEvents(c.x, c.y, n), flags, o.list)
                   : slope_sign_peaks(c, raw, flags, o.list)))
      return ZOMATH_PEAK_ERR_DETECTOR;
    map_back(c, o.list);
    *pnSize = o.list.count;
    return ZOMATH_OK;
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

// Writes D of the searched curve to the caller's array at the input points.
void give_back(const Curve& c, const double* D, double* pOut) {
  if (!pOut) return;
  for (int k = 0; k < c.n; ++k) pOut[c.sorted ? c.index[k] : k] = D[k];
}

// Second derivative by differences, each smoothed by adjacent averaging over w points; a failed
// averaging over more than 3 points is fatal, over fewer it leaves the difference as it is.
int averaged_second_derivative(const Curve& c, int w, double* D) {
  NRVec<double> d1(c.n), tmp(c.n);
  const int half = (w - 1) / 2;
  const auto smooth = [&](double* v) {
    const int rc = zomath_adjave_smooth(v, tmp.Data(), static_cast<unsigned int>(c.n), half, 0, false);
    if (rc == 0) {
      if (c.n > 1) std::copy(tmp.Data(), tmp.Data() + c.n, v);
    } else if (w > 3) {
      return false;
    }
    return true;
  };
  if (zomath_derivative(c.x, c.y, d1.Data(), c.n, ZOMATH_DERIV_MEAN) != 0) return ZOMATH_PEAK_ERR_SLOPES;
  if (!smooth(d1.Data())) return ZOMATH_PEAK_ERR_SMOOTHING;
  if (zomath_derivative(c.x, d1.Data(), D, c.n, ZOMATH_DERIV_MEAN) != 0) return ZOMATH_PEAK_ERR_SLOPES;
  if (!smooth(D)) return ZOMATH_PEAK_ERR_SMOOTHING;
  return ZOMATH_OK;
}

// The averaging width from the noise: 25 noise levels measured against half a per cent of the
// y range, at most a fifth of the points.
int width_from_noise(const Curve& c) {
  double lo = INFINITY, hi = -INFINITY;
  for (int i = 0; i < c.n; ++i)
    if (!absent(c.y[i])) {
      lo = std::min(lo, c.y[i]);
      hi = std::max(hi, c.y[i]);
    }
  const double noise = noise_level(c.y, static_cast<std::size_t>(c.n));
  const double cap = std::trunc(0.2 * c.n);
  if (!(hi > lo) || noise == NANUM) return 0;
  const double w = std::trunc(25.0 * noise / (0.005 * (hi - lo)));
  return static_cast<int>(w > cap || !(w >= 0) ? cap : w);
}

int second_derivative(const Curve& c, int method, int nWindow, int nPolyOrder, double* D,
                      int& mode) {
  const unsigned int n = static_cast<unsigned int>(c.n);
  const int half = (nWindow - 1) / 2;
  switch (method) {
    case ZOMATH_PEAK_2ND_AVERAGED:
      mode = kCurvature;
      return averaged_second_derivative(c, nWindow < 0 ? width_from_noise(c) : nWindow, D);
    case ZOMATH_PEAK_2ND_SAVITZKY_GOLAY:
      mode = kSmoothCurvature;
      if (zomath_savitsky_golay_derivative(c.x, c.y, D, n, half, -1, nPolyOrder, 2, false) != 0)
        return ZOMATH_PEAK_ERR_SMOOTHING;
      return ZOMATH_OK;
    case ZOMATH_PEAK_2ND_SAVITZKY_GOLAY_TWICE: {
      mode = kSmoothCurvature;
      NRVec<double> d1(c.n);
      if (zomath_savitsky_golay_derivative(c.x, c.y, d1.Data(), n, half, -1, nPolyOrder, 1, false) ||
          zomath_savitsky_golay_derivative(c.x, d1.Data(), D, n, half, -1, nPolyOrder, 1, false))
        return ZOMATH_PEAK_ERR_SMOOTHING;
      return ZOMATH_OK;
    }
    default: {
      mode = kCurvature;
      NRVec<double> d1(c.n);
      if (zomath_derivative(c.x, c.y, d1.Data(), n, ZOMATH_DERIV_MEAN) ||
          zomath_derivative(c.x, d1.Data(), D, n, ZOMATH_DERIV_MEAN))
        return ZOMATH_PEAK_ERR_SLOPES;
      return ZOMATH_OK;
    }
  }
}

// The frame of the derivative finders: checks and the searched curve; derive(curve, D, mode)
// fills D, the derivative searched, and the detector's mode for it. D goes back to pDeriv (in
// the caller's order; null: not wanted), the peaks of each polarity that nFlags asks for are
// detected on it, and mapped back.
template <class Derive>
int derivative_finder(int* pnSize, const double* pX, const double* pY, double* pPeakX,
                      double* pPeakY, int* pPeakIdx, int nFlags, double* pDeriv, Derive derive) {
  if (!pnSize || !pX || !pY || !pPeakX || !pPeakY) return ZOMATH_ERR_NULL_POINTER;
  const int n = *pnSize;
  if (n < 1) return ZOMATH_ERR_BAD_ARGUMENT;
  try {
    Curve c;
    prepare(c, pX, pY, n);
    Output o(pPeakX, pPeakY, pPeakIdx, n);
    NRVec<double> D(n);
    int mode = kCurvature;
    if (const int rc = derive(c, D.Data(), mode)) return rc;
    give_back(c, D.Data(), pDeriv);
    const bool ok = for_each_polarity(nFlags, [&](bool negative) {
      return detect(c.x, c.y, D.Data(), c.n, c.rising, negative, nFlags, mode, &kMissing, o.list);
    });
    if (!ok) return ZOMATH_PEAK_ERR_DETECTOR;
    map_back(c, o.list);
    *pnSize = o.list.count;
    return ZOMATH_OK;
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

}  // namespace
}  // namespace zomath::peaks

using namespace zomath;
using namespace zomath::peaks;

extern "C" {

int zomath_find_peaks_1st_derivative(int* pnSize, const double* pX, const double* pY,
                                     double* pPeakX, double* pPeakY, int* pPeakIdx, int nFlags,
                                     bool bSmooth, int nWindow, int nPolyOrder) {
  if (bSmooth && pnSize && pX && pY && pPeakX && pPeakY && *pnSize >= 1 &&
      (nWindow < 4 || nPolyOrder < 1 || nWindow <= nPolyOrder))
    return ZOMATH_PEAK_ERR_SMOOTHING;
  if (!bSmooth) return slope_finder(pnSize, pX, pY, pPeakX, pPeakY, pPeakIdx, nFlags);
  // The Savitzky-Golay slope, its sign changes passed through exact zeros.
  return derivative_finder(pnSize, pX, pY, pPeakX, pPeakY, pPeakIdx, nFlags, nullptr,
                           [&](const Curve& c, double* D, int& mode) -> int {
    mode = kSmoothSlope;
    if (zomath_savitsky_golay_derivative(c.x, c.y, D, static_cast<unsigned int>(c.n),
                                         (nWindow - 1) / 2, -1, nPolyOrder, 1, true) != 0)
      return ZOMATH_PEAK_ERR_SMOOTHING;
    return ZOMATH_OK;
  });
}

int zomath_find_peaks_2nd_derivative(int* pnSize, const double* pX, const double* pY,
                                     double* pPeakX, double* pPeakY, int* pPeakIdx, int nFlags,
                                     int nMethod, double* pSecondDeriv, int nWindow,
                                     int nPolyOrder) {
  const bool golay = nMethod == ZOMATH_PEAK_2ND_SAVITZKY_GOLAY ||
                     nMethod == ZOMATH_PEAK_2ND_SAVITZKY_GOLAY_TWICE;
  if (pnSize && pX && pY && pPeakX && pPeakY && *pnSize >= 1 &&
      ((nMethod == ZOMATH_PEAK_2ND_AVERAGED && nWindow == 0) ||
       (golay && (nWindow < 4 || nPolyOrder < 1 || nWindow <= nPolyOrder))))
    return ZOMATH_PEAK_ERR_SMOOTHING;
  return derivative_finder(pnSize, pX, pY, pPeakX, pPeakY, pPeakIdx, nFlags, pSecondDeriv,
                           [&](const Curve& c, double* D, int& mode) {
    return second_derivative(c, nMethod, nWindow, nPolyOrder, D, mode);
  });
}

int zomsp_find_peaks_2nd_derivative(int* pnSize, const double* pX, const double* pY,
                                    double* pPeakX, double* pPeakY, int* pPeakIdx, int nFlags,
                                    double dCutoff, double* pSecondDeriv) {
  return derivative_finder(pnSize, pX, pY, pPeakX, pPeakY, pPeakIdx, nFlags, pSecondDeriv,
                           [&](const Curve& c, double* D, int& mode) -> int {
    const unsigned int n = static_cast<unsigned int>(c.n);
    NRVec<double> d1(c.n);
    mode = kCurvature;
    // Each difference is low-pass filtered before the next one is taken.
    if (zomath_derivative(c.x, c.y, d1.Data(), n, ZOMATH_DERIV_MEAN) != 0) return ZOMATH_PEAK_ERR_SLOPES;
    if (const int rc = zomsp_fft_filter_smoothing(n, d1.Data(), d1.Data(), dCutoff)) return rc;
    if (zomath_derivative(c.x, d1.Data(), D, n, ZOMATH_DERIV_MEAN) != 0) return ZOMATH_PEAK_ERR_SLOPES;
    return zomsp_fft_filter_smoothing(n, D, D, dCutoff);
  });
}

}  // extern "C"
