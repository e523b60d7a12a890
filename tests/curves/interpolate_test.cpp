// zomath_interpolate: the three modes against direct computation and SciPy, the rules at the
// ends, at ties and at missing values, and the codes.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "platform/smoothing_spline.h"
#include "tests/curves/curve_data.h"
#include "zomath/curves.h"

namespace {

using zomath::testing::Curve;
using zomath::testing::curve_sets;
using zomath::testing::ErrorStats;
using zomath::testing::shuffled;

const double kNaN = std::nan("");

std::vector<double> resample(const Curve& c, const std::vector<double>& at, int mode,
                             int boundary = 0, double s = 1.0, bool weighted = false,
                             std::vector<double>* derivs = nullptr, unsigned options = 0) {
  std::vector<double> out(at.size(), -7.0);
  if (derivs) derivs->assign(c.x.size(), -7.0);
  const int rc = zomath_interpolate(at.data(), out.data(), at.size(), c.x.data(), c.y.data(),
                                    c.x.size(), mode, s, weighted ? c.w.data() : nullptr,
                                    derivs ? derivs->data() : nullptr, options, boundary);
  EXPECT_EQ(rc, 0) << "mode " << mode;
  return out;
}

bool same(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

TEST(Interpolate, CubicSplineMatchesScipy) {
  // Natural and not-a-knot splines (nBoundary 1 from 5 points on: the second and next-to-last
  // points are not knots) against CubicSpline, inside and a fifth of the range beyond; and the
  // second derivatives handed back in pDerivs. Within 1e-13 of the y range (of the largest
  // second derivative).
  const auto values = zomath::testing::by_set_and_case("curves/cubic.csv");
  const auto seconds = zomath::testing::by_set_and_case("curves/cubic_second.csv");
  ASSERT_EQ(values.size(), 8u);
  for (const auto& [key, rows] : values) {
    const Curve& c = curve_sets().at(key.first);
    std::vector<double> at, m;
    for (const auto& r : rows) at.push_back(r.args[2]);
    const std::vector<double> got = resample(shuffled(c, 9), at, 1, key.second, 1.0, false, &m);
    ErrorStats err, errM;
    for (std::size_t i = 0; i < rows.size(); ++i) err.add(rows[i], got[i]);
    for (const auto& r : seconds.at(key)) errM.add(r, m[static_cast<std::size_t>(r.args[2])]);
    EXPECT_LE(err.worst(), 1e-13) << key.first << "/" << key.second << ": " << err.describe();
    EXPECT_LE(errM.worst(), 1e-13) << key.first << "/" << key.second << ": " << errM.describe();
  }
}

TEST(Interpolate, SmoothingSplineMatchesScipy) {
  // The fit against splrep: the same knots (they are data points, so exactly), coefficients
  // within 1e-9 of the y range; values through the export (shuffled source, weights following
  // the sort) against splev within 1e-9, and the coefficients in pDerivs.
  const auto cases = zomath::testing::by_set_and_case("curves/smoothing_cases.csv");
  const auto knots = zomath::testing::by_set_and_case("curves/smoothing_knots.csv");
  const auto coef = zomath::testing::by_set_and_case("curves/smoothing_coef.csv");
  const auto values = zomath::testing::by_set_and_case("curves/smoothing_values.csv");
  ASSERT_EQ(cases.size(), 15u);
  for (const auto& [key, caseRows] : cases) {
    const Curve& c = curve_sets().at(key.first);
    const bool weighted = caseRows[0].args[2] != 0;
    const double s = caseRows[0].value;
    const int m = static_cast<int>(c.x.size());
    const std::vector<double> ones(m, 1.0);
    Nag_Spline sp;
    zomath::platform::NagError fail;
    ASSERT_EQ(zomath::platform::fit_smoothing_spline(m, c.x.data(), c.y.data(),
                                                     weighted ? c.w.data() : ones.data(), s,
                                                     m + 4, &sp, nullptr, fail), 0);
    const auto& t = knots.at(key);
    ASSERT_EQ(sp.nKnots, static_cast<int>(t.size())) << key.first << "/" << key.second;
    for (std::size_t i = 0; i < t.size(); ++i) EXPECT_EQ(sp.pKnots[i], t[i].value) << i;
    ErrorStats errC, errV;
    for (const auto& r : coef.at(key)) errC.add(r, sp.pCoef[static_cast<int>(r.args[2])]);
    std::vector<double> at, d;
    for (const auto& r : values.at(key)) at.push_back(r.args[2]);
    const std::vector<double> got = resample(shuffled(c, 3), at, 2, 0, s, weighted, &d);
    for (std::size_t i = 0; i < at.size(); ++i) errV.add(values.at(key)[i], got[i]);
    for (int j = 0; j < m; ++j) EXPECT_EQ(d[j], j < sp.nKnots ? sp.pCoef[j] : 0.0) << j;
    EXPECT_LE(errC.worst(), 1e-9) << key.first << "/" << key.second << ": " << errC.describe();
    EXPECT_LE(errV.worst(), 1e-9) << key.first << "/" << key.second << ": " << errV.describe();
    zomath::platform::release_spline(&sp);
  }
}

// The spline bracket of a plain bisection over the whole source, as the reading is defined.
double bisected_spline(const Curve& c, const std::vector<double>& m, double x) {
  std::size_t lo = 0, hi = c.x.size() - 1;
  while (hi - lo > 1) {
    const std::size_t mid = (hi + lo) / 2;
    if (x < c.x[mid]) hi = mid; else lo = mid;
  }
  const double h = c.x[hi] - c.x[lo];
  if (h == 0) return NANUM;
  const double A = (c.x[hi] - x) / h, B = (x - c.x[lo]) / h;
  return A * c.y[lo] + B * c.y[hi] + ((B * B * B - B) * m[hi] + (A * A * A - A) * m[lo]) * (h * h) / 6;
}

double bisected_line(const Curve& c, double x) {
  const std::size_t n = c.x.size();
  if (x < c.x[0]) return (x - c.x[0]) * (c.y[1] - c.y[0]) / (c.x[1] - c.x[0]) + c.y[0];
  if (x > c.x[n - 1])
    return c.y[n - 1] + (x - c.x[n - 1]) * (c.y[n - 1] - c.y[n - 2]) / (c.x[n - 1] - c.x[n - 2]);
  std::size_t lo = 0, hi = n - 1;
  while (hi - lo > 1) {
    const std::size_t mid = (lo + hi) / 2;
    if (c.x[mid] == x) return c.y[mid];
    if (x <= c.x[mid]) hi = mid; else lo = mid;
  }
  return (x - c.x[lo]) * (c.y[hi] - c.y[lo]) / (c.x[hi] - c.x[lo]) + c.y[lo];
}

TEST(Interpolate, SortedOutputsGiveTheBisectionsValues) {
  // The linear and spline readings computed directly: a bisection over the whole source, the
  // line or cubic through its bracket, the end pieces continued. Output x in order are read
  // with a moving bracket, in any order with a search; both must give these values bit for bit,
  // at data points, at tied source x (whose y the bisection meets first), between and beyond.
  // Mode 2 has no bisection rule of its own: sorted and shuffled outputs must agree.
  Curve c;
  std::mt19937_64 rng(11);
  for (int i = 0; i < 300; ++i)  // many ties among 300 quarters, which knots must avoid
    c.x.push_back(std::floor(std::uniform_real_distribution<double>(0, 400)(rng)) / 4);
  std::sort(c.x.begin(), c.x.end());
  for (double x : c.x) {
    c.y.push_back(std::sin(x) + std::uniform_real_distribution<double>(0, 0.1)(rng));
    c.w.push_back(1);
  }
  std::vector<double> at(c.x);
  for (int k = 0; k < 2000; ++k) at.push_back(std::uniform_real_distribution<double>(-5, 105)(rng));
  std::sort(at.begin(), at.end());
  std::vector<double> perm(at);
  std::shuffle(perm.begin(), perm.end(), rng);
  std::vector<double> m;
  const std::vector<double> line = resample(c, at, 0), spline = resample(c, at, 1, 0, 1, false, &m);
  const std::vector<double> line2 = resample(c, perm, 0), spline2 = resample(c, perm, 1);
  const std::vector<double> smooth = resample(c, at, 2, 0, 5.0), smooth2 = resample(c, perm, 2, 0, 5.0);
  std::map<double, std::vector<double>> byX;
  for (std::size_t i = 0; i < at.size(); ++i) byX[at[i]] = {line[i], spline[i], smooth[i]};
  for (std::size_t i = 0; i < at.size(); ++i) {
    EXPECT_TRUE(same(line[i], bisected_line(c, at[i]))) << at[i];
    EXPECT_TRUE(same(spline[i], bisected_spline(c, m, at[i]))) << at[i];
    const auto& v = byX[perm[i]];
    EXPECT_TRUE(same(line2[i], v[0]) && same(spline2[i], v[1]) && same(smooth2[i], v[2])) << perm[i];
  }
}

TEST(Interpolate, EndsTiesAndMissingValues) {
  const std::vector<double> at = {-1, 0, 0.5, 1, 1.5, 2, 2.5, 3, 4, NANUM, kNaN};
  // One source point: read only at its own x, in linear mode.
  const Curve one{{1}, {7}, {1}};
  const std::vector<double> r1 = resample(one, at, 0);
  for (std::size_t i = 0; i < at.size(); ++i) EXPECT_EQ(r1[i], at[i] == 1 ? 7 : NANUM) << at[i];
  // Two points in spline mode: the straight line, also outside.
  const Curve two{{1, 3}, {2, 6}, {1, 1}};
  const std::vector<double> r2 = resample(two, at, 1);
  for (std::size_t i = 0; i + 2 < at.size(); ++i) EXPECT_NEAR(r2[i], 2 * at[i], 1e-14) << at[i];
  // A missing or NaN output x stays so in every mode.
  const Curve five{{0, 1, 2, 3, 4}, {0, 1, 0, 1, 0}, {1, 1, 1, 1, 1}};
  for (int mode : {0, 1, 2}) {
    const std::vector<double> r = resample(five, at, mode, 0, 0.5);
    EXPECT_EQ(r[9], NANUM) << mode;
    EXPECT_TRUE(std::isnan(r[10])) << mode;
  }
  // Tied source x in linear mode: a jump. Left of the tie the first tied point, right of it the
  // last, at it the one the bisection meets.
  const Curve tie{{1, 2, 2, 3}, {1, 5, 7, 0}, {1, 1, 1, 1}};
  const std::vector<double> rt = resample(tie, {1.5, 2, 2.5}, 0);
  EXPECT_EQ(rt, (std::vector<double>{3, 5, 3.5}));
  // In spline mode the pieces on either side are splines of their own; beyond a tied end pair
  // the bracket has no width and the value is missing.
  const Curve tied{{0, 1, 2, 2, 3, 4, 4}, {0, 2, 1, 5, 3, 4, 6}, {1, 1, 1, 1, 1, 1, 1}};
  const Curve left{{0, 1, 2}, {0, 2, 1}, {1, 1, 1}}, right{{2, 3, 4}, {5, 3, 4}, {1, 1, 1}};
  const std::vector<double> rs = resample(tied, {0.5, 1.5, 2.5, 3.5, 4.5}, 1);
  EXPECT_EQ(rs[0], resample(left, {0.5}, 1)[0]);
  EXPECT_EQ(rs[1], resample(left, {1.5}, 1)[0]);
  EXPECT_EQ(rs[2], resample(right, {2.5}, 1)[0]);
  EXPECT_EQ(rs[3], resample(right, {3.5}, 1)[0]);
  EXPECT_EQ(rs[4], NANUM);
  // A missing source value: linear mode loses the segments that touch it; a spline, all.
  const Curve hole{{0, 1, 2, 3, 4}, {0, 1, NANUM, 3, 4}, {1, 1, 1, 1, 1}};
  EXPECT_EQ(resample(hole, {0.5, 1.5, 2, 2.5, 3.5}, 0), (std::vector<double>{0.5, NANUM, NANUM, NANUM, 3.5}));
  for (int mode : {1, 2}) EXPECT_EQ(resample(hole, {0.5}, mode, 0, 1.0)[0], NANUM) << mode;
  // The smoothing spline is read only over the source range; beyond it, the raw end segment.
  const std::vector<double> rm = resample(five, {-0.5, 4.25}, 2, 0, 0.5);
  EXPECT_EQ(rm[0], -0.5);
  EXPECT_EQ(rm[1], -0.25);
}

TEST(Interpolate, ReproducesLinesAtAnyScale) {
  // A straight line is its own linear reading, natural and not-a-knot spline, interpolating and
  // least-squares smoothing spline, whatever the scale of x and y (relative error 1e-12).
  for (double scale : {1e-9, 1.0, 1e9}) {
    Curve c;
    for (int i = 0; i < 9; ++i) {
      c.x.push_back(scale * (i + 0.1 * (i % 3)));
      c.y.push_back(scale * (2.0 - 0.5 * c.x.back() / scale));
      c.w.push_back(1);
    }
    const std::vector<double> at = {-scale, 0.3 * scale, 4.7 * scale, 8.2 * scale, 9 * scale};
    for (const auto& [mode, boundary, s] : std::vector<std::tuple<int, int, double>>{
             {0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {2, 0, 0}, {2, 0, 1e300}}) {
      const std::vector<double> r = resample(c, at, mode, boundary, s);
      for (std::size_t i = 0; i < at.size(); ++i)
        EXPECT_NEAR(r[i], scale * (2.0 - 0.5 * at[i] / scale), 1e-12 * scale * 5)
            << scale << " mode " << mode << "/" << boundary << "/" << s << " at " << at[i];
    }
  }
}

TEST(Interpolate, Codes) {
  const double x[5] = {0, 1, 2, 3, 4}, y[5] = {1, 2, 0, 2, 1}, falling[5] = {4, 3, 2, 1, 0};
  const double ties[5] = {0, 1, 1, 2, 3}, w0[5] = {1, 1, 0, 1, 1}, wn[5] = {1, 1, NANUM, 1, 1};
  const double at[2] = {0.5, 1.5};
  double out[2] = {9, 9};
  struct Case {
    const double *px, *srcX, *w;
    unsigned n, srcN;
    int mode;
    double s;
    unsigned options;
    int want;
  };
  const int few = ZOMATH_ERR_TOO_FEW_POINTS, smooth = ZOMATH_CURVE_ERR_SMOOTHING,
            bad = ZOMATH_ERR_BAD_ARGUMENT, ordered = ZOMATH_INTERP_SOURCE_ORDERED;
  const Case cases[] = {
      {nullptr, x, nullptr, 2, 5, 0, 1, 0, ZOMATH_ERR_NULL_POINTER},
      {at, nullptr, nullptr, 2, 5, 0, 1, 0, ZOMATH_ERR_NULL_POINTER},
      {at, x, nullptr, 0, 5, 0, 1, 0, few}, {at, x, nullptr, 2, 0, 0, 1, 0, few},
      {at, x, nullptr, 2, 1, 1, 1, 0, few}, {at, x, nullptr, 2, 3, 2, 1, 0, few},
      {at, x, nullptr, 2, 5, 2, -1, 0, smooth}, {at, x, nullptr, 2, 5, 2, kNaN, 0, smooth},
      {at, x, nullptr, 2, 5, 3, 1, 0, bad}, {at, x, nullptr, 2, 5, -1, 1, 0, bad},
      {at, falling, nullptr, 2, 5, 0, 1, ordered, ZOMATH_ERR_NOT_MONOTONIC},
      {at, ties, nullptr, 2, 5, 0, 1, ordered, 0}, {at, falling, nullptr, 2, 5, 0, 1, 0, 0},
      {at, x, w0, 2, 5, 2, 1, 0, ZOMATH_SPLINE_BAD_INPUT},
      {at, x, wn, 2, 5, 2, 1, 0, ZOMATH_SPLINE_BAD_INPUT},
      {at, ties, nullptr, 2, 5, 2, 0, 0, ZOMATH_SPLINE_KNOT_LIMIT},  // a tie can't be interpolated
  };
  for (const Case& c : cases) {
    EXPECT_EQ(zomath_interpolate(c.px, out, c.n, c.srcX, y, c.srcN, c.mode, c.s, c.w, nullptr,
                                 c.options, 0), c.want)
        << "mode " << c.mode << " n " << c.n << "/" << c.srcN;
  }
  EXPECT_EQ(zomath_interpolate(at, nullptr, 2, x, y, 5, 0, 1, nullptr, nullptr, 0, 0),
            ZOMATH_ERR_NULL_POINTER);
}

}  // namespace
