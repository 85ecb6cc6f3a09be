// SPDX-License-Identifier: BSD-3-Clause
// The configuration parameters as one table: how each is passed, which values it takes, where it is kept and
// what setting it does to a commit.
#pragma once

#include "fft/descriptor/dfti_node.h"

namespace qel::fft {

enum class value_kind : int {
  kInteger,
  kScale,    ///< double when set, the descriptor's precision when read
  kLengths,  ///< ints in the order of the nodes
  kStrides,  ///< dimension + 1 ints: offset, then in the caller's order
  kName,
  kVersion,
  kMissing,  ///< not implemented: status 6 both ways
};

enum class set_rule : int { kRefused, kListed, kAny };

/// When setting takes a commit back.
enum class uncommit_rule : int {
  kNever,
  kFirst,  ///< before the value is looked at, so a refused value does it too
  kOnSuccess,
};

struct config_row {
  int number;
  value_kind kind;
  set_rule set;
  uncommit_rule uncommit;
  int accepted[4];         ///< of kListed; 0 fills up
  int unimplemented[2];    ///< of kListed: status 6
  int dfti_node::*narrow;  ///< the place of an integer: one of these two
  core_int dfti_node::*wide;
};

/// The row of a parameter; null if there is none.
const config_row* find_config_row(int parameter);

/// The status of setting an integer parameter to value in a descriptor of that domain.
int judge_setting(const config_row& row, int value, int domain);

}  // namespace qel::fft
