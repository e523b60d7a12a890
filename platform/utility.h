// Utility routines that the exports lean on: bin indexing, release of blocks handed out, and the
// comparison of two doubles under a relative tolerance.
#pragma once

namespace zomath::platform {

// Index k of the bin that holds x, bins of width inc laid from start: bin k spans
// [k * inc + start, (k + 1) * inc + start), so an exact lower edge belongs to its bin. The
// edges are those computed values, so a value on an edge lands in the bin it starts even where
// (x - start) / inc rounds the other way. A negative inc lays the bins downward from start
// (bin 0 is (start + inc, start]). Values below the first bin give a negative index, values
// beyond any bin a large one; NaN, infinities, NANUM and inc of 0 give -1. The index is clamped
// to the int range.
int nice_bin_index(double x, double start, double inc);

// Frees a block that the library allocated for a caller and clears *pp. Null is fine.
void release_block(void** pp);

// The relative tolerance of compare_doubles when the caller gives none: values that agree to
// about twelve significant digits are one value.
inline constexpr double kCompareTolerance = 1e-12;

// Whether the relation `op` holds between a and b under the relative tolerance tol. a and b are
// near when |a - b| <= tol * max(|a|, |b|), so that only 0 is near 0 and the test means the same
// at every scale. op '=' asks whether they are near, '!' whether they are not. A NaN is near
// nothing; any other op gives false.
bool compare_doubles(double a, double b, char op, double tol = kCompareTolerance);

// Whether the text is a whole number written in decimal: an optional sign, digits, an optional
// fraction and an optional exponent ("12", "-3", "1.5e+06"), whose value has no fractional part
// (so "1.5e+06" is whole, "2.5" and "1e-300" are not). Leading or trailing blanks, an empty
// text, "inf" and "nan" are not whole numbers. Null gives false.
bool is_str_numeric_integer(const char* text);

}  // namespace zomath::platform
