/* zomath: the whole public interface. */
#ifndef ZOMATH_ZOMATH_H
#define ZOMATH_ZOMATH_H

#include "zomath/core.h"
#include "zomath/sort.h"
#include "zomath/vector.h"
#include "zomath/linalg.h"
#include "zomath/records.h"
#include "zomath/scalar.h"
#include "zomath/stats.h"
#include "zomath/regression.h"
#include "zomath/curves.h"
#include "zomath/peaks.h"
#include "zomath/baseline.h"

#endif /* ZOMATH_ZOMATH_H */
