// The distribution exports' conventions: what each tail code selects, the failure codes and the
// NANUM they return, missing arguments, the densities' -110, the F inverse's recovery from its
// accuracy failure, and the utility module's probability functions.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <vector>

#include "platform/distributions/fisher_f.h"
#include "platform/probability_utility.h"
#include "platform/utility.h"
#include "zomath/scalar.h"

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
const double kNaN = std::nan("");

// A probability as a function of the tail code alone.
using ByTail = std::function<double(int)>;

// Each tail code picks the documented combination of the two one-sided probabilities, which
// themselves add to one; codes outside 0..5 are the lower tail.
TEST(DistributionTails, CodesSelectTheDocumentedProbability) {
  int e = 0;
  const std::vector<std::pair<const char*, ByTail>> functions = {
      {"normcdf", [&](int c) { return normcdf(-1.3, c, &e); }},
      {"tcdf", [&](int c) { return tcdf(2.2, 3.5, c, &e); }},
      {"chi2cdf", [&](int c) { return chi2cdf(0.8, 4, c, &e); }},
      {"fcdf", [&](int c) { return fcdf(3.1, 2, 9, c, &e); }},
      {"betacdf", [&](int c) { return betacdf(0.2, 1.5, 4, c, &e); }},
      {"gamcdf", [&](int c) { return gamcdf(7.5, 2, 3, c, &e); }},
  };
  for (const auto& [name, f] : functions) {
    const double lower = f(ZOMATH_TAIL_LOWER), upper = f(ZOMATH_TAIL_UPPER);
    const double smaller = std::min(lower, upper);
    EXPECT_NEAR(lower + upper, 1.0, 2e-16) << name;
    EXPECT_NEAR(f(ZOMATH_TAIL_TWO_SIDED), 2 * smaller, 4e-16) << name;
    EXPECT_NEAR(f(ZOMATH_TAIL_CENTRAL), 1 - 2 * smaller, 4e-16) << name;
    EXPECT_EQ(f(ZOMATH_TAIL_NEARER), smaller) << name;
    EXPECT_EQ(f(ZOMATH_TAIL_FARTHER), std::max(lower, upper)) << name;
    EXPECT_EQ(f(6), lower) << name;
    EXPECT_EQ(f(-1), lower) << name;
    EXPECT_EQ(e, 0) << name;
  }
}

// tinv inverts tcdf for every tail code, and the named table's code 6 is the lower tail.
TEST(DistributionTails, TInverseInvertsEachTail) {
  struct Case { int tail; double p; };
  const Case cases[] = {{ZOMATH_TAIL_LOWER, 0.01}, {ZOMATH_TAIL_LOWER, 0.6}, {ZOMATH_TAIL_UPPER, 0.3},
                        {ZOMATH_TAIL_TWO_SIDED, 0.05}, {ZOMATH_TAIL_TWO_SIDED, 0.9},
                        {ZOMATH_TAIL_CENTRAL, 0.95}, {ZOMATH_TAIL_CENTRAL, 1e-9},
                        {ZOMATH_TAIL_NEARER, 0.4}, {ZOMATH_TAIL_FARTHER, 0.999}};
  for (double df : {0.7, 4.0, 250.0, kInf}) {
    for (const Case& c : cases) {
      int e = -1;
      const double t = tinv(c.p, df, c.tail, &e);
      ASSERT_EQ(e, 0) << c.tail << " " << c.p;
      EXPECT_NEAR(tcdf(t, df, c.tail, &e), c.p, 1e-14 * c.p) << c.tail << " " << c.p << " " << df;
      if (c.tail != ZOMATH_TAIL_LOWER && c.tail != ZOMATH_TAIL_UPPER) {
        EXPECT_GE(t, 0);
      }
    }
  }
  int e;
  EXPECT_EQ(tinv(0.2, 7, 6, &e), tinv(0.2, 7, ZOMATH_TAIL_LOWER, &e));
}

// The counts' codes: 1 upper, 3 point, anything else lower; the point is the step of the lower.
TEST(DistributionTails, CountsPickLowerUpperOrPoint) {
  int e = 0;
  const std::vector<std::pair<const char*, std::function<double(int, int)>>> functions = {
      {"binocdf", [&](int k, int c) { return binocdf(k, 40, 0.3, c, &e); }},
      {"hygecdf", [&](int k, int c) { return hygecdf(k, 12, 50, 20, c, &e); }},
      {"poisscdf", [&](int k, int c) { return poisscdf(k, 6.5, c, &e); }},
  };
  for (const auto& [name, f] : functions) {
    for (int k : {3, 5, 9}) {
      EXPECT_NEAR(f(k, ZOMATH_TAIL_LOWER) + f(k, ZOMATH_TAIL_UPPER), 1.0, 3e-16) << name << k;
      EXPECT_NEAR(f(k, ZOMATH_TAIL_POINT), f(k, 6) - f(k - 1, ZOMATH_TAIL_LOWER), 1e-15) << name << k;
    }
    EXPECT_EQ(f(-1, ZOMATH_TAIL_LOWER), 0.0) << name;
    EXPECT_EQ(f(-1, ZOMATH_TAIL_UPPER), 1.0) << name;
    EXPECT_EQ(f(1000, ZOMATH_TAIL_LOWER), 1.0) << name;
    EXPECT_EQ(f(1000, ZOMATH_TAIL_POINT), 0.0) << name;
    EXPECT_EQ(e, 0) << name;
  }
}

