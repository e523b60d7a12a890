// The smoothing spline routine on its own: what it promises of the residual sum, and its
// refusals.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "platform/smoothing_spline.h"
#include "tests/curves/curve_data.h"

namespace {

namespace pf = zomath::platform;
using zomath::testing::curve_sets;

double residual(const Nag_Spline& s0, const zomath::testing::Curve& c, bool weighted) {
  Nag_Spline s = s0;
  pf::NagError fail;
  double sum = 0;
  for (std::size_t i = 0; i < c.x.size(); ++i) {
    double v;
    EXPECT_EQ(pf::evaluate_spline(&s, c.x[i], &v, fail), 0);
    const double r = (weighted ? c.w[i] : 1.0) * (v - c.y[i]);
    sum += r * r;
  }
  return sum;
}

TEST(SmoothingSpline, ResidualSumMeetsTheSmoothingFactor) {
  // From the definition: the weighted residual sum is s within 0.001 s once knots were needed,
  // below s when the least-squares cubic already meets it, and about 0 for s = 0. More
  // smoothing never needs more knots.
  const auto& c = curve_sets().at(5);
  const int m = static_cast<int>(c.x.size());
  int lastKnots = m + 4;
  for (double s : {0.0, 20.0, 100.0, 200.0, 400.0, 1e12}) {
    Nag_Spline sp;
    pf::NagError fail;
    double fp = -1;
    ASSERT_EQ(pf::fit_smoothing_spline(m, c.x.data(), c.y.data(), c.w.data(), s, m + 4, &sp, &fp,
                                       fail), 0) << s;
    const double sum = residual(sp, c, true);
    if (s == 0) {
      EXPECT_LT(sum, 1e-20) << s;
    } else if (sp.nKnots == 8) {
      EXPECT_LE(sum, s * (1 + 1e-12)) << s;
    } else {
      EXPECT_NEAR(sum, s, 1e-3 * s) << s;
    }
    EXPECT_NEAR(fp, sum, 1e-9 * (sum + 1e-12)) << s;
    EXPECT_LE(sp.nKnots, lastKnots) << s;
    lastKnots = sp.nKnots;
    pf::release_spline(&sp);
    EXPECT_EQ(sp.pKnots, nullptr);
    EXPECT_EQ(sp.pCoef, nullptr);
  }
}

TEST(SmoothingSpline, Refusals) {
  const std::vector<double> x = {0, 1, 2, 3, 4}, y = {1, 0, 2, 1, 3}, w = {1, 1, 1, 1, 1};
  const std::vector<double> down = {0, 2, 1, 3, 4}, flat = {2, 2, 2, 2, 2};
  const std::vector<double> w0 = {1, 0, 1, 1, 1}, yInf = {1, 0, INFINITY, 1, 3};
  const std::vector<double> tied = {0, 1, 1, 1, 1, 1, 1, 2, 3}, ty = {0, 1, 2, 0, 1, 3, 0, 1, 0};
  const std::vector<double> tw(9, 1.0);
  struct Case {
    const std::vector<double>*px, *py, *pw;
    int m;
    double s;
    int nest, want;
  };
  const Case cases[] = {
      {&x, &y, &w, 3, 1, 9, pf::kSplineBadInput},         {&down, &y, &w, 5, 1, 9, pf::kSplineBadInput},
      {&flat, &y, &w, 5, 1, 9, pf::kSplineBadInput},      {&x, &y, &w0, 5, 1, 9, pf::kSplineBadInput},
      {&x, &yInf, &w, 5, 1, 9, pf::kSplineBadInput},      {&x, &y, &w, 5, -1, 9, pf::kSplineBadInput},
      {&x, &y, &w, 5, std::nan(""), 9, pf::kSplineBadInput}, {&x, &y, &w, 5, 1, 7, pf::kSplineBadInput},
      {&x, &y, &w, 5, 0, 8, pf::kSplineKnotLimit},        // interpolation needs 9 knots
      {&tied, &ty, &tw, 9, 0, 13, pf::kSplineKnotLimit},  // x tied beyond what knots can carry
  };
  for (const Case& c : cases) {
    Nag_Spline sp{5, reinterpret_cast<double*>(8), nullptr, 0, 0};  // overwritten, not freed
    pf::NagError fail;
    EXPECT_EQ(pf::fit_smoothing_spline(c.m, c.px->data(), c.py->data(), c.pw->data(), c.s, c.nest,
                                       &sp, nullptr, fail), c.want) << c.m << " " << c.s;
    EXPECT_EQ(fail.code, c.want);
    EXPECT_EQ(sp.nKnots, 0);
    EXPECT_EQ(sp.pKnots, nullptr);
  }
  // Evaluation only inside the knots' interval.
  Nag_Spline sp;
  pf::NagError fail;
  ASSERT_EQ(pf::fit_smoothing_spline(5, x.data(), y.data(), w.data(), 0.5, 9, &sp, nullptr, fail), 0);
  double v = 7;
  EXPECT_EQ(pf::evaluate_spline(&sp, 4.5, &v, fail), pf::kSplineOutsideInterval);
  EXPECT_EQ(pf::evaluate_spline(&sp, std::nan(""), &v, fail), pf::kSplineOutsideInterval);
  EXPECT_EQ(v, 7);
  EXPECT_EQ(pf::evaluate_spline(&sp, 4, &v, fail), 0);
  pf::release_spline(&sp);
  EXPECT_EQ(pf::evaluate_spline(&sp, 1, &v, fail), pf::kSplineBadKnots);
}

}  // namespace
