// The statistical order tests of sequences, segments and curve lists, and the walk that finds
// where data stop being one straight line.
#include <gtest/gtest.h>

#include <cmath>
#include <utility>
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
  const Case cases[] = {
      // Equal steps answer by their sign whatever the confidence; the steps beside NANUM are
      // left out. Steps equal only up to rounding go to the t test, which 1 never passes.
      {{0, 1, 2, 3, 4}, 1.0, 2}, {{4, 3, 2, 1}, 1.0, 1}, {{5, 5, 5, 5}, 0.0, 0},
      {{0, 1, NANUM, 3, 4}, 1.0, 2}, {{0, 0.1, 0.2, 0.3}, 0.95, 2}, {{0, 0.1, 0.2, 0.3}, 1.0, 0},
      // The probability is compared with 1 - confidence.
      {kNoisy, 0.997, 2}, {kNoisy, 0.998, 0}, {negated(kNoisy), 0.997, 1},
      {kRising, 0.8, 2}, {kRising, 0.95, 0}, {kZigzag, 0.7, 2}, {kZigzag, 0.8, 0},
      // Rising is tested first: below a confidence of one half a step-free sequence rises.
      {kFlat, 0.4, 2}, {kFlat, 0.6, 0},
      {{0, NANUM, 0}, 0.5, 0}, {{0, 1, std::nan(""), 3}, 0.5, 0},
  };
  for (const Case& c : cases)
    EXPECT_EQ(zomath_check_order(c.data.size(), c.data.data(), nullptr, nullptr, nullptr,
                                 c.confidence), c.want) << c.data[1] << " at " << c.confidence;

  // The step statistics come out with the answer, within a few roundings of the data.
  double mean = 0, sd = 0;
  int count = 0;
  ASSERT_EQ(zomath_check_order(kNoisy.size(), kNoisy.data(), &mean, &sd, &count, 0.9), 2);
  EXPECT_NEAR(mean, 1.02, 1e-14);
  EXPECT_NEAR(sd, 0.39623225512317894, 1e-14);
  EXPECT_EQ(count, 6);

  for (double confidence : {-0.1, 1.1, std::nan("")})
    EXPECT_EQ(zomath_check_order(6, kNoisy.data(), nullptr, nullptr, nullptr, confidence), -15);
  EXPECT_EQ(zomath_check_order(1, kNoisy.data(), nullptr, nullptr, nullptr, 0.9), -15);
  EXPECT_EQ(zomath_check_order(6, nullptr, nullptr, nullptr, nullptr, 0.9), -11);
}

TEST(OrderTests, SegmentsAtConfidencePointEight) {
  // kRising passes only at a confidence of 0.8 or below, kZigzag only at 0.75 or below;
  // segments without order answer as falling ones.
  const std::pair<V, int> cases[] = {
      {joined(kRising, kRising), 2}, {joined(kFalling, kFalling), 1},
      {joined(kZigzag, kZigzag), 1}, {joined(kRising, kFalling), 0},
      {joined(kFalling, kZigzag), 0}, {joined(kZigzag, kRising), 0},
  };
  for (const auto& [data, want] : cases)
    EXPECT_EQ(zomath_check_order_curve(data.size(), data.data(), 2, nullptr, nullptr, nullptr),
              want) << data[1] << " " << want;

  // The last segment takes the remainder, the step across the border counts in neither, and
  // every segment is reported after a disagreement.
  const V data = {0, 1, 2, 10, 9, 8, 7};
  V mean(2), sd(2);
  std::vector<int> counts(2);
  ASSERT_EQ(zomath_check_order_curve(7, data.data(), 2, mean.data(), sd.data(), counts.data()), 0);
  EXPECT_EQ(mean, (V{1, -1}));
  EXPECT_EQ(sd, (V{0, 0}));
  EXPECT_EQ(counts, (std::vector<int>{3, 4}));

  EXPECT_EQ(zomath_check_order_curve(0, nullptr, 2, nullptr, nullptr, nullptr), -2);
  EXPECT_EQ(zomath_check_order_curve(7, data.data(), 0, nullptr, nullptr, nullptr), -2);
  EXPECT_EQ(zomath_check_order_curve(5, data.data(), 3, nullptr, nullptr, nullptr), -2);
  EXPECT_EQ(zomath_check_order_curve(7, nullptr, 2, nullptr, nullptr, nullptr), -8);
}

