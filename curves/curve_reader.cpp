#include "curves/curve_reader.h"

#include <algorithm>
#include <cstring>

#include "zomath/sort.h"

namespace zomath::curves {

std::size_t lower_bound(const double* v, std::size_t n, double x) {
  if (n == 0) return 0;
  const double* base = v;
  while (n > 1) {
    const std::size_t half = n / 2;
    base = base[half - 1] < x ? base + half : base;
    n -= half;
  }
  return static_cast<std::size_t>(base - v) + (*base < x);
}

std::size_t upper_bound(const double* v, std::size_t n, double x) {
  if (n == 0) return 0;
  const double* base = v;
  while (n > 1) {
    const std::size_t half = n / 2;
    base = base[half - 1] <= x ? base + half : base;
    n -= half;
  }
  return static_cast<std::size_t>(base - v) + (*base <= x);
}

bool copy_sorted(const double* pX, const double* pY, const double* pW, std::size_t n,
                 SortedSource& out, unsigned int* pOrder) {
  const int nn = static_cast<int>(n);
  out.x.SetSize(nn);
  out.y.SetSize(nn);
  if (pW) out.w.SetSize(nn);
  std::memcpy(out.x.Data(), pX, n * sizeof(double));
  bool ordered = true;
  for (std::size_t i = 1; i < n && ordered; ++i) ordered = pX[i - 1] <= pX[i];
  if (ordered) {
    std::memcpy(out.y.Data(), pY, n * sizeof(double));
    if (pW) std::memcpy(out.w.Data(), pW, n * sizeof(double));
    if (pOrder)
      for (std::size_t i = 0; i < n; ++i) pOrder[i] = static_cast<unsigned int>(i);
    return true;
  }
  NRVec<unsigned int> order(nn);
  for (int i = 0; i < nn; ++i) order[i] = static_cast<unsigned int>(i);
  CQSort sorter(out.x.Data(), nn, sizeof(double), order.Data(), sizeof(unsigned int), nn);
  if (!sorter.Sort(0, nn - 1, reinterpret_cast<void*>(&Compare_double_Ascend))) return false;
  for (int i = 0; i < nn; ++i) out.y[i] = pY[order[i]];
  if (pW)
    for (int i = 0; i < nn; ++i) out.w[i] = pW[order[i]];
  if (pOrder) std::memcpy(pOrder, order.Data(), n * sizeof(unsigned int));
  return true;
}

bool has_missing(const double* pX, const double* pY, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i)
    if (pX[i] == NANUM || pY[i] == NANUM) return true;
  return false;
}

// ---- linear reading --------------------------------------------------------------------------

double LinearReader::line(std::size_t lo, std::size_t hi, double x) const {
  const double x0 = x_[lo], x1 = x_[hi], y0 = y_[lo], y1 = y_[hi];
  if (x0 == NANUM || x1 == NANUM || y0 == NANUM || y1 == NANUM) return NANUM;
  return (x - x0) * (y1 - y0) / (x1 - x0) + y0;
}

// The bisection itself, for an x equal to some source x: which of the tied points it meets
// first decides the value.
double LinearReader::bisect(double x) const {
  std::size_t lo = 0, hi = n_ - 1;
  while (hi - lo > 1) {
    const std::size_t mid = (lo + hi) / 2;
    if (x_[mid] == x) return y_[mid];
    if (x <= x_[mid]) {
      hi = mid;
    } else {
      lo = mid;
    }
  }
  return line(lo, hi, x);
}

double LinearReader::operator()(double x) {
  if (x == NANUM) return NANUM;
  if (n_ == 1) return x == x_[0] ? y_[0] : NANUM;
  if (x != x) return x;
  const std::size_t last = n_ - 1;
  if (x < x_[0]) return line(0, 1, x);
  if (x > x_[last]) {
    if (x_[last] == NANUM || x_[last - 1] == NANUM || y_[last] == NANUM || y_[last - 1] == NANUM)
      return NANUM;
    return y_[last] + (x - x_[last]) * (y_[last] - y_[last - 1]) / (x_[last] - x_[last - 1]);
  }
  // Without a source x equal to x, the bisection ends on the bracket (a - 1, a) with a the first
  // index whose x is not below x; the last bracket and the next one are tried first.
  std::size_t a = hint_;
  if (!(a <= last && x <= x_[a] && (a == 0 || x_[a - 1] < x))) {
    if (a < last && x_[a] < x && x <= x_[a + 1]) {
      ++a;
    } else {
      a = lower_bound(x_, n_, x);
    }
  }
  hint_ = a;
  if (x_[a] == x) return bisect(x);
  return a == 0 ? line(0, 1, x) : line(a - 1, a, x);  // a is 0 only with NaN in the source
}

// ---- cubic spline ----------------------------------------------------------------------------

