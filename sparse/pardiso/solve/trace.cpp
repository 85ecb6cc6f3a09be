// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/solve/trace.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "sparse/pardiso/report.h"

namespace qel::pardiso {

const char* format_e12_3(double value, char (&text)[kNumberText]) {
  char number[32];
  if (std::isfinite(value)) {
    // printf's form has one digit before the point; the same three digits stand behind it here.
    char digits[32];
    std::snprintf(digits, sizeof digits, "%.2e", std::fabs(value));
    const int exponent = value == 0 ? 0 : std::atoi(std::strchr(digits, 'e') + 1) + 1;
    const bool long_exponent = std::abs(exponent) > 99;
    std::snprintf(number, sizeof number, "%s0.%c%c%c%s%c%0*d", std::signbit(value) ? "-" : "", digits[0],
                  digits[2], digits[3], long_exponent ? "" : "E", exponent < 0 ? '-' : '+',
                  long_exponent ? 3 : 2, std::abs(exponent));
  } else {
    std::strcpy(number, std::isnan(value) ? "NaN" : value > 0 ? "Inf" : "-Inf");
  }
  constexpr size_t kWidth = kNumberText - 1;
  const size_t length = std::min(std::strlen(number), kWidth);
  std::memset(text, ' ', kWidth);
  std::memcpy(text + kWidth - length, number, length);
  text[kWidth] = '\0';
  return text;
}

void tell_trace(const trace_line& line) {
  char step[16] = "", first[kNumberText], second[kNumberText] = "";
  if (line.step_width > 0) {
    char number[13];
    std::snprintf(number, sizeof number, "%d.", line.step);
    std::snprintf(step, sizeof step, "%*s", line.step_width, number);
  }
  if (line.numbers > 1) format_e12_3(line.second, second);
  char text[160];
  std::snprintf(text, sizeof text, "%s%s%s%s%s%s", line.what, step, line.before_first,
                format_e12_3(line.first, first), line.before_second, second);
  tell(solver_row::plain_line, text);
}

}  // namespace qel::pardiso
