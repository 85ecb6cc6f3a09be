// SPDX-License-Identifier: BSD-3-Clause
#include "cli/progress.h"

#include <fmt/core.h>
#include <unistd.h>

#include <chrono>

namespace qel::cli {

progress_line::progress_line(std::string what) : what_(std::move(what)) {
  if (isatty(STDERR_FILENO)) thread_ = std::thread([this] { show(); });
}

progress_line::~progress_line() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    done_ = true;
  }
  finished_.notify_one();
  thread_.join();
}

void progress_line::show() {
  std::unique_lock lock(mutex_);
  bool shown = false;
  for (int seconds = 1; !finished_.wait_for(lock, std::chrono::seconds(1), [this] { return done_; });
       ++seconds) {
    const double part = part_.load(std::memory_order_relaxed);
    const std::string percent = part >= 0 ? fmt::format(" {:.0f} %", 100 * part) : "";
    fmt::print(stderr, "\r\033[K{} ...{} {} s", what_, percent, seconds);
    std::fflush(stderr);
    shown = true;
  }
  if (shown) fmt::print(stderr, "\r\033[K");
}

}  // namespace qel::cli
