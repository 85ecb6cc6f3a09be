// SPDX-License-Identifier: BSD-3-Clause
// Making a descriptor ready to compute, and taking that back.
#pragma once

#include "fft/descriptor/dfti_node.h"

namespace qel::fft {

/// The commit routine of a kind of transform; null if transforms of that kind can't be planned.
commit_routine_type* commit_routine_for(int precision, int domain, core_int dimension);

/// A status; commits, or leaves the descriptor uncommitted.
int commit_descriptor(dfti_node* first);

/// Data pointers that a compute call of this configuration passes.
int count_compute_pointers(int placement, int domain, int complex_storage);

/// Releases the fast plan, if one holds the descriptor.
void release_fast_plan(dfti_node* first);

}  // namespace qel::fft
