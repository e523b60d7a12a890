// Exports of the measures beside the summary engine: moments about zero, the range, and the
// statistics of a curve read as a density.
#include <cmath>
#include <cstddef>
#include <initializer_list>

#include "core/nrvec/nrvec.h"
#include "platform/utility.h"
#include "zomath/stats.h"
#include "zomath/vector.h"

namespace {

// sum x^k / n in long double, whose range holds the fourth power of every double, so that no
// term overflows or underflows, and whose eleven extra bits absorb the rounding of the sum.
long double power_mean(const double* p, int n, int k) {
  long double s = 0;
  for (int i = 0; i < n; ++i) {
    const long double x = p[i];
    long double t = x;
    for (int j = 1; j < k; ++j) t *= x;
    s += t;
  }
  return s / n;
}

// The value of a measure about zero for nSize points: 0.0 for none, NANUM for a bad call.
bool measurable(const double* p, int n, double& value) {
  if (n == 0) {
    value = 0.0;
    return false;
  }
  if (n < 0 || !p) {
    value = NANUM;
    return false;
  }
  return true;
}

double moment_about_zero(const double* p, int n, double dRMS, int k) {
  double value;
  if (!measurable(p, n, value)) return value;
  const long double r = dRMS < 0 ? std::sqrt(power_mean(p, n, 2)) : static_cast<long double>(dRMS);
  long double rk = r;
  for (int j = 1; j < k; ++j) rk *= r;
  return static_cast<double>(power_mean(p, n, k) / rk);
}

// First and last point whose x and y are both valid; false when there is none.
bool valid_ends(const double* x, const double* y, int n, int& first, int& last) {
  first = 0;
  while (first < n && (x[first] == NANUM || y[first] == NANUM)) ++first;
  last = n - 1;
  while (last > first && (x[last] == NANUM || y[last] == NANUM)) --last;
  return first < n;
}

}  // namespace

extern "C" {

double zomath_root_mean_square(const double* pData, int nSize) {
  double value;
  if (!measurable(pData, nSize, value)) return value;
  return static_cast<double>(std::sqrt(power_mean(pData, nSize, 2)));
}

double zomath_absolute_arithmetic_average(const double* pData, int nSize) {
  double value;
  if (!measurable(pData, nSize, value)) return value;
  long double s = 0;
  for (int i = 0; i < nSize; ++i) s += std::fabs(pData[i]);
  return static_cast<double>(s / nSize);
}

double zomath_skewness(const double* pData, int nSize, double dRMS) {
  return moment_about_zero(pData, nSize, dRMS, 3);
}

double zomath_kurtosis(const double* pData, int nSize, double dRMS) {
  return moment_about_zero(pData, nSize, dRMS, 4);
}

int zomath_range(const double* pData, int nSize, RangeResults* pResults) {
  if (!pResults) return ZOMATH_ERR_EMPTY_DATA;
  pResults->Min = pResults->Max = pResults->Range = NANUM;
  pResults->iMin = pResults->iMax = -1;
  if (nSize > 0 && !pData) return ZOMATH_ERR_EMPTY_DATA;
  if (nSize < 1) return ZOMATH_STATS_ERR_NO_VALID;
  unsigned int iMin, iMax;
  zomath_d_minmax(pData, 0, static_cast<unsigned int>(nSize - 1), &iMin, &iMax);
  if (iMin == 0xFFFFFFFFu) return ZOMATH_STATS_ERR_NO_VALID;
  pResults->Min = pData[iMin];
  pResults->Max = pData[iMax];
  pResults->iMin = static_cast<int>(iMin);
  pResults->iMax = static_cast<int>(iMax);
  pResults->Range = pResults->Max - pResults->Min;
  return ZOMATH_OK;
}

int zomath_mathematical_expectation(int nSize, const double* pX, const double* pY,
                                    double* pResult) {
  if (pResult) *pResult = NANUM;
  if (!pX || !pY || !pResult) return ZOMATH_ERR_EMPTY_DATA;
  double area;
  if (const int code = zomath_integrate(nSize, pX, pY, &area, nullptr)) return code;
  int first, last;
  valid_ends(pX, pY, nSize, first, last);
  const double extent = pX[last] - pX[first];
  if (extent == 0) return ZOMATH_ERR_TOO_FEW_FOR_RANGE;
  *pResult = area / extent;
  return ZOMATH_OK;
}

int zomath_basic_stats_distribution(int nSize, const double* pX, const double* pY,
                                    double* pXPeak, double* pYPeak, int* pIndexPeak,
                                    double* pMean, double* pMedian, double* pSD, int nPeakType) {
  for (double* p : {pXPeak, pYPeak, pMean, pMedian, pSD})
    if (p) *p = NANUM;
  if (pIndexPeak) *pIndexPeak = -1;
  if (!pX || !pY) return ZOMATH_ERR_EMPTY_DATA;
  if (nSize < 3) return ZOMATH_ERR_DENSITY_PARAM;
  for (int i = 0; i < nSize; ++i) {
    const bool finite = std::isfinite(pX[i]) && std::isfinite(pY[i]) && pX[i] != NANUM;
    if (!finite || !(pY[i] >= 0) || (i > 0 && !(pX[i] > pX[i - 1])))
      return ZOMATH_ERR_DISTRIBUTION_TABLE;
  }
  if (pXPeak || pYPeak || pIndexPeak) {
    unsigned int iMin, iMax;
    zomath_d_minmax(pY, 0, static_cast<unsigned int>(nSize - 1), &iMin, &iMax);
    const int i = static_cast<int>(nPeakType == 1 ? iMax : iMin);
    if (pXPeak) *pXPeak = pX[i];
    if (pYPeak) *pYPeak = pY[i];
    if (pIndexPeak) *pIndexPeak = i;
  }
  long double sumY = 0, sumXY = 0;
  for (int i = 0; i < nSize; ++i) {
    sumY += pY[i];
    sumXY += static_cast<long double>(pX[i]) * pY[i];
  }
  const bool mass = zomath::platform::compare_doubles(static_cast<double>(sumY), 0.0, '!');
  const double mean = mass ? static_cast<double>(sumXY / sumY) : NANUM;
  if (pMean) *pMean = mean;
  if (pMedian && mass) {
    // The point at which the running sum of y first reaches half the total.
    const long double half = sumY / 2;
    long double running = 0;
    int i = 0;
    while (i < nSize && running < half) running += pY[i++];
    if (i > 0) *pMedian = pX[i - 1];
  }
  if (pSD && pMean && mean != NANUM) {
    try {
      zomath::NRVec<double> squares(nSize);
      for (int i = 0; i < nSize; ++i) squares[i] = pY[i] * pY[i];
      double expectation;
      if (zomath_mathematical_expectation(nSize, pX, squares.Data(), &expectation) == 0 &&
          expectation > mean * mean)
        *pSD = std::sqrt(expectation - mean * mean);
    } catch (...) {
      return ZOMATH_ERR_NO_MEMORY;
    }
  }
  return ZOMATH_OK;
}

}  // extern "C"
