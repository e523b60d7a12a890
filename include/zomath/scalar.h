/* zomath: scalar functions of one or a few numbers.
 *
 * Special functions come in two forms that are separate computations and check each other: the
 * short name (bessel_j0) is the form the named function table calls, and returns NANUM where no
 * value exists; the prefixed name (zomath_bessel_j0) is the library's own series, recurrences
 * and rational approximations, with its own guards. A NANUM argument gives NANUM. */
#ifndef ZOMATH_SCALAR_H
#define ZOMATH_SCALAR_H

#include "zomath/core.h"

ZOMATH_EXTERN_C_BEGIN

/* ---- Angles ---- */

/* x / pi * 180 and x / 180 * pi; NANUM stays NANUM. */
ZOMATH_API double rad2deg(double x);
ZOMATH_API double deg2rad(double x);

/* ---- Bessel, Airy and Kelvin functions ---- */

/* Short forms: the value, or NANUM where none exists (Y, K, ker, kei at x <= 0, a value past the
 * largest double). NaN gives NaN. The fractional-order family takes the order as nu / 4 with
 * nu in -3..3: I needs x >= 0 (any x for nu = 0) and has no value at 0 for nu < 0. */
ZOMATH_API double bessel_j0(double x);
ZOMATH_API double bessel_j1(double x);
ZOMATH_API double bessel_y0(double x);  /* x > 0 */
ZOMATH_API double bessel_y1(double x);  /* x > 0; NANUM below 3.6e-309 (overflow) */
ZOMATH_API double bessel_i0(double x);  /* NANUM past |x| = 713.98 (overflow) */
ZOMATH_API double bessel_i1(double x);
ZOMATH_API double bessel_k0(double x);  /* x > 0 */
ZOMATH_API double bessel_k1(double x);  /* x > 0; NANUM below 5.6e-309 (overflow) */
ZOMATH_API double bessel_i0_scaled(double x); /* exp(-|x|) I0(x) */
ZOMATH_API double bessel_i1_scaled(double x); /* exp(-|x|) I1(x) */
ZOMATH_API double bessel_k0_scaled(double x); /* exp(x) K0(x), x > 0 */
ZOMATH_API double bessel_k1_scaled(double x); /* exp(x) K1(x), x > 0 */
ZOMATH_API double bessel_i_nu(double x, int nu);        /* I of order nu / 4 */
ZOMATH_API double bessel_i_nu_scaled(double x, int nu); /* exp(-|x|) I of order nu / 4 */
ZOMATH_API double bessel_k_nu(double x, int nu);        /* K of order nu / 4, x > 0 */
ZOMATH_API double bessel_k_nu_scaled(double x, int nu); /* exp(x) K of order nu / 4, x > 0 */
ZOMATH_API double airy_ai(double x);
ZOMATH_API double airy_bi(double x);       /* NANUM past x = 104.436 (overflow) */
ZOMATH_API double airy_ai_deriv(double x);
ZOMATH_API double airy_bi_deriv(double x); /* NANUM past x = 104.209 (overflow) */
ZOMATH_API double kelvin_ber(double x);    /* NANUM past |x| = 1009 where the value overflows */
ZOMATH_API double kelvin_bei(double x);
ZOMATH_API double kelvin_ker(double x);    /* x > 0 */
ZOMATH_API double kelvin_kei(double x);    /* x > 0 */

/* Prefixed forms: the library's own kernels, with their own guards; NANUM outside them, for
 * NaN and where the value overflows. J and Y are the C library's j0, j1, y0, y1 for
 * |x| <= 1e16 (Y: 0 < x <= 1e16). I, K of order 0 and 1 and their scaled forms have the domains
 * of the short forms. */