struct Failure {
  const char* what;
  std::function<double(int*)> call;
  int code;
};

TEST(DistributionCodes, BadArgumentsReturnNanumAndTheirCode) {
  const int arg = ZOMATH_DIST_BAD_ARGUMENT, par = ZOMATH_DIST_BAD_PARAMETER;
  const Failure failures[] = {
      {"normcdf NaN", [](int* e) { return normcdf(kNaN, 2, e); }, arg},
      {"tcdf df 0", [](int* e) { return tcdf(1, 0, 2, e); }, par},
      {"tcdf df NaN", [](int* e) { return tcdf(1, kNaN, 2, e); }, par},
      {"tcdf t NaN", [](int* e) { return tcdf(kNaN, 3, 2, e); }, arg},
      {"chi2cdf df -1", [](int* e) { return chi2cdf(1, -1, 2, e); }, par},
      {"fcdf ddf infinite", [](int* e) { return fcdf(1, 3, kInf, 2, e); }, par},
      {"betacdf a 0", [](int* e) { return betacdf(0.5, 0, 1, 2, e); }, par},
      {"gamcdf scale 0", [](int* e) { return gamcdf(1, 1, 0, 2, e); }, par},
      {"srangecdf v 0.5", [](int* e) { return srangecdf(3, 0.5, 3, e); }, par},
      {"srangecdf one group", [](int* e) { return srangecdf(3, 10, 1, e); }, par},
      {"bivarnormcdf corr 1.5", [](int* e) { return bivarnormcdf(0, 0, 1.5, e); }, par},
      {"ncbetacdf lambda -1", [](int* e) { return ncbetacdf(0.5, 1, 1, -1, e); }, par},
      {"ncchi2cdf lambda infinite", [](int* e) { return ncchi2cdf(1, 2, kInf, e); }, par},
      {"ncfcdf df1 0", [](int* e) { return ncfcdf(1, 0, 1, 1, e); }, par},
      {"nctcdf df 0", [](int* e) { return nctcdf(1, 0, 1, e, 100); }, par},
      {"nctcdf maxiter 0", [](int* e) { return nctcdf(1, 3, 1, e, 0); }, par},
      {"binocdf n -1", [](int* e) { return binocdf(1, -1, 0.5, 2, e); }, par},
      {"binocdf p 1.5", [](int* e) { return binocdf(1, 3, 1.5, 2, e); }, par},
      {"hygecdf m above n", [](int* e) { return hygecdf(1, 5, 3, 2, 2, e); }, par},
      {"poisscdf lambda 0", [](int* e) { return poisscdf(1, 0, 2, e); }, par},
      {"norminv 0", [](int* e) { return norminv(0, e); }, arg},
      {"norminv 1", [](int* e) { return norminv(1, e); }, arg},
      {"tinv p 0", [](int* e) { return tinv(0, 3, 2, e); }, arg},
      {"tinv nearer tail above 1/2", [](int* e) { return tinv(0.7, 3, ZOMATH_TAIL_NEARER, e); }, arg},
      {"chi2inv p 1", [](int* e) { return chi2inv(1, 3, e); }, arg},
      {"chi2inv df -1", [](int* e) { return chi2inv(0.5, -1, e); }, par},
      {"finv p -0.1", [](int* e) { return finv(-0.1, 3, 4, e); }, arg},
      {"betainv p 1.5", [](int* e) { return betainv(1.5, 1, 1, e); }, arg},
      {"gaminv shape 0", [](int* e) { return gaminv(0.5, 0, 1, e); }, par},
      {"srangeinv p 1", [](int* e) { return srangeinv(1, 10, 3, e); }, arg},
  };
  for (const Failure& f : failures) {
    int e = 0;
    EXPECT_EQ(f.call(&e), NANUM) << f.what;
    EXPECT_EQ(e, f.code) << f.what;
    EXPECT_EQ(f.call(nullptr), NANUM) << f.what;
  }
}

