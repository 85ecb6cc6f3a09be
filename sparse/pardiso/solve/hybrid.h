// SPDX-License-Identifier: BSD-3-Clause
// CGS and CG iterations that use the factors of an earlier matrix as preconditioner (P. Sonneveld, SIAM J.
// Sci. Stat. Comput. 10 (1989) 36; M. R. Hestenes, E. Stiefel, J. Res. NBS 49 (1952) 409).
#pragma once

#include "sparse/pardiso/matrix.h"
#include "sparse/pardiso/memory_account.h"
#include "sparse/pardiso/tuning.h"

namespace qel::pardiso {

/// How an iteration ended.
enum iteration_status : int {
  iteration_goes_on = 1,
  iteration_converged = 0,
  iteration_diverged = -1,
  iteration_stalled = -2,
  iteration_at_limit = -3,
  iteration_no_start = -4,
  iteration_not_run = -5,  ///< by the limits
};

struct iteration_rules {
  double tolerance;
  double divergence_bound;
  iteration_limits limits;
  bool conjugate_gradients;
};
/// After a step: rel is the residual's relative size, best the least one so far, this step's included.
iteration_status judge_iteration(int step, double rel, double best, const iteration_rules& rules);

/// The operators of an iteration over nrhs columns of n elements.
template <class T>
struct iteration_operators {
  /// out := -A in
  void (*minus_product)(void* context, const T* in, T* out);
  /// out := M^-1 in
  void (*precondition)(void* context, const T* in, T* out);
  void* context;
};
struct iteration_result {
  stage_status memory;  ///< error -2, or none
  int status = iteration_no_start;
  int steps = 0;
};
/// Solves A x = b from x = 0, for all columns at a time. Negative status: x has no meaning.
template <class T>
iteration_result iterate(const iteration_operators<T>& operators, int n, int nrhs, const T* b, T* x,
                         bool hermitian, const iteration_rules& rules, bool trace, memory_account& account);

}  // namespace qel::pardiso
