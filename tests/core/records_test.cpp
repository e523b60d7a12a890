// The record bridge: copies keep every word and move the data pointers to their places in the
// other form; the free exports release each array once and clear its pointer.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "zomath/records.h"

namespace {

double* block(std::size_t n) { return static_cast<double*>(std::malloc(n * sizeof(double))); }

template <class Record>
const char* at(const Record& r, std::size_t offset) { return reinterpret_cast<const char*>(&r) + offset; }

TEST(Records, RoundTripsAreWordForWordAndTheCommMovesItsDataArrays) {
  zomath_Comm comm, comm_back;
  comm_struct routine;
  zomath_Spline spline, spline_back;
  Nag_Spline routine_spline;
  for (void* p : {static_cast<void*>(&comm), static_cast<void*>(&comm_back), static_cast<void*>(&routine)})
    std::memset(p, 0, sizeof comm);  // padding zeroed, so whole records compare
  std::memset(&spline, 0, sizeof spline);
  std::memset(&spline_back, 0, sizeof spline_back);
  int leading[15];  // the 15 leading ints; then six arrays among two counts
  for (int k = 0; k < 15; ++k) leading[k] = 100 + k;
  std::memcpy(&comm, leading, sizeof leading);
  double d[8];
  comm.pIntData = reinterpret_cast<int*>(&d[0]);
  comm.pRealData = &d[1];
  comm.nValues = 17;
  comm.pZ = &d[2];
  comm.pBounds = &d[3];
  comm.nBoundsSize = 20;
  comm.pX = &d[4];
  comm.pY = &d[5];

  ASSERT_EQ(copy_comm_to_nag(&comm, &routine), 0);
  // Host-record positions 21, 22 (offsets 112, 120) hold comm_struct positions 17, 18 (80, 88);
  // host 17 to 20 (80 to 104) hold comm_struct 19 to 22 (96 to 120); the first 80 bytes agree.
  const std::size_t moved[][3] = {{112, 80, 8}, {120, 88, 8}, {80, 96, 4}, {88, 104, 8},
                                  {96, 112, 8}, {104, 120, 4}, {0, 0, 80}};
  for (const auto& m : moved) EXPECT_EQ(std::memcmp(at(comm, m[0]), at(routine, m[1]), m[2]), 0) << m[0];
  ASSERT_EQ(copy_comm_to_zomath(&comm_back, &routine), 0);
  EXPECT_EQ(std::memcmp(&comm_back, &comm, sizeof comm), 0);

  spline.nKnots = 8;
  spline.pKnots = &d[6];
  spline.pCoef = &d[7];
  spline.nLastInterval = 3;
  ASSERT_EQ(copy_spline_to_nag(&spline, &routine_spline), 0);
  EXPECT_TRUE(routine_spline.pKnots == &d[6] && routine_spline.pCoef == &d[7]);
  ASSERT_EQ(copy_spline_to_zomath(&spline_back, &routine_spline), 0);
  EXPECT_EQ(std::memcmp(&spline_back, &spline, sizeof spline), 0);

  const comm_struct before = routine;
  EXPECT_EQ(copy_comm_to_nag(nullptr, &routine), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(copy_comm_to_zomath(&comm, nullptr), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(copy_spline_to_nag(&spline, nullptr), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(copy_spline_to_zomath(nullptr, &routine_spline), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(std::memcmp(&before, &routine, sizeof routine), 0);
}

TEST(Records, FreeReleasesEachArrayOnceAndClearsItsPointer) {
  // The sanitizer build reports a leak or a second release; here the pointers must be cleared
  // and the counts kept.
  zomath_Spline spline = {8, block(8), block(4), 0, 0};
  zomath_free_spline_struct(&spline);
  EXPECT_TRUE(!spline.pKnots && !spline.pCoef && spline.nKnots == 8);
  zomath_free_spline_struct(&spline);  // again: nothing left to release

  zomath_Comm comm;
  std::memset(&comm, 0, sizeof comm);
  comm.nPoints = 5;
  comm.pIntData = static_cast<int*>(std::malloc(4 * sizeof(int)));
  comm.pZ = block(5);
  comm.pX = block(5);  // pRealData, pBounds and pY stay null
  zomath_free_comm_struct(&comm);
  EXPECT_TRUE(!comm.pIntData && !comm.pZ && !comm.pX && comm.nPoints == 5);

  zomath_2dSpline surface = {8, block(8), 9, block(9), block(20)};
  zomath_free_2dSpline_struct(&surface);
  EXPECT_TRUE(!surface.pKnotsX && !surface.pKnotsY && !surface.pCoef);

  zomath_free_spline_struct(nullptr);
  zomath_free_comm_struct(nullptr);
  zomath_free_2dSpline_struct(nullptr);
}

}  // namespace
