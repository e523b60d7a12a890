// Comparison functions, the two sort entry points and the sorter classes.
#include "zomath/sort.h"

#include <cstdint>
#include <algorithm>
#include <cstring>
#include <new>
#include <type_traits>

#include "core/sort/sort_engine.h"

namespace zomath::sortimpl {
namespace {

template <class T>
T load(const void* p) {
  T x;
  std::memcpy(&x, p, sizeof(T));
  return x;
}

// -1, 0, 1 by the built-in operators, so a NaN compares equal to everything.
template <class T>
int compare_ascend(const void* a, const void* b) {
  const T x = load<T>(a), y = load<T>(b);
  return x < y ? -1 : (x > y ? 1 : 0);
}

// "a sorts before b" for one of the library's comparisons, inlined: the key is the first
// sizeof(T) bytes of a value (T itself, or a Blob holding a record).
template <class T, bool Descend>
struct TypedLess {
  template <class V>
  bool operator()(const V& a, const V& b) const {
    return (*this)(static_cast<const void*>(&a), static_cast<const void*>(&b));
  }
  bool operator()(const void* a, const void* b) const {
    return Descend ? load<T>(b) < load<T>(a) : load<T>(a) < load<T>(b);
  }
};

// "a sorts before b" for any caller's comparison, which sees the start of each item.
struct FunctionLess {
  zomath_compare_fn f;
  template <class V>
  bool operator()(const V& a, const V& b) const {
    return (*this)(static_cast<const void*>(&a), static_cast<const void*>(&b));
  }
  bool operator()(const void* a, const void* b) const { return f(a, b) < 0; }
};

struct Quick {
  static constexpr bool kStable = false;
  template <bool Guarded, class V, class Less>
  static void run(V* a, std::size_t n, Less less) {
    quick_sort<Guarded>(a, n, less);
  }
};
struct Merge {
  static constexpr bool kStable = true;
  template <bool Guarded, class V, class Less>
  static void run(V* a, std::size_t n, Less less) {
    merge_sort<Guarded>(a, n, less);
  }
};

template <class Algo, bool Guarded, std::size_t N, class Less>
void run_blobs(unsigned char* b, std::size_t n, Less less) {
  Algo::template run<Guarded>(reinterpret_cast<Blob<N>*>(b), n, less);
}

template <class Algo, bool Guarded, class Less>
void run_by_index(unsigned char* b, std::size_t n, std::size_t w, Less less) {
  sort_by_index<Algo::kStable>(b, n, w, [less](const unsigned char* x, const unsigned char* y) {
    return less(static_cast<const void*>(x), static_cast<const void*>(y));
  });
}

// One of the library's comparisons, deterministic even with NaN, so the scans run on sentinels.
template <class Algo, class T, bool Descend>
void run_typed(unsigned char* b, std::size_t n, std::size_t w) {
  const TypedLess<T, Descend> less;
  if (w < sizeof(T)) return;  // an item can't hold its key
  if (w == sizeof(T)) {
    if (reinterpret_cast<std::uintptr_t>(b) % alignof(T) == 0)
      Algo::template run<false>(reinterpret_cast<T*>(b), n, less);
    else
      run_blobs<Algo, false, sizeof(T)>(b, n, less);
    return;
  }
  if constexpr (std::is_same_v<T, double>) {  // a double with an int or a double companion
    if (w == 12) return run_blobs<Algo, false, 12>(b, n, less);
    if (w == 16) return run_blobs<Algo, false, 16>(b, n, less);
  }
  run_by_index<Algo, false>(b, n, w, less);
}

// A caller's comparison: no promise of consistency, so every scan is bounded.
template <class Algo>
void run_function(unsigned char* b, std::size_t n, std::size_t w, zomath_compare_fn f) {
  const FunctionLess less{f};
  switch (w) {
    case 1: return run_blobs<Algo, true, 1>(b, n, less);
    case 2: return run_blobs<Algo, true, 2>(b, n, less);
    case 4: return run_blobs<Algo, true, 4>(b, n, less);
    case 8: return run_blobs<Algo, true, 8>(b, n, less);
    case 12: return run_blobs<Algo, true, 12>(b, n, less);
    case 16: return run_blobs<Algo, true, 16>(b, n, less);
    default: return run_by_index<Algo, true>(b, n, w, less);
  }
}

template <class Algo>
void dispatch(void* pData, int nFirst, int nLast, int nItemBytes, void* pCompare) {
  if (!pData || !pCompare || nItemBytes < 1 || nFirst < 0 || nLast <= nFirst) return;
  const auto f = reinterpret_cast<zomath_compare_fn>(pCompare);
  const std::size_t w = static_cast<std::size_t>(nItemBytes);
  unsigned char* b = static_cast<unsigned char*>(pData) + static_cast<std::size_t>(nFirst) * w;
  const std::size_t n = static_cast<std::size_t>(nLast) - static_cast<std::size_t>(nFirst) + 1;

  if (f == Compare_double_Ascend) return run_typed<Algo, double, false>(b, n, w);
  if (f == Compare_double_Descend) return run_typed<Algo, double, true>(b, n, w);
  if (f == Compare_float_Ascend) return run_typed<Algo, float, false>(b, n, w);
  if (f == Compare_float_Descend) return run_typed<Algo, float, true>(b, n, w);
  if (f == Compare_int_Ascend) return run_typed<Algo, int, false>(b, n, w);
  if (f == Compare_int_Descend) return run_typed<Algo, int, true>(b, n, w);
  if (f == Compare_UINT_Ascend) return run_typed<Algo, unsigned int, false>(b, n, w);
  if (f == Compare_UINT_Descend) return run_typed<Algo, unsigned int, true>(b, n, w);
  if (f == Compare_short_Ascend) return run_typed<Algo, short, false>(b, n, w);
  if (f == Compare_short_Descend) return run_typed<Algo, short, true>(b, n, w);
  if (f == Compare_WORD_Ascend) return run_typed<Algo, unsigned short, false>(b, n, w);
  if (f == Compare_WORD_Descend) return run_typed<Algo, unsigned short, true>(b, n, w);
  if (f == Compare_char_Ascend) return run_typed<Algo, char, false>(b, n, w);
  if (f == Compare_char_Descend) return run_typed<Algo, char, true>(b, n, w);
  if (f == Compare_BYTE_Ascend) return run_typed<Algo, unsigned char, false>(b, n, w);
  if (f == Compare_BYTE_Descend) return run_typed<Algo, unsigned char, true>(b, n, w);
  run_function<Algo>(b, n, w, f);
}

}  // namespace
}  // namespace zomath::sortimpl

