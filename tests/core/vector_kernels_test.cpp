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
constexpr unsigned int kNone = 0xFFFFFFFFu;

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

template <class T>
bool has_marker(const std::vector<double>& values) {
  for (double v : values)
    if (v == kM) return true;
  return false;
}

// ---- adapters: one overload per element type, so that a typed test reaches each export.
// The d forms without a missing argument always treat NANUM as missing.

int minmax(const double* p, unsigned f, unsigned l, const double*, unsigned* a, unsigned* b) {
  return zomath_d_minmax(p, f, l, a, b);
}
#define MINMAX(L, T)                                                                  \
  int minmax(const T* p, unsigned f, unsigned l, const T* m, unsigned* a, unsigned* b) { \
    return zomath_##L##_minmax(p, f, l, m, a, b);                                       \
  }
MINMAX(f, float)
MINMAX(i, int)
MINMAX(b, unsigned char)
MINMAX(us, unsigned short)
MINMAX(s, short)
MINMAX(c, char)
#undef MINMAX

#define IN_RANGE(L, T)                                                                    \
  int minmax_in_range(const T* p, int n, T lo, T hi, const T* m, unsigned* a, unsigned* b) { \
    return zomath_##L##_minmax_in_range(p, n, lo, hi, m, a, b);                             \
  }
IN_RANGE(d, double)
IN_RANGE(f, float)
IN_RANGE(i, int)
IN_RANGE(b, unsigned char)
IN_RANGE(us, unsigned short)
#undef IN_RANGE

double sum(const double* p, int n, double* lo, double* hi, int* a, int* b) {
  return zomath_d_sum(p, n, lo, hi, a, b, nullptr);
}
double sum(const float* p, int n, float* lo, float* hi, int* a, int* b) {
  return zomath_f_sum(p, n, lo, hi, a, b);
}
double sum(const unsigned char* p, int n, unsigned char* lo, unsigned char* hi, int* a, int* b) {
  return zomath_b_sum(p, n, lo, hi, a, b);
}
double sum(const unsigned short* p, int n, unsigned short* lo, unsigned short* hi, int* a, int* b) {
  return zomath_us_sum(p, n, lo, hi, a, b);
}
double sum(const unsigned int* p, int n, unsigned int* lo, unsigned int* hi, int* a, int* b) {
  return zomath_ui_sum(p, n, lo, hi, a, b);
}

double mean_variance(const double* p, int n, double* v, int* c, const double*) {
  return zomath_d_mean_variance(p, n, v, c);
}
double mean_variance(const float* p, int n, double* v, int* c, const float* m) {
  return zomath_f_mean_variance(p, n, v, c, m);
}
double mean_variance(const unsigned short* p, int n, double* v, int* c, const unsigned short* m) {
  return zomath_us_mean_variance(p, n, v, c, m);
}
double mean_variance(const unsigned char* p, int n, double* v, int* c, const unsigned char* m) {
  return zomath_b_mean_variance(p, n, v, c, m);
}

#define CUMULATIVE(L, T)                                                          \
  int cumulative_sum(const T* p, unsigned f, unsigned e, T* out, const T* m) {      \
    return zomath_##L##_cumulative_sum(p, f, e, out, m);                            \
  }
CUMULATIVE(d, double)
CUMULATIVE(f, float)
CUMULATIVE(i, int)
CUMULATIVE(us, unsigned short)
CUMULATIVE(b, unsigned char)
#undef CUMULATIVE

int frequency_count(const double* p, int n, unsigned* c, unsigned k, double s, double i) {
  return zomath_d_frequency_count(p, n, c, k, s, i);
}
int frequency_count(const float* p, int n, unsigned* c, unsigned k, float s, float i) {
  return zomath_f_frequency_count(p, n, c, k, s, i);
}
int frequency_count(const unsigned char* p, int n, unsigned* c, unsigned k, unsigned char s,
                    unsigned char i) {
  return zomath_b_frequency_count(p, n, c, k, s, i);
}
int frequency_count(const unsigned short* p, int n, unsigned* c, unsigned k, unsigned short s,
                    unsigned short i) {
  return zomath_us_frequency_count(p, n, c, k, s, i);
}

