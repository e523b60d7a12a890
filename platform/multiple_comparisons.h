// Simultaneous confidence intervals for the pairwise differences of k treatment means, with
// the pairs whose interval excludes zero flagged.
#pragma once

#include "platform/error_record.h"

namespace zomath::platform {

// The rule for the critical value T of the intervals mean_i - mean_j -+ T se_ij at level 1 - a,
// with m = k (k - 1) / 2 pairs and d residual degrees of freedom.
enum class IntervalType {
  TukeyKramer = 1,  // T = q(1 - a; k, d) / sqrt(2), q the studentized range quantile
  Bonferroni = 2,   // T = t(1 - a / (2 m); d)
  DunnSidak = 3,    // T = t(1 - a' / 2; d), a' = 1 - (1 - a)^(1 / m)
  Lsd = 4,          // T = t(1 - a / 2; d), no adjustment
  Scheffe = 5,      // T = sqrt((k - 1) F(1 - a; k - 1, d))
};

// Failure codes of simultaneous_intervals (nothing is written then).
inline constexpr int kIntervalsTooFewGroups = 481;      // k below 2
inline constexpr int kIntervalsBadDof = 482;            // residual degrees of freedom below 1
inline constexpr int kIntervalsBadLevel = 483;          // level not strictly between 0 and 1
inline constexpr int kIntervalsBadStandardError = 484;  // a standard error not positive finite,
                                                        // or a mean not finite
inline constexpr int kIntervalsNoCriticalValue = 485;   // the quantile search failed
inline constexpr int kIntervalsBadArgument = 486;       // a null array, an unknown type, or a
                                                        // stride below k

// The critical value T of `type` for k means, d degrees of freedom and confidence `level`.
double simultaneous_critical_value(IntervalType type, int k, double d, double level,
                                   NagError& fail);

// For the pairs (i, j), i = 1..k-1, j = 0..i-1 in this order: lcl and ucl receive
// means[i] - means[j] -+ T se[i * ldse + j] (the strict lower triangle of a row-major matrix of
// stride ldse is read), and sig 1 where the interval excludes zero, else 0. Returns 0 or a code.
int simultaneous_intervals(IntervalType type, int k, const double* means, double d,
                           const double* se, int ldse, double level, double* lcl, double* ucl,
                           int* sig, NagError& fail);

}  // namespace zomath::platform
