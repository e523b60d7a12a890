// Typed vector kernels: every case runs through each element type a family has. Cases are
// written in small integers that every type holds; kM marks a missing element, which becomes
// NANUM for double and the value 77 (passed as the missing value) for the other types.
#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <cmath>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

#include "zomath/vector.h"

namespace {

constexpr double kM = 1e300;
constexpr unsigned kNone = 0xFFFFFFFFu;

template <class T>
T missing_value() {
  if constexpr (std::is_same_v<T, double>) return NANUM;
  return T(77);
}

template <class T>
std::vector<T> make(const std::vector<double>& values) {
  std::vector<T> out;
  for (double v : values) out.push_back(v == kM ? missing_value<T>() : static_cast<T>(v));
  return out;
}

// One overload per element type, so that a typed test reaches each export. The d forms without
// a missing argument always treat NANUM as missing.
using uchar = unsigned char;
using ushort = unsigned short;
int minmax(const double* p, unsigned f, unsigned l, const double*, unsigned* a, unsigned* b) {
  return zomath_d_minmax(p, f, l, a, b);
}
#define MINMAX(L, T)                                                                       \
  int minmax(const T* p, unsigned f, unsigned l, const T* m, unsigned* a, unsigned* b) {   \
    return zomath_##L##_minmax(p, f, l, m, a, b);                                          \
  }
MINMAX(f, float) MINMAX(i, int) MINMAX(b, uchar) MINMAX(us, ushort) MINMAX(s, short)
MINMAX(c, char)
#define IN_RANGE(L, T)                                                                     \
  int in_range(const T* p, int n, T lo, T hi, const T* m, unsigned* a, unsigned* b) {      \
    return zomath_##L##_minmax_in_range(p, n, lo, hi, m, a, b);                            \
  }
IN_RANGE(d, double) IN_RANGE(f, float) IN_RANGE(i, int) IN_RANGE(b, uchar) IN_RANGE(us, ushort)
double sum(const double* p, int n, double* lo, double* hi, int* a, int* b) {
  return zomath_d_sum(p, n, lo, hi, a, b, nullptr);
}
#define SUM(L, T)                                                                          \
  double sum(const T* p, int n, T* lo, T* hi, int* a, int* b) {                            \
    return zomath_##L##_sum(p, n, lo, hi, a, b);                                           \
  }
SUM(f, float) SUM(b, uchar) SUM(us, ushort) SUM(ui, unsigned)
double mean_variance(const double* p, int n, double* v, int* c, const double*) {
  return zomath_d_mean_variance(p, n, v, c);
}
#define MEAN_VARIANCE(L, T)                                                                \
  double mean_variance(const T* p, int n, double* v, int* c, const T* m) {                 \
    return zomath_##L##_mean_variance(p, n, v, c, m);                                      \
  }
MEAN_VARIANCE(f, float) MEAN_VARIANCE(us, ushort) MEAN_VARIANCE(b, uchar)
#define CUMULATIVE(L, T)                                                                   \
  int cumulative_sum(const T* p, unsigned f, unsigned e, T* out, const T* m) {             \
    return zomath_##L##_cumulative_sum(p, f, e, out, m);                                   \
  }
CUMULATIVE(d, double) CUMULATIVE(f, float) CUMULATIVE(i, int) CUMULATIVE(us, ushort)
CUMULATIVE(b, uchar)
#define FREQUENCY(L, T)                                                                    \
  int frequency_count(const T* p, int n, unsigned* c, unsigned k, T s, T i) {              \
    return zomath_##L##_frequency_count(p, n, c, k, s, i);                                 \
  }
FREQUENCY(d, double) FREQUENCY(f, float) FREQUENCY(b, uchar) FREQUENCY(us, ushort)
#define COPY(L, T)                                                                         \
  void copy(unsigned n, const unsigned* idx, T* dest, const T* src, unsigned ns) {         \
    zomath_##L##_copy(n, idx, dest, src, ns);                                              \
  }
COPY(d, double) COPY(f, float) COPY(ui, unsigned) COPY(us, ushort) COPY(b, uchar)
#define STRETCH(L, T)                                                                      \
  int stretch(T* p, int n, T a, T b, T c, T d) { return zomath_##L##_stretch(p, n, a, b, c, d); }
STRETCH(d, double) STRETCH(f, float) STRETCH(us, ushort)
#define INC(L, T)                                                                          \
  int vector_inc(unsigned n, const T* p, int tol, T* f, T* l, T* i) {                      \
    return zomath_##L##_get_vector_inc(n, p, tol, f, l, i);                                \
  }
INC(d, double) INC(i, int)
double find_most(const double* p, int n, unsigned k, double* f) {
  return zomath_d_find_most(p, n, k, f);
}
double find_most(const ushort* p, int n, unsigned k, double* f) {
  return zomath_us_find_most(p, n, k, f);
}

#define TYPED_SUITE(NAME, ...)                  \
  template <class T>                            \
  class NAME : public ::testing::Test {};       \
  using NAME##Types = ::testing::Types<__VA_ARGS__>; \
  TYPED_TEST_SUITE(NAME, NAME##Types)

TYPED_SUITE(Minmax, double, float, int, uchar, ushort, short, char);
TYPED_SUITE(MinmaxInRange, double, float, int, uchar, ushort);
TYPED_SUITE(Sum, double, float, uchar, ushort, unsigned);
TYPED_SUITE(MeanVariance, double, float, ushort, uchar);
TYPED_SUITE(CumulativeSum, double, float, int, ushort, uchar);
TYPED_SUITE(FrequencyCount, double, float, uchar, ushort);
TYPED_SUITE(Copy, double, float, unsigned, ushort, uchar);
TYPED_SUITE(Stretch, double, float, ushort);
TYPED_SUITE(VectorInc, double, int);
TYPED_SUITE(FindMost, double, ushort);

TYPED_TEST(Minmax, ExtremesMissingAndTies) {
  using T = TypeParam;
  const struct {
    std::vector<double> data;
    unsigned first, last;
    int missing;
    unsigned iMin, iMax;
  } cases[] = {
      {{3, 1, 4, 1, 5, 9, 2, 9}, 0, 7, 0, 1, 5},  // ties: earliest position
      {{kM, 3, kM, 3, 8, 8}, 0, 5, 2, 1, 4},      // missing skipped, positions kept
      {{kM, kM, kM}, 0, 2, 3, kNone, kNone},      // all missing
      {{9, 1, 5, 0, 7}, 1, 3, 0, 3, 2},           // a sub-range, absolute positions
      {{9, 1, 5, 0, 7}, 2, 4, 0, 3, 4},           // the last index is inclusive
      {{1, 2}, 1, 0, 0, kNone, kNone},            // empty range
  };
  const T m = missing_value<T>();
  for (const auto& c : cases) {
    const auto data = make<T>(c.data);
    unsigned iMin = 123, iMax = 123;
    EXPECT_EQ(minmax(data.data(), c.first, c.last, &m, &iMin, &iMax), c.missing);
    EXPECT_EQ(iMin, c.iMin);
    EXPECT_EQ(iMax, c.iMax);
    if (c.missing == 0) {  // no missing value given: the same answer
      EXPECT_EQ(minmax(data.data(), c.first, c.last, nullptr, &iMin, &iMax), 0);
      EXPECT_EQ(iMax, c.iMax);
    }
  }
  EXPECT_EQ(minmax(static_cast<const T*>(nullptr), 0, 5, &m, nullptr, nullptr), 0);
}

TYPED_TEST(MinmaxInRange, SkipsOutsidersAndMissing) {
  using T = TypeParam;
  const struct {
    std::vector<double> data;
    double lo, hi;
    int missing;
    unsigned iMin, iMax;
  } cases[] = {
      {{5, kM, 1, 9, 3, 7, 3}, 2, 7, 1, 4, 5},  // 1 and 9 passed over; tie on 3 earliest
      {{5, kM, 1, 9, 3, 7}, 1, 9, 1, 2, 3},     // bounds inclusive
      {{5, 6}, 7, 8, 0, kNone, kNone},          // nothing in range
  };
  const T m = missing_value<T>();
  for (const auto& c : cases) {
    const auto data = make<T>(c.data);
    unsigned iMin = 123, iMax = 123;
    EXPECT_EQ(in_range(data.data(), int(data.size()), T(c.lo), T(c.hi), &m, &iMin, &iMax), c.missing);
    EXPECT_EQ(iMin, c.iMin);
    EXPECT_EQ(iMax, c.iMax);
  }
}

TEST(Minmax, NaNIsNeverChosenAndComplexTracksFourQuantities) {
  // A NaN first would otherwise win every comparison by losing them all.
  const double d[] = {std::nan(""), 2, std::nan(""), 1, 3};
  unsigned iMin, iMax;
  EXPECT_EQ(zomath_d_minmax(d, 0, 4, &iMin, &iMax), 0);
  EXPECT_EQ(iMin, 3u);
  EXPECT_EQ(iMax, 4u);

  const d_complex z[] = {{1, 0}, {NANUM, 5}, {-2, 0}, {0, 3}, {0, -1}, {1, 1}, {0, 3}};
  int lo[4], hi[4];
  EXPECT_EQ(zomath_z_minmax(z, 0, 6, lo, hi), 1);
  // Real, imaginary, phase (pi for -2, -pi/2 for -i), magnitude (ties: 1 and 3 first).
  const int wantLo[4] = {2, 4, 4, 0}, wantHi[4] = {0, 3, 2, 3};
  for (int k = 0; k < 4; ++k) {
    EXPECT_EQ(lo[k], wantLo[k]) << k;
    EXPECT_EQ(hi[k], wantHi[k]) << k;
  }
}

TYPED_TEST(Sum, SumExtremesAndEmpty) {
  using T = TypeParam;
  T lo = 9, hi = 9;
  int iLo = 9, iHi = 9;
  const auto data = make<T>({3, 1, 4, 1, 5, 5});
  EXPECT_EQ(sum(data.data(), 6, &lo, &hi, &iLo, &iHi), 19.0);
  EXPECT_EQ(lo, T(1));
  EXPECT_EQ(hi, T(5));
  EXPECT_EQ(iLo, 1);
  EXPECT_EQ(iHi, 4);
  EXPECT_EQ(sum(data.data(), 0, &lo, &hi, &iLo, &iHi), 0.0);
  EXPECT_EQ(lo + hi, T(0));
  EXPECT_EQ(iLo + iHi, -2);
  if constexpr (std::is_integral_v<T>) {  // the sum is wider than the element: no wrap
    const std::vector<T> big(3, std::numeric_limits<T>::max());
    EXPECT_EQ(sum(big.data(), 3, &lo, &hi, &iLo, &iHi), 3.0 * big[0]);
  }
}

TEST(Sum, DoubleFormSkipsNanumAndAccumulatesWide) {
  const double d[] = {NANUM, 2, NANUM, -1};
  int iLo, iHi, valid;
  EXPECT_EQ(zomath_d_sum(d, 4, nullptr, nullptr, &iLo, &iHi, &valid), 1.0);
  EXPECT_EQ(valid, 2);
  EXPECT_EQ(iLo, 3);
  EXPECT_EQ(zomath_d_sum(d, 1, nullptr, nullptr, &iLo, &iHi, &valid), 0.0);  // all missing
  EXPECT_EQ(valid + iLo, -1);
  const double tiny[] = {1.0, 0x1p-60, 0x1p-60, -1.0};  // small terms survive 1 + ... - 1
  EXPECT_EQ(zomath_d_sum(tiny, 4, nullptr, nullptr, nullptr, nullptr, nullptr), 0x1p-59);
  const double huge[] = {DBL_MAX, DBL_MAX, -DBL_MAX};
  EXPECT_EQ(zomath_d_sum(huge, 2, nullptr, nullptr, nullptr, nullptr, nullptr), INFINITY);
  EXPECT_EQ(zomath_d_sum(huge, 3, nullptr, nullptr, nullptr, nullptr, nullptr), DBL_MAX);
}

TYPED_TEST(MeanVariance, CasesThroughEachType) {
  using T = TypeParam;
  const struct {
    std::vector<double> data;
    double mean, variance;
    int valid;
  } cases[] = {
      {{2, 4, 4, 4, 5, 5, 7, 9}, 5, 32.0 / 7, 8},
      {{kM, 2, 4, kM, 6}, 4, 4, 3},
      {{5}, 5, 0, 1},
      {{kM, kM}, NANUM, NANUM, 0},
      {{}, NANUM, NANUM, 0},
  };
  const T m = missing_value<T>();
  for (const auto& c : cases) {
    const auto data = make<T>(c.data);
    double variance = 123;
    int valid = -5;
    EXPECT_DOUBLE_EQ(mean_variance(data.data(), int(data.size()), &variance, &valid, &m), c.mean);
    EXPECT_DOUBLE_EQ(variance, c.variance);
    EXPECT_EQ(valid, c.valid);
  }
}

// NIST StRD univariate sets NumAcc1-4: values that differ only in their last digits, where a
// one-pass variance loses every digit. Certified mean and SD are exact for the decimal data;
// the data's rounding to binary limits agreement to about 1e-9 relative for NumAcc4 (sd 0.1
// at 1e7), so the SD is asked to 1e-7 and the mean to 1e-15.
TEST(MeanVariance, NistNumericalAccuracySets) {
  const struct {
    const char* file;
    double mean, sd;
  } sets[] = {{"NumAcc1.dat", 10000002, 1}, {"NumAcc2.dat", 1.2, 0.1},
              {"NumAcc3.dat", 1000000.2, 0.1}, {"NumAcc4.dat", 10000000.2, 0.1}};
  for (const auto& s : sets) {
    std::ifstream in(std::string(ZOMATH_TEST_DATA_DIR) + "/nist-strd/" + s.file);
    ASSERT_TRUE(in) << s.file;
    std::vector<double> y;
    std::string line;
    for (int n = 1; std::getline(in, line); ++n)
      if (n >= 61 && line.find_first_of("0123456789") != std::string::npos) y.push_back(std::stod(line));
    double variance;
    const double mean = zomath_d_mean_variance(y.data(), int(y.size()), &variance, nullptr);
    EXPECT_NEAR(mean, s.mean, 1e-15 * s.mean) << s.file;
    EXPECT_NEAR(std::sqrt(variance), s.sd, 1e-7 * s.sd) << s.file;
  }
}

TYPED_TEST(CumulativeSum, RunningTotals) {
  using T = TypeParam;
  const struct {
    std::vector<double> data;
    unsigned first, end;
    std::vector<double> out;  // pOut afterwards, from four zeros
    int missing;
  } cases[] = {
      {{1, 2, kM, 3}, 0, 4, {1, 3, 3, 6}, 1},  // a missing element repeats the total
      {{kM, 2, 5}, 0, 3, {0, 2, 7, 0}, 1},     // a missing first element starts at 0
      {{5, 1, 2, 3}, 1, 3, {1, 3, 0, 0}, 0},   // exclusive end
      {{5, 6}, 1, 1, {6, 0, 0, 0}, 0},         // empty range: pOut[0] still written
  };
  const T m = missing_value<T>();
  for (const auto& c : cases) {
    const auto data = make<T>(c.data);
    std::vector<T> out(4, T(0));
    EXPECT_EQ(cumulative_sum(data.data(), c.first, c.end, out.data(), &m), c.missing);
    EXPECT_EQ(out, make<T>(c.out));
  }
}

TEST(CumulativeSum, TotalsKeptInTheElementTypeWrap) {
  // Hosts rely on the 8- and 16-bit forms wrapping like their element type.
  const ushort us[] = {65535, 2};
  ushort usOut[2];
  zomath_us_cumulative_sum(us, 0, 2, usOut, nullptr);
  EXPECT_EQ(usOut[1], 1);
  const uchar b[] = {200, 100};
  uchar bOut[2];
  zomath_b_cumulative_sum(b, 0, 2, bOut, nullptr);
  EXPECT_EQ(bOut[1], 44);
  const int i[] = {INT_MAX, 1};
  int iOut[2];
  zomath_i_cumulative_sum(i, 0, 2, iOut, nullptr);
  EXPECT_EQ(iOut[1], INT_MIN);
}

TYPED_TEST(FrequencyCount, EdgesBelongToTheBinTheyStart) {
  using T = TypeParam;
  const auto data = make<T>({0, 1, 1, 2, 5, 9, 10, 12});
  unsigned counts[5] = {7, 7, 7, 7, 7};
  EXPECT_EQ(frequency_count(data.data(), 8, counts, 5, T(0), T(2)), 0);
  EXPECT_EQ(std::vector<unsigned>(counts, counts + 5), (std::vector<unsigned>{3, 1, 1, 0, 1}));
  EXPECT_EQ(frequency_count(data.data(), 8, counts, 2, T(0), T(0)), -1);
  EXPECT_EQ(counts[0], 3u);  // left alone
  EXPECT_EQ(frequency_count(data.data(), 8, nullptr, 2, T(0), T(1)), -1);
}

TYPED_TEST(Copy, GatherSkipsOutOfRangeAndSurvivesAliasing) {
  using T = TypeParam;
  const auto src = make<T>({10, 11, 12, 13});
  std::vector<T> dest(4, T(0));
  const unsigned idx[] = {3, 0, 9, 1};
  copy(4, idx, dest.data(), src.data(), 4);
  EXPECT_EQ(dest, make<T>({13, 10, 0, 11}));
  // In place: a naive gather would give 13 12 12 13.
  auto same = src;
  const unsigned reverse[] = {3, 2, 1, 0};
  copy(4, reverse, same.data(), same.data(), 4);
  EXPECT_EQ(same, make<T>({13, 12, 11, 10}));
  auto shifted = make<T>({10, 11, 12, 13, 14});
  const unsigned firsts[] = {0, 0, 1, 2};
  copy(4, firsts, shifted.data() + 1, shifted.data(), 5);
  EXPECT_EQ(shifted, make<T>({10, 10, 10, 11, 12}));
}

TYPED_TEST(Stretch, MapsAndClamps) {
  using T = TypeParam;
  auto data = make<T>({0, 50, 54, 55, 100, 200, 10});
  ASSERT_EQ(stretch(data.data(), 7, T(10), T(100), T(0), T(10)), 0);
  if constexpr (std::is_integral_v<T>) {
    EXPECT_EQ(data, make<T>({0, 4, 5, 5, 10, 10, 0}));  // the half rounds, then truncation
  } else {
    // The floating forms keep the half: from-low maps to to-low + 0.5, from-high to 10.5.
    const double want[] = {0, 0.5 + 40 / 9.0, 0.5 + 44 / 9.0, 5.5, 10.5, 10, 0.5};
    for (int k = 0; k < 7; ++k) EXPECT_NEAR(data[k], want[k], 4e-6) << k;
  }
  const auto before = data;
  EXPECT_EQ(stretch(data.data(), 7, T(5), T(5), T(0), T(1)), -3);  // empty source range
  EXPECT_EQ(data, before);
}

TEST(Stretch, DoubleLeavesNanumAlone) {
  double d[] = {NANUM, 1};
  EXPECT_EQ(zomath_d_stretch(d, 2, 0, 1, 0, 1), 0);
  EXPECT_EQ(d[0], NANUM);
  EXPECT_EQ(d[1], 1.5);
}

TYPED_TEST(VectorInc, EvenUnevenAndNotMonotonic) {
  using T = TypeParam;
  const struct {
    std::vector<double> data;
    int tolerance, result;
    double first, last, inc;
  } cases[] = {
      {{1, 3, 5, 7}, 0, 1, 1, 7, 2},  // equal steps pass a zero tolerance
      {{7, 5, 3, 1}, 0, -1, 7, 1, -2},
      {{1, 3, 6}, 0, 2, 0, 0, 0},     // steps 2, 3 around 2.5
      {{1, 3, 6}, 1, 1, 1, 6, 2},     // within 1 * 2.5
      {{6, 3, 1}, 0, -2, 0, 0, 0},
      {{1, 1, 2}, 5, 0, 0, 0, 0},     // not strictly monotonic
      {{4}, 5, 0, 0, 0, 0},
  };
  for (const auto& c : cases) {
    const auto data = make<T>(c.data);
    T first = 0, last = 0, inc = 0;
    EXPECT_EQ(vector_inc(unsigned(data.size()), data.data(), c.tolerance, &first, &last, &inc), c.result);
    EXPECT_EQ(std::vector<T>({first, last, inc}), make<T>({c.first, c.last, c.inc}));
  }
}

TEST(VectorInc, IntegerStepsDoNotOverflow) {
  const int wide[] = {INT_MIN, 0, INT_MAX - 1};  // steps of 2^31 and 2^31 - 2
  int inc;
  EXPECT_EQ(zomath_i_get_vector_inc(3, wide, 0, nullptr, nullptr, &inc), 2);
  EXPECT_EQ(zomath_i_get_vector_inc(3, wide, 1, nullptr, nullptr, &inc), 1);
  EXPECT_EQ(inc, INT_MAX);  // the first step, 2^31, saturated
}

TYPED_TEST(FindMost, FullestBinEarliestOnATie) {
  using T = TypeParam;
  const struct {
    std::vector<double> data;
    unsigned bins;
    double most, fraction;
  } cases[] = {
      {{0, 1, 5, 6, 6, 9, 10}, 5, 0, 2.0 / 6},  // bins 0 and 6 tie; the maximum drops out
      {{0, 4, 4, 8}, 2, 4, 2.0 / 3},
      {{5, 5, 5}, 3, 5, 1},                      // no spread: the value itself
  };
  for (const auto& c : cases) {
    const auto data = make<T>(c.data);
    double fraction = -1;
    EXPECT_EQ(find_most(data.data(), int(data.size()), c.bins, &fraction), c.most);
    EXPECT_DOUBLE_EQ(fraction, c.fraction);
  }
  double fraction = -1;
  const double none = std::is_same_v<T, double> ? NANUM : -1;  // no bins
  EXPECT_EQ(find_most(make<T>({1, 2}).data(), 2, 0, &fraction), none);
  EXPECT_EQ(fraction, 0.0);
}

TEST(FindMost, RealWidthsAndIntegerWidthsOfAtLeastOne) {
  const double d[] = {NANUM, 0.0, 0.3, 0.35, 1.0};
  double fraction;
  EXPECT_DOUBLE_EQ(zomath_d_find_most(d, 5, 4, &fraction), 0.25);
  EXPECT_DOUBLE_EQ(fraction, 2.0 / 3);  // 1.0 lies on the top edge and drops out
  const ushort us[] = {3, 4, 4, 5};  // fewer values than bins: still the mode
  EXPECT_EQ(zomath_us_find_most(us, 4, 10, &fraction), 4);
}

}  // namespace
