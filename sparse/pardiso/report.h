// SPDX-License-Identifier: BSD-3-Clause
// What the solver prints on standard output, through the message catalogue.
#pragma once

#include "service/message_rows.h"
#include "service/serv.h"
#include "sparse/pardiso/call.h"
#include "sparse/pardiso/record.h"

namespace qel::pardiso {

/// Prints a row; a number outside the solver's rows is told as such.
template <class... A>
void tell(solver_row row, A... arguments) {
  const int number = static_cast<int>(row);
  if (row <= solver_row::before_first || row >= solver_row::after_last) {
    serv_message(0, static_cast<int>(solver_row::plain_line), 1,
                 serv_message_text(static_cast<int>(solver_row::unknown_message), 1, number));
    return;
  }
  serv_message(0, number, static_cast<int>(sizeof...(A)), arguments...);
}

/// The class line of a failure and its details. account: of the handle, or of the attempt to make one.
void report_error(const solver_call& call, const stage_status& failure, const basic_record* record,
                  const memory_account& account);

/// After a good call: banner, times, sizes, factors.
void report_statistics(const solver_call& call, const basic_record& record);
/// After a release: of one factorisation (phase 0), or of deleted ones.
void report_clean_up(const solver_call& call, int mtype, int deleted);

}  // namespace qel::pardiso
