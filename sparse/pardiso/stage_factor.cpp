// SPDX-License-Identifier: BSD-3-Clause
#include <algorithm>
#include <chrono>
#include <limits>

#include "sparse/pardiso/out_of_core.h"
#include "sparse/pardiso/progress.h"
#include "sparse/pardiso/stages.h"
#include "sparse/pardiso/tuning.h"

namespace qel::pardiso {
namespace {

/// Seconds of a substitution for one right-hand side, which the iteration's limits go by; 0 without memory.
template <class T>
double time_a_solve(const solver_call& call, const handle& h, const factors<T>& made) {
  memory_account account;
  block<T> vectors;
  if (!vectors.allocate(account, 2 * int64_t{call.n}, block_cgs_arr)) return 0;
  std::fill(vectors.begin(), vectors.end(), T{});
  solve_options options;
  options.threads = h.record()->threads;
  const auto start = std::chrono::steady_clock::now();
  substitute(*h.analysed(), made, options, 1, vectors.get(), vectors.get(), vectors.get() + call.n);
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void set_iteration_limits(basic_record& record) {
  const iteration_limits limits = choose_iteration_limits(record.krylov, record.factor_seconds,
                                                          record.solve_seconds, record.out_of_core != 0);
  record.slots[slot_iteration_limit] = limits.limit;
  record.slots[slot_stall_step] = limits.stall_step;
}

}  // namespace

template <class T>
stage_status factor(const solver_call& call, const handle& h) {
  handle owner = h;
  basic_record& record = *h.record();
  const parameters iparm = call.iparm();
  record.account.restart_peak();
  const int64_t before = record.account.now();
  owner.release_factor(call.mnum);
  factors<T>* const made = owner.new_factors<T>(call.mnum);
  if (made == nullptr) return out_of_memory(record.account);

  const csr_view<T> a = matrix_of<T>(call);
  progress_watch watch = current_watch();
  factor_options options;
  options.threshold = pivot_threshold(a, iparm(p_perturbation));
  options.bunch_kaufman = iparm(p_pivoting) != 0;
  options.threads = record.threads;
  if (watch.function != nullptr) {
    options.progress = [](void* context, double share) {
      return static_cast<const progress_watch*>(context)->cancelled_at(2, share);
    };
    options.progress_context = &watch;
  }
  store_progress told{watch};
  stage_status status;
  if (record.out_of_core != 0) {
    status = open_store<T>(call, h);
    if (call.msglvl != 0) told.start(options);
  }
  if (status.ok()) status = factorise(a, *h.analysed(), options, record.account, *made);
  if (record.out_of_core != 0) status = finish_store<T>(call, h, status);
  iparm(p_perturbed) = made->perturbed;
  iparm(p_positive) = made->positive;
  iparm(p_negative) = made->negative;
  iparm(p_failed_column) = made->failed_column;
  if (!status.ok()) {
    owner.release_factor(call.mnum);
    return status;
  }
  record.norm_a = made->norm_a;
  record.factor_seconds = made->factor_seconds;
  record.times.a_to_lu = made->scatter_seconds;
  record.times.numfct = made->factor_seconds;
  record.must_factor = false;
  const int64_t used = record.account.peak() - std::min(before, record.account.peak());
  iparm(p_numeric_memory) = record.slots[slot_numeric_memory] =
      static_cast<int>(std::min<int64_t>(used, std::numeric_limits<int>::max()));
  if (record.krylov != 0) {
    record.solve_seconds = time_a_solve(call, h, *made);
    set_iteration_limits(record);
  }
  return {};
}

template stage_status factor<float>(const solver_call&, const handle&);
template stage_status factor<double>(const solver_call&, const handle&);
template stage_status factor<complex8>(const solver_call&, const handle&);
template stage_status factor<complex16>(const solver_call&, const handle&);

}  // namespace qel::pardiso
