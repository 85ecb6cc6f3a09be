// SPDX-License-Identifier: BSD-3-Clause
// The one lock of the service: a compare-and-swap of 0 to 1 in a loop, released by a plain store. With more
// threads than processors the holder may not be running, so a waiter lets others run now and then.
#pragma once

#include <sched.h>

#include <atomic>

namespace qel {

class spin_lock {
 public:
  constexpr spin_lock() = default;
  void lock() {
    int expected = 0;
    for (int tries = 1;
         !word_.compare_exchange_weak(expected, 1, std::memory_order_acquire, std::memory_order_relaxed);
         ++tries) {
      expected = 0;
      if (tries % kTriesBetweenYields == 0) sched_yield();
    }
  }
  void unlock() { word_.store(0, std::memory_order_release); }

 private:
  static constexpr int kTriesBetweenYields = 128;
  std::atomic<int> word_{0};
};

/// Holds a spin_lock for a scope.
class spin_guard {
 public:
  explicit spin_guard(spin_lock& lock) : lock_(lock) { lock_.lock(); }
  ~spin_guard() { lock_.unlock(); }
  spin_guard(const spin_guard&) = delete;
  spin_guard& operator=(const spin_guard&) = delete;

 private:
  spin_lock& lock_;
};

}  // namespace qel
