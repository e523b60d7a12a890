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

bool is_str_numeric_integer(const char* text) {
  if (!text) return false;
  const char* p = text;
  if (*p == '+' || *p == '-') ++p;
  const char* digits = p;
  // Digits before and after the point; count the fraction digits that are not trailing zeros.
  int intDigits = 0, fracDigits = 0;
  while (*p >= '0' && *p <= '9') {
    ++p;
    ++intDigits;
  }
  const char* fraction = nullptr;
  if (*p == '.') {
    fraction = ++p;
    while (*p >= '0' && *p <= '9') {
      ++p;
      ++fracDigits;
    }
  }
  if (intDigits + fracDigits == 0) return false;
  int significantFraction = 0;  // position of the last non-zero fraction digit
  for (int i = 0; i < fracDigits; ++i)
    if (fraction[i] != '0') significantFraction = i + 1;
  const char* mantissaEnd = p;
  long exponent = 0;
  if (*p == 'e' || *p == 'E') {
    ++p;
    bool negative = false;
    if (*p == '+' || *p == '-') negative = *p++ == '-';
    if (!(*p >= '0' && *p <= '9')) return false;
    while (*p >= '0' && *p <= '9') {
      if (exponent < 100000) exponent = exponent * 10 + (*p - '0');
      ++p;
    }
    if (negative) exponent = -exponent;
  }
  if (*p != '\0') return false;
  // Zero is whole whatever its exponent.
  bool allZero = true;
  for (const char* q = digits; q < mantissaEnd; ++q)
    if (*q >= '1' && *q <= '9') allZero = false;
  if (allZero) return true;
  if (exponent < 0) {
    // Shifting right: the digits that move into the fraction must all be zero.
    const long shift = -exponent;
    if (significantFraction > 0) return false;
    if (shift > intDigits) return false;
    for (long i = intDigits - shift; i < intDigits; ++i)
      if (digits[i] != '0') return false;
    return true;
  }
  return significantFraction <= exponent;
}

}  // namespace zomath::platform
