// SPDX-License-Identifier: BSD-3-Clause
// The per-thread cache of aligned work buffers. Each thread has a record of five slots; a slot keeps its
// block after use, so that a call repeated with equal sizes reaches neither the platform allocator nor a
// lock. What no slot serves goes straight to the platform allocator.
//
// Who writes what: a slot's fields belong to whoever moved its in_use from kFree to another value by
// compare-and-swap: the owning thread for a request (kHeld), a release operation while it frees the block
// (kReleasing). Setting kFree gives the slot back, which any thread that frees the buffer may do. Records are
// registered under the lock and live as long as their thread, so a thread's pointer to its record is always
// good; records of finished threads go with the next release of all buffers that finds them unused.
#include <pthread.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>

#include "service/environment.h"
#include "service/fork_guard.h"
#include "service/memory_lock.h"
#include "service/serv.h"
#include "service/spin_lock.h"

namespace qel {
namespace {

constexpr int kSlots = 5;
constexpr int kMaxRecords = 8192;
constexpr size_t kLargestCached = 0x2800000;  // 40 MiB
constexpr int64_t kReleasedMark = -13;        // total_bytes of a record whose slots were all released

enum slot_state : int { kFree = 0, kHeld = 1, kReleasing = 2 };

struct buffer_slot {
  std::atomic<int> in_use;
  std::atomic<void*> block;       ///< as the allocator returned it; null if the slot is empty
  std::atomic<void*> user;        ///< the aligned address that the caller got
  std::atomic<size_t> requested;  ///< the size that the caller asked for
  std::atomic<size_t> allocated;  ///< the block's size: request plus padding
};

struct thread_record {
  buffer_slot slot[kSlots];
  std::atomic<int> slot_count;       ///< slots opened since the last release
  std::atomic<int64_t> total_bytes;  ///< sum of allocated over the slots
  std::atomic<bool> thread_finished;
};

constinit spin_lock registry_lock;                    // memory_lock()
constinit thread_record* registry[kMaxRecords] = {};  // under registry_lock
constinit int registered = 0;                         // under registry_lock
constinit bool exit_key_made = false;                 // under registry_lock
constinit pthread_key_t exit_key{};                   // under registry_lock

enum cache_state : int { kUndecided = -1, kEnabled = 0, kDisabled = 1 };
constinit std::atomic<int> cache_decision{kUndecided};
constinit std::atomic<bool> free_at_thread_exit{false};  // set with the decision

[[gnu::tls_model("initial-exec")]] constinit thread_local thread_record* own_record = nullptr;

constexpr auto relaxed = std::memory_order_relaxed;

bool cache_disabled() {
  int decision = cache_decision.load(relaxed);
  if (decision == kUndecided) [[unlikely]] {
    guard_forks();
    const spin_guard guard(registry_lock);
    decision =
        environment_has("QEL_DISABLE_FAST_MM") || environment_has("QEL_MM_DISABLE") ? kDisabled : kEnabled;
    free_at_thread_exit.store(environment_has("QEL_FREE_AT_THREAD_EXIT"), relaxed);
    cache_decision.store(decision, std::memory_order_release);
  }
  return decision == kDisabled;
}

bool claim(buffer_slot& slot, slot_state as) {
  int expected = kFree;
  return slot.in_use.compare_exchange_strong(expected, as, std::memory_order_acquire, relaxed);
}

void give_back(buffer_slot& slot) { slot.in_use.store(kFree, std::memory_order_release); }

/// Frees a claimed slot's block and empties its fields.
void empty_slot(thread_record& record, buffer_slot& slot) {
  if (void* block = slot.block.load(relaxed)) serv_platform_free(block);
  record.total_bytes.fetch_sub(static_cast<int64_t>(slot.allocated.load(relaxed)), relaxed);
  slot.block.store(nullptr, relaxed);
  slot.user.store(nullptr, relaxed);
  slot.requested.store(0, relaxed);
  slot.allocated.store(0, relaxed);
}

/// Frees the blocks of the record's unused slots up to the first slot that is in use; true if none is.
bool release_until_busy(thread_record& record) {
  for (buffer_slot& slot : record.slot) {
    if (!claim(slot, kReleasing)) return false;
    empty_slot(record, slot);
    give_back(slot);
  }
  return true;
}

void mark_released(thread_record& record) {
  record.slot_count.store(0, relaxed);
  record.total_bytes.store(kReleasedMark, relaxed);
}

/// At a thread's end: its record stays registered with its blocks until the next release of all buffers,
/// or goes at once if that was asked for and nothing of it is in use.
void finish_thread(void* own) {
  auto* record = static_cast<thread_record*>(own);
  own_record = nullptr;  // a later destructor of this thread that asks for a buffer gets a new record
  if (!free_at_thread_exit.load(relaxed)) {
    record->thread_finished.store(true, std::memory_order_release);
    return;
  }
  const spin_guard guard(registry_lock);
  record->thread_finished.store(true, std::memory_order_release);
  if (!release_until_busy(*record)) return;
  thread_record** end = registry + registered;
  registered = static_cast<int>(std::remove(registry, end, record) - registry);
  serv_platform_free(record);
}

[[gnu::noinline, gnu::cold]] thread_record* register_thread() {
  const spin_guard guard(registry_lock);
  if (registered >= kMaxRecords) return nullptr;
  if (!exit_key_made) {
    if (pthread_key_create(&exit_key, finish_thread) != 0) return nullptr;
    exit_key_made = true;
  }
  void* memory = serv_platform_malloc(sizeof(thread_record));
  if (memory == nullptr) return nullptr;
  auto* record = new (memory) thread_record{};
  if (pthread_setspecific(exit_key, record) != 0) {
    serv_platform_free(memory);
    return nullptr;
  }
  registry[registered++] = record;
  own_record = record;
  return record;
}

/// How a request is padded: a power-of-two alignment by itself, any other from 4 up by 32, below 4 not.
struct padding_rule {
  size_t padding;
  uintptr_t mask;
};
constexpr padding_rule padding_for(int alignment) {
  if (alignment < 4) return {0, 0};
  const auto wanted = static_cast<size_t>(alignment);
  const size_t padding = (wanted & (wanted - 1)) == 0 ? wanted : 32;
  return {padding, padding - 1};
}

/// Hands out a held slot: the block's own address if it is aligned, else the next aligned one.
void* hand_out(buffer_slot& slot, size_t size, const padding_rule& rule) {
  const auto block = reinterpret_cast<uintptr_t>(slot.block.load(relaxed));
  const uintptr_t base = block - (block & rule.mask);
  void* user = reinterpret_cast<void*>(base == block ? block : base + rule.padding);
  slot.user.store(user, relaxed);
  slot.requested.store(size, relaxed);
  return user;
}

/// Gives a held slot a fresh block of need bytes.
/// Kept: the block is not tested. If the allocator fails the caller gets null and the slot stays held and
/// empty, so a thread that has met five failures is served by the plain allocator.
void* fill(thread_record& record, buffer_slot& slot, size_t size, size_t need, const padding_rule& rule) {
  empty_slot(record, slot);
  void* block = serv_platform_malloc(need);
  if (block != nullptr) {
    slot.block.store(block, relaxed);
    slot.allocated.store(need, relaxed);
    record.total_bytes.fetch_add(static_cast<int64_t>(need), relaxed);
  }
  return hand_out(slot, size, rule);
}

/// Claims the first slot that fits exactly, or notes the first bigger and the first smaller free one.
struct scan_result {
  buffer_slot* exact = nullptr;
  buffer_slot* bigger = nullptr;
  buffer_slot* smaller = nullptr;
};
scan_result scan_slots(thread_record& record, size_t need) {
  scan_result found;
  const int count = record.slot_count.load(relaxed);
  for (int i = 0; i < count; ++i) {
    buffer_slot& slot = record.slot[i];
    if (slot.in_use.load(relaxed) != kFree) continue;
    const size_t allocated = slot.allocated.load(relaxed);
    if (allocated == need && claim(slot, kHeld)) {
      if (slot.allocated.load(relaxed) == need) {
        found.exact = &slot;
        return found;
      }
      give_back(slot);  // emptied by a release between look and claim
      if (found.smaller == nullptr) found.smaller = &slot;
    } else if (allocated > need) {
      if (found.bigger == nullptr) found.bigger = &slot;
    } else if (found.smaller == nullptr) {
      found.smaller = &slot;
    }
  }
  return found;
}

/// Opens the next unopened slot: claims and counts it. A slot that is still held from before a release of
/// all buffers is counted and passed over. Null when all five are open.
buffer_slot* open_slot(thread_record& record) {
  for (int next = record.slot_count.load(relaxed); next < kSlots;) {
    buffer_slot& slot = record.slot[next];
    const bool taken = claim(slot, kHeld);
    record.slot_count.store(++next, relaxed);
    if (taken) return &slot;
  }
  return nullptr;
}

void* cached_malloc(thread_record& record, size_t size, const padding_rule& rule) {
  const size_t need = size + rule.padding;
  const scan_result found = scan_slots(record, need);
  if (found.exact != nullptr) return hand_out(*found.exact, size, rule);
  if (buffer_slot* fresh = open_slot(record)) return fill(record, *fresh, size, need, rule);
  if (found.bigger != nullptr && claim(*found.bigger, kHeld)) {
    if (found.bigger->allocated.load(relaxed) >= need) return hand_out(*found.bigger, size, rule);
    return fill(record, *found.bigger, size, need, rule);
  }
  if (found.smaller != nullptr && claim(*found.smaller, kHeld))
    return fill(record, *found.smaller, size, need, rule);
  return serv_platform_malloc(size);
}

/// Clears in_use of the record's slot that handed pointer out.
bool free_in_record(thread_record& record, void* pointer) {
  for (buffer_slot& slot : record.slot) {
    if (slot.user.load(relaxed) == pointer && slot.in_use.load(relaxed) == kHeld) {
      give_back(slot);
      return true;
    }
  }
  return false;
}

bool free_in_any_record(void* pointer) {
  const spin_guard guard(registry_lock);
  for (int i = 0; i < registered; ++i) {
    if (free_in_record(*registry[i], pointer)) return true;
  }
  return false;
}

}  // namespace

spin_lock& memory_lock() { return registry_lock; }

void* serv_malloc(size_t size, int alignment) {
  if (size == 0) return nullptr;
  if (cache_disabled() || size > kLargestCached) return serv_platform_malloc(size);
  thread_record* record = own_record;
  if (record == nullptr) [[unlikely]] {
    record = register_thread();
    if (record == nullptr) return serv_platform_malloc(size);
  }
  // A record marked as released starts counting its bytes anew.
  if (record->total_bytes.load(relaxed) == kReleasedMark) record->total_bytes.store(0, relaxed);
  return cached_malloc(*record, size, padding_for(alignment));
}

void serv_free(void* pointer) {
  if (pointer == nullptr) return;
  if (!cache_disabled()) {
    if (own_record != nullptr && free_in_record(*own_record, pointer)) return;
    if (free_in_any_record(pointer)) return;
  }
  serv_platform_free(pointer);
}

int64_t serv_memory_stats(int64_t* count) {
  if (cache_disabled()) {
    *count = -1;
    return 0;
  }
  int64_t slots = 0, bytes = 0;
  const spin_guard guard(registry_lock);
  for (int i = 0; i < registered; ++i) {
    slots += registry[i]->slot_count.load(relaxed);
    for (const buffer_slot& slot : registry[i]->slot) {
      if (slot.block.load(relaxed) != nullptr) bytes += static_cast<int64_t>(slot.allocated.load(relaxed));
    }
  }
  *count = slots;
  return bytes;
}

int serv_thread_free_buffers() {
  if (cache_disabled()) return 1;
  thread_record* record = own_record;
  if (record == nullptr) return 0;
  bool busy = false;
  for (buffer_slot& slot : record->slot) {
    if (claim(slot, kReleasing)) {
      empty_slot(*record, slot);
      give_back(slot);
    } else {
      busy = true;
    }
  }
  if (busy) return 1;
  mark_released(*record);
  return 0;
}

void serv_free_buffers() {
  if (cache_disabled()) return;
  const spin_guard guard(registry_lock);
  bool busy = false;  // stays set for the rest of the walk once a slot in use is met
  int kept = 0;
  for (int i = 0; i < registered; ++i) {
    thread_record* record = registry[i];
    if (!release_until_busy(*record)) busy = true;
    if (!busy) mark_released(*record);
    if (!busy && record->thread_finished.load(std::memory_order_acquire)) {
      serv_platform_free(record);
    } else {
      registry[kept++] = record;
    }
  }
  registered = kept;
}

bool memory_in_use() { return cache_decision.load(relaxed) != kUndecided; }

}  // namespace qel
