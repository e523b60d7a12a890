// Carlson's symmetric elliptic integrals RC, RF, RD and RJ.
#pragma once

#include "platform/error_record.h"

namespace zomath::platform {

// An argument is negative where it must not be, or more than one of x, y, z is zero.
inline constexpr int kCarlsonDomain = 1;
// A pole: y = 0 in RC, z = 0 in RD, r = 0 in RJ.
inline constexpr int kCarlsonPole = 2;
// The result overflows (arguments too close to a singular point).
inline constexpr int kCarlsonOverflow = 3;

// RC(x, y), x >= 0, y != 0; for y < 0 the Cauchy principal value.
double carlson_rc(double x, double y, NagError& err);
// RF(x, y, z), x, y, z >= 0, at most one of them zero.
double carlson_rf(double x, double y, double z, NagError& err);
// RD(x, y, z), x, y >= 0, at most one of them zero, z > 0.
double carlson_rd(double x, double y, double z, NagError& err);
// RJ(x, y, z, r), x, y, z >= 0, at most one of them zero, r != 0; for r < 0 the Cauchy
// principal value.
double carlson_rj(double x, double y, double z, double r, NagError& err);

}  // namespace zomath::platform
