// Random variates for the array exports: every routine seeds its own Mersenne twister
// (std::mt19937_64) non-repeatably on every call, from the kernel's entropy source mixed with
// the clock, fills n values and keeps no generator between calls.
//
// Each routine resets `fail`, checks its parameters before it writes anything, and returns 0
// or one of the codes below (out is then untouched). n must be at least 1 and out not null:
// the exports test that before they call. Parameter meanings are those of each routine's line.
#pragma once

#include "platform/error_record.h"

namespace zomath::platform {

// A parameter is NaN, NANUM, infinite or outside its range.
constexpr int kRandomBadParameter = 1;
// The probability table of the general discrete distribution is not a distribution: an entry
// outside [0, 1], a sum (or last cumulative value) more than kRandomTableTolerance from 1, or a
// cumulative table that decreases.
constexpr int kRandomBadTable = 2;
// The covariance matrix of the multivariate normal is not symmetric positive semi-definite.
constexpr int kRandomNotPositiveSemidefinite = 3;
// The eigenvalue routine behind the multivariate normal did not converge.
constexpr int kRandomNoConvergence = 4;

// How far a probability table may sum (or end) away from 1.
constexpr double kRandomTableTolerance = 1e-6;

// Continuous distributions.
// Normal with the given mean and variance >= 0 (not the standard deviation).
int random_normal(int n, double mean, double variance, double* out, NagError& fail);
// Uniform on [low, high), low <= high (low == high gives low).
int random_uniform(int n, double low, double high, double* out, NagError& fail);
// Beta with shapes a, b > 0.
int random_beta(int n, double a, double b, double* out, NagError& fail);
// Cauchy with median a and semi-interquartile range b > 0.
int random_cauchy(int n, double a, double b, double* out, NagError& fail);
// Gamma with shape a > 0 and scale b > 0.
int random_gamma(int n, double a, double b, double* out, NagError& fail);
// Logistic with mean a and spread b > 0: P(X <= x) = 1 / (1 + exp(-(x - a) / b)).
int random_logistic(int n, double a, double b, double* out, NagError& fail);
// Lognormal: ln X normal with mean mu and variance >= 0.
int random_lognormal(int n, double mu, double variance, double* out, NagError& fail);
// Weibull with shape a > 0 and scale b > 0 in the form P(X > x) = exp(-x^a / b).
int random_weibull(int n, double a, double b, double* out, NagError& fail);
// Exponential with mean a > 0.
int random_exponential(int n, double a, double* out, NagError& fail);
// Chi-square, Student t and F with whole degrees of freedom >= 1.
int random_chi_square(int n, int df, double* out, NagError& fail);
int random_student_t(int n, int df, double* out, NagError& fail);
int random_fisher_f(int n, int df1, int df2, double* out, NagError& fail);
// Triangular with minimum a, mode b and maximum c, a <= b <= c.
int random_triangular(int n, double a, double b, double c, double* out, NagError& fail);

// Discrete distributions.
// Binomial: successes in trials >= 0 with probability 0 <= p <= 1.
int random_binomial(int n, int trials, double p, int* out, NagError& fail);
// Geometric: failures before the first success, 0 < p <= 1 (capped at the largest int).
int random_geometric(int n, double p, int* out, NagError& fail);
// Negative binomial: successes, each of probability 0 <= p < 1, before `failures` >= 1
// failures: P(X = i) = C(failures + i - 1, i) p^i (1 - p)^failures.
int random_negative_binomial(int n, int failures, double p, int* out, NagError& fail);
// Hypergeometric: specified items in a sample of `sample` taken from `population` items of
// which `specified` are specified (0 <= sample, specified <= population).
int random_hypergeometric(int n, int sample, int population, int specified, int* out,
                          NagError& fail);
// Poisson with mean lambda >= 0 (at most 1e9).
int random_poisson(int n, double lambda, int* out, NagError& fail);
// Uniform on the integers low..high, low <= high.
int random_uniform_integer(int n, int low, int high, int* out, NagError& fail);
// General discrete: value first + i with probability table[i], i < count; `cumulative` says the
// table holds P(X <= first + i) instead.
int random_discrete(int n, const double* table, int count, int first, bool cumulative, int* out,
                    NagError& fail);
// A random permutation of out[0..n-1] in place (every order equally likely).
int random_permutation(int n, int* out, NagError& fail);
// Multivariate normal: `count` vectors of dimension dim (row after row in out) with the given
// mean and covariance (dim by dim, row-major, symmetric positive semi-definite).
int random_multivariate_normal(int count, int dim, const double* mean, const double* cov,
                               double* out, NagError& fail);

}  // namespace zomath::platform
