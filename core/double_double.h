// Double-double arithmetic (unevaluated sums hi + lo, about 32 significant digits) for the few
// places where a special function needs more than double precision: the phase of an
// oscillating asymptotic form (2/3 x^(3/2) for the Airy functions, x / sqrt(2) for the Kelvin
// functions) must be known to an absolute accuracy of a few 1e-17 however large it is, so must
// an exponent that is later exponentiated, and a few series cancel by many orders of magnitude.
// Products are split by Veltkamp's method so that no fused multiply-add is needed.
#pragma once

#include <cmath>

namespace zomath::dd {

// An unevaluated sum hi + lo with |lo| <= ulp(hi) / 2.
struct Double2 {
  double hi = 0.0;
  double lo = 0.0;
};

inline Double2 two_sum(double a, double b) {
  const double s = a + b;
  const double bb = s - a;
  return {s, (a - (s - bb)) + (b - bb)};
}

inline Double2 quick_two_sum(double a, double b) {  // requires |a| >= |b|
  const double s = a + b;
  return {s, b - (s - a)};
}

inline Double2 split(double a) {
  const double t = 134217729.0 * a;  // 2^27 + 1
  const double hi = t - (t - a);
  return {hi, a - hi};
}

// a * b exactly, for |a * b| well inside the range of doubles.
inline Double2 two_prod(double a, double b) {
  const double p = a * b;
  const Double2 as = split(a), bs = split(b);
  const double err = ((as.hi * bs.hi - p) + as.hi * bs.lo + as.lo * bs.hi) + as.lo * bs.lo;
  return {p, err};
}

inline Double2 add(Double2 a, Double2 b) {
  Double2 s = two_sum(a.hi, b.hi);
  const Double2 t = two_sum(a.lo, b.lo);
  s.lo += t.hi;
  s = quick_two_sum(s.hi, s.lo);
  s.lo += t.lo;
  return quick_two_sum(s.hi, s.lo);
}

inline Double2 add(Double2 a, double b) {
  Double2 s = two_sum(a.hi, b);
  s.lo += a.lo;
  return quick_two_sum(s.hi, s.lo);
}

inline Double2 neg(Double2 a) { return {-a.hi, -a.lo}; }

inline Double2 mul(Double2 a, Double2 b) {
  Double2 p = two_prod(a.hi, b.hi);
  p.lo += a.hi * b.lo + a.lo * b.hi;
  return quick_two_sum(p.hi, p.lo);
}

inline Double2 mul(Double2 a, double b) {
  Double2 p = two_prod(a.hi, b);
  p.lo += a.lo * b;
  return quick_two_sum(p.hi, p.lo);
}

inline Double2 div(Double2 a, double b) {
  const double q1 = a.hi / b;
  const Double2 r = add(a, neg(two_prod(q1, b)));
  return quick_two_sum(q1, r.hi / b);
}

inline Double2 div(Double2 a, Double2 b) {
  const double q1 = a.hi / b.hi;
  const Double2 r = add(a, neg(mul(b, q1)));
  return quick_two_sum(q1, r.hi / b.hi);
}

inline Double2 operator+(Double2 a, Double2 b) { return add(a, b); }
inline Double2 operator-(Double2 a) { return neg(a); }
inline Double2 operator*(Double2 a, Double2 b) { return mul(a, b); }
inline Double2 operator*(Double2 a, double b) { return mul(a, b); }
inline Double2 operator/(Double2 a, double b) { return div(a, b); }
inline Double2 operator/(Double2 a, Double2 b) { return div(a, b); }

// ln x for finite x > 0 to about 1e-30 relative: x = 2^e m with m in [1/sqrt 2, sqrt 2),
// ln m = 2 atanh(s) = 2 (s + s^3/3 + ...), s = (m - 1)/(m + 1) formed in double-double; only
// the leading term needs the extra precision, the rest is below 0.01 s.
inline Double2 log_dd(double x) {
  constexpr double kLn2Hi = 0.6931471805599453, kLn2Lo = 2.3190468138462996e-17;
  int e;
  double m = std::frexp(x, &e);  // m in [1/2, 1)
  if (m < 0.7071067811865476) {
    m *= 2.0;
    --e;
  }
  const Double2 s = div(Double2{m - 1.0, 0.0}, two_sum(m, 1.0));
  const double s2 = s.hi * s.hi;
  double tail = 0.0;  // s^2/3 + s^4/5 + ...
  for (int k = 12; k >= 1; --k) tail = (tail + 1.0 / (2 * k + 1)) * s2;
  const Double2 logM = add(mul(s, 2.0), Double2{2.0 * s.hi * tail, 0.0});
  return add(add(two_prod(static_cast<double>(e), kLn2Hi), two_prod(e, kLn2Lo)), logM);
}

// sqrt(x) for x > 0, to double-double accuracy.
inline Double2 sqrt(double x) {
  const double s = std::sqrt(x);
  const Double2 p = two_prod(s, s);
  const double residual = ((x - p.hi) - p.lo);
  return quick_two_sum(s, residual / (2.0 * s));
}

// Constants to double-double accuracy.
constexpr Double2 kTwoThirds = {0.6666666666666666, 3.700743415417188e-17};
constexpr Double2 kInvSqrt2 = {0.7071067811865476, -4.833646656726457e-17};
constexpr Double2 kQuarterPi = {0.7853981633974483, 3.061616997868383e-17};
constexpr Double2 kEighthPi = {0.39269908169872414, 1.5308084989341915e-17};

// sin and cos of a + b with a + b given as a double-double. The argument is reduced by a
// multiple k of pi/2 whose product with a four-part pi/2 is formed exactly, so the reduced
// argument keeps an absolute accuracy near 1e-32 * |a| for |a| up to about 1e15.
inline void sincos(Double2 a, double& s, double& c) {
  constexpr double kP1 = 1.5707963267948966, kP2 = 6.123233995736766e-17,
                   kP3 = -1.4973849048591698e-33;
  const double k = std::nearbyint(a.hi * 0.6366197723675814);
  Double2 r = a;
  if (k != 0.0) {
    r = add(r, neg(two_prod(k, kP1)));
    r = add(r, neg(two_prod(k, kP2)));
    r = add(r, -k * kP3);
  }
  const double sr = std::sin(r.hi), cr = std::cos(r.hi);
  const double sh = sr + cr * r.lo, ch = cr - sr * r.lo;
  const long q = static_cast<long>(std::fmod(k, 4.0) + 4.0) & 3;
  switch (q) {
    case 0: s = sh; c = ch; break;
    case 1: s = ch; c = -sh; break;
    case 2: s = -sh; c = -ch; break;
    default: s = -ch; c = sh; break;
  }
}

}  // namespace zomath::dd
