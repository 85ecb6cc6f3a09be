// SPDX-License-Identifier: BSD-3-Clause
// How the thread schemes of the matrix product cut a range or a grid: thread t's part of n, in whole panels,
// the last part taking what is left. Every index falls into exactly one part.
#pragma once

#include <algorithm>

#include "service/core_types.h"

namespace qel {

struct index_range {
  core_int start, length;
};

/// Part t of `parts`, each a multiple of `unit`; the last takes what is left.
constexpr index_range part_of(core_int n, core_int parts, core_int t, core_int unit) {
  const core_int chunk = n / parts / unit * unit;
  return {t * chunk, t < parts - 1 ? chunk : std::max<core_int>(n - (parts - 1) * chunk, 0)};
}
/// Slab t of a split along one dimension; an empty slab starts inside all the same.
constexpr index_range slab_of(core_int n, core_int threads, core_int t) {
  const index_range part = part_of(n, threads, t, 1);
  return {std::min(part.start, n - 1), part.length};
}

/// Thread t's cell of a grid: rows in whole panels of A, columns in fours.
struct grid_cell {
  index_range rows, columns;
};
constexpr grid_cell cell_of_grid(core_int m, core_int n, core_int grid_rows, core_int grid_cols, core_int mr,
                                 core_int t) {
  return {part_of(m, grid_rows, t % grid_rows, mr), part_of(n, grid_cols, t / grid_rows, 4)};
}

/// The strip of columns that thread t takes at `turn` of a group: each begins with its own and goes round.
constexpr core_int rotated_strip(core_int threads, core_int t, core_int turn) { return (t + turn) % threads; }

}  // namespace qel
