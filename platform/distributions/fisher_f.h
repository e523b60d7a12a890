// The F distribution with df1 > 0 and df2 > 0 degrees of freedom.
#pragma once

#include "platform/distributions/tail.h"
#include "platform/error_record.h"

namespace zomath::platform {

// f_quantile could not confirm its result to full accuracy: Boost's inversion of the incomplete
// beta function gave up (its iteration throws, as at p = 0.5 with 10 and 10 degrees of freedom)
// or gave a value that four steps of the search could not confirm (medians beyond the largest
// double at degrees of freedom below 0.01). The value returned is the best found;
// f_quantile_by_search recovers the quantile.
inline constexpr int kFQuantileInaccurate = 422;

// The `tail` probability of f; f <= 0 has lower probability 0. Fails with
// kDistributionBadArgument for NaN f and kDistributionBadParameter for a degrees of freedom not
// a positive finite number.
double f_probability(double f, double df1, double df2, Tail tail, NagError& err);

// The f with P(F <= f) = p (Tail::Lower, 0 <= p < 1) or P(F > f) = p (Tail::Upper, 0 < p <= 1),
// by the fast inversion; fails with kFQuantileInaccurate as above, with kDistributionBadArgument
// for p or a tail out of range.
double f_quantile(double p, double df1, double df2, Tail tail, NagError& err);

// The same quantile by a safeguarded search from the whole range of doubles: slower, and it
// converges wherever the distribution function can be evaluated.
double f_quantile_by_search(double p, double df1, double df2, Tail tail, NagError& err);

}  // namespace zomath::platform
