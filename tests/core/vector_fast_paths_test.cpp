// The vectorised sums and the sampled median against references that can't share their faults:
// totals known exactly from integer arithmetic, a plain one-element-at-a-time scan for the
// extremes, and a full sort for the median. Sizes straddle the vector width and the size from
// which the median samples.
#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "zomath/vector.h"

namespace {

using int128 = __int128;
const std::size_t kSizes[] = {1, 7, 8, 9, 17, 64, 1001, 65537};

// Shuffled pairs big, -big + r of multiples of 2^-30: the total is the sum of the small r's,
// some 2^40 times smaller than the terms, and known exactly as an integer count of 2^-30.
struct Cancelling {
  std::vector<double> x;
  int128 units = 0;  // exact total in units of 2^-30
};

Cancelling cancelling(std::size_t n, std::mt19937_64& rng, bool withMissing) {
  std::uniform_int_distribution<std::int64_t> big(-(std::int64_t{1} << 52), std::int64_t{1} << 52);
  std::uniform_int_distribution<std::int64_t> small(-256, 256);
  Cancelling c;
  std::int64_t last = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const std::int64_t k = i % 2 == 0 ? big(rng) : -last + small(rng);
    last = k;
    c.x.push_back(std::ldexp(static_cast<double>(k), -30));
    c.units += k;
  }
  std::shuffle(c.x.begin(), c.x.end(), rng);
  if (withMissing) {  // every fifth place, from the fourth on, becomes a missing one
    std::vector<double> spread;
    for (std::size_t i = 0; i < c.x.size(); ++i) {
      if (spread.size() % 5 == 3) spread.push_back(NANUM);
      spread.push_back(c.x[i]);
    }
    c.x.swap(spread);
  }
  return c;
}

// The sum of a cancelling set is at least as close to the exact total as a long double
// accumulation in array order, and within the bound of compensated summation,
// eps |S| + (n eps)^2 sum |x| (eps = 2^-53). Both errors are taken in long double from the exact
// total, whose 64-bit significand holds it exactly here.
TEST(SumAccuracy, CancellingTermsAtLeastAsCloseAsLongDouble) {
  std::mt19937_64 rng(2026);
  double worst = 0;  // largest error seen, relative to the compensated bound
  for (const bool withMissing : {false, true}) {
    for (const std::size_t n : kSizes) {
      if (n < 2) continue;
      for (int rep = 0; rep < 20; ++rep) {
        const Cancelling c = cancelling(n, rng, withMissing);
        const long double exact = std::ldexp(static_cast<long double>(c.units), -30);
        long double wide = 0, magnitude = 0;
        std::size_t count = 0;
        for (const double v : c.x) {
          if (v == NANUM) continue;
          wide += v;
          magnitude += std::fabs(v);
          ++count;
        }
        int valid = 0;
        const double got = zomath_d_sum(c.x.data(), static_cast<int>(c.x.size()), nullptr, nullptr,
                                        nullptr, nullptr, &valid);
        EXPECT_EQ(valid, static_cast<int>(count));
        const long double err = std::fabs(got - exact);
        const long double errWide = std::fabs(static_cast<double>(wide) - exact);
        const long double ne = count * 0x1p-53L;
        const long double bound = 0x1p-53L * std::fabs(exact) + ne * ne * magnitude;
        EXPECT_LE(err, errWide) << "n " << n << " rep " << rep;
        EXPECT_LE(err, bound) << "n " << n << " rep " << rep;
        worst = std::max(worst, static_cast<double>(err / bound));
      }
    }
  }
  std::printf("cancelling sums: worst error %.3g of the compensated bound\n", worst);
}

// Floats that are multiples of 2^-10 below 2^14 in magnitude: every partial total is a double
// exactly, so the float sum must come out exact.
TEST(SumAccuracy, FloatTotalsExact) {
  std::mt19937_64 rng(7);
  std::uniform_int_distribution<std::int32_t> k(-(1 << 24), 1 << 24);
  for (const std::size_t n : kSizes) {
    std::vector<float> x(n);
    std::int64_t units = 0;
    for (float& v : x) {
      const std::int32_t u = k(rng);
      v = std::ldexp(static_cast<float>(u), -10);
      units += u;
    }
    EXPECT_EQ(zomath_f_sum(x.data(), static_cast<int>(n), nullptr, nullptr, nullptr, nullptr),
              std::ldexp(static_cast<double>(units), -10))
        << n;
  }
}

