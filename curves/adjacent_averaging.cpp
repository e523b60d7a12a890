// Adjacent averaging: the running mean over 2 nHalf + 1 points (plain or with parabolic
// weights), and the running mean and SD of windows that wrap around the end of the data.
#include <algorithm>
#include <climits>
#include <cmath>
#include <vector>

#include "core/kernels.h"
#include "curves/window_filters.h"
#include "platform/workspace.h"
#include "zomath/curves.h"
#include "zomath/vector.h"

namespace zomath::curves {
namespace {

using kernels::CompensatedSum;

constexpr int kErrWindow = ZOMATH_SMOOTH_ERR_WINDOW;

// A value that enters the sum as it is: neither NANUM nor NaN nor infinite.
inline bool plain(double v) { return v != NANUM && v - v == 0; }

// Mean of a window that values enter and leave one at a time. The finite values are summed
// with each rounding error carried (two-sum), so the mean does not drift however long the
// series: it stays within a rounding or two of the mean of the window's values. Infinities and
// NaN are counted apart and decide the mean as a direct sum would; NANUM is not counted.
class RunningMean {
public:
  void add(double v) { step(v, 1); }
  void remove(double v) { step(v, -1); }
  // remove(out) and add(in) for two plain values.
  void exchange(double in, double out) {
    double e1, e2;
    const double d = CompensatedSum::two_sum(in, -out, e1);
    s_ = CompensatedSum::two_sum(s_, d, e2);
    c_ += e1 + e2;
  }
  // False when the finite values' sum has left the double range.
  bool in_range() const { return s_ - s_ == 0 && c_ - c_ == 0; }
  // Some values, all of them finite: the mean is the sum's, quick_mean() (not finite when the
  // sum has left the range).
  bool ordinary() const { return count_ > 0 && special_ == 0; }
  double quick_mean() const { return (s_ + c_) / countD_; }
  double mean() const {
    if (count_ == 0) return NANUM;
    if (special_ != 0) {
      if (nan_ != 0 || (posInf_ != 0 && negInf_ != 0)) return std::nan("");
      return posInf_ != 0 ? INFINITY : -INFINITY;
    }
    return (s_ + c_) / static_cast<double>(count_);
  }
  // Starts the sum afresh from the window's values, positions lo..hi read through `at`, summed
  // in long double (whose range no window of doubles leaves); returns the window's mean.
  template <class Reader>
  double restart(const Reader& at, std::ptrdiff_t lo, std::ptrdiff_t hi) {
    long double sum = 0;
    for (std::ptrdiff_t p = lo; p <= hi; ++p)
      if (plain(at(p))) sum += at(p);
    s_ = static_cast<double>(sum);
    c_ = std::isfinite(s_) ? static_cast<double>(sum - s_) : 0.0;
    if (special_ != 0 || count_ == 0) return mean();
    return static_cast<double>(sum / count_);
  }

private:
  void step(double v, int sign) {
    if (v == NANUM) return;
    count_ += sign;
    countD_ = static_cast<double>(count_);
    if (v - v == 0) {
      double e;
      s_ = CompensatedSum::two_sum(s_, sign > 0 ? v : -v, e);
      c_ += e;
      return;
    }
    special_ += sign;
    if (v != v) nan_ += sign;
    else if (v > 0) posInf_ += sign;
    else negInf_ += sign;
  }

