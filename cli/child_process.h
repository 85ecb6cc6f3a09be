// SPDX-License-Identifier: BSD-3-Clause
// A program run beside this one, whose standard output is read line by line. It never outlives this process,
// however that ends.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>
#include <utility>
#include <vector>

namespace qel::cli {

struct child_options {
  std::vector<std::string> arguments;  ///< the program's path first
  /// Set on top of this process's environment; an empty value takes the variable away.
  std::vector<std::pair<std::string, std::string>> environment;
  bool silent = false;  ///< its standard error goes nowhere
};

class child_process {
 public:
  /// Throws std::runtime_error if it can't be started.
  explicit child_process(const child_options& options);
  ~child_process();
  child_process(const child_process&) = delete;
  child_process& operator=(const child_process&) = delete;

  enum class line_state { read, ended, late };
  using clock = std::chrono::steady_clock;
  /// The next line without its end, or what kept it from coming.
  line_state read_line(std::string& line, clock::time_point deadline);
  /// Exit code, or minus the number of the signal that ended it; after the last line.
  int wait();
  void kill();

 private:
  pid_t pid_ = -1;
  int output_ = -1, outcome_ = 0;
  std::string pending_;
};

/// The path of this program.
std::string own_path();

}  // namespace qel::cli
