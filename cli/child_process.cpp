// SPDX-License-Identifier: BSD-3-Clause
#include "cli/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <stdexcept>

extern char** environ;

namespace qel::cli {
namespace {

std::vector<std::string> environment_with(const std::vector<std::pair<std::string, std::string>>& changes) {
  std::vector<std::string> all;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string text = *entry;
    const bool changed = std::any_of(changes.begin(), changes.end(), [&](const auto& change) {
      return text.starts_with(change.first + '=');
    });
    if (!changed) all.push_back(text);
  }
  for (const auto& [name, value] : changes)
    if (!value.empty()) all.push_back(name + '=' + value);
  return all;
}

std::vector<char*> pointers_to(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

child_process::child_process(const child_options& options) {
  // All that needs memory comes before the fork: other threads may hold locks then.
  std::vector<std::string> arguments = options.arguments, environment = environment_with(options.environment);
  const std::vector<char*> argument_list = pointers_to(arguments),
                           environment_list = pointers_to(environment);
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe can be made");
  const pid_t parent = getpid();
  pid_ = fork();
  if (pid_ < 0) {
    close(ends[0]);
    close(ends[1]);
    throw std::runtime_error("no process can be started");
  }
  if (pid_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(127);
    dup2(ends[1], STDOUT_FILENO);
    if (options.silent) {
      const int nowhere = open("/dev/null", O_WRONLY);
      if (nowhere >= 0) dup2(nowhere, STDERR_FILENO);
    }
    execve(argument_list[0], argument_list.data(), environment_list.data());
    _exit(127);
  }
  close(ends[1]);
  output_ = ends[0];
}

child_process::~child_process() {
  if (pid_ > 0) {
    kill();
    wait();
  }
  close(output_);
}

child_process::line_state child_process::read_line(std::string& line, clock::time_point deadline) {
  for (;;) {
    if (const size_t end = pending_.find('\n'); end != std::string::npos) {
      line = pending_.substr(0, end);
      pending_.erase(0, end + 1);
      return line_state::read;
    }
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - clock::now()).count();
    if (left <= 0) return line_state::late;
    pollfd waiting{output_, POLLIN, 0};
    const int ready = poll(&waiting, 1, static_cast<int>(std::min<long long>(left, 1000000)));
    if (ready == 0 || (ready < 0 && errno == EINTR)) continue;
    char buffer[4096];
    const ssize_t got = read(output_, buffer, sizeof buffer);
    if (got > 0) {
      pending_.append(buffer, static_cast<size_t>(got));
    } else if (got == 0 || errno != EINTR) {
      if (pending_.empty()) return line_state::ended;
      pending_ += '\n';
    }
  }
}

int child_process::wait() {
  if (pid_ <= 0) return outcome_;
  int status = 0;
  while (waitpid(pid_, &status, 0) < 0 && errno == EINTR) {}
  pid_ = -1;
  outcome_ = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  return outcome_;
}

void child_process::kill() {
  if (pid_ > 0) ::kill(pid_, SIGKILL);
}

std::string own_path() {
  std::string path(4096, '\0');
  const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
  if (length <= 0) throw std::runtime_error("/proc/self/exe can't be read");
  path.resize(static_cast<size_t>(length));
  return path;
}

}  // namespace qel::cli
