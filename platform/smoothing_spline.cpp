#include "platform/smoothing_spline.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <new>
#include <vector>

namespace zomath::platform {
namespace {

constexpr int K = 3;                   // degree
constexpr int K1 = K + 1;              // B-splines that do not vanish at a point
constexpr int K2 = K + 2;              // columns of one third-derivative jump row
constexpr int kPolynomialKnots = 2 * K1;
constexpr double kTolerance = 1e-3;    // |f(p) - s| < kTolerance s ends the search
constexpr int kMaxRounds = 20;
// The search for p before it has a bracket: a p whose residual sum hardly differs from the
// least-squares one is too large and is multiplied by kShrink (and the other way round); a step
// past the bracket's far end is pulled back to kNear of the way from it.
constexpr double kShrink = 0.04;
constexpr double kNear = 0.1;
// Internal outcome of a fit whose knots the data cannot determine (x tied too often).
constexpr int kUndetermined = -1;

// The K1 B-splines that do not vanish on [t[l], t[l+1]), at x: b[j] is B_{l-K+j}(x). de Boor's
// recurrence on the order (C. de Boor, J. Approx. Theory 6, 1972).
void bspline_values(const double* t, int l, double x, double* b) {
  double right[K], left[K];
  b[0] = 1.0;
  for (int j = 0; j < K; ++j) {
    right[j] = t[l + j + 1] - x;
    left[j] = x - t[l - j];
    double saved = 0.0;
    for (int r = 0; r <= j; ++r) {
      const double term = b[r] / (right[r] + left[j - r]);
      b[r] = saved + right[r] * term;
      saved = left[j - r] * term;
    }
    b[j + 1] = saved;
  }
}

// A plane rotation that folds the entry `piv` of an incoming row into the diagonal `r` of a
// triangle (r >= 0 stays so): r becomes sqrt(r^2 + piv^2).
struct Rotation {
  double c, s;
};

Rotation make_rotation(double piv, double& r) {
  const double a = std::fabs(piv);
  const double d = a >= r ? a * std::sqrt(1.0 + (r / piv) * (r / piv))
                          : r * std::sqrt(1.0 + (piv / r) * (piv / r));
  const Rotation g{r / d, piv / d};
  r = d;
  return g;
}

// Applies the rotation to an entry of the incoming row (row) and of the triangle (tri).
inline void rotate(const Rotation& g, double& row, double& tri) {
  const double a = row, b = tri;
  tri = g.c * b + g.s * a;
  row = g.c * a - g.s * b;
}

// Folds a row into an upper triangular band of width w (row i of tri holding columns
// i..i+w-1, right side z) by plane rotations: the row's entries h[0..w) stand in columns
// lead..lead+w-1 (those from column nk on are left out), its right side is y. Returns what the
// rotations leave of y; h is used up.
double fold_row(double* h, double y, int lead, int w, int nk, double* tri, double* z) {
  for (int a = 0; a < w && lead + a < nk; ++a) {
    if (h[a] == 0.0) continue;
    const int col = lead + a;
    double* r = &tri[static_cast<std::size_t>(col) * w];
    const Rotation g = make_rotation(h[a], r[0]);
    rotate(g, y, z[col]);
    for (int b = a + 1; b < w; ++b) rotate(g, h[b], r[b - a]);
  }
  return y;
}

// Solves the upper triangular band system (width w, row i holding columns i..i+w-1) for c. A
// zero diagonal, a coefficient that nothing determines, gives 0.
void back_substitute(const std::vector<double>& a, int w, const std::vector<double>& z, int n,
                     std::vector<double>& c) {
  for (int i = n - 1; i >= 0; --i) {
    const double* row = &a[static_cast<std::size_t>(i) * w];
    double sum = z[i];
    const int last = std::min(w - 1, n - 1 - i);
    for (int d = 1; d <= last; ++d) sum -= row[d] * c[i + d];
    c[i] = row[0] != 0.0 ? sum / row[0] : 0.0;
  }
}

// The root of the rational function r(p) = (u p + v) / (p + w) through (p1, f1), (p2, f2),
// (p3, f3); p3 < 0 stands for p3 = infinity, where r tends to f3. Then (p2, f2) replaces the end
// of the bracket on its side, so that f1 > 0 > f3 still holds.
double rational_root(double& p1, double& f1, double p2, double f2, double& p3, double& f3) {
  double p;
  if (p3 < 0) {
    p = (p1 * (f1 - f3) * f2 - p2 * (f2 - f3) * f1) / ((f1 - f2) * f3);
  } else {
    const double h1 = f1 * (f2 - f3), h2 = f2 * (f3 - f1), h3 = f3 * (f1 - f2);
    p = -(p1 * p2 * h3 + p2 * p3 * h1 + p3 * p1 * h2) / (p1 * h1 + p2 * h2 + p3 * h3);
  }
  if (f2 < 0) {
    p3 = p2;
    f3 = f2;
  } else {
    p1 = p2;
    f1 = f2;
  }
  return p;
}

class SmoothingFit {
public:
  SmoothingFit(int m, const double* x, const double* y, const double* w, double s, int nest)
      : m_(m), x_(x), y_(y), w_(w), s_(s), acc_(kTolerance * s), nest_(nest),
        knotMax_(m + K1), t_(nest), c_(nest), interval_(m), q_(static_cast<std::size_t>(m) * K1),
        tri_(static_cast<std::size_t>(nest) * K1), z_(nest), share_(nest), inside_(nest),
        blocked_(nest) {}

