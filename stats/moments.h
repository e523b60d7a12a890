// The moment engine behind the summary exports, and the rules they share: the validity scan,
// the denominator of each flag, the geometric mean, the mode and the confidence limits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "core/large_buffer.h"
#include "platform/moment_sums.h"
#include "zomath/core.h"

namespace zomath::stats {

// Codes the engine throws (as int) for its caller to return.
inline constexpr int kEngineNoValid = -151;     // an empty vector, or no valid point in it
inline constexpr int kEngineWeightSize = -174;  // weights of another length than the data

// The validity scan: one pass over values and weights in which a point is missing when its
// value or its weight is NANUM. It also yields the sums the moments start from.
platform::FirstSums scan(const double* x, const double* w, std::ptrdiff_t n,
                         platform::KeyCounts* pKeyCounts = nullptr);

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

// The mode and the geometric SD of x[0..n), gathered by the two passes of its moments: the
// first counts the keys of the values by bucket (key_counts(), for scan), the second writes the
// keys and sums the logarithms (second_pass(), for deviations). finish() gives the results,
// making a pass of its own when the moments made none.
class ModeAndSpread {
 public:
  // Each part only when asked for. Throws ZOMATH_ERROR when working memory can't be had.
  ModeAndSpread(const double* x, std::ptrdiff_t n, bool bMode, bool bGeoSD);
  // For scan(x, w, n): null when the mode is not wanted.
  platform::KeyCounts* key_counts() { return keys_ ? &counts_ : nullptr; }
  // For the second pass, after the scan that counted the keys; null when nothing is wanted.
  // Throws ZOMATH_ERROR when working memory can't be had.
  const platform::SecondPassExtras* second_pass(const platform::FirstSums& s);
  // The mode (and whether several values share its count) and the geometric SD under flag.
  void finish(const platform::FirstSums& s, int flag);

  double mode = NANUM;
  bool multiModal = false;
  double geoSD = NANUM;

 private:
  const double* x_;
  std::ptrdiff_t n_;
  bool keys_, logs_, passed_ = false;
  platform::KeyCounts counts_;
  platform::SecondPassExtras extras_;
  platform::LogSums logSums_;
  std::unique_ptr<std::size_t[]> bounds_;  // counts, bucket starts, write positions
  kernels::LargeBuffer<std::uint64_t> keyStore_;  // the keys, grouped by bucket
};

// The moments of the valid points of x[0..nx) with weights w[0..nw) (null: all 1), a weight
// below 0 read as 0. Writes NANUM to the outputs (0 to the sums of squares), then what can be
// had; returns W. One valid point follows the single-point rule, returning its weight truncated
// to a whole number; W = 0 gives only the geometric mean. The second pass runs only for the
// outputs that need it. pScan, when given, is scan(x, w, nx), already done by the caller; pDev
// the second pass without root weights (deviations(x, w, nx, *pScan)), which the engine takes
// wherever root weights would give the same sums. A second pass of the engine's own gathers
// for pExtras (scanned by pScan) too. Throws kEngineNoValid or kEngineWeightSize; ZOMATH_ERROR
// only for pExtras' memory.
double moment_engine(const double* x, std::ptrdiff_t nx, const double* w, std::ptrdiff_t nw,
                     int flag, const MomentOutputs& out, const platform::FirstSums* pScan = nullptr,
                     const platform::DeviationSums* pDev = nullptr, ModeAndSpread* pExtras = nullptr);

// The second pass over the valid points, from the scan's mean, at the scale of the data, with
// root weights (for the shape coefficients of flags other than DS_NAG) or without; it gathers
// for pExtras too when given.
platform::DeviationSums deviations(const double* x, const double* w, std::ptrdiff_t n,
                                   const platform::FirstSums& s, bool bRootWeights,
                                   ModeAndSpread* pExtras = nullptr);

// The geometric mean from a scan: 0.0 when a value is 0, NANUM for an odd count of negative
// values, else exp(mean of ln |x|).
double geometric_mean(const platform::FirstSums& s);


// The confidence limits of the mean: only under flag 0, or 4 without weights, for Mean and SD
// that aren't NANUM and W not 0: Mean -+ t SD / sqrt(W), t the two-sided Student deviate of
// `level` on n - 1 degrees of freedom. Otherwise, or for a level outside [0, 1), NANUM.
void confidence_limits(double mean, double sd, double W, std::ptrdiff_t n, int flag,
                       bool bWeighted, double level, double& lcl, double& ucl);

}  // namespace zomath::stats
