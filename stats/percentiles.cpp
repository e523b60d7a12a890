// The percentile rules, the sorted sample they read, and the percentile exports:
// zomath_percentiles and zomath_percentiles_distribution.
#include "stats/percentiles.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <new>
#include <vector>

#include "core/kernels.h"
#include "platform/hinges.h"
#include "platform/utility.h"
#include "platform/workspace.h"
#include "zomath/stats.h"
#include "zomath/vector.h"

namespace zomath::stats {
namespace {

bool in_percent_range(double p) { return p >= 0 && p <= 100; }

// (a + b) / 2, rounded once and free of overflow.
double mean_of(double a, double b) {
  return static_cast<double>((static_cast<long double>(a) + b) / 2);
}

// (1 - g) a + g b, rounded once. g = 0 and a = b give a itself, also for infinite a.
double between(double a, double b, long double g) {
  if (g == 0 || a == b) return a;
  return static_cast<double>((1 - g) * a + g * b);
}

// Where a percent falls among n >= 1 sorted values: k = 0 reads x(1), k >= n reads x(n), any
// other k reads x(k) and x(k + 1) with the fraction g. q = (p n) / 100 in this order, in long
// double: p n is exact for any n below 2^11, and the ties g = 0 and g = 0.5 are those of the
// exact quotient for the percents a caller writes.
struct Place {
  std::size_t k;
  long double g;
};

Place place_of(std::size_t n, double percent, int rule) {
  const long double count = static_cast<long double>(n) + (rule == INTERPOLATE_WEIGHT_AVER_RIGHT);
  const long double q = static_cast<long double>(percent) * count / 100;
  const long double whole = std::floor(q);
  if (whole >= static_cast<long double>(n)) return {n, 0};
  return {static_cast<std::size_t>(whole), q - whole};
}

// Adds the 0-based ranks that the percentile reads to `ranks`.
void ranks_read(std::size_t n, double percent, int rule, std::vector<std::size_t>& ranks) {
  if (!in_percent_range(percent)) return;
  const Place at = place_of(n, percent, rule);
  if (at.k == 0 || at.k >= n) {
    ranks.push_back(at.k == 0 ? 0 : n - 1);
  } else {
    ranks.push_back(at.k - 1);
    ranks.push_back(at.k);
  }
}

// Puts at each of the ascending ranks r[0..nr) of a[lo..hi) the value that a full sort puts
// there: selection about the middle rank, then each side; the smallest or largest of a range
// by one scan (the second of two neighbouring ranks is always one of those).
void select_ranks(double* a, std::size_t lo, std::size_t hi, const std::size_t* r, std::size_t nr) {
  while (nr > 0 && hi - lo > 1) {
    if (r[0] == lo) {
      std::iter_swap(a + lo, std::min_element(a + lo, a + hi));
      ++lo, ++r, --nr;
    } else if (r[nr - 1] == hi - 1) {
      std::iter_swap(a + hi - 1, std::max_element(a + lo, a + hi));
      --hi, --nr;
    } else {
      const std::size_t m = nr / 2;
      std::nth_element(a + lo, a + r[m], a + hi);
      select_ranks(a, lo, r[m], r, m);
      lo = r[m] + 1;
      r += m + 1;
      nr -= m + 1;
    }
  }
}

}  // namespace

PercentileRanks percentile_ranks(std::size_t n, double percent, int rule) {
  if (n == 0 || !in_percent_range(percent)) return {0, 0, 0, 0, false};
  const Place at = place_of(n, percent, rule);
  if (at.k == 0) return {0, 0, at.k, at.g, true};
  if (at.k >= n) return {n - 1, n - 1, at.k, at.g, true};
  return {at.k - 1, at.k, at.k, at.g, true};  // x(k) and x(k + 1)
}

double percentile_of_pair(const PercentileRanks& r, int rule, double a, double b) {
  if (!r.valid) return NANUM;
  if (r.lo == r.hi) return a;
  const std::size_t k = r.k;
  const long double g = r.g;
  switch (rule) {
    case INTERPOLATE_EDF_AVER: return g > 0 ? b : mean_of(a, b);
    case INTERPOLATE_NEAREST_NEIGHBOR:
      if (g != 0.5L) return g < 0.5L ? a : b;
      return k % 2 ? b : a;  // the even-numbered of x(k) and x(k + 1)
    case INTERPOLATE_EDF: return g > 0 ? b : a;
    case INTERPOLATE_WEIGHT_AVER_RIGHT:
    case INTERPOLATE_WEIGHT_AVER_LEFT: return between(a, b, g);
    default: return NANUM;
  }
}

double percentile_of_sorted(const double* x, std::size_t n, double percent, int rule) {
  const PercentileRanks r = percentile_ranks(n, percent, rule);
  return r.valid ? percentile_of_pair(r, rule, x[r.lo], x[r.hi]) : NANUM;
}

double weighted_percentile_of_sorted(const double* x, const long double* c, std::size_t n,
                                     double percent) {
  if (n == 0 || !in_percent_range(percent)) return NANUM;
  // T = C(n) p / 100; at 100 % exactly C(n), which the rounding of the product might miss.
  const long double t = percent == 100 ? c[n - 1] : c[n - 1] * percent / 100;
  std::size_t lo = 0, hi = n;
  // hi < n only where t < c[hi], so every step either answers or narrows [lo, hi); the bound
  // on the steps only guards against sums that are not ordered.
  for (int step = 0; lo < hi && step < 130; ++step) {
    const std::size_t mid = (lo + hi) / 2;
    if (t == c[mid]) return mid + 1 < n ? mean_of(x[mid], x[mid + 1]) : x[mid];
    if (t < c[mid]) {
      if (mid == 0 || c[mid - 1] < t) return x[mid];
      hi = mid;
    } else {
      if (mid + 1 >= n) return x[mid];
      if (t < c[mid + 1]) return x[mid + 1];
      lo = mid;
    }
  }
  return NANUM;
}

void five_numbers_by_depth(const double* x, std::size_t n, double out[5]) {
  // 1-based positions as the rule states them; x(i) is x[i - 1].
  const std::size_t h = (n + n % 2) / 2;
  const std::size_t d = (h + h % 2) / 2;
  out[0] = x[0];
  out[2] = n % 2 ? x[h - 1] : mean_of(x[h - 1], x[h]);
  if (h % 2) {
    out[1] = x[d - 1];
    out[3] = x[n - d];
  } else {
    out[1] = mean_of(x[d - 1], x[d]);
    out[3] = mean_of(x[n - d - 1], x[n - d]);
  }
  out[4] = x[n - 1];
}

void five_numbers(const double* x, std::size_t n, double out[5]) {
  platform::NagError err;
  if (n < 5) five_numbers_by_depth(x, n, out);
  else platform::five_number_summary(x, n, out, err);
}

int check_weights(const double* w, int n) {
  for (int i = 0; i < n; ++i) {
    const double v = w[i];
    if (v != NANUM && (!(v >= 0) || std::isinf(v)))
      return ZOMATH_STATS_ERR_NEGATIVE_WEIGHT;
  }
  return ZOMATH_OK;
}

namespace {

// The ranks of n sorted values that the percents under `rule`, and Tukey's numbers when
// `hinges`, read: ascending, each once.
std::vector<std::size_t> ranks_wanted(std::size_t n, const double* percents, std::size_t m,
                                      int rule, bool hinges) {
  std::vector<std::size_t> ranks;
  if (n < 5) return ranks;  // read after a full sort
  for (std::size_t i = 0; i < m; ++i) ranks_read(n, percents[i], rule, ranks);
  if (hinges) {
    // The extremes, and the depths of the median and hinges doubled, as the platform routine
    // reads them (n >= 5): the median's n + 1, the hinges' from each end.
    const std::size_t median2 = n + 1, hinge2 = median2 / 2 + 1;
    ranks.insert(ranks.end(), {0, n - 1});
    for (std::size_t d2 : {median2, hinge2, 2 * (n + 1) - hinge2}) {
      ranks.push_back(d2 / 2 - 1);
      ranks.push_back(std::min(d2 / 2, n - 1));
    }
  }
  std::sort(ranks.begin(), ranks.end());
  ranks.erase(std::unique(ranks.begin(), ranks.end()), ranks.end());
  return ranks;
}

// From this many points on, selection starts from a sample instead of a full copy; at most
// this many brackets of ranks.
constexpr std::size_t kSampleFrom = std::size_t{1} << 15;
constexpr std::size_t kMaxBrackets = 32;

// Selects, among the valid values of x[0..n) (not NANUM or NaN, weight not NANUM when w is
// given), the ranks that ranksFor(count) names (ascending), as a full sort would place them,
// without copying the values. A sample of about n^(2/3) / 2 points, from which the count is
// estimated, brackets each group of neighbouring ranks between two sample values 3 sqrt(s)
// sample ranks either side (six standard deviations of a sample rank or more); one pass
// counts the values below each bracket and copies those inside it, a few per cent of the
// data, and selection finishes in the copies. Writes the count to `count` and the value of
// each rank r to out[r] (out sized to the count); false when a rank falls outside the
// brackets or a bracket overflows its room (bad luck, or a sample too thin): the caller then
// selects in a full copy.
template <class RanksFor>
bool select_by_sampling(const double* x, const double* w, std::size_t n, RanksFor ranksFor,
                        NRVec<double>& out, std::size_t& count) {
  auto valid = [x, w](std::size_t i) { return x[i] == x[i] && x[i] != NANUM && !(w && w[i] == NANUM); };
  const std::size_t draws = static_cast<std::size_t>(0.5 * std::cbrt(static_cast<double>(n) * n));
  std::vector<double> sample;
  sample.reserve(draws);
  std::uint64_t state = 0x9E3779B97F4A7C15ull;  // a fixed seed: the same path every call
  for (std::size_t k = 0; k < draws; ++k) {
    state ^= state << 13;
    state ^= state >> 7;
    state ^= state << 17;
    const std::size_t i = static_cast<std::size_t>((static_cast<unsigned __int128>(state) * n) >> 64);
    if (valid(i)) sample.push_back(x[i]);
  }
  const std::size_t s = sample.size();
  if (s < 1024) return false;
  std::sort(sample.begin(), sample.end());

  // Brackets [lo, hi] of sample values about the ranks of the estimated count, overlapping
  // ones merged; room for twice the share of the data expected inside.
  const double estimate = static_cast<double>(n) * s / draws;
  const std::vector<std::size_t> guess = ranksFor(static_cast<std::size_t>(estimate));
  struct Bracket {
    double lo, hi;
    std::size_t room, start;
  };
  std::vector<Bracket> b;
  const double reach = 3.0 * std::sqrt(static_cast<double>(s));
  for (std::size_t r : guess) {
    const double centre = (static_cast<double>(r) + 0.5) / estimate * s;
    const double lo = sample[static_cast<std::size_t>(std::max(0.0, centre - reach))];
    const double hi = sample[static_cast<std::size_t>(std::min(s - 1.0, centre + reach))];
    if (!b.empty() && lo <= b.back().hi) {
      b.back().hi = std::max(b.back().hi, hi);
    } else {
      if (b.size() == kMaxBrackets) return false;
      b.push_back({lo, hi, 0, 0});
    }
  }
  const std::size_t nb = b.size();
  std::size_t room = 0;
  for (Bracket& k : b) {
    const double share = static_cast<double>(std::upper_bound(sample.begin(), sample.end(), k.hi) -
                                             std::lower_bound(sample.begin(), sample.end(), k.lo)) / s;
    k.room = k.lo == k.hi ? 0 : static_cast<std::size_t>(std::min(2 * share * n + 1024, double(n)));
    k.start = room;
    room += k.room;
  }
  const std::unique_ptr<double[]> inside = platform::raw_buffer<double>(room);

  // The pass. t counts the bounds at or below a value (lo inclusive, hi exclusive): odd inside
  // bracket t / 2, even in the gap below bracket t / 2. A degenerate bracket (lo = hi) stores
  // nothing, every value inside being lo. The bounds sit in local arrays, which the stores
  // can't alias, and four histograms take turns so that no count waits for the last.
  double lo[kMaxBrackets], hi[kMaxBrackets];
  std::size_t fill[kMaxBrackets] = {}, counts[4][2 * kMaxBrackets + 1] = {};
  for (std::size_t j = 0; j < nb; ++j) {
    lo[j] = b[j].lo;
    hi[j] = b[j].hi;
  }
  for (std::size_t i = 0; i < n; ++i) {
    const double v = x[i];
    if (!(v == v) || v == NANUM || (w && w[i] == NANUM)) continue;
    std::size_t t = 0;
    for (std::size_t j = 0; j < nb; ++j) t += (v >= lo[j]) + (v > hi[j]);
    ++counts[i & 3][t];
    if (t & 1) {
      const std::size_t j = t >> 1;
      if (fill[j] < b[j].room) inside[b[j].start + fill[j]++] = v;
      else if (b[j].room) return false;
    }
  }
  count = 0;
  for (std::size_t t = 0; t <= 2 * nb; ++t) {
    counts[0][t] += counts[1][t] + counts[2][t] + counts[3][t];
    count += counts[0][t];
  }

  // Each exact rank in its bracket, then selection within the bracket's copy.
  if (count < 5) return false;
  const std::vector<std::size_t> ranks = ranksFor(count);
  out.SetSize(static_cast<int>(count));
  std::vector<std::size_t> local;
  std::size_t below = 0, next = 0;
  for (std::size_t j = 0; j < nb; ++j) {
    below += counts[0][2 * j];
    const std::size_t held = counts[0][2 * j + 1];
    if (next < ranks.size() && ranks[next] < below) return false;  // in a gap
    local.clear();
    for (; next < ranks.size() && ranks[next] < below + held; ++next) local.push_back(ranks[next] - below);
    double* v = inside.get() + b[j].start;
    if (b[j].room && !local.empty()) select_ranks(v, 0, held, local.data(), local.size());
    for (std::size_t r : local) out[static_cast<int>(r + below)] = b[j].room ? v[r] : b[j].lo;
    below += held;
  }
  return next == ranks.size();
}

// Whether selecting `ranks` of n values beats sorting them all (a radix sort from 2048
// values). Selection from a sample costs about one pass over the data with two comparisons a
// bracket; the sort a few passes whose cost per value grows as the values leave the caches.
// Measured (definition 4, 3 percents are 6 ranks): at 10^5 values 2 ranks take half the time
// of the sort, 6 as long; at 10^6, 6 ranks 0.48 times, 14 ranks 0.87 times, 22 as long; at
// 10^7, 6 ranks 0.15 times, 22 ranks 0.48 times, 28 ranks 0.57 times.
bool selection_pays(std::size_t n, std::size_t ranks) {
  if (n < (std::size_t{1} << 18)) return ranks <= 4;
  return ranks <= (n < (std::size_t{1} << 22) ? 16 : kMaxBrackets);
}

}  // namespace

SortedSample::SortedSample(const double* x, std::size_t n, const double* w, const double* percents,
                           std::size_t nPercents, int rule, bool hinges) {
  auto valid = [](double v) { return v == v && v != NANUM; };
  std::size_t count = 0, weightMissing = 0;
  if (w) {
    // The weights of the valid points: their extremes, and whether a point drops out for its
    // weight alone.
    double lo = 1.0, hi = 1.0;
    for (std::size_t i = 0; i < n; ++i) {
      if (!valid(x[i])) continue;
      if (w[i] == NANUM) {
        ++weightMissing;
        continue;
      }
      const double wi = w[i] < 0 ? 0.0 : w[i];
      lo = count ? std::min(lo, wi) : wi;
      hi = count ? std::max(hi, wi) : wi;
      ++count;
    }
    minWeight_ = lo;
    maxWeight_ = hi;
    weighted_ = lo != hi;
  }
  if (weighted_) {
    sort_pairs(x, n, w, count);
    return;
  }
  // Few ranks to read (counted as if every point were valid) are found by selection.
  const bool few = (nPercents > 0 || hinges) && nPercents <= kMaxBrackets && n >= 5 &&
                   selection_pays(n, ranks_wanted(n, percents, nPercents, rule, hinges).size());
  if (!few && weightMissing == 0) {
    kernels::sorted_values(x, n, values_);
    size_ = static_cast<std::size_t>(values_.size());
    return;
  }
  if (few && n >= kSampleFrom) {
    // Many values: from a sample, writing only the ranks that will be read.
    auto ranksFor = [&](std::size_t c) { return ranks_wanted(c, percents, nPercents, rule, hinges); };
    if (select_by_sampling(x, w, n, ranksFor, values_, size_)) return;
  }
  // The valid values in a copy with room for every point, kept without a branch; then the
  // ranks that will be read selected, or all sorted (a rare road: equal weights and a point
  // missing for its weight alone).
  values_.SetSize(static_cast<int>(n));
  double* v = values_.Data();
  std::size_t k = 0;
  for (std::size_t i = 0; i < n; ++i) {
    v[k] = x[i];
    k += valid(x[i]) && !(w && w[i] == NANUM);
  }
  size_ = k;
  if (!few || k < 5) {
    std::sort(v, v + k);
    return;
  }
  const std::vector<std::size_t> ranks = ranks_wanted(k, percents, nPercents, rule, hinges);
  select_ranks(v, 0, k, ranks.data(), ranks.size());
}

void SortedSample::sort_pairs(const double* x, std::size_t n, const double* w, std::size_t count) {
  auto valid = [](double v) { return v == v && v != NANUM; };
  // Pairs sorted by value; the order among equal values moves no percentile, since a search
  // that stops inside a run of equal values answers that value.
  struct Pair {
    double x, w;
  };
  const std::unique_ptr<Pair[]> pairs = platform::raw_buffer<Pair>(count);
  std::size_t k = 0;
  for (std::size_t i = 0; i < n; ++i)
    if (valid(x[i]) && w[i] != NANUM) pairs[k++] = {x[i], w[i] < 0 ? 0.0 : w[i]};
  std::sort(pairs.get(), pairs.get() + count, [](const Pair& a, const Pair& b) { return a.x < b.x; });
  values_.SetSize(static_cast<int>(count));
  size_ = count;
  cumulative_ = platform::raw_buffer<long double>(count);
  long double sum = 0;
  for (std::size_t i = 0; i < count; ++i) {
    values_[static_cast<int>(i)] = pairs[i].x;
    cumulative_[i] = sum += pairs[i].w;
  }
}

double SortedSample::percentile(double percent, int rule) const {
  if (weighted_) return weighted_percentile_of_sorted(values_.Data(), cumulative_.get(), size(), percent);
  return percentile_of_sorted(values_.Data(), size(), percent, rule);
}

}  // namespace zomath::stats

