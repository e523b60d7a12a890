// What the analysis of variance exports share: the start values of a table, the F probability
// of a table row, and the one-way engine under the one-way analysis and the equal-variance tests.
#pragma once

#include "zomath/stats.h"

namespace zomath::stats {

// Every field NANUM; null is skipped.
void clear(ANOVATable* t);

// P(F > f) on df1 and df2 degrees of freedom, computed directly; NANUM for a missing or NaN f
// or degrees not above 0.
double f_upper(double f, double df1, double df2);

// a / b, NANUM when either is NANUM or b is 0.
double ratio(double a, double b);

// What the engine found over all groups besides the table.
struct OneWayTotals {
  int n = 0;                // valid points of all groups
  double grandMean = NANUM; // their mean (of the raw values, whatever the transform)
  bool constant = true;     // every valid value equal (or none)
};

// The one-way table of nGroups consecutive groups of pData (sizes pGroupSizes) after the
// transform of nMethod (0 and 4 none, 1 |x - mean|, 2 (x - mean)^2, 3 |x - median|), with the
// group statistics of the transformed values into pGroupStats (may be null) and the table into
// pTable (may be null). Fills both first. Returns 0 or the codes of the exports.
int one_way_engine(const double* pData, int nSize, int nGroups, const int* pGroupSizes,
                   tTestMeanResults* pGroupStats, int nGroupStats, ANOVATable* pTable,
                   int nMethod, OneWayTotals* pTotals = nullptr);

}  // namespace zomath::stats
