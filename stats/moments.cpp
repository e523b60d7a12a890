#include "stats/moments.h"

#include <cmath>
#include <limits>

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

platform::FirstSums scan(const double* x, const double* w, std::ptrdiff_t n) {
  return platform::first_sums(x, w, n, true);
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

double moment_engine(const double* x, std::ptrdiff_t nx, const double* w, std::ptrdiff_t nw,
                     int flag, const MomentOutputs& out, const platform::FirstSums* pScan) {
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
    // Deviations in units of a power of two near the data, so that their fourth powers
    // neither overflow nor underflow; every sum is brought back to the data's units at the end.
    const double scale = platform::deviation_scale(s.maxAbs);
    const bool rootWeights = w && flag != DS_NAG;
    const platform::DeviationSums dev =
        platform::deviation_sums(x, w, nx, s.mean, s.meanLow, scale, rootWeights, true);
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

double mode(const double* x, std::ptrdiff_t n, bool& bMultiModal) {
  bMultiModal = false;
  NRVec<double> sorted;
  kernels::sorted_values(x, static_cast<std::size_t>(n), sorted);
  const int m = sorted.size();
  // The longest run of equal values, the first (smallest) of those that tie for it.
  int best = 1, ties = 0;
  double value = NANUM;
  for (int i = 0; i < m;) {
    int j = i + 1;
    while (j < m && sorted[j] == sorted[i]) ++j;
    if (j - i > best) {
      best = j - i;
      value = sorted[i] + 0.0;  // -0 and +0 are one value, 0
      ties = 1;
    } else if (j - i == best && best > 1) {
      ++ties;
    }
    i = j;
  }
  bMultiModal = ties > 1;
  return value;
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
