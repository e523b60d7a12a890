// Data of the peak tests, the tables of tests/tools/make_peaks_reference.py, and a caller of the
// finders that share the pnSize frame.
#pragma once

#include <algorithm>
#include <functional>
#include <numeric>
#include <random>
#include <vector>

#include "tests/scalar/reference.h"
#include "zomath/peaks.h"

namespace zomath::testing {

struct Peaks {
  int rc = 0;
  std::vector<double> x, y;
  std::vector<int> idx;
};

using Finder = std::function<int(int*, const double*, const double*, double*, double*, int*)>;

inline Peaks run(const Finder& f, const std::vector<double>& x, const std::vector<double>& y) {
  int n = static_cast<int>(x.size());
  Peaks p{0, std::vector<double>(n), std::vector<double>(n), std::vector<int>(n)};
  p.rc = f(&n, x.data(), y.data(), p.x.data(), p.y.data(), p.idx.data());
  if (p.rc == 0) {
    p.x.resize(n);
    p.y.resize(n);
    p.idx.resize(n);
  }
  return p;
}

// y[i] = 5^(i + 1) mod 10007: distinct integers in a scrambled order.
inline std::vector<double> power_series(int n) {
  std::vector<double> y(n);
  for (long long i = 0, v = 1; i < n; ++i) y[i] = static_cast<double>(v = v * 5 % 10007);
  return y;
}

// gaussians.csv: the curve, and SciPy's find_peaks of y (maxima) and of -y (minima).
struct GaussianSet {
  std::vector<double> x, y;
  std::vector<int> maxima, minima;
};

inline const GaussianSet& gaussian_set() {
  static const GaussianSet set = [] {
    GaussianSet s;
    for (const ReferenceRow& r : load_reference("peaks/gaussians.csv")) {
      const int kind = static_cast<int>(r.args[0]), i = static_cast<int>(r.args[1]);
      if (kind == 0) s.x.push_back(r.args[1]), s.y.push_back(r.value);
      else (kind == 1 ? s.maxima : s.minima).push_back(i);
    }
    return s;
  }();
  return set;
}

// A fixed permutation p of 0..n-1, the values v[p[k]], and where each index went.
inline std::vector<int> permutation(int n, unsigned seed) {
  std::vector<int> p(n);
  std::iota(p.begin(), p.end(), 0);
  std::shuffle(p.begin(), p.end(), std::mt19937(seed));
  return p;
}
inline std::vector<double> permuted(const std::vector<double>& v, const std::vector<int>& p) {
  std::vector<double> out;
  for (int k : p) out.push_back(v[k]);
  return out;
}
inline std::vector<int> moved(std::vector<int> idx, const std::vector<int>& p) {
  std::vector<int> place(p.size());
  for (std::size_t k = 0; k < p.size(); ++k) place[p[k]] = static_cast<int>(k);
  for (int& i : idx) i = place[i];
  return idx;
}

}  // namespace zomath::testing
