/* zomath: call conventions shared by every export.
 *
 * Missing data travels inside arrays as NANUM, an ordinary finite double compared by plain
 * equality. Exports return 0 for success and a negative code for failure; a scalar that cannot
 * be computed is NANUM. Blocks that the library allocates for the caller are released with
 * zomath_free. This header is plain C. */
#ifndef ZOMATH_CORE_H
#define ZOMATH_CORE_H

#if defined(_WIN32)
#  define ZOMATH_API __declspec(dllimport)
#else
#  define ZOMATH_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
#  define ZOMATH_EXTERN_C_BEGIN extern "C" {
#  define ZOMATH_EXTERN_C_END }
#else
#  define ZOMATH_EXTERN_C_BEGIN
#  define ZOMATH_EXTERN_C_END
#endif

/* The missing value: -1.23456789e-300, bit pattern 0x81AA74FE1C132C0E. */
#define NANUM (-1.23456789e-300)

/* A complex number, real part then imaginary part. Missing when either half is NANUM. */
typedef struct d_complex {
  double re;
  double im;
} d_complex;

/* Thrown (as a C++ enumeration value) when memory cannot be had. */
typedef enum ZOMATH_ERROR { ZOMATH_ERROR_NO_MEMORY = 31000 } ZOMATH_ERROR;

/* Return codes shared by many families. A code means what the export's documentation says;
 * these names are the library's habits, not one global enumeration. A positive result of a
 * thin wrapper is the failure code of the routine it forwards to. */
enum {
  ZOMATH_OK = 0,
  ZOMATH_ERR_NOT_FOUND = -1,          /* not found; size test of a thin wrapper failed */
  ZOMATH_ERR_TOO_FEW_ITEMS = -2,      /* too few curve points or items */
  ZOMATH_ERR_ROW_NULL = -3,           /* null argument of a row statistic; failed stretch */
  ZOMATH_ERR_SIZE = -5,               /* non-positive size */
  ZOMATH_ERR_TOO_FEW_FOR_RANGE = -7,  /* too few points for a derivative or a range */
  ZOMATH_ERR_NULL_OUTPUT = -8,        /* null output array */
  ZOMATH_ERR_NULL_POINTER = -11,      /* null pointer argument */
  ZOMATH_ERR_TOO_FEW_POINTS = -15,    /* too few points for the method */
  ZOMATH_ERR_NOT_MONOTONIC = -17,     /* x not strictly monotonic */
  ZOMATH_ERR_BAD_ARGUMENT = -18,      /* bad size or value of an argument */
  ZOMATH_ERR_SORT_FAILED = -65,       /* a working sort could not run */
  ZOMATH_ERR_DENSITY_PARAM = -110,    /* bad parameter of a density; too few points */
  ZOMATH_ERR_OPTION = -151,           /* option or value out of range */
  ZOMATH_ERR_NULL_DATA = -155,        /* null data in a statistics export */
  ZOMATH_ERR_EMPTY_DATA = -156,       /* empty data in a statistics export */
  ZOMATH_ERR_TOO_FEW_DATA = -165,     /* too few data for the statistic */
  ZOMATH_ERR_NO_MEMORY = -166,        /* memory not available; sample too large */
  ZOMATH_ERR_SIZE_MISMATCH = -175,    /* two samples differ in size */
  ZOMATH_ERR_DISTRIBUTION_TABLE = -220 /* not a valid distribution table */
};

ZOMATH_EXTERN_C_BEGIN

/* Releases a block that the library allocated for the caller. The caller's pointer keeps its
 * value; a null pointer is accepted and ignored. */
ZOMATH_API void zomath_free(void* p);

/* Returns a + b + c + d + e: a probe that a host can call to check the binding. */
ZOMATH_API double AnotherDummyFunction(double a, double b, double c, double d, double e);

ZOMATH_EXTERN_C_END

#endif /* ZOMATH_CORE_H */
