// The studentized range distribution: the range of `groups` independent standard normal
// values divided by an independent sqrt(chi-square(v) / v).
#pragma once

#include "platform/error_record.h"

namespace zomath::platform {

// Failure codes of the studentized range routines.
constexpr int kStudentizedRangeBadDf = 1;           // v < 1 or not a number
constexpr int kStudentizedRangeBadGroups = 2;       // groups < 2
constexpr int kStudentizedRangeBadProbability = 3;  // p outside (0, 1) for the quantile
constexpr int kStudentizedRangeNoConvergence = 4;   // the quantile search failed
constexpr int kStudentizedRangeBadArgument = 5;     // q is NaN

// P(Q <= q), to about 1e-12 absolute; 0 for q <= 0. v may be +infinity (known variance).
double studentized_range_lower(double q, double v, int groups, NagError& err);

// The q with P(Q <= q) = p, for 0 < p < 1, found to about 1e-12 relative.
double studentized_range_quantile(double p, double v, int groups, NagError& err);

}  // namespace zomath::platform
