// SPDX-License-Identifier: BSD-3-Clause
#include "entry/reports.h"

#include <algorithm>
#include <cstring>

#include "qel/service.h"
#include "service/last_error.h"

namespace qel::entry {
namespace {

constexpr int kNoMemoryCode = 1079;
constexpr int kNoMemoryInfo = -1023;
constexpr int kPaddedLength = 6;

void tell(const char* name, int least_length, int code) {
  char upper[kReportedNameLength + 1] = {};
  const int length = std::min(static_cast<int>(std::strlen(name)), kReportedNameLength);
  std::transform(name, name + length, upper,
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  const int padded = std::max(length, least_length);
  std::fill(upper + length, upper + padded, ' ');
  record_error(upper, code, padded);
  xerbla(upper, &code, padded);
}

}  // namespace

void report_bad_argument(const char* name, const int& position) { tell(name, kPaddedLength, position); }

void report_as_it_stands(const char* name, const int& position) {
  const int length = static_cast<int>(std::strlen(name));
  record_error(name, position, length);
  xerbla(name, &position, length);
}

void report_no_memory(const char* name) { tell(name, 0, kNoMemoryCode); }

int report_no_memory(const char* name, int* info) {
  report_no_memory(name);
  return *info = kNoMemoryInfo;
}

}  // namespace qel::entry
