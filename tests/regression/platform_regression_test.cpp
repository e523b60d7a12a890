// The platform's regression routines: the straight line's codes and its agreement with the
// multiple regression.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "platform/regression.h"
#include "zomath/core.h"

namespace {

using namespace zomath::platform;

int line(Mean mean, std::vector<double> x, std::vector<double> y, std::vector<double> w, SimpleFit& f) {
  NagError fail;
  return simple_regression(mean, static_cast<int>(x.size()), x.data(), y.data(),
                           w.empty() ? nullptr : w.data(), f, fail);
}

// 462 and 467 send the caller to its recovery with nothing estimated; 463 lets it go on.
TEST(SimpleRegression, Codes) {
  SimpleFit f;
  struct Row {
    Mean mean;
    std::vector<double> x, y, w;
    int code;
  } rows[] = {
      {Mean::Include, {1, 2}, {1, 3}, {}, kSimpleNoResidualDof},
      {Mean::Include, {1, 2, 3}, {1, 3, 4}, {1, 0, 1}, kSimpleNoResidualDof},
      {Mean::Zero, {2}, {3}, {}, kSimpleNoResidualDof},
      {Mean::Include, {2, 2, 2, 2}, {1, 3, 4, 5}, {}, kSimpleNoSpread},
      {Mean::Include, {2, 2, 9, 2}, {1, 3, 4, 5}, {1, 1, 0, 1}, kSimpleNoSpread},
      {Mean::Zero, {0, 0, 0}, {1, 3, 4}, {}, kSimpleNoSpread},
      {Mean::Include, {1, 2, 3}, {1, 3, 4}, {1, -1, 1}, kRegressionBadArgument},
      {Mean::Include, {1, NAN, 3}, {1, 3, 4}, {}, kRegressionNotFinite},
  };
  for (const Row& r : rows) {
    EXPECT_EQ(line(r.mean, r.x, r.y, r.w, f), r.code);
    EXPECT_TRUE(f.a == NANUM && f.b == NANUM && f.seB == NANUM);
  }
  ASSERT_EQ(line(Mean::Include, {1, 2, 4, 8}, {3, 5, 9, 17}, {}, f), kSimpleExactFit);
  EXPECT_TRUE(f.a == 1 && f.b == 2 && f.seB == 0 && f.rsq == 1 && f.df == 2);
}

// The line and the multiple regression with one column are two computations of one fit, with
// weights (zero ones included), about the mean and through the origin.
TEST(SimpleRegression, AgreesWithTheMultipleRegression) {
  std::vector<double> x, y, w;
  for (int i = 0; i < 25; ++i) {
    x.push_back(100 + 3 * std::sin(0.7 * i));
    y.push_back(2 - 0.4 * x.back() + std::cos(1.9 * i));
    w.push_back(i % 5 == 0 ? 0.0 : 0.5 + (i % 3));
  }
  for (Mean mean : {Mean::Include, Mean::Zero}) {
    SimpleFit f;
    ASSERT_EQ(line(mean, x, y, w, f), 0);
    const int ip = mean == Mean::Include ? 2 : 1;
    double b[2], se[2];
    RegressionOutputs out;
    out.b = b;
    out.se = se;
    RegressionSummary s;
    NagError fail;
    ASSERT_EQ(multiple_regression(mean, 25, 1, x.data(), 1, y.data(), w.data(), 1e-20, out, s, fail), 0);
    EXPECT_EQ(s.df, f.df);
    EXPECT_NEAR(s.rss, f.rss, 1e-12 * f.rss);
    EXPECT_NEAR(b[ip - 1], f.b, 1e-12 * std::fabs(f.b));
    EXPECT_NEAR(se[ip - 1], f.seB, 1e-12 * f.seB);
    if (ip == 2) {
      EXPECT_NEAR(b[0], f.a, 1e-12 * std::fabs(f.a));
      EXPECT_NEAR(se[0], f.seA, 1e-12 * f.seA);
    }
  }
}

}  // namespace
