// Filtering of a real series in the frequency domain on FFTW3: the response of a filter at the
// frequencies of the discrete Fourier transform, and the transform, product and inverse.
//
// The series is taken as one period of a periodic signal (no padding, no detrending), so the
// jump from its last value back to its first is part of what the filter sees. Plans are made
// with FFTW_ESTIMATE, which costs no trial transforms. FFTW's planner keeps global tables; the
// first call asks FFTW to lock them, so host threads may filter at the same time. NANUM is an ordinary
// number here; a NaN or an infinity in the data spreads to every output.
#pragma once

#include <cstddef>

namespace zomath::platform {

// Failure codes (positive: they are the module's own, passed on by the exports).
constexpr int kFftBadSize = 1;        // no points
constexpr int kFftBadFilterType = 2;  // a filter type other than kFftLowPass
constexpr int kFftBadArgument = 3;    // null array, cut-off NaN or below 0, step not above 0
constexpr int kFftNoMemory = 4;       // working storage or an FFTW plan could not be had

// Filter type of fft_filter_window: low-pass.
constexpr int kFftLowPass = 4;

// Fills window[0..n) with the response of a filter at the frequency of each transform bin:
// element k answers for f_k = min(k, n - k) * dStep (so bins k and n - k, which hold one
// frequency in a real series, share a value). Element 0, the level, is 1 whatever the cut-off.
//
// Type kFftLowPass: with fc = dHigh and d = nRollOff * dStep / 2, the response is 1 for
// f <= fc - d, 0 for f >= fc + d, and falls between them as the raised cosine
// (1 + cos(pi (f - fc + d) / (2 d))) / 2, which is 1/2 at fc itself. nRollOff 0 (or below) makes
// it ideal: 1 up to fc inclusive, 0 beyond. With nRollOff 1 only a bin within half a step of fc
// takes a value between 0 and 1. dLow is not read by this type.
//
// dStep is only read for n >= 2, where it must be finite and above 0. Returns 0 or a code above.
int fft_filter_window(std::size_t n, int nType, double* window, double dLow, double dHigh,
                      double dStep, int nRollOff);

// out = the inverse transform of (the transform of in, bin k times window[k]), scaled by 1 / n
// so that a window of ones gives the data back (to rounding). Real-to-complex and back: bins 0
// to n / 2 are read from the window. in and out may be the same array; out is written only on
// success. Returns 0 or a code above.
int fft_fft_filter(std::size_t n, const double* in, double* out, const double* window);

// The same in place on data[0..n).
inline int fft_fft_filter(std::size_t n, double* data, const double* window) {
  return fft_fft_filter(n, data, data, window);
}

}  // namespace zomath::platform
