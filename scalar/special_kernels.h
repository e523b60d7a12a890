// The library's own kernels for the prefixed special functions: series, recurrences,
// continued fractions and rational approximations written here, independent of the platform
// routines so that the two forms check each other. Each returns NANUM where its function has no
// value (a pole, an overflow, an argument outside the domain) and NaN for NaN.
#pragma once

namespace zomath::special {

// erf (selector 0), erfc (1) or erfcx = exp(x^2) erfc(x) (2).
enum class ErrorKind { Erf = 0, Erfc = 1, Erfcx = 2 };
double error_kernel(double x, ErrorKind kind);
// 0.5 erfc(x / sqrt 2): the upper tail of the standard normal, accurate far into both tails.
double normal_upper_kernel(double x);

double gamma_kernel(double x);                        // Gamma(x)
double log_gamma_kernel(double x);                    // ln Gamma(x), x > 0
double polygamma_kernel(double x, int k);             // psi^(k)(x), k = 0..6
double incomplete_gamma_kernel(double a, double x);   // P(a, x), a > 0, x >= 0

double exp_integral_kernel(double x);  // E1(x), x != 0; -Ei(-x) for x < 0
double sine_integral_kernel(double x);
double cosine_integral_kernel(double x);  // x > 0
double fresnel_s_kernel(double x);
double fresnel_c_kernel(double x);

double carlson_rc_kernel(double x, double y);
double carlson_rf_kernel(double x, double y, double z);
double carlson_rd_kernel(double x, double y, double z);
double carlson_rj_kernel(double x, double y, double z, double r);

double theta_kernel(int k, double x, double q);  // kinds 0..4, 0 <= q < 1

}  // namespace zomath::special
