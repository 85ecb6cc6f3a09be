// SPDX-License-Identifier: BSD-3-Clause
// The general plan of a descriptor: a plan of one line for each node, and the work of its threads.
#pragma once

#include "fft/descriptor/dfti_node.h"

namespace qel::fft {

/// Plans and commits; keeps the plan of a long line that the descriptor holds already. A status; on failure
/// nothing is held.
template <class R>
int plan_nodes(dfti_node* first);

/// Releases what the plan of all nodes holds, that of a long line too.
void release_plan(dfti_node* first);

}  // namespace qel::fft
