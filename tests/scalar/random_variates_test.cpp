// Random variates: the own generator against an independent computation of its recurrence, the
// array exports against their distributions by goodness-of-fit statistics, fresh seeding, the
// multivariate normal's covariance and the documented codes.
//
// The goodness-of-fit tests run at a significance of 1e-6 each: a correct generator fails one
// of them about once in ten thousand runs, while a wrong parameter (a variance read as a
// deviation, a scale as a rate) moves the statistic far past the bound at these sample sizes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>
#include <vector>

#include "zomath/scalar.h"

namespace {

constexpr int kSamples = 20000;
constexpr double kAlpha = 1e-6;

// ---- The own generator, computed here from its definition ----

struct Reference {
  long x1 = 0, x2 = 0, x3 = 0;
  double table[97] = {};

  double value() const { return (x1 + x2 * 7.437377283274826e-06) * 3.858024691358025e-06; }
  void seed(long s) {
    x1 = (7141 * ((54773 - s) % 259200) + 54773) % 259200;
    x2 = x1 % 134456;
    x1 = (x1 * 7141 + 54773) % 259200;
    x3 = x1 % 243000;
    for (double& t : table) {
      x1 = (x1 * 7141 + 54773) % 259200;
      x2 = (x2 * 8121 + 28411) % 134456;
      t = value();
    }
  }
  double next() {
    x1 = (x1 * 7141 + 54773) % 259200;
    x2 = (x2 * 8121 + 28411) % 134456;
    x3 = (x3 * 4561 + 51349) % 243000;
    const long j = 97 * x3 / 243000;
    const double v = table[j];
    table[j] = value();
    return v;
  }
};

TEST(OwnGenerator, StreamFromASeedFollowsTheRecurrence) {
  for (int seed : {1, 5, 12345, 2147483647}) {
    Reference ref;
    ref.seed(-static_cast<long>(seed));
    ref.next();  // the seeding call's own step
    EXPECT_EQ(zomath_draw(seed), 0.0);
    for (int i = 0; i < 5000; ++i) {
      const double v = zomath_draw(0);
      ASSERT_EQ(v, ref.next()) << "seed " << seed << ", draw " << i;
      ASSERT_GT(v, 0.0);
      ASSERT_LT(v, 1.0);
    }
  }
}

TEST(OwnGenerator, UniformRandomNumberSeedsAndMovesOnByTen) {
  Reference ref;
  ref.seed(-5);
  for (int i = 0; i < 11; ++i) ref.next();  // the seeding call's step and ten dropped draws
  EXPECT_EQ(zomath_uniform_random_number(5), 0.0);
  std::vector<double> first, second;
  for (int i = 0; i < 50; ++i) first.push_back(zomath_draw(0));
  EXPECT_EQ(first[0], ref.next());
  // The same seed gives the same stream again.
  EXPECT_EQ(zomath_uniform_random_number(5), 0.0);
  for (int i = 0; i < 50; ++i) second.push_back(zomath_draw(0));
  EXPECT_EQ(first, second);
  // Unseeded, it returns the next draw and drops the ten after it.
  for (int i = 1; i < 50; ++i) ref.next();
  const double expected = ref.next();
  for (int i = 0; i < 10; ++i) ref.next();
  EXPECT_EQ(zomath_uniform_random_number(0), expected);
  EXPECT_EQ(zomath_uniform_random_number(-4), ref.next());
}

TEST(OwnGenerator, NextSeedsFromANegativeIndexAndResetsIt) {
  Reference ref;
  ref.seed(-7);
  int idum = -7;
  EXPECT_EQ(zomath_next(&idum), ref.next());
  EXPECT_EQ(idum, 1);
  EXPECT_EQ(zomath_next(&idum), ref.next());
  // A large positive index on a seeded generator just draws; INT_MIN seeds without overflow.
  idum = 1000000;
  EXPECT_EQ(zomath_next(&idum), ref.next());
  idum = -2147483647 - 1;
  const double v = zomath_next(&idum);
  EXPECT_GT(v, 0.0);
  EXPECT_LT(v, 1.0);
  EXPECT_EQ(zomath_next(nullptr), NANUM);
}

// ---- Goodness of fit of the array exports ----

double normal_cdf(double z) { return 0.5 * std::erfc(-z / std::sqrt(2.0)); }

// Kolmogorov-Smirnov: sqrt(n) D with Stephens' small-sample factor, against the asymptotic
// bound sqrt(-ln(alpha / 2) / 2) of the Kolmogorov distribution.
double ks_statistic(std::vector<double> x, const std::function<double(double)>& cdf) {
  std::sort(x.begin(), x.end());
  const double n = static_cast<double>(x.size());
  double d = 0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    const double f = cdf(x[i]);
    d = std::max({d, f - i / n, (i + 1) / n - f});
  }
  const double rn = std::sqrt(n);
  return (rn + 0.12 + 0.11 / rn) * d;
}
const double kKsBound = std::sqrt(-0.5 * std::log(kAlpha / 2));

