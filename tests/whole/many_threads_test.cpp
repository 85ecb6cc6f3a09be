// SPDX-License-Identifier: BSD-3-Clause
// Buffers under many threads: released all the time beside threads that compute, used by a hundred thousand
// threads one after the other, and by more threads at once than the library keeps records for.
#include <gtest/gtest.h>
#include <malloc.h>
#include <pthread.h>

#include <atomic>
#include <condition_variable>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <mutex>
#include <thread>
#include <vector>

#include "qel/qel.h"
#include "service/serv.h"
#include "tests/support/in_child.h"
#include "tests/whole/entry_families.h"
#include "tests/whole/strain.h"

namespace qel::test {
namespace {

constexpr int kNoThreads = 77;
constexpr unsigned kRecords = 8192;  // what the library keeps at most, one per thread

struct buffer_stats {
  int64_t count, bytes;
  bool operator==(const buffer_stats&) const = default;
};
buffer_stats stats_now() {
  buffer_stats stats{};
  stats.bytes = serv_memory_stats(&stats.count);
  return stats;
}

/// Bytes of this process that are in memory.
long resident_bytes() {
  std::ifstream pages("/proc/self/statm");
  long total = 0, resident = 0;
  pages >> total >> resident;
  return resident * sysconf(_SC_PAGESIZE);
}

/// A product over entries unit entries, whose positions need a buffer of 8 bytes each; the sum is their
/// count.
bool computes(int entries) {
  const auto size = static_cast<size_t>(entries);
  const std::vector<double> x(size, 1), y(size, 1);
  std::vector<int> places(size);
  for (int k = 0; k < entries; ++k) places[static_cast<size_t>(k)] = entries - k;
  return ddoti(&entries, x.data(), places.data(), y.data()) == entries;
}

/// Runs body in a child, which keeps the records of the tests apart; failures there are failures here.
template <class Body>
void in_fresh_process(Body body) {
  const child_result child = in_child([&] {
    const int code = body();
    return testing::Test::HasFailure() ? 1 : code;
  });
  if (child.exit_status == kNoThreads) GTEST_SKIP() << child.output;
  EXPECT_EQ(child.exit_status, 0) << child.output;
}

/// Threads with a small stack; false if the system gives no more of them.
class small_threads {
 public:
  explicit small_threads(size_t stack_bytes) {
    pthread_attr_init(&attributes_);
    pthread_attr_setstacksize(&attributes_, stack_bytes);
  }
  ~small_threads() {
    join();
    pthread_attr_destroy(&attributes_);
  }
  small_threads(const small_threads&) = delete;
  small_threads& operator=(const small_threads&) = delete;

  bool start(void* (*body)(void*), void* argument) {
    pthread_t thread;
    if (pthread_create(&thread, &attributes_, body, argument) != 0) return false;
    threads_.push_back(thread);
    return true;
  }
  void join() {
    for (const pthread_t thread : threads_) pthread_join(thread, nullptr);
    threads_.clear();
  }

