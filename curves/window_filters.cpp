#include "curves/window_filters.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "platform/workspace.h"
#include "zomath/regression.h"

namespace zomath::curves {
namespace {

// Mean of the first two values of c[0..m) that are not NANUM; the one there is, or NANUM.
double flat_level(const double* c, std::size_t m) {
  double first = NANUM;
  for (std::size_t i = 0; i < m; ++i) {
    if (c[i] == NANUM) continue;
    if (first == NANUM) first = c[i];
    else return first / 2 + c[i] / 2;
  }
  return first;
}

// pad[j] = the line fitted to c[0..m) at x = x0 + step * j, for j < count.
void extend_line(const double* c, std::size_t m, double x0, double step, double* pad,
                 std::size_t count) {
  if (count == 0) return;
  double lo = INFINITY, hi = -INFINITY, big = 0;
  std::size_t valid = 0;
  for (std::size_t i = 0; i < m; ++i) {
    if (c[i] == NANUM) continue;
    ++valid;
    lo = std::min(lo, c[i]);
    hi = std::max(hi, c[i]);
    big = std::max(big, std::fabs(c[i]));
  }
  double a = NANUM, b = 0;
  // A span within 1e-11 of the magnitude: the values are one level to 11 digits, and a line
  // through them would only carry their last digits outward. (!(x > y) also catches NaN.)
  if (valid >= 2 && hi - lo > 1e-11 * big) {
    std::vector<double> x = platform::buffer<double>(m);
    for (std::size_t i = 0; i < m; ++i) x[i] = static_cast<double>(i);
    FitParameter fit[2];
    if (zomath_linear_fit(x.data(), c, static_cast<int>(m), fit, nullptr, 0, nullptr, nullptr,
                          nullptr, nullptr, nullptr, nullptr, 0, 0) == 0 &&
        fit[0].value != NANUM && fit[1].value != NANUM) {
      a = fit[0].value;
      b = fit[1].value;
    }
  }
  if (a == NANUM) {
    std::fill(pad, pad + count, flat_level(c, m));
    return;
  }
  for (std::size_t j = 0; j < count; ++j) pad[j] = a + b * (x0 + step * static_cast<double>(j));
}

}  // namespace

void build_pads(const double* src, std::size_t n, int mode, std::size_t nLeft,
                std::size_t nRight, std::size_t nLine, double* left, double* right) {
  switch (mode) {
    case kBoundaryReflect:
      for (std::size_t j = 0; j < nLeft; ++j) left[j] = src[j];
      for (std::size_t j = 0; j < nRight; ++j) right[j] = src[n - 1 - j];
      break;
    case kBoundaryRepeat:
      std::fill(left, left + nLeft, src[0]);
      std::fill(right, right + nRight, src[n - 1]);
      break;
    case kBoundaryPeriodic:
      for (std::size_t j = 0; j < nLeft; ++j) left[j] = src[n - 1 - j];
      for (std::size_t j = 0; j < nRight; ++j) right[j] = src[j];
      break;
    case kBoundaryLinear: {
      const std::size_t m = std::min(nLine, n);
      // The left chunk has x = 0 .. m - 1, so position -1 - j is x = -1 - j; the right chunk
      // ends at x = m - 1 on the last point, so position n + j is x = m + j.
      extend_line(src, m, -1.0, -1.0, left, nLeft);
      extend_line(src + (n - m), m, static_cast<double>(m), 1.0, right, nRight);
      break;
    }
    default:  // kBoundaryZero
      std::fill(left, left + nLeft, 0.0);
      std::fill(right, right + nRight, 0.0);
      break;
  }
}

const double* unaliased_source(const double* src, const double* dst, std::size_t n,
                               std::vector<double>& copy) {
  const auto s = reinterpret_cast<std::uintptr_t>(src), d = reinterpret_cast<std::uintptr_t>(dst);
  const std::uintptr_t bytes = n * sizeof(double);
  if (d >= s + bytes || s >= d + bytes) return src;
  copy = platform::buffer<double>(n);
  std::memcpy(copy.data(), src, bytes);
  return copy.data();
}

}  // namespace zomath::curves
