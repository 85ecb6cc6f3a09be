// SPDX-License-Identifier: BSD-3-Clause
// Whether the factors go into files.
#pragma once

#include <stdint.h>

namespace qel::pardiso {

/// What the choice depends on; sizes in megabytes.
struct store_facts {
  int requested;    ///< iparm(60): 0 in core, 1 by memory, 2 out of core
  int64_t peak;     ///< memory of the numeric phases in core
  int64_t factors;  ///< of that, the factors
  int64_t least;    ///< smallest working set with the factors in files
  int64_t limit;    ///< ooc_max_core_size
};

enum class store_reason { requested_in_core, not_enough_memory, enough_memory, requested_out_of_core, none };

struct store_choice {
  bool out_of_core;
  store_reason reason;
  bool fits;     ///< false: not even the working set without the factors stays within the limit
  int64_t need;  ///< megabytes that would do; 0 in core
};

store_choice choose_store(const store_facts& facts);

}  // namespace qel::pardiso
