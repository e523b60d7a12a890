// Random variates: the array exports over the platform generators, and the library's own
// shuffled congruential generator.
#include <climits>
#include <cmath>
#include <new>

#include "core/nrvec/nrvec.h"
#include "core/symbol_version.h"
#include "platform/error_record.h"
#include "platform/random.h"
#include "zomath/scalar.h"

namespace {

namespace platform = zomath::platform;
using platform::NagError;

static_assert(ZOMATH_RANDOM_BAD_PARAMETER == platform::kRandomBadParameter &&
              ZOMATH_RANDOM_BAD_TABLE == platform::kRandomBadTable &&
              ZOMATH_RANDOM_NOT_SEMIDEFINITE == platform::kRandomNotPositiveSemidefinite &&
              ZOMATH_RANDOM_NO_CONVERGENCE == platform::kRandomNoConvergence,
              "the public codes are the platform routines' own");

// The frame every array export shares: the size and pointer test, then the routine with a
// fresh error record; memory that cannot be had is ZOMATH_RANDOM_NO_MEMORY.
template <class T, class Routine>
int generate(T* pOut, int nSize, Routine routine) {
  if (!pOut || nSize < 1) return ZOMATH_ERR_OPTION;
  NagError fail;
  try {
    return routine(fail);
  } catch (...) {
    return ZOMATH_RANDOM_NO_MEMORY;
  }
}

}  // namespace

extern "C" {

ZOMATH_API int normrnd(double* pOut, int nSize, double dMean, double dVariance) {
  return generate(pOut, nSize, [&](NagError& f) {
    return platform::random_normal(nSize, dMean, dVariance, pOut, f);
  });
}

ZOMATH_API int unifrnd(double* pOut, int nSize, double dLow, double dHigh) {
  return generate(pOut, nSize, [&](NagError& f) {
    return platform::random_uniform(nSize, dLow, dHigh, pOut, f);
  });
}

ZOMATH_API int betarnd(double* pOut, int nSize, double a, double b) {
  return generate(pOut, nSize,
                  [&](NagError& f) { return platform::random_beta(nSize, a, b, pOut, f); });
}

ZOMATH_API int caurnd(double* pOut, int nSize, double a, double b) {
  return generate(pOut, nSize,
                  [&](NagError& f) { return platform::random_cauchy(nSize, a, b, pOut, f); });
}

ZOMATH_API int gamrnd(double* pOut, int nSize, double a, double b) {
  return generate(pOut, nSize,
                  [&](NagError& f) { return platform::random_gamma(nSize, a, b, pOut, f); });
}

ZOMATH_API int lgsrnd(double* pOut, int nSize, double a, double b) {
  return generate(pOut, nSize,
                  [&](NagError& f) { return platform::random_logistic(nSize, a, b, pOut, f); });
}

ZOMATH_API int lognrnd(double* pOut, int nSize, double a, double b) {
  return generate(pOut, nSize,
                  [&](NagError& f) { return platform::random_lognormal(nSize, a, b, pOut, f); });
}

ZOMATH_API int wblrnd(double* pOut, int nSize, double a, double b) {
  return generate(pOut, nSize,
                  [&](NagError& f) { return platform::random_weibull(nSize, a, b, pOut, f); });
}

ZOMATH_API int exprnd(double* pOut, int nSize, double a) {
  return generate(pOut, nSize,
                  [&](NagError& f) { return platform::random_exponential(nSize, a, pOut, f); });
}

ZOMATH_API int chi2rnd(double* pOut, int nSize, int nDf) {
  return generate(pOut, nSize,
                  [&](NagError& f) { return platform::random_chi_square(nSize, nDf, pOut, f); });
}

ZOMATH_API int trnd(double* pOut, int nSize, int nDf) {
  return generate(pOut, nSize,
                  [&](NagError& f) { return platform::random_student_t(nSize, nDf, pOut, f); });
}

ZOMATH_API int frnd(double* pOut, int nSize, int nDf1, int nDf2) {
  return generate(pOut, nSize, [&](NagError& f) {
    return platform::random_fisher_f(nSize, nDf1, nDf2, pOut, f);
  });
}

ZOMATH_API int trirnd(double* pOut, int nSize, double a, double b, double c) {
  return generate(pOut, nSize, [&](NagError& f) {
    return platform::random_triangular(nSize, a, b, c, pOut, f);
  });
}

ZOMATH_API int binornd(int* pOut, int nSize, int n, double p) {
  return generate(pOut, nSize,
                  [&](NagError& f) { return platform::random_binomial(nSize, n, p, pOut, f); });
}

ZOMATH_API int geornd(int* pOut, int nSize, double p) {
  return generate(pOut, nSize,
                  [&](NagError& f) { return platform::random_geometric(nSize, p, pOut, f); });
}

ZOMATH_API int nbinrnd(int* pOut, int nSize, int n, double p) {
  return generate(pOut, nSize, [&](NagError& f) {
    return platform::random_negative_binomial(nSize, n, p, pOut, f);
  });
}

ZOMATH_API int hygernd(int* pOut, int nSize, int n1, int n2, int n3) {
  return generate(pOut, nSize, [&](NagError& f) {
    return platform::random_hypergeometric(nSize, n1, n2, n3, pOut, f);
  });
}

ZOMATH_API int poissrnd(int* pOut, int nSize, double dLambda) {
  return generate(pOut, nSize, [&](NagError& f) {
    return platform::random_poisson(nSize, dLambda, pOut, f);
  });
}

ZOMATH_API int unidrnd(int* pOut, int nSize, int nLow, int nHigh) {
  return generate(pOut, nSize, [&](NagError& f) {
    return platform::random_uniform_integer(nSize, nLow, nHigh, pOut, f);
  });
}

ZOMATH_API int disrnd(int* pOut, int nSize, double* pProb, bool bCumulative, int nFirst,
                      int nCount) {
  return generate(pOut, nSize, [&](NagError& f) {
    return platform::random_discrete(nSize, pProb, nCount, nFirst, bCumulative, pOut, f);
  });
}

ZOMATH_API int permrnd(int* pOut, int nSize) {
  return generate(pOut, nSize,
                  [&](NagError& f) { return platform::random_permutation(nSize, pOut, f); });
}

ZOMATH_API int mvnrnd(double* pOut, int nRows, int nDim, double* pMean, double* pCov) {
  if (!pOut || !pMean || !pCov || nRows < 1 || nDim < 1 ||
      static_cast<long long>(nRows) * nDim > INT_MAX ||
      static_cast<long long>(nDim) * nDim > INT_MAX)
    return ZOMATH_ERR_OPTION;
  // One round of nDim values for each of nRows * nDim vectors, each round nDim further on.
  return generate(pOut, nRows, [&](NagError& f) {
    return platform::random_multivariate_normal(nRows * nDim, nDim, pMean, pCov, pOut, f);
  });
}

}  // extern "C"

