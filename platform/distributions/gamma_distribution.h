// The gamma distribution with shape a > 0 and scale b > 0: density x^(a-1) e^(-x/b) / (b^a Gamma(a)).
#pragma once

#include "platform/distributions/tail.h"
#include "platform/error_record.h"

namespace zomath::platform {

// The `tail` probability of x; x <= 0 has lower probability 0. Fails with
// kDistributionBadArgument for NaN x and kDistributionBadParameter for a or b not a positive
// finite number.
double gamma_probability(double x, double a, double b, Tail tail, NagError& err);

// The density x^(a-1) e^(-x/b) / (b^a Gamma(a)) for x > 0 (0 for x < 0), in long double; fails
// as gamma_probability. Accurate for every shape: it never forms the factors apart.
double gamma_density(double x, double a, double b, NagError& err);

// The x with P(X <= x) = p (Tail::Lower) or P(X > x) = p (Tail::Upper), on the same domain of
// p as chi_square_quantile.
double gamma_quantile(double p, double a, double b, Tail tail, NagError& err);

}  // namespace zomath::platform
