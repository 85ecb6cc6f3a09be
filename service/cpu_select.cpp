// SPDX-License-Identifier: BSD-3-Clause
// The processor type and level of this process, each decided on first use and kept. A race of first callers
// repeats the decision with the same outcome, so plain relaxed atomics do.
#include <atomic>
#include <cstdio>
#include <cstdlib>

#include "service/cpu_facts.h"
#include "service/dispatch.h"
#include "service/environment.h"
#include "service/serv.h"

namespace qel {
namespace {

constexpr int kUndecided = -1;
constinit std::atomic<int> type_cache{kUndecided};
constinit std::atomic<int> level_cache{kUndecided};
constinit std::atomic<int> avx_flag{kUndecided};

constinit std::atomic<int> native_flag{kUndecided};

/// Gives an undecided flag a value and returns what it holds.
int settle(std::atomic<int>& flag, int value) {
  int undecided = kUndecided;
  flag.compare_exchange_strong(undecided, value, std::memory_order_relaxed);
  return flag.load(std::memory_order_relaxed);
}

constexpr int kAllNative = static_cast<int>(native_set::avx512);

native_set native_limit() {
  int known = native_flag.load(std::memory_order_relaxed);
  if (known == kUndecided) {
    char value[32];
    const int request = native_request(read_environment("QEL_NATIVE", value, sizeof value) ? value : nullptr);
    known = settle(native_flag, request >= 0 ? request : native_by_default() ? kAllNative : 0);
  }
  return static_cast<native_set>(known);
}

}  // namespace

int serv_cpu_type() {
  const int known = type_cache.load(std::memory_order_relaxed);
  if (known != kUndecided) return known;
  char value[32];
  const bool given = read_environment("QEL_DEBUG_VECTOR_TYPE", value, sizeof value);
  int type = cpu_type_override(given ? value : nullptr);
  if (type == -1) type = choose_cpu_type(read_cpu_facts(current_cpuid()), native_limit());
  type_cache.store(type, std::memory_order_relaxed);
  return type;
}

int serv_cpu_level() {
  const int known = level_cache.load(std::memory_order_relaxed);
  if (known >= 0) return known;
  char value[32];
  const bool given = read_environment("QEL_DEBUG_CPU_TYPE", value, sizeof value);
  const int level_override = cpu_level_override(given ? value : nullptr);
  settle(avx_flag, 0);
  if (level_override == 4) avx_flag.store(1, std::memory_order_relaxed);
  const bool avx_allowed = avx_flag.load(std::memory_order_relaxed) == 1;
  const int level =
      choose_cpu_level(read_cpu_facts(current_cpuid()), level_override, avx_allowed, native_limit());
  level_cache.store(level, std::memory_order_relaxed);
  return level;
}

int serv_cpu_level_enable_avx(int flag) { return flag == 1 && settle(avx_flag, 1) == 1 ? 1 : 0; }
int serv_cpu_level_avx_enabled() { return settle(avx_flag, 0); }
int serv_enable_native(int flag) { return flag == 1 && settle(native_flag, kAllNative) > 0 ? 1 : 0; }

[[noreturn]] void end_without_kernel(const char* variable, int value) {
  std::printf("QEL: no kernel for the value %d that %s forces\n", value, variable);
  std::fflush(nullptr);
  std::exit(1);
}

}  // namespace qel
