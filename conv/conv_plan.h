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

}  // namespace qel::conv
