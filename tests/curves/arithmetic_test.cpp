// Curve arithmetic, slopes and the parametric forms of the resampling.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "zomath/curves.h"

namespace {

using V = std::vector<double>;

TEST(SimpleMath, OperatorsOnTheFirstCurvesX) {
  // Curve 2 is read linearly at x1 (and continued below its first x): 2, 2, 1, 2.
  const V x1 = {0, 1, 2, 3}, y1 = {1, 2, 3, 4}, x2 = {0.5, 1.5, 2.5, 3.5}, y2 = {2, 2, 0, 4};
  const V want[5] = {{3, 4, 4, 6}, {-1, 0, 2, 2}, {0.5, 1, 3, 2}, {2, 4, 3, 8}, {1, 4, 3, 16}};
  for (int op = 0; op < 5; ++op) {
    V xo(5, -1), yo(5, -1);
    ASSERT_EQ(zomath_simple_math(5, xo.data(), yo.data(), 4, x1.data(), y1.data(), 4, x2.data(),
                                 y2.data(), op, 0, 0, 1.0), 0);
    EXPECT_EQ(V(xo.begin(), xo.begin() + 4), x1);
    EXPECT_EQ(V(yo.begin(), yo.begin() + 4), want[op]) << op;
    EXPECT_EQ(yo[4], -1);
  }
  // Another operator writes x only.
  V xo(4, -1), yo(4, -1);
  ASSERT_EQ(zomath_simple_math(4, xo.data(), yo.data(), 4, x1.data(), y1.data(), 4, x2.data(),
                               y2.data(), 9, 0, 0, 1.0), 0);
  EXPECT_EQ(xo, x1);
  EXPECT_EQ(yo, V(4, -1));
}

TEST(SimpleMath, OverlapMissingValuesAndCodes) {
  const V x1 = {0, 1, 2, 3}, y1 = {0, 1, 2, NANUM}, x2 = {1, 4}, y2 = {0, -3};
  V xo(4), yo(4);
  // Overlap [1, 3] in 4 even steps; y2 is 0 at x = 1 and negative beyond.
  ASSERT_EQ(zomath_simple_math(4, xo.data(), yo.data(), 4, x1.data(), y1.data(), 2, x2.data(),
                               y2.data(), 2, 1, 0, 1.0), 0);
  EXPECT_EQ(xo[0], 1);
  EXPECT_EQ(xo[3], 3);
  EXPECT_NEAR(xo[1], 5.0 / 3, 1e-15);
  EXPECT_EQ(yo[0], NANUM);  // divisor 0
  EXPECT_NEAR(yo[1], (5.0 / 3) / (-2.0 / 3), 1e-14);
  EXPECT_EQ(yo[3], NANUM);  // y1 reads NANUM on the segment that touches the missing point
  // A negative base to a fractional power has no real value.
  const V px = {0, 1}, base = {-8, -8}, power = {1.0 / 3, 2};
  ASSERT_EQ(zomath_simple_math(2, xo.data(), yo.data(), 2, px.data(), base.data(), 2, px.data(),
                               power.data(), 4, 0, 0, 1.0), 0);
  EXPECT_EQ(yo[0], NANUM);
  EXPECT_EQ(yo[1], 64);
  // No overlap: both outputs missing.
  const V far = {10, 11};
  ASSERT_EQ(zomath_simple_math(4, xo.data(), yo.data(), 4, x1.data(), y1.data(), 2, far.data(),
                               y2.data(), 0, 1, 0, 1.0), 0);
  EXPECT_EQ(xo, V(4, NANUM));
  EXPECT_EQ(yo, V(4, NANUM));
  EXPECT_EQ(zomath_simple_math(3, xo.data(), yo.data(), 4, x1.data(), y1.data(), 2, x2.data(),
                               y2.data(), 0, 0, 0, 1.0), ZOMATH_ERR_SIZE);
  EXPECT_EQ(zomath_simple_math(4, xo.data(), yo.data(), 4, x1.data(), y1.data(), 2, x2.data(),
                               y2.data(), 0, 2, 0, 1.0), ZOMATH_ERR_BAD_ARGUMENT);
  EXPECT_EQ(zomath_simple_math(4, xo.data(), yo.data(), 4, x1.data(), y1.data(), 1, x2.data(),
                               y2.data(), 0, 0, 1, 1.0), ZOMATH_ERR_TOO_FEW_POINTS);
  EXPECT_EQ(zomath_simple_math(4, xo.data(), nullptr, 4, x1.data(), y1.data(), 2, x2.data(),
                               y2.data(), 0, 0, 0, 1.0), ZOMATH_ERR_NULL_POINTER);
}

TEST(Derivative, ModesEndsGapsAndInPlace) {
  struct Case {
    V x, y;
    int mode;
    V want;
  };
  const Case cases[] = {
      // Slopes 2, 1, -1 between the points.
      {{0, 1, 3, 6}, {0, 2, 4, 1}, 0, {2, 1.5, 0, -1}},
      {{0, 1, 3, 6}, {0, 2, 4, 1}, 2, {2, 1, -1, -1}},
      {{0, 1, 3, 6}, {0, 2, 4, 1}, 4, {2, 2, 1, -1}},
      // A zero x step and a missing value: their slopes are missing; the mean falls back on
      // the slope that is there.
      {{0, 1, 1, 2, 3}, {0, 1, 5, 6, NANUM}, 0, {1, 1, 1, 1, NANUM}},
      {{0, 1, 1, 2, 3}, {0, 1, 5, 6, NANUM}, 2, {1, NANUM, 1, NANUM, NANUM}},
      {{0, 1, 1, 2, 3}, {0, 1, 5, 6, NANUM}, 4, {1, 1, NANUM, 1, NANUM}},
      {{5, 7}, {1, 0}, 0, {-0.5, -0.5}},
  };
  for (const Case& c : cases) {
    V d(c.x.size(), 9);
    ASSERT_EQ(zomath_derivative(c.x.data(), c.y.data(), d.data(), c.x.size(), c.mode), 0);
    EXPECT_EQ(d, c.want) << c.mode << " " << c.x.size();
    V inPlace = c.y;
    ASSERT_EQ(zomath_derivative(c.x.data(), inPlace.data(), inPlace.data(), c.x.size(), c.mode), 0);
    EXPECT_EQ(inPlace, c.want);
  }
  const double x[2] = {0, 1};
  double d[2];
  EXPECT_EQ(zomath_derivative(x, x, d, 1, 0), ZOMATH_ERR_TOO_FEW_FOR_RANGE);
  EXPECT_EQ(zomath_derivative(x, nullptr, d, 2, 0), ZOMATH_ERR_NULL_POINTER);
  for (int mode : {1, 3, 5, -1}) EXPECT_EQ(zomath_derivative(x, x, d, 2, mode), ZOMATH_ERR_BAD_ARGUMENT);
}

TEST(Parametric, RangeAndEvaluation) {
  // Points (0, 0), (3, 4), (3, 20): chords 5 and 16, centripetal steps sqrt(5) and 4.
  const double p[6] = {0, 3, 3, 0, 4, 20};
  double t[3];
  ASSERT_EQ(zomath_parametric_interpolate_range(t, p, 3, 2, 1), 0);
  EXPECT_EQ(t[0], 0);
  EXPECT_NEAR(t[1], std::sqrt(5.0), 1e-15);
  EXPECT_NEAR(t[2], std::sqrt(5.0) + 4, 1e-15);
  ASSERT_EQ(zomath_parametric_interpolate_range(t, p, 3, 2, 0), 0);
  EXPECT_EQ((V(t, t + 3)), (V{0, 1, 2}));
  EXPECT_EQ(zomath_parametric_interpolate_range(t, p, 0, 2, 0), ZOMATH_CURVE_ERR_NO_POINTS);
  EXPECT_EQ(zomath_parametric_interpolate_range(t, p, 3, 1, 0), ZOMATH_CURVE_ERR_DIMENSIONS);
  EXPECT_EQ(zomath_parametric_interpolate_range(nullptr, p, 3, 2, 0), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(zomath_parametric_interpolate_range(t, p, 3, 2, 2), ZOMATH_CURVE_ERR_METHOD);
  // Each coordinate row read against t: midpoints in linear mode.
  const double at[2] = {0.5, 1.5};
  double out[4];
  ASSERT_EQ(zomath_parametric_interpolate_eval(t, p, 3, at, out, 2, 2, 0, 1.0, nullptr), 0);
  EXPECT_EQ((V(out, out + 4)), (V{1.5, 3, 2, 12}));
  EXPECT_EQ(zomath_parametric_interpolate_eval(t, p, 3, at, out, 2, 1, 0, 1.0, nullptr),
            ZOMATH_ERR_TOO_FEW_POINTS);
  EXPECT_EQ(zomath_parametric_interpolate_eval(t, p, 3, at, out, 2, 2, 7, 1.0, nullptr),
            ZOMATH_ERR_BAD_ARGUMENT);
}

}  // namespace
