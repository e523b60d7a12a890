// NRVec<T> and NRMat<T>: the working containers of the library.
//
// A container either owns its storage or wraps a caller's array without copying. Exports wrap
// what they are given and keep their working storage in owning containers, which free it on
// every way out. Storage comes from std::malloc, so a detached block can be handed to a caller
// and released with zomath_free. Allocation failure throws ZOMATH_ERROR_NO_MEMORY (31000).
//
// Instantiated (in nrvec.cpp) for double, int, unsigned int, char, unsigned short, float,
// unsigned char and d_complex. Members that need an order (minimum, sort, median) answer as
// invalid for d_complex. Arithmetic on double follows the NANUM rules of core/numeric.h.
#pragma once

#include <type_traits>

#include "core/complex_ops.h"
#include "core/numeric.h"
#include "zomath/core.h"

namespace zomath {

template <class T>
class NRMat;

// Conditions of Count, as for zomath_count.
enum CountCondition {
  COUNT_GE = 0, COUNT_GT = 1, COUNT_LE = 2, COUNT_LT = 3, COUNT_EQ = 4, COUNT_NE = 5
};

// Bits of Replace, as for zomath_replace_data_in_vector.
enum ReplaceFlags : unsigned int {
  REPLACE_LESS = 1,         // match x < t
  REPLACE_EQUAL = 2,        // match x == t
  REPLACE_GREATER = 4,      // match x > t
  REPLACE_ABSOLUTE = 8,     // compare |x| against |t|
  REPLACE_KEEP_SIGN = 16,   // write +|r|, or -|r| where x < 0
  REPLACE_UNMATCHED = 32,   // an element that doesn't match becomes NANUM
  REPLACE_FLAGS_END = 64
};

// The type a sum of T is accumulated and returned in.
template <class T>
using SumOf = std::conditional_t<std::is_same_v<T, d_complex>, d_complex, double>;

template <class T>
class NRVec {
public:
  static constexpr bool kOrdered = !std::is_same_v<T, d_complex>;

  NRVec() = default;
  explicit NRVec(int n);                 // n elements, uninitialised; n < 1 gives an empty vector
  NRVec(const T& a, int n);              // n copies of a
  NRVec(const T* p, int n);              // owning copy of n elements (empty for a null p)
  NRVec(int n, T* p)                     // wraps p without copy or check; IsValid tells
      : nn(n), v(p), bWrapped(true) {}
  NRVec(const NRVec& other);             // deep copy
  NRVec(NRVec&& other) noexcept;         // takes the storage over
  ~NRVec() { Cleanup(); }

  // Self-assignment does nothing. A source no longer than this vector lowers nn and keeps the
  // block (writing through a wrapped vector into its array); a longer one goes through SetSize.
  NRVec& operator=(const NRVec& other);
  NRVec& operator=(const T& a);          // fills

  T& operator[](int i) { return v[i]; }
  const T& operator[](int i) const { return v[i]; }
  int size() const { return nn; }
  T* Data() { return v; }
  const T* Data() const { return v; }
  bool IsWrapped() const { return bWrapped; }
  bool IsValid(bool bCheckMemory = false) const {
    (void)bCheckMemory;
    return nn > 0 && v != nullptr;
  }

  // Drops the current storage and takes p: as a view (bWrap) or owned (p from std::malloc).
  void AttachMemory(T* p, int n, bool bWrap);
  // Lets go of the storage and returns it; the vector is empty afterwards. An owned block now
  // belongs to the caller (release with std::free or zomath_free).
  T* DetachMemory();
  void Cleanup();                        // back to the empty, owning state
  // Nothing when n equals the size; else fresh uninitialised storage of n elements (owning,
  // old contents lost). n < 1 leaves the vector empty.
  void SetSize(int n);

  // Smallest and largest non-missing values of nFirst..nLast (nLast -1: the last element), ties
  // to the first position. Returns -1 for an invalid vector, a bad range or an unordered type;
  // else the count of non-missing elements, writing the outputs only when it is not 0.
  int GetMinMax(T* pMin, T* pMax, int* pnIndexMin, int* pnIndexMax, int nFirst = 0, int nLast = -1,
                const T* pMissing = nullptr) const;

