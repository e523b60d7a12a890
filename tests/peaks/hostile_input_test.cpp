// Every peak export on data holding NaN, infinities, NANUM, ties and extreme values, with options
// and sizes out of range: a documented code, a count within the room given, and no access
// outside the arrays (which the sanitizer build watches).
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <set>
#include <vector>

#include "zomath/peaks.h"

namespace {

TEST(HostileInput, EveryExportAnswersWithADocumentedCode) {
  const double big = std::numeric_limits<double>::max();
  const std::vector<double> pool = {0, 1, -1, 2, 2, 0.5, 1e-300, -1e300, big, -big, INFINITY, -INFINITY, NAN, NANUM};
  const std::set<int> finder = {0, -11, -18, -35, -57, -58, -166, 1, 2, 3, 4};  // 1..4: the Fourier filter's
  const std::set<int> markers = {0, -6, -11, -18, -166};
  std::mt19937_64 rng(8);
  const auto pick = [&](int lo, int hi) { return lo + static_cast<int>(rng() % (hi - lo + 1)); };
  const auto any = [&] { return pool[rng() % pool.size()]; };
  for (int round = 0; round < 30000; ++round) {
    const int n = pick(1, 12), np = pick(-1, n), flags = pick(-1, 8), w = pick(-2, 14), order = pick(-1, 6);
    std::vector<double> x(n), y(n), d(n), px(n), py(n), wmax(n + 1), wmin(n + 1);
    std::vector<int> pi(n), idx(n + 1), mk(2 * n + 2, 0);
    for (int i = 0; i < n; ++i) {
      x[i] = round % 3 ? i + (round % 2 ? 0.0 : 0.1 * pool[rng() % 6]) : any();
      y[i] = any(), d[i] = any();
    }
    if (round % 5 == 0) std::swap(x[0], x[n - 1]);
    for (int g = 0; g <= n; ++g) idx[g] = pick(-1, n), wmax[g] = any(), wmin[g] = any();
    const double a = any(), b = any();
    double* const out = round % 11 ? px.data() : nullptr;  // a null output now and then: -11
    int m = n;
    const auto finds = [&](int rc) { return finder.count(rc) && (rc != 0 || (m >= 0 && m <= n)); };
    EXPECT_TRUE(finds(zomath_find_peaks_1st_derivative(&m, x.data(), y.data(), out, py.data(), pi.data(),
                                                       flags, round % 2, w, order)));
    EXPECT_TRUE(finds(zomath_find_peaks_2nd_derivative(&(m = n), x.data(), y.data(), px.data(), py.data(),
                                                       pi.data(), flags, pick(-1, 4), d.data(), w, order)));
    EXPECT_TRUE(finds(zomsp_find_peaks_2nd_derivative(&(m = n), x.data(), y.data(), px.data(), py.data(), nullptr,
                                                      flags, a, d.data())));
    EXPECT_TRUE(finds(zomath_find_peaks_by_local_maximum(&(m = n), x.data(), y.data(), px.data(), py.data(),
                                                         pi.data(), flags, w)));
    EXPECT_TRUE(finds(zomath_find_local_extremes(&(m = n), x.data(), y.data(), px.data(), py.data(), nullptr,
                                                 flags, w)));
    EXPECT_TRUE(finds(zomath_find_peaks_by_search_window(&(m = n), x.data(), y.data(), out, py.data(),
                                                         pi.data(), flags, a, b)));
    int peaks = pick(-1, n);
    const int rc = zomath_find_peak_by_derivative_centralized(n, x.data(), y.data(), d.data(), &peaks, px.data(),
                                                              py.data(), pi.data(), round % 2, flags, pick(-1, 4),
                                                              round % 3 ? &a : nullptr);
    EXPECT_TRUE((rc == 0 && peaks <= n) || rc == -32 || rc == -58) << rc;
    EXPECT_TRUE(markers.count(zomath_adjust_data_of_peaks(n, x.data(), y.data(), np, px.data(), py.data(),
                                                          idx.data(), round % 3 ? idx.data() + 1 : nullptr,
                                                          round % 2)));
    int left = -1, right = -1;
    const int part = zomath_find_peaks_partition(n, x.data(), y.data(), a, &left, &right, w);
    EXPECT_TRUE((part == 0 && left >= 0 && right < n) || part == -18 || part == -35) << part;
    const int room = pick(0, 2 * n + 2);
    for (int i = 0; i <= n; ++i) idx[i] = pick(-1, n);
    EXPECT_TRUE(markers.count(zomath_find_markers_of_peaks_by_height_and_width(n, x.data(), y.data(), np, idx.data(),
                                                                               room, mk.data(), a, b, wmin[0])));
    EXPECT_TRUE(markers.count(zomath_find_markers_of_peaks_by_height_and_full_width(
        n, x.data(), y.data(), np, idx.data(), room, mk.data(), a, wmax.data(), wmin.data())));
    EXPECT_TRUE(markers.count(zomath_find_markers_of_peak_centers_by_height_and_width(
        n, x.data(), y.data(), np, wmax.data(), room, mk.data(), a, b, wmin[0])));
    for (int v : mk) EXPECT_TRUE(v >= -1 && v < n) << v;
    EXPECT_LE(zomath_pick_peaks(y.data(), pick(0, n - 1), pick(0, n - 1), pi.data(), pick(0, n), pick(0, 20), a, b,
                                pick(-2, 9)), n);
    m = pick(-1, n);
    EXPECT_LE(zomath_test_peaks_by_height(&m, out, py.data(), pi.data(), a), 0);
    const int keep = zomath_test_peaks_by_number(n, px.data(), py.data(), pi.data(), pick(-1, n + 1));
    EXPECT_TRUE(keep == 0 || keep == -18 || keep == -25) << keep;
    EXPECT_LE(zomath_match_peaks_centers_by_index(x.data(), y.data(), n, idx.data(), px.data(), py.data(), np), 0);
    double v[4];
    const int inflection = zomath_find_inflection_point(n, x.data(), y.data(), a, b, v, v + 1, v + 2);
    EXPECT_TRUE(inflection == 0 || inflection == -18 || inflection == -61) << inflection;
    const double reached = zomath_iterate_for_finding_inflection(a, b, a + b, n, out ? x.data() : nullptr, y.data(),
                                                                 v, v + 1, v + 2, v + 3);
    EXPECT_TRUE(out || reached == a || reached != reached);
    EXPECT_EQ(zomath_trim_peak_part_by_2nd_derivative(n, x.data(), y.data()), 0);
    const double noise = zomath_get_noise_level(n, y.data());
    EXPECT_TRUE(noise == NANUM || noise >= 0) << noise;
    zomath_find_k_min_max(y.data(), n, pick(-1, n));
  }
}

}  // namespace
