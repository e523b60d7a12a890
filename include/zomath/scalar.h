/* zomath: scalar functions of one or a few numbers.
 *
 * Special functions come in two forms that are separate computations and check each other: the
 * short name (bessel_j0) is the form the named function table calls, and returns NANUM where no
 * value exists; the prefixed name (zomath_bessel_j0) is the library's own series, recurrences
 * and rational approximations, with its own guards. A NANUM argument gives NANUM. */
#ifndef ZOMATH_SCALAR_H
#define ZOMATH_SCALAR_H

#ifndef __cplusplus
#include <stdbool.h>
#endif
#include <stddef.h>

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

/* ---- Random variates ---- */

/* Array exports: each fills pOut[0..nSize-1] from a generator seeded afresh and non-repeatably
 * on every call (two calls never give the same array) and keeps no generator between calls.
 * They return 0, -151 (ZOMATH_ERR_OPTION) for a null array or nSize < 1, or one of the codes
 * below; on failure pOut is untouched. A NANUM, NaN or infinite parameter is out of range. */
enum {
  ZOMATH_RANDOM_BAD_PARAMETER = 1,    /* a parameter out of range */
  ZOMATH_RANDOM_BAD_TABLE = 2,        /* disrnd: entries outside [0, 1], a cumulative table
                                         that decreases, or a total more than 1e-6 from 1 */
  ZOMATH_RANDOM_NOT_SEMIDEFINITE = 3, /* mvnrnd: covariance not symmetric positive
                                         semi-definite */
  ZOMATH_RANDOM_NO_CONVERGENCE = 4,   /* mvnrnd: its eigenvalue iteration did not settle */
  ZOMATH_RANDOM_NO_MEMORY = 73        /* working storage could not be had */
};

/* Normal with mean dMean and variance dVariance >= 0 (the variance, not the deviation). */
ZOMATH_API int normrnd(double* pOut, int nSize, double dMean, double dVariance);
/* Uniform on [dLow, dHigh), dLow <= dHigh. */
ZOMATH_API int unifrnd(double* pOut, int nSize, double dLow, double dHigh);
/* Beta with shapes a, b > 0. */
ZOMATH_API int betarnd(double* pOut, int nSize, double a, double b);
/* Cauchy with median a and semi-interquartile range b > 0. */
ZOMATH_API int caurnd(double* pOut, int nSize, double a, double b);
/* Gamma with shape a > 0 and scale b > 0. */
ZOMATH_API int gamrnd(double* pOut, int nSize, double a, double b);
/* Logistic with mean a and spread b > 0: P(X <= x) = 1 / (1 + exp(-(x - a) / b)). */
ZOMATH_API int lgsrnd(double* pOut, int nSize, double a, double b);
/* Lognormal: ln X normal with mean a and variance b >= 0. */
ZOMATH_API int lognrnd(double* pOut, int nSize, double a, double b);
/* Weibull with shape a > 0 and b > 0 in P(X > x) = exp(-x^a / b) (so b is the scale to the
 * power a; wblcdf's scale and shape are the other way round). */
ZOMATH_API int wblrnd(double* pOut, int nSize, double a, double b);
/* Exponential with mean a > 0. */
ZOMATH_API int exprnd(double* pOut, int nSize, double a);
/* Chi-square, Student t and F with whole degrees of freedom >= 1. */
ZOMATH_API int chi2rnd(double* pOut, int nSize, int nDf);
ZOMATH_API int trnd(double* pOut, int nSize, int nDf);
ZOMATH_API int frnd(double* pOut, int nSize, int nDf1, int nDf2);
/* Triangular with minimum a, mode b, maximum c, a <= b <= c. */
ZOMATH_API int trirnd(double* pOut, int nSize, double a, double b, double c);
/* Binomial: successes in n >= 0 trials of probability 0 <= p <= 1. */
ZOMATH_API int binornd(int* pOut, int nSize, int n, double p);
/* Geometric: failures before the first success, 0 < p <= 1 (capped at the largest int). */
ZOMATH_API int geornd(int* pOut, int nSize, double p);
/* Negative binomial: successes of probability 0 <= p < 1 before the n-th failure, n >= 1:
 * P(X = i) = C(n + i - 1, i) p^i (1 - p)^n. */
