// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <algorithm>

#include "service/serv.h"

namespace qel {

/// Bytes of the processor's largest data cache.
inline int largest_native_cache() {
  int sizes[5];
  serv_native_cache_sizes(sizes);
  return *std::max_element(sizes + 1, sizes + 5);
}

}  // namespace qel
