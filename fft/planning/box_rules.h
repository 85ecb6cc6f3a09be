// SPDX-License-Identifier: BSD-3-Clause
// How native levels walk over several dimensions: pure decisions on the shape.
#pragma once

#include "fft/planning/driver_rules.h"

namespace qel::fft {

/// Lengths and strides by node.
struct box_shape {
  int dimension;
  core_int count[kMaxDimension];
  core_int stride[kMaxDimension];
};

/// The indices of the nodes below one, as few axes: axes whose elements follow each other without a gap are
/// one.
struct column_axes {
  int count;
  core_int extent[kMaxDimension];
  core_int stride[kMaxDimension];
};
column_axes columns_below(const box_shape& shape, int node);

/// Whether the spectra of the first and the last column of real data, of so many columns, are computed as one
/// column: the rest fill whole blocks then.
bool joins_edge_columns(core_int length, core_int block);

/// The threads that pay for a call of so many transforms of so many elements: below the bound starting them
/// costs more than they gain.
int native_threads(core_int elements, core_int transforms, bool real, int threads);

}  // namespace qel::fft
