// SPDX-License-Identifier: BSD-3-Clause
#include "fft/planning/box_rules.h"

namespace qel::fft {

column_axes columns_below(const box_shape& shape, int node) {
  column_axes axes{1, {shape.count[0]}, {shape.stride[0]}};
  for (int i = 1; i < node; ++i) {
    core_int& extent = axes.extent[axes.count - 1];
    if (shape.count[i] == 1 || shape.stride[i] == extent * axes.stride[axes.count - 1]) {
      extent *= shape.count[i];
      continue;
    }
    axes.extent[axes.count] = shape.count[i];
    axes.stride[axes.count] = shape.stride[i];
    ++axes.count;
  }
  return axes;
}

bool joins_edge_columns(core_int length, core_int block) {
  constexpr core_int kMostBlocks = 32;  // beyond, one column more is little
  return length % (2 * block) == 0 && length / 2 <= kMostBlocks * block;
}

int native_threads(core_int elements, core_int transforms, bool real, int threads) {
  constexpr core_int kSmallest = 8192;  // complex elements; measured on two cores of a Zen 4
  return elements * transforms < (real ? 2 : 1) * kSmallest ? 1 : threads;
}

}  // namespace qel::fft
