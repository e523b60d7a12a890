/* zomath: scalar functions of one or a few numbers.
 *
 * Special functions come in two forms that are separate computations and check each other: the
 * short name (bessel_j0) is the form the named function table calls, and returns NANUM where no
 * value exists; the prefixed name (zomath_bessel_j0) is the library's own series, recurrences
 * and rational approximations, with its own guards. A NANUM argument gives NANUM. */
#ifndef ZOMATH_SCALAR_H
#define ZOMATH_SCALAR_H

#include "zomath/core.h"

ZOMATH_EXTERN_C_BEGIN

/* ---- Angles ---- */

/* x / pi * 180 and x / 180 * pi; NANUM stays NANUM. */
ZOMATH_API double rad2deg(double x);
ZOMATH_API double deg2rad(double x);

/* ---- Bessel, Airy and Kelvin functions ---- */

/* Short forms: the value, or NANUM where none exists (Y, K, ker, kei at x <= 0, a value past the
 * largest double). NaN gives NaN. The fractional-order family takes the order as nu / 4 with
 * nu in -3..3: I needs x >= 0 (any x for nu = 0) and has no value at 0 for nu < 0. */
ZOMATH_API double bessel_j0(double x);
ZOMATH_API double bessel_j1(double x);
ZOMATH_API double bessel_y0(double x);  /* x > 0 */
ZOMATH_API double bessel_y1(double x);  /* x > 0; NANUM below 3.6e-309 (overflow) */
ZOMATH_API double bessel_i0(double x);  /* NANUM past |x| = 713.98 (overflow) */
ZOMATH_API double bessel_i1(double x);
ZOMATH_API double bessel_k0(double x);  /* x > 0 */
ZOMATH_API double bessel_k1(double x);  /* x > 0; NANUM below 5.6e-309 (overflow) */
ZOMATH_API double bessel_i0_scaled(double x); /* exp(-|x|) I0(x) */
ZOMATH_API double bessel_i1_scaled(double x); /* exp(-|x|) I1(x) */
ZOMATH_API double bessel_k0_scaled(double x); /* exp(x) K0(x), x > 0 */
ZOMATH_API double bessel_k1_scaled(double x); /* exp(x) K1(x), x > 0 */
ZOMATH_API double bessel_i_nu(double x, int nu);        /* I of order nu / 4 */
ZOMATH_API double bessel_i_nu_scaled(double x, int nu); /* exp(-|x|) I of order nu / 4 */
ZOMATH_API double bessel_k_nu(double x, int nu);        /* K of order nu / 4, x > 0 */
ZOMATH_API double bessel_k_nu_scaled(double x, int nu); /* exp(x) K of order nu / 4, x > 0 */
ZOMATH_API double airy_ai(double x);
ZOMATH_API double airy_bi(double x);       /* NANUM past x = 104.436 (overflow) */
ZOMATH_API double airy_ai_deriv(double x);
ZOMATH_API double airy_bi_deriv(double x); /* NANUM past x = 104.209 (overflow) */
ZOMATH_API double kelvin_ber(double x);    /* NANUM past |x| = 1009 where the value overflows */
ZOMATH_API double kelvin_bei(double x);
ZOMATH_API double kelvin_ker(double x);    /* x > 0 */
ZOMATH_API double kelvin_kei(double x);    /* x > 0 */

/* Prefixed forms: the library's own kernels, with their own guards; NANUM outside them, for
 * NaN and where the value overflows. J and Y are the C library's j0, j1, y0, y1 for
 * |x| <= 1e16 (Y: 0 < x <= 1e16). I, K of order 0 and 1 and their scaled forms have the domains
 * of the short forms. */
ZOMATH_API double zomath_bessel_j0(double x);
ZOMATH_API double zomath_bessel_j1(double x);
ZOMATH_API double zomath_bessel_y0(double x);
ZOMATH_API double zomath_bessel_y1(double x);
ZOMATH_API double zomath_bessel_i0(double x);
ZOMATH_API double zomath_bessel_i1(double x);
ZOMATH_API double zomath_bessel_k0(double x);
ZOMATH_API double zomath_bessel_k1(double x);
ZOMATH_API double zomath_bessel_i0_scaled(double x);
ZOMATH_API double zomath_bessel_i1_scaled(double x);
ZOMATH_API double zomath_bessel_k0_scaled(double x);
ZOMATH_API double zomath_bessel_k1_scaled(double x);
/* Order n / 4 with n non-zero and |n| < 4. I: 0 <= x <= 700.9217937 (scaled: <= 32768), x = 0
 * only for n > 0 (value 0); a negative n adds (2/pi) sin(pi |n|/4) K. K: x > 0, K(-n) = K(n). */
ZOMATH_API double zomath_bessel_i_nu(double x, int n);
ZOMATH_API double zomath_bessel_i_nu_scaled(double x, int n);
ZOMATH_API double zomath_bessel_k_nu(double x, int n);
ZOMATH_API double zomath_bessel_k_nu_scaled(double x, int n);
/* One kernel gives Ai, Bi, Ai', Bi' at x; each export returns its own. */
ZOMATH_API double zomath_airy_ai(double x);
ZOMATH_API double zomath_airy_bi(double x);
ZOMATH_API double zomath_airy_ai_deriv(double x);
ZOMATH_API double zomath_airy_bi_deriv(double x);
/* ber and bei at |x|; ker and kei need x > 0. */
ZOMATH_API double zomath_kelvin_ber(double x);
ZOMATH_API double zomath_kelvin_bei(double x);
ZOMATH_API double zomath_kelvin_ker(double x);
ZOMATH_API double zomath_kelvin_kei(double x);

/* ---- Gamma, error, exponential and other integrals, elliptic integrals, theta ---- */

/* ---- Complex helpers ---- */

ZOMATH_EXTERN_C_END

#endif /* ZOMATH_SCALAR_H */
