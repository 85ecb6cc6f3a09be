// SPDX-License-Identifier: BSD-3-Clause
#include "service/fork_guard.h"

#include <pthread.h>

#include <atomic>

#include "service/memory_lock.h"
#include "service/spin_lock.h"
#include "service/threads.h"

namespace qel {
namespace {

constinit std::atomic<bool> registered{false};
constinit std::atomic<bool> forked_child{false};

void before_fork() {
  threads_lock().lock();
  memory_lock().lock();
}
void unlock_all() {
  memory_lock().unlock();
  threads_lock().unlock();
}
void in_child() {
  unlock_all();
  forked_child.store(true, std::memory_order_relaxed);
}

}  // namespace

void guard_forks() {
  if (registered.load(std::memory_order_relaxed) || registered.exchange(true)) return;
  pthread_atfork(before_fork, unlock_all, in_child);
}

bool in_forked_child() { return forked_child.load(std::memory_order_relaxed); }

}  // namespace qel