#define COPY(L, T)                                                                   \
  void copy(unsigned n, const unsigned* idx, T* dest, const T* src, unsigned ns) {     \
    zomath_##L##_copy(n, idx, dest, src, ns);                                          \
  }
COPY(d, double)
COPY(f, float)
COPY(ui, unsigned int)
COPY(us, unsigned short)
COPY(b, unsigned char)
#undef COPY

int stretch(double* p, int n, double a, double b, double c, double d) {
  return zomath_d_stretch(p, n, a, b, c, d);
}
int stretch(float* p, int n, float a, float b, float c, float d) {
  return zomath_f_stretch(p, n, a, b, c, d);
}
int stretch(unsigned short* p, int n, unsigned short a, unsigned short b, unsigned short c,
            unsigned short d) {
  return zomath_us_stretch(p, n, a, b, c, d);
}

int vector_inc(unsigned n, const double* p, int tol, double* f, double* l, double* i) {
  return zomath_d_get_vector_inc(n, p, tol, f, l, i);
}
int vector_inc(unsigned n, const int* p, int tol, int* f, int* l, int* i) {
  return zomath_i_get_vector_inc(n, p, tol, f, l, i);
}

double find_most(const double* p, int n, unsigned bins, double* fraction) {
  return zomath_d_find_most(p, n, bins, fraction);
}
double find_most(const unsigned short* p, int n, unsigned bins, double* fraction) {
  return zomath_us_find_most(p, n, bins, fraction);
}

// ---- typed suites, one a family, each over the types that family has.

template <class T>
class Minmax : public ::testing::Test {};
using MinmaxTypes =
    ::testing::Types<double, float, int, unsigned char, unsigned short, short, char>;
TYPED_TEST_SUITE(Minmax, MinmaxTypes);

TYPED_TEST(Minmax, ExtremesMissingAndTies) {
  using T = TypeParam;
  struct Case {
    std::vector<double> data;
    unsigned first, last;
    int missing;
    unsigned iMin, iMax;
  };
  const Case cases[] = {
      {{3, 1, 4, 1, 5, 9, 2, 9}, 0, 7, 0, 1, 5},  // ties: earliest position
      {{kM, 3, kM, 3, 8, 8}, 0, 5, 2, 1, 4},      // missing skipped, positions kept
      {{kM, kM, kM}, 0, 2, 3, kNone, kNone},      // all missing
      {{9, 1, 5, 0, 7}, 1, 3, 0, 3, 2},           // a sub-range, absolute positions
      {{9, 1, 5, 0, 7}, 2, 4, 0, 3, 4},           // the last index is inclusive
      {{1, 2}, 1, 0, 0, kNone, kNone},            // empty range
      {{kM, 4, 4, 4}, 0, 3, 1, 1, 1},             // equal values after a missing start
  };
  const T m = missing_value<T>();
  for (const Case& c : cases) {
    const auto data = make<T>(c.data);
    unsigned iMin = 123, iMax = 123;
    EXPECT_EQ(minmax(data.data(), c.first, c.last, &m, &iMin, &iMax), c.missing);
    EXPECT_EQ(iMin, c.iMin);
    EXPECT_EQ(iMax, c.iMax);
    if (!has_marker<T>(c.data)) {  // no missing value given: the same answer
      EXPECT_EQ(minmax(data.data(), c.first, c.last, nullptr, &iMin, &iMax), 0);
      EXPECT_EQ(iMin, c.iMin);
    }
  }
  EXPECT_EQ(minmax(static_cast<const T*>(nullptr), 0, 5, &m, nullptr, nullptr), 0);
}

