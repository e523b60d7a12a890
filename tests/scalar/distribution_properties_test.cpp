// Identities that tie the distribution functions to each other, at points the reference tables
// do not hold: each family reached through another's routine (chi-square as gamma, t^2 as F, the
// binomial tail as a beta tail, noncentral families at zero noncentrality), reflections,
// scale invariance, and quantiles that invert their distribution functions. A fault in one
// routine's choice of tail or branch shows as a broken identity.
#include <gtest/gtest.h>

#include <cmath>
#include <algorithm>
#include <functional>
#include <limits>
#include <random>

#include "platform/distributions/noncentral.h"
#include "platform/distributions/tail.h"
#include "zomath/scalar.h"

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();

// |a - b| within tol relative to |b|.
::testing::AssertionResult RelNear(double a, double b, double tol) {
  if (std::fabs(a - b) <= tol * std::fabs(b)) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << a << " vs " << b << ", relative "
                                       << std::fabs(a - b) / std::fabs(b);
}

double noncentral_t(double t, double df, double delta, zomath::platform::Tail tail) {
  zomath::platform::NagError err;
  return zomath::platform::noncentral_t_probability(t, df, delta, tail, err);
}

TEST(DistributionIdentities, FamiliesReachedThroughEachOther) {
  int e = 0;
  for (int tail : {ZOMATH_TAIL_LOWER, ZOMATH_TAIL_UPPER}) {
    for (double x : {1e-3, 0.7, 4.0, 30.0, 250.0}) {
      for (double df : {0.3, 1.0, 7.0, 60.0}) {
        // Chi-square is gamma with shape df / 2 and scale 2.
        EXPECT_TRUE(RelNear(chi2cdf(x, df, tail, &e), gamcdf(x, df / 2, 2, tail, &e), 1e-15));
        // t^2 with df degrees of freedom is F(1, df); the two-sided t is the F upper tail.
        if (tail == ZOMATH_TAIL_UPPER) {
          EXPECT_TRUE(RelNear(fcdf(x * x, 1, df, tail, &e),
                              tcdf(x, df, ZOMATH_TAIL_TWO_SIDED, &e), 2e-14));
        }
        // Noncentral at zero noncentrality is central.
        EXPECT_TRUE(RelNear(ncchi2cdf(x, df, 0, &e), chi2cdf(x, df, ZOMATH_TAIL_LOWER, &e), 1e-14));
        EXPECT_TRUE(RelNear(ncfcdf(x, df, 5, 0, &e), fcdf(x, df, 5, ZOMATH_TAIL_LOWER, &e), 1e-14));
      }
    }
  }
  for (double t : {-40.0, -2.5, 0.3, 9.0}) {
    for (double df : {0.8, 3.0, 45.0}) {
      EXPECT_TRUE(RelNear(nctcdf(t, df, 0, &e, 100), tcdf(t, df, ZOMATH_TAIL_LOWER, &e), 1e-13));
    }
  }
  // The binomial lower tail is the beta upper tail: P(X <= k) = 1 - I_p(k + 1, n - k).
  for (int n : {8, 300, 50000}) {
    for (double p : {0.01, 0.4, 0.93}) {
      const int k = static_cast<int>(n * p * 0.8);
      EXPECT_TRUE(RelNear(binocdf(k, n, p, ZOMATH_TAIL_LOWER, &e),
                          betacdf(p, k + 1, n - k, ZOMATH_TAIL_UPPER, &e), 1e-13));
    }
  }
  EXPECT_EQ(e, 0);
}

TEST(DistributionIdentities, ReflectionsAndScale) {
  int e = 0;
  for (double x : {0.002, 0.31, 0.5, 0.97}) {
    for (double a : {0.05, 2.0, 300.0}) {
      // 1 - X is Beta(b, a): the tails exchange.
      EXPECT_TRUE(RelNear(betacdf(x, a, 3.5, ZOMATH_TAIL_LOWER, &e),
                          betacdf(1 - x, 3.5, a, ZOMATH_TAIL_UPPER, &e), 1e-13));
    }
  }
  for (double t : {0.01, 1.7, 25.0}) {
    for (double df : {0.5, 12.0, 1e9}) {
      EXPECT_EQ(tcdf(-t, df, ZOMATH_TAIL_LOWER, &e), tcdf(t, df, ZOMATH_TAIL_UPPER, &e));
    }
    // -T(df, delta) is T(df, -delta).
    EXPECT_TRUE(RelNear(noncentral_t(-t, 6, 1.5, zomath::platform::Tail::Lower),
                        noncentral_t(t, 6, -1.5, zomath::platform::Tail::Upper), 1e-13));
  }
  // 1 / F(df1, df2) is F(df2, df1).
  for (double f : {0.01, 0.9, 40.0}) {
    EXPECT_TRUE(RelNear(fcdf(f, 3, 17, ZOMATH_TAIL_LOWER, &e),
                        fcdf(1 / f, 17, 3, ZOMATH_TAIL_UPPER, &e), 1e-14));
  }
  // The gamma scale enters only as x / b: the same probability from 1e-9 to 1e9.
  for (double scale : {1e-9, 1e-3, 1.0, 1e6, 1e9}) {
    EXPECT_TRUE(RelNear(gamcdf(3.7 * scale, 2.2, scale, ZOMATH_TAIL_UPPER, &e),
                        gamcdf(3.7, 2.2, 1, ZOMATH_TAIL_UPPER, &e), 1e-15));
    EXPECT_TRUE(RelNear(gampdf(3.7 * scale, 2.2, scale, &e) * scale, gampdf(3.7, 2.2, 1, &e), 1e-15));
    EXPECT_TRUE(RelNear(gaminv(0.01, 2.2, scale, &e) / scale, gaminv(0.01, 2.2, 1, &e), 1e-15));
  }
  EXPECT_EQ(e, 0);
}

