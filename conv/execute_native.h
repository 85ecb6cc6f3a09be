// SPDX-License-Identifier: BSD-3-Clause
// Executions in one dimension on native processor types: elements stay whole, only outputs that the task
// wants are computed, data that lie well are not copied, and the transform of a task is kept in it.
#pragma once

#include "conv/execute_line.h"

namespace qel::conv {

/// T is the caller's element type, R the precision of the sums; e has passed its tests.
template <class T, class R>
int execute_native(const execution& e, vsl_cc_task& task);

}  // namespace qel::conv
