// SPDX-License-Identifier: BSD-3-Clause
// Reports of bad arguments: the installed error entry and the default reporter.
#include <algorithm>
#include <atomic>
#include <cstring>

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
  const xerbla_entry entry = installed_entry.load(std::memory_order_relaxed);
  (entry != nullptr ? entry : serv_xerbla_default)(name, code, name_length);
}

void serv_xerbla_default(const char* name, const int* code, int name_length) {
  char text[21] = {};
  std::memcpy(text, name, static_cast<size_t>(std::clamp(name_length, 0, 20)));
  serv_message(0, kBlankLine, 0);
  if (*code == kNoWorkMemory) {
    serv_message(0, kNoMemory, 1, text);
  } else if (*code == kIncompatibleOptions) {
    serv_message(0, kIncompatible, 1, text);
  } else if (*code <= 0) {
    serv_message(0, kCondition, 2, static_cast<int>(0u - static_cast<unsigned>(*code)), text);
  } else {
    serv_message(0, kBadParameter, 2, *code, text);
  }
}

}  // namespace qel
