// Exports that lay bins or axes over data: frequency_count, find_most, get_vector_inc,
// zomath_round_range, zomath_round_with_tolerance, zomath_create_equal_spaced_vec.
#include <climits>
#include <cmath>
#include <cstddef>

#include "core/kernels.h"
#include "core/nrvec/nrvec.h"
#include "platform/frequency.h"
#include "zomath/vector.h"

namespace {

template <class T>
int frequency_count(const T* pData, int nSize, unsigned int* pnCounts, unsigned int nBins,
                    double start, double inc) {
  return zomath::kernels::frequency_count(pData, pData ? nSize : 0, pnCounts, nBins, start, inc);
}

template <class T>
bool find_most(const T* pData, int nSize, unsigned int nBins, const T* pMissing, double& dMost,
               double* pFraction) {
  double fraction = 0;
  bool ok = false;
  try {
    ok = zomath::kernels::find_most(pData, nSize, nBins, pMissing, dMost, fraction);
  } catch (...) {
    ok = false;
  }
  if (pFraction) *pFraction = ok ? fraction : 0.0;
  return ok;
}

// Powers of ten exact up to 10^22, so that m * 10^e and m / 10^-e are correctly rounded.
double power_of_ten(int k) { return std::pow(10.0, k); }

// inc (positive, finite) rounded to one significant digit: m * 10^e, e = floor(log10 inc),
// m = integer part of inc / 10^e + 0.5 (1 to 10).
double round_to_one_digit(double inc) {
  const int e = static_cast<int>(std::floor(std::log10(inc)));
  const double p = power_of_ten(e < 0 ? -e : e);
  if (!std::isfinite(p) || p == 0.0) return inc;
  const double m = std::trunc((e < 0 ? inc * p : inc / p) + 0.5);
  return e < 0 ? m / p : m * p;
}

bool usable(double x) { return std::isfinite(x) && x != NANUM; }

}  // namespace

