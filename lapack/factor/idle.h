// SPDX-License-Identifier: BSD-3-Clause
// What a thread of a team does while no task is ready.
#pragma once

#include <chrono>
#include <thread>

namespace qel::lapack {

/// First gives way, then sleeps for moments, so that a thread with work gets the processor even where there
/// are fewer processors than threads.
class idle_thread {
 public:
  void wait() {
    constexpr int kPatience = 200;
    if (++times_ < kPatience) return std::this_thread::yield();
    std::this_thread::sleep_for(std::chrono::microseconds(20));
  }
  void busy() { times_ = 0; }

 private:
  int times_ = 0;
};

}  // namespace qel::lapack
