// SPDX-License-Identifier: BSD-3-Clause
// A long line on several threads: lines down the columns in a first parallel region, along the rows in a
// second one.
#pragma once

#include "fft/descriptor/dfti_node.h"

namespace qel::fft {

/// threaded_kernel of a descriptor with a split_plan.
template <class R>
int dfti_split_forward(dfti_node* first, const void* input, void* output, void* buffer);
template <class R>
int dfti_split_backward(dfti_node* first, const void* input, void* output, void* buffer);

}  // namespace qel::fft
