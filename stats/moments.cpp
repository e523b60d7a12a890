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

platform::DeviationSums deviations(const double* x, const double* w, std::ptrdiff_t n,
                                   const platform::FirstSums& s, bool bRootWeights) {
  // Deviations in units of a power of two near the data, so that their fourth powers neither
  // overflow nor underflow; the sums are brought back to the data's units by the caller.
  return platform::deviation_sums(x, w, n, s.mean, s.meanLow, platform::deviation_scale(s.maxAbs),
                                  bRootWeights, true);
}

double moment_engine(const double* x, std::ptrdiff_t nx, const double* w, std::ptrdiff_t nw,
                     int flag, const MomentOutputs& out, const platform::FirstSums* pScan,
                     const platform::DeviationSums* pDev) {
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
    const platform::DeviationSums dev = reuse ? *pDev : deviations(x, w, nx, s, rootWeights);
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

double mode(const double* x, std::ptrdiff_t n, bool& bMultiModal) {
  const kernels::MostFrequent f = kernels::most_frequent(x, static_cast<std::size_t>(n));
  bMultiModal = f.count > 1 && f.ties > 1;
  return f.count > 1 ? f.value : NANUM;
}

double geometric_sd(const double* x, std::ptrdiff_t n, int flag, const platform::FirstSums& s) {
  // The logarithms, taken one at a time and never stored, less a shift near their mean; four
  // compensated sums of the shifted logs and their squares, interleaved so that the additions
  // of one point don't wait for those of the last. The corrected two-pass form takes out what
  // the shift misses of the mean.
  const double shift = s.geometricMean > 0 && std::isfinite(s.geometricMean) ? std::log(s.geometricMean) : 0.0;
  kernels::CompensatedSum s1[4], s2[4];
  std::ptrdiff_t k = 0;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const double xi = x[i];
    if (xi == NANUM) continue;
    if (!(xi > 0) && xi == xi) return NANUM;  // below 0, or 0 (whose log is -infinity)
    const double d = std::log(xi) - shift;
    s1[k & 3].add(d);
    s2[k & 3].add(d * d);
    ++k;
  }
  for (int j = 1; j < 4; ++j) {
    s1[0].merge(s1[j].s, s1[j].c);
    s2[0].merge(s2[j].s, s2[j].c);
  }
  const double count = static_cast<double>(k);
  const double den = denominator(flag, count, count, count);
  if (k == 0 || !(den > 0)) return NANUM;
  const double sum = s1[0].value();
  const double v = std::fmax(0.0, (s2[0].value() - sum * sum / count) / den);
  const double sd = std::sqrt(v);
  return std::isfinite(sd) ? std::exp(sd) : NANUM;
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
