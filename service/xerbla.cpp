// SPDX-License-Identifier: BSD-3-Clause
// Reports of bad arguments: the installed error entry, the wording of each code, the default reporter.
#include <algorithm>
#include <atomic>
#include <cstring>

#include "service/last_error.h"
#include "service/serv.h"

namespace qel {
namespace {

constinit std::atomic<xerbla_entry> installed_entry{nullptr};

// Codes with a meaning of their own, and the rows of the catalogue that word the reports.
constexpr int kNoWorkMemory = 1000, kIncompatibleOptions = 1001;
constexpr int kBlankLine = 0, kBadParameter = 6, kCondition = 7, kNoMemory = 8, kIncompatible = 9;

}  // namespace

void serv_set_xerbla(xerbla_entry entry) { installed_entry.store(entry, std::memory_order_relaxed); }

void serv_xerbla(const char* name, const int* code, int name_length) {
  record_error(name, *code, name_length);
  const xerbla_entry entry = installed_entry.load(std::memory_order_relaxed);
  (entry != nullptr ? entry : serv_xerbla_default)(name, code, name_length);
}

report_wording wording_of(int code) {
  if (code == kNoWorkMemory) return {kNoMemory, false, 0};
  if (code == kIncompatibleOptions) return {kIncompatible, false, 0};
  if (code <= 0) return {kCondition, true, static_cast<int>(0u - static_cast<unsigned>(code))};
  return {kBadParameter, true, code};
}

void serv_xerbla_default(const char* name, const int* code, int name_length) {
  char text[kReportedNameLength + 1] = {};
  std::memcpy(text, name, static_cast<size_t>(std::clamp(name_length, 0, kReportedNameLength)));
  serv_message(0, kBlankLine, 0);
  const report_wording wording = wording_of(*code);
  if (wording.has_number) {
    serv_message(0, wording.row, 2, wording.number, text);
  } else {
    serv_message(0, wording.row, 1, text);
  }
}

}  // namespace qel