extern "C" {

int zomath_d_frequency_count(const double* pData, int nSize, unsigned int* pnCounts,
                             unsigned int nBins, double dStart, double dInc) {
  return frequency_count(pData, nSize, pnCounts, nBins, dStart, dInc);
}
int zomath_f_frequency_count(const float* pData, int nSize, unsigned int* pnCounts,
                             unsigned int nBins, float fStart, float fInc) {
  return frequency_count(pData, nSize, pnCounts, nBins, fStart, fInc);
}
int zomath_b_frequency_count(const unsigned char* pData, int nSize, unsigned int* pnCounts,
                             unsigned int nBins, unsigned char nStart, unsigned char nInc) {
  return frequency_count(pData, nSize, pnCounts, nBins, nStart, nInc);
}
int zomath_us_frequency_count(const unsigned short* pData, int nSize, unsigned int* pnCounts,
                              unsigned int nBins, unsigned short nStart, unsigned short nInc) {
  return frequency_count(pData, nSize, pnCounts, nBins, nStart, nInc);
}

double zomath_d_find_most(const double* pData, int nSize, unsigned int nBins,
                          double* pFraction) {
  const double missing = NANUM;
  double most = NANUM;
  return find_most(pData, nSize, nBins, &missing, most, pFraction) ? most : NANUM;
}

int zomath_us_find_most(const unsigned short* pData, int nSize, unsigned int nBins,
                        double* pFraction) {
  double most = -1;
  if (!find_most<unsigned short>(pData, nSize, nBins, nullptr, most, pFraction)) return -1;
  return static_cast<int>(most);
}

int zomath_d_get_vector_inc(unsigned int nSize, const double* pData, double dRelTolerance,
                            double* pFirst, double* pLast, double* pInc) {
  return zomath::kernels::vector_inc<double>(nSize, pData, dRelTolerance, pFirst, pLast, pInc);
}

int zomath_i_get_vector_inc(unsigned int nSize, const int* pData, int nRelTolerance, int* pFirst,
                            int* pLast, int* pInc) {
  return zomath::kernels::vector_inc<int>(nSize, pData, nRelTolerance, pFirst, pLast, pInc);
}

int zomath_round_range(double* pMin, double* pMax, double* pInc, int nSteps) {
  if (!pMin || !pMax) return ZOMATH_ERR_NULL_POINTER;
  double lo = *pMin, hi = *pMax;
  if (!usable(lo) || !usable(hi) || (pInc && !usable(*pInc))) return ZOMATH_ERR_BAD_ARGUMENT;
  if (hi == lo) {
    if (lo == 0.0) {
      lo = -1;
      hi = 1;
    } else {
      const double d = 0.1 * std::fabs(lo);
      lo -= d;
      hi += d;
    }
  }
  const bool reversed = hi < lo;
  double inc;
  if (!pInc || *pInc == 0.0) {
    if (nSteps < 1) nSteps = 1;
    inc = (hi - lo) / nSteps;
  } else {
    inc = *pInc;
  }
  inc = std::fabs(inc);
  if (!(inc > 0.0) || !std::isfinite(inc)) return ZOMATH_ERR_BAD_ARGUMENT;
  if (nSteps > 0) inc = round_to_one_digit(inc);
  const double qLo = reversed ? std::ceil(lo / inc) : std::floor(lo / inc);
  const double qHi = reversed ? std::floor(hi / inc) : std::ceil(hi / inc);
  if (!std::isfinite(qLo) || !std::isfinite(qHi)) return ZOMATH_ERR_BAD_ARGUMENT;
  if (nSteps > 0 && pInc) *pInc = reversed ? -inc : inc;
  *pMin = qLo * inc;
  *pMax = qHi * inc;
  const double steps = std::fabs(qHi - qLo);
  return steps < INT_MAX ? static_cast<int>(steps) : INT_MAX;
}

int zomath_round_with_tolerance(int nSize, double* pData, double dTolerance) {
  if (!pData) return ZOMATH_ERR_NULL_POINTER;
  if (nSize < 1) return ZOMATH_ERR_TOO_FEW_POINTS;
  if (!usable(dTolerance) || !(dTolerance > 0)) return ZOMATH_ERR_BAD_ARGUMENT;
  for (int i = 0; i < nSize; ++i)
    if (!std::isfinite(pData[i])) return ZOMATH_ERR_BAD_ARGUMENT;
  std::ptrdiff_t iMin, iMax;
  zomath::kernels::minmax<double>(pData, 0, nSize - 1, nullptr, iMin, iMax);
  double lo = pData[iMin], hi = pData[iMax], inc = dTolerance;
  // nSteps 0: the tolerance is taken as the increment without rounding.
  const int steps = zomath_round_range(&lo, &hi, &inc, 0);
  if (steps < 0) return ZOMATH_ERR_BAD_ARGUMENT;
  constexpr int kMaxClasses = 1 << 24;
  if (steps > kMaxClasses) return ZOMATH_ERR_BAD_ARGUMENT;
  const int nClasses = steps > 1 ? steps : 1;
  try {
    // Class k spans [lo + k * tol, lo + (k + 1) * tol); the first and last are open outwards.
    zomath::NRVec<int> counts(nClasses);
    if (nClasses > 1) {
      zomath::NRVec<double> bounds(nClasses - 1);
      for (int k = 1; k < nClasses; ++k) bounds[k - 1] = lo + k * dTolerance;
      zomath::platform::NagError err;
      if (zomath::platform::frequency_table(pData, nSize, nClasses, bounds.Data(), counts.Data(),
                                            nullptr, nullptr, err) != 0)
        return ZOMATH_ERR_BAD_ARGUMENT;
    } else {
      counts[0] = nSize;
    }
    int out = 0;
    for (int k = 0; k < nClasses; ++k) {
      const double centre = (lo + k * dTolerance) + 0.5 * dTolerance;
      for (int c = 0; c < counts[k]; ++c) pData[out++] = centre;
    }
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
  return ZOMATH_OK;
}

int zomath_create_equal_spaced_vec(double* pOut, int nSize, double dStart, double dStep) {
  if (!pOut || nSize < 1 || !usable(dStart) || !usable(dStep)) return ZOMATH_ERR_BAD_ARGUMENT;
  for (int k = 0; k < nSize; ++k) pOut[k] = k * dStep + dStart;
  return ZOMATH_OK;
}

}  // extern "C"