TEST(OrderTests, CurveListReadsTheOtherWayRound) {
  const V rise = joined(kRising, kRising), fall = joined(kFalling, kFalling),
          mixed = joined(kRising, kFalling), zig = joined(kZigzag, kZigzag);
  // Every curve has the same y: only the order of the x counts.
  auto curve = [&zig](const V& x) {
    return CurveRecord{static_cast<unsigned int>(x.size()), x.data(), zig.data(), 0};
  };
  const CurveRecord r = curve(rise), f = curve(fall), m = curve(mixed), z = curve(zig);
  const std::pair<std::vector<CurveRecord>, int> cases[] = {
      {{r, r}, 0}, {{f, f, f}, 0}, {{m, m}, 1}, {{r, f}, 2}, {{r, r, m}, 2}, {{m, z}, 2},
      // Unordered segments answer as falling ones one level below: these agree on an order.
      {{z, z}, 0}, {{f, z}, 0},
  };
  for (const auto& [list, want] : cases)
    EXPECT_EQ(zomath_check_order_multiple_curves(list.size(), list.data(), 2, nullptr, nullptr,
                                                 nullptr), want) << list.size() << " " << want;

  // nSegments entries a curve, curve after curve, all curves reported after a disagreement.
  CurveRecord list[2] = {r, m};
  V mean(4);
  std::vector<int> counts(4);
  ASSERT_EQ(zomath_check_order_multiple_curves(2, list, 2, mean.data(), nullptr, counts.data()), 2);
  EXPECT_EQ(mean, (V{0.75, 0.75, 0.75, -0.75}));
  EXPECT_EQ(counts, (std::vector<int>{7, 7, 7, 7}));

  EXPECT_EQ(zomath_check_order_multiple_curves(1, list, 2, nullptr, nullptr, nullptr), -2);
  EXPECT_EQ(zomath_check_order_multiple_curves(2, list, 0, nullptr, nullptr, nullptr), -2);
  EXPECT_EQ(zomath_check_order_multiple_curves(2, nullptr, 2, nullptr, nullptr, nullptr), -8);
  list[1].nSize = 3;  // too short for 2 segments
  EXPECT_EQ(zomath_check_order_multiple_curves(2, list, 2, nullptr, nullptr, nullptr), -2);
  list[1].pY = nullptr;
  EXPECT_EQ(zomath_check_order_multiple_curves(2, list, 2, nullptr, nullptr, nullptr), -8);
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
      // (index 60) 44, .. 32 pass and 28 departs.
      {&kinked, 1, 2.5, 0, true, 0, 4, 32},
      {&kinked, 1, 2.5, 0, false, 0, 4, 32},
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
  const double *x = kinked.x.data(), *y = kinked.y.data();
  EXPECT_EQ(zomath_check_linear(61, nullptr, y, &end, 1, 5, 0, true, 0, 4), -11);
  EXPECT_EQ(zomath_check_linear(61, x, y, nullptr, 1, 5, 0, true, 0, 4), -11);
  EXPECT_EQ(zomath_check_linear(0, x, y, &end, 1, 5, 0, true, 0, 4), -18);
  EXPECT_EQ(zomath_check_linear(61, x, y, &end, 1, 5, 61, true, 0, 4), -18);
  for (double fraction : {-0.5, std::nan("")})
    EXPECT_EQ(zomath_check_linear(61, x, y, &end, fraction, 5, 0, true, 0, 4), -18);
}

}  // namespace
