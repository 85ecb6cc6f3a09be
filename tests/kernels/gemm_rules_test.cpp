// SPDX-License-Identifier: BSD-3-Clause
// The decisions of level 3 as tables: tuning classes, gates, thread schemes with their odd branches,
// blocking, work memory, and the cuts among threads.
#include "blas/level3/gemm_rules.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "blas/kernels/gemm_kernels.h"
#include "blas/level3/gemm_blocks.h"
#include "blas/level3/gemm_partition.h"
#include "blas/level3/side_rules.h"
#include "service/cpu_facts.h"

namespace qel::test {
namespace {

constexpr int kMiB = 1 << 20;
constexpr element_type kAllTypes[] = {element_type::s, element_type::d, element_type::c, element_type::z};

dense_processor processor_of(int level, bool sse41 = true, bool family_10h = false, int second_cache = -1,
                             int third_cache = -1) {
  dense_processor p;
  p.level = level;
  p.sse41 = sse41;
  p.family_10h = family_10h;
  if (second_cache >= 0 || third_cache >= 0) {
    p.caches[0] = 3;
    p.caches[1] = 32 << 10;
    p.caches[2] = second_cache >= 0 ? second_cache : 0;
    p.caches[3] = third_cache >= 0 ? third_cache : 0;
  }
  return p;
}
/// A processor of each tuning class.
dense_processor processor_of_class(int number) {
  switch (number) {
    case kClassSsse3:
      return processor_of(2, false);
    case kClassBigCache:
      return processor_of(2);
    case kClassSse42:
      return processor_of(3);
    case kClassSmallCache:
      return processor_of(2, true, false, 3 * kMiB);
    case kClassAvx:
      return processor_of(4);
    case kClassFamily10h:
      return processor_of(0, false, true);
    default:
      return processor_of(1);
  }
}

TEST(GemmClass, FollowsLevelFeaturesAndSecondCache) {
  struct {
    dense_processor processor;
    int wanted;
  } const cases[] = {
      {processor_of(0), kClassDefault},
      {processor_of(0, false, true), kClassFamily10h},
      {processor_of(1, true, true), kClassDefault},
      {processor_of(2, false, false, kMiB), kClassSsse3},
      {processor_of(2), kClassBigCache},
      {processor_of(2, true, false, 3 * kMiB + 1), kClassBigCache},
      {processor_of(2, true, false, 3 * kMiB), kClassSmallCache},
      {processor_of(3, true, false, kMiB), kClassSse42},
      {processor_of(4), kClassAvx},
      {processor_of(5), kClassSse42},
      {processor_of(6), kClassSse42},
  };
  for (const auto& c : cases) EXPECT_EQ(c.wanted, gemm_class(c.processor)) << c.processor.level << c.wanted;
  for (int number = 0; number <= 6; ++number) EXPECT_EQ(number, gemm_class(processor_of_class(number)));
}

TEST(GemmClass, ReadsVendorAndFamilyFromCpuid) {
  const cpuid_answer amd{1, 0x68747541, 0x444d4163, 0x69746e65}, intel{1, 0x756e6547, 0x6c65746e, 0x49656e69};
  const cpuid_answer family_10h{0x00100F42, 0, 0, 0}, family_17h{0x00800F12, 0, 0, 0},
      family_f{0x00000F12, 0, 0, 0};
  EXPECT_TRUE(processor_from(0, amd, family_10h).family_10h);
  EXPECT_FALSE(processor_from(0, intel, family_10h).family_10h);
  EXPECT_FALSE(processor_from(0, amd, family_17h).family_10h);
  EXPECT_FALSE(processor_from(0, amd, family_f).family_10h);
  EXPECT_TRUE(processor_from(2, intel, {0, 0, 1u << 19, 0}).sse41);
  EXPECT_FALSE(processor_from(2, intel, {0, 0, 1u << 20, 0}).sse41);
}

struct scheme_case {
  int class_number;
  int threads;
  core_int m, n, k;
  gemm_scheme scheme;
  core_int used, grid_rows, grid_cols, block_m, block_n, block_k;
  element_type type = element_type::d;
  bool in_parallel = false;
};
gemm_choice choice_for(const scheme_case& c) {
  return choose_gemm({c.type, processor_of_class(c.class_number), c.threads, c.in_parallel, c.m, c.n, c.k});
}

constexpr auto kSerial = gemm_scheme::serial;
constexpr auto kGrid = gemm_scheme::grid;
constexpr auto kRows = gemm_scheme::split_rows;
constexpr auto kCols = gemm_scheme::split_cols;
constexpr auto kPrivate = gemm_scheme::private_pack;
constexpr auto kSharedA = gemm_scheme::shared_a;

const scheme_case kSchemes[] = {
    // Sizes that never fork, on any class.
    {0, 8, 5, 1000, 1000, kSerial, 1, 0, 0, 0, 0, 0},
    {3, 8, 5, 1000, 1000, kSerial, 1, 0, 0, 0, 0, 0},
    {0, 8, 1000, 1000, 4, kSerial, 1, 0, 0, 0, 0, 0},
    {5, 8, 16, 16, 16, kSerial, 1, 0, 0, 0, 0, 0},
    {0, 8, 0, 1000, 1000, kSerial, 1, 0, 0, 0, 0, 0},
    {3, 1, 1000, 1000, 1000, kSerial, 1, 0, 0, 0, 0, 0},
    // The default class and AVX: anything else forks, along the longer side.
    {0, 2, 16, 16, 17, kCols, 2, 0, 0, 0, 0, 0},
    {0, 3, 17, 1, 5, kRows, 3, 0, 0, 0, 0, 0},
    {5, 7, 100, 100, 100, kCols, 7, 0, 0, 0, 0, 0},
    {5, 7, 101, 100, 100, kRows, 7, 0, 0, 0, 0, 0},
    // SSSE3: a grid of two rows, or B shared for a tall C.
    {1, 2, 500, 500, 500, kGrid, 2, 2, 1, 0, 0, 0},
    {1, 5, 500, 500, 500, kGrid, 4, 2, 2, 0, 0, 0},
    {1, 4, 8000, 3000, 512, gemm_scheme::shared_b, 4, 0, 0, 512, 0, 0},
    {1, 4, 7999, 3000, 512, kGrid, 4, 2, 2, 0, 0, 0},
    {1, 4, 8000, 2999, 512, kGrid, 4, 2, 2, 0, 0, 0},
    {1, 4, 8000, 3000, 513, kGrid, 4, 2, 2, 0, 0, 0},
    {1, 4, 8000, 8000, 512, kGrid, 4, 2, 2, 0, 0, 0},
    // SSE4.2 below 8 threads: odd counts split, unless slabs of rows would be short.
    {3, 3, 500, 500, 500, kCols, 3, 0, 0, 0, 0, 0},
    {3, 3, 501, 500, 500, kRows, 3, 0, 0, 0, 0, 0},
    {3, 3, 95, 95, 500, kGrid, 2, 2, 1, 0, 0, 0},
    {3, 3, 96, 96, 500, kCols, 3, 0, 0, 0, 0, 0},
    {3, 3, 95, 96, 500, kCols, 3, 0, 0, 0, 0, 0},
    {3, 4, 500, 500, 500, kGrid, 4, 2, 2, 0, 0, 0},
    {3, 4, 2001, 500, 500, kGrid, 4, 4, 1, 0, 0, 0},
    {3, 4, 2000, 500, 500, kGrid, 4, 2, 2, 0, 0, 0},
    {3, 4, 124, 500, 500, kGrid, 4, 1, 4, 0, 0, 0},
    {3, 4, 125, 500, 500, kGrid, 4, 2, 2, 0, 0, 0},
    // From 8 threads on: small or lopsided on a grid, else A shared.
    {3, 8, 199, 1000, 1000, kGrid, 8, 2, 4, 0, 0, 0},
    {3, 8, 1000, 1000, 199, kGrid, 8, 2, 4, 0, 0, 0},
    {3, 8, 1001, 1000, 199, kSharedA, 8, 4, 2, 1000, 10000, 0},
    {3, 8, 400, 1000, 801, kGrid, 8, 2, 4, 0, 0, 0},
    {3, 8, 400, 1000, 800, kSharedA, 8, 4, 2, 1000, 10000, 0},
    {3, 8, 1000, 127, 500, kGrid, 8, 8, 1, 0, 0, 0},
    {3, 8, 1001, 400, 2000, kGrid, 8, 2, 4, 0, 0, 0},
    {3, 8, 1001, 401, 2000, kSharedA, 8, 4, 2, 1000, 10000, 0},
    {3, 9, 256, 1000, 500, kSharedA, 8, 2, 4, 1000, 10000, 0},
    {3, 8, 512, 1000, 500, kSharedA, 8, 2, 4, 1000, 10000, 0},
    {3, 10, 2000, 2000, 2000, kSharedA, 10, 4, 2, 1000, 10000, 0},
    {3, 64, 2000, 2000, 2000, kSharedA, 64, 4, 16, 1000, 10000, 0},
    {3, 8, 2000, 2000, 2000, kSharedA, 8, 4, 2, 2000, 10000, 0, element_type::s},
    {3, 8, 2000, 2000, 2000, kSharedA, 8, 4, 2, 500, 10000, 0, element_type::z},
    // SSE4.1, big cache: simple below a thousand rows, else private panels.
    {2, 4, 999, 1000, 1000, kGrid, 4, 2, 2, 0, 0, 0},
    {2, 4, 1000, 1000, 150, kPrivate, 4, 0, 0, 1024, 8, 0},
    {2, 4, 1000, 1000, 149, kGrid, 4, 2, 2, 0, 0, 0},
    {2, 4, 1200, 1200, 128, kPrivate, 4, 0, 0, 1024, 8, 0},
    {2, 4, 1200, 1199, 149, kGrid, 4, 2, 2, 0, 0, 0},
    {2, 4, 1200, 1200, 127, kGrid, 4, 2, 2, 0, 0, 0},
    {2, 4, 7000, 3000, 20, kPrivate, 4, 0, 0, 1024, 8, 0},
    {2, 4, 6999, 3000, 20, kGrid, 4, 2, 2, 0, 0, 0},
    {2, 4, 7001, 3000, 256, kPrivate, 4, 0, 0, 704, 8, 0},
    {2, 4, 7001, 3000, 257, kPrivate, 4, 0, 0, 1024, 8, 0},
    {2, 4, 7001, 3000, 512, kPrivate, 4, 0, 0, 704, 8, 0},
    {2, 4, 7000, 3000, 512, kPrivate, 4, 0, 0, 1024, 8, 0},
    {2, 4, 900, 200, 1000, kGrid, 4, 4, 1, 0, 0, 0},
    {2, 4, 200, 900, 1000, kGrid, 4, 1, 4, 0, 0, 0},
    {2, 2, 1000, 2001, 1000, kGrid, 2, 1, 2, 0, 0, 0},
    {2, 3, 500, 600, 1000, kGrid, 2, 2, 1, 0, 0, 0},
    // SSE4.1, small cache: three threads split; 24 have a table of their own.
    {4, 3, 2000, 2000, 2000, kCols, 3, 0, 0, 0, 0, 0},
    {4, 3, 2001, 2000, 2000, kRows, 3, 0, 0, 0, 0, 0},
    {4, 4, 1000, 1000, 150, kPrivate, 4, 0, 0, 448, 8, 0},
    {4, 4, 8000, 3000, 512, kPrivate, 4, 0, 0, 448, 8, 0},
    {4, 5, 1000, 1000, 150, kPrivate, 4, 0, 0, 448, 8, 0},
    {4, 24, 499, 2000, 1000, kGrid, 24, 2, 12, 0, 0, 0},
    {4, 24, 500, 500, 150, kPrivate, 24, 0, 0, 448, 8, 0},
    {4, 24, 600, 2000, 200, kGrid, 24, 2, 12, 0, 0, 0},
    {4, 24, 601, 2000, 200, kPrivate, 24, 0, 0, 448, 8, 0},
    {4, 24, 14000, 512, 200, kGrid, 24, 24, 1, 0, 0, 0},
    {4, 24, 14000, 513, 200, kPrivate, 24, 0, 0, 448, 8, 0},
    {4, 24, 12000, 513, 200, kPrivate, 24, 0, 0, 448, 8, 0},
    {4, 24, 7000, 3000, 149, kPrivate, 24, 0, 0, 448, 8, 0},
    {4, 24, 6000, 499, 400, kGrid, 24, 2, 12, 0, 0, 0},
    {4, 24, 5000, 5000, 1000, kPrivate, 24, 0, 0, 448, 8, 0},
    {4, 24, 5000, 5001, 1000, gemm_scheme::grid_blocked, 24, 2, 12, 200, 800, 128},
    {4, 24, 2000, 2000, 257, gemm_scheme::grid_blocked, 24, 2, 12, 200, 800, 128},
    {4, 24, 2000, 2000, 256, kPrivate, 24, 0, 0, 448, 8, 0},
    {4, 24, 4701, 2000, 257, kPrivate, 24, 0, 0, 448, 8, 0},
    {4, 24, 4701, 999, 257, gemm_scheme::grid_blocked, 24, 2, 12, 200, 800, 128},
    {4, 24, 4701, 4001, 257, gemm_scheme::grid_blocked, 24, 2, 12, 200, 800, 128},
    {4, 24, 10000, 4001, 512, kPrivate, 24, 0, 0, 448, 8, 0},
    {4, 24, 10000, 4001, 513, gemm_scheme::grid_blocked, 24, 2, 12, 200, 800, 128},
    // The big-cache class has no such table.
    {2, 24, 2000, 2000, 257, kPrivate, 24, 0, 0, 1024, 8, 0},
    // Inside a caller's region, real types, small cache.
    {4, 1, 100, 100, 100, gemm_scheme::row_blocks, 1, 0, 0, 128, 0, 0, element_type::d, true},
    {4, 1, 100, 100, 100, gemm_scheme::row_blocks, 1, 0, 0, 128, 0, 0, element_type::s, true},
    {4, 1, 100, 100, 100, kSerial, 1, 0, 0, 0, 0, 0, element_type::z, true},
    {4, 1, 100, 100, 100, kSerial, 1, 0, 0, 0, 0, 0},
    {2, 1, 100, 100, 100, kSerial, 1, 0, 0, 0, 0, 0, element_type::d, true},
    // Family 10h: rows of cells by the thread count if nearly square.
    {6, 8, 1000, 1000, 100, kGrid, 8, 4, 2, 0, 0, 0},
    {6, 6, 1000, 2000, 100, kGrid, 6, 2, 3, 0, 0, 0},
    {6, 6, 1000, 2001, 100, kGrid, 6, 1, 6, 0, 0, 0},
    {6, 6, 2001, 1000, 100, kGrid, 6, 6, 1, 0, 0, 0},
    {6, 3, 1000, 1000, 100, kGrid, 3, 1, 3, 0, 0, 0},
    {6, 2, 16, 16, 17, kGrid, 2, 2, 1, 0, 0, 0},
};

TEST(GemmScheme, Table) {
  for (const scheme_case& c : kSchemes) {
    const gemm_choice got = choice_for(c);
    const std::string what = "class " + std::to_string(c.class_number) + " T " + std::to_string(c.threads) +
                             " " + std::to_string(c.m) + " " + std::to_string(c.n) + " " +
                             std::to_string(c.k) + ": " + got.reason;
    EXPECT_STREQ(name_of(c.scheme), name_of(got.scheme)) << what;
    EXPECT_EQ(c.used, got.threads) << what;
    EXPECT_EQ(c.grid_rows, got.grid_rows) << what;
    EXPECT_EQ(c.grid_cols, got.grid_cols) << what;
    EXPECT_EQ(c.block_m, got.block_m) << what;
    EXPECT_EQ(c.block_n, got.block_n) << what;
    EXPECT_EQ(c.block_k, got.block_k) << what;
    const bool tuned = c.class_number >= 1 && c.class_number <= 4 && got.threads > 1;
    EXPECT_EQ(tuned, got.scale_first) << what;
  }
}

TEST(GemmScheme, SmallThirdCacheShrinksTheSharedBlock) {
  for (const auto& [bytes, rows] : {std::pair{4 * kMiB, 384}, {4 * kMiB + 1, 1000}}) {
    const dense_processor p = processor_of(3, true, false, kMiB, bytes);
    EXPECT_EQ(rows, choose_gemm({element_type::d, p, 8, false, 2000, 2000, 2000}).block_m);
  }
}

TEST(GemmScheme, Family10hTakesItsSecondBlockingForNarrowParts) {
  const auto blocking = [](int threads, core_int m, core_int n) {
    return choose_gemm({element_type::d, processor_of_class(6), threads, false, m, n, 100}).blocking;
  };
  EXPECT_EQ(gemm_blocking::family_10h_second, blocking(8, 768, 768));  // 768 / (8 / 4)
  EXPECT_EQ(gemm_blocking::family_10h_first, blocking(8, 770, 770));
  EXPECT_EQ(gemm_blocking::family_10h_second, blocking(3, 5000, 384));  // slabs of rows see all of n
  EXPECT_EQ(gemm_blocking::family_10h_first, blocking(3, 5000, 385));
}

TEST(GemmScheme, EveryThreadCountGivesAPlanThatFits) {
  for (int number = 0; number <= 6; ++number) {
    for (int threads = 1; threads <= 64; ++threads) {
      for (const core_int m : {6, 100, 256, 1000, 9000}) {
        for (const core_int n : {1, 60, 1000, 9000}) {
          for (const core_int k : {5, 130, 300, 3000}) {
            const gemm_choice c =
                choose_gemm({element_type::d, processor_of_class(number), threads, false, m, n, k});
            ASSERT_GE(c.threads, 1);
            ASSERT_LE(c.threads, threads);
            if (c.grid_rows != 0) {  // four teams may leave two threads over
              ASSERT_GE(c.grid_cols, 1) << number << ' ' << threads;
              ASSERT_GE(c.threads, c.grid_rows * c.grid_cols) << number << ' ' << threads;
              ASSERT_LE(c.threads, c.grid_rows * c.grid_cols + 2) << number << ' ' << threads;
            }
            ASSERT_STRNE("", c.reason);
          }
        }
      }
    }
  }
}

TEST(GemmPay, Table) {
  struct {
    element_type type;
    core_int m, n, k, threads;
    bool pays;
  } const cases[] = {
      // One column per share never pays.
      {element_type::d, 1000, 3, 1000, 4, false},
      {element_type::d, 1000, 4, 1000, 4, true},
      // h 1: (48 * 10 * 40) >> 9 is 37, over 36; one column fewer is 36.
      {element_type::d, 80, 48, 10, 2, true},
      {element_type::d, 80, 38, 10, 2, false},
      // The traffic: ((half + k) q + k half) >> 7 over 48.
      {element_type::d, 6, 60, 100, 2, true},
      {element_type::d, 6, 55, 100, 2, false},
      // A long inner dimension alone is enough, by threads.
      {element_type::d, 6, 2, 513, 2, true},
      {element_type::d, 6, 2, 512, 2, false},
      {element_type::d, 6, 4, 257, 4, true},
      {element_type::d, 6, 4, 256, 4, false},
      // Quotients are integers: 36 / 8 is 4.
      {element_type::d, 16, 32, 80, 16, true},
      {element_type::d, 16, 32, 64, 16, false},
      // Single precision does not look at the threads.
      {element_type::s, 10, 4, 257, 64, true},
      {element_type::s, 9, 400, 200, 64, false},
      {element_type::s, 10, 3, 1000, 2, false},
      {element_type::s, 80, 50, 10, 64, true},
      {element_type::s, 80, 40, 10, 2, false},
      // Complex: eight operations per step.
      {element_type::z, 20, 16, 20, 2, true},
      {element_type::z, 20, 15, 20, 2, false},
      {element_type::c, 6, 2, 257, 2, true},
      {element_type::c, 6, 2, 256, 2, false},
      {element_type::c, 6, 3, 100, 2, false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.pays, threads_pay(c.type, c.m, c.n, c.k, c.threads))
        << static_cast<int>(c.type) << ' ' << c.m << ' ' << c.n << ' ' << c.k << " T " << c.threads;
  }
}

TEST(GemmBlocks, DepthOfABlock) {
  struct {
    core_int k, wanted, complex_sse42;
  } const cases[] = {{5, 128, 128},   {127, 128, 128},  {130, 132, 132},  {255, 256, 256},
                     {256, 256, 128}, {257, 128, 128},  {258, 132, 128},  {511, 256, 128},
                     {512, 256, 128}, {1024, 256, 128}, {1025, 256, 256}, {4000, 256, 256}};
  for (const auto& c : cases) {
    for (const int number : {kClassSsse3, kClassBigCache, kClassSse42, kClassAvx}) {
      gemm_blocks d, z;
      choose_gemm_blocks(gemm_blocking::of_level, element_type::d, processor_of_class(number), 100, 100, c.k,
                         d);
      choose_gemm_blocks(gemm_blocking::of_level, element_type::z, processor_of_class(number), 100, 100, c.k,
                         z);
      EXPECT_EQ(c.wanted, d.kc) << c.k;
      EXPECT_EQ(number == kClassSse42 ? c.complex_sse42 : c.wanted, z.kc) << c.k;
      EXPECT_EQ(4, d.ku);
    }
  }
}

struct block_case {
  dense_processor processor;
  element_type type;
  core_int m, n, k, mc, nc, mr, nr;
  gemm_blocking blocking = gemm_blocking::of_level;
};
TEST(GemmBlocks, RowsAndColumns) {
  using enum element_type;
  const dense_processor small_third = processor_of(3, true, false, kMiB, 4 * kMiB);
  const dense_processor family = processor_of_class(kClassFamily10h);
  const block_case cases[] = {
      {processor_of(3), d, 900, 900, 900, 640, 904, 2, 8},
      {processor_of(3), d, 900, 3, 900, 640, 8, 2, 8},
      {processor_of(3), d, 900, 6000, 900, 640, 5000, 2, 8},
      {small_third, d, 900, 900, 900, 384, 904, 2, 8},
      {processor_of(3), s, 900, 900, 900, 1280, 904, 4, 8},
      {small_third, s, 900, 900, 900, 768, 904, 4, 8},
      {processor_of(3), z, 900, 9000, 900, 256, 2000, 1, 4},
      {small_third, z, 900, 9, 900, 160, 12, 1, 4},
      {processor_of(3), c, 900, 9000, 900, 512, 4000, 2, 4},
      {processor_of(2, false), d, 900, 20000, 900, 512, 10000, 4, 4},
      {processor_of(2), d, 900, 901, 900, 1000, 904, 4, 4},
      {processor_of(2, true, false, 3 * kMiB), d, 900, 1, 900, 448, 4, 4, 4},
      {processor_of(4), d, 900, 900, 900, 512, 900, 8, 4},
      {processor_of(4), s, 900, 900, 900, 1024, 900, 16, 4},
      {processor_of(4), z, 900, 900, 900, 256, 900, 4, 2},
      {family, d, 900, 6000, 900, 240, 5000, 4, 4},
      {family, d, 2, 2, 100, 4, 4, 4, 4},
      {family, d, 900, 6000, 900, 128, 384, 4, 4, gemm_blocking::family_10h_second},
      {family, d, 90, 6, 300, 92, 8, 4, 4, gemm_blocking::family_10h_second},
  };
  for (const block_case& c : cases) {
    gemm_blocks b;
    choose_gemm_blocks(c.blocking, c.type, c.processor, c.m, c.n, c.k, b);
    const std::string what = std::to_string(c.processor.level) + " " +
                             std::to_string(static_cast<int>(c.type)) + " " + std::to_string(c.m) + " " +
                             std::to_string(c.n);
    EXPECT_EQ(c.mc, b.mc) << what;
    EXPECT_EQ(c.nc, b.nc) << what;
    EXPECT_EQ(c.mr, b.mr) << what;
    EXPECT_EQ(c.nr, b.nr) << what;
  }
  gemm_blocks preset{100, 200, 40, 0, 0, 0};
  choose_gemm_blocks(gemm_blocking::of_level, d, processor_of(3), 900, 900, 900, preset);
  EXPECT_EQ(100, preset.mc);
  EXPECT_EQ(200, preset.nc);
  EXPECT_EQ(40, preset.kc);
  EXPECT_EQ(2, preset.mr);
}

TEST(GemmBlocks, Family10hSecondKeepsWholeDepthFrom256) {
  for (const core_int k : {256, 300, 511, 2000}) {
    gemm_blocks b;
    choose_gemm_blocks(gemm_blocking::family_10h_second, element_type::d, processor_of_class(6), 9, 9, k, b);
    EXPECT_EQ(256, b.kc) << k;
  }
}

TEST(GemmBlocks, WidthsAreThoseOfTheKernels) {
  const auto expect = [](gemm_path path, element_type type, core_int mr, core_int nr) {
    const gemm_blocks w = gemm_widths(path, type);
    EXPECT_EQ(mr, w.mr) << static_cast<int>(path) << static_cast<int>(type);
    EXPECT_EQ(nr, w.nr) << static_cast<int>(path) << static_cast<int>(type);
  };
  const auto expect_all = [&](gemm_path path, const auto& s, const auto& d, const auto& c, const auto& z) {
    expect(path, element_type::s, s.mr, s.nr);
    expect(path, element_type::d, d.mr, d.nr);
    expect(path, element_type::c, c.mr, c.nr);
    expect(path, element_type::z, z.mr, z.nr);
  };
  expect_all(gemm_path::avx, l4_avx::sgemm_panels, l4_avx::dgemm_panels, l4_avx::cgemm_panels,
             l4_avx::zgemm_panels);
  expect_all(gemm_path::sse42, l3_sse42::sgemm_panels, l3_sse42::dgemm_panels, l3_sse42::cgemm_panels,
             l3_sse42::zgemm_panels);
  for (const gemm_path path : {gemm_path::ssse3, gemm_path::sse41}) {
    expect_all(path, l2_ssse3::sgemm_panels, l2_ssse3::dgemm_panels, l2_ssse3::cgemm_panels,
               l2_ssse3::zgemm_panels);
  }
  expect_all(gemm_path::family_10h, l0_generic::sgemm_panels, l0_generic::dgemm_panels,
             l0_generic::cgemm_panels, l0_generic::zgemm_panels);
  expect_all(gemm_path::sse3, l1_sse3::sgemm_panels, l1_sse3::dgemm_panels, l1_sse3::cgemm_panels,
             l1_sse3::zgemm_panels);
  EXPECT_EQ(2, l0_generic::dgemm_strips.mr);
}

TEST(GemmBlocks, Level1) {
  struct {
    core_int m, n, k, kc, mc, nc;
  } const cases[] = {{100, 100, 112, 112, 480, 2000},    {100, 100, 113, 56, 480, 2000},
                     {100, 100, 224, 112, 480, 2000},    {100, 100, 225, 112, 480, 2000},
                     {5000, 5000, 16, 112, 1536, 5000},  {5000, 5000, 32, 112, 1024, 5000},
                     {5000, 5000, 64, 112, 768, 5000},   {5000, 5000, 65, 112, 512, 5000},
                     {5000, 4999, 16, 112, 480, 2000},   {5000, 5000, 225, 112, 480, 2000},
                     {4000, 7999, 4000, 112, 480, 2000}, {4000, 8000, 4000, 112, 512, 5000},
                     {3999, 9000, 4000, 112, 480, 2000}};
  for (const auto& c : cases) {
    const gemm_blocks b = choose_sse3_blocks(c.m, c.n, c.k);
    EXPECT_EQ(c.kc, b.kc) << c.m << ' ' << c.n << ' ' << c.k;
    EXPECT_EQ(c.mc, b.mc) << c.m << ' ' << c.n << ' ' << c.k;
    EXPECT_EQ(c.nc, b.nc) << c.m << ' ' << c.n << ' ' << c.k;
  }
  EXPECT_TRUE(reads_b_unpacked(false, 128, 128, 128));
  EXPECT_FALSE(reads_b_unpacked(false, 128, 128, 129));
  EXPECT_FALSE(reads_b_unpacked(true, 8, 8, 8));
}

TEST(GemmBlocks, Level0) {
  struct {
    core_int m, n, k, kc, mc, nc, rows, columns;
  } const cases[] = {{101, 103, 128, 128, 512, 103, 100, 100},
                     {100, 5000, 129, 64, 512, 4992, 100, 5000},
                     {100, 100, 256, 128, 512, 100, 100, 100},
                     {100, 100, 257, 128, 512, 100, 100, 100},
                     {5000, 5000, 10, 128, 1536, 4992, 5000, 5000},
                     {5000, 5000, 200, 100, 512, 4992, 5000, 5000},
                     {1, 3, 10, 128, 512, 3, 0, 0}};
  for (const auto& c : cases) {
    const gemm_strip_blocks b = choose_strip_blocks(element_type::d, 2, c.m, c.n, c.k);
    EXPECT_EQ(c.kc, b.kc) << c.m << ' ' << c.n << ' ' << c.k;
    EXPECT_EQ(c.mc, b.mc) << c.m << ' ' << c.n << ' ' << c.k;
    EXPECT_EQ(c.nc, b.nc) << c.m << ' ' << c.n << ' ' << c.k;
    EXPECT_EQ(c.rows, b.rows) << c.m << ' ' << c.n << ' ' << c.k;
    EXPECT_EQ(c.columns, b.columns) << c.m << ' ' << c.n << ' ' << c.k;
  }
}

TEST(GemmBlocks, SmallKernelGates) {
  struct {
    gemm_path path;
    core_int m, n, k;  // the least that is packed
  } const cases[] = {{gemm_path::ssse3, 2, 2, 2},
                     {gemm_path::sse41, 5, 5, 5},
                     {gemm_path::sse42, 3, 5, 5},
                     {gemm_path::avx, 3, 3, 3},
                     {gemm_path::sse3, 3, 3, 3}};
  for (const auto& c : cases) {
    EXPECT_FALSE(goes_to_small_kernel(c.path, c.m, c.n, c.k));
    EXPECT_TRUE(goes_to_small_kernel(c.path, c.m - 1, c.n, c.k));
    EXPECT_TRUE(goes_to_small_kernel(c.path, c.m, c.n - 1, c.k));
    EXPECT_TRUE(goes_to_small_kernel(c.path, c.m, c.n, c.k - 1));
  }
}

TEST(GemmBlocks, BIsPackedAsItGoesWhileABlockFitsTheCache) {
  EXPECT_TRUE(packs_b_as_it_goes(gemm_path::sse41, element_type::d, 1024, 256));
  EXPECT_TRUE(packs_b_as_it_goes(gemm_path::ssse3, element_type::d, 1024, 5000));
  EXPECT_FALSE(packs_b_as_it_goes(gemm_path::sse41, element_type::d, 1025, 256));
  EXPECT_TRUE(packs_b_as_it_goes(gemm_path::sse41, element_type::d, 20000, 26));  // columns count up to 10000
  EXPECT_TRUE(packs_b_as_it_goes(gemm_path::sse41, element_type::s, 256, 256));
  EXPECT_FALSE(packs_b_as_it_goes(gemm_path::sse41, element_type::s, 257, 256));
  EXPECT_TRUE(packs_b_as_it_goes(gemm_path::family_10h, element_type::d, 128, 256));
  EXPECT_FALSE(packs_b_as_it_goes(gemm_path::family_10h, element_type::d, 129, 256));
  EXPECT_FALSE(packs_b_as_it_goes(gemm_path::sse42, element_type::d, 8, 8));
}

TEST(GemmBuffers, SizesByWhatIsNeeded) {
  struct {
    int class_number;
    gemm_path path;
    core_int all, without_a, without_b, strip_only;
  } const cases[] = {
      {kClassSse42, gemm_path::sse42, 11588864, 10269952, 1340160, 21248},
      {kClassSsse3, gemm_path::ssse3, 21566720, 20509952, 0x107300, 21248},
      {kClassBigCache, gemm_path::sse41, 22557952, 20501760, 0x1f9300, 13056},
  };
  for (const auto& c : cases) {
    for (const element_type type : kAllTypes) {
      gemm_blocks b;
      choose_gemm_blocks(gemm_blocking::of_level, type, processor_of_class(c.class_number), 100, 100, 100, b);
      EXPECT_EQ(c.all, lay_out_buffers(c.path, type, b, true, true).bytes);
      EXPECT_EQ(c.without_a, lay_out_buffers(c.path, type, b, false, true).bytes);
      EXPECT_EQ(c.without_b, lay_out_buffers(c.path, type, b, true, false).bytes);
      EXPECT_EQ(c.strip_only, lay_out_buffers(c.path, type, b, false, false).bytes);
    }
  }
}

TEST(GemmBuffers, PartsFollowEachOtherAndFit) {
  for (const gemm_path path : {gemm_path::strips, gemm_path::sse3, gemm_path::ssse3, gemm_path::sse41,
                               gemm_path::sse42, gemm_path::avx, gemm_path::family_10h}) {
    for (const element_type type : kAllTypes) {
      for (const core_int mc : {8, 513, 2000}) {
        for (const core_int nc : {3, 900, 10000}) {
          for (const core_int kc : {5, 128, 256}) {
            for (const bool with_a : {false, true}) {
              for (const bool with_b : {false, true}) {
                gemm_blocks b = gemm_widths(path, type);
                b.mc = mc;
                b.nc = nc;
                b.kc = kc;
                const gemm_buffers layout = lay_out_buffers(path, type, b, with_a, with_b);
                const core_int depth = rounded_up(kc, b.ku), size = bytes_of(type);
                const core_int a_bytes = with_a ? rounded_up(mc, b.mr) * depth * size : 0;
                const core_int b_bytes = with_b ? rounded_up(nc, b.nr) * depth * size : 0;
                const core_int strip = depth * (path == gemm_path::strips ? 192 : b.nr * size);
                ASSERT_GE(layout.strip, a_bytes + 256);
                ASSERT_EQ(0, layout.strip % 128);
                ASSERT_EQ(0, layout.b % kPage);
                if (with_b) {
                  ASSERT_GE(layout.b, layout.strip + strip);
                }
                // The first page boundary may lie almost a page into the memory.
                const core_int end = with_b ? layout.b + b_bytes : layout.strip + strip;
                ASSERT_GE(layout.bytes, kPage - 1 + end)
                    << static_cast<int>(path) << ' ' << mc << ' ' << nc << ' ' << kc << with_a << with_b;
              }
            }
          }
        }
      }
    }
  }
}

TEST(Partition, CellsAndSlabsCoverEveryIndexOnce) {
  for (const core_int m : {1, 5, 64, 203}) {
    for (const core_int n : {1, 9, 130}) {
      for (const core_int grid_rows : {1, 2, 4, 24}) {
        for (const core_int grid_cols : {1, 3, 12}) {
          for (const core_int mr : {1, 2, 8}) {
            std::vector<int> hits(static_cast<std::size_t>(m * n));
            for (core_int t = 0; t < grid_rows * grid_cols; ++t) {
              const grid_cell cell = cell_of_grid(m, n, grid_rows, grid_cols, mr, t);
              for (core_int j = 0; j < cell.columns.length; ++j) {
                for (core_int i = 0; i < cell.rows.length; ++i) {
                  ++hits[static_cast<std::size_t>(cell.rows.start + i + (cell.columns.start + j) * m)];
                }
              }
              if (t % grid_rows < grid_rows - 1) {
                EXPECT_EQ(0, cell.rows.length % mr);
              }
              if (t / grid_rows < grid_cols - 1) {
                EXPECT_EQ(0, cell.columns.length % 4);
              }
            }
            for (const int count : hits) ASSERT_EQ(1, count);
          }
        }
      }
      for (core_int threads = 1; threads <= 64; ++threads) {
        core_int next = 0;
        for (core_int t = 0; t < threads; ++t) {
          const index_range slab = slab_of(n, threads, t);
          if (slab.length > 0) {
            EXPECT_EQ(next, slab.start);
          }
          EXPECT_LT(slab.start, n);
          next += slab.length;
        }
        EXPECT_EQ(n, next);
      }
    }
  }
}

TEST(Partition, StripsGoRoundSoThatNoTwoThreadsMeet) {
  for (core_int threads = 1; threads <= 9; ++threads) {
    std::vector<int> taken(static_cast<std::size_t>(threads * threads));
    for (core_int turn = 0; turn < threads; ++turn) {
      std::vector<int> now(static_cast<std::size_t>(threads));
      for (core_int t = 0; t < threads; ++t) {
        const core_int strip = rotated_strip(threads, t, turn);
        if (turn == 0) {
          EXPECT_EQ(t, strip);
        }
        ++now[static_cast<std::size_t>(strip)];
        ++taken[static_cast<std::size_t>(strip + t * threads)];
      }
      for (const int count : now) EXPECT_EQ(1, count);
    }
    for (const int count : taken) EXPECT_EQ(1, count);
  }
}

struct side_case {
  bool left;
  int level;
  core_int m, n;
  int threads;
  core_int used, chunk;
};
TEST(TriangularThreads, Solves) {
  const side_case cases[] = {
      {true, 3, 100, 0, 8, 1, 0},         {true, 3, 1000, 1000, 1, 1, 0},
      {true, 0, 16, 16, 4, 1, 0},         {true, 0, 17, 16, 4, 4, 4},
      {false, 0, 1, 17, 4, 4, 0},         {true, 1, 16, 16, 4, 1, 0},
      {true, 1, 15, 192, 4, 1, 0},         // triangle 0.94, slab 5.6
      {true, 1, 15, 220, 4, 4, 55},        // slab 6.4
      {true, 1, 30, 36, 4, 1, 0},          // 3.6 + 2.1
      {true, 1, 30, 48, 4, 4, 12},         // 3.6 + 2.8
      {true, 1, 600, 8 * 4 - 1, 4, 1, 0},  // narrow slabs of a long system
      {true, 1, 600, 8 * 4, 4, 4, 8},     {true, 1, 512, 8 * 4 - 1, 4, 4, 7},
      {true, 2, 600, 8 * 4 - 1, 4, 4, 4},  // whole fours instead
      {true, 3, 512, 8 * 4 - 1, 4, 4, 7}, {true, 4, 600, 8 * 4 - 1, 4, 4, 4},
      {false, 1, 1000, 15, 4, 1, 0},  // triangle 0.94
      {false, 1, 16, 50, 4, 1, 0},    // slab 1.6
      {false, 1, 64, 33, 4, 1, 0},    // 4.4 + 4.1
      {false, 1, 64, 40, 4, 4, 16},   // 6.4 + 5
      {false, 2, 67, 40, 4, 4, 16},       {false, 1, 67, 40, 4, 4, 16},
      {false, 3, 63, 40, 4, 1, 0},  // 15 rows become 12: slab 3.75
      {false, 1, 63, 40, 4, 4, 15},
  };
  for (const side_case& c : cases) {
    const side_choice got = choose_trsm({c.left, c.level, c.m, c.n, c.threads});
    EXPECT_EQ(c.used, got.threads) << c.left << " level " << c.level << ' ' << c.m << ' ' << c.n
                                   << got.reason;
    EXPECT_EQ(c.chunk, got.chunk) << c.left << " level " << c.level << ' ' << c.m << ' ' << c.n << got.reason;
  }
}

TEST(TriangularThreads, ProductsDifferBelowLevelTwo) {
  const side_case cases[] = {
      {true, 0, 1000, 16, 4, 1, 0},   {true, 0, 1000, 17, 4, 4, 4}, {false, 0, 16, 16, 4, 1, 0},
      {false, 0, 17, 16, 4, 4, 4},    {true, 1, 1000, 16, 4, 1, 0}, {true, 1, 1000, 100, 4, 4, 25},
      {true, 3, 1000, 16, 4, 4, 4},   {false, 3, 63, 40, 4, 1, 0},  {true, 3, 10, 0, 4, 1, 0},
      {true, 0, 1000, 1000, 1, 1, 0},
  };
  for (const side_case& c : cases) {
    const side_choice got = choose_trmm({c.left, c.level, c.m, c.n, c.threads});
    EXPECT_EQ(c.used, got.threads) << c.left << " level " << c.level << ' ' << c.m << ' ' << c.n
                                   << got.reason;
    EXPECT_EQ(c.chunk, got.chunk) << c.left << " level " << c.level << ' ' << c.m << ' ' << c.n << got.reason;
  }
}

TEST(TriangularThreads, BlocksOfASolve) {
  const auto expect = [](const triangle_plan& got, core_int outer, core_int right_hand) {
    EXPECT_EQ(outer, got.outer);
    EXPECT_EQ(32, got.inner);
    EXPECT_EQ(right_hand, got.right_hand);
  };
  expect(choose_triangle_plan(3, true, 5000), 128, 1000);
  expect(choose_triangle_plan(2, false, 1999), 512, 128);
  expect(choose_triangle_plan(4, false, 2000), 512, 256);
  expect(choose_triangle_plan(1, true, 10), 256, 1024);
}

TEST(RankUpdateThreads, Table) {
  struct {
    syrk_facts facts;
    syrk_scheme scheme;
    core_int threads, chunk, items;
  } const cases[] = {
      {{3, 0, 5, 4, false}, syrk_scheme::nothing, 1, 0, 0},
      {{1, 9, 0, 4, true}, syrk_scheme::nothing, 1, 0, 0},
      {{2, 4, 100, 4, false}, syrk_scheme::four, 1, 0, 0},
      {{3, 4, 100, 1, false}, syrk_scheme::four, 1, 0, 0},
      {{1, 4, 100, 4, false}, syrk_scheme::serial, 1, 0, 0},
      {{3, 31, 100, 4, false}, syrk_scheme::serial, 1, 0, 0},
      {{3, 32, 100, 4, false}, syrk_scheme::triangle_blocks, 4, 4, 14},
      {{4, 1000, 100, 3, false}, syrk_scheme::triangle_blocks, 3, 164, 10},
      {{2, 1000, 100, 1, false}, syrk_scheme::serial, 1, 0, 0},
      {{0, 16, 100, 4, false}, syrk_scheme::serial, 1, 0, 0},
      {{0, 17, 100, 4, false}, syrk_scheme::slices, 4, 4, 4},
      {{1, 1000, 100, 1, false}, syrk_scheme::serial, 1, 0, 0},
  };
  for (const auto& c : cases) {
    const syrk_choice got = choose_syrk(c.facts);
    EXPECT_EQ(c.scheme, got.scheme) << c.facts.level << ' ' << c.facts.n << got.reason;
    EXPECT_EQ(c.threads, got.threads) << c.facts.level << ' ' << c.facts.n;
    EXPECT_EQ(c.chunk, got.chunk) << c.facts.level << ' ' << c.facts.n;
    EXPECT_EQ(c.items, got.items) << c.facts.level << ' ' << c.facts.n;
  }
}

}  // namespace
}  // namespace qel::test
