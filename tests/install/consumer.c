/* A plain C host of the installed library: it includes the public headers, passes NANUM
 * through an export, sorts with the library's comparison and releases a block. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <zomath/zomath.h>

static int failures = 0;

static void check(int ok, const char* what) {
  if (!ok) {
    fprintf(stderr, "FAILED: %s\n", what);
    ++failures;
  }
}

int main(void) {
  double values[5] = {3.0, NANUM, -1.0, 2.0, 0.0};
  double missing = NANUM;
  unsigned long long bits;
  void* block;

  memcpy(&bits, &missing, sizeof bits);
  check(bits == 0x81AA74FE1C132C0EULL, "NANUM has its bit pattern");

  check(AnotherDummyFunction(1.0, 2.0, 3.0, 4.0, NANUM) == 10.0 + NANUM, "sum with NANUM");

  /* NANUM is an ordinary tiny negative number to a sort that does not know it. */
  theQuickSort(values, 0, 4, (int)sizeof(double), GetAppropriateCompareAscend(11));
  check(values[0] == -1.0 && values[1] == NANUM && values[2] == 0.0 && values[4] == 3.0,
        "theQuickSort orders NANUM between -1 and 0");
  theMergeSort(values, 0, 4, (int)sizeof(double), GetAppropriateCompareDescend(11));
  check(values[0] == 3.0 && values[4] == -1.0, "theMergeSort descending");

  block = malloc(128);
  zomath_free(block);
  zomath_free(NULL);

  if (failures == 0) printf("C consumer: all checks passed\n");
  return failures == 0 ? 0 : 1;
}
