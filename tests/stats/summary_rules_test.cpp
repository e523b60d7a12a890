// The rules of the summary statistics that callers rely on: what each denominator yields for
// small and degenerate samples, missing points and weights, the geometric mean and mode, the
// confidence limits, the slices and row forms, and the codes. Values here are exact or hand
// computed; the accuracy on general samples is the business of summary_reference_test.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "stats/moments.h"
#include "stats_data.h"
#include "zomath/stats.h"

namespace {

using namespace zomath::testing;
constexpr double M = NANUM;
constexpr double kAny = 1e300;  // a table entry that isn't checked

struct Basic {
  int rc, n, missing;
  double mean, sd, sem, variance, sum, skewness, kurtosis, uncor, cor, cov, mad, weightSum, geoMean;
};

Basic basic(const std::vector<double>& x, int flag, const std::vector<double>& w = {}) {
  Basic b;
  b.rc = zomath_basic_summary_stats(int(x.size()), x.data(), &b.n, &b.mean, &b.sd, &b.sem,
                                    &b.variance, &b.sum, &b.skewness, &b.kurtosis, &b.uncor,
                                    &b.cor, &b.cov, &b.mad, &b.missing, &b.weightSum, &b.geoMean,
                                    flag, w.empty() ? nullptr : w.data());
  return b;
}

DescStatResults desc(const std::vector<double>& x, int flag, const std::vector<double>& w = {},
                     double level = 0.95, int* rc = nullptr) {
  DescStatResults r = filled(42);
  const int code = zomath_desc_stats(x.data(), int(x.size()), &r, w.empty() ? nullptr : w.data(), level, flag);
  if (rc) *rc = code;
  else EXPECT_EQ(code, 0);
  return r;
}

void expect_value(double got, double want, const char* what, int line) {
  if (want == kAny) return;
  if (want == M || std::isinf(want)) {
    EXPECT_EQ(got, want) << what << ", case on line " << line;
  } else {
    EXPECT_NEAR(got, want, 1e-14 * std::fmax(1, std::fabs(want))) << what << ", case on line " << line;
  }
}

// Which statistics exist for one, two and three points, and for equal values, under each
// denominator: both exports, and the single-point rule in both of its forms.
TEST(SummaryRules, SmallAndConstantSamples) {
  const struct {
    int line;
    std::vector<double> x, w;
    int flag;
    double mean, sd, skew, kurt, sem;
    double basicMad, basicW, descMad, descW;  // the two forms of the single-point rule
  } cases[] = {
      {__LINE__, {M, 4, M}, {}, 0, 4, M, M, M, M, 0, 1, M, 1},
      {__LINE__, {4, M}, {}, 1, 4, 0, M, M, M, 0, 1, M, 1},
      {__LINE__, {4}, {}, 2, 4, M, M, M, M, 0, 1, M, 1},
      {__LINE__, {4}, {}, 3, 4, 0, M, M, M, 0, 1, M, 1},
      {__LINE__, {4}, {}, 4, 4, M, M, M, M, 0, 1, M, 1},
      // The weight of a single point: its mean needs a weight above 0; the engine truncates W.
      {__LINE__, {4, 9}, {2.5, M}, 1, 4, 0, M, M, M, 0, 2.5, M, 2},
      {__LINE__, {4}, {0.5}, 3, 4, 0, M, M, M, 0, 0.5, M, 0},
      {__LINE__, {4}, {0}, 0, M, M, M, M, M, 0, 0, M, 0},
      // Two points: SD and SEM, no shape under n - 1.
      {__LINE__, {1, 3}, {}, 0, 2, std::sqrt(2.0), M, M, 1, 1, 2, 1, 2},
      {__LINE__, {1, 3}, {}, 1, 2, 1, 0, -2, M, 1, 2, 1, 2},
      // Three points: skewness under n - 1, no kurtosis yet.
      {__LINE__, {1, 2, 6}, {}, 0, 3, std::sqrt(7.0), 27 / (7 * std::sqrt(7.0)), M,
       std::sqrt(7.0 / 3), kAny, 3, kAny, 3},
      // Denominators W - 1 and W have no shape statistics and no SEM.
      {__LINE__, {1, 2, 6, 7}, {}, 2, 4, std::sqrt(26.0 / 3), M, M, M, kAny, 4, kAny, 4},
      {__LINE__, {1, 2, 6, 7}, {}, 3, 4, std::sqrt(26.0 / 4), M, M, M, kAny, 4, kAny, 4},
      // Equal values: a spread of 0 and no shape, whatever the denominator.
      {__LINE__, {5, 5, 5, 5, 5}, {}, 0, 5, 0, M, M, 0, 0, 5, 0, 5},
      {__LINE__, {5, 5, 5, 5, 5}, {}, 1, 5, 0, M, M, M, 0, 5, 0, 5},
      {__LINE__, {5, 5, 5, 5, 5}, {1, 2, 3, 1, 1}, 4, 5, 0, M, M, M, 0, 8, 0, 8},
  };
  for (const auto& c : cases) {
    const Basic b = basic(c.x, c.flag, c.w);
    EXPECT_EQ(b.rc, 0) << c.line;
    expect_value(b.mean, c.mean, "basic Mean", c.line);
    expect_value(b.sd, c.sd, "basic SD", c.line);
    expect_value(b.variance, c.sd == M ? M : c.sd * c.sd, "basic Variance", c.line);
    expect_value(b.skewness, c.skew, "basic Skewness", c.line);
    expect_value(b.kurtosis, c.kurt, "basic Kurtosis", c.line);
    expect_value(b.sem, c.sem, "basic SEM", c.line);
    expect_value(b.mad, c.basicMad, "basic MAD", c.line);
    expect_value(b.weightSum, c.basicW, "basic WeightSum", c.line);
    const DescStatResults r = desc(c.x, c.flag, c.w);
    expect_value(r.Mean, c.mean, "desc Mean", c.line);
    expect_value(r.SD, c.sd, "desc SD", c.line);
    expect_value(r.SDx2, c.sd == M ? M : 2 * c.sd, "desc SDx2", c.line);
    expect_value(r.SDx3, c.sd == M ? M : 3 * c.sd, "desc SDx3", c.line);
    expect_value(r.Skewness, c.skew, "desc Skewness", c.line);
    expect_value(r.Kurtosis, c.kurt, "desc Kurtosis", c.line);
    expect_value(r.SEM, c.sem, "desc SEM", c.line);
    expect_value(r.MAD, c.descMad, "desc MAD", c.line);
    expect_value(r.WeightSum, c.descW, "desc WeightSum", c.line);
    expect_value(r.Sum, c.mean == M ? M : c.mean * c.descW, "desc Sum", c.line);
  }
}

// The library's own reference figures: a weight below 0 counts as 0, on every denominator and
// in both exports.
TEST(SummaryRules, NegativeWeightsCountAsZero) {
  const std::vector<double> x = {7, 1, 11, 11, 7, 11, 3, 1, 2, 21, 1, 11, 10};
  const std::vector<double> w = {0.3, -0.8, 0.9, 0.6, 0.15, 0.36, 0, 0.2, -0.9, 0.54, -0.1, 0.3, 0};
  for (int flag = 0; flag <= 4; ++flag) {
    const Basic b = basic(x, flag, w);
    EXPECT_EQ(b.rc, 0);
    EXPECT_EQ(b.n, 13);
    EXPECT_NEAR(b.weightSum, 3.35, 1e-15) << flag;
    EXPECT_NEAR(b.sum, 38.45, 1e-14) << flag;
    const DescStatResults r = desc(x, flag, w);
    EXPECT_NEAR(r.WeightSum, 3.35, 1e-15) << flag;
    EXPECT_NEAR(r.Sum, 38.45, 1e-14) << flag;
    EXPECT_NEAR(r.Mean, b.mean, 1e-15 * b.mean) << flag;
  }
}

// With every point missing the statistics are NANUM and the six fields desc_stats doesn't reset
// stay as the caller had them. SEM and the limits: the worked example, and a level out of range.
// A mean of 0 has no coefficient of variation. (The reference table covers the rest of these
// rules on general samples.)
TEST(SummaryRules, NothingValidLimitsAndVariation) {
  const Basic none = basic({M, M, M}, 0);
  EXPECT_EQ(none.rc, 0);
  EXPECT_EQ(none.n, 0);
  EXPECT_EQ(none.missing, 3);
  EXPECT_EQ(none.mean, M);
  EXPECT_EQ(none.mad, 0.0);
  const DescStatResults r = desc({M, M, M}, 4, {1, 1, 1});
  EXPECT_EQ(r.N, 0);
  EXPECT_EQ(r.Missing, 3);
  for (int i = kMean; i < kFieldCount; ++i) {
    const bool kept = i == kSEM || i == kLCL || i == kUCL || i == kCOV || i == kMode || i == kWeightSum;
    EXPECT_EQ(field(r, i), kept ? 42 : M) << "field " << i;
  }

  // Mean 1.9, SD 0.5656854, SEM 0.4 at level 0.95 give limits quoted as -3.1824 and 6.98248
  // (cut, not rounded); t(0.975, 1) = tan(0.475 pi) gives them to the last digits.
  const std::vector<double> x = {1.5, 2.3};
  const DescStatResults e = desc(x, 0);
  EXPECT_NEAR(e.SEM, 0.4, 1e-15);
  EXPECT_NEAR(e.LCL, -3.1824, 1e-4);
  EXPECT_NEAR(e.UCL, 6.98248, 1e-5);
  EXPECT_NEAR(e.UCL, e.Mean + std::tan(0.475 * M_PI) * e.SEM, 1e-14 * e.UCL);
  double lcl;
  for (double level : {1.0, 1.5, -0.1}) {
    // zomath_opt_summary_stats takes any level; one that has no deviate gives no limits.
    EXPECT_EQ(zomath_opt_summary_stats(2, x.data(), level, nullptr, nullptr, nullptr, &lcl,
                                       nullptr, nullptr, nullptr, 0, nullptr), 0);
    EXPECT_EQ(lcl, M) << level;
    int rc;
    desc(x, 0, {}, level, &rc);
    EXPECT_EQ(rc, ZOMATH_STATS_ERR_CONF_LEVEL) << level;
  }
  EXPECT_EQ(desc({-1, 1}, 0).COV, M);
  EXPECT_EQ(basic({-1, 1}, 0).cov, M);
}

// Geometric mean of |x| while the count of negative values is even; a 0 makes it 0. The
// geometric SD needs every value above 0.
TEST(SummaryRules, GeometricMeanAndSD) {
  const struct {
    int line;
    std::vector<double> x;
    double geoMean, geoSD;  // geoSD under n - 1
  } cases[] = {
      {__LINE__, {1, 4, 16}, 4, 4},  // logs 0, 2 ln 2, 4 ln 2: SD 2 ln 2
      {__LINE__, {2, 0, 8}, 0, M},
      {__LINE__, {-2, 8, 1}, M, M},
      {__LINE__, {-2, -8, 1}, std::cbrt(16.0), M},
      {__LINE__, {M, 2, 8}, 4, std::exp(std::sqrt(2.0) * std::log(2.0))},
  };
  for (const auto& c : cases) {
    const DescStatResults r = desc(c.x, 0);
    expect_value(r.GeoMean, c.geoMean, "desc GeoMean", c.line);
    expect_value(r.GeoSD, c.geoSD, "desc GeoSD", c.line);
    expect_value(basic(c.x, 0).geoMean, c.geoMean, "basic GeoMean", c.line);
  }
  // A single negative point is its own geometric mean in the engine; the record drops it.
  EXPECT_EQ(basic({-3}, 0).geoMean, -3);
  EXPECT_EQ(desc({-3}, 0).GeoMean, M);
}

// The most frequent value that is neither NANUM nor NaN, the smallest of several; weights are
// not looked at.
TEST(SummaryRules, Mode) {
  const struct {
    int line;
    std::vector<double> x;
    double mode;
    bool multi;
  } cases[] = {
      {__LINE__, {3, 1, 2}, M, false},
      {__LINE__, {M, M, M, 1, 2}, M, false},
      {__LINE__, {2, 7, 2, 7, 9, 7}, 7, false},
      {__LINE__, {9, 2, 7, 2, 7}, 2, true},
      {__LINE__, {-0.0, 0.0, 5, NAN, NAN}, 0, false},
  };
  for (const auto& c : cases) {
    double mode = 123;
    bool multi = true;
    const std::vector<double> w(c.x.size(), 1.0);
    std::vector<double> heavy = w;
    heavy.back() = 50;
    EXPECT_EQ(zomath_opt_summary_stats(int(c.x.size()), c.x.data(), 0.95, &mode, &multi, nullptr,
                                       nullptr, nullptr, nullptr, nullptr, 0, heavy.data()), 0);
    expect_value(mode, c.mode, "Mode", c.line);
    EXPECT_EQ(multi, c.multi) << c.line;
  }
  EXPECT_EQ(desc({2, 7, 2, 7, 9, 7}, 1).Mode, 7);
}

// Routes that can't form the moments: the weighted moments refuse a single weight above 0 and
// leave the start values; the engine gives what it can.
TEST(SummaryRules, FewerThanTwoWeights) {
  const Basic b = basic({1, 2, 3}, 4, {0, 0, 2});
  EXPECT_EQ(b.rc, 0);
  EXPECT_EQ(b.n, 3);
  EXPECT_EQ(b.mean, M);
  EXPECT_EQ(b.weightSum, M);
  const DescStatResults r = desc({1, 2, 3}, 4, {0, 0, 2});
  EXPECT_EQ(r.Mean, 3);
  EXPECT_EQ(r.WeightSum, 2);
  EXPECT_EQ(r.SD, M);  // W - S2 / W = 0
  const DescStatResults zero = desc({1, 2, 3}, 0, {0, 0, 0});
  EXPECT_EQ(zero.WeightSum, 0);
  EXPECT_EQ(zero.Mean, M);
  EXPECT_NEAR(zero.GeoMean, std::cbrt(6.0), 1e-15);
}

TEST(SummaryRules, Codes) {
  const double x[] = {1, 2, 3}, w[] = {1, 1}, missing[] = {M, M};
  auto basicCode = [](int n, const double* p, int* pN) {
    return zomath_basic_summary_stats(n, p, pN, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                      nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                      nullptr, 0, nullptr);
  };
  int n = 5;
  EXPECT_EQ(basicCode(-1, x, &n), ZOMATH_ERR_NULL_DATA);
  EXPECT_EQ(basicCode(3, nullptr, &n), ZOMATH_ERR_EMPTY_DATA);
  EXPECT_EQ(n, -1);
  EXPECT_EQ(basicCode(0, nullptr, &n), 0);
  EXPECT_EQ(n, 0);
  DescStatResults r;
  EXPECT_EQ(zomath_desc_stats(x, -2, &r, nullptr, 0.95, 0), ZOMATH_ERR_NULL_DATA);
  EXPECT_EQ(zomath_desc_stats(nullptr, 3, &r, nullptr, 0.95, 0), ZOMATH_ERR_EMPTY_DATA);
  EXPECT_EQ(zomath_desc_stats(x, 3, nullptr, nullptr, 0.95, 0), ZOMATH_ERR_EMPTY_DATA);
  EXPECT_EQ(zomath_desc_stats(x, 3, &r, nullptr, NAN, 0), ZOMATH_STATS_ERR_CONF_LEVEL);
  // A flag with no denominator: counts and means, but nothing that needs d.
  const DescStatResults odd = desc({1, 2, 6}, 9);
  EXPECT_EQ(odd.Mean, 3);
  EXPECT_EQ(odd.SD, M);
  EXPECT_EQ(odd.Skewness, M);
  EXPECT_EQ(basic({1, 2, 6}, -1).variance, M);
  // The engine's own codes, which the exports' checks keep from being met.
  auto thrown = [](auto call) {
    try {
      call();
    } catch (int code) {
      return code;
    }
    return 0;
  };
  using zomath::stats::moment_engine;
  EXPECT_EQ(thrown([&] { moment_engine(x, 0, nullptr, 0, 0, {}); }), -151);
  EXPECT_EQ(thrown([&] { moment_engine(missing, 2, nullptr, 0, 0, {}); }), -151);
  EXPECT_EQ(thrown([&] { moment_engine(x, 3, w, 2, 0, {}); }), ZOMATH_STATS_ERR_WEIGHT_SIZE);
}

// Slices: consecutive sizes, a size of 0.0 for the whole sample, a slice outside the data.
TEST(SummaryRules, Slices) {
  const std::vector<double> x = {4, 8, 15, 16, 23, 42, M, 7, 1, 9};
  const std::vector<double> w = {1, 2, 1, 3, 1, 1, 1, 2, M, 1};
  DescStatOptions o = {};
  o.nMomentDenFlag = DS_SAS1_DF;
  o.bN = o.bMean = o.bSD = o.bMode = o.bUCL = o.bMissing = true;
  const double sizes[] = {4, 3, 3, 5};
  DescStatResults r[4];
  bool multi[4];
  EXPECT_EQ(zomath_desc_stats_ex(x.data(), 10, sizes, 4, &o, r, w.data(), 0.9, multi), 0);
  const int starts[] = {0, 4, 7};
  for (int i = 0; i < 3; ++i) {
    const std::vector<double> xs(x.begin() + starts[i], x.begin() + starts[i] + int(sizes[i]));
    const std::vector<double> ws(w.begin() + starts[i], w.begin() + starts[i] + int(sizes[i]));
    const DescStatResults whole = desc(xs, 0, ws, 0.9);
    EXPECT_EQ(r[i].N, whole.N) << i;
    EXPECT_EQ(r[i].Missing, whole.Missing) << i;
    EXPECT_NEAR(r[i].Mean, whole.Mean, 1e-14 * whole.Mean) << i;
    EXPECT_NEAR(r[i].SD, whole.SD, 1e-14 * whole.SD) << i;
    EXPECT_EQ(r[i].UCL == M, whole.UCL == M) << i;
    EXPECT_EQ(r[i].Sum, M) << "not asked for";
    EXPECT_EQ(r[i].WeightSum, M) << "not asked for";
  }
  EXPECT_EQ(r[3].N, 0) << "past the end of the data";
  EXPECT_EQ(r[3].Mean, M);

  const double whole = 0.0;
  DescStatResults all;
  o.bN = o.bMissing = false;
  EXPECT_EQ(zomath_desc_stats_ex(x.data(), 10, &whole, 1, &o, &all, nullptr, 0.9, nullptr), 0);
  EXPECT_EQ(all.N, -1) << "not asked for";
  EXPECT_NEAR(all.Mean, 125.0 / 9, 1e-14);
  EXPECT_EQ(zomath_desc_stats_ex(x.data(), 10, &whole, 1, nullptr, &all, nullptr, 0.9, nullptr),
            ZOMATH_ERR_EMPTY_DATA);
  EXPECT_EQ(zomath_desc_stats_ex(x.data(), 10, &whole, -1, &o, &all, nullptr, 0.9, nullptr),
            ZOMATH_ERR_OPTION);
}

// Each row without its NANUM, as the whole-sample exports see it; a row with nothing valid.
TEST(SummaryRules, RowForms) {
  const double m[] = {3, M, 1, 2,    //
                      M, M, M, M,    //
                      5, 5, 5, 9};
  double mean[3], sd[3], sem[3], lo[3], hi[3], sum[3], n[3], lcl[3], ucl[3], var[3], mode[3];
  int missing[3];
  bool multi[3];
  EXPECT_EQ(zomath_row_desc_stats_ex(3, 4, m, mean, sd, sem, lo, hi, sum, n, lcl, ucl, var, nullptr,
                                     nullptr, nullptr, nullptr, nullptr, nullptr, missing,
                                     nullptr, mode, multi, nullptr, nullptr, nullptr, 0), 0);
  EXPECT_EQ(mean[0], 2);
  EXPECT_EQ(sd[0], 1);
  EXPECT_EQ(lo[0], 1);
  EXPECT_EQ(hi[0], 3);
  EXPECT_EQ(n[0], 3);
  EXPECT_EQ(missing[0], 1);
  EXPECT_EQ(mode[0], M);
  for (double* p : {mean, sd, sem, lo, hi, sum, n, lcl, ucl, var, mode}) EXPECT_EQ(p[1], M);
  EXPECT_EQ(missing[1], 0);
  EXPECT_FALSE(multi[1]);
  EXPECT_EQ(mode[2], 5);
  const DescStatResults last = desc({5, 5, 5, 9}, 0);
  EXPECT_NEAR(ucl[2], last.UCL, 1e-14 * last.UCL);
  EXPECT_NEAR(var[2], last.Variance, 1e-14 * last.Variance);

  double plain[3];
  EXPECT_EQ(zomath_row_desc_stats(3, 4, m, plain, nullptr, nullptr, nullptr, nullptr, nullptr,
                                  nullptr, nullptr, nullptr, 0), 0);
  EXPECT_EQ(plain[2], 6);
  EXPECT_EQ(zomath_row_desc_stats(3, 4, nullptr, plain, nullptr, nullptr, nullptr, nullptr,
                                  nullptr, nullptr, nullptr, nullptr, 0), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(zomath_row_desc_stats(0, 4, m, plain, nullptr, nullptr, nullptr, nullptr, nullptr,
                                  nullptr, nullptr, nullptr, 0), ZOMATH_ERR_ROW_NULL);
}

}  // namespace
