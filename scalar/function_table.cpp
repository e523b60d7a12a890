// The named function table: the script language finds a function by name and calls it with an
// array of doubles, which each row's signature kind unpacks into the function's arguments.
#include "scalar/function_table.h"

#include <cctype>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/error_record.h"
#include "platform/quadrature.h"
#include "platform/utility.h"
#include "zomath/scalar.h"

namespace {

using zomath::platform::NagError;

// Function types of the signature kinds; a kind's number is its place in the dispatch below.
using Generic = void (*)();
template <int K> struct Sig;
template <> struct Sig<0> { using F = double (*)(double); };
template <> struct Sig<1> { using F = double (*)(double, double); };
template <> struct Sig<2> { using F = double (*)(double, double, double); };
template <> struct Sig<3> { using F = double (*)(double, double, double, double); };
template <> struct Sig<5> { using F = double (*)(double, int); };
template <> struct Sig<6> { using F = double (*)(int, double, double); };
template <> struct Sig<7> { using F = double (*)(double, int*); };
template <> struct Sig<9> { using F = double (*)(double, int, int*); };
template <> struct Sig<10> { using F = double (*)(double, double, int*); };
template <> struct Sig<11> { using F = double (*)(double, double, double, int*); };
template <> struct Sig<12> { using F = double (*)(double, double, int, int*); };
template <> struct Sig<13> { using F = double (*)(double, double, int, int*); };
template <> struct Sig<14> { using F = double (*)(double, double, int, int*); };
template <> struct Sig<16> { using F = double (*)(int, double, int, int*); };
template <> struct Sig<17> { using F = double (*)(double, double, double, double, int*); };
template <> struct Sig<19> { using F = double (*)(double, double, double, int, int*); };
template <> struct Sig<20> { using F = double (*)(int, int, double, int, int*); };
template <> struct Sig<23> { using F = double (*)(int, int, int, int, int, int*); };
template <> struct Sig<24> { using F = double (*)(int, double, int*); };
template <> struct Sig<25> { using F = double (*)(double, int, int, int*); };
template <> struct Sig<26> { using F = double (*)(double, double, double, int*, int); };

struct Row {
  const char* name;      // script name
  Generic pfn;           // the function, of the type Sig<nSignature>::F
  int nSignature;        // how pArgs is unpacked
  int nCategory;         // ZOMATH_ZT_PLAIN, _CDF, _PDF, _INVERSE
  const char* szArgs;    // argument names shown to the user
  int nArgs;             // arguments passed on, those the kind fixes included
  const char* szCheck;   // validity pattern: 'i' marks an argument that must be whole
  int nReserved;
  double dDefault;       // the value when the validity test fails
};

// A row whose function is checked against its kind at compile time.
template <int K>
Row row(const char* name, typename Sig<K>::F f, int category, const char* args, int count,
        const char* check = nullptr, double fallback = 0.0) {
  return {name, reinterpret_cast<Generic>(f), K, category, args, count, check, 0, fallback};
}

constexpr int P = ZOMATH_ZT_PLAIN, C = ZOMATH_ZT_CDF, D = ZOMATH_ZT_PDF, I = ZOMATH_ZT_INVERSE;

// Sorted by compare_names: the lookup depends on it.
const Row kRows[] = {
    row<0>("airy_ai", airy_ai, P, "x", 1),
    row<0>("airy_ai_deriv", airy_ai_deriv, P, "x", 1),
    row<0>("airy_bi", airy_bi, P, "x", 1),
    row<0>("airy_bi_deriv", airy_bi_deriv, P, "x", 1),
    row<5>("bessel_i_nu", bessel_i_nu, P, "x,nu", 2),
    row<5>("bessel_i_nu_scaled", bessel_i_nu_scaled, P, "x,nu", 2),
    row<0>("bessel_i0", bessel_i0, P, "x", 1),
    row<0>("bessel_i0_scaled", bessel_i0_scaled, P, "x", 1),
    row<0>("bessel_i1", bessel_i1, P, "x", 1),
    row<0>("bessel_i1_scaled", bessel_i1_scaled, P, "x", 1),
    row<0>("bessel_j0", bessel_j0, P, "x", 1),
    row<0>("bessel_j1", bessel_j1, P, "x", 1),
    row<5>("bessel_k_nu", bessel_k_nu, P, "x,nu", 2),
    row<5>("bessel_k_nu_scaled", bessel_k_nu_scaled, P, "x,nu", 2),
    row<0>("bessel_k0", bessel_k0, P, "x", 1),
    row<0>("bessel_k0_scaled", bessel_k0_scaled, P, "x", 1),
    row<0>("bessel_k1", bessel_k1, P, "x", 1),
    row<0>("bessel_k1_scaled", bessel_k1_scaled, P, "x", 1),
    row<0>("bessel_y0", bessel_y0, P, "x", 1),
    row<0>("bessel_y1", bessel_y1, P, "x", 1),
    row<19>("betacdf", betacdf, C, "x,a,b", 5),
    row<11>("betainv", betainv, I, "p,a,b", 4),
    row<11>("betapdf", betapdf, D, "x,a,b", 4),
    row<20>("binocdf", binocdf, C, "k,n,p", 5),
    row<11>("bivarnormcdf", bivarnormcdf, C, "x,y,corre", 4),
    row<11>("cauchypdf", cauchypdf, D, "x,a,b", 4),
    row<13>("chi2cdf", chi2cdf, C, "x,df", 4),
    row<10>("chi2inv", chi2inv, I, "p,df", 3),
    row<0>("cos_integral", cos_integral, P, "x", 1),
    row<0>("cumul_normal", cumul_normal, P, "x", 1),
    row<0>("cumul_normal_complem", cumul_normal_complem, P, "x", 1),
    row<1>("elliptic_integral_rc", elliptic_integral_rc, P, "x,y", 2),
    row<2>("elliptic_integral_rd", elliptic_integral_rd, P, "x,y,z", 3),
    row<2>("elliptic_integral_rf", elliptic_integral_rf, P, "x,y,z", 3),
    row<3>("elliptic_integral_rj", elliptic_integral_rj, P, "x,y,z,r", 4),
    row<0>("erf", ADummyFunction, P, "x", 1),
    row<0>("erfc", erfc_fn, P, "x", 1),
    row<0>("erfcinv", erfcinv, P, "dy", 1),
    row<0>("erfcx", erfcx, P, "x", 1),
    row<0>("erfinv", erfinv, P, "dy", 1),
    row<0>("exp_integral", exp_integral, P, "x", 1),
    row<10>("exppdf", exppdf, D, "x,mu", 3),
    row<19>("fcdf", fcdf, C, "f,ndf,fdf", 5),
    row<11>("finv", finv, I, "p,df1,df2", 5),
    row<0>("fresnel_c", fresnel_c, P, "x", 1),
    row<0>("fresnel_s", fresnel_s, P, "x", 1),
    row<19>("gamcdf", gamcdf, C, "g,a,b", 5),
    row<11>("gaminv", gaminv, I, "p,a,b", 4),
    row<0>("gamma", gamma_fn, P, "x", 1),
    row<11>("gampdf", gampdf, D, "x,a,b", 4),
    row<23>("hygecdf", hygecdf, C, "k,m,n,l", 6),
    row<1>("incomplete_gamma", incomplete_gamma, P, "a,x", 2),
    row<6>("jacobian_theta", jacobian_theta, P, "k,x,q", 3),
    row<0>("kelvin_bei", kelvin_bei, P, "x", 1),
    row<0>("kelvin_ber", kelvin_ber, P, "x", 1),
    row<0>("kelvin_kei", kelvin_kei, P, "x", 1),
    row<0>("kelvin_ker", kelvin_ker, P, "x", 1),
    row<25>("lambertW", lambertW, P, "x,branch,offset", 4),
    row<11>("lappdf", lappdf, D, "x,mu,b", 4),
    row<0>("log_gamma", log_gamma, P, "x", 1),
    row<11>("lognpdf", lognpdf, D, "x,mu,sigma", 4),
    row<17>("ncbetacdf", ncbetacdf, C, "x,a,b,lambda", 5),
    row<11>("ncchi2cdf", ncchi2cdf, C, "x,f,lambda", 4),
    row<17>("ncfcdf", ncfcdf, C, "x,df1,df2,lambda", 5),
    row<26>("nctcdf", nctcdf, C, "x,df,delta,maxiter", 5),
    row<9>("normcdf", normcdf, C, "x", 3),
    row<7>("norminv", norminv, I, "p", 2),
    row<11>("normpdf", normpdf, D, "x,mu,sigma", 4),
    row<16>("poisscdf", poisscdf, C, "k,lambda", 4),
    row<24>("poisspdf", poisspdf, D, "x,lambda", 3, "id", 0.0),
    row<5>("real_polygamma", real_polygamma, P, "x,k", 2),
    row<0>("sin_integral", sin_integral, P, "x", 1),
    row<12>("srangecdf", srangecdf, C, "q,v,group", 4),
    row<12>("srangeinv", srangeinv, I, "p,v,ir", 4),
    row<13>("tcdf", tcdf, C, "t,df", 4),
    row<14>("tinv", tinv, I, "p,df", 4),
    row<11>("wblcdf", wblcdf, C, "x,a,b", 4),
    row<11>("wblinv", wblinv, I, "p,a,b", 4),
    row<11>("wblpdf", wblpdf, D, "x,a,b", 4),
};
constexpr int kRowCount = sizeof(kRows) / sizeof(kRows[0]);
static_assert(kRowCount == 79, "the table has 79 rows");

const Row kBaseRows[] = {
    {"integral", nullptr, 0, ZOMATH_ZT_PLAIN, "from,to", 2, nullptr, 0, 0.0},
};
constexpr int kBaseRowCount = 1;

// Bisection over a sorted table: the first and the last row first, so that a name outside the
// table's range is answered by two comparisons.
int lookup(const Row* rows, int count, const char* name) {
  if (!name || count < 1) return -1;
  int c = zomath::scalar::compare_names(name, rows[0].name);
  if (c <= 0) return c == 0 ? 0 : -1;
  c = zomath::scalar::compare_names(name, rows[count - 1].name);
  if (c >= 0) return c == 0 ? count - 1 : -1;
  int lo = 1, hi = count - 2;
  while (lo <= hi) {
    const int mid = (lo + hi) / 2;
    c = zomath::scalar::compare_names(name, rows[mid].name);
    if (c == 0) return mid;
    if (c < 0)
      hi = mid - 1;
    else
      lo = mid + 1;
  }
  return -1;
}

// The validity pattern: each 'i' (either case) marks an argument whose "%g" text must be a
// whole number.
bool passes_check(const Row& r, const double* args) {
  if (!r.szCheck) return true;
  const int n = static_cast<int>(std::strlen(r.szCheck));
  for (int i = 0; i < n && i < r.nArgs; ++i) {
    if (std::tolower(static_cast<unsigned char>(r.szCheck[i])) != 'i') continue;
    char text[64];
    std::snprintf(text, sizeof(text), "%g", args[i]);
    if (!zomath::platform::is_str_numeric_integer(text)) return false;
  }
  return true;
}

// An argument that a kind passes as an int: truncated toward zero and clamped to the int range.
enum class IntArg { kOk, kMissing, kNaN };
IntArg to_int(double x, int& out) {
  if (x == NANUM) return IntArg::kMissing;
  if (std::isnan(x)) return IntArg::kNaN;
  out = x >= 2147483647.0 ? INT_MAX : x <= -2147483648.0 ? INT_MIN : static_cast<int>(x);
  return IntArg::kOk;
}

// Positions of the int arguments of each kind, as a bit mask over a0..a3.
unsigned int_mask(int kind) {
  switch (kind) {
    case 5: return 0b0010;
    case 6: return 0b0001;
    case 12: return 0b0100;
    case 16: return 0b0001;
    case 20: return 0b0011;
    case 23: return 0b1111;
    case 24: return 0b0001;
    case 25: return 0b0110;
    case 26: return 0b1000;
    default: return 0;
  }
}

template <int K>
typename Sig<K>::F fn(const Row& r) {
  return reinterpret_cast<typename Sig<K>::F>(r.pfn);
}

// Mode 2: unpack pArgs as the row's kind says and call. Returns the function's code.
int call_row(const Row& r, const double* a, double* pResult) {
  if (!passes_check(r, a)) {
    *pResult = r.dDefault;
    return 0;
  }
  int n[4] = {0, 0, 0, 0};
  const unsigned mask = int_mask(r.nSignature);
  for (int i = 0; i < 4; ++i) {
    if (!(mask & (1u << i))) continue;
    switch (to_int(a[i], n[i])) {
      case IntArg::kMissing:
        *pResult = NANUM;
        return 0;
      case IntArg::kNaN:
        // Kinds 5 and 6 have no code: NaN in, NaN out, as for their double arguments.
        if (r.nSignature == 5 || r.nSignature == 6) {
          *pResult = std::nan("");
          return 0;
        }
        *pResult = NANUM;
        return ZOMATH_DIST_BAD_ARGUMENT;
      case IntArg::kOk:
        break;
    }
  }
  int err = 0;
  double v = NANUM;
  switch (r.nSignature) {
    case 0: v = fn<0>(r)(a[0]); break;
    case 1: v = fn<1>(r)(a[0], a[1]); break;
    case 2: v = fn<2>(r)(a[0], a[1], a[2]); break;
    case 3: v = fn<3>(r)(a[0], a[1], a[2], a[3]); break;
    case 5: v = fn<5>(r)(a[0], n[1]); break;
    case 6: v = fn<6>(r)(n[0], a[1], a[2]); break;
    case 7: v = fn<7>(r)(a[0], &err); break;
    case 9: v = fn<9>(r)(a[0], ZOMATH_TAIL_LOWER, &err); break;
    case 10: v = fn<10>(r)(a[0], a[1], &err); break;
    case 11: v = fn<11>(r)(a[0], a[1], a[2], &err); break;
    case 12: v = fn<12>(r)(a[0], a[1], n[2], &err); break;
    case 13: v = fn<13>(r)(a[0], a[1], ZOMATH_TAIL_LOWER, &err); break;
    // A tail code of 6 lies outside the listed codes and takes the default, lower-tail path.
    case 14: v = fn<14>(r)(a[0], a[1], 6, &err); break;
    case 16: v = fn<16>(r)(n[0], a[1], 6, &err); break;
    case 17: v = fn<17>(r)(a[0], a[1], a[2], a[3], &err); break;
    case 19: v = fn<19>(r)(a[0], a[1], a[2], ZOMATH_TAIL_LOWER, &err); break;
    case 20: v = fn<20>(r)(n[0], n[1], a[2], 6, &err); break;
    case 23: v = fn<23>(r)(n[0], n[1], n[2], n[3], 6, &err); break;
    case 24: v = fn<24>(r)(n[0], a[1], &err); break;
    case 25: v = fn<25>(r)(a[0], n[1], n[2], &err); break;
    case 26: v = fn<26>(r)(a[0], a[1], a[2], &err, n[3] == 0 ? 100 : n[3]); break;
    default: return -1;
  }
  *pResult = v;
  return err;
}

bool valid_index(const unsigned long* pnIndex, int count) {
  return pnIndex && *pnIndex < static_cast<unsigned long>(count);
}

NagError g_integralError;

struct IntegrandRef {
  double (*pfn)(double, void*);
  void* pData;
};

double trampoline(double x, void* p) {
  const auto* ref = static_cast<const IntegrandRef*>(p);
  return ref->pfn(x, ref->pData);
}

}  // namespace

