// Curve arithmetic, slopes and the parametric forms of the resampling.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "zomath/curves.h"

namespace {

using V = std::vector<double>;

// zomath_simple_math of two curves into outputs of n points, prefilled with -1.
int combine(int n, V& xo, V& yo, const V& x1, const V& y1, const V& x2, const V& y2, int op,
            int xMode, int interpolation = 0) {
  xo.assign(n, -1);
  yo.assign(n, -1);
  return zomath_simple_math(n, xo.data(), yo.data(), static_cast<int>(x1.size()), x1.data(),
                            y1.data(), static_cast<int>(x2.size()), x2.data(), y2.data(), op,
                            xMode, interpolation, 1.0);
}

TEST(SimpleMath, OperatorsOverlapAndMissingValues) {
  // Curve 2 is read linearly at x1 (and continued below its first x): 2, 2, 1, 2.
  const V x1 = {0, 1, 2, 3}, y1 = {1, 2, 3, 4}, x2 = {0.5, 1.5, 2.5, 3.5}, y2 = {2, 2, 0, 4};
  const V want[5] = {{3, 4, 4, 6}, {-1, 0, 2, 2}, {0.5, 1, 3, 2}, {2, 4, 3, 8}, {1, 4, 3, 16}};
  V xo, yo;
  for (int op = 0; op < 5; ++op) {
    ASSERT_EQ(combine(5, xo, yo, x1, y1, x2, y2, op, 0), 0);
    EXPECT_EQ(xo, (V{0, 1, 2, 3, -1}));
    EXPECT_EQ(yo, (V{want[op][0], want[op][1], want[op][2], want[op][3], -1})) << op;
  }
  ASSERT_EQ(combine(4, xo, yo, x1, y1, x2, y2, 9, 0), 0);  // another operator writes x only
  EXPECT_EQ(yo, V(4, -1));
  // Overlap [1, 3] in 4 even steps of a curve 2 that is 0 at x = 1 and negative beyond; the
  // curve 1 reads NANUM on the segment that touches its missing point.
  const V z1 = {0, 1, 2, NANUM}, u2 = {1, 4}, v2 = {0, -3};
  ASSERT_EQ(combine(4, xo, yo, x1, z1, u2, v2, 2, 1), 0);
  EXPECT_EQ(xo[0], 1);
  EXPECT_NEAR(xo[1], 5.0 / 3, 1e-15);
  EXPECT_EQ(xo[3], 3);
  EXPECT_EQ(yo[0], NANUM);  // divisor 0
  EXPECT_NEAR(yo[1], (5.0 / 3) / (-2.0 / 3), 1e-14);
  EXPECT_EQ(yo[3], NANUM);
  // A negative base to a fractional power has no real value.
  ASSERT_EQ(combine(2, xo, yo, {0, 1}, {-8, -8}, {0, 1}, {1.0 / 3, 2}, 4, 0), 0);
  EXPECT_EQ(yo, (V{NANUM, 64}));
  // No overlap: both outputs missing. Codes.
  ASSERT_EQ(combine(4, xo, yo, x1, y1, {10, 11}, v2, 0, 1), 0);
  EXPECT_EQ(xo, V(4, NANUM));
  EXPECT_EQ(yo, V(4, NANUM));
  EXPECT_EQ(combine(3, xo, yo, x1, y1, u2, v2, 0, 0), ZOMATH_ERR_SIZE);
  EXPECT_EQ(combine(4, xo, yo, x1, y1, u2, v2, 0, 2), ZOMATH_ERR_BAD_ARGUMENT);
  EXPECT_EQ(combine(4, xo, yo, x1, y1, {1}, {0}, 0, 0, 1), ZOMATH_ERR_TOO_FEW_POINTS);
  EXPECT_EQ(zomath_simple_math(4, xo.data(), nullptr, 4, x1.data(), y1.data(), 2, u2.data(),
                               v2.data(), 0, 0, 0, 1.0), ZOMATH_ERR_NULL_POINTER);
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