ZOMATH_API double zomath_bessel_j0(double x);
ZOMATH_API double zomath_bessel_j1(double x);
ZOMATH_API double zomath_bessel_y0(double x);
ZOMATH_API double zomath_bessel_y1(double x);
ZOMATH_API double zomath_bessel_i0(double x);
ZOMATH_API double zomath_bessel_i1(double x);
ZOMATH_API double zomath_bessel_k0(double x);
ZOMATH_API double zomath_bessel_k1(double x);
ZOMATH_API double zomath_bessel_i0_scaled(double x);
ZOMATH_API double zomath_bessel_i1_scaled(double x);
ZOMATH_API double zomath_bessel_k0_scaled(double x);
ZOMATH_API double zomath_bessel_k1_scaled(double x);
/* Order n / 4 with n non-zero and |n| < 4. I: 0 <= x <= 700.9217937 (scaled: <= 32768), x = 0
 * only for n > 0 (value 0); a negative n adds (2/pi) sin(pi |n|/4) K. K: x > 0, K(-n) = K(n). */
ZOMATH_API double zomath_bessel_i_nu(double x, int n);
ZOMATH_API double zomath_bessel_i_nu_scaled(double x, int n);
ZOMATH_API double zomath_bessel_k_nu(double x, int n);
ZOMATH_API double zomath_bessel_k_nu_scaled(double x, int n);
/* One kernel gives Ai, Bi, Ai', Bi' at x; each export returns its own. */
ZOMATH_API double zomath_airy_ai(double x);
ZOMATH_API double zomath_airy_bi(double x);
ZOMATH_API double zomath_airy_ai_deriv(double x);
ZOMATH_API double zomath_airy_bi_deriv(double x);
/* ber and bei at |x|; ker and kei need x > 0. */
ZOMATH_API double zomath_kelvin_ber(double x);
ZOMATH_API double zomath_kelvin_bei(double x);
ZOMATH_API double zomath_kelvin_ker(double x);
ZOMATH_API double zomath_kelvin_kei(double x);

/* ---- Gamma, error, exponential and other integrals, elliptic integrals, theta ---- */

/* Short forms (the named table calls these) and prefixed forms (the library's own kernels),
 * separate computations that agree to about 1e-14. Either returns NANUM for a NANUM argument and
 * where the function has no value (a pole, an overflow, an argument outside the domain); NaN
 * gives NaN. Three short forms share their names with the C library and are exported under those
 * names only as the symbol versions gamma@ZOMATH_1, erfc@ZOMATH_1 and erf@ZOMATH_1 (reach them
 * with dlvsym); C and C++ hosts call them as gamma_fn, erfc_fn and ADummyFunction. */

/* E1(x) = integral from x to infinity of exp(-t)/t dt, x != 0; for x < 0 the principal value
 * -Ei(-x). NANUM at 0 and below about -709.7 (overflow). */
ZOMATH_API double exp_integral(double x);
ZOMATH_API double zomath_exp_integral(double x);
/* Ci(x) = gamma + ln x + integral from 0 to x of (cos t - 1)/t dt, x > 0, else NANUM. */
ZOMATH_API double cos_integral(double x);
ZOMATH_API double zomath_cos_integral(double x);
/* Si(x) = integral from 0 to x of sin(t)/t dt, every x. */
ZOMATH_API double sin_integral(double x);
ZOMATH_API double zomath_sin_integral(double x);

/* Gamma(x): NANUM at 0 and the negative integers, and above 171.62 (overflow). */
ZOMATH_API double gamma_fn(double x);
ZOMATH_API double zomath_gamma(double x);
/* ln Gamma(x), x > 0, else NANUM. */
ZOMATH_API double log_gamma(double x);
ZOMATH_API double zomath_log_gamma(double x);
/* P(a, x) = gamma(a, x) / Gamma(a), the lower regularised incomplete gamma function; a > 0 and
 * x >= 0, else NANUM. */
ZOMATH_API double incomplete_gamma(double a, double x);
ZOMATH_API double zomath_incomplete_gamma(double a, double x);
/* psi^(k)(x), the k-th derivative of the digamma function, k = 0..6; NANUM at the poles
 * x = 0, -1, -2, ... (the prefixed form: within 2.220446e-16 |n| of a non-positive integer n). */
ZOMATH_API double real_polygamma(double x, int k);
ZOMATH_API double zomath_real_polygamma(double x, int k);

