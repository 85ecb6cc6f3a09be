// SPDX-License-Identifier: BSD-3-Clause
// How the full convolution of two dense sequences is computed: a pure function of their lengths.
#pragma once

#include "service/core_types.h"

namespace qel::conv {

enum class conv_method {
  kDirect,       ///< sums in one go
  kBlocks,       ///< sums, the longer sequence in blocks of block_length
  kTransform,    ///< one transform of 2^order
  kOverlapSave,  ///< transforms of 2^order over pieces of the longer sequence
};

struct conv_plan {
  conv_method method;
  int order = 0;              ///< of the transform
  core_int block_length = 0;  ///< kBlocks
  core_int step = 0;          ///< kOverlapSave: outputs per transform after the first
  const char* reason = "";
};

/// longer >= shorter >= 1.
conv_plan plan_conv(core_int longer, core_int shorter);

/// What a native processor type is asked for: `count` outputs, the first at `first`, every decimation-th.
struct native_conv_facts {
  core_int longer, shorter;
  core_int first, count, decimation;
  bool complex_numbers;
  bool only_sums;  ///< the task asks for them, or there are no transforms
  bool operator==(const native_conv_facts&) const = default;
  core_int last() const { return first + (count - 1) * decimation + 1; }
};

enum class native_conv_method {
  kSums,        ///< all outputs from the first to the last, by sums
  kSingleSums,  ///< only those that are wanted, each by itself
  kPieces,      ///< all outputs, `step` of them by each transform
};

struct native_conv_plan {
  native_conv_method method;
  core_int length = 0;  ///< of a transform
  core_int step = 0;
  core_int pieces = 0;
  const char* reason = "";
  bool weighed = false;  ///< costs of transforms were compared: the plan is worth keeping
};

/// longer >= shorter >= 1; the outputs exist. Sums wherever plan_conv has them, elsewhere what costs less.
native_conv_plan plan_native_conv(const native_conv_facts& facts);

/// A piece of outputs t from .. to - 1: the data that it takes, from `data_from` on, and whose cyclic
/// convolution over the transform's length has output t at place t - data_from. Other places may be wrong.
struct conv_piece {
  core_int from, to;
  core_int data_from, data_count;
};
conv_piece piece_of(const native_conv_facts& facts, const native_conv_plan& plan, core_int index);

}  // namespace qel::conv
