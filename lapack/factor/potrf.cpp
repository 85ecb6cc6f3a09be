// SPDX-License-Identifier: BSD-3-Clause
#include "lapack/factor/potrf.h"

#include <algorithm>

#include "lapack/factor/cholesky_block.h"
#include "lapack/factor/core_blas.h"
#include "lapack/factor/idle.h"
#include "lapack/factor/tile_tracker.h"
#include "lapack/four_types.h"
#include "service/serv.h"

namespace qel::lapack {

namespace {

template <class T>
struct tiled_matrix {
  bool upper;
  core_int n, block;
  T* a;
  core_int lda;

  core_int order_of(core_int tile) const { return std::min(block, n - tile * block); }
  T* tile(core_int row, core_int column) const {
    if (upper) std::swap(row, column);
    return a + row * block + column * block * lda;
  }

  /// Applies one panel to a tile.
  void update(core_int row, core_int column, core_int panel) const {
    const core_int rows = order_of(row), columns = order_of(column);
    const T *const own = tile(row, panel), *const other = tile(column, panel);
    T* const target = tile(row, column);
    if (row == column) {
      return subtract_square(upper ? 'U' : 'L', !upper, columns, block, own, lda, target, lda);
    }
    if (upper) {
      subtract_product(kTurnedLetter<T>, 'N', columns, rows, block, other, lda, own, lda, target, lda);
    } else {
      subtract_product('N', kTurnedLetter<T>, rows, columns, block, own, lda, other, lda, target, lda);
    }
  }
  /// The first leading minor of A that is not positive, else 0.
  core_int finish(const tile_task& task) const {
    const core_int rows = order_of(task.row), columns = order_of(task.column);
    T* const target = tile(task.row, task.column);
    if (task.row == task.column) {
      const core_int minor = factor_cholesky(upper, columns, target, lda);
      return minor == 0 ? 0 : minor + task.column * block;
    }
    const T* const diagonal = tile(task.column, task.column);
    if (upper) {
      solve('L', 'U', kTurnedLetter<T>, 'N', columns, rows, diagonal, lda, target, lda);
    } else {
      solve('R', 'L', kTurnedLetter<T>, 'N', rows, columns, diagonal, lda, target, lda);
    }
    return 0;
  }
};

/// What a thread of the region does: reports and asks under the lock, works outside.
template <class T>
void work_on_tiles(const tiled_matrix<T>& matrix, tile_tracker& tracker, core_int& first_minor) {
  tile_task task;
  idle_thread idle;
  core_int minor = 0;
  for (;;) {
    bool over = false;
#pragma omp critical(qel_cholesky_tracker)
    {
      if (minor != 0) first_minor = minor;
      if (task.any()) tracker.report(task, minor != 0);
      over = tracker.over();
      task = over ? tile_task{} : tracker.next();
    }
    if (over) return;
    if (!task.any()) {
      idle.wait();
      continue;
    }
    idle.busy();
    // Panel by panel, so that no rounding depends on who came when.
    for (core_int panel = task.first_panel; panel < task.panels; ++panel) {
      matrix.update(task.row, task.column, panel);
    }
    minor = task.finish ? matrix.finish(task) : 0;
  }
}

}  // namespace

template <class T>
core_int factor_cholesky_as_planned(const cholesky_plan& plan, bool upper, core_int n, T* a, core_int lda) {
  if (plan.path == cholesky_path::nothing) return 0;
  if (plan.path == cholesky_path::tasks) {
    tile_tracker tracker((n - 1) / plan.block + 1, plan.grain);
    if (tracker) {
      const tiled_matrix<T> matrix{upper, n, plan.block, a, lda};
      // The first diagonal tile: nobody has anything to do before.
      const tile_task first = tracker.next();
      core_int first_minor = matrix.finish(first);
      tracker.report(first, first_minor != 0);
      if (tracker.over()) return first_minor;
#pragma omp parallel num_threads(plan.threads)
      work_on_tiles(matrix, tracker, first_minor);
      return first_minor;
    }
  }
  return factor_cholesky(upper, n, a, lda);
}

template <class T>
core_int potrf(bool upper, core_int n, T* a, core_int lda) {
  constexpr core_int kNeverThreads = 64;
  if (n > 0 && n <= kNeverThreads) return factor_cholesky(upper, n, a, lda);
  const cholesky_plan plan =
      plan_cholesky({type_letter<T>, upper, n, serv_threads_all(), this_tuning_processor()});
  return factor_cholesky_as_planned(plan, upper, n, a, lda);
}

#define QEL_INSTANTIATE(T)                                                                          \
  template core_int factor_cholesky_as_planned(const cholesky_plan&, bool, core_int, T*, core_int); \
  template core_int potrf(bool, core_int, T*, core_int);
QEL_FOUR_TYPES(QEL_INSTANTIATE)
#undef QEL_INSTANTIATE

}  // namespace qel::lapack
