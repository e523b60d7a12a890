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

using zomath::testing::digits;

// The certified values (B, W, MSB, MSW, F, R-squared, residual SD) and the data, group by group.
struct NistAnova {
  std::vector<double> y;
  std::vector<int> sizes;
  double certified[7] = {NAN, NAN, NAN, NAN, NAN, NAN, NAN};
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
    double df;
    ss >> word >> label;
    if (word == "Between") ss >> df >> s.certified[0] >> s.certified[2] >> s.certified[4];
    if (word == "Within") ss >> df >> s.certified[1] >> s.certified[3];
    if (label == "R-Squared") ss >> s.certified[5];
    if (line.find("Standard Deviation") != std::string::npos)
      s.certified[6] = std::stod(line.substr(line.find("Deviation") + 9));
    // The header's "Data: 1 Factor", then the table's "Data: Treatment Response".
    if (word == "Data:")
      data = !label.empty() && !std::isdigit(static_cast<unsigned char>(label[0]));
    else if (data && std::isdigit(static_cast<unsigned char>(word[0])))
      groups[std::stoi(word)].push_back(std::stod(label));
  }
  for (const auto& [g, values] : groups) {
    s.y.insert(s.y.end(), values.begin(), values.end());
    s.sizes.push_back(static_cast<int>(values.size()));
  }
  return s;
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
  std::printf("digits of SSB SSW MSB MSW F R2 SD: against the certified values | against the "
              "exact values of the doubles | what the doubles hold of the certified ones\n");
  for (std::size_t k = 0; k < std::size(sets); ++k) {
    const NistAnova s = read_set(sets[k].name);
    ANOVATable t;
    ANOVAFitSummary f;
    ASSERT_EQ(zomath_anova_one_way(s.y.data(), int(s.y.size()), int(s.sizes.size()),
                                   s.sizes.data(), nullptr, 0, &f, &t),
              0);
    const double got[7] = {t.SSq1, t.SSq2, t.MeanSq1, t.MeanSq2, t.FValue, f.RSquare, f.RootMSE};
    double truth[7], certified[7], held = 16;
    for (int q = 0; q < 7; ++q) {
      truth[q] = q < 6 ? exact[6 * k + q].value : std::sqrt(static_cast<long double>(truth[3]));
      ASSERT_FALSE(std::isnan(s.certified[q])) << sets[k].name;
      certified[q] = digits(got[q], s.certified[q]);
      held = std::fmin(held, digits(truth[q], s.certified[q]));
    }
    std::printf("%-8s", sets[k].name);
    for (double d : certified) std::printf("%5.1f", d);
    std::printf(" |");
    for (int q = 0; q < 7; ++q) std::printf("%5.1f", digits(got[q], truth[q]));
    std::printf(" | %4.1f\n", held);
    for (int q = 0; q < 7; ++q) {
      EXPECT_GE(certified[q], std::fmin(sets[k].target, held - 0.1)) << sets[k].name << " " << q;
      EXPECT_GE(digits(got[q], truth[q]), 14) << sets[k].name << " " << q;
    }
  }
}

}  // namespace