struct ContinuousCase {
  const char* what;
  std::function<int(double*, int)> draw;
  std::function<double(double)> cdf;
};

TEST(RandomVariates, ContinuousSamplesFitTheirDistributions) {
  const double pi = 3.14159265358979323846;
  const ContinuousCase cases[] = {
      {"normal mean 3 variance 4", [](double* o, int n) { return normrnd(o, n, 3, 4); },
       [](double x) { return normal_cdf((x - 3) / 2); }},
      {"normal mean -1000 variance 0.01", [](double* o, int n) { return normrnd(o, n, -1e3, 0.01); },
       [](double x) { return normal_cdf((x + 1e3) / 0.1); }},
      {"uniform [-2, 5)", [](double* o, int n) { return unifrnd(o, n, -2, 5); },
       [](double x) { return std::clamp((x + 2) / 7, 0.0, 1.0); }},
      {"uniform [1e6, 1e6 + 1)", [](double* o, int n) { return unifrnd(o, n, 1e6, 1e6 + 1); },
       [](double x) { return std::clamp(x - 1e6, 0.0, 1.0); }},
      {"beta 2, 5", [](double* o, int n) { return betarnd(o, n, 2, 5); },
       [](double x) { return betacdf(x, 2, 5, 2, nullptr); }},
      {"beta 0.5, 0.5", [](double* o, int n) { return betarnd(o, n, 0.5, 0.5); },
       [pi](double x) { return 2 / pi * std::asin(std::sqrt(x)); }},
      // Shapes below 1 take the logarithmic path. (Smaller b would put a visible share of the
      // mass within rounding of 1, where the values become an atom at 1.0 that KS cannot take.)
      {"beta 0.05, 2", [](double* o, int n) { return betarnd(o, n, 0.05, 2); },
       [](double x) { return betacdf(x, 0.05, 2, 2, nullptr); }},
      {"beta 0.3, 0.4", [](double* o, int n) { return betarnd(o, n, 0.3, 0.4); },
       [](double x) { return betacdf(x, 0.3, 0.4, 2, nullptr); }},
      {"Cauchy median 1 semi-interquartile range 3", [](double* o, int n) { return caurnd(o, n, 1, 3); },
       [pi](double x) { return 0.5 + std::atan((x - 1) / 3) / pi; }},
      {"gamma shape 0.3 scale 2", [](double* o, int n) { return gamrnd(o, n, 0.3, 2); },
       [](double x) { return gamcdf(x, 0.3, 2, 2, nullptr); }},
      {"gamma shape 5 scale 0.5", [](double* o, int n) { return gamrnd(o, n, 5, 0.5); },
       [](double x) { return gamcdf(x, 5, 0.5, 2, nullptr); }},
      {"logistic mean 2 spread 0.5", [](double* o, int n) { return lgsrnd(o, n, 2, 0.5); },
       [](double x) { return 1 / (1 + std::exp(-(x - 2) / 0.5)); }},
      {"lognormal mu 0.5 variance 0.25", [](double* o, int n) { return lognrnd(o, n, 0.5, 0.25); },
       [](double x) { return x <= 0 ? 0 : normal_cdf((std::log(x) - 0.5) / 0.5); }},
      {"Weibull shape 2, b 3", [](double* o, int n) { return wblrnd(o, n, 2, 3); },
       [](double x) { return x <= 0 ? 0 : -std::expm1(-x * x / 3); }},
      {"Weibull shape 0.7, b 0.5", [](double* o, int n) { return wblrnd(o, n, 0.7, 0.5); },
       [](double x) { return x <= 0 ? 0 : -std::expm1(-std::pow(x, 0.7) / 0.5); }},
      {"exponential mean 2.5", [](double* o, int n) { return exprnd(o, n, 2.5); },
       [](double x) { return x <= 0 ? 0 : -std::expm1(-x / 2.5); }},
      {"chi-square 3", [](double* o, int n) { return chi2rnd(o, n, 3); },
       [](double x) { return chi2cdf(x, 3, 2, nullptr); }},
      {"t 4", [](double* o, int n) { return trnd(o, n, 4); },
       [](double x) { return tcdf(x, 4, 2, nullptr); }},
      {"F 3, 7", [](double* o, int n) { return frnd(o, n, 3, 7); },
       [](double x) { return fcdf(x, 3, 7, 2, nullptr); }},
      {"triangular 0, 1, 3", [](double* o, int n) { return trirnd(o, n, 0, 1, 3); },
       [](double x) {
         if (x <= 0) return 0.0;
         if (x >= 3) return 1.0;
         return x <= 1 ? x * x / 3 : 1 - (3 - x) * (3 - x) / 6;
       }},
      {"triangular 2, 2, 5", [](double* o, int n) { return trirnd(o, n, 2, 2, 5); },
       [](double x) { return x <= 2 ? 0.0 : x >= 5 ? 1.0 : 1 - (5 - x) * (5 - x) / 9; }},
  };
  double worst = 0;
  const char* worstCase = "";
  for (const ContinuousCase& c : cases) {
    std::vector<double> x(kSamples);
    ASSERT_EQ(c.draw(x.data(), kSamples), 0) << c.what;
    const double k = ks_statistic(x, c.cdf);
    EXPECT_LT(k, kKsBound) << c.what;
    if (k > worst) worst = k, worstCase = c.what;
  }
  std::printf("continuous variates: largest KS statistic %.3f (%s), bound %.3f\n", worst,
              worstCase, kKsBound);
}

