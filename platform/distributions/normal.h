// The standard normal distribution.
#pragma once

#include "platform/distributions/tail.h"
#include "platform/error_record.h"

namespace zomath::platform {

// The `tail` probability of x, each tail and the central probability erf(|x| / sqrt 2) computed
// directly. Fails with kDistributionBadArgument for NaN x.
double normal_probability(double x, Tail tail, NagError& err);

}  // namespace zomath::platform
