// The non-template kernels.
#include "core/kernels.h"

#include "core/large_buffer.h"

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

// Working storage, freed on every way out (large blocks on huge pages, see LargeBuffer);
// ZOMATH_ERROR when it can't be had.
template <class T>
class Block {
 public:
  explicit Block(std::size_t n) {
    if (!b_.allocate(n)) throw ZOMATH_ERROR_NO_MEMORY;
  }
  T* get() const { return b_.get(); }

 private:
  LargeBuffer<T> b_;
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

namespace {

// The inverse of kGroupMix modulo 2^64, by Newton's iteration (each step doubles the bits).
constexpr std::uint64_t inverse(std::uint64_t a) {
  std::uint64_t x = a;
  for (int i = 0; i < 6; ++i) x *= 2 - a * x;
  return x;
}
static_assert(inverse(kGroupMix) * kGroupMix == 1, "the key mix is a bijection");

// Counts of keys in open addressing with linear probing. The slots that hold a key are listed,
// so that emptying the table costs what filling it did.
class KeyCounter {
 public:
  // Empties the table, with room for `distinct` keys at half load (up to 2^15 of them; more
  // grow it).
  void reset(std::size_t distinct) {
    for (std::size_t i = 0; i < used_; ++i) count_.get()[slots_.get()[i]] = 0;
    used_ = 0;
    int log = 4;
    while (log < 16 && (std::size_t{1} << log) < 2 * distinct) ++log;
    if (log > log_) resize(log);
  }
  // Counts key; false when the table is half full (then nothing was counted: grow() and count
  // the keys again).
  bool add(std::uint64_t key) {
    const std::size_t mask = (std::size_t{1} << log_) - 1;
    std::size_t slot = (key * 0xC2B2AE3D27D4EB4Full) >> (64 - log_);
    std::uint32_t* count = count_.get();
    std::uint64_t* keys = keys_.get();
    while (count[slot] != 0 && keys[slot] != key) slot = (slot + 1) & mask;
    if (count[slot] == 0) {
      if (2 * (used_ + 1) > mask + 1) return false;
      keys[slot] = key;
      slots_.get()[used_++] = static_cast<std::uint32_t>(slot);
    }
    ++count[slot];
    return true;
  }
  void grow() { resize(log_ + 1); }
  std::size_t used() const { return used_; }
  std::uint64_t key(std::size_t i) const { return keys_.get()[slots_.get()[i]]; }
  std::size_t count(std::size_t i) const { return count_.get()[slots_.get()[i]]; }
  void set_count(std::size_t i, std::size_t c) { count_.get()[slots_.get()[i]] = static_cast<std::uint32_t>(c); }

