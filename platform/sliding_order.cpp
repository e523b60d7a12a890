#include "platform/sliding_order.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/workspace.h"
#include "zomath/core.h"

namespace zomath::platform {

SortedWindow::SortedWindow(std::size_t capacity)
    : values_(buffer<double>(capacity ? capacity : 1)) {}

std::size_t SortedWindow::lower_bound(double v) const {
  // Halving without a branch on the comparison, which on data is a coin toss.
  const double* a = values_.data();
  std::size_t len = size_;
  if (len == 0) return 0;
  const double* base = a;
  while (len > 1) {
    const std::size_t half = len / 2;
    base += (base[half - 1] < v) ? half : 0;
    len -= half;
  }
  return static_cast<std::size_t>(base - a) + (*base < v);
}

void SortedWindow::insert(double v) {
  if (size_ == values_.size()) return;
  const std::size_t q = lower_bound(v);
  double* a = values_.data();
  std::memmove(a + q + 1, a + q, (size_ - q) * sizeof(double));
  a[q] = v;
  ++size_;
}

void SortedWindow::erase(double v) {
  const std::size_t p = lower_bound(v);
  if (p == size_ || values_[p] != v) return;
  double* a = values_.data();
  std::memmove(a + p, a + p + 1, (size_ - p - 1) * sizeof(double));
  --size_;
}

void SortedWindow::replace(double out, double in) {
  const std::size_t p = lower_bound(out);
  if (p == size_ || values_[p] != out) {
    insert(in);
    return;
  }
  double* a = values_.data();
  const std::size_t q = lower_bound(in);
  if (q > p + 1) {
    // in goes above: the values between move down one place into the gap left at p.
    std::memmove(a + p, a + p + 1, (q - p - 1) * sizeof(double));
    a[q - 1] = in;
  } else if (q <= p) {
    // in goes at or below p: the values from q up to the gap move up one place.
    std::memmove(a + q + 1, a + q, (p - q) * sizeof(double));
    a[q] = in;
  } else {
    a[p] = in;  // q == p + 1: in takes out's place
  }
}

RankedWindow::RankedWindow(const double* x, std::size_t n)
    : rank_(buffer<std::uint32_t>(n)) {
  std::vector<std::pair<double, std::uint32_t>> order = buffer<std::pair<double, std::uint32_t>>(n);
  std::size_t m = 0;
  for (std::size_t i = 0; i < n; ++i)
    if (x[i] == x[i] && x[i] != NANUM) order[m++] = {x[i] + 0.0, static_cast<std::uint32_t>(i)};
  // Ties may take their ranks in any order: an order statistic reads a value, not a position.
  std::sort(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(m),
            [](const auto& a, const auto& b) { return a.first < b.first; });
  std::fill(rank_.begin(), rank_.end(), kNone);
  sorted_ = buffer<double>(m);
  for (std::size_t r = 0; r < m; ++r) {
    sorted_[r] = order[r].first;
    rank_[order[r].second] = static_cast<std::uint32_t>(r);
  }
  tree_ = buffer<std::uint32_t>(m + 1);
  top_ = 1;
  while (top_ * 2 <= m) top_ *= 2;
}

void RankedWindow::add(std::uint32_t rank, std::uint32_t delta) {
  const std::size_t m = sorted_.size();
  for (std::size_t p = std::size_t{rank} + 1; p <= m; p += p & (~p + 1)) tree_[p] += delta;
}

void RankedWindow::insert(std::size_t i) {
  if (rank_[i] == kNone) return;
  add(rank_[i], 1u);
  ++size_;
}

void RankedWindow::erase(std::size_t i) {
  if (rank_[i] == kNone) return;
  add(rank_[i], UINT32_MAX);  // adds -1 modulo 2^32
  --size_;
}

double RankedWindow::at(std::size_t r) const {
  // The smallest rank whose prefix count exceeds r, by descent over the powers of two.
  const std::size_t m = sorted_.size();
  std::size_t p = 0, left = r + 1;
  for (std::size_t step = top_; step > 0; step /= 2)
    if (p + step <= m && tree_[p + step] < left) {
      p += step;
      left -= tree_[p];
    }
  return sorted_[p];
}

}  // namespace zomath::platform
