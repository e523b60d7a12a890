// The multiple regression and the residual diagnostics against statsmodels (OLS, WLS and the
// influence measures) on random designs with columns from 1e-2 to 1e3 in scale, with and without
// intercept, and on a rank-deficient design (tests/tools/make_regression_reference.py).
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "reference_case.h"
#include "zomath/regression.h"

namespace {

using zomath_test::Case;
using zomath_test::worst;

Case load(const std::string& name) { return zomath_test::load_case(name + ".csv"); }

struct Fitted {
  std::vector<FitParameter> fit;
  FitStats stats;
  FitAnovaTable anova;
  std::vector<double> h, fitError, w;
  std::vector<double> field(double FitParameter::*member, bool intercept) const {
    std::vector<double> out;
    for (std::size_t j = intercept ? 0 : 1; j < fit.size(); ++j) out.push_back(fit[j].*member);
    return out;
  }
};

Fitted fit(const Case& c, bool scaled) {
  Fitted f{std::vector<FitParameter>(c.k + 1), {}, {}, std::vector<double>(c.n),
           std::vector<double>(c.n), c.count("w") ? c.at("w") : std::vector<double>()};
  const LinearFitOptions opt{false, 1.0, 0, scaled, 0.95, false, !c.intercept(), 0.0};
  EXPECT_EQ(zomath_multiple_linear_regression(c.at("x").data(), c.n, c.k, c.at("y").data(),
                                              f.w.empty() ? nullptr : f.w.data(), 0, &opt,
                                              f.fit.data(), c.k + 1, &f.stats, &f.anova, nullptr,
                                              nullptr, 0, 0, f.h.data(), f.fitError.data()),
            0);
  return f;
}

// Estimates, errors (scaled and unscaled), R-squared, F and its probability, the degrees of
// freedom and the leverages within 1e-10 relative. The error of the fitted mean is
// s sqrt(h / w), and the caller's weights come back as their reciprocals.
TEST(StatsmodelsReference, FitAndTests) {
  for (const char* name : {"ols_intercept", "wls_intercept", "ols_no_intercept",
                           "wls_no_intercept", "wls_rank_deficient"}) {
    SCOPED_TRACE(name);
    const Case c = load(name);
    ASSERT_GT(c.n, 0);
    const Fitted f = fit(c, true), u = fit(c, false);
    const bool b0 = c.intercept();
    const double errs[] = {worst(f.field(&FitParameter::value, b0), c.at("params")),
                           worst(f.field(&FitParameter::Error, b0), c.at("bse")),
                           worst(u.field(&FitParameter::Error, b0), c.at("bse_unscaled")),
                           worst({f.stats.RSquare}, c.at("rsquared")),
                           worst({f.anova.FValue}, c.at("fvalue")),
                           worst({f.anova.ProbF}, c.at("f_pvalue")), worst(f.h, c.at("hat"))};
    std::printf("  %-20s estimates %.1e, errors %.1e %.1e, R2 %.1e, F %.1e, P %.1e, h %.1e\n",
                name, errs[0], errs[1], errs[2], errs[3], errs[4], errs[5], errs[6]);
    for (double e : errs) EXPECT_LT(e, 1e-10);
    EXPECT_EQ(f.anova.ModelDF, c.at("df_model")[0]);
    EXPECT_EQ(f.stats.DOF, c.at("df_resid")[0]);
    const double s = std::sqrt(c.at("ssr")[0] / c.at("df_resid")[0]);
    for (int i = 0; i < c.n; ++i) {
      const double w = c.count("w") ? c.at("w")[i] : 1.0;
      if (!f.w.empty()) {
        EXPECT_DOUBLE_EQ(f.w[i], 1 / w);
      }
      EXPECT_NEAR(f.fitError[i], s * std::sqrt(c.at("hat")[i] / w), 1e-10 * f.fitError[i]);
    }
  }
}

// Studentized residuals, Cook's distance and Atkinson's T of the weighted residuals sqrt(w) r,
// with the fit's leverages and with those computed from the whitened design: 1e-10 relative.
TEST(StatsmodelsReference, ResidualDiagnostics) {
  for (const char* name : {"ols_intercept", "wls_intercept", "ols_no_intercept",
                           "wls_no_intercept"}) {
    SCOPED_TRACE(name);
    const Case c = load(name);
    const Fitted f = fit(c, true);
    const int p = c.k + (c.intercept() ? 1 : 0);
    std::vector<double> res(c.n), design, in(c.n), ex(c.n), cook(c.n), atk(c.n), st(c.n);
    for (int i = 0; i < c.n; ++i) {
      const double sw = c.count("w") ? std::sqrt(c.at("w")[i]) : 1.0;
      double fitted = c.intercept() ? f.fit[0].value : 0.0;
      if (c.intercept()) design.push_back(sw);
      for (int j = 0; j < c.k; ++j) {
        fitted += f.fit[1 + j].value * c.at("x")[i * c.k + j];
        design.push_back(sw * c.at("x")[i * c.k + j]);
      }
      res[i] = sw * (c.at("y")[i] - fitted);
    }
    for (const double* lev : {f.h.data(), static_cast<const double*>(nullptr)}) {
      ASSERT_EQ(zomath_diagnostic_residuals(c.n, p, f.stats.ReducedChiSq, c.n, res.data(),
                                            design.data(), in.data(), ex.data(), cook.data(),
                                            atk.data(), st.data(), lev),
                0);
      const double errs[] = {worst(in, c.at("student_internal")), worst(ex, c.at("student_external")),
                             worst(cook, c.at("cooks")), worst(atk, c.at("atkinson"))};
      std::printf("  %-18s %-8s internal %.1e, external %.1e, Cook %.1e, Atkinson %.1e\n", name,
                  lev ? "given" : "computed", errs[0], errs[1], errs[2], errs[3]);
      for (double e : errs) EXPECT_LT(e, 1e-10);
      EXPECT_DOUBLE_EQ(st[3], res[3] / f.stats.RootMSE);
    }
  }
}

}  // namespace