TEST(DistributionCodes, NanumArgumentsGiveNanumWithoutFailure) {
  const std::function<double(int*)> calls[] = {
      [](int* e) { return normcdf(NANUM, 2, e); },
      [](int* e) { return tcdf(1, NANUM, 2, e); },
      [](int* e) { return fcdf(1, 2, NANUM, 2, e); },
      [](int* e) { return bivarnormcdf(0, NANUM, 0.5, e); },
      [](int* e) { return nctcdf(NANUM, 3, 1, e, 100); },
      [](int* e) { return poisscdf(3, NANUM, 2, e); },
      [](int* e) { return tinv(0.3, NANUM, 2, e); },
      [](int* e) { return finv(NANUM, 3, 4, e); },
      [](int* e) { return normpdf(NANUM, 0, 1, e); },
      [](int* e) { return gampdf(1, NANUM, 1, e); },
      [](int* e) { return poisspdf(3, NANUM, e); },
      [](int* e) { return wblcdf(NANUM, 1, 1, e); },
  };
  for (const auto& call : calls) {
    int e = -1;
    EXPECT_EQ(call(&e), NANUM);
    EXPECT_EQ(e, 0);
  }
}

TEST(DistributionCodes, DensitiesRejectBadParametersWithMinus110) {
  const std::function<double(int*)> calls[] = {
      [](int* e) { return normpdf(0.5, 0, 0, e); },  // sigma 0
      [](int* e) { return normpdf(0.5, 0, kNaN, e); },
      [](int* e) { return lognpdf(0, 0, 1, e); },     // x must be positive
      [](int* e) { return exppdf(-1, 1, e); },
      [](int* e) { return exppdf(1, 0, e); },
      [](int* e) { return cauchypdf(0, 0, 0, e); },
      [](int* e) { return lappdf(0, 0, -1, e); },
      [](int* e) { return gampdf(-1, 1, 1, e); },
      [](int* e) { return gampdf(1, 0, 1, e); },
      [](int* e) { return poisspdf(-1, 1, e); },
      [](int* e) { return poisspdf(1, 0, e); },
      [](int* e) { return wblpdf(1, 0, 1, e); },
      [](int* e) { return normpdf(kInf, kInf, 1, e); },  // no value: infinity minus infinity
  };
  for (const auto& call : calls) {
    int e = 0;
    EXPECT_EQ(call(&e), NANUM);
    EXPECT_EQ(e, ZOMATH_ERR_DENSITY_PARAM);
  }
  int e = -1;
  EXPECT_EQ(betapdf(0.5, 0, 1, &e), NANUM);
  EXPECT_EQ(e, ZOMATH_DIST_BAD_PARAMETER);  // the beta routine's own code
}

// Values at the edges of their domains, with no failure reported.
TEST(DistributionCodes, EdgeValues) {
  int e = -1;
  EXPECT_EQ(wblcdf(-2, 2, 3, &e), 0.0);
  EXPECT_EQ(e, 0);
  EXPECT_EQ(wblpdf(-1, 1, 1, &e), 0.0);
  EXPECT_EQ(wblpdf(0, 1, 0.5, &e), kInf);
  EXPECT_EQ(wblinv(1, 2, 3, &e), kInf);
  EXPECT_EQ(gampdf(0, 1, 4, &e), 0.25);
  EXPECT_EQ(betapdf(1.5, 2, 3, &e), 0.0);
  EXPECT_EQ(normpdf(kInf, 0, 1, &e), 0.0);
  EXPECT_EQ(e, 0);
  // The Weibull functions leave the code at 0 when they refuse a parameter.
  e = -1;
  EXPECT_EQ(wblcdf(1, -1, 1, &e), NANUM);
  EXPECT_EQ(e, 0);
  EXPECT_EQ(wblinv(1.5, 1, 1, &e), NANUM);
  EXPECT_EQ(e, 0);
  EXPECT_EQ(srangecdf(-1, 10, 3, &e), 0.0);
  EXPECT_EQ(chi2inv(0, 3, &e), 0.0);
  EXPECT_EQ(betainv(1, 2, 3, &e), 1.0);
  EXPECT_EQ(normcdf(-kInf, 2, &e), 0.0);
  EXPECT_EQ(e, 0);
}

// poisspdf changes form at k = 100; the ratio of neighbours is lambda / k on both sides.
TEST(DistributionDensities, PoissonIsContinuousAcrossItsSwitch) {
  for (double lambda : {30.0, 99.5, 100.0, 140.0, 650.0}) {
    int e;
    for (int k : {99, 100}) {
      const double ratio = poisspdf(k + 1, lambda, &e) / poisspdf(k, lambda, &e);
      EXPECT_NEAR(ratio, lambda / (k + 1), 4e-16 * lambda / (k + 1)) << lambda << " " << k;
    }
  }
}

