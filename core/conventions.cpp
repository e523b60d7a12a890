// Exports of the call conventions: release of blocks and the binding probe.
#include "platform/utility.h"
#include "zomath/core.h"

extern "C" {

void zomath_free(void* p) {
  // The release routine clears its own copy of the pointer; the caller's keeps its value.
  zomath::platform::release_block(&p);
}

double AnotherDummyFunction(double a, double b, double c, double d, double e) {
  return a + b + c + d + e;
}

}  // extern "C"
