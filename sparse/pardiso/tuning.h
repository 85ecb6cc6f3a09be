// SPDX-License-Identifier: BSD-3-Clause
// The solver's decisions by numbers alone.
#pragma once

#include <stdint.h>

#include "sparse/pardiso/matrix.h"

namespace qel::pardiso {

/// Threads for a system of order n: one per 50 equations where the count may be adjusted and there is one
/// right-hand side, and not below 1.
int choose_threads(int available, bool may_adjust, int n, int nrhs);

/// Most columns of a supernode. selected_vendor: the processor is the one that the wider panels are tuned
/// for.
int panel_width(matrix_type type, int threads, int n, bool selected_vendor);

/// Words of a factor entry by |type|, as the memory account of a type's change counts them; 0 for none.
int memory_factor(matrix_type type);

/// Entries off the diagonal and entries stored, as the record keeps them.
struct size_counts {
  int64_t off_diagonal, stored;
};
size_counts count_sizes(matrix_type type, int n, int64_t nnz);

/// Steps of the hybrid iteration: most of them, and the one of the test for stalling. limit 0: no iteration.
struct iteration_limits {
  int limit, stall_step;
};
/// krylov: K with its sign. The seconds are those of the factorisation and of one solve with it.
iteration_limits choose_iteration_limits(int krylov, double factor_seconds, double solve_seconds,
                                         bool out_of_core);

}  // namespace qel::pardiso
