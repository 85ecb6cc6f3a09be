// SPDX-License-Identifier: BSD-3-Clause
// Who works on which block column of a threaded LU factorisation. Threads come here one at a time (the caller
// holds a lock), report what they have done and get the next piece. There is no barrier per panel: the panel
// to be factored next goes out as soon as its column is up to date, while others still update the rest.
// Block columns count from 0; column 0 is factored before the threads start.
#pragma once

#include "service/core_types.h"

namespace qel::lapack {

enum class lu_work : int { none, update, update_and_factor };

struct lu_task {
  lu_work kind = lu_work::none;
  core_int begin = 0, end = 0;           ///< block columns
  core_int first_panel = 0, panels = 0;  ///< apply panels first_panel .. panels - 1
};

struct lu_tracker {
  core_int threads;
  core_int panels;         ///< block columns
  core_int factor_panels;  ///< panels to factor before the rest is factored as one
  core_int group;          ///< block columns of one grant
  core_int lookahead;      ///< block columns at the end that first grants leave out
  core_int done;           ///< the last panel that is factored
  core_int next;           ///< the next panel to be handed out
  core_int open;           ///< block columns not yet finished

  /// For each block column the panels applied to it; -1 less that number while a thread works on it.
  core_int* progress() { return reinterpret_cast<core_int*>(this + 1); }
};

/// A tracker for the m x n matrix, null without memory. Given back with serv_free.
lu_tracker* make_lu_tracker(core_int m, core_int n, core_int block, core_int threads, core_int group,
                            core_int lookahead);

/// The first piece of a thread, by its number.
lu_task first_lu_task(lu_tracker& tracker, core_int thread);
/// Notes a piece as done.
void report_lu_task(lu_tracker& tracker, const lu_task& task);
/// The next piece; none if there is nothing at the moment.
lu_task next_lu_task(lu_tracker& tracker);

}  // namespace qel::lapack
