// Bin indexing: exact edges belong to the bin they start, whatever the division rounds to.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>

#include "platform/utility.h"
#include "zomath/core.h"

namespace {

using zomath::platform::nice_bin_index;
constexpr double kInf = std::numeric_limits<double>::infinity();

TEST(PlatformUtility, NiceBinIndexPutsEdgesInTheirBin) {
  // Every computed edge k * inc + start must land in bin k, and the double just below it in
  // bin k - 1, for increments that are not exact in binary.
  for (double inc : {0.1, 0.3, 1.0 / 3.0, 7e-5, 2.5e12}) {
    for (double start : {0.0, -1.7, 1e3}) {
      for (int k = -50; k <= 50; ++k) {
        const double edge = k * inc + start;
        ASSERT_EQ(nice_bin_index(edge, start, inc), k) << inc << " " << start << " " << k;
        const double below = std::nextafter(edge, -kInf);
        if (below != (k - 1) * inc + start) {
          ASSERT_EQ(nice_bin_index(below, start, inc), k - 1) << inc << " " << start << " " << k;
        }
      }
    }
  }
}

TEST(PlatformUtility, NiceBinIndexOutsideAndInvalid) {
  EXPECT_EQ(nice_bin_index(-0.5, 0, 1), -1);
  EXPECT_EQ(nice_bin_index(5.5, 0, 1), 5);
  EXPECT_EQ(nice_bin_index(0.5, 0, -1), -1);  // downward bins: (start + inc, start] is bin 0
  EXPECT_EQ(nice_bin_index(-0.5, 0, -1), 0);
  EXPECT_EQ(nice_bin_index(0.0, 0, -1), 0);
  EXPECT_EQ(nice_bin_index(1e300, 0, 1e-300), INT_MAX);
  EXPECT_EQ(nice_bin_index(-1e300, 0, 1e-300), INT_MIN);
  for (double bad : {std::nan(""), kInf, -kInf, NANUM})
    EXPECT_EQ(nice_bin_index(bad, 0, 1), -1);
  EXPECT_EQ(nice_bin_index(1, 0, 0), -1);
  EXPECT_EQ(nice_bin_index(1, 0, std::nan("")), -1);
}

}  // namespace
