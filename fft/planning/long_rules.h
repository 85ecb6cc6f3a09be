// SPDX-License-Identifier: BSD-3-Clause
// Which long lines run on several threads, and how they are cut: pure decisions on the configuration.
#pragma once

#include "service/core_types.h"

namespace qel::fft {

struct long_facts {
  core_int length;
  core_int transforms;
  int complex_storage;
  int ordering;
  int placement;
  core_int input_stride, output_stride;
  int threads;       ///< that the domain allows
  int user_threads;  ///< of the application
  bool dynamic;      ///< the count of threads may be lowered
  bool native;       ///< kernels of a native level
  bool single;       ///< precision
};

enum class long_tier : int {
  kNone,    ///< one thread
  kSplit,   ///< rows times columns, any number of threads
  kFixed,   ///< a power of two out of place, in a fixed number of parts
  kShared,  ///< native: the plan of one thread, its steps shared out
};
struct long_choice {
  long_tier tier;
  core_int rows, columns;  ///< rows is the smaller
  int parts;               ///< of kFixed and kShared
  const char* reason;
};
long_choice choose_long_tier(const long_facts& facts);

struct line_split {
  core_int rows, columns;
};
/// Two factors of length, as near to each other as a walk over its primes finds; rows 1: there are none.
line_split dfti_plan_split(core_int length);

/// How the columns of a split line are dealt to threads.
struct column_groups {
  int count;
  core_int width;  ///< of all groups but the last, which takes the rest
};
column_groups deal_columns(core_int columns, int threads);

}  // namespace qel::fft
