// Binomial, hypergeometric and Poisson distributions: the three probabilities of a count k.
#pragma once

#include "platform/error_record.h"

namespace zomath::platform {

// P(X <= k), P(X > k) and P(X = k), each computed directly (lower + upper = 1 up to rounding).
struct DiscreteProbabilities {
  double lower;
  double upper;
  double point;
};

// Each fails with kDistributionBadParameter (tail.h) for parameters outside the stated range,
// leaving the probabilities NaN. A k outside the support has the probabilities it implies
// (below it: 0, 1, 0).

// n trials with success probability p: n >= 0, 0 <= p <= 1.
DiscreteProbabilities binomial_probabilities(int k, int n, double p, NagError& err);

// Specified items among a sample of l drawn without replacement from n items of which m are
// specified: n >= 0, 0 <= m <= n, 0 <= l <= n.
DiscreteProbabilities hypergeometric_probabilities(int k, int m, int n, int l, NagError& err);

// Poisson with mean lambda > 0 (finite).
DiscreteProbabilities poisson_probabilities(int k, double lambda, NagError& err);

}  // namespace zomath::platform
