// Certified linear regressions of NIST StRD (tests/data/nist-strd): Longley (six collinear
// predictors, condition number 5e9), Norris (a line) and NoInt1 (a line through the origin).
// Each quantity is printed as the digits that agree with the certified value,
// -log10(|computed - certified| / |certified|), capped at 15 where the certified values stop.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "zomath/regression.h"

namespace {

struct Certified {
  std::vector<double> beta, sd, x, y;  // x row-major
  double residualSD = 0, rsquare = 0, modelSS = 0, modelMS = 0, fvalue = 0, errorSS = 0,
         errorMS = 0, modelDF = 0, errorDF = 0;
  int nVars = 0;
};

Certified read_nist(const std::string& name) {
  Certified c;
  std::ifstream in(std::string(ZOMATH_TEST_DATA_DIR) + "/nist-strd/" + name);
  std::string line, skip;
  bool data = false;
  while (std::getline(in, line)) {
    std::istringstream ss(line);
    std::string word;
    ss >> word;
    if (data) {
      std::vector<double> v;
      std::istringstream row(line);
      for (double d; row >> d;) v.push_back(d);
      if (v.size() < 2) continue;
      c.nVars = static_cast<int>(v.size()) - 1;
      c.y.push_back(v[0]);
      c.x.insert(c.x.end(), v.begin() + 1, v.end());
    } else if (word.size() == 2 && word[0] == 'B' && std::isdigit(static_cast<unsigned char>(word[1]))) {
      c.beta.emplace_back();
      c.sd.emplace_back();
      ss >> c.beta.back() >> c.sd.back();
    } else if (word == "Standard") {
      ss >> skip >> c.residualSD;
    } else if (word == "R-Squared") {
      ss >> c.rsquare;
    } else if (word == "Regression") {
      ss >> c.modelDF >> c.modelSS >> c.modelMS >> c.fvalue;
    } else if (word == "Residual" && line.find("Standard") == std::string::npos) {
      ss >> c.errorDF >> c.errorSS >> c.errorMS;
    } else if (word == "Data:" && line.find(" y ") != std::string::npos) {
      data = true;
    }
  }
  return c;
}

double digits(double computed, double certified) {
  if (computed == certified) return 15;
  return std::min(15.0, -std::log10(std::fabs(computed - certified) / std::fabs(certified)));
}

// The multiple regression on a certified set, through the origin when the set has no B0.
void check(const char* file, double coefDigits, double errorDigits, double otherDigits) {
  const Certified c = read_nist(file);
  ASSERT_GT(c.nVars, 0) << file;
  const bool origin = c.beta.size() == static_cast<std::size_t>(c.nVars);
  const unsigned n = static_cast<unsigned>(c.y.size()), m = static_cast<unsigned>(c.nVars);
  const LinearFitOptions opt{false, 1.0, 0, true, 0.95, false, origin, 0.0};
  std::vector<FitParameter> fit(m + 1);
  FitStats st;
  FitAnovaTable an;
  ASSERT_EQ(zomath_multiple_linear_regression(c.x.data(), n, m, c.y.data(), nullptr, 0, &opt,
                                              fit.data(), m + 1, &st, &an, nullptr, nullptr, 0, 0,
                                              nullptr, nullptr),
            0);
  auto expect = [&](const std::string& name, double computed, double certified, double least) {
    const double d = digits(computed, certified);
    std::printf("  %-12s %-12s %5.1f digits\n", file, name.c_str(), d);
    EXPECT_GE(d, least) << file << " " << name << ": " << computed << " vs " << certified;
  };
  for (std::size_t j = 0; j < c.beta.size(); ++j) {
    const std::string b = "B" + std::to_string(origin ? j + 1 : j);
    expect(b, fit[origin ? j + 1 : j].value, c.beta[j], coefDigits);
    expect("sd(" + b + ")", fit[origin ? j + 1 : j].Error, c.sd[j], errorDigits);
  }
  expect("residual SD", st.RootMSE, c.residualSD, otherDigits);
  expect("R-squared", st.RSquare, c.rsquare, otherDigits);
  expect("model SS", an.ModelSS, c.modelSS, otherDigits);
  expect("model MS", an.ModelMS, c.modelMS, otherDigits);
  expect("F", an.FValue, c.fvalue, otherDigits);
  expect("error SS", an.ErrorSS, c.errorSS, otherDigits);
  expect("error MS", an.ErrorMS, c.errorMS, otherDigits);
  EXPECT_EQ(an.ModelDF, c.modelDF);
  EXPECT_EQ(an.ErrorDF, c.errorDF);
}

// Targets for Longley: 11 digits in the coefficients, 10 in their errors.
TEST(NistRegression, Longley) { check("Longley.dat", 11, 10, 10); }

// Well-conditioned lines: all but a digit or two. Norris's intercept, -0.26, is the difference
// of terms near 400, so the rounding of the means alone costs it three digits.
TEST(NistRegression, NorrisAndNoInt1) {
  check("Norris.dat", 12, 13, 13);
  check("NoInt1.dat", 13, 13, 13);
}

}  // namespace
