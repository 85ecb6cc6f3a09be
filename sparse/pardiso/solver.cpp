// SPDX-License-Identifier: BSD-3-Clause
// The phases of a call: what is released, checked, stored, and which stages run.
#include <algorithm>
#include <chrono>
#include <cstdlib>

#include "service/cpu_facts.h"
#include "service/serv.h"
#include "sparse/pardiso/checks.h"
#include "sparse/pardiso/diagonal.h"
#include "sparse/pardiso/out_of_core.h"
#include "sparse/pardiso/progress.h"
#include "sparse/pardiso/report.h"
#include "sparse/pardiso/stages.h"
#include "sparse/pardiso/tuning.h"

namespace qel::pardiso {
namespace {

using clock = std::chrono::steady_clock;

/// One call on a handle.
class phase_machine {
 public:
  phase_machine(const solver_call& call, int threads, bool single)
      : call_(call), threads_(threads), single_(single), handle_(call.pt) {}
  /// Runs it and prints what is asked for. Returns error.
  int run();

 private:
  stage_status prepare();
  stage_status release();
  stage_status check();
  void store_call();
  template <class T>
  stage_status run_stages();
  template <class T>
  stage_status run_solve(bool may_iterate);
  int finish(const stage_status& status);

  const solver_call& call_;
  const int threads_;
  const bool single_;
  handle handle_;
  memory_account first_account_;  ///< until there is a record
  bool fresh_ = false, done_ = false, no_record_ = false;
  clock::time_point start_ = clock::now();
};

/// An empty handle gets its blocks, a live one loses what the phase replaces.
stage_status phase_machine::prepare() {
  const int phase = call_.phase;
  if (phase < -1) return {-1, fault_phase_low};
  if (handle_.live()) {
    no_record_ = handle_.record() == nullptr;
    if (no_record_) return {-1, fault_initialization};
    return release();
  }
  if (phase == -1) {
    done_ = true;
    return {};
  }
  fresh_ = true;
  if (!handle_.create(call_.maxfct, first_account_)) return out_of_memory(first_account_);
  if (phase < 1) return {-1, fault_initialization};
  if (!handle_.create_store()) return out_of_memory(handle_.record()->account);
  if (call_.iparm()(p_user_values) == 0) store_defaults(call_.type(), call_.iparm());
  handle_.record()->single = single_;
  if (call_.iparm()(p_out_of_core) != 0) configure_store(call_, handle_);
  return {};
}

stage_status phase_machine::release() {
  basic_record& record = *handle_.record();
  const int phase = call_.phase;
  if (phase == 0) {
    if (call_.mnum < 1 || call_.mnum > std::min(record.maxfct, record.fact_slots)) {
      return {-1, fault_clean_number};
    }
    handle_.release_factor(call_.mnum);
    if (call_.msglvl != 0) report_clean_up(call_, record.mtype, 1);
  } else if (phase == -1 || phase / 10 == 1) {
    const int mtype = record.mtype;
    int deleted = 0;
    if (phase == -1) {
      deleted = handle_.release();
      done_ = true;
    } else {
      deleted = handle_.release_factors();
      handle_.release_analysis();
      record.single = single_;
    }
    if (call_.msglvl != 0) report_clean_up(call_, mtype, deleted);
  }
  return {};
}

stage_status phase_machine::check() {
  const basic_record& stored = *handle_.record();
  const int fault = check_input(call_, stored);
  if (fault == fault_done) {
    done_ = true;
    return {};
  }
  if (fault != fault_none) return {-1, fault};
  const stage_range stages = stages_of(call_.phase);
  if (stages.last >= 2 && call_.mnum < 1) return {-1, fault_mnum_phase};
  if (stages.first == 1) return {};
  const bool has_analysis = handle_.analysed() != nullptr;
  // A matrix whose factors are missing can't be solved with, either.
  const bool has_factors =
      stages.first < 3 || with_element(scalar_words(call_.mtype) == 2, stored.single, [&](auto element) {
        return handle_.factors_of<decltype(element)>(call_.mnum) != nullptr;
      });
  if (!has_analysis || !has_factors) return {-1, fault_no_analysis};
  if (stored.pattern != 0 && stored.pattern != pattern_fingerprint(call_.n, call_.ia, call_.ja)) {
    return {-1, fault_pattern};
  }
  return {};
}

void phase_machine::store_call() {
  basic_record& record = *handle_.record();
  const parameters iparm = call_.iparm();
  const matrix_type type = call_.type();
  const int table_factor = memory_factor(type);
  if (record.mtype != 0 && call_.mtype == -record.mtype && call_.mtype < 0 &&
      record.memory_factor < table_factor) {
    record.factor_size = record.factor_size * table_factor / std::max(record.memory_factor, 1);
    record.memory_factor = table_factor;
  }
  if (record.memory_factor == 0) record.memory_factor = table_factor;
  record.n = call_.n;
  record.n_plus_1 = call_.n + 1;
  record.mtype = call_.mtype;
  record.phase = call_.phase > 99 ? 33 : call_.phase;
  record.part = call_.phase > 99 ? call_.phase - 330 : 0;
  record.nrhs = call_.nrhs;
  record.maxfct = call_.maxfct;
  record.mnum = call_.mnum;
  record.nnz = call_.ia[call_.n] - 1;
  if (record.nnz != record.n && record.phase / 10 == 1) {
    const size_counts counts = count_sizes(type, call_.n, record.nnz);
    record.off_diagonal = counts.off_diagonal;
    record.stored = counts.stored;
  }
  record.threads = threads_;
  record.sequential = threads_ == 1;
  record.symmetric = type.symmetric();
  // Kept: the transposed system is solved only when the caller's values are not asked for.
  record.transposed = iparm(p_transposed) == 1 && iparm(p_user_values) != 1 && !type.symmetric();
  record.parallel_matching = call_.mtype == 11 && threads_ > 1 && iparm(p_ordering) >= 2;
  record.scalar_words = scalar_words(call_.mtype);
  record.factor_control = iparm(p_factor_control);
  const hybrid_choice hybrid =
      iparm(p_user_values) == 1 ? choose_hybrid(iparm(p_hybrid), record.control[2]) : hybrid_choice{};
  record.krylov = hybrid.krylov;
  if (record.phase / 10 == 1) {
    record.slots[slot_panel_width] =
        panel_width(type, threads_, call_.n, is_selected_vendor(read_cpu_facts(current_cpuid())));
  }
}

template <class T>
stage_status phase_machine::run_solve(bool may_iterate) {
  if (call_.nrhs < 1) return {};
  basic_record& record = *handle_.record();
  call_.iparm()(p_iteration) = 0;
  if (may_iterate) {
    const stage_status status = solve_by_iteration<T>(call_, handle_);
    if (!status.ok() || !record.must_factor) return status;
    const int iteration_code = call_.iparm()(p_iteration);
    const stage_status factored = factor<T>(call_, handle_);
    if (!factored.ok()) return factored;
    const stage_status solved = solve<T>(call_, handle_);
    call_.iparm()(p_iteration) = iteration_code;  // why there are new factors
    return solved;
  }
  return solve<T>(call_, handle_);
}

template <class T>
stage_status phase_machine::run_stages() {
  const basic_record& record = *handle_.record();
  const stage_range stages = stages_of(call_.phase);
  const progress_watch watch = current_watch();
  const bool solves = stages.last == 3;
  const bool may_iterate = solves && stages.first > 1 && record.krylov != 0 && record.part == 0 &&
                           handle_.factors_of<T>(call_.mnum) != nullptr;
  for (int stage = stages.first; stage <= stages.last; ++stage) {
    if (watch.cancelled_at(stage, 0)) return {-4, factorisation_cancelled};
    stage_status status;
    if (stage == 1) {
      status = analyse<T>(call_, handle_);
      if (status.ok()) handle_.set_live();
    } else if (stage == 2) {
      if (!may_iterate) status = factor<T>(call_, handle_);
    } else {
      status = run_solve<T>(may_iterate);
    }
    if (!status.ok()) return status;
    if (watch.cancelled_at(stage, 1) && stage < stages.last) return {-4, factorisation_cancelled};
  }
  return {};
}

int phase_machine::finish(const stage_status& status) {
  basic_record* const record = handle_.record();
  const int level = std::abs(call_.msglvl);
  if (!status.ok() && level != 0) {
    if (call_.phase < 0) {
      tell(solver_row::internal_error);
    } else if (no_record_) {
      tell(solver_row::initialization_failed);
      tell(solver_row::no_handle, call_.phase);
    } else {
      report_error(call_, status, record, record != nullptr ? record->account : first_account_);
    }
  } else if (status.ok() && !done_ && level != 0) {
    report_statistics(call_, *record);
  }
  // A first call that got nowhere leaves an empty handle.
  if (fresh_ && !handle_.live() && record != nullptr) {
    handle_.release();
  } else if (!done_ && record != nullptr) {
    record->account.forget_failure();
  }
  return level == 0 && status.error == -1 ? -7 : status.error;
}

int phase_machine::run() {
  stage_status status = prepare();
  if (status.ok() && !done_) status = check();
  if (status.ok() && !done_ && call_.maxfct > handle_.record()->fact_slots &&
      !handle_.extend_facts(call_.maxfct)) {
    status = out_of_memory(handle_.record()->account);
  }
  if (status.ok() && !done_) {
    store_call();
    basic_record& record = *handle_.record();
    record.times = {};
    const double allocating = record.account.seconds();
    status = with_element(scalar_words(call_.mtype) == 2, record.single,
                          [&](auto element) { return run_stages<decltype(element)>(); });
    record.times.allocation = record.account.seconds() - allocating;
    record.times.total = std::chrono::duration<double>(clock::now() - start_).count();
    const parameters iparm = call_.iparm();
    if (record.slots[slot_peak_analysis] != kNotSet) {
      iparm(p_peak_analysis) = record.slots[slot_peak_analysis];
      iparm(p_permanent_analysis) = record.slots[slot_permanent_analysis];
      iparm(p_numeric_memory) = record.slots[slot_numeric_memory];
    }
    iparm(p_version) = kSolverVersion;
  }
  const int error = finish(status);
  if (std::abs(call_.msglvl) >= 2) tell(solver_row::version, kSolverVersion);
  // Kept: a plain solve on a live handle does not fail through error; its messages have been printed. Two
  // faults that can only come from what this library added say so all the same.
  const bool said = status.sub_code == fault_pattern || status.sub_code == factorisation_cancelled;
  const bool forgives =
      call_.phase == 33 && handle_.live() && !no_record_ && call_.iparm()(p_hybrid) == 0 && !said;
  return forgives ? 0 : error;
}

bool choose_single(const solver_call& call) {
  const handle h(call.pt);
  const int stage = call.phase > 99 ? call.phase / 100 : call.phase / 10;
  if (stage != 1 && h.live() && h.record() != nullptr) return h.record()->single;
  return call.iparm()(p_single) == 1;
}

constexpr int kQueryFeatures = -2, kQueryVersion = -3;

}  // namespace

int solve_system(const solver_call& call) {
  if (call.phase == kQueryFeatures) {
    call.iparm()(p_user_values) = 23;
    return 16;
  }
  if (call.phase == kQueryVersion) return 300000;

  const int available = serv_in_parallel() ? 1 : serv_threads_all();
  const int threads = choose_threads(available, serv_threads_dynamic() != 0, call.n, call.nrhs);
  const parameters iparm = call.iparm();
  if (looks_diagonal(call)) {
    iparm(p_transposed) = kDiagonalMark;
    if (call.phase == 11) return 0;
    const int bad_row = solve_diagonal(call, choose_single(call), threads);
    if (bad_row == 0) return 0;
    if (call.msglvl != 0) report_error(call, {-7, -bad_row}, nullptr, {});
    return -7;
  }
  if (iparm(p_transposed) == kDiagonalMark) return 0;
  iparm(p_threads) = threads;
  return phase_machine(call, threads, choose_single(call)).run();
}

}  // namespace qel::pardiso
