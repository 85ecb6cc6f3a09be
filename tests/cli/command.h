// SPDX-License-Identifier: BSD-3-Clause
// Runs the qel command.
#pragma once

#include <sys/wait.h>

#include <cstdio>
#include <string>

namespace qel::cli {

struct command_result {
  int exit_code;
  std::string output;
};

inline command_result run_program(const std::string& program, const std::string& arguments) {
  const std::string line = program + ' ' + arguments + " 2>&1";
  FILE* pipe = popen(line.c_str(), "r");
  command_result result{-1, {}};
  char buffer[4096];
  for (size_t got; (got = fread(buffer, 1, sizeof buffer, pipe)) > 0;) result.output.append(buffer, got);
  const int status = pclose(pipe);
  if (WIFEXITED(status)) result.exit_code = WEXITSTATUS(status);
  return result;
}

inline command_result run(const std::string& arguments) { return run_program(QEL_COMMAND, arguments); }

inline bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace qel::cli
