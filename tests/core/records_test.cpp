// The record bridge: copies keep every word and move the data pointers to their places in the
// other form; the free exports release each array once and clear its pointer.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "zomath/records.h"

namespace {

double* block(std::size_t n) { return static_cast<double*>(std::malloc(n * sizeof(double))); }

// A word of a record by its position in the field list (ints 4 bytes, pointers 8, aligned).
template <class Record>
const void* word(const Record& r, std::size_t offset) {
  return reinterpret_cast<const char*>(&r) + offset;
}

TEST(Records, CommRoundTripIsWordForWordAndReordersTheDataArrays) {
  zomath_Comm mirror, back;
  comm_struct vendor;
  std::memset(&mirror, 0, sizeof mirror);  // padding zeroed, so whole records compare
  std::memset(&back, 0, sizeof back);
  std::memset(&vendor, 0, sizeof vendor);
  mirror.nPoints = 100;
  mirror.nMethod = 0x44E;
  mirror.nQ = 13;
  mirror.nW = 19;
  mirror.nCells = 4;
  mirror.nTriangles = 7;
  mirror.nIntSize = 8;
  mirror.nRealSize = 9;
  mirror.nStatus = 10;
  for (int k = 0; k < 6; ++k) mirror.nSpare[k] = 200 + k;
  double d[6];
  mirror.pIntData = reinterpret_cast<int*>(&d[0]);
  mirror.pRealData = &d[1];
  mirror.nValues = 17;
  mirror.pZ = &d[2];
  mirror.pBounds = &d[3];
  mirror.nBoundsSize = 20;
  mirror.pX = &d[4];
  mirror.pY = &d[5];

  ASSERT_EQ(copy_comm_to_nag(&mirror, &vendor), 0);
  // Mirror positions 21, 22 (offsets 112, 120) are vendor positions 17, 18 (80, 88); mirror
  // 17 to 20 (80 to 104) are vendor 19 to 22 (96 to 120).
  const struct {
    std::size_t mirror_offset, vendor_offset, bytes;
  } moved[] = {{112, 80, 8}, {120, 88, 8}, {80, 96, 4}, {88, 104, 8}, {96, 112, 8}, {104, 120, 4}, {0, 0, 80}};
  for (const auto& m : moved)
    EXPECT_EQ(std::memcmp(word(mirror, m.mirror_offset), word(vendor, m.vendor_offset), m.bytes), 0)
        << m.mirror_offset;

  ASSERT_EQ(copy_comm_to_zomath(&back, &vendor), 0);
  EXPECT_EQ(std::memcmp(&back, &mirror, sizeof back), 0);

  comm_struct untouched = vendor;
  EXPECT_EQ(copy_comm_to_nag(nullptr, &vendor), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(copy_comm_to_zomath(nullptr, &vendor), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(copy_comm_to_nag(&mirror, nullptr), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(std::memcmp(&untouched, &vendor, sizeof vendor), 0);
}

TEST(Records, SplineRoundTripIsWordForWord) {
  double knots[8], coef[4];
  zomath_Spline mirror, back;
  Nag_Spline vendor;
  std::memset(&mirror, 0, sizeof mirror);
  std::memset(&back, 0, sizeof back);
  std::memset(&vendor, 0, sizeof vendor);
  mirror = {8, knots, coef, 3, 0};
  ASSERT_EQ(copy_spline_to_nag(&mirror, &vendor), 0);
  EXPECT_EQ(vendor.pKnots, knots);
  EXPECT_EQ(vendor.pCoef, coef);
  ASSERT_EQ(copy_spline_to_zomath(&back, &vendor), 0);
  EXPECT_EQ(std::memcmp(&back, &mirror, sizeof back), 0);
  EXPECT_EQ(copy_spline_to_nag(&mirror, nullptr), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(copy_spline_to_zomath(nullptr, &vendor), ZOMATH_ERR_NULL_POINTER);
}

TEST(Records, FreeReleasesEachArrayOnceAndClearsItsPointer) {
  // The sanitizer build reports a leak or a double release; here the pointers must be cleared
  // and the counts kept.
  zomath_Spline spline = {8, block(8), block(4), 0, 0};
  zomath_free_spline_struct(&spline);
  EXPECT_EQ(spline.pKnots, nullptr);
  EXPECT_EQ(spline.pCoef, nullptr);
  EXPECT_EQ(spline.nKnots, 8);
  zomath_free_spline_struct(&spline);  // again: nothing left to release

  zomath_Comm comm;
  std::memset(&comm, 0, sizeof comm);
  comm.nPoints = 5;
  comm.pIntData = static_cast<int*>(std::malloc(4 * sizeof(int)));
  comm.pZ = block(5);
  comm.pX = block(5);  // pRealData, pBounds and pY stay null
  zomath_free_comm_struct(&comm);
  EXPECT_TRUE(!comm.pIntData && !comm.pRealData && !comm.pZ && !comm.pBounds && !comm.pX && !comm.pY);
  EXPECT_EQ(comm.nPoints, 5);

  zomath_2dSpline surface = {8, block(8), 9, block(9), block(20)};
  zomath_free_2dSpline_struct(&surface);
  EXPECT_TRUE(!surface.pKnotsX && !surface.pKnotsY && !surface.pCoef);

  zomath_free_spline_struct(nullptr);
  zomath_free_comm_struct(nullptr);
  zomath_free_2dSpline_struct(nullptr);
}

}  // namespace
