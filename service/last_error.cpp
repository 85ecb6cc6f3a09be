// SPDX-License-Identifier: BSD-3-Clause
#include "service/last_error.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "service/message_rows.h"

namespace qel {
namespace {

constexpr int kLastPosition = 999;  // codes above have a meaning of their own

constinit thread_local qel_error_record record = {};
constinit thread_local unsigned told = 0;

}  // namespace

void record_error(const char* name, int code, int name_length) {
  char printed[kReportedNameLength + 1] = {};
  std::memcpy(printed, name, static_cast<size_t>(std::clamp(name_length, 0, kReportedNameLength)));
  const report_wording wording = wording_of(code);
  const char* format = find_message_row(wording.row)->text;
  if (wording.has_number) {
    std::snprintf(record.text, sizeof record.text, format, wording.number, printed);
  } else {
    std::snprintf(record.text, sizeof record.text, format, printed);
  }
  size_t length = std::strlen(printed);
  while (length > 0 && printed[length - 1] == ' ') printed[--length] = '\0';
  static_assert(sizeof printed <= sizeof record.routine);
  std::memcpy(record.routine, printed, sizeof printed);
  record.code = code;
  record.argument = code >= 1 && code <= kLastPosition ? code : 0;
  ++told;
}

const qel_error_record* last_error() { return &record; }
void clear_last_error() { record = {}; }
unsigned reports_told() { return told; }

}  // namespace qel
