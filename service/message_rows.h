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

/// The row of that number, or null.
const message_row* find_message_row(int number);

}  // namespace qel
