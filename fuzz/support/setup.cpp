// SPDX-License-Identifier: BSD-3-Clause
// What all fuzzers begin with: one thread, nothing printed, and memory that ends early, so that a count from
// the input is refused and not served.
#include <cstdio>
#include <cstdlib>

#include "service/serv.h"

namespace {

constexpr size_t kMostBytes = size_t{64} << 20;

void* limited_malloc(size_t size) { return size <= kMostBytes ? std::malloc(size) : nullptr; }
void* limited_calloc(size_t count, size_t size) {
  const bool fits = size == 0 || count <= kMostBytes / size;
  return fits ? std::calloc(count, size) : nullptr;
}
void* limited_realloc(void* block, size_t size) {
  return size <= kMostBytes ? std::realloc(block, size) : nullptr;
}

const bool ready = [] {
  setenv("QEL_NUM_THREADS", "1", 0);
  qel::serv_platform_malloc = limited_malloc;
  qel::serv_platform_calloc = limited_calloc;
  qel::serv_platform_realloc = limited_realloc;
  return std::freopen("/dev/null", "w", stdout) != nullptr;
}();

}  // namespace
