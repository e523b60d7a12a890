// The probability functions the statistics call by the utility module's names. Plain doubles
// in and out: an argument outside the function's domain, NaN or NANUM gives NANUM. Note that
// invchisq, invt and invf are distribution functions (lower tails), not inverses.
#pragma once

namespace zomath::platform {

// The regularized incomplete beta function I_x(a, b), 0 <= x <= 1, a > 0, b > 0.
double incbeta(double x, double a, double b);

// The regularized lower incomplete gamma function P(a, x), x >= 0, a > 0.
double incgamma(double x, double a);

// P(X <= x) for chi-square with df > 0 degrees of freedom.
double invchisq(double x, int df);

// P(T <= t) for Student's t with df > 0 degrees of freedom.
double invt(double t, int df);

// P(F <= f) for the F distribution with df1 > 0 and df2 > 0 degrees of freedom.
double invf(double f, int df1, int df2);

// The inverse error function, -1 < y < 1.
double inverf(double y);

// The f with P(F <= f) = p, 0 <= p < 1, for integer degrees of freedom: the F quantile by the
// search that always converges (the fallback of the F inverse's accuracy failure).
double Ftable(double p, int df1, int df2);

// The t with P(T <= t) = p, 0 < p < 1, for integer degrees of freedom.
double tTable(double p, int df);

}  // namespace zomath::platform
