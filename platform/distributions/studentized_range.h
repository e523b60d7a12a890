// The studentized range distribution: the range of `groups` independent standard normal
// values divided by an independent sqrt(chi-square(v) / v).
#pragma once

#include "platform/distributions/tail.h"
#include "platform/error_record.h"

namespace zomath::platform {

// Failure codes of the studentized range routines, those of all distribution routines.
inline constexpr int kStudentizedRangeBadDf = kDistributionBadParameter;          // v < 1 or NaN
inline constexpr int kStudentizedRangeBadGroups = kDistributionBadParameter;      // groups < 2
inline constexpr int kStudentizedRangeBadProbability = kDistributionBadArgument;  // p outside (0, 1)
inline constexpr int kStudentizedRangeNoConvergence = kDistributionNoConvergence; // search failed
inline constexpr int kStudentizedRangeBadArgument = kDistributionBadArgument;     // q is NaN

// P(Q <= q), to about 1e-12 absolute; 0 for q <= 0. v may be +infinity (known variance).
double studentized_range_lower(double q, double v, int groups, NagError& err);

// The q with P(Q <= q) = p, for 0 < p < 1, found to about 1e-12 relative.
double studentized_range_quantile(double p, double v, int groups, NagError& err);

}  // namespace zomath::platform
