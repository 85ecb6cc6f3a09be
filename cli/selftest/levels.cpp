// SPDX-License-Identifier: BSD-3-Clause
#include "cli/selftest/levels.h"

#include <algorithm>
#include <stdexcept>

#include "service/native_level.h"

namespace qel::cli::selftest {

std::vector<level_run> runs_on(const cpu_facts& facts) {
  const auto has = [&](int bit) { return (facts.features_c >> bit & 1) != 0; };
  constexpr int kSse3 = 0, kSsse3 = 9, kSse41 = 19, kSse42 = 20, kAvx = 28;
  constexpr uint64_t kAvxRegisters = 6;  // of XMM and YMM, which the system must save
  std::vector<level_run> runs = {{0, 0, false}};
  if (!has(kSse3)) return runs;
  runs.push_back({1, 1, false});
  if (!has(kSsse3)) return runs;
  runs.push_back({2, 2, false});
  if (has(kSse41)) runs.push_back({2, 3, true});
  if (!has(kSse42)) return runs;
  runs.push_back({3, 4, false});
  if (!has(kAvx) || (facts.xcr0 & kAvxRegisters) != kAvxRegisters) return runs;
  runs.push_back({4, 5, false});
  const native_set natural = natural_native_set(facts);
  if (natural >= native_set::avx2) runs.push_back({kFirstNativeLevel, 6, false});
  if (natural >= native_set::avx512) runs.push_back({kFirstNativeLevel + 1, 7, false});
  return runs;
}

std::vector<level_run> runs_of(const std::vector<int>& levels) {
  const std::vector<level_run> all = runs_on(read_cpu_facts(current_cpuid()));
  if (levels.empty()) return all;
  std::vector<level_run> chosen;
  for (const int level : levels) {
    const auto found = std::find_if(all.begin(), all.end(), [&](const level_run& run) {
      return run.level == level && !run.only_by_type;
    });
    if (found == all.end())
      throw std::invalid_argument("this processor has no level " + std::to_string(level));
    chosen.push_back(*found);
  }
  return chosen;
}

std::vector<std::pair<std::string, std::string>> environment_of(const level_run& run) {
  const bool native = run.level >= kFirstNativeLevel;
  return {{"QEL_NATIVE", !native                          ? ""
                         : run.level == kFirstNativeLevel ? "avx2"
                                                          : "1"},
          {"QEL_DEBUG_CPU_TYPE", native ? "" : std::to_string(run.level)},
          {"QEL_DEBUG_VECTOR_TYPE", native ? "" : std::to_string(run.type)},
          {"QEL_VERBOSE", ""},
          // Several processes share the processors: threads that spin would take them from one another.
          {"OMP_WAIT_POLICY", "passive"}};
}

}  // namespace qel::cli::selftest
