// NRMat: storage modes, copy and assignment, block operations and the NANUM product rule.
#include <gtest/gtest.h>

#include <vector>

#include "core/nrvec/nrvec.h"

namespace {

using zomath::NRMat;
using zomath::NRVec;

NRMat<double> from(std::vector<double> values, int rows, int cols) {
  return NRMat<double>(values.data(), rows, cols);
}

void expect_rows(const NRMat<double>& m, const std::vector<std::vector<double>>& rows) {
  ASSERT_EQ(m.nrows(), static_cast<int>(rows.size()));
  for (int i = 0; i < m.nrows(); ++i) {
    ASSERT_EQ(m.ncols(), static_cast<int>(rows[i].size()));
    for (int j = 0; j < m.ncols(); ++j) EXPECT_EQ(m[i][j], rows[i][j]) << i << "," << j;
  }
}

TEST(NRMat, StorageModes) {
  double data[6] = {1, 2, 3, 4, 5, 6};
  {
    NRMat<double> w(2, 3, data);
    EXPECT_EQ(w.GetStorage(), NRMat<double>::OWNS_TABLE);
    EXPECT_EQ(w[1], data + 3);  // rows point into the caller's block
    EXPECT_EQ(w.GetData(1, 2), data + 5);
    EXPECT_EQ(w.GetData(2, 0), nullptr);
    EXPECT_EQ(w.GetData(0, -1), nullptr);
  }
  EXPECT_EQ(data[5], 6);  // the wrapper's destructor leaves the block alone

  NRMat<double> nullview(3, 3, nullptr);  // empty, still owning only its (absent) table
  EXPECT_FALSE(nullview.IsValid());
  EXPECT_EQ(nullview.nrows(), 0);
  EXPECT_EQ(nullview.GetStorage(), NRMat<double>::OWNS_TABLE);
  EXPECT_EQ(nullview.GetPtrToRows(), nullptr);

  NRMat<double> bad(0, 4);
  EXPECT_EQ(bad.GetStorage(), NRMat<double>::OWNS_ALL);
  EXPECT_FALSE(bad.IsValid());
  EXPECT_FALSE(bad.Transpose());
  EXPECT_FALSE(bad.IsEqual(NRMat<double>()));  // two empty matrices are not equal: not valid
  EXPECT_EQ(bad.Count(0, zomath::COUNT_EQ), -1);
  EXPECT_FALSE(bad.Replace(0, 0, zomath::REPLACE_LESS));
}

TEST(NRMat, CopyIsDeepAndAssignmentFollowsTheSource) {
  double data[4] = {1, 2, 3, 4};
  NRMat<double> w(2, 2, data);
  NRMat<double> copy(w);
  EXPECT_EQ(copy.GetStorage(), NRMat<double>::OWNS_ALL);
  copy[0][0] = 10;
  EXPECT_EQ(data[0], 1);
  EXPECT_EQ(copy[1] - copy[0], 2);  // rows contiguous

  NRMat<double> target(7.0, 3, 1);
  target = copy;  // different size: reallocated
  expect_rows(target, {{10, 2}, {3, 4}});
  target = NRMat<double>();  // an invalid source leaves the target as it was
  expect_rows(target, {{10, 2}, {3, 4}});
  w = copy;  // same size: copied into the wrapped block
  EXPECT_EQ(data[0], 10);
}

TEST(NRMat, SetSizeKeepsTheOverlapOnRequest) {
  NRMat<double> m = from({1, 2, 3, 4, 5, 6}, 2, 3);
  EXPECT_TRUE(m.SetSize(2, 3, true));  // unchanged: true at once, contents kept
  EXPECT_EQ(m[1][2], 6);
  EXPECT_FALSE(m.SetSize(0, 3));
  EXPECT_TRUE(m.SetSize(3, 2, false));
  EXPECT_EQ(m[0][0], 1);
  EXPECT_EQ(m[0][1], 2);
  EXPECT_EQ(m[1][0], 4);
  EXPECT_EQ(m[1][1], 5);
}

TEST(NRMat, TransposeInPlace) {
  NRMat<double> square = from({1, 2, 3, 4}, 2, 2);
  EXPECT_TRUE(square.Transpose());
  expect_rows(square, {{1, 3}, {2, 4}});

  // A wrapped rectangle keeps its block: the caller's array holds the transpose.
  double data[6] = {1, 2, 3, 4, 5, 6};
  NRMat<double> w(2, 3, data);
  EXPECT_TRUE(w.Transpose());
  expect_rows(w, {{1, 4}, {2, 5}, {3, 6}});
  EXPECT_EQ(w.Data(), data);
  EXPECT_EQ(data[1], 4);

  NRMat<d_complex> z(d_complex{1, 2}, 1, 3);
  EXPECT_TRUE(z.Transpose());
  EXPECT_EQ(z.nrows(), 3);
}

TEST(NRMat, BlockOperations) {
  const NRMat<double> m = from({1, 2, 3, 4, 5, 6, 7, 8, 9}, 3, 3);
  NRMat<double> sub;
  EXPECT_TRUE(m.GetSubMatrix(sub, 1, -1, 0, 1));
  expect_rows(sub, {{2, 3}, {5, 6}});
  EXPECT_FALSE(m.GetSubMatrix(sub, 2, 1, 0, 0));
  EXPECT_FALSE(m.GetSubMatrix(sub, 0, 3, 0, 0));

  NRMat<double> self = m;  // a matrix as its own target becomes the block
  EXPECT_TRUE(self.GetSubMatrix(self, 0, 0, 1, 2));
  expect_rows(self, {{4}, {7}});

  NRMat<double> target(0.0, 3, 3);
  EXPECT_TRUE(target.SetSubMatrix(m, 1, 2));  // only the fitting corner is copied
  expect_rows(target, {{0, 0, 0}, {0, 0, 0}, {0, 1, 2}});
  EXPECT_FALSE(target.SetSubMatrix(m, 3, 0));

  NRMat<double> e = m;
  EXPECT_TRUE(e.DeleteRow(1));
  EXPECT_TRUE(e.DeleteCol(0));
  expect_rows(e, {{2, 3}, {8, 9}});
  EXPECT_TRUE(e.InsertRow(2, -1));
  EXPECT_TRUE(e.InsertCol(0, 0));
  expect_rows(e, {{0, 2, 3}, {0, 8, 9}, {0, -1, -1}});
  EXPECT_TRUE(e.Pad(1, 0, 0, 1, 5));
  expect_rows(e, {{5, 5, 5, 5}, {0, 2, 3, 5}, {0, 8, 9, 5}, {0, -1, -1, 5}});

  NRVec<double> flat;
  EXPECT_TRUE(m.CopyToVector(flat));
  EXPECT_EQ(flat.size(), 9);
  EXPECT_EQ(flat[5], 6);
}

TEST(NRMat, Diagonals) {
  NRMat<double> m = from({1, 2, 3, 4, 5, 6}, 2, 3);
  NRVec<double> d;
  EXPECT_TRUE(m.GetDiagonal(d));
  EXPECT_EQ(d.size(), 2);
  EXPECT_EQ(d[1], 5);
  EXPECT_TRUE(m.GetDiagonal(d, 2));
  EXPECT_EQ(d.size(), 1);
  EXPECT_EQ(d[0], 3);
  EXPECT_TRUE(m.GetDiagonal(d, -1));
  EXPECT_EQ(d[0], 4);
  EXPECT_TRUE(m.GetDiagonal(d, 1, false));  // bUpper false mirrors: one below
  EXPECT_EQ(d[0], 4);
  EXPECT_FALSE(m.GetDiagonal(d, 3));
  EXPECT_TRUE(m.SetDiagonal(NRVec<double>(0.0, 5), 1));
  expect_rows(m, {{1, 0, 3}, {4, 5, 0}});
}

TEST(NRMat, MultiplyFollowsTheNanumProductRule) {
  const NRMat<double> a = from({1, 2, 3, 4, 5, 6}, 2, 3);
  const NRMat<double> b = from({7, 8, 9, 10, 11, 12}, 3, 2);
  NRMat<double> c;
  EXPECT_TRUE(a.Multiply(b, c));
  expect_rows(c, {{58, 64}, {139, 154}});
  EXPECT_FALSE(a.Multiply(a, c));  // 2x3 by 2x3

  NRMat<double> holed = a;
  holed[0][1] = NANUM;  // every term of row 0 that uses it is missing, so are its sums
  EXPECT_TRUE(holed.Multiply(b, c));
  expect_rows(c, {{NANUM, NANUM}, {139, 154}});

  NRMat<double> sq = from({1, 1, 0, 1}, 2, 2);
  EXPECT_TRUE(sq.Multiply(sq, sq));  // aliasing output
  expect_rows(sq, {{1, 2}, {0, 1}});
}

TEST(NRMat, ElementwiseArithmetic) {
  NRMat<double> a = from({1, NANUM, 3, 4}, 2, 2);
  const NRMat<double> b = from({1, 1, 1, 2}, 2, 2);
  EXPECT_EQ(a.DotProduct(b), NANUM);
  NRMat<double> s;
  EXPECT_TRUE(a.Add(b, s));
  expect_rows(s, {{2, NANUM}, {4, 6}});
  EXPECT_TRUE(a.SubEqual(b));
  EXPECT_TRUE(a.MulEqual(b));
  expect_rows(a, {{0, NANUM}, {2, 4}});
  a.Scale(0.5);
  expect_rows(a, {{0, NANUM}, {1, 2}});
  EXPECT_FALSE(a.AddEqual(from({1, 2}, 1, 2)));
  a.FuncByElement([](double x) { return x == NANUM ? 0.0 : x; });
  EXPECT_TRUE(a.IsEqual(from({0, 0, 1, 2}, 2, 2)));

  // Integer matrices saturate instead of overflowing.
  NRMat<unsigned short> u(static_cast<unsigned short>(40000), 1, 2);
  u.Scale(2.0);
  EXPECT_EQ(u[0][0], 65535);
  u.Scale(-1.0);
  EXPECT_EQ(u[0][1], 0);
}

TEST(NRMat, ReplaceAndCount) {
  NRMat<double> m = from({-2, -1, 0, 1, 2, 3}, 2, 3);
  EXPECT_EQ(m.Count(1, zomath::COUNT_GT), 2);
  EXPECT_EQ(m.Count(1, zomath::COUNT_LE), 4);
  EXPECT_EQ(m.Count(1, -1), -1);
  // Match x == +-1 and x > |1| outside: replaced; the rest (only 0) becomes NANUM.
  EXPECT_TRUE(m.Replace(1, 9, zomath::REPLACE_EQUAL | zomath::REPLACE_GREATER |
                                  zomath::REPLACE_ABSOLUTE | zomath::REPLACE_UNMATCHED));
  expect_rows(m, {{9, 9, NANUM}, {9, 9, 9}});
  const double other[6] = {10, 20, 30, 40, 50, 60};
  EXPECT_TRUE(m.Replace(9, 0, zomath::REPLACE_EQUAL, other));
  expect_rows(m, {{10, 20, NANUM}, {40, 50, 60}});
  EXPECT_TRUE(m.ReplaceGreaterThan(45, 45));
  EXPECT_TRUE(m.ReplaceLessThan(15, 15));
  expect_rows(m, {{15, 20, 15}, {40, 45, 45}});  // NANUM is a tiny negative: less than 15
}

TEST(NRMat, SortRowsByAColumnStably) {
  NRMat<double> m = from({3, 1, 1, 2, 3, 3, 1, 4}, 4, 2);
  EXPECT_TRUE(m.Sort(0));
  expect_rows(m, {{1, 2}, {1, 4}, {3, 1}, {3, 3}});
  EXPECT_TRUE(m.Sort(1, false));
  expect_rows(m, {{1, 4}, {3, 3}, {1, 2}, {3, 1}});
  EXPECT_FALSE(m.Sort(2));
}

}  // namespace
