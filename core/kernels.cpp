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

}  // namespace zomath::kernels
