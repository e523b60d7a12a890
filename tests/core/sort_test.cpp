// Sorting: the comparison functions, both algorithms over every item size, and the companion
// rules of the sorter classes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <numeric>
#include <random>
#include <vector>

#include "zomath/sort.h"

namespace {

using SortFn = void (*)(void*, int, int, int, void*);

void* fn(zomath_compare_fn f) { return reinterpret_cast<void*>(f); }

TEST(CompareFunctions, SignsAndNaN) {
  const double a = 1.0, b = 2.0, nan = std::nan("");
  EXPECT_EQ(Compare_double_Ascend(&a, &b), -1);
  EXPECT_EQ(Compare_double_Ascend(&b, &a), 1);
  EXPECT_EQ(Compare_double_Ascend(&a, &a), 0);
  EXPECT_EQ(Compare_double_Descend(&a, &b), 1);
  EXPECT_EQ(Compare_double_Ascend(&nan, &a), 0);  // a NaN equals everything
  EXPECT_EQ(Compare_double_Ascend(&a, &nan), 0);
  const float fa = -1.0f, fb = 3.0f;
  EXPECT_EQ(Compare_float_Ascend(&fa, &fb), -1);
  EXPECT_EQ(Compare_float_Descend(&fa, &fb), 1);
  // Signedness follows the element type: 0xFF is -1 as char, 255 as BYTE.
  const char c1 = static_cast<char>(-1), c2 = 1;
  EXPECT_EQ(Compare_char_Ascend(&c1, &c2), -1);
  EXPECT_EQ(Compare_BYTE_Ascend(&c1, &c2), 1);
  const short s1 = -5, s2 = 5;
  EXPECT_EQ(Compare_short_Ascend(&s1, &s2), -1);
  EXPECT_EQ(Compare_WORD_Ascend(&s1, &s2), 1);
  const int i1 = -5, i2 = 5;
  EXPECT_EQ(Compare_int_Ascend(&i1, &i2), -1);
  EXPECT_EQ(Compare_UINT_Ascend(&i1, &i2), 1);
  EXPECT_EQ(Compare_UINT_Descend(&i1, &i2), -1);
}

TEST(CompareFunctions, ChosenByTypeCode) {
  struct Case { int type; zomath_compare_fn ascend, descend; };
  const Case cases[] = {
      {2, Compare_char_Ascend, Compare_char_Descend},   {3, Compare_char_Ascend, Compare_char_Descend},
      {4, Compare_BYTE_Ascend, Compare_BYTE_Descend},   {5, Compare_short_Ascend, Compare_short_Descend},
      {6, Compare_WORD_Ascend, Compare_WORD_Descend},   {8, Compare_int_Ascend, Compare_int_Descend},
      {9, Compare_UINT_Ascend, Compare_UINT_Descend},   {10, Compare_float_Ascend, Compare_float_Descend},
      {11, Compare_double_Ascend, Compare_double_Descend}, {13, Compare_double_Ascend, Compare_double_Descend},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(GetAppropriateCompareAscend(c.type), fn(c.ascend)) << c.type;
    EXPECT_EQ(GetAppropriateCompareDescend(c.type), fn(c.descend)) << c.type;
  }
  for (int type : {-1, 0, 1, 7, 12, 14, 100}) {
    EXPECT_EQ(GetAppropriateCompareAscend(type), nullptr) << type;
    EXPECT_EQ(GetAppropriateCompareDescend(type), nullptr) << type;
  }
}

// A host comparison the library can't recognise, so the generic path runs.
int host_compare_int(const void* a, const void* b) {
  int x, y;
  std::memcpy(&x, a, sizeof x);
  std::memcpy(&y, b, sizeof y);
  return (x > y) - (x < y);
}

// Items of every size the engines specialise, and odd ones, keyed by their first int.
TEST(SortAlgorithms, SortEveryItemSizeLikeStdSort) {
  std::mt19937 rng(7);
  for (SortFn sort : {theQuickSort, theMergeSort}) {
    for (int bytes : {4, 8, 12, 16, 20, 36, 300}) {
      for (int n : {2, 3, 17, 100, 1000, 5000}) {
        const int words = bytes / 4;
        std::vector<int> data(static_cast<size_t>(n) * words);
        for (int i = 0; i < n; ++i) {
          data[static_cast<size_t>(i) * words] = static_cast<int>(rng() % 50);  // many ties
          for (int w = 1; w < words; ++w) data[static_cast<size_t>(i) * words + w] = i;
        }
        for (void* cmp : {fn(Compare_int_Ascend), fn(host_compare_int)}) {
          std::vector<int> work = data;
          sort(work.data(), 0, n - 1, bytes, cmp);
          std::vector<int> keys, want;
          for (int i = 0; i < n; ++i) {
            keys.push_back(work[static_cast<size_t>(i) * words]);
            want.push_back(data[static_cast<size_t>(i) * words]);
          }
          std::sort(want.begin(), want.end());
          ASSERT_EQ(keys, want) << "bytes " << bytes << " n " << n;
          if (words > 1) {  // items moved whole: the payloads are a permutation of 0..n-1
            std::vector<int> payload;
            for (int i = 0; i < n; ++i) payload.push_back(work[static_cast<size_t>(i) * words + 1]);
            std::sort(payload.begin(), payload.end());
            for (int i = 0; i < n; ++i) ASSERT_EQ(payload[i], i);
          }
        }
      }
    }
  }
}

TEST(SortAlgorithms, MergeSortIsStable) {
  std::mt19937 rng(11);
  struct Item { double key; int order; };
  std::vector<Item> items(20000);
  for (int i = 0; i < 20000; ++i) items[i] = {static_cast<double>(rng() % 30), i};
  for (void* cmp : {fn(Compare_double_Ascend), fn(Compare_double_Descend)}) {
    std::vector<Item> work = items;
    theMergeSort(work.data(), 0, 19999, sizeof(Item), cmp);
    const bool ascending = cmp == fn(Compare_double_Ascend);
    for (size_t i = 1; i < work.size(); ++i) {
      if (work[i - 1].key == work[i].key)
        ASSERT_LT(work[i - 1].order, work[i].order) << "equal keys must keep their order";
      else
        ASSERT_EQ(work[i - 1].key < work[i].key, ascending);
    }
  }
}

TEST(SortAlgorithms, SortOnlyTheInclusiveRange) {
  for (SortFn sort : {theQuickSort, theMergeSort}) {
    std::vector<double> v = {9, 8, 7, 6, 5, 4, 3, 2, 1, 0};
    sort(v.data(), 2, 6, sizeof(double), fn(Compare_double_Ascend));
    EXPECT_EQ(v, (std::vector<double>{9, 8, 3, 4, 5, 6, 7, 2, 1, 0}));
    sort(v.data(), 0, 9, sizeof(double), fn(Compare_double_Descend));
    EXPECT_EQ(v, (std::vector<double>{9, 8, 7, 6, 5, 4, 3, 2, 1, 0}));
  }
}

TEST(SortAlgorithms, RefuseBadArgumentsWithoutTouchingData) {
  for (SortFn sort : {theQuickSort, theMergeSort}) {
    std::vector<double> v = {3, 1, 2};
    const std::vector<double> before = v;
    sort(nullptr, 0, 2, 8, fn(Compare_double_Ascend));
    sort(v.data(), 0, 2, 8, nullptr);
    sort(v.data(), 0, 2, 0, fn(Compare_double_Ascend));
    sort(v.data(), -1, 2, 8, fn(Compare_double_Ascend));
    sort(v.data(), 2, 1, 8, fn(Compare_double_Ascend));
    sort(v.data(), 0, 2, 4, fn(Compare_double_Ascend));  // items too small for their key
    EXPECT_EQ(v, before);
  }
}

// NaNs and a comparison that answers at random break every ordering promise; the sorts must
// still finish, stay within the range and keep the multiset of items.
unsigned int g_state = 1;
int random_compare(const void*, const void*) {
  g_state = g_state * 1103515245u + 12345u;
  return static_cast<int>((g_state >> 16) % 3) - 1;
}

TEST(SortAlgorithms, SurviveInconsistentComparisons) {
  std::mt19937 rng(3);
  for (SortFn sort : {theQuickSort, theMergeSort}) {
    std::vector<double> v(5002);
    for (double& x : v) x = (rng() % 4 == 0) ? std::nan("") : static_cast<double>(rng() % 100);
    v.front() = v.back() = -12345.0;  // sentinels outside the sorted range
    std::vector<double> inner(v.begin() + 1, v.end() - 1);
    for (void* cmp : {fn(Compare_double_Ascend), fn(random_compare)}) {
      std::vector<double> work = v;
      sort(work.data(), 1, 5000, sizeof(double), cmp);
      EXPECT_EQ(work.front(), -12345.0);
      EXPECT_EQ(work.back(), -12345.0);
      std::vector<double> got(work.begin() + 1, work.end() - 1), want = inner;
      auto key = [](double x) { return std::isnan(x) ? 1e9 : x; };
      auto by_key = [&](double a, double b) { return key(a) < key(b); };
      std::sort(got.begin(), got.end(), by_key);
      std::sort(want.begin(), want.end(), by_key);
      for (size_t i = 0; i < got.size(); ++i) ASSERT_EQ(key(got[i]), key(want[i]));
    }
  }
}

TEST(SortAlgorithms, AdversarialInputsStaySorted) {
  // Sorted, reversed, all equal and organ-pipe inputs (the classic quicksort killers).
  const int n = 100000;
  std::vector<std::vector<double>> inputs(4, std::vector<double>(n));
  for (int i = 0; i < n; ++i) {
    inputs[0][i] = i;
    inputs[1][i] = n - i;
    inputs[2][i] = 42;
    inputs[3][i] = i < n / 2 ? i : n - i;
  }
  for (SortFn sort : {theQuickSort, theMergeSort})
    for (std::vector<double> v : inputs) {
      sort(v.data(), 0, n - 1, sizeof(double), fn(Compare_double_Ascend));
      EXPECT_TRUE(std::is_sorted(v.begin(), v.end()));
    }
}

// ---------------------------------------------------------------------------------------------
// Sorter classes

struct Pair {
  std::vector<double> main;
  std::vector<int> companion;
};

Pair sample() { return {{5, 3, 9, 1, 7}, {50, 30, 90, 10, 70}}; }

TEST(Sorter, CompanionFollowsTheMainItems) {
  for (int algorithm : {0, 1}) {
    Pair p = sample();
    std::unique_ptr<CZSortBase> s(zomCreateSorter(algorithm, p.main.data(), 5, sizeof(double),
                                                  p.companion.data(), sizeof(int), 5));
    ASSERT_TRUE(s);
    EXPECT_EQ(s->Sort(0, 4, fn(Compare_double_Ascend)), 1);
    EXPECT_EQ(p.main, (std::vector<double>{1, 3, 5, 7, 9}));
    EXPECT_EQ(p.companion, (std::vector<int>{10, 30, 50, 70, 90}));
    EXPECT_EQ(s->Sort(0, 4, fn(Compare_double_Descend)), 1);
    EXPECT_EQ(p.companion, (std::vector<int>{90, 70, 50, 30, 10}));
  }
}

TEST(Sorter, KeepMainReordersTheCompanionAlone) {
  Pair p = sample();
  CMergeSort s(p.main.data(), 5, sizeof(double), p.companion.data(), sizeof(int), 5);
  EXPECT_EQ(s.Sort(0, 4, fn(Compare_double_Ascend), true), 1);
  EXPECT_EQ(p.main, sample().main);
  EXPECT_EQ(p.companion, (std::vector<int>{10, 30, 50, 70, 90}));
}

TEST(Sorter, ShorterCompanionReceivesOnlyItsOwnCount) {
  Pair p = sample();
  p.companion.resize(3);  // {50, 30, 90}: items 3 and 4 of the main array have no companion
  CQSort s(p.main.data(), 5, sizeof(double), p.companion.data(), sizeof(int), 3);
  EXPECT_EQ(s.Sort(0, 4, fn(Compare_double_Ascend)), 1);
  EXPECT_EQ(p.main, (std::vector<double>{1, 3, 5, 7, 9}));
  // Sorted records: 1 (no companion), 3 (30), 5 (50), 7 (none), 9 (90); the first three return.
  EXPECT_EQ(p.companion, (std::vector<int>{0, 30, 50}));
}

TEST(Sorter, RangeRules) {
  struct Case { int first, last, result; std::vector<double> main; };
  const Case cases[] = {
      {2, 2, 1, {5, 3, 9, 1, 7}},      // one item: done, nothing touched
      {5, 9, 0, {5, 3, 9, 1, 7}},      // wholly beyond the array
      {-3, -1, 0, {5, 3, 9, 1, 7}},    // wholly before it
      {3, 1, 0, {5, 3, 9, 1, 7}},      // reversed
      {-2, 2, 1, {3, 5, 9, 1, 7}},     // clamped at the start
      {2, 99, 1, {5, 3, 1, 7, 9}},     // clamped at the end
      {-5, 99, 1, {1, 3, 5, 7, 9}},
  };
  for (const Case& c : cases) {
    for (int algorithm : {0, 1}) {
      Pair p = sample();
      std::unique_ptr<CZSortBase> s(zomCreateSorter(algorithm, p.main.data(), 5, sizeof(double),
                                                    p.companion.data(), sizeof(int), 5));
      EXPECT_EQ(s->Sort(c.first, c.last, fn(Compare_double_Ascend)), c.result)
          << c.first << ".." << c.last;
      EXPECT_EQ(p.main, c.main) << c.first << ".." << c.last;
      for (int i = 0; i < 5; ++i) EXPECT_EQ(p.companion[i], 10 * p.main[i]);
    }
  }
}

TEST(Sorter, WithoutCompanionSortsInPlace) {
  std::vector<short> v = {4, -2, 7, 0};
  CQSort s(v.data(), 4, sizeof(short));
  EXPECT_EQ(s.Sort(0, 3, GetAppropriateCompareAscend(5)), 1);
  EXPECT_EQ(v, (std::vector<short>{-2, 0, 4, 7}));
}

TEST(Sorter, ErrorIsRemembered) {
  CQSort s(nullptr, 5, sizeof(double));
  EXPECT_TRUE(s.HasError());
  EXPECT_EQ(s.Sort(0, 4, fn(Compare_double_Ascend)), 0);
  EXPECT_EQ(s.Sort(0, 4, fn(Compare_double_Ascend)), 0);
}

TEST(Sorter, CopiesShareTheCallersArrays) {
  Pair p = sample();
  CMergeSort original(p.main.data(), 5, sizeof(double), p.companion.data(), sizeof(int), 5);
  CMergeSort copy(original);
  CMergeSort assigned(nullptr, 0, 8);
  assigned = original;
  EXPECT_FALSE(assigned.HasError());
  EXPECT_EQ(copy.Sort(0, 4, fn(Compare_double_Descend)), 1);
  EXPECT_EQ(p.main, (std::vector<double>{9, 7, 5, 3, 1}));
  EXPECT_EQ(assigned.Sort(0, 4, fn(Compare_double_Ascend)), 1);
  EXPECT_EQ(p.companion, (std::vector<int>{10, 30, 50, 70, 90}));
}

TEST(Sorter, CreateSorterPicksTheAlgorithm) {
  // The stable form keeps equal keys in order whatever the algorithm code, but 0.
  std::vector<int> keys(64, 1), order(64);
  std::iota(order.begin(), order.end(), 0);
  for (int algorithm : {1, 2, -1}) {
    std::unique_ptr<CZSortBase> s(zomCreateSorter(algorithm, keys.data(), 64, sizeof(int),
                                                  order.data(), sizeof(int), 64));
    ASSERT_TRUE(dynamic_cast<CMergeSort*>(s.get()));
    EXPECT_EQ(s->Sort(0, 63, fn(Compare_int_Descend)), 1);
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
  }
  std::unique_ptr<CZSortBase> q(zomCreateSorter(0, keys.data(), 64, sizeof(int), nullptr, 0, 0));
  EXPECT_TRUE(dynamic_cast<CQSort*>(q.get()));
}

}  // namespace