  // In place, element by element; NANUM rules for double. Nothing on an invalid vector.
  NRVec& operator-=(const T& x);
  NRVec& operator/=(const T& x);
  void Scale(double dFactor);
  bool Add(const NRVec& other, double dFactor = 1.0);  // this += dFactor * other; sizes equal
  bool Add(const T& x);                                // this += x

  // Sorts nFirst..nLast (nLast -1: the last) with CQSort. False for an invalid vector, a bad
  // range or an unordered type; true without work for a single element.
  bool Sort(bool bAscending = true, int nFirst = 0, int nLast = -1);
  static void* CompareFuncAscend();
  static void* CompareFuncDescend();

  // As zomath_get_median_in_vector: 0, or -18 for an invalid vector, an unordered type or data
  // holding NaN. NANUM is not removed. Throws ZOMATH_ERROR when the working copy can't be had.
  int GetMedian(double* pMedian) const;

  // Element k becomes old element vnPermutation[k]. False unless both are valid, of equal size,
  // and the indices are a true permutation.
  bool Reorder(const NRVec<unsigned int>& vnPermutation);

  void Append(const T& x);
  void Append(const NRVec& other);
  bool InsertAt(int nIndex, const T& x, int nCount = 1);  // 0 <= nIndex <= size
  bool RemoveAt(int nIndex, int nCount = 1);              // removes what lies in range
  int Find(const T& x, int nStart = 0) const;             // first index >= nStart, or -1
  // Maximal runs of equal consecutive elements at least nMinLength long: starts and exclusive
  // ends. Returns the number of runs.
  int FindEqualSegments(NRVec<int>& vnStarts, NRVec<int>& vnEnds, int nMinLength = 2) const;
  // Counts of the elements in nBins bins of width dInc from dStart (bins as nice_bin_index
  // gives them; elements outside and missing ones are dropped). 0, or -1 for dInc of 0, a
  // non-finite start or increment, or an unordered type.
  int FrequencyCount(NRVec<unsigned int>& vnCounts, unsigned int nBins, double dStart,
                     double dInc) const;
  bool GetSubVector(NRVec& vOut, int nFirst, int nLast = -1) const;  // nLast -1: the last
  bool SetSubVector(const NRVec& vIn, int nAt);  // copies the part of vIn that fits from nAt
  bool IsOrdered(bool bAscending = true, bool bStrict = false) const;
  // As NRMat::Replace on this vector seen as one row.
  bool Replace(double dThreshold, double dReplace, unsigned int nFlags,
               const double* pOther = nullptr);
  int Count(double dValue, int nCondition) const;  // -1 for an invalid vector or condition
  // Consecutive groups of the given sizes, which must add up to the size: sort each group,
  // or rearrange whole groups so that new group k is old group vnOrder[k] (sizes follow).
  bool SortSubgroups(const NRVec<int>& vnSizes, bool bAscending = true);
  bool ReorderSubgroups(NRVec<int>& vnSizes, const NRVec<unsigned int>& vnOrder);

  // Sum and mean of the non-missing elements (NANUM for double, either half NANUM for
  // complex). Mean is NANUM when there is none.
  SumOf<T> Sum() const;
  SumOf<T> Mean() const;
  // Sum of products; NANUM when any term is missing (double). Sizes must agree, else NANUM.
  SumOf<T> DotProduct(const NRVec& other) const;
  template <class F>
  void FuncByElement(F f) {
    for (int i = 0; i < nn; ++i) v[i] = f(v[i]);
  }
  // Same size and every pair equal or within |a - b| < dTolerance.
  bool IsEqual(const NRVec& other, double dTolerance = 0.0) const;

private:
  void Allocate(int n);
  void Adopt(NRVec& other);  // frees this storage and takes other's, leaving other empty
  bool ResolveRange(int& nFirst, int& nLast) const;

  int nn = 0;
  T* v = nullptr;
  bool bWrapped = false;
};

template <class T>
class NRMat {
public:
  static constexpr bool kOrdered = NRVec<T>::kOrdered;
  enum Storage { OWNS_ALL = 0, OWNS_TABLE = 1, OWNS_NOTHING = 2 };

