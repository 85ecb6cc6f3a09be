// SPDX-License-Identifier: BSD-3-Clause
// The message catalogue: one row per line. Families add their rows to the one table in message_rows.cpp.
#pragma once

namespace qel {

struct message_row {
  int number;        ///< the message's number
  int severity;      ///< 1, 2 or 4
  const char* text;  ///< format of its arguments
};

/// Number of the row of transform status 0; those of the other statuses follow.
inline constexpr int kDftiMessages = 40;
/// Number of the row of vector math's status -1; those of -2, 1 to 4 and of any other status follow. Then the
/// rows of the operands and results a, b, r, y, z, and the one for a state that could not be made.
inline constexpr int kVmlMessages = 735, kVmlValueMessages = 742, kVmlNoMemoryMessage = 760;

/// Number of the first row of the direct sparse solver; solver_row names them all.
inline constexpr int kSolverMessages = 100;
enum class solver_row : int {
  before_first = kSolverMessages - 1,
#define SOLVER_ROW(name, text) name,
#include "service/solver_messages.inl.h"
#undef SOLVER_ROW
  after_last
};

/// The row of that number, or null.
const message_row* find_message_row(int number);

}  // namespace qel
