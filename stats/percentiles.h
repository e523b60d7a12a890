// Percentiles of a sorted sample under the six definitions of nInterpolate (zomath/stats.h),
// the weighted percentile, Tukey's five numbers, and the prepared sample that the percentile
// and quantile exports share, so that a call sorts its values once.
#pragma once

#include <cstddef>
#include <memory>

#include "core/nrvec/nrvec.h"

namespace zomath::stats {

// The percentile `percent` of the n >= 1 ascending values x[0..n) under definition `rule`
// (nInterpolate 0..5). NANUM for a percent outside [0, 100] or NaN, and for rule 5 (or any other
// value) unless q lands on an end. Reads x in place: a sliding window calls it on its sorted
// copy. q = (p n) / 100 and the rest run in long double.
double percentile_of_sorted(const double* x, std::size_t n, double percent, int rule);

// The same read in two steps, for values held in another order structure: where the percentile
// of n values reads (0-based ranks lo <= hi, equal where it reads one; k and g of q = k + g), then
// the percentile from a = x[lo] and b = x[hi]. valid is false for n = 0 or a percent outside
// [0, 100] or NaN, where the percentile is NANUM.
struct PercentileRanks {
  std::size_t lo, hi, k;
  long double g;
  bool valid;
};
PercentileRanks percentile_ranks(std::size_t n, double percent, int rule);
double percentile_of_pair(const PercentileRanks& r, int rule, double a, double b);

// The weighted percentile of the n >= 1 ascending values x[0..n) whose running weight sums are
// c[0..n) (c[n - 1] the total): with T = c[n - 1] p / 100, a binary search returns x(i) where
// T falls inside the weight of x(i), the mean of x(i) and x(i + 1) where T equals c(i) (x(i)
// itself at the last). NANUM for a percent outside [0, 100] or NaN.
double weighted_percentile_of_sorted(const double* x, const long double* c, std::size_t n,
                                     double percent);

// Tukey's five numbers of the n >= 1 ascending values x[0..n): minimum, lower hinge, median,
// upper hinge, maximum. Fewer than 5 values by the depth rule below, 5 or more by the platform
// routine, which gives the same numbers.
void five_numbers(const double* x, std::size_t n, double out[5]);

// The depth rule, for any n >= 1: m = n rounded up to even, h = m / 2, median x(h) (odd n) or
// (x(h) + x(h + 1)) / 2; d = h rounded up to even, halved; hinges x(d) and x(n - d + 1) for odd
// h, else (x(d) + x(d + 1)) / 2 and (x(n - d) + x(n - d + 1)) / 2.
void five_numbers_by_depth(const double* x, std::size_t n, double out[5]);

// Code of the weights check: a weight below 0, infinite or NaN (NANUM marks a missing point).
int check_weights(const double* w, int n);

// The valid points of a sample, ordered once for every percentile of a call. A point is valid
// when neither its value nor its weight is NANUM and its value is not NaN (which has no place
// in an order). The sample counts as weighted when the valid weights are not all equal.
class SortedSample {
public:
  // Without percents and hinges the values are sorted. Given the percents and the rule that
  // percentile() will be asked for, and whether five_numbers() will read values(), an
  // unweighted sample of few such ranks holds at each of them the value a full sort puts
  // there, found by selection; reading any other rank is then wrong. Weights below 0 count as
  // 0. Throws ZOMATH_ERROR when working storage can't be had.
  SortedSample(const double* x, std::size_t n, const double* w, const double* percents = nullptr,
               std::size_t nPercents = 0, int rule = 0, bool hinges = false);

  std::size_t size() const { return size_; }
  const double* values() const { return values_.Data(); }
  bool weighted() const { return weighted_; }
  // The smallest and largest valid weight; both 1 without weights or valid points.
  double min_weight() const { return minWeight_; }
  double max_weight() const { return maxWeight_; }

  // The percentile under `rule` (the weighted search when weighted); NANUM with no point.
  double percentile(double percent, int rule) const;

private:
  void sort_pairs(const double* x, std::size_t n, const double* w, std::size_t count);

  NRVec<double> values_;  // size_ valid values, then room that is not read
  std::size_t size_ = 0;
  std::unique_ptr<long double[]> cumulative_;  // running weight sums, only when weighted
  bool weighted_ = false;
  double minWeight_ = 1.0, maxWeight_ = 1.0;
};

}  // namespace zomath::stats
