// SPDX-License-Identifier: BSD-3-Clause
// Entries of the direct sparse solver.
#include "qel/pardiso.h"

#include "service/verbose.h"
#include "sparse/pardiso/call.h"
#include "sparse/pardiso/progress.h"
#include "sparse/pardiso/quality.h"

namespace pardiso_core = qel::pardiso;

extern "C" {

void PARDISO(void** pt, const int* maxfct, const int* mnum, const int* mtype, const int* phase, const int* n,
             const void* a, const int* ia, const int* ja, int* perm, const int* nrhs, int* iparm,
             const int* msglvl, void* b, void* x, int* error) {
  const auto solve = [&] {
    *error = pardiso_core::solve_system(
        {pt, *maxfct, *mnum, *mtype, *phase, *n, a, ia, ja, perm, *nrhs, iparm, *msglvl, b, x});
  };
  if (!qel::may_be_verbose()) return solve();
  const qel::call_trace trace("pardiso", mtype, phase, n, nrhs);
  solve();
}

int pardisoinit(void** pt, const int* mtype, int* iparm) {
  pardiso_core::initialise({*mtype}, pt, pardiso_core::parameters(iparm));
  return -1;
}

int qel_pardiso_report(void* const* pt, int mnum, const void* a, const int* ia, const int* ja, int nrhs,
                       const void* b, const void* x, double* backward_errors, qel_pardiso_quality* quality) {
  const pardiso_core::quality_question question = {pt, mnum, a, ia, ja, nrhs, b, x};
  const pardiso_core::quality found = pardiso_core::judge_quality(question, backward_errors);
  quality->perturbed_pivots = found.perturbed_pivots;
  quality->positive = found.positive;
  quality->negative = found.negative;
  quality->condition = found.condition;
  quality->backward_error = found.backward_error;
  quality->forward_error = found.forward_error;
  pardiso_core::word_quality(found, quality->text, sizeof quality->text);
  return found.verdict;
}

void qel_pardiso_set_progress(qel_pardiso_progress function, void* context) {
  pardiso_core::watch_progress({function, context});
}

// The other spellings.
QEL_API decltype(PARDISO) pardiso __attribute__((alias("PARDISO")));
QEL_API decltype(PARDISO) pardiso_ __attribute__((alias("PARDISO")));
QEL_API decltype(pardisoinit) pardisoinit_ __attribute__((alias("pardisoinit")));

}  // extern "C"
