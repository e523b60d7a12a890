/* A C host linked with libzomath before the C math library: sqrt, exp, erf and gamma must still
 * be the C library's (glibc's gamma is ln|Gamma|), while dlvsym(..., "ZOMATH_1") and the unique
 * names reach the library's own versions. The host also defines next and draw of its own, names
 * the library exports only as hidden versions: its definitions win and the link succeeds. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <math.h>
#include <stdio.h>

#include <zomath/zomath.h>

static int failures = 0;

static void check(int ok, const char* what) {
  if (!ok) {
    fprintf(stderr, "FAILED: %s\n", what);
    ++failures;
  }
}

static int close_to(double a, double b) { return fabs(a - b) <= 1e-15 * fabs(b); }

/* The host's own next and draw, with signatures unlike the library's. */
int next(void) { return 41; }
const char* draw(void) { return "host"; }

typedef double (*real_fn)(double);
typedef double (*next_fn)(int*);
typedef double (*draw_fn)(int);
typedef d_complex (*complex_fn)(d_complex);

int main(int argc, char** argv) {
  /* volatile: the compiler must call the functions, not fold them. */
  volatile double two = 2.0, one = 1.0, half = 0.5, five = 5.0;
  void* lib;
  real_fn f;
  complex_fn g;
  d_complex minus_four = {-4.0, 0.0}, root;
  next_fn own_next;
  draw_fn own_draw;
  int idum = -3;
  double first;

  check(close_to(sqrt(two), 1.4142135623730951), "sqrt is the C library's");
  check(close_to(exp(one), 2.718281828459045), "exp is the C library's");
  check(close_to(erf(half), 0.5204998778130465), "erf is the C library's");
  check(close_to(gamma(five), 3.1780538303479458), "gamma is the C library's ln|Gamma|");

  /* The unique names, linked directly. */
  check(close_to(gamma_fn(5.0), 24.0), "gamma_fn is Gamma");
  check(close_to(ADummyFunction(0.5), 0.5204998778130465), "ADummyFunction is erf");
  check(close_to(erfc_fn(0.5), 0.4795001221869535), "erfc_fn is erfc");
  check(next() == 41 && draw()[0] == 'h', "next and draw are the host's own");
  check(zomath_draw(3) == 0.0, "zomath_draw seeds");
  first = zomath_draw(0);
  check(first > 0.0 && first < 1.0, "zomath_draw draws");
  root = sqrtz(minus_four);
  check(root.re == 0.0 && root.im == 2.0, "sqrtz(-4) = 2i");

  if (argc < 2) {
    fprintf(stderr, "usage: %s <path of libzomath.so>\n", argv[0]);
    return 2;
  }
  lib = dlopen(argv[1], RTLD_NOW);
  check(lib != NULL, "dlopen libzomath");
  if (lib != NULL) {
    f = (real_fn)dlvsym(lib, "gamma", "ZOMATH_1");
    check(f != NULL && close_to(f(5.0), 24.0), "dlvsym gamma@ZOMATH_1 is Gamma");
    f = (real_fn)dlvsym(lib, "erf", "ZOMATH_1");
    check(f != NULL && close_to(f(0.5), 0.5204998778130465), "dlvsym erf@ZOMATH_1 is erf");
    f = (real_fn)dlvsym(lib, "erfc", "ZOMATH_1");
    check(f != NULL && close_to(f(0.5), 0.4795001221869535), "dlvsym erfc@ZOMATH_1 is erfc");
    g = (complex_fn)dlvsym(lib, "sqrt", "ZOMATH_1");
    check(g != NULL && g(minus_four).im == 2.0, "dlvsym sqrt@ZOMATH_1 is the complex root");
    g = (complex_fn)dlvsym(lib, "exp", "ZOMATH_1");
    check(g != NULL && close_to(g(minus_four).re, exp(-4.0)), "dlvsym exp@ZOMATH_1 is complex");
    own_next = (next_fn)dlvsym(lib, "next", "ZOMATH_1");
    own_draw = (draw_fn)dlvsym(lib, "draw", "ZOMATH_1");
    check(own_next != NULL && own_draw != NULL, "dlvsym finds next@ZOMATH_1 and draw@ZOMATH_1");
    if (own_next != NULL && own_draw != NULL) {
      /* Seeding from 3 through either name gives the stream zomath_draw(3) gave. */
      check(own_draw(3) == 0.0 && own_draw(0) == first, "draw@ZOMATH_1 is zomath_draw");
      first = own_next(&idum);
      check(first > 0.0 && first < 1.0 && idum == 1, "next@ZOMATH_1 seeds from a negative index");
    }
    /* An unversioned lookup through the library's handle never finds the hidden versions. */
    check(dlsym(lib, "sqrt") != (void*)sqrtz, "dlsym(sqrt) is not the complex root");
    check(dlsym(lib, "gamma") != (void*)gamma_fn, "dlsym(gamma) is not Gamma");
    dlclose(lib);
  }

  if (failures == 0) printf("shadowed names: all checks passed\n");
  return failures == 0 ? 0 : 1;
}
