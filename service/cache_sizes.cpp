// SPDX-License-Identifier: BSD-3-Clause
// The cache records of this process, each built once.
#include <atomic>
#include <cstring>

#include "service/cpu_facts.h"
#include "service/serv.h"

namespace qel {
namespace {

// Written by whoever comes first; all writers store the same numbers, and built is set after them.
struct cache_record {
  std::atomic<int> number[5];
  std::atomic<bool> built;
};
constinit cache_record common{}, native{};

template <class Walk>
int look_up(cache_record& record, int out[5], const Walk& walk) {
  if (!record.built.load(std::memory_order_acquire)) {
    int found[5];
    walk(found);
    for (int i = 0; i < 5; ++i) record.number[i].store(found[i], std::memory_order_relaxed);
    record.built.store(true, std::memory_order_release);
  }
  for (int i = 0; i < 5; ++i) out[i] = record.number[i].load(std::memory_order_relaxed);
  return out[1];
}

}  // namespace

int serv_cache_sizes(int out[5]) {
  return look_up(common, out, [](int* found) { walk_cache_leaves(current_cpuid(), kCacheLeaf, found); });
}

int serv_native_cache_sizes(int out[5]) {
  return look_up(native, out, [](int* found) {
    const cpuid_reader cpuid = current_cpuid();
    walk_cache_leaves(cpuid, kCacheLeaf, found);
    if (found[0] == 0 && cpuid(0x80000000, 0).eax >= kAmdCacheLeaf)
      walk_cache_leaves(cpuid, kAmdCacheLeaf, found);
  });
}

}  // namespace qel
