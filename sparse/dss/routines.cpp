// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/dss/routines.h"

#include <algorithm>
#include <chrono>

#include "sparse/dss/call.h"
#include "sparse/pardiso/iparm.h"

namespace qel::dss {
namespace {

using pardiso::parameters;

constexpr option_grammar kCreate = {
    kNoField, bit_out_of_core_1 | bit_out_of_core_2 | bit_single | bit_accepted, invalid_option};
constexpr option_grammar kDefine = {kStructure, 0, invalid_structure};
constexpr option_grammar kReorderOptions = {kReorder, 0, invalid_reorder};
constexpr option_grammar kFactorOptions = {kFactor, 0, invalid_factor};
constexpr option_grammar kSolve = {kNoField, bit_no_refinement | bit_refinement | bit_forward | bit_diagonal,
                                   invalid_option};

enum reorder_kind : int {
  reorder_default,
  reorder_given,
  reorder_degree,
  reorder_returned,
  reorder_dissection,
  reorder_subgraphs
};

double seconds_of(const auto& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void store_created(record& r, uint32_t options) {
  const parameters iparm(r.iparm);
  const bool single = (options & bit_single) != 0;
  iparm(pardiso::p_user_values) = 1;
  iparm(pardiso::p_ordering) = 2;
  iparm(pardiso::p_steps_done) = 16;
  iparm(pardiso::p_steps) = 2;
  iparm(pardiso::p_perturbation) = single ? 7 : 13;
  iparm(pardiso::p_scaling) = 1;
  iparm(pardiso::p_factor_nonzeros) = -1;
  iparm(pardiso::p_factor_work) = -1;
  iparm(pardiso::p_single) = single;
  iparm(pardiso::p_out_of_core) = (options & bit_out_of_core_2) != 0   ? 2
                                  : (options & bit_out_of_core_1) != 0 ? 1
                                                                       : 0;
}

}  // namespace

levels levels_for(const read_options& read, const record* known) {
  levels result;
  if (known != nullptr) result = {known->message_level, known->termination_level};
  if (read.message_level >= 0) result.message = read.message_level;
  if (read.termination_level >= 0) result.termination = read.termination_level;
  return result;
}

void add_option_faults(fault_list& faults, const read_options& read, int bad_field) {
  faults.add_if(read.message_level == kInvalid, invalid_message_level);
  faults.add_if(read.termination_level == kInvalid, invalid_termination_level);
  faults.add_if(read.field == kInvalid, bad_field);
  faults.add_if(read.stray_bits, invalid_option);
}

dss_call::dss_call(void** handle, int options, const option_grammar& grammar, unsigned allowed)
    : options_(static_cast<uint32_t>(options)),
      read_(parse_options(options_, grammar)),
      record_(static_cast<record*>(*handle)),
      levels_(levels_for(read_, record_)),
      faults_(levels_) {
  add_option_faults(faults_, read_, grammar.bad_field);
  faults_.add_if(record_ == nullptr || (states(record_->state) & allowed) == 0, invalid_sequence);
  if (record_ == nullptr) return;
  record_->message_level = levels_.message;
  record_->termination_level = levels_.termination;
}

int dss_call::finish(int status_number) const {
  return faults_.empty() ? report(code_of(status_number), levels_) : faults_.report_all();
}

int create(void** handle, int options) {
  const auto bits = static_cast<uint32_t>(options);
  const read_options read = parse_options(bits, kCreate);
  const levels current = levels_for(read, nullptr);
  fault_list faults(current);
  add_option_faults(faults, read, kCreate.bad_field);
  *handle = nullptr;
  if (!faults.empty()) return faults.report_all();
  record* const made = create_record();
  if (made == nullptr) return report(code_of(out_of_memory), current);
  store_created(*made, bits);
  made->message_level = current.message;
  made->termination_level = current.termination;
  *handle = made;
  return report(code_of(success), current);
}

int define_structure(void** handle, int options, const int* row_index, int rows, int columns,
                     const int* column_index, int nonzeros) {
  dss_call call(handle, options, kDefine, states(state_created, state_solved));
  fault_list& faults = call.faults();
  faults.add_if(columns < 1, columns_below_one);
  faults.add_if(rows < 1, rows_below_one);
  faults.add_if(rows != columns, not_square);
  faults.add_if(nonzeros < rows, too_few_nonzeros);
  faults.add_if(nonzeros > static_cast<long long>(rows) * columns, too_many_nonzeros);
  if (!faults.empty()) return call.finish(success);

  record& r = call.r();
  // What an earlier structure left goes, and with it the marks of its type.
  if (r.state == state_solved && call_solver(r, -1) != success) return call.finish(failure);
  const parameters iparm(r.iparm);
  iparm(pardiso::p_transposed) = 0;
  iparm(pardiso::p_factor_nonzeros) = iparm(pardiso::p_factor_work) = -1;
  const int kind = std::max(call.field(), 0);
  r.rows = rows;
  r.columns = columns;
  r.nonzeros = nonzeros;
  r.row_index = row_index;
  r.column_index = column_index;
  r.perm = nullptr;
  r.data = kind >= 3 ? complex_data : real_data;
  r.structure = kind % 3;
  r.mtype = starting_type(r.structure, r.data);
  r.values = nullptr;
  r.state = state_defined;
  return call.finish(success);
}

int reorder(void** handle, int options, int* perm) {
  dss_call call(handle, options, kReorderOptions, states(state_defined));
  const int kind = std::max(call.field(), 0);
  const bool uses_perm = kind == reorder_given || kind == reorder_returned;
  call.faults().add_if(uses_perm && perm == nullptr, options_conflict);
  if (!call.faults().empty()) return call.finish(success);

  record& r = call.r();
  const parameters iparm(r.iparm);
  int& ordering = iparm(pardiso::p_ordering);
  ordering = kind == reorder_degree       ? 0
             : kind == reorder_dissection ? 2
             : kind == reorder_subgraphs  ? 3
                                          : ordering;
  iparm(pardiso::p_permutation) = kind == reorder_given ? 1 : kind == reorder_returned ? 2 : 0;
  r.perm = uses_perm ? perm : nullptr;
  int result = success;
  r.reorder_seconds = seconds_of([&] { result = call_solver(r, 11); });
  if (result == success) r.state = state_reordered;
  return call.finish(result);
}

int factor(void** handle, int options, const void* values, int data) {
  dss_call call(handle, options, kFactorOptions, states(state_reordered, state_factored, state_solved));
  const int kind = std::max(call.field(), 0);
  const bool hermitian = kind == hermitian_definite || kind == hermitian_indefinite;
  const bool complex_structure = *handle != nullptr && call.r().data == complex_data;
  call.faults().add_if(
      (data != real_data && data != complex_data) || (data == real_data && (hermitian || complex_structure)),
      options_conflict);
  if (!call.faults().empty()) return call.finish(success);

  record& r = call.r();
  r.factor = kind;
  r.data = data;
  r.mtype = factored_type(r.structure, kind, data);
  r.values = values;
  int result = success;
  r.factor_seconds = seconds_of([&] { result = call_solver(r, 22); });
  if (result == success) r.state = state_factored;
  return call.finish(result);
}

int solve(void** handle, int options, const void* rhs, int nrhs, void* solution) {
  dss_call call(handle, options, kSolve, states(state_factored, state_solved));
  if (!call.faults().empty()) return call.finish(success);
  record& r = call.r();
  const parameters iparm(r.iparm);
  if (call.has(bit_no_refinement)) iparm(pardiso::p_steps) = 0;
  if (call.has(bit_refinement)) iparm(pardiso::p_steps) = 2;
  r.nrhs = nrhs;
  r.rhs = rhs;
  r.solution = solution;
  int result = success;
  r.solve_seconds = seconds_of([&] { result = call_solver(r, solve_phase(static_cast<uint32_t>(options))); });
  if (result == success) r.state = state_solved;
  return call.finish(result);
}

int destroy(void** handle, int options) {
  dss_call call(handle, options, kLevelsOnly, kAnyState);
  if (!call.faults().empty()) return call.finish(success);
  record& r = call.r();
  r.state = state_deleted;
  if (call_solver(r, -1) != success) return call.finish(failure);
  delete_record(&r);
  *handle = nullptr;
  return call.finish(success);
}

}  // namespace qel::dss