using namespace zomath::sortimpl;

extern "C" {

int Compare_double_Ascend(const void* a, const void* b) { return compare_ascend<double>(a, b); }
int Compare_float_Ascend(const void* a, const void* b) { return compare_ascend<float>(a, b); }
int Compare_int_Ascend(const void* a, const void* b) { return compare_ascend<int>(a, b); }
int Compare_UINT_Ascend(const void* a, const void* b) { return compare_ascend<unsigned int>(a, b); }
int Compare_short_Ascend(const void* a, const void* b) { return compare_ascend<short>(a, b); }
int Compare_WORD_Ascend(const void* a, const void* b) { return compare_ascend<unsigned short>(a, b); }
int Compare_char_Ascend(const void* a, const void* b) { return compare_ascend<char>(a, b); }
int Compare_BYTE_Ascend(const void* a, const void* b) { return compare_ascend<unsigned char>(a, b); }
int Compare_double_Descend(const void* a, const void* b) { return -compare_ascend<double>(a, b); }
int Compare_float_Descend(const void* a, const void* b) { return -compare_ascend<float>(a, b); }
int Compare_int_Descend(const void* a, const void* b) { return -compare_ascend<int>(a, b); }
int Compare_UINT_Descend(const void* a, const void* b) { return -compare_ascend<unsigned int>(a, b); }
int Compare_short_Descend(const void* a, const void* b) { return -compare_ascend<short>(a, b); }
int Compare_WORD_Descend(const void* a, const void* b) { return -compare_ascend<unsigned short>(a, b); }
int Compare_char_Descend(const void* a, const void* b) { return -compare_ascend<char>(a, b); }
int Compare_BYTE_Descend(const void* a, const void* b) { return -compare_ascend<unsigned char>(a, b); }

void* GetAppropriateCompareAscend(int nType) {
  switch (nType) {
    case 2: case 3: return reinterpret_cast<void*>(Compare_char_Ascend);
    case 4: return reinterpret_cast<void*>(Compare_BYTE_Ascend);
    case 5: return reinterpret_cast<void*>(Compare_short_Ascend);
    case 6: return reinterpret_cast<void*>(Compare_WORD_Ascend);
    case 8: return reinterpret_cast<void*>(Compare_int_Ascend);
    case 9: return reinterpret_cast<void*>(Compare_UINT_Ascend);
    case 10: return reinterpret_cast<void*>(Compare_float_Ascend);
    case 11: case 13: return reinterpret_cast<void*>(Compare_double_Ascend);
    default: return nullptr;
  }
}

void* GetAppropriateCompareDescend(int nType) {
  switch (nType) {
    case 2: case 3: return reinterpret_cast<void*>(Compare_char_Descend);
    case 4: return reinterpret_cast<void*>(Compare_BYTE_Descend);
    case 5: return reinterpret_cast<void*>(Compare_short_Descend);
    case 6: return reinterpret_cast<void*>(Compare_WORD_Descend);
    case 8: return reinterpret_cast<void*>(Compare_int_Descend);
    case 9: return reinterpret_cast<void*>(Compare_UINT_Descend);
    case 10: return reinterpret_cast<void*>(Compare_float_Descend);
    case 11: case 13: return reinterpret_cast<void*>(Compare_double_Descend);
    default: return nullptr;
  }
}

void theQuickSort(void* pData, int nFirst, int nLast, int nItemBytes, void* pCompare) {
  dispatch<Quick>(pData, nFirst, nLast, nItemBytes, pCompare);
}

void theMergeSort(void* pData, int nFirst, int nLast, int nItemBytes, void* pCompare) {
  dispatch<Merge>(pData, nFirst, nLast, nItemBytes, pCompare);
}

}  // extern "C"

