// Dense linear algebra: each factorisation checked by its defining identities on random,
// ill-conditioned and rank-deficient matrices; singular values against 60-digit references
// (tests/tools/linalg_reference.py) and LAPACK's own driver; the codes of bad input.
//
// Tolerances are backward-error bounds, 8 n eps |A|: a stable algorithm stays well inside, and a
// wrong sign, pivot or transposition is off by O(|A|).
#include <gtest/gtest.h>
#include <lapacke.h>

#include <algorithm>
#include <complex>
#include <cstring>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "core/nrvec/nrvec.h"
#include "tests/scalar/reference.h"
#include "zomath/linalg.h"

namespace {

using C = std::complex<double>;

struct Mat {
  int rows, cols;
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
double norm(const Mat& x) {  // Frobenius
  double s = 0;
  for (double v : x.a) s += v * v;
  return std::sqrt(s);
}
double distance(Mat x, const Mat& y) {
  for (std::size_t k = 0; k < x.a.size(); ++k) x.a[k] -= y.a[k];
  return norm(x);
}
double allowance(const Mat& x, double scale) { return 8.0 * std::max(x.rows, x.cols) * 0x1p-52 * scale; }

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
Mat second_difference(int n) {  // tridiag(-1, 2, -1): eigenvalues 2 - 2 cos(k pi / (n + 1))
  Mat t(n, n);
  for (int i = 0; i < n; ++i) {
    t(i, i) = 2.0;
    if (i > 0) t(i, i - 1) = t(i - 1, i) = -1.0;
  }
  return t;
}

struct Case {
  std::string name;
  Mat m;
};
// Square and rectangular, well and ill conditioned, and of rank 3 in 8 by 6.
std::vector<Case> matrices() {
  return {{"random 7x7", random_matrix(7, 7, 1)},     {"random 9x5", random_matrix(9, 5, 2)},
          {"random 5x9", random_matrix(5, 9, 3)},     {"random 60x40", random_matrix(60, 40, 4)},
          {"rank 3 in 8x6", mul(random_matrix(8, 3, 5), random_matrix(3, 6, 6))},
          {"hilbert 8", hilbert(8)},                  {"hilbert 12", hilbert(12)},
          {"vandermonde 8", vandermonde(8)}};
}

std::vector<double> lapack_singular_values(Mat m) {  // LAPACK's one-call driver
  std::vector<double> s(std::min(m.rows, m.cols)), superb(s.size());
  EXPECT_EQ(LAPACKE_dgesvd(LAPACK_ROW_MAJOR, 'N', 'N', m.rows, m.cols, m.data(), m.cols, s.data(),
                           nullptr, 1, nullptr, 1, superb.data()), 0);
  return s;
}

TEST(Linalg, LuQrAndInverseByTheirIdentities) {
  for (auto& [name, m] : matrices()) {
    const Mat a0 = m;
    const int k = std::min(m.rows, m.cols);
    Mat lu = m, l(m.rows, k), u(k, m.cols), pa = m;
    std::vector<int> piv(k);
    ASSERT_EQ(zomath_lu(lu.data(), piv.data(), m.rows, m.cols), 0) << name;
    for (int i = 0; i < m.rows; ++i)
      for (int j = 0; j < m.cols; ++j) {
        if (j < i && j < k) l(i, j) = lu(i, j);
        if (j >= i && i < k) u(i, j) = lu(i, j);
      }
    for (int i = 0; i < k; ++i) {
      l(i, i) = 1.0;
      for (int j = 0; j < m.cols; ++j) std::swap(pa(i, j), pa(piv[i] - 1, j));  // one-based, in order
    }
    EXPECT_LE(distance(mul(l, u), pa), allowance(m, norm(m))) << name;

    Mat q(m.rows, m.rows), r(m.rows, m.cols);
    ASSERT_EQ(zomath_qr(m.data(), q.data(), r.data(), m.rows, m.cols), 0) << name;
    EXPECT_EQ(m.a, a0.a) << name;
    EXPECT_LE(distance(mul(transpose(q), q), identity(m.rows)), allowance(m, m.rows)) << name;
    EXPECT_LE(distance(mul(q, r), m), allowance(m, norm(m))) << name;
    for (int i = 0; i < m.rows; ++i)
      for (int j = 0; j < std::min(i, m.cols); ++j) EXPECT_EQ(r(i, j), 0.0) << name;

    if (m.rows == m.cols && name != "hilbert 12") {  // hilbert 12 is singular to working precision
      Mat inv = m, x = random_matrix(m.rows, 3, 8), b = mul(m, x);
      ASSERT_EQ(zomath_inverse(inv.data(), m.rows), 0) << name;
      EXPECT_LE(distance(mul(m, inv), identity(m.rows)), allowance(m, norm(m) * norm(inv))) << name;
      lu = m;
      ASSERT_EQ(zomath_lu_solve(lu.data(), b.data(), piv.data(), m.rows, 3), 0) << name;
      EXPECT_LE(distance(mul(m, b), mul(m, x)), allowance(m, norm(m) * norm(b))) << name;
    }
  }
}

TEST(Linalg, SingularOrBadMatricesGiveTheirCodesAndStayAsTheyWere) {
  const Mat x = mul(random_matrix(6, 2, 30), random_matrix(2, 4, 31));
  Mat zero_row = random_matrix(4, 4, 32), with_nan = zero_row;
  for (int j = 0; j < 4; ++j) zero_row(2, j) = 0.0;
  with_nan(1, 1) = NAN;
  const struct {
    const char* name;
    Mat m;
    int code;
  } cases[] = {{"exactly singular", zero_row, ZOMATH_LINALG_SINGULAR},
               {"rank 2 of 4, pivots of rounding size", mul(transpose(x), x), ZOMATH_LINALG_SINGULAR},
               {"NaN entry", with_nan, ZOMATH_LINALG_NOT_FINITE}};
  for (const auto& c : cases) {
    Mat m = c.m, b(4, 1, 1.0);
    int piv[4];
    EXPECT_EQ(zomath_inverse(m.data(), 4), c.code) << c.name;
    EXPECT_EQ(std::memcmp(m.data(), c.m.a.data(), 16 * sizeof(double)), 0) << c.name;
    if (c.name[0] != 'r') {  // the solve stops at the factorisation and leaves B alone
      EXPECT_EQ(zomath_lu_solve(m.data(), b.data(), piv, 4, 1), c.code) << c.name;
      EXPECT_EQ(b.a, std::vector<double>(4, 1.0)) << c.name;
    }
  }
  double a = 1, q = 0;
  int piv = 0;
  const int codes[][2] = {{zomath_lu(nullptr, &piv, 1, 1), -11}, {zomath_lu(&a, &piv, 0, 1), -1},
                          {zomath_lu_solve(&a, nullptr, &piv, 1, 1), -11}, {zomath_lu_solve(&a, &q, &piv, 1, 0), -1},
                          {zomath_qr(&a, nullptr, &q, 1, 1), -11},       {zomath_qr(&a, &q, &q, 1, -2), -1},
                          {zomath_inverse(nullptr, 4), -11},             {zomath_inverse(&a, 0), -1},
                          {zomath_svd(1, 1, nullptr, &q, nullptr, nullptr), -11},
                          {zomath_svd(0, 1, &a, &q, nullptr, nullptr), -5},
                          {zomath_svd_complex(1, 0, nullptr, &q, nullptr, nullptr), -11}};
  for (const auto& c : codes) EXPECT_EQ(c[0], c[1]);
}

// U diag(s) VT = A with orthonormal U and V; s descending and equal to LAPACK's driver.
void expect_svd(const Case& c, const Mat& u, const std::vector<double>& s, const Mat& vt) {
  const Mat& m = c.m;
  const int k = static_cast<int>(s.size());
  Mat us = u;
  for (int i = 0; i < m.rows; ++i)
    for (int j = 0; j < k; ++j) us(i, j) *= s[j];
  EXPECT_LE(distance(mul(us, vt), m), allowance(m, norm(m))) << c.name;
  EXPECT_LE(distance(mul(transpose(u), u), identity(k)), allowance(m, k)) << c.name;
  EXPECT_LE(distance(mul(vt, transpose(vt)), identity(k)), allowance(m, k)) << c.name;
  const std::vector<double> ref = lapack_singular_values(m);
  for (int j = 0; j < k; ++j) {
    EXPECT_LE(std::fabs(s[j] - ref[j]), 1e-13 * ref[0]) << c.name << " value " << j;
    EXPECT_LE(s[j], j > 0 ? s[j - 1] : s[0]) << c.name;
  }
}

TEST(Linalg, SvdThroughTheBidiagonalPathRealAndComplex) {
  for (auto& c : matrices()) {
    Mat& m = c.m;
    const Mat a0 = m;
    const int k = std::min(m.rows, m.cols);
    Mat u(m.rows, k), vt(k, m.cols);
    std::vector<double> s(k), s_only(k);
    ASSERT_EQ(zomath_svd(m.rows, m.cols, m.data(), s.data(), u.data(), vt.data()), 0) << c.name;
    EXPECT_EQ(m.a, a0.a) << c.name;
    expect_svd(c, u, s, vt);
    // The values alone come from a different bidiagonal iteration (no rotations to keep).
    ASSERT_EQ(zomath_svd(m.rows, m.cols, m.data(), s_only.data(), nullptr, nullptr), 0);
    for (int j = 0; j < k; ++j) EXPECT_NEAR(s_only[j], s[j], allowance(m, s[0])) << c.name;

    // e^{0.7 i} A has the singular values of A, and U S VT gives it back in complex arithmetic.
    std::vector<d_complex> za(m.a.size()), zu(u.a.size()), zvt(vt.a.size());
    for (std::size_t t = 0; t < za.size(); ++t) {
      const C z = m.a[t] * std::polar(1.0, 0.7);
      za[t] = {z.real(), z.imag()};
    }
    ASSERT_EQ(zomath_svd_complex(m.rows, m.cols, za.data(), s.data(), zu.data(), zvt.data()), 0) << c.name;
    auto z = [](const d_complex& x) { return C(x.re, x.im); };
    double worst = 0.0;
    for (int i = 0; i < m.rows; ++i)
      for (int j = 0; j < m.cols; ++j) {
        C sum = 0;
        for (int p = 0; p < k; ++p) sum += z(zu[i * k + p]) * s[p] * z(zvt[p * m.cols + j]);
        worst = std::max(worst, std::abs(sum - z(za[i * m.cols + j])));
      }
    EXPECT_LE(worst, allowance(m, norm(m))) << c.name;
    for (int j = 0; j < k; ++j) EXPECT_NEAR(s[j], s_only[j], 1e-13 * s_only[0]) << c.name;
  }
}

TEST(Linalg, SingularValuesMatchHighPrecisionReferences) {
  // Both SVDs are backward stable: every value within a few eps of s_max (the table's scale),
  // the smallest of hilbert 12 (1e-16) included.
  const auto rows = zomath::testing::load_reference("linalg_singular_values.csv");
  ASSERT_EQ(rows.size(), 28u);
  zomath::testing::ErrorStats lapack, own;
  for (std::size_t r = 0; r < rows.size(); r += static_cast<std::size_t>(rows[r].args[1])) {
    const int n = static_cast<int>(rows[r].args[1]);
    Mat a = rows[r].args[0] == 1 ? hilbert(n) : vandermonde(n), v(n, n);
    std::vector<double> s(n), w(n);
    ASSERT_EQ(zomath_svd(n, n, a.data(), s.data(), nullptr, nullptr), 0);
    ASSERT_TRUE(zomath_svdcmp_2(a.data(), n, n, w.data(), v.data()));
    std::sort(w.rbegin(), w.rend());
    for (int j = 0; j < n; ++j) {
      lapack.add(rows[r + j], s[j]);
      own.add(rows[r + j], w[j]);
    }
  }
  std::printf("bidiagonal path: %s\nown SVD: %s\n", lapack.describe().c_str(), own.describe().c_str());
  EXPECT_LE(lapack.worst(), 2e-15);
  EXPECT_LE(own.worst(), 2e-15);

  // Condition 4e3 at n = 100: every value to a few ulps of itself.
  const int n = 100;
  Mat t = second_difference(n), v(n, n);
  std::vector<double> w(n);
  ASSERT_TRUE(zomath_svdcmp_2(t.data(), n, n, w.data(), v.data()));
  std::sort(w.begin(), w.end());
  for (int k = 1; k <= n; ++k) {
    const double exact = 4.0 * std::pow(std::sin(k * M_PI / (2.0 * (n + 1))), 2);
    EXPECT_NEAR(w[k - 1], exact, 1e-12 * exact) << k;
  }
}

TEST(Linalg, OwnSvdAndBackSubstitution) {
  for (auto& c : matrices()) {
    const Mat& m = c.m;
    Mat u = m, v(m.cols, m.cols);
    std::vector<double> w(m.cols);
    ASSERT_TRUE(zomath_svdcmp_2(u.data(), m.rows, m.cols, w.data(), v.data())) << c.name;
    // Sorted into LAPACK's order, the factors satisfy the same identities; a wide matrix has
    // a zero tail.
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
    for (int p = k; p < m.cols; ++p) EXPECT_EQ(w[p], 0.0) << c.name;
    expect_svd(c, us, s, vt);

    // Back-substitution gives the minimum-norm least-squares solution pinv(A) b, once the
    // values below 1e-12 are dropped (the rank-3 case has three at rounding level).
    if (c.name[0] != 'r') continue;
    Mat b = random_matrix(m.rows, 1, 40), x(m.cols, 1), xt(m.cols, 1), pinv(m.cols, m.rows);
    ASSERT_TRUE(zomath_svbksb(u.data(), w.data(), v.data(), m.rows, m.cols, b.data(), x.data()));
    ASSERT_EQ(zomath_ex_svbksb(u.data(), w.data(), v.data(), m.rows, m.cols, b.data(), xt.data(), 1e-12), 0);
    ASSERT_EQ(zomath_pinv(m.a.data(), pinv.data(), m.rows, m.cols, 0.0), 0);
    EXPECT_LE(distance(xt, mul(pinv, b)), 1e-12 * norm(xt)) << c.name;
    if (c.name.rfind("random", 0) == 0) {  // nothing dropped
      EXPECT_LE(distance(x, xt), 1e-14 * norm(xt)) << c.name;
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
    const double scale = norm(m) * norm(x);
    EXPECT_LE(distance(mul(ax, m), m), allowance(m, scale * norm(m))) << name;
    EXPECT_LE(distance(mul(x, ax), x), allowance(m, scale * norm(x))) << name;
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
  std::vector<C> second;
  for (int k = 1; k <= 12; ++k) second.emplace_back(2.0 - 2.0 * std::cos(k * M_PI / 13), 0.0);
  Mat companion(5, 5);  // of (x - 1)(x - 2)(x - 3)(x^2 + 1) = x^5 - 6x^4 + 12x^3 - 12x^2 + 11x - 6
  const double top[5] = {6, -12, 12, -11, 6};
  for (int j = 0; j < 5; ++j) companion(0, j) = top[j];
  for (int i = 1; i < 5; ++i) companion(i, i - 1) = 1.0;
  Mat strided(3, 4, 99.0);  // upper triangular 3 by 3 in rows of 4
  const double tri[3][3] = {{5, 1, 2}, {0, -3, 4}, {0, 0, 0.5}};
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) strided(i, j) = tri[i][j];
  const struct {
    const char* name;
    Mat m;
    int size, stride;
    std::vector<C> spectrum;
    double tol;
  } cases[] = {{"second difference", second_difference(12), 12, 12, second, 4e-14},
               {"companion", companion, 5, 5, {{1, 0}, {2, 0}, {3, 0}, {0, 1}, {0, -1}}, 1e-12},
               {"triangular, strided", strided, 3, 4, {{5, 0}, {-3, 0}, {0.5, 0}}, 5e-14}};
  auto order = [](C x, C y) { return x.real() != y.real() ? x.real() < y.real() : x.imag() < y.imag(); };
  for (const auto& c : cases) {
    Mat a = c.m;
    std::vector<double> eig(2 * c.size);
    ASSERT_EQ(zomath_real_eigenvalues(c.size, a.data(), c.stride, eig.data()), 0) << c.name;
    EXPECT_EQ(a.a, c.m.a) << c.name;
    std::vector<C> got, want = c.spectrum;
    for (int j = 0; j < c.size; ++j) got.emplace_back(eig[2 * j], eig[2 * j + 1]);
    std::sort(got.begin(), got.end(), order);
    std::sort(want.begin(), want.end(), order);
    for (int j = 0; j < c.size; ++j) EXPECT_LE(std::abs(got[j] - want[j]), c.tol) << c.name << " " << j;
  }
  double a[4] = {1, 2, 3, NAN}, eig[4];
  EXPECT_EQ(zomath_real_eigenvalues(2, a, 1, eig), ZOMATH_ERR_SIZE);
  EXPECT_EQ(zomath_real_eigenvalues(2, nullptr, 2, eig), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(zomath_real_eigenvalues(2, a, 2, eig), ZOMATH_LINALG_NOT_FINITE);
  EXPECT_EQ(eig[0], NANUM);
}

TEST(Linalg, TransposeMovesEveryElementTypeBitForBit) {
  const std::pair<int, std::size_t> types[] = {{0, 8}, {1, 4}, {2, 2}, {3, 4}, {4, 4}, {7, 4}, {10, 16}};
  for (auto [type, bytes] : types) {
    for (auto [rows, cols] : {std::pair{2, 3}, std::pair{3, 3}}) {
      std::vector<unsigned char> data(rows * cols * bytes), before;
      for (std::size_t k = 0; k < data.size(); ++k) data[k] = static_cast<unsigned char>(k * 7 + 1);
      before = data;
      ASSERT_EQ(zomath_transpose(rows, cols, type, data.data()), 0);
      for (int i = 0; i < rows; ++i)
        for (int j = 0; j < cols; ++j)
          EXPECT_EQ(std::memcmp(&data[(j * rows + i) * bytes], &before[(i * cols + j) * bytes], bytes), 0) << type;
    }
  }
  double d[2] = {1, 2};
  EXPECT_EQ(zomath_transpose(1, 2, 5, d), 0);  // unknown type: nothing
  EXPECT_EQ(d[1], 2.0);
  EXPECT_EQ(zomath_transpose(1, 2, 0, nullptr), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(zomath_transpose(0, 2, 0, d), ZOMATH_ERR_SIZE);
}

TEST(Linalg, HostThreadsInvertAtTheSameTime) {
  // The BLAS underneath shares its work buffers between calls; two host threads inverting at
  // once must still get exactly the single-thread inverse every time.
  const int n = 160;
  std::mt19937 gen(7);
  std::normal_distribution<double> normal;
  std::vector<double> a(n * n);
  for (double& v : a) v = normal(gen);
  std::vector<double> expected = a;
  ASSERT_EQ(zomath_inverse(expected.data(), n), 0);
  auto worker = [&](int* mismatches) {
    for (int round = 0; round < 300; ++round) {
      std::vector<double> b = a;
      if (zomath_inverse(b.data(), n) != 0 || b != expected) ++*mismatches;
    }
  };
  int bad1 = 0, bad2 = 0;
  std::thread t1(worker, &bad1), t2(worker, &bad2);
  t1.join();
  t2.join();
  EXPECT_EQ(bad1 + bad2, 0);
}

TEST(Linalg, NormsAndThePackedTriangle) {
  const double big[] = {3e200, 4e200, 0.0}, tiny[] = {3e-200, 4e-200}, plain[] = {1, 2, 2};
  EXPECT_DOUBLE_EQ(zomath_norm(big, 3), 5e200);  // no overflow or underflow in between
  EXPECT_DOUBLE_EQ(zomath_norm(tiny, 2), 5e-200);
  EXPECT_EQ(zomath_norm(plain, 3), 3.0);
  EXPECT_EQ(zomath_norm(big, 0), NANUM);
  EXPECT_EQ(zomath_norm(nullptr, 3), NANUM);

  const double a[] = {1, -2, 3, -4, 5, -6};  // 2 by 3; A A' has eigenvalues (91 +- sqrt(8065)) / 2
  const struct {
    unsigned rows, cols;
    int type;
    double expected;
  } cases[] = {{2, 3, 1, 9.0},  {2, 3, 3, 15.0},  {2, 3, 4, std::sqrt(91.0)}, {2, 3, 2, std::sqrt((91 + std::sqrt(8065.0)) / 2)},
               {2, 0, 1, -1.0}, {0, 3, 3, -1.0},  {0, 3, 1, 0.0}, {0, 0, 4, NANUM}, {2, 3, 5, NANUM}};
  for (const auto& c : cases) EXPECT_NEAR(zomath_norm2(a, c.rows, c.cols, c.type), c.expected, 1e-14) << c.type;
  const double with_inf[] = {1, INFINITY}, with_nan[] = {1, NAN};
  EXPECT_EQ(zomath_norm2(with_inf, 1, 2, 2), INFINITY);
  EXPECT_EQ(zomath_norm2(with_nan, 1, 2, 4), NANUM);

  const double packed[] = {1, 2, 3, 4, 5, 6};
  std::vector<double> m(16, 9.0), untouched(16, 9.0);
  covert_lower_triangle_vector_to_matrix(packed, 6, m.data(), 4);
  EXPECT_EQ(m, (std::vector<double>{9, 1, 2, 4, 1, 9, 3, 5, 2, 3, 9, 6, 4, 5, 6, 9}));
  covert_lower_triangle_vector_to_matrix(packed, 5, untouched.data(), 4);
  covert_lower_triangle_vector_to_matrix(nullptr, 6, untouched.data(), 4);
  EXPECT_EQ(untouched, std::vector<double>(16, 9.0));
}

}  // namespace
