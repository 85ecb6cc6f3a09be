// SPDX-License-Identifier: BSD-3-Clause
// Calls whose factors may go into files: configuration, choice, files, figures.
#pragma once

#include "sparse/pardiso/call.h"
#include "sparse/pardiso/handle.h"
#include "sparse/pardiso/progress.h"

namespace qel::pardiso {

/// Reads the configuration into the handle's blocks; says what came from the environment.
void configure_store(const solver_call& call, const handle& h);

/// At the end of an analysis: whether the factors go into files. error -9 if not even that fits the limit.
stage_status choose_store_of(const solver_call& call, const handle& h, const memory_prediction& memory);

/// Files for the factors of call.mnum, which exist already.
template <class T>
stage_status open_store(const solver_call& call, const handle& h);
/// After the factorisation, of the given outcome: the lists that go with the panels, figures, the label of a
/// failure.
template <class T>
stage_status finish_store(const solver_call& call, const handle& h, stage_status outcome);

template <class T>
transfer_totals transfers_so_far(const solver_call& call, const handle& h);
/// What has been moved since; the failure of a transfer.
template <class T>
stage_status transfers_of_solve(const solver_call& call, const handle& h, const transfer_totals& before);

/// Percentages while factoring; passes on to the caller's own function.
struct store_progress {
  progress_watch watch;
  int percent = -1;
  void start(factor_options& options);
};

/// The same while solving, for each pass.
struct solve_progress {
  int equations = 0;
  int percent = -1;
  solve_part pass = solve_part::all;
  void start(int n, solve_options& options);
};

/// The part of the statistics about files.
void report_transfers(const solver_call& call, const basic_record& record);

}  // namespace qel::pardiso
