// SPDX-License-Identifier: BSD-3-Clause
// One call of each family of public entries, as a table, for tests that run them all under some strain. Data
// are drawn from a seed, so that every thread has its own; results come back as bits, so that "the same"
// means every last one. Orders are small: the strain is in first calls, locks and buffers, not in arithmetic.
#pragma once

#include <cstdint>
#include <vector>

namespace qel::test {

using result_bits = std::vector<uint64_t>;

struct entry_family {
  const char* name;
  result_bits (*run)(unsigned seed);
  bool makes_objects = false;
};

/// All families.
const std::vector<entry_family>& entry_families();
/// The family of that name; ends the process if there is none.
const entry_family& family_named(const char* name);
/// All families in turn, beginning with the one at first modulo their number; results in the table's order.
std::vector<result_bits> run_all_families(unsigned seed, unsigned first);

}  // namespace qel::test
