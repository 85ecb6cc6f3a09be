// SPDX-License-Identifier: BSD-3-Clause
#include "lapack/factor/getrf.h"

#include <omp.h>

#include <algorithm>

#include "lapack/factor/core_blas.h"
#include "lapack/factor/idle.h"
#include "lapack/factor/lu_panel.h"
#include "lapack/factor/lu_tracker.h"
#include "lapack/factor/row_swaps.h"
#include "lapack/four_types.h"
#include "service/serv.h"

namespace qel::lapack {

namespace {

template <class T>
struct lu_matrix {
  core_int m, n, block;
  T* a;
  core_int lda;
  core_int* pivots;

  T* at(core_int i, core_int j) const { return a + i + j * lda; }

  /// Factors the panel and all columns up to `columns` from it on; the first zero pivot, counted in A.
  core_int factor(core_int panel, core_int columns) const {
    const core_int first = panel * block, rows = m - first;
    const core_int zero = factor_lu(rows, columns, at(first, first), lda, pivots + first);
    for (core_int i = first; i < first + std::min(rows, columns); ++i) pivots[i] += first;
    return zero == 0 ? 0 : zero + first;
  }
  /// Brings columns [begin, end) from before the panel to after it.
  void apply(core_int panel, core_int begin, core_int end) const {
    const core_int top = panel * block, below = top + block, width = end - begin;
    swap_rows(width, at(0, begin), lda, top, below, pivots);
    solve('L', 'L', 'N', 'U', block, width, at(top, top), lda, at(top, begin), lda);
    subtract_product('N', 'N', m - below, width, block, at(below, top), lda, at(top, begin), lda,
                     at(below, begin), lda);
  }
};

/// What a thread of the region does: reports and asks under the lock, works outside.
template <class T>
void work_on_tasks(const lu_matrix<T>& matrix, lu_tracker& tracker, core_int& first_zero) {
  lu_task task;
  idle_thread idle;
  bool started = false;
  core_int zero = 0;
  for (;;) {
    bool finished = false;
#pragma omp critical(qel_lu_tracker)
    {
      if (zero != 0 && (first_zero == 0 || zero < first_zero)) first_zero = zero;
      if (task.kind != lu_work::none) report_lu_task(tracker, task);
      task = started ? next_lu_task(tracker) : first_lu_task(tracker, omp_get_thread_num());
      started = true;
      finished = tracker.open == 0;
    }
    if (finished) return;
    if (task.kind == lu_work::none) {
      idle.wait();
      continue;
    }
    idle.busy();
    // Column by column, so that no rounding depends on who came when.
    for (core_int j = task.begin; j < task.end; ++j) {
      const core_int begin = j * matrix.block, end = std::min(begin + matrix.block, matrix.n);
      for (core_int panel = task.first_panel; panel < task.panels; ++panel) matrix.apply(panel, begin, end);
    }
    zero = task.kind == lu_work::update_and_factor ? matrix.factor(task.begin, matrix.block) : 0;
  }
}

template <class T>
core_int factor_by_tasks(const lu_plan& plan, const lu_matrix<T>& matrix, lu_tracker& tracker) {
  const core_int panels = tracker.factor_panels, order = std::min(matrix.m, matrix.n);
  core_int first_zero = matrix.factor(0, matrix.block);
#pragma omp parallel num_threads(plan.threads)
  work_on_tasks(matrix, tracker, first_zero);

  const core_int zero = matrix.factor(panels, matrix.n - panels * matrix.block);
  if (first_zero == 0) first_zero = zero;
#pragma omp parallel for num_threads(plan.threads) schedule(dynamic, 1)
  for (core_int j = 0; j < panels; ++j) {
    swap_rows(matrix.block, matrix.at(0, j * matrix.block), matrix.lda, (j + 1) * matrix.block, order,
              matrix.pivots);
  }
  return first_zero;
}

}  // namespace

template <class T>
core_int factor_lu_as_planned(const lu_plan& plan, core_int m, core_int n, T* a, core_int lda,
                              core_int* pivots) {
  if (plan.path == lu_path::nothing) return 0;
  if (plan.path == lu_path::tasks) {
    lu_tracker* tracker = make_lu_tracker(m, n, plan.block, plan.threads, plan.group, plan.lookahead);
    if (tracker != nullptr) {
      const core_int first_zero = factor_by_tasks<T>(plan, {m, n, plan.block, a, lda, pivots}, *tracker);
      serv_free(tracker);
      return first_zero;
    }
  }
  return factor_lu(m, n, a, lda, pivots);
}

template <class T>
core_int getrf(core_int m, core_int n, T* a, core_int lda, core_int* pivots) {
  constexpr core_int kNeverThreads = 64;
  if (m > 0 && n > 0 && std::max(m, n) <= kNeverThreads) return factor_lu(m, n, a, lda, pivots);
  const lu_plan plan = plan_lu({type_letter<T>, m, n, serv_threads_all(), this_tuning_processor()});
  return factor_lu_as_planned(plan, m, n, a, lda, pivots);
}

#define QEL_INSTANTIATE(T)                                                                             \
  template core_int factor_lu_as_planned(const lu_plan&, core_int, core_int, T*, core_int, core_int*); \
  template core_int getrf(core_int, core_int, T*, core_int, core_int*);
QEL_FOUR_TYPES(QEL_INSTANTIATE)
#undef QEL_INSTANTIATE

}  // namespace qel::lapack