 private:
  pthread_attr_t attributes_;
  std::vector<pthread_t> threads_;
};
constexpr size_t kStackBytes = kSanitized ? 1 << 20 : 64 << 10;

TEST(ManyThreads, ReleasesAndSettersInALoopLeaveResultsAlone) {
  in_fresh_process([] {
    qel_set_num_threads(2);
    std::atomic<bool> stop{false};
    std::atomic<int> wrong{0};
    std::vector<std::thread> workers;
    for (unsigned seed = 0; seed < 16; ++seed) {
      workers.emplace_back([&, seed] {
        const std::vector<result_bits> expected = run_all_families(seed, seed);
        for (unsigned round = 0; round < under_strain(60); ++round)
          wrong += run_all_families(seed, seed + round) != expected;
      });
    }
    std::thread releaser([&] {
      while (!stop) {
        QEL_FreeBuffers();
        qel_set_num_threads(2);
        qel_set_num_threads_local(1);
        qel_verbose(0);
      }
    });
    for (std::thread& worker : workers) worker.join();
    stop = true;
    releaser.join();
    EXPECT_EQ(wrong, 0);
    QEL_FreeBuffers();
    EXPECT_EQ(stats_now(), (buffer_stats{0, 0})) << "all buffers have come back";
    return 0;
  });
}

TEST(ManyThreads, TenThousandObjectsOfEachKindLeaveTheHeapFlat) {
  in_fresh_process([] {
    for (const entry_family& family : entry_families()) {
      if (!family.makes_objects) continue;
      family.run(1);
      QEL_FreeBuffers();
      const size_t before = mallinfo2().uordblks;
      for (unsigned turn = 0; turn < under_strain(10000); ++turn) family.run(turn % 16);
      QEL_FreeBuffers();
      EXPECT_LE(mallinfo2().uordblks, before + 4096) << family.name;
    }
    return 0;
  });
}

TEST(ManyThreads, HundredThousandShortLivedThreadsKeepMemoryFlat) {
  in_fresh_process([] {
    setenv("QEL_FREE_AT_THREAD_EXIT", "1", 1);
    constexpr int kAtOnce = 8, kEntries = 2000;
    constexpr long kGrowth = 10 << 20;
    static std::atomic<int> right;
    const auto body = [](void*) -> void* {
      right += computes(kEntries);
      return nullptr;
    };
    small_threads threads(kStackBytes);
    long after_first_thousand = 0;
    const int all = static_cast<int>(under_strain(100000));
    for (int started = 0; started < all; started += kAtOnce) {
      if (started == 1000) after_first_thousand = resident_bytes();
      for (int t = 0; t < kAtOnce; ++t) {
        if (!threads.start(body, nullptr)) return kNoThreads;
      }
      threads.join();
    }
    EXPECT_EQ(right, all);
    EXPECT_EQ(stats_now(), (buffer_stats{0, 0}));
    if (!kSanitized) {  // a sanitizer keeps what was freed
      EXPECT_LT(resident_bytes() - after_first_thousand, kGrowth);
    }
    return 0;
  });
}

/// One of many threads that all hold a buffer until the last of them has one.
struct crowd {
  std::mutex lock;
  std::condition_variable changed;
  unsigned ready = 0, right = 0;
  bool released = false;

  void take_part() {
    constexpr size_t kBytes = 1000;
    const bool first_sum = computes(20);
    auto* held = static_cast<unsigned char*>(serv_malloc(kBytes, 64));
    std::unique_lock guard(lock);
    const auto mark = static_cast<unsigned char>(ready);
    if (held != nullptr) std::memset(held, mark, kBytes);
    ++ready;
    changed.notify_all();
    changed.wait(guard, [this] { return released; });
    guard.unlock();
    bool intact = held != nullptr;
    for (size_t i = 0; intact && i < kBytes; ++i) intact = held[i] == mark;
    const bool good = first_sum && intact && computes(20);
    serv_free(held);
    guard.lock();
    right += good;
  }
};

TEST(ManyThreads, MoreThanThereAreRecordsForComputeAtOnce) {
  in_fresh_process([] {
    const unsigned wanted = under_strain(10000);
    crowd all;
    const auto body = [](void* argument) -> void* {
      static_cast<crowd*>(argument)->take_part();
      return nullptr;
    };
    unsigned started = 0;
    {
      small_threads threads(kStackBytes);
      while (started < wanted && threads.start(body, &all)) ++started;
      std::unique_lock guard(all.lock);
      all.changed.wait(guard, [&] { return all.ready == started; });
      const unsigned recorded = std::min(started, kRecords);
      EXPECT_EQ(stats_now().count, 2 * recorded) << "two buffers per record";
      all.released = true;
      guard.unlock();
      all.changed.notify_all();
    }
    EXPECT_EQ(all.right, started);
    QEL_FreeBuffers();
    EXPECT_EQ(stats_now(), (buffer_stats{0, 0}));
    EXPECT_TRUE(computes(20));
    EXPECT_EQ(stats_now().count, 1) << "records can be had again";
    if (started == wanted) return 0;
    std::printf("only %u threads to be had\n", started);
    return kNoThreads;
  });
}

}  // namespace
}  // namespace qel::test
