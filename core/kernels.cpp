// The non-template kernels.
#include "core/kernels.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace zomath::kernels {

namespace {

// The value of rank k (0-based) of w[0..m) when `pair` is false; else the mean of ranks k - 1
// and k (k >= 1). Reorders w.
double middle(double* w, std::size_t m, std::size_t k, bool pair) {
  std::nth_element(w, w + k, w + m);
  if (!pair) return w[k];
  // The rank below is the largest of the part that selection left in front.
  const double below = *std::max_element(w, w + k);
  const double sum = below + w[k];
  return std::isfinite(sum) ? 0.5 * sum : 0.5 * below + 0.5 * w[k];
}

// Below this size the median is taken from a full copy; above it by sampling first.
constexpr std::size_t kSampleFrom = std::size_t{1} << 15;

}  // namespace

double median_by_selection(double* work, std::size_t n) {
  return middle(work, n, n / 2, n % 2 == 0);
}

// Large arrays: a sample of about n^(2/3) / 2 elements gives two values lo <= hi that bracket
// the middle ranks with overwhelming odds (six standard deviations of a sample rank either
// side). One pass over the data then counts what lies below lo and above hi and copies only
// what lies between, a few per cent of it, where selection finishes. The caller's array is read
// once and never copied whole. If the bracket misses (adversarial order, heavy ties) the full
// copy and selection run instead, so the result is always that of a full sort.
bool median(const double* p, std::size_t n, double& out) {
  const std::size_t h = n / 2;
  const bool pair = n % 2 == 0;
  if (n >= kSampleFrom) {
    const std::size_t s = static_cast<std::size_t>(0.5 * std::cbrt(static_cast<double>(n) * n));
    NRVec<double> sample(static_cast<int>(s));
    std::uint64_t state = 0x9E3779B97F4A7C15ull;  // fixed seed: the same answer path every call
    for (std::size_t k = 0; k < s; ++k) {
      state ^= state << 13;
      state ^= state >> 7;
      state ^= state << 17;
      const double x = p[static_cast<std::size_t>((static_cast<unsigned __int128>(state) * n) >> 64)];
      if (x != x) return false;
      sample[static_cast<int>(k)] = x;
    }
    const double centre = static_cast<double>(h) / n * s, reach = 3.0 * std::sqrt(static_cast<double>(s));
    const auto kLo = static_cast<std::size_t>(std::max(0.0, centre - reach));
    const auto kHi = static_cast<std::size_t>(std::min(s - 1.0, centre + reach));
    double* w = sample.Data();
    std::nth_element(w, w + kLo, w + s);
    const double lo = w[kLo];
    std::nth_element(w + kLo, w + kHi, w + s);
    const double hi = w[kHi];
    // Room for twice the expected share between the two. The pass runs in blocks: while a
    // whole block fits, each element is written to the next free slot and the slot is kept
    // only when the element lies between (no branch to mispredict); after that it only counts.
    constexpr std::size_t kBlock = 1024;
    const std::size_t room = std::min(2 * (kHi - kLo + 1) * (n / s + 1), n) + kBlock;
    NRVec<double> between(static_cast<int>(room));
    double* b = between.Data();
    std::size_t below = 0, above = 0, mid = 0;
    bool stored = true;  // every element between lo and hi is in b
    for (std::size_t i = 0; i < n; i += kBlock) {
      const std::size_t end = std::min(n, i + kBlock);
      stored = stored && mid + kBlock <= room;
      if (stored) {
        for (std::size_t j = i; j < end; ++j) {
          const double x = p[j];
          below += x < lo;
          above += x > hi;
          b[mid] = x;
          mid += (x >= lo) & (x <= hi);
        }
      } else {
        for (std::size_t j = i; j < end; ++j) {
          const double x = p[j];
          below += x < lo;
          above += x > hi;
          mid += (x >= lo) & (x <= hi);
        }
      }
    }
    if (below + above + mid != n) return false;  // the rest are NaN
    const std::size_t first = pair ? h - 1 : h;  // lowest rank wanted
    if (below <= first && h < below + mid) {
      if (lo == hi) {
        out = lo;  // every value between is lo itself
        return true;
      }
      if (stored) {
        out = middle(b, mid, h - below, pair);
        return true;
      }
    }
  }
  NRVec<double> work(p, static_cast<int>(n));
  for (std::size_t i = 0; i < n; ++i)
    if (work[static_cast<int>(i)] != work[static_cast<int>(i)]) return false;
  out = median_by_selection(work.Data(), n);
  return true;
}