  NRMat() = default;
  NRMat(int n, int m);                 // uninitialised; n or m < 1 gives an empty matrix
  NRMat(const T& a, int n, int m);     // filled with a
  NRMat(const T* p, int n, int m);     // owning copy (empty for a null p)
  NRMat(int n, int m, T* p);           // wraps p (row-major); empty, still OWNS_TABLE, if invalid
  NRMat(const NRMat& other);           // deep copy; an invalid source gives an empty matrix
  NRMat(NRMat&& other) noexcept;
  ~NRMat() { Cleanup(); }

  // Self-assignment and an invalid source do nothing; a different size reallocates.
  NRMat& operator=(const NRMat& other);
  NRMat& operator=(const T& a);        // fills

  T* operator[](int i) { return v[i]; }
  const T* operator[](int i) const { return v[i]; }
  T* GetData(int nRow, int nCol);      // null when out of range or empty
  T** GetPtrToRows() { return v; }
  int nrows() const { return nn; }
  int ncols() const { return mm; }
  int GetStorage() const { return nStorage; }
  T* Data() { return v ? v[0] : nullptr; }
  const T* Data() const { return v ? v[0] : nullptr; }
  bool IsValid(bool bCheckMemory = false) const {
    (void)bCheckMemory;
    return nn > 0 && mm > 0 && v != nullptr;
  }

  void Cleanup();
  // True at once if the size is unchanged, false if n or m < 1. bDiscard false keeps the
  // overlap of old and new contents. The matrix owns its new storage.
  bool SetSize(int n, int m, bool bDiscard = true);

  // In place; a non-square matrix keeps its block (a wrapped one stays wrapped) and swaps its
  // shape. False for an invalid matrix, or a non-square one that owns no row table.
  bool Transpose();

  // Block copies. A last index of -1 means the last row or column; 0 <= first <= last < size.
  bool GetSubMatrix(NRMat& mOut, int nFirstCol, int nLastCol, int nFirstRow, int nLastRow) const;
  bool SetSubMatrix(const NRMat& mIn, int nCol, int nRow);  // the part of mIn that fits
  bool DeleteRow(int nRow);
  bool DeleteCol(int nCol);
  bool InsertRow(int nRow, const T& fill);  // the new row takes index nRow (0..rows)
  bool InsertCol(int nCol, const T& fill);
  bool Pad(int nTop, int nBottom, int nLeft, int nRight, const T& fill);
  bool CopyToVector(NRVec<T>& vOut) const;  // row-major

  // Diagonal nOffset (0 main; with bUpper, positive above and negative below; bUpper false
  // mirrors the side). The length is what the matrix holds; Set copies what fits.
  bool GetDiagonal(NRVec<T>& vOut, int nOffset = 0, bool bUpper = true) const;
  bool SetDiagonal(const NRVec<T>& vIn, int nOffset = 0, bool bUpper = true);

  // Matrix product this * b into mOut (may alias either). A missing factor makes its term,
  // and so its sum, NANUM.
  bool Multiply(const NRMat& b, NRMat& mOut) const;
  SumOf<T> DotProduct(const NRMat& b) const;        // sum of element products; NANUM rules
  bool Add(const NRMat& b, NRMat& mOut) const;      // element-wise sum into mOut
  bool AddEqual(const NRMat& b);                    // element-wise, same shape
  bool SubEqual(const NRMat& b);
  bool MulEqual(const NRMat& b);                    // element-wise product
  void Scale(double dFactor);
  template <class F>
  void FuncByElement(F f) {
    for (long k = 0, n = static_cast<long>(nn) * mm; k < n; ++k) v[0][k] = f(v[0][k]);
  }
  bool IsEqual(const NRMat& b, double dTolerance = 0.0) const;  // false for invalid ones