template <class T>
class MinmaxInRange : public ::testing::Test {};
using InRangeTypes = ::testing::Types<double, float, int, unsigned char, unsigned short>;
TYPED_TEST_SUITE(MinmaxInRange, InRangeTypes);

TYPED_TEST(MinmaxInRange, SkipsOutsidersAndMissing) {
  using T = TypeParam;
  struct Case {
    std::vector<double> data;
    double lo, hi;
    int missing;
    unsigned iMin, iMax;
  };
  const Case cases[] = {
      {{5, kM, 1, 9, 3, 7, 3}, 2, 7, 1, 4, 5},  // 1 and 9 passed over; tie on 3 earliest
      {{5, kM, 1, 9, 3, 7}, 1, 9, 1, 2, 3},     // bounds inclusive
      {{5, 6}, 7, 8, 0, kNone, kNone},          // nothing in range
      {{kM, kM}, 0, 10, 2, kNone, kNone},
  };
  const T m = missing_value<T>();
  for (const Case& c : cases) {
    const auto data = make<T>(c.data);
    unsigned iMin = 123, iMax = 123;
    EXPECT_EQ(minmax_in_range(data.data(), static_cast<int>(data.size()), T(c.lo), T(c.hi), &m,
                              &iMin, &iMax),
              c.missing);
    EXPECT_EQ(iMin, c.iMin);
    EXPECT_EQ(iMax, c.iMax);
  }
  unsigned iMin = 123;
  EXPECT_EQ(minmax_in_range(static_cast<const T*>(nullptr), 4, T(0), T(1), &m, &iMin, nullptr), 0);
  EXPECT_EQ(iMin, kNone);
}

TEST(MinmaxFloating, NaNIsNeverChosen) {
  // A NaN first would otherwise win every comparison by losing them all.
  const double nan = std::nan("");
  const double d[] = {nan, 2, nan, 1, 3};
  unsigned iMin, iMax;
  EXPECT_EQ(zomath_d_minmax(d, 0, 4, &iMin, &iMax), 0);
  EXPECT_EQ(iMin, 3u);
  EXPECT_EQ(iMax, 4u);
  const float f[] = {std::nanf(""), std::nanf("")};
  EXPECT_EQ(zomath_f_minmax(f, 0, 1, nullptr, &iMin, &iMax), 0);
  EXPECT_EQ(iMin, kNone);
}

TEST(MinmaxComplex, FourQuantitiesSideBySide) {
  const d_complex z[] = {{1, 0}, {NANUM, 5}, {-2, 0}, {0, 3}, {0, -1}, {1, 1}, {0, 3}};
  int iMin[4], iMax[4];
  EXPECT_EQ(zomath_z_minmax(z, 0, 6, iMin, iMax), 1);
  // real, imaginary, phase (atan2: pi for -2, -pi/2 for -i), magnitude (1 first, 3 first)
  const int wantMin[4] = {2, 4, 4, 0}, wantMax[4] = {0, 3, 2, 3};
  for (int k = 0; k < 4; ++k) {
    EXPECT_EQ(iMin[k], wantMin[k]) << k;
    EXPECT_EQ(iMax[k], wantMax[k]) << k;
  }
  const d_complex gone[] = {{1, NANUM}, {NANUM, NANUM}};
  EXPECT_EQ(zomath_z_minmax(gone, 0, 1, iMin, iMax), 2);
  EXPECT_EQ(iMin[3], -1);
}

template <class T>
class Sum : public ::testing::Test {};
using SumTypes = ::testing::Types<double, float, unsigned char, unsigned short, unsigned int>;
TYPED_TEST_SUITE(Sum, SumTypes);

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
  EXPECT_EQ(lo, T(0));
  EXPECT_EQ(hi, T(0));
  EXPECT_EQ(iLo, -1);
  EXPECT_EQ(iHi, -1);
  EXPECT_EQ(sum(static_cast<const T*>(nullptr), 3, &lo, &hi, &iLo, &iHi), 0.0);
  if constexpr (std::is_integral_v<T>) {  // the sum is wider than the element: no wrap
    const T top = std::numeric_limits<T>::max();
    const std::vector<T> big(3, top);
    EXPECT_EQ(sum(big.data(), 3, nullptr, nullptr, nullptr, nullptr), 3.0 * static_cast<double>(top));
  }
}

