// SPDX-License-Identifier: BSD-3-Clause
// Traces of the iterative parts, in the number forms of Fortran's edit descriptors.
#pragma once

namespace qel::pardiso {

/// Width of the text of an e12.3 number and room for its terminator.
inline constexpr int kNumberText = 13;
/// e12.3: a mantissa 0.1 <= m < 1 with three digits and an exponent of two (three without the letter).
const char* format_e12_3(double value, char (&text)[kNumberText]);

/// "what step number number" with the step in the form f3.0 or f4.0 (width 3 or 4; 0: none) and middle, if
/// there is one, before the second number. count: how many numbers, 1 or 2.
struct trace_line {
  const char* what;
  int step_width = 0;
  int step = 0;
  const char* before_first = "";
  double first = 0;
  const char* before_second = "";
  int numbers = 1;
  double second = 0;
};
/// Prints it as a line on standard output.
void tell_trace(const trace_line& line);

}  // namespace qel::pardiso
