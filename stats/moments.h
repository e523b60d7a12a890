// The moment engine behind the summary exports, and the rules they share: the validity scan,
// the denominator of each flag, the geometric mean, the mode and the confidence limits.
#pragma once

#include <cstddef>

#include "platform/moment_sums.h"

namespace zomath::stats {

// Codes the engine throws (as int) for its caller to return.
inline constexpr int kEngineNoValid = -151;     // an empty vector, or no valid point in it
inline constexpr int kEngineWeightSize = -174;  // weights of another length than the data

// The validity scan: one pass over values and weights in which a point is missing when its
// value or its weight is NANUM. It also yields the sums the moments start from.
platform::FirstSums scan(const double* x, const double* w, std::ptrdiff_t n);

// The denominator d of flag 0..4 (see zomath/stats.h) for n valid points, weight sum W and sum
// of squared weights S2; NaN for any other flag.
double denominator(int flag, double n, double W, double S2);

// Outputs of the engine; a null pointer is not computed.
struct MomentOutputs {
  double* mean = nullptr;
  double* mad = nullptr;
  double* sd = nullptr;
  double* variance = nullptr;
  double* skewness = nullptr;
  double* kurtosis = nullptr;
  double* corSumSq = nullptr;
  double* uncorSumSq = nullptr;
  double* geoMean = nullptr;
};

// The moments of the valid points of x[0..nx) with weights w[0..nw) (null: all 1), a weight
// below 0 read as 0. Writes NANUM to the outputs (0 to the sums of squares), then what can be
// had; returns W. One valid point follows the single-point rule, returning its weight truncated
// to a whole number; W = 0 gives only the geometric mean. The second pass runs only for the
// outputs that need it. pScan, when given, is scan(x, w, nx), already done by the caller; pDev
// the second pass without root weights (deviations(x, w, nx, *pScan)), which the engine takes
// wherever root weights would give the same sums. Throws kEngineNoValid or kEngineWeightSize;
// ZOMATH_ERROR never.
double moment_engine(const double* x, std::ptrdiff_t nx, const double* w, std::ptrdiff_t nw,
                     int flag, const MomentOutputs& out, const platform::FirstSums* pScan = nullptr,
                     const platform::DeviationSums* pDev = nullptr);

// The second pass over the valid points, from the scan's mean, at the scale of the data, with
// root weights (for the shape coefficients of flags other than DS_NAG) or without.
platform::DeviationSums deviations(const double* x, const double* w, std::ptrdiff_t n,
                                   const platform::FirstSums& s, bool bRootWeights);

// The geometric mean from a scan: 0.0 when a value is 0, NANUM for an odd count of negative
// values, else exp(mean of ln |x|).
double geometric_mean(const platform::FirstSums& s);

// The mode of the values of x[0..n) that are neither NANUM nor NaN: the most frequent one, the
// smallest of several (then bMultiModal), NANUM when no value repeats. Throws ZOMATH_ERROR when
// working memory can't be had.
double mode(const double* x, std::ptrdiff_t n, bool& bMultiModal);

// exp(SD of ln x) over the values of x[0..n) that aren't NANUM, under `flag` as if without
// weights; NANUM when such a value is 0 or below, or the SD has no finite value. s is the scan
// of x, whose geometric mean places the logarithms near 0.
double geometric_sd(const double* x, std::ptrdiff_t n, int flag, const platform::FirstSums& s);

// The confidence limits of the mean: only under flag 0, or 4 without weights, for Mean and SD
// that aren't NANUM and W not 0: Mean -+ t SD / sqrt(W), t the two-sided Student deviate of
// `level` on n - 1 degrees of freedom. Otherwise, or for a level outside [0, 1), NANUM.
void confidence_limits(double mean, double sd, double W, std::ptrdiff_t n, int flag,
                       bool bWeighted, double level, double& lcl, double& ucl);

}  // namespace zomath::stats