// Pearson's chi-square over the values lo..hi (the mass outside is below 1e-12), cells merged
// until each expects at least 5; its upper-tail probability under cells - 1 degrees of freedom.
double chi_square_p(const std::vector<int>& x, int lo, int hi,
                    const std::function<double(int)>& pmf) {
  std::vector<double> observed(hi - lo + 1, 0.0);
  for (int v : x) observed[std::clamp(v, lo, hi) - lo] += 1;
  const double n = static_cast<double>(x.size());
  double stat = 0, cellObserved = 0, cellExpected = 0;
  int cells = 0;
  std::vector<std::pair<double, double>> merged;
  for (int k = lo; k <= hi; ++k) {
    cellObserved += observed[k - lo];
    cellExpected += n * pmf(k);
    if (cellExpected >= 5) {
      merged.push_back({cellObserved, cellExpected});
      cellObserved = cellExpected = 0;
    }
  }
  if (!merged.empty()) {
    merged.back().first += cellObserved;
    merged.back().second += cellExpected;
  }
  for (const auto& [o, e] : merged) stat += (o - e) * (o - e) / e, ++cells;
  if (cells < 2) return 1.0;
  return chi2cdf(stat, cells - 1, 1, nullptr);
}

double log_choose(double n, double k) {
  return std::lgamma(n + 1) - std::lgamma(k + 1) - std::lgamma(n - k + 1);
}

struct DiscreteCase {
  const char* what;
  std::function<int(int*, int)> draw;
  int lo, hi;
  std::function<double(int)> pmf;
};

