// Working storage for buffers of tens of megabytes, such as one key per data point. Below
// kHugeFrom bytes it comes from malloc, which keeps freed blocks of that size for the next call.
// From kHugeFrom on, malloc hands each block back to the kernel when freed, and every call would
// fault in a fresh 4 KiB page per 4 KiB written (about a third of the time of a pass over 10^7
// doubles); such blocks are aligned to 2 MiB and marked for transparent huge pages, which the
// kernel faults in 512 times fewer at a time, where it allows them.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <utility>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace zomath::kernels {

template <class T>
class LargeBuffer {
 public:
  static constexpr std::size_t kHugeFrom = std::size_t{32} << 20;
  static constexpr std::size_t kHugePage = std::size_t{2} << 20;

  LargeBuffer() = default;
  LargeBuffer(LargeBuffer&& o) noexcept : p_(o.p_) { o.p_ = nullptr; }
  LargeBuffer& operator=(LargeBuffer&& o) noexcept {
    std::swap(p_, o.p_);
    return *this;
  }
  ~LargeBuffer() { std::free(p_); }

  // Room for n elements, not initialised, replacing what was held; false when it can't be had.
  bool allocate(std::size_t n) {
    std::free(p_);
    p_ = nullptr;
    if (n > static_cast<std::size_t>(-1) / sizeof(T) - kHugePage) return false;
    std::size_t bytes = (n > 0 ? n : 1) * sizeof(T);
    if (bytes < kHugeFrom) {
      p_ = static_cast<T*>(std::malloc(bytes));
      return p_ != nullptr;
    }
    bytes = (bytes + kHugePage - 1) / kHugePage * kHugePage;  // aligned_alloc wants a multiple
    p_ = static_cast<T*>(std::aligned_alloc(kHugePage, bytes));
#if defined(__linux__) && defined(MADV_HUGEPAGE)
    if (p_) madvise(p_, bytes, MADV_HUGEPAGE);  // advice only: a refusal changes nothing else
#endif
    return p_ != nullptr;
  }
  T* get() const { return p_; }

 private:
  T* p_ = nullptr;
};

}  // namespace zomath::kernels
