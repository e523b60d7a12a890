// Working storage of the platform routines.
#pragma once

#include <cstddef>
#include <memory>
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

// n elements left uninitialised, for arrays whose every element is written before it is read
// (zeroing them would cost a pass over memory); failure throws ZOMATH_ERROR_NO_MEMORY.
template <class T>
std::unique_ptr<T[]> raw_buffer(std::size_t n) {
  std::unique_ptr<T[]> p(new (std::nothrow) T[n ? n : 1]);
  if (!p) throw ZOMATH_ERROR_NO_MEMORY;
  return p;
}

}  // namespace zomath::platform
