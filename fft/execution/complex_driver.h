// SPDX-License-Identifier: BSD-3-Clause
// Complex calls with more than one line: strides, several transforms, several dimensions. One driver for the
// calling thread and one that deals the lines to threads.
#pragma once

#include "fft/execution/node_kernels.h"

namespace qel::fft {

/// A number of transforms from input to output, on the calling thread. A status.
template <class R>
int dfti_sequential_forward(const dfti_node* first, const complex_of<R>* input, complex_of<R>* output,
                            core_int transforms, void* work);
template <class R>
int dfti_sequential_backward(const dfti_node* first, const complex_of<R>* input, complex_of<R>* output,
                             core_int transforms, void* work);
/// All transforms of the descriptor on its threads.
template <class R>
int dfti_threaded_forward(const dfti_node* first, const complex_of<R>* input, complex_of<R>* output);
template <class R>
int dfti_threaded_backward(const dfti_node* first, const complex_of<R>* input, complex_of<R>* output);

/// All transforms of a split descriptor, on the calling thread.
template <class R, direction kWay>
int run_split_lines(const dfti_node* first, split_line<const R> input, split_line<R> output, void* work);

}  // namespace qel::fft