TEST(RandomVariates, DiscreteSamplesFitTheirDistributions) {
  static double pdfTable[] = {0.1, 0.2, 0.3, 0.4};
  static double cdfTable[] = {0.1, 0.3, 0.6, 1.0};
  const DiscreteCase cases[] = {
      {"binomial 20, 0.3", [](int* o, int n) { return binornd(o, n, 20, 0.3); }, 0, 20,
       [](int k) { return std::exp(log_choose(20, k) + k * std::log(0.3) + (20 - k) * std::log(0.7)); }},
      {"binomial 1000, 0.02", [](int* o, int n) { return binornd(o, n, 1000, 0.02); }, 0, 80,
       [](int k) { return std::exp(log_choose(1000, k) + k * std::log(0.02) + (1000 - k) * std::log1p(-0.02)); }},
      {"geometric 0.2", [](int* o, int n) { return geornd(o, n, 0.2); }, 0, 150,
       [](int k) { return 0.2 * std::pow(0.8, k); }},
      {"negative binomial 3 failures, p 0.4", [](int* o, int n) { return nbinrnd(o, n, 3, 0.4); }, 0, 80,
       [](int k) { return std::exp(log_choose(k + 2, k) + k * std::log(0.4) + 3 * std::log(0.6)); }},
      {"hypergeometric sample 10 of 50, 20 specified",
       [](int* o, int n) { return hygernd(o, n, 10, 50, 20); }, 0, 10,
       [](int k) { return std::exp(log_choose(20, k) + log_choose(30, 10 - k) - log_choose(50, 10)); }},
      {"hypergeometric sample 500 of 100000, 30000 specified",
       [](int* o, int n) { return hygernd(o, n, 500, 100000, 30000); }, 60, 240,
       [](int k) { return std::exp(log_choose(30000, k) + log_choose(70000, 500 - k) - log_choose(100000, 500)); }},
      {"Poisson 3.5", [](int* o, int n) { return poissrnd(o, n, 3.5); }, 0, 40,
       [](int k) { return std::exp(k * std::log(3.5) - 3.5 - std::lgamma(k + 1.0)); }},
      {"Poisson 250", [](int* o, int n) { return poissrnd(o, n, 250); }, 130, 400,
       [](int k) { return std::exp(k * std::log(250.0) - 250 - std::lgamma(k + 1.0)); }},
      {"uniform integers -3..6", [](int* o, int n) { return unidrnd(o, n, -3, 6); }, -3, 6,
       [](int) { return 0.1; }},
      {"general discrete from probabilities", [](int* o, int n) { return disrnd(o, n, pdfTable, false, 5, 4); },
       5, 8, [](int k) { return pdfTable[k - 5]; }},
      {"general discrete from a cumulative table", [](int* o, int n) { return disrnd(o, n, cdfTable, true, -1, 4); },
       -1, 2, [](int k) { return pdfTable[k + 1]; }},
  };
  double worst = 1;
  const char* worstCase = "";
  for (const DiscreteCase& c : cases) {
    std::vector<int> x(kSamples, -999);
    ASSERT_EQ(c.draw(x.data(), kSamples), 0) << c.what;
    for (int v : x) ASSERT_TRUE((v >= c.lo && v <= c.hi) || c.hi - c.lo > 30) << c.what << ": " << v;
    const double p = chi_square_p(x, c.lo, c.hi, c.pmf);
    EXPECT_GT(p, kAlpha) << c.what;
    if (p < worst) worst = p, worstCase = c.what;
  }
  std::printf("discrete variates: smallest chi-square p %.3g (%s)\n", worst, worstCase);
}

TEST(RandomVariates, DegenerateParametersGiveTheirOneValue) {
  std::vector<double> d(100);
  std::vector<int> k(100);
  EXPECT_EQ(unifrnd(d.data(), 100, 2.5, 2.5), 0);
  EXPECT_TRUE(std::all_of(d.begin(), d.end(), [](double v) { return v == 2.5; }));
  EXPECT_EQ(normrnd(d.data(), 100, -1, 0), 0);
  EXPECT_TRUE(std::all_of(d.begin(), d.end(), [](double v) { return v == -1; }));
  EXPECT_EQ(poissrnd(k.data(), 100, 0), 0);
  EXPECT_TRUE(std::all_of(k.begin(), k.end(), [](int v) { return v == 0; }));
  EXPECT_EQ(geornd(k.data(), 100, 1), 0);
  EXPECT_TRUE(std::all_of(k.begin(), k.end(), [](int v) { return v == 0; }));
  EXPECT_EQ(binornd(k.data(), 100, 7, 1), 0);
  EXPECT_TRUE(std::all_of(k.begin(), k.end(), [](int v) { return v == 7; }));
  EXPECT_EQ(unidrnd(k.data(), 100, 4, 4), 0);
  EXPECT_TRUE(std::all_of(k.begin(), k.end(), [](int v) { return v == 4; }));
  EXPECT_EQ(hygernd(k.data(), 100, 5, 10, 10), 0);  // every item specified
  EXPECT_TRUE(std::all_of(k.begin(), k.end(), [](int v) { return v == 5; }));
  // A range wider than the largest double still stays inside it.
  EXPECT_EQ(unifrnd(d.data(), 100, -1.5e308, 1.5e308), 0);
  EXPECT_TRUE(std::all_of(d.begin(), d.end(), [](double v) { return std::isfinite(v); }));
}

