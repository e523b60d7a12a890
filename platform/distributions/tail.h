// What the distribution routines share: the tail a probability is asked for, and the failure
// codes they report in NagError::code.
#pragma once

#include "platform/error_record.h"

namespace zomath::platform {

// Failure codes of the distribution routines (0 is success).
inline constexpr int kDistributionBadArgument = 1;   // variate or probability NaN or out of domain
inline constexpr int kDistributionBadParameter = 2;  // degrees of freedom, shape, scale, count
                                                     // or correlation out of range
inline constexpr int kDistributionNoConvergence = 3; // an iteration or series did not settle

// Records a failure in err and returns NaN, the value a routine gives when it fails.
double distribution_failure(NagError& err, int code, const char* text);

// Which probability a distribution routine returns for a variate x. The values are the option
// numbers the exports' tail codes map to. L = P(X <= x) and U = P(X > x) are each computed
// directly, never as one minus the other; the two-sided forms are built from whichever is
// smaller, so for the symmetric families (normal, Student t) they are P(|X| >= |x|) and
// P(|X| < |x|).
enum class Tail : int {
  Lower = 1329,     // L; tail code 2 and every code not listed below
  Upper = 1330,     // U; tail code 1
  Central = 1331,   // 1 - 2 min(L, U): the probability of the central interval x bounds; code 3
  Nearer = 1332,    // min(L, U): the one-sided probability beyond x; code 4
  TwoSided = 1333,  // 2 min(L, U): the two-sided significance of x; code 0
  Farther = 1334,   // max(L, U) = 1 - min(L, U); code 5
};

// The tail an export's nTail selects: 2 lower, 1 upper, 0 two-sided, 3 central, 4 nearer,
// 5 farther; any other value is the lower tail.
Tail tail_from_code(int nTail);

// The probability of `tail` from the smaller one-sided probability, computed directly (the lower
// one when lowerIsSmaller); the other is its complement, at least about 1/2, so nothing is lost.
double tails_from_smaller(Tail tail, bool lowerIsSmaller, double smaller);

// What a quantile search looks for: the smaller tail of the distribution (upper or not) and its
// probability min(p, 1 - p), exact as 1 - p is for p >= 1/2.
struct QuantileTarget {
  bool upper;
  long double q;
};

// The target for P(X <= x) = p (Tail::Lower, 0 <= p < 1) or P(X > x) = p (Tail::Upper,
// 0 < p <= 1); false, with kDistributionBadArgument recorded, for other tails or p.
bool quantile_target(double p, Tail tail, QuantileTarget& target, NagError& err);

// The probability of `tail` from the two one-sided ones. `central`, when given (>= 0), is the
// directly computed central probability of a symmetric family, used in place of 1 - 2 min.
double combine_tails(Tail tail, double lower, double upper, double central = -1);

}  // namespace zomath::platform
