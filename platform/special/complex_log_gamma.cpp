// Stirling's series after the upward recurrence ln Gamma(z) = ln Gamma(z + n) - sum ln(z + k),
// with the logarithms of the shift summed one by one so that the imaginary part is the principal
// branch (Hare, "Computing the principal branch of log-Gamma", J. Algorithms 25, 1997).
#include "platform/special/complex_log_gamma.h"

#include <cmath>
#include <complex>

namespace zomath::platform {

d_complex complex_log_gamma(d_complex z, NagError& err) {
  using C = std::complex<double>;
  if (std::isnan(z.re) || std::isnan(z.im)) return {z.re + z.im, z.re + z.im};
  if (std::isinf(z.re) || std::isinf(z.im) || z.re < -1e6) {
    err.fail(kComplexLogGammaOutOfRange, "complex log gamma: argument out of range");
    return {0.0, 0.0};
  }
  if (z.im == 0.0 && z.re <= 0.0 && z.re == std::floor(z.re)) {
    err.fail(kComplexLogGammaPole, "complex log gamma: pole");
    return {0.0, 0.0};
  }
  // Shift until Re(z + n) >= 10, where nine terms of the series leave an error below 1e-17.
  constexpr double kShiftTo = 10.0;
  C w(z.re, z.im);
  double shiftRe = 0.0, shiftIm = 0.0;
  if (z.re < kShiftTo) {
    const int n = static_cast<int>(std::ceil(kShiftTo - z.re));
    C product(1.0, 0.0);
    for (int k = 0; k < n; ++k) {
      const C f = w + static_cast<double>(k);
      shiftIm += std::arg(f);
      product *= f;
      // Keep the product's modulus in range; its logarithm goes into the real sum.
      const double m = std::abs(product);
      if (m > 1e150 || m < 1e-150) {
        shiftRe += std::log(m);
        product /= m;
      }
    }
    shiftRe += std::log(std::abs(product));
    w += static_cast<double>(n);
  }
  static const double b[] = {1.0 / 12.0,          -1.0 / 360.0,       1.0 / 1260.0,
                             -1.0 / 1680.0,       1.0 / 1188.0,       -691.0 / 360360.0,
                             1.0 / 156.0,         -3617.0 / 122400.0, 43867.0 / 244188.0};
  const C winv = 1.0 / w;
  const C winv2 = winv * winv;
  C series = b[8];
  for (int i = 7; i >= 0; --i) series = series * winv2 + b[i];
  series *= winv;
  constexpr double kHalfLogTwoPi = 0.91893853320467274;
  const C lg = (w - 0.5) * std::log(w) - w + kHalfLogTwoPi + series;
  return {lg.real() - shiftRe, lg.imag() - shiftIm};
}

}  // namespace zomath::platform
