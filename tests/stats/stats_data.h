// The samples and reference tables of the summary statistics tests (tests/data/stats, written
// by tests/tools/make_stats_reference.py), and small helpers over DescStatResults.
#pragma once

#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "../scalar/reference.h"
#include "zomath/stats.h"

namespace zomath::testing {

struct Sample {
  std::vector<double> x, w;
  bool weighted = false;
  const double* weights() const { return weighted ? w.data() : nullptr; }
  int size() const { return static_cast<int>(x.size()); }
};

// The sets of a samples table under tests/data (set, x, w, has_weights), by set number.
inline std::vector<Sample> load_samples(const std::string& relativePath = "stats/samples.csv") {
  std::vector<Sample> sets;
  for (const std::vector<double>& f : load_rows(relativePath)) {
    if (f.size() < 4) continue;
    const std::size_t k = static_cast<std::size_t>(f[0]);
    if (sets.size() <= k) sets.resize(k + 1);
    sets[k].x.push_back(f[1]);
    sets[k].w.push_back(f[2]);
    sets[k].weighted = f[3] == 1;
  }
  return sets;
}

enum Field {
  kN, kMissing, kMean, kSD, kSEM, kLCL, kUCL, kVariance, kSum, kSkewness, kKurtosis,
  kUncorSumSq, kCorSumSq, kCOV, kMAD, kSDx2, kSDx3, kGeoMean, kGeoSD, kMode, kWeightSum,
  kFieldCount
};

// The double fields of DescStatResults, from kMean on, in record order.
inline double DescStatResults::* const kDoubleFields[] = {
    &DescStatResults::Mean,     &DescStatResults::SD,         &DescStatResults::SEM,
    &DescStatResults::LCL,      &DescStatResults::UCL,        &DescStatResults::Variance,
    &DescStatResults::Sum,      &DescStatResults::Skewness,   &DescStatResults::Kurtosis,
    &DescStatResults::UncorSumSq, &DescStatResults::CorSumSq, &DescStatResults::COV,
    &DescStatResults::MAD,      &DescStatResults::SDx2,       &DescStatResults::SDx3,
    &DescStatResults::GeoMean,  &DescStatResults::GeoSD,      &DescStatResults::Mode,
    &DescStatResults::WeightSum};

// Field i of the record (the field column of summary.csv), counts as doubles.
inline double field(const DescStatResults& r, int i) {
  if (i == kN) return r.N;
  if (i == kMissing) return r.Missing;
  return r.*kDoubleFields[i - kMean];
}

// A record with both counts -7 and every double v: what a caller held before a call.
inline DescStatResults filled(double v) {
  DescStatResults r;
  r.N = r.Missing = -7;
  for (auto m : kDoubleFields) r.*m = v;
  return r;
}

}  // namespace zomath::testing
