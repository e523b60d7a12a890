// Unevaluated sums hi + lo of two doubles (about 32 significant digits), for the few series
// whose terms cancel by many orders of magnitude.
#pragma once

#include <cmath>

namespace zomath::special {

struct DoubleDouble {
  double hi = 0.0;
  double lo = 0.0;
};

inline DoubleDouble two_sum(double a, double b) {
  const double s = a + b;
  const double bb = s - a;
  return {s, (a - (s - bb)) + (b - bb)};
}

inline DoubleDouble quick_two_sum(double a, double b) {
  const double s = a + b;
  return {s, b - (s - a)};
}

inline DoubleDouble two_prod(double a, double b) {
  const double p = a * b;
  return {p, std::fma(a, b, -p)};
}

inline DoubleDouble operator+(DoubleDouble a, DoubleDouble b) {
  DoubleDouble s = two_sum(a.hi, b.hi);
  const DoubleDouble t = two_sum(a.lo, b.lo);
  s.lo += t.hi;
  s = quick_two_sum(s.hi, s.lo);
  s.lo += t.lo;
  return quick_two_sum(s.hi, s.lo);
}

inline DoubleDouble operator-(DoubleDouble a) { return {-a.hi, -a.lo}; }

inline DoubleDouble operator*(DoubleDouble a, DoubleDouble b) {
  DoubleDouble p = two_prod(a.hi, b.hi);
  p.lo += a.hi * b.lo + a.lo * b.hi;
  return quick_two_sum(p.hi, p.lo);
}

inline DoubleDouble operator*(DoubleDouble a, double b) {
  DoubleDouble p = two_prod(a.hi, b);
  p.lo += a.lo * b;
  return quick_two_sum(p.hi, p.lo);
}

inline DoubleDouble operator/(DoubleDouble a, double b) {
  const double q1 = a.hi / b;
  const DoubleDouble r = a + -two_prod(q1, b);
  const double q2 = r.hi / b;
  return quick_two_sum(q1, q2);
}

inline DoubleDouble operator/(DoubleDouble a, DoubleDouble b) {
  const double q1 = a.hi / b.hi;
  const DoubleDouble r = a + -(b * q1);
  const double q2 = r.hi / b.hi;
  return quick_two_sum(q1, q2);
}

// ln x for finite x > 0 to about 1e-30 relative: x = 2^e m with m in [1/sqrt 2, sqrt 2),
// ln m = 2 atanh(s) = 2 (s + s^3/3 + ...), s = (m - 1)/(m + 1) formed in double-double; only
// the leading term needs the extra precision, the rest is below 0.01 s.
inline DoubleDouble log_dd(double x) {
  constexpr double kLn2Hi = 0.6931471805599453, kLn2Lo = 2.3190468138462996e-17;
  int e;
  double m = std::frexp(x, &e);  // m in [1/2, 1)
  if (m < 0.7071067811865476) {
    m *= 2.0;
    --e;
  }
  const DoubleDouble s = DoubleDouble{m - 1.0, 0.0} / two_sum(m, 1.0);
  const double s2 = s.hi * s.hi;
  double tail = 0.0;  // s^2/3 + s^4/5 + ...
  for (int k = 12; k >= 1; --k) tail = (tail + 1.0 / (2 * k + 1)) * s2;
  const DoubleDouble logM = s * 2.0 + DoubleDouble{2.0 * s.hi * tail, 0.0};
  const DoubleDouble el = two_prod(static_cast<double>(e), kLn2Hi) + two_prod(e, kLn2Lo);
  return el + logM;
}

}  // namespace zomath::special
