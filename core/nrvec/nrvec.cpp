// Members of NRVec and NRMat, instantiated for every element type the library uses.
#include "core/nrvec/nrvec.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "core/kernels.h"
#include "platform/utility.h"
#include "zomath/sort.h"

namespace zomath {
namespace {

template <class T>
T* allocate_block(std::size_t n) {
  T* p = static_cast<T*>(std::malloc(n * sizeof(T)));
  if (!p) throw ZOMATH_ERROR_NO_MEMORY;
  return p;
}

// A double into T: integer types saturate at their limits (NaN gives 0) instead of overflowing.
template <class T>
T narrow(double x) {
  if constexpr (std::is_integral_v<T>) {
    if (!(x == x)) return T(0);
    if (x <= static_cast<double>(std::numeric_limits<T>::lowest())) return std::numeric_limits<T>::lowest();
    if (x >= static_cast<double>(std::numeric_limits<T>::max())) return std::numeric_limits<T>::max();
  }
  return static_cast<T>(x);
}

// Element arithmetic: NANUM rules for double, missing-propagating for complex, plain otherwise.
template <class T>
T add(const T& a, const T& b) {
  if constexpr (std::is_same_v<T, double>) {
    return nanum_add(a, b);
  } else if constexpr (std::is_same_v<T, d_complex>) {
    return (is_missing(a) || is_missing(b)) ? d_complex{NANUM, NANUM} : a + b;
  } else {
    return static_cast<T>(a + b);
  }
}
template <class T>
T sub(const T& a, const T& b) {
  if constexpr (std::is_same_v<T, double>) {
    return nanum_sub(a, b);
  } else if constexpr (std::is_same_v<T, d_complex>) {
    return (is_missing(a) || is_missing(b)) ? d_complex{NANUM, NANUM} : a - b;
  } else {
    return static_cast<T>(a - b);
  }
}
template <class T>
T mul(const T& a, const T& b) {
  if constexpr (std::is_same_v<T, double>) {
    return nanum_mul(a, b);
  } else if constexpr (std::is_same_v<T, d_complex>) {
    return (is_missing(a) || is_missing(b)) ? d_complex{NANUM, NANUM} : a * b;
  } else {
    return static_cast<T>(a * b);
  }
}
template <class T>
T div(const T& a, const T& b) {
  if constexpr (std::is_same_v<T, double>) {
    return nanum_div(a, b);
  } else if constexpr (std::is_same_v<T, d_complex>) {
    const double d = b.re * b.re + b.im * b.im;
    if (is_missing(a) || is_missing(b) || d == 0.0) return {NANUM, NANUM};
    return {(a.re * b.re + a.im * b.im) / d, (a.im * b.re - a.re * b.im) / d};
  } else {
    return b == T(0) ? a : static_cast<T>(a / b);  // integer division by zero leaves a
  }
}
template <class T>
T scale(const T& a, double f) {
  if constexpr (std::is_same_v<T, double>) {
    return nanum_mul(a, f);
  } else if constexpr (std::is_same_v<T, d_complex>) {
    return is_missing(a) ? a : a * f;
  } else {
    return narrow<T>(static_cast<double>(a) * f);
  }
}
template <class T>
SumOf<T> widen(const T& a) {
  if constexpr (std::is_same_v<T, d_complex>) return a; else return static_cast<double>(a);
}
template <class T>
SumOf<T> missing_sum() {
  if constexpr (std::is_same_v<T, d_complex>) return {NANUM, NANUM}; else return NANUM;
}
template <class T>
bool near_or_equal(const T& a, const T& b, double tol) {
  if (a == b) return true;
  if constexpr (std::is_same_v<T, d_complex>) {
    return is_near(a.re, b.re, tol) && is_near(a.im, b.im, tol);
  } else {
    return is_near(static_cast<double>(a), static_cast<double>(b), tol);
  }
}

template <class T>
void* compare_ascend() {
  if constexpr (std::is_same_v<T, double>) return reinterpret_cast<void*>(Compare_double_Ascend);
  if constexpr (std::is_same_v<T, float>) return reinterpret_cast<void*>(Compare_float_Ascend);
  if constexpr (std::is_same_v<T, int>) return reinterpret_cast<void*>(Compare_int_Ascend);
  if constexpr (std::is_same_v<T, unsigned int>) return reinterpret_cast<void*>(Compare_UINT_Ascend);
  if constexpr (std::is_same_v<T, unsigned short>) return reinterpret_cast<void*>(Compare_WORD_Ascend);
  if constexpr (std::is_same_v<T, char>) return reinterpret_cast<void*>(Compare_char_Ascend);
  if constexpr (std::is_same_v<T, unsigned char>) return reinterpret_cast<void*>(Compare_BYTE_Ascend);
  return nullptr;
}
template <class T>
void* compare_descend() {
  if constexpr (std::is_same_v<T, double>) return reinterpret_cast<void*>(Compare_double_Descend);
  if constexpr (std::is_same_v<T, float>) return reinterpret_cast<void*>(Compare_float_Descend);
  if constexpr (std::is_same_v<T, int>) return reinterpret_cast<void*>(Compare_int_Descend);
  if constexpr (std::is_same_v<T, unsigned int>) return reinterpret_cast<void*>(Compare_UINT_Descend);
  if constexpr (std::is_same_v<T, unsigned short>) return reinterpret_cast<void*>(Compare_WORD_Descend);
  if constexpr (std::is_same_v<T, char>) return reinterpret_cast<void*>(Compare_char_Descend);
  if constexpr (std::is_same_v<T, unsigned char>) return reinterpret_cast<void*>(Compare_BYTE_Descend);
  return nullptr;
}

// The match test of Replace and its replacement value.
bool replace_matches(double x, double t, unsigned int flags) {
  if (flags & REPLACE_ABSOLUTE) {
    const double a = std::fabs(t);
    return ((flags & REPLACE_LESS) && -a < x && x < a) ||
           ((flags & REPLACE_EQUAL) && (x == a || x == -a)) ||
           ((flags & REPLACE_GREATER) && (x < -a || x > a));
  }
  return ((flags & REPLACE_LESS) && x < t) || ((flags & REPLACE_EQUAL) && x == t) ||
         ((flags & REPLACE_GREATER) && x > t);
}

bool count_holds(double x, double value, int condition) {
  switch (condition) {
    case COUNT_GE: return x >= value;
    case COUNT_GT: return x > value;
    case COUNT_LE: return x <= value;
    case COUNT_LT: return x < value;
    case COUNT_EQ: return x == value;
    default: return x != value;
  }
}

}  // namespace

// ---------------------------------------------------------------------------------------------
// NRVec

template <class T>
void NRVec<T>::Allocate(int n) {
  nn = 0;
  v = nullptr;
  bWrapped = false;
  if (n < 1) return;
  v = allocate_block<T>(static_cast<std::size_t>(n));
  nn = n;
}

template <class T>
void NRVec<T>::Adopt(NRVec& other) {
  Cleanup();
  std::swap(nn, other.nn);
  std::swap(v, other.v);
  std::swap(bWrapped, other.bWrapped);
}

template <class T>
NRVec<T>::NRVec(int n) {
  Allocate(n);
}

template <class T>
NRVec<T>::NRVec(const T& a, int n) {
  Allocate(n);
  std::fill(v, v + nn, a);
}

template <class T>
NRVec<T>::NRVec(const T* p, int n) {
  if (!p) return;
  Allocate(n);
  if (nn) std::memcpy(v, p, static_cast<std::size_t>(nn) * sizeof(T));
}

template <class T>
NRVec<T>::NRVec(const NRVec& other) : NRVec(other.IsValid() ? other.v : nullptr, other.nn) {}

template <class T>
NRVec<T>::NRVec(NRVec&& other) noexcept : nn(other.nn), v(other.v), bWrapped(other.bWrapped) {
  other.nn = 0;
  other.v = nullptr;
  other.bWrapped = false;
}

template <class T>
NRVec<T>& NRVec<T>::operator=(const NRVec& other) {
  if (this == &other) return *this;
  const int n = other.IsValid() ? other.nn : 0;
  if (n <= nn && v) {
    nn = n;
  } else {
    SetSize(n);
  }
  if (n) std::memmove(v, other.v, static_cast<std::size_t>(n) * sizeof(T));
  return *this;
}

template <class T>
NRVec<T>& NRVec<T>::operator=(const T& a) {
  if (IsValid()) std::fill(v, v + nn, a);
  return *this;
}

template <class T>
void NRVec<T>::Cleanup() {
  if (!bWrapped) std::free(v);
  nn = 0;
  v = nullptr;
  bWrapped = false;
}

template <class T>
void NRVec<T>::AttachMemory(T* p, int n, bool bWrap) {
  Cleanup();
  if (!p || n < 1) return;
  v = p;
  nn = n;
  bWrapped = bWrap;
}

template <class T>
T* NRVec<T>::DetachMemory() {
  T* p = v;
  nn = 0;
  v = nullptr;
  bWrapped = false;
  return p;
}

template <class T>
void NRVec<T>::SetSize(int n) {
  if (n == nn && (v || n < 1)) return;
  Cleanup();
  Allocate(n);
}

template <class T>
bool NRVec<T>::ResolveRange(int& nFirst, int& nLast) const {
  if (!IsValid()) return false;
  if (nLast == -1) nLast = nn - 1;
  return nFirst >= 0 && nLast >= nFirst && nLast < nn;
}

template <class T>
int NRVec<T>::GetMinMax(T* pMin, T* pMax, int* pnIndexMin, int* pnIndexMax, int nFirst, int nLast,
                        const T* pMissing) const {
  if constexpr (!kOrdered) {
    (void)pMin, (void)pMax, (void)pnIndexMin, (void)pnIndexMax, (void)nFirst, (void)nLast,
        (void)pMissing;
    return -1;
  } else {
    if (!ResolveRange(nFirst, nLast)) return -1;
    std::ptrdiff_t iMin, iMax;
    const std::ptrdiff_t missing = kernels::minmax(v, nFirst, nLast, pMissing, iMin, iMax);
    const int valid = nLast - nFirst + 1 - static_cast<int>(missing);
    if (valid > 0) {
      if (pMin) *pMin = v[iMin];
      if (pMax) *pMax = v[iMax];
      if (pnIndexMin) *pnIndexMin = static_cast<int>(iMin);
      if (pnIndexMax) *pnIndexMax = static_cast<int>(iMax);
    }
    return valid;
  }
}

template <class T>
NRVec<T>& NRVec<T>::operator-=(const T& x) {
  for (int i = 0; i < nn && v; ++i) v[i] = sub(v[i], x);
  return *this;
}

template <class T>
NRVec<T>& NRVec<T>::operator/=(const T& x) {
  for (int i = 0; i < nn && v; ++i) v[i] = div(v[i], x);
  return *this;
}

template <class T>
void NRVec<T>::Scale(double dFactor) {
  for (int i = 0; i < nn && v; ++i) v[i] = scale(v[i], dFactor);
}

template <class T>
bool NRVec<T>::Add(const NRVec& other, double dFactor) {
  if (!IsValid() || !other.IsValid() || other.nn != nn) return false;
  for (int i = 0; i < nn; ++i) v[i] = add(v[i], scale(other.v[i], dFactor));
  return true;
}

template <class T>
bool NRVec<T>::Add(const T& x) {
  if (!IsValid()) return false;
  for (int i = 0; i < nn; ++i) v[i] = add(v[i], x);
  return true;
}

template <class T>
void* NRVec<T>::CompareFuncAscend() {
  return compare_ascend<T>();
}

template <class T>
void* NRVec<T>::CompareFuncDescend() {
  return compare_descend<T>();
}

template <class T>
bool NRVec<T>::Sort(bool bAscending, int nFirst, int nLast) {
  if (!kOrdered || !ResolveRange(nFirst, nLast)) return false;
  if (nFirst == nLast) return true;
  CQSort sorter(v, nn, static_cast<int>(sizeof(T)));
  return sorter.Sort(nFirst, nLast, bAscending ? CompareFuncAscend() : CompareFuncDescend()) == 1;
}

template <class T>
int NRVec<T>::GetMedian(double* pMedian) const {
  if (pMedian) *pMedian = NANUM;
  if constexpr (!kOrdered) {
    return ZOMATH_ERR_BAD_ARGUMENT;
  } else {
    if (!IsValid() || !pMedian) return ZOMATH_ERR_BAD_ARGUMENT;
    NRVec<double> work(nn);
    for (int i = 0; i < nn; ++i) {
      work[i] = static_cast<double>(v[i]);
      if (work[i] != work[i]) return ZOMATH_ERR_BAD_ARGUMENT;  // NaN has no place in an order
    }
    *pMedian = kernels::median_by_selection(work.Data(), static_cast<std::size_t>(nn));
    return ZOMATH_OK;
  }
}

template <class T>
bool NRVec<T>::Reorder(const NRVec<unsigned int>& vnPermutation) {
  if (!IsValid() || !vnPermutation.IsValid() || vnPermutation.size() != nn) return false;
  NRVec<char> seen(char(0), nn);
  for (int k = 0; k < nn; ++k) {
    const unsigned int j = vnPermutation[k];
    if (j >= static_cast<unsigned int>(nn) || seen[static_cast<int>(j)]) return false;
    seen[static_cast<int>(j)] = 1;
  }
  const NRVec old(*this);
  for (int k = 0; k < nn; ++k) v[k] = old.v[vnPermutation[k]];
  return true;
}

template <class T>
void NRVec<T>::Append(const T& x) {
  InsertAt(IsValid() ? nn : 0, x, 1);
}

template <class T>
void NRVec<T>::Append(const NRVec& other) {
  if (!other.IsValid()) return;
  const NRVec tail(other);  // other may be this vector
  const int old = IsValid() ? nn : 0;
  NRVec grown(old + tail.nn);
  if (old) std::memcpy(grown.v, v, static_cast<std::size_t>(old) * sizeof(T));
  std::memcpy(grown.v + old, tail.v, static_cast<std::size_t>(tail.nn) * sizeof(T));
  Adopt(grown);
}

template <class T>
bool NRVec<T>::InsertAt(int nIndex, const T& x, int nCount) {
  const int old = IsValid() ? nn : 0;
  if (nIndex < 0 || nIndex > old || nCount < 1) return false;
  const T value = x;  // x may live in this vector
  NRVec grown(old + nCount);
  if (nIndex) std::memcpy(grown.v, v, static_cast<std::size_t>(nIndex) * sizeof(T));
  std::fill(grown.v + nIndex, grown.v + nIndex + nCount, value);
  if (old > nIndex)
    std::memcpy(grown.v + nIndex + nCount, v + nIndex, static_cast<std::size_t>(old - nIndex) * sizeof(T));
  Adopt(grown);
  return true;
}

template <class T>
bool NRVec<T>::RemoveAt(int nIndex, int nCount) {
  if (!IsValid() || nIndex < 0 || nIndex >= nn || nCount < 1) return false;
  const int end = nCount > nn - nIndex ? nn : nIndex + nCount;
  const int remain = nn - (end - nIndex);
  NRVec kept(remain);
  if (remain) {
    if (nIndex) std::memcpy(kept.v, v, static_cast<std::size_t>(nIndex) * sizeof(T));
    if (end < nn) std::memcpy(kept.v + nIndex, v + end, static_cast<std::size_t>(nn - end) * sizeof(T));
  }
  Adopt(kept);
  return true;
}

template <class T>
int NRVec<T>::Find(const T& x, int nStart) const {
  if (!IsValid()) return -1;
  for (int i = std::max(nStart, 0); i < nn; ++i)
    if (v[i] == x) return i;
  return -1;
}

template <class T>
int NRVec<T>::FindEqualSegments(NRVec<int>& vnStarts, NRVec<int>& vnEnds, int nMinLength) const {
  vnStarts.SetSize(0);
  vnEnds.SetSize(0);
  if (!IsValid()) return 0;
  nMinLength = std::max(nMinLength, 1);
  for (int i = 0; i < nn;) {
    int j = i + 1;
    while (j < nn && v[j] == v[i]) ++j;
    if (j - i >= nMinLength) {
      vnStarts.Append(i);
      vnEnds.Append(j);
    }
    i = j;
  }
  return vnStarts.size();
}

template <class T>
int NRVec<T>::FrequencyCount(NRVec<unsigned int>& vnCounts, unsigned int nBins, double dStart,
                             double dInc) const {
  if constexpr (!kOrdered) {
    (void)vnCounts, (void)nBins, (void)dStart, (void)dInc;
    return -1;
  } else {
    if (dInc == 0.0 || !std::isfinite(dStart) || !std::isfinite(dInc)) return -1;
    if (nBins > static_cast<unsigned int>(std::numeric_limits<int>::max())) return -1;
    vnCounts.SetSize(static_cast<int>(nBins));
    return kernels::frequency_count(v, v ? nn : 0, vnCounts.Data(), nBins, dStart, dInc);
  }
}

template <class T>
bool NRVec<T>::GetSubVector(NRVec& vOut, int nFirst, int nLast) const {
  if (!ResolveRange(nFirst, nLast)) return false;
  NRVec part(v + nFirst, nLast - nFirst + 1);
  vOut = part;
  return true;
}

template <class T>
bool NRVec<T>::SetSubVector(const NRVec& vIn, int nAt) {
  if (!IsValid() || !vIn.IsValid() || nAt < 0 || nAt >= nn) return false;
  const int n = std::min(vIn.nn, nn - nAt);
  std::memmove(v + nAt, vIn.v, static_cast<std::size_t>(n) * sizeof(T));
  return true;
}

template <class T>
bool NRVec<T>::IsOrdered(bool bAscending, bool bStrict) const {
  if constexpr (!kOrdered) {
    (void)bAscending, (void)bStrict;
    return false;
  } else {
    if (!IsValid()) return false;
    for (int i = 1; i < nn; ++i) {
      const T a = bAscending ? v[i - 1] : v[i];
      const T b = bAscending ? v[i] : v[i - 1];
      if (bStrict ? !(a < b) : (b < a)) return false;
    }
    return true;
  }
}

template <class T>
bool NRVec<T>::Replace(double dThreshold, double dReplace, unsigned int nFlags, const double* pOther) {
  if (!IsValid()) return false;
  NRMat<T> row(1, nn, v);
  return row.Replace(dThreshold, dReplace, nFlags, pOther);
}

template <class T>
int NRVec<T>::Count(double dValue, int nCondition) const {
  if (!IsValid()) return -1;
  const NRMat<T> row(1, nn, v);
  return row.Count(dValue, nCondition);
}

template <class T>
bool NRVec<T>::SortSubgroups(const NRVec<int>& vnSizes, bool bAscending) {
  if (!kOrdered || !IsValid() || !vnSizes.IsValid()) return false;
  long total = 0;
  for (int g = 0; g < vnSizes.size(); ++g) {
    if (vnSizes[g] < 0) return false;
    total += vnSizes[g];
  }
  if (total != nn) return false;
  for (int g = 0, start = 0; g < vnSizes.size(); start += vnSizes[g++])
    if (vnSizes[g] > 1 && !Sort(bAscending, start, start + vnSizes[g] - 1)) return false;
  return true;
}

template <class T>
bool NRVec<T>::ReorderSubgroups(NRVec<int>& vnSizes, const NRVec<unsigned int>& vnOrder) {
  if (!IsValid() || !vnSizes.IsValid() || !vnOrder.IsValid() || vnOrder.size() != vnSizes.size())
    return false;
  const int groups = vnSizes.size();
  NRVec<int> starts(groups);
  long total = 0;
  for (int g = 0; g < groups; ++g) {
    if (vnSizes[g] < 0) return false;
    starts[g] = static_cast<int>(total);
    total += vnSizes[g];
  }
  if (total != nn) return false;
  NRVec<int> newSizes(vnSizes);
  if (!newSizes.Reorder(vnOrder)) return false;  // also proves vnOrder a permutation
  const NRVec old(*this);
  for (int k = 0, out = 0; k < groups; ++k) {
    const int g = static_cast<int>(vnOrder[k]);
    std::memcpy(v + out, old.v + starts[g], static_cast<std::size_t>(vnSizes[g]) * sizeof(T));
    out += vnSizes[g];
  }
  vnSizes = newSizes;
  return true;
}

template <class T>
SumOf<T> NRVec<T>::Sum() const {
  SumOf<T> s{};
  for (int i = 0; i < nn && v; ++i)
    if (!is_missing(v[i])) s = s + widen(v[i]);
  return s;
}

template <class T>
SumOf<T> NRVec<T>::Mean() const {
  int n = 0;
  for (int i = 0; i < nn && v; ++i) n += !is_missing(v[i]);
  if (n == 0) return missing_sum<T>();
  return Sum() * (1.0 / n);
}

template <class T>
SumOf<T> NRVec<T>::DotProduct(const NRVec& other) const {
  if (!IsValid() || !other.IsValid() || other.nn != nn) return missing_sum<T>();
  SumOf<T> s{};
  for (int i = 0; i < nn; ++i) {
    if (is_missing(v[i]) || is_missing(other.v[i])) return missing_sum<T>();
    s = s + widen(v[i]) * widen(other.v[i]);
  }
  return s;
}

template <class T>
bool NRVec<T>::IsEqual(const NRVec& other, double dTolerance) const {
  if (!IsValid() || !other.IsValid() || other.nn != nn) return false;
  for (int i = 0; i < nn; ++i)
    if (!near_or_equal(v[i], other.v[i], dTolerance)) return false;
  return true;
}

// ---------------------------------------------------------------------------------------------
// NRMat

template <class T>
void NRMat<T>::BuildRowTable(T* block, int n, int m) {
  for (int i = 0; i < n; ++i) v[i] = block + static_cast<std::size_t>(i) * static_cast<std::size_t>(m);
}

template <class T>
void NRMat<T>::Allocate(int n, int m) {
  nn = mm = 0;
  v = nullptr;
  nStorage = OWNS_ALL;
  if (n < 1 || m < 1) return;
  T** table = allocate_block<T*>(static_cast<std::size_t>(n));
  T* block;
  try {
    block = allocate_block<T>(static_cast<std::size_t>(n) * static_cast<std::size_t>(m));
  } catch (...) {
    std::free(table);
    throw;
  }
  v = table;
  nn = n;
  mm = m;
  BuildRowTable(block, n, m);
}

template <class T>
void NRMat<T>::Adopt(NRMat& other) {
  Cleanup();
  std::swap(nn, other.nn);
  std::swap(mm, other.mm);
  std::swap(v, other.v);
  std::swap(nStorage, other.nStorage);
}

template <class T>
NRMat<T>::NRMat(int n, int m) {
  Allocate(n, m);
}

template <class T>
NRMat<T>::NRMat(const T& a, int n, int m) {
  Allocate(n, m);
  if (v) std::fill(v[0], v[0] + static_cast<std::size_t>(nn) * mm, a);
}

template <class T>
NRMat<T>::NRMat(const T* p, int n, int m) {
  if (!p) return;
  Allocate(n, m);
  if (v) std::memcpy(v[0], p, static_cast<std::size_t>(nn) * mm * sizeof(T));
}

template <class T>
NRMat<T>::NRMat(int n, int m, T* p) {
  nStorage = OWNS_TABLE;
  if (n < 1 || m < 1 || !p) return;
  v = allocate_block<T*>(static_cast<std::size_t>(n));
  nn = n;
  mm = m;
  BuildRowTable(p, n, m);
}

template <class T>
NRMat<T>::NRMat(const NRMat& other) : NRMat(other.IsValid() ? other.v[0] : nullptr, other.nn, other.mm) {}

template <class T>
NRMat<T>::NRMat(NRMat&& other) noexcept : nn(other.nn), mm(other.mm), v(other.v), nStorage(other.nStorage) {
  other.nn = other.mm = 0;
  other.v = nullptr;
  other.nStorage = OWNS_ALL;
}

template <class T>
void NRMat<T>::Cleanup() {
  if (v) {
    if (nStorage == OWNS_ALL) std::free(v[0]);
    if (nStorage == OWNS_ALL || nStorage == OWNS_TABLE) std::free(v);
  }
  nn = mm = 0;
  v = nullptr;
  nStorage = OWNS_ALL;
}

template <class T>
bool NRMat<T>::SetSize(int n, int m, bool bDiscard) {
  if (n == nn && m == mm && v) return true;
  if (n < 1 || m < 1) return false;
  NRMat fresh(n, m);
  if (!bDiscard && IsValid()) {
    const int rows = std::min(n, nn), cols = std::min(m, mm);
    for (int i = 0; i < rows; ++i) std::memcpy(fresh.v[i], v[i], static_cast<std::size_t>(cols) * sizeof(T));
  }
  Adopt(fresh);
  return true;
}

template <class T>
NRMat<T>& NRMat<T>::operator=(const NRMat& other) {
  if (this == &other || !other.IsValid()) return *this;
  if (other.nn != nn || other.mm != mm || !v) SetSize(other.nn, other.mm);
  std::memmove(v[0], other.v[0], static_cast<std::size_t>(nn) * mm * sizeof(T));
  return *this;
}

template <class T>
NRMat<T>& NRMat<T>::operator=(const T& a) {
  if (IsValid()) std::fill(v[0], v[0] + static_cast<std::size_t>(nn) * mm, a);
  return *this;
}

template <class T>
T* NRMat<T>::GetData(int nRow, int nCol) {
  if (!v || nRow < 0 || nCol < 0 || nRow >= nn || nCol >= mm) return nullptr;
  return v[nRow] + nCol;
}

template <class T>
bool NRMat<T>::Transpose() {
  if (!IsValid()) return false;
  if (nn == mm) {
    for (int i = 0; i < nn; ++i)
      for (int j = i + 1; j < mm; ++j) std::swap(v[i][j], v[j][i]);
    return true;
  }
  if (nStorage != OWNS_ALL && nStorage != OWNS_TABLE) return false;
  const NRMat copy(*this);
  T* block = v[0];
  T** table = allocate_block<T*>(static_cast<std::size_t>(mm));
  std::free(v);
  v = table;
  std::swap(nn, mm);
  BuildRowTable(block, nn, mm);
  for (int i = 0; i < nn; ++i)
    for (int j = 0; j < mm; ++j) v[i][j] = copy.v[j][i];
  return true;
}

template <class T>
bool NRMat<T>::GetSubMatrix(NRMat& mOut, int nFirstCol, int nLastCol, int nFirstRow, int nLastRow) const {
  if (!IsValid()) return false;
  if (nLastCol == -1) nLastCol = mm - 1;
  if (nLastRow == -1) nLastRow = nn - 1;
  if (nFirstCol < 0 || nFirstCol > nLastCol || nLastCol >= mm) return false;
  if (nFirstRow < 0 || nFirstRow > nLastRow || nLastRow >= nn) return false;
  NRMat part(nLastRow - nFirstRow + 1, nLastCol - nFirstCol + 1);
  for (int i = 0; i < part.nn; ++i)
    std::memcpy(part.v[i], v[nFirstRow + i] + nFirstCol, static_cast<std::size_t>(part.mm) * sizeof(T));
  if (&mOut == this) {
    mOut.Adopt(part);  // a source that is its own target becomes the block
  } else {
    mOut.SetSize(part.nn, part.mm);
    mOut = part;
  }
  return true;
}

template <class T>
bool NRMat<T>::SetSubMatrix(const NRMat& mIn, int nCol, int nRow) {
  if (!IsValid() || !mIn.IsValid() || nCol < 0 || nCol >= mm || nRow < 0 || nRow >= nn) return false;
  const NRMat src(mIn);  // mIn may overlap this matrix
  const int rows = std::min(src.nn, nn - nRow), cols = std::min(src.mm, mm - nCol);
  for (int i = 0; i < rows; ++i)
    std::memcpy(v[nRow + i] + nCol, src.v[i], static_cast<std::size_t>(cols) * sizeof(T));
  return true;
}

template <class T>
bool NRMat<T>::DeleteRow(int nRow) {
  if (!IsValid() || nRow < 0 || nRow >= nn) return false;
  if (nn == 1) {
    Cleanup();
    return true;
  }
  NRMat out(nn - 1, mm);
  for (int i = 0, k = 0; i < nn; ++i)
    if (i != nRow) std::memcpy(out.v[k++], v[i], static_cast<std::size_t>(mm) * sizeof(T));
  Adopt(out);
  return true;
}

template <class T>
bool NRMat<T>::DeleteCol(int nCol) {
  if (!IsValid() || nCol < 0 || nCol >= mm) return false;
  if (mm == 1) {
    Cleanup();
    return true;
  }
  NRMat out(nn, mm - 1);
  for (int i = 0; i < nn; ++i)
    for (int j = 0, k = 0; j < mm; ++j)
      if (j != nCol) out.v[i][k++] = v[i][j];
  Adopt(out);
  return true;
}

template <class T>
bool NRMat<T>::InsertRow(int nRow, const T& fill) {
  if (!IsValid() || nRow < 0 || nRow > nn) return false;
  NRMat out(nn + 1, mm);
  for (int i = 0, k = 0; i <= nn; ++i) {
    if (i == nRow) std::fill(out.v[i], out.v[i] + mm, fill);
    else std::memcpy(out.v[i], v[k++], static_cast<std::size_t>(mm) * sizeof(T));
  }
  Adopt(out);
  return true;
}

template <class T>
bool NRMat<T>::InsertCol(int nCol, const T& fill) {
  if (!IsValid() || nCol < 0 || nCol > mm) return false;
  NRMat out(nn, mm + 1);
  for (int i = 0; i < nn; ++i)
    for (int j = 0, k = 0; j <= mm; ++j) out.v[i][j] = (j == nCol) ? fill : v[i][k++];
  Adopt(out);
  return true;
}

template <class T>
bool NRMat<T>::Pad(int nTop, int nBottom, int nLeft, int nRight, const T& fill) {
  if (!IsValid() || nTop < 0 || nBottom < 0 || nLeft < 0 || nRight < 0) return false;
  const long rows = static_cast<long>(nn) + nTop + nBottom, cols = static_cast<long>(mm) + nLeft + nRight;
  if (rows > std::numeric_limits<int>::max() || cols > std::numeric_limits<int>::max()) return false;
  NRMat out(fill, static_cast<int>(rows), static_cast<int>(cols));
  for (int i = 0; i < nn; ++i)
    std::memcpy(out.v[nTop + i] + nLeft, v[i], static_cast<std::size_t>(mm) * sizeof(T));
  Adopt(out);
  return true;
}

template <class T>
bool NRMat<T>::CopyToVector(NRVec<T>& vOut) const {
  if (!IsValid()) return false;
  const long n = static_cast<long>(nn) * mm;
  if (n > std::numeric_limits<int>::max()) return false;
  NRVec<T> out(v[0], static_cast<int>(n));
  vOut = out;
  return true;
}

// Element (i, i + offset) of the chosen diagonal, rows and columns limited by the shape.
template <class T>
bool NRMat<T>::GetDiagonal(NRVec<T>& vOut, int nOffset, bool bUpper) const {
  if (!IsValid()) return false;
  const int off = bUpper ? nOffset : -nOffset;
  const int r0 = off < 0 ? -off : 0, c0 = off > 0 ? off : 0;
  if (r0 >= nn || c0 >= mm) return false;
  const int len = std::min(nn - r0, mm - c0);
  NRVec<T> d(len);
  for (int k = 0; k < len; ++k) d[k] = v[r0 + k][c0 + k];
  vOut = d;
  return true;
}

template <class T>
bool NRMat<T>::SetDiagonal(const NRVec<T>& vIn, int nOffset, bool bUpper) {
  if (!IsValid() || !vIn.IsValid()) return false;
  const int off = bUpper ? nOffset : -nOffset;
  const int r0 = off < 0 ? -off : 0, c0 = off > 0 ? off : 0;
  if (r0 >= nn || c0 >= mm) return false;
  const int len = std::min({nn - r0, mm - c0, vIn.size()});
  for (int k = 0; k < len; ++k) v[r0 + k][c0 + k] = vIn[k];
  return true;
}

template <class T>
bool NRMat<T>::Multiply(const NRMat& b, NRMat& mOut) const {
  if (!IsValid() || !b.IsValid() || mm != b.nn) return false;
  NRMat out(nn, b.mm);
  for (int i = 0; i < nn; ++i) {
    for (int j = 0; j < b.mm; ++j) {
      T s{};
      for (int k = 0; k < mm; ++k) s = add(s, mul(v[i][k], b.v[k][j]));
      out.v[i][j] = s;
    }
  }
  if (mOut.nn != out.nn || mOut.mm != out.mm || !mOut.v) mOut.SetSize(out.nn, out.mm);
  mOut = out;
  return true;
}

template <class T>
SumOf<T> NRMat<T>::DotProduct(const NRMat& b) const {
  if (!IsValid() || !b.IsValid() || b.nn != nn || b.mm != mm) return missing_sum<T>();
  const NRVec<T> x(static_cast<int>(static_cast<long>(nn) * mm), const_cast<T*>(v[0]));
  const NRVec<T> y(x.size(), const_cast<T*>(b.v[0]));
  return x.DotProduct(y);
}

template <class T>
bool NRMat<T>::Add(const NRMat& b, NRMat& mOut) const {
  if (!IsValid() || !b.IsValid() || b.nn != nn || b.mm != mm) return false;
  NRMat out(*this);
  out.AddEqual(b);
  if (mOut.nn != nn || mOut.mm != mm || !mOut.v) mOut.SetSize(nn, mm);
  mOut = out;
  return true;
}

#define ZOMATH_ELEMENTWISE(NAME, OP)                                                   \
  template <class T>                                                                    \
  bool NRMat<T>::NAME(const NRMat& b) {                                                 \
    if (!IsValid() || !b.IsValid() || b.nn != nn || b.mm != mm) return false;           \
    T* x = v[0];                                                                        \
    const T* y = b.v[0];                                                                \
    for (std::size_t k = 0, n = static_cast<std::size_t>(nn) * mm; k < n; ++k) x[k] = OP(x[k], y[k]); \
    return true;                                                                        \
  }
ZOMATH_ELEMENTWISE(AddEqual, add)
ZOMATH_ELEMENTWISE(SubEqual, sub)
ZOMATH_ELEMENTWISE(MulEqual, mul)
#undef ZOMATH_ELEMENTWISE

template <class T>
void NRMat<T>::Scale(double dFactor) {
  if (!IsValid()) return;
  for (std::size_t k = 0, n = static_cast<std::size_t>(nn) * mm; k < n; ++k) v[0][k] = scale(v[0][k], dFactor);
}

template <class T>
bool NRMat<T>::IsEqual(const NRMat& b, double dTolerance) const {
  if (!IsValid() || !b.IsValid() || b.nn != nn || b.mm != mm) return false;
  for (std::size_t k = 0, n = static_cast<std::size_t>(nn) * mm; k < n; ++k)
    if (!near_or_equal(v[0][k], b.v[0][k], dTolerance)) return false;
  return true;
}

template <class T>
bool NRMat<T>::Replace(double dThreshold, double dReplace, unsigned int nFlags, const double* pOther) {
  if constexpr (!kOrdered) {
    (void)dThreshold, (void)dReplace, (void)nFlags, (void)pOther;
    return false;
  } else {
    if (!IsValid() || nFlags == 0 || nFlags >= REPLACE_FLAGS_END) return false;
    T* x = v[0];
    for (std::size_t k = 0, n = static_cast<std::size_t>(nn) * mm; k < n; ++k) {
      const double value = static_cast<double>(x[k]);
      if (replace_matches(value, dThreshold, nFlags)) {
        double r = pOther ? pOther[k] : dReplace;
        if (nFlags & REPLACE_KEEP_SIGN) r = value < 0 ? -std::fabs(r) : std::fabs(r);
        x[k] = narrow<T>(r);
      } else if (nFlags & REPLACE_UNMATCHED) {
        x[k] = narrow<T>(NANUM);
      }
    }
    return true;
  }
}

template <class T>
int NRMat<T>::Count(double dValue, int nCondition) const {
  if constexpr (!kOrdered) {
    (void)dValue, (void)nCondition;
    return -1;
  } else {
    if (!IsValid() || nCondition < COUNT_GE || nCondition > COUNT_NE) return -1;
    const T* x = v[0];
    long count = 0;
    for (std::size_t k = 0, n = static_cast<std::size_t>(nn) * mm; k < n; ++k)
      count += count_holds(static_cast<double>(x[k]), dValue, nCondition);
    return static_cast<int>(std::min<long>(count, std::numeric_limits<int>::max()));
  }
}

template <class T>
bool NRMat<T>::Sort(int nKeyCol, bool bAscending) {
  if (!kOrdered || !IsValid() || nKeyCol < 0 || nKeyCol >= mm) return false;
  if (nn == 1) return true;
  NRVec<T> keys(nn);
  NRVec<unsigned int> order(nn);
  for (int i = 0; i < nn; ++i) {
    keys[i] = v[i][nKeyCol];
    order[i] = static_cast<unsigned int>(i);
  }
  void* compare = bAscending ? NRVec<T>::CompareFuncAscend() : NRVec<T>::CompareFuncDescend();
  CMergeSort sorter(keys.Data(), nn, static_cast<int>(sizeof(T)), order.Data(),
                    static_cast<int>(sizeof(unsigned int)), nn);
  if (sorter.Sort(0, nn - 1, compare) != 1) return false;
  const NRMat old(*this);
  for (int i = 0; i < nn; ++i)
    std::memcpy(v[i], old.v[order[i]], static_cast<std::size_t>(mm) * sizeof(T));
  return true;
}

#define ZOMATH_NRVEC_INSTANTIATE(T) template class NRVec<T>; template class NRMat<T>;
ZOMATH_NRVEC_TYPES(ZOMATH_NRVEC_INSTANTIATE)
#undef ZOMATH_NRVEC_INSTANTIATE

}  // namespace zomath