TEST(Sum, DoubleFormSkipsNanum) {
  const double d[] = {NANUM, 2, NANUM, -1};
  double lo, hi;
  int iLo, iHi, valid;
  EXPECT_EQ(zomath_d_sum(d, 4, &lo, &hi, &iLo, &iHi, &valid), 1.0);
  EXPECT_EQ(valid, 2);
  EXPECT_EQ(iLo, 3);
  EXPECT_EQ(iHi, 1);
  const double huge[] = {DBL_MAX, DBL_MAX, -DBL_MAX};
  EXPECT_EQ(zomath_d_sum(huge, 2, nullptr, nullptr, nullptr, nullptr, nullptr), INFINITY);
  EXPECT_EQ(zomath_d_sum(huge, 3, nullptr, nullptr, nullptr, nullptr, nullptr), DBL_MAX);
  EXPECT_EQ(zomath_d_sum(d, 1, &lo, &hi, &iLo, &iHi, &valid), 0.0);  // all missing
  EXPECT_EQ(valid, 0);
  EXPECT_EQ(iLo, -1);
  EXPECT_EQ(lo, 0.0);
  // Accumulated wider than double: 1 + 2^-60 + ... - 1 keeps the small terms.
  const double tiny[] = {1.0, 0x1p-60, 0x1p-60, -1.0};
  EXPECT_EQ(zomath_d_sum(tiny, 4, nullptr, nullptr, nullptr, nullptr, nullptr), 0x1p-59);
}

template <class T>
class MeanVariance : public ::testing::Test {};
using MeanVarianceTypes = ::testing::Types<double, float, unsigned short, unsigned char>;
TYPED_TEST_SUITE(MeanVariance, MeanVarianceTypes);

TYPED_TEST(MeanVariance, CasesThroughEachType) {
  using T = TypeParam;
  struct Case {
    std::vector<double> data;
    double mean, variance;
    int valid;
  };
  const Case cases[] = {
      {{2, 4, 4, 4, 5, 5, 7, 9}, 5, 32.0 / 7, 8},
      {{kM, 2, 4, kM, 6}, 4, 4, 3},
      {{5}, 5, 0, 1},
      {{kM, kM}, NANUM, NANUM, 0},
      {{}, NANUM, NANUM, 0},
  };
  const T m = missing_value<T>();
  for (const Case& c : cases) {
    const auto data = make<T>(c.data);
    double variance = 123;
    int valid = -5;
    EXPECT_DOUBLE_EQ(mean_variance(data.data(), static_cast<int>(data.size()), &variance, &valid, &m),
                     c.mean);
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
    ASSERT_FALSE(y.empty());
    double variance;
    int valid;
    const double mean = zomath_d_mean_variance(y.data(), static_cast<int>(y.size()), &variance, &valid);
    EXPECT_EQ(valid, static_cast<int>(y.size()));
    EXPECT_NEAR(mean, s.mean, 1e-15 * s.mean) << s.file;
    EXPECT_NEAR(std::sqrt(variance), s.sd, 1e-7 * s.sd) << s.file;
  }
}

template <class T>
class CumulativeSum : public ::testing::Test {};
using CumulativeTypes = ::testing::Types<double, float, int, unsigned short, unsigned char>;
TYPED_TEST_SUITE(CumulativeSum, CumulativeTypes);

