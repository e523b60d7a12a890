// Exports of the summary statistics: the summary engine, its optional companions, the whole-
// record forms for a sample and its slices, and the row forms.
#include <cmath>
#include <cstddef>
#include <initializer_list>

#include "core/nrvec/nrvec.h"
#include "platform/weighted_moments.h"
#include "stats/moments.h"
#include "zomath/stats.h"

namespace zomath::stats {
namespace {

// Record layouts that hosts rely on: 32-bit counts, doubles on their natural boundaries.
static_assert(offsetof(DescStatResults, N) == 0 && offsetof(DescStatResults, Missing) == 4 &&
              offsetof(DescStatResults, Mean) == 8 && offsetof(DescStatResults, SD) == 16 &&
              offsetof(DescStatResults, Kurtosis) == 72 && offsetof(DescStatResults, GeoSD) == 136 &&
              offsetof(DescStatResults, WeightSum) == 152 && sizeof(DescStatResults) == 160,
              "DescStatResults layout");
static_assert(offsetof(DescStatOptions, bN) == 4 && offsetof(DescStatOptions, bMode) == 8 &&
              offsetof(DescStatOptions, bWeightSum) == 24 && sizeof(DescStatOptions) == 28,
              "DescStatOptions layout");
static_assert(offsetof(RangeResults, Max) == 8 && offsetof(RangeResults, iMin) == 16 &&
              offsetof(RangeResults, iMax) == 20 && offsetof(RangeResults, Range) == 24 &&
              sizeof(RangeResults) == 32, "RangeResults layout");

template <class T>
void put(T* p, T v) {
  if (p) *p = v;
}

void fill(std::initializer_list<double*> outputs, double v) {
  for (double* p : outputs) put(p, v);
}

double times(double a, double b) { return (a == NANUM || b == NANUM) ? NANUM : a * b; }

// SD / sqrt(W) under flag 0, or 4 without weights.
double standard_error(double sd, double W, int flag, bool bWeighted) {
  const bool exists = flag == DS_SAS1_DF || (flag == DS_NAG && !bWeighted);
  return (exists && sd != NANUM && W != NANUM && W != 0) ? sd / std::sqrt(W) : NANUM;
}

double variation(double sd, double mean) {
  return (sd != NANUM && mean != NANUM && mean != 0) ? sd / mean : NANUM;
}

struct SummaryOutputs {
  int* n = nullptr;
  double* mean = nullptr;
  double* sd = nullptr;
  double* sem = nullptr;
  double* variance = nullptr;
  double* sum = nullptr;
  double* skewness = nullptr;
  double* kurtosis = nullptr;
  double* uncorSumSq = nullptr;
  double* corSumSq = nullptr;
  double* cov = nullptr;
  double* mad = nullptr;
  int* missing = nullptr;
  double* weightSum = nullptr;
  double* geoMean = nullptr;
};

// The single-point rule as zomath_basic_summary_stats gives it.
void single_point(const double* x, int nSize, const double* w, int flag, const SummaryOutputs& o) {
  int i = nSize - 1;
  while (i > 0 && (x[i] == NANUM || (w && w[i] == NANUM))) --i;
  const double xi = x[i], wi = w ? (w[i] < 0 ? 0.0 : w[i]) : 1.0;
  const double mean = wi == 0 ? NANUM : xi;
  const double sd = (flag == DS_SAS2_N || flag == DS_SAS4_WGT) ? 0.0 : NANUM;
  put(o.mean, mean);
  put(o.sd, sd);
  put(o.variance, sd);
  put(o.corSumSq, 0.0);
  put(o.uncorSumSq, xi * xi * wi);
  put(o.geoMean, xi);
  put(o.weightSum, wi);
  put(o.sum, times(mean, wi));
  put(o.cov, variation(sd, mean));
}

// The summary engine: the route through the weighted moments for flags 0 and 2 without weights
// and for flag 4, the moment engine for the rest. pScan: scan(x, w, nSize), when known; its
// second pass gathers for pExtras too.
int basic_summary(int nSize, const double* x, const double* w, int flag, const SummaryOutputs& o,
                  const platform::FirstSums* pScan = nullptr, ModeAndSpread* pExtras = nullptr) {
  put(o.n, -1);
  put(o.missing, -1);
  put(o.mad, 0.0);
  fill({o.mean, o.sd, o.sem, o.variance, o.sum, o.skewness, o.kurtosis, o.uncorSumSq,
        o.corSumSq, o.cov, o.weightSum, o.geoMean}, NANUM);
  if (nSize > 0 && !x) return ZOMATH_ERR_EMPTY_DATA;
  const platform::FirstSums s = pScan ? *pScan : scan(x, w, nSize);
  const int missing = nSize > 0 ? nSize - static_cast<int>(s.valid) : 0;
  const int n = nSize - missing;
  put(o.n, n);
  put(o.missing, missing);
  if (n < 0) return ZOMATH_ERR_NULL_DATA;
  if (n == 0) return ZOMATH_OK;
  if (n == 1) {
    single_point(x, nSize, w, flag, o);
    return ZOMATH_OK;
  }
  const bool weighted = w && s.weightNotOne;
  double mean = NANUM, sd = NANUM, W = NANUM;
  try {
    if (!((flag == DS_SAS1_DF || flag == DS_SAS3_WDF) && !weighted) && flag != DS_NAG) {
      MomentOutputs m;
      m.mean = &mean;
      m.sd = &sd;
      m.mad = o.mad;
      m.variance = o.variance;
      m.skewness = o.skewness;
      m.kurtosis = o.kurtosis;
      m.corSumSq = o.corSumSq;
      m.uncorSumSq = o.uncorSumSq;
      m.geoMean = o.geoMean;
      W = moment_engine(x, nSize, w, nSize, flag, m, &s, nullptr, pExtras);
    } else {
      // One second pass serves both: the weighted moments of the valid points (the passes
      // leave out missing points and read a weight below 0 as 0, as a compressed copy would
      // hold them), and the moment engine, whose root weights this route never needs (flags 0
      // and 2 come here without weights, flag 4 takes the shape from the weighted moments).
      platform::FirstSums valid = s;
      valid.negativeWeights = 0;
      const platform::DeviationSums dev = deviations(x, w, nSize, s, false, pExtras);
      platform::WeightedMoments r;
      platform::NagError err;
      const int code = platform::weighted_moments_from_sums(valid, dev, r, err);
      if (code != 0 && code != platform::kMomentsZeroVariance) return ZOMATH_OK;
      mean = r.mean;
      sd = r.sd;
      W = r.weightSum;
      const double S2 = w ? s.weightSquares : n;
      const double cor = (W - S2 / W) * sd * sd;
      put(o.variance, sd * sd);
      put(o.corSumSq, cor);
      put(o.uncorSumSq, mean * mean * W + cor);
      put(o.skewness, code == 0 ? r.skewness : NANUM);
      put(o.kurtosis, code == 0 ? r.kurtosis : NANUM);
      // The mean absolute deviation, the geometric mean and, but for flag 4, the shape
      // coefficients of the flag come from the moment engine.
      MomentOutputs m;
      m.mad = o.mad;
      m.geoMean = o.geoMean;
      if (flag != DS_NAG) {
        m.skewness = o.skewness;
        m.kurtosis = o.kurtosis;
      }
      if (m.mad || m.geoMean || m.skewness || m.kurtosis) moment_engine(x, nSize, w, nSize, flag, m, &s, &dev);
    }
  } catch (int code) {
    return code;
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
  put(o.sem, standard_error(sd, W, flag, weighted));
  put(o.cov, variation(sd, mean));
  put(o.sum, times(mean, W));
  put(o.mean, mean);
  put(o.sd, sd);
  put(o.weightSum, W);
  return ZOMATH_OK;
}

struct OptionalOutputs {
  double* mode = nullptr;
  bool* multiModal = nullptr;
  double* geoSD = nullptr;
  double* lcl = nullptr;
  double* ucl = nullptr;
  double* sdx2 = nullptr;
  double* sdx3 = nullptr;
};

bool any(const OptionalOutputs& o) {
  return o.mode || o.multiModal || o.geoSD || o.lcl || o.ucl || o.sdx2 || o.sdx3;
}

// zomath_basic_summary_stats into b and zomath_opt_summary_stats into o from one scan and one
// second pass: the latter's mean, SD and weight sum are the former's, and the pass that forms
// the moments gathers the keys of the mode and the logarithms of the geometric SD besides.
int summary(int nSize, const double* x, const double* w, int flag, double level,
            SummaryOutputs b, const OptionalOutputs& o) {
  if (!any(o) || (nSize > 0 && !x)) return basic_summary(nSize, x, w, flag, b);
  fill({o.mode, o.geoSD, o.lcl, o.ucl, o.sdx2, o.sdx3}, NANUM);
  put(o.multiModal, false);
  double mean, sd, W;
  if (!b.mean) b.mean = &mean;
  if (!b.sd) b.sd = &sd;
  if (!b.weightSum) b.weightSum = &W;
  platform::FirstSums s;
  try {
    ModeAndSpread extras(x, nSize, o.mode != nullptr, o.geoSD != nullptr);
    s = scan(x, w, nSize, extras.key_counts());
    if (const int code = basic_summary(nSize, x, w, flag, b, &s, &extras)) return code;
    if (s.valid == 0) return ZOMATH_OK;
    if (o.mode || o.geoSD) {
      extras.finish(s, flag);
      put(o.mode, extras.mode);
      if (o.mode) put(o.multiModal, extras.multiModal);
      put(o.geoSD, extras.geoSD);
    }
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
  sd = *b.sd;
  put(o.sdx2, sd == NANUM ? NANUM : sd + sd);
  put(o.sdx3, sd == NANUM ? NANUM : 3.0 * sd);
  if (o.lcl || o.ucl) {
    double lcl, ucl;
    confidence_limits(*b.mean, sd, *b.weightSum, s.valid, flag, w && s.weightNotOne, level, lcl, ucl);
    put(o.lcl, lcl);
    put(o.ucl, ucl);
  }
  return ZOMATH_OK;
}

// The row forms: each row without its NANUM through the summary engine and its companions.
struct RowOutputs {
  double *mean, *sd, *sem, *min, *max, *sum, *n, *lcl, *ucl;
  double *variance = nullptr, *skewness = nullptr, *kurtosis = nullptr, *uncorSumSq = nullptr,
         *corSumSq = nullptr, *cov = nullptr, *mad = nullptr, *geoMean = nullptr,
         *mode = nullptr, *geoSD = nullptr, *sdx2 = nullptr, *sdx3 = nullptr;
  int* missing = nullptr;
  bool* multiModal = nullptr;
};

template <class T>
T* at(T* p, int i) {
  return p ? p + i : nullptr;
}

int row_stats(int nRows, int nCols, const double* pMatrix, const RowOutputs& o, int flag) {
  if (!pMatrix) return ZOMATH_ERR_NULL_POINTER;
  if (nRows < 1 || nCols < 1) return ZOMATH_ERR_ROW_NULL;
  NRVec<double> row;
  try {
    row.SetSize(nCols);
  } catch (...) {
    return ZOMATH_STATS_ERR_ROW_FETCH;
  }
  for (int r = 0; r < nRows; ++r) {
    const double* p = pMatrix + static_cast<std::size_t>(r) * nCols;
    int count = 0;
    double lo = 0, hi = 0;
    for (int c = 0; c < nCols; ++c) {
      if (p[c] == NANUM) continue;
      if (count == 0 || p[c] < lo) lo = p[c];
      if (count == 0 || p[c] > hi) hi = p[c];
      row[count++] = p[c];
    }
    if (count == 0) {
      fill({at(o.mean, r), at(o.sd, r), at(o.sem, r), at(o.min, r), at(o.max, r), at(o.sum, r),
            at(o.n, r), at(o.lcl, r), at(o.ucl, r), at(o.variance, r), at(o.skewness, r),
            at(o.kurtosis, r), at(o.uncorSumSq, r), at(o.corSumSq, r), at(o.cov, r),
            at(o.mad, r), at(o.geoMean, r), at(o.mode, r), at(o.geoSD, r), at(o.sdx2, r),
            at(o.sdx3, r)}, NANUM);
      put(at(o.missing, r), 0);
      put(at(o.multiModal, r), false);
      continue;
    }
    put(at(o.min, r), lo);
    put(at(o.max, r), hi);
    SummaryOutputs b;
    b.mean = at(o.mean, r);
    b.sd = at(o.sd, r);
    b.sem = at(o.sem, r);
    b.sum = at(o.sum, r);
    b.variance = at(o.variance, r);
    b.skewness = at(o.skewness, r);
    b.kurtosis = at(o.kurtosis, r);
    b.uncorSumSq = at(o.uncorSumSq, r);
    b.corSumSq = at(o.corSumSq, r);
    b.cov = at(o.cov, r);
    b.mad = at(o.mad, r);
    b.geoMean = at(o.geoMean, r);
    OptionalOutputs e;
    e.mode = at(o.mode, r);
    e.multiModal = at(o.multiModal, r);
    e.geoSD = at(o.geoSD, r);
    e.lcl = at(o.lcl, r);
    e.ucl = at(o.ucl, r);
    e.sdx2 = at(o.sdx2, r);
    e.sdx3 = at(o.sdx3, r);
    if (const int code = summary(count, row.Data(), nullptr, flag, 0.95, b, e)) return code;
    put(at(o.n, r), static_cast<double>(count));
    put(at(o.missing, r), nCols - count);
  }
  return ZOMATH_OK;
}

}  // namespace
}  // namespace zomath::stats

using namespace zomath::stats;

extern "C" {

int zomath_basic_summary_stats(int nSize, const double* pData, int* pN, double* pMean, double* pSD,
                               double* pSEM, double* pVariance, double* pSum, double* pSkewness,
                               double* pKurtosis, double* pUncorSumSq, double* pCorSumSq,
                               double* pCOV, double* pMAD, int* pMissing, double* pWeightSum,
                               double* pGeoMean, int nMomentDenFlag, const double* pWeights) {
  SummaryOutputs o;
  o.n = pN;
  o.mean = pMean;
  o.sd = pSD;
  o.sem = pSEM;
  o.variance = pVariance;
  o.sum = pSum;
  o.skewness = pSkewness;
  o.kurtosis = pKurtosis;
  o.uncorSumSq = pUncorSumSq;
  o.corSumSq = pCorSumSq;
  o.cov = pCOV;
  o.mad = pMAD;
  o.missing = pMissing;
  o.weightSum = pWeightSum;
  o.geoMean = pGeoMean;
  return basic_summary(nSize, pData, pWeights, nMomentDenFlag, o);
}

int zomath_opt_summary_stats(int nSize, const double* pData, double dConfLevel, double* pMode,
                             bool* pbMultiModal, double* pGeoSD, double* pLCL, double* pUCL,
                             double* pSDx2, double* pSDx3, int nMomentDenFlag,
                             const double* pWeights) {
  OptionalOutputs o;
  o.mode = pMode;
  o.multiModal = pbMultiModal;
  o.geoSD = pGeoSD;
  o.lcl = pLCL;
  o.ucl = pUCL;
  o.sdx2 = pSDx2;
  o.sdx3 = pSDx3;
  if (!any(o)) {  // nothing to compute, but the checks of the arguments
    if (nSize < 0) return ZOMATH_ERR_NULL_DATA;
    return nSize > 0 && !pData ? ZOMATH_ERR_EMPTY_DATA : ZOMATH_OK;
  }
  return summary(nSize, pData, pWeights, nMomentDenFlag, dConfLevel, SummaryOutputs{}, o);
}

int zomath_desc_stats(const double* pData, int nSize, DescStatResults* pResults,
                      const double* pWeights, double dConfLevel, int nMomentDenFlag) {
  DescStatResults* r = pResults;
  if (!r) return ZOMATH_ERR_EMPTY_DATA;
  r->N = r->Missing = 0;
  fill({&r->Mean, &r->SD, &r->Variance, &r->Sum, &r->Skewness, &r->Kurtosis, &r->UncorSumSq,
        &r->CorSumSq, &r->MAD, &r->SDx2, &r->SDx3, &r->GeoMean, &r->GeoSD}, NANUM);
  if (nSize > 0 && !pData) return ZOMATH_ERR_EMPTY_DATA;
  // The keys of the mode are counted by the scan only for a call that goes on to use them.
  const bool going = dConfLevel > 0 && dConfLevel < 1 && nSize > 0;
  const int flag = nMomentDenFlag;
  zomath::platform::FirstSums s;
  try {
    ModeAndSpread extras(pData, going ? nSize : 0, true, true);
    s = scan(pData, pWeights, nSize, extras.key_counts());
    r->Missing = nSize > 0 ? nSize - static_cast<int>(s.valid) : 0;
    r->N = nSize - r->Missing;
    if (!(dConfLevel > 0 && dConfLevel < 1)) return ZOMATH_STATS_ERR_CONF_LEVEL;
    if (r->N < 0) return ZOMATH_ERR_NULL_DATA;
    if (r->N == 0) return ZOMATH_OK;
    MomentOutputs m;
    m.mean = &r->Mean;
    m.mad = &r->MAD;
    m.sd = &r->SD;
    m.variance = &r->Variance;
    m.skewness = &r->Skewness;
    m.kurtosis = &r->Kurtosis;
    m.corSumSq = &r->CorSumSq;
    m.uncorSumSq = &r->UncorSumSq;
    m.geoMean = &r->GeoMean;
    r->WeightSum = moment_engine(pData, nSize, pWeights, nSize, flag, m, &s, nullptr, &extras);
    extras.finish(s, flag);
    r->Mode = extras.mode;
    r->GeoSD = extras.geoSD;
  } catch (int code) {
    return code;
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
  if (r->GeoMean != NANUM && r->GeoMean < 0) r->GeoMean = NANUM;
  r->SDx2 = r->SD == NANUM ? NANUM : r->SD + r->SD;
  r->SDx3 = r->SD == NANUM ? NANUM : 3.0 * r->SD;
  r->Sum = times(r->Mean, r->WeightSum);
  const bool weighted = pWeights && s.weightNotOne;
  r->SEM = standard_error(r->SD, r->WeightSum, flag, weighted);
  r->COV = variation(r->SD, r->Mean);
  confidence_limits(r->Mean, r->SD, r->WeightSum, r->N, flag, weighted, dConfLevel, r->LCL, r->UCL);
  return ZOMATH_OK;
}

int zomath_desc_stats_ex(const double* pData, int nSize, const double* pSubsetSizes, int nSubsets,
                         const DescStatOptions* pOptions, DescStatResults* pResults,
                         const double* pWeights, double dConfLevel, bool* pbMultiModal) {
  if (nSubsets < 0) return ZOMATH_ERR_OPTION;
  if (nSubsets == 0) return ZOMATH_OK;
  if (!pSubsetSizes || !pOptions || !pResults || (nSize > 0 && !pData)) return ZOMATH_ERR_EMPTY_DATA;
  if (nSize < 0) return ZOMATH_ERR_NULL_DATA;
  const DescStatOptions& q = *pOptions;
  // The slice of subset i runs from the sum of the sizes before it to the sum up to it; an end
  // of 0 means the end of the data, and a slice outside the data is empty.
  double start = 0, end = 0;
  for (int i = 0; i < nSubsets; ++i) {
    if (i > 0) start += pSubsetSizes[i - 1];
    end += pSubsetSizes[i];
    const double last = end == 0 ? nSize : end;
    int first = 0, count = 0;
    if (start >= 0 && start <= last && last <= nSize) {
      first = static_cast<int>(start);
      count = static_cast<int>(last) - first;
    }
    DescStatResults rec;
    rec.N = rec.Missing = -1;
    fill({&rec.Mean, &rec.SD, &rec.SEM, &rec.LCL, &rec.UCL, &rec.Variance, &rec.Sum,
          &rec.Skewness, &rec.Kurtosis, &rec.UncorSumSq, &rec.CorSumSq, &rec.COV, &rec.MAD,
          &rec.SDx2, &rec.SDx3, &rec.GeoMean, &rec.GeoSD, &rec.Mode, &rec.WeightSum}, NANUM);
    const double* x = count > 0 ? pData + first : pData;
    const double* w = pWeights && count > 0 ? pWeights + first : pWeights;
    SummaryOutputs b;
    b.n = q.bN ? &rec.N : nullptr;
    b.missing = q.bMissing ? &rec.Missing : nullptr;
    b.sum = q.bSum ? &rec.Sum : nullptr;
    b.mean = q.bMean ? &rec.Mean : nullptr;
    b.geoMean = q.bGeoMean ? &rec.GeoMean : nullptr;
    b.sd = q.bSD ? &rec.SD : nullptr;
    b.sem = q.bSEM ? &rec.SEM : nullptr;
    b.variance = q.bVariance ? &rec.Variance : nullptr;
    b.cov = q.bCOV ? &rec.COV : nullptr;
    b.skewness = q.bSkewness ? &rec.Skewness : nullptr;
    b.kurtosis = q.bKurtosis ? &rec.Kurtosis : nullptr;
    b.mad = q.bMAD ? &rec.MAD : nullptr;
    b.uncorSumSq = q.bUncorSumSq ? &rec.UncorSumSq : nullptr;
    b.corSumSq = q.bCorSumSq ? &rec.CorSumSq : nullptr;
    b.weightSum = q.bWeightSum ? &rec.WeightSum : nullptr;
    bool multi = false;
    OptionalOutputs e;
    e.mode = q.bMode ? &rec.Mode : nullptr;
    e.multiModal = &multi;
    e.geoSD = q.bGeoSD ? &rec.GeoSD : nullptr;
    e.lcl = q.bLCL ? &rec.LCL : nullptr;
    e.ucl = q.bUCL ? &rec.UCL : nullptr;
    e.sdx2 = q.bSDx2 ? &rec.SDx2 : nullptr;
    e.sdx3 = q.bSDx3 ? &rec.SDx3 : nullptr;
    const int code = summary(count, x, w, q.nMomentDenFlag, dConfLevel, b, e);
    pResults[i] = rec;
    if (pbMultiModal) pbMultiModal[i] = multi;
    if (code != 0) return code;
  }
  return ZOMATH_OK;
}

int zomath_row_desc_stats(int nRows, int nCols, const double* pMatrix, double* pMean, double* pSD,
                          double* pSEM, double* pMin, double* pMax, double* pSum, double* pN,
                          double* pLCL, double* pUCL, int nMomentDenFlag) {
  const RowOutputs o{pMean, pSD, pSEM, pMin, pMax, pSum, pN, pLCL, pUCL};
  return row_stats(nRows, nCols, pMatrix, o, nMomentDenFlag);
}

int zomath_row_desc_stats_ex(int nRows, int nCols, const double* pMatrix, double* pMean,
                             double* pSD, double* pSEM, double* pMin, double* pMax, double* pSum,
                             double* pN, double* pLCL, double* pUCL, double* pVariance,
                             double* pSkewness, double* pKurtosis, double* pUncorSumSq,
                             double* pCorSumSq, double* pCOV, double* pMAD, int* pMissing,
                             double* pGeoMean, double* pMode, bool* pbMultiModal, double* pGeoSD,
                             double* pSDx2, double* pSDx3, int nMomentDenFlag) {
  RowOutputs o{pMean, pSD, pSEM, pMin, pMax, pSum, pN, pLCL, pUCL};
  o.variance = pVariance;
  o.skewness = pSkewness;
  o.kurtosis = pKurtosis;
  o.uncorSumSq = pUncorSumSq;
  o.corSumSq = pCorSumSq;
  o.cov = pCOV;
  o.mad = pMAD;
  o.missing = pMissing;
  o.geoMean = pGeoMean;
  o.mode = pMode;
  o.multiModal = pbMultiModal;
  o.geoSD = pGeoSD;
  o.sdx2 = pSDx2;
  o.sdx3 = pSDx3;
  return row_stats(nRows, nCols, pMatrix, o, nMomentDenFlag);
}

}  // extern "C"
