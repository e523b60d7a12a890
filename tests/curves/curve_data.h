// The data sets of the curve tests and the reference tables made from them by
// tests/tools/make_curves_reference.py.
#pragma once

#include <algorithm>
#include <map>
#include <random>
#include <utility>
#include <vector>

#include "tests/scalar/reference.h"

namespace zomath::testing {

struct Curve {
  std::vector<double> x, y, w;
  double y_range() const {
    const auto [lo, hi] = std::minmax_element(y.begin(), y.end());
    return *hi - *lo;
  }
};

// Set number -> points, from tests/data/curves/sources.csv (set, x, y, weight).
inline const std::map<int, Curve>& curve_sets() {
  static const std::map<int, Curve> sets = [] {
    std::map<int, Curve> m;
    for (const ReferenceRow& r : load_reference("curves/sources.csv")) {
      Curve& c = m[static_cast<int>(r.args[0])];
      c.x.push_back(r.args[1]);
      c.y.push_back(r.value);
      c.w.push_back(r.scale);
    }
    return m;
  }();
  return sets;
}

// Rows of a table grouped by their first two arguments (set and case).
inline std::map<std::pair<int, int>, std::vector<ReferenceRow>> by_set_and_case(
    const char* table) {
  std::map<std::pair<int, int>, std::vector<ReferenceRow>> groups;
  for (const ReferenceRow& r : load_reference(table))
    groups[{static_cast<int>(r.args[0]), static_cast<int>(r.args[1])}].push_back(r);
  return groups;
}

// The same points in a fixed shuffled order.
inline Curve shuffled(const Curve& c, unsigned seed) {
  std::vector<std::size_t> p(c.x.size());
  for (std::size_t i = 0; i < p.size(); ++i) p[i] = i;
  std::shuffle(p.begin(), p.end(), std::mt19937(seed));
  Curve out;
  for (std::size_t k : p) {
    out.x.push_back(c.x[k]);
    out.y.push_back(c.y[k]);
    out.w.push_back(c.w[k]);
  }
  return out;
}

}  // namespace zomath::testing
