#include "platform/sliding_order.h"

#include <cstring>

#include "platform/workspace.h"

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

}  // namespace zomath::platform
