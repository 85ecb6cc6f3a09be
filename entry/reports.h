// SPDX-License-Identifier: BSD-3-Clause
// What the entries themselves report, by the entry's name as it is called: in upper case, kept in the
// thread's record and told to the public error entry.
#pragma once

namespace qel::entry {

/// A bad argument. Names of fewer than six letters are padded with blanks. By reference: a jump in place of
/// the call would make the entries copy their stack arguments.
void report_bad_argument(const char* name, const int& position);
/// The same under a name that is neither changed nor padded.
void report_as_it_stands(const char* name, const int& position);
/// No memory for the copy of an integer array; stores and returns the info for it. The name isn't padded.
int report_no_memory(const char* name, int* info);
/// The same for routines without info.
void report_no_memory(const char* name);

}  // namespace qel::entry
