// Baselines on synthetic spectra whose baseline is known, the region tools against independent
// least squares, and the codes of every export on hostile input.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "baseline/baseline_internal.h"
#include "tests/scalar/reference.h"
#include "zomath/baseline.h"
#include "zomath/curves.h"
#include "zomath/peaks.h"

namespace {

using Vec = std::vector<double>;

struct Band {
  double centre, height, width;  // width: SD of a Gaussian, half width at half height of a Lorentzian
  bool lorentzian;
};

// y = a + b x + c x^2 + bands + Gaussian noise of SD sigma (Box-Muller on mt19937, fixed seed).
struct Spectrum {
  Vec x, y, base;
};
Spectrum spectrum(int n, double b, double c, const std::vector<Band>& bands, double sigma) {
  Spectrum s{Vec(n), Vec(n), Vec(n)};
  std::mt19937 gen(2024);
  const double twoPi = 2 * std::acos(-1.0);
  for (int i = 0; i < n; ++i) {
    const double x = i, u1 = (gen() + 1.0) / 4294967297.0, u2 = gen() / 4294967296.0;
    s.x[i] = x;
    s.base[i] = 1.0 + b * x + c * x * x;
    s.y[i] = s.base[i] + sigma * std::sqrt(-2 * std::log(u1)) * std::cos(twoPi * u2);
    for (const Band& p : bands) {
      const double u = (x - p.centre) / p.width;
      s.y[i] += p.lorentzian ? p.height / (1 + u * u) : p.height * std::exp(-0.5 * u * u);
    }
  }
  return s;
}

// Masking: a Gaussian band wider than a tenth of the data is bridged between the points at
// twice its inflections, where it has fallen to about exp(-2) of its height, so the baseline
// lies between the true one and the curve and within 0.15 of the height above it; a band
// too narrow for a bridge stays in place. Without bands the curve comes back.
TEST(Baseline, MaskingBridgesWideBandsAndLeavesNarrowOnes) {
  struct Case {
    double b, c;
    std::vector<Band> bands;
    double sigma;
    int wide, narrow;  // index of a bridged band and of a band left in place (-1: none)
  };
  const Case cases[] = {
      {5e-4, 0, {}, 0, -1, -1},
      {5e-4, 2e-7, {{800, 2, 80, false}}, 0, 0, -1},
      {-3e-4, 0, {{700, 1.5, 60, false}, {1500, 1, 4, false}}, 0, 0, 1},
      {5e-4, -1e-7, {{1000, 3, 100, false}, {300, 2, 3, true}}, 1e-5, 0, 1},
  };
  for (const Case& t : cases) {
    const Spectrum s = spectrum(2000, t.b, t.c, t.bands, t.sigma);
    Vec bx(2000), by(2000);
    ASSERT_EQ(zomath_create_baseline_by_masking_peaks(2000, s.x.data(), s.y.data(), 2000,
                                                      bx.data(), by.data(), 1),
              0);
    EXPECT_EQ(bx, s.x);
    if (t.bands.empty()) {
      EXPECT_EQ(by, s.y);
    }
    if (t.wide >= 0) {
      const Band& p = t.bands[t.wide];
      const double slack = 5 * t.sigma + 1e-3;
      for (int i = static_cast<int>(p.centre - 2 * p.width); i <= p.centre + 2 * p.width; ++i) {
        ASSERT_GE(by[i], s.base[i] - slack) << i;
        ASSERT_LE(by[i], s.y[i] + slack) << i;
        ASSERT_LE(by[i] - s.base[i], 0.15 * p.height + slack) << i;
      }
    }
    if (t.narrow >= 0) {
      const int top = static_cast<int>(t.bands[t.narrow].centre);
      EXPECT_EQ(by[top], s.y[top]);
    }
  }
}

// End-weighted: with bands only in the middle, the quiet points of both ends carry a line that
// stays within 4 noise SDs of the true straight baseline between the two end stretches. (When
// the first five quiet runs all lie at one end, the line is carried on from neighbouring noisy
// points there; these fractions and widths are ones where both ends take part.)
TEST(Baseline, EndWeightedFollowsQuietEnds) {
  const std::vector<Band> bands = {{800, 2, 20, false}, {1150, 1, 10, true}};
  const double fractions[3][2] = {{0.1, 0.05}, {0.15, 0.05}, {0.15, 0.2}};
  for (double sigma : {0.002, 0.01})
    for (const auto& f : fractions)
      for (int method : {0, 1, 2}) {
        const double frac = f[0];
        const Spectrum s = spectrum(2000, 4e-4, 0, bands, sigma);
        Vec bx(1000), by(1000);
        ASSERT_EQ(zomath_create_baseline_end_weighted_linear(2000, s.x.data(), s.y.data(), 1000,
                                                             bx.data(), by.data(), frac, method,
                                                             f[1]),
                  0);
        EXPECT_EQ(bx.front(), 0);
        EXPECT_EQ(bx.back(), 1999);
        double worst = 0;
        for (int k = 0; k < 1000; ++k)
          if (bx[k] > 2000 * frac && bx[k] < 2000 * (1 - frac))
            worst = std::max(worst, std::fabs(by[k] - (1 + 4e-4 * bx[k])));
        EXPECT_LE(worst, 4 * sigma) << sigma << " " << frac << " " << method;
      }
}

// The edge cases of the whole baselines, each stated as a fact of the result.
TEST(Baseline, WholeBaselineEdgeCases) {
  const Spectrum s = spectrum(200, 1e-3, 0, {{100, 1, 5, false}}, 0.01);
  const double* x = s.x.data();
  const double* y = s.y.data();
  Vec bx(200), by(200);
  // dEndFraction: 0 refused, 0.5 takes the whole curve as the sample.
  EXPECT_EQ(zomath_create_baseline_end_weighted_linear(200, x, y, 200, bx.data(), by.data(), 0,
                                                       0, 0.1),
            ZOMATH_ERR_BAD_ARGUMENT);
  EXPECT_EQ(zomath_create_baseline_end_weighted_linear(200, x, y, 200, bx.data(), by.data(), 0.5,
                                                       0, 0.1),
            0);
  // No quiet run in 500 rounds (a smoothing window as wide as the sample leaves nothing to
  // test; constant data never fall below a tolerance of 0): the line through the sample's ends.
  ASSERT_EQ(zomath_create_baseline_end_weighted_linear(200, x, y, 200, bx.data(), by.data(), 0.2,
                                                       0, 0.9),
            0);
  for (int k = 0; k < 200; ++k)
    ASSERT_NEAR(by[k], y[0] + (y[199] - y[0]) * bx[k] / 199, 1e-12);
  const Vec flat(200, 2.5);
  ASSERT_EQ(zomath_create_baseline_end_weighted_linear(200, x, flat.data(), 200, bx.data(),
                                                       by.data(), 0.2, 1, 0.1),
            0);
  EXPECT_EQ(by, flat);
  // One input point: repeated by the line through the ends.
  const double x1 = 3, y1 = -2;
  Vec cx(4), cy(4);
  ASSERT_EQ(zomath_init_baseline_by_connect_ends(1, &x1, &y1, 4, cx.data(), cy.data()), 0);
  EXPECT_EQ(cx, Vec(4, 3.0));
  EXPECT_EQ(cy, Vec(4, -2.0));
  // The line through the ends at evenly spaced x, ending on the last point exactly.
  ASSERT_EQ(zomath_init_baseline_by_connect_ends(200, x, y, 4, cx.data(), cy.data()), 0);
  for (int k = 0; k < 4; ++k) EXPECT_NEAR(cy[k], y[0] + (y[199] - y[0]) * cx[k] / 199, 1e-14);
  EXPECT_EQ(cx[3], 199);
  EXPECT_EQ(cy[3], y[199]);
}

// One line a region against mpmath's least squares at 40 digits (tests/tools/
// make_baseline_reference.py). x near 1000 spread over 50 to 130 points makes the sums about
// 1e3 times worse conditioned than centred data, so 1e-11 relative is the bar; a region of two
// points keeps its record.
TEST(Baseline, RegionFitsAgreeWithLeastSquares) {
  Vec x, y;
  std::vector<std::vector<double>> ref(5, Vec(8));
  for (const auto& r : zomath::testing::load_reference("baseline/regions.csv")) {
    if (r.args[0] == 0) x.push_back(r.args[2]), y.push_back(r.value);
    else ref[static_cast<int>(r.args[1])][static_cast<int>(r.args[2])] = r.value;
  }
  ASSERT_EQ(x.size(), 200u);
  int starts[6], ends[6];
  for (int k = 0; k < 5; ++k) starts[k] = static_cast<int>(ref[k][0]), ends[k] = static_cast<int>(ref[k][1]);
  starts[5] = 10, ends[5] = 11;
  BaseRegionFit fits[6];
  fits[5].dSlope = 42;
  ASSERT_EQ(zomath_fit_linear_multi_regions(200, x.data(), y.data(), 6, starts, ends, fits), 0);
  for (int k = 0; k < 5; ++k) {
    const BaseRegionFit& f = fits[k];
    EXPECT_EQ(f.nStart, starts[k]);
    EXPECT_EQ(f.nEnd, ends[k]);
    const double got[6] = {f.dIntercept, f.dInterceptError, f.dSlope, f.dSlopeError, f.dR,
                           f.dAdjRSquare};
    const int q[6] = {2, 4, 3, 5, 6, 7};
    for (int j = 0; j < 6; ++j)
      EXPECT_NEAR(got[j], ref[k][q[j]], 1e-11 * std::fabs(ref[k][q[j]])) << k << " " << q[j];
  }
  EXPECT_EQ(fits[5].dSlope, 42);
}

// The point selections and region tools on curves whose answer is plain.
TEST(Baseline, PointSelectionsAndRegionTools) {
  // A Gaussian on a parabola: the points of small curvature and near-parabolic residual lie
  // off the band, best fitting first.
  const Spectrum s = spectrum(600, 2e-3, -3e-6, {{300, 1, 12, false}}, 0);
  Vec ox(600), oy(600);
  for (int variant = 0; variant < 2; ++variant) {
    const int kept = variant == 0 ? zomath_find_baseline_part_by_small_curvature(
                                        600, s.x.data(), s.y.data(), ox.data(), oy.data(), 0.05,
                                        0.5, 2)
                                  : zomath_find_baseline_part_by_small_curvature2(
                                        600, s.x.data(), s.y.data(), ox.data(), oy.data(), 0.05,
                                        0.5);
    ASSERT_GT(kept, 100) << variant;
    for (int k = 0; k < kept; ++k) {
      ASSERT_GT(std::fabs(ox[k] - 300), 3 * 12) << variant;
      const int i = static_cast<int>(ox[k]);
      ASSERT_LT(std::fabs(oy[k] - s.base[i]), 0.02) << variant;
    }
  }
  // Points near zero in value and slope: the tails of a band on a zero baseline.
  Vec g(600);
  for (int i = 0; i < 600; ++i) g[i] = std::exp(-0.5 * std::pow((i - 300) / 20.0, 2));
  std::vector<int> idx(600);
  const int found = zomath_find_baseline_part_in_smooth_curve(600, s.x.data(), g.data(), idx.data());
  ASSERT_GT(found, 400);
  for (int k = 0; k < found; ++k) ASSERT_GT(std::abs(idx[k] - 300), 2 * 20);
  // Straight regions of a bent line never span the bend at 400.
  Vec bent(600);
  for (int i = 0; i < 600; ++i) bent[i] = i < 400 ? 0.5 * i : 200 - 2.0 * (i - 400);
  int st[8], en[8];
  const int regions = zomath_find_base_regions(600, s.x.data(), bent.data(), 30, 8, st, en, 1,
                                               3, 0);
  ASSERT_GE(regions, 2);
  for (int k = 0; k < regions; ++k) {
    EXPECT_GT(en[k] - st[k], 30);
    EXPECT_TRUE(en[k] <= 405 || st[k] >= 395) << st[k] << ".." << en[k];
  }
  EXPECT_EQ(zomath_find_base_regions(600, s.x.data(), bent.data(), 30, 1, st, en, 1, 3, 0),
            ZOMATH_BASE_ERR_REGIONS);
  // Markers where a band leaves and rejoins the baseline; a peak already on it is its own pair.
  const Spectrum m = spectrum(400, 1e-3, 0, {{150, 1, 8, false}}, 0);
  const int peaks[2] = {150, 320};
  int mk[4];
  double mx[4], my[4];
  ASSERT_EQ(zomath_make_base_markers(mk, mx, my, 4, peaks, 2, m.x.data(), m.y.data(), m.base.data(),
                                     m.base.data(), 400),
            0);
  const double t = 0.5 * (m.base[399] - m.base[0]) / 400;  // half the mean step of the reference
  EXPECT_LE(m.y[mk[0]] - m.base[mk[0]], t);
  EXPECT_GT(m.y[mk[0] + 1] - m.base[mk[0] + 1], t);
  EXPECT_LE(m.y[mk[1]] - m.base[mk[1]], t);
  EXPECT_GT(m.y[mk[1] - 1] - m.base[mk[1] - 1], t);
  EXPECT_EQ(mk[2], 320);
  EXPECT_EQ(mk[3], 320);
  EXPECT_EQ(mx[0], mk[0]);
  EXPECT_EQ(my[1], m.y[mk[1]]);
  // Segments: three levels cut where they change (x unsorted on purpose); constant data, one.
  const double lx[9] = {8, 0, 4, 1, 5, 2, 6, 3, 7};
  const double ly[9] = {5, 1, 3, 1.1, 3.2, 0.9, 2.8, 3, 5.1};
  int counts[3];
  double means[3];
  ASSERT_EQ(zomath_cut_to_segments_by_height(9, lx, ly, 0.1, 3, counts, means), 3);
  EXPECT_EQ(counts[0], 3);
  EXPECT_EQ(counts[1], 4);
  EXPECT_EQ(counts[2], 2);
  EXPECT_NEAR(means[0], 1.0, 1e-15);
  EXPECT_NEAR(means[1], 3.0, 1e-15);
  EXPECT_NEAR(means[2], 5.05, 1e-15);
  EXPECT_EQ(zomath_cut_to_segments_by_height(9, lx, ly, 0.1, 2, counts, means),
            ZOMATH_ERR_BAD_ARGUMENT);
  const Vec level(50, 1e8 + 0.1);
  ASSERT_EQ(zomath_cut_to_segments_by_height(50, s.x.data(), level.data(), 0, 1, counts, means), 1);
  EXPECT_EQ(counts[0], 50);
  EXPECT_EQ(means[0], 1e8 + 0.1);
}

// The stretches of all peaks found in one pass are those that zomath_find_peaks_partition
// gives peak by peak, on rising and on falling x; the quiet points found from the fifth
// smallest run are those of the round-by-round search.
TEST(Baseline, SharedPassesMatchTheirDefinitions) {
  const Spectrum s = spectrum(500, 1e-3, 0, {{120, 1, 9, false}, {300, 2, 15, true}}, 2e-3);
  const Vec rx(s.x.rbegin(), s.x.rend()), ry(s.y.rbegin(), s.y.rend());
  const double peaks[4] = {120, 121, 300, 450};
  for (const Vec* c : {&s.x, &rx}) {
    const Vec& yy = c == &s.x ? s.y : ry;
    for (int w : {3, 9, 31}) {
      int l[4], r[4];
      zomath::baseline::partitions(500, c->data(), yy.data(), peaks, 4, w, l, r);
      for (int k = 0; k < 4; ++k) {
        int el = -2, er = -2;
        ASSERT_EQ(zomath_find_peaks_partition(500, c->data(), yy.data(), peaks[k], &el, &er, w), 0);
        EXPECT_EQ(l[k], el) << w << " " << k;
        EXPECT_EQ(r[k], er) << w << " " << k;
      }
    }
  }
  // Sliding sums against the filter's convolution, on data offset by 1e3: within 1e-12 of the
  // data's size, far below the noise whose quiet runs they judge.
  for (int h : {1, 2, 7, 60}) {
    Vec yy(s.y), fast(500), full(500);
    for (double& v : yy) v += 1e3;
    ASSERT_TRUE(zomath::baseline::quadratic_smooth_interior(yy.data(), fast.data(), 500, h));
    ASSERT_EQ(zomath_savitsky_golay(yy.data(), full.data(), 500, h, h, 2, 0, 0), 0);
    for (int i = h; i < 500 - h; ++i) ASSERT_NEAR(fast[i], full[i], 1e-9) << h << " " << i;
  }
  std::mt19937 gen(5);
  for (int trial = 0; trial < 20; ++trial) {
    const int m = 41, w = 3;
    Vec raw(m), sm(m);
    for (int j = 0; j < m; ++j) raw[j] = gen() % 97, sm[j] = raw[j] + (gen() % 13) - 6.0;
    double t = 0;
    for (int j = 1; j < m; ++j) t += std::fabs(raw[j] - raw[j - 1]);
    t = 0.1 * t / m;
    std::vector<int> expect;
    for (int round = 0; round < 500 && expect.size() < 5; ++round, t *= 1.1) {
      std::vector<int> got;
      for (int j = w; j <= m - w - 1; ++j)
        if (std::fabs(raw[j] - sm[j]) < t) got.push_back(j);
      expect.clear();
      for (std::size_t k = 0; got.size() > 4 && k + 2 < got.size(); ++k)
        if (got[k + 1] == got[k] + 1 && got[k + 2] == got[k] + 2) expect.push_back(got[k]);
    }
    if (expect.size() < 5) expect.clear();
    const zomath::baseline::QuietRuns q = zomath::baseline::quiet_runs(raw.data(), sm.data(), m, w);
    EXPECT_EQ(std::vector<int>(q.index.Data(), q.index.Data() + q.count), expect) << trial;
  }
}

// Every export on null pointers, sizes of 0 and 1, NANUM and NaN: a documented code, no crash
// (the sanitizer build checks that nothing outside the arrays is touched).
TEST(Baseline, HostileInputGivesDocumentedCodes) {
  const double x[6] = {0, 1, 2, 3, 4, 5}, y[6] = {1, NANUM, 3, NAN, 2, 1};
  double bx[6], by[6];
  int idx[6], st[2], en[2], counts[2], mk[2];
  double mx[2], my[2];
  BaseRegionFit fits[1];
  EXPECT_EQ(zomath_create_baseline_by_masking_peaks(6, nullptr, y, 6, bx, by, 1), -11);
  EXPECT_EQ(zomath_create_baseline_by_masking_peaks(0, x, y, 0, bx, by, 1), -18);
  EXPECT_EQ(zomath_create_baseline_by_masking_peaks(6, x, y, 5, bx, by, 1), -18);
  EXPECT_EQ(zomath_create_baseline_by_masking_peaks(6, x, y, 6, bx, by, 3), 0);
  EXPECT_EQ(zomath_create_baseline_end_weighted_linear(6, x, y, 6, bx, nullptr, 0.2, 0, 0.1), -11);
  EXPECT_EQ(zomath_create_baseline_end_weighted_linear(4, x, y, 6, bx, by, 0.2, 0, 0.1), -2);
  EXPECT_EQ(zomath_create_baseline_end_weighted_linear(6, x, y, 1, bx, by, 0.2, 0, 0.1), -2);
  EXPECT_EQ(zomath_create_baseline_end_weighted_linear(6, x, y, 6, bx, by, 0.1, 0, 0.1), -18);
  EXPECT_EQ(zomath_create_baseline_end_weighted_linear(6, x, y, 6, bx, by, NAN, 0, 0.1), -18);
  EXPECT_EQ(zomath_create_baseline_end_weighted_linear(6, x, y, 6, bx, by, 0.5, 0, 1.5), -18);
  EXPECT_EQ(zomath_create_baseline_end_weighted_linear(6, x, y, 6, bx, by, 0.5, 7, 0.1), -18);
  const double xm[6] = {0, 1, NANUM, 3, NANUM, 5};
  EXPECT_EQ(zomath_create_baseline_end_weighted_linear(6, xm, x, 6, bx, by, 0.5, 0, 0.1), 2);
  EXPECT_EQ(zomath_init_baseline_by_connect_ends(6, x, y, 0, bx, by), -18);
  EXPECT_EQ(zomath_init_baseline_by_connect_ends(6, x, nullptr, 6, bx, by), -11);
  EXPECT_EQ(zomath_find_baseline_part_by_small_curvature(2, x, y, bx, by, 0.1, 0.5, 1), -18);
  EXPECT_EQ(zomath_find_baseline_part_by_small_curvature(6, x, y, bx, nullptr, 0.1, 0.5, 1), -11);
  EXPECT_EQ(zomath_find_baseline_part_by_small_curvature(6, x, y, bx, by, 0.1, 0.5, 9), -9);
  EXPECT_GE(zomath_find_baseline_part_by_small_curvature(6, x, y, bx, by, NAN, NAN, 1), 0);
  EXPECT_EQ(zomath_find_baseline_part_by_small_curvature2(6, x, y, bx, by, 0.1, 0.5), -9);
  EXPECT_EQ(zomath_find_baseline_part_in_smooth_curve(6, x, nullptr, idx), -11);
  EXPECT_EQ(zomath_find_baseline_part_in_smooth_curve(1, x, y, idx), 0);
  EXPECT_GE(zomath_find_baseline_part_in_smooth_curve(6, x, y, idx), 0);
  EXPECT_EQ(zomath_find_base_regions(6, x, y, 3, 2, nullptr, en, 0.1, 3, 0), -11);
  EXPECT_EQ(zomath_find_base_regions(6, x, y, 1, 2, st, en, 0.1, 3, 0), -18);
  EXPECT_GE(zomath_find_base_regions(6, x, y, 2, 2, st, en, 0.1, 3, 0), 0);
  const int peak[1] = {7};
  EXPECT_EQ(zomath_make_base_markers(mk, mx, my, 2, peak, 1, x, y, x, nullptr, 6), -11);
  EXPECT_EQ(zomath_make_base_markers(mk, mx, my, 3, peak, 1, x, y, x, y, 6), -5);
  EXPECT_EQ(zomath_make_base_markers(mk, mx, my, 2, peak, 1, x, y, x, y, 6), -6);
  const int s0[1] = {-1}, s1[1] = {0}, e0[1] = {4}, e1[1] = {6};
  EXPECT_EQ(zomath_fit_linear_multi_regions(6, x, y, 1, s0, e0, nullptr), -11);
  EXPECT_EQ(zomath_fit_linear_multi_regions(6, x, y, 1, s0, e0, fits), -18);
  EXPECT_EQ(zomath_fit_linear_multi_regions(6, x, y, 1, s1, e1, fits), -18);
  EXPECT_EQ(zomath_fit_linear_multi_regions(6, x, y, 1, s1, e0, fits), 444);  // a NaN y
  EXPECT_EQ(zomath_cut_to_segments_by_height(6, x, y, 0.1, 2, nullptr, nullptr), -11);
  EXPECT_EQ(zomath_cut_to_segments_by_height(1, x, y, 0.1, 2, counts, nullptr), -18);
  EXPECT_EQ(zomath_cut_to_segments_by_height(6, x, y, -1, 2, counts, nullptr), -18);
  EXPECT_EQ(zomath_cut_to_segments_by_height(6, x, y, NAN, 2, counts, nullptr), -18);
}

}  // namespace
