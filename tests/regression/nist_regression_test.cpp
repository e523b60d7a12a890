// Certified linear regressions of NIST StRD (tests/data/nist-strd): Longley (six strongly
// collinear predictors), Norris (a straight line) and NoInt1 (a line through the origin). Each
// quantity is reported as the number of digits that agree with the certified value,
// -log10(|computed - certified| / |certified|), capped at 15 where the certified value itself
// stops.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "platform/regression.h"
#include "zomath/regression.h"

namespace {

struct Certified {
  std::vector<double> beta, sd;  // B0.. and their standard deviations
  double residualSD = 0, rsquare = 0;
  double modelDF = 0, modelSS = 0, modelMS = 0, fvalue = 0, errorDF = 0, errorSS = 0, errorMS = 0;
  std::vector<double> y, x;  // x row-major, nVars columns
  int nVars = 0;
};

// Reads the certified block and the data of a NIST StRD regression file.
Certified read_nist(const std::string& name) {
  Certified c;
  std::ifstream in(std::string(ZOMATH_TEST_DATA_DIR) + "/nist-strd/" + name);
  std::string line;
  bool data = false;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    std::istringstream ss(line);
    std::string word;
    ss >> word;
    if (data) {
      std::vector<double> v;
      std::istringstream row(line);
      double d;
      while (row >> d) v.push_back(d);
      if (v.size() < 2) continue;
      c.nVars = static_cast<int>(v.size()) - 1;
      c.y.push_back(v[0]);
      c.x.insert(c.x.end(), v.begin() + 1, v.end());
    } else if (word.size() == 2 && word[0] == 'B' && std::isdigit(static_cast<unsigned char>(word[1]))) {
      double est, sd;
      ss >> est >> sd;
      c.beta.push_back(est);
      c.sd.push_back(sd);
    } else if (word == "Standard") {
      std::string dev;
      ss >> dev >> c.residualSD;
    } else if (word == "R-Squared") {
      ss >> c.rsquare;
    } else if (word == "Regression") {
      ss >> c.modelDF >> c.modelSS >> c.modelMS >> c.fvalue;
    } else if (word == "Residual" && line.find("Standard") == std::string::npos) {
      if (ss >> c.errorDF >> c.errorSS >> c.errorMS) continue;
    } else if (word == "Data:" && line.find(" y ") != std::string::npos) {
      data = true;
    }
  }
  return c;
}

double digits(double computed, double certified) {
  if (computed == certified) return 15;
  const double rel = std::fabs(computed - certified) / std::fabs(certified);
  return std::min(15.0, -std::log10(rel));
}

struct Quantity {
  const char* name;
  double computed, certified, minDigits;
};

void report(const char* set, const std::vector<Quantity>& qs) {
  for (const Quantity& q : qs) {
    const double d = digits(q.computed, q.certified);
    std::printf("  %-8s %-14s %5.1f digits\n", set, q.name, d);
    EXPECT_GE(d, q.minDigits) << set << " " << q.name << ": " << q.computed << " vs " << q.certified;
  }
}

// The multiple regression on a certified set, through the origin when the set has no B0.
void check_multiple(const char* file, double coefDigits, double errorDigits, double otherDigits) {
  const Certified c = read_nist(file);
  ASSERT_GT(c.nVars, 0) << file;
  const bool origin = c.beta.size() == static_cast<std::size_t>(c.nVars);
  const unsigned n = static_cast<unsigned>(c.y.size()), m = static_cast<unsigned>(c.nVars);
  LinearFitOptions opt{false, 1.0, 0, true, 0.95, false, origin, 0.0};
  std::vector<FitParameter> fit(m + 1);
  FitStats st;
  FitAnovaTable an;
  ASSERT_EQ(zomath_multiple_linear_regression(c.x.data(), n, m, c.y.data(), nullptr, 0, &opt,
                                              fit.data(), m + 1, &st, &an, nullptr, nullptr, 0, 0,
                                              nullptr, nullptr),
            0);
  std::vector<Quantity> qs;
  static const char* names[] = {"B0", "B1", "B2", "B3", "B4", "B5", "B6", "B7"};
  static const char* sdNames[] = {"sd(B0)", "sd(B1)", "sd(B2)", "sd(B3)", "sd(B4)", "sd(B5)", "sd(B6)", "sd(B7)"};
  const std::size_t first = origin ? 1 : 0;
  for (std::size_t j = 0; j < c.beta.size(); ++j) {
    const std::size_t name = origin ? j + 1 : j;
    qs.push_back({names[name], fit[j + first].value, c.beta[j], coefDigits});
    qs.push_back({sdNames[name], fit[j + first].Error, c.sd[j], errorDigits});
  }
  qs.push_back({"residual SD", st.RootMSE, c.residualSD, otherDigits});
  qs.push_back({"R-squared", st.RSquare, c.rsquare, otherDigits});
  qs.push_back({"model SS", an.ModelSS, c.modelSS, otherDigits});
  qs.push_back({"model MS", an.ModelMS, c.modelMS, otherDigits});
  qs.push_back({"F", an.FValue, c.fvalue, otherDigits});
  qs.push_back({"error SS", an.ErrorSS, c.errorSS, otherDigits});
  qs.push_back({"error MS", an.ErrorMS, c.errorMS, otherDigits});
  report(file, qs);
  EXPECT_EQ(an.ModelDF, c.modelDF);
  EXPECT_EQ(an.ErrorDF, c.errorDF);
}

// Longley's design has a condition number near 5e9: the targets are 11 digits for the
// coefficients and 10 for their errors; the certified values carry 15.
TEST(NistRegression, LongleyThroughTheMultipleRegression) {
  check_multiple("Longley.dat", 11, 10, 10);
}

// Well-conditioned lines: all but the last digit or two. Norris's intercept, -0.26, is the
// difference of terms near 400, so the rounding of the means alone costs it three digits.
TEST(NistRegression, NorrisAndNoInt1ThroughTheMultipleRegression) {
  check_multiple("Norris.dat", 12, 13, 13);
  check_multiple("NoInt1.dat", 13, 13, 13);
}

TEST(NistRegression, NorrisAndNoInt1ThroughTheStraightLine) {
  for (const char* file : {"Norris.dat", "NoInt1.dat"}) {
    const Certified c = read_nist(file);
    const bool origin = c.beta.size() == 1;
    zomath::platform::SimpleFit f;
    zomath::platform::NagError fail;
    ASSERT_EQ(zomath::platform::simple_regression(
                  origin ? zomath::platform::Mean::Zero : zomath::platform::Mean::Include,
                  static_cast<int>(c.y.size()), c.x.data(), c.y.data(), nullptr, f, fail),
              0);
    std::vector<Quantity> qs;
    if (!origin) {
      qs.push_back({"B0", f.a, c.beta[0], 12});
      qs.push_back({"sd(B0)", f.seA, c.sd[0], 13});
    }
    qs.push_back({"B1", f.b, c.beta.back(), 13});
    qs.push_back({"sd(B1)", f.seB, c.sd.back(), 13});
    qs.push_back({"R-squared", f.rsq, c.rsquare, 13});
    qs.push_back({"error SS", f.rss, c.errorSS, 13});
    report(file, qs);
    EXPECT_EQ(f.df, c.errorDF);
  }
}

}  // namespace
