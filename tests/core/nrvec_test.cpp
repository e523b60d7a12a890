// NRVec: ownership, copy and assignment, and the members the library's exports rely on.
#include <gtest/gtest.h>

#include <vector>

#include "core/nrvec/nrvec.h"

namespace {

using zomath::NRVec;

TEST(NRVec, WrappingLeavesTheCallersArrayAlone) {
  double data[3] = {1, 2, 3};
  {
    NRVec<double> w(3, data);
    EXPECT_TRUE(w.IsWrapped());
    EXPECT_EQ(w.Data(), data);
    NRVec<double> copy(w);  // a deep copy, not a second view
    copy[0] = 99;
    EXPECT_FALSE(copy.IsWrapped());
  }  // destructor of a wrapper forgets the pointer
  EXPECT_EQ(data[0], 1);
  EXPECT_EQ(data[2], 3);

  // SetSize turns a wrapper into an owner with fresh storage; the array stays untouched.
  NRVec<double> w(3, data);
  w.SetSize(5);
  w = 7.0;
  EXPECT_FALSE(w.IsWrapped());
  EXPECT_EQ(data[1], 2);
}

TEST(NRVec, InvalidVectorsAnswerWithoutFault) {
  NRVec<double> nullview(3, nullptr);  // stands as constructed; IsValid tells
  EXPECT_EQ(nullview.size(), 3);
  EXPECT_FALSE(nullview.IsValid());
  double lo, hi;
  EXPECT_EQ(nullview.GetMinMax(&lo, &hi, nullptr, nullptr), -1);
  EXPECT_FALSE(nullview.Sort());
  EXPECT_EQ(nullview.Count(0, zomath::COUNT_EQ), -1);
  double median = 0;
  EXPECT_EQ(nullview.GetMedian(&median), ZOMATH_ERR_BAD_ARGUMENT);
  EXPECT_EQ(median, NANUM);

  NRVec<int> empty(0), negative(-4);
  EXPECT_FALSE(empty.IsValid());
  EXPECT_FALSE(negative.IsValid());
  EXPECT_EQ(NRVec<int>(static_cast<const int*>(nullptr), 5).size(), 0);
  EXPECT_EQ(empty.Find(0), -1);
  EXPECT_FALSE(empty.IsEqual(negative));  // invalid vectors are equal to nothing
  NRVec<int> copy(empty);
  EXPECT_FALSE(copy.IsValid());
}

TEST(NRVec, SetSizeDiscardsContents) {
  NRVec<int> v(7, 5);  // five sevens
  v.SetSize(5);  // same size: nothing happens
  EXPECT_EQ(v[3], 7);
  v.SetSize(0);
  EXPECT_FALSE(v.IsValid());
  EXPECT_EQ(v.Data(), nullptr);
  v.SetSize(9);
  EXPECT_EQ(v.size(), 9);
}

TEST(NRVec, AssignmentCopiesAndKeepsTheBlockForShorterSources) {
  NRVec<double> a(1.0, 5), b(2.0, 3);
  const double* block = a.Data();
  a = b;  // shorter: size drops, block kept
  EXPECT_EQ(a.size(), 3);
  EXPECT_EQ(a.Data(), block);
  EXPECT_EQ(a[2], 2.0);
  b[0] = -1;  // deep copy: no sharing
  EXPECT_EQ(a[0], 2.0);
  a = a;
  EXPECT_EQ(a.size(), 3);

  NRVec<double> longer(3.0, 8);
  a = longer;  // longer: reallocated
  EXPECT_EQ(a.size(), 8);
  EXPECT_EQ(a[7], 3.0);

  // Assigning to a wrapper of sufficient size writes into the wrapped array.
  double out[4] = {0, 0, 0, 0};
  NRVec<double> view(4, out);
  view = b;
  EXPECT_EQ(out[0], -1.0);
  EXPECT_EQ(out[3], 0.0);
}

TEST(NRVec, GetMinMaxSkipsMissingAndPrefersTheFirstTie) {
  const double data[] = {NANUM, 4, -1, 4, -1, NANUM, 2};
  NRVec<double> v(data, 7);
  const double missing = NANUM;
  double lo = 0, hi = 0;
  int iLo = -9, iHi = -9;
  EXPECT_EQ(v.GetMinMax(&lo, &hi, &iLo, &iHi, 0, -1, &missing), 5);
  EXPECT_EQ(lo, -1);
  EXPECT_EQ(hi, 4);
  EXPECT_EQ(iLo, 2);
  EXPECT_EQ(iHi, 1);
  // Without a missing value, NANUM is just a tiny negative number.
  EXPECT_EQ(v.GetMinMax(&lo, &hi, &iLo, &iHi), 7);
  EXPECT_EQ(iLo, 2);
  // A range of missing values: count 0 and outputs untouched.
  iLo = -9;
  EXPECT_EQ(v.GetMinMax(&lo, &hi, &iLo, &iHi, 5, 5, &missing), 0);
  EXPECT_EQ(iLo, -9);
  for (auto [first, last] : {std::pair{-1, 3}, {4, 2}, {0, 7}})
    EXPECT_EQ(v.GetMinMax(&lo, &hi, &iLo, &iHi, first, last), -1) << first << ".." << last;
}

TEST(NRVec, NanumArithmetic) {
  const double data[] = {4, NANUM, -2};
  NRVec<double> v(data, 3);
  v -= 1.0;
  EXPECT_EQ(v[0], 3);
  EXPECT_EQ(v[1], NANUM);
  v /= 0.0;
  EXPECT_EQ(v[0], NANUM);  // a zero divisor makes every element missing

  NRVec<double> w(data, 3);
  EXPECT_EQ(w.Sum(), 2.0);
  EXPECT_EQ(w.Mean(), 1.0);
  EXPECT_EQ(w.DotProduct(w), NANUM);  // a missing factor makes the product missing
  NRVec<double> all(NANUM, 3);
  EXPECT_EQ(all.Mean(), NANUM);
  EXPECT_EQ(all.Sum(), 0.0);
}

TEST(NRVec, SortAndMedian) {
  NRVec<double> v(std::vector<double>{5, NANUM, 1, 4}.data(), 4);
  double median;
  EXPECT_EQ(v.GetMedian(&median), 0);  // NANUM is not removed: it sorts as a tiny negative
  EXPECT_DOUBLE_EQ(median, 2.5);
  EXPECT_EQ(v[0], 5);  // the median works on a copy
  EXPECT_TRUE(v.Sort(false));
  EXPECT_EQ(v[0], 5);
  EXPECT_EQ(v[3], NANUM);
  EXPECT_TRUE(v.Sort(true, 2, 2));  // one element: nothing to do
  EXPECT_FALSE(v.Sort(true, 3, 2));

  NRVec<unsigned short> u(std::vector<unsigned short>{300, 2, 65535}.data(), 3);
  EXPECT_TRUE(u.Sort());
  EXPECT_EQ(u[2], 65535);
  EXPECT_EQ(u.GetMedian(&median), 0);
  EXPECT_EQ(median, 300);

  NRVec<d_complex> z(d_complex{1, 1}, 3);
  EXPECT_FALSE(z.Sort());  // complex numbers have no order
  EXPECT_EQ(z.GetMedian(&median), ZOMATH_ERR_BAD_ARGUMENT);
}

TEST(NRVec, ReorderNeedsATruePermutation) {
  NRVec<int> v(std::vector<int>{10, 20, 30}.data(), 3);
  const std::vector<unsigned int> good = {2, 0, 1}, repeated = {0, 0, 1}, outside = {0, 1, 3};
  EXPECT_TRUE(v.Reorder(NRVec<unsigned int>(good.data(), 3)));
  EXPECT_EQ(v[0], 30);
  EXPECT_EQ(v[1], 10);
  EXPECT_FALSE(v.Reorder(NRVec<unsigned int>(repeated.data(), 3)));
  EXPECT_FALSE(v.Reorder(NRVec<unsigned int>(outside.data(), 3)));
  EXPECT_FALSE(v.Reorder(NRVec<unsigned int>(good.data(), 2)));
  EXPECT_EQ(v[0], 30);  // refused reorders change nothing
}

TEST(NRVec, EditingMembers) {
  NRVec<int> v;
  v.Append(1);
  v.Append(3);
  EXPECT_TRUE(v.InsertAt(1, 2));
  EXPECT_TRUE(v.InsertAt(0, v[2], 2));  // a value from the vector itself
  v.Append(v);
  const std::vector<int> want = {3, 3, 1, 2, 3, 3, 3, 1, 2, 3};
  ASSERT_EQ(v.size(), 10);
  for (int i = 0; i < 10; ++i) EXPECT_EQ(v[i], want[i]);
  EXPECT_FALSE(v.InsertAt(11, 0));
  EXPECT_TRUE(v.RemoveAt(8, 100));  // removes what lies in range
  EXPECT_EQ(v.size(), 8);
  EXPECT_EQ(v.Find(2), 3);
  EXPECT_EQ(v.Find(2, 4), -1);

  NRVec<int> starts, ends;
  EXPECT_EQ(v.FindEqualSegments(starts, ends), 2);  // {3,3} at 0 and {3,3,3} at 4
  EXPECT_EQ(starts[1], 4);
  EXPECT_EQ(ends[1], 7);

  NRVec<int> sub;
  EXPECT_TRUE(v.GetSubVector(sub, 2, 4));
  EXPECT_EQ(sub.size(), 3);
  EXPECT_EQ(sub[0], 1);
  EXPECT_TRUE(v.SetSubVector(sub, 6));  // only two fit
  EXPECT_EQ(v[7], 2);
  EXPECT_FALSE(v.GetSubVector(sub, 5, 8));
}

TEST(NRVec, GroupsSortAndMoveAsBlocks) {
  NRVec<double> v(std::vector<double>{3, 1, 2, 9, 8, 5}.data(), 6);
  NRVec<int> sizes(std::vector<int>{3, 2, 1}.data(), 3);
  EXPECT_TRUE(v.SortSubgroups(sizes));
  EXPECT_TRUE(v.IsEqual(NRVec<double>(std::vector<double>{1, 2, 3, 8, 9, 5}.data(), 6)));
  NRVec<unsigned int> order(std::vector<unsigned int>{2, 0, 1}.data(), 3);
  EXPECT_TRUE(v.ReorderSubgroups(sizes, order));
  EXPECT_TRUE(v.IsEqual(NRVec<double>(std::vector<double>{5, 1, 2, 3, 8, 9}.data(), 6)));
  EXPECT_EQ(sizes[0], 1);
  EXPECT_EQ(sizes[1], 3);
  NRVec<int> wrong(std::vector<int>{3, 2}.data(), 2);
  EXPECT_FALSE(v.SortSubgroups(wrong));  // sizes must cover the vector
}

TEST(NRVec, CountReplaceAndOrder) {
  NRVec<double> v(std::vector<double>{-3, -1, 0, 1, 3}.data(), 5);
  EXPECT_EQ(v.Count(0, zomath::COUNT_GE), 3);
  EXPECT_EQ(v.Count(0, zomath::COUNT_NE), 4);
  EXPECT_EQ(v.Count(0, 6), -1);
  EXPECT_TRUE(v.IsOrdered(true, true));
  EXPECT_FALSE(v.IsOrdered(false));
  // |x| < 2 becomes 7 with the sign of x kept: -1 -> -7, 0 -> 7, 1 -> 7.
  EXPECT_TRUE(v.Replace(2, 7, zomath::REPLACE_LESS | zomath::REPLACE_ABSOLUTE | zomath::REPLACE_KEEP_SIGN));
  EXPECT_TRUE(v.IsEqual(NRVec<double>(std::vector<double>{-3, -7, 7, 7, 3}.data(), 5)));
  EXPECT_FALSE(v.Replace(0, 0, 0));
  EXPECT_FALSE(v.Replace(0, 0, 64));

  NRVec<double> near(std::vector<double>{-3, -7, 7, 7 + 1e-9, 3}.data(), 5);
  EXPECT_FALSE(v.IsEqual(near));
  EXPECT_TRUE(v.IsEqual(near, 1e-8));
}

TEST(NRVec, FrequencyCountUsesHalfOpenBins) {
  NRVec<double> v(std::vector<double>{0.0, 0.1, 0.2, 0.3, 0.30000000000000004, 0.99, 1.0, -0.1}.data(), 8);
  NRVec<unsigned int> counts;
  EXPECT_EQ(v.FrequencyCount(counts, 10, 0.0, 0.1), 0);
  ASSERT_EQ(counts.size(), 10);
  // Edges k * 0.1: 0.3 is the computed edge 3 * 0.1 = 0.30000000000000004, so 0.3 lies below it.
  const unsigned int want[10] = {1, 1, 2, 1, 0, 0, 0, 0, 0, 1};
  for (int k = 0; k < 10; ++k) EXPECT_EQ(counts[k], want[k]) << "bin " << k;
  EXPECT_EQ(v.FrequencyCount(counts, 10, 0.0, 0.0), -1);
}

}  // namespace
