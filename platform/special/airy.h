// Airy functions Ai, Bi and their derivatives of real argument.
#pragma once

#include "platform/error_record.h"

namespace zomath::platform {

// Failure codes.
constexpr int kAiryOverflow = 1;   // Bi, Bi' past x = 104.436, 104.209: beyond the largest double
constexpr int kAiryNoLimit = 2;    // Ai', Bi' below x = -1e200, where they oscillate unboundedly

double airy_ai(double x);  // no fail
double airy_bi(double x, NagError& err);
double airy_ai_deriv(double x, NagError& err);
double airy_bi_deriv(double x, NagError& err);

}  // namespace zomath::platform
