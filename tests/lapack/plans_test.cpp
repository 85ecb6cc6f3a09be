// SPDX-License-Identifier: BSD-3-Clause
// Paths of the factorisations as tables, and their trackers put through whole factorisations without threads.
#include "lapack/factor/plans.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "blas/kernels/factor_native.h"
#include "lapack/factor/lu_tracker.h"
#include "lapack/factor/tile_tracker.h"
#include "service/serv.h"

namespace qel::lapack {
namespace {

TEST(lu_plan, path_by_facts) {
  struct {
    char type;
    core_int m, n;
    int threads, level, product_class;
    lu_path path;
    core_int block;
  } const rows[] = {
      {'D', 0, 5, 4, 3, 0, lu_path::nothing, 0},
      {'D', 5000, 64, 4, 3, 0, lu_path::recursive, 0},  // narrow, any thread count
      {'D', 5000, 5000, 1, 3, 0, lu_path::recursive, 0},
      {'D', 65, 65, 4, 3, 0, lu_path::tasks, 24},
      {'D', 24, 65, 4, 3, 0, lu_path::unblocked, 0},  // one block is as high as the matrix
      {'D', 25, 65, 4, 3, 0, lu_path::tasks, 24},
      {'D', 4000, 4000, 8, 3, 0, lu_path::blas_threads, 0},
      {'D', 4001, 4001, 8, 3, 0, lu_path::tasks, 200},
      {'D', 4000, 4000, 8, 0, 6, lu_path::tasks, 160},
      {'Z', 4000, 4000, 8, 3, 0, lu_path::tasks, 200},
      {'D', 4000, 4000, 7, 3, 0, lu_path::tasks, 200},
      {'D', 100, 100, 2, 5, 0, lu_path::recursive, 0},  // native
      {'D', 1000, 1000, 1, 5, 0, lu_path::recursive, 0},
  };
  for (const auto& row : rows) {
    const lu_plan plan = plan_lu({row.type, row.m, row.n, row.threads, {row.level, row.product_class}});
    SCOPED_TRACE(testing::Message() << row.m << " x " << row.n << ", " << row.threads << ": " << plan.reason);
    EXPECT_EQ(plan.path, row.path);
    EXPECT_EQ(plan.block, row.block);
  }
}

TEST(lu_plan, columns_without_halving) {
  const struct {
    char type;
    core_int rows;
    int level;
    core_int columns;
  } cases[] = {{'D', 64, 3, 8},   {'D', 64, 5, 64}, {'D', 65, 5, 32},  {'D', 128, 6, 32},
               {'D', 129, 6, 8},  {'Z', 64, 6, 64}, {'Z', 65, 6, 8},   {'S', 64, 5, 32},
               {'S', 256, 5, 32}, {'S', 257, 5, 8}, {'C', 128, 5, 32}, {'C', 129, 5, 8}};
  for (const auto& row : cases) {
    EXPECT_EQ(plan_lu_panel(row.type, row.rows, row.level), row.columns) << row.type << row.rows;
  }
}

TEST(inverse_plan, what_threads_share) {
  const struct {
    core_int n;
    int threads;
    bool halves_at_once;
    int movers;
  } cases[] = {{127, 2, false, 1}, {128, 2, true, 1},  {1000, 1, false, 1}, {1000, 2, true, 2},
               {512, 3, true, 2},  {513, 3, false, 2}, {5000, 8, false, 8}};
  for (const auto& row : cases) {
    EXPECT_EQ(inverts_halves_at_once(row.n, row.threads), row.halves_at_once) << row.n << ' ' << row.threads;
    EXPECT_EQ(plan_column_moves(row.n, row.threads), row.movers) << row.n << ' ' << row.threads;
  }
}

TEST(lu_plan, form_of_small_panels) {
  constexpr lu_form kRegisters = lu_form::in_registers, kStay = lu_form::rows_stay,
                    kColumns = lu_form::by_columns;
  const struct {
    core_int m, n, real_bytes;
    bool is_complex;
    int register_bytes;
    lu_form form;
  } cases[] = {
      {4, 8, 8, false, 64, kColumns},  {8, 4, 8, false, 64, kColumns},   {5, 5, 8, false, 64, kRegisters},
      {8, 8, 8, true, 64, kRegisters}, {8, 8, 8, true, 32, kColumns},    {8, 8, 8, false, 32, kStay},
      {9, 8, 8, false, 64, kStay},     {8, 9, 4, true, 64, kColumns},    {16, 32, 8, false, 32, kStay},
      {17, 5, 8, false, 32, kColumns}, {32, 33, 4, false, 64, kColumns}, {32, 32, 4, false, 64, kStay}};
  for (const auto& row : cases) {
    EXPECT_EQ(lu_form_of(row.m, row.n, row.real_bytes, row.is_complex, row.register_bytes), row.form)
        << row.m << ' ' << row.n;
  }
}

TEST(cholesky_plan, path_by_facts) {
  struct {
    bool upper;
    core_int n;
    int threads, level;
    cholesky_path path;
    core_int block, grain;
  } const rows[] = {
      {true, 0, 4, 3, cholesky_path::nothing, 0, 0},   {true, 128, 4, 3, cholesky_path::unblocked, 0, 0},
      {true, 129, 1, 3, cholesky_path::serial, 0, 0},  {true, 500, 2, 3, cholesky_path::tasks, 48, 500},
      {false, 500, 2, 3, cholesky_path::tasks, 48, 2}, {false, 100, 2, 5, cholesky_path::serial, 0, 0},
  };
  for (const auto& row : rows) {
    const cholesky_plan plan = plan_cholesky({'D', row.upper, row.n, row.threads, {row.level, 0}});
    SCOPED_TRACE(testing::Message() << row.n << ", " << row.threads << ": " << plan.reason);
    EXPECT_EQ(plan.path, row.path);
    EXPECT_EQ(plan.block, row.block);
    EXPECT_EQ(plan.grain, row.grain);
  }
}

TEST(lu_tracker, first_grants) {
  struct {
    core_int thread, group, lookahead, begin, end;
    lu_work kind;
  } const rows[] = {
      {0, 4, 4, 1, 4, lu_work::update_and_factor},  // behind the first panel
      {1, 4, 4, 4, 8, lu_work::update},
      {2, 4, 4, 8, 12, lu_work::update},
      {4, 4, 4, 16, 17, lu_work::update},  // past the limit of 16: the first column there
      {1, 1, 0, 1, 2, lu_work::update_and_factor},
      {2, 1, 0, 2, 3, lu_work::update},
      {0, 1, 0, 1, 2, lu_work::update_and_factor},  // an empty range: whatever is next
      {3, 2, 1000000, 1, 2, lu_work::update_and_factor},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << "thread " << row.thread << " group " << row.group);
    lu_tracker* tracker = make_lu_tracker(200, 200, 10, 8, row.group, row.lookahead);
    ASSERT_NE(tracker, nullptr);
    const lu_task task = first_lu_task(*tracker, row.thread);
    EXPECT_EQ(task.kind, row.kind);
    EXPECT_EQ(task.begin, row.begin);
    EXPECT_EQ(task.end, row.end);
    EXPECT_EQ(task.panels, 1);
    serv_free(tracker);
  }
}

/// Threads without threads: each holds at most one task, and at each step a random one reports.
template <class Task, class Next, class Report, class Over>
int simulate(unsigned seed, size_t threads, const Next& next, const Report& report, const Over& over) {
  std::mt19937 generator(seed);
  std::vector<std::pair<bool, Task>> held(threads);
  std::vector<bool> started(threads);
  int tasks = 0;
  for (int idle = 0; !over() && idle < 1000; ++idle) {
    const size_t t = generator() % threads;
    if (held[t].first) {
      report(held[t].second);
      idle = 0;
    }
    held[t] = {false, {}};
    if (over()) break;
    held[t].first = next(t, !started[t], held[t].second);
    started[t] = true;
    tasks += held[t].first;
  }
  return over() ? tasks : -1;
}

TEST(lu_tracker, every_order_of_work_finishes_each_column_once) {
  std::mt19937 generator(7);
  for (unsigned seed = 0; seed < 300; ++seed) {
    const auto up_to = [&](unsigned most) { return static_cast<core_int>(generator() % most + 1); };
    const core_int block = 4, m = 4 + up_to(80), n = 4 + up_to(80), threads = up_to(9);
    const core_int group = up_to(4), lookahead = up_to(8) - 1;
    SCOPED_TRACE(testing::Message() << m << " x " << n << " threads " << threads << " group " << group
                                    << " lookahead " << lookahead);
    lu_tracker* tracker = make_lu_tracker(m, n, block, threads, group, lookahead);
    const core_int panels = tracker->factor_panels;
    std::vector<core_int> applied(static_cast<size_t>(tracker->panels));
    std::vector<bool> busy(applied.size()), factored(applied.size());
    factored[0] = true;
    const int tasks = simulate<lu_task>(
        seed, static_cast<size_t>(threads),
        [&](size_t t, bool first, lu_task& task) {
          task = first ? first_lu_task(*tracker, static_cast<core_int>(t)) : next_lu_task(*tracker);
          if (task.kind == lu_work::none) return false;
          EXPECT_GE(task.begin, 1);
          EXPECT_GT(task.panels, task.first_panel);
          for (core_int p = task.first_panel; p < task.panels; ++p)
            EXPECT_TRUE(factored[static_cast<size_t>(p)]);
          for (core_int j = task.begin; j < task.end; ++j) {
            const auto column = static_cast<size_t>(j);
            EXPECT_FALSE(busy[column]);
            EXPECT_EQ(applied[column], task.first_panel);
            busy[column] = true;
          }
          return true;
        },
        [&](const lu_task& task) {
          for (auto j = static_cast<size_t>(task.begin); j < static_cast<size_t>(task.end); ++j) {
            busy[j] = false;
            applied[j] = task.panels;
          }
          if (task.kind == lu_work::update_and_factor) {
            const auto j = static_cast<size_t>(task.begin);
            EXPECT_EQ(applied[j], task.begin);
            EXPECT_TRUE(!factored[j] && factored[j - 1]);
            factored[j] = true;
          }
          report_lu_task(*tracker, task);
        },
        [&] { return tracker->open == 0; });
    EXPECT_TRUE(tasks > 0 || tracker->panels == 1);
    for (core_int j = 1; j < tracker->panels; ++j) {
      EXPECT_EQ(applied[static_cast<size_t>(j)], std::min(j, panels)) << j;
      EXPECT_EQ(factored[static_cast<size_t>(j)], j < panels) << j;
    }
    serv_free(tracker);
  }
}

TEST(tile_tracker, every_order_of_work_finishes_each_tile_once) {
  std::mt19937 generator(11);
  for (unsigned seed = 0; seed < 200; ++seed) {
    const auto blocks = static_cast<core_int>(generator() % 9 + 1);
    const auto grain = static_cast<core_int>(generator() % 4 + 1);
    SCOPED_TRACE(testing::Message() << blocks << " block columns, grain " << grain);
    tile_tracker tracker(blocks, grain);
    std::vector<core_int> applied(static_cast<size_t>(blocks * blocks));
    const auto tile = [&](core_int i, core_int j) -> core_int& {
      return applied[static_cast<size_t>(i * blocks + j)];
    };
    const auto done = [&](core_int i, core_int j) { return tile(i, j) == j + 1; };
    simulate<tile_task>(
        seed, generator() % 8 + 1,
        [&](size_t, bool, tile_task& task) {
          task = tracker.next();
          if (!task.any()) return false;
          EXPECT_EQ(tile(task.row, task.column), task.first_panel);
          EXPECT_LE(task.panels - task.first_panel, grain);
          for (core_int p = task.first_panel; p < task.panels; ++p) {
            EXPECT_TRUE(done(task.row, p) && done(task.column, p));
          }
          if (task.finish) {
            EXPECT_EQ(task.panels, task.column);
            EXPECT_TRUE(task.row == task.column || done(task.column, task.column));
          }
          tile(task.row, task.column) = -1;
          return true;
        },
        [&](const tile_task& task) {
          tile(task.row, task.column) = task.finish ? task.column + 1 : task.panels;
          tracker.report(task, false);
        },
        [&] { return tracker.over(); });
    for (core_int i = 0; i < blocks; ++i) {
      for (core_int j = 0; j <= i; ++j) EXPECT_TRUE(done(i, j)) << i << ' ' << j;
    }
  }
}

}  // namespace
}  // namespace qel::lapack
