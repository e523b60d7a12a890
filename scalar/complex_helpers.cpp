// Elementary functions of a complex argument, each exported under its unique name (sqrtz, ...)
// and under the C library's name as a non-default symbol version (sqrt@ZOMATH_1, ...). NANUM in
// either half of an argument gives NANUM in both halves of the result; so does a result with no
// finite value (a pole, an overflow).
#include <climits>
#include <cmath>
#include <complex>

#include "core/symbol_version.h"
#include "zomath/scalar.h"

namespace {

using Complex = std::complex<double>;

constexpr d_complex kMissing = {NANUM, NANUM};

bool missing(d_complex z) { return z.re == NANUM || z.im == NANUM; }

Complex to_std(d_complex z) { return {z.re, z.im}; }

d_complex from_std(Complex z) {
  if (!std::isfinite(z.real()) || !std::isfinite(z.imag())) {
    if (std::isnan(z.real()) && std::isnan(z.imag())) return {z.real(), z.imag()};
    return kMissing;
  }
  return {z.real(), z.imag()};
}

bool is_zero(d_complex z) { return z.re == 0.0 && z.im == 0.0; }

}  // namespace

extern "C" {

d_complex sqrtz(d_complex z) { return missing(z) ? kMissing : from_std(std::sqrt(to_std(z))); }

d_complex sinz(d_complex z) { return missing(z) ? kMissing : from_std(std::sin(to_std(z))); }

d_complex cosz(d_complex z) { return missing(z) ? kMissing : from_std(std::cos(to_std(z))); }

d_complex tanz(d_complex z) {
  if (missing(z)) return kMissing;
  if (std::abs(std::cos(to_std(z))) == 0.0) return kMissing;
  return from_std(std::tan(to_std(z)));
}

d_complex logz(d_complex z) {
  if (missing(z) || is_zero(z)) return kMissing;
  return from_std(std::log(to_std(z)));
}

d_complex expz(d_complex z) { return missing(z) ? kMissing : from_std(std::exp(to_std(z))); }

double cabsz(d_complex z) { return missing(z) ? NANUM : std::hypot(z.re, z.im); }

d_complex ipow(d_complex z, int n) {
  if (missing(z)) return kMissing;
  if (n == 0) return {1.0, 0.0};
  if (is_zero(z)) return n < 0 ? kMissing : d_complex{0.0, 0.0};
  // Binary powering of z or 1/z: about 2 log2 |n| roundings.
  Complex base = n < 0 ? 1.0 / to_std(z) : to_std(z);
  unsigned int e = n < 0 ? 0u - static_cast<unsigned int>(n) : static_cast<unsigned int>(n);
  Complex result(1.0, 0.0);
  while (e != 0) {
    if (e & 1u) result *= base;
    e >>= 1;
    if (e != 0) base *= base;
  }
  return from_std(result);
}

d_complex rpow(d_complex z, double r) {
  if (missing(z) || r == NANUM) return kMissing;
  if (is_zero(z)) {
    if (r < 0.0) return kMissing;
    return r == 0.0 ? d_complex{1.0, 0.0} : d_complex{0.0, 0.0};
  }
  return from_std(std::pow(to_std(z), r));
}

d_complex cpowz(d_complex z, d_complex w) {
  if (missing(z) || missing(w)) return kMissing;
  if (is_zero(z)) {
    if (w.im != 0.0 || w.re < 0.0) return kMissing;
    return w.re == 0.0 ? d_complex{1.0, 0.0} : d_complex{0.0, 0.0};
  }
  return from_std(std::pow(to_std(z), to_std(w)));
}

}  // extern "C"

// The C library's names, as non-default versions only (see core/symbol_version.h).
ZOMATH_EXPORT_SHADOWED(sqrtz, sqrt);
ZOMATH_EXPORT_SHADOWED(sinz, sin);
ZOMATH_EXPORT_SHADOWED(cosz, cos);
ZOMATH_EXPORT_SHADOWED(tanz, tan);
ZOMATH_EXPORT_SHADOWED(logz, log);
ZOMATH_EXPORT_SHADOWED(expz, exp);
ZOMATH_EXPORT_SHADOWED(cabsz, cabs);
ZOMATH_EXPORT_SHADOWED(cpowz, cpow);
