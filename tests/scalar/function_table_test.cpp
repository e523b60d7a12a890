// The named function table: every row reaches the function it names with its arguments
// unpacked as its kind says, the lookup's order and case rule, the validity pattern, the list
// export, and integralZT on integrals with known values over each kind of interval.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/quadrature.h"
#include "platform/utility.h"
#include "scalar/function_table.h"
#include "zomath/scalar.h"

namespace {

struct Expected {
  int category;
  int count;
  std::vector<double> args;                                // valid arguments for the row
  std::function<double(const double*, int*)> direct;       // the direct call, code to *err
};

bool same(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

// The direct call of each row, written from the function's documented signature.
std::map<std::string, Expected> expected_rows() {
  using A = const double*;
  auto plain1 = [](double (*f)(double), double x) {
    return Expected{ZOMATH_ZT_PLAIN, 1, {x}, [f](A a, int*) { return f(a[0]); }};
  };
  auto nu = [](double (*f)(double, int), double x, int n) {
    return Expected{ZOMATH_ZT_PLAIN, 2, {x, double(n)}, [f](A a, int*) { return f(a[0], int(a[1])); }};
  };
  auto three = [](int cat, double (*f)(double, double, double, int*), std::vector<double> v) {
    return Expected{cat, 4, v, [f](A a, int* e) { return f(a[0], a[1], a[2], e); }};
  };
  auto lower4 = [](double (*f)(double, double, double, int, int*), std::vector<double> v) {
    return Expected{ZOMATH_ZT_CDF, 5, v, [f](A a, int* e) { return f(a[0], a[1], a[2], 2, e); }};
  };
  std::map<std::string, Expected> m;
  m["airy_ai"] = plain1(airy_ai, -2.5);
  m["airy_ai_deriv"] = plain1(airy_ai_deriv, 1.25);
  m["airy_bi"] = plain1(airy_bi, 0.75);
  m["airy_bi_deriv"] = plain1(airy_bi_deriv, -3.5);
  m["bessel_i_nu"] = nu(bessel_i_nu, 2.5, 3);
  m["bessel_i_nu_scaled"] = nu(bessel_i_nu_scaled, 2.5, -1);
  m["bessel_i0"] = plain1(bessel_i0, 1.5);
  m["bessel_i0_scaled"] = plain1(bessel_i0_scaled, 30);
  m["bessel_i1"] = plain1(bessel_i1, -1.5);
  m["bessel_i1_scaled"] = plain1(bessel_i1_scaled, 12);
  m["bessel_j0"] = plain1(bessel_j0, 3.25);
  m["bessel_j1"] = plain1(bessel_j1, 7.5);
  m["bessel_k_nu"] = nu(bessel_k_nu, 0.5, 2);
  m["bessel_k_nu_scaled"] = nu(bessel_k_nu_scaled, 4.5, 1);
  m["bessel_k0"] = plain1(bessel_k0, 0.25);
  m["bessel_k0_scaled"] = plain1(bessel_k0_scaled, 5);
  m["bessel_k1"] = plain1(bessel_k1, 2);
  m["bessel_k1_scaled"] = plain1(bessel_k1_scaled, 9);
  m["bessel_y0"] = plain1(bessel_y0, 4.5);
  m["bessel_y1"] = plain1(bessel_y1, 0.5);
  m["betacdf"] = lower4(betacdf, {0.3, 2.5, 4});
  m["betainv"] = three(ZOMATH_ZT_INVERSE, betainv, {0.7, 2, 3});
  m["betapdf"] = three(ZOMATH_ZT_PDF, betapdf, {0.3, 2.5, 4});
  m["binocdf"] = {ZOMATH_ZT_CDF, 5, {4, 10, 0.3},
                  [](A a, int* e) { return binocdf(int(a[0]), int(a[1]), a[2], 6, e); }};
  m["bivarnormcdf"] = three(ZOMATH_ZT_CDF, bivarnormcdf, {0.5, -0.25, 0.6});
  m["cauchypdf"] = three(ZOMATH_ZT_PDF, cauchypdf, {1.5, 0.5, 2});
  m["chi2cdf"] = {ZOMATH_ZT_CDF, 4, {3.5, 4}, [](A a, int* e) { return chi2cdf(a[0], a[1], 2, e); }};
  m["chi2inv"] = {ZOMATH_ZT_INVERSE, 3, {0.95, 7}, [](A a, int* e) { return chi2inv(a[0], a[1], e); }};
  m["cos_integral"] = plain1(cos_integral, 2.5);
  m["cumul_normal"] = plain1(cumul_normal, -1.75);
  m["cumul_normal_complem"] = plain1(cumul_normal_complem, 1.75);
  m["elliptic_integral_rc"] = {ZOMATH_ZT_PLAIN, 2, {1.5, 2},
                               [](A a, int*) { return elliptic_integral_rc(a[0], a[1]); }};
  m["elliptic_integral_rd"] = {ZOMATH_ZT_PLAIN, 3, {1, 2, 3},
                               [](A a, int*) { return elliptic_integral_rd(a[0], a[1], a[2]); }};
  m["elliptic_integral_rf"] = {ZOMATH_ZT_PLAIN, 3, {1, 2, 4},
                               [](A a, int*) { return elliptic_integral_rf(a[0], a[1], a[2]); }};
  m["elliptic_integral_rj"] = {ZOMATH_ZT_PLAIN, 4, {1, 2, 3, 5}, [](A a, int*) {
                                 return elliptic_integral_rj(a[0], a[1], a[2], a[3]);
                               }};
  m["erf"] = plain1(ADummyFunction, 0.4);
  m["erfc"] = plain1(erfc_fn, 2.2);
  m["erfcinv"] = plain1(erfcinv, 0.3);
  m["erfcx"] = plain1(erfcx, 3);
  m["erfinv"] = plain1(erfinv, -0.6);
  m["exp_integral"] = plain1(exp_integral, 1.25);
  m["exppdf"] = {ZOMATH_ZT_PDF, 3, {0.5, 2}, [](A a, int* e) { return exppdf(a[0], a[1], e); }};
  m["fcdf"] = lower4(fcdf, {2.5, 3, 12});
  m["finv"] = {ZOMATH_ZT_INVERSE, 5, {0.9, 4, 20},
               [](A a, int* e) { return finv(a[0], a[1], a[2], e); }};
  m["fresnel_c"] = plain1(fresnel_c, 1.3);
  m["fresnel_s"] = plain1(fresnel_s, 1.3);
  m["gamcdf"] = lower4(gamcdf, {2.5, 3, 1.5});
  m["gaminv"] = three(ZOMATH_ZT_INVERSE, gaminv, {0.25, 3, 1.5});
  m["gamma"] = plain1(gamma_fn, 4.5);
  m["gampdf"] = three(ZOMATH_ZT_PDF, gampdf, {2.5, 3, 1.5});
  m["hygecdf"] = {ZOMATH_ZT_CDF, 6, {2, 7, 20, 6}, [](A a, int* e) {
                    return hygecdf(int(a[0]), int(a[1]), int(a[2]), int(a[3]), 6, e);
                  }};
  m["incomplete_gamma"] = {ZOMATH_ZT_PLAIN, 2, {2.5, 1.5},
                           [](A a, int*) { return incomplete_gamma(a[0], a[1]); }};
  m["jacobian_theta"] = {ZOMATH_ZT_PLAIN, 3, {3, 0.2, 0.4},
                         [](A a, int*) { return jacobian_theta(int(a[0]), a[1], a[2]); }};
  m["kelvin_bei"] = plain1(kelvin_bei, 2.5);
  m["kelvin_ber"] = plain1(kelvin_ber, 2.5);
  m["kelvin_kei"] = plain1(kelvin_kei, 2.5);
  m["kelvin_ker"] = plain1(kelvin_ker, 2.5);
  m["lambertW"] = {ZOMATH_ZT_PLAIN, 4, {-0.2, -1, 0},
                   [](A a, int* e) { return lambertW(a[0], int(a[1]), int(a[2]), e); }};
  m["lappdf"] = three(ZOMATH_ZT_PDF, lappdf, {0.5, 1, 2});
  m["log_gamma"] = plain1(log_gamma, 12.5);
  m["lognpdf"] = three(ZOMATH_ZT_PDF, lognpdf, {1.5, 0.2, 0.8});
  m["ncbetacdf"] = {ZOMATH_ZT_CDF, 5, {0.4, 2, 3, 1.5},
                    [](A a, int* e) { return ncbetacdf(a[0], a[1], a[2], a[3], e); }};
  m["ncchi2cdf"] = three(ZOMATH_ZT_CDF, ncchi2cdf, {5, 3, 2});
  m["ncfcdf"] = {ZOMATH_ZT_CDF, 5, {2, 3, 10, 1.5},
                 [](A a, int* e) { return ncfcdf(a[0], a[1], a[2], a[3], e); }};
  m["nctcdf"] = {ZOMATH_ZT_CDF, 5, {1.5, 8, 0.75, 50},
                 [](A a, int* e) { return nctcdf(a[0], a[1], a[2], e, int(a[3])); }};
  m["normcdf"] = {ZOMATH_ZT_CDF, 3, {-1.2}, [](A a, int* e) { return normcdf(a[0], 2, e); }};
  m["norminv"] = {ZOMATH_ZT_INVERSE, 2, {0.975}, [](A a, int* e) { return norminv(a[0], e); }};
  m["normpdf"] = three(ZOMATH_ZT_PDF, normpdf, {0.5, 1, 2});
  m["poisscdf"] = {ZOMATH_ZT_CDF, 4, {3, 2.5},
                   [](A a, int* e) { return poisscdf(int(a[0]), a[1], 6, e); }};
  m["poisspdf"] = {ZOMATH_ZT_PDF, 3, {3, 2.5},
                   [](A a, int* e) { return poisspdf(int(a[0]), a[1], e); }};
  m["real_polygamma"] = nu(real_polygamma, 2.5, 2);
  m["sin_integral"] = plain1(sin_integral, 3.5);
  m["srangecdf"] = {ZOMATH_ZT_CDF, 4, {3.5, 20, 4},
                    [](A a, int* e) { return srangecdf(a[0], a[1], int(a[2]), e); }};
  m["srangeinv"] = {ZOMATH_ZT_INVERSE, 4, {0.95, 20, 4},
                    [](A a, int* e) { return srangeinv(a[0], a[1], int(a[2]), e); }};
  m["tcdf"] = {ZOMATH_ZT_CDF, 4, {1.8, 6}, [](A a, int* e) { return tcdf(a[0], a[1], 2, e); }};
  m["tinv"] = {ZOMATH_ZT_INVERSE, 4, {0.9, 6}, [](A a, int* e) { return tinv(a[0], a[1], 6, e); }};
  m["wblcdf"] = three(ZOMATH_ZT_CDF, wblcdf, {1.5, 2, 3});
  m["wblinv"] = three(ZOMATH_ZT_INVERSE, wblinv, {0.5, 2, 3});
  m["wblpdf"] = three(ZOMATH_ZT_PDF, wblpdf, {1.5, 2, 3});
  return m;
}

std::vector<std::string> table_names() {
  std::vector<std::string> names;
  char name[ZOMATH_ZT_NAME_SIZE];
  for (unsigned long i = 0;; ++i) {
    if (zomath_ZT_functions(ZOMATH_ZT_NAME, name, &i, nullptr, nullptr) != 0) break;
    names.emplace_back(name);
  }
  return names;
}

TEST(FunctionTable, EveryRowCallsItsFunctionWithItsArgumentsUnpacked) {
  const auto expected = expected_rows();
  const auto names = table_names();
  ASSERT_EQ(names.size(), 79u);
  ASSERT_EQ(expected.size(), 79u);
  for (std::size_t i = 0; i < names.size(); ++i) {
    SCOPED_TRACE(names[i]);
    const auto it = expected.find(names[i]);
    ASSERT_NE(it, expected.end());
    const Expected& e = it->second;
    unsigned long index = 12345;
    EXPECT_EQ(zomath_ZT_functions(ZOMATH_ZT_LOOKUP, const_cast<char*>(names[i].c_str()), &index,
                                  nullptr, nullptr),
              e.count);
    EXPECT_EQ(index, i);
    EXPECT_EQ(zomath_ZT_functions(ZOMATH_ZT_ARG_COUNT, nullptr, &index, nullptr, nullptr), e.count);
    std::vector<double> args = e.args;
    args.resize(4, 0.0);
    double result = -7;
    const int code = zomath_ZT_functions(ZOMATH_ZT_CALL, nullptr, &index, args.data(), &result);
    int directCode = 0;
    const double direct = e.direct(args.data(), &directCode);
    EXPECT_TRUE(same(result, direct)) << result << " vs " << direct;
    EXPECT_EQ(code, directCode);
    EXPECT_NE(direct, NANUM) << "the test's arguments should be valid";
  }
}

TEST(FunctionTable, RowsAreInTheLookupOrderAndPunctuationSortsBeforeDigits) {
  const auto names = table_names();
  for (std::size_t i = 1; i < names.size(); ++i)
    EXPECT_LT(zomath::scalar::compare_names(names[i - 1].c_str(), names[i].c_str()), 0)
        << names[i - 1] << " / " << names[i];
  EXPECT_LT(zomath::scalar::compare_names("bessel_i_nu", "bessel_i0"), 0);
  EXPECT_EQ(zomath::scalar::compare_names("LambertW", "lambertw"), 0);
  EXPECT_LT(zomath::scalar::compare_names("erf", "erfc"), 0);
}

TEST(FunctionTable, LookupIgnoresCaseAndRejectsNamesOutsideTheTable) {
  struct Case {
    const char* name;
    int result;
  };
  const Case cases[] = {
      {"POISSPDF", 3}, {"Bessel_J0", 1}, {"AIRY_AI", 1},     {"wblpdf", 4},  {"WBLPDF", 4},
      {"a", -1},       {"", -1},         {"airy", -1},       {"zeta", -1},   {"wblpdf_x", -1},
      {"gammaa", -1},  {"erfcc", -1},    {"bessel_i", -1},   {"tcdf ", -1},
  };
  for (const Case& c : cases) {
    unsigned long index = 999;
    EXPECT_EQ(zomath_ZT_functions(ZOMATH_ZT_LOOKUP, const_cast<char*>(c.name), &index, nullptr,
                                  nullptr),
              c.result)
        << c.name;
    if (c.result < 0) {
      EXPECT_EQ(index, 999u) << c.name;
    }
  }
  EXPECT_EQ(zomath_ZT_functions(ZOMATH_ZT_LOOKUP, nullptr, nullptr, nullptr, nullptr), -1);
  // The index is optional in a lookup.
  EXPECT_EQ(zomath_ZT_functions(ZOMATH_ZT_LOOKUP, const_cast<char*>("erf"), nullptr, nullptr,
                                nullptr),
            1);
}

TEST(FunctionTable, ModesRefuseNullPointersRowsOutOfRangeAndUnknownModes) {
  double args[4] = {0.5, 0, 0, 0}, result = 42;
  unsigned long index = 0, past = 79, huge = ~0UL;
  char name[ZOMATH_ZT_NAME_SIZE];
  EXPECT_EQ(zomath_ZT_functions(ZOMATH_ZT_CALL, nullptr, nullptr, args, &result), -1);
  EXPECT_EQ(zomath_ZT_functions(ZOMATH_ZT_CALL, nullptr, &index, nullptr, &result), -1);
  EXPECT_EQ(zomath_ZT_functions(ZOMATH_ZT_CALL, nullptr, &index, args, nullptr), -1);
  EXPECT_EQ(zomath_ZT_functions(ZOMATH_ZT_CALL, nullptr, &past, args, &result), -1);
  EXPECT_EQ(zomath_ZT_functions(ZOMATH_ZT_CALL, nullptr, &huge, args, &result), -1);
  EXPECT_EQ(result, 42);
  EXPECT_EQ(zomath_ZT_functions(ZOMATH_ZT_ARG_COUNT, nullptr, nullptr, nullptr, nullptr), -1);
  EXPECT_EQ(zomath_ZT_functions(ZOMATH_ZT_ARG_COUNT, nullptr, &past, nullptr, nullptr), -1);
  EXPECT_EQ(zomath_ZT_functions(ZOMATH_ZT_NAME, nullptr, &index, nullptr, nullptr), -1);
  EXPECT_EQ(zomath_ZT_functions(ZOMATH_ZT_NAME, name, &past, nullptr, nullptr), -1);
  EXPECT_EQ(zomath_ZT_functions(ZOMATH_ZT_NAME, name, &index, nullptr, nullptr), 0);
  EXPECT_STREQ(name, "airy_ai");
  for (unsigned mode : {0u, 5u, 99u})
    EXPECT_EQ(zomath_ZT_functions(mode, name, &index, args, &result), -1);
}

double call(const char* name, std::vector<double> args, int* code) {
  unsigned long index = 0;
  EXPECT_GE(zomath_ZT_functions(ZOMATH_ZT_LOOKUP, const_cast<char*>(name), &index, nullptr,
                                nullptr),
            0)
      << name;
  args.resize(4, 0.0);
  double result = -7;
  *code = zomath_ZT_functions(ZOMATH_ZT_CALL, nullptr, &index, args.data(), &result);
  return result;
}

TEST(FunctionTable, PoissonDensityNeedsAWholeCount) {
  struct Case {
    double k;
    double expected;  // NAN: the direct value at (int)k
  };
  const Case cases[] = {{2.5, 0.0}, {-0.5, 0.0}, {NANUM, 0.0}, {NAN, 0.0}, {INFINITY, 0.0},
                        {3, NAN},   {0, NAN},    {1e6, NAN}};
  for (const Case& c : cases) {
    int code = -1;
    const double v = call("poisspdf", {c.k, 1e6}, &code);
    EXPECT_EQ(code, 0) << c.k;
    if (std::isnan(c.expected))
      EXPECT_EQ(v, poisspdf(int(c.k), 1e6, nullptr)) << c.k;
    else
      EXPECT_EQ(v, c.expected) << c.k;
  }
}

TEST(FunctionTable, IntArgumentsAreTruncatedClampedOrRefused) {
  int code = -1;
  // Truncation toward zero.
  EXPECT_EQ(call("binocdf", {4.9, 10.7, 0.3}, &code), binocdf(4, 10, 0.3, 6, nullptr));
  EXPECT_EQ(call("jacobian_theta", {-0.0, 0.2, 0.4}, &code), jacobian_theta(0, 0.2, 0.4));
  // Beyond the int range: clamped, and the function judges the value.
  EXPECT_EQ(call("poisscdf", {1e300, 2.5}, &code), 1.0);
  EXPECT_EQ(code, 0);
  EXPECT_EQ(call("bessel_i_nu", {1.5, -1e300}, &code), NANUM);
  // NANUM stays missing; NaN is a bad argument where the function has a code.
  EXPECT_EQ(call("hygecdf", {2, NANUM, 20, 6}, &code), NANUM);
  EXPECT_EQ(code, 0);
  EXPECT_EQ(call("srangecdf", {3.5, 20, NAN}, &code), NANUM);
  EXPECT_EQ(code, ZOMATH_DIST_BAD_ARGUMENT);
  EXPECT_TRUE(std::isnan(call("real_polygamma", {2.5, NAN}, &code)));
  EXPECT_EQ(code, 0);
  // nctcdf: an iteration limit of 0 means 100.
  EXPECT_EQ(call("nctcdf", {1.5, 8, 0.75, 0}, &code), nctcdf(1.5, 8, 0.75, nullptr, 100));
  // A failing function's code is the mode's return.
  EXPECT_EQ(call("lambertW", {0.5, 3, 0}, &code), NANUM);
  EXPECT_EQ(code, 1);
  EXPECT_EQ(call("norminv", {1.5}, &code), NANUM);
  EXPECT_EQ(code, ZOMATH_DIST_BAD_ARGUMENT);
}

TEST(FunctionTable, ListGivesNamesAndArgumentsOfACategoryInTableOrder) {
  const auto expected = expected_rows();
  const auto names = table_names();
  zomath_StringArray list = {nullptr, 0, 0}, args = {nullptr, 0, 0};
  ASSERT_EQ(zomath_string_array_append(&list, "left over"), 0);
  for (int category = 0; category < 4; ++category) {
    std::vector<std::string> want;
    for (const auto& n : names)
      if (expected.at(n).category == category) want.push_back(n);
    ASSERT_EQ(zomath_ZT_functions_get_list(&list, &args, category), int(want.size()));
    ASSERT_EQ(list.nSize, int(want.size()));
    ASSERT_EQ(args.nSize, int(want.size()));
    for (std::size_t i = 0; i < want.size(); ++i) {
      EXPECT_EQ(list.pItems[i], want[i]);
      // The argument list names count - (arguments the kind fixes) arguments, at least one.
      EXPECT_GT(std::strlen(args.pItems[i]), 0u);
    }
  }
  EXPECT_EQ(zomath_ZT_functions_get_list(&list, nullptr, ZOMATH_ZT_PLAIN), 46);
  EXPECT_EQ(zomath_ZT_functions_get_list(&list, &args, ZOMATH_ZT_CDF), 16);
  EXPECT_STREQ(list.pItems[0], "betacdf");
  EXPECT_STREQ(args.pItems[0], "x,a,b");
  EXPECT_EQ(zomath_ZT_functions_get_list(&list, &args, 7), -1);
  EXPECT_EQ(list.nSize, 0);
  EXPECT_EQ(args.nSize, 0);
  EXPECT_EQ(zomath_ZT_functions_get_list(nullptr, nullptr, -1), -1);
  zomath_string_array_clear(&list);
  zomath_string_array_clear(&args);
  EXPECT_EQ(list.pItems, nullptr);
  EXPECT_EQ(zomath_string_array_append(nullptr, "x"), ZOMATH_ERR_NULL_POINTER);
  EXPECT_EQ(zomath_string_array_append(&list, nullptr), ZOMATH_ERR_NULL_POINTER);
}

TEST(FunctionTable, WholeNumberTextsForTheValidityTest) {
  struct Case {
    const char* text;
    bool whole;
  };
  const Case cases[] = {
      {"0", true},        {"-12", true},    {"+7", true},          {"1e+06", true},
      {"1.5e+06", true},  {"1.25e+02", true}, {"-0", true},        {"0e-300", true},
      {"2.5", false},     {"1e-300", false}, {"-1.23457e-300", false}, {"1.23457e+02", false},
      {"120e-1", true},   {"125e-1", false}, {"nan", false},       {"inf", false},
      {"-inf", false},    {"", false},      {" 3", false},         {"3 ", false},
      {"e5", false},      {"1e", false},    {"--1", false},        {"3.", true},
  };
  for (const Case& c : cases)
    EXPECT_EQ(zomath::platform::is_str_numeric_integer(c.text), c.whole) << c.text;
  EXPECT_FALSE(zomath::platform::is_str_numeric_integer(nullptr));
}

// ---- integralZT ----

double square(double x, void*) { return x * x; }
double inverse_sqrt(double x, void*) { return 1 / std::sqrt(x); }
double log_of(double x, void*) { return std::log(x); }
double decay(double x, void* scale) { return std::exp(-x * *static_cast<double*>(scale)); }
double growth(double x, void*) { return std::exp(x); }
double gaussian(double x, void*) { return std::exp(-x * x); }
double lorentz(double x, void*) { return 1 / (1 + x * x); }
double reciprocal(double x, void*) { return 1 / x; }
double oscillating(double x, void*) { return std::sin(x); }
double not_a_number(double, void*) { return NAN; }

TEST(IntegralZT, KnownIntegralsOverEveryKindOfInterval) {
  const double pi = 3.14159265358979323846;
  double two = 2;
  struct Case {
    const char* what;
    double (*f)(double, void*);
    void* data;
    double from, to, value;
  };
  const double inf = INFINITY;
  // Closed forms; the quadrature is asked for 1e-5 absolute or 1e-7 relative, and QUADPACK's
  // 21-point rule with extrapolation meets that with room to spare on these integrands.
  const Case cases[] = {
      {"x^2 on [0, 1]", square, nullptr, 0, 1, 1.0 / 3},
      {"x^2 on [1, 0]: reversed, negative", square, nullptr, 1, 0, -1.0 / 3},
      {"x^-1/2 on [0, 1]: end-point singularity", inverse_sqrt, nullptr, 0, 1, 2},
      {"ln x on [0, 1]", log_of, nullptr, 0, 1, -1},
      {"e^-2x on [0, inf)", decay, &two, 0, inf, 0.5},
      {"e^-2x on [0, NANUM as +inf)", decay, &two, 0, NANUM, 0.5},
      {"e^-2x from +inf to 0: the sign turns", decay, &two, inf, 0, -0.5},
      {"e^x on (-inf, 0]", growth, nullptr, -inf, 0, 1},
      {"e^x on (NANUM as -inf, 0]", growth, nullptr, NANUM, 0, 1},
      {"e^x from 0 to -inf", growth, nullptr, 0, -inf, -1},
      {"e^-x^2 on the line", gaussian, nullptr, -inf, inf, std::sqrt(pi)},
      {"e^-x^2 with both bounds NANUM", gaussian, nullptr, NANUM, NANUM, std::sqrt(pi)},
      {"e^-x^2 from +inf to -inf", gaussian, nullptr, inf, -inf, -std::sqrt(pi)},
      {"1 / (1 + x^2) on [1, inf)", lorentz, nullptr, 1, inf, pi / 4},
      {"equal bounds", square, nullptr, 2.5, 2.5, 0},
      {"equal infinite bounds", gaussian, nullptr, inf, inf, 0},
  };
  double worst = 0;
  const char* worstCase = "";
  for (const Case& c : cases) {
    ZTFInfo info{c.f, c.data};
    const double v = integralZT(&info, c.from, c.to);
    const double err = std::fabs(v - c.value);
    EXPECT_LE(err, std::max(1e-5, 1e-7 * std::fabs(c.value))) << c.what << ": " << v;
    EXPECT_EQ(zomath::scalar::integral_error().code, 0) << c.what;
    if (err > worst) worst = err, worstCase = c.what;
  }
  std::printf("integralZT: worst absolute error %.3g (%s)\n", worst, worstCase);
}

TEST(IntegralZT, TheBaseTableCallsIt) {
  unsigned long index = 9;
  EXPECT_EQ(zomath_ZT_base_functions(ZOMATH_ZT_LOOKUP, const_cast<char*>("INTEGRAL"), &index,
                                     nullptr, nullptr, nullptr),
            2);
  EXPECT_EQ(index, 0u);
  EXPECT_EQ(zomath_ZT_base_functions(ZOMATH_ZT_LOOKUP, const_cast<char*>("integrals"), &index,
                                     nullptr, nullptr, nullptr),
            -1);
  ZTFInfo info{square, nullptr};
  double bounds[2] = {0, 3}, result = 0;
  EXPECT_EQ(zomath_ZT_base_functions(ZOMATH_ZT_CALL, nullptr, &index, &info, bounds, &result), 0);
  EXPECT_NEAR(result, 9.0, 1e-9);
  unsigned long past = 1;
  EXPECT_EQ(zomath_ZT_base_functions(ZOMATH_ZT_CALL, nullptr, &past, &info, bounds, &result), -1);
  EXPECT_EQ(zomath_ZT_base_functions(ZOMATH_ZT_CALL, nullptr, nullptr, &info, bounds, &result), -1);
  EXPECT_EQ(zomath_ZT_base_functions(ZOMATH_ZT_CALL, nullptr, &index, &info, nullptr, &result), -1);
  EXPECT_EQ(zomath_ZT_base_functions(3, nullptr, &index, &info, bounds, &result), -1);
  // A null integrand reaches integralZT, which answers NANUM.
  EXPECT_EQ(zomath_ZT_base_functions(ZOMATH_ZT_CALL, nullptr, &index, nullptr, bounds, &result), 0);
  EXPECT_EQ(result, NANUM);
}

TEST(IntegralZT, FailuresGiveNanumAndLeaveTheirCode) {
  namespace p = zomath::platform;
  struct Case {
    const char* what;
    double (*f)(double, void*);
    double from, to;
    std::vector<int> codes;  // any of these
  };
  const Case cases[] = {
      {"1/x on [0, 1] diverges", reciprocal, 0, 1,
       {p::kQuadNoConvergence, p::kQuadRoundoff, p::kQuadBadIntegrand, p::kQuadTooManySubintervals}},
      {"sin x on [0, inf) has no limit", oscillating, 0, INFINITY,
       {p::kQuadNoConvergence, p::kQuadRoundoff, p::kQuadBadIntegrand, p::kQuadTooManySubintervals}},
      {"a NaN integrand", not_a_number, 0, 1,
       {p::kQuadNoConvergence, p::kQuadRoundoff, p::kQuadBadIntegrand, p::kQuadTooManySubintervals}},
      {"a NaN bound", square, NAN, 1, {p::kQuadBadArgument}},
  };
  for (const Case& c : cases) {
    ZTFInfo info{c.f, nullptr};
    EXPECT_EQ(integralZT(&info, c.from, c.to), NANUM) << c.what;
    const int code = zomath::scalar::integral_error().code;
    EXPECT_NE(std::find(c.codes.begin(), c.codes.end(), code), c.codes.end())
        << c.what << ": code " << code;
  }
  EXPECT_EQ(integralZT(nullptr, 0, 1), NANUM);
  ZTFInfo empty{nullptr, nullptr};
  EXPECT_EQ(integralZT(&empty, 0, 1), NANUM);
  EXPECT_EQ(zomath::scalar::integral_error().code, p::kQuadBadArgument);
  // The record is reset by the next call.
  ZTFInfo ok{square, nullptr};
  EXPECT_NEAR(integralZT(&ok, 0, 1), 1.0 / 3, 1e-12);
  EXPECT_EQ(zomath::scalar::integral_error().code, 0);
}

double cos_squared(double x, void*) { return std::cos(x) * std::cos(x); }

TEST(IntegralZT, TheSubintervalBudgetIsReported) {
  // cos^2 x over [0, 1e4] swings about 3000 times: 500 sub-intervals of a 21-point rule cannot
  // follow it to 1e-7, and the failure is the budget's.
  ZTFInfo info{cos_squared, nullptr};
  EXPECT_EQ(integralZT(&info, 0, 1e4), NANUM);
  EXPECT_EQ(zomath::scalar::integral_error().code, zomath::platform::kQuadTooManySubintervals);
  // Ten times shorter, it fits.
  EXPECT_NEAR(integralZT(&info, 0, 1e3), 500 + std::sin(2e3) / 4, 1e-5);
}

}  // namespace
