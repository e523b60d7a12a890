// Utility routines that the exports lean on: bin indexing and release of blocks handed out.
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

}  // namespace zomath::platform
