// Calls into BLAS and LAPACK, one thread at a time. The single-threaded OpenBLAS that the library
// links hands out its work buffers from one table without a lock, so two host threads inside it
// at once overwrite each other's products. Every BLAS or LAPACK call of the library runs inside
// blas(), which holds one mutex for the duration of that call only.
#pragma once

#include <mutex>

namespace zomath::platform {

std::mutex& blas_mutex();

template <class Call>
auto blas(Call call) {
  std::lock_guard<std::mutex> hold(blas_mutex());
  return call();
}

}  // namespace zomath::platform
