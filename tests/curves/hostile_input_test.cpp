// Every curve export on data holding NaN, infinities, NANUM, ties and extreme values: a
// documented code or value, never a read or write outside the arrays (the sanitizer build
// watches the latter).
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <set>
#include <vector>

#include "zomath/curves.h"

namespace {

bool half(void*, void*, void*, double x, double* y) {
  *y = x / 2;
  return true;
}

TEST(HostileInput, EveryExportAnswersWithADocumentedCode) {
  const double inf = INFINITY, nan = std::nan(""), big = std::numeric_limits<double>::max();
  const std::vector<double> pool = {0, 1, -1, 2, 2, 1e-300, -1e300, big, -big, inf, -inf, nan, NANUM};
  const std::set<int> resampling = {0, -11, -14, -15, -17, -18, -166, 1, 2, 3, 10};
  std::mt19937_64 rng(5);
  for (int round = 0; round < 300; ++round) {
    const unsigned n = 1 + rng() % 9;
    std::vector<double> x(n), y(n), w(n), at(7), out(7), d(n);
    for (unsigned i = 0; i < n; ++i) {
      x[i] = round % 3 ? pool[rng() % 5] + i : pool[rng() % pool.size()];
      y[i] = pool[rng() % pool.size()];
      w[i] = round % 2 ? 1.0 : pool[rng() % pool.size()];
    }
    for (double& a : at) a = pool[rng() % pool.size()];
    for (int mode = -1; mode <= 3; ++mode)
      for (unsigned options : {0u, 0x10000000u}) {
        const int rc = zomath_interpolate(at.data(), out.data(), 7, x.data(), y.data(), n, mode,
                                          y[0], w.data(), d.data(), options, 1);
        EXPECT_TRUE(resampling.count(rc)) << rc;
      }
    double v;
    int idx[9];
    EXPECT_LE(zomath_y_form_x(n, x.data(), y.data(), at[0], &v, round % 2, round % 3 == 0), 0);
    EXPECT_LE(zomath_x_from_y(n, x.data(), y.data(), at[1], &v), 0);
    int ctx = 0;
    const int fx = zomath_find_xs(at[2], n, x.data(), y.data(), std::min(n, 3u), out.data(), &ctx,
                                  nullptr, &ctx, half, idx, at[3], at[4], 30);
    EXPECT_TRUE(fx == 0 || fx == -18) << fx;
    EXPECT_LE(zomath_yatasymt(n, x.data(), y.data(), &v), 0);
    EXPECT_LE(zomath_xatasymt(n, x.data(), y.data(), &v), 0);
    EXPECT_GE(zomath_is_monotonic(x.data(), n, round % 2), 0);
    zomath_mean_increment(n, y.data(), out.data(), 1 + round % 3, d.data(), idx, round % 5);
    const int order = zomath_check_order(n, y.data(), out.data(), d.data(), idx, at[0]);
    EXPECT_TRUE(order == -15 || (order >= 0 && order <= 2)) << order;
    const int segments = zomath_check_order_curve(n, y.data(), 1 + round % 3, out.data(), d.data(), idx);
    EXPECT_TRUE(segments == -2 || (segments >= 0 && segments <= 2)) << segments;
    const CurveRecord curves[2] = {{n, x.data(), y.data(), 0}, {n, y.data(), x.data(), 0}};
    const int list = zomath_check_order_multiple_curves(2, curves, 1 + round % 2, out.data(), d.data(), idx);
    EXPECT_TRUE(list == -2 || (list >= 0 && list <= 2)) << list;
    int end = -99;
    const int linear = zomath_check_linear(n, x.data(), y.data(), &end, at[1], at[2], rng() % n,
                                           round % 2, static_cast<int>(rng() % 9) - 4,
                                           static_cast<int>(rng() % 5) - 1);
    EXPECT_TRUE(linear == -18 || (linear == 0 && end >= 0 && end < static_cast<int>(n)))
        << linear << " " << end;
    std::vector<double> px = x, py = y;
    EXPECT_LE(zomath_xy_remove_duplicates(px.data(), py.data(), n, round % 6 - 1, at[5], round % 2,
                                          out.data(), d.data(), idx), static_cast<int>(n));
    px = x;
    py = y;
    zomath_group_xy_by_x(n, px.data(), py.data(), 3, at.data(), idx);
    zomath_group_xy_by_x_new(n, px.data(), py.data(), 3, at.data() + 3, idx);
    zomath_sort_xy(px.data(), py.data(), n, round % 2);
    EXPECT_LE(zomath_1d_remove_missingvalue(px.data(), py.data(), n, at[6], idx), static_cast<int>(n));
    std::vector<double> xo(n), yo(n);
    zomath_generate_data_for_non_monotonic(n, x.data(), y.data(), xo.data(), yo.data(), idx, true);
    std::vector<double> x2(7), y2(7);
    zomath_simple_math(7, x2.data(), y2.data(), std::min(n, 7u), x.data(), y.data(), n, y.data(),
                       x.data(), round % 6, round % 2, round % 3, 1.0);
    EXPECT_LE(zomath_derivative(x.data(), y.data(), d.data(), n, 2 * (round % 3)), 0);
    EXPECT_LE(zomath_parametric_interpolate_range(out.data(), x.data(), n / 2, 2, round % 2), 0);
  }
}

}  // namespace