  int run();

  int knots() const { return n_; }
  const std::vector<double>& t() const { return t_; }
  const std::vector<double>& c() const { return c_; }
  double residual() const { return fp_; }

private:
  int coefficients() const { return n_ - K1; }
  void set_end_knots();
  void interpolation_knots();
  double least_squares();
  bool determined() const;
  double squared_residual(int i) const;
  double residual_sum() const;
  void interval_shares();
  bool add_knot();
  int search_smoothing(double fp0, double fpInf);
  void solve_penalised(const std::vector<double>& jumps, double pinv);

  const int m_;
  const double *x_, *y_, *w_;
  const double s_, acc_;
  const int nest_, knotMax_;
  int n_ = 0;
  double fp_ = 0;
  std::vector<double> t_, c_;
  std::vector<int> interval_;    // knot interval of each point
  std::vector<double> q_;        // its K1 B-spline values
  std::vector<double> tri_, z_;  // least-squares triangle (band K1) and right-hand side
  std::vector<double> share_;    // residual sum of each knot interval
  std::vector<int> inside_;      // points strictly inside each knot interval
  std::vector<char> blocked_;    // intervals that cannot take a knot
  std::vector<double> band_, rhs_;  // the penalised system's triangle (band K2)
};

void SmoothingFit::set_end_knots() {
  for (int j = 0; j < K1; ++j) {
    t_[j] = x_[0];
    t_[n_ - 1 - j] = x_[m_ - 1];
  }
}

// Interpolation: the interior knots are the data points but the first two and the last two.
void SmoothingFit::interpolation_knots() {
  n_ = knotMax_;
  for (int i = 0; i < m_ - K1; ++i) t_[K1 + i] = x_[2 + i];
}

// Least-squares spline on the current knots: each weighted observation row is rotated into the
// band triangle as it comes (the rows arrive in order of x, so no fill leaves the band). Returns
// the sum of the squared rotated right-hand sides, which is the residual sum.
double SmoothingFit::least_squares() {
  const int nk = coefficients();
  std::fill(tri_.begin(), tri_.begin() + static_cast<std::size_t>(nk) * K1, 0.0);
  std::fill(z_.begin(), z_.begin() + nk, 0.0);
  double fp = 0.0;
  int l = K;
  for (int i = 0; i < m_; ++i) {
    const double xi = x_[i], wi = w_[i];
    while (l < nk - 1 && xi >= t_[l + 1]) ++l;
    interval_[i] = l;
    double* b = &q_[static_cast<std::size_t>(i) * K1];
    bspline_values(t_.data(), l, xi, b);
    double row[K1];
    for (int j = 0; j < K1; ++j) row[j] = b[j] * wi;
    const double yi = fold_row(row, y_[i] * wi, l - K, K1, nk, tri_.data(), z_.data());
    fp += yi * yi;
  }
  back_substitute(tri_, K1, z_, nk, c_);
  return fp;
}

// Whether the data determine every coefficient (Schoenberg-Whitney): distinct x u_0 < u_1 < ...
// with B_j(u_j) != 0 for each j. The earliest point that fits each B-spline in turn is taken;
// tied x count once, so data tied too often for the knots fail here.
bool SmoothingFit::determined() const {
  const int nk = coefficients();
  int j = 0;
  for (int i = 0; i < m_ && j < nk; ++i) {
    if (j > 0 && x_[i] == x_[i - 1]) continue;
    const int first = interval_[i] - K;
    if (j < first) return false;  // B_j vanishes from here on
    if (j - first < K1 && q_[static_cast<std::size_t>(i) * K1 + (j - first)] != 0.0) ++j;
  }
  return j == nk;
}

// The weighted squared residual of point i, from its B-spline values and the coefficients.
double SmoothingFit::squared_residual(int i) const {
  const double* b = &q_[static_cast<std::size_t>(i) * K1];
  const double* c = &c_[interval_[i] - K];
  double v = 0.0;
  for (int j = 0; j < K1; ++j) v += c[j] * b[j];
  const double r = w_[i] * (v - y_[i]);
  return r * r;
}

double SmoothingFit::residual_sum() const {
  double fp = 0.0;
  for (int i = 0; i < m_; ++i) fp += squared_residual(i);
  return fp;
}

// The residual sum of each knot interval; a point on an interior knot counts half to each side.
void SmoothingFit::interval_shares() {
  const int nk = coefficients();
  const int intervals = n_ - 2 * K - 1;
  std::fill(share_.begin(), share_.begin() + intervals, 0.0);
  double part = 0.0;
  int at = 0, next = K1;  // next: the first interior knot not yet passed
  for (int i = 0; i < m_; ++i) {
    bool passed = false;
    if (next < nk && x_[i] >= t_[next]) {
      passed = true;
      ++next;
    }
    const double term = squared_residual(i);
    part += term;
    if (passed) {
      const double half = term * 0.5;
      share_[at++] = part - half;
      part = half;
    }
  }
  share_[intervals - 1] = part;
}

// A new knot at the middle data point of the interval with the largest residual sum among those
// that hold a data point strictly inside; its sum and its points are split between the halves.
// A middle point whose x is tied with an end of the interval would double that knot: the inner
// point nearest the middle with x strictly inside is taken instead, and an interval without one
// is passed over. False when no interval can take a knot.
bool SmoothingFit::add_knot() {
  const int intervals = n_ - 2 * K - 1;
  std::fill(blocked_.begin(), blocked_.begin() + intervals, 0);
  for (;;) {
    int best = -1;
    double top = 0.0;
    long begin = 0, bestBegin = 0;
    for (int j = 0; j < intervals; ++j) {
      if (inside_[j] != 0 && !blocked_[j] && share_[j] > top) {
        top = share_[j];
        best = j;
        bestBegin = begin;
      }
      begin += inside_[j] + 1;
    }
    if (best < 0) {  // no residual inside any interval: split the one with the most points
      begin = 0;
      for (int j = 0; j < intervals; ++j) {
        if (inside_[j] != 0 && !blocked_[j] && (best < 0 || inside_[j] > inside_[best])) {
          best = j;
          bestBegin = begin;
        }
        begin += inside_[j] + 1;
      }
      if (best < 0) return false;
    }
    const int count = inside_[best];
    const double lo = t_[best + K], hi = t_[best + K1];
    auto inner = [&](int h) { return x_[bestBegin + h] > lo && x_[bestBegin + h] < hi; };
    int half = count / 2 + 1;
    for (int d = 1; !inner(half) && d <= count; ++d) {
      if (half - d >= 1 && inner(half - d)) {
        half -= d;
      } else if (half + d <= count && inner(half + d)) {
        half += d;
      }
    }
    if (!inner(half)) {
      blocked_[best] = 1;
      continue;
    }
    for (int j = intervals - 1; j > best; --j) {
      share_[j + 1] = share_[j];
      inside_[j + 1] = inside_[j];
    }
    std::copy_backward(t_.begin() + best + K1, t_.begin() + n_, t_.begin() + n_ + 1);
    t_[best + K1] = x_[bestBegin + half];
    inside_[best] = half - 1;
    inside_[best + 1] = count - half;
    share_[best] = top * (half - 1) / count;
    share_[best + 1] = top * (count - half) / count;
    ++n_;
    return true;
  }
}

// Rows of the third-derivative jumps at the interior knots, scaled by the mean knot spacing:
// row r, for the knot t[r + K1], holds the jumps of B_r..B_{r+K1}, each divided by K!.
std::vector<double> jump_rows(const std::vector<double>& t, int n) {
  const int rows = n - kPolynomialKnots;
  std::vector<double> jumps(static_cast<std::size_t>(rows) * K2);
  const double fac = (n - 2 * K - 1) / (t[n - K1] - t[K]);
  const double scale = fac * fac * fac;
  for (int r = 0; r < rows; ++r) {
    const int l = r + K1;
    for (int i = 0; i < K2; ++i) {
      const int j = r + i;  // B_j has the knots t[j..j+K1]
      double prod = 1.0;
      for (int q = j; q <= j + K1; ++q)
        if (q != l) prod *= t[l] - t[q];
      jumps[static_cast<std::size_t>(r) * K2 + i] = (t[j + K1] - t[j]) / (prod * scale);
    }
  }
  return jumps;
}

// Least squares of the observation rows together with the jump rows weighted by 1/p. The
// triangle of the observations stands for them (same normal equations); its rows and the jump
// rows are merged in order of their first column, so that each rotation stays in a band of K2.
void SmoothingFit::solve_penalised(const std::vector<double>& jumps, double pinv) {
  const int nk = coefficients();
  const int rows = n_ - kPolynomialKnots;
  std::fill(band_.begin(), band_.end(), 0.0);
  std::fill(rhs_.begin(), rhs_.end(), 0.0);
  auto fold = [&](int lead, double* h, double y) {
    fold_row(h, y, lead, K2, nk, band_.data(), rhs_.data());
  };
  for (int j = 0; j < nk; ++j) {
    double h[K2] = {};
    for (int d = 0; d < K1; ++d) h[d] = tri_[static_cast<std::size_t>(j) * K1 + d];
    fold(j, h, z_[j]);
    if (j < rows) {
      for (int d = 0; d < K2; ++d) h[d] = jumps[static_cast<std::size_t>(j) * K2 + d] * pinv;
      fold(j, h, 0.0);
    }
  }
  back_substitute(band_, K2, rhs_, nk, c_);
}

// Finds p with f(p) = s within acc, where f is the residual sum of the penalised fit: f falls
// from fp0 (p = 0, the polynomial) to fpInf (p infinite, the least-squares spline), and is
// convex, so rational interpolation on a bracket [p1, p3] with f1 > 0 > f3 converges.
int SmoothingFit::search_smoothing(double fp0, double fpInf) {
  const int nk = coefficients();
  const std::vector<double> jumps = jump_rows(t_, n_);
  band_.assign(static_cast<std::size_t>(nk) * K2, 0.0);
  rhs_.assign(nk, 0.0);
  double p1 = 0.0, f1 = fp0 - s_, p3 = -1.0, f3 = fpInf - s_;
  double diag = 0.0;
  for (int j = 0; j < nk; ++j) diag += tri_[static_cast<std::size_t>(j) * K1];
  double p = nk / diag;
  bool lowBound = false, highBound = false;  // f1 > 0 and f3 < 0 established
  for (int round = 1;; ++round) {
    solve_penalised(jumps, 1.0 / p);
    fp_ = residual_sum();
    const double f2 = fp_ - s_;
    if (std::fabs(f2) < acc_) return 0;
    if (round == kMaxRounds) return kSplineIterationLimit;
    const double p2 = p;
    if (!highBound) {
      if (f2 - f3 <= acc_) {  // as good as the least-squares spline: p too large
        p3 = p2;
        f3 = f2;
        p *= kShrink;
        if (p <= p1) p = p1 * (1.0 - kNear) + p2 * kNear;
        continue;
      }
      if (f2 < 0) highBound = true;
    }
    if (!lowBound) {
      if (f1 - f2 <= acc_) {  // as stiff as the polynomial: p too small
        p1 = p2;
        f1 = f2;
        p /= kShrink;
        if (p3 < 0) continue;
        if (p >= p3) p = p2 * kNear + p3 * (1.0 - kNear);
        continue;
      }
      if (f2 > 0) lowBound = true;
    }
    if (f2 >= f1 || f2 <= f3) return kSplineSearchFailed;
    p = rational_root(p1, f1, p2, f2, p3, f3);
  }
}

int SmoothingFit::run() {
  const int polynomialKnots = kPolynomialKnots;
  bool fromPolynomial = false;  // the last fit was the polynomial: add one knot next
  int add = 0;
  double fpOld = 0.0, fp0 = 0.0;
  if (s_ == 0.0) {
    if (knotMax_ > nest_) return kSplineKnotLimit;
    interpolation_knots();
  } else {
    n_ = polynomialKnots;
    inside_[0] = m_ - 2;
  }
  for (int iter = 0; iter < m_; ++iter) {
    const bool polynomial = n_ == polynomialKnots;
    if (polynomial) fromPolynomial = true;
    set_end_knots();
    fp_ = least_squares();
    if (!determined()) return kUndetermined;
    if (polynomial) fp0 = fp_;
    const double excess = fp_ - s_;
    if (std::fabs(excess) < acc_) return 0;
    if (excess < 0) return polynomial ? 0 : search_smoothing(fp0, fp_);
    if (n_ == knotMax_) return 0;  // the interpolating spline
    if (n_ == nest_) return kSplineKnotLimit;
    if (fromPolynomial) {
      add = 1;
      fromPolynomial = false;
    } else {
      // As many knots as the last ones' gain says are needed, between half and twice as many.
      int want = add * 2;
      if (fpOld - fp_ > acc_) {
        const double ratio = add * excess / (fpOld - fp_);
        want = ratio < 1e9 ? static_cast<int>(ratio) : 1000000000;
      }
      add = std::min(add * 2, std::max({want, add / 2, 1}));
    }
    fpOld = fp_;
    interval_shares();
    for (int k = 0; k < add; ++k) {
      if (!add_knot()) return kSplineKnotLimit;
      if (n_ == knotMax_) {
        interpolation_knots();
        break;
      }
      if (n_ == nest_) break;
    }
  }
  return kSplineKnotLimit;
}

bool valid_input(int m, const double* x, const double* y, const double* w, double s, int nest) {
  if (m < K1 || !x || !y || !w || nest < kPolynomialKnots || !(s >= 0.0))
    return false;
  for (int i = 0; i < m; ++i) {
    if (!std::isfinite(x[i]) || !std::isfinite(y[i]) || !std::isfinite(w[i]) || !(w[i] > 0.0))
      return false;
    if (i > 0 && x[i] < x[i - 1]) return false;
  }
  return x[0] < x[m - 1];
}

// The index l in [K, n - K1 - 1] with t[l] <= x < t[l + 1] (the last one for x = t[n - K1]),
// looked for first at the hint and its successor.
int find_interval(const double* t, int n, double x, int hint) {
  const int lo = K, hi = n - K1 - 1;
  const int l = std::clamp(hint, lo, hi);
  if (t[l] <= x) {
    if (l == hi || x < t[l + 1]) return l;
    if (l + 1 == hi || x < t[l + 2]) return l + 1;
  }
  return static_cast<int>(std::upper_bound(t + lo + 1, t + hi + 1, x) - t) - 1;
}

}  // namespace

int fit_smoothing_spline(int m, const double* x, const double* y, const double* w, double s,
                         int nest, Nag_Spline* pSpline, double* pResidual, NagError& fail) {
  fail.reset();
  if (!pSpline) return fail.fail(kSplineBadInput, "null spline record");
  *pSpline = Nag_Spline{0, nullptr, nullptr, 0, 0};
  if (!valid_input(m, x, y, w, s, nest))
    return fail.fail(kSplineBadInput, "invalid data, weights, smoothing factor or knot budget");
  nest = std::min(nest, m + K1);  // no spline of this degree needs more
  try {
    SmoothingFit fit(m, x, y, w, s, nest);
    const int code = fit.run();
    if (code == kSplineKnotLimit && fit.knots() == 0)
      return fail.fail(code, "the interpolating spline needs more knots than allowed");
    const int n = fit.knots();
    bool finite = code != kUndetermined;
    for (int j = 0; j < n - K1 && finite; ++j) finite = std::isfinite(fit.c()[j]);
    if (!finite) return fail.fail(kSplineKnotLimit, "tied x values leave the spline undetermined");
    double* knots = static_cast<double*>(std::malloc(sizeof(double) * n));
    double* coef = static_cast<double*>(std::malloc(sizeof(double) * n));
    if (!knots || !coef) {
      std::free(knots);
      std::free(coef);
      return fail.fail(kSplineNoMemory, "no memory for the spline");
    }
    std::copy(fit.t().begin(), fit.t().begin() + n, knots);
    std::copy(fit.c().begin(), fit.c().begin() + (n - K1), coef);
    std::fill(coef + (n - K1), coef + n, 0.0);
    *pSpline = Nag_Spline{n, knots, coef, K, 0};
    if (pResidual) *pResidual = fit.residual();
    switch (code) {
      case 0:
        return 0;
      case kSplineKnotLimit:
        return fail.fail(code, "the smoothing factor cannot be reached with the knots allowed");
      case kSplineSearchFailed:
        return fail.fail(code, "the smoothing parameter search failed: smoothing factor too small");
      default:
        return fail.fail(code, "the smoothing parameter search did not converge");
    }
  } catch (const std::bad_alloc&) {
    return fail.fail(kSplineNoMemory, "no memory for the fit");
  }
}

int evaluate_spline(Nag_Spline* pSpline, double x, double* pValue, NagError& fail) {
  fail.reset();
  if (!pSpline || !pValue || pSpline->nKnots < kPolynomialKnots || !pSpline->pKnots ||
      !pSpline->pCoef)
    return fail.fail(kSplineBadKnots, "no spline");
  const int n = pSpline->nKnots;
  const double* t = pSpline->pKnots;
  if (!(x >= t[K] && x <= t[n - K1]))
    return fail.fail(kSplineOutsideInterval, "x outside the spline's interval");
  const int l = find_interval(t, n, x, pSpline->nLastInterval);
  pSpline->nLastInterval = l;
  double b[K1];
  bspline_values(t, l, x, b);
  const double* c = pSpline->pCoef + (l - K);
  double v = 0.0;
  for (int j = 0; j < K1; ++j) v += c[j] * b[j];
  *pValue = v;
  return 0;
}

void release_spline(Nag_Spline* pSpline) {
  if (!pSpline) return;
  std::free(pSpline->pCoef);
  std::free(pSpline->pKnots);
  pSpline->pCoef = nullptr;
  pSpline->pKnots = nullptr;
  pSpline->nKnots = 0;
}

}  // namespace zomath::platform
