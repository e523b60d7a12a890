// Arrays read as a sample or a curve: the distinct values with their counts, and the area under
// a curve by the trapezoidal rule.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <random>
#include <vector>

#include "core/kernels.h"
#include "core/large_buffer.h"
#include "zomath/vector.h"

namespace {

constexpr double M = NANUM;

TEST(DiscreteFrequencies, ValuesAndCounts) {
  const struct {
    std::vector<double> x, values;
    std::vector<int> counts;
  } cases[] = {
      {{3, 1, 3, 2, 3}, {1, 2, 3}, {1, 1, 3}},
      {{M, 5, NAN, M, 5}, {5}, {2}},
      {{-0.0, 0.0, -1}, {-1, 0}, {1, 2}},
      {{INFINITY, -INFINITY, 1e-310, INFINITY}, {-INFINITY, 1e-310, INFINITY}, {1, 1, 2}},
      {{M, NAN}, {}, {}},
      {{}, {}, {}},
  };
  for (const auto& c : cases) {
    std::vector<double> values(8, 99);
    std::vector<int> counts(8, 99);
    int distinct = 8;
    EXPECT_EQ(zomath_discrete_frequencies(int(c.x.size()), c.x.data(), values.data(), counts.data(), &distinct), 0);
    ASSERT_EQ(distinct, int(c.values.size()));
    for (int i = 0; i < distinct; ++i) {
      EXPECT_EQ(values[i], c.values[i]);
      EXPECT_FALSE(std::signbit(values[i]) && values[i] == 0) << "0 comes back as +0";
      EXPECT_EQ(counts[i], c.counts[i]);
    }
    EXPECT_EQ(values[distinct], 99) << "nothing written past the distinct values";
  }
}

TEST(DiscreteFrequencies, RoomAndCodes) {
  const double x[] = {4, 2, 4, 9};
  double values[3] = {7, 7, 7};
  int counts[3] = {7, 7, 7};
  int distinct = 2;
  EXPECT_EQ(zomath_discrete_frequencies(4, x, values, counts, &distinct), ZOMATH_ERR_BAD_ARGUMENT);
  EXPECT_EQ(distinct, 3) << "the room needed";
  EXPECT_EQ(values[0], 7);
  distinct = 0;
  EXPECT_EQ(zomath_discrete_frequencies(4, x, nullptr, nullptr, &distinct), 0);
  EXPECT_EQ(distinct, 3);
  distinct = 3;
  EXPECT_EQ(zomath_discrete_frequencies(4, x, nullptr, counts, &distinct), 0);
  EXPECT_EQ(counts[1], 2);
  EXPECT_EQ(zomath_discrete_frequencies(4, x, values, counts, nullptr), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(zomath_discrete_frequencies(4, nullptr, values, counts, &distinct), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(zomath_discrete_frequencies(-1, x, values, counts, &distinct), ZOMATH_ERR_BAD_ARGUMENT);
}

// Large arrays: the distinct values come from a radix sort, whose order must be that of a
// comparison for every kind of double (both signs, zeros, subnormals, infinities), and the most
// frequent value from buckets counted in tables that grow; both against a plain tally, with
// every value distinct, with ties at the top and with one value only.
TEST(DiscreteFrequencies, LargeArraysAgainstATally) {
  std::mt19937_64 rng(7);
  const double specials[] = {0.0, -0.0, 5e-324, -5e-324, 1e308, -1e308, INFINITY, -INFINITY, M, NAN};
  const struct {
    std::size_t n;
    int distinct;  // values drawn from this many (0: of every kind, nearly all distinct)
  } cases[] = {{2000, 0}, {300000, 0}, {300000, 1000}, {300000, 70000}, {100000, 1}};
  for (const auto& c : cases) {
    std::vector<double> x(c.n);
    for (std::size_t i = 0; i < c.n; ++i) {
      const auto r = rng();
      if (r % 50 == 0) x[i] = specials[(r >> 8) % 10];
      else if (c.distinct) x[i] = double((r >> 12) % c.distinct) * 0.37 - 50;
      else x[i] = std::ldexp(double((r >> 12) % 100000) - 50000, int((r >> 40) % 200) - 100);
    }
    std::map<double, int> tally;
    for (double v : x)
      if (v == v && v != M) ++tally[v + 0.0];
    std::vector<double> values(c.n);
    std::vector<int> counts(c.n);
    int distinct = int(c.n);
    ASSERT_EQ(zomath_discrete_frequencies(int(c.n), x.data(), values.data(), counts.data(), &distinct), 0);
    ASSERT_EQ(distinct, int(tally.size())) << c.n;
    zomath::kernels::MostFrequent want;
    int k = 0;
    for (const auto& [v, count] : tally) {
      EXPECT_EQ(values[k], v) << c.n << ", " << k;
      EXPECT_EQ(counts[k++], count) << c.n << ", " << v;
      if (std::size_t(count) > want.count) want = {v, std::size_t(count), 1};
      else if (std::size_t(count) == want.count) ++want.ties;
    }
    const auto got = zomath::kernels::most_frequent(x.data(), x.size());
    EXPECT_EQ(got.count, want.count) << c.n << " " << c.distinct;
    EXPECT_EQ(got.value, want.value) << c.n << " " << c.distinct;
    EXPECT_EQ(got.ties, want.ties) << c.n << " " << c.distinct;
  }
  EXPECT_EQ(zomath::kernels::most_frequent(nullptr, 0).count, 0u);
}

// Buffers from 32 MiB on come on 2 MiB boundaries, for the kernel's huge pages; smaller ones
// from malloc; a size whose bytes overflow is refused.
TEST(LargeBuffer, AlignmentAndRefusal) {
  using Buffer = zomath::kernels::LargeBuffer<std::uint64_t>;
  Buffer b;
  const std::size_t n = Buffer::kHugeFrom / sizeof(std::uint64_t) + 1;
  ASSERT_TRUE(b.allocate(n));
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(b.get()) % Buffer::kHugePage, 0u);
  b.get()[0] = 1;
  b.get()[n - 1] = 2;
  EXPECT_EQ(b.get()[0] + b.get()[n - 1], 3u);
  ASSERT_TRUE(b.allocate(0));
  b.get()[0] = 4;
  EXPECT_FALSE(b.allocate(std::size_t(-1) / 4));
  EXPECT_EQ(b.get(), nullptr);
}

TEST(Integrate, AreasAndCumulativeAreas) {
  const struct {
    int line;
    std::vector<double> x, y;
    int rc;
    double area;
    std::vector<double> cumulative;
  } cases[] = {
      {__LINE__, {0, 1, 3}, {1, 3, 7}, 0, 12, {0, 2, 12}},          // y = 2x + 1: exact
      {__LINE__, {3, 1, 0}, {7, 3, 1}, 0, -12, {0, -10, -12}},      // falling x: negative
      {__LINE__, {0, 1, 1, 2}, {0, 2, 4, 4}, 0, 5, {0, 1, 1, 5}},   // a vertical step adds 0
      {__LINE__, {M, 0, 1, M, 2, 4}, {9, 2, M, 7, 2, 0}, 0, 6, {0, 0, 0, 0, 4, 6}},
      {__LINE__, {0, 2, 1}, {1, 1, 1}, ZOMATH_ERR_NOT_MONOTONIC, M, {M, M, M}},
      {__LINE__, {0, M, 1}, {1, 1, M}, ZOMATH_ERR_TOO_FEW_FOR_RANGE, M, {M, M, M}},
      {__LINE__, {5}, {1}, ZOMATH_ERR_TOO_FEW_FOR_RANGE, M, {M}},
  };
  for (const auto& c : cases) {
    double area = 42;
    std::vector<double> cumulative(c.x.size(), 42);
    EXPECT_EQ(zomath_integrate(int(c.x.size()), c.x.data(), c.y.data(), &area, cumulative.data()), c.rc) << c.line;
    EXPECT_EQ(area, c.area) << c.line;
    EXPECT_EQ(cumulative, c.cumulative) << c.line;
  }
  const double x[] = {0, 1}, y[] = {NAN, 1}, inf[] = {INFINITY, 1};
  double area;
  EXPECT_EQ(zomath_integrate(2, x, y, &area, nullptr), 0);
  EXPECT_TRUE(std::isnan(area));
  EXPECT_EQ(zomath_integrate(2, x, inf, &area, nullptr), 0);
  EXPECT_EQ(area, INFINITY);
  EXPECT_EQ(zomath_integrate(2, nullptr, y, &area, nullptr), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(area, M);
}

// The rule's own answer for sin on [0, pi] in n steps of h is h cot(h / 2) (the sum of the
// sines in closed form): the million terms must add up to it within a few roundings, which a
// plain running sum misses by orders of magnitude more.
TEST(Integrate, ManyTermsAddUpToTheClosedForm) {
  const int n = 1000000;
  const double h = M_PI / n;
  std::vector<double> x(n + 1), y(n + 1), cumulative(n + 1);
  for (int i = 0; i <= n; ++i) {
    x[i] = i * h;
    y[i] = std::sin(x[i]);
  }
  double area;
  ASSERT_EQ(zomath_integrate(n + 1, x.data(), y.data(), &area, cumulative.data()), 0);
  // The steps and ordinates are roundings of i h and sin(i h): the closed form of the rounded
  // curve differs from h cot(h/2) by about 1e-16 relative.
  long double exact = 0;
  for (int i = 0; i < n; ++i) exact += (static_cast<long double>(x[i + 1]) - x[i]) * (0.5L * y[i] + 0.5L * y[i + 1]);
  EXPECT_NEAR(area, static_cast<double>(exact), 4e-16 * 2);
  EXPECT_NEAR(area, h / std::tan(h / 2), 1e-14);
  EXPECT_EQ(cumulative[n], area);
  EXPECT_TRUE(std::is_sorted(cumulative.begin(), cumulative.end()));
}

}  // namespace
