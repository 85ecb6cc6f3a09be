// SPDX-License-Identifier: BSD-3-Clause
// The one lock of the service: a compare-and-swap in a loop. With more
// threads than processors the holder may not be running, so a waiter lets others run now and then.
#pragma once

#include <sched.h>

#include <atomic>

namespace qel {

class spin_lock {
 public:
  constexpr spin_lock() = default;
  void lock() {
    for (int tries = 1;; ++tries) {
      int found = kUnlocked;
      if (word_.compare_exchange_weak(found, kLocked, std::memory_order_acquire, std::memory_order_relaxed))
        return;
      if (found == kLocked)
        word_.compare_exchange_weak(found, kWaitedFor, std::memory_order_relaxed, std::memory_order_relaxed);
      if (tries % kTriesBetweenYields == 0) sched_yield();
    }
  }
  /// Who takes the lock again and again lets the others run while it is free.
  void unlock() {
    if (word_.exchange(kUnlocked, std::memory_order_release) == kWaitedFor) sched_yield();
  }

 private:
  enum states : int { kUnlocked = 0, kLocked = 1, kWaitedFor = 2 };
  static constexpr int kTriesBetweenYields = 128;
  std::atomic<int> word_{kUnlocked};
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
