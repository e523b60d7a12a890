// The NIST StRD univariate sets: mean and standard deviation (denominator n - 1) against the
// certified values in each file's header, as digits, -log10 of the relative error (16 when
// exact). Both routes of the summary engine are read: zomath_desc_stats (the moment engine)
// and zomath_basic_summary_stats (the weighted moments routine, which flag 0 without weights
// takes).
//
// The certified values belong to the decimal data. NumAcc3 and NumAcc4 hold values such as
// 1000000.2 and 10000000.2 whose nearest doubles differ from them by up to 9e-10, at a spread
// of 0.1: the doubles themselves have a standard deviation that agrees with the certified one
// to 9.5 and 8.3 digits, and no computation on them can do better. So the certified values are
// asked to 14 digits for the mean and 13 for the SD, 9 and 8 for those two SDs; and, to show
// that nothing is lost in the computation, both are asked to 15 digits of the exact mean and SD
// of the doubles (tests/data/stats/nist_exact.csv, rational arithmetic).
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "../scalar/reference.h"
#include "zomath/stats.h"

namespace {

using zomath::testing::digits;

struct NistSet {
  std::vector<double> y;
  double mean = NAN, sd = NAN;  // certified
};

double value_after(const std::string& line, const char* label) {
  const std::size_t at = line.find(label);
  return at == std::string::npos ? NAN : std::stod(line.substr(at + std::string(label).size()));
}

NistSet read_set(const std::string& name) {
  NistSet s;
  std::ifstream in(std::string(ZOMATH_TEST_DATA_DIR) + "/nist-strd/" + name + ".dat");
  std::string line;
  for (int n = 1; std::getline(in, line); ++n) {
    if (line.find("ybar:") != std::string::npos) s.mean = value_after(line, "ybar:");
    if (line.find(" s:") != std::string::npos && std::isnan(s.sd)) s.sd = value_after(line, " s:");
    if (n >= 61 && line.find_first_of("0123456789") != std::string::npos) s.y.push_back(std::stod(line));
  }
  return s;
}

TEST(NistUnivariate, MeanAndStandardDeviation) {
  const struct {
    const char* name;
    double sdDigits;  // asked of the SD against the certified value
  } sets[] = {{"PiDigits", 13}, {"Lottery", 13}, {"Lew", 13},    {"Mavro", 13},  {"Michelso", 13},
              {"NumAcc1", 13},  {"NumAcc2", 13}, {"NumAcc3", 9}, {"NumAcc4", 8}};
  const auto exact = zomath::testing::load_reference("stats/nist_exact.csv");
  ASSERT_EQ(exact.size(), 2 * std::size(sets));
  std::printf("digits: certified mean, SD by the engine | by the weighted moments | the exact mean, "
              "SD of the doubles by each\n");
  for (std::size_t k = 0; k < std::size(sets); ++k) {
    const NistSet s = read_set(sets[k].name);
    ASSERT_FALSE(s.y.empty()) << sets[k].name;
    ASSERT_FALSE(std::isnan(s.mean) || std::isnan(s.sd)) << sets[k].name;
    const int n = static_cast<int>(s.y.size());
    DescStatResults r;
    ASSERT_EQ(zomath_desc_stats(s.y.data(), n, &r, nullptr, 0.95, DS_SAS1_DF), 0);
    double mean, sd;
    ASSERT_EQ(zomath_basic_summary_stats(n, s.y.data(), nullptr, &mean, &sd, nullptr, nullptr,
                                         nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                         nullptr, nullptr, nullptr, nullptr, DS_SAS1_DF, nullptr),
              0);
    const double exactMean = exact[2 * k].value, exactSd = exact[2 * k + 1].value;
    std::printf("%-9s n %4d  %4.1f %4.1f | %4.1f %4.1f | %4.1f %4.1f, %4.1f %4.1f\n",
                sets[k].name, n, digits(r.Mean, s.mean), digits(r.SD, s.sd),
                digits(mean, s.mean), digits(sd, s.sd), digits(r.Mean, exactMean),
                digits(r.SD, exactSd), digits(mean, exactMean), digits(sd, exactSd));
    for (const double m : {r.Mean, mean}) {
      EXPECT_GE(digits(m, s.mean), 14) << sets[k].name;
      EXPECT_GE(digits(m, exactMean), 15) << sets[k].name;
    }
    for (const double v : {r.SD, sd}) {
      EXPECT_GE(digits(v, s.sd), sets[k].sdDigits) << sets[k].name;
      EXPECT_GE(digits(v, exactSd), 15) << sets[k].name;
    }
  }
}

}  // namespace
