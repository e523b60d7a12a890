// The library's own kernels for the Bessel, Airy and Kelvin functions, written independently of
// the platform routines so that the two forms check each other. The modified Bessel functions
// come exponentially scaled, exp(-x) I and exp(x) K, so that nothing overflows or underflows
// inside; callers restore the exponential.
#pragma once

namespace zomath::special {

// exp(-x) I0(x) and exp(-x) I1(x) for x >= 0.
double i0_scaled(double x);
double i1_scaled(double x);

// exp(x) K0(x) and exp(x) K1(x) for x > 0.
void k01_scaled(double x, double& k0, double& k1);

// I and K of orders mu and mu + 1, |mu| <= 1/2, at x > 0, scaled as above.
struct BesselIK {
  double i_mu, i_mu1;  // exp(-x) I_mu(x), exp(-x) I_{mu+1}(x)
  double k_mu, k_mu1;  // exp(x) K_mu(x), exp(x) K_{mu+1}(x)
};
BesselIK bessel_ik_scaled(double mu, double x);

// Ai, Bi, Ai', Bi' at one finite x. Bi and Bi' are infinite past x = 104.436 and 104.209.
struct AiryValues {
  double ai, bi, ai_deriv, bi_deriv;
};
AiryValues airy_all(double x);

// ber, bei at x >= 0 (infinite past x = 1010); ker, kei at x > 0.
void kelvin_ber_bei(double x, double& ber, double& bei);
void kelvin_ker_kei(double x, double& ker, double& kei);

// exp(v) * s without intermediate overflow or underflow for |v| up to about 1500, s normal.
double scale_by_exp(double s, double v);

}  // namespace zomath::special
