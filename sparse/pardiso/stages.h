// SPDX-License-Identifier: BSD-3-Clause
// The three stages of a call on a live handle.
#pragma once

#include "sparse/pardiso/call.h"
#include "sparse/pardiso/handle.h"

namespace qel::pardiso {

/// error -2 with the code of the block that was refused.
stage_status out_of_memory(const memory_account& account);

template <class T>
csr_view<T> matrix_of(const solver_call& call) {
  return {call.n, call.ia, call.ja, static_cast<const T*>(call.a), call.type()};
}

/// Ordering and structure, from the caller's iparm; fills the record's sizes and iparm's estimates.
template <class T>
stage_status analyse(const solver_call& call, const handle& h);

/// The factors of call.mnum.
template <class T>
stage_status factor(const solver_call& call, const handle& h);

/// Substitution and refinement, or a part of the substitution.
template <class T>
stage_status solve(const solver_call& call, const handle& h);

/// Iterates with the factors that are there. Fills iparm(20); record.must_factor tells that it failed.
template <class T>
stage_status solve_by_iteration(const solver_call& call, const handle& h);

}  // namespace qel::pardiso