TEST(RandomVariates, PermutationHoldsEveryIndexOnce) {
  std::vector<int> a(1000), b(1000);
  ASSERT_EQ(permrnd(a.data(), 1000), 0);
  ASSERT_EQ(permrnd(b.data(), 1000), 0);
  EXPECT_NE(a, b);
  std::sort(a.begin(), a.end());
  for (int i = 0; i < 1000; ++i) ASSERT_EQ(a[i], i);
}

TEST(RandomVariates, TwoCallsGiveDifferentArrays) {
  std::vector<double> a(64), b(64);
  ASSERT_EQ(unifrnd(a.data(), 64, 0, 1), 0);
  ASSERT_EQ(unifrnd(b.data(), 64, 0, 1), 0);
  EXPECT_NE(a, b);
  ASSERT_EQ(normrnd(a.data(), 64, 0, 1), 0);
  ASSERT_EQ(normrnd(b.data(), 64, 0, 1), 0);
  EXPECT_NE(a, b);
  std::vector<int> i(64), j(64);
  ASSERT_EQ(binornd(i.data(), 64, 1000, 0.5), 0);
  ASSERT_EQ(binornd(j.data(), 64, 1000, 0.5), 0);
  EXPECT_NE(i, j);
  double mean[2] = {0, 0}, cov[4] = {1, 0, 0, 1};
  std::vector<double> m1(8), m2(8);
  ASSERT_EQ(mvnrnd(m1.data(), 2, 2, mean, cov), 0);
  ASSERT_EQ(mvnrnd(m2.data(), 2, 2, mean, cov), 0);
  EXPECT_NE(m1, m2);
  // Calls in quick succession, one value each, are seeded apart.
  std::vector<double> one(2000);
  for (double& v : one) ASSERT_EQ(unifrnd(&v, 1, 0, 1), 0);
  std::sort(one.begin(), one.end());
  EXPECT_EQ(std::adjacent_find(one.begin(), one.end()), one.end());
}

TEST(RandomVariates, MultivariateNormalReachesItsMeanAndCovariance) {
  constexpr int kRows = 4000, kDim = 3, kVectors = kRows * kDim;
  double mean[kDim] = {1, -2, 0.5};
  double cov[kDim * kDim] = {4, 1.2, -0.8, 1.2, 1, 0.3, -0.8, 0.3, 2};
  // nRows * nDim vectors of nDim, and a guard after them that stays untouched.
  std::vector<double> out(kVectors * kDim + 1, 12345.0);
  ASSERT_EQ(mvnrnd(out.data(), kRows, kDim, mean, cov), 0);
  EXPECT_EQ(out.back(), 12345.0);
  EXPECT_NE(out[kVectors * kDim - 1], 12345.0);
  double m[kDim] = {}, c[kDim * kDim] = {};
  for (int r = 0; r < kVectors; ++r)
    for (int i = 0; i < kDim; ++i) m[i] += out[r * kDim + i] / kVectors;
  for (int r = 0; r < kVectors; ++r)
    for (int i = 0; i < kDim; ++i)
      for (int j = 0; j < kDim; ++j)
        c[i * kDim + j] += (out[r * kDim + i] - m[i]) * (out[r * kDim + j] - m[j]) / (kVectors - 1);
  // Six standard errors: sqrt(s_ii / N) for a mean, sqrt((s_ii s_jj + s_ij^2) / N) for a
  // covariance entry.
  for (int i = 0; i < kDim; ++i) {
    EXPECT_NEAR(m[i], mean[i], 6 * std::sqrt(cov[i * kDim + i] / kVectors)) << i;
    for (int j = 0; j < kDim; ++j) {
      const double se = std::sqrt((cov[i * kDim + i] * cov[j * kDim + j] +
                                   cov[i * kDim + j] * cov[i * kDim + j]) / kVectors);
      EXPECT_NEAR(c[i * kDim + j], cov[i * kDim + j], 6 * se) << i << "," << j;
    }
  }
}

TEST(RandomVariates, MultivariateNormalTakesASingularCovariance) {
  // Rank one: the second coordinate is twice the first, exactly up to rounding.
  double mean[2] = {0, 1}, cov[4] = {1, 2, 2, 4};
  std::vector<double> out(2 * 2 * 50);
  ASSERT_EQ(mvnrnd(out.data(), 50, 2, mean, cov), 0);
  for (int r = 0; r < 100; ++r)
    EXPECT_NEAR(out[2 * r + 1] - 1, 2 * out[2 * r], 1e-12 * (1 + std::fabs(out[2 * r]))) << r;
}

