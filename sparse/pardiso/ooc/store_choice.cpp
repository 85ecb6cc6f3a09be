// SPDX-License-Identifier: BSD-3-Clause
#include "sparse/pardiso/ooc/store_choice.h"

namespace qel::pardiso {
namespace {

/// Megabytes beside the factors that the rest of a solve takes.
constexpr int64_t kBesideFactors = 2;

store_choice in_core(store_reason reason) { return {false, reason, true, 0}; }
store_choice in_files(store_reason reason, const store_facts& facts) {
  return {true, reason, facts.least + 1 <= facts.limit, facts.least + 1};
}

}  // namespace

store_choice choose_store(const store_facts& facts) {
  switch (facts.requested) {
    case 0:
      return in_core(store_reason::requested_in_core);
    case 1:
      if (facts.limit <= facts.peak || facts.limit <= facts.factors + kBesideFactors)
        return in_files(store_reason::not_enough_memory, facts);
      return in_core(store_reason::enough_memory);
    case 2:
      return in_files(store_reason::requested_out_of_core, facts);
    default:
      return in_core(store_reason::none);
  }
}

}  // namespace qel::pardiso
