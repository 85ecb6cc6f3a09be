// SPDX-License-Identifier: BSD-3-Clause
// Runs a piece of a test in a process of its own, for what a process decides only once.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace qel::test {

struct child_result {
  int exit_status;     ///< -1 if a signal ended the child
  std::string output;  ///< its standard output
};

/// Runs body() in a forked child, which exits with the body's int result.
template <class Body>
child_result in_child(Body body) {
  int pipe_ends[2];
  if (pipe(pipe_ends) != 0) return {-1, "pipe failed"};
  std::fflush(nullptr);
  const pid_t pid = fork();
  if (pid == 0) {
    dup2(pipe_ends[1], STDOUT_FILENO);
    close(pipe_ends[0]);
    const int status = body();
    std::fflush(nullptr);
    _exit(status);
  }
  close(pipe_ends[1]);
  child_result result{-1, {}};
  char buffer[4096];
  for (ssize_t got; (got = read(pipe_ends[0], buffer, sizeof buffer)) > 0;) {
    result.output.append(buffer, static_cast<size_t>(got));
  }
  close(pipe_ends[0]);
  int status = 0;
  waitpid(pid, &status, 0);
  if (WIFEXITED(status)) result.exit_status = WEXITSTATUS(status);
  return result;
}

}  // namespace qel::test
