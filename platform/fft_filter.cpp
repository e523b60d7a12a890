#include "platform/fft_filter.h"

#include <fftw3.h>

#include <algorithm>
#include <climits>
#include <cmath>

namespace zomath::platform {
namespace {

// Owns what FFTW handed out, whichever way the call ends.
struct FftwPlan {
  fftw_plan p = nullptr;
  ~FftwPlan() {
    if (p) fftw_destroy_plan(p);
  }
};
struct FftwSpectrum {
  fftw_complex* p = nullptr;
  ~FftwSpectrum() { fftw_free(p); }
};

// Planning and destroying plans touch FFTW's global tables. Asked once, FFTW guards them with a
// lock of its own, so calls from several host threads (and a host's own FFTW use) stay apart.
void make_planner_thread_safe() {
  static const bool done = (fftw_make_planner_thread_safe(), true);
  (void)done;
}

}  // namespace

int fft_filter_window(std::size_t n, int nType, double* window, double /*dLow*/, double dHigh,
                      double dStep, int nRollOff) {
  if (!window) return kFftBadArgument;
  if (n == 0) return kFftBadSize;
  if (nType != kFftLowPass) return kFftBadFilterType;
  if (!(dHigh >= 0)) return kFftBadArgument;
  if (n >= 2 && !(dStep > 0 && std::isfinite(dStep))) return kFftBadArgument;
  const double fc = dHigh;
  const double d = nRollOff > 0 ? nRollOff * dStep / 2 : 0.0;
  const double pi = 3.14159265358979323846;
  window[0] = 1.0;  // the level always passes
  for (std::size_t k = 1; k < n; ++k) {
    const double f = static_cast<double>(std::min(k, n - k)) * dStep;
    double h;
    if (d == 0) h = f <= fc ? 1.0 : 0.0;
    else if (f <= fc - d) h = 1.0;
    else if (f >= fc + d) h = 0.0;
    else h = 0.5 * (1.0 + std::cos(pi * (f - fc + d) / (2 * d)));
    window[k] = h;
  }
  return 0;
}

int fft_fft_filter(std::size_t n, const double* in, double* out, const double* window) {
  if (!in || !out || !window) return kFftBadArgument;
  if (n == 0 || n > static_cast<std::size_t>(INT_MAX)) return kFftBadSize;
  make_planner_thread_safe();
  const std::size_t bins = n / 2 + 1;
  FftwSpectrum spectrum;
  spectrum.p = fftw_alloc_complex(bins);
  if (!spectrum.p) return kFftNoMemory;
  // Both plans exist before anything is written, so that out changes only on success. An
  // out-of-place real-to-complex transform leaves its input alone, and FFTW_ESTIMATE planning
  // reads neither array.
  const int size = static_cast<int>(n);
  FftwPlan forward, backward;
  forward.p = fftw_plan_dft_r2c_1d(size, const_cast<double*>(in), spectrum.p, FFTW_ESTIMATE);
  backward.p = fftw_plan_dft_c2r_1d(size, spectrum.p, out, FFTW_ESTIMATE);
  if (!forward.p || !backward.p) return kFftNoMemory;
  fftw_execute(forward.p);
  const double scale = 1.0 / static_cast<double>(n);
  for (std::size_t k = 0; k < bins; ++k) {
    const double w = window[k] * scale;
    spectrum.p[k][0] *= w;
    spectrum.p[k][1] *= w;
  }
  fftw_execute(backward.p);
  return 0;
}

}  // namespace zomath::platform