TEST(RandomVariates, BadArgumentsGiveTheirCodesAndLeaveTheArray) {
  double sym[4] = {1, 2, 2, 1}, skew[4] = {1, 0.5, 0.2, 1}, mean[2] = {0, 0}, id[4] = {1, 0, 0, 1};
  double nanCov[4] = {1, 0, 0, NAN}, nanumMean[2] = {NANUM, 0};
  double badPdf[3] = {0.5, 0.6, -0.1}, shortPdf[2] = {0.5, 0.4}, falling[3] = {0.2, 0.1, 1};
  double over[2] = {0.5, 1.5};
  struct Case {
    const char* what;
    std::function<int(double*, int*)> call;
    int code;
  };
  const Case cases[] = {
      {"normrnd size 0", [](double* d, int*) { return normrnd(d, 0, 0, 1); }, ZOMATH_ERR_OPTION},
      {"normrnd size -5", [](double* d, int*) { return normrnd(d, -5, 0, 1); }, ZOMATH_ERR_OPTION},
      {"normrnd null", [](double*, int*) { return normrnd(nullptr, 5, 0, 1); }, ZOMATH_ERR_OPTION},
      {"permrnd null", [](double*, int*) { return permrnd(nullptr, 5); }, ZOMATH_ERR_OPTION},
      {"mvnrnd null mean", [&](double* d, int*) { return mvnrnd(d, 1, 2, nullptr, id); }, ZOMATH_ERR_OPTION},
      {"mvnrnd null covariance", [&](double* d, int*) { return mvnrnd(d, 1, 2, mean, nullptr); }, ZOMATH_ERR_OPTION},
      {"mvnrnd dimension 0", [&](double* d, int*) { return mvnrnd(d, 1, 0, mean, id); }, ZOMATH_ERR_OPTION},
      {"mvnrnd too many vectors", [&](double* d, int*) { return mvnrnd(d, 1 << 20, 1 << 12, mean, id); },
       ZOMATH_ERR_OPTION},
      {"normrnd negative variance", [](double* d, int*) { return normrnd(d, 5, 0, -1); }, ZOMATH_RANDOM_BAD_PARAMETER},
      {"normrnd NANUM mean", [](double* d, int*) { return normrnd(d, 5, NANUM, 1); }, ZOMATH_RANDOM_BAD_PARAMETER},
      {"normrnd NaN variance", [](double* d, int*) { return normrnd(d, 5, 0, NAN); }, ZOMATH_RANDOM_BAD_PARAMETER},
      {"unifrnd low above high", [](double* d, int*) { return unifrnd(d, 5, 2, 1); }, ZOMATH_RANDOM_BAD_PARAMETER},
      {"unifrnd infinite high", [](double* d, int*) { return unifrnd(d, 5, 0, INFINITY); }, ZOMATH_RANDOM_BAD_PARAMETER},
      {"betarnd shape 0", [](double* d, int*) { return betarnd(d, 5, 0, 1); }, ZOMATH_RANDOM_BAD_PARAMETER},
      {"caurnd scale 0", [](double* d, int*) { return caurnd(d, 5, 0, 0); }, ZOMATH_RANDOM_BAD_PARAMETER},
      {"gamrnd scale -1", [](double* d, int*) { return gamrnd(d, 5, 1, -1); }, ZOMATH_RANDOM_BAD_PARAMETER},
      {"lgsrnd spread NaN", [](double* d, int*) { return lgsrnd(d, 5, 0, NAN); }, ZOMATH_RANDOM_BAD_PARAMETER},
      {"lognrnd variance -1", [](double* d, int*) { return lognrnd(d, 5, 0, -1); }, ZOMATH_RANDOM_BAD_PARAMETER},
      {"wblrnd shape 0", [](double* d, int*) { return wblrnd(d, 5, 0, 1); }, ZOMATH_RANDOM_BAD_PARAMETER},
      {"exprnd mean 0", [](double* d, int*) { return exprnd(d, 5, 0); }, ZOMATH_RANDOM_BAD_PARAMETER},
      {"chi2rnd df 0", [](double* d, int*) { return chi2rnd(d, 5, 0); }, ZOMATH_RANDOM_BAD_PARAMETER},
      {"trnd df -2", [](double* d, int*) { return trnd(d, 5, -2); }, ZOMATH_RANDOM_BAD_PARAMETER},
      {"frnd df2 0", [](double* d, int*) { return frnd(d, 5, 3, 0); }, ZOMATH_RANDOM_BAD_PARAMETER},
      {"trirnd mode outside", [](double* d, int*) { return trirnd(d, 5, 0, 4, 3); }, ZOMATH_RANDOM_BAD_PARAMETER},
      {"binornd p 1.5", [](double*, int* k) { return binornd(k, 5, 10, 1.5); }, ZOMATH_RANDOM_BAD_PARAMETER},
      {"binornd n -1", [](double*, int* k) { return binornd(k, 5, -1, 0.5); }, ZOMATH_RANDOM_BAD_PARAMETER},
      {"geornd p 0", [](double*, int* k) { return geornd(k, 5, 0); }, ZOMATH_RANDOM_BAD_PARAMETER},
      {"nbinrnd p 1", [](double*, int* k) { return nbinrnd(k, 5, 3, 1); }, ZOMATH_RANDOM_BAD_PARAMETER},
      {"nbinrnd n 0", [](double*, int* k) { return nbinrnd(k, 5, 0, 0.5); }, ZOMATH_RANDOM_BAD_PARAMETER},
      {"hygernd sample above population", [](double*, int* k) { return hygernd(k, 5, 11, 10, 3); },
       ZOMATH_RANDOM_BAD_PARAMETER},
      {"poissrnd mean -1", [](double*, int* k) { return poissrnd(k, 5, -1); }, ZOMATH_RANDOM_BAD_PARAMETER},
      {"poissrnd mean 1e10", [](double*, int* k) { return poissrnd(k, 5, 1e10); }, ZOMATH_RANDOM_BAD_PARAMETER},
      {"unidrnd low above high", [](double*, int* k) { return unidrnd(k, 5, 3, 2); }, ZOMATH_RANDOM_BAD_PARAMETER},
      {"disrnd null table", [](double*, int* k) { return disrnd(k, 5, nullptr, false, 0, 3); },
       ZOMATH_RANDOM_BAD_PARAMETER},
      {"disrnd count 0", [&](double*, int* k) { return disrnd(k, 5, shortPdf, false, 0, 0); },
       ZOMATH_RANDOM_BAD_PARAMETER},
      {"disrnd values past INT_MAX", [&](double*, int* k) { return disrnd(k, 5, shortPdf, false, 2147483647, 2); },
       ZOMATH_RANDOM_BAD_PARAMETER},
      {"disrnd negative probability", [&](double*, int* k) { return disrnd(k, 5, badPdf, false, 0, 3); },
       ZOMATH_RANDOM_BAD_TABLE},
      {"disrnd sum 0.9", [&](double*, int* k) { return disrnd(k, 5, shortPdf, false, 0, 2); },
       ZOMATH_RANDOM_BAD_TABLE},
      {"disrnd falling cumulative", [&](double*, int* k) { return disrnd(k, 5, falling, true, 0, 3); },
       ZOMATH_RANDOM_BAD_TABLE},
      {"disrnd entry above 1", [&](double*, int* k) { return disrnd(k, 5, over, true, 0, 2); },
       ZOMATH_RANDOM_BAD_TABLE},
      {"mvnrnd indefinite", [&](double* d, int*) { return mvnrnd(d, 1, 2, mean, sym); },
       ZOMATH_RANDOM_NOT_SEMIDEFINITE},
      {"mvnrnd not symmetric", [&](double* d, int*) { return mvnrnd(d, 1, 2, mean, skew); },
       ZOMATH_RANDOM_NOT_SEMIDEFINITE},
      {"mvnrnd NaN covariance", [&](double* d, int*) { return mvnrnd(d, 1, 2, mean, nanCov); },
       ZOMATH_RANDOM_BAD_PARAMETER},
      {"mvnrnd NANUM mean", [&](double* d, int*) { return mvnrnd(d, 1, 2, nanumMean, id); },
       ZOMATH_RANDOM_BAD_PARAMETER},
  };
  for (const Case& c : cases) {
    std::vector<double> d(8, 7.0);
    std::vector<int> k(8, 7);
    EXPECT_EQ(c.call(d.data(), k.data()), c.code) << c.what;
    EXPECT_TRUE(std::all_of(d.begin(), d.end(), [](double v) { return v == 7.0; })) << c.what;
    EXPECT_TRUE(std::all_of(k.begin(), k.end(), [](int v) { return v == 7; })) << c.what;
  }
}

}  // namespace