// ---------------------------------------------------------------------------------------------
// Sorter classes

namespace {

// Packing the work block (main item, companion item) and unpacking it. The loops are
// instantiated for the usual item sizes so that each copy is a register move; 0 stands for a
// size known only at run time.
struct RecordBlock {
  unsigned char* work;
  unsigned char* main;
  unsigned char* comp;
  std::size_t first, count, compSize, mainBytes, compBytes;
  bool keepMain;
};

template <std::size_t M, std::size_t C>
void transfer(const RecordBlock& b, bool toWork) {
  const std::size_t m = M ? M : b.mainBytes, c = C ? C : b.compBytes, total = m + c;
  for (std::size_t k = 0; k < b.count; ++k) {
    const std::size_t i = b.first + k;
    unsigned char* rec = b.work + k * total;
    if (toWork) {
      std::memcpy(rec, b.main + i * m, m);
      if (i < b.compSize) std::memcpy(rec + m, b.comp + i * c, c);
    } else {
      if (!b.keepMain) std::memcpy(b.main + i * m, rec, m);
      if (i < b.compSize) std::memcpy(b.comp + i * c, rec + m, c);
    }
  }
}

using Transfer = void (*)(const RecordBlock&, bool);

template <std::size_t M>
Transfer transfer_for_companion(std::size_t c) {
  switch (c) {
    case 2: return transfer<M, 2>;
    case 4: return transfer<M, 4>;
    case 8: return transfer<M, 8>;
    default: return transfer<M, 0>;
  }
}

Transfer transfer_for(std::size_t m, std::size_t c) {
  switch (m) {
    case 2: return transfer_for_companion<2>(c);
    case 4: return transfer_for_companion<4>(c);
    case 8: return transfer_for_companion<8>(c);
    default: return transfer_for_companion<0>(c);
  }
}

}  // namespace

