// Real branches of the Lambert W function: w exp(w) = z.
#pragma once

#include "platform/error_record.h"

namespace zomath::platform {

// The branch is neither 0 nor -1.
inline constexpr int kLambertBadBranch = 1;
// z has no real value on the branch: z < -1/e, or z >= 0 on branch -1.
inline constexpr int kLambertOutOfDomain = 2;

// W(z) on branch 0 (W >= -1) or -1 (W <= -1). With bOffset the argument x is the offset of z
// from the branch point, z = -1/e + x, so that points next to -1/e keep all their digits.
double lambert_w(double x, int nBranch, bool bOffset, NagError& err);

}  // namespace zomath::platform
