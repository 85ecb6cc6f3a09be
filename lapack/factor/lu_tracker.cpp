// SPDX-License-Identifier: BSD-3-Clause
#include "lapack/factor/lu_tracker.h"

#include <algorithm>

#include "service/serv.h"

namespace qel::lapack {

namespace {

bool is_free(core_int progress) { return progress >= 0; }

/// Takes the columns from begin on that are free and as far as the first one, up to end.
lu_task take(lu_tracker& tracker, core_int begin, core_int end) {
  core_int* const progress = tracker.progress();
  const core_int applied = progress[begin], available = tracker.done + 1;
  lu_task task{lu_work::update, begin, begin, applied, available};
  while (task.end < end && progress[task.end] == applied) progress[task.end++] = -1 - applied;
  if (begin == tracker.next && tracker.next < tracker.factor_panels && available == tracker.next) {
    task.kind = lu_work::update_and_factor;
    ++tracker.next;
  }
  return task;
}

}  // namespace

lu_tracker* make_lu_tracker(core_int m, core_int n, core_int block, core_int threads, core_int group,
                            core_int lookahead) {
  const core_int panels = (n - 1) / block + 1;
  void* memory = serv_malloc(static_cast<size_t>(panels) * sizeof(core_int) + sizeof(lu_tracker), 128);
  if (memory == nullptr) return nullptr;
  auto* tracker = new (memory)
      lu_tracker{threads, panels, (std::min(m, n) - 1) / block, group, lookahead, 0, 1, panels - 1};
  std::fill_n(tracker->progress(), panels, core_int{0});
  return tracker;
}

lu_task first_lu_task(lu_tracker& tracker, core_int thread) {
  const core_int limit = std::max<core_int>(tracker.panels - tracker.lookahead, 0);
  core_int begin = std::max<core_int>(thread * tracker.group, 1);
  core_int end = std::min((thread + 1) * tracker.group, limit);
  if (begin >= end && tracker.lookahead >= 1) {
    begin = std::max<core_int>(limit, 1);
    end = std::min(begin + 1, tracker.panels);
  }
  // Others may have come first and gone on to these columns.
  const core_int* const progress = tracker.progress();
  while (begin < end && (!is_free(progress[begin]) || progress[begin] > tracker.done)) ++begin;
  if (begin >= end || begin <= tracker.done) return next_lu_task(tracker);
  return take(tracker, begin, end);
}

void report_lu_task(lu_tracker& tracker, const lu_task& task) {
  core_int* const progress = tracker.progress();
  std::fill(progress + task.begin, progress + task.end, task.panels);
  if (task.kind == lu_work::update_and_factor) {
    tracker.done = task.begin;
    --tracker.open;
  }
  // Columns behind the last panel are finished when it has been applied.
  if (task.panels == tracker.factor_panels) {
    tracker.open -= task.end - std::max(task.begin, tracker.factor_panels);
  }
}

lu_task next_lu_task(lu_tracker& tracker) {
  const core_int* const progress = tracker.progress();
  const core_int available = tracker.done + 1;
  if (tracker.next == available && tracker.next < tracker.factor_panels && is_free(progress[tracker.next])) {
    return take(tracker, tracker.next, tracker.next + 1);
  }
  for (core_int j = available; j < tracker.panels; ++j) {
    if (is_free(progress[j]) && progress[j] < available) {
      return take(tracker, j, std::min(j + tracker.group, tracker.panels));
    }
  }
  return {};
}

}  // namespace qel::lapack
