// Composite Gauss-Legendre quadrature for the distribution routines that are integrals of
// smooth positive functions (the studentized range, the far tail of the noncentral t).
#pragma once

#include <boost/math/quadrature/gauss.hpp>
#include <cmath>

namespace zomath::platform::detail {

// Integral of f over [a, b] by the 20-point Gauss-Legendre rule on each of `pieces` equal parts.
template <class F>
double integrate(F f, double a, double b, int pieces) {
  const auto& x = boost::math::quadrature::gauss<double, 20>::abscissa();
  const auto& w = boost::math::quadrature::gauss<double, 20>::weights();
  const double h = (b - a) / pieces;
  double sum = 0;
  for (int k = 0; k < pieces; ++k) {
    const double mid = a + (k + 0.5) * h, half = h / 2;
    double part = 0;
    for (std::size_t i = 0; i < x.size(); ++i) part += w[i] * (f(mid - half * x[i]) + f(mid + half * x[i]));
    sum += part * half;
  }
  return sum;
}

// The same over [a, b], halving a piece while its rule on the whole and on the two halves differ
// by more than `tolerance` (absolute) plus the rounding of the sum, at most `depth` times.
template <class F>
double integrate_adaptive(F f, double a, double b, double tolerance, int depth) {
  const double whole = integrate(f, a, b, 1), halves = integrate(f, a, b, 2);
  if (depth == 0 || std::fabs(whole - halves) <= tolerance + 4e-16 * std::fabs(halves)) return halves;
  const double mid = 0.5 * (a + b);
  return integrate_adaptive(f, a, mid, tolerance / 2, depth - 1) +
         integrate_adaptive(f, mid, b, tolerance / 2, depth - 1);
}

}  // namespace zomath::platform::detail
