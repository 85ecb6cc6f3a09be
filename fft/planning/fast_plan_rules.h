// SPDX-License-Identifier: BSD-3-Clause
// Which short lines need no plan of the general kind: pure decisions on the configuration.
#pragma once

#include "service/core_types.h"

namespace qel::fft {

struct line_facts {
  core_int length;
  core_int transforms;
  int complex_storage;
  int placement;
  core_int input_stride, output_stride;
  core_int input_offset, output_offset;
  double forward_scale, backward_scale;  ///< in the descriptor's precision
  bool single;
  bool native;  ///< a native level, whose passes beat the longest straight-line kernel
};

/// One line of interleaved numbers at the start of its array.
bool is_plain_line(const line_facts& facts);
/// Whether a straight-line kernel without scale takes the line.
bool takes_straight_kernel(const line_facts& facts);
/// The flag with which a small plan takes the line, its scales folded in, unless it turns out to need too
/// much work; 0 if none can.
int small_plan_flag(const line_facts& facts);
/// Whether a small plan comes to one kernel without scale, which is then called at once.
bool is_straight_small_plan(const line_facts& facts);

inline constexpr int kSmallPlanWorkspace = 2049;  ///< a small plan needs less than this

}  // namespace qel::fft