  // Replaces matching elements (bits of ReplaceFlags). pOther, when given, holds one
  // replacement value per element instead of dReplace. False for an invalid matrix, flags of
  // 0 or >= 64, or an unordered type.
  bool Replace(double dThreshold, double dReplace, unsigned int nFlags,
               const double* pOther = nullptr);
  bool ReplaceLessThan(double dThreshold, double dReplace) {
    return Replace(dThreshold, dReplace, REPLACE_LESS);
  }
  bool ReplaceGreaterThan(double dThreshold, double dReplace) {
    return Replace(dThreshold, dReplace, REPLACE_GREATER);
  }
  int Count(double dValue, int nCondition) const;  // -1 for an invalid matrix or condition

  // Stable sort of the rows by the values in column nKeyCol; whole rows follow.
  bool Sort(int nKeyCol, bool bAscending = true);

  // Dense linear algebra: NRMat<double> only (defined in core/linalg; for another element
  // type these do not link). NANUM is an ordinary number here.
  //
  // A = Q R: mQ becomes rows by rows orthogonal, mR rows by columns upper trapezoidal. 0, or a
  // code of platform/linalg.h (kLinalgBadArgument for an empty matrix).
  int QR(NRMat& mQ, NRMat& mR) const;
  // Thin SVD through LAPACK, A = U diag(s) VT, k = min(rows, cols): vS gets k values in
  // descending order, mU rows by k, mVT k by cols. The one-argument form gives the values only.
  // 0, or a code of platform/linalg.h.
  int SVD(NRVec<double>& vS, NRMat& mU, NRMat& mVT) const;
  int SVD(NRVec<double>& vS) const;
  // The library's own SVD, in place: this matrix becomes U (rows by cols), vW the cols singular
  // values (unsorted, none negative), mV the cols by cols V, not transposed. With fewer rows
  // than columns the entries beyond the row count are zero: vW's tail and the trailing columns
  // of U and mV. False for an empty matrix; throws the int kSvdNoConvergence (-30001) when a
  // value takes 30 rounds, or when an entry is NaN or infinite.
  bool svdcmp(NRVec<double>& vW, NRMat& mV);
  // x = V diag(1 / w) U' b with this matrix as U (rows by cols) from svdcmp; a w of exactly 0
  // contributes nothing. False for inconsistent sizes.
  bool svbksb(const NRVec<double>& vW, const NRMat& mV, const NRVec<double>& vB,
              NRVec<double>& vX) const;
  // Moore-Penrose pseudo-inverse (cols by rows) from the SVD; singular values at or below the
  // tolerance are dropped (dTolerance <= 0: max(rows, cols) * s_max * 2^-52). 0; 1 for an
  // empty matrix, a failed SVD, or a kept value whose reciprocal would overflow, with mPinv
  // filled with NANUM after the last two.
  int Pinv(NRMat& mPinv, double dTolerance = -1.0) const;

private:
  void Allocate(int n, int m);
  void Adopt(NRMat& other);
  void BuildRowTable(T* block, int n, int m);

  int nn = 0;
  int mm = 0;
  T** v = nullptr;
  int nStorage = OWNS_ALL;
};

// Thrown as a plain int by NRMat::svdcmp when the iteration does not converge.
constexpr int kSvdNoConvergence = -30001;

template <> int NRMat<double>::QR(NRMat<double>& mQ, NRMat<double>& mR) const;
template <> int NRMat<double>::SVD(NRVec<double>& vS, NRMat<double>& mU, NRMat<double>& mVT) const;
template <> int NRMat<double>::SVD(NRVec<double>& vS) const;
template <> bool NRMat<double>::svdcmp(NRVec<double>& vW, NRMat<double>& mV);
template <> bool NRMat<double>::svbksb(const NRVec<double>& vW, const NRMat<double>& mV,
                                       const NRVec<double>& vB, NRVec<double>& vX) const;
template <> int NRMat<double>::Pinv(NRMat<double>& mPinv, double dTolerance) const;

#define ZOMATH_NRVEC_TYPES(X) \
  X(double) X(int) X(unsigned int) X(char) X(unsigned short) X(float) X(unsigned char) X(d_complex)
#define ZOMATH_NRVEC_EXTERN(T) extern template class NRVec<T>; extern template class NRMat<T>;
ZOMATH_NRVEC_TYPES(ZOMATH_NRVEC_EXTERN)
#undef ZOMATH_NRVEC_EXTERN

}  // namespace zomath
