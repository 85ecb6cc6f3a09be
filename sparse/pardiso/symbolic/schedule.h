// SPDX-License-Identifier: BSD-3-Clause
// Order in which the numeric phase takes the supernodes.
#pragma once

#include "sparse/pardiso/symbolic/structure.h"

namespace qel::pardiso {

/// Ascending for one thread. For several, disjoint subtrees side by side, so that threads that take one
/// supernode after the other seldom wait for one another, then what lies above the subtrees. Children come
/// before their parents in any case. work: operations of a supernode's columns. False if memory is out.
bool schedule_supernodes(int supernodes, const int* parent, const double* work, int threads,
                         memory_account& account, int* order);

}  // namespace qel::pardiso
