// SPDX-License-Identifier: BSD-3-Clause
// How a call with more than one line is broken into lines: pure decisions on its shape.
#pragma once

#include <cstdint>

#include "service/core_types.h"

namespace qel::fft {

inline constexpr int kMaxDimension = 7;
inline constexpr core_int kWidestBlock = 8;  ///< lines handled together: their elements fill cache lines

/// Lines of a strided dimension that are handled together; lengths by node.
core_int block_width(core_int dimension, const core_int* lengths, core_int first_output_stride);

/// The node whose lines are dealt to threads in the pass over a node.
int parallel_axis(core_int dimension, int pass_node);

/// Whether each line of a batch is asked for before the one in front of it is computed: batches beyond all
/// caches, of lines that the processor's own foresight does not reach but that the first cache holds.
bool asks_ahead(core_int transforms, core_int line_bytes);

/// Whether the lines of a strided dimension are asked for a block ahead: if all of them do not fit the second
/// cache.
bool asks_ahead_of_columns(core_int bytes);

/// The columns of the first block of lines side by side at an address, of elements of so many bytes: many of
/// them are cut so that all other blocks begin with a cache line.
core_int first_block(uintptr_t address, core_int element_bytes, core_int count);

/// count items dealt to threads: chunk each, the last threads take what is left.
struct share {
  int threads;
  core_int chunk;
};
inline share deal(core_int count, int threads) {
  return {threads, count > 0 ? (count - 1) / threads + 1 : 0};
}

}  // namespace qel::fft