namespace {

// The second derivatives M of the cubic spline through m points (m >= 2) with the end equations
// 2 M[0] + p0 M[1] = r0 and pn M[m-2] + 2 M[m-1] = rn, by elimination down the tridiagonal
// system and back substitution. u holds m doubles.
void solve_tridiagonal(const double* x, const double* y, std::size_t m, double p0, double r0,
                       double pn, double rn, double* M, double* u) {
  M[0] = -p0 / 2;
  u[0] = r0 / 2;
  for (std::size_t i = 1; i + 1 < m; ++i) {
    const double sig = (x[i] - x[i - 1]) / (x[i + 1] - x[i - 1]);
    const double p = sig * M[i - 1] + 2;
    M[i] = (sig - 1) / p;
    const double d = (y[i + 1] - y[i]) / (x[i + 1] - x[i]) - (y[i] - y[i - 1]) / (x[i] - x[i - 1]);
    u[i] = (6 * d / (x[i + 1] - x[i - 1]) - sig * u[i - 1]) / p;
  }
  M[m - 1] = (rn - u[m - 2] * pn) / (pn * M[m - 2] + 2);
  for (std::size_t k = m - 1; k-- > 0;) M[k] = M[k] * M[k + 1] + u[k];
}

// Not-a-knot ends on n >= 5 points: the second and the next-to-last points leave the knots, and
// the end equations make the end cubics pass through them; their second derivatives are then
// read off those cubics, on which the second derivative is a straight line.
void solve_not_a_knot(const double* x, const double* y, std::size_t n, double* M, double* u) {
  const std::size_t m = n - 2;
  NRVec<double> rx(static_cast<int>(m)), ry(static_cast<int>(m)), rm(static_cast<int>(m));
  rx[0] = x[0];
  ry[0] = y[0];
  for (std::size_t i = 1; i + 1 < m; ++i) {
    rx[i] = x[i + 1];
    ry[i] = y[i + 1];
  }
  rx[m - 1] = x[n - 1];
  ry[m - 1] = y[n - 1];
  double a = x[1] - x[0], b = x[2] - x[1], c = x[2] - x[0];
  double D = b * b * b - b * c * c;
  const double p0 = 2 * (a * a * a - a * c * c) / D;
  const double r0 = 12 * (c * y[1] - a * y[2] - b * y[0]) / D;
  a = x[n - 2] - x[n - 3];
  b = x[n - 1] - x[n - 2];
  c = x[n - 1] - x[n - 3];
  D = a * a * a - a * c * c;
  const double pn = 2 * (b * b * b - b * c * c) / D;
  const double rn = 12 * (c * y[n - 2] - b * y[n - 3] - a * y[n - 1]) / D;
  solve_tridiagonal(rx.Data(), ry.Data(), m, p0, r0, pn, rn, rm.Data(), u);
  M[0] = rm[0];
  M[1] = rm[0] + (rm[1] - rm[0]) * (x[1] - x[0]) / (x[2] - x[0]);
  for (std::size_t i = 2; i + 2 < n; ++i) M[i] = rm[i - 1];
  M[n - 2] = rm[m - 2] + (rm[m - 1] - rm[m - 2]) * (x[n - 2] - x[n - 3]) / (x[n - 1] - x[n - 3]);
  M[n - 1] = rm[m - 1];
}

void solve_piece(const double* x, const double* y, std::size_t n, SplineEnds ends, double* M,
                 double* u) {
  if (n == 1) {
    M[0] = 0;
  } else if (ends == SplineEnds::kNotAKnot && n >= 5) {
    solve_not_a_knot(x, y, n, M, u);
  } else {
    solve_tridiagonal(x, y, n, 0, 0, 0, 0, M, u);
  }
}

}  // namespace

void spline_second_derivatives(const double* pX, const double* pY, std::size_t n,
                               SplineEnds ends, double* pM, double* pWork) {
  std::size_t start = 0;
  for (std::size_t i = 1; i <= n; ++i) {
    if (i < n && pX[i] != pX[i - 1]) continue;
    solve_piece(pX + start, pY + start, i - start, ends, pM + start, pWork + start);
    start = i;
  }
}

double SplineReader::operator()(double x) {
  if (x == NANUM) return NANUM;
  if (x != x) return x;
  // The bracket lo, lo + 1 with x[lo] <= x < x[lo + 1], lo kept within 0 .. n - 2: the one of a
  // bisection that moves its upper end when x is below the middle value.
  const std::size_t top = n_ - 2;
  std::size_t lo = lo_;
  auto fits = [&](std::size_t k) {
    return (k == 0 || x_[k] <= x) && (k == top || x < x_[k + 1]);
  };
  if (!fits(lo)) {
    if (lo < top && fits(lo + 1)) {
      ++lo;
    } else {
      const std::size_t u = upper_bound(x_, n_, x);
      lo = u == 0 ? 0 : std::min(u - 1, top);
    }
  }
  lo_ = lo;
  const std::size_t hi = lo + 1;
  const double h = x_[hi] - x_[lo];
  if (h == 0) return NANUM;
  const double A = (x_[hi] - x) / h, B = (x - x_[lo]) / h;
  return A * y_[lo] + B * y_[hi] + ((B * B * B - B) * m_[hi] + (A * A * A - A) * m_[lo]) * (h * h) / 6;
}

}  // namespace zomath::curves
