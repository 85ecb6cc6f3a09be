// SPDX-License-Identifier: BSD-3-Clause
#include <omp.h>

#include <algorithm>

#include "lapack/factor/idle.h"
#include "sparse/pardiso/numeric/factorise.h"
#include "sparse/pardiso/numeric/ready_lists.h"

namespace qel::pardiso {

namespace {

constexpr stage_status kNoMemory{-2, 0};

/// How the factorisation stands; threads hold the lock.
struct outcome {
  step_result worst = step_result::done;
  bool no_memory = false, cancelled = false;
  int failed_column = -1;
  int64_t computed = 0;
  int64_t told = 0;  ///< of that, what progress() has heard of
  pivot_counts counts;

  bool stopped() const { return worst != step_result::done || no_memory || cancelled; }
  void fail(step_result result, int column) {
    if (result == step_result::bad_pivot && (failed_column < 0 || column < failed_column)) {
      failed_column = column;
    }
    if (worst == step_result::done) worst = result;
  }
  void add(const pivot_counts& more) {
    counts.perturbed += more.perturbed;
    counts.positive += more.positive;
    counts.negative += more.negative;
  }
  stage_status status() const {
    if (no_memory) return kNoMemory;
    if (cancelled) return {-4, factorisation_cancelled};
    switch (worst) {
      case step_result::bad_pivot:
        return {-4, 0};
      case step_result::bad_entry:
        return {-5, 0};
      case step_result::io_failed:
      case step_result::done:
        break;
    }
    return {};
  }
};

/// Says how far it is; true if the caller wants to stop.
template <class T>
bool cancels(const factorisation<T>& shared, int64_t computed) {
  if (shared.options.progress == nullptr) return false;
  const auto all = static_cast<double>(shared.form.xlnz[shared.form.supernodes]);
  return shared.options.progress(shared.options.progress_context, static_cast<double>(computed) / all);
}
template <class T>
int64_t entries_of(const factorisation<T>& shared, int supernode) {
  return shared.form.xlnz[supernode + 1] - shared.form.xlnz[supernode];
}

template <class T>
void run_alone(const factorisation<T>& shared, memory_account& account, outcome& result) {
  linked_updates lists;
  supernode_worker<T> worker;
  if (!lists.allocate(shared.form, account) || !worker.prepare(shared, 0, account)) {
    result.no_memory = true;
    return;
  }
  for (int i = 0; i < shared.form.supernodes; ++i) {
    const int supernode = shared.form.pnlsch[i];
    step_result step = worker.begin(supernode);
    const int count = step == step_result::done ? lists.take(supernode) : 0;
    if (step == step_result::done) step = worker.update(lists.batch(), count);
    if (step == step_result::done) step = worker.finish();
    if (step != step_result::done) {
      result.fail(step, worker.failed_column());
      break;
    }
    lists.advance(supernode, count);
    result.computed += entries_of(shared, supernode);
    if (cancels(shared, result.computed)) {
      result.cancelled = true;
      break;
    }
  }
  result.add(worker.counts());
}

/// One supernode of a team's thread. Takes updates as they become ready.
template <class T>
step_result work_on(int supernode, supernode_worker<T>& worker, pushed_updates& lists, update_source* batch,
                    const outcome& result, bool& stopped) {
  step_result step = worker.begin(supernode);
  lapack::idle_thread idle;
  bool waits = true;
  while (step == step_result::done) {
    int count = 0;
#pragma omp critical(qel_pardiso_updates)
    {
      count = lists.take(supernode, batch, waits);
      stopped = result.stopped();
    }
    if (stopped) return step;
    if (count > 0) {
      idle.busy();
      std::sort(batch, batch + count,
                [](const update_source& a, const update_source& b) { return a.supernode < b.supernode; });
      step = worker.update(batch, count);
    } else if (waits) {
      idle.wait();
    } else {
      break;
    }
  }
  return step == step_result::done ? worker.finish() : step;
}

template <class T>
void run_team(const factorisation<T>& shared, memory_account& account, outcome& result) {
  pushed_updates lists;
  if (!lists.allocate(shared.form, account)) {
    result.no_memory = true;
    return;
  }
  int numbers = 0;
#pragma omp parallel num_threads(shared.options.threads)
  {
    supernode_worker<T> worker;
    block<update_source> batch;
    int number = 0;
#pragma omp critical(qel_pardiso_updates)
    {
      number = numbers++;
      if (!worker.prepare(shared, number, account) ||
          !batch.allocate(account, shared.form.supernodes, block_up_uplen - 3)) {
        result.no_memory = true;
      }
    }
#pragma omp barrier
    // Monotonic: a thread that waits does so for supernodes that come earlier and have all been taken.
#pragma omp for schedule(monotonic : dynamic, 1)
    for (int i = 0; i < shared.form.supernodes; ++i) {
      bool stopped = false;
#pragma omp critical(qel_pardiso_updates)
      stopped = result.stopped();
      if (stopped) continue;
      const int supernode = shared.form.pnlsch[i];
      const step_result step = work_on(supernode, worker, lists, batch.get(), result, stopped);
      if (stopped) continue;
      int64_t computed = 0;
#pragma omp critical(qel_pardiso_updates)
      {
        if (step == step_result::done) {
          lists.push(supernode);
        } else {
          result.fail(step, worker.failed_column());
        }
        computed = result.computed += entries_of(shared, supernode);
      }
      if (omp_get_thread_num() != 0) continue;  // progress is told on the caller's own thread
      result.told = computed;
      if (cancels(shared, computed)) {
#pragma omp critical(qel_pardiso_updates)
        result.cancelled = true;
      }
    }
#pragma omp critical(qel_pardiso_updates)
    {
      result.add(worker.counts());
      batch.reset();
      worker.release();
    }
  }
  // The others may have done the last supernodes.
  if (!result.stopped() && result.told < result.computed) cancels(shared, result.computed);
}

}  // namespace

template <class T>
stage_status factorise_into(const csr_view<T>& a, const analysis& analysed, const factor_options& options,
                            panel_store<T>& store, memory_account& account, factors<T>& result) {
  const structure& form = analysed.form;
  const bool lu = a.type.unsymmetric();
  result.type = a.type;
  const auto room = [&](block<int>& list, bool wanted) {
    return !wanted || list.size() == form.n || list.allocate(account, form.n, block_loc_int2 - 6);
  };
  if (!room(result.pivot, a.type.indefinite()) || !room(result.luperm, lu) || !room(result.luperm_row, lu)) {
    return kNoMemory;
  }
  const double start = omp_get_wtime();
  matrix_entries<T> entries;
  if (!entries.sort(a, analysed, account)) return kNoMemory;
  result.norm_a = entries.norm();
  const double middle = omp_get_wtime();
  const factorisation<T> shared{form,
                                entries,
                                options,
                                a.type,
                                store,
                                result.pivot.get(),
                                result.luperm.get(),
                                result.luperm_row.get()};
  outcome how;
  if (options.threads < 2) {
    run_alone(shared, account, how);
  } else {
    run_team(shared, account, how);
  }
  result.perturbed = how.counts.perturbed;
  result.positive = how.counts.positive;
  result.negative = how.counts.negative;
  result.failed_column = how.failed_column < 0 ? 0 : analysed.order.perm[how.failed_column] + 1;
  result.scatter_seconds = middle - start;
  result.factor_seconds = omp_get_wtime() - middle;
  return how.worst == step_result::io_failed ? store.failure() : how.status();
}

template <class T>
stage_status factorise(const csr_view<T>& a, const analysis& analysed, const factor_options& options,
                       memory_account& account, factors<T>& result) {
  if (result.store != nullptr) return factorise_into(a, analysed, options, *result.store, account, result);
  const structure& form = analysed.form;
  const int64_t elements = form.xlnz[form.supernodes];
  // Pages that are there already need not be fetched again.
  const auto room = [&](block<T>& values, bool wanted) {
    return !wanted || values.size() == elements || values.allocate(account, elements, block_fact_lu);
  };
  if (!room(result.lnz, true) || !room(result.unz, a.type.unsymmetric())) return kNoMemory;
  panels_in_core<T> store(form, result.lnz.get(), result.unz.get());
  return factorise_into(a, analysed, options, store, account, result);
}

#define QEL_INSTANTIATE(T)                                                                         \
  template stage_status factorise_into(const csr_view<T>&, const analysis&, const factor_options&, \
                                       panel_store<T>&, memory_account&, factors<T>&);             \
  template stage_status factorise(const csr_view<T>&, const analysis&, const factor_options&,      \
                                  memory_account&, factors<T>&);
QEL_INSTANTIATE(float)
QEL_INSTANTIATE(double)
QEL_INSTANTIATE(complex8)
QEL_INSTANTIATE(complex16)
#undef QEL_INSTANTIATE

}  // namespace qel::pardiso
