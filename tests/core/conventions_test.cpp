// Call conventions: the missing value, the NANUM arithmetic, tolerance comparison, rounding.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "core/numeric.h"
#include "zomath/core.h"

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
const double kNaN = std::nan("");

TEST(Conventions, NanumHasItsBitPattern) {
  const double x = NANUM;
  std::uint64_t bits;
  std::memcpy(&bits, &x, sizeof bits);
  EXPECT_EQ(bits, 0x81AA74FE1C132C0EULL);
  EXPECT_TRUE(std::isfinite(x));  // an ordinary double: a test that forgets it sees a tiny negative
  EXPECT_LT(x, 0.0);
}

TEST(Conventions, ComplexIsRealThenImaginary) {
  static_assert(sizeof(d_complex) == 2 * sizeof(double));
  const d_complex z{1.5, -2.5};
  double raw[2];
  std::memcpy(raw, &z, sizeof raw);
  EXPECT_EQ(raw[0], 1.5);
  EXPECT_EQ(raw[1], -2.5);
  EXPECT_TRUE(zomath::is_missing(d_complex{NANUM, 0.0}));
  EXPECT_TRUE(zomath::is_missing(d_complex{0.0, NANUM}));
  EXPECT_FALSE(zomath::is_missing(d_complex{0.0, 0.0}));
}

TEST(Conventions, NanumArithmeticPropagatesMissing) {
  using namespace zomath;
  struct Case { double a, b, sum, diff, prod, quot; };
  const Case cases[] = {
      {6.0, 3.0, 9.0, 3.0, 18.0, 2.0},
      {NANUM, 3.0, NANUM, NANUM, NANUM, NANUM},
      {3.0, NANUM, NANUM, NANUM, NANUM, NANUM},
      {1.0, 0.0, 1.0, 1.0, 0.0, NANUM},    // division by exactly 0 is missing
      {0.0, -0.0, 0.0, 0.0, -0.0, NANUM},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(nanum_add(c.a, c.b), c.sum) << c.a << " + " << c.b;
    EXPECT_EQ(nanum_sub(c.a, c.b), c.diff) << c.a << " - " << c.b;
    EXPECT_EQ(nanum_mul(c.a, c.b), c.prod) << c.a << " * " << c.b;
    EXPECT_EQ(nanum_div(c.a, c.b), c.quot) << c.a << " / " << c.b;
  }
  EXPECT_EQ(nanum_div(1.0, 1e-310), 1.0 / 1e-310);  // only an exact zero divisor is refused
}

TEST(Conventions, IsNearIsStrict) {
  using zomath::is_near;
  EXPECT_FALSE(is_near(1.0, 1.0, 0.0));  // tolerance 0: nothing equal, itself included
  EXPECT_TRUE(is_near(1.0, 1.0, 1e-300));
  EXPECT_FALSE(is_near(1.0, 1.5, 0.5));  // the edge is outside
  EXPECT_TRUE(is_near(1.0, 1.5, std::nextafter(0.5, 1.0)));
  EXPECT_TRUE(is_near(-2.0, -2.25, 0.3));
  EXPECT_FALSE(is_near(kNaN, kNaN, 1.0));
  EXPECT_FALSE(is_near(1.0, kNaN, kInf));
  EXPECT_FALSE(is_near(kNaN, 1.0, kInf));
  EXPECT_FALSE(is_near(1.0, 2.0, kNaN));
  EXPECT_FALSE(is_near(kInf, kInf, kInf));
  EXPECT_TRUE(is_near(1.0, 1e300, kInf));
}

TEST(Conventions, RoundDecimals) {
  using zomath::round_decimals;
  struct Case { double x; int n; double expected; };
  const Case cases[] = {
      {2.345, 2, 2.35},        // 0.345 * 100 = 34.5 (just under in binary) + 0.5 -> floor 35
      {-2.345, 2, -2.35},      // half away from zero, by symmetry
      {2.5, 0, 3.0},
      {-2.5, 0, -3.0},
      {0.125, 2, 0.13},
      {1234.5678, 1, 1234.6},
      {7.0, 3, 7.0},           // no fraction: returned as it is
      {-0.0, 2, -0.0},
      {0.123456789, 308, 0.123456789},
      {3.14159, 309, 3.14159}, // 309 and more: unchanged
      {3.14159, -1, 3.14159},  // negative, read as unsigned: unchanged
      {1e20 + 0.5, 0, 1e20},   // no fraction left at this magnitude
  };
  for (const Case& c : cases)
    EXPECT_DOUBLE_EQ(round_decimals(c.x, c.n), c.expected) << c.x << " to " << c.n;
  EXPECT_EQ(round_decimals(NANUM, 2), NANUM);
  EXPECT_EQ(round_decimals(kInf, 2), kInf);
  EXPECT_EQ(round_decimals(-kInf, 2), -kInf);
  EXPECT_TRUE(std::isnan(round_decimals(kNaN, 2)));
  EXPECT_TRUE(std::signbit(round_decimals(-0.001, 2)));  // rounds to zero, keeps the sign
}

TEST(Conventions, FreeAcceptsLibraryBlocksAndNull) {
  zomath_free(nullptr);
  void* block = std::malloc(64);
  void* const copy = block;
  zomath_free(block);
  EXPECT_EQ(block, copy);  // the caller's pointer keeps its value
}

TEST(Conventions, AnotherDummyFunctionSums) {
  EXPECT_EQ(AnotherDummyFunction(1, 2, 3, 4, 5), 15.0);
  EXPECT_EQ(AnotherDummyFunction(0.5, -0.5, 0, 0, NANUM), NANUM);
}

}  // namespace
