#include "platform/utility.h"

#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "platform/error_record.h"
#include "zomath/core.h"

namespace zomath::platform {

int NagError::fail(int nCode, const char* text, int nDetail) {
  code = nCode;
  errnum = nDetail;
  if (text) {
    std::strncpy(message, text, sizeof(message) - 1);
    message[sizeof(message) - 1] = '\0';
  }
  return nCode;
}

int nice_bin_index(double x, double start, double inc) {
  if (inc == 0.0 || x == NANUM || !std::isfinite(x) || !std::isfinite(start) || !std::isfinite(inc))
    return -1;
  if (inc < 0) return nice_bin_index(-x, -start, -inc);
  const double q = std::floor((x - start) / inc);
  if (!(q > static_cast<double>(INT_MIN) + 1)) return INT_MIN;
  if (!(q < static_cast<double>(INT_MAX) - 1)) return INT_MAX;
  int k = static_cast<int>(q);
  // Settle on the computed edges: k * inc + start <= x < (k + 1) * inc + start.
  if ((k + 1) * inc + start <= x) {
    ++k;
  } else if (k * inc + start > x) {
    --k;
  }
  return k;
}

bool compare_doubles(double a, double b, char op, double tol) {
  const bool near = a == b || std::fabs(a - b) <= tol * std::fmax(std::fabs(a), std::fabs(b));
  if (op == '=') return near;
  if (op == '!') return !near;
  return false;
}

void release_block(void** pp) {
  if (!pp) return;
  std::free(*pp);
  *pp = nullptr;
}

}  // namespace zomath::platform
