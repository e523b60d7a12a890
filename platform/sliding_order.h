// The values of a sliding window kept in ascending order, so that any order statistic of the
// window is read in place after each step. A step takes one value out and one in with a single
// move of the values between their two places: O(log w) comparisons and at most w moves, where
// sorting every window anew costs O(w log w). For wide windows, RankedWindow holds the window as
// counts over the ranks of the whole sequence instead, at O(log N) a step whatever the width.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zomath::platform {

class SortedWindow {
public:
  // Room for `capacity` values; throws ZOMATH_ERROR_NO_MEMORY when it can't be had.
  explicit SortedWindow(std::size_t capacity);

  // The values in ascending order; size() of them.
  const double* data() const { return values_.data(); }
  std::size_t size() const { return size_; }
  void clear() { size_ = 0; }

  // Adds v (not NaN; -0 and +0 are one value here) while there is room.
  void insert(double v);
  // Removes one value equal to v; nothing happens when there is none.
  void erase(double v);
  // erase(out) then insert(in), moving the values between the two places once.
  void replace(double out, double in);

private:
  std::size_t lower_bound(double v) const;  // first place whose value is not below v

  std::vector<double> values_;
  std::size_t size_ = 0;
};

// The values of a window sliding over a fixed sequence x[0..n), as counts over the ranks of all
// of x's values (a Fenwick tree): one sort of x, then a step and an order statistic each cost
// O(log n), where SortedWindow's moves grow with the width. NaN and NANUM are not ranked; their
// positions are passed over. n must stay below 2^32.
class RankedWindow {
public:
  // Throws ZOMATH_ERROR_NO_MEMORY when the room can't be had.
  RankedWindow(const double* x, std::size_t n);

  void insert(std::size_t i);  // x[i] joins the window
  void erase(std::size_t i);   // x[i] leaves it (it must be in it)
  std::size_t size() const { return size_; }
  double at(std::size_t r) const;  // the value of 0-based rank r < size() in the window

private:
  static constexpr std::uint32_t kNone = UINT32_MAX;
  void add(std::uint32_t rank, std::uint32_t delta);

  std::vector<std::uint32_t> rank_;  // of each position of x, kNone where not ranked
  std::vector<double> sorted_;       // the ranked values in ascending order
  std::vector<std::uint32_t> tree_;  // 1-based Fenwick counts over the ranks
  std::size_t top_ = 0;              // the largest power of two not above sorted_.size()
  std::size_t size_ = 0;
};

}  // namespace zomath::platform
