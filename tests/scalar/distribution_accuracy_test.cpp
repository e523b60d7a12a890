// Every row of every reference table under tests/data/distributions (mpmath at 50 digits,
// confirmed at 75, written by tests/tools/make_distribution_reference.py), through the exports
// where they take the row's tail and through the platform routines for the tails the exports
// do not offer. The error is relative: |computed - reference| / |reference|. Targets: 1e-13 for
// the central probabilities in both tails, 1e-12 for the quantiles, 1e-10 for the noncentral
// probabilities; the densities and discrete probabilities are held to the central target. Each
// bound is the worst error reached, rounded up in its first digit, with at least 2e-16: the
// relative accuracy of the tails needs the long double evaluation of x86-64.
#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <vector>

#include "platform/distributions/noncentral.h"
#include "platform/error_record.h"
#include "platform/probability_utility.h"
#include "tests/scalar/reference.h"
#include "zomath/scalar.h"

namespace {

using zomath::platform::NagError;
using zomath::platform::tail_from_code;
using zomath::testing::ErrorStats;
using zomath::testing::load_reference;
using Args = std::vector<double>;
using Form = std::function<double(const Args&, int*)>;

struct Case {
  const char* table;  // tests/data/distributions/<table>.csv
  const char* form;
  Form f;
  double tolerance;
};

std::ostream& operator<<(std::ostream& os, const Case& c) { return os << c.form; }

int I(double v) { return static_cast<int>(v); }

// A platform routine reports through its error record; the code goes where the export's would.
template <class F>
double platform_call(int* code, F f) {
  NagError err;
  const double v = f(err);
  *code = err.code;
  return v;
}

// The closed-form table: function id, x, two parameters.
double closed_form(const Args& a, int* e) {
  switch (I(a[0])) {
    case 1: return normpdf(a[1], a[2], a[3], e);
    case 2: return lognpdf(a[1], a[2], a[3], e);
    case 3: return exppdf(a[1], a[2], e);
    case 4: return cauchypdf(a[1], a[2], a[3], e);
    case 5: return lappdf(a[1], a[2], a[3], e);
    case 6: return wblpdf(a[1], a[2], a[3], e);
    case 7: return wblcdf(a[1], a[2], a[3], e);
    default: return wblinv(a[1], a[2], a[3], e);
  }
}

const Case kCases[] = {
    {"normal_cdf", "normcdf", [](const Args& a, int* e) { return normcdf(a[0], I(a[1]), e); }, 3e-16},
    {"t_cdf", "tcdf", [](const Args& a, int* e) { return tcdf(a[0], a[1], I(a[2]), e); }, 3e-16},
    {"chi2_cdf", "chi2cdf", [](const Args& a, int* e) { return chi2cdf(a[0], a[1], I(a[2]), e); }, 9e-16},
    {"gamma_cdf", "gamcdf", [](const Args& a, int* e) { return gamcdf(a[0], a[1], a[2], I(a[3]), e); }, 4e-15},
    {"beta_cdf", "betacdf", [](const Args& a, int* e) { return betacdf(a[0], a[1], a[2], I(a[3]), e); }, 6e-16},
    {"f_cdf", "fcdf", [](const Args& a, int* e) { return fcdf(a[0], a[1], a[2], I(a[3]), e); }, 1e-14},
    {"binomial", "binocdf", [](const Args& a, int* e) { return binocdf(I(a[0]), I(a[1]), a[2], I(a[3]), e); }, 1e-15},
    {"hypergeometric", "hygecdf",
     [](const Args& a, int* e) { return hygecdf(I(a[0]), I(a[1]), I(a[2]), I(a[3]), I(a[4]), e); }, 2e-16},
    {"poisson", "poisscdf", [](const Args& a, int* e) { return poisscdf(I(a[0]), a[1], I(a[2]), e); }, 3e-16},
    {"ncchi2_cdf", "noncentral chi-square",
     [](const Args& a, int* e) {
       return platform_call(e, [&](NagError& r) {
         return zomath::platform::noncentral_chi_square_probability(a[0], a[1], a[2], tail_from_code(I(a[3])), r);
       });
     }, 2e-16},
    {"ncbeta_cdf", "noncentral beta",
     [](const Args& a, int* e) {
       return platform_call(e, [&](NagError& r) {
         return zomath::platform::noncentral_beta_probability(a[0], a[1], a[2], a[3], tail_from_code(I(a[4])), r);
       });
     }, 2e-16},
    {"ncf_cdf", "noncentral F",
     [](const Args& a, int* e) {
       return platform_call(e, [&](NagError& r) {
         return zomath::platform::noncentral_f_probability(a[0], a[1], a[2], a[3], tail_from_code(I(a[4])), r);
       });
     }, 1e-14},
    {"nct_cdf", "noncentral t",
     [](const Args& a, int* e) {
       return platform_call(e, [&](NagError& r) {
         return zomath::platform::noncentral_t_probability(a[0], a[1], a[2], tail_from_code(I(a[3])), r);
       });
     }, 4e-16},
    {"normal_quantile", "norminv", [](const Args& a, int* e) { return norminv(a[0], e); }, 5e-16},
    {"t_quantile", "tinv", [](const Args& a, int* e) { return tinv(a[0], a[1], I(a[2]), e); }, 2e-16},
    {"chi2_quantile", "chi2inv", [](const Args& a, int* e) { return chi2inv(a[0], a[1], e); }, 2e-16},
    {"gamma_quantile", "gaminv", [](const Args& a, int* e) { return gaminv(a[0], a[1], a[2], e); }, 3e-16},
    {"beta_quantile", "betainv", [](const Args& a, int* e) { return betainv(a[0], a[1], a[2], e); }, 3e-16},
    {"f_quantile", "finv", [](const Args& a, int* e) { return finv(a[0], a[1], a[2], e); }, 9e-16},
    {"gamma_pdf", "gampdf", [](const Args& a, int* e) { return gampdf(a[0], a[1], a[2], e); }, 4e-15},
    {"beta_pdf", "betapdf", [](const Args& a, int* e) { return betapdf(a[0], a[1], a[2], e); }, 8e-16},
    {"closed_form", "closed-form densities, wblcdf, wblinv", closed_form, 1e-15},
    {"inverse_erf", "inverf",
     [](const Args& a, int* e) { *e = 0; return zomath::platform::inverf(a[0]); }, 4e-16},
};

class DistributionAccuracy : public ::testing::TestWithParam<Case> {};

TEST_P(DistributionAccuracy, MatchesReferenceTable) {
  const Case& c = GetParam();
  const auto rows = load_reference(std::string("distributions/") + c.table + ".csv");
  ASSERT_FALSE(rows.empty()) << c.table;
  ErrorStats stats;
  for (const auto& row : rows) {
    int code = -1;
    stats.add(row, c.f(row.args, &code));
    EXPECT_EQ(code, 0) << c.form << " at row " << stats.count();
  }
  std::printf("%-40s %s\n", c.form, stats.describe().c_str());
  EXPECT_LE(stats.worst(), c.tolerance) << c.form;
}

INSTANTIATE_TEST_SUITE_P(Tables, DistributionAccuracy, ::testing::ValuesIn(kCases));

// The point probabilities of the Poisson table through the density, both sides of k = 100.
TEST(DistributionAccuracy, PoissonDensityMatchesPointProbabilities) {
  const auto rows = load_reference("distributions/poisson.csv");
  ErrorStats stats;
  for (const auto& row : rows) {
    if (row.args[2] != ZOMATH_TAIL_POINT) continue;
    int code = -1;
    stats.add(row, poisspdf(I(row.args[0]), row.args[1], &code));
    EXPECT_EQ(code, 0);
  }
  std::printf("%-40s %s\n", "poisspdf", stats.describe().c_str());
  EXPECT_LE(stats.worst(), 2e-16);
}

}  // namespace
