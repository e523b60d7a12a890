// Noncentral chi-square, beta, F and t distributions. The noncentrality lambda of the first
// three is that of the Poisson mixture with mean lambda / 2 (the sum of squared means of the
// normals behind a chi-square); delta of the t is the mean of its normal numerator.
#pragma once

#include "platform/distributions/tail.h"
#include "platform/error_record.h"

namespace zomath::platform {

// Each returns the `tail` probability of x. All fail with kDistributionBadArgument for NaN x,
// kDistributionBadParameter for degrees of freedom or shapes not positive and finite or a
// noncentrality that is negative or not finite (delta may have either sign), and
// kDistributionNoConvergence when a series did not settle.

// X = chi-square with df degrees of freedom and noncentrality lambda, x <= 0 lower 0.
double noncentral_chi_square_probability(double x, double df, double lambda, Tail tail, NagError& err);

// X = Y / (Y + Z) with Y noncentral chi-square(2a, lambda), Z chi-square(2b): on [0, 1].
double noncentral_beta_probability(double x, double a, double b, double lambda, Tail tail, NagError& err);

// X = (Y / df1) / (Z / df2) with Y noncentral chi-square(df1, lambda), Z chi-square(df2).
double noncentral_f_probability(double x, double df1, double df2, double lambda, Tail tail, NagError& err);

// T = (N + delta) / sqrt(V / df) with N standard normal and V chi-square(df).
double noncentral_t_probability(double t, double df, double delta, Tail tail, NagError& err);

}  // namespace zomath::platform
