// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/dss/reporter.h"

#include <cstdlib>

#include "service/message_rows.h"
#include "service/serv.h"

namespace qel::dss {
namespace {

using row = solver_row;

/// A code as the reporter understands it.
struct reading {
  const char* facility;
  severity level;
  int status_number;
  row message;
};

const char* text_of(row message) { return serv_message_text(static_cast<int>(message), 0); }
row row_after(row first, int steps) { return static_cast<row>(static_cast<int>(first) + steps); }

constexpr int kUtilFacility = 1, kDssFacility = 2;
enum util_status : int { bad_facility = 1, bad_number = 2, last_util = 5 };

reading util_reading(int status_number) {
  return {"UTIL", severity_fatal, status_number, row_after(row::util_facility, status_number - 1)};
}

reading read_code(int code) {
  const int facility = code & 0xFF, number = code >> 8;
  if (facility == kUtilFacility && number >= bad_facility && number <= last_util) return util_reading(number);
  if (facility != kDssFacility) return util_reading(bad_facility);
  if (number > success || number < invalid_factor) return util_reading(bad_number);
  return {"DSS", severity_of(number), number, row_after(row::dss_success, -number)};
}

}  // namespace

severity severity_of(int status_number) {
  if (status_number == success) return severity_success;
  return status_number == invalid_factor ? severity_fatal : severity_error;
}

int report(int code, const levels& current) {
  const reading read = read_code(code);
  if (read.level >= current.message) {
    serv_message(0, static_cast<int>(row::dss_report), 3, read.facility,
                 text_of(row_after(row::severity_success, read.level)), text_of(read.message));
  }
  if (read.level >= current.termination) std::exit(read.status_number);
  return read.status_number;
}

void fault_list::add_if(bool wrong, int status_number) {
  if (wrong) statuses_[count_++] = status_number;
}

int fault_list::report_all() const {
  int worst = success;
  for (int k = 0; k < count_; ++k) {
    const int reported = report(code_of(statuses_[k]), levels_);
    if (severity_of(reported) > severity_of(worst)) worst = reported;
  }
  return worst;
}

}  // namespace qel::dss
