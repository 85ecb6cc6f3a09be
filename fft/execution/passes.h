// SPDX-License-Identifier: BSD-3-Clause
// Transforms of several dimensions, as passes over the lines of one node after the other.
#pragma once

#include <algorithm>

#include "fft/execution/lines.h"
#include "fft/planning/driver_rules.h"

namespace qel::fft {

/// The elements of one transform by node, and how they lie on both sides.
struct pass_shape {
  core_int dimension;
  core_int count[kMaxDimension];
  core_int in_stride[kMaxDimension], out_stride[kMaxDimension];
};

/// The part of a pass that one thread runs: lines with their index along a node in a range.
struct pass_range {
  int axis;
  core_int from, to;
};
inline pass_range whole_pass(const pass_shape& shape, int pass_node) {
  const int axis = parallel_axis(shape.dimension, pass_node);
  return {axis, 0, shape.count[axis]};
}

/// Walks the indices of some nodes with a counter for each, kept as running offsets.
class line_walk {
 public:
  void over(core_int count, core_int in_stride, core_int out_stride) {
    counters_[counter_count_++] = {count, 0, in_stride, out_stride};
  }
  /// The next place; false when all have been visited.
  bool next() {
    for (int i = 0; i < counter_count_; ++i) {
      counter& c = counters_[i];
      in += c.in_stride;
      out += c.out_stride;
      if (++c.index < c.count) return true;
      in -= c.in_stride * c.count;
      out -= c.out_stride * c.count;
      c.index = 0;
    }
    return false;
  }
  core_int in = 0, out = 0;

 private:
  struct counter {
    core_int count, index, in_stride, out_stride;
  };
  counter counters_[kMaxDimension];
  int counter_count_ = 0;
};

/// Calls body(in offset, out offset) for the indices of all nodes but the given ones, those of the range's
/// axis limited to the range, until one fails.
template <class Body>
int for_places(const pass_shape& shape, int without, int without_too, const pass_range& range, Body body) {
  line_walk walk;
  for (int i = 0; i < shape.dimension; ++i) {
    if (i == without || i == without_too) continue;
    const bool limited = i == range.axis;
    walk.over(limited ? range.to - range.from : shape.count[i], shape.in_stride[i], shape.out_stride[i]);
    if (!limited) continue;
    walk.in += range.from * shape.in_stride[i];
    walk.out += range.from * shape.out_stride[i];
  }
  int status = DFTI_NO_ERROR;
  do {
    status = body(walk.in, walk.out);
  } while (status == DFTI_NO_ERROR && walk.next());
  return status;
}

/// The pass over the strided lines of a node other than node 0, by blocks of neighbours along node 0. The
/// buffer holds width lines.
template <class R>
int run_strided_pass(const pass_shape& shape, int pass_node, const pass_range& range, const complex_of<R>* in,
                     complex_of<R>* out, core_int width, const dfti_node* node, direction way,
                     complex_of<R>* buffer, void* work) {
  if (node->length == 1) return DFTI_NO_ERROR;
  const bool columns = range.axis == 0;
  const core_int first = columns ? range.from : 0, count = (columns ? range.to : shape.count[0]) - first;
  return for_places(shape, 0, pass_node, range, [&](core_int in_offset, core_int out_offset) {
    return run_lines<R>(
        {in + in_offset + first * shape.in_stride[0], shape.in_stride[pass_node], shape.in_stride[0]},
        {out + out_offset + first * shape.out_stride[0], shape.out_stride[pass_node], shape.out_stride[0]},
        count, width, node, way, buffer, work);
  });
}

}  // namespace qel::fft
