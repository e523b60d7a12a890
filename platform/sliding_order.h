// The values of a sliding window kept in ascending order, so that any order statistic of the
// window is read in place after each step. A step takes one value out and one in with a single
// move of the values between their two places: O(log w) comparisons and at most w moves, where
// sorting every window anew costs O(w log w).
#pragma once

#include <cstddef>
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

}  // namespace zomath::platform
