// SPDX-License-Identifier: BSD-3-Clause
// When and how level 2 forks, as tables, without any thread: both sides of every limit, and that the parts of
// every plan cover each row or column once.
#include "blas/level2/thread_plans.h"

#include <gtest/gtest.h>

#include <string>

namespace qel {
namespace {

constexpr int kDouble = 8;

struct gemv_row {
  bool transposed;
  core_int m, n;
  int threads;
  core_int chunk;  ///< 0: serial
};
// Rows: chunk m / T in multiples of 8; columns: n / T. The limit is on chunk times the other side.
constexpr gemv_row kGemvRows[] = {
    {false, 63, 63, 8, 0},    {true, 63, 63, 8, 0},     {false, 4096, 1, 8, 0},    {false, 4096, 5, 8, 0},
    {false, 4096, 6, 8, 512}, {false, 64, 63, 1, 0},    {false, 64, 47, 2, 0},     {false, 64, 48, 2, 32},
    {false, 128, 47, 2, 0},   {false, 128, 48, 2, 64},  {false, 127, 27, 2, 0},    {false, 127, 28, 2, 56},
    {false, 15, 1000, 2, 0},  {false, 16, 1000, 2, 8},  {true, 31, 128, 2, 0},     {true, 63, 128, 2, 0},
    {true, 64, 128, 2, 64},   {true, 33, 126, 2, 63},   {true, 32, 126, 2, 0},     {true, 1000, 64, 20, 3},
    {true, 1, 4096, 2, 0},    {true, 2, 4096, 2, 2048}, {false, 100, 1000, 20, 0}, {false, 200, 1000, 20, 8},
    {true, 100000, 1, 2, 0},
};

TEST(GemvPlan, LevelsWithTheirOwnTable) {
  for (const gemv_row& row : kGemvRows) {
    for (const int level : {2, 3}) {
      const gemv_plan plan = choose_gemv_threads(row.transposed, row.m, row.n, kDouble, {level, row.threads});
      EXPECT_EQ(row.chunk == 0 ? 1 : row.threads, plan.threads) << row.m << 'x' << row.n << plan.reason;
      if (row.chunk != 0) {
        EXPECT_EQ(row.chunk, plan.chunk) << row.m << 'x' << row.n;
      }
    }
    for (const int level : {0, 1, 4}) {
      EXPECT_EQ(1, choose_gemv_threads(row.transposed, row.m, row.n, kDouble, {level, 8}).threads);
    }
  }
}

TEST(GemvPlan, NativeThreadsByBytes) {
  const auto threads = [](bool transposed, core_int m, core_int n, int bytes, int of) {
    return choose_gemv_threads(transposed, m, n, bytes, {5, of}).threads;
  };
  for (const bool transposed : {false, true}) {
    EXPECT_EQ(1, threads(transposed, 256, 255, 8, 2));
    EXPECT_EQ(2, threads(transposed, 256, 256, 8, 2));
    EXPECT_EQ(1, threads(transposed, 256, 256, 4, 2));
    EXPECT_EQ(2, threads(transposed, 256, 256, 8, 64));
    EXPECT_EQ(3, threads(transposed, 384, 256, 8, 64));
    EXPECT_EQ(1, threads(transposed, 4000, 4000, 8, 1));
    EXPECT_EQ(20, threads(transposed, 4000, 4000, 8, 20));
  }
  // No more threads than parts: rows by 16, columns by 8.
  EXPECT_EQ(1, threads(false, 16, 1000000, 8, 8));
  EXPECT_EQ(2, threads(false, 17, 1000000, 8, 8));
  EXPECT_EQ(1, threads(true, 1000000, 8, 8, 8));
  EXPECT_EQ(2, threads(true, 1000000, 9, 8, 8));
}

void expect_covered(const gemv_plan& plan, core_int length, const std::string& what) {
  core_int next = 0;
  for (int t = 0; t < plan.threads; ++t) {
    const part_range part = gemv_part(plan, length, t);
    EXPECT_EQ(next, part.first) << what;
    EXPECT_LE(part.first, part.last) << what;
    next = part.last;
  }
  EXPECT_EQ(length, next) << what;
}

TEST(GemvPlan, PartsCoverEverythingOnce) {
  for (const int level : {2, 3, 5}) {
    for (int threads = 1; threads <= 20; ++threads) {
      for (const core_int m : {64, 65, 100, 333, 1000, 5000}) {
        for (const core_int n : {64, 77, 500, 1031}) {
          const level2_facts facts{level, threads};
          const std::string what = std::to_string(level) + ' ' + std::to_string(threads) + ' ' +
                                   std::to_string(m) + 'x' + std::to_string(n);
          expect_covered(choose_gemv_threads(false, m, n, kDouble, facts), m, what);
          expect_covered(choose_gemv_threads(true, m, n, kDouble, facts), n, what);
          expect_covered(choose_ger_threads(m, n, kDouble, facts), n, what);
          expect_covered(choose_gbmv_threads(false, m, n, 300, 7, kDouble, facts), m, what);
          expect_covered(choose_gbmv_threads(true, m, n, 7, 300, kDouble, facts), n, what);
        }
      }
    }
  }
}

TEST(GemvPlan, NativeRowsEndWhereCacheLinesDo) {
  const gemv_plan plan = choose_gemv_threads(false, 1000, 1031, kDouble, {5, 3});
  EXPECT_TRUE(plan.by_lines);
  EXPECT_FALSE(choose_gemv_threads(true, 1000, 1031, kDouble, {5, 3}).by_lines);
  EXPECT_FALSE(choose_gemv_threads(false, 1000, 1031, kDouble, {3, 3}).by_lines);
  for (core_int past_line = 0; past_line < 8; ++past_line) {
    core_int next = 0;
    for (int t = 0; t < plan.threads; ++t) {
      const part_range part = gemv_part(plan, 1000, t, past_line);
      EXPECT_EQ(next, part.first);
      EXPECT_TRUE(t == 0 || (part.first + past_line) % 8 == 0) << t;
      next = part.last;
    }
    EXPECT_EQ(1000, next);
  }
}

struct trmv_row {
  core_int n;
  int threads;
  bool grows;
  int first_zone;  ///< 0: serial
  core_int first_width, second_width;
};
// The first zone is half of n, from 1025 on a third, or two thirds where later elements cost more.
constexpr trmv_row kTrmvRows[] = {
    {127, 8, false, 0, 0, 0},        {128, 1, false, 0, 0, 0},       {128, 2, false, 1, 64, 64},
    {128, 3, true, 1, 64, 32},       {190, 9, false, 0, 0, 0},       {190, 8, false, 4, 16, 24},
    {191, 9, false, 4, 16, 24},      {191, 20, true, 10, 8, 8},      {1024, 4, true, 2, 256, 256},
    {1025, 4, true, 2, 336, 176},    {1025, 4, false, 2, 168, 344},  {1025, 5, true, 2, 336, 112},
    {3000, 2, false, 1, 1000, 2000}, {3000, 2, true, 1, 2000, 1000}, {200, 64, true, 32, 0, 0},
};

trmv_plan trmv_of(const trmv_row& row, int level) {
  return choose_trmv_threads(true, row.grows, row.n, 1, kDouble, {level, row.threads});
}

TEST(TrmvPlan, ZonesOfLikeAreas) {
  for (const trmv_row& row : kTrmvRows) {
    for (const int level : {2, 3}) {
      const trmv_plan plan = trmv_of(row, level);
      if (row.first_zone == 0) {
        EXPECT_EQ(1, plan.threads) << row.n << ' ' << row.threads;
        continue;
      }
      EXPECT_EQ(row.threads, plan.threads);
      EXPECT_EQ(row.first_zone, plan.first_zone);
      EXPECT_EQ(row.first_width, plan.first_width) << row.n << ' ' << row.threads;
      EXPECT_EQ(row.second_width, plan.second_width) << row.n << ' ' << row.threads;
    }
    for (const int level : {0, 1, 4}) EXPECT_EQ(1, trmv_of(row, level).threads);
  }
}

TEST(TrmvPlan, WhichTrianglesGrow) {
  const auto grows = [](bool upper, bool transposed) {
    return choose_trmv_threads(upper, transposed, 2000, 1, kDouble, {3, 4}).grows;
  };
  EXPECT_TRUE(grows(false, false));
  EXPECT_TRUE(grows(true, true));
  EXPECT_FALSE(grows(true, false));
  EXPECT_FALSE(grows(false, true));
}

TEST(TrmvPlan, CopiesLongContiguousVectorsOnThreads) {
  struct row {
    core_int n, inc;
    int threads, copy_threads;
  };
  for (const auto& [n, inc, threads, copy_threads] :
       {row{2999, 1, 8, 1}, {3000, 1, 8, 4}, {3000, 1, 3, 3}, {3000, 2, 8, 1}, {3000, -1, 8, 1}}) {
    for (const int level : {2, 5}) {
      EXPECT_EQ(copy_threads,
                choose_trmv_threads(true, false, n, inc, kDouble, {level, threads}).copy_threads);
    }
  }
}

TEST(TrmvPlan, PartsCoverEveryRowOnce) {
  for (const int level : {2, 3, 5}) {
    for (const bool transposed : {false, true}) {
      for (int threads = 1; threads <= 20; ++threads) {
        for (const core_int n : {128, 131, 190, 191, 200, 511, 1024, 1025, 1100, 3001}) {
          const trmv_plan plan = choose_trmv_threads(true, transposed, n, 1, kDouble, {level, threads});
          core_int next = 0;
          for (int t = 0; t < plan.threads; ++t) {
            const part_range part = trmv_part(plan, n, t);
            EXPECT_EQ(next, part.first) << level << ' ' << threads << ' ' << n << ' ' << t;
            EXPECT_LE(part.first, part.last);
            next = part.last;
          }
          EXPECT_EQ(n, next) << level << ' ' << threads << ' ' << n;
        }
      }
    }
  }
}

TEST(TrmvPlan, NativePartsHaveLikeAreas) {
  const core_int n = 4096;
  for (const bool transposed : {false, true}) {
    const trmv_plan plan = choose_trmv_threads(true, transposed, n, 1, kDouble, {5, 4});
    ASSERT_EQ(4, plan.threads);
    for (int t = 0; t < 4; ++t) {
      const part_range part = trmv_part(plan, n, t);
      const auto area_to = [&](core_int row) {
        const double rest = static_cast<double>(n - row);
        return transposed ? static_cast<double>(row * row) : static_cast<double>(n * n) - rest * rest;
      };
      EXPECT_NEAR(0.25, (area_to(part.last) - area_to(part.first)) / static_cast<double>(n * n), 0.01);
    }
  }
}

// Whatever is not in a level's own table forks natively only, by the bytes that are stored.

TEST(GbmvPlan, NativeThreadsByBytesOfTheBand) {
  const auto threads = [](core_int m, core_int n, core_int kl, core_int ku, int level) {
    return choose_gbmv_threads(false, m, n, kl, ku, kDouble, {level, 8}).threads;
  };
  EXPECT_EQ(1, threads(4096, 4096, 7, 7, 5));  // 15 diagonals: 480 KiB
  EXPECT_EQ(2, threads(4096, 4096, 8, 7, 5));
  EXPECT_EQ(8, threads(40960, 40960, 8, 7, 6));
  EXPECT_EQ(1, threads(4096, 1000000, 4, 4, 5)) << "columns far right of the band hold nothing";
  for (const int level : {0, 1, 2, 3, 4}) EXPECT_EQ(1, threads(4000, 4000, 500, 500, level));
}

struct triangle_row {
  triangle_work work;
  core_int n, k;
  int allowed, threads;
};
constexpr triangle_row kTriangleRows[] = {
    {triangle_work::kUpdate, 127, 127, 8, 1},          {triangle_work::kUpdate, 360, 360, 8, 1},
    {triangle_work::kProduct, 442, 442, 8, 1},         {triangle_work::kProduct, 444, 444, 8, 2},
    {triangle_work::kProduct, 1256, 1256, 8, 8},       {triangle_work::kUpdate, 1024, 1024, 8, 8},
    {triangle_work::kUpdate, 1024, 1024, 1, 1},        {triangle_work::kUpdate, 364, 364, 8, 2},
    {triangle_work::kMirroredProduct, 364, 364, 8, 1}, {triangle_work::kMirroredProduct, 450, 450, 8, 2},
    {triangle_work::kUpdate, 4096, 14, 8, 1},          {triangle_work::kUpdate, 4096, 15, 8, 2},
    {triangle_work::kProduct, 4096, 22, 8, 1},         {triangle_work::kProduct, 4096, 23, 8, 2},
    {triangle_work::kMirroredProduct, 4096, 22, 8, 1}, {triangle_work::kMirroredProduct, 4096, 23, 8, 2},
};

TEST(TrianglePlan, NativeThreadsByBytes) {
  for (const triangle_row& row : kTriangleRows) {
    const auto plan = [&](int level) {
      return choose_triangle_threads(row.work, true, row.n, row.k, kDouble, {level, row.allowed});
    };
    EXPECT_EQ(row.threads, plan(5).threads) << row.n << ' ' << row.k << ' ' << plan(5).reason;
    EXPECT_EQ(row.k < row.n, plan(6).banded);
    for (const int level : {0, 1, 2, 3, 4}) EXPECT_EQ(1, plan(level).threads);
  }
}

TEST(TrianglePlan, PartsCoverEverythingOnceAndAreAlike) {
  for (int threads = 2; threads <= 20; ++threads) {
    for (const core_int n : {700, 1001, 4096}) {
      for (const core_int k : {n, core_int{100}}) {
        for (const bool grows : {false, true}) {
          const triangle_plan plan{threads, grows, k < n, ""};
          const auto cost_to = [&](core_int i) {
            const auto order = static_cast<double>(n), at = static_cast<double>(i);
            if (k < n) return at / order;
            return grows ? at * at / order / order : 1 - (order - at) * (order - at) / order / order;
          };
          core_int next = 0;
          for (int t = 0; t < threads; ++t) {
            const part_range part = triangle_part(plan, n, t);
            EXPECT_EQ(next, part.first);
            EXPECT_LE(part.first, part.last);
            // Parts begin at multiples of sixteen, which moves a cut by up to that.
            EXPECT_NEAR(1.0 / threads, cost_to(part.last) - cost_to(part.first),
                        33.0 / static_cast<double>(n));
            next = part.last;
          }
          EXPECT_EQ(n, next);
        }
      }
    }
  }
}

TEST(SolutionPlan, BlocksAndShares) {
  EXPECT_EQ(1, choose_solution_threads(100, kDouble, {5, 8}).threads);
  EXPECT_EQ(1, choose_solution_threads(1023, kDouble, {5, 8}).threads);
  EXPECT_EQ(5, choose_solution_threads(1024, kDouble, {5, 8}).threads);
  EXPECT_EQ(1, choose_solution_threads(2047, sizeof(float), {5, 2}).threads);
  EXPECT_EQ(2, choose_solution_threads(2048, sizeof(float), {5, 2}).threads);
  EXPECT_EQ(1, choose_solution_threads(511, 2 * kDouble, {5, 2}).threads);
  EXPECT_EQ(2, choose_solution_threads(512, 2 * kDouble, {5, 2}).threads);
  EXPECT_EQ(1, choose_solution_threads(4000, kDouble, {5, 1}).threads);
  for (const int level : {0, 1, 2, 3, 4})
    EXPECT_EQ(1, choose_solution_threads(4000, kDouble, {level, 8}).threads);
  for (int threads = 2; threads <= 20; ++threads) {
    const solution_plan plan = choose_solution_threads(5000, kDouble, {5, threads});
    ASSERT_EQ(threads, plan.threads);
    for (const auto& [depth, rest] : {std::pair<core_int, core_int>{plan.block, 0},
                                      {plan.block, 1},
                                      {plan.block, 7},
                                      {plan.block, 300},
                                      {plan.block, 4872},
                                      {plan.block, plan.block},
                                      {1280, plan.block},
                                      {4500, 100}}) {
      core_int next = 0;
      for (int t = 0; t < threads; ++t) {
        const part_range part = solution_part(plan, depth, rest, t);
        EXPECT_EQ(next, part.first);
        EXPECT_LE(part.first, part.last);
        next = part.last;
      }
      EXPECT_EQ(rest, next);
      // Who solves the next block has less to reduce, down to nothing.
      const part_range solver = solution_part(plan, depth, rest, 0),
                       other = solution_part(plan, depth, rest, 1);
      if (rest >= 300) {
        EXPECT_LT(solver.last - solver.first, other.last - other.first);
      }
    }
  }
}

}  // namespace
}  // namespace qel
