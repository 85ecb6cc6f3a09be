// SPDX-License-Identifier: BSD-3-Clause
// The very first calls of a process come from sixteen threads at once, each beginning with another family:
// every decision that the library takes once is then taken in a race. Results must be those of a process with
// one thread, to the last bit.
#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <thread>

#include "tests/support/in_child.h"
#include "tests/whole/entry_families.h"
#include "tests/whole/strain.h"

namespace qel::test {
namespace {

constexpr unsigned kThreads = 16;
const unsigned kProcesses = under_strain(200);

using all_results = std::vector<result_bits>;

/// What a thread with that seed must get, from a child, because this process must stay cold.
all_results expected_results(unsigned seed) {
  const child_result serial = in_child([seed] {
    for (const result_bits& bits : run_all_families(seed, 0)) {
      const uint64_t size = bits.size();
      std::fwrite(&size, sizeof size, 1, stdout);
      std::fwrite(bits.data(), sizeof(uint64_t), bits.size(), stdout);
    }
    return 0;
  });
  all_results results;
  for (const char* at = serial.output.data(); at < serial.output.data() + serial.output.size();) {
    uint64_t size;
    std::memcpy(&size, at, sizeof size);
    at += sizeof size;
    results.emplace_back(size);
    std::memcpy(results.back().data(), at, size * sizeof(uint64_t));
    at += size * sizeof(uint64_t);
  }
  return results;
}

/// Starts all threads at once and tells every family whose result differs; returns how many do.
int wrong_results(const std::vector<all_results>& expected, unsigned first) {
  std::atomic<unsigned> waiting{kThreads};
  std::vector<all_results> results(kThreads);
  std::vector<std::thread> threads;
  for (unsigned t = 0; t < kThreads; ++t) {
    threads.emplace_back([&, t] {
      --waiting;
      while (waiting != 0) std::this_thread::yield();
      results[t] = run_all_families(t, first + t);
    });
  }
  for (std::thread& thread : threads) thread.join();
  int wrong = 0;
  for (unsigned t = 0; t < kThreads; ++t) {
    for (size_t family = 0; family < entry_families().size(); ++family) {
      if (results[t][family] == expected[t][family]) continue;
      std::printf("thread %u: %s\n", t, entry_families()[family].name);
      ++wrong;
    }
  }
  return wrong;
}

TEST(ColdStart, SixteenThreadsAtOnceGetTheResultsOfOne) {
  std::vector<all_results> expected;
  for (unsigned t = 0; t < kThreads; ++t) {
    expected.push_back(expected_results(t));
    ASSERT_EQ(expected[t].size(), entry_families().size());
  }
  for (unsigned process = 0; process < kProcesses; ++process) {
    const child_result got = in_child([&] { return wrong_results(expected, process) == 0 ? 0 : 1; });
    ASSERT_EQ(got.exit_status, 0) << "process " << process << ": " << got.output;
  }
}

}  // namespace
}  // namespace qel::test