ZOMATH_API int nbinrnd(int* pOut, int nSize, int n, double p);
/* Hypergeometric: specified items in a sample of n1 taken from n2 items of which n3 are
 * specified; 0 <= n1, n3 <= n2. */
ZOMATH_API int hygernd(int* pOut, int nSize, int n1, int n2, int n3);
/* Poisson with mean 0 <= dLambda <= 1e9. */
ZOMATH_API int poissrnd(int* pOut, int nSize, double dLambda);
/* Uniform on the integers nLow..nHigh, nLow <= nHigh. */
ZOMATH_API int unidrnd(int* pOut, int nSize, int nLow, int nHigh);
/* General discrete: the value nFirst + i with probability pProb[i], i < nCount; with
 * bCumulative, pProb[i] is P(X <= nFirst + i) instead. A null pProb or nCount < 1 is
 * ZOMATH_RANDOM_BAD_PARAMETER. */
ZOMATH_API int disrnd(int* pOut, int nSize, double* pProb, bool bCumulative, int nFirst,
                      int nCount);
/* A random permutation of 0..nSize-1 in pOut. */
ZOMATH_API int permrnd(int* pOut, int nSize);
/* Multivariate normal of dimension nDim >= 1 with mean pMean[nDim] and covariance pCov (nDim by
 * nDim, row-major, symmetric positive semi-definite). Fills nRows * nDim vectors of nDim, one
 * after the other: pOut must hold nRows * nDim * nDim doubles. -151 for a null pointer, nRows
 * or nDim below 1, or more than INT_MAX vectors. */
ZOMATH_API int mvnrnd(double* pOut, int nRows, int nDim, double* pMean, double* pCov);

/* The library's own uniform generator on (0, 1): three linear congruential sequences (moduli
 * 259200, 134456, 243000) shuffled through a table of 97, its state global to the library.
 * zomath_next(pnIdum): *pnIdum < 0 (or a first use) seeds the generator from it and sets it to
 * 1; returns the next value, NANUM for a null pointer. zomath_draw(nSeed): nSeed > 0 seeds with
 * -nSeed and returns 0; otherwise returns the next value. These are also exported as next and
 * draw, names a host may well define itself, only as next@ZOMATH_1 and draw@ZOMATH_1, so that
 * they never displace a host's own. */
ZOMATH_API double zomath_next(int* pnIdum);
ZOMATH_API double zomath_draw(int nSeed);
/* zomath_draw(nSeed), then ten further draws that are dropped; returns the first. So a seeded
 * call returns 0 and leaves the generator eleven steps past its seeding. */
ZOMATH_API double zomath_uniform_random_number(int nSeed);

/* ---- Named function table ---- */

/* The script language's road to the functions above: a table of 79 named functions, sorted by
 * name without regard to case, each row telling how an array of doubles is unpacked into the
 * function's arguments. Modes of zomath_ZT_functions: */
enum {
  ZOMATH_ZT_LOOKUP = 1,    /* find pName: *pnIndex (if not null) gets its row; returns the row's
                              argument count, -1 if not found */
  ZOMATH_ZT_CALL = 2,      /* call row *pnIndex with pArgs, value to *pResult; returns the
                              function's code (0 for functions without one), -1 for a null
                              pointer or a row out of range */
  ZOMATH_ZT_ARG_COUNT = 3, /* returns the argument count of row *pnIndex, -1 out of range */
  ZOMATH_ZT_NAME = 4,      /* copies the row's name to pName (room for ZOMATH_ZT_NAME_SIZE
                              chars); 0, -1 out of range */
  ZOMATH_ZT_NAME_SIZE = 32
};
/* Categories of zomath_ZT_functions_get_list. */
enum { ZOMATH_ZT_PLAIN = 0, ZOMATH_ZT_CDF = 1, ZOMATH_ZT_PDF = 2, ZOMATH_ZT_INVERSE = 3 };

