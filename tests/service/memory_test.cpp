// SPDX-License-Identifier: BSD-3-Clause
// The buffer cache: what is served from where, seen through a counting platform allocator. Each test runs in
// a process of its own, since the cache belongs to the process.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <thread>
#include <vector>

#include "service/serv.h"
#include "tests/support/in_child.h"

namespace qel {
namespace {

std::atomic<int> allocations{0}, frees{0};
bool failing = false;

void* counting_malloc(size_t size) {
  ++allocations;
  return failing ? nullptr : std::malloc(size);
}
void counting_free(void* pointer) {
  ++frees;
  std::free(pointer);
}

bool aligned_to(const void* pointer, uintptr_t alignment) {
  return reinterpret_cast<uintptr_t>(pointer) % alignment == 0;
}

struct stats {
  int64_t count, bytes;
  bool operator==(const stats&) const = default;
};
stats memory_stats() {
  stats s{};
  s.bytes = serv_memory_stats(&s.count);
  return s;
}

/// Runs body in a child with the counting allocator; a failed expectation there makes the exit status 1.
template <class Body>
void fresh_process(Body body) {
  const test::child_result result = test::in_child([&] {
    serv_platform_malloc = counting_malloc;
    serv_platform_free = counting_free;
    body();
    return testing::Test::HasFailure() ? 1 : 0;
  });
  EXPECT_EQ(result.exit_status, 0) << result.output;
}

TEST(Memory, ReusesABufferOfEqualSizeWithoutTheAllocator) {
  fresh_process([] {
    void* first = serv_malloc(1000, 128);
    EXPECT_TRUE(aligned_to(first, 128));
    serv_free(first);
    const int before = allocations;
    for (int i = 0; i < 100; ++i) {
      void* again = serv_malloc(1000, 128);
      EXPECT_EQ(again, first);
      serv_free(again);
    }
    EXPECT_EQ(allocations, before);
    EXPECT_EQ(frees, 0);
    EXPECT_EQ(memory_stats(), (stats{1, 1128}));
  });
}

TEST(Memory, HonoursAlignmentsAsToldAndNoOthers) {
  fresh_process([] {
    EXPECT_EQ(serv_malloc(0, 128), nullptr);
    EXPECT_TRUE(aligned_to(serv_malloc(10, 100), 32)) << "100 is no power of two: 32 it is";
    EXPECT_TRUE(aligned_to(serv_malloc(10, 4096), 4096));
    serv_free(serv_malloc(77, 2));
    EXPECT_EQ(memory_stats(), (stats{3, 10 + 32 + 10 + 4096 + 77})) << "below 4 there is no padding";
  });
}

TEST(Memory, LargeRequestsBypassTheCache) {
  fresh_process([] {
    serv_free(serv_malloc(16, 16));
    const stats before = memory_stats();
    void* large = serv_malloc(0x2800001, 128);
    EXPECT_NE(large, nullptr);
    EXPECT_EQ(memory_stats(), before);
    serv_free(large);
    EXPECT_EQ(frees, 1);
    serv_free(serv_malloc(0x2800000, 128));
    EXPECT_EQ(memory_stats().count, 2) << "40 MiB is the last size that is cached";
  });
}

TEST(Memory, OpensFiveSlotsBeforeItReusesABiggerOne) {
  fresh_process([] {
    void* small = serv_malloc(1000, 0);
    void* big = serv_malloc(2000, 0);
    serv_free(small);
    serv_free(big);
    void* middle = serv_malloc(1500, 0);
    EXPECT_NE(middle, big) << "a new slot, whatever bigger one there is";
    void* rest[2] = {serv_malloc(10, 0), serv_malloc(20, 0)};
    EXPECT_EQ(memory_stats(), (stats{5, 1000 + 2000 + 1500 + 10 + 20}));
    serv_free(middle);
    EXPECT_EQ(serv_malloc(1200, 0), big) << "all five open: the first bigger free slot";
    EXPECT_EQ(memory_stats().bytes, 1000 + 2000 + 1500 + 10 + 20);
    for (void* pointer : rest) serv_free(pointer);
  });
}

TEST(Memory, ReplacesASmallerSlotAndServesASixthBufferPlainly) {
  fresh_process([] {
    void* held[5];
    for (size_t i = 0; i < 5; ++i) held[i] = serv_malloc(100 + i, 0);
    serv_free(held[0]);
    const int frees_before = frees;
    held[0] = serv_malloc(5000, 0);
    EXPECT_EQ(frees, frees_before + 1) << "the smaller block goes";
    EXPECT_EQ(memory_stats(), (stats{5, 5000 + 101 + 102 + 103 + 104}));
    void* sixth = serv_malloc(50, 4096);
    EXPECT_EQ(memory_stats().count, 5);
    serv_free(sixth);
    EXPECT_EQ(frees, frees_before + 2) << "a buffer without a slot goes straight back";
  });
}

TEST(Memory, AnotherThreadMayFreeABuffer) {
  fresh_process([] {
    void* buffer = serv_malloc(300, 64);
    std::thread([&] {
      serv_free(serv_malloc(8, 8));  // has a record of its own
      serv_free(buffer);
    }).join();
    EXPECT_EQ(frees, 0) << "the block stays with its owner's slot";
    EXPECT_EQ(serv_malloc(300, 64), buffer);
  });
}

TEST(Memory, ReleaseGivesBackWhatIsNotInUse) {
  fresh_process([] {
    void* kept = serv_malloc(100, 0);
    serv_free(serv_malloc(200, 0));
    EXPECT_EQ(serv_thread_free_buffers(), 1) << "one is in use";
    EXPECT_EQ(memory_stats(), (stats{2, 100})) << "the emptied slot stays numbered";
    serv_free_buffers();
    EXPECT_EQ(memory_stats(), (stats{2, 100}));
    serv_free(kept);
    EXPECT_EQ(serv_thread_free_buffers(), 0);
    EXPECT_EQ(memory_stats(), (stats{0, 0}));
    kept = serv_malloc(100, 0);
    std::memset(kept, 1, 100);
    serv_free(kept);
    EXPECT_EQ(memory_stats(), (stats{1, 100}));
    serv_free_buffers();
    EXPECT_EQ(memory_stats(), (stats{0, 0}));
  });
}

TEST(Memory, BusyRecordKeepsTheCountsOfTheRecordsAfterIt) {
  fresh_process([] {
    void* first = serv_malloc(100, 0);
    std::atomic<int> step{0};
    std::thread other([&] {
      serv_free(serv_malloc(200, 0));
      step = 1;
      while (step != 2) std::this_thread::yield();
      void* again = serv_malloc(200, 0);  // its record must still be good
      EXPECT_NE(again, nullptr);
      if (again != nullptr) std::memset(again, 1, 200);
      serv_free(again);
    });
    while (step != 1) std::this_thread::yield();
    serv_free_buffers();
    EXPECT_EQ(memory_stats(), (stats{2, 100}));
    step = 2;
    other.join();
    serv_free(first);
    serv_free_buffers();
    EXPECT_EQ(memory_stats(), (stats{0, 0}));
  });
}

TEST(Memory, RecordsOfFinishedThreadsGoWithARelease) {
  fresh_process([] {
    for (int i = 0; i < 20; ++i) std::thread([] { serv_free(serv_malloc(1000, 64)); }).join();
    EXPECT_EQ(memory_stats().count, 20) << "nothing is released at a thread's end";
    serv_free_buffers();
    EXPECT_EQ(memory_stats(), (stats{0, 0}));
    EXPECT_EQ(frees, allocations) << "blocks and records";
  });
}

TEST(Memory, FreesAtAThreadsEndOnRequest) {
  fresh_process([] {
    setenv("QEL_FREE_AT_THREAD_EXIT", "1", 1);
    void* kept = nullptr;
    std::thread([] { serv_free(serv_malloc(1000, 64)); }).join();
    EXPECT_EQ(memory_stats(), (stats{0, 0}));
    EXPECT_EQ(frees, allocations) << "block and record";
    std::thread([&] { kept = serv_malloc(500, 0); }).join();
    EXPECT_EQ(memory_stats(), (stats{1, 500})) << "a buffer in use outlives its thread";
    std::memset(kept, 1, 500);
    serv_free(kept);
    serv_free_buffers();
    EXPECT_EQ(memory_stats(), (stats{0, 0}));
    EXPECT_EQ(frees, allocations);
  });
}

TEST(Memory, ReleasesInALoopBesideThreadsThatCompute) {
  fresh_process([] {
    std::atomic<bool> stop{false};
    std::vector<std::thread> workers;
    for (int t = 0; t < 4; ++t) {
      workers.emplace_back([t] {
        for (size_t round = 0; round < 4000; ++round) {
          unsigned char* held[6];
          for (size_t k = 0; k < 6; ++k) {
            held[k] = static_cast<unsigned char*>(serv_malloc(100 + k * round % 900, 64));
            std::memset(held[k], t + 1, 100);
          }
          for (unsigned char* block : held) {
            EXPECT_EQ(block[0], t + 1);
            EXPECT_EQ(block[99], t + 1);
            serv_free(block);
          }
        }
      });
    }
    std::thread releaser([&] {
      while (!stop) serv_free_buffers();
    });
    for (std::thread& worker : workers) worker.join();
    stop = true;
    releaser.join();
    serv_free_buffers();
    EXPECT_EQ(memory_stats(), (stats{0, 0}));
  });
}

TEST(Memory, KeepsASlotThatMetAFailureHeldAndEmpty) {
  fresh_process([] {
    serv_free(serv_malloc(8, 8));
    failing = true;
    EXPECT_EQ(serv_malloc(100, 128), nullptr);
    EXPECT_EQ(memory_stats(), (stats{2, 16}));
    failing = false;
    void* good = serv_malloc(100, 128);
    EXPECT_TRUE(good != nullptr && aligned_to(good, 128));
    EXPECT_EQ(serv_thread_free_buffers(), 1) << "the failed slot counts as in use";
  });
}

TEST(Memory, FailureOfTheFirstRequestLeavesNoRecord) {
  fresh_process([] {
    failing = true;
    EXPECT_EQ(serv_malloc(100, 128), nullptr);
    failing = false;
    EXPECT_EQ(memory_stats(), (stats{0, 0}));
    EXPECT_TRUE(aligned_to(serv_malloc(100, 128), 128));
  });
}

TEST(Memory, VariablesSwitchTheCacheOff) {
  for (const char* name : {"QEL_DISABLE_FAST_MM", "QEL_MM_DISABLE"}) {
    fresh_process([name] {
      setenv(name, "0", 1);  // the value does not matter
      serv_free(serv_malloc(100, 0));
      EXPECT_EQ(frees, 1);
      EXPECT_EQ(memory_stats(), (stats{-1, 0}));
      EXPECT_EQ(serv_thread_free_buffers(), 1);
      serv_free_buffers();
    });
  }
  fresh_process([] {
    setenv("QEL_MM_DISABLE", "", 1);
    serv_free(serv_malloc(100, 0));
    EXPECT_EQ(memory_stats(), (stats{1, 100})) << "an empty value counts as absent";
  });
}

TEST(AlignedMemory, PlacesTheBlockWordBelowTheAddress) {
  for (const int alignment : {0, 1, 7, 8, 16, 24, 64, 4096}) {
    auto* bytes = static_cast<unsigned char*>(serv_aligned_malloc(100, alignment));
    ASSERT_NE(bytes, nullptr);
    const uintptr_t promised = alignment < 8 ? 8 : alignment == 24 ? 32 : static_cast<uintptr_t>(alignment);
    EXPECT_TRUE(aligned_to(bytes, promised)) << alignment;
    std::memset(bytes, 1, 100);
    serv_aligned_free(bytes);
  }
  EXPECT_EQ(serv_aligned_malloc(0, 64), nullptr);
  EXPECT_EQ(serv_aligned_malloc(SIZE_MAX - 64, 64), nullptr);
  EXPECT_EQ(serv_aligned_calloc(SIZE_MAX / 2, 4, 64), nullptr);
  serv_aligned_free(nullptr);
}

TEST(AlignedMemory, ReallocKeepsTheContents) {
  auto* bytes = static_cast<unsigned char*>(serv_aligned_realloc(nullptr, 100));
  EXPECT_TRUE(aligned_to(bytes, 128));
  for (unsigned char i = 0; i < 100; ++i) bytes[i] = i;
  bytes = static_cast<unsigned char*>(serv_aligned_realloc(bytes, 1 << 20));
  for (unsigned char i = 0; i < 100; ++i) EXPECT_EQ(bytes[i], i);
  std::memset(bytes, 1, 1 << 20);
  serv_aligned_free(bytes);
  auto* zeroed = static_cast<unsigned char*>(serv_aligned_calloc(10, 10, 64));
  for (int i = 0; i < 100; ++i) EXPECT_EQ(zeroed[i], 0);
  serv_aligned_free(zeroed);
}

}  // namespace
}  // namespace qel
