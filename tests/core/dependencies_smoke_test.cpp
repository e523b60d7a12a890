// The numerical dependencies are present and linkable: one call into each.
#include <gtest/gtest.h>

#include <boost/math/special_functions/gamma.hpp>
#include <cmath>
#include <fftw3.h>
#include <lapacke.h>

TEST(Dependencies, BoostMath) { EXPECT_DOUBLE_EQ(boost::math::tgamma(5.0), 24.0); }

TEST(Dependencies, Lapacke) {
  double a[4] = {4, 2, 2, 3}, b[2] = {2, 1};  // solve [[4,2],[2,3]] x = [2,1]
  lapack_int ipiv[2];
  ASSERT_EQ(LAPACKE_dgesv(LAPACK_ROW_MAJOR, 2, 1, a, 2, ipiv, b, 1), 0);
  EXPECT_NEAR(b[0], 0.5, 1e-15);
  EXPECT_NEAR(b[1], 0.0, 1e-15);
}

TEST(Dependencies, Fftw) {
  fftw_complex in[4] = {{1, 0}, {1, 0}, {1, 0}, {1, 0}}, out[4];
  fftw_plan plan = fftw_plan_dft_1d(4, in, out, FFTW_FORWARD, FFTW_ESTIMATE);
  fftw_execute(plan);
  fftw_destroy_plan(plan);
  EXPECT_DOUBLE_EQ(out[0][0], 4.0);
  EXPECT_DOUBLE_EQ(std::hypot(out[1][0], out[1][1]), 0.0);
}