CZSortBase::CZSortBase(void* pMain, int nMainSize, int nMainItemBytes)
    : CZSortBase(pMain, nMainSize, nMainItemBytes, nullptr, 0, 0) {}

CZSortBase::CZSortBase(void* pMain, int nMainSize, int nMainItemBytes, void* pCompanion,
                       int nCompanionItemBytes, int nCompanionSize)
    : m_bCombined(false),
      m_bError(pMain == nullptr),
      m_nMainSize(nMainSize),
      m_nCompanionSize(pCompanion ? nCompanionSize : 0),
      m_nCompanionItemBytes(pCompanion && nCompanionItemBytes > 0 ? nCompanionItemBytes : 0),
      m_nTotalItemBytes(0),
      m_nMainItemBytes(nMainItemBytes),
      m_pMain(pMain),
      m_pCompanion(pCompanion),
      m_pWork(nullptr) {
  if (nMainItemBytes < 1) m_bError = true;
  if (m_nCompanionItemBytes == 0) {
    m_pCompanion = nullptr;
    m_nCompanionSize = 0;
  }
  m_nTotalItemBytes = m_nMainItemBytes + m_nCompanionItemBytes;
}

int CZSortBase::Sort(int nFirst, int nLast, void* pCompare, bool bKeepMain) {
  if (m_bError) return 0;
  if (nFirst >= m_nMainSize || nLast < 0) return 0;
  if (nFirst < 0) nFirst = 0;
  if (nLast >= m_nMainSize) nLast = m_nMainSize - 1;
  if (nFirst == nLast) return 1;
  if (nFirst > nLast) return 0;

  const std::size_t mainBytes = static_cast<std::size_t>(m_nMainItemBytes);
  const std::size_t count = static_cast<std::size_t>(nLast - nFirst) + 1;
  unsigned char* main = static_cast<unsigned char*>(m_pMain);

  if (!m_pCompanion) {
    m_pWork = main + static_cast<std::size_t>(nFirst) * mainBytes;
    AlgorithmSpecificSort(m_pWork, 0, nLast - nFirst, m_nTotalItemBytes, pCompare);
  } else {
    // Records of (main item, companion item). Positions beyond the companion carry zeros.
    m_pWork = std::calloc(count, static_cast<std::size_t>(m_nTotalItemBytes));
    if (!m_pWork) {
      m_bError = true;
      return 0;
    }
    m_bCombined = true;
    const RecordBlock block{static_cast<unsigned char*>(m_pWork), main,
                            static_cast<unsigned char*>(m_pCompanion), static_cast<std::size_t>(nFirst),
                            count, static_cast<std::size_t>(std::max(m_nCompanionSize, 0)), mainBytes,
                            static_cast<std::size_t>(m_nCompanionItemBytes), bKeepMain};
    const Transfer move = transfer_for(block.mainBytes, block.compBytes);
    move(block, true);
    AlgorithmSpecificSort(m_pWork, 0, nLast - nFirst, m_nTotalItemBytes, pCompare);
    move(block, false);
    std::free(m_pWork);
    m_bCombined = false;
  }
  m_pWork = nullptr;
  return 1;
}

void CQSort::AlgorithmSpecificSort(void* pData, int nFirst, int nLast, int nItemBytes, void* pCompare) {
  theQuickSort(pData, nFirst, nLast, nItemBytes, pCompare);
}

void CMergeSort::AlgorithmSpecificSort(void* pData, int nFirst, int nLast, int nItemBytes,
                                       void* pCompare) {
  theMergeSort(pData, nFirst, nLast, nItemBytes, pCompare);
}

CZSortBase* zomCreateSorter(int nAlgorithm, void* pMain, int nMainSize, int nMainItemBytes,
                            void* pCompanion, int nCompanionItemBytes, int nCompanionSize) {
  if (nAlgorithm == 0)
    return new (std::nothrow)
        CQSort(pMain, nMainSize, nMainItemBytes, pCompanion, nCompanionItemBytes, nCompanionSize);
  return new (std::nothrow)
      CMergeSort(pMain, nMainSize, nMainItemBytes, pCompanion, nCompanionItemBytes, nCompanionSize);
}
