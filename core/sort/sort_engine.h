// Sort engines: an introsort and a stable merge sort over arrays of values.
//
// A value is an element type (double, int, ...) or a Blob<N> of N raw bytes; a Less functor
// answers "a sorts strictly before b". Items of a size without a Blob are sorted through an
// index array and then moved into place.
//
// Safety. A comparison need not be a strict weak order (NaN, a careless host function). With
// `Guarded` false the partition scans rely on sentinels left by the median-of-three, which is
// sound for any deterministic comparison (the library's own, even with NaN); host comparisons
// run Guarded, with every scan bounded by the range. Either way the sorts stay inside the range
// and terminate; only the order is unspecified for an inconsistent comparison.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace zomath::sortimpl {

// N raw bytes of a caller's item; may_alias, since it stands for whatever the caller stored.
template <std::size_t N>
struct __attribute__((may_alias)) Blob {
  unsigned char bytes[N];
};

template <class V, class Less, bool Guarded>
class Engine {
public:
  static constexpr std::size_t kInsertion = 16;

  Engine(V* a, Less less) : a_(a), less_(less) {}

  // Stable insertion sort of [lo, hi).
  void insertion(std::size_t lo, std::size_t hi) const {
    for (std::size_t i = lo + 1; i < hi; ++i) {
      if (!less_(a_[i], a_[i - 1])) continue;
      const V x = a_[i];
      std::size_t j = i;
      do {
        a_[j] = a_[j - 1];
        --j;
      } while (j > lo && less_(x, a_[j - 1]));
      a_[j] = x;
    }
  }

  void heap_sort(std::size_t lo, std::size_t hi) const {
    const std::size_t n = hi - lo;
    for (std::size_t i = n / 2; i-- > 0;) sift_down(lo, i, n);
    for (std::size_t end = n; end-- > 1;) {
      std::swap(a_[lo], a_[lo + end]);
      sift_down(lo, 0, end);
    }
  }

  // Introsort of [lo, hi): median-of-three Hoare partitions, heap sort past 2 log2 n levels,
  // insertion sort for short ranges; recursion on the smaller side only.
  void quick(std::size_t lo, std::size_t hi) const {
    int depth = 0;
    for (std::size_t n = hi - lo; n > 1; n >>= 1) depth += 2;
    quick_rec(lo, hi, depth);
  }

  // Stable merge sort of [lo, hi) with a buffer of at least (hi - lo + 1) / 2 values.
  void merge_sort(std::size_t lo, std::size_t hi, V* buf) const {
    if (hi - lo <= kInsertion) {
      insertion(lo, hi);
      return;
    }
    const std::size_t mid = lo + (hi - lo) / 2;
    merge_sort(lo, mid, buf);
    merge_sort(mid, hi, buf);
    if (!less_(a_[mid], a_[mid - 1])) return;  // already in order
    // Move the left run aside and merge back; the write position never passes the right read.
    std::memcpy(static_cast<void*>(buf), static_cast<const void*>(a_ + lo), (mid - lo) * sizeof(V));
    const V* l = buf;
    const V* const lend = buf + (mid - lo);
    std::size_t r = mid, out = lo;
    while (l != lend && r != hi) a_[out++] = less_(a_[r], *l) ? a_[r++] : *l++;
    while (l != lend) a_[out++] = *l++;
  }

  // Stable merge sort without a buffer: merges by rotation, O(n log^2 n). For when the buffer
  // can't be had.
  void merge_sort_in_place(std::size_t lo, std::size_t hi) const {
    if (hi - lo <= kInsertion) {
      insertion(lo, hi);
      return;
    }
    const std::size_t mid = lo + (hi - lo) / 2;
    merge_sort_in_place(lo, mid);
    merge_sort_in_place(mid, hi);
    merge_without_buffer(lo, mid, hi);
  }

private:
  void sift_down(std::size_t lo, std::size_t root, std::size_t n) const {
    const V x = a_[lo + root];
    for (;;) {
      std::size_t child = 2 * root + 1;
      if (child >= n) break;
      if (child + 1 < n && less_(a_[lo + child], a_[lo + child + 1])) ++child;
      if (!less_(x, a_[lo + child])) break;
      a_[lo + root] = a_[lo + child];
      root = child;
    }
    a_[lo + root] = x;
  }

  void quick_rec(std::size_t lo, std::size_t hi, int depth) const {
    while (hi - lo > kInsertion) {
      if (depth-- == 0) {
        heap_sort(lo, hi);
        return;
      }
      const std::size_t split = partition(lo, hi);
      if (split - lo < hi - split) {
        quick_rec(lo, split, depth);
        lo = split;
      } else {
        quick_rec(split, hi, depth);
        hi = split;
      }
    }
    insertion(lo, hi);
  }

