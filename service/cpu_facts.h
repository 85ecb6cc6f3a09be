// SPDX-License-Identifier: BSD-3-Clause
// What the processor says of itself, as one record that tests replace, and the pure decisions over it.
#pragma once

#include <stdint.h>

namespace qel {

/// The four registers of one CPUID answer.
struct cpuid_answer {
  uint32_t eax, ebx, ecx, edx;
};

/// Asks the processor; initially the CPUID instruction.
using cpuid_reader = cpuid_answer (*)(uint32_t leaf, uint32_t subleaf);

/// The reader in force.
cpuid_reader current_cpuid();
/// Replaces the reader (null restores the instruction) and returns the former one.
cpuid_reader replace_cpuid(cpuid_reader reader);

/// Reads extended control register 0, which tells what registers the system saves; initially XGETBV. Called
/// only if CPUID says that the instruction is there.
using xcr0_reader = uint64_t (*)();
xcr0_reader current_xcr0();
xcr0_reader replace_xcr0(xcr0_reader reader);

/// The facts by which kernels are selected.
struct cpu_facts {
  char vendor[13];      ///< leaf 0: EBX, EDX, ECX as text
  uint32_t features_c;  ///< leaf 1 ECX
  uint32_t features_d;  ///< leaf 1 EDX
  uint32_t features_7;  ///< leaf 7 EBX
  uint64_t xcr0;        ///< extended control register 0; 0 if it can't be read
};
cpu_facts read_cpu_facts(cpuid_reader cpuid);

/// True for the one vendor whose processors get other than the generic kernels.
bool is_selected_vendor(const cpu_facts& facts);

/// The natural processor type, 0..5, of serv_cpu_type.
int natural_cpu_type(const cpu_facts& facts);
/// The override that a value of QEL_DEBUG_VECTOR_TYPE means: the distance of its first byte from '0', so
/// below 0 for a byte under '0'; -1 (no override) for null and for a distance above 5.
int cpu_type_override(const char* value);

/// No override of the level.
inline constexpr int kNoLevelOverride = -666;
/// The override that a value of QEL_DEBUG_CPU_TYPE means: 0..4 or kNoLevelOverride. 0 only by exactly "0".
int cpu_level_override(const char* value);
/// The instruction sets of the native levels: what any vendor's processor may run if the system saves its
/// registers.
enum class native_set { none, avx2, avx512 };
/// avx2: AVX2 and FMA. avx512: F, BW, DQ, VL besides.
native_set natural_native_set(const cpu_facts& facts);
/// The highest native set that a value of QEL_NATIVE allows, as a number: none ("0"), avx2 ("avx2"), avx512
/// (any other value); -1 if it says nothing (null).
int native_request(const char* value);

/// The level of serv_cpu_level, given the override and what is allowed beside levels 0..3.
int choose_cpu_level(const cpu_facts& facts, int level_override, bool avx_allowed, native_set native_limit);
/// The type of serv_cpu_type without an override.
int choose_cpu_type(const cpu_facts& facts, native_set native_limit);

/// CPUID leaves that list caches in the same form: the selected vendor's, and AMD's.
inline constexpr uint32_t kCacheLeaf = 4, kAmdCacheLeaf = 0x8000001D;
/// Cache sizes from a leaf: count and the first four sizes, as serv_cache_sizes tells.
void walk_cache_leaves(cpuid_reader cpuid, uint32_t leaf, int out[5]);

}  // namespace qel
