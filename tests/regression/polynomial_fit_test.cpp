// The polynomial fit: its codes, the scale tests and their result, exact polynomials recovered
// on every path, the mean-only order, statsmodels WLS with its bands and an 80-digit solution of
// a nearly collinear design (make_fit_reference.py), interpolation, missing points, and the
// evaluation and band exports.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "reference_case.h"
#include "zomath/regression.h"

namespace {

using zomath_test::worst;

struct Poly {
  std::vector<FitParameter> fit;
  FitStats stats;
  FitAnovaTable anova;
  std::vector<double> cov, corr, lev;
  explicit Poly(int order, int n = 0)
      : fit(order + 1), cov((order + 1) * (order + 1)), corr(cov.size()), lev(n) {}
  int run(const std::vector<double>& x, const std::vector<double>& y, const double* w,
          const LinearFitOptions* o) {
    const int order = static_cast<int>(fit.size()) - 1;
    return zomath_polynomial_fit(static_cast<int>(x.size()), x.data(), y.data(), w, order, o,
                                 fit.data(), order + 1, &stats, &anova, cov.data(), corr.data(),
                                 lev.empty() ? nullptr : lev.data(), static_cast<int>(cov.size()));
  }
  std::vector<double> values(double FitParameter::*m, int from = 0) const {
    std::vector<double> v;
    for (std::size_t j = from; j < fit.size(); ++j) v.push_back(fit[j].*m);
    return v;
  }
};

// Each fault gives its code in the order of the checks, with the records missing.
TEST(PolynomialFit, Codes) {
  const std::vector<double> x{1, 2, 3, 4, 5}, y{1, 4, 9, 17, 24}, neg{1, 1, -1, 1, 1};
  const LinearFitOptions bad{false, 0, 0, true, 2.0, false, false, 0};
  FitParameter fit[7];
  double cov[36];
  struct Row {
    int n, order, fitSize, covSize;
    const double *x, *w;
    FitParameter* fit;
    const LinearFitOptions* o;
    int code;
  } rows[] = {
      {1, 2, 3, 9, nullptr, nullptr, fit, nullptr, -165},   // before the pointers
      {5, 2, 3, 9, nullptr, nullptr, fit, nullptr, -156},
      {5, 2, 3, 9, x.data(), nullptr, nullptr, nullptr, -156},
      {5, -1, 3, 9, x.data(), nullptr, fit, nullptr, -151},
      {5, 2, 2, 9, x.data(), nullptr, fit, nullptr, -98},
      {5, 2, 3, 8, x.data(), nullptr, fit, nullptr, -99},
      {5, 2, 3, 9, x.data(), nullptr, fit, &bad, -151},
      {5, 0, 3, 9, x.data(), nullptr, fit, &bad, -151},
      {5, 2, 3, 9, x.data(), neg.data(), fit, nullptr, -108},
      {5, 0, 3, 9, x.data(), neg.data(), fit, nullptr, -108},
      {5, 5, 7, -1, x.data(), nullptr, fit, nullptr, -212},  // six parameters, five points
  };
  for (const Row& r : rows) {
    fit[2].value = 1;
    FitStats st;
    st.N = 1;
    EXPECT_EQ(zomath_polynomial_fit(r.n, r.x, y.data(), r.w, r.order, r.o, r.fit, r.fitSize, &st,
                                    nullptr, cov, nullptr, nullptr, r.covSize),
              r.code)
        << r.order;
    if (r.code == -212) {
      EXPECT_TRUE(fit[2].value == NANUM && st.N == NANUM && cov[35] == NANUM);
    }
  }
}

// Exact polynomials are recovered on every path, and the result says whether x was badly
// scaled: far from zero (1e5), a spread under 1% of the centre (1000, or any negative centre),
// while y near 5000 or an order above 5 take the normalised path and still return 0. The
// coefficients are those of raw x, each within 1e-11 of the largest term of the polynomial
// (the rounding of y alone allows about 1e-15 of it).
TEST(PolynomialFit, ScaleTestsAndPaths) {
  struct Row {
    double x0, step;
    std::vector<double> centred;  // coefficients in t = x - x0
    int result;
  } rows[] = {
      {1e5, 0.1, {1, 2, 3}, 1},   {1000, 0.1, {1, -2, 0.5}, 1}, {-5, 0.4, {2, 1, 0.25}, 1},
      {0, 1, {5000, 1e-3, 1e-4}, 0}, {-1, 0.2, {1, -1, 2, 0.5, -3, 0.25, 1.5}, 0},
      {0, 1, {1, -2, 0.3, -0.01}, 0},
  };
  for (const Row& r : rows) {
    const int order = static_cast<int>(r.centred.size()) - 1;
    std::vector<double> x, y, raw(order + 1, 0.0);
    for (int i = 0; i <= 10; ++i) {
      const double t = i * r.step;
      x.push_back(r.x0 + t);
      double v = 0;
      for (int j = order; j >= 0; --j) v = v * (x.back() - r.x0) + r.centred[j];
      y.push_back(v);
    }
    // Raw coefficients of sum c_j (x - x0)^j by the binomial expansion.
    for (int j = 0; j <= order; ++j)
      for (int k = 0; k <= j; ++k)
        raw[k] += r.centred[j] * std::tgamma(j + 1.0) / (std::tgamma(k + 1.0) * std::tgamma(j - k + 1.0)) *
                  std::pow(-r.x0, j - k);
    Poly p(order);
    EXPECT_EQ(p.run(x, y, nullptr, nullptr), r.result) << r.x0;
    const double span = std::max(std::fabs(x.front()), std::fabs(x.back()));
    double largest = 0;
    for (int j = 0; j <= order; ++j) largest = std::max(largest, std::fabs(raw[j]) * std::pow(span, j));
    for (int j = 0; j <= order; ++j)
      EXPECT_NEAR(p.fit[j].value, raw[j], 1e-11 * largest / std::pow(span, j)) << r.x0 << " c" << j;
  }
}

// Order 0 is the mean: value, n - 1 SD as its Error, limits from t(0.975, 5) (mpmath), and
// a model that explains nothing, whose F is the missing value over the error mean square.
TEST(PolynomialFit, OrderZeroIsTheMean) {
  const std::vector<double> x(6, 0.0), y{2, 4, 4, 5, 7, 8};
  const LinearFitOptions o{false, 1.0, 0, true, 0.95, false, false, 0.0};
  Poly p(0);
  p.fit[0].tValue = 42;
  ASSERT_EQ(p.run(x, y, nullptr, &o), 0);
  const double sd = std::sqrt(24.0 / 5), half = 2.5705818356363155 * sd / std::sqrt(6.0);
  EXPECT_DOUBLE_EQ(p.fit[0].value, 5);
  EXPECT_DOUBLE_EQ(p.fit[0].Error, sd);
  EXPECT_NEAR(p.fit[0].LCL, 5 - half, 1e-12);
  EXPECT_NEAR(p.fit[0].UCL, 5 + half, 1e-12);
  EXPECT_EQ(p.fit[0].tValue, 42);  // not written
  EXPECT_EQ(p.stats.RSS, 24);
  EXPECT_NEAR(p.stats.RSquare, 0, 1e-15);
  EXPECT_EQ(p.anova.FValue, NANUM / 4.8);
  EXPECT_EQ(p.anova.ModelSS, NANUM);
}

// statsmodels WLS on 40 weighted points, orders 1 to 3, 6 and 7, free or held intercept, errors
// scaled or not: everything within 1e-10 relative, the bands included. Then the quadratic on
// x in [1000, 1001] against the normal equations solved at 80 digits.
TEST(PolynomialFit, AgreesWithStatsmodels) {
  const zomath_test::Case c = zomath_test::load_case("polynomial_fit.csv");
  const std::vector<double>&x = c.at("x"), &y = c.at("y"), &w = c.at("w");
  for (int k = 0; c.count("c" + std::to_string(k) + ".options"); ++k) {
    const std::string key = "c" + std::to_string(k) + ".";
    auto ref = [&](const char* name) { return c.at(key + name); };
    const std::vector<double> o = ref("options");
    const int order = static_cast<int>(o[0]);
    const bool held = o[1] != 0;
    const LinearFitOptions opt{false, 0, 0, o[3] != 0, o[4], false, held, o[2]};
    SCOPED_TRACE(key);
    Poly p(order, static_cast<int>(x.size()));
    ASSERT_GE(p.run(x, y, w.data(), &opt), 0);
    const std::vector<double>& xn = ref("xnew");
    std::vector<double> fitted(xn.size()), bands[4];
    const std::vector<double> coef = p.values(&FitParameter::value);
    ASSERT_TRUE(zomath_polynomial(xn.data(), fitted.data(), static_cast<int>(xn.size()),
                                  coef.data(), order));
    for (int b = 0; b < 2; ++b) {
      bands[2 * b].resize(xn.size());
      bands[2 * b + 1].resize(xn.size());
      ASSERT_EQ(zomath_calc_conf_and_pred_bands_for_polynomial(
                    xn.data(), fitted.data(), static_cast<int>(xn.size()), p.cov.data(), &opt,
                    order, 0.5, p.stats.ReducedChiSq, ref("tcrit")[0], bands[2 * b].data(),
                    bands[2 * b + 1].data(), b == 0),
                0);
    }
    double most = zomath_test::worst_fit(c, key, p.fit.data(), held, order + 1,
                                         opt.ErrorScaledByReducedChiSq, p.stats, p.anova);
    for (auto [got, name] : {std::pair{&p.cov, "cov"}, {&p.lev, "hat"}, {&bands[0], "mean_lo"},
                             {&bands[1], "mean_hi"}, {&bands[2], "obs_lo"}, {&bands[3], "obs_hi"}})
      most = std::max(most, worst(*got, ref(name)));
    std::printf("  %-4s order %d, intercept %s, scaled %d, level %.2f: %.1e\n", key.c_str(),
                order, held ? "held" : "free", o[3] != 0, o[4], most);
    EXPECT_LT(most, 1e-10);
  }
  Poly p(2);
  const LinearFitOptions opt{false, 0, 0, true, 0.95, false, false, 0};
  ASSERT_EQ(p.run(c.at("scaled_x.x"), c.at("scaled_x.y"), c.at("scaled_x.w").data(), &opt), 1);
  const double errs[] = {worst(p.values(&FitParameter::value), c.at("scaled_x.params")),
                         worst(p.values(&FitParameter::Error), c.at("scaled_x.bse")),
                         worst({p.stats.RSS}, c.at("scaled_x.ssr"))};
  std::printf("  x in [1000, 1001]: estimates %.1e, errors %.1e, RSS %.1e\n", errs[0], errs[1],
              errs[2]);
  EXPECT_LT(errs[0], 1e-12);
  EXPECT_LT(errs[1], 1e-8);  // the raw powers' covariance: cond(X'WX) near 1e14
  EXPECT_LT(errs[2], 1e-12);
}

// As many parameters as points interpolates them (no error to give); a point with a missing
// value is left out as if it were not there, its leverage missing.
TEST(PolynomialFit, InterpolationAndMissingPoints) {
  const std::vector<double> x{-1, 0, 1, 2.5}, y{3, 1, 2, -1};
  Poly exact(3, 4);
  ASSERT_EQ(exact.run(x, y, nullptr, nullptr), 0);
  EXPECT_TRUE(exact.stats.DOF == 0 && exact.fit[1].Error == NANUM && exact.stats.RSS < 1e-28);
  std::vector<double> x5{-1, 0, 0.5, 1, 2.5}, y5{3, 1, NANUM, 2, -1};
  Poly line(1, 5), without(1, 4);
  ASSERT_EQ(line.run(x5, y5, nullptr, nullptr), 0);
  ASSERT_EQ(without.run(x, y, nullptr, nullptr), 0);
  EXPECT_LT(worst(line.values(&FitParameter::value), without.values(&FitParameter::value)), 1e-14);
  EXPECT_EQ(line.lev[2], NANUM);
  EXPECT_DOUBLE_EQ(line.lev[4], without.lev[3]);
}

// The evaluation export (order -1 writes zeros, a missing x gives a missing y) and the checks
// of the bands.
TEST(PolynomialFit, EvaluationAndBandCodes) {
  const double x[] = {2, NANUM, -1}, coef[] = {1, -2, 0.5, 0.25};
  double y[3], lo[3], hi[3];
  ASSERT_TRUE(zomath_polynomial(x, y, 3, coef, 3));
  EXPECT_TRUE(y[1] == NANUM && y[2] == 1 + 2 + 0.5 - 0.25);
  ASSERT_TRUE(zomath_polynomial(x, y, 3, nullptr, -1));
  EXPECT_EQ(y[0], 0);
  const LinearFitOptions o{false, 0, 0, true, 0.95, false, false, 0};
  const double cov[4] = {1, 0, 0, 1};
  struct Row {
    const double* cov;
    const LinearFitOptions* o;
    int n, order;
    double level;
    int code;
  } rows[] = {{nullptr, &o, 3, 1, 0.9, -156}, {cov, nullptr, 3, 1, 0.9, -156},
              {cov, &o, 0, 1, 0.9, -165}, {cov, &o, 3, -1, 0.9, -151}, {cov, &o, 3, 1, 1.0, -151}};
  for (const Row& r : rows)
    EXPECT_EQ(zomath_calc_conf_and_pred_bands_for_polynomial(x, y, r.n, r.cov, r.o, r.order,
                                                             r.level, 1, 2, lo, hi, 1),
              r.code);
}

}  // namespace
