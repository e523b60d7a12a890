// The smoothing filters against exact rational references (tests/tools/make_smoothing_reference.py,
// which also checks its definitions against SciPy's savgol_coeffs, savgol_filter, correlate1d,
// uniform_filter1d and median_filter).
#include <gtest/gtest.h>

#include <map>
#include <vector>

#include "curves/savitzky_golay.h"
#include "tests/scalar/reference.h"
#include "zomath/curves.h"

namespace {

using zomath::testing::ErrorStats;
using zomath::testing::load_reference;
using zomath::testing::ReferenceRow;

// Set number -> values, from filter_data.csv.
const std::map<int, std::vector<double>>& data_sets() {
  static const std::map<int, std::vector<double>> sets = [] {
    std::map<int, std::vector<double>> m;
    for (const ReferenceRow& r : load_reference("curves/filter_data.csv"))
      m[static_cast<int>(r.args[0])].push_back(r.value);
    return m;
  }();
  return sets;
}

// Rows grouped by every argument but the last (the index), in index order.
std::map<std::vector<double>, std::vector<ReferenceRow>> cases(const char* table) {
  std::map<std::vector<double>, std::vector<ReferenceRow>> groups;
  for (const ReferenceRow& r : load_reference(table))
    groups[std::vector<double>(r.args.begin(), r.args.end() - 1)].push_back(r);
  return groups;
}

// Runs `filter` on each case's data set and compares every output with the reference.
template <class Filter>
ErrorStats compare(const char* table, Filter filter) {
  ErrorStats stats;
  const auto groups = cases(table);
  EXPECT_FALSE(groups.empty()) << table;
  for (const auto& [args, rows] : groups) {
    const std::vector<double>& y = data_sets().at(static_cast<int>(args[0]));
    std::vector<double> out(y.size(), 7.0);
    EXPECT_EQ(filter(args, y, out), 0);
    for (const ReferenceRow& r : rows) stats.add(r, out[static_cast<std::size_t>(r.args.back())]);
  }
  return stats;
}

TEST(SmoothingReference, SavitzkyGolayWeights) {
  // The weights of windows up to 51 points, symmetric and one-sided, orders 1 to 5,
  // derivatives 0 to 3, within half a rounding of the largest weight: correctly rounded but for
  // the last bit of the smallest (SciPy's savgol_coeffs is 1.4e-11 off on the same set).
  // Orders the equations can't carry are refused rather than answered with few digits.
  ErrorStats stats;
  for (const auto& [args, rows] : cases("curves/filter_savgol_coef.csv")) {
    const int nl = static_cast<int>(args[0]), nr = static_cast<int>(args[1]);
    std::vector<double> c(nl + nr + 1);
    ASSERT_EQ(zomath::curves::savgol_coefficients(nl, nr, static_cast<int>(args[2]),
                                                  static_cast<int>(args[3]), c.data()), 0);
    for (const ReferenceRow& r : rows) stats.add(r, c[static_cast<std::size_t>(r.args.back())]);
  }
  EXPECT_LT(stats.worst(), 1.2e-16) << stats.describe();
  std::vector<double> c(41);
  EXPECT_EQ(zomath::curves::savgol_coefficients(20, 20, 30, 0, c.data()), zomath::curves::kSavgolSingular);
  EXPECT_EQ(zomath::curves::savgol_coefficients(20, 20, 3, 4, c.data()), zomath::curves::kSavgolBadShape);
}

TEST(SmoothingReference, SavitzkyGolayFilter) {
  // Every boundary, symmetric and one-sided windows, a window as long as the data, orders up to
  // 10, data offset by 2.5e7: within a few roundings of the data's largest magnitude, 7 at
  // the order-10 end fit (the target is 1e-12).
  const ErrorStats stats = compare("curves/filter_savgol.csv", [](const std::vector<double>& a,
                                                                 const std::vector<double>& y,
                                                                 std::vector<double>& out) {
    return zomath_savitsky_golay(y.data(), out.data(), y.size(), a[1], a[2], a[3], a[4], a[5]);
  });
  EXPECT_LT(stats.worst(), 4e-15) << stats.describe();
}

TEST(SmoothingReference, AdjacentAveraging) {
  // Plain and weighted, every boundary, windows of NANUM among the data: a mean of up to 47
  // values within a few roundings of the data's scale.
  const ErrorStats stats = compare("curves/filter_adjave.csv", [](const std::vector<double>& a,
                                                                 const std::vector<double>& y,
                                                                 std::vector<double>& out) {
    return zomath_adjave_smooth(y.data(), out.data(), y.size(), a[1], a[2], a[3] != 0);
  });
  EXPECT_LT(stats.worst(), 1e-15) << stats.describe();
}

TEST(SmoothingReference, PercentileFilter) {
  // Values of the data or means of two, exact but where the linear pads of mode 4 are rounded.
  const ErrorStats stats = compare("curves/filter_median.csv", [](const std::vector<double>& a,
                                                                 const std::vector<double>& y,
                                                                 std::vector<double>& out) {
    return zomath_median_filter(y.size(), y.data(), out.data(), a[1], a[3], a[2], a[4] != 0);
  });
  EXPECT_LT(stats.worst(), 1e-15) << stats.describe();
}

TEST(SmoothingReference, RunningMeanAndSdWrappingAround) {
  // Windows longer than the data, of one point, of NANUM alone: mean and SD within a rounding.
  std::map<std::pair<unsigned, unsigned>, std::vector<ReferenceRow>> groups;
  for (const ReferenceRow& r : load_reference("curves/filter_circular.csv"))
    groups[{static_cast<unsigned>(r.args[1]), static_cast<unsigned>(r.args[2])}].push_back(r);
  ASSERT_FALSE(groups.empty());
  const std::vector<double>& y = data_sets().at(3);
  ErrorStats stats;
  for (const auto& [key, rows] : groups) {
    std::vector<double> ave(y.size()), sd(y.size());
    EXPECT_EQ(zomath_d_running_ave_circular(y.data(), y.size(), key.first, ave.data(), sd.data(),
                                            key.second),
              static_cast<int>(rows.size() / 2));
    for (const ReferenceRow& r : rows)
      stats.add(r, (r.args[4] != 0 ? sd : ave)[static_cast<std::size_t>(r.args[3])]);
  }
  EXPECT_LT(stats.worst(), 1e-15) << stats.describe();
}

}  // namespace