TYPED_TEST(CumulativeSum, RunningTotals) {
  using T = TypeParam;
  struct Case {
    std::vector<double> data;
    unsigned first, end;
    std::vector<double> out;  // what pOut holds afterwards (starting from 0s)
    int missing;
  };
  const Case cases[] = {
      {{1, 2, kM, 3}, 0, 4, {1, 3, 3, 6}, 1},  // a missing element repeats the total
      {{kM, 2, 5}, 0, 3, {0, 2, 7}, 1},        // a missing first element starts at 0
      {{5, 1, 2, 3}, 1, 3, {1, 3, 0, 0}, 0},   // exclusive end
      {{5, 6}, 1, 1, {6, 0, 0, 0}, 0},         // empty range: pOut[0] still written
      {{kM, kM}, 0, 2, {0, 0, 0, 0}, 2},
  };
  const T m = missing_value<T>();
  for (const Case& c : cases) {
    const auto data = make<T>(c.data);
    std::vector<T> out(c.out.size() < 4 ? 4 : c.out.size(), T(0));
    EXPECT_EQ(cumulative_sum(data.data(), c.first, c.end, out.data(), &m), c.missing);
    for (std::size_t k = 0; k < c.out.size(); ++k) EXPECT_EQ(out[k], T(c.out[k])) << k;
  }
}

TEST(CumulativeSum, TotalsKeptInTheElementTypeWrap) {
  // Hosts rely on the 8- and 16-bit forms wrapping like their element type.
  const unsigned short us[] = {65535, 2};
  unsigned short usOut[2];
  zomath_us_cumulative_sum(us, 0, 2, usOut, nullptr);
  EXPECT_EQ(usOut[1], 1);
  const unsigned char b[] = {200, 100};
  unsigned char bOut[2];
  zomath_b_cumulative_sum(b, 0, 2, bOut, nullptr);
  EXPECT_EQ(bOut[1], 44);
  const int i[] = {INT_MAX, 1};
  int iOut[2];
  zomath_i_cumulative_sum(i, 0, 2, iOut, nullptr);
  EXPECT_EQ(iOut[1], INT_MIN);
}

template <class T>
class FrequencyCount : public ::testing::Test {};
using FrequencyTypes = ::testing::Types<double, float, unsigned char, unsigned short>;
TYPED_TEST_SUITE(FrequencyCount, FrequencyTypes);

TYPED_TEST(FrequencyCount, EdgesBelongToTheBinTheyStart) {
  using T = TypeParam;
  const auto data = make<T>({0, 1, 1, 2, 5, 9, 10, 12});
  unsigned counts[5] = {7, 7, 7, 7, 7};
  EXPECT_EQ(frequency_count(data.data(), 8, counts, 5, T(0), T(2)), 0);
  const unsigned want[5] = {3, 1, 1, 0, 1};  // 10 and 12 lie beyond the bins
  for (int k = 0; k < 5; ++k) EXPECT_EQ(counts[k], want[k]) << k;
  unsigned untouched[2] = {7, 7};
  EXPECT_EQ(frequency_count(data.data(), 8, untouched, 2, T(0), T(0)), -1);
  EXPECT_EQ(untouched[0], 7u);
  EXPECT_EQ(frequency_count(data.data(), 8, nullptr, 2, T(0), T(1)), -1);
  EXPECT_EQ(frequency_count(data.data(), 0, counts, 5, T(0), T(1)), 0);
  EXPECT_EQ(counts[0], 0u);
}

TEST(FrequencyCount, DoubleDropsMissingAndNonFinite) {
  const double d[] = {NANUM, 0.5, std::nan(""), INFINITY, 0.25, -INFINITY};
  unsigned counts[2];
  EXPECT_EQ(zomath_d_frequency_count(d, 6, counts, 2, 0, 0.5), 0);
  EXPECT_EQ(counts[0], 1u);
  EXPECT_EQ(counts[1], 1u);
  EXPECT_EQ(zomath_d_frequency_count(d, 6, counts, 2, 0, INFINITY), -1);
}

template <class T>
class Copy : public ::testing::Test {};
using CopyTypes = ::testing::Types<double, float, unsigned int, unsigned short, unsigned char>;
TYPED_TEST_SUITE(Copy, CopyTypes);

