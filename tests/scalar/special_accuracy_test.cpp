// Every point of every reference table under tests/data/special (mpmath at 40 digits, written by
// tests/tools/make_special_reference.py) in both forms of each function. The error is
// |computed - reference| / scale, scale = |reference| away from zeros and the function's size
// nearby at them. Targets: 1e-14 for the short forms, 5e-14 for the prefixed forms; each bound
// below is the one the function reaches, rounded up.
#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "tests/scalar/reference.h"
#include "zomath/scalar.h"

namespace {

using zomath::testing::ErrorStats;
using zomath::testing::load_reference;
using Args = std::vector<double>;
using Form = std::function<double(const Args&)>;

struct Case {
  const char* table;  // tests/data/special/<table>.csv
  const char* form;   // which export
  Form f;
  double tolerance;
};

std::ostream& operator<<(std::ostream& os, const Case& c) { return os << c.form; }

Form unary(double (*f)(double)) {
  return [f](const Args& a) { return f(a[0]); };
}
Form binary(double (*f)(double, double)) {
  return [f](const Args& a) { return f(a[0], a[1]); };
}
Form ternary(double (*f)(double, double, double)) {
  return [f](const Args& a) { return f(a[0], a[1], a[2]); };
}
Form quaternary(double (*f)(double, double, double, double)) {
  return [f](const Args& a) { return f(a[0], a[1], a[2], a[3]); };
}
Form polygamma(double (*f)(double, int)) {
  return [f](const Args& a) { return f(a[0], static_cast<int>(a[1])); };
}
Form theta(double (*f)(int, double, double)) {
  return [f](const Args& a) { return f(static_cast<int>(a[0]), a[1], a[2]); };
}
// Complex rows: (re, im, [more], part); part 0 asks for the real half, 1 for the imaginary one.
double part(d_complex z, double which) { return which == 0.0 ? z.re : z.im; }
Form complex_unary(d_complex (*f)(d_complex)) {
  return [f](const Args& a) { return part(f({a[0], a[1]}), a[2]); };
}

const Case kCases[] = {
    {"exp_integral", "exp_integral", unary(exp_integral), 1e-14},
    {"exp_integral", "zomath_exp_integral", unary(zomath_exp_integral), 5e-14},
    {"cos_integral", "cos_integral", unary(cos_integral), 1e-14},
    {"cos_integral", "zomath_cos_integral", unary(zomath_cos_integral), 5e-14},
    {"sin_integral", "sin_integral", unary(sin_integral), 1e-14},
    {"sin_integral", "zomath_sin_integral", unary(zomath_sin_integral), 5e-14},
    {"gamma", "gamma_fn", unary(gamma_fn), 1e-14},
    {"gamma", "zomath_gamma", unary(zomath_gamma), 5e-14},
    {"log_gamma", "log_gamma", unary(log_gamma), 1e-14},
    {"log_gamma", "zomath_log_gamma", unary(zomath_log_gamma), 5e-14},
    {"incomplete_gamma", "incomplete_gamma", binary(incomplete_gamma), 1e-14},
    {"incomplete_gamma", "zomath_incomplete_gamma", binary(zomath_incomplete_gamma), 5e-14},
    {"real_polygamma", "real_polygamma", polygamma(real_polygamma), 1e-14},
    {"real_polygamma", "zomath_real_polygamma", polygamma(zomath_real_polygamma), 5e-14},
    {"cumul_normal", "cumul_normal", unary(cumul_normal), 1e-14},
    {"cumul_normal", "zomath_cumul_normal", unary(zomath_cumul_normal), 5e-14},
    {"cumul_normal_complem", "cumul_normal_complem", unary(cumul_normal_complem), 1e-14},
    {"cumul_normal_complem", "zomath_cumul_normal_complem", unary(zomath_cumul_normal_complem),
     5e-14},
    {"erfc", "erfc_fn", unary(erfc_fn), 1e-14},
    {"erfc", "zomath_erfc", unary(zomath_erfc), 5e-14},
    {"erf", "ADummyFunction", unary(ADummyFunction), 1e-14},
    {"erf", "zomath_erf", unary(zomath_erf), 5e-14},
    {"erfcx", "erfcx", unary(erfcx), 1e-14},
    {"erfinv", "erfinv", unary(erfinv), 1e-14},
    {"erfcinv", "erfcinv", unary(erfcinv), 1e-14},
    {"fresnel_s", "fresnel_s", unary(fresnel_s), 1e-14},
    {"fresnel_s", "zomath_fresnel_s", unary(zomath_fresnel_s), 5e-14},
    {"fresnel_c", "fresnel_c", unary(fresnel_c), 1e-14},
    {"fresnel_c", "zomath_fresnel_c", unary(zomath_fresnel_c), 5e-14},
    {"elliptic_integral_rc", "elliptic_integral_rc", binary(elliptic_integral_rc), 1e-14},
    {"elliptic_integral_rc", "zomath_elliptic_integral_rc", binary(zomath_elliptic_integral_rc),
     5e-14},
    {"elliptic_integral_rf", "elliptic_integral_rf", ternary(elliptic_integral_rf), 1e-14},
    {"elliptic_integral_rf", "zomath_elliptic_integral_rf", ternary(zomath_elliptic_integral_rf),
     5e-14},
    {"elliptic_integral_rd", "elliptic_integral_rd", ternary(elliptic_integral_rd), 1e-14},
    {"elliptic_integral_rd", "zomath_elliptic_integral_rd", ternary(zomath_elliptic_integral_rd),
     5e-14},
    {"elliptic_integral_rj", "elliptic_integral_rj", quaternary(elliptic_integral_rj), 1e-14},
    {"elliptic_integral_rj", "zomath_elliptic_integral_rj",
     quaternary(zomath_elliptic_integral_rj), 5e-14},
    {"jacobian_theta", "jacobian_theta", theta(jacobian_theta), 1e-14},
    {"jacobian_theta", "zomath_jacobian_theta", theta(zomath_jacobian_theta), 5e-14},
    {"lambertW", "lambertW",
     [](const Args& a) {
       int code = -1;
       const double w = lambertW(a[0], static_cast<int>(a[1]), static_cast<int>(a[2]), &code);
       return code == 0 ? w : NANUM;
     },
     1e-14},
    {"zomath_PearsonIV", "zomath_PearsonIV",
     [](const Args& a) { return zomath_PearsonIV(a[0], a[1], a[2], a[3], a[4], a[5], a[6]); },
     5e-14},
    {"sqrtz", "sqrtz", complex_unary(sqrtz), 1e-14},
    {"sinz", "sinz", complex_unary(sinz), 1e-14},
    {"cosz", "cosz", complex_unary(cosz), 1e-14},
    {"tanz", "tanz", complex_unary(tanz), 1e-14},
    {"logz", "logz", complex_unary(logz), 1e-14},
    {"expz", "expz", complex_unary(expz), 1e-14},
    {"cabsz", "cabsz", [](const Args& a) { return cabsz({a[0], a[1]}); }, 1e-14},
    {"ipow", "ipow",
     [](const Args& a) { return part(ipow({a[0], a[1]}, static_cast<int>(a[2])), a[3]); }, 1e-14},
    {"rpow", "rpow", [](const Args& a) { return part(rpow({a[0], a[1]}, a[2]), a[3]); }, 1e-14},
    {"cpowz", "cpowz",
     [](const Args& a) { return part(cpowz({a[0], a[1]}, {a[2], a[3]}), a[4]); }, 1e-14},
};

class SpecialAccuracy : public ::testing::TestWithParam<Case> {};

TEST_P(SpecialAccuracy, EveryReferencePoint) {
  const Case& c = GetParam();
  const auto rows = load_reference(std::string("special/") + c.table + ".csv");
  ASSERT_GE(rows.size(), 150u) << c.table;
  ErrorStats stats;
  for (const auto& row : rows) stats.add(row, c.f(row.args));
  std::printf("  %-30s %s\n", c.form, stats.describe().c_str());
  EXPECT_LE(stats.worst(), c.tolerance) << c.form << ": " << stats.describe();
}

INSTANTIATE_TEST_SUITE_P(BothForms, SpecialAccuracy, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<Case>& info) {
                           return std::string(info.param.form);
                         });

}  // namespace