// Values 2^26 + k 2^-20 with small integers k: the deviations are tiny beside the values. Mean
// and variance follow exactly from integer sums of k; the mean is asked to be rounded once (half
// an ulp) and the variance to 2 ulp (one rounding of the mean, one of the final division).
TEST(MeanVarianceAccuracy, LargeOffsetAgainstExactIntegers) {
  std::mt19937_64 rng(11);
  std::uniform_int_distribution<std::int64_t> k(-(1 << 20), 1 << 20);
  for (const std::size_t n : kSizes) {
    if (n < 2) continue;
    std::vector<double> x(n);
    int128 s1 = 0, s2 = 0;
    for (double& v : x) {
      const std::int64_t u = k(rng);
      v = 0x1p26 + std::ldexp(static_cast<double>(u), -20);
      s1 += u;
      s2 += static_cast<int128>(u) * u;
    }
    const long double nn = static_cast<long double>(n);
    const long double mean = 0x1p26L + std::ldexp(static_cast<long double>(s1), -20) / nn;
    // sum (k - kbar)^2 = (n sum k^2 - (sum k)^2) / n, exactly an integer over n.
    const int128 spread = static_cast<int128>(n) * s2 - s1 * s1;
    const long double variance =
        std::ldexp(static_cast<long double>(spread), -40) / (nn * (nn - 1));
    double got = 0;
    const double m = zomath_d_mean_variance(x.data(), static_cast<int>(n), &got, nullptr);
    const long double ulp = std::nextafter(m, INFINITY) - m;
    EXPECT_LE(std::fabs(m - mean), 0.501L * ulp) << n;  // rounded once
    const double want = static_cast<double>(variance);
    EXPECT_LE(std::fabs(got - want), 2 * (std::nextafter(want, INFINITY) - want)) << n;
  }
}

// Plain scan for the reference extremes over [first, last): the first position of the
// smallest and of the largest element that is not missing and not NaN, and the count of
// elements that are not missing.
template <class T, class Missing>
void scan(const std::vector<T>& x, std::size_t first, std::size_t last, Missing missing, int& iMin,
          int& iMax, int& valid) {
  iMin = iMax = -1;
  valid = 0;
  for (std::size_t i = first; i < last; ++i) {
    if (missing(x[i])) continue;
    ++valid;
    if (x[i] != x[i]) continue;
    const int k = static_cast<int>(i);
    if (iMin < 0 || x[i] < x[iMin]) iMin = k;
    if (iMax < 0 || x[i] > x[iMax]) iMax = k;
  }
}

double sum_of(const std::vector<double>& x, double* lo, double* hi, int* a, int* b) {
  return zomath_d_sum(x.data(), int(x.size()), lo, hi, a, b, nullptr);
}
#define SUM_OF(L, T)                                                                    \
  double sum_of(const std::vector<T>& x, T* lo, T* hi, int* a, int* b) {                \
    return zomath_##L##_sum(x.data(), int(x.size()), lo, hi, a, b);                     \
  }
SUM_OF(f, float)
SUM_OF(b, unsigned char)
SUM_OF(us, unsigned short)
SUM_OF(ui, unsigned int)

template <class T>
class SumLanes : public ::testing::Test {};
using SumTypes = ::testing::Types<double, float, unsigned char, unsigned short, unsigned int>;
TYPED_TEST_SUITE(SumLanes, SumTypes);

// Few distinct values, so that the extremes repeat across lanes and the first position must
// win; the double form also meets NANUM, NaN and zeros of both signs.
TYPED_TEST(SumLanes, ExtremesAndCountsMatchAPlainScan) {
  using T = TypeParam;
  std::mt19937_64 rng(5);
  std::uniform_int_distribution<int> pick(0, 9);
  for (const std::size_t n : kSizes) {
    for (int rep = 0; rep < 30; ++rep) {
      std::vector<T> x(n);
      for (T& v : x) {
        const int p = pick(rng);
        v = static_cast<T>(p % 4 + 1);
        if constexpr (std::is_same_v<T, double>) {
          if (p == 8) v = rep % 2 ? NANUM : -0.0;
          if (p == 9) v = rep % 3 ? std::numeric_limits<double>::quiet_NaN() : 0.0;
        }
      }
      int iMin, iMax, valid, wantMin, wantMax, wantValid;
      T lo, hi;
      const double s = sum_of(x, &lo, &hi, &iMin, &iMax);
      scan(x, 0, n, [](T v) { return std::is_same_v<T, double> && v == T(NANUM); }, wantMin,
           wantMax, wantValid);
      EXPECT_EQ(iMin, wantMin) << n;
      EXPECT_EQ(iMax, wantMax) << n;
      if (wantMin >= 0) {
        EXPECT_TRUE(std::memcmp(&lo, &x[wantMin], sizeof(T)) == 0) << n;  // sign of zero too
        EXPECT_EQ(hi, x[wantMax]);
      }
      if constexpr (std::is_same_v<T, double>) {
        zomath_d_sum(x.data(), int(n), nullptr, nullptr, nullptr, nullptr, &valid);
        EXPECT_EQ(valid, wantValid);
        const bool nan = std::any_of(x.begin(), x.end(), [](double v) { return v != v; });
        EXPECT_EQ(std::isnan(s), nan);
      } else {
        double plain = 0;  // small integers: exact in any order
        for (T v : x) plain += v;
        EXPECT_EQ(s, plain);
      }
    }
  }
}