  double s_ = 0, c_ = 0, countD_ = 0;
  std::ptrdiff_t count_ = 0, special_ = 0, nan_ = 0, posInf_ = 0, negInf_ = 0;
};

// Unweighted running mean over positions i - h .. i + h, h = nHalf, or with `shrink`
// min(nHalf, i, n - 1 - i). Positions outside the data are read through `at`.
void running_average(const PaddedSource& at, std::ptrdiff_t n, std::ptrdiff_t half, bool shrink,
                     double* out) {
  RunningMean m;
  std::ptrdiff_t lo = shrink ? 0 : -half, hi = lo - 1;  // the window holds positions lo..hi
  auto settle = [&](std::ptrdiff_t i) {
    out[i] = m.in_range() ? m.mean() : m.restart(at, lo, hi);
  };
  auto generic = [&](std::ptrdiff_t i) {
    const std::ptrdiff_t h = shrink ? std::min({half, i, n - 1 - i}) : half;
    while (hi < i + h) m.add(at(++hi));
    while (lo < i - h) m.remove(at(lo++));
    if (h == 0) out[i] = at(i);  // a point alone is itself, exactly
    else settle(i);
  };
  // Windows wholly inside the data, whose predecessor also was: one value out, one in.
  const std::ptrdiff_t first = half + 1, last = n - 1 - half;
  std::ptrdiff_t i = 0;
  for (; i < n && (i < first || i > last); ++i) generic(i);
  if (i == first && half > 0) {
    const double* x = at.src;
    for (; i <= last; ++i) {
      const double in = x[i + half], gone = x[i - half - 1];
      if (plain(in) && plain(gone) && m.ordinary()) {
        m.exchange(in, gone);
        const double v = m.quick_mean();
        if (v - v == 0) {
          out[i] = v;
          continue;
        }
      } else {
        m.remove(gone);
        m.add(in);
      }
      lo = i - half;
      hi = i + half;
      settle(i);
    }
    lo = last - half;
    hi = last + half;
  }
  for (; i < n; ++i) generic(i);
}

// Weighted mean at every point: offset k has weight 1 - (k / (nHalf + 1))^2.
void weighted_average(const PaddedSource& at, std::ptrdiff_t n, std::ptrdiff_t half, bool shrink,
                      double* out) {
  std::vector<double> weight = platform::buffer<double>(static_cast<std::size_t>(half) + 1);
  for (std::ptrdiff_t k = 0; k <= half; ++k) {
    const double r = static_cast<double>(k) / static_cast<double>(half + 1);
    weight[k] = 1 - r * r;
  }
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const std::ptrdiff_t h = shrink ? std::min({half, i, n - 1 - i}) : half;
    double sum = 0, sumW = 0;
    if (i - h >= 0 && i + h < n) {
      const double* x = at.src + i;
      for (std::ptrdiff_t k = -h; k <= h; ++k) {
        const double v = x[k], w = weight[k < 0 ? -k : k];
        const bool keep = v != NANUM;
        sum += keep ? v * w : 0.0;
        sumW += keep ? w : 0.0;
      }
    } else {
      for (std::ptrdiff_t k = -h; k <= h; ++k) {
        const double v = at(i + k), w = weight[k < 0 ? -k : k];
        if (v == NANUM) continue;
        sum += v * w;
        sumW += w;
      }
    }
    out[i] = sumW > 0 ? sum / sumW : NANUM;
  }
}

// The first two values that are not NANUM walking from `from` by `step`: false without two.
bool end_pair(const double* x, std::ptrdiff_t n, std::ptrdiff_t from, std::ptrdiff_t step,
              double& v0, double& v1) {
  int found = 0;
  for (std::ptrdiff_t i = from; i >= 0 && i < n && found < 2; i += step) {
    if (x[i] == NANUM) continue;
    (found++ ? v1 : v0) = x[i];
  }
  return found == 2;
}

int adjacent_average(const double* pSrc, double* pDst, unsigned int nSize, int nHalf,
                     int nBoundary, bool bWeighted) {
  if (!pSrc || !pDst) return ZOMATH_ERR_NULL_POINTER;
  if (nSize == 1) return ZOMATH_OK;
  if (nHalf < 0 || static_cast<unsigned int>(nHalf) >= nSize) return kErrWindow;
  if (nBoundary < kBoundaryShrink || nBoundary > kBoundaryZero) return kErrWindow;
  if (bWeighted && nBoundary == kBoundaryZero) return kErrWindow;
  const std::ptrdiff_t n = nSize, half = nHalf;
  const std::size_t reach = static_cast<std::size_t>(half);
  std::vector<double> left = platform::buffer<double>(reach);
  std::vector<double> right = platform::buffer<double>(reach);
  if (nBoundary == kBoundaryLinear) {
    // Position -k reads v0 + k (v0 - v1), from the first two values that are there; the same
    // from the right end.
    double a0 = 0, a1 = 0, b0 = 0, b1 = 0;
    if (!end_pair(pSrc, n, 0, 1, a0, a1) || !end_pair(pSrc, n, n - 1, -1, b0, b1))
      return kErrWindow;
    for (std::size_t j = 0; j < reach; ++j) {
      left[j] = a0 + static_cast<double>(j + 1) * (a0 - a1);
      right[j] = b0 + static_cast<double>(j + 1) * (b0 - b1);
    }
  } else if (nBoundary != kBoundaryShrink && nBoundary != kBoundaryZero) {
    build_pads(pSrc, nSize, nBoundary, reach, reach, 0, left.data(), right.data());
  }
  std::vector<double> copy;
  const double* src = unaliased_source(pSrc, pDst, nSize, copy);
  const PaddedSource at{src, n, left.data(), right.data()};
  const bool shrink = nBoundary == kBoundaryShrink || nBoundary == kBoundaryZero;
  if (bWeighted) weighted_average(at, n, half, shrink, pDst);
  else running_average(at, n, half, shrink, pDst);
  return ZOMATH_OK;
}

}  // namespace
}  // namespace zomath::curves

using namespace zomath;

extern "C" int zomath_adjave_smooth(const double* pSrc, double* pDst, unsigned int nSize,
                                    int nHalf, int nBoundary, bool bWeighted) {
  try {
    return curves::adjacent_average(pSrc, pDst, nSize, nHalf, nBoundary, bWeighted);
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

extern "C" int zomath_d_running_ave_circular(const double* pData, unsigned int nSize,
                                             unsigned int nWindow, double* pAve, double* pSD,
                                             unsigned int nStep) {
  if (!pData) return ZOMATH_ERR_NULL_POINTER;
  if (nStep == 0 || nWindow == 0 || nWindow > INT_MAX || nSize > INT_MAX)
    return ZOMATH_ERR_BAD_ARGUMENT;
  try {
    std::vector<double> wrapped;
    int count = 0;
    for (unsigned long long start = 0; start < nSize; start += nStep, ++count) {
      const double* p = pData + start;
      if (start + nWindow > nSize) {
        // Runs past the end: the values from the start follow the last ones.
        if (wrapped.empty()) wrapped = platform::buffer<double>(nWindow);
        for (unsigned long long j = 0; j < nWindow; ++j) wrapped[j] = pData[(start + j) % nSize];
        p = wrapped.data();
      }
      double variance = NANUM;
      int valid = 0;
      const double mean = zomath_d_mean_variance(p, static_cast<int>(nWindow), &variance, &valid);
      if (pAve) pAve[count] = mean;
      if (pSD) pSD[count] = variance == NANUM ? NANUM : std::sqrt(variance);
    }
    return count;
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}
