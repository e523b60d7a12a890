// Carlson's symmetric elliptic integrals by the duplication theorem and the fifth-order Taylor
// expansions of B. C. Carlson, "Numerical computation of real or complex elliptic integrals",
// Numer. Algorithms 10 (1995), including the Cauchy principal values for y < 0 (RC) and
// r < 0 (RJ).
#include <algorithm>
#include <cmath>

#include "scalar/special_kernels.h"
#include "zomath/core.h"

namespace zomath::special {

namespace {

// Stop duplicating when 4^-m Q < |A_m|, Q = (c r)^(-1/k) max|A0 - x|: r sets the truncation
// error of the expansion, here well below a double's rounding.
constexpr double kTolerance = 1e-18;

double rc(double x, double y) {
  if (y < 0.0) return std::sqrt(x) / std::sqrt(x - y) * rc(x - y, -y);
  const double a0 = (x + 2.0 * y) / 3.0, y0 = y;
  double a = a0, f = 1.0;
  const double q = std::pow(3.0 * kTolerance, -1.0 / 8.0) * std::fabs(a0 - x);
  while (f * q >= std::fabs(a)) {
    const double lambda = 2.0 * std::sqrt(x) * std::sqrt(y) + y;
    x = 0.25 * (x + lambda);
    y = 0.25 * (y + lambda);
    a = 0.25 * (a + lambda);
    f *= 0.25;
  }
  const double s = (y0 - a0) * f / a;
  // 1 + 3s^2/10 + s^3/7 + 3s^4/8 + 9s^5/22 + 159s^6/208 + 9s^7/8
  const double tail = 1.0 / 7 + s * (3.0 / 8 + s * (9.0 / 22 + s * (159.0 / 208 + s * 9.0 / 8)));
  return (1.0 + s * s * (3.0 / 10 + s * tail)) / std::sqrt(a);
}

double rf(double x, double y, double z) {
  const double a0 = (x + y + z) / 3.0;
  const double q = std::pow(3.0 * kTolerance, -1.0 / 6.0) *
                   std::max({std::fabs(a0 - x), std::fabs(a0 - y), std::fabs(a0 - z)});
  double a = a0, f = 1.0;
  const double x0 = x, y0 = y;
  while (f * q >= std::fabs(a)) {
    const double sx = std::sqrt(x), sy = std::sqrt(y), sz = std::sqrt(z);
    const double lambda = sx * sy + sx * sz + sy * sz;
    x = 0.25 * (x + lambda);
    y = 0.25 * (y + lambda);
    z = 0.25 * (z + lambda);
    a = 0.25 * (a + lambda);
    f *= 0.25;
  }
  const double X = (a0 - x0) * f / a, Y = (a0 - y0) * f / a, Z = -(X + Y);
  const double e2 = X * Y - Z * Z, e3 = X * Y * Z;
  return (1.0 - e2 / 10 + e3 / 14 + e2 * e2 / 24 - 3.0 * e2 * e3 / 44) / std::sqrt(a);
}

// The common tail of RD and RJ: 1 - 3E2/14 + E3/6 + 9E2^2/88 - 3E4/22 - 9E2E3/52 + 3E5/26.
double rd_rj_expansion(double e2, double e3, double e4, double e5) {
  return 1.0 - 3.0 * e2 / 14 + e3 / 6 + 9.0 * e2 * e2 / 88 - 3.0 * e4 / 22 - 9.0 * e2 * e3 / 52 +
         3.0 * e5 / 26;
}

double rd(double x, double y, double z) {
  const double a0 = (x + y + 3.0 * z) / 5.0;
  const double q = std::pow(0.25 * kTolerance, -1.0 / 6.0) *
                   std::max({std::fabs(a0 - x), std::fabs(a0 - y), std::fabs(a0 - z)});
  double a = a0, f = 1.0, sum = 0.0;
  const double x0 = x, y0 = y;
  while (f * q >= std::fabs(a)) {
    const double sx = std::sqrt(x), sy = std::sqrt(y), sz = std::sqrt(z);
    const double lambda = sx * sy + sx * sz + sy * sz;
    sum += f / (sz * (z + lambda));
    x = 0.25 * (x + lambda);
    y = 0.25 * (y + lambda);
    z = 0.25 * (z + lambda);
    a = 0.25 * (a + lambda);
    f *= 0.25;
  }
  const double X = (a0 - x0) * f / a, Y = (a0 - y0) * f / a, Z = -(X + Y) / 3.0;
  const double xy = X * Y, z2 = Z * Z;
  const double e2 = xy - 6.0 * z2, e3 = (3.0 * xy - 8.0 * z2) * Z, e4 = 3.0 * (xy - z2) * z2,
               e5 = xy * z2 * Z;
  return f * std::pow(a, -1.5) * rd_rj_expansion(e2, e3, e4, e5) + 3.0 * sum;
}

double rj_positive(double x, double y, double z, double p) {
  const double a0 = (x + y + z + 2.0 * p) / 5.0;
  const double q =
      std::pow(0.25 * kTolerance, -1.0 / 6.0) *
      std::max({std::fabs(a0 - x), std::fabs(a0 - y), std::fabs(a0 - z), std::fabs(a0 - p)});
  double a = a0, f = 1.0, sum = 0.0;
  const double x0 = x, y0 = y, z0 = z;
  while (f * q >= std::fabs(a)) {
    // RC(alpha, beta), alpha = (p (sx + sy + sz) + sx sy sz)^2, beta = p (p + lambda)^2: sums of
    // positive terms, free of cancellation; both are divided by (p + lambda)^2 (RC is
    // homogeneous of degree -1/2) to keep the squares in range.
    const double sx = std::sqrt(x), sy = std::sqrt(y), sz = std::sqrt(z);
    const double lambda = sx * sy + sx * sz + sy * sz;
    const double ratio = (p * (sx + sy + sz) + sx * sy * sz) / (p + lambda);
    sum += f * rc(ratio * ratio, p) / (p + lambda);
    x = 0.25 * (x + lambda);
    y = 0.25 * (y + lambda);
    z = 0.25 * (z + lambda);
    p = 0.25 * (p + lambda);
    a = 0.25 * (a + lambda);
    f *= 0.25;
  }
  const double X = (a0 - x0) * f / a, Y = (a0 - y0) * f / a, Z = (a0 - z0) * f / a;
  const double P = -(X + Y + Z) / 2.0;
  const double p2 = P * P;
  const double e2 = X * Y + X * Z + Y * Z - 3.0 * p2;
  const double e3 = X * Y * Z + 2.0 * e2 * P + 4.0 * p2 * P;
  const double e4 = (2.0 * X * Y * Z + e2 * P + 3.0 * p2 * P) * P;
  const double e5 = X * Y * Z * p2;
  return f * std::pow(a, -1.5) * rd_rj_expansion(e2, e3, e4, e5) + 3.0 * sum;
}

bool bad_triple(double x, double y, double z) {
  return x < 0.0 || y < 0.0 || z < 0.0 || (x == 0.0) + (y == 0.0) + (z == 0.0) > 1;
}

double finite_or_nanum(double v) { return std::isfinite(v) ? v : NANUM; }

}  // namespace

double carlson_rc_kernel(double x, double y) {
  if (std::isnan(x) || std::isnan(y)) return x + y;
  if (x < 0.0 || y == 0.0) return NANUM;
  if (std::isinf(x) || std::isinf(y)) return 0.0;
  return finite_or_nanum(rc(x, y));
}

double carlson_rf_kernel(double x, double y, double z) {
  if (std::isnan(x + y + z)) return x + y + z;
  if (bad_triple(x, y, z)) return NANUM;
  if (std::isinf(x + y + z)) return 0.0;
  return finite_or_nanum(rf(x, y, z));
}

double carlson_rd_kernel(double x, double y, double z) {
  if (std::isnan(x + y + z)) return x + y + z;
  if (x < 0.0 || y < 0.0 || !(z > 0.0) || (x == 0.0 && y == 0.0)) return NANUM;
  if (std::isinf(x + y + z)) return 0.0;
  return finite_or_nanum(rd(x, y, z));
}

double carlson_rj_kernel(double x, double y, double z, double r) {
  if (std::isnan(x + y + z + r)) return x + y + z + r;
  if (bad_triple(x, y, z) || r == 0.0) return NANUM;
  if (std::isinf(x + y + z) || std::isinf(r)) return 0.0;
  if (r > 0.0) return finite_or_nanum(rj_positive(x, y, z, r));
  // Principal value (Carlson 1995, eq. 2.22), with z the largest of x, y, z, which keeps p > 0
  // and cancels less than the other choices:
  // (z + q) RJ(x, y, z, -q) = (p - z) RJ(x, y, z, p) - 3 RF(x, y, z)
  //                           + 3 sqrt(x y z / (x y + p q)) RC(x y + p q, p q),
  // p = z + (y - z)(z - x) / (z + q).
  double v[3] = {x, y, z};
  std::sort(v, v + 3);
  const double lo = v[0], mid = v[1], hi = v[2], q = -r;
  const double p = hi + (mid - hi) * (hi - lo) / (hi + q);
  const double pq = p * q, xz = lo * mid;
  const double value = (p - hi) * rj_positive(lo, mid, hi, p) - 3.0 * rf(lo, mid, hi) +
                       3.0 * std::sqrt(lo * mid * hi / (xz + pq)) * rc(xz + pq, pq);
  return finite_or_nanum(value / (hi + q));
}

}  // namespace zomath::special
