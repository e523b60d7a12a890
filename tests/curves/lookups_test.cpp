// Single-value look-ups, the level search and the asymptote estimators.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "zomath/curves.h"

namespace {

TEST(Lookups, YFromXAlongTheBracketingLine) {
  const double x[4] = {3, 0, 1, 2}, y[4] = {9, 0, 1, 4};  // unsorted: a sorted copy is read
  const double xs[4] = {0, 1, 2, 3}, ys[4] = {0, 1, 4, 9};
  struct Case {
    double at;
    bool sorted, uniform;
    double want;
  };
  const Case cases[] = {
      {1.5, false, false, 2.5}, {2, false, false, 4}, {-1, false, false, -1}, {4, false, false, 14},
      {1.5, true, false, 2.5},  {1.5, true, true, 2.5}, {2.5, true, true, 6.5},
      {3, true, true, 9},       // index 3 is not below n - 1: the last segment
      {-2.5, true, true, -18.5}, // index -2 read as unsigned: the last segment too
      {-0.5, true, true, -0.5}, // truncation toward zero: the first segment
      {NANUM, true, false, NANUM},
  };
  for (const Case& c : cases) {
    double out = 0;
    EXPECT_EQ(zomath_y_form_x(4, c.sorted ? xs : x, c.sorted ? ys : y, c.at, &out, c.sorted,
                              c.uniform), 0);
    EXPECT_DOUBLE_EQ(out, c.want) << c.at << " " << c.sorted << c.uniform;
  }
  double out = 7;
  EXPECT_EQ(zomath_y_form_x(1, xs, ys, 0, &out, true, false), ZOMATH_ERR_BAD_ARGUMENT);
  EXPECT_EQ(zomath_y_form_x(4, xs, nullptr, 0, &out, true, false), ZOMATH_ERR_NULL_POINTER);
}

TEST(Lookups, XFromYTakesTheNearestPointAndTheHigherOnATie) {
  const double x[5] = {10, 20, 30, 40, 50}, y[5] = {5, 1, 3, NANUM, 7};
  struct Case {
    double level, want;
  };
  const Case cases[] = {{3, 30}, {2, 30}, {1.9, 20}, {6, 50}, {100, 50}, {-4, 20}, {5.2, 10},
                        {NANUM, NANUM}};
  for (const Case& c : cases) {
    double out = 0;
    EXPECT_EQ(zomath_x_from_y(5, x, y, c.level, &out), 0);
    EXPECT_EQ(out, c.want) << c.level;
  }
}

// y = x^2 for the bisection of find_xs; the three contexts must arrive as given.
bool square(void* a, void* b, void* c, double x, double* y) {
  if (!a || b || !c) return false;
  *y = x * x;
  return true;
}
bool refuse(void*, void*, void*, double, double*) { return false; }

TEST(Lookups, FindXsOnDataPointsCrossingsAndBeyondTheRange) {
  const double x[5] = {-2, -1, 0, 1, 2}, y[5] = {4, 1, 0, 1, 4};
  int ctx = 0;
  double xs[4];
  int idx[4];
  // A crossing is bisected (index -i); a data point within tolerance is taken as it is.
  ASSERT_EQ(zomath_find_xs(2.25, 5, x, y, 4, xs, &ctx, nullptr, &ctx, square, idx, 0, 1e-12, 60), 0);
  EXPECT_NEAR(xs[0], -1.5, 1e-12);
  EXPECT_NEAR(xs[1], 1.5, 1e-12);
  EXPECT_EQ(idx[0], -1);
  EXPECT_EQ(idx[1], -4);
  EXPECT_EQ(xs[2], NANUM);
  EXPECT_EQ(idx[3], -5);
  ASSERT_EQ(zomath_find_xs(1, 5, x, y, 3, xs, &ctx, nullptr, &ctx, square, idx, 0, 0, 60), 0);
  EXPECT_EQ((std::vector<double>(xs, xs + 3)), (std::vector<double>{-1, 1, NANUM}));
  // Beyond the data: within reach the level is clamped to the extreme, beyond it nothing.
  ASSERT_EQ(zomath_find_xs(-0.5, 5, x, y, 2, xs, &ctx, nullptr, &ctx, square, idx, 1, 0, 60), 0);
  EXPECT_EQ(xs[0], 0);
  EXPECT_EQ(idx[0], 2);
  ASSERT_EQ(zomath_find_xs(5, 5, x, y, 2, xs, &ctx, nullptr, &ctx, square, idx, 0.5, 0, 60), 0);
  EXPECT_EQ(xs[0], NANUM);
  EXPECT_EQ(idx[1], -5);
  // Codes.
  EXPECT_EQ(zomath_find_xs(2.25, 5, x, y, 2, xs, &ctx, nullptr, &ctx, refuse, idx, 0, 0, 9), -1);
  EXPECT_EQ(zomath_find_xs(NANUM, 5, x, y, 2, xs, &ctx, nullptr, &ctx, square, idx, 0, 0, 9),
            ZOMATH_ERR_BAD_ARGUMENT);
  EXPECT_EQ(zomath_find_xs(1, 5, x, y, 2, xs, nullptr, nullptr, &ctx, square, idx, 0, 0, 9),
            ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(zomath_find_xs(1, 5, x, y, 6, xs, &ctx, nullptr, &ctx, square, idx, 0, 0, 9),
            ZOMATH_ERR_TOO_FEW_ITEMS);
}

TEST(Lookups, Asymptotes) {
  // A saturation curve: its flat end is the horizontal asymptote. A pole-like curve, steep at
  // its right end: the vertical asymptote is at its largest y. A bump whose extremes lie close
  // together: the middle of their x, and the mean of the end values.
  std::vector<double> x, y, px, py;
  for (int i = 0; i <= 40; ++i) {
    x.push_back(i * 0.25);
    y.push_back(3 - 2 * std::exp(-x.back()));
    px.push_back(i * 0.024);
    py.push_back(1 / (1.001 - px.back()));
  }
  const double bx[5] = {0, 1, 2, 3, 4}, by[5] = {0, 0.1, 5, -5, 0};
  double v[4];
  ASSERT_EQ(zomath_yatasymt(41, x.data(), y.data(), &v[0]), 0);
  ASSERT_EQ(zomath_xatasymt(41, px.data(), py.data(), &v[1]), 0);
  ASSERT_EQ(zomath_xatasymt(5, bx, by, &v[2]), 0);
  ASSERT_EQ(zomath_yatasymt(5, bx, by, &v[3]), 0);
  EXPECT_EQ((std::vector<double>(v, v + 4)), (std::vector<double>{y.back(), px.back(), 2.5, 0}));
  EXPECT_EQ(zomath_yatasymt(1, bx, by, &v[0]), ZOMATH_ERR_TOO_FEW_ITEMS);
  EXPECT_EQ(v[0], NANUM);
}

}  // namespace
