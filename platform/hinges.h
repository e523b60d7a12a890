// Tukey's five-number summary of a sorted sample.
#pragma once

#include <cstddef>

#include "platform/error_record.h"

namespace zomath::platform {

// Failure code of five_number_summary.
constexpr int kHingesNoData = 1;  // n < 1, or a null array

// Minimum, lower hinge, median, upper hinge and maximum of the n ascending values x[0..n), into
// out[0..5). The median sits at depth (n + 1) / 2 from either end, each hinge at depth
// (floor((n + 1) / 2) + 1) / 2 from its end; a depth that ends in a half is the mean of the two
// values beside it (Tukey, Exploratory Data Analysis, 1977). Any n >= 1. Returns 0, or
// kHingesNoData (also left in err) with out untouched.
int five_number_summary(const double* x, std::size_t n, double out[5], NagError& err);

}  // namespace zomath::platform
