// Working storage of the platform routines.
#pragma once

#include <cstddef>
#include <new>
#include <vector>

#include "zomath/core.h"

namespace zomath::platform {

// n value-initialised elements; failure to allocate throws ZOMATH_ERROR_NO_MEMORY, the library's
// way of reporting it.
template <class T>
std::vector<T> buffer(std::size_t n) {
  try {
    return std::vector<T>(n);
  } catch (const std::bad_alloc&) {
    throw ZOMATH_ERROR_NO_MEMORY;
  }
}

}  // namespace zomath::platform
