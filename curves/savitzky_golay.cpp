// Savitzky-Golay filtering: local least-squares polynomials over a sliding window, read at the
// window's point as a value or a derivative (Savitzky and Golay, Anal. Chem. 36, 1964).
#include "curves/savitzky_golay.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "curves/window_filters.h"
#include "platform/linalg.h"
#include "platform/utility.h"
#include "platform/workspace.h"
#include "zomath/curves.h"
#include "zomath/regression.h"

namespace zomath::curves {

namespace {

// The power sums, the residuals and the solution carry about 34 digits where the compiler has a
// quadruple type, so that refinement through the double LU reaches the weights' last bit for
// any order whose equations double precision can factorise at all.
#if defined(__SIZEOF_FLOAT128__)
using Wide = __float128;
#else
using Wide = long double;
#endif

Wide magnitude(Wide x) { return x < 0 ? -x : x; }

}  // namespace

int savgol_coefficients(int nLeft, int nRight, int nOrder, int nDeriv, double* c) {
  if (nLeft < 0 || nRight < 0 || nOrder < 0 || nDeriv < 0 || nDeriv > nOrder ||
      static_cast<long long>(nLeft) + nRight < nOrder)
    return kSavgolBadShape;
  const int p = nOrder + 1;
  const long long w = static_cast<long long>(nLeft) + nRight + 1;
  // The same least-squares problem in t = (k - mid) / 2^e, mid the window's middle offset and
  // 2^e at least its half width: t runs symmetrically within [-1, 1], which keeps the equations
  // as well conditioned as they can be, one-sided windows included. With q the fit in t and t0
  // the offset 0, the weights wanted are those of q^(nDeriv)(t0) / nDeriv! times 2^(-e nDeriv):
  // A b = g with g_j = C(j, nDeriv) t0^(j - nDeriv), and c_k = 2^(-e nDeriv) sum b_j t_k^j.
  const Wide halfWidth = Wide(w - 1) / 2;
  int e = 0;
  while (static_cast<Wide>(1LL << e) < halfWidth) ++e;
  const Wide unit = Wide(1) / static_cast<Wide>(1LL << e);
  const Wide mid = Wide(static_cast<long long>(nRight) - nLeft) / 2;
  // Power sums S[q] = sum of t^q over the window: the odd ones vanish, the even ones are twice
  // the sum over t > 0 (and t = 0 adds 1 to S[0]).
  std::vector<Wide> sums = platform::buffer<Wide>(2 * static_cast<std::size_t>(nOrder) + 1);
  for (long long m = 0; m < w; ++m) {
    const Wide u = Wide(m) - halfWidth;
    if (u < 0) continue;
    const Wide t = u * unit;
    Wide tq = 1;
    for (std::size_t q = 0; q < sums.size(); q += 2) {
      sums[q] += u == 0 ? Wide(q == 0 ? 1 : 0) : 2 * tq;
      tq *= t * t;
    }
  }
  std::vector<Wide> g = platform::buffer<Wide>(p);
  const Wide t0 = -mid * unit;
  for (int j = nDeriv; j < p; ++j) {
    Wide v = 1;  // C(j, nDeriv) t0^(j - nDeriv)
    for (int r = 1; r <= j - nDeriv; ++r) v = v * (nDeriv + r) / r * t0;
    g[j] = v;
  }

  std::vector<double> lu = platform::buffer<double>(static_cast<std::size_t>(p) * p);
  for (int i = 0; i < p; ++i)
    for (int j = 0; j < p; ++j) lu[i * p + j] = static_cast<double>(sums[i + j]);
  std::vector<int> pivots = platform::buffer<int>(p);
  platform::NagError fail;
  if (platform::lu_factor(p, p, lu.data(), p, pivots.data(), fail) != 0) return kSavgolSingular;
  // Solve A b = g, then refine: the residual of the wide solution against the wide sums,
  // corrected through the same factors, until the step stops shrinking.
  std::vector<double> rhs = platform::buffer<double>(p);
  std::vector<Wide> b = platform::buffer<Wide>(p);
  Wide lastStep = -1;
  for (int round = 0; round < 12; ++round) {
    for (int i = 0; i < p; ++i) {
      Wide r = g[i];
      for (int j = 0; j < p; ++j) r -= sums[i + j] * b[j];
      rhs[i] = static_cast<double>(r);
    }
    if (platform::lu_solve(p, 1, lu.data(), p, pivots.data(), rhs.data(), 1, fail) != 0)
      return kSavgolSingular;
    Wide step = 0, size = 0;
    for (int j = 0; j < p; ++j) {
      b[j] += rhs[j];
      step = std::max(step, magnitude(rhs[j]));
      size = std::max(size, magnitude(b[j]));
    }
    if (!(size - size == 0)) return kSavgolSingular;
    if (step <= size * Wide(1e-30) || (lastStep >= 0 && step > lastStep / 2)) break;
    lastStep = step;
  }
  // c_k = 2^(-e nDeriv) sum b_j t_k^j. The last correction (rhs), carried to the weights the
  // same way, says how far they may still be off: b itself is poorly determined along the
  // equations' ill-conditioned directions, which the weights hardly see, so it is the weights'
  // change that counts.
  Wide back = 1;
  for (int d = 0; d < nDeriv; ++d) back *= unit;
  Wide largest = 0, change = 0;
  for (int k = -nLeft; k <= nRight; ++k) {
    const Wide t = (k - mid) * unit;
    Wide v = b[p - 1], dv = rhs[p - 1];
    for (int j = p - 2; j >= 0; --j) {
      v = v * t + b[j];
      dv = dv * t + rhs[j];
    }
    largest = std::max(largest, magnitude(v));
    change = std::max(change, magnitude(dv));
    c[k + nLeft] = static_cast<double>(v * back);
  }
  if (!(change <= largest * Wide(kSavgolRefinedTo))) return kSavgolSingular;
  return 0;
}

void correlate(const double* x, std::size_t count, const double* c, std::size_t w, double* out) {
  // Outputs in blocks that stay in the first-level cache, one weight at a time across a block,
  // so that the inner loop runs over contiguous outputs and vectorises.
  constexpr std::size_t kBlock = 256;
  double acc[kBlock];
  for (std::size_t i0 = 0; i0 < count; i0 += kBlock) {
    const std::size_t len = std::min(kBlock, count - i0);
    const double* xb = x + i0;
    const double c0 = c[0];
    for (std::size_t j = 0; j < len; ++j) acc[j] = c0 * xb[j];
    for (std::size_t k = 1; k < w; ++k) {
      const double ck = c[k];
      const double* xk = xb + k;
      for (std::size_t j = 0; j < len; ++j) acc[j] += ck * xk[j];
    }
    std::copy(acc, acc + len, out + i0);
  }
}

namespace {

constexpr int kErrArgument = ZOMATH_ERR_BAD_ARGUMENT;

// The order-m polynomial fitted to y[0..w) at the indices 0..w-1 (zomath_polynomial_fit), or
// its nDeriv-th derivative, at the indices from, from + 1, ... into out[0..count). The fit runs
// in t = (index - centre) / 2^e within [-1, 1], the same polynomial with well-scaled powers;
// derivatives in index units are those in t times 2^(-e nDeriv), exactly. NANUM throughout when
// the fit has no values (too few points that are not NANUM, a NaN, a failed solve).
void end_fit(const double* y, int w, int m, int nDeriv, int from, int count, double* out) {
  if (count <= 0) return;
  const double centre = (w - 1) / 2.0;
  int e = 0;
  while ((1LL << e) < centre) ++e;
  const double unit = std::ldexp(1.0, -e);
  std::vector<double> t = platform::buffer<double>(w);
  for (int i = 0; i < w; ++i) t[i] = (i - centre) * unit;
  std::vector<FitParameter> fit = platform::buffer<FitParameter>(m + 1);
  const int rc = zomath_polynomial_fit(w, t.data(), y, nullptr, m, nullptr, fit.data(), m + 1,
                                       nullptr, nullptr, nullptr, nullptr, nullptr, 0);
  // Coefficients of the derivative: a_j (j + 1) ... (j + nDeriv) for j = 0..m - nDeriv.
  std::vector<double> a = platform::buffer<double>(m + 1);
  bool ok = rc >= 0;
  const double back = std::ldexp(1.0, -e * nDeriv);
  for (int j = 0; ok && j + nDeriv <= m; ++j) {
    const double v = fit[j + nDeriv].value;
    ok = v != NANUM;
    double f = back;
    for (int r = 1; r <= nDeriv; ++r) f *= j + r;
    a[j] = v * f;
  }
  for (int i = 0; i < count; ++i) {
    if (!ok) {
      out[i] = NANUM;
      continue;
    }
    const double at = (from + i - centre) * unit;
    double v = a[m - nDeriv];
    for (int j = m - nDeriv - 1; j >= 0; --j) v = v * at + a[j];
    out[i] = v;
  }
}

int savitzky_golay(const double* pSrc, double* pDst, unsigned int nSize, int nLeft, int nRight,
                   int nOrder, int nDeriv, unsigned int nBoundary) {
  if (!pSrc || !pDst) return ZOMATH_ERR_NULL_POINTER;
  if (nRight < 0) nRight = nLeft;
  if (nLeft < 0 || nOrder < 1 || nDeriv < 0 || nBoundary > kBoundaryZero ||
      (nDeriv != 0 && nOrder < nDeriv))
    return kErrArgument;
  const long long width = static_cast<long long>(nLeft) + nRight + 1;
  if (width - 1 < nOrder || width > nSize) return kErrArgument;
  const int w = static_cast<int>(width);
  const std::ptrdiff_t n = nSize;
  std::vector<double> c = platform::buffer<double>(w);
  if (savgol_coefficients(nLeft, nRight, nOrder, nDeriv, c.data()) != 0) return kSavgolSingular;
  std::vector<double> copy;
  const double* src = unaliased_source(pSrc, pDst, nSize, copy);

  if (nBoundary == kBoundaryShrink) {
    // The first and last windows are fitted whole: with nDeriv 0 the first fit gives outputs
    // 0..nLeft, otherwise 0..nLeft - 1; the last fit gives the last nRight. Both fits count
    // the window's own indices from 0, the same polynomials as on the data's indices.
    const int head = nDeriv == 0 ? nLeft + 1 : nLeft;
    end_fit(src, w, nOrder, nDeriv, 0, head, pDst);
    end_fit(src + (n - w), w, nOrder, nDeriv, nLeft + 1, nRight, pDst + (n - nRight));
    const std::ptrdiff_t inner = n - w + (nDeriv == 0 ? 0 : 1);
    correlate(src + (head - nLeft), static_cast<std::size_t>(inner), c.data(), w, pDst + head);
    return ZOMATH_OK;
  }
  // Padded: every output is the sum over its window; the first nLeft and the last nRight
  // windows read a short stretch of pads and data laid out in one buffer.
  std::vector<double> left = platform::buffer<double>(nLeft);
  std::vector<double> right = platform::buffer<double>(nRight);
  build_pads(src, nSize, static_cast<int>(nBoundary), nLeft, nRight, 2, left.data(), right.data());
  correlate(src, static_cast<std::size_t>(n - w + 1), c.data(), w, pDst + nLeft);
  const std::size_t reach = static_cast<std::size_t>(nLeft) + nRight;
  std::vector<double> edge = platform::buffer<double>(reach + std::max(nLeft, nRight));
  if (nLeft > 0) {
    for (int j = 0; j < nLeft; ++j) edge[j] = left[nLeft - 1 - j];
    std::copy(src, src + reach, edge.begin() + nLeft);
    correlate(edge.data(), nLeft, c.data(), w, pDst);
  }
  if (nRight > 0) {
    std::copy(src + (n - static_cast<std::ptrdiff_t>(reach)), src + n, edge.begin());
    std::copy(right.begin(), right.end(), edge.begin() + reach);
    correlate(edge.data(), nRight, c.data(), w, pDst + (n - nRight));
  }
  return ZOMATH_OK;
}

}  // namespace
}  // namespace zomath::curves

