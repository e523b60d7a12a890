// Conversions between radians and degrees.
#include <cmath>

#include "zomath/scalar.h"

namespace {
const double kPi = std::acos(-1.0);
}

extern "C" {

double rad2deg(double x) { return x == NANUM ? NANUM : x / kPi * 180.0; }

double deg2rad(double x) { return x == NANUM ? NANUM : x / 180.0 * kPi; }

}  // extern "C"