TYPED_TEST(Copy, GatherSkipsOutOfRangeAndSurvivesAliasing) {
  using T = TypeParam;
  const auto src = make<T>({10, 11, 12, 13});
  std::vector<T> dest(4, T(0));
  const unsigned idx[] = {3, 0, 9, 1};
  copy(4, idx, dest.data(), src.data(), 4);
  EXPECT_EQ(dest, make<T>({13, 10, 0, 11}));
  // The same array as source and destination: a naive in-place gather would give 13 12 12 13.
  auto same = src;
  const unsigned reverse[] = {3, 2, 1, 0};
  copy(4, reverse, same.data(), same.data(), 4);
  EXPECT_EQ(same, make<T>({13, 12, 11, 10}));
  // Destination one past the source start.
  auto shifted = make<T>({10, 11, 12, 13, 14});
  const unsigned firsts[] = {0, 0, 1, 2};
  copy(4, firsts, shifted.data() + 1, shifted.data(), 5);
  EXPECT_EQ(shifted, make<T>({10, 10, 10, 11, 12}));
  copy(4, idx, dest.data(), src.data(), 0);  // an empty source copies nothing
  copy(4, nullptr, dest.data(), src.data(), 4);
  EXPECT_EQ(dest, make<T>({13, 10, 0, 11}));
}

template <class T>
class Stretch : public ::testing::Test {};
using StretchTypes = ::testing::Types<double, float, unsigned short>;
TYPED_TEST_SUITE(Stretch, StretchTypes);

TYPED_TEST(Stretch, MapsAndClamps) {
  using T = TypeParam;
  auto data = make<T>({0, 50, 54, 55, 100, 200, 10});
  ASSERT_EQ(stretch(data.data(), 7, T(10), T(100), T(0), T(10)), 0);
  if constexpr (std::is_integral_v<T>) {
    // The half rounds: 0.5 + 10 (x - 10) / 90, truncated.
    EXPECT_EQ(data, make<T>({0, 4, 5, 5, 10, 10, 0}));
  } else {
    // The floating forms keep the half: from-low maps to to-low + 0.5, from-high to to-high + 0.5.
    const double want[] = {0, 0.5 + 40 / 9.0, 0.5 + 44 / 9.0, 0.5 + 5, 10.5, 10, 0.5};
    for (int k = 0; k < 7; ++k) EXPECT_NEAR(data[k], want[k], 4e-6) << k;
  }
  auto before = data;
  EXPECT_EQ(stretch(data.data(), 7, T(5), T(5), T(0), T(1)), -3);  // empty source range
  EXPECT_EQ(data, before);
  EXPECT_EQ(stretch(static_cast<T*>(nullptr), 3, T(0), T(1), T(0), T(1)), -3);
}

TEST(Stretch, DoubleLeavesNanumAlone) {
  double d[] = {NANUM, 1};
  EXPECT_EQ(zomath_d_stretch(d, 2, 0, 1, 0, 1), 0);
  EXPECT_EQ(d[0], NANUM);
  EXPECT_EQ(d[1], 1.5);
  EXPECT_EQ(zomath_d_stretch(d, 2, 0, INFINITY, 0, 1), -3);
}

template <class T>
class VectorInc : public ::testing::Test {};
using IncTypes = ::testing::Types<double, int>;
TYPED_TEST_SUITE(VectorInc, IncTypes);