/* Phi(x) and 1 - Phi(x) of the standard normal, accurate in either tail. */
ZOMATH_API double cumul_normal(double x);
ZOMATH_API double cumul_normal_complem(double x);
ZOMATH_API double zomath_cumul_normal(double x);
ZOMATH_API double zomath_cumul_normal_complem(double x);
/* erf(x) (ADummyFunction is its short form), erfc(x) = 1 - erf(x), every x. */
ZOMATH_API double ADummyFunction(double x);
ZOMATH_API double erfc_fn(double x);
ZOMATH_API double zomath_erf(double x);
ZOMATH_API double zomath_erfc(double x);
/* exp(x^2) erfc(x); NANUM below about -26.63 (overflow). */
ZOMATH_API double erfcx(double x);
/* Inverses: erfinv(y) for -1 < y < 1, erfcinv(y) for 0 < y < 2; NANUM elsewhere (the infinite
 * values at the ends included). */
ZOMATH_API double erfinv(double y);
ZOMATH_API double erfcinv(double y);

/* Fresnel integrals S(x) and C(x): integrals from 0 to x of sin and cos of pi t^2 / 2. */
ZOMATH_API double fresnel_s(double x);
ZOMATH_API double fresnel_c(double x);
ZOMATH_API double zomath_fresnel_s(double x);
ZOMATH_API double zomath_fresnel_c(double x);

/* Carlson's symmetric elliptic integrals. RC: x >= 0, y != 0 (y < 0: principal value).
 * RF: x, y, z >= 0, at most one zero. RD: x, y >= 0, at most one zero, z > 0. RJ: x, y, z as RF,
 * r != 0 (r < 0: principal value). NANUM outside. */
ZOMATH_API double elliptic_integral_rc(double x, double y);
ZOMATH_API double elliptic_integral_rf(double x, double y, double z);
ZOMATH_API double elliptic_integral_rd(double x, double y, double z);
ZOMATH_API double elliptic_integral_rj(double x, double y, double z, double r);
ZOMATH_API double zomath_elliptic_integral_rc(double x, double y);
ZOMATH_API double zomath_elliptic_integral_rf(double x, double y, double z);
ZOMATH_API double zomath_elliptic_integral_rd(double x, double y, double z);
ZOMATH_API double zomath_elliptic_integral_rj(double x, double y, double z, double r);

/* Jacobi theta function theta_k(x, q), k = 0..4 (theta_0 = theta_4), nome 0 <= q < 1, period 1
 * in x: theta_3(x, q) = 1 + 2 sum q^(n^2) cos(2 n pi x), theta_1(x, q) = 2 sum (-1)^n
 * q^((n+1/2)^2) sin((2n+1) pi x), and so on. NANUM for other k or q, or infinite x. */
ZOMATH_API double jacobian_theta(int k, double x, double q);
ZOMATH_API double zomath_jacobian_theta(int k, double x, double q);

/* Lambert W, w exp(w) = z, on branch 0 or -1. nOffset 0: z = x, branch 0 needs x >= -1/e,
 * branch -1 needs -1/e <= x < 0. nOffset 1: z = -1/e + x, branch 0 needs x >= 0, branch -1
 * needs x < 0 (which has no real value: such calls give NANUM). A rejected argument gives NANUM.
 * *pnError (if not null) gets 0, or 1 for a bad branch, 2 for an argument with no real value. */
ZOMATH_API double lambertW(double x, int nBranch, int nOffset, int* pnError);

/* Pearson type IV peak: y0 + A k (1 + u^2)^-m exp(-nu atan u), u = (x - xc) / a, with k the
 * constant that gives the density unit area. a > 0 and m > 1/2, else NANUM. */
ZOMATH_API double zomath_PearsonIV(double x, double y0, double A, double xc, double a, double m,
                                   double nu);

/* ---- Distribution functions ---- */

