// Bessel functions of real argument, on Boost.Math. Boost has no exponentially scaled I and K:
// those are formed in long double (where I and K neither overflow nor underflow before
// x = 11000) up to x = 700, and from Hankel's asymptotic expansion beyond.
#include "platform/special/bessel.h"

#include <boost/math/special_functions/bessel.hpp>
#include <cfloat>
#include <cmath>
#include <cstdlib>

#include "platform/special/quiet_policy.h"

namespace zomath::platform {
namespace {

namespace bm = boost::math;

constexpr double kPi = 3.141592653589793;
constexpr double kHankelFrom = 700.0;  // the scaled forms switch to the expansion here

// exp(-x) I_v(x) (sign = -1) or exp(x) K_v(x) (sign = +1) for x >= 700 by Hankel's expansion:
// the terms a_k(v) / x^k fall by a factor (2k)^2 / (8 k x) < 1e-2, so a dozen terms reach the
// rounding level; the exponentially small second exponential of I is below 1e-600.
double hankel_scaled(double v, double x, int sign) {
  const double mu = 4.0 * v * v;
  double term = 1.0, sum = 1.0;
  for (int k = 1; k < 40; ++k) {
    term *= (mu - (2.0 * k - 1) * (2.0 * k - 1)) / (8.0 * k * x) * (sign > 0 ? 1.0 : -1.0);
    sum += term;
    if (std::fabs(term) < 1e-17 * std::fabs(sum)) break;
  }
  const double root = std::sqrt(x);  // apart from the constant, so that 2 pi x can't overflow
  return sign > 0 ? std::sqrt(kPi / 2.0) / root * sum : sum / (std::sqrt(2.0 * kPi) * root);
}

// Shared tail of the routines that can overflow: a value past the largest double fails.
double checked(double value, NagError& err) {
  if (std::isinf(value)) {
    err.fail(kBesselOverflow, "the value overflows");
    return value;
  }
  return value;
}

double fail_not_positive(NagError& err) {
  err.fail(kBesselArgNotPositive, "x must be positive");
  return 0.0;
}

// exp(-|x|) I_v(x), v >= 0 or v a negative non-integer with x > 0.
double i_scaled(long double v, double x) {
  const double ax = std::fabs(x);
  if (ax >= kHankelFrom) {
    const double value = hankel_scaled(static_cast<double>(v), ax, -1);
    return (x < 0 && std::fmod(static_cast<double>(v), 2.0) != 0.0) ? -value : value;
  }
  return static_cast<double>(std::exp(-static_cast<long double>(ax)) *
                             bm::cyl_bessel_i(v, static_cast<long double>(x), QuietPolicy()));
}

// exp(x) K_v(x) for x > 0.
double k_scaled(long double v, double x) {
  if (x >= kHankelFrom) return hankel_scaled(static_cast<double>(v), x, +1);
  return static_cast<double>(std::exp(static_cast<long double>(x)) *
                             bm::cyl_bessel_k(v, static_cast<long double>(x), QuietPolicy()));
}

bool order_out_of_range(int nu, NagError& err) {
  if (nu < -3 || nu > 3) {
    err.fail(kBesselOrderOutOfRange, "nu must lie in -3..3 (order nu / 4)");
    return true;
  }
  return false;
}

}  // namespace

double bessel_j0(double x) {
  if (std::isnan(x)) return x;
  if (std::isinf(x)) return 0.0;
  return bm::cyl_bessel_j(0, x, QuietPolicy());
}

double bessel_j1(double x) {
  if (std::isnan(x)) return x;
  if (std::isinf(x)) return 0.0;
  return bm::cyl_bessel_j(1, x, QuietPolicy());
}

double bessel_y0(double x, NagError& err) {
  if (std::isnan(x)) return x;
  if (x <= 0) return fail_not_positive(err);
  if (std::isinf(x)) return 0.0;
  return checked(bm::cyl_neumann(0, x, QuietPolicy()), err);
}

double bessel_y1(double x, NagError& err) {
  if (std::isnan(x)) return x;
  if (x <= 0) return fail_not_positive(err);
  if (std::isinf(x)) return 0.0;
  return checked(bm::cyl_neumann(1, x, QuietPolicy()), err);
}

double bessel_i0(double x, NagError& err) {
  if (std::isnan(x)) return x;
  if (std::isinf(x)) return checked(HUGE_VAL, err);
  return checked(bm::cyl_bessel_i(0, x, QuietPolicy()), err);
}

double bessel_i1(double x, NagError& err) {
  if (std::isnan(x)) return x;
  if (std::isinf(x)) return checked(x, err);
  return checked(bm::cyl_bessel_i(1, x, QuietPolicy()), err);
}

double bessel_k0(double x, NagError& err) {
  if (std::isnan(x)) return x;
  if (x <= 0) return fail_not_positive(err);
  if (std::isinf(x)) return 0.0;
  return checked(bm::cyl_bessel_k(0, x, QuietPolicy()), err);
}

double bessel_k1(double x, NagError& err) {
  if (std::isnan(x)) return x;
  if (x <= 0) return fail_not_positive(err);
  if (std::isinf(x)) return 0.0;
  return checked(bm::cyl_bessel_k(1, x, QuietPolicy()), err);
}

double bessel_i0_scaled(double x) {
  if (std::isnan(x)) return x;
  return i_scaled(0, x);
}

double bessel_i1_scaled(double x) {
  if (std::isnan(x)) return x;
  return i_scaled(1, x);
}

double bessel_k0_scaled(double x, NagError& err) {
  if (x <= 0) return fail_not_positive(err);
  if (std::isnan(x)) return x;
  return k_scaled(0, x);
}

double bessel_k1_scaled(double x, NagError& err) {
  if (x <= 0) return fail_not_positive(err);
  if (std::isnan(x)) return x;
  return checked(k_scaled(1, x), err);
}

double bessel_i_nu(double x, int nu, NagError& err) {
  if (std::isnan(x)) return x;
  if (order_out_of_range(nu, err)) return 0.0;
  if (nu == 0) return bessel_i0(x, err);
  if (x == INFINITY) return checked(x, err);
  if (x < 0) return err.fail(kBesselArgNegative, "x must not be negative"), 0.0;
  if (x == 0) {
    if (nu > 0) return 0.0;
    return err.fail(kBesselOverflow, "I of negative order is infinite at 0"), 0.0;
  }
  return checked(bm::cyl_bessel_i(nu / 4.0, x, QuietPolicy()), err);
}

double bessel_i_nu_scaled(double x, int nu, NagError& err) {
  if (order_out_of_range(nu, err)) return 0.0;
  if (nu == 0) return bessel_i0_scaled(x);
  if (x < 0) return err.fail(kBesselArgNegative, "x must not be negative"), 0.0;
  if (x == 0) {
    if (nu > 0) return 0.0;
    return err.fail(kBesselOverflow, "I of negative order is infinite at 0"), 0.0;
  }
  if (std::isnan(x)) return x;
  return checked(i_scaled(nu / 4.0L, x), err);
}

double bessel_k_nu(double x, int nu, NagError& err) {
  if (std::isnan(x)) return x;
  if (order_out_of_range(nu, err)) return 0.0;
  if (x <= 0) return fail_not_positive(err);
  if (std::isinf(x)) return 0.0;
  return checked(bm::cyl_bessel_k(std::abs(nu) / 4.0, x, QuietPolicy()), err);
}

double bessel_k_nu_scaled(double x, int nu, NagError& err) {
  if (order_out_of_range(nu, err)) return 0.0;
  if (x <= 0) return fail_not_positive(err);
  if (std::isnan(x)) return x;
  return checked(k_scaled(std::abs(nu) / 4.0L, x), err);
}

}  // namespace zomath::platform