// ---- The own generator ----
//
// Three linear congruential sequences: the first two make each value (x1 + x2 / m2) / m1, the
// third picks which of 97 stored values to hand out next, so that the sequential correlations
// of a single congruential generator are shuffled away (Press, Teukolsky, Vetterling and
// Flannery, Numerical Recipes in C, 1988, ran1).
namespace {

constexpr long kM1 = 259200, kA1 = 7141, kC1 = 54773;
constexpr long kM2 = 134456, kA2 = 8121, kC2 = 28411;
constexpr long kM3 = 243000, kA3 = 4561, kC3 = 51349;
constexpr double kRm1 = 3.858024691358025e-06;  // 1 / 259200
constexpr double kRm2 = 7.437377283274826e-06;  // 1 / 134456
constexpr int kTableSize = 97;

struct OwnGenerator {
  long x1 = 0, x2 = 0, x3 = 0;
  double table[kTableSize] = {};
  bool seeded = false;
};

OwnGenerator g_own;

// a mod m in 0..m-1 whatever the sign of a, so the state never leaves the sequences' ranges.
long modulo(long long a, long m) {
  const long long r = a % m;
  return static_cast<long>(r < 0 ? r + m : r);
}

double combine(const OwnGenerator& g) { return (g.x1 + g.x2 * kRm2) * kRm1; }

void step12(OwnGenerator& g) {
  g.x1 = (kA1 * g.x1 + kC1) % kM1;
  g.x2 = (kA2 * g.x2 + kC2) % kM2;
}

}  // namespace

extern "C" {

ZOMATH_API double zomath_next(int* pnIdum) {
  if (!pnIdum) return NANUM;
  OwnGenerator& g = g_own;
  if (*pnIdum < 0 || !g.seeded) {
    g.x1 = modulo(kA1 * static_cast<long long>(modulo(kC1 - static_cast<long long>(*pnIdum), kM1)) + kC1, kM1);
    g.x2 = g.x1 % kM2;
    g.x1 = (kA1 * g.x1 + kC1) % kM1;
    g.x3 = g.x1 % kM3;
    for (double& slot : g.table) {
      step12(g);
      slot = combine(g);
    }
    g.seeded = true;
    *pnIdum = 1;
  }
  step12(g);
  g.x3 = (kA3 * g.x3 + kC3) % kM3;
  const long j = (kTableSize * g.x3) / kM3;
  if (j < 0 || j >= kTableSize) return -1.0;  // unreachable while the state is in range
  const double value = g.table[j];
  g.table[j] = combine(g);
  return value;
}

ZOMATH_API double zomath_draw(int nSeed) {
  if (nSeed > 0) {
    int idum = -nSeed;
    zomath_next(&idum);
    return 0.0;
  }
  int idum = 1;
  return zomath_next(&idum);
}

ZOMATH_API double zomath_uniform_random_number(int nSeed) {
  const double first = zomath_draw(nSeed);
  try {
    zomath::NRVec<double> dropped(10);
    for (int i = 0; i < 10; ++i) dropped[i] = zomath_draw(0);
  } catch (...) {
    for (int i = 0; i < 10; ++i) zomath_draw(0);
  }
  return first;
}

}  // extern "C"

ZOMATH_EXPORT_SHADOWED(zomath_next, next);
ZOMATH_EXPORT_SHADOWED(zomath_draw, draw);
