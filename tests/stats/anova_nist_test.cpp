// The NIST StRD one-way ANOVA sets: between and within sums of squares, mean squares, F,
// R-squared and the residual SD of zomath_anova_one_way against the certified values in each
// file's header, as digits (-log10 of the relative error, 16 when exact).
//
// The certified values belong to the decimal data. SmLs07 to SmLs09 hold values such as
// 1000000000000.4, whose nearest double is 2.4e-5 away, at a spread of 0.1: the doubles
// themselves have sums that agree with the certified ones to about 4 digits, and no computation
// on them can do better. So each set is asked the digits of its difficulty (10 lower, 9 average,
// 6 higher) or, where the doubles hold fewer, what they hold; and, to show that the computation
// loses nothing to the constant leading digits, 14 digits of the exact sums of the doubles
// (tests/data/stats/anova_nist_exact.csv, rational arithmetic).
#include <gtest/gtest.h>

#include <cctype>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "../scalar/reference.h"
#include "zomath/stats.h"

namespace {

struct NistAnova {
  std::vector<double> y;
  std::vector<int> sizes;
  double certified[7] = {NAN, NAN, NAN, NAN, NAN, NAN, NAN};  // B, W, MSB, MSW, F, R2, SD
};

NistAnova read_set(const std::string& name) {
  NistAnova s;
  std::ifstream in(std::string(ZOMATH_TEST_DATA_DIR) + "/nist-strd/" + name + ".dat");
  std::string line;
  std::map<int, std::vector<double>> groups;
  bool data = false;
  while (std::getline(in, line)) {
    std::istringstream ss(line);
    std::string word, label;
    ss >> word;
    if (word == "Between") {
      double df;
      ss >> label >> df >> s.certified[0] >> s.certified[2] >> s.certified[4];
    } else if (word == "Within") {
      double df;
      ss >> label >> df >> s.certified[1] >> s.certified[3];
    } else if (word == "Certified" && line.find("R-Squared") != std::string::npos) {
      s.certified[5] = std::stod(line.substr(line.find("R-Squared") + 9));
    } else if (line.find("Standard Deviation") != std::string::npos) {
      s.certified[6] = std::stod(line.substr(line.find("Deviation") + 9));
    } else if (word == "Data:") {  // the header's "Data: 1 Factor", then the table's "Data: Treatment"
      ss >> label;
      data = !label.empty() && !std::isdigit(static_cast<unsigned char>(label[0]));
    } else if (data && !word.empty()) {
      double v;
      ss >> v;
      groups[std::stoi(word)].push_back(v);
    }
  }
  for (const auto& [g, values] : groups) {
    s.y.insert(s.y.end(), values.begin(), values.end());
    s.sizes.push_back(static_cast<int>(values.size()));
  }
  return s;
}

double digits(double value, double reference) {
  if (value == reference) return 16;
  return std::fmin(16, -std::log10(std::fabs(value - reference) / std::fabs(reference)));
}

TEST(NistAnova, CertifiedDigits) {
  const struct {
    const char* name;
    double target;  // digits asked of the certified values: lower 10, average 9, higher 6
  } sets[] = {{"SiRstv", 10}, {"SmLs01", 10}, {"SmLs02", 10}, {"SmLs03", 10},
              {"AtmWtAg", 9}, {"SmLs04", 9},  {"SmLs05", 9},  {"SmLs06", 9},
              {"SmLs07", 6},  {"SmLs08", 6},  {"SmLs09", 6}};
  const auto exact = zomath::testing::load_reference("stats/anova_nist_exact.csv");
  ASSERT_EQ(exact.size(), 6 * std::size(sets));
  const char* names[] = {"SSB", "SSW", "MSB", "MSW", "F", "R2", "SD"};
  std::printf("digits against the certified values | against the exact values of the doubles "
              "| what the doubles hold of the certified ones\n%-8s", "");
  for (const char* q : names) std::printf("%5s", q);
  std::printf(" |");
  for (const char* q : names) std::printf("%5s", q);
  std::printf(" | worst\n");
  for (std::size_t k = 0; k < std::size(sets); ++k) {
    const NistAnova s = read_set(sets[k].name);
    ASSERT_FALSE(s.y.empty()) << sets[k].name;
    for (double c : s.certified) ASSERT_FALSE(std::isnan(c)) << sets[k].name;
    ANOVATable t;
    ANOVAFitSummary f;
    const int groups = static_cast<int>(s.sizes.size());
    ASSERT_EQ(zomath_anova_one_way(s.y.data(), static_cast<int>(s.y.size()), groups,
                                   s.sizes.data(), nullptr, 0, &f, &t),
              0);
    const double got[7] = {t.SSq1, t.SSq2, t.MeanSq1, t.MeanSq2, t.FValue, f.RSquare, f.RootMSE};
    double truth[7];
    for (int q = 0; q < 6; ++q) truth[q] = exact[6 * k + q].value;
    truth[6] = std::sqrt(static_cast<long double>(truth[3]));
    // What the doubles allow: the digits of the exact values of the doubles against the
    // certified ones, the worst over the quantities.
    double held = 16;
    for (int q = 0; q < 7; ++q) held = std::fmin(held, digits(truth[q], s.certified[q]));
    std::printf("%-8s", sets[k].name);
    for (int q = 0; q < 7; ++q) std::printf("%5.1f", digits(got[q], s.certified[q]));
    std::printf(" |");
    for (int q = 0; q < 7; ++q) std::printf("%5.1f", digits(got[q], truth[q]));
    std::printf(" | %4.1f\n", held);
    const double asked = std::fmin(sets[k].target, held - 0.1);
    for (int q = 0; q < 7; ++q) {
      EXPECT_GE(digits(got[q], s.certified[q]), asked) << sets[k].name << " " << names[q];
      EXPECT_GE(digits(got[q], truth[q]), 14) << sets[k].name << " " << names[q];
    }
  }
}

}  // namespace
