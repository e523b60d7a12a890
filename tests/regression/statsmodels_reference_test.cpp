// The multiple regression and the residual diagnostics against statsmodels (OLS, WLS and the
// influence measures) on random designs with columns from 1e-2 to 1e3 in scale, with and without
// intercept, and on a rank-deficient design (tests/tools/make_regression_reference.py).
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "zomath/regression.h"

namespace {

struct Case {
  std::map<std::string, std::vector<double>> v;  // key -> values
  std::vector<double> x;                          // row-major
  int n = 0, k = 0;
  const std::vector<double>& operator[](const std::string& key) const { return v.at(key); }
  bool has(const std::string& key) const { return v.count(key) != 0; }
};

Case load(const std::string& name) {
  Case c;
  std::ifstream in(std::string(ZOMATH_TEST_DATA_DIR) + "/regression/" + name + ".csv");
  std::string line;
  while (std::getline(in, line)) {
    if (line.empty() || line[0] == '#') continue;
    std::stringstream ss(line);
    std::string key, field;
    std::getline(ss, key, ',');
    std::vector<double> values;
    while (std::getline(ss, field, ',')) values.push_back(std::stod(field));
    if (key == "x") {
      c.k = static_cast<int>(values.size());
      ++c.n;
      c.x.insert(c.x.end(), values.begin(), values.end());
    } else {
      c.v[key] = values;
    }
  }
  return c;
}

// Largest error of a against b, each element relative to itself but never to less than 1e-6 of
// the largest element (values that pass near zero, such as a residual, are then measured
// against the size of their neighbours).
double worst_error(const std::vector<double>& a, const std::vector<double>& b) {
  double big = 0, worst = 0;
  for (double v : b) big = std::max(big, std::fabs(v));
  for (std::size_t i = 0; i < a.size() && i < b.size(); ++i)
    worst = std::max(worst, std::fabs(a[i] - b[i]) / std::max(std::fabs(b[i]), 1e-6 * big));
  return a.size() == b.size() ? worst : INFINITY;
}

struct Fitted {
  std::vector<FitParameter> fit;
  FitStats stats;
  FitAnovaTable anova;
  std::vector<double> leverage, fitError, weightsAfter;
};

Fitted fit(const Case& c, bool scaled, bool withFitError = false) {
  Fitted f;
  const bool intercept = c["intercept"][0] != 0;
  LinearFitOptions opt{false, 1.0, 0, scaled, 0.95, false, !intercept, 0.0};
  f.fit.resize(c.k + 1);
  f.leverage.resize(c.n);
  f.fitError.resize(c.n);
  f.weightsAfter = c.has("w") ? c["w"] : std::vector<double>();
  const int rc = zomath_multiple_linear_regression(
      c.x.data(), c.n, c.k, c["y"].data(), c.has("w") ? f.weightsAfter.data() : nullptr, 0, &opt,
      f.fit.data(), c.k + 1, &f.stats, &f.anova, nullptr, nullptr, 0, 0, f.leverage.data(),
      withFitError ? f.fitError.data() : nullptr);
  EXPECT_EQ(rc, 0);
  return f;
}

// One field of the fitted parameters, from the intercept's record when the model has one.
std::vector<double> field(const Fitted& f, const Case& c, double FitParameter::*member) {
  std::vector<double> out;
  for (std::size_t j = c["intercept"][0] != 0 ? 0 : 1; j < f.fit.size(); ++j)
    out.push_back(f.fit[j].*member);
  return out;
}

const char* const kCases[] = {"ols_intercept", "wls_intercept", "ols_no_intercept",
                              "wls_no_intercept", "wls_rank_deficient"};

// Estimates, errors (scaled and unscaled), R-squared, F and its probability, degrees of freedom
// and leverages agree with statsmodels within 1e-10 relative (the designs' condition numbers
// reach 1e5; both sides solve by orthogonal factorisations).
TEST(StatsmodelsReference, FitAndTests) {
  for (const char* name : kCases) {
    SCOPED_TRACE(name);
    const Case c = load(name);
    ASSERT_GT(c.n, 0);
    const Fitted f = fit(c, true);
    const double errs[] = {worst_error(field(f, c, &FitParameter::value), c["params"]),
                           worst_error(field(f, c, &FitParameter::Error), c["bse"]),
                           worst_error({f.stats.RSquare}, c["rsquared"]),
                           worst_error({f.stats.RSS}, c["ssr"]),
                           worst_error({f.anova.FValue}, c["fvalue"]),
                           worst_error({f.anova.ProbF}, c["f_pvalue"]),
                           worst_error(f.leverage, c["hat"])};
    std::printf("  %-20s estimates %.1e, errors %.1e, R2 %.1e, RSS %.1e, F %.1e, P %.1e, h %.1e\n",
                name, errs[0], errs[1], errs[2], errs[3], errs[4], errs[5], errs[6]);
    for (double e : errs) EXPECT_LT(e, 1e-10);
    EXPECT_EQ(f.anova.ModelDF, c["df_model"][0]);
    EXPECT_EQ(f.anova.ErrorDF, c["df_resid"][0]);
    EXPECT_EQ(f.stats.DOF, c["df_resid"][0]);
    const Fitted u = fit(c, false);
    EXPECT_LT(worst_error(field(u, c, &FitParameter::Error), c["bse_unscaled"]), 1e-10);
    EXPECT_LT(worst_error(field(u, c, &FitParameter::value), c["params"]), 1e-10);
  }
}

// Studentized residuals, Cook's distance and Atkinson's T of the weighted residuals
// sqrt(w) r, with the fit's leverages and with those the diagnostics compute from the whitened
// design themselves: within 1e-10 relative (elements near zero against 1e-6 of the largest).
TEST(StatsmodelsReference, ResidualDiagnostics) {
  for (const char* name : {"ols_intercept", "wls_intercept", "ols_no_intercept",
                           "wls_no_intercept"}) {
    SCOPED_TRACE(name);
    const Case c = load(name);
    const Fitted f = fit(c, true);
    const bool intercept = c["intercept"][0] != 0;
    const int p = c.k + (intercept ? 1 : 0);
    std::vector<double> sw(c.n, 1.0), res(c.n), design;
    for (int i = 0; i < c.n; ++i) {
      if (c.has("w")) sw[i] = std::sqrt(c["w"][i]);
      double fitted = intercept ? f.fit[0].value : 0.0;
      for (int j = 0; j < c.k; ++j) fitted += f.fit[1 + j].value * c.x[i * c.k + j];
      res[i] = sw[i] * (c["y"][i] - fitted);
      if (intercept) design.push_back(sw[i]);
      for (int j = 0; j < c.k; ++j) design.push_back(sw[i] * c.x[i * c.k + j]);
    }
    const double rms = f.stats.ReducedChiSq;
    for (bool given : {true, false}) {
      SCOPED_TRACE(given ? "leverages given" : "leverages computed");
      std::vector<double> in(c.n), ex(c.n), cook(c.n), atk(c.n), st(c.n);
      ASSERT_EQ(zomath_diagnostic_residuals(c.n, p, rms, c.n, res.data(), design.data(), in.data(),
                                            ex.data(), cook.data(), atk.data(), st.data(),
                                            given ? f.leverage.data() : nullptr),
                0);
      const double errs[] = {worst_error(in, c["student_internal"]),
                             worst_error(ex, c["student_external"]),
                             worst_error(cook, c["cooks"]), worst_error(atk, c["atkinson"])};
      std::printf("  %-18s %-8s internal %.1e, external %.1e, Cook %.1e, Atkinson %.1e\n", name,
                  given ? "given" : "computed", errs[0], errs[1], errs[2], errs[3]);
      for (double e : errs) EXPECT_LT(e, 1e-10);
      for (int i = 0; i < c.n; ++i) EXPECT_DOUBLE_EQ(st[i], res[i] / std::sqrt(rms));
    }
  }
}

// The error of the fitted mean at each point is s sqrt(h / w), and the caller's weights come
// back as their reciprocals.
TEST(StatsmodelsReference, FitErrorAndReciprocalWeights) {
  const Case c = load("wls_intercept");
  const Fitted f = fit(c, true, true);
  const double s = std::sqrt(c["ssr"][0] / c["df_resid"][0]);
  for (int i = 0; i < c.n; ++i) {
    EXPECT_NEAR(f.weightsAfter[i], 1.0 / c["w"][i], 1e-15 / c["w"][i]);
    EXPECT_NEAR(f.fitError[i], s * std::sqrt(c["hat"][i] / c["w"][i]),
                1e-10 * f.fitError[i]);
  }
}

}  // namespace
