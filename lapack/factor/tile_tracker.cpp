// SPDX-License-Identifier: BSD-3-Clause
#include "lapack/factor/tile_tracker.h"

#include <algorithm>

#include "service/serv.h"

namespace qel::lapack {

tile_tracker::tile_tracker(core_int blocks, core_int grain) : blocks_(blocks), grain_(grain) {
  const core_int tiles = blocks * (blocks + 1) / 2;
  entries_ = static_cast<core_int*>(serv_malloc(static_cast<size_t>(tiles + kTiles) * sizeof(core_int), 128));
  if (entries_ == nullptr) return;
  std::fill_n(entries_, tiles + kTiles, core_int{0});
  entries_[kOpen] = tiles;
}
tile_tracker::~tile_tracker() { serv_free(entries_); }

tile_task tile_tracker::next() {
  // Columns in order, the diagonal first: what others wait for most.
  for (core_int column = entries_[kFirstColumn]; column < blocks_; ++column) {
    bool all_finished = true;
    for (core_int row = column; row < blocks_; ++row) {
      core_int& applied = tile(row, column);
      if (applied == column + 1) continue;
      all_finished = false;
      if (applied < 0) continue;
      tile_task task{row, column, applied, applied, false};
      const core_int end = std::min(column, applied + grain_);
      while (task.panels < end && finished(row, task.panels) && finished(column, task.panels)) ++task.panels;
      task.finish = task.panels == column && (row == column || finished(column, column));
      if (task.panels == applied && !task.finish) continue;
      applied = -1 - applied;
      return task;
    }
    if (all_finished && column == entries_[kFirstColumn]) ++entries_[kFirstColumn];
  }
  return {};
}

void tile_tracker::report(const tile_task& task, bool failed) {
  tile(task.row, task.column) = task.finish ? task.column + 1 : task.panels;
  if (task.finish) --entries_[kOpen];
  if (failed) entries_[kFailed] = 1;
}

}  // namespace qel::lapack
