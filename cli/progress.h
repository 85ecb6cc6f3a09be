// SPDX-License-Identifier: BSD-3-Clause
// One progress line on a terminal for work that takes more than a second; silent elsewhere.
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace qel::cli {

/// Shows "what ... 3 s" (and a percentage, if given) on standard error, from the second second on, until it
/// goes out of scope; then wipes the line.
class progress_line {
 public:
  explicit progress_line(std::string what);
  ~progress_line();
  progress_line(const progress_line&) = delete;
  progress_line& operator=(const progress_line&) = delete;
  /// Part of the work that is done, 0..1.
  void update(double part) { part_.store(part, std::memory_order_relaxed); }

 private:
  void show();
  std::string what_;
  std::atomic<double> part_{-1};
  std::mutex mutex_;
  std::condition_variable finished_;
  bool done_ = false;
  std::thread thread_;
};

}  // namespace qel::cli