namespace zomath::scalar {

int compare_names(const char* a, const char* b) {
  // Sort keys: punctuation below digits, digits below letters, letters folded to lower case.
  auto key = [](unsigned char c) -> int {
    if (std::isalpha(c)) return 512 + std::tolower(c);
    if (std::isdigit(c)) return 256 + c;
    return c;
  };
  for (;; ++a, ++b) {
    const unsigned char ca = static_cast<unsigned char>(*a), cb = static_cast<unsigned char>(*b);
    if (ca == 0 || cb == 0) return (ca != 0) - (cb != 0);
    const int d = key(ca) - key(cb);
    if (d != 0) return d < 0 ? -1 : 1;
  }
}

const platform::NagError& integral_error() { return g_integralError; }

}  // namespace zomath::scalar

extern "C" {

ZOMATH_API int zomath_string_array_append(zomath_StringArray* pArray, const char* pText) {
  if (!pArray || !pText) return ZOMATH_ERR_NULL_POINTER;
  if (pArray->nSize < 0 || pArray->nCapacity < pArray->nSize || (!pArray->pItems && pArray->nCapacity > 0))
    return ZOMATH_ERR_NULL_POINTER;
  if (pArray->nSize == pArray->nCapacity) {
    if (pArray->nCapacity > INT_MAX / 2) return ZOMATH_ERR_NO_MEMORY;
    const int capacity = pArray->nCapacity < 8 ? 8 : pArray->nCapacity * 2;
    void* grown = std::realloc(pArray->pItems, sizeof(char*) * static_cast<size_t>(capacity));
    if (!grown) return ZOMATH_ERR_NO_MEMORY;
    pArray->pItems = static_cast<char**>(grown);
    pArray->nCapacity = capacity;
  }
  const size_t length = std::strlen(pText);
  char* copy = static_cast<char*>(std::malloc(length + 1));
  if (!copy) return ZOMATH_ERR_NO_MEMORY;
  std::memcpy(copy, pText, length + 1);
  pArray->pItems[pArray->nSize] = copy;
  return pArray->nSize++;
}

ZOMATH_API void zomath_string_array_clear(zomath_StringArray* pArray) {
  if (!pArray) return;
  if (pArray->pItems)
    for (int i = 0; i < pArray->nSize; ++i) std::free(pArray->pItems[i]);
  std::free(pArray->pItems);
  pArray->pItems = nullptr;
  pArray->nSize = 0;
  pArray->nCapacity = 0;
}

ZOMATH_API int zomath_ZT_functions(unsigned int nMode, char* pName, unsigned long* pnIndex,
                                   double* pArgs, double* pResult) {
  switch (nMode) {
    case ZOMATH_ZT_LOOKUP: {
      const int i = lookup(kRows, kRowCount, pName);
      if (i < 0) return -1;
      if (pnIndex) *pnIndex = static_cast<unsigned long>(i);
      return kRows[i].nArgs;
    }
    case ZOMATH_ZT_CALL:
      if (!valid_index(pnIndex, kRowCount) || !pArgs || !pResult) return -1;
      return call_row(kRows[*pnIndex], pArgs, pResult);
    case ZOMATH_ZT_ARG_COUNT:
      if (!valid_index(pnIndex, kRowCount)) return -1;
      return kRows[*pnIndex].nArgs;
    case ZOMATH_ZT_NAME:
      if (!valid_index(pnIndex, kRowCount) || !pName) return -1;
      std::snprintf(pName, ZOMATH_ZT_NAME_SIZE, "%s", kRows[*pnIndex].name);
      return 0;
    default:
      return -1;
  }
}

ZOMATH_API int zomath_ZT_base_functions(unsigned int nMode, char* pName, unsigned long* pnIndex,
                                        void* pInfo, double* pArgs, double* pResult) {
  switch (nMode) {
    case ZOMATH_ZT_LOOKUP: {
      const int i = lookup(kBaseRows, kBaseRowCount, pName);
      if (i < 0) return -1;
      if (pnIndex) *pnIndex = static_cast<unsigned long>(i);
      return kBaseRows[i].nArgs;
    }
    case ZOMATH_ZT_CALL:
      if (!valid_index(pnIndex, kBaseRowCount) || !pArgs || !pResult ||
          kBaseRows[*pnIndex].nSignature != 0)
        return -1;
      *pResult = integralZT(static_cast<ZTFInfo*>(pInfo), pArgs[0], pArgs[1]);
      return 0;
    default:
      return -1;
  }
}

ZOMATH_API int zomath_ZT_functions_get_list(zomath_StringArray* pNames,
                                            zomath_StringArray* pArgLists, int nCategory) {
  zomath_string_array_clear(pNames);
  zomath_string_array_clear(pArgLists);
  int found = 0;
  for (const Row& r : kRows) {
    if (r.nCategory != nCategory) continue;
    if ((pNames && zomath_string_array_append(pNames, r.name) < 0) ||
        (pArgLists && zomath_string_array_append(pArgLists, r.szArgs) < 0)) {
      zomath_string_array_clear(pNames);
      zomath_string_array_clear(pArgLists);
      return ZOMATH_ERR_NO_MEMORY;
    }
    ++found;
  }
  return found > 0 ? found : -1;
}

ZOMATH_API double integralZT(ZTFInfo* pInfo, double dFrom, double dTo) {
  namespace platform = zomath::platform;
  g_integralError.reset();
  if (!pInfo || !pInfo->pfn) {
    g_integralError.fail(platform::kQuadBadArgument, "no integrand");
    return NANUM;
  }
  double a = dFrom == NANUM ? -INFINITY : dFrom;
  double b = dTo == NANUM ? INFINITY : dTo;
  if (std::isnan(a) || std::isnan(b)) {
    g_integralError.fail(platform::kQuadBadArgument, "a bound is NaN");
    return NANUM;
  }
  if (a == b) return 0.0;
  const platform::QuadratureOptions options;  // 1e-5 absolute, 1e-7 relative, 500 intervals
  IntegrandRef ref{pInfo->pfn, pInfo->pData};
  double result = NANUM;
  if (std::isinf(a) || std::isinf(b)) {
    double sign = 1;
    if (a > b) {
      std::swap(a, b);
      sign = -1;
    }
    const platform::InfiniteRange range = std::isinf(a) && std::isinf(b)
                                              ? platform::InfiniteRange::kBoth
                                          : std::isinf(b) ? platform::InfiniteRange::kUpper
                                                          : platform::InfiniteRange::kLower;
    const double bound = range == platform::InfiniteRange::kUpper ? a : b;
    double value = 0;
    if (platform::integrate_infinite(&trampoline, &ref, bound, range, options, &value, nullptr,
                                     g_integralError) == 0)
      result = sign * value;
  } else {
    double value = 0;
    if (platform::integrate_finite(&trampoline, &ref, a, b, options, &value, nullptr,
                                   g_integralError) == 0)
      result = value;
  }
  return result;
}

}  // extern "C"
