// What the short forms of the special and distribution functions share: the missing-argument
// test and the call of a platform routine with a fresh error record.
#pragma once

#include <initializer_list>

#include "platform/error_record.h"
#include "zomath/core.h"

namespace zomath::scalar {

inline bool any_nanum(std::initializer_list<double> args) {
  for (double a : args)
    if (a == NANUM) return true;
  return false;
}

// Runs routine(err) with a fresh error record and returns its value, or NANUM when it reports a
// failure; the code goes to *pnError when given. An exception escaping from inside a
// dependency (an iteration that gave up) counts as a failure with codeOnThrow.
template <class Routine>
double run_routine(Routine routine, int* pnError = nullptr, int codeOnThrow = 1) {
  platform::NagError err;
  double value = 0;
  try {
    value = routine(err);
  } catch (...) {
    err.fail(codeOnThrow, "iteration gave up");
  }
  if (pnError) *pnError = err.code;
  return err.code != 0 ? NANUM : value;
}

}  // namespace zomath::scalar
