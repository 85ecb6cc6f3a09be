// SPDX-License-Identifier: BSD-3-Clause
#include <algorithm>
#include <cstdlib>

#include "sparse/pardiso/checks.h"
#include "sparse/pardiso/handle.h"
#include "sparse/pardiso/report.h"

namespace qel::pardiso {
namespace {

using row = solver_row;

row class_of(const stage_status& failure) {
  if (failure.error == -1 && failure.sub_code >= 21 && failure.sub_code <= 30) return row::class_matrix;
  switch (failure.error) {
    case -1:
      return row::class_sequence;
    case -2:
      return row::class_memory;
    case -3:
      return row::class_reordering;
    case -4:
      return row::class_factorization;
    case -6:
      return row::class_preordering;
    case -8:
      return row::class_overflow;
    case -9:
      return row::class_ooc_memory;
    case -10:
      return row::class_ooc_open;
    case -11:
      return row::class_ooc_transfer;
    default:
      return row::class_internal;
  }
}

void tell_check(const solver_call& call, int sub_code, const basic_record* record) {
  const parameters iparm = call.iparm();
  const auto old = [record](auto member) { return record != nullptr ? record->*member : 0; };
  switch (sub_code) {
    case fault_phase:
      return tell(row::check_ido, call.phase);
    case fault_maxfct:
      return tell(row::check_max_fac_store, call.maxfct, old(&basic_record::maxfct));
    case fault_mnum:
      return tell(row::check_matrix_number, call.maxfct, call.mnum);
    case fault_mnum_phase:
      return tell(row::check_number_ido, call.mnum, call.phase);
    case fault_type_change:
      return tell(row::check_type_change, call.mtype, old(&basic_record::mtype));
    case fault_n_change:
      return tell(row::check_neqns_change, call.n, old(&basic_record::n));
    case fault_n:
      return tell(row::check_neqns, call.n);
    case fault_ia_end:
      return tell(row::check_ia_end, call.ia[call.n] - 1, call.n);
    case fault_nrhs:
      return tell(row::check_nb, call.nrhs, call.phase);
    case fault_solution_place:
      return tell(row::check_iparam6, iparm(p_solution_in_b));
    case fault_ordering:
      return tell(row::check_preprocessing, iparm(p_ordering));
    default:
      return tell(row::check_type, call.mtype);
  }
}

void tell_sequence(const solver_call& call, int sub_code, const basic_record* record) {
  const parameters iparm = call.iparm();
  const auto structure = [&](row line) { tell(line, iparm(p_fault_1), iparm(p_fault_2), iparm(p_fault_3)); };
  switch (sub_code) {
    case fault_no_analysis:
      return tell(row::clean_impossible);
    case fault_phase_low:
      return tell(row::ido_too_low);
    case fault_initialization:
      tell(row::initialization_ido);
      return tell(row::initialization_contradiction, call.phase);
    case fault_clean_number:
      return tell(row::wrong_number_clean, call.mnum);
    case fault_only_symbolic:
      return tell(row::only_symbolic, call.phase);
    case fault_threads_counted:
      return tell(row::check_threads_counted, iparm(p_threads));
    case fault_threads:
      return tell(row::check_threads, iparm(p_threads), iparm(p_threads));
    case fault_step:
      return tell(row::wrong_step, call.phase);
    case fault_ia:
      return structure(row::check_ia);
    case fault_ja_range:
      return structure(row::check_ja_range);
    case fault_triangle:
      return structure(row::check_triangle);
    case fault_ja_order:
      return structure(row::check_ja_order);
    case fault_pattern:
      return tell(row::check_pattern);
    default:
      break;
  }
  tell_check(call, sub_code, record);
  const bool has_matrix = call.n > 0 && call.ia != nullptr;
  tell(row::inconsistent_1, sub_code, call.maxfct);
  tell(row::inconsistent_2, call.mnum, call.mtype);
  tell(row::inconsistent_3, call.phase, call.n);
  tell(row::inconsistent_4, has_matrix ? call.ia[call.n] - 1 : 0, call.nrhs);
}

void tell_memory(const solver_call& call, int code, const memory_account& account) {
  constexpr const char* kBlocks[] = {"BASIC   ", "FACT_ADR", "LOC_INT1", "STRUC_S0", "WORK_I0 ",
                                     "STRUC_S1", "STRUC_S2", "STRUC_FI", "LOC_INT2", "UP_UPLEN",
                                     "FACT_L&U", "WORK_R0 ", "CGS_ARR "};
  constexpr int kBlockCount = static_cast<int>(sizeof kBlocks / sizeof kBlocks[0]);
  const parameters iparm = call.iparm();
  const int index = std::clamp(-code / 100, 1, kBlockCount) - 1;
  tell(row::allocation_failed, kBlocks[index], static_cast<long long>(account.failed_bytes()));
  tell(row::memory_wanted,
       static_cast<int>(account.now() + memory_account::kilobytes(account.failed_bytes())));
  tell(row::memory_symbolic, iparm(p_peak_analysis), iparm(p_permanent_analysis));
  tell(row::memory_real, iparm(p_numeric_memory));
}

/// What the call below a transfer met.
void tell_call_of_transfer(int code, const transfer_fault& fault) {
  const auto items = static_cast<long long>(fault.items);
  switch (code) {
    case PARDISO_OOC_OPEN_MODE_FILE_ERROR:
    case PARDISO_OOC_OPEN_FILE_ERROR:
      return tell(row::ooc_not_opened, fault.label);
    case PARDISO_OOC_CLOSE_FILE_ERROR:
      return tell(row::ooc_not_closed);
    case PARDISO_OOC_NUMBER_OF_READ_EQUAL_ZERO:
    case PARDISO_OOC_NUMBER_OF_READ_NOT_EQUAL_COUNT:
      tell(row::ooc_read_type, fault.kind);
      tell(row::ooc_items_read, items);
      tell(row::ooc_read_error);
      return tell(row::ooc_read_failed);
    case PARDISO_OOC_READ_SEEK_ERROR:
      tell(row::ooc_read_type, fault.kind);
      tell(row::ooc_read_seek_error);
      return tell(row::ooc_seek_failed);
    case PARDISO_OOC_NUMBER_OF_WRITE_EQUAL_ZERO:
    case PARDISO_OOC_NUMBER_OF_WRITE_NOT_EQUAL_COUNT:
      tell(row::ooc_write_type, fault.kind);
      tell(row::ooc_items_written, items);
      return tell(row::ooc_write_error);
    case PARDISO_OOC_WRITE_SEEK_ERROR:
      tell(row::ooc_write_type, fault.kind);
      return tell(row::ooc_seek_failed);
    case PARDISO_OOC_WRITE_EOF_ERROR:
      return tell(row::ooc_write_end);
    default:
      return;
  }
}

void tell_transfer(const solver_call& call, int code) {
  const handle h(call.pt);
  const bool known = h.record() != nullptr && h.store() != nullptr;
  const transfer_fault fault = known ? h.state_of_store().fault : transfer_fault{};
  const char* const name = name_of(static_cast<pardiso_ooc_code>(code));
  if (name == nullptr) return tell(row::ooc_other_error, code, fault.label);
  tell_call_of_transfer(code, fault);
  tell(row::ooc_error, name, fault.label);
}

void tell_factorization(const solver_call& call, int sub_code) {
  const parameters iparm = call.iparm();
  if (sub_code == factorisation_cancelled) return tell(row::factorization_cancelled);
  if (sub_code == -112) {
    tell(row::refinement_failed);
    return tell(row::contraction_rate);
  }
  if (sub_code == -111) {
    tell(row::refinement_failed);
    return tell(row::too_many_steps, std::abs(iparm(p_steps)));
  }
  if (sub_code == -3 || iparm(p_iteration) < 0) return tell(row::cgs_failed, iparm(p_iteration));
  if (sub_code == -2) return tell(row::factorization_memory);
  tell(call.type().definite() ? row::not_definite : row::zero_pivot);
}

}  // namespace

void report_error(const solver_call& call, const stage_status& failure, const basic_record* record,
                  const memory_account& account) {
  tell(row::error_line, serv_message_text(static_cast<int>(class_of(failure)), 0), failure.error);
  switch (failure.error) {
    case -1:
      return tell_sequence(call, failure.sub_code, record);
    case -2:
      return tell_memory(call, failure.sub_code, account);
    case -3:
    case -8:
      return tell(row::reordering_failed);
    case -4:
      return tell_factorization(call, failure.sub_code);
    case -6:
      tell(row::preordering_failed, std::max(-failure.sub_code, 0), call.n);
      return tell(row::preordering_reason);
    case -7:
      return tell(row::wrong_diagonal, -failure.sub_code);
    case -10:
      tell_transfer(call, failure.sub_code);
      return tell(row::unclassified);
    case -11:
      return tell_transfer(call, failure.sub_code);
    case -5:
      return tell(row::unclassified);
    default:
      return;
  }
}

}  // namespace qel::pardiso
