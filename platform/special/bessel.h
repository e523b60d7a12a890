// Bessel functions of real argument: J and Y of order 0 and 1, the modified functions I and K of
// order 0, 1 and of the fractional orders nu / 4, plain and exponentially scaled. A routine with
// an error argument reports failure exactly where its function has no finite real value.
#pragma once

#include "platform/error_record.h"

namespace zomath::platform {

// Failure codes.
constexpr int kBesselArgNotPositive = 1;   // x <= 0 where the function is undefined (Y, K)
constexpr int kBesselOverflow = 2;         // |value| exceeds the largest double
constexpr int kBesselOrderOutOfRange = 3;  // fractional order nu / 4 with |nu| > 3
constexpr int kBesselArgNegative = 4;      // x < 0 for I of non-integer order (complex value)

double bessel_j0(double x);  // no fail
double bessel_j1(double x);  // no fail
double bessel_y0(double x, NagError& err);
double bessel_y1(double x, NagError& err);

double bessel_i0(double x, NagError& err);  // overflow past |x| = 713.98...
double bessel_i1(double x, NagError& err);
double bessel_k0(double x, NagError& err);  // x > 0
double bessel_k1(double x, NagError& err);  // x > 0; overflows for x below 5.6e-309

double bessel_i0_scaled(double x);  // exp(-|x|) I0(x), no fail
double bessel_i1_scaled(double x);  // exp(-|x|) I1(x), no fail
double bessel_k0_scaled(double x, NagError& err);  // exp(x) K0(x), x > 0
double bessel_k1_scaled(double x, NagError& err);  // exp(x) K1(x), x > 0

// Order nu / 4 for nu in -3..3. I: x >= 0 (any x for nu = 0), no value at x = 0 for nu < 0.
// K: x > 0, and K of order -v equals K of order v.
double bessel_i_nu(double x, int nu, NagError& err);
double bessel_i_nu_scaled(double x, int nu, NagError& err);  // exp(-|x|) I
double bessel_k_nu(double x, int nu, NagError& err);
double bessel_k_nu_scaled(double x, int nu, NagError& err);  // exp(x) K

}  // namespace zomath::platform
