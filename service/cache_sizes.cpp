// SPDX-License-Identifier: BSD-3-Clause
// The cache record of this process, built once.
#include <atomic>
#include <cstring>

#include "service/cpu_facts.h"
#include "service/serv.h"

namespace qel {
namespace {

// Written by whoever comes first; all writers store the same numbers, and built is set after them.
constinit std::atomic<int> record[5];
constinit std::atomic<bool> built{false};

}  // namespace

int serv_cache_sizes(int out[5]) {
  if (!built.load(std::memory_order_acquire)) {
    int found[5];
    walk_cache_leaves(current_cpuid(), found);
    for (int i = 0; i < 5; ++i) record[i].store(found[i], std::memory_order_relaxed);
    built.store(true, std::memory_order_release);
  }
  for (int i = 0; i < 5; ++i) out[i] = record[i].load(std::memory_order_relaxed);
  return out[1];
}

}  // namespace qel
