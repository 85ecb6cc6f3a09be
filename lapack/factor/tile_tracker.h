// SPDX-License-Identifier: BSD-3-Clause
// Who works on which tile of a threaded Cholesky factorisation. Threads come here one at a time (the caller
// holds a lock), report what they have done and get a tile whose inputs are ready. Tiles are named as those
// of a lower triangle, row >= column; an upper one is its mirror image.
#pragma once

#include "service/core_types.h"

namespace qel::lapack {

struct tile_task {
  core_int row = -1, column = -1;
  core_int first_panel = 0, panels = 0;  ///< apply panels first_panel .. panels - 1
  bool finish = false;                   ///< then factor the diagonal tile, or solve with it
  bool any() const { return row >= 0; }
};

class tile_tracker {
 public:
  /// For `blocks` block columns, tasks of at most `grain` panels; false as a value without memory.
  tile_tracker(core_int blocks, core_int grain);
  ~tile_tracker();
  tile_tracker(const tile_tracker&) = delete;
  tile_tracker& operator=(const tile_tracker&) = delete;
  explicit operator bool() const { return entries_ != nullptr; }

  /// The next piece; none if no tile's inputs are ready.
  tile_task next();
  /// Notes a piece as done; failed: the diagonal tile is not positive definite, which ends everything.
  void report(const tile_task& task, bool failed);
  bool over() const { return entries_[kFailed] != 0 || entries_[kOpen] == 0; }

 private:
  /// The first three entries are the tracker's own; then for each tile the panels applied to it, one more
  /// than its column's number when it is finished, -1 less that number while a thread works on it.
  enum : core_int { kFirstColumn, kOpen, kFailed, kTiles };
  core_int& tile(core_int row, core_int column) const {
    return entries_[kTiles + row * (row + 1) / 2 + column];
  }
  bool finished(core_int row, core_int column) const { return tile(row, column) == column + 1; }

  core_int blocks_, grain_;
  core_int* entries_;
};

}  // namespace qel::lapack
