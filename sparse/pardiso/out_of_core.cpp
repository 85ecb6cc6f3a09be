// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/out_of_core.h"

#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <limits>

#include "sparse/pardiso/ooc/configuration.h"
#include "sparse/pardiso/ooc/store_choice.h"
#include "sparse/pardiso/report.h"

namespace qel::pardiso {
namespace {

using row = solver_row;

/// A text from outside, at a length that a message has room for.
struct short_text {
  char text[401];
  explicit short_text(const char* from) { std::snprintf(text, sizeof text, "%.400s", from); }
};

transfer_totals difference(const transfer_totals& after, const transfer_totals& before) {
  return {after.bytes_read - before.bytes_read, after.bytes_written - before.bytes_written,
          after.read_seconds - before.read_seconds, after.write_seconds - before.write_seconds};
}

row reason_row(store_reason reason) {
  switch (reason) {
    case store_reason::not_enough_memory:
      return row::ooc_needed;
    case store_reason::enough_memory:
      return row::ooc_not_needed;
    case store_reason::requested_out_of_core:
      return row::ooc_on;
    default:
      return row::ooc_off;
  }
}

int share(double part, double whole) {
  return whole > 0 ? static_cast<int>(std::clamp(100 * part / whole, 0.0, 100.0)) : 0;
}

double megabytes(int64_t bytes) { return static_cast<double>(bytes) / (1024.0 * 1024.0); }

}  // namespace

void configure_store(const solver_call& call, const handle& h) {
  store_configuration configuration;
  const store_environment from = read_store_configuration(configuration);
  store_state& state = h.state_of_store();
  state.configured = true;
  state.max_core_size = configuration.max_core_size;
  state.keep_file = configuration.keep_file;
  std::snprintf(h.store()->path, kPathBytes, "%s", configuration.path);
  if (call.msglvl <= 0) return;
  if (from.configuration_path) {
    tell(row::ooc_env_cfg_path, short_text(configuration.configuration_path).text);
  }
  if (from.configuration_file) {
    tell(row::ooc_env_cfg_file, short_text(configuration.configuration_file).text);
  }
  if (from.path) tell(row::ooc_env_path, short_text(configuration.path).text);
  if (from.max_core_size) tell(row::ooc_env_size, configuration.max_core_size);
  if (from.keep_file) tell(row::ooc_env_keep, configuration.keep_file);
}

stage_status choose_store_of(const solver_call& call, const handle& h, const memory_prediction& memory) {
  basic_record& record = *h.record();
  const int requested = call.iparm()(p_out_of_core);
  if (requested != 0 && !h.state_of_store().configured) configure_store(call, h);
  const store_choice choice = choose_store({requested, memory.total, memory.factors,
                                            memory.out_of_core_minimum, h.state_of_store().max_core_size});
  record.out_of_core = choice.out_of_core ? 2 : 0;
  if (call.msglvl != 0 && choice.reason != store_reason::none) tell(reason_row(choice.reason));
  if (choice.fits) return {};
  const int64_t kilobytes = std::min<int64_t>(choice.need * 1024, std::numeric_limits<int>::max());
  call.iparm()(p_peak_analysis) = record.slots[slot_peak_analysis] = static_cast<int>(kilobytes);
  return {-9, 0};
}

template <class T>
stage_status open_store(const solver_call& call, const handle& h) {
  // The limit is one on the process: what the ordering has freed goes back to the system.
  malloc_trim(0);
  handle owner = h;
  basic_record& record = *h.record();
  store_state& state = h.state_of_store();
  factor_files<T>* const files = owner.new_files<T>(call.mnum);
  if (files == nullptr) return {-2, record.account.failed_code()};
  const matrix_type type = call.type();
  files->files = {h.store()->path, -1, record.threads, type.symmetric(), record.scaled, {}};
  files->deletes = state.keep_file != 0;
  if (const pardiso_ooc_code code = start_ooc_files(files->files); code != PARDISO_OOC_NO_ERROR) {
    state.fault = {"open ind", ooc_index, 0};
    return ooc_status(code);
  }
  const structure& form = h.analysed()->form;
  const structure_options options{record.slots[slot_panel_width], type.unsymmetric(), is_complex<T>,
                                  record.threads};
  const int64_t cache = panel_cache_bytes(predict_memory(form, options, sizeof(T)), state.max_core_size);
  h.factors_of<T>(call.mnum)->store = &files->store;
  const stage_status opened =
      files->store.prepare(form, type, files->files, true, record.threads, cache, record.account);
  if (opened.error == -2) return {-2, record.account.failed_code()};
  if (!opened.ok()) state.fault = files->store.fault();
  return opened;
}

template <class T>
stage_status finish_store(const solver_call& call, const handle& h, stage_status outcome) {
  factor_files<T>* const files = h.files_of<T>(call.mnum);
  if (files == nullptr) return outcome;
  store_state& state = h.state_of_store();
  if (outcome.ok()) outcome = files->store.write_lists(*h.factors_of<T>(call.mnum));
  if (outcome.error == -10 || outcome.error == -11) {
    if (files->store.failed_code() != PARDISO_OOC_NO_ERROR) {
      state.fault = files->store.fault();
    }
  }
  state.factor = files->store.totals();
  return outcome;
}

template <class T>
transfer_totals transfers_so_far(const solver_call& call, const handle& h) {
  const factor_files<T>* const files = h.files_of<T>(call.mnum);
  return files != nullptr ? files->store.totals() : transfer_totals{};
}

template <class T>
stage_status transfers_of_solve(const solver_call& call, const handle& h, const transfer_totals& before) {
  const factor_files<T>* const files = h.files_of<T>(call.mnum);
  if (files == nullptr) return {};
  store_state& state = h.state_of_store();
  state.solve = difference(files->store.totals(), before);
  const stage_status failure = files->store.failure();
  if (!failure.ok()) state.fault = files->store.fault();
  return failure;
}

namespace {

/// A percentage that has grown since the last one, on the line that ends with 100.
void tell_percent(int now, int& told) {
  if (now <= told) return;
  told = now;
  tell(row::ooc_percent, now);
  if (now == 100) serv_message(0, 0, 0);
}

}  // namespace

void solve_progress::start(int n, solve_options& options) {
  equations = n;
  options.progress_context = this;
  options.progress = [](void* context, solve_part at, int unknowns) {
    solve_progress& self = *static_cast<solve_progress*>(context);
    if (at != self.pass || self.percent == 100) {
      self.pass = at;
      self.percent = -1;
      tell(at == solve_part::forward ? row::ooc_forward : row::ooc_backward);
    }
    tell_percent(static_cast<int>(int64_t{100} * unknowns / self.equations), self.percent);
  };
}

void store_progress::start(factor_options& options) {
  tell(row::ooc_progress);
  options.progress_context = this;
  options.progress = [](void* context, double share_done) {
    store_progress& self = *static_cast<store_progress*>(context);
    tell_percent(static_cast<int>(100 * share_done), self.percent);
    return self.watch.cancelled_at(2, share_done);
  };
}

void report_transfers(const solver_call& call, const basic_record& record) {
  const handle h(call.pt);
  const store_state& state = h.state_of_store();
  const transfer_totals &factor = state.factor, &solve = state.solve;
  const double factor_time = std::max(record.factor_seconds, 0.0),
               solve_time = std::max(record.times.solve, 0.0);
  const double factor_io = factor.read_seconds + factor.write_seconds;
  const double solve_io = solve.read_seconds + solve.write_seconds;
  tell(row::ooc_rule);
  tell(row::ooc_time_heading);
  tell(row::ooc_factor_time);
  tell(row::ooc_write_share, share(factor.write_seconds, factor_time));
  tell(row::ooc_read_share, share(factor.read_seconds, factor_time));
  tell(row::ooc_factor_share, 100 - share(factor_io, factor_time));
  tell(row::ooc_solve_time);
  tell(row::ooc_read_share, share(solve.read_seconds, solve_time));
  tell(row::ooc_solve_share, 100 - share(solve_io, solve_time));
  tell(row::ooc_total_time);
  tell(row::ooc_write_share, share(factor.write_seconds + solve.write_seconds, factor_time + solve_time));
  tell(row::ooc_read_share, share(factor.read_seconds + solve.read_seconds, factor_time + solve_time));
  tell(row::ooc_total_share, 100 - share(factor_io + solve_io, factor_time + solve_time));
  tell(row::ooc_size_heading);
  tell(row::ooc_factor_size);
  tell(row::ooc_write_size, megabytes(factor.bytes_written));
  tell(row::ooc_read_size, megabytes(factor.bytes_read));
  tell(row::ooc_solve_size);
  tell(row::ooc_read_size, megabytes(solve.bytes_read));
  tell(row::ooc_total_size);
  tell(row::ooc_sum_size, megabytes(factor.bytes_written + factor.bytes_read + solve.bytes_read));
  tell(row::ooc_write_seconds, factor.write_seconds);
  tell(row::ooc_read_seconds, factor.read_seconds);
  tell(row::ooc_solve_seconds, solve.read_seconds);
}

#define QEL_INSTANTIATE(T)                                                                \
  template stage_status open_store<T>(const solver_call&, const handle&);                 \
  template stage_status finish_store<T>(const solver_call&, const handle&, stage_status); \
  template transfer_totals transfers_so_far<T>(const solver_call&, const handle&);        \
  template stage_status transfers_of_solve<T>(const solver_call&, const handle&, const transfer_totals&);
QEL_INSTANTIATE(float)
QEL_INSTANTIATE(double)
QEL_INSTANTIATE(complex8)
QEL_INSTANTIATE(complex16)
#undef QEL_INSTANTIATE

}  // namespace qel::pardiso
