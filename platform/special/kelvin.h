// Kelvin functions ber, bei, ker, kei of real argument.
#pragma once

#include "platform/error_record.h"

namespace zomath::platform {

// Failure codes.
constexpr int kKelvinArgNotPositive = 1;  // ker, kei at x <= 0 (logarithmic singularity at 0)
constexpr int kKelvinOverflow = 2;        // |value| exceeds the largest double (|x| near 1010)

double kelvin_ber(double x, NagError& err);  // even in x
double kelvin_bei(double x, NagError& err);  // even in x
double kelvin_ker(double x, NagError& err);
double kelvin_kei(double x, NagError& err);

}  // namespace zomath::platform