/* Probabilities (*cdf), quantiles (*inv) and densities (*pdf). The last argument pnError may be
 * null; otherwise it receives 0 or a failure code, and a failed call returns NANUM. A NANUM
 * argument gives NANUM with code 0.
 *
 * Tail codes (nTail) of the continuous probabilities and of tinv; L = P(X <= x), U = P(X > x):
 * 2, and any code not listed, L; 1 U; 0 two-sided 2 min(L, U), which for the symmetric normal
 * and t is P(|X| >= |x|); 3 central 1 - 2 min(L, U), for normal and t P(|X| < |x|); 4 the
 * nearer tail min(L, U); 5 the farther tail max(L, U). binocdf, hygecdf and poisscdf take
 * 1 for P(X > k), 3 for P(X = k), any other code for P(X <= k).
 *
 * Codes of the cdf and inv functions: */
enum {
  ZOMATH_TAIL_TWO_SIDED = 0,
  ZOMATH_TAIL_UPPER = 1,
  ZOMATH_TAIL_LOWER = 2,
  ZOMATH_TAIL_CENTRAL = 3,
  ZOMATH_TAIL_POINT = 3, /* binocdf, hygecdf, poisscdf */
  ZOMATH_TAIL_NEARER = 4,
  ZOMATH_TAIL_FARTHER = 5,
  ZOMATH_DIST_BAD_ARGUMENT = 1,   /* variate or probability NaN or outside its domain */
  ZOMATH_DIST_BAD_PARAMETER = 2,  /* degrees of freedom, shape, scale, count, correlation,
                                     groups or iteration limit out of range */
  ZOMATH_DIST_NO_CONVERGENCE = 3  /* a series or search did not settle */
};

/* Standard normal. */
ZOMATH_API double normcdf(double x, int nTail, int* pnError);
/* Student t, df > 0 (+infinity: the normal). */
ZOMATH_API double tcdf(double t, double df, int nTail, int* pnError);
/* Chi-square, df > 0. */
ZOMATH_API double chi2cdf(double x, double df, int nTail, int* pnError);
/* F with ndf, ddf > 0. */
ZOMATH_API double fcdf(double f, double ndf, double ddf, int nTail, int* pnError);
/* Beta with shapes a, b > 0 (x outside [0, 1] has probability 0 or 1). */
ZOMATH_API double betacdf(double x, double a, double b, int nTail, int* pnError);
/* Gamma with shape a > 0 and scale b > 0. */
ZOMATH_API double gamcdf(double g, double a, double b, int nTail, int* pnError);
/* Studentized range P(Q <= q) of nGroups >= 2 means with v >= 1 degrees of freedom (v may be
 * +infinity), to about 1e-12 absolute. */
ZOMATH_API double srangecdf(double q, double v, int nGroups, int* pnError);
/* P(X <= x, Y <= y) of the standard bivariate normal with correlation -1 <= dCorr <= 1. */
ZOMATH_API double bivarnormcdf(double x, double y, double dCorr, int* pnError);
/* Noncentral lower-tail probabilities. lambda >= 0 is the noncentrality of the chi-square behind
 * beta, chi-square and F (Poisson mixture of mean lambda / 2); ncbetacdf is on [0, 1] with shapes
 * a, b > 0. nctcdf: df > 0, any delta; nMaxIter must be at least 1 (its series runs to
 * convergence under a bound of its own). */
ZOMATH_API double ncbetacdf(double x, double a, double b, double dLambda, int* pnError);
ZOMATH_API double ncchi2cdf(double x, double f, double dLambda, int* pnError);
ZOMATH_API double ncfcdf(double x, double df1, double df2, double dLambda, int* pnError);
ZOMATH_API double nctcdf(double x, double df, double dDelta, int* pnError, int nMaxIter);
/* Binomial of n >= 0 trials with 0 <= p <= 1; hypergeometric: k specified items in a sample of
 * l from n items of which m are specified (0 <= m, l <= n); Poisson with mean dLambda > 0. A k
 * outside the support has the probabilities it implies. */
ZOMATH_API double binocdf(int k, int n, double p, int nTail, int* pnError);
ZOMATH_API double hygecdf(int k, int m, int n, int l, int nTail, int* pnError);
ZOMATH_API double poisscdf(int k, double dLambda, int nTail, int* pnError);

