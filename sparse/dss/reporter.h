// SPDX-License-Identifier: BSD-3-Clause
// Statuses of the simpler interface: reported on standard output from one severity on, the end of the process
// from another on.
#pragma once

namespace qel::dss {

enum status : int {
  success = 0,
  zero_pivot = -1,
  out_of_memory = -2,
  failure = -3,
  rows_below_one = -4,
  columns_below_one = -5,
  too_few_nonzeros = -6,
  too_many_nonzeros = -7,
  not_square = -8,
  invalid_sequence = -9,
  invalid_option = -10,
  options_conflict = -11,
  invalid_message_level = -12,
  invalid_termination_level = -13,
  invalid_structure = -14,
  invalid_reorder = -15,
  invalid_factor = -16,
};
// Refusals of statistics. They name no catalogue, so that the reporter takes them for a bad facility code.
inline constexpr int kNotIndefinite = -17, kWrongState = -18, kUnknownKey = -19;

enum severity : int {
  severity_success,
  severity_debug,
  severity_info,
  severity_warning,
  severity_error,
  severity_fatal
};
inline constexpr int kDefaultLevel = severity_error;

struct levels {
  int message = kDefaultLevel, termination = kDefaultLevel;
};

/// The code of a status in the reporter's calls.
constexpr int code_of(int status_number) { return status_number * 256 + 2; }
/// Severity of a status.
severity severity_of(int status_number);

/// Prints and ends as the levels say; else returns the status of the code.
int report(int code, const levels& current);

/// Several faults of one call: each is reported; the status is that of the most severe, the first among
/// equals.
class fault_list {
 public:
  explicit fault_list(const levels& current) : levels_(current) {}
  void add_if(bool wrong, int status_number);
  /// Reports all. Success is not reported.
  int report_all() const;
  bool empty() const { return count_ == 0; }

 private:
  levels levels_;
  int statuses_[17] = {};
  int count_ = 0;
};

}  // namespace qel::dss
