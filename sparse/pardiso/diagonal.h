// SPDX-License-Identifier: BSD-3-Clause
// Systems with a diagonal matrix, which need no handle.
#pragma once

#include "sparse/pardiso/call.h"

namespace qel::pardiso {

/// One entry per row, as far as the row starts tell without a look at the columns.
bool looks_diagonal(const solver_call& call);
/// x := b / a for each right-hand side if the phase ends with a solve. Returns 0 or the number of the first
/// row whose entry is zero or not on the diagonal.
int solve_diagonal(const solver_call& call, bool single, int threads);

}  // namespace qel::pardiso
