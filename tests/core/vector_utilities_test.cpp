// Utilities on double arrays: transforms, counts, lookups, axis rounding, median, factorial.
#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "platform/frequency.h"
#include "zomath/vector.h"

namespace {

const double kNaN = std::nan("");

TEST(LinearTransform, FlagsRoundingAndClamps) {
  // From 0..10 onto 0..100: 2.345 maps to 23.45, -1 to -10, 12 to 120.
  struct Case {
    unsigned flags;
    double want[3];
  };
  const Case cases[] = {
      {0, {23, 0, 100}},          // rounded, both clamps
      {1, {23.45, 0, 100}},       // fraction kept
      {2, {23, -9, 100}},         // no low clamp: integer part of -10 + 0.5
      {4 | 1, {23.45, 0, 120}},   // no high clamp
      {7, {23.45, -10, 120}},
  };
  for (const Case& c : cases) {
    double d[3] = {2.345, -1, 12};
    EXPECT_EQ(zomath_linear_transform(d, 0, 3, 0, 100, 0, 10, c.flags), 0);
    for (int k = 0; k < 3; ++k) EXPECT_NEAR(d[k], c.want[k], 1e-12) << c.flags << " " << k;
  }
}

TEST(LinearTransform, WritesFromElementZeroWhateverTheRange) {
  // The range gives the count and the limits taken from the data; the output starts at 0.
  double d[5] = {3, 4, 2, 4, 99};
  EXPECT_EQ(zomath_linear_transform(d, 2, 4, 0, 10, NANUM, NANUM, 1), 0);
  const double want[5] = {5, 10, 2, 4, 99};  // limits 2 and 4 from d[2..3]; d[0..1] rewritten
  for (int k = 0; k < 5; ++k) EXPECT_EQ(d[k], want[k]) << k;
  double e[3] = {5, 5, 5};
  EXPECT_EQ(zomath_linear_transform(e, 0, 3, 0, 1, NANUM, NANUM, 0), -1);  // no spread
  EXPECT_EQ(zomath_linear_transform(e, 2, 2, 0, 1, NANUM, 1, 0), -1);      // nothing to measure
  EXPECT_EQ(zomath_linear_transform(e, 0, 3, 0, 1, 0, INFINITY, 0), -1);
  EXPECT_EQ(zomath_linear_transform(nullptr, 0, 3, 0, 1, 0, 1, 0), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(e[0], 5);
}

TEST(Count, ConditionsAndMissingValues) {
  const double d[] = {1, 2, 2, 3, NANUM};
  const int want[6] = {3, 1, 4, 2, 2, 3};  // >= 2, > 2, <= 2, < 2, == 2, != 2 (NANUM is < 2)
  for (int c = 0; c < 6; ++c) EXPECT_EQ(zomath_count(2, 5, d, c), want[c]) << c;
  EXPECT_EQ(zomath_count(NANUM, 5, d, 4), 1);  // counting missing values
  EXPECT_EQ(zomath_count(2, 5, d, 6), -1);
  EXPECT_EQ(zomath_count(2, 0, d, 6), 0);  // the empty test comes first
  EXPECT_EQ(zomath_count(2, 5, nullptr, 0), -1);
  EXPECT_EQ(zomath_count(kNaN, 5, d, 5), 5);  // NaN differs from everything
}

TEST(ReplaceData, FlagTable) {
  const double in[] = {-3, -1, 0, 1, 3};
  struct Case {
    unsigned flags;
    double threshold, replace;
    double want[5];
  };
  const Case cases[] = {
      {1, 0, 9, {9, 9, 0, 1, 3}},
      {2 | 4, 1, 9, {-3, -1, 0, 9, 9}},
      {8 | 1, -2, 9, {-3, 9, 9, 9, 3}},             // |t| = 2: -2 < x < 2
      {8 | 2, 3, 9, {9, -1, 0, 1, 9}},              // x == 3 or x == -3
      {8 | 4 | 16, 2, -7, {-7, -1, 0, 1, 7}},       // outside -2..2, sign of x kept
      {2 | 32, 1, 9, {NANUM, NANUM, NANUM, 9, NANUM}},
      {0, 0, 9, {-3, -1, 0, 1, 3}},                 // refused: nothing changes
      {64, 0, 9, {-3, -1, 0, 1, 3}},
  };
  for (const Case& c : cases) {
    double d[5];
    std::copy(in, in + 5, d);
    EXPECT_EQ(zomath_replace_data_in_vector(5, d, c.threshold, c.replace, c.flags), 0);
    for (int k = 0; k < 5; ++k) EXPECT_EQ(d[k], c.want[k]) << c.flags << " " << k;
  }
  double d[1] = {0};
  EXPECT_EQ(zomath_replace_data_in_vector(1, nullptr, 0, 0, 1), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(zomath_replace_data_in_vector(0, d, 0, 0, 1), ZOMATH_ERR_BAD_ARGUMENT);
}

TEST(FindIndices, LastElementNotAboveTheValue) {
  const double sorted[] = {1, 2, 2, 2, 5, 8};
  const double values[] = {0.5, 1, 1.5, 2, 4.9, 5, 7.99, 8, 100, kNaN, -INFINITY, INFINITY};
  const int want[] = {-1, 0, 0, 3, 3, 4, 4, 5, 5, -1, -1, 5};
  int got[12];
  ASSERT_EQ(zomath_array_find_indices(sorted, 6, values, 12, got), 0);
  for (int k = 0; k < 12; ++k) EXPECT_EQ(got[k], want[k]) << values[k];
  int one = 7;
  EXPECT_EQ(zomath_binary_search(sorted, 6, 2.5, &one), 0);
  EXPECT_EQ(one, 3);
  EXPECT_EQ(zomath_binary_search(sorted, 1, 1, &one), 0);
  EXPECT_EQ(one, 0);
  const double descending[] = {3, 1};
  EXPECT_EQ(zomath_binary_search(descending, 2, 2, &one), ZOMATH_ERR_BAD_ARGUMENT);
  EXPECT_EQ(zomath_binary_search(sorted, 0, 2, &one), ZOMATH_ERR_BAD_ARGUMENT);
  EXPECT_EQ(zomath_array_find_indices(sorted, 6, nullptr, 1, got), ZOMATH_ERR_BAD_ARGUMENT);
  EXPECT_EQ(zomath_array_find_indices(sorted, 6, values, -1, got), ZOMATH_ERR_BAD_ARGUMENT);
}

TEST(FindNearestIndex, ScanCases) {
  struct Case {
    std::vector<double> data;
    double value;
    int code, lower, upper, nearest;
  };
  const Case cases[] = {
      {{1, 2, 3, 4, 5}, 3.6, 0, 2, 3, 3},
      {{1, 2, 3, 4, 5}, 3.5, 0, 2, 3, 2},           // a tie goes to the lower
      {{5, 4, 3, 2, 1}, 3.4, 0, 2, 1, 2},           // descending works too
      {{1, NANUM, 2, 4}, 3, 0, 2, 3, 2},            // NANUM skipped
      {{1, 2, 3, 4}, 3, 0, 2, 2, 2},                // an equal element: both bounds
      {{7}, 7, 0, 0, 0, 0},
      {{1, 2}, 5, -1, 1, -1, 1},                    // nothing above
      {{6, 8}, 5, -1, -1, 0, 0},                    // nothing below
      {{NANUM, NANUM}, 5, -1, -1, -1, -1},
      // Unsorted: the scan stops at 0, which improves neither bound, and never sees 4.9.
      {{1, 6, 0, 4.9}, 5, 0, 0, 1, 1},
  };
  for (const Case& c : cases) {
    int lower = 99, upper = 99, nearest = 99;
    EXPECT_EQ(zomath_find_nearest_index(c.data.data(), static_cast<int>(c.data.size()), c.value,
                                        &lower, &upper, &nearest),
              c.code);
    EXPECT_EQ(lower, c.lower);
    EXPECT_EQ(upper, c.upper);
    EXPECT_EQ(nearest, c.nearest);
  }
  EXPECT_EQ(zomath_find_nearest_index(nullptr, 3, 0, nullptr, nullptr, nullptr), -18);
  const double one = 1;
  EXPECT_EQ(zomath_find_nearest_index(&one, 0, 0, nullptr, nullptr, nullptr), -18);
}

TEST(FindNearestValues, InterpolatedAndNearest) {
  const double data[] = {10, 20, NANUM, 40};
  const double x[] = {-1, 0, 0.25, 0.5, 0.75, 1, 1.5, 3, 9, kNaN};
  const double linear[] = {10, 10, 12.5, 15, 17.5, 20, NANUM, 40, 40, NANUM};
  const double nearest[] = {10, 10, 10, 10, 20, 20, 20, 40, 40, NANUM};
  double out[10];
  ASSERT_EQ(zomath_find_nearest_values(out, 4, data, 10, x, 1), 0);
  for (int k = 0; k < 10; ++k) EXPECT_EQ(out[k], linear[k]) << x[k];
  ASSERT_EQ(zomath_find_nearest_values(out, 4, data, 10, x, 2), 0);  // bit 0 clear
  for (int k = 0; k < 10; ++k) EXPECT_EQ(out[k], nearest[k]) << x[k];
  EXPECT_EQ(zomath_find_nearest_values(nullptr, 4, data, 1, x, 0), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(zomath_find_nearest_values(out, 0, data, 1, x, 0), ZOMATH_ERR_TOO_FEW_ITEMS);
  EXPECT_EQ(zomath_find_nearest_values(out, 4, data, 0, x, 0), ZOMATH_ERR_TOO_FEW_ITEMS);
}

TEST(RoundRange, RoundAxes) {
  struct Case {
    double min, max, inc;
    bool giveInc;
    int steps;
    double wantMin, wantMax, wantInc;
    int code;
  };
  const Case cases[] = {
      {0.13, 9.87, 0, true, 10, 0, 10, 1, 10},   // 0.974 rounds to 1
      {10, 0, 0, true, 4, 12, 0, -3, 4},         // reversed: 2.5 rounds to 3, written negative
      {0.3, 1.1, 0.25, true, 0, 0.25, 1.25, 0.25, 4},  // nSteps 0: the increment stays as given
      {0, 0, 0, true, 5, -1.2, 1.2, 0.4, 6},     // 0..0 becomes -1..1 first
      {5, 5, 0, false, 1, 4, 6, 0, 2},           // widened by 10% each way
      {-0.042, 0.0371, 0, true, 8, -0.05, 0.04, 0.01, 9},
  };
  for (const Case& c : cases) {
    double lo = c.min, hi = c.max, inc = c.inc;
    EXPECT_EQ(zomath_round_range(&lo, &hi, c.giveInc ? &inc : nullptr, c.steps), c.code);
    EXPECT_DOUBLE_EQ(lo, c.wantMin) << c.min << ".." << c.max;
    EXPECT_DOUBLE_EQ(hi, c.wantMax) << c.min << ".." << c.max;
    if (c.giveInc) {
      EXPECT_DOUBLE_EQ(inc, c.wantInc) << c.min << ".." << c.max;
    }
  }
  double lo = 1, hi = 2, inc = 0;
  EXPECT_EQ(zomath_round_range(nullptr, &hi, &inc, 1), ZOMATH_ERR_NULL_POINTER);
  for (double bad : {kNaN, double(INFINITY), NANUM}) {
    hi = bad;
    EXPECT_EQ(zomath_round_range(&lo, &hi, &inc, 1), ZOMATH_ERR_BAD_ARGUMENT);
  }
  lo = -DBL_MAX;
  hi = DBL_MAX;  // the span overflows
  EXPECT_EQ(zomath_round_range(&lo, &hi, nullptr, 1), ZOMATH_ERR_BAD_ARGUMENT);
  EXPECT_EQ(lo, -DBL_MAX);
}

TEST(RoundWithTolerance, ClassCentresSorted) {
  double d[] = {0.37, 0.12, 0.2, 0.31, 0.18};
  ASSERT_EQ(zomath_round_with_tolerance(5, d, 0.1), 0);
  // Classes of 0.1 from 0.1: [0.1, 0.2) holds 0.12 and 0.18, 0.2 starts the next class.
  const double want[] = {0.15, 0.15, 0.25, 0.35, 0.35};
  for (int k = 0; k < 5; ++k) EXPECT_DOUBLE_EQ(d[k], want[k]) << k;

  double single[] = {5};  // 5..5 widens to 4.5..5.5, rounded out to 4..6: 5 opens class 2
  ASSERT_EQ(zomath_round_with_tolerance(1, single, 1), 0);
  EXPECT_EQ(single[0], 5.5);

  double keep[] = {1, kNaN};
  EXPECT_EQ(zomath_round_with_tolerance(2, keep, 0.5), ZOMATH_ERR_BAD_ARGUMENT);
  EXPECT_EQ(keep[0], 1);
  EXPECT_EQ(zomath_round_with_tolerance(1, keep, 0), ZOMATH_ERR_BAD_ARGUMENT);
  EXPECT_EQ(zomath_round_with_tolerance(1, keep, -1), ZOMATH_ERR_BAD_ARGUMENT);
  EXPECT_EQ(zomath_round_with_tolerance(0, keep, 1), ZOMATH_ERR_TOO_FEW_POINTS);
  EXPECT_EQ(zomath_round_with_tolerance(1, nullptr, 1), ZOMATH_ERR_NULL_POINTER);
  double wide[] = {0, 1e9};
  EXPECT_EQ(zomath_round_with_tolerance(2, wide, 1e-3), ZOMATH_ERR_BAD_ARGUMENT);  // 10^12 classes
  EXPECT_EQ(wide[1], 1e9);
}

TEST(FrequencyTable, BoundaryValuesGoToTheClassAbove) {
  using namespace zomath::platform;
  const double data[] = {-5, 0, 0.5, 1, 1, 2, 7, kNaN};
  const double bounds[] = {0, 1, 2}, flat[] = {0, 0, 1};
  int counts[4];
  NagError err;
  ASSERT_EQ(frequency_table(data, 8, 4, bounds, counts, nullptr, nullptr, err), 0);
  EXPECT_EQ(std::vector<int>(counts, counts + 4), (std::vector<int>{1, 2, 2, 2}));  // NaN: none
  EXPECT_EQ(frequency_table(data, 8, 4, flat, counts, nullptr, nullptr, err), kFrequencyNotIncreasing);
  EXPECT_EQ(frequency_table(data, 8, 1, bounds, counts, nullptr, nullptr, err), kFrequencyTooFewClasses);
}

TEST(SmallUtilities, InsideRangeInfinityAndSpacing) {
  EXPECT_TRUE(zomath_is_inside_range(1, 2, 0, 0));  // either order
  EXPECT_FALSE(zomath_is_inside_range(2, 0, 2, 0));
  EXPECT_TRUE(zomath_is_inside_range(2, 0, 2, 1));
  const double d[] = {1, INFINITY, -INFINITY, DBL_MAX, kNaN};
  int flags[5];
  EXPECT_EQ(zomath_check_infinity(d, 5, flags, 5), 2);
  EXPECT_EQ(std::vector<int>(flags, flags + 5), (std::vector<int>{0, 1, 1, 0, 0}));
  EXPECT_EQ(zomath_check_infinity(d, 5, flags, 4), 0);
  // Each term from its index: ten steps of 0.1 land on 1.0, where a running sum gives
  // 0.9999999999999999.
  double spaced[11];
  ASSERT_EQ(zomath_create_equal_spaced_vec(spaced, 11, 0, 0.1), 0);
  EXPECT_EQ(spaced[10], 1.0);
  EXPECT_EQ(zomath_create_equal_spaced_vec(spaced, 3, NANUM, 1), ZOMATH_ERR_BAD_ARGUMENT);
}

TEST(SplitVector, RunsOfOtherValues) {
  struct Case {
    std::vector<double> data;
    std::vector<unsigned> pairs;
  };
  const Case cases[] = {
      {{1, 0, 0, 2, 3, 0}, {0, 1, 3, 5, 6, 6}},  // ends in the value: a last empty pair
      {{0, 0, 1}, {2, 3}},
      {{1, 2}, {0, 2}},
      {{0, 0}, {2, 2}},
  };
  for (const Case& c : cases) {
    std::vector<unsigned> pairs(2 * (c.data.size() / 2 + 1), 99);
    const int n = zomath_split_vector_by_value(static_cast<unsigned>(c.data.size()), c.data.data(), 0,
                                               pairs.data());
    ASSERT_EQ(n * 2, static_cast<int>(c.pairs.size()));
    pairs.resize(c.pairs.size());
    EXPECT_EQ(pairs, c.pairs);
  }
  unsigned pairs[2];
  EXPECT_EQ(zomath_split_vector_by_value(3, nullptr, 0, pairs), 0);
}

TEST(CompareData, InclusiveToleranceAndMissingPositions) {
  const double a[] = {1, NANUM, 3};
  struct Case {
    double b[3];
    double tolerance;
    int equal;
  };
  const Case cases[] = {
      {{1.5, NANUM, 3}, 0.5, 1},   // |a - b| == tolerance counts as equal
      {{1.5, NANUM, 3}, 0.4, 0},
      {{1, 2, 3}, 10, 0},          // missing on one side only
      {{1, NANUM, 3}, NANUM, 0},   // a NANUM tolerance makes nothing equal
      {{1, NANUM, kNaN}, 1, 0},
      {{1, NANUM, 3}, 0, 1},
  };
  for (const Case& c : cases) {
    int equal = -1;
    EXPECT_EQ(zomath_compare_data(3, a, c.b, &equal, c.tolerance), 0);
    EXPECT_EQ(equal, c.equal) << c.tolerance;
  }
  int equal;
  EXPECT_EQ(zomath_compare_data(0, a, a, &equal, 1), ZOMATH_ERR_BAD_ARGUMENT);
  EXPECT_EQ(zomath_compare_data(3, a, nullptr, &equal, 1), ZOMATH_ERR_BAD_ARGUMENT);
}

TEST(Median, SelectionMatchesTheSortedMiddle) {
  std::mt19937 rng(7);
  std::uniform_int_distribution<int> small(-5, 5);  // many ties
  for (int n = 1; n <= 40; ++n) {
    std::vector<double> d(n);
    for (double& x : d) x = small(rng) * 0.5;
    d[0] = NANUM;  // kept, as a tiny negative number
    auto sorted = d;
    std::sort(sorted.begin(), sorted.end());
    const double want = n % 2 ? sorted[n / 2] : (sorted[n / 2 - 1] + sorted[n / 2]) / 2;
    const auto before = d;
    double median;
    ASSERT_EQ(zomath_get_median_in_vector(n, d.data(), &median), 0);
    EXPECT_EQ(median, want) << n;
    EXPECT_EQ(d, before);
  }
  const double huge[] = {DBL_MAX, DBL_MAX};
  double median = 0;
  EXPECT_EQ(zomath_get_median_in_vector(2, huge, &median), 0);
  EXPECT_EQ(median, DBL_MAX);
  const double withNaN[] = {1, kNaN, 2};
  EXPECT_EQ(zomath_get_median_in_vector(3, withNaN, &median), ZOMATH_ERR_BAD_ARGUMENT);
  EXPECT_EQ(median, NANUM);
  EXPECT_EQ(zomath_get_median_in_vector(0, huge, &median), ZOMATH_ERR_BAD_ARGUMENT);
  EXPECT_EQ(zomath_get_median_in_vector(2, huge, nullptr), ZOMATH_ERR_BAD_ARGUMENT);
}

// n! against the exact integers, rounded once (tests/tools/make_factorial_table.py). The
// product is formed in long double, whose 64-bit significand holds every n! up to 25! exactly;
// beyond, its roundings are 2^11 times finer than a double's and each value up to 170! still
// comes out as the nearest double, so equality is asked.
TEST(Factorial, AgainstExactIntegers) {
  std::ifstream in(std::string(ZOMATH_TEST_DATA_DIR) + "/vector/factorial.csv");
  ASSERT_TRUE(in);
  std::string line;
  int rows = 0;
  while (std::getline(in, line)) {
    if (line.empty() || line[0] == '#' || line[0] == 'n') continue;
    std::istringstream row(line);
    int n;
    char comma;
    std::string text;
    row >> n >> comma >> text;
    EXPECT_EQ(zomath_fac(n), std::stod(text)) << n;
    ++rows;
  }
  EXPECT_EQ(rows, 172);  // 0..170, and 171! beyond the double range
  EXPECT_EQ(zomath_fac(-1), NANUM);
  EXPECT_EQ(zomath_fac(100000), INFINITY);
}

// Null pointers, empty and negative sizes, NaN and infinities give a code or an empty
// result; the sanitizer build shows that nothing reads or writes out of bounds.
TEST(BadInput, NeverCrashes) {
  double d[4] = {NANUM, kNaN, INFINITY, -INFINITY};
  unsigned idx[2], counts[3];
  EXPECT_EQ(zomath_d_minmax(d, 0, 3, idx, idx + 1), 1);
  EXPECT_EQ(idx[0], 3u);  // -infinity is a number; NaN never is
  EXPECT_TRUE(std::isnan(zomath_d_sum(d, 4, nullptr, nullptr, nullptr, nullptr, nullptr)));
  EXPECT_EQ(zomath_d_sum(d, -4, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(zomath_d_mean_variance(nullptr, 4, nullptr, nullptr), NANUM);
  EXPECT_EQ(zomath_d_cumulative_sum(nullptr, 0, 4, d, nullptr), 0);
  EXPECT_EQ(zomath_d_frequency_count(d, 4, counts, 3, kNaN, 1), -1);
  EXPECT_EQ(zomath_d_stretch(d, 4, 0, kNaN, 0, 1), -3);
  EXPECT_EQ(zomath_d_stretch(nullptr, 4, 0, 1, 0, 1), -3);
  zomath_d_copy(2, nullptr, d, d, 4);
  EXPECT_EQ(zomath_d_get_vector_inc(4, d, 0, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(zomath_d_find_most(d, 4, 3, nullptr), NANUM);  // infinite range
  EXPECT_EQ(zomath_us_find_most(nullptr, 4, 3, nullptr), -1);
  EXPECT_EQ(zomath_split_vector_by_value(0, d, 0, idx), 0);
  int lower, upper, nearest;
  EXPECT_EQ(zomath_find_nearest_index(d, 4, kNaN, &lower, &upper, &nearest), -1);
  EXPECT_EQ(zomath_find_nearest_index(nullptr, 3, 0, nullptr, nullptr, nullptr), -18);
  EXPECT_EQ(zomath_replace_data_in_vector(-1, d, 0, 0, 1), ZOMATH_ERR_BAD_ARGUMENT);
}

}  // namespace