/* Quantiles. norminv: 0 < p < 1. tinv: the t whose nTail probability is p (codes as above; the
 * two-sided forms give t >= 0). chi2inv, finv, betainv, gaminv: lower-tail, 0 <= p < 1 (betainv
 * 0 <= p <= 1). finv: where its inversion cannot confirm full accuracy it takes the F table
 * routine's search for df1 and df2 truncated to integers, and reports no failure. srangeinv:
 * 0 < p < 1. */
ZOMATH_API double norminv(double p, int* pnError);
ZOMATH_API double tinv(double p, double df, int nTail, int* pnError);
ZOMATH_API double chi2inv(double p, double df, int* pnError);
ZOMATH_API double finv(double p, double df1, double df2, int* pnError);
ZOMATH_API double betainv(double p, double a, double b, int* pnError);
ZOMATH_API double gaminv(double p, double a, double b, int* pnError);
ZOMATH_API double srangeinv(double p, double v, int nGroups, int* pnError);

/* Densities. pnError gets 0, or ZOMATH_ERR_DENSITY_PARAM (-110) with NANUM for a parameter out of
 * range (or NaN). normpdf, lognpdf: sigma > 0 (lognpdf x > 0); exppdf: mu exp(-mu x), x >= 0,
 * mu > 0; cauchypdf, lappdf: scale b > 0; gampdf: x >= 0, shape a > 0, scale b > 0; poisspdf:
 * k >= 0, lambda > 0; wblpdf: scale a > 0, shape b > 0, 0 for x < 0. betapdf reports the codes of
 * betacdf (2 for a bad shape) and is 0 outside [0, 1]. */
ZOMATH_API double normpdf(double x, double mu, double sigma, int* pnError);
ZOMATH_API double lognpdf(double x, double mu, double sigma, int* pnError);
ZOMATH_API double exppdf(double x, double mu, int* pnError);
ZOMATH_API double cauchypdf(double x, double a, double b, int* pnError);
ZOMATH_API double lappdf(double x, double mu, double b, int* pnError);
ZOMATH_API double gampdf(double x, double a, double b, int* pnError);
ZOMATH_API double poisspdf(int k, double lambda, int* pnError);
ZOMATH_API double betapdf(double x, double a, double b, int* pnError);
ZOMATH_API double wblpdf(double x, double a, double b, int* pnError);
/* Weibull with scale a > 0 and shape b > 0: 1 - exp(-(x/a)^b), 0 for x < 0; its quantile for
 * 0 <= p <= 1. NANUM for a bad parameter, with *pnError left at 0. */
ZOMATH_API double wblcdf(double x, double a, double b, int* pnError);
ZOMATH_API double wblinv(double p, double a, double b, int* pnError);

/* ---- Complex helpers ---- */

/* Elementary functions on d_complex (principal branches, as the C library's complex functions).
 * NANUM in either half of an argument gives NANUM in both halves of the result, and so does a
 * result with no finite value. The unique names are declared here; sqrt, sin, cos, tan, log,
 * exp, cabs and cpow are the same entries exported only as name@ZOMATH_1 (reach them with
 * dlvsym), so that they never displace the C library's functions. */
ZOMATH_API d_complex sqrtz(d_complex z);
ZOMATH_API d_complex sinz(d_complex z);
ZOMATH_API d_complex cosz(d_complex z);
/* NANUM where cos z is 0. */
ZOMATH_API d_complex tanz(d_complex z);
/* NANUM at z = 0. */
ZOMATH_API d_complex logz(d_complex z);
ZOMATH_API d_complex expz(d_complex z);
/* |z|, a double. */
ZOMATH_API double cabsz(d_complex z);
/* z^n by repeated squaring; z^0 = 1; z = 0 with n < 0 gives NANUM. */
ZOMATH_API d_complex ipow(d_complex z, int n);
/* z^r; z = 0: 0 for r > 0, 1 for r = 0, NANUM for r < 0. */
ZOMATH_API d_complex rpow(d_complex z, double r);
/* z^w = exp(w log z); z = 0: NANUM if w has a non-zero imaginary part or a negative real part,
 * 1 for w = 0, else 0. */
ZOMATH_API d_complex cpowz(d_complex z, d_complex w);

ZOMATH_EXTERN_C_END

#endif /* ZOMATH_SCALAR_H */