using namespace zomath;
using namespace zomath::stats;

extern "C" {

int zomath_percentiles(const double* pData, int nSize, const double* pPercents, int nPercents,
                       double* pPercentiles, int nInterpolate, const double* pWeights) {
  // The outputs are NANUM on every failure; on success each percent is read before its slot
  // is written, so the percents may be overwritten in place.
  auto fail = [&](int code) {
    if (pPercentiles && nPercents > 0) std::fill(pPercentiles, pPercentiles + nPercents, NANUM);
    return code;
  };
  if (nSize <= 0 || nPercents <= 0) return fail(ZOMATH_ERR_NULL_DATA);
  if (!pData || !pPercents || !pPercentiles) return fail(ZOMATH_ERR_EMPTY_DATA);
  if (static_cast<unsigned int>(nInterpolate) > INTERPOLATE_NONE) return fail(ZOMATH_ERR_OPTION);
  if (pWeights)
    if (const int code = check_weights(pWeights, nSize)) return fail(code);
  try {
    const SortedSample sample(pData, static_cast<std::size_t>(nSize), pWeights, pPercents,
                              static_cast<std::size_t>(nPercents), nInterpolate);
    for (int i = 0; i < nPercents; ++i) pPercentiles[i] = sample.percentile(pPercents[i], nInterpolate);
  } catch (...) {
    return fail(ZOMATH_ERR_NO_MEMORY);
  }
  return ZOMATH_OK;
}

int zomath_percentiles_distribution(int nSize, const double* pX, const double* pY,
                                    const double* pPercents, int nPercents,
                                    double* pPercentiles, int* pIndices) {
  auto fail = [&](int code) {
    for (int i = 0; i < nPercents; ++i) {
      if (pPercentiles) pPercentiles[i] = NANUM;
      if (pIndices) pIndices[i] = -1;
    }
    return code;
  };
  if (!pX || !pY || !pPercents) return fail(ZOMATH_ERR_EMPTY_DATA);
  if (nSize < 3) return fail(ZOMATH_ERR_DENSITY_PARAM);
  if (nPercents <= 0) return fail(ZOMATH_ERR_NULL_DATA);
  for (int i = 0; i < nSize; ++i) {
    const bool finite = std::isfinite(pX[i]) && std::isfinite(pY[i]) && pX[i] != NANUM;
    if (!finite || !(pY[i] >= 0) || (i > 0 && !(pX[i] > pX[i - 1])))
      return fail(ZOMATH_ERR_DISTRIBUTION_TABLE);
  }
  NRVec<double> area;
  try {
    area.SetSize(nSize);
  } catch (...) {
    return fail(ZOMATH_ERR_NO_MEMORY);
  }
  double total;
  if (const int code = zomath_integrate(nSize, pX, pY, &total, area.Data())) return fail(code);
  const int last = nSize - 1;
  using platform::compare_doubles;
  for (int i = 0; i < nPercents; ++i) {
    const double f = pPercents[i];
    double x = NANUM;
    int index = 0;
    if (!(f > 0 && f < 1)) {
      // At or beyond the ends: the ends themselves to the library's tolerance, else nothing.
      if (compare_doubles(f, 0.0, '=')) {
        x = pX[0];
      } else if (compare_doubles(f, 1.0, '=')) {
        x = pX[last];
        index = last;
      }
    } else {
      // Bisection for the interval [A(lo), A(hi)) that holds T, then the line through it.
      const double t = f * area[last];
      int lo = 0, hi = last;
      while (hi - lo > 1) {
        const int mid = (lo + hi) / 2;
        (t < area[mid] ? hi : lo) = mid;
      }
      const double a0 = area[lo], a1 = area[hi];
      x = compare_doubles(t, a0, '=') || a1 == a0
              ? pX[lo]
              : pX[lo] + (pX[hi] - pX[lo]) * ((t - a0) / (a1 - a0));
      index = lo;
    }
    if (pPercentiles) pPercentiles[i] = x;
    if (pIndices) pIndices[i] = index;
  }
  return ZOMATH_OK;
}

}  // extern "C"
