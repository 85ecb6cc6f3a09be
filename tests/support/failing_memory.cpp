// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/failing_memory.h"

#include <atomic>
#include <cstdlib>
#include <new>
#include <stdexcept>

#include "qel/service.h"

namespace qel::test {
namespace {

// Threads of a region ask, too.
std::atomic<bool> armed = false;
std::atomic<size_t> asked = 0, first_failing = 0, failed = 0;
std::atomic<bool> fails_on = false;
std::atomic<long> held = 0;

bool refuses() {
  if (!armed) return false;
  const size_t number = ++asked, first = first_failing;
  const bool refused = first != 0 && (fails_on ? number >= first : number == first);
  if (refused) ++failed;
  return refused;
}

void* counted(void* block) {
  if (block != nullptr) ++held;
  return block;
}
void* platform_malloc(size_t size) { return refuses() ? nullptr : counted(std::malloc(size)); }
void* platform_calloc(size_t count, size_t size) {
  return refuses() ? nullptr : counted(std::calloc(count, size));
}
void* platform_realloc(void* block, size_t size) {
  if (refuses()) return nullptr;
  void* const moved = std::realloc(block, size);
  return block == nullptr ? counted(moved) : moved;
}
void platform_free(void* block) {
  if (block != nullptr) --held;
  std::free(block);
}

}  // namespace

void take_allocator() {
  if (qel_set_allocator(platform_malloc, platform_calloc, platform_realloc, platform_free) == 0)
    throw std::logic_error("the library has an allocator already");
}
void fail_request(size_t k, failing how) {
  asked = failed = 0;
  first_failing = k;
  fails_on = how == failing::all_from_there;
  armed = true;
}
size_t requests_failed() {
  armed = false;
  return failed;
}
long blocks_held() { return held; }

}  // namespace qel::test

void* operator new(std::size_t size) {
  void* const block = qel::test::refuses() ? nullptr : std::malloc(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
