// The regularized incomplete beta and gamma functions with their derivatives, in long double and
// in one evaluation, for the distribution routines' quantile searches (each step needs both).
#pragma once

namespace zomath::platform::detail {

// I_x(a, b), or 1 - I_x(a, b) when `complement`; with `density`, also dI_x/dx there. Call it
// with x at most about 1/2 (exchange a and b and use 1 - x otherwise): it forms 1 - x itself.
long double incomplete_beta(long double a, long double b, long double x, bool complement,
                            long double* density = nullptr);

// P(a, z), or Q(a, z) when `upper`; with `density`, also dP/dz = z^(a-1) e^-z / Gamma(a).
long double incomplete_gamma(long double a, long double z, bool upper, long double* density = nullptr);

// A first estimate of the t with P(T > t) = q, 0 < q <= 1/2 (Hill's approximations with Shaw's
// tail series), good to about 1e-6 and cheap: the start of the t quantile search.
double t_quantile_estimate(double q, double df);

// A first estimate of the z with P(a, z) = q (or Q(a, z) = q when `upper`), 0 < q <= 1/2: the
// initial approximations of DiDonato and Morris (ACM TOMS 13 (1987) 318-319), good to a few
// digits at least and cheap: the start of the gamma quantile search.
double gamma_quantile_estimate(double a, double q, bool upper);

}  // namespace zomath::platform::detail
