// Frequency table over caller-given class boundaries.
#pragma once

#include "platform/error_record.h"

namespace zomath::platform {

// Failure codes of frequency_table.
constexpr int kFrequencyTooFewData = 1;        // nSize < 1 or a null array
constexpr int kFrequencyTooFewClasses = 2;     // nClasses < 2
constexpr int kFrequencyNotIncreasing = 3;     // boundaries not strictly increasing or not finite

// Counts the nSize values into nClasses classes separated by the nClasses - 1 strictly
// increasing boundaries b: class 0 holds x < b[0], class j holds b[j-1] <= x < b[j], the last
// class x >= b[nClasses-2]; so a value on a boundary belongs to the class above it. NaN values
// are not counted. Gives the smallest and largest value counted when pMin, pMax are not null.
// Returns 0, or one of the codes above (also left in err), with the counts untouched.
int frequency_table(const double* pData, int nSize, int nClasses, const double* pBoundaries,
                    int* pnCounts, double* pMin, double* pMax, NagError& err);

}  // namespace zomath::platform
