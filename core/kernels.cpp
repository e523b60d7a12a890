// The non-template kernels.
#include "core/kernels.h"

#include <algorithm>

namespace zomath::kernels {

double median_by_selection(double* work, std::size_t n) {
  const std::size_t h = n / 2;
  std::nth_element(work, work + h, work + n);
  if (n % 2) return work[h];
  // The other middle value is the largest of the lower half that selection left in front.
  const double below = *std::max_element(work, work + h);
  const double sum = below + work[h];
  return std::isfinite(sum) ? 0.5 * sum : 0.5 * below + 0.5 * work[h];
}

}  // namespace zomath::kernels