  // Hoare partition of [lo, hi) (at least 3 values) about the median of the first, middle and
  // last values. Returns s with lo < s < hi: for a consistent comparison nothing in [lo, s)
  // sorts after the pivot and nothing in [s, hi) before it.
  std::size_t partition(std::size_t lo, std::size_t hi) const {
    const std::size_t last = hi - 1, mid = lo + (hi - lo) / 2;
    // Afterwards !less(pivot, a[lo]) and !less(a[last], pivot): the scans' sentinels.
    if (less_(a_[mid], a_[lo])) std::swap(a_[mid], a_[lo]);
    if (less_(a_[last], a_[mid])) {
      std::swap(a_[last], a_[mid]);
      if (less_(a_[mid], a_[lo])) std::swap(a_[mid], a_[lo]);
    }
    const V pivot = a_[mid];
    std::size_t i = lo + 1, j = last - 1;
    for (;;) {
      if constexpr (Guarded) {
        while (i < last && less_(a_[i], pivot)) ++i;
        while (j > lo && less_(pivot, a_[j])) --j;
      } else {
        while (less_(a_[i], pivot)) ++i;
        while (less_(pivot, a_[j])) --j;
      }
      if (i >= j) break;
      std::swap(a_[i], a_[j]);
      ++i;
      --j;
    }
    std::size_t split = j + 1;
    if (split <= lo || split >= hi) split = mid;  // only an inconsistent comparison gets here
    return split;
  }

  void reverse(std::size_t lo, std::size_t hi) const {
    while (hi - lo > 1) std::swap(a_[lo++], a_[--hi]);
  }
  void rotate(std::size_t lo, std::size_t mid, std::size_t hi) const {
    reverse(lo, mid);
    reverse(mid, hi);
    reverse(lo, hi);
  }
  // First position in [lo, hi) whose value does not sort before key (upper: after key).
  std::size_t lower_bound(std::size_t lo, std::size_t hi, const V& key) const {
    while (lo < hi) {
      const std::size_t m = lo + (hi - lo) / 2;
      if (less_(a_[m], key)) lo = m + 1; else hi = m;
    }
    return lo;
  }
  std::size_t upper_bound(std::size_t lo, std::size_t hi, const V& key) const {
    while (lo < hi) {
      const std::size_t m = lo + (hi - lo) / 2;
      if (less_(key, a_[m])) hi = m; else lo = m + 1;
    }
    return lo;
  }
  void merge_without_buffer(std::size_t lo, std::size_t mid, std::size_t hi) const {
    if (lo == mid || mid == hi) return;
    if (hi - lo == 2) {
      if (less_(a_[mid], a_[lo])) std::swap(a_[lo], a_[mid]);
      return;
    }
    std::size_t cut1, cut2;
    if (mid - lo > hi - mid) {
      cut1 = lo + (mid - lo) / 2;
      cut2 = lower_bound(mid, hi, a_[cut1]);
    } else {
      cut2 = mid + (hi - mid) / 2;
      cut1 = upper_bound(lo, mid, a_[cut2]);
    }
    rotate(cut1, mid, cut2);
    const std::size_t newMid = cut1 + (cut2 - mid);
    merge_without_buffer(lo, cut1, newMid);
    merge_without_buffer(newMid, cut2, hi);
  }

  V* a_;
  Less less_;
};

template <bool Guarded, class V, class Less>
void quick_sort(V* a, std::size_t n, Less less) {
  if (n > 1) Engine<V, Less, Guarded>(a, less).quick(0, n);
}

template <bool Guarded, class V, class Less>
void merge_sort(V* a, std::size_t n, Less less) {
  if (n < 2) return;
  const Engine<V, Less, Guarded> engine(a, less);
  if (n <= engine.kInsertion) {
    engine.insertion(0, n);
    return;
  }
  V* buf = static_cast<V*>(std::malloc(((n + 1) / 2) * sizeof(V)));
  if (buf) {
    engine.merge_sort(0, n, buf);
    std::free(buf);
  } else {
    engine.merge_sort_in_place(0, n);
  }
}

// Items of w bytes with no Blob type: sort an index array by the items, then move the items
// along the permutation's cycles. Returns false when the index array can't be had.
template <bool Stable, class ItemLess>
bool sort_by_index(unsigned char* base, std::size_t n, std::size_t w, ItemLess itemLess) {
  if (n < 2) return true;
  auto* order = static_cast<std::uint32_t*>(std::malloc(n * sizeof(std::uint32_t)));
  auto* tmp = static_cast<unsigned char*>(std::malloc(w));
  if (!order || !tmp) {
    std::free(order);
    std::free(tmp);
    return false;
  }
  for (std::size_t k = 0; k < n; ++k) order[k] = static_cast<std::uint32_t>(k);
  auto less = [base, w, itemLess](std::uint32_t a, std::uint32_t b) {
    return itemLess(base + a * w, base + b * w);
  };
  if (Stable) merge_sort<true>(order, n, less); else quick_sort<true>(order, n, less);
  // Position k receives item order[k]; a placed position is marked by order[k] == k.
  for (std::size_t start = 0; start < n; ++start) {
    if (order[start] == start) continue;
    std::memcpy(tmp, base + start * w, w);
    std::size_t j = start;
    for (;;) {
      const std::size_t from = order[j];
      order[j] = static_cast<std::uint32_t>(j);
      if (from == start) {
        std::memcpy(base + j * w, tmp, w);
        break;
      }
      std::memcpy(base + j * w, base + from * w, w);
      j = from;
    }
  }
  std::free(order);
  std::free(tmp);
  return true;
}

}  // namespace zomath::sortimpl
