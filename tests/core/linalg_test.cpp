// Dense linear algebra: each factorisation checked by its defining identities on random,
// ill-conditioned and rank-deficient matrices; singular values against 60-digit references
// (tests/tools/linalg_reference.py) and LAPACK's own driver; the codes of bad input.
//
// Tolerances are backward-error bounds, c * n * eps * |A|, with c = 8: a stable algorithm
// stays well inside, and a wrong sign, pivot or transposition is off by O(|A|).
#include <gtest/gtest.h>
#include <lapacke.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstring>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "core/nrvec/nrvec.h"
#include "zomath/linalg.h"

namespace {

constexpr double kEps = 0x1p-52;

struct Mat {
  int rows = 0, cols = 0;
  std::vector<double> a;
  Mat(int r, int c, double fill = 0.0) : rows(r), cols(c), a(static_cast<std::size_t>(r) * c, fill) {}
  double& operator()(int i, int j) { return a[static_cast<std::size_t>(i) * cols + j]; }
  double operator()(int i, int j) const { return a[static_cast<std::size_t>(i) * cols + j]; }
  double* data() { return a.data(); }
};

Mat mul(const Mat& x, const Mat& y) {
  Mat z(x.rows, y.cols);
  for (int i = 0; i < x.rows; ++i)
    for (int k = 0; k < x.cols; ++k)
      for (int j = 0; j < y.cols; ++j) z(i, j) += x(i, k) * y(k, j);
  return z;
}
Mat transpose(const Mat& x) {
  Mat t(x.cols, x.rows);
  for (int i = 0; i < x.rows; ++i)
    for (int j = 0; j < x.cols; ++j) t(j, i) = x(i, j);
  return t;
}
Mat identity(int n) {
  Mat e(n, n);
  for (int i = 0; i < n; ++i) e(i, i) = 1.0;
  return e;
}
double frobenius(const Mat& x) {
  double s = 0;
  for (double v : x.a) s += v * v;
  return std::sqrt(s);
}
double distance(const Mat& x, const Mat& y) {
  Mat d = x;
  for (std::size_t k = 0; k < d.a.size(); ++k) d.a[k] -= y.a[k];
  return frobenius(d);
}
// c * n * eps * scale: the allowance of a backward-stable computation.
double allowance(const Mat& x, double scale) { return 8.0 * std::max(x.rows, x.cols) * kEps * scale; }

Mat random_matrix(int r, int c, unsigned seed) {
  std::mt19937_64 rng(seed);
  std::uniform_real_distribution<double> u(-1.0, 1.0);
  Mat m(r, c);
  for (double& v : m.a) v = u(rng);
  return m;
}
Mat hilbert(int n) {
  Mat h(n, n);
  for (int i = 0; i < n; ++i)
    for (int j = 0; j < n; ++j) h(i, j) = 1.0 / (i + j + 1);
  return h;
}
Mat vandermonde(int n) {
  Mat v(n, n);
  for (int i = 0; i < n; ++i)
    for (int j = 0; j < n; ++j) v(i, j) = std::pow(i + 1.0, j);
  return v;
}

struct Case {
  const char* name;
  Mat m;
};
// Square and rectangular, well and ill conditioned, and of rank 3 in 8 by 6.
std::vector<Case> matrices() {
  return {{"random 7x7", random_matrix(7, 7, 1)},
          {"random 9x5", random_matrix(9, 5, 2)},
          {"random 5x9", random_matrix(5, 9, 3)},
          {"random 60x40", random_matrix(60, 40, 4)},
          {"rank 3 in 8x6", mul(random_matrix(8, 3, 5), random_matrix(3, 6, 6))},
          {"hilbert 8", hilbert(8)},
          {"hilbert 12", hilbert(12)},
          {"vandermonde 8", vandermonde(8)}};
}

// LAPACK's own SVD driver on a copy: the values the decompositions are compared with.
std::vector<double> lapack_singular_values(Mat m) {
  std::vector<double> s(std::min(m.rows, m.cols)), superb(s.size());
  EXPECT_EQ(LAPACKE_dgesvd(LAPACK_ROW_MAJOR, 'N', 'N', m.rows, m.cols, m.data(), m.cols, s.data(),
                           nullptr, 1, nullptr, 1, superb.data()),
            0);
  return s;
}

TEST(Linalg, LuReconstructsTheRowPermutedMatrix) {
  for (auto& [name, m] : matrices()) {
    Mat lu = m;
    std::vector<int> piv(std::min(m.rows, m.cols));
    ASSERT_EQ(zomath_lu(lu.data(), piv.data(), m.rows, m.cols), 0) << name;
    const int k = std::min(m.rows, m.cols);
    Mat l(m.rows, k), u(k, m.cols), pa = m;
    for (int i = 0; i < m.rows; ++i)
      for (int j = 0; j < m.cols; ++j) {
        if (j < i && j < k) l(i, j) = lu(i, j);
        if (j >= i && i < k) u(i, j) = lu(i, j);
      }
    for (int i = 0; i < k; ++i) l(i, i) = 1.0;
    for (int i = 0; i < k; ++i)  // one-based interchanges, applied in order
      for (int j = 0; j < m.cols; ++j) std::swap(pa(i, j), pa(piv[i] - 1, j));
    EXPECT_LE(distance(mul(l, u), pa), allowance(m, frobenius(m))) << name;
  }
  Mat singular(3, 3, 1.0);  // rank 1: a zero pivot, with the factors complete
  int piv[3];
  EXPECT_EQ(zomath_lu(singular.data(), piv, 3, 3), ZOMATH_LINALG_SINGULAR);
  EXPECT_EQ(zomath_lu(nullptr, piv, 3, 3), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(zomath_lu(singular.data(), piv, 0, 3), -1);
}

TEST(Linalg, LuSolveAndInverseLeaveSmallResiduals) {
  for (int n : {1, 5, 50}) {
    const Mat a = random_matrix(n, n, 10 + n);
    const Mat x = random_matrix(n, 3, 20 + n);
    Mat b = mul(a, x), lu = a;
    std::vector<int> piv(n);
    ASSERT_EQ(zomath_lu_solve(lu.data(), b.data(), piv.data(), n, 3), 0);
    EXPECT_LE(distance(mul(a, b), mul(a, x)), allowance(a, frobenius(a) * frobenius(b))) << n;

    Mat inv = a;
    ASSERT_EQ(zomath_inverse(inv.data(), n), 0);
    EXPECT_LE(distance(mul(a, inv), identity(n)), allowance(a, frobenius(a) * frobenius(inv))) << n;
  }
  Mat h = hilbert(10), inv = h;  // condition number 1.6e13: still invertible
  ASSERT_EQ(zomath_inverse(inv.data(), 10), 0);
  EXPECT_LE(distance(mul(h, inv), identity(10)), allowance(h, frobenius(h) * frobenius(inv)));
}

TEST(Linalg, SingularOrBadMatricesLeaveTheCallersArraysAlone) {
  const Mat x = mul(random_matrix(6, 2, 30), random_matrix(2, 4, 31));
  const Mat xtx = mul(transpose(x), x);  // rank 2 of 4: pivots of rounding size, not zero
  Mat zero_row = random_matrix(4, 4, 32);
  for (int j = 0; j < 4; ++j) zero_row(2, j) = 0.0;
  Mat with_nan = random_matrix(4, 4, 33);
  with_nan(1, 1) = NAN;
  const struct {
    const char* name;
    Mat m;
    int code;
  } cases[] = {{"exactly singular", zero_row, ZOMATH_LINALG_SINGULAR},
               {"singular to working precision", xtx, ZOMATH_LINALG_SINGULAR},
               {"NaN entry", with_nan, ZOMATH_LINALG_NOT_FINITE}};
  for (const auto& c : cases) {
    Mat m = c.m;
    EXPECT_EQ(zomath_inverse(m.data(), 4), c.code) << c.name;
    EXPECT_EQ(std::memcmp(m.data(), c.m.a.data(), 16 * sizeof(double)), 0) << c.name;
    Mat b(4, 1, 1.0), b0 = b;
    int piv[4];
    if (c.code == ZOMATH_LINALG_NOT_FINITE) {
      EXPECT_EQ(zomath_lu_solve(m.data(), b.data(), piv, 4, 1), c.code);
      EXPECT_EQ(b.a, b0.a);
    }
  }
  EXPECT_EQ(zomath_inverse(nullptr, 4), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(zomath_inverse(zero_row.data(), 0), -1);
}

TEST(Linalg, QrIsOrthogonalTimesUpperTrapezoidal) {
  for (auto& [name, m] : matrices()) {
    const Mat a0 = m;
    Mat q(m.rows, m.rows), r(m.rows, m.cols);
    ASSERT_EQ(zomath_qr(m.data(), q.data(), r.data(), m.rows, m.cols), 0) << name;
    EXPECT_EQ(m.a, a0.a) << name;
    EXPECT_LE(distance(mul(transpose(q), q), identity(m.rows)), allowance(m, std::sqrt(m.rows))) << name;
    EXPECT_LE(distance(mul(q, r), m), allowance(m, frobenius(m))) << name;
    for (int i = 0; i < m.rows; ++i)
      for (int j = 0; j < std::min(i, m.cols); ++j) EXPECT_EQ(r(i, j), 0.0) << name;
  }
  double a = 1, q = 0, r = 0;
  EXPECT_EQ(zomath_qr(&a, nullptr, &r, 1, 1), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(zomath_qr(&a, &q, &r, 1, -2), -1);
}

// U diag(s) VT = A with orthonormal U and V; s descending and equal to LAPACK's driver.
void expect_svd(const char* name, const Mat& m, const Mat& u, const std::vector<double>& s, const Mat& vt) {
  const int k = static_cast<int>(s.size());
  Mat us = u;
  for (int i = 0; i < m.rows; ++i)
    for (int j = 0; j < k; ++j) us(i, j) *= s[j];
  EXPECT_LE(distance(mul(us, vt), m), allowance(m, frobenius(m))) << name;
  EXPECT_LE(distance(mul(transpose(u), u), identity(k)), allowance(m, std::sqrt(k))) << name;
  EXPECT_LE(distance(mul(vt, transpose(vt)), identity(k)), allowance(m, std::sqrt(k))) << name;
  const std::vector<double> ref = lapack_singular_values(m);
  for (int j = 0; j < k; ++j) {
    EXPECT_LE(std::fabs(s[j] - ref[j]), 1e-13 * ref[0]) << name << " value " << j;
    if (j > 0) {
      EXPECT_LE(s[j], s[j - 1]) << name;
    }
  }
}

TEST(Linalg, SvdThroughTheBidiagonalPath) {
  for (auto& [name, m] : matrices()) {
    const Mat a0 = m;
    const int k = std::min(m.rows, m.cols);
    Mat u(m.rows, k), vt(k, m.cols);
    std::vector<double> s(k), s_only(k);
    ASSERT_EQ(zomath_svd(m.rows, m.cols, m.data(), s.data(), u.data(), vt.data()), 0) << name;
    EXPECT_EQ(m.a, a0.a) << name;
    expect_svd(name, m, u, s, vt);
    // The values alone come from a different bidiagonal iteration (no rotations to track).
    ASSERT_EQ(zomath_svd(m.rows, m.cols, m.data(), s_only.data(), nullptr, nullptr), 0);
    for (int j = 0; j < k; ++j) EXPECT_NEAR(s_only[j], s[j], allowance(m, s[0])) << name;
  }
  double a = 1, s = 0;
  EXPECT_EQ(zomath_svd(1, 1, nullptr, &s, nullptr, nullptr), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(zomath_svd(0, 1, &a, &s, nullptr, nullptr), ZOMATH_ERR_SIZE);
}

TEST(Linalg, ComplexSvdOfAUnitaryPhaseKeepsTheValues) {
  // e^{i t} A has the singular values of A; the identities hold in complex arithmetic.
  using C = std::complex<double>;
  for (auto& [name, m] : matrices()) {
    const int k = std::min(m.rows, m.cols);
    std::vector<d_complex> a(m.a.size()), u(static_cast<std::size_t>(m.rows) * k),
        vt(static_cast<std::size_t>(k) * m.cols);
    const C phase = std::polar(1.0, 0.7);
    for (std::size_t t = 0; t < a.size(); ++t) {
      const C z = phase * m.a[t];
      a[t] = {z.real(), z.imag()};
    }
    std::vector<double> s(k);
    ASSERT_EQ(zomath_svd_complex(m.rows, m.cols, a.data(), s.data(), u.data(), vt.data()), 0) << name;
    const std::vector<double> ref = lapack_singular_values(m);
    double worst = 0.0;
    for (int i = 0; i < m.rows; ++i)
      for (int j = 0; j < m.cols; ++j) {
        C sum = 0;
        for (int p = 0; p < k; ++p)
          sum += C(u[i * k + p].re, u[i * k + p].im) * s[p] * C(vt[p * m.cols + j].re, vt[p * m.cols + j].im);
        worst = std::max(worst, std::abs(sum - C(a[i * m.cols + j].re, a[i * m.cols + j].im)));
      }
    EXPECT_LE(worst, allowance(m, frobenius(m))) << name;
    for (int j = 0; j < k; ++j) EXPECT_LE(std::fabs(s[j] - ref[j]), 1e-13 * ref[0]) << name;
  }
}

std::vector<double> reference_values(const std::string& matrix, int n) {
  std::ifstream in(std::string(ZOMATH_TEST_DATA_DIR) + "/linalg_singular_values.csv");
  std::vector<double> out;
  std::string line;
  std::getline(in, line);
  while (std::getline(in, line)) {
    if (line.empty() || line[0] == '#' || line.rfind("matrix,", 0) == 0) continue;
    std::istringstream row(line);
    std::string name, size, index, value;
    std::getline(row, name, ',');
    std::getline(row, size, ',');
    std::getline(row, index, ',');
    std::getline(row, value);
    if (name == matrix && std::stoi(size) == n) out.push_back(std::stod(value));
  }
  return out;
}

TEST(Linalg, SingularValuesMatchHighPrecisionReferences) {
  // Both SVDs are backward stable, so every value is within c * eps * s_max of the exact one;
  // the smallest of hilbert 12 (1e-16) is noise at that scale, yet bounded by it.
  const struct {
    const char* name;
    Mat m;
  } cases[] = {{"hilbert", hilbert(8)}, {"hilbert", hilbert(12)}, {"vandermonde", vandermonde(8)}};
  for (const auto& c : cases) {
    const std::vector<double> ref = reference_values(c.name, c.m.rows);
    ASSERT_EQ(ref.size(), static_cast<std::size_t>(c.m.rows));
    Mat a = c.m, v(c.m.rows, c.m.rows);
    std::vector<double> s(ref.size()), w(ref.size());
    ASSERT_EQ(zomath_svd(a.rows, a.cols, a.data(), s.data(), nullptr, nullptr), 0);
    ASSERT_TRUE(zomath_svdcmp_2(a.data(), a.rows, a.cols, w.data(), v.data()));
    std::sort(w.rbegin(), w.rend());
    double worst_lapack = 0, worst_own = 0;
    for (std::size_t j = 0; j < ref.size(); ++j) {
      worst_lapack = std::max(worst_lapack, std::fabs(s[j] - ref[j]) / ref[0]);
      worst_own = std::max(worst_own, std::fabs(w[j] - ref[j]) / ref[0]);
    }
    EXPECT_LE(worst_lapack, 2e-15) << c.name << " " << c.m.rows;
    EXPECT_LE(worst_own, 2e-15) << c.name << " " << c.m.rows;
    std::printf("%s %d: worst |s - ref| / s_max: LAPACK path %.2e, own %.2e\n", c.name, c.m.rows,
                worst_lapack, worst_own);
  }
  // Second-difference matrix tridiag(-1, 2, -1): s_k = 2 - 2 cos(k pi / (n + 1)), condition
  // 4e3 at n = 100, so every value must come out to a few ulps of itself.
  const int n = 100;
  Mat t(n, n), v(n, n);
  for (int i = 0; i < n; ++i) {
    t(i, i) = 2.0;
    if (i > 0) t(i, i - 1) = t(i - 1, i) = -1.0;
  }
  std::vector<double> w(n);
  ASSERT_TRUE(zomath_svdcmp_2(t.data(), n, n, w.data(), v.data()));
  std::sort(w.begin(), w.end());
  for (int k = 1; k <= n; ++k) {
    const double exact = 4.0 * std::pow(std::sin(k * M_PI / (2.0 * (n + 1))), 2);
    EXPECT_NEAR(w[k - 1], exact, 1e-12 * exact) << k;
  }
}

TEST(Linalg, OwnSvdAndBackSubstitution) {
  for (auto& [name, m] : matrices()) {
    Mat u = m, v(m.cols, m.cols);
    std::vector<double> w(m.cols);
    ASSERT_TRUE(zomath_svdcmp_2(u.data(), m.rows, m.cols, w.data(), v.data())) << name;
    for (double x : w) EXPECT_GE(x, 0.0) << name;
    // Sorted into LAPACK's order, the factors satisfy the same identities.
    std::vector<int> order(m.cols);
    for (int j = 0; j < m.cols; ++j) order[j] = j;
    std::stable_sort(order.begin(), order.end(), [&](int x, int y) { return w[x] > w[y]; });
    const int k = std::min(m.rows, m.cols);
    Mat us(m.rows, k), vt(k, m.cols);
    std::vector<double> s(k);
    for (int p = 0; p < k; ++p) {
      s[p] = w[order[p]];
      for (int i = 0; i < m.rows; ++i) us(i, p) = u(i, order[p]);
      for (int j = 0; j < m.cols; ++j) vt(p, j) = v(j, order[p]);
    }
    for (int p = k; p < m.cols; ++p) EXPECT_EQ(w[p], 0.0) << name;  // wide: zero tail
    expect_svd(name, m, us, s, vt);

    // Back-substitution gives the minimum-norm least-squares solution: pinv(A) b.
    const Mat b = random_matrix(m.rows, 1, 40);
    Mat x(m.cols, 1), pinv(m.cols, m.rows);
    ASSERT_TRUE(zomath_svbksb(u.data(), w.data(), v.data(), m.rows, m.cols, const_cast<double*>(b.a.data()), x.data()));
    ASSERT_EQ(zomath_pinv(m.data(), pinv.data(), m.rows, m.cols, 0.0), 0);
    const std::string kind = name;
    const bool random = kind.rfind("random", 0) == 0;
    if (random || kind.rfind("rank", 0) == 0) {
      // Dropping the values below 1e-12 (the rank-3 case has three at rounding level) gives
      // what pinv gives with its default tolerance.
      Mat xt(m.cols, 1);
      ASSERT_EQ(zomath_ex_svbksb(u.data(), w.data(), v.data(), m.rows, m.cols,
                                 const_cast<double*>(b.a.data()), xt.data(), 1e-12),
                0);
      EXPECT_LE(distance(xt, mul(pinv, b)), 1e-12 * frobenius(xt)) << name;
      if (random) {  // nothing dropped, so the plain form agrees
        EXPECT_LE(distance(x, xt), 1e-14 * frobenius(xt)) << name;
      }
    }
  }
  Mat bad(2, 2, 1.0), v(2, 2);
  bad(0, 1) = INFINITY;
  const Mat bad0 = bad;
  double w[2] = {7, 7};
  EXPECT_FALSE(zomath_svdcmp_2(bad.data(), 2, 2, w, v.data()));
  EXPECT_EQ(std::memcmp(bad.data(), bad0.a.data(), 4 * sizeof(double)), 0);
  EXPECT_EQ(w[0], 7.0);
  EXPECT_EQ(zomath_ex_svdcmp(bad.data(), 2, 2, w, v.data()), 1);
  EXPECT_EQ(zomath_ex_svdcmp(bad.data(), 0, 2, w, v.data()), 1);
  EXPECT_EQ(zomath_ex_svdcmp(nullptr, 2, 2, w, v.data()), ZOMATH_ERR_NULL_POINTER);
  EXPECT_FALSE(zomath_svbksb_2(nullptr, w, v.data(), 2, 2, w, w));
  zomath::NRMat<double> nan_matrix(NAN, 3, 3), vm;
  zomath::NRVec<double> wv;
  try {
    nan_matrix.svdcmp(wv, vm);
    ADD_FAILURE() << "no exception";
  } catch (int code) {
    EXPECT_EQ(code, -30001);
  }
}

// The four Penrose conditions: A X A = A, X A X = X, (A X)' = A X, (X A)' = X A.
TEST(Linalg, PseudoInverseSatisfiesThePenroseConditions) {
  for (auto& [name, m] : matrices()) {
    const Mat a0 = m;
    Mat x(m.cols, m.rows);
    ASSERT_EQ(zomath_pinv(m.data(), x.data(), m.rows, m.cols, -1.0), 0) << name;
    EXPECT_EQ(m.a, a0.a) << name;
    const Mat ax = mul(m, x), xa = mul(x, m);
    const double scale = frobenius(m) * frobenius(x);
    EXPECT_LE(distance(mul(ax, m), m), allowance(m, scale * frobenius(m))) << name;
    EXPECT_LE(distance(mul(x, ax), x), allowance(m, scale * frobenius(x))) << name;
    EXPECT_LE(distance(ax, transpose(ax)), allowance(m, scale)) << name;
    EXPECT_LE(distance(xa, transpose(xa)), allowance(m, scale)) << name;
  }
  const struct {
    const char* name;
    std::vector<double> a;
    int rows, cols;
    double tol;
    int code;
    std::vector<double> expected;
  } cases[] = {
      {"1x1 is the reciprocal", {4.0}, 1, 1, 0.0, 0, {0.25}},
      {"all zero", {0, 0, 0, 0, 0, 0}, 2, 3, 0.0, 0, {0, 0, 0, 0, 0, 0}},
      {"tolerance above every value", {1, 0, 0, 2}, 2, 2, 5.0, 0, {0, 0, 0, 0}},
      {"tolerance drops the smaller value", {1, 0, 0, 4}, 2, 2, 2.0, 0, {0, 0, 0, 0.25}},
      {"reciprocal would overflow", {1e-310}, 1, 1, 0.0, 1, {NANUM}},
      {"size below 1", {1.0}, 0, 1, 0.0, 1, {7.0}},
  };
  for (const auto& c : cases) {
    std::vector<double> a = c.a, x(c.expected.size(), 7.0);
    EXPECT_EQ(zomath_pinv(a.data(), x.data(), c.rows, c.cols, c.tol), c.code) << c.name;
    EXPECT_EQ(x, c.expected) << c.name;
  }
  double a = 1;
  EXPECT_EQ(zomath_pinv(&a, nullptr, 1, 1, 0.0), ZOMATH_ERR_NULL_POINTER);
}

TEST(Linalg, EigenvaluesOfKnownSpectra) {
  using C = std::complex<double>;
  const int n = 12;
  Mat toeplitz(n, n);  // tridiag(-1, 2, -1): 2 - 2 cos(k pi / (n + 1))
  for (int i = 0; i < n; ++i) {
    toeplitz(i, i) = 2.0;
    if (i > 0) toeplitz(i, i - 1) = toeplitz(i - 1, i) = -1.0;
  }
  std::vector<C> toeplitz_spectrum;
  for (int k = 1; k <= n; ++k) toeplitz_spectrum.emplace_back(2.0 - 2.0 * std::cos(k * M_PI / (n + 1)), 0.0);
  // Companion matrix of (x - 1)(x - 2)(x - 3)(x^2 + 1) = x^5 - 6x^4 + 12x^3 - 12x^2 + 11x - 6.
  Mat companion(5, 5);
  const double coef[5] = {6, -12, 12, -11, 6};  // minus the lower coefficients
  for (int j = 0; j < 5; ++j) companion(0, j) = coef[j];
  for (int i = 1; i < 5; ++i) companion(i, i - 1) = 1.0;
  // Upper triangular in a wider array: stride 4 for a 3 by 3 matrix.
  Mat strided(3, 4, 99.0);
  const double tri[3][3] = {{5, 1, 2}, {0, -3, 4}, {0, 0, 0.5}};
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) strided(i, j) = tri[i][j];
  const struct {
    const char* name;
    Mat m;
    int size, stride;
    std::vector<C> spectrum;
    double tol;
  } cases[] = {
      {"second difference", toeplitz, n, n, toeplitz_spectrum, 1e-14 * 4},
      {"companion", companion, 5, 5, {{1, 0}, {2, 0}, {3, 0}, {0, 1}, {0, -1}}, 1e-12},
      {"triangular, strided", strided, 3, 4, {{5, 0}, {-3, 0}, {0.5, 0}}, 1e-14 * 5},
  };
  auto by_value = [](C x, C y) { return x.real() != y.real() ? x.real() < y.real() : x.imag() < y.imag(); };
  for (const auto& c : cases) {
    Mat a = c.m;
    std::vector<double> eig(2 * c.size);
    ASSERT_EQ(zomath_real_eigenvalues(c.size, a.data(), c.stride, eig.data()), 0) << c.name;
    EXPECT_EQ(a.a, c.m.a) << c.name;
    std::vector<C> got, want = c.spectrum;
    for (int j = 0; j < c.size; ++j) got.emplace_back(eig[2 * j], eig[2 * j + 1]);
    std::sort(got.begin(), got.end(), by_value);
    std::sort(want.begin(), want.end(), by_value);
    for (int j = 0; j < c.size; ++j) EXPECT_LE(std::abs(got[j] - want[j]), c.tol) << c.name << " " << j;
  }
  double a[4] = {1, 2, 3, 4}, eig[4];
  EXPECT_EQ(zomath_real_eigenvalues(2, a, 1, eig), ZOMATH_ERR_SIZE);
  EXPECT_EQ(zomath_real_eigenvalues(0, a, 2, eig), ZOMATH_ERR_SIZE);
  EXPECT_EQ(zomath_real_eigenvalues(2, nullptr, 2, eig), ZOMATH_ERR_NULL_POINTER);
  a[3] = NAN;
  EXPECT_EQ(zomath_real_eigenvalues(2, a, 2, eig), ZOMATH_LINALG_NOT_FINITE);
  EXPECT_EQ(eig[0], NANUM);
}

TEST(Linalg, TransposeMovesEveryElementTypeBitForBit) {
  const struct {
    int type;
    std::size_t bytes;
  } types[] = {{0, 8}, {1, 4}, {2, 2}, {3, 4}, {4, 4}, {7, 4}, {10, 16}};
  for (const auto& t : types) {
    for (auto [rows, cols] : {std::pair{2, 3}, std::pair{3, 3}}) {
      std::vector<unsigned char> data(rows * cols * t.bytes), before;
      for (std::size_t k = 0; k < data.size(); ++k) data[k] = static_cast<unsigned char>(k * 7 + 1);
      before = data;
      ASSERT_EQ(zomath_transpose(rows, cols, t.type, data.data()), 0);
      for (int i = 0; i < rows; ++i)
        for (int j = 0; j < cols; ++j)
          EXPECT_EQ(std::memcmp(&data[(j * rows + i) * t.bytes], &before[(i * cols + j) * t.bytes], t.bytes), 0)
              << "type " << t.type;
    }
  }
  double d[2] = {1, 2};
  EXPECT_EQ(zomath_transpose(1, 2, 5, d), 0);  // unknown type: nothing
  EXPECT_EQ(d[1], 2.0);
  EXPECT_EQ(zomath_transpose(1, 2, 0, nullptr), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(zomath_transpose(0, 2, 0, d), ZOMATH_ERR_SIZE);
}

TEST(Linalg, Norms) {
  const double v[] = {3e200, 4e200, 0.0}, tiny[] = {3e-200, 4e-200}, plain[] = {1, 2, 2};
  EXPECT_DOUBLE_EQ(zomath_norm(v, 3), 5e200);  // no overflow in between
  EXPECT_DOUBLE_EQ(zomath_norm(tiny, 2), 5e-200);
  EXPECT_EQ(zomath_norm(plain, 3), 3.0);
  EXPECT_EQ(zomath_norm(v, 0), NANUM);
  EXPECT_EQ(zomath_norm(nullptr, 3), NANUM);

  const double a[] = {1, -2, 3, -4, 5, -6};  // 2 by 3
  const double s_max = std::sqrt((91 + std::sqrt(8065.0)) / 2);  // from the eigenvalues of A A'
  const struct {
    unsigned rows, cols;
    int type;
    double expected;
  } cases[] = {{2, 3, 1, 9.0}, {2, 3, 3, 15.0}, {2, 3, 4, std::sqrt(91.0)}, {2, 3, 2, s_max},
               {2, 0, 1, -1.0}, {0, 3, 3, -1.0}, {0, 3, 1, 0.0}, {0, 0, 4, NANUM}, {2, 3, 5, NANUM}};
  for (const auto& c : cases) EXPECT_NEAR(zomath_norm2(a, c.rows, c.cols, c.type), c.expected, 1e-12) << c.type;
  const double with_inf[] = {1, INFINITY}, with_nan[] = {1, NAN};
  EXPECT_EQ(zomath_norm2(with_inf, 1, 2, 2), INFINITY);
  EXPECT_EQ(zomath_norm2(with_nan, 1, 2, 4), NANUM);
}

TEST(Linalg, PackedLowerTriangleFillsBothTriangles) {
  const double packed[] = {1, 2, 3, 4, 5, 6};
  std::vector<double> m(16, 9.0);
  covert_lower_triangle_vector_to_matrix(packed, 6, m.data(), 4);
  const std::vector<double> expected = {9, 1, 2, 4, 1, 9, 3, 5, 2, 3, 9, 6, 4, 5, 6, 9};
  EXPECT_EQ(m, expected);
  std::vector<double> untouched(16, 9.0);
  covert_lower_triangle_vector_to_matrix(packed, 5, untouched.data(), 4);
  covert_lower_triangle_vector_to_matrix(nullptr, 6, untouched.data(), 4);
  EXPECT_EQ(untouched, std::vector<double>(16, 9.0));
}

}  // namespace
