// The mode and the geometric SD that the summary passes gather on large samples (keys counted by
// bucket in the first pass and written in the second, a vector logarithm), against their direct
// definitions: a tally of the values, and long double logarithms. Samples cross the vector width,
// the bucket boundaries and a bucket larger than 65535 keys, and hold every kind of double; each
// export that gives the two statistics is asked, whole and by slices, with weights that the two
// statistics don't look at.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <map>
#include <random>
#include <vector>

#include "zomath/stats.h"

namespace {

constexpr double M = NANUM;

struct Mode {
  double value;
  bool multi;
};

// The most frequent value that is neither NANUM nor NaN (-0 counted as 0), the smallest of
// several; NANUM when none repeats.
Mode tally(const double* x, int n) {
  std::map<double, int> count;
  for (int i = 0; i < n; ++i)
    if (x[i] == x[i] && x[i] != M) ++count[x[i] + 0.0];
  int top = 0, ties = 0;
  double value = M;
  for (const auto& [v, c] : count) {
    if (c > top) {
      top = c;
      ties = 1;
      value = v;
    } else if (c == top) {
      ++ties;
    }
  }
  if (top < 2) return {M, false};
  return {value, ties > 1};
}

// exp of the SD of ln x over the values that aren't NANUM, in long double, under n - 1 or n.
double geo_sd(const double* x, int n, int flag) {
  std::vector<long double> logs;
  for (int i = 0; i < n; ++i) {
    if (x[i] == M) continue;
    if (!(x[i] > 0) || !std::isfinite(x[i])) return M;
    logs.push_back(std::log(static_cast<long double>(x[i])));
  }
  const long double k = logs.size();
  long double mean = 0, ss = 0;
  for (long double l : logs) mean += l;
  mean /= k;
  for (long double l : logs) ss += (l - mean) * (l - mean);
  const long double den = flag == DS_SAS1_DF ? k - 1 : k;
  if (!(den > 0)) return M;
  return static_cast<double>(std::exp(std::sqrt(ss / den)));
}

enum Kind { kDistinct, kPair, kRepeats, kFewEach, kTwoTied, kOneValue, kSpecials, kLogNormal, kTiny, kHuge };

std::vector<double> sample(Kind kind, int n, double spread = 1) {
  std::mt19937_64 rng(n * 31 + kind);
  std::normal_distribution<double> normal;
  const double specials[] = {0.0, -0.0, 5e-324, -5e-324, DBL_MAX, INFINITY, -INFINITY, NAN, M};
  std::vector<double> x(n);
  for (int i = 0; i < n; ++i) {
    const auto r = rng();
    switch (kind) {
      case kDistinct: x[i] = 100 + 15 * normal(rng); break;
      case kPair: x[i] = i == n - 1 ? x[n / 2] : 100 + 15 * normal(rng); break;
      case kRepeats: x[i] = double(r % 997) - 300; break;
      case kFewEach: x[i] = double(r % 40000) * 0.01; break;
      case kTwoTied: x[i] = i < 40 ? (i % 2 ? 1.5 : -2.25) : 1e6 + i * 0.5; break;
      case kOneValue: x[i] = i % 50 ? 7.25 : i; break;
      case kSpecials: x[i] = r % 4 == 0 ? specials[(r >> 8) % 9] : double(r >> 40 & 1023) * 0.125; break;
      case kLogNormal: x[i] = std::exp(spread * normal(rng)); break;
      case kTiny: x[i] = i % 3 ? 5e-324 * double(1 + (r >> 20) % 100000) : 1e-300 * (1 + normal(rng) * 0.1 + 1); break;
      case kHuge: x[i] = 1e300 * (1 + 1e-3 * normal(rng)); break;
    }
    if (i % 97 == 5 && kind != kPair) x[i] = M;
  }
  return x;
}

// Weights the two statistics ignore: NANUM on points that keep their value, and below 0.
std::vector<double> weights(int n) {
  std::vector<double> w(n);
  for (int i = 0; i < n; ++i) w[i] = i % 13 == 3 ? M : (i % 17 == 4 ? -1 : 0.5 + (i % 7) * 0.25);
  return w;
}

// Slices of n: a third, a third, the rest.
std::vector<double> thirds(int n) { return {double(n / 3), double(n / 3), double(n - 2 * (n / 3))}; }

// Every export that gives the mode, whole and by slices, with and without weights.
TEST(SummaryPasses, ModeAgainstATally) {
  const struct {
    Kind kind;
    int n;
  } cases[] = {{kDistinct, 7},     {kDistinct, 4101},  {kDistinct, 300001}, {kPair, 300001},
               {kRepeats, 13},     {kRepeats, 300001}, {kFewEach, 300001},  {kTwoTied, 4500},
               {kOneValue, 70001}, {kSpecials, 9},     {kSpecials, 100003}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << "kind " << c.kind << ", n " << c.n);
    const std::vector<double> x = sample(c.kind, c.n), w = weights(c.n);
    const Mode want = tally(x.data(), c.n);
    DescStatResults r;
    ASSERT_EQ(zomath_desc_stats(x.data(), c.n, &r, nullptr, 0.95, DS_SAS1_DF), 0);
    EXPECT_EQ(r.Mode, want.value);
    ASSERT_EQ(zomath_desc_stats(x.data(), c.n, &r, w.data(), 0.95, DS_SAS2_N), 0);
    EXPECT_EQ(r.Mode, want.value);
    double mode = 0;
    bool multi = !want.multi;
    ASSERT_EQ(zomath_opt_summary_stats(c.n, x.data(), 0.95, &mode, &multi, nullptr, nullptr,
                                       nullptr, nullptr, nullptr, DS_NAG, w.data()), 0);
    EXPECT_EQ(mode, want.value);
    EXPECT_EQ(multi, want.multi);

    const std::vector<double> sizes = thirds(c.n);
    DescStatOptions o = {};
    o.bMode = o.bMean = true;
    DescStatResults slices[3];
    bool multis[3];
    ASSERT_EQ(zomath_desc_stats_ex(x.data(), c.n, sizes.data(), 3, &o, slices, w.data(), 0.95, multis), 0);
    int start = 0;
    for (int s = 0; s < 3; ++s) {
      const Mode part = tally(x.data() + start, int(sizes[s]));
      EXPECT_EQ(slices[s].Mode, part.value) << "slice " << s;
      EXPECT_EQ(multis[s], part.multi) << "slice " << s;
      start += int(sizes[s]);
    }
  }
}

