/* zomath: the spline and scattered-interpolant records, in the form the fitting routines fill
 * (Nag_Spline, comm_struct) and in the form a host keeps (zomath_Spline, zomath_Comm), with the
 * copies between them and the release of their arrays.
 *
 * The copies move words, not contents: array pointers are shared, so the ownership of the
 * arrays moves with the record, and the zomath_free_*_struct exports end it. A host's record
 * starts with null pointers. This header is plain C. */
#ifndef ZOMATH_RECORDS_H
#define ZOMATH_RECORDS_H

#include <stddef.h>

#include "zomath/core.h"

/* A cubic spline in B-spline form as the fitting routines fill it. */
typedef struct Nag_Spline {
  int nKnots;         /* number of knots, the four at each end included */
  double* pKnots;     /* nKnots knots, non-decreasing */
  double* pCoef;      /* nKnots - 4 B-spline coefficients */
  int nLastInterval;  /* knot interval of the last evaluation, where the next search starts */
  int nReserved;      /* 0 */
} Nag_Spline;

/* The host's copy of a Nag_Spline: the same fields in the same order. */
typedef struct zomath_Spline {
  int nKnots;
  double* pKnots;
  double* pCoef;
  int nLastInterval;
  int nReserved;
} zomath_Spline;

/* A two-dimensional scattered-data interpolant (Renka-Cline or modified Shepard) as its
 * construction routine fills it. Every array has its length beside it. */
typedef struct comm_struct {
  int nPoints;        /* 0: number of data points */
  int nMethod;        /* 1: the kind of interpolant, as given to the construction */
  int nQ;             /* 2: points in each local quadratic (modified Shepard) */
  int nW;             /* 3: points in each weight function (modified Shepard) */
  int nCells;         /* 4: cells along each side of the search grid */
  int nTriangles;     /* 5: triangles of the mesh (Renka-Cline) */
  int nIntSize;       /* 6: length of pIntData */
  int nRealSize;      /* 7: length of pRealData */
  int nStatus;        /* 8: 0 once the interpolant is complete */
  int nSpare[6];      /* 9 to 14: 0 */
  int* pIntData;      /* 15: adjacency lists or cell chains */
  double* pRealData;  /* 16: gradients or nodal function coefficients */
  double* pX;         /* 17: nPoints x of the data */
  double* pY;         /* 18: nPoints y of the data */
  int nValues;        /* 19: length of pZ */
  double* pZ;         /* 20: data values */
  double* pBounds;    /* 21: scaling of the domain (x and y minimum, cell sizes, radii) */
  int nBoundsSize;    /* 22: length of pBounds */
} comm_struct;

/* The host's copy of a comm_struct: fields 0 to 16 as there, then fields 19 to 22 of the
 * comm_struct as 17 to 20, and its fields 17 and 18 (the data x and y) as 21 and 22. */
typedef struct zomath_Comm {
  int nPoints;
  int nMethod;
  int nQ;
  int nW;
  int nCells;
  int nTriangles;
  int nIntSize;
  int nRealSize;
  int nStatus;
  int nSpare[6];
  int* pIntData;
  double* pRealData;
  int nValues;
  double* pZ;
  double* pBounds;
  int nBoundsSize;
  double* pX;
  double* pY;
} zomath_Comm;

/* A bicubic spline in B-spline form: knots in x and y and the (nKnotsX - 4) (nKnotsY - 4)
 * coefficients, row by row of x index. */
typedef struct zomath_2dSpline {
  int nKnotsX;
  double* pKnotsX;
  int nKnotsY;
  double* pKnotsY;
  double* pCoef;
} zomath_2dSpline;

