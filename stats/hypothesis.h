// What the hypothesis tests share inside the library: the summary of one sample and the
// probability of a Student t statistic for the tail of a test (TAILED_TEST_* of zomath/stats.h).
// The analysis of variance builds on both.
#pragma once

#include <cmath>

#include "zomath/core.h"
#include "zomath/stats.h"

namespace zomath::stats {

// A test's input value that is neither NANUM, nor NaN, nor infinite.
inline bool usable(double v) { return v != NANUM && std::isfinite(v); }

// A TailType that names one of the three tails.
inline bool known_tail(int nTailType) {
  return nTailType >= TAILED_TEST_TWO && nTailType <= TAILED_TEST_LOWER;
}

// Whether the values of p[0..n) that aren't NANUM are all equal (a NaN equals nothing), so that
// a sample has no spread to test whatever rounding its SD shows.
bool all_equal(const double* p, int n);

// Count, mean, SD and standard error of the valid points of a sample (denominator n - 1), and
// what the rounding of the mean left out: mean + meanLow is the mean to about twice a double's
// precision, for a difference of means that cancels.
struct SampleStats {
  int n = 0;
  double mean = NANUM;
  double sd = NANUM;
  double sem = NANUM;
  double meanLow = 0;
};

// The summary of x[0..n) without its NANUM, as zomath_basic_summary_stats gives it under the
// denominator n - 1 without weights: one point has SD and SEM NANUM, no point n 0. Returns 0,
// -155 n < 0, -156 a null x with n > 0.
int sample_summary(const double* x, int n, SampleStats& s);

// (mean + meanLow) - c, rounded once: the numerator of a t statistic.
double mean_minus(const SampleStats& s, double c);

// With P2 = P(|T| >= |t|) on dof degrees of freedom, the regularized incomplete beta function
// I(dof / (dof + t^2); dof / 2, 1 / 2): TAILED_TEST_TWO gives P2; TAILED_TEST_UPPER P2 / 2 when
// t > 0, else 1 - P2 / 2; TAILED_TEST_LOWER P2 / 2 when t <= 0, else 1 - P2 / 2. With
// bZeroIsUpper (the paired test) t = 0 counts as positive for both one-sided tails. NANUM for
// a tail outside 0..2, a NaN t, or dof not above 0.
double student_probability(double t, double dof, int nTailType, bool bZeroIsUpper = false);

}  // namespace zomath::stats
