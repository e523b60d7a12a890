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

/* ---- Gamma, error, exponential and other integrals, elliptic integrals, theta ---- */

/* ---- Complex helpers ---- */

ZOMATH_EXTERN_C_END

#endif /* ZOMATH_SCALAR_H */
