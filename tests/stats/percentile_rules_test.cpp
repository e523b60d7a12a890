// The rules of the percentile exports that callers rely on: every code, missing values and NaN,
// the ties that (p n) / 100 decides, the options and percent list of zomath_quantiles, the row
// forms against the single-sample export, and selection against the full sort. Values here are
// exact; accuracy on general samples is the business of percentile_reference_test.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "stats/percentiles.h"
#include "stats_data.h"

namespace {

using namespace zomath::testing;
constexpr double M = NANUM;

std::vector<double> percentiles(const std::vector<double>& x, const std::vector<double>& p, int rule,
                                const std::vector<double>& w = {}) {
  std::vector<double> out(p.size(), 42.0);
  EXPECT_EQ(zomath_percentiles(x.data(), int(x.size()), p.data(), int(p.size()), out.data(), rule,
                               w.empty() ? nullptr : w.data()), 0);
  return out;
}

QuantileOptions all_options(int rule) { return {rule, true, true, true, true, true, true, true, true, true}; }

TEST(PercentileRules, Codes) {
  const double x[] = {3, 1, 2}, p[] = {50}, w[] = {1, 2, 3}, missing[] = {M, NAN};
  const double badW[][3] = {{1, -0.5, 1}, {1, NAN, 1}, {1, INFINITY, 1}};
  double o1[1], a[2], b[2];
  int ia[2], index[1];
  auto pct = [&](const double* d, int n, const double* q, int m, double* out, int rule, const double* wt) {
    o1[0] = 42;
    const int code = zomath_percentiles(d, n, q, m, out, rule, wt);
    EXPECT_TRUE(code == 0 || !out || m < 1 || o1[0] == M) << code;  // NANUM on failure
    return code;
  };
  EXPECT_EQ(pct(x, 3, p, 1, o1, 2, w), 0);
  EXPECT_EQ(pct(x, 0, p, 1, o1, 2, w), -155);
  EXPECT_EQ(pct(x, 3, p, 0, o1, 2, w), -155);
  EXPECT_EQ(pct(nullptr, -1, nullptr, 1, o1, 2, nullptr), -155);
  EXPECT_EQ(pct(nullptr, 3, p, 1, o1, 2, w), -156);
  EXPECT_EQ(pct(x, 3, nullptr, 1, o1, 2, w), -156);
  EXPECT_EQ(pct(x, 3, p, 1, nullptr, 2, w), -156);
  EXPECT_EQ(pct(x, 3, p, 1, o1, 6, w), -151);
  EXPECT_EQ(pct(x, 3, p, 1, o1, -1, w), -151);
  for (const auto& bad : badW) EXPECT_EQ(pct(x, 3, p, 1, o1, 2, bad), -108);

  // zomath_quantiles: an empty sample is no failure; the weights are checked before the
  // pointers; no valid value fails only when the extremes are asked for.
  const QuantileOptions o = all_options(INTERPOLATE_EDF), bad = all_options(7);
  QuantileOptions middle{};
  middle.bMedian = true;
  QuantileResults r;
  EXPECT_EQ(zomath_quantiles(x, 0, &o, &r, p, 2, a, nullptr), 0);
  EXPECT_TRUE(r.Min == M && r.iMin == -1 && r.IQR == M && r.iMax == -1 && a[1] == M);
  EXPECT_EQ(zomath_quantiles(x, -1, &o, &r, nullptr, 0, nullptr, nullptr), -155);
  EXPECT_EQ(zomath_quantiles(nullptr, 3, &o, &r, nullptr, 0, nullptr, badW[0]), -108);
  EXPECT_EQ(zomath_quantiles(nullptr, 3, &o, &r, nullptr, 0, nullptr, nullptr), -156);
  EXPECT_EQ(zomath_quantiles(x, 3, nullptr, &r, nullptr, 0, nullptr, nullptr), -156);
  EXPECT_EQ(zomath_quantiles(x, 3, &o, nullptr, nullptr, 0, nullptr, nullptr), -156);
  EXPECT_EQ(zomath_quantiles(x, 3, &bad, &r, nullptr, 0, nullptr, nullptr), -151);
  EXPECT_EQ(zomath_quantiles(missing, 2, &o, &r, nullptr, 0, nullptr, nullptr), -158);
  EXPECT_EQ(zomath_quantiles(missing, 2, &middle, &r, nullptr, 0, nullptr, nullptr), 0);

  EXPECT_EQ(zomath_row_quantiles(1, 3, nullptr, a, b, a, a, a, 0), -11);
  EXPECT_EQ(zomath_row_quantiles(0, 3, x, a, b, a, a, a, 0), -3);
  EXPECT_EQ(zomath_row_quantiles(1, 3, x, a, b, a, a, a, 6), -151);
  EXPECT_EQ(zomath_row_quantiles_ex(1, 3, nullptr, a, b, a, a, a, ia, ia, a, a, p, 1, a, 0), -11);
  EXPECT_EQ(zomath_row_quantiles_ex(1, 0, x, a, b, a, a, a, ia, ia, a, a, p, 1, a, 0), -3);
  EXPECT_EQ(zomath_row_quantiles_ex(1, 3, x, a, b, a, a, a, ia, ia, a, a, nullptr, 1, a, 0), -37);
  EXPECT_EQ(zomath_row_quantiles_ex(1, 3, x, a, b, a, a, a, ia, ia, a, a, p, 0, a, 0), -37);
  EXPECT_EQ(zomath_row_quantiles_ex(1, 3, x, a, b, a, a, a, ia, ia, a, a, p, 1, a, 9), -151);

  const double cx[] = {0, 1, 2}, cy[] = {1, 1, 1}, falling[] = {0, 2, 1}, negative[] = {1, -1, 1};
  const double missingY[] = {1, M, 1}, f[] = {0.5};
  EXPECT_EQ(zomath_percentiles_distribution(3, nullptr, cy, f, 1, a, index), -156);
  EXPECT_EQ(zomath_percentiles_distribution(3, cx, cy, nullptr, 1, a, index), -156);
  EXPECT_EQ(zomath_percentiles_distribution(2, cx, cy, f, 1, a, index), -110);
  EXPECT_EQ(zomath_percentiles_distribution(3, cx, cy, f, 0, a, index), -155);
  EXPECT_EQ(zomath_percentiles_distribution(3, falling, cy, f, 1, a, index), -220);
  EXPECT_EQ(zomath_percentiles_distribution(3, cx, negative, f, 1, a, index), -220);
  EXPECT_EQ(zomath_percentiles_distribution(3, cx, missingY, f, 1, a, index), -220);
  EXPECT_TRUE(a[0] == M && index[0] == -1);
}

// NANUM and NaN values, NANUM weights, and percents out of range or NaN: the valid points give
// the same percentiles as a clean copy of them, each bad percent leaves NANUM alone.
TEST(PercentileRules, MissingValuesAndBadPercents) {
  const std::vector<double> clean = {4, 1, 7, 7, 2, 9, 3}, cleanW = {1, 2, 1, 3, 1, 2, 4};
  const std::vector<double> x = {M, 4, 1, NAN, 7, 5, 7, 2, M, 9, 3};
  const std::vector<double> w = {1, 1, 2, 1, 1, M, 3, 1, 2, 2, 4};
  const std::vector<double> ones = {1, 1, 1, 1, 1, M, 1, 1, 1, 1, 1};  // unweighted, 5 missing
  const std::vector<double> p = {0, 12.5, 50, 62.5, 100, -1, 101, NAN, M};
  for (int rule = 0; rule <= 5; ++rule) {
    const auto want = percentiles(clean, p, rule), wantW = percentiles(clean, p, rule, cleanW);
    const auto got = percentiles(x, p, rule, ones), gotW = percentiles(x, p, rule, w);
    for (std::size_t i = 0; i < p.size(); ++i) {
      EXPECT_TRUE(got[i] == want[i] && gotW[i] == wantW[i]) << "definition " << rule << ", " << p[i] << " %";
      EXPECT_EQ(i >= 5, got[i] == M && gotW[i] == M) << "definition " << rule << ", " << p[i] << " %";
    }
    EXPECT_TRUE(want[0] == 1 && want[4] == 9) << rule;  // the ends under every definition
  }
  const auto none = percentiles({M, NAN, M}, {0, 50}, 2);
  EXPECT_TRUE(none[0] == M && none[1] == M);
}

// q = (p n) / 100 decides the ties: 7 %, 57 % and 57.5 % of 100 points are whole or a half,
// though a q formed as (p / 100) n misses all three (7.000000000000001, 56.99999999999999,
// 57.49999999999999). And the tie rules themselves: the even-numbered observation at g = 0.5,
// (n + 1) p / 100 for definition 3, the ends for every definition.
TEST(PercentileRules, TiesOfTheQuotient) {
  std::vector<double> x(100);
  for (int i = 0; i < 100; ++i) x[i] = 100.0 - i;  // x(i) = i once sorted
  const struct {
    int rule;
    double p, want;
  } cases[] = {
      {INTERPOLATE_EDF, 7, 7},          {INTERPOLATE_EDF_AVER, 7, 7.5},
      {INTERPOLATE_EDF_AVER, 57, 57.5}, {INTERPOLATE_WEIGHT_AVER_LEFT, 57, 57},
      {INTERPOLATE_EDF_AVER, 7.01, 8},  {INTERPOLATE_NEAREST_NEIGHBOR, 57.5, 58},  // k odd
      {INTERPOLATE_NEAREST_NEIGHBOR, 1.5, 2}, {INTERPOLATE_NEAREST_NEIGHBOR, 14.5, 14},  // k even
      {INTERPOLATE_NEAREST_NEIGHBOR, 14.51, 15}, {INTERPOLATE_WEIGHT_AVER_RIGHT, 50, 50.5},
      {INTERPOLATE_WEIGHT_AVER_RIGHT, 100, 100}, {INTERPOLATE_WEIGHT_AVER_RIGHT, 0.5, 1},
      {INTERPOLATE_NONE, 50, M},        {INTERPOLATE_NONE, 0.9, 1},  // k = 0
      {INTERPOLATE_NONE, 100, 100},
  };
  for (const auto& c : cases)
    EXPECT_EQ(percentiles(x, {c.p}, c.rule)[0], c.want) << "definition " << c.rule << ", " << c.p << " %";
}

// zomath_quantiles builds its list as 25, 50, 75 and the caller's, and takes Q1, Median and Q3
// from its head. Hinges stand in for them under INTERPOLATE_NONE only while no weight differs
// from 1; equal weights of 2 leave the definition, which has no value there.
TEST(PercentileRules, QuantileOptionsAndList) {
  const std::vector<double> x = {M, 10, 2, 4, 8, 6, 9, 1, 3, 7, 5};  // 1..10, NANUM first
  std::vector<double> p = {90, 10};
  QuantileOptions o{};
  o.nInterpolate = INTERPOLATE_WEIGHT_AVER_LEFT;
  o.bIQR = o.bIMin = o.bMax = true;
  QuantileResults r;
  ASSERT_EQ(zomath_quantiles(x.data(), 11, &o, &r, p.data(), 2, p.data(), nullptr), 0);  // in place
  EXPECT_TRUE(r.Q1 == M && r.Median == M && r.Q3 == M && r.Min == M && r.iMax == -1);
  EXPECT_TRUE(r.IQR == 7.5 - 2.5 && r.iMin == 7 && r.Max == 10);
  EXPECT_TRUE(p[0] == 9 && p[1] == 1);

  const QuantileOptions hinges = all_options(INTERPOLATE_NONE);
  const struct {
    std::vector<double> w;
    double q1, median, q3;
  } cases[] = {
      {{}, 3, 5.5, 8},
      {std::vector<double>(11, 1.0), 3, 5.5, 8},
      {std::vector<double>(11, 2.0), M, M, M},
      {{1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 3}, 3.5, 5, 7.5},  // weighted: the search, two hits
  };
  for (const auto& c : cases) {
    ASSERT_EQ(zomath_quantiles(x.data(), 11, &hinges, &r, nullptr, 0, nullptr, c.w.empty() ? nullptr : c.w.data()), 0);
    EXPECT_TRUE(r.Q1 == c.q1 && r.Median == c.median && r.Q3 == c.q3) << c.w.size();
  }
}

// The row forms give, row by row, what zomath_quantiles gives for that row, positions counting
// columns; zomath_row_quantiles alone takes Tukey's hinges for a row of five or more valid
// values whatever the definition. Rows: empty, 1 to 4 valid values among NANUM and NaN, 5, 9.
TEST(PercentileRules, RowFormsAgreeWithTheSampleExport) {
  constexpr int kRows = 7, kCols = 9;
  const double rows[kRows][kCols] = {
      {M, M, M, M, M, M, M, M, M},   {M, 4, M, M, M, M, M, M, M},  {3, M, 1, M, M, NAN, M, M, M},
      {2, 9, M, 4, M, M, M, M, M},   {M, 5, 1, M, 7, 3, M, M, M},  {8, 6, M, 7, 5, 9, M, M, 2},
      {4, 8, 1, 9, 2, 9, 5, 7, 3}};
  const std::vector<double> p = {10, 90, 50};
  for (int rule = 0; rule <= 5; ++rule) {
    double mn[kRows], mx[kRows], q1[kRows], med[kRows], q3[kRows], iqr[kRows], range[kRows], pct[kRows][3];
    double h[5][kRows];
    int imn[kRows], imx[kRows];
    ASSERT_EQ(zomath_row_quantiles_ex(kRows, kCols, &rows[0][0], mn, mx, q1, med, q3, imn, imx, iqr,
                                      range, p.data(), 3, &pct[0][0], rule), 0);
    ASSERT_EQ(zomath_row_quantiles(kRows, kCols, &rows[0][0], h[0], h[4], h[1], h[2], h[3], rule), 0);
    for (int i = 0; i < kRows; ++i) {
      const QuantileOptions all = all_options(rule), tukey = all_options(i >= 5 ? INTERPOLATE_NONE : rule);
      QuantileResults r, t;
      double want[3];
      const int code = zomath_quantiles(rows[i], kCols, &all, &r, p.data(), 3, want, nullptr);
      if (i == 0) {  // wholly missing: NANUM, and positions 0
        EXPECT_EQ(code, -158);
        EXPECT_TRUE(mn[0] == M && iqr[0] == M && pct[0][2] == M && h[2][0] == M && imn[0] == 0 && imx[0] == 0);
        continue;
      }
      ASSERT_EQ(zomath_quantiles(rows[i], kCols, &tukey, &t, nullptr, 0, nullptr, nullptr), 0);
      const double got[] = {mn[i], mx[i], q1[i], med[i], q3[i], iqr[i], range[i], pct[i][0], pct[i][1],
                            pct[i][2], h[0][i], h[1][i], h[2][i], h[3][i], h[4][i]};
      const double ref[] = {r.Min, r.Max, r.Q1, r.Median, r.Q3, r.IQR, r.Range, want[0], want[1], want[2],
                            t.Min, t.Q1, t.Median, t.Q3, t.Max};
      for (int k = 0; k < 15; ++k) EXPECT_EQ(got[k], ref[k]) << "row " << i << ", definition " << rule << ", output " << k;
      EXPECT_TRUE(imn[i] == r.iMin && imx[i] == r.iMax) << "row " << i;
    }
  }
}

// A few percents of a large sample are found by selection (from a sample of the points, or in
// a copy when too few of them are valid), many by a full sort: both must give the same numbers,
// on ties, missing values, signed zeros, ordered and constant input, and a sample 97 % missing;
// and Tukey's numbers by selection those of the sorted sample.
TEST(PercentileRules, SelectionMatchesTheFullSort) {
  constexpr int n = 300000;  // enough for selection to be chosen
  std::mt19937_64 rng(5);
  std::uniform_int_distribution<int> value(-500, 500);
  std::vector<std::vector<double>> inputs(4, std::vector<double>(n));
  for (int i = 0; i < n; ++i) {
    const int v = value(rng);
    inputs[0][i] = i % 97 == 3 ? M : i % 101 == 5 ? NAN : v == 0 && i % 2 ? -0.0 : v;
    inputs[1][i] = i / 7;  // ascending, in runs
    inputs[2][i] = 2.5;
    inputs[3][i] = i % 31 ? M : v;
  }
  std::vector<double> many;
  for (int i = 0; i <= 200; ++i) many.push_back(i / 2.0);
  const std::vector<double> few = {1.5, 50, 99.5};  // in `many` at 3, 100, 199
  for (const auto& x : inputs) {
    for (int rule = 0; rule <= 5; ++rule) {
      const auto all = percentiles(x, many, rule), some = percentiles(x, few, rule);
      EXPECT_TRUE(some[0] == all[3] && some[1] == all[100] && some[2] == all[199]) << "definition " << rule;
    }
    std::vector<double> sorted;
    std::copy_if(x.begin(), x.end(), std::back_inserter(sorted), [](double v) { return v == v && v != M; });
    std::sort(sorted.begin(), sorted.end());
    double five[5];
    zomath::stats::five_numbers_by_depth(sorted.data(), sorted.size(), five);
    const QuantileOptions hinges = all_options(INTERPOLATE_NONE);
    QuantileResults r;
    ASSERT_EQ(zomath_quantiles(x.data(), n, &hinges, &r, nullptr, 0, nullptr, nullptr), 0);
    EXPECT_TRUE(r.Min == five[0] && r.Q1 == five[1] && r.Median == five[2] && r.Q3 == five[3] && r.Max == five[4]);
  }
}

}  // namespace
