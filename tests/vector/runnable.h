// SPDX-License-Identifier: BSD-3-Clause
// The processor types whose instructions this machine has, whatever its vendor.
#pragma once

#include <vector>

#include "service/cpu_facts.h"

namespace qel::test {

inline std::vector<int> runnable_types() {
  const cpu_facts facts = read_cpu_facts(current_cpuid());
  const auto has = [&facts](int bit) { return (facts.features_c >> bit & 1) != 0; };
  const native_set native = natural_native_set(facts);
  constexpr int kSsse3 = 9, kSse41 = 19, kSse42 = 20;
  std::vector<int> types{0, 1};
  if (has(kSsse3)) types.push_back(2);
  if (has(kSse41)) types.push_back(3);
  if (has(kSse42)) types.push_back(4);
  if (native >= native_set::avx2) types.insert(types.end(), {5, 6});
  if (native == native_set::avx512) types.push_back(7);
  return types;
}

}  // namespace qel::test