/* Field offsets on 64-bit platforms: 32-bit int, 64-bit pointers, natural alignment. */
#if defined(__LP64__) && (defined(__cplusplus) || (defined(__STDC_VERSION__) && __STDC_VERSION__ >= 201112L))
#ifdef __cplusplus
#define ZOMATH_RECORD_ASSERT(cond, what) static_assert(cond, what)
#else
#define ZOMATH_RECORD_ASSERT(cond, what) _Static_assert(cond, what)
#endif
ZOMATH_RECORD_ASSERT(offsetof(Nag_Spline, pKnots) == 8 && offsetof(Nag_Spline, pCoef) == 16 &&
                         offsetof(Nag_Spline, nLastInterval) == 24 &&
                         offsetof(Nag_Spline, nReserved) == 28 && sizeof(Nag_Spline) == 32,
                     "Nag_Spline layout");
ZOMATH_RECORD_ASSERT(offsetof(zomath_Spline, pKnots) == 8 && offsetof(zomath_Spline, pCoef) == 16 &&
                         offsetof(zomath_Spline, nLastInterval) == 24 &&
                         offsetof(zomath_Spline, nReserved) == 28 && sizeof(zomath_Spline) == 32,
                     "zomath_Spline layout");
ZOMATH_RECORD_ASSERT(offsetof(comm_struct, nSpare) == 36 && offsetof(comm_struct, pIntData) == 64 &&
                         offsetof(comm_struct, pRealData) == 72 && offsetof(comm_struct, pX) == 80 &&
                         offsetof(comm_struct, pY) == 88 && offsetof(comm_struct, nValues) == 96 &&
                         offsetof(comm_struct, pZ) == 104 && offsetof(comm_struct, pBounds) == 112 &&
                         offsetof(comm_struct, nBoundsSize) == 120 && sizeof(comm_struct) == 128,
                     "comm_struct layout");
ZOMATH_RECORD_ASSERT(offsetof(zomath_Comm, nSpare) == 36 && offsetof(zomath_Comm, pIntData) == 64 &&
                         offsetof(zomath_Comm, pRealData) == 72 && offsetof(zomath_Comm, nValues) == 80 &&
                         offsetof(zomath_Comm, pZ) == 88 && offsetof(zomath_Comm, pBounds) == 96 &&
                         offsetof(zomath_Comm, nBoundsSize) == 104 && offsetof(zomath_Comm, pX) == 112 &&
                         offsetof(zomath_Comm, pY) == 120 && sizeof(zomath_Comm) == 128,
                     "zomath_Comm layout");
ZOMATH_RECORD_ASSERT(offsetof(zomath_2dSpline, pKnotsX) == 8 && offsetof(zomath_2dSpline, nKnotsY) == 16 &&
                         offsetof(zomath_2dSpline, pKnotsY) == 24 && offsetof(zomath_2dSpline, pCoef) == 32 &&
                         sizeof(zomath_2dSpline) == 40,
                     "zomath_2dSpline layout");
#undef ZOMATH_RECORD_ASSERT
#endif

ZOMATH_EXTERN_C_BEGIN

/* Copy every field between a host's record and the routines' form, in either direction (the
 * host's record is always the first argument). 0, or -11 when either pointer is null. */
ZOMATH_API int copy_spline_to_nag(zomath_Spline* pFrom, Nag_Spline* pTo);
ZOMATH_API int copy_spline_to_zomath(zomath_Spline* pTo, Nag_Spline* pFrom);
ZOMATH_API int copy_comm_to_nag(zomath_Comm* pFrom, comm_struct* pTo);
ZOMATH_API int copy_comm_to_zomath(zomath_Comm* pTo, comm_struct* pFrom);

/* Release the arrays of a record, each only if not null, and set those pointers to null; the
 * other fields stay. A null record is ignored. Spline: coefficients, then knots. Comm:
 * pIntData, pRealData, pZ, pBounds, pX, pY. Two-dimensional spline: coefficients, x knots, y
 * knots. */
ZOMATH_API void zomath_free_spline_struct(zomath_Spline* pSpline);
ZOMATH_API void zomath_free_comm_struct(zomath_Comm* pComm);
ZOMATH_API void zomath_free_2dSpline_struct(zomath_2dSpline* pSpline);

ZOMATH_EXTERN_C_END

#endif /* ZOMATH_RECORDS_H */
