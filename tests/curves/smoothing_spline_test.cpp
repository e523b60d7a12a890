// The smoothing spline routine on its own: its refusals and the interval it can be read on
// (its values are compared with SciPy's in interpolate_test.cpp).
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "platform/smoothing_spline.h"

namespace {

namespace pf = zomath::platform;

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
  const int bad = pf::kSplineBadInput;
  const Case cases[] = {
      {&x, &y, &w, 3, 1, 9, bad},    {&down, &y, &w, 5, 1, 9, bad},        {&flat, &y, &w, 5, 1, 9, bad},
      {&x, &y, &w0, 5, 1, 9, bad},   {&x, &yInf, &w, 5, 1, 9, bad},        {&x, &y, &w, 5, -1, 9, bad},
      {&x, &y, &w, 5, 1, 7, bad},    {&x, &y, &w, 5, std::nan(""), 9, bad},
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