/* An integrand with its caller's context, for integralZT. */
typedef struct ZTFInfo {
  double (*pfn)(double x, void* pData);
  void* pData;
} ZTFInfo;

/* A growable array of strings that the library fills and the caller owns. Start from
 * {NULL, 0, 0}; release with zomath_string_array_clear. */
typedef struct zomath_StringArray {
  char** pItems;  /* nSize copies, each ending in '\0' */
  int nSize;
  int nCapacity;
} zomath_StringArray;

/* Appends a copy of pText; returns its index, -11 for a null argument, -166 without memory. */
ZOMATH_API int zomath_string_array_append(zomath_StringArray* pArray, const char* pText);
/* Frees every string and the array's block; the array is empty afterwards. Null is ignored. */
ZOMATH_API void zomath_string_array_clear(zomath_StringArray* pArray);

/* Mode 2 reads as many pArgs as the row's kind needs. An argument that the kind takes as an int
 * is truncated toward zero (clamped to the int range; NANUM gives a NANUM result and NaN a
 * NANUM result with code 1, or NaN for functions without a code). poisspdf's k must be printed
 * by "%g" as a whole number, else the result is 0.0 with code 0. */
ZOMATH_API int zomath_ZT_functions(unsigned int nMode, char* pName, unsigned long* pnIndex,
                                   double* pArgs, double* pResult);
/* The one-row table of `integral` (two arguments): mode 1 looks the name up, mode 2 writes
 * integralZT(pInfo, pArgs[0], pArgs[1]) to *pResult (-1 for a null pnIndex, pArgs or pResult,
 * or another row); other modes -1. */
ZOMATH_API int zomath_ZT_base_functions(unsigned int nMode, char* pName, unsigned long* pnIndex,
                                        void* pInfo, double* pArgs, double* pResult);
/* Clears both arrays (either may be null), then appends the name and argument list of every row
 * of category nCategory, in table order. Returns the count, -1 for none, -166 without memory. */
ZOMATH_API int zomath_ZT_functions_get_list(zomath_StringArray* pNames,
                                            zomath_StringArray* pArgLists, int nCategory);
/* Integral of pInfo->pfn from dFrom to dTo by adaptive quadrature (absolute tolerance 1e-5,
 * relative 1e-7, at most 500 sub-intervals). A NANUM bound is -infinity (dFrom) or +infinity
 * (dTo); equal bounds give 0; with an infinite bound the bounds are ordered and the sign follows.
 * NANUM for a failure (a null pInfo or pfn, a NaN bound, a quadrature failure, whose code stays
 * in the library's one error record until the next call). */
ZOMATH_API double integralZT(ZTFInfo* pInfo, double dFrom, double dTo);

#if defined(__LP64__) && (defined(__cplusplus) || (defined(__STDC_VERSION__) && __STDC_VERSION__ >= 201112L))
#ifdef __cplusplus
#define ZOMATH_SCALAR_ASSERT(cond, what) static_assert(cond, what)
#else
#define ZOMATH_SCALAR_ASSERT(cond, what) _Static_assert(cond, what)
#endif
ZOMATH_SCALAR_ASSERT(offsetof(ZTFInfo, pData) == 8 && sizeof(ZTFInfo) == 16, "ZTFInfo layout");
ZOMATH_SCALAR_ASSERT(offsetof(zomath_StringArray, nSize) == 8 &&
                         offsetof(zomath_StringArray, nCapacity) == 12 &&
                         sizeof(zomath_StringArray) == 16,
                     "zomath_StringArray layout");
#undef ZOMATH_SCALAR_ASSERT
#endif

ZOMATH_EXTERN_C_END

#endif /* ZOMATH_SCALAR_H */
