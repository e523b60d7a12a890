#include <gtest/gtest.h>

#include <cmath>

#include "zomath/scalar.h"

TEST(Angles, DegreesAndRadians) {
  EXPECT_DOUBLE_EQ(rad2deg(std::acos(-1.0)), 180.0);
  EXPECT_DOUBLE_EQ(deg2rad(90.0), std::acos(-1.0) / 2);
  EXPECT_DOUBLE_EQ(rad2deg(deg2rad(-37.5)), -37.5);
  EXPECT_EQ(rad2deg(NANUM), NANUM);
  EXPECT_EQ(deg2rad(NANUM), NANUM);
  EXPECT_TRUE(std::isnan(rad2deg(std::nan(""))));
}