namespace {

// Working storage from malloc, freed on every way out; ZOMATH_ERROR when it can't be had.
template <class T>
struct Block {
  std::unique_ptr<T, decltype(&std::free)> p{nullptr, &std::free};
  explicit Block(std::size_t n) : p(static_cast<T*>(std::malloc(std::max<std::size_t>(n, 1) * sizeof(T))), &std::free) {
    if (!p) throw ZOMATH_ERROR_NO_MEMORY;
  }
  T* get() const { return p.get(); }
};

// The bits of a double as an unsigned key in the order of the values (for all but NaN): negative
// values have every bit flipped, others only the sign bit.
inline std::uint64_t order_key(double x) {
  std::uint64_t u;
  std::memcpy(&u, &x, sizeof u);
  return u ^ ((u >> 63) ? ~std::uint64_t{0} : (std::uint64_t{1} << 63));
}
inline double from_order_key(std::uint64_t u) {
  u ^= (u >> 63) ? (std::uint64_t{1} << 63) : ~std::uint64_t{0};
  double x;
  std::memcpy(&x, &u, sizeof x);
  return x;
}

// Least-significant-digit radix sort of m keys on six digits of 11 bits (the last two of 10).
// One read builds every digit's histogram; a digit that all keys share is passed over, which is
// common for the top digits (sign and exponent) of real data.
void radix_sort(std::uint64_t* keys, std::size_t m) {
  constexpr int kDigits = 6, kBits = 11, kBuckets = 1 << kBits;
  const Block<std::size_t> counts(std::size_t{kDigits} * kBuckets);
  std::size_t* h = counts.get();
  std::fill(h, h + kDigits * kBuckets, std::size_t{0});
  for (std::size_t i = 0; i < m; ++i)
    for (int d = 0; d < kDigits; ++d) ++h[d * kBuckets + ((keys[i] >> (d * kBits)) & (kBuckets - 1))];
  const Block<std::uint64_t> scratch(m);
  std::uint64_t* from = keys;
  std::uint64_t* to = scratch.get();
  for (int d = 0; d < kDigits; ++d) {
    std::size_t* c = h + d * kBuckets;
    const int shift = d * kBits;
    if (c[(from[0] >> shift) & (kBuckets - 1)] == m) continue;
    std::size_t total = 0;
    for (int b = 0; b < kBuckets; ++b) {
      const std::size_t k = c[b];
      c[b] = total;
      total += k;
    }
    for (std::size_t i = 0; i < m; ++i) to[c[(from[i] >> shift) & (kBuckets - 1)]++] = from[i];
    std::swap(from, to);
  }
  if (from != keys) std::memcpy(keys, from, m * sizeof *keys);
}

// Below this count a comparison sort is quicker than the radix sort's fixed cost.
constexpr std::size_t kRadixFrom = 2048;

}  // namespace

void sorted_values(const double* p, std::size_t n, NRVec<double>& out) {
  std::size_t m = 0;
  for (std::size_t i = 0; i < n; ++i) m += (p[i] == p[i] && p[i] != NANUM);
  if (m > static_cast<std::size_t>(std::numeric_limits<int>::max())) throw ZOMATH_ERROR_NO_MEMORY;
  out.SetSize(static_cast<int>(m));
  if (m == 0) return;
  double* o = out.Data();
  if (m < kRadixFrom) {
    std::size_t k = 0;
    for (std::size_t i = 0; i < n; ++i)
      if (p[i] == p[i] && p[i] != NANUM) o[k++] = p[i];
    std::sort(o, o + m);
    return;
  }
  const Block<std::uint64_t> keys(m);
  std::uint64_t* k = keys.get();
  std::size_t j = 0;
  for (std::size_t i = 0; i < n; ++i)
    if (p[i] == p[i] && p[i] != NANUM) k[j++] = order_key(p[i]);
  radix_sort(k, m);
  for (std::size_t i = 0; i < m; ++i) o[i] = from_order_key(k[i]);
}

