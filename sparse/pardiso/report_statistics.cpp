// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/out_of_core.h"
#include "sparse/pardiso/report.h"

namespace qel::pardiso {
namespace {

using row = solver_row;

row banner_of(int mtype) {
  switch (mtype) {
    case 1:
      return row::banner_1;
    case 2:
      return row::banner_2;
    case -2:
      return row::banner_minus_2;
    case 3:
      return row::banner_3;
    case 4:
      return row::banner_4;
    case -4:
      return row::banner_minus_4;
    case 6:
      return row::banner_6;
    case 11:
      return row::banner_11;
    default:
      return row::banner_13;
  }
}

void empty_line() { serv_message(0, 0, 0); }

void tell_banner(int mtype) {
  tell(banner_of(mtype));
  empty_line();
  empty_line();
}

void tell_times(const solver_call& call, const stage_times& times) {
  tell(row::times);
  tell(row::underline_times);
  double sum = 0;
  const auto stage = [&sum](row line, double seconds, auto... more) {
    if (seconds < 0) return;
    sum += seconds;
    tell(line, seconds, more...);
  };
  stage(row::time_fulladj, times.fulladj);
  stage(row::time_reorder, times.reorder);
  stage(row::time_symbfct, times.symbfct);
  stage(row::time_parlist, times.parlist);
  stage(row::time_a_to_lu, times.a_to_lu);
  stage(row::time_numfct, times.numfct);
  stage(row::time_solve, times.solve);
  stage(row::time_cgs, times.cgs, call.iparm()(p_iteration));
  stage(row::time_malloc, times.allocation);
  tell(row::time_total, times.total, times.total - sum);
}

void tell_ordering(const basic_record& record) {
  const int method = record.slots[slot_ordering];
  if (method == 0) {
    tell(row::preprocessing_degree);
    tell(row::reduction_parallel);
  }
  tell(row::panel_columns, record.slots[slot_panel_width]);
  tell(row::subgraphs, record.slots[slot_subgraphs]);
  if (record.slots[slot_permutation_mode] > 0) {
    tell(row::preprocessing_input);
  } else if (method == 1) {
    tell(row::preprocessing_constraints);
    tell(record.slots[slot_separators_by_degree] != 0 ? row::separators_by_degree
                                                      : row::separators_as_they_are);
  } else if (method == 2) {
    tell(row::preprocessing_metis);
  }
}

void tell_work(const basic_record& record) {
  const double millions = record.work / 1e6;
  tell(row::gflop, millions / 1000);
  if (record.factor_seconds > 0) tell(row::gflop_rate, millions / record.factor_seconds / 1000);
  if (record.norm_a > 0) tell(row::norm_a, record.norm_a);
}

}  // namespace

void report_statistics(const solver_call& call, const basic_record& record) {
  constexpr const char* kStages[] = {"", "reorder", "factorize", "solve"};
  const stage_range stages = stages_of(call.phase);
  tell_banner(call.mtype);
  tell(row::summary_stages, kStages[stages.first], kStages[stages.last]);
  tell(row::underline_summary);
  tell_times(call, record.times);
  if (record.out_of_core != 0) report_transfers(call, record);

  tell(row::statistics);
  tell(row::underline_statistics);
  tell(row::processors, record.threads);
  tell(record.krylov >= 1   ? row::method_hybrid
       : record.threads > 1 ? row::method_parallel
                            : row::method_sequential);
  empty_line();
  tell(record.transposed ? row::system_transposed : row::system_plain);
  tell(row::equations, record.n);
  tell(row::nonzeros, static_cast<int>(record.nnz));
  const double n = record.n;
  tell(row::nonzeros_percent, 100 * static_cast<double>(record.nnz) / n / n);
  tell(row::right_hand_sides, record.nrhs);
  empty_line();
  tell(row::factors_heading);
  tell_ordering(record);
  tell(row::supernodes, record.slots[slot_supernodes]);
  tell(row::largest_supernode, record.slots[slot_largest_supernode]);
  const long long in_l = record.nonzeros_l, in_u = record.nonzeros_u;
  tell(row::nonzeros_l, in_l);
  tell(row::nonzeros_u, in_u);
  tell(row::nonzeros_lu, in_l + in_u);
  if (stages.last >= 2) tell_work(record);
}

void report_clean_up(const solver_call& call, int mtype, int deleted) {
  tell_banner(mtype);
  tell(row::summary_clean);
  tell(row::underline_summary);
  if (call.phase == 0) {
    tell(row::cleaned_number, call.mnum);
  } else {
    tell(row::cleaned_all, deleted);
  }
}

}  // namespace qel::pardiso