TYPED_TEST(VectorInc, EvenUnevenAndNotMonotonic) {
  using T = TypeParam;
  struct Case {
    std::vector<double> data;
    int tolerance, result;
    double first, last, inc;
  };
  const Case cases[] = {
      {{1, 3, 5, 7}, 0, 1, 1, 7, 2},   // equal steps pass a zero tolerance
      {{7, 5, 3, 1}, 0, -1, 7, 1, -2},
      {{1, 3, 6}, 0, 2, 0, 0, 0},      // steps 2, 3 around 2.5
      {{1, 3, 6}, 1, 1, 1, 6, 2},      // within 1 * 2.5
      {{6, 3, 1}, 0, -2, 0, 0, 0},
      {{1, 1, 2}, 5, 0, 0, 0, 0},      // not strictly monotonic
      {{1, 3, 2}, 5, 0, 0, 0, 0},
      {{4}, 5, 0, 0, 0, 0},
  };
  for (const Case& c : cases) {
    const auto data = make<T>(c.data);
    T first = 0, last = 0, inc = 0;
    EXPECT_EQ(vector_inc(static_cast<unsigned>(data.size()), data.data(), c.tolerance, &first,
                         &last, &inc),
              c.result);
    EXPECT_EQ(first, T(c.first));
    EXPECT_EQ(last, T(c.last));
    EXPECT_EQ(inc, T(c.inc));
  }
}

TEST(VectorInc, IntegerStepsDoNotOverflow) {
  const int wide[] = {INT_MIN, 0, INT_MAX - 1};  // steps of 2^31 and 2^31 - 2
  int first, last, inc;
  EXPECT_EQ(zomath_i_get_vector_inc(3, wide, 0, &first, &last, &inc), 2);
  EXPECT_EQ(zomath_i_get_vector_inc(3, wide, 1, &first, &last, &inc), 1);
  EXPECT_EQ(inc, INT_MAX);  // the first step, 2^31, saturated
  const double bad[] = {0, 1, INFINITY};
  EXPECT_EQ(zomath_d_get_vector_inc(3, bad, 1, nullptr, nullptr, nullptr), 0);
}

template <class T>
class FindMost : public ::testing::Test {};
using FindMostTypes = ::testing::Types<double, unsigned short>;
TYPED_TEST_SUITE(FindMost, FindMostTypes);

TYPED_TEST(FindMost, FullestBinEarliestOnATie) {
  using T = TypeParam;
  struct Case {
    std::vector<double> data;
    unsigned bins;
    double most, fraction;
  };
  const Case cases[] = {
      {{0, 1, 5, 6, 6, 9, 10}, 5, 0, 2.0 / 6},  // bins 0 and 6 tie; the maximum drops out
      {{0, 4, 4, 8}, 2, 4, 2.0 / 3},
      {{5, 5, 5}, 3, 5, 1},                      // no spread: the value itself
  };
  for (const Case& c : cases) {
    const auto data = make<T>(c.data);
    double fraction = -1;
    EXPECT_EQ(find_most(data.data(), static_cast<int>(data.size()), c.bins, &fraction), c.most);
    EXPECT_DOUBLE_EQ(fraction, c.fraction);
  }
  const auto data = make<T>({1, 2});
  double fraction = -1;
  const double none = std::is_same_v<T, double> ? NANUM : -1;
  EXPECT_EQ(find_most(data.data(), 2, 0, &fraction), none);
  EXPECT_EQ(fraction, 0.0);
  EXPECT_EQ(find_most(data.data(), 0, 4, &fraction), none);
}

TEST(FindMost, DoubleFormSkipsNanumAndUsesRealWidths) {
  const double d[] = {NANUM, 0.0, 0.3, 0.35, 1.0};
  double fraction;
  EXPECT_DOUBLE_EQ(zomath_d_find_most(d, 5, 4, &fraction), 0.25);
  EXPECT_DOUBLE_EQ(fraction, 2.0 / 3);  // 1.0 lies on the top edge and drops out
  const double allMissing[] = {NANUM, NANUM};
  EXPECT_EQ(zomath_d_find_most(allMissing, 2, 4, &fraction), NANUM);
  // With fewer values than bins the integer form still finds the mode.
  const unsigned short us[] = {3, 4, 4, 5};
  EXPECT_EQ(zomath_us_find_most(us, 4, 10, &fraction), 4);
}

}  // namespace
