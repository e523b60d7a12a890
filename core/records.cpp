// The record bridge: field-by-field copies between the host's records and the routines' form,
// and the release of the arrays they carry.
#include "platform/utility.h"
#include "zomath/records.h"

namespace {

// Releases one array of a record and clears the record's pointer.
template <class T>
void release(T*& p) {
  if (!p) return;
  void* block = p;
  zomath::platform::release_block(&block);
  p = nullptr;
}

template <class Dst, class Src>
void copy_spline(Dst& to, const Src& from) {
  to.nKnots = from.nKnots;
  to.pKnots = from.pKnots;
  to.pCoef = from.pCoef;
  to.nLastInterval = from.nLastInterval;
  to.nReserved = from.nReserved;
}

// The two forms share the names of their fields; only the order differs.
template <class Dst, class Src>
void copy_comm(Dst& to, const Src& from) {
  to.nPoints = from.nPoints;
  to.nMethod = from.nMethod;
  to.nQ = from.nQ;
  to.nW = from.nW;
  to.nCells = from.nCells;
  to.nTriangles = from.nTriangles;
  to.nIntSize = from.nIntSize;
  to.nRealSize = from.nRealSize;
  to.nStatus = from.nStatus;
  for (int k = 0; k < 6; ++k) to.nSpare[k] = from.nSpare[k];
  to.pIntData = from.pIntData;
  to.pRealData = from.pRealData;
  to.pX = from.pX;
  to.pY = from.pY;
  to.nValues = from.nValues;
  to.pZ = from.pZ;
  to.pBounds = from.pBounds;
  to.nBoundsSize = from.nBoundsSize;
}

}  // namespace

extern "C" {

int copy_spline_to_nag(zomath_Spline* pFrom, Nag_Spline* pTo) {
  if (!pFrom || !pTo) return ZOMATH_ERR_NULL_POINTER;
  copy_spline(*pTo, *pFrom);
  return 0;
}

int copy_spline_to_zomath(zomath_Spline* pTo, Nag_Spline* pFrom) {
  if (!pFrom || !pTo) return ZOMATH_ERR_NULL_POINTER;
  copy_spline(*pTo, *pFrom);
  return 0;
}

int copy_comm_to_nag(zomath_Comm* pFrom, comm_struct* pTo) {
  if (!pFrom || !pTo) return ZOMATH_ERR_NULL_POINTER;
  copy_comm(*pTo, *pFrom);
  return 0;
}

int copy_comm_to_zomath(zomath_Comm* pTo, comm_struct* pFrom) {
  if (!pFrom || !pTo) return ZOMATH_ERR_NULL_POINTER;
  copy_comm(*pTo, *pFrom);
  return 0;
}

void zomath_free_spline_struct(zomath_Spline* pSpline) {
  if (!pSpline) return;
  release(pSpline->pCoef);
  release(pSpline->pKnots);
}

void zomath_free_comm_struct(zomath_Comm* pComm) {
  if (!pComm) return;
  release(pComm->pIntData);
  release(pComm->pRealData);
  release(pComm->pZ);
  release(pComm->pBounds);
  release(pComm->pX);
  release(pComm->pY);
}

void zomath_free_2dSpline_struct(zomath_2dSpline* pSpline) {
  if (!pSpline) return;
  release(pSpline->pCoef);
  release(pSpline->pKnotsX);
  release(pSpline->pKnotsY);
}

}  // extern "C"
