// The smoothing dispatcher, the Fourier low-pass and the neighbourhood offsets of window shapes.
#include <climits>
#include <cmath>
#include <vector>

#include "platform/fft_filter.h"
#include "platform/workspace.h"
#include "zomath/curves.h"

namespace pf = zomath::platform;

static_assert(ZOMATH_FFT_BAD_SIZE == pf::kFftBadSize &&
                  ZOMATH_FFT_BAD_FILTER_TYPE == pf::kFftBadFilterType &&
                  ZOMATH_FFT_BAD_ARGUMENT == pf::kFftBadArgument &&
                  ZOMATH_FFT_NO_MEMORY == pf::kFftNoMemory,
              "the public Fourier filter codes are the platform's");

extern "C" int zomath_smooth(int nSize, const double* pSrc, double* pDst, int nLeft, int nMethod,
                             int nBoundary, int nRight, int nPolyOrder, int nDeriv,
                             double dPercent, bool bWeighted, bool bEdfAver) {
  if (nSize < 1) return ZOMATH_ERR_SIZE;
  if (!pSrc || !pDst) return ZOMATH_ERR_NULL_POINTER;
  if (static_cast<unsigned int>(nMethod) > 2 || static_cast<unsigned int>(nBoundary) > 4)
    return ZOMATH_ERR_BAD_ARGUMENT;
  switch (nMethod) {
    case ZOMATH_SMOOTH_ADJACENT_AVERAGING:
      return zomath_adjave_smooth(pSrc, pDst, static_cast<unsigned int>(nSize), nLeft, nBoundary,
                                  bWeighted);
    case ZOMATH_SMOOTH_SAVITZKY_GOLAY:
      return zomath_savitsky_golay(pSrc, pDst, static_cast<unsigned int>(nSize), nLeft, nRight,
                                   nPolyOrder, nDeriv, static_cast<unsigned int>(nBoundary));
    case ZOMATH_SMOOTH_PERCENTILE:
      return zomath_median_filter(nSize, pSrc, pDst, nLeft, dPercent,
                                  static_cast<unsigned int>(nBoundary), bEdfAver);
    default:
      return ZOMATH_ERR_NOT_FOUND;
  }
}

extern "C" int zomsp_fft_filter_smoothing(unsigned int nSize, const double* pSrc, double* pDst,
                                          double dCutoff) {
  if (!pSrc || !pDst) return ZOMATH_ERR_NULL_POINTER;
  if (nSize == 0 || nSize > INT_MAX) return pf::kFftBadSize;  // FFTW counts in int
  try {
    // The response at bin k is for the frequency k / (nSize - 1): dCutoff is in cycles per
    // sample (the last bin lies near 0.5), with the half-power point at dCutoff itself.
    std::vector<double> window = pf::buffer<double>(nSize);
    const double step = nSize > 1 ? 1.0 / (nSize - 1.0) : 1.0;
    if (const int rc = pf::fft_filter_window(nSize, pf::kFftLowPass, window.data(), 0.0, dCutoff,
                                             step, 1))
      return rc;
    return pf::fft_fft_filter(nSize, pSrc, pDst, window.data());
  } catch (...) {
    return pf::kFftNoMemory;
  }
}

extern "C" int get_sampling_window_offset(int* pOffsets, int* pDX, int* pDY, int nStride,
                                          int nWidth, int nHeight, int nShape) {
  if (nWidth == 1 && nHeight == 1) return 0;
  if (nWidth < 1 || nHeight < 1 || nStride < 1) return ZOMATH_ERR_NOT_FOUND;
  if (!pOffsets || !pDX || !pDY) return ZOMATH_ERR_NOT_FOUND;
  const long long w = nWidth / 2, h = nHeight / 2;
  if ((static_cast<long long>(nWidth) * nHeight) % 2 == 0) return ZOMATH_ERR_NOT_FOUND;
  if ((nShape == ZOMATH_WINDOW_DISC || nShape == ZOMATH_WINDOW_DIAGONALS) && nWidth != nHeight)
    return ZOMATH_ERR_NOT_FOUND;
  if (nShape < ZOMATH_WINDOW_RECTANGLE || nShape > ZOMATH_WINDOW_DIAGONALS)
    return ZOMATH_ERR_NOT_FOUND;
  // Every offset must be an int: the farthest is w + h * stride.
  if (w + h * static_cast<long long>(nStride) > 2147483647LL) return ZOMATH_ERR_NOT_FOUND;
  int count = 0;
  auto put = [&](long long dx, long long dy, long long dyLabel) {
    pOffsets[count] = static_cast<int>(dx + dy * nStride);
    pDX[count] = static_cast<int>(dx);
    pDY[count] = static_cast<int>(dyLabel);
    ++count;
  };
  switch (nShape) {
    case ZOMATH_WINDOW_RECTANGLE:
      // Row by row; the dy written counts from -w whatever the height, an oddity kept.
      for (long long r = 0; r < nHeight; ++r)
        for (long long dx = -w; dx <= w; ++dx) put(dx, r - h, r - w);
      break;
    case ZOMATH_WINDOW_DISC:
      for (long long dy = -h; dy <= h; ++dy)
        for (long long dx = -w; dx <= w; ++dx)
          if (dx * dx + dy * dy <= w * w) put(dx, dy, dy);
      break;
    case ZOMATH_WINDOW_CROSS:
      for (long long dy = -h; dy <= h; ++dy) put(0, dy, dy);
      for (long long dx = -w; dx <= w; ++dx)
        if (dx != 0) put(dx, 0, 0);
      break;
    default:  // ZOMATH_WINDOW_DIAGONALS
      for (long long d = -h; d <= h; ++d) put(d, d, d);
      for (long long dx = -w; dx <= -1; ++dx) put(dx, -dx, -dx);
      for (long long dx = 1; dx <= w; ++dx) put(dx, -dx, -dx);
      break;
  }
  return count;
}