// Quantiles invert their distribution functions at random points over wide parameter ranges:
// the probability of the quantile comes back to p within 1e-13 plus what rounding the quantile
// to a double moves it by: a relative change of 2.2e-16 in x, or for the beta an absolute one in
// x near 1, where the rounding is of 1 - x.
TEST(DistributionIdentities, QuantilesInvertAtRandomPoints) {
  std::mt19937_64 rng(2024);
  std::uniform_real_distribution<double> logP(-60, 0), logShape(-2, 6);
  // Quantiles at the ends of the doubles (0, 1 for the beta, or beyond 1e300) are skipped: the
  // nearest double there does not carry the probability.
  auto inverts = [](const std::function<double(double)>& tail, double x, double target,
                    bool unitInterval = false) {
    if (!(x > 1e-300 && x < 1e300) || x == 1) return ::testing::AssertionSuccess();
    const double span = unitInterval ? std::min(x, 1 - x) : x;  // what a rounding of x is against
    const double t = tail(x);
    const double dx = std::max(1e-7 * span, 64 * (std::nextafter(x, 2 * x) - x));  // a step x sees
    const double sensitivity = std::fabs(tail(x - dx) - t) / (std::fabs(t) * dx);  // |T'| / T
    return RelNear(t, target, 1e-13 + sensitivity * 2.2e-16 * x);
  };
  for (int i = 0; i < 400; ++i) {
    const bool upper = i % 2 == 1;  // p taken as 1 - p; at least 1e-15 so that 1 - p < 1
    const double p = std::pow(10.0, upper ? logP(rng) / 4 : logP(rng));
    const double a = std::pow(10.0, logShape(rng)), b = std::pow(10.0, logShape(rng));
    const double prob = upper ? 1 - p : p, target = upper ? 1 - prob : prob;
    const int tail = upper ? ZOMATH_TAIL_UPPER : ZOMATH_TAIL_LOWER;
    int e = 0;
    EXPECT_TRUE(inverts([&](double x) { return gamcdf(x, a, 1, tail, &e); }, gaminv(prob, a, 1, &e), target))
        << prob << " " << a;
    EXPECT_TRUE(inverts([&](double x) { return betacdf(x, a, b, tail, &e); }, betainv(prob, a, b, &e), target, true))
        << prob << " " << a << " " << b;
    EXPECT_TRUE(inverts([&](double x) { return fcdf(x, a, b, tail, &e); }, finv(prob, a, b, &e), target))
        << prob << " " << a << " " << b;
    const double t = tinv(prob, a, ZOMATH_TAIL_LOWER, &e);
    EXPECT_TRUE(inverts([&](double x) { return tcdf(x, a, tail, &e); }, t, target)) << prob << " " << a;
    ASSERT_EQ(e, 0) << prob << " " << a << " " << b;
  }
}

// The platform routines give the upper tails the exports do not offer; they add to one with the
// lower tails and keep their digits where the lower tail is 1 to rounding.
TEST(DistributionIdentities, NoncentralUpperTails) {
  using zomath::platform::Tail;
  zomath::platform::NagError err;
  for (double x : {0.5, 8.0, 60.0}) {
    const double lower = zomath::platform::noncentral_chi_square_probability(x, 4, 9, Tail::Lower, err);
    const double upper = zomath::platform::noncentral_chi_square_probability(x, 4, 9, Tail::Upper, err);
    EXPECT_NEAR(lower + upper, 1, 4e-16);
  }
  const double farUpper = zomath::platform::noncentral_chi_square_probability(400, 4, 9, Tail::Upper, err);
  EXPECT_GT(farUpper, 0);
  EXPECT_LT(farUpper, 1e-60);
  EXPECT_EQ(noncentral_t(kInf, 5, 2, Tail::Upper), 0.0);
  EXPECT_EQ(err.code, 0);
}

}  // namespace
