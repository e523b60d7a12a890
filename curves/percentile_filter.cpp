// The running percentile filter. Each output is the percentile of its window's values as
// zomath_percentiles gives it (NANUM and NaN left out), read from a window kept in order as it
// slides, so that a step costs one ordered insertion and removal instead of a sort.
#include <algorithm>
#include <optional>
#include <vector>

#include "curves/window_filters.h"
#include "platform/sliding_order.h"
#include "platform/workspace.h"
#include "stats/percentiles.h"
#include "zomath/curves.h"
#include "zomath/stats.h"

namespace zomath::curves {
namespace {

// The window's values by position, NANUM and NaN kept out of the order but counted. Narrow
// windows keep a sorted copy; wide ones, where the copy's moves would grow with the width, keep
// counts over the ranks of the whole padded sequence.
class PercentileWindow {
public:
  PercentileWindow(const PaddedSource& at, std::ptrdiff_t reach, std::size_t width,
                   double percent, int rule, bool ranked)
      : at_(at), reach_(reach), order_(ranked ? 1 : width), percent_(percent), rule_(rule) {
    if (!ranked) return;
    std::vector<double> all = platform::buffer<double>(static_cast<std::size_t>(at.n + 2 * reach));
    for (std::ptrdiff_t p = -reach; p < at.n + reach; ++p) all[p + reach] = at(p);
    ranks_.emplace(all.data(), all.size());
  }

  void add(std::ptrdiff_t pos) {
    const double v = at_(pos);
    if (v == NANUM) return;
    ++present_;
    if (v != v) return;
    if (ranks_) {
      ranks_->insert(static_cast<std::size_t>(pos + reach_));
    } else {
      order_.insert(v);
    }
  }
  void remove(std::ptrdiff_t pos) {
    const double v = at_(pos);
    if (v == NANUM) return;
    --present_;
    if (v != v) return;
    if (ranks_) {
      ranks_->erase(static_cast<std::size_t>(pos + reach_));
    } else {
      order_.erase(v);
    }
  }
  void exchange(std::ptrdiff_t in, std::ptrdiff_t gone) {
    const double vi = at_(in), vg = at_(gone);
    if (!ranks_ && vi == vi && vi != NANUM && vg == vg && vg != NANUM) {
      order_.replace(vg, vi);
    } else {
      remove(gone);
      add(in);
    }
  }
  // Values other than NANUM in the window (NaN included): whether the percentile is asked.
  std::size_t present() const { return present_; }
  double percentile() const {
    if (!ranks_) {
      if (order_.size() == 0) return NANUM;
      return stats::percentile_of_sorted(order_.data(), order_.size(), percent_, rule_);
    }
    const std::size_t n = ranks_->size();
    if (n == 0) return NANUM;
    const stats::PercentileRanks r = stats::percentile_ranks(n, percent_, rule_);
    return stats::percentile_of_pair(r, rule_, ranks_->at(r.lo), ranks_->at(r.hi));
  }

private:
  const PaddedSource& at_;
  std::ptrdiff_t reach_;
  platform::SortedWindow order_;
  std::optional<platform::RankedWindow> ranks_;
  std::size_t present_ = 0;
  double percent_;
  int rule_;
};

}  // namespace

int percentile_filter(int nSize, const double* pSrc, double* pDst, int nHalf, double dPercent,
                      unsigned int nBoundary, bool bEdfAver, std::size_t rankedFromWidth) {
  if (!pSrc || !pDst) return ZOMATH_ERR_NULL_POINTER;
  if (!(dPercent >= 0 && dPercent <= 100) || nHalf < 0 ||
      static_cast<long long>(nSize) < 2LL * nHalf + 1 || nBoundary > kBoundaryZero)
    return ZOMATH_ERR_OPTION;
  const int rule = bEdfAver ? INTERPOLATE_EDF_AVER : INTERPOLATE_EDF;
  const std::ptrdiff_t n = nSize, half = nHalf;
  const bool shrink = nBoundary == kBoundaryShrink;
  const std::size_t reach = shrink ? 0 : static_cast<std::size_t>(half);
  std::vector<double> left = platform::buffer<double>(reach);
  std::vector<double> right = platform::buffer<double>(reach);
  if (!shrink) build_pads(pSrc, nSize, static_cast<int>(nBoundary), reach, reach, reach,
                          left.data(), right.data());
  std::vector<double> copy;
  const double* src = unaliased_source(pSrc, pDst, nSize, copy);
  const PaddedSource at{src, n, left.data(), right.data()};

  const std::size_t width = 2 * static_cast<std::size_t>(half) + 1;
  PercentileWindow window(at, static_cast<std::ptrdiff_t>(reach), width, dPercent, rule,
                          width >= rankedFromWidth);
  // Shrinking windows ask for a percentile at every point; padded ones only where the window
  // holds something other than NANUM, and report -155 when none did.
  int status = shrink ? ZOMATH_OK : ZOMATH_ERR_NULL_DATA;
  auto settle = [&](std::ptrdiff_t i) {
    if (!shrink && window.present() == 0) {
      pDst[i] = NANUM;
      return;
    }
    status = ZOMATH_OK;
    pDst[i] = window.percentile();
  };
  std::ptrdiff_t lo = shrink ? 0 : -half, hi = lo - 1;  // the window holds positions lo..hi
  auto generic = [&](std::ptrdiff_t i) {
    const std::ptrdiff_t h = shrink ? std::min({half, i, n - 1 - i}) : half;
    // Out before in, so that a full window never holds more than its room.
    while (lo < i - h) window.remove(lo++);
    while (hi < i + h) window.add(++hi);
    settle(i);
  };
  const std::ptrdiff_t first = half + 1, last = n - 1 - half;
  std::ptrdiff_t i = 0;
  for (; i < n && (i < first || i > last); ++i) generic(i);
  if (i == first) {
    for (; i <= last; ++i) {
      window.exchange(i + half, i - half - 1);
      settle(i);
    }
    lo = last - half;
    hi = last + half;
  }
  for (; i < n; ++i) generic(i);
  return status;
}

}  // namespace zomath::curves

extern "C" int zomath_median_filter(int nSize, const double* pSrc, double* pDst, int nHalf,
                                    double dPercent, unsigned int nBoundary, bool bEdfAver) {
  try {
    return zomath::curves::percentile_filter(nSize, pSrc, pDst, nHalf, dPercent, nBoundary,
                                             bEdfAver, zomath::curves::kRankedWindowFrom);
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}
