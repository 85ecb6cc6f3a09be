// SPDX-License-Identifier: BSD-3-Clause
#include "blas/level3/dense_facts.h"

#include <atomic>

#include "service/cpu_facts.h"
#include "service/serv.h"

namespace qel {
namespace {

constexpr int kSmallSecondCache = 0x300000, kSmallThirdCache = 0x400000;

// CPUID may cost microseconds under a hypervisor. Every writer stores the same; the flag is stored last.
dense_processor known;
std::atomic<int> known_state{0};  // 0 unknown, 1 being written, 2 known

dense_processor ask() {
  const cpuid_reader cpuid = current_cpuid();
  dense_processor processor = processor_from(serv_cpu_level(), cpuid(0, 0), cpuid(1, 0));
  serv_cache_sizes(processor.caches);
  return processor;
}

}  // namespace

dense_processor processor_from(int level, const cpuid_answer& vendor, const cpuid_answer& features) {
  // "AuthenticAMD", base family 0xF, extended family 1.
  const bool amd = vendor.ebx == 0x68747541 && vendor.edx == 0x69746e65 && vendor.ecx == 0x444d4163;
  dense_processor processor;
  processor.level = level;
  processor.sse41 = (features.ecx >> 19 & 1) != 0;
  processor.family_10h = amd && (features.eax >> 8 & 0xF) == 0xF && (features.eax >> 20 & 0xFF) == 1;
  return processor;
}

bool has_small_second_cache(const dense_processor& processor) {
  return processor.caches[0] != 0 && processor.caches[2] <= kSmallSecondCache;
}
bool has_small_third_cache(const dense_processor& processor) {
  return processor.caches[0] != 0 && processor.caches[3] <= kSmallThirdCache;
}

const dense_processor& this_processor() {
  if (known_state.load(std::memory_order_acquire) == 2) return known;
  // While another thread writes, this one keeps an answer of its own: nobody waits, so a fork at any moment
  // leaves a child that works.
  thread_local dense_processor own;
  own = ask();
  int unknown = 0;
  if (!known_state.compare_exchange_strong(unknown, 1)) return own;
  known = own;
  known_state.store(2, std::memory_order_release);
  return known;
}

}  // namespace qel
