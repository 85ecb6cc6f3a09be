// SPDX-License-Identifier: BSD-3-Clause
// One call of the solver, and the solver itself.
#pragma once

#include "sparse/pardiso/iparm.h"

namespace qel::pardiso {

/// The entry's arguments. a, b and x are arrays of the type's elements in the precision of the handle.
struct solver_call {
  void** pt;  ///< 64 words
  int maxfct, mnum, mtype, phase, n;
  const void* a;
  const int *ia, *ja;
  int* perm;
  int nrhs;
  int* iparm_values;
  int msglvl;
  void *b, *x;
  parameters iparm() const { return parameters(iparm_values); }
  matrix_type type() const { return {mtype}; }
};

/// First and last stage of a phase: 1 analysis, 2 factorisation, 3 solve. 331 .. 333 are solves.
struct stage_range {
  int first, last;
};
constexpr stage_range stages_of(int phase) {
  return phase > 99 ? stage_range{3, 3} : stage_range{phase / 10, phase % 10};
}

/// What was asked for, at the entry: queries, threads, diagonal systems, then the phases. Returns error.
int solve_system(const solver_call& call);

}  // namespace qel::pardiso