// The row form takes each row without its NANUM.
// A sample whose keys fill 32 MiB and more, the size from which they go to huge pages: distinct
// values (steps of 1e-6 from 100, far above their rounding) with NANUM among them, and one pair.
TEST(SummaryPasses, ModeOfASampleWithKeysOnHugePages) {
  const int n = 4300001;
  std::vector<double> x(n);
  for (int i = 0; i < n; ++i) x[i] = i % 97 == 5 ? M : 100 + i * 1e-6;
  x[n - 1] = x[n / 2];
  DescStatResults r;
  ASSERT_EQ(zomath_desc_stats(x.data(), n, &r, nullptr, 0.95, DS_SAS1_DF), 0);
  EXPECT_EQ(r.Mode, x[n / 2]);
  x[n - 1] = 1;  // now every value is distinct
  ASSERT_EQ(zomath_desc_stats(x.data(), n, &r, nullptr, 0.95, DS_SAS1_DF), 0);
  EXPECT_EQ(r.Mode, M);
}

TEST(SummaryPasses, ModeOfRows) {
  const int rows = 3, cols = 5001;
  const std::vector<double> x = sample(kRepeats, rows * cols);
  std::vector<double> mean(rows), sd(rows), sem(rows), lo(rows), hi(rows), sum(rows), n(rows),
      lcl(rows), ucl(rows), mode(rows);
  bool multi[rows];
  ASSERT_EQ(zomath_row_desc_stats_ex(rows, cols, x.data(), mean.data(), sd.data(), sem.data(),
                                     lo.data(), hi.data(), sum.data(), n.data(), lcl.data(),
                                     ucl.data(), nullptr, nullptr, nullptr, nullptr, nullptr,
                                     nullptr, nullptr, nullptr, nullptr, mode.data(), multi,
                                     nullptr, nullptr, nullptr, DS_SAS1_DF), 0);
  for (int r = 0; r < rows; ++r) {
    const Mode want = tally(x.data() + r * cols, cols);
    EXPECT_EQ(mode[r], want.value) << r;
    EXPECT_EQ(multi[r], want.multi) << r;
  }
}

// The logarithms are formed from the exponent and a short series, less the mean logarithm; each
// is within a few units of 2^-53 of max(1, |d|) however large ln x is, so the SD of the logs is
// asked to 1e-14 of max(1, SD), and exp passes that on to the geometric SD as a relative error.
TEST(SummaryPasses, GeometricSDAgainstLongDouble) {
  const struct {
    Kind kind;
    int n;
    double spread;
  } cases[] = {{kLogNormal, 5, 0.1},   {kLogNormal, 1001, 1}, {kLogNormal, 100003, 3},
               {kLogNormal, 4099, 60}, {kTiny, 3001, 1},      {kHuge, 20003, 1},
               {kDistinct, 300001, 1}, {kSpecials, 1000, 1}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << "kind " << c.kind << ", n " << c.n);
    const std::vector<double> x = sample(c.kind, c.n, c.spread), w = weights(c.n);
    for (int flag : {DS_SAS1_DF, DS_SAS2_N}) {
      const double want = geo_sd(x.data(), c.n, flag);
      DescStatResults r;
      ASSERT_EQ(zomath_desc_stats(x.data(), c.n, &r, nullptr, 0.95, flag), 0);
      double opt = 0;
      ASSERT_EQ(zomath_opt_summary_stats(c.n, x.data(), 0.95, nullptr, nullptr, &opt, nullptr,
                                         nullptr, nullptr, nullptr, flag, w.data()), 0);
      for (double got : {r.GeoSD, opt}) {
        if (want == M) {
          EXPECT_EQ(got, M);
        } else {
          const double tol = 1e-14 * std::fmax(1, std::log(want));
          EXPECT_NEAR(got / want, 1, tol) << "flag " << flag;
        }
      }
    }
  }
  // A value that has no logarithm leaves no geometric SD.
  for (double bad : {0.0, -1.0, double(INFINITY), double(NAN)}) {
    std::vector<double> x = sample(kDistinct, 1000);
    x[777] = bad;
    DescStatResults r;
    ASSERT_EQ(zomath_desc_stats(x.data(), 1000, &r, nullptr, 0.95, DS_SAS1_DF), 0);
    EXPECT_EQ(r.GeoSD, M) << bad;
  }
}

}  // namespace
