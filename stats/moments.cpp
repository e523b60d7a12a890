#include "stats/moments.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>

#include "core/kernels.h"
#include "core/nrvec/nrvec.h"
#include "platform/distributions/student_t.h"
#include "zomath/stats.h"

namespace zomath::stats {
namespace {

void put(double* p, double v) {
  if (p) *p = v;
}

// The single-point rule as the engine gives it: the one valid point is the last one.
double single_point(const double* x, std::ptrdiff_t n, const double* w, int flag,
                    const MomentOutputs& out) {
  std::ptrdiff_t i = n - 1;
  while (i > 0 && (x[i] == NANUM || (w && w[i] == NANUM))) --i;
  const double xi = x[i], wi = w ? (w[i] < 0 ? 0.0 : w[i]) : 1.0;
  put(out.mean, wi == 0 ? NANUM : xi);
  const double spread = (flag == DS_SAS2_N || flag == DS_SAS4_WGT) ? 0.0 : NANUM;
  put(out.sd, spread);
  put(out.variance, spread);
  put(out.uncorSumSq, xi * xi * wi);
  put(out.geoMean, xi);
  return std::trunc(wi);
}

}  // namespace

platform::FirstSums scan(const double* x, const double* w, std::ptrdiff_t n,
                         platform::KeyCounts* pKeyCounts) {
  return platform::first_sums(x, w, n, true, pKeyCounts);
}

double denominator(int flag, double n, double W, double S2) {
  switch (flag) {
    case DS_SAS1_DF: return n - 1;
    case DS_SAS2_N: return n;
    case DS_SAS3_WDF: return W - 1;
    case DS_SAS4_WGT: return W;
    case DS_NAG: return W - S2 / W;
    default: return std::numeric_limits<double>::quiet_NaN();
  }
}

double geometric_mean(const platform::FirstSums& s) {
  if (s.zeros > 0) return 0.0;
  if (s.negatives % 2 != 0) return NANUM;
  return s.geometricMean;
}

platform::DeviationSums deviations(const double* x, const double* w, std::ptrdiff_t n,
                                   const platform::FirstSums& s, bool bRootWeights,
                                   ModeAndSpread* pExtras) {
  // Deviations in units of a power of two near the data, so that their fourth powers neither
  // overflow nor underflow; the sums are brought back to the data's units by the caller.
  return platform::deviation_sums(x, w, n, s.mean, s.meanLow, platform::deviation_scale(s.maxAbs),
                                  bRootWeights, true, pExtras ? pExtras->second_pass(s) : nullptr);
}

ModeAndSpread::ModeAndSpread(const double* x, std::ptrdiff_t n, bool bMode, bool bGeoSD)
    : x_(x), n_(n), keys_(bMode && x && n > 0), logs_(bGeoSD) {
  if (!keys_) return;
  counts_.logBuckets = kernels::group_log_buckets(static_cast<std::size_t>(n));
  const std::size_t buckets = std::size_t{1} << counts_.logBuckets;
  // counts (buckets + 1), bucket starts (buckets + 1), write positions (buckets + 1)
  bounds_.reset(new (std::nothrow) std::size_t[3 * (buckets + 1)]);
  if (!bounds_) throw ZOMATH_ERROR_NO_MEMORY;
  std::fill(bounds_.get(), bounds_.get() + buckets + 1, std::size_t{0});
  counts_.counts = bounds_.get();
}

const platform::SecondPassExtras* ModeAndSpread::second_pass(const platform::FirstSums& s) {
  if (passed_ || (!keys_ && !logs_)) return nullptr;
  passed_ = true;
  extras_ = platform::SecondPassExtras{};
  if (keys_) {
    const std::size_t buckets = std::size_t{1} << counts_.logBuckets;
    if (!counts_.counted) scan(x_, nullptr, n_, &counts_);  // a scan that didn't count them
    std::size_t* count = bounds_.get();
    std::size_t* at = count + buckets + 1;
    std::size_t* next = at + buckets + 1;
    at[0] = 0;
    for (std::size_t b = 0; b < buckets; ++b) at[b + 1] = at[b] + count[b];
    std::copy(at, at + buckets + 1, next);  // next[buckets]: the spare bucket past the keys
    if (!keyStore_.allocate(at[buckets] + count[buckets])) throw ZOMATH_ERROR_NO_MEMORY;
    extras_.logBuckets = counts_.logBuckets;
    extras_.next = next;
    extras_.keys = keyStore_.get();
  }
  if (logs_ && s.negatives == 0 && s.zeros == 0) {  // else a value has no logarithm
    // The logarithms less the mean logarithm of the valid points, so that their sums cancel
    // little.
    extras_.logs = &logSums_;
    const double g = s.geometricMean;
    extras_.shift = g > 0 && std::isfinite(g) ? std::log(static_cast<long double>(g)) : 0.0L;
  }
  return &extras_;
}

void ModeAndSpread::finish(const platform::FirstSums& s, int flag) {
  // Without a second pass of the moments, one of its own: the extras look neither at the
  // weights nor at the mean.
  if (!passed_ && (keys_ || logs_))
    platform::deviation_sums(x_, nullptr, n_, 0.0, 0.0, 1.0, false, true, second_pass(s));
  if (keys_) {
    const std::size_t buckets = std::size_t{1} << counts_.logBuckets;
    const std::size_t* at = bounds_.get() + buckets + 1;
    const kernels::MostFrequent f = kernels::most_frequent_grouped(keyStore_.get(), at, counts_.logBuckets, 0.0);
    multiModal = f.count > 1 && f.ties > 1;
    mode = f.count > 1 ? f.value : NANUM;
  }
  if (extras_.logs) {
    // The corrected two-pass form takes out what the shift misses of the mean.
    const platform::LogSums& l = logSums_;
    const double count = static_cast<double>(l.count);
    const double den = denominator(flag, count, count, count);
    geoSD = NANUM;
    if (!l.bad && l.count > 0 && den > 0) {
      const double v = std::fmax(0.0, (l.sumSquares - l.sum * l.sum / count) / den);
      const double sd = std::sqrt(v);
      if (std::isfinite(sd)) geoSD = std::exp(sd);
    }
  }
}

double moment_engine(const double* x, std::ptrdiff_t nx, const double* w, std::ptrdiff_t nw,
                     int flag, const MomentOutputs& out, const platform::FirstSums* pScan,
                     const platform::DeviationSums* pDev, ModeAndSpread* pExtras) {
  for (double* p : {out.mean, out.mad, out.sd, out.variance, out.skewness, out.kurtosis, out.geoMean})
    put(p, NANUM);
  put(out.corSumSq, 0.0);
  put(out.uncorSumSq, 0.0);
  if (!x || nx < 1) throw kEngineNoValid;
  if (w && nw != nx) throw kEngineWeightSize;
  const platform::FirstSums s = pScan ? *pScan : scan(x, w, nx);
  if (s.valid == 0) throw kEngineNoValid;
  if (s.valid == 1) return single_point(x, nx, w, flag, out);
  const double W = s.weightSum;
  put(out.geoMean, geometric_mean(s));
  if (W == 0) return W;

  const double n = static_cast<double>(s.valid);
  const double d = denominator(flag, n, W, s.weightSquares);
  double mean = s.mean;
  if (out.mad || out.sd || out.variance || out.skewness || out.kurtosis || out.corSumSq ||
      out.uncorSumSq) {
    // Root weights differ from plain ones only in the third and fourth powers, and only for
    // weights other than 1.
    const bool rootWeights = w && flag != DS_NAG && s.weightNotOne;
    const bool reuse = pDev && (!rootWeights || (!out.skewness && !out.kurtosis));
    const platform::DeviationSums dev = reuse ? *pDev : deviations(x, w, nx, s, rootWeights, pExtras);
    const double scale = dev.scale;
    const double cor = dev.corrected(W);
    mean += s.meanLow + (dev.sumD / W) / scale;
    put(out.corSumSq, cor / scale / scale);
    put(out.uncorSumSq, dev.sumX2 / scale / scale);
    put(out.mad, dev.sumAbs / W / scale);
    if (d > 0) {
      const double v = cor / d, sd = std::sqrt(v);  // scaled
      put(out.variance, v / scale / scale);
      put(out.sd, sd / scale);
      // The coefficients are free of the scale: m3 / (sd v) and m4 / v^2.
      const double g3 = dev.m3 / (sd * v), g4 = dev.m4 / (v * v);
      double skew = NANUM, kurt = NANUM;
      if (v != 0) {
        switch (flag) {
          case DS_SAS1_DF:
            if (s.valid > 2) skew = (n / (n - 2)) * (1 / (n - 1)) * g3;
            if (s.valid > 3)
              kurt = (1 / (n - 1)) * ((n + 1) * n / ((n - 3) * (n - 2))) * g4 -
                     3 * (n - 1) * (n - 1) / ((n - 3) * (n - 2));
            break;
          case DS_SAS2_N:
            skew = g3 / n;
            kurt = g4 / n - 3;
            break;
          case DS_NAG:
            skew = g3 / d;
            kurt = g4 / d - 3;
            break;
          default:  // W - 1 and W have no shape statistics
            break;
        }
      }
      put(out.skewness, skew);
      put(out.kurtosis, kurt);
    }
  }
  put(out.mean, mean);
  return W;
}

void confidence_limits(double mean, double sd, double W, std::ptrdiff_t n, int flag,
                       bool bWeighted, double level, double& lcl, double& ucl) {
  lcl = ucl = NANUM;
  const bool exists = flag == DS_SAS1_DF || (flag == DS_NAG && !bWeighted);
  if (!exists || mean == NANUM || sd == NANUM || W == 0 || n < 2) return;
  platform::NagError err;
  const double t = platform::student_t_quantile(level, static_cast<double>(n - 1),
                                                platform::Tail::Central, err);
  if (err.code != 0) return;
  const double half = t * sd / std::sqrt(W);
  lcl = mean - half;
  ucl = mean + half;
}

}  // namespace zomath::stats
