// The studentized range distribution as the double integral of Copenhaver and Holland,
// J. Statist. Comput. Simul. 30 (1988) 1-15:
//   P(Q <= q) = integral over s > 0 of f_v(s) W(q s) ds,
// where f_v is the density of s = sqrt(chi-square(v) / v) and W(w) the probability that the
// range of `groups` standard normal values is at most w. Both integrals run by adaptive
// Gauss-Legendre quadrature, 20 points a piece, over intervals that hold all but 1e-17 of
// their mass, cut into pieces narrow enough for full double precision.
#include "platform/distributions/studentized_range.h"

#include <boost/math/special_functions/erf.hpp>
#include <boost/math/special_functions/gamma.hpp>
#include <boost/math/tools/roots.hpp>
#include <cmath>
#include <limits>

#include "platform/distributions/gauss_legendre.h"

namespace zomath::platform {
namespace {

constexpr double kInvSqrt2 = 0.70710678118654752440;
constexpr double kInvSqrt2Pi = 0.39894228040143267794;
constexpr double kNormalTailCut = 8.5;  // Q(8.5) < 1e-17
constexpr double kChiTail = 1e-18;      // mass left out of the chi integral on each side

using detail::integrate;

double normal_density(double x) { return kInvSqrt2Pi * std::exp(-0.5 * x * x); }

// Probability that the range of r standard normal values is at most w. With z = w/2 + u the
// integrand r phi(z) [Phi(z) - Phi(z - w)]^(r-1) folds about u = 0, where the bracket is even.
double range_probability(double w, int r) {
  if (!(w > 0)) return 0;
  const double c = w / 2;
  auto integrand = [c, r](double u) {
    const double a = u - c, b = u + c;
    // Phi(b) - Phi(a) from whichever tails avoid cancellation.
    const double d = a >= 0 ? 0.5 * (std::erfc(a * kInvSqrt2) - std::erfc(b * kInvSqrt2))
                            : 0.5 * (std::erf(b * kInvSqrt2) + std::erf(-a * kInvSqrt2));
    if (d <= 0) return 0.0;
    return r * (normal_density(c + u) + normal_density(c - u)) * std::pow(d, r - 1);
  };
  // phi(c - u) peaks at u = c; below c - 8.5 and above c + 8.5 lies less than 1e-17.
  const double lo = std::max(0.0, c - kNormalTailCut);
  const double p = integrate(integrand, lo, c, static_cast<int>(std::ceil((c - lo) / 1.5)) + 1) +
                   integrate(integrand, c, c + kNormalTailCut, 6);
  return std::min(1.0, p);
}

}  // namespace

double studentized_range_lower(double q, double v, int groups, NagError& err) {
  if (!(v >= 1)) {
    err.fail(kStudentizedRangeBadDf, "degrees of freedom below 1");
    return 0;
  }
  if (groups < 2) {
    err.fail(kStudentizedRangeBadGroups, "fewer than two groups");
    return 0;
  }
  if (std::isnan(q)) {
    err.fail(kStudentizedRangeBadArgument, "q is NaN");
    return 0;
  }
  if (!(q > 0)) return 0;
  if (std::isinf(q)) return 1;
  // Beyond 1e12 degrees the chi variable is within 1e-6 of 1 and its spread moves P by less
  // than 1e-12: take the known-variance limit.
  if (v > 1e12) return range_probability(q, groups);

  // s = sqrt(2x / v) with x ~ Gamma(v / 2): its density is v s gamma'(v / 2, v s^2 / 2).
  const double a = v / 2;
  const double sLow = std::sqrt(boost::math::gamma_p_inv(a, kChiTail) / a);
  const double sHigh = std::sqrt(boost::math::gamma_q_inv(a, kChiTail) / a);
  // The range exceeds w only if some pair differs by more than w, so
  // 1 - W(w) <= groups (groups - 1) / 2 erfc(w / 2): beyond wFull, W is 1 to 1e-17, and the
  // integral over s > wFull / q is the chi tail probability itself.
  const double pairs = 0.5 * groups * (groups - 1.0);
  const double wFull = 2 * boost::math::erfc_inv(1e-17 / pairs);
  const double sFull = wFull / q;
  double p = sFull < sHigh ? boost::math::gamma_q(a, a * sFull * sFull) : 0.0;
  const double end = std::min(sHigh, sFull);
  if (end > sLow) {
    auto integrand = [=](double s) {
      return v * s * boost::math::gamma_p_derivative(a, a * s * s) * range_probability(q * s, groups);
    };
    // Below v = 2 the density behaves as s^(v - 1) at 0: grade the pieces geometrically there.
    double from = sLow;
    if (v < 2) {
      const double edge = 0.25 * end;
      for (double left = edge * std::pow(0.25, 12); left < edge; left *= 4) {
        if (4 * left > from) p += integrate(integrand, std::max(from, left), 4 * left, 1);
        from = std::max(from, 4 * left);
      }
    }
    p += integrate(integrand, from, end, 12);
  }
  return std::min(1.0, std::max(0.0, p));
}

double studentized_range_quantile(double p, double v, int groups, NagError& err) {
  if (!(p > 0 && p < 1)) {
    err.fail(kStudentizedRangeBadProbability, "probability outside (0, 1)");
    return 0;
  }
  NagError inner;
  studentized_range_lower(1.0, v, groups, inner);
  if (inner.code) {
    err = inner;
    return 0;
  }
  auto excess = [&](double q) { return studentized_range_lower(q, v, groups, inner) - p; };
  // Bracket: P(0) = 0 < p; double an upper end until its probability passes p.
  double hi = 4;
  int doublings = 0;
  while (excess(hi) < 0) {
    hi *= 2;
    if (++doublings > 60) {
      err.fail(kStudentizedRangeNoConvergence, "no upper bracket");
      return 0;
    }
  }
  double lo = doublings ? hi / 2 : 0;
  boost::uintmax_t iterations = 200;
  const auto root = boost::math::tools::toms748_solve(
      excess, lo, hi, lo > 0 ? excess(lo) : -p, excess(hi),
      boost::math::tools::eps_tolerance<double>(42), iterations);
  if (iterations >= 200) {
    err.fail(kStudentizedRangeNoConvergence, "root search did not converge");
    return 0;
  }
  return 0.5 * (root.first + root.second);
}

}  // namespace zomath::platform