unsigned minmax_of(const std::vector<double>& x, unsigned f, unsigned l, unsigned* a, unsigned* b) {
  return unsigned(zomath_d_minmax(x.data(), f, l, a, b));
}
#define MINMAX_OF(L, T)                                                                        \
  unsigned minmax_of(const std::vector<T>& x, unsigned f, unsigned l, unsigned* a, unsigned* b) { \
    const T missing[] = {3};                                                                   \
    return unsigned(zomath_##L##_minmax(x.data(), f, l, missing, a, b));                       \
  }
MINMAX_OF(f, float)
MINMAX_OF(i, int)
MINMAX_OF(b, unsigned char)
MINMAX_OF(us, unsigned short)
MINMAX_OF(s, short)
MINMAX_OF(c, char)

template <class T>
class MinmaxLanes : public ::testing::Test {};
using MinmaxTypes = ::testing::Types<double, float, int, unsigned char, unsigned short, short, char>;
TYPED_TEST_SUITE(MinmaxLanes, MinmaxTypes);

// As above over a sub-range, positions those of the caller's array; 3 is the missing value of
// the typed forms, NANUM that of the double one.
TYPED_TEST(MinmaxLanes, SubRangeMatchesAPlainScan) {
  using T = TypeParam;
  std::mt19937_64 rng(9);
  std::uniform_int_distribution<int> pick(-4, 4);
  const auto missing = [](T v) { return std::is_same_v<T, double> ? v == T(NANUM) : v == T(3); };
  for (const std::size_t n : kSizes) {
    for (int rep = 0; rep < 10; ++rep) {
      std::vector<T> x(n + 5);
      for (T& v : x) {
        v = static_cast<T>(pick(rng));
        if (std::is_same_v<T, double> && v == T(3)) v = T(NANUM);
      }
      int wantMin, wantMax, valid;
      scan(x, 2, n + 2, missing, wantMin, wantMax, valid);
      unsigned iMin = 0, iMax = 0;
      EXPECT_EQ(minmax_of(x, 2, unsigned(n + 1), &iMin, &iMax), unsigned(n - valid)) << n;
      EXPECT_EQ(int(iMin), wantMin) << n;
      EXPECT_EQ(int(iMax), wantMax) << n;
    }
  }
}

double sorted_median(std::vector<double> d) {
  std::sort(d.begin(), d.end());
  const std::size_t n = d.size();
  return n % 2 ? d[n / 2] : 0.5 * d[n / 2 - 1] + 0.5 * d[n / 2];
}

// Large arrays take the sampled bracket; data that defeats it (ties, order) takes the full
// selection. Either way the answer is the sorted middle, exactly.
TEST(Median, SampledBracketMatchesAFullSort) {
  std::mt19937_64 rng(3);
  const struct {
    const char* name;
    double (*make)(std::size_t i, std::size_t n, std::mt19937_64& rng);
  } kinds[] = {
      {"normal", [](std::size_t, std::size_t, std::mt19937_64& g) { return std::normal_distribution<double>()(g); }},
      {"ascending", [](std::size_t i, std::size_t, std::mt19937_64&) { return double(i); }},
      {"descending", [](std::size_t i, std::size_t n, std::mt19937_64&) { return double(n - i); }},
      {"four values", [](std::size_t, std::size_t, std::mt19937_64& g) { return double(std::uniform_int_distribution<int>(0, 3)(g)); }},
      {"two halves", [](std::size_t i, std::size_t n, std::mt19937_64&) { return i < n / 2 ? 0.0 : 1.0; }},
      {"constant", [](std::size_t, std::size_t, std::mt19937_64&) { return 2.5; }},
      {"organ pipe", [](std::size_t i, std::size_t n, std::mt19937_64&) { return double(std::min(i, n - i)); }},
      {"infinite tails", [](std::size_t i, std::size_t, std::mt19937_64& g) {
         return i % 3 == 0 ? (i % 2 ? HUGE_VAL : -HUGE_VAL) : std::normal_distribution<double>()(g); }},
  };
  for (const std::size_t n : {std::size_t{32768}, std::size_t{32769}, std::size_t{200000}, std::size_t{200001}}) {
    for (const auto& kind : kinds) {
      std::vector<double> d(n);
      for (std::size_t i = 0; i < n; ++i) d[i] = kind.make(i, n, rng);
      const auto before = d;
      double median = 0;
      ASSERT_EQ(zomath_get_median_in_vector(int(n), d.data(), &median), 0) << kind.name;
      EXPECT_EQ(median, sorted_median(d)) << kind.name << " " << n;
      EXPECT_EQ(d, before) << kind.name;
    }
  }
  std::vector<double> d(100000, 1.0);
  d[77777] = std::numeric_limits<double>::quiet_NaN();  // almost surely outside the sample
  double median = 0;
  EXPECT_EQ(zomath_get_median_in_vector(int(d.size()), d.data(), &median), ZOMATH_ERR_BAD_ARGUMENT);
  EXPECT_EQ(median, NANUM);
}

}  // namespace
