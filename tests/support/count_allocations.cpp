// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/count_allocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
std::atomic<long> count{0};
}

void* operator new(std::size_t size) {
  ++count;
  if (void* pointer = std::malloc(size)) return pointer;
  throw std::bad_alloc();
}
void operator delete(void* pointer) noexcept { std::free(pointer); }
void operator delete(void* pointer, std::size_t) noexcept { std::free(pointer); }

namespace qel::test {

long allocation_count() { return count; }

}  // namespace qel::test