// Values are grouped without an order: a pass counts them into 2^b buckets by a hash of their
// bits, a second copies their bits there, and each bucket, a few thousand values that stay in
// the cache, is counted in an open-addressing table (linear probing, grown when half full).
// Only the buckets that hold the largest count are counted again to find its values. Three
// reads and one write of the data where a sort makes a dozen.
MostFrequent most_frequent(const double* p, std::size_t n) {
  auto valid = [](double x) { return x == x && x != NANUM; };
  auto bits = [](double x) {
    x += 0.0;  // -0 becomes +0
    std::uint64_t u;
    std::memcpy(&u, &x, sizeof u);
    return u;
  };
  int logBuckets = 0;
  while (logBuckets < 12 && (std::size_t{4096} << logBuckets) < n) ++logBuckets;
  const std::size_t buckets = std::size_t{1} << logBuckets;
  auto bucket = [logBuckets](std::uint64_t u) -> std::size_t {
    return logBuckets ? (u * 0x9E3779B97F4A7C15ull) >> (64 - logBuckets) : 0;
  };
  const Block<std::size_t> start(buckets + 1);
  std::size_t* at = start.get();
  std::fill(at, at + buckets + 1, std::size_t{0});
  std::size_t m = 0;
  double least = HUGE_VAL;
  for (std::size_t i = 0; i < n; ++i)
    if (valid(p[i])) {
      ++at[bucket(bits(p[i])) + 1];
      ++m;
      least = std::min(least, p[i] + 0.0);
    }
  if (m == 0) return MostFrequent{};
  for (std::size_t b = 0; b < buckets; ++b) at[b + 1] += at[b];
  const Block<std::uint64_t> keys(m);
  {
    const Block<std::size_t> next(buckets);
    std::copy(at, at + buckets, next.get());
    for (std::size_t i = 0; i < n; ++i)
      if (valid(p[i])) {
        const std::uint64_t u = bits(p[i]);
        keys.get()[next.get()[bucket(u)]++] = u;
      }
  }

  // The counting table, reused from bucket to bucket: as large as the average bucket to start
  // with, doubled by the first bucket that fills half of it.
  int logSlots = 4;
  while ((std::size_t{1} << logSlots) < m / buckets) ++logSlots;
  std::unique_ptr<Block<std::uint64_t>> held(new Block<std::uint64_t>(std::size_t{1} << logSlots));
  std::unique_ptr<Block<std::uint32_t>> counts(new Block<std::uint32_t>(std::size_t{1} << logSlots));
  // Counts bucket b into the table; returns its largest count.
  auto count = [&](std::size_t b) {
    for (;;) {
      const std::size_t size = std::size_t{1} << logSlots;
      std::uint32_t* c = counts->get();
      std::uint64_t* h = held->get();
      std::fill(c, c + size, 0u);
      std::size_t distinct = 0;
      std::uint32_t most = 0;
      bool full = false;
      for (std::size_t k = at[b]; k < at[b + 1] && !full; ++k) {
        const std::uint64_t u = keys.get()[k];
        std::size_t slot = (u * 0xC2B2AE3D27D4EB4Full) >> (64 - logSlots);
        while (c[slot] != 0 && h[slot] != u) slot = (slot + 1) & (size - 1);
        if (c[slot] == 0) {
          h[slot] = u;
          full = 2 * ++distinct > size;
        }
        most = std::max(most, ++c[slot]);
      }
      if (!full) return most;
      // Half full: twice the slots, and this bucket again.
      ++logSlots;
      held.reset(new Block<std::uint64_t>(std::size_t{1} << logSlots));
      counts.reset(new Block<std::uint32_t>(std::size_t{1} << logSlots));
    }
  };
  const Block<std::uint32_t> most(buckets);
  std::uint32_t top = 0;
  for (std::size_t b = 0; b < buckets; ++b) top = std::max(top, most.get()[b] = count(b));
  MostFrequent best{least, top, m};
  if (top == 1) return best;  // every value distinct
  best.ties = 0;
  best.value = HUGE_VAL;
  for (std::size_t b = 0; b < buckets; ++b) {
    if (most.get()[b] != top) continue;
    count(b);
    const std::size_t size = std::size_t{1} << logSlots;
    for (std::size_t slot = 0; slot < size; ++slot) {
      if (counts->get()[slot] != top) continue;
      double v;
      std::memcpy(&v, &held->get()[slot], sizeof v);
      ++best.ties;
      best.value = std::min(best.value, v);
    }
  }
  return best;
}

}  // namespace zomath::kernels
