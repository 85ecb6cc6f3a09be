// SPDX-License-Identifier: BSD-3-Clause
// Real calls of every shape.
#pragma once

#include "fft/execution/node_kernels.h"

namespace qel::fft {

/// All transforms of a real descriptor, on its threads if that is more than one. The input, offset already,
/// stays as it is unless it is the output. work: slices for the threads. A status.
template <class R, direction kWay>
int run_real_call(const dfti_node* first, const void* input, void* output, void* work);

/// Whether rows of the data and of the spectrum begin at the same places, as a call in place needs.
bool rows_coincide(const dfti_node& first);

}  // namespace qel::fft
