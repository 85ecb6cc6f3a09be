// SPDX-License-Identifier: BSD-3-Clause
// What each thread was last told through the error entry, for callers that can't read standard output. The
// record is written where a report starts, before the error entry is called, so a program's own error entry
// changes nothing about it.
#pragma once

#include "qel/service.h"

namespace qel {

/// How a report reads: its row of the catalogue, and the number that the row prints before the name.
struct report_wording {
  int row;
  bool has_number;
  int number;
};
report_wording wording_of(int code);
/// The length of a report's routine name as it is printed: at most 20 characters.
inline constexpr int kReportedNameLength = 20;

/// Keeps a report in the calling thread's record.
void record_error(const char* name, int code, int name_length);
/// The calling thread's record; empty if it has none. Good until the thread ends, overwritten by each report.
const qel_error_record* last_error();
void clear_last_error();
/// Reports so far in the calling thread.
unsigned reports_told();

}  // namespace qel
