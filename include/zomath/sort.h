/* zomath: sorting of untyped arrays by a caller-given comparison, with an optional companion
 * array whose items follow the moves of the main items.
 *
 * A comparison function answers -1 when a sorts before b, 1 when after, 0 when equal. The
 * library's own comparisons treat a NaN as equal to everything. The sorts never read or write
 * outside the given range, whatever the comparison answers. */
#ifndef ZOMATH_SORT_H
#define ZOMATH_SORT_H

#include "zomath/core.h"

ZOMATH_EXTERN_C_BEGIN

typedef int (*zomath_compare_fn)(const void* pA, const void* pB);

/* Sort items of nItemBytes bytes from nFirst to nLast inclusive. The quick form is an
 * introsort (O(n log n) in the worst case); the merge form is stable. Nothing happens for a
 * null array or comparison, nItemBytes < 1, nFirst < 0 or nLast <= nFirst. */
ZOMATH_API void theQuickSort(void* pData, int nFirst, int nLast, int nItemBytes, void* pCompare);
ZOMATH_API void theMergeSort(void* pData, int nFirst, int nLast, int nItemBytes, void* pCompare);

ZOMATH_API int Compare_double_Ascend(const void* pA, const void* pB);
ZOMATH_API int Compare_float_Ascend(const void* pA, const void* pB);
ZOMATH_API int Compare_int_Ascend(const void* pA, const void* pB);
ZOMATH_API int Compare_UINT_Ascend(const void* pA, const void* pB);
ZOMATH_API int Compare_short_Ascend(const void* pA, const void* pB);
ZOMATH_API int Compare_WORD_Ascend(const void* pA, const void* pB);   /* unsigned short */
ZOMATH_API int Compare_char_Ascend(const void* pA, const void* pB);
ZOMATH_API int Compare_BYTE_Ascend(const void* pA, const void* pB);   /* unsigned char */
ZOMATH_API int Compare_double_Descend(const void* pA, const void* pB);
ZOMATH_API int Compare_float_Descend(const void* pA, const void* pB);
ZOMATH_API int Compare_int_Descend(const void* pA, const void* pB);
ZOMATH_API int Compare_UINT_Descend(const void* pA, const void* pB);
ZOMATH_API int Compare_short_Descend(const void* pA, const void* pB);
ZOMATH_API int Compare_WORD_Descend(const void* pA, const void* pB);
ZOMATH_API int Compare_char_Descend(const void* pA, const void* pB);
ZOMATH_API int Compare_BYTE_Descend(const void* pA, const void* pB);

/* The comparison for an element type code: 2, 3 char; 4 unsigned char; 5 short;
 * 6 unsigned short; 8 int; 9 unsigned int; 10 float; 11, 13 double. Null for any other code. */
ZOMATH_API void* GetAppropriateCompareAscend(int nType);
ZOMATH_API void* GetAppropriateCompareDescend(int nType);

ZOMATH_EXTERN_C_END

#ifdef __cplusplus

/* A sorter over a caller's main array and, optionally, a companion array of the same length
 * or shorter. Copies share the caller's arrays. The sorter never throws. */
class ZOMATH_API CZSortBase {
public:
  CZSortBase(void* pMain, int nMainSize, int nMainItemBytes);
  CZSortBase(void* pMain, int nMainSize, int nMainItemBytes, void* pCompanion,
             int nCompanionItemBytes, int nCompanionSize);

  /* Sorts main items nFirst..nLast (inclusive, clamped to the array) by pCompare, carrying the
   * companion items at the same positions along. With bKeepMain the main array is left as it
   * was and only the companion is reordered. Returns 1 when done, 0 on failure: an error
   * remembered from an earlier call, a range wholly outside the array, nFirst > nLast, or no
   * memory for the work block (remembered). Companion positions at or beyond the companion's
   * size take no part; the sorted records that fall there carry zero bytes. */
  int Sort(int nFirst, int nLast, void* pCompare, bool bKeepMain = false);

  bool HasError() const { return m_bError; }

protected:
  virtual void AlgorithmSpecificSort(void* pData, int nFirst, int nLast, int nItemBytes,
                                     void* pCompare) = 0;

public:
  /* Declared after the sort slot, so that a sorter made by zomCreateSorter can be deleted
   * through a CZSortBase pointer. */
  virtual ~CZSortBase() = default;
  CZSortBase(const CZSortBase&) = default;
  CZSortBase& operator=(const CZSortBase&) = default;

protected:

  bool m_bCombined;            /* a work block holding both arrays was built */
  bool m_bError;               /* null main array, or no memory */
  int m_nMainSize;             /* items in the main array */
  int m_nCompanionSize;        /* items in the companion array */
  int m_nCompanionItemBytes;   /* bytes of a companion item */
  int m_nTotalItemBytes;       /* main plus companion item bytes */
  int m_nMainItemBytes;        /* bytes of a main item */
  void* m_pMain;               /* main array, owned by the caller */
  void* m_pCompanion;          /* companion array, owned by the caller, or null */
  void* m_pWork;               /* array the running sort works on */
};

/* Introsort; equal items may change order. */
class ZOMATH_API CQSort : public CZSortBase {
public:
  using CZSortBase::CZSortBase;

protected:
  void AlgorithmSpecificSort(void* pData, int nFirst, int nLast, int nItemBytes,
                             void* pCompare) override;
};

/* Stable merge sort. */
class ZOMATH_API CMergeSort : public CZSortBase {
public:
  using CZSortBase::CZSortBase;

protected:
  void AlgorithmSpecificSort(void* pData, int nFirst, int nLast, int nItemBytes,
                             void* pCompare) override;
};

/* A new CQSort for nAlgorithm 0, a new CMergeSort for any other value; null if no memory.
 * The caller deletes it. */
ZOMATH_API CZSortBase* zomCreateSorter(int nAlgorithm, void* pMain, int nMainSize,
                                       int nMainItemBytes, void* pCompanion,
                                       int nCompanionItemBytes, int nCompanionSize);

#endif /* __cplusplus */

#endif /* ZOMATH_SORT_H */