 private:
  void resize(int log) {
    const std::size_t size = std::size_t{1} << log;
    keys_ = Block<std::uint64_t>(size);
    count_ = Block<std::uint32_t>(size);
    slots_ = Block<std::uint32_t>(size / 2);
    std::fill(count_.get(), count_.get() + size, 0u);
    log_ = log;
    used_ = 0;
  }
  Block<std::uint64_t> keys_{1};
  Block<std::uint32_t> count_{1}, slots_{1};
  std::size_t used_ = 0;
  int log_ = 0;
};

}  // namespace

double group_value(std::uint64_t key) {
  const std::uint64_t v = key * inverse(kGroupMix);
  const std::uint64_t u = v ^ (v >> 32);
  double x;
  std::memcpy(&x, &u, sizeof x);
  return x;
}

int group_log_buckets(std::size_t n) {
  int log = 0;
  while (log < 11 && (std::size_t{4096} << log) < n) ++log;
  return log;
}

namespace {

// Bits of the bitmap for a bucket of `size` keys: 16 a key, from 2^9 to 2^18.
int bitmap_bits(std::size_t size) {
  int bits = 9;
  while (bits < 18 && (std::size_t{1} << bits) < 16 * size) ++bits;
  return bits;
}

// The top count of most_frequent_grouped, with the first position of a bit held as Position.
template <class Position>
MostFrequent count_buckets(const std::uint64_t* keys, const std::size_t* at, int logBuckets,
                           std::size_t largest) {
  const std::size_t buckets = std::size_t{1} << logBuckets;
  const int mostBits = bitmap_bits(largest);
  const Block<std::uint64_t> seenBlock(std::size_t{1} << (mostBits - 6)), repeats(largest);
  const Block<Position> firstBlock(std::size_t{1} << mostBits);
  std::uint64_t* seen = seenBlock.get();
  Position* first = firstBlock.get();
  std::uint64_t* list = repeats.get();
  KeyCounter counter;
  MostFrequent best{HUGE_VAL, 1, 0};
  for (std::size_t b = 0; b < buckets; ++b) {
    const std::uint64_t* k = keys + at[b];
    const std::size_t size = at[b + 1] - at[b];
    if (size < 2) continue;
    const int bits = bitmap_bits(size);
    const int shift = 64 - logBuckets - bits;
    const std::uint64_t mask = (std::uint64_t{1} << bits) - 1;
    std::fill(seen, seen + (std::size_t{1} << (bits - 6)), std::uint64_t{0});
    std::size_t listed = 0;
    for (std::size_t i = 0; i < size; ++i) {
      __builtin_prefetch(k + i + 64);
      const std::uint64_t j = (k[i] >> shift) & mask;
      const std::uint64_t bit = std::uint64_t{1} << (j & 63);
      const std::uint64_t word = seen[j >> 6];
      if (word & bit) {
        list[listed++] = k[i];
        continue;
      }
      seen[j >> 6] = word | bit;
      first[j] = static_cast<Position>(i);
    }
    if (listed == 0) continue;
    counter.reset(listed);
    for (std::size_t i = 0; i < listed; ++i) {
      if (counter.add(list[i])) continue;
      counter.grow();
      i = static_cast<std::size_t>(-1);  // the list again
    }
    std::size_t most = 0;
    for (std::size_t i = 0; i < counter.used(); ++i) {
      const std::uint64_t key = counter.key(i);
      const std::size_t count = counter.count(i) + (k[first[(key >> shift) & mask]] == key);
      counter.set_count(i, count);
      most = std::max(most, count);
    }
    if (most < best.count) continue;
    if (most > best.count) best = MostFrequent{HUGE_VAL, most, 0};
    for (std::size_t i = 0; i < counter.used(); ++i) {
      if (counter.count(i) != most) continue;
      ++best.ties;
      best.value = std::min(best.value, group_value(counter.key(i)));
    }
  }
  return best;
}

}  // namespace

// Each bucket is read once while the cache holds it. A bitmap of 16 bits a key, indexed by the
// key bits below the bucket's, marks the bits taken, and a table beside it keeps the position
// of the key that took each. A key whose bit is taken joins a short list: every repeat of a
// value does, and the few distinct values that share a bit. Counted exactly, a value of the list
// occurs that often, plus once if it took its bit first. Data whose values are nearly all
// distinct list a few per cent of the keys; data with many repeats list them all, counted in a
// table as large as their distinct values.
MostFrequent most_frequent_grouped(const std::uint64_t* keys, const std::size_t* at,
                                   int logBuckets, double least) {
  const std::size_t buckets = std::size_t{1} << logBuckets;
  const std::size_t m = at[buckets];
  if (m == 0) return MostFrequent{};
  std::size_t largest = 0;
  for (std::size_t b = 0; b < buckets; ++b) largest = std::max(largest, at[b + 1] - at[b]);
  const MostFrequent best = largest <= 0xFFFF
                                ? count_buckets<std::uint16_t>(keys, at, logBuckets, largest)
                                : count_buckets<std::uint32_t>(keys, at, logBuckets, largest);
  if (best.count == 1) return MostFrequent{least, 1, m};
  return best;
}

// Two reads of the data: one counts the keys of each bucket, the other copies them there; then
// each bucket is counted in the cache.
MostFrequent most_frequent(const double* p, std::size_t n) {
  auto valid = [](double x) { return x == x && x != NANUM; };
  const int logBuckets = group_log_buckets(n);
  const std::size_t buckets = std::size_t{1} << logBuckets;
  const Block<std::size_t> bounds(buckets + 1);
  std::size_t* at = bounds.get();
  std::fill(at, at + buckets + 1, std::size_t{0});
  double least = HUGE_VAL;
  for (std::size_t i = 0; i < n; ++i)
    if (valid(p[i])) {
      ++at[group_bucket(group_key(p[i]), logBuckets) + 1];
      least = std::min(least, p[i] + 0.0);
    }
  for (std::size_t b = 0; b < buckets; ++b) at[b + 1] += at[b];
  const std::size_t m = at[buckets];
  if (m == 0) return MostFrequent{};
  const Block<std::uint64_t> keys(m);
  {
    const Block<std::size_t> next(buckets);
    std::copy(at, at + buckets, next.get());
    for (std::size_t i = 0; i < n; ++i)
      if (valid(p[i])) {
        const std::uint64_t key = group_key(p[i]);
        keys.get()[next.get()[group_bucket(key, logBuckets)]++] = key;
      }
  }
  return most_frequent_grouped(keys.get(), at, logBuckets, least);
}

}  // namespace zomath::kernels
