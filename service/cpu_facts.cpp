// SPDX-License-Identifier: BSD-3-Clause
#include "service/cpu_facts.h"

#include <cpuid.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>

namespace qel {
namespace {

// Bits of leaf 1 ECX. The AVX test takes either OSXSAVE or AVX.
constexpr uint32_t kSse3 = 1u << 0, kSsse3 = 1u << 9, kSse41 = 1u << 19, kSse42 = 1u << 20;
constexpr uint32_t kAvxMask = 0x18000000;
constexpr uint32_t kFma = 1u << 12, kOsxsave = 1u << 27, kAvx = 1u << 28;
// Bits of leaf 7 EBX.
constexpr uint32_t kAvx2 = 1u << 5, kAvx512F = 1u << 16, kAvx512Dq = 1u << 17, kAvx512Bw = 1u << 30,
                   kAvx512Vl = 1u << 31;
// Register sets in XCR0: SSE and AVX; mask, upper halves and upper sixteen of AVX-512.
constexpr uint64_t kAvxState = 0x06, kAvx512State = 0xe6;

cpuid_answer ask_processor(uint32_t leaf, uint32_t subleaf) {
  cpuid_answer answer{};
  if (leaf > static_cast<uint32_t>(__get_cpuid_max(leaf & 0x80000000u, nullptr))) return answer;
  __cpuid_count(leaf, subleaf, answer.eax, answer.ebx, answer.ecx, answer.edx);
  return answer;
}

uint64_t ask_xcr0() {
  uint32_t low, high;
  __asm__("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
  return static_cast<uint64_t>(high) << 32 | low;
}

constinit std::atomic<cpuid_reader> reader_in_force{ask_processor};
constinit std::atomic<xcr0_reader> xcr0_in_force{ask_xcr0};

constexpr bool has_all(uint64_t bits, uint64_t wanted) { return (bits & wanted) == wanted; }

}  // namespace

cpuid_reader current_cpuid() { return reader_in_force.load(std::memory_order_acquire); }

cpuid_reader replace_cpuid(cpuid_reader reader) {
  return reader_in_force.exchange(reader != nullptr ? reader : ask_processor, std::memory_order_acq_rel);
}

xcr0_reader current_xcr0() { return xcr0_in_force.load(std::memory_order_acquire); }

xcr0_reader replace_xcr0(xcr0_reader reader) {
  return xcr0_in_force.exchange(reader != nullptr ? reader : ask_xcr0, std::memory_order_acq_rel);
}

cpu_facts read_cpu_facts(cpuid_reader cpuid) {
  cpu_facts facts{};
  const cpuid_answer identity = cpuid(0, 0);
  std::memcpy(facts.vendor, &identity.ebx, 4);
  std::memcpy(facts.vendor + 4, &identity.edx, 4);
  std::memcpy(facts.vendor + 8, &identity.ecx, 4);
  const cpuid_answer features = cpuid(1, 0);
  facts.features_c = features.ecx;
  facts.features_d = features.edx;
  if (identity.eax >= 7) facts.features_7 = cpuid(7, 0).ebx;
  if (facts.features_c & kOsxsave) facts.xcr0 = current_xcr0()();
  return facts;
}

bool is_selected_vendor(const cpu_facts& facts) { return std::strcmp(facts.vendor, "GenuineIntel") == 0; }

int natural_cpu_type(const cpu_facts& facts) {
  if (!is_selected_vendor(facts)) return 0;
  if (facts.features_c & kAvxMask) return 5;
  if (facts.features_c & kSse42) return 4;
  if (facts.features_c & kSse41) return 3;
  if (facts.features_c & kSsse3) return 2;
  return 1;
}

int cpu_type_override(const char* value) {
  if (value == nullptr) return -1;
  const int distance = static_cast<signed char>(value[0]) - '0';
  return distance > 5 ? -1 : distance;
}

int cpu_level_override(const char* value) {
  if (value == nullptr) return kNoLevelOverride;
  const int number = std::atoi(value);
  if (number >= 1 && number <= 4) return number;
  return std::strcmp(value, "0") == 0 ? 0 : kNoLevelOverride;
}

native_set natural_native_set(const cpu_facts& facts) {
  if (!has_all(facts.features_c, kAvx | kFma | kOsxsave) || !has_all(facts.features_7, kAvx2) ||
      !has_all(facts.xcr0, kAvxState)) {
    return native_set::none;
  }
  const bool avx512 = has_all(facts.features_7, kAvx512F | kAvx512Dq | kAvx512Bw | kAvx512Vl) &&
                      has_all(facts.xcr0, kAvx512State);
  return avx512 ? native_set::avx512 : native_set::avx2;
}

int native_request(const char* value) {
  if (value == nullptr) return -1;
  if (std::strcmp(value, "0") == 0) return static_cast<int>(native_set::none);
  return static_cast<int>(std::strcmp(value, "avx2") == 0 ? native_set::avx2 : native_set::avx512);
}

int choose_cpu_type(const cpu_facts& facts, native_set native_limit) {
  switch (std::min(natural_native_set(facts), native_limit)) {
    case native_set::avx512:
      return 7;
    case native_set::avx2:
      return 6;
    case native_set::none:
      break;
  }
  return natural_cpu_type(facts);
}

int choose_cpu_level(const cpu_facts& facts, int level_override, bool avx_allowed, native_set native_limit) {
  if (level_override != kNoLevelOverride) return level_override;
  switch (std::min(natural_native_set(facts), native_limit)) {
    case native_set::avx512:
      return 6;
    case native_set::avx2:
      return 5;
    case native_set::none:
      break;
  }
  int level = 0;
  if (is_selected_vendor(facts)) {
    if (avx_allowed && (facts.features_c & kAvxMask)) {
      level = 4;
    } else if (facts.features_c & kSse42) {
      level = 3;
    } else if (facts.features_c & kSsse3) {
      level = 2;
    } else if (facts.features_c & kSse3) {
      level = 1;
    }
  }
  return level;
}

void walk_cache_leaves(cpuid_reader cpuid, uint32_t leaf, int out[5]) {
  constexpr uint32_t kInstructionCache = 2;
  std::memset(out, 0, 5 * sizeof out[0]);
  for (uint32_t subleaf = 0; subleaf < 32; ++subleaf) {
    const cpuid_answer cache = cpuid(leaf, subleaf);
    const uint32_t kind = cache.eax & 31;
    if (kind == 0 || cache.ebx == 0 || cache.ecx == 0) return;
    if (kind == kInstructionCache) continue;
    const uint32_t line = (cache.ebx & 0xfff) + 1, partitions = (cache.ebx >> 12 & 0x3ff) + 1,
                   ways = (cache.ebx >> 22) + 1, sets = cache.ecx + 1;
    ++out[0];
    if (out[0] <= 4) out[out[0]] = static_cast<int>(line * partitions * ways * sets);
  }
}

}  // namespace qel
