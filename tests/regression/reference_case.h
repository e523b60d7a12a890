// Reading the regression reference tables of tests/data/regression (written by the scripts in
// tests/tools): one key and its comma-separated values a line, `#` lines are comments.
#pragma once

#include <algorithm>
#include <cmath>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "zomath/regression.h"

namespace zomath_test {

// key -> values; the lines keyed "x" are the rows of a design, counted in n (k values each).
struct Case : std::map<std::string, std::vector<double>> {
  int n = 0, k = 0;
  bool intercept() const { return at("intercept")[0] != 0; }
};

inline Case load_case(const std::string& file) {
  Case c;
  std::ifstream in(std::string(ZOMATH_TEST_DATA_DIR) + "/regression/" + file);
  for (std::string line, key, field; std::getline(in, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::stringstream ss(line);
    std::getline(ss, key, ',');
    std::vector<double>& v = c[key];
    const std::size_t before = v.size();
    while (std::getline(ss, field, ',')) v.push_back(std::stod(field));
    if (key == "x") c.k = static_cast<int>(v.size() - before), ++c.n;
  }
  return c;
}

// Worst error of a against b, each element relative to itself but never to less than 1e-6 of
// the largest (an element near zero, such as a small residual, is measured against its
// neighbours). A NaN in b stands for a value that does not exist, which a must leave missing
// (NANUM); infinity when the sizes differ or a misses one.
inline double worst(const std::vector<double>& a, const std::vector<double>& b) {
  if (a.size() != b.size()) return INFINITY;
  double big = 0, w = 0;
  for (double v : b)
    if (!std::isnan(v)) big = std::max(big, std::fabs(v));
  for (std::size_t i = 0; i < b.size(); ++i) {
    if (std::isnan(b[i])) {
      if (a[i] != -1.23456789e-300) return INFINITY;
      continue;
    }
    w = std::max(w, std::fabs(a[i] - b[i]) / std::max(std::fabs(b[i]), 1e-6 * big));
  }
  return w;
}

// The worst error of the parameter records fit[from..to) against the block `key` of a case
// (make_fit_reference.py): estimates and errors, with scaled errors also t values,
// probabilities and limits; and of the fit's residual sum, degrees of freedom, R-squared, F and
// its probability.
inline double worst_fit(const Case& c, const std::string& key, const FitParameter* fit, int from,
                        int to, bool scaled, const FitStats& st, const FitAnovaTable& an) {
  auto ref = [&](const char* name) { return c.at(key + name); };
  double most = worst({st.RSS, st.DOF, st.RSquare, an.FValue, an.ProbF},
                      {ref("ssr")[0], ref("df_resid")[0], ref("rsquared")[0], ref("fvalue")[0],
                       ref("f_pvalue")[0]});
  const std::pair<double FitParameter::*, const char*> fields[] = {
      {&FitParameter::value, "params"}, {&FitParameter::Error, "bse"},
      {&FitParameter::tValue, "tvalues"}, {&FitParameter::Prob, "pvalues"},
      {&FitParameter::LCL, "lcl"}, {&FitParameter::UCL, "ucl"}};
  for (int f = 0; f < (scaled ? 6 : 2); ++f) {
    std::vector<double> got;
    for (int j = from; j < to; ++j) got.push_back(fit[j].*fields[f].first);
    most = std::max(most, worst(got, ref(fields[f].second)));
  }
  return most;
}

}  // namespace zomath_test