// At p = 0.5 with 10 and 10 degrees of freedom Boost's inversion gives up, so the F quantile
// reports its accuracy failure; finv recovers the quantile (1: F(10, 10) is symmetric about 1 in
// ln F) through the F table routine and reports nothing. With 10.5 degrees of freedom the
// recovery is the table's value for the truncated 10.
TEST(DistributionInverse, FInverseRecoversFromItsAccuracyFailure) {
  zomath::platform::NagError err;
  zomath::platform::f_quantile(0.5, 10, 10, zomath::platform::Tail::Lower, err);
  ASSERT_EQ(err.code, zomath::platform::kFQuantileInaccurate);
  int e = -1;
  EXPECT_NEAR(finv(0.5, 10, 10, &e), 1.0, 2e-16);
  EXPECT_EQ(e, 0);
  EXPECT_EQ(finv(0.5, 10, 10, &e), zomath::platform::Ftable(0.5, 10, 10));
  // Where the inversion succeeds, finv is the F quantile itself.
  zomath::platform::NagError ok;
  const double q = zomath::platform::f_quantile(0.95, 10, 10, zomath::platform::Tail::Lower, ok);
  ASSERT_EQ(ok.code, 0);
  EXPECT_EQ(finv(0.95, 10, 10, &e), q);
}

// The utility module's functions against the exports they share routines with, a published
// example, their domains, and the table functions against the quantiles.
TEST(ProbabilityUtility, FunctionsAndDomains) {
  namespace u = zomath::platform;
  int e;
  // A one-sample t test on {0, 0.1, ..., 8.1} against 4 has t = -1.2848 with 9 degrees of
  // freedom and two-sided probability 0.23094.
  EXPECT_NEAR(u::incbeta(9 / (1.2848 * 1.2848 + 9), 4.5, 0.5), 0.23094, 5e-6);
  EXPECT_EQ(u::incbeta(0.3, 2, 5), betacdf(0.3, 2, 5, ZOMATH_TAIL_LOWER, &e));
  EXPECT_EQ(u::invt(-1.2848, 9), tcdf(-1.2848, 9, ZOMATH_TAIL_LOWER, &e));
  EXPECT_EQ(u::invchisq(3.5, 4), chi2cdf(3.5, 4, ZOMATH_TAIL_LOWER, &e));
  EXPECT_EQ(u::invf(2.5, 3, 12), fcdf(2.5, 3, 12, ZOMATH_TAIL_LOWER, &e));
  EXPECT_NEAR(u::incgamma(2.5, 3), gamcdf(2.5, 3, 1, ZOMATH_TAIL_LOWER, &e), 2e-16);
  EXPECT_EQ(u::tTable(0.975, 12), tinv(0.975, 12, ZOMATH_TAIL_LOWER, &e));
  EXPECT_NEAR(u::Ftable(0.95, 3, 12), finv(0.95, 3, 12, &e), 4e-16 * 3.49);
  EXPECT_NEAR(u::invf(u::Ftable(1e-30, 7, 2), 7, 2), 1e-30, 1e-43);
  EXPECT_NEAR(u::inverf(std::erf(0.3)), 0.3, 1e-16);
  for (double v : {u::incbeta(1.5, 1, 1), u::incbeta(0.5, 0, 1), u::incgamma(-1, 2), u::invchisq(1, 0),
                   u::invt(kNaN, 3), u::invf(NANUM, 2, 3), u::inverf(1), u::Ftable(1, 2, 3),
                   u::tTable(0.5, 0)})
    EXPECT_EQ(v, NANUM);
}

// Near equality under a relative tolerance: the same at every scale, 0 near only itself.
TEST(ProbabilityUtility, CompareDoubles) {
  using zomath::platform::compare_doubles;
  struct Case { double a, b; char op; bool expected; };
  const Case cases[] = {
      {1.0, 1.0 + 1e-13, '=', true},       {1.0, 1.0 + 1e-11, '=', false},
      {1e-300, 1e-300 * (1 + 1e-13), '=', true}, {1e300, 1e300 * (1 + 1e-11), '=', false},
      {0.0, 1e-300, '=', false},           {0.0, -0.0, '=', true},
      {1.0, 1.0 + 1e-11, '!', true},       {1.0, 1.0, '!', false},
      {kInf, kInf, '=', true},             {kNaN, kNaN, '=', false},
      {kNaN, 1.0, '!', true},              {1.0, 1.0, '<', false},
  };
  for (const Case& c : cases)
    EXPECT_EQ(compare_doubles(c.a, c.b, c.op), c.expected) << c.a << " " << c.op << " " << c.b;
  EXPECT_TRUE(compare_doubles(100, 101, '=', 0.01));
  EXPECT_FALSE(compare_doubles(1, std::nextafter(1.0, 2.0), '=', 0));
}

}  // namespace
