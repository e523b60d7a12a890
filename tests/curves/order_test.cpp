// The statistical order tests of sequences, segments and curve lists, and the walk that finds
// where data stop being one straight line.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "zomath/curves.h"

namespace {

using V = std::vector<double>;

// Sequences with known one-sided t-test probabilities of their first differences (SciPy 1.10
// ttest_1samp against 0): kNoisy rises with p = 0.00226, kRising with p = 0.1187 (and kFalling,
// its mirror, falls with it), kZigzag rises with p = 0.2448, kFlat has mean step 0, p = 0.5
// both ways.
const V kNoisy = {0, 1.2, 1.9, 3.3, 3.8, 5.1};
const V kRising = {0, 2, 1.5, 3.5, 3, 5, 4.5};
const V kFalling = {4.5, 5, 3, 3.5, 1.5, 2, 0};
const V kZigzag = {0, 2, 1, 3, 2, 4, 3};
const V kFlat = {0, 1, 0, 1, 0};

V negated(V v) {
  for (double& x : v) x = -x;
  return v;
}

V joined(const V& a, const V& b) {
  V v = a;
  v.insert(v.end(), b.begin(), b.end());
  return v;
}

TEST(OrderTests, SequenceAtSeveralConfidences) {
  struct Case {
    V data;
    double confidence;
    int want;
  };
  const double nan = std::nan("");
  const Case cases[] = {
      // Equal steps answer by their sign, whatever the confidence, even 1 or 0.
      {{0, 1, 2, 3, 4}, 1.0, 2},
      {{4, 3, 2, 1}, 1.0, 1},
      {{5, 5, 5, 5}, 1.0, 0},
      {{5, 5, 5, 5}, 0.0, 0},
      {{0, 1, NANUM, 3, 4}, 1.0, 2},  // the steps beside NANUM are left out
      // Steps equal only up to rounding go to the t test, which a confidence of 1 never passes.
      {{0, 0.1, 0.2, 0.3}, 0.95, 2},
      {{0, 0.1, 0.2, 0.3}, 1.0, 0},
      // The probability is compared with 1 - confidence, strictly.
      {kNoisy, 0.997, 2},
      {kNoisy, 0.998, 0},
      {negated(kNoisy), 0.997, 1},
      {negated(kNoisy), 0.998, 0},
      {kRising, 0.8, 2},
      {kRising, 0.95, 0},
      {kFalling, 0.8, 1},
      {kZigzag, 0.7, 2},
      {kZigzag, 0.8, 0},
      // Rising is tested first: below a confidence of one half a step-free sequence rises.
      {kFlat, 0.4, 2},
      {kFlat, 0.6, 0},
      {{0, NANUM, 0}, 0.5, 0},
      {{0, 1, nan, 3}, 0.5, 0},
  };
  for (const Case& c : cases)
    EXPECT_EQ(zomath_check_order(c.data.size(), c.data.data(), nullptr, nullptr, nullptr,
                                 c.confidence), c.want)
        << c.data[1] << " at " << c.confidence;

  // The step statistics come out with the answer.
  double mean = 0, sd = 0;
  int count = 0;
  ASSERT_EQ(zomath_check_order(kNoisy.size(), kNoisy.data(), &mean, &sd, &count, 0.9), 2);
  // Within a few roundings of the differences of rounded data.
  EXPECT_NEAR(mean, 1.02, 1e-14);
  EXPECT_NEAR(sd, 0.39623225512317894, 1e-14);
  EXPECT_EQ(count, 6);

  EXPECT_EQ(zomath_check_order(1, kNoisy.data(), nullptr, nullptr, nullptr, 0.9), ZOMATH_ERR_TOO_FEW_POINTS);
  for (double confidence : {-0.1, 1.1, nan})
    EXPECT_EQ(zomath_check_order(6, kNoisy.data(), nullptr, nullptr, nullptr, confidence),
              ZOMATH_ERR_TOO_FEW_POINTS);
  EXPECT_EQ(zomath_check_order(6, nullptr, nullptr, nullptr, nullptr, 0.9), ZOMATH_ERR_NULL_POINTER);
}

TEST(OrderTests, SegmentsAtConfidencePointEight) {
  struct Case {
    V data;
    int segments;
    int want;
  };
  const Case cases[] = {
      // kRising passes only at a confidence of 0.8 or below, kZigzag only at 0.75 or below.
      {joined(kRising, kRising), 2, 2},
      {joined(kFalling, kFalling), 2, 1},
      {joined(kZigzag, kZigzag), 2, 1},  // segments without order answer as falling ones
      {joined(kRising, kFalling), 2, 0},
      {joined(kFalling, kZigzag), 2, 0},
      {joined(kZigzag, kRising), 2, 0},
      {{0, 1, 2, 3, 4, 5, 6, 7, 8}, 3, 2},
  };
  for (const Case& c : cases)
    EXPECT_EQ(zomath_check_order_curve(c.data.size(), c.data.data(), c.segments, nullptr,
                                       nullptr, nullptr), c.want)
        << c.data.size() << " " << c.want;

  // The last segment takes the remainder, and the step across a segment border counts in
  // neither: rising by 1, then falling by 1; every segment is reported after a disagreement.
  const V data = {0, 1, 2, 10, 9, 8, 7};
  double mean[2] = {0, 0}, sd[2] = {0, 0};
  int counts[2] = {0, 0};
  ASSERT_EQ(zomath_check_order_curve(7, data.data(), 2, mean, sd, counts), 0);
  EXPECT_EQ(mean[0], 1);
  EXPECT_EQ(mean[1], -1);
  EXPECT_EQ(sd[1], 0);
  EXPECT_EQ(counts[0], 3);
  EXPECT_EQ(counts[1], 4);

  EXPECT_EQ(zomath_check_order_curve(0, data.data(), 1, nullptr, nullptr, nullptr), ZOMATH_ERR_TOO_FEW_ITEMS);
  EXPECT_EQ(zomath_check_order_curve(7, data.data(), 0, nullptr, nullptr, nullptr), ZOMATH_ERR_TOO_FEW_ITEMS);
  EXPECT_EQ(zomath_check_order_curve(5, data.data(), 3, nullptr, nullptr, nullptr), ZOMATH_ERR_TOO_FEW_ITEMS);
  EXPECT_EQ(zomath_check_order_curve(7, nullptr, 2, nullptr, nullptr, nullptr), ZOMATH_ERR_NULL_OUTPUT);
  EXPECT_EQ(zomath_check_order_curve(0, nullptr, 2, nullptr, nullptr, nullptr), ZOMATH_ERR_TOO_FEW_ITEMS);
}

TEST(OrderTests, CurveListReadsTheOtherWayRound) {
  const V rise = joined(kRising, kRising), fall = joined(kFalling, kFalling),
          mixed = joined(kRising, kFalling), zig = joined(kZigzag, kZigzag);
  // Every curve has the same y, and only the order of the x counts.
  auto curve = [](const V& x, const V& y) {
    return CurveRecord{static_cast<unsigned int>(x.size()), x.data(), y.data(), 0};
  };
  const CurveRecord r = curve(rise, zig), f = curve(fall, zig), m = curve(mixed, zig),
                    z = curve(zig, zig);
  struct Case {
    std::vector<CurveRecord> curves;
    int want;
  };
  const Case cases[] = {
      {{r, r}, 0}, {{f, f, f}, 0},  // agree on an order
      {{m, m}, 1},                   // agree that their segments disagree
      {{r, f}, 2}, {{r, r, m}, 2}, {{m, z}, 2},
      // Unordered segments answer as falling ones one level below: these agree on an order.
      {{z, z}, 0}, {{f, z}, 0},
  };
  for (const Case& c : cases)
    EXPECT_EQ(zomath_check_order_multiple_curves(c.curves.size(), c.curves.data(), 2, nullptr,
                                                 nullptr, nullptr), c.want)
        << c.curves.size() << " " << c.want;

  // nSegments entries a curve, curve after curve, every curve reported after a disagreement.
  const CurveRecord list[2] = {r, m};
  double mean[4] = {0, 0, 0, 0};
  int counts[4] = {0, 0, 0, 0};
  ASSERT_EQ(zomath_check_order_multiple_curves(2, list, 2, mean, nullptr, counts), 2);
  EXPECT_EQ(mean[0], 0.75);
  EXPECT_EQ(mean[1], 0.75);
  EXPECT_EQ(mean[2], 0.75);
  EXPECT_EQ(mean[3], -0.75);
  for (int k = 0; k < 4; ++k) EXPECT_EQ(counts[k], 7) << k;

  const V three = {0, 1, 2};
  CurveRecord broken[2] = {r, curve(three, three)};
  EXPECT_EQ(zomath_check_order_multiple_curves(2, broken, 2, nullptr, nullptr, nullptr), ZOMATH_ERR_TOO_FEW_ITEMS);
  EXPECT_EQ(zomath_check_order_multiple_curves(2, list, 0, nullptr, nullptr, nullptr), ZOMATH_ERR_TOO_FEW_ITEMS);
  EXPECT_EQ(zomath_check_order_multiple_curves(1, list, 2, nullptr, nullptr, nullptr), ZOMATH_ERR_TOO_FEW_ITEMS);
  EXPECT_EQ(zomath_check_order_multiple_curves(2, nullptr, 2, nullptr, nullptr, nullptr), ZOMATH_ERR_NULL_OUTPUT);
  broken[1].pY = nullptr;
  broken[1].pX = rise.data();
  EXPECT_EQ(zomath_check_order_multiple_curves(2, broken, 2, nullptr, nullptr, nullptr), ZOMATH_ERR_NULL_OUTPUT);
}

// 61 points 0.5 apart: y = 1 + 2x up to index 32, then falling with slope -3, with a fixed
// ripple of 0.01 that gives the fits' intercepts an error. With steps of 4 points, windows on
// one side of index 32 stay within 1 standard error of the first window's intercept; the first
// window with 4 points past it lies 3.8 (forward) and 4.5 (backward) errors off (least squares
// in NumPy), so a factor of 2.5 separates them.
struct Kinked {
  V x, y;
  explicit Kinked(bool kink) {
    for (int i = 0; i <= 60; ++i) {
      const double xi = 0.5 * i, ripple = 0.01 * ((i * 37 % 11) - 5) / 5.0;
      x.push_back(xi);
      y.push_back((kink && i > 32 ? 1 + 2 * 16.0 - 3 * (xi - 16) : 1 + 2 * xi) + ripple);
    }
  }
};

TEST(CheckLinear, FindsTheKinkFromEitherSide) {
  const Kinked kinked(true), straight(false);
  struct Case {
    const Kinked* data;
    double fraction, factor;
    unsigned start;
    bool forward;
    int initial, step, want;
  };
  const Case cases[] = {
      // From index 0 the window ends 16, 20, .. 32 pass and 36 departs; from the far end
      // (index 60, or 56 with nStart 4) 44, .. 32 pass and 28 departs.
      {&kinked, 1, 2.5, 0, true, 0, 4, 32},
      {&kinked, 1, 2.5, 0, false, 0, 4, 32},
      {&kinked, 1, 2.5, 4, false, 0, 4, 32},
      {&kinked, 1, 2.5, 0, true, -12, 4, 32},  // nInitial takes the sign of the walk
      // The first window past the reference departs: no window passed, the start comes back.
      {&kinked, 1, 2.5, 20, true, 0, 4, 20},
      {&kinked, 1, 2.5, 16, false, 0, 4, 44},
      // A reference fit over the kink puts every later window off it.
      {&kinked, 1, 2.5, 0, true, 40, 4, 0},
      // Nothing departs: the walk ends on the last index of the span, here half the data with
      // the default step of a tenth of it (3).
      {&straight, 0.5, 2.5, 0, true, 0, 0, 29},
      {&straight, 0.5, 2.5, 0, false, 0, 0, 31},
      {&kinked, 1, 1e12, 0, true, 0, 4, 60},
      {&kinked, 2, 1e12, 0, false, 0, 4, 0},
      // A span of nothing ends where it starts, one step back: the one window (step 1) ends
      // there, passes, and its end is reported.
      {&straight, 0, 2.5, 10, true, 0, 0, 9},
  };
  for (const Case& c : cases) {
    int end = -99;
    ASSERT_EQ(zomath_check_linear(61, c.data->x.data(), c.data->y.data(), &end, c.fraction,
                                  c.factor, c.start, c.forward, c.initial, c.step), 0);
    EXPECT_EQ(end, c.want) << c.start << (c.forward ? " forward " : " backward ") << c.initial;
  }

  int end = 0;
  const double* x = kinked.x.data();
  const double* y = kinked.y.data();
  EXPECT_EQ(zomath_check_linear(61, nullptr, y, &end, 1, 5, 0, true, 0, 4), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(zomath_check_linear(61, x, y, nullptr, 1, 5, 0, true, 0, 4), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(zomath_check_linear(0, x, y, &end, 1, 5, 0, true, 0, 4), ZOMATH_ERR_BAD_ARGUMENT);
  EXPECT_EQ(zomath_check_linear(61, x, y, &end, 1, 5, 61, true, 0, 4), ZOMATH_ERR_BAD_ARGUMENT);
  for (double fraction : {-0.5, std::nan("")})
    EXPECT_EQ(zomath_check_linear(61, x, y, &end, fraction, 5, 0, true, 0, 4), ZOMATH_ERR_BAD_ARGUMENT);
}

}  // namespace