using namespace zomath;

extern "C" int zomath_savitsky_golay(const double* pSrc, double* pDst, unsigned int nSize,
                                     int nLeft, int nRight, int nPolyOrder, int nDeriv,
                                     unsigned int nBoundary) {
  try {
    return curves::savitzky_golay(pSrc, pDst, nSize, nLeft, nRight, nPolyOrder, nDeriv, nBoundary);
  } catch (...) {
    return ZOMATH_ERR_NO_MEMORY;
  }
}

extern "C" int zomath_savitsky_golay_derivative(const double* pX, const double* pY,
                                                double* pDeriv, unsigned int nSize, int nLeft,
                                                int nRight, int nPolyOrder, int nDeriv,
                                                bool bClean) {
  if (!pX || !pY || !pDeriv) return ZOMATH_ERR_NULL_POINTER;
  if (nSize >= 2 && platform::compare_doubles(pX[0], pX[1], '=')) return curves::kSavgolSingular;
  if (nRight == -1) nRight = nLeft;
  if (nSize < 3 || nLeft < 1 || nRight < 1 ||
      static_cast<long long>(nSize) < static_cast<long long>(nLeft) + nRight)
    return ZOMATH_ERR_BAD_ARGUMENT;
  const int rc = zomath_savitsky_golay(pY, pDeriv, nSize, nLeft, nRight, nPolyOrder, nDeriv, 0);
  if (rc != 0) return rc;
  // From coefficients in index units to the derivative in x units: 1 / step^nDeriv, and the
  // factorial that the coefficients leave out. The ends, already true derivatives, take the
  // factorial too.
  const double step = pX[1] - pX[0];
  double scale = std::pow(std::fabs(1 / step), nDeriv);
  for (int r = 2; r <= nDeriv; ++r) scale *= r;
  const bool negate = step < 0 && nDeriv % 2 == 1;
  const bool rescale = platform::compare_doubles(scale, 1.0, '!');
  for (unsigned int i = 0; i < nSize; ++i) {
    if (pDeriv[i] == NANUM) continue;
    if (rescale) pDeriv[i] *= scale;
    if (negate) pDeriv[i] = -pDeriv[i];
  }
  if (bClean) {
    // Every change of sign passes through an exact zero.
    for (unsigned int i = 0; i + 1 < nSize; ++i) {
      const double a = pDeriv[i], b = pDeriv[i + 1];
      if (a != NANUM && b != NANUM && a * b < 0) {
        pDeriv[i + 1] = 0;
        ++i;
      }
    }
  }
  return ZOMATH_OK;
}
