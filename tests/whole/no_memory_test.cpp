// SPDX-License-Identifier: BSD-3-Clause
// Memory that fails at the k-th request, k = 1, 2, ... until a call needs no more, or fails from there on:
// every entry and class says so or takes its simpler way to the same result, gives back what it took, and
// works the next time. Twice: each request reaching the platform, on three threads; and with the library's
// own cache, on one thread that is new to it.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <set>
#include <thread>

#include "qel/service.h"
#include "tests/support/entry_table.h"
#include "tests/support/failing_memory.h"
#include "tests/support/stateful_calls.h"

namespace qel::test {
namespace {

/// What a run came to: it said that memory was out, or its distance to the result that is right.
struct ending {
  size_t failed = 0;
  bool told = false;
  double distance = 0;
};
using trial = std::function<ending(size_t k, failing how)>;

bool cached() {
  const char* const disabled = std::getenv("QEL_DISABLE_FAST_MM");
  return disabled == nullptr || *disabled == '\0';
}

/// Runs with each request failing; returns how many there are.
size_t fail_each(const std::string& name, double tolerance, const trial& run) {
  const auto run_one = [&](size_t k, failing how) {
    ending one;
    if (cached()) {
      // The cache keeps a slot, and its thread's record, for a request that failed: no counting here.
      QEL_FreeBuffers();
      std::thread([&] { one = run(k, how); }).join();
    } else {
      const long before = blocks_held();
      one = run(k, how);
      EXPECT_EQ(before, blocks_held()) << name << " keeps blocks when request " << k << " fails";
    }
    if (one.told) {
      EXPECT_GT(one.failed, 0u) << name << " has no memory though there is enough, " << k;
    } else {
      EXPECT_LE(one.distance, tolerance) << name << " when request " << k << " fails";
    }
    return one.failed;
  };
  constexpr size_t kMost = 2000;
  for (const failing how : {failing::one, failing::all_from_there}) {
    for (size_t k = 1; k < kMost && !testing::Test::HasFailure(); ++k) {
      if (run_one(k, how) == 0) {
        if (how == failing::all_from_there) return k - 1;
        break;
      }
      if (k % 4 == 1) run_one(0, how);
    }
  }
  return 0;
}

class NoMemory : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    setenv("QEL_DYNAMIC", "FALSE", 1);
    qel_set_num_threads(cached() ? 1 : 3);
    take_allocator();
  }
  // Reports are printed: there are hundreds.
  void SetUp() override { testing::internal::CaptureStdout(); }
  void TearDown() override {
    const std::string text = testing::internal::GetCapturedStdout();
    if (HasFailure()) std::cout << text;
  }
};

TEST_F(NoMemory, EntriesTakeAnotherWayOrSaySo) {
  constexpr int kNoMemoryInfo = -1023, kNoMemoryCode = 1079;
  size_t requests = 0;
  for (const entry_row& row : entry_rows()) {
    for (const char* letter = row.letters; *letter != '\0'; ++letter) {
      for (const int order : {40, 130}) {
        // Spectra make many requests and take long.
        if (order > 40 && std::strchr(row.arguments, '?') != nullptr) continue;
        entry_call right(row, *letter, order);
        const std::vector<double> untouched = right.result();
        right.make();
        const std::vector<double> result = right.result();
        requests += fail_each(right.name(), right.tolerance(), [&](size_t k, failing how) {
          entry_call call(row, *letter, order);
          ending end;
          qel_clear_last_error();
          fail_request(k, how);
          call.make();
          end.failed = requests_failed();
          end.told = call.info() == kNoMemoryInfo || qel_last_error()->code == kNoMemoryCode;
          end.distance = call.distance(result);
          if (end.told) {
            EXPECT_TRUE(call.info() == kNoMemoryInfo || call.info() == 77) << call.name();
            EXPECT_EQ(call.result(), untouched) << call.name() << " touches an array";
          } else {
            EXPECT_EQ(call.info(), right.info()) << call.name();
          }
          return end;
        });
        if (HasFailure()) return;
      }
    }
  }
  EXPECT_GT(requests, cached() ? 20u : 200u);
}

TEST_F(NoMemory, HandlesAndClassesTakeAnotherWayOrSaySo) {
  for (const life_row& row : life_rows()) {
    SCOPED_TRACE(row.name);
    life right(40);
    row.run(right);
    ASSERT_FALSE(right.told);
    const size_t requests = fail_each(row.name, 1e-8, [&](size_t k, failing how) {
      life one(40);
      ending end;
      one.begin = [&] { fail_request(k, how); };
      one.end = [&] { end.failed = requests_failed(); };
      row.run(one);
      end.told = one.told;
      double largest = 1;
      for (size_t i = 0; i < right.result.size(); ++i) {
        const double difference = std::fabs(one.result[i] - right.result[i]);
        if (!(difference <= end.distance) && right.result[i] == right.result[i]) end.distance = difference;
        largest = std::max(largest, std::fabs(right.result[i]));
      }
      end.distance /= largest;
      return end;
    });
    EXPECT_TRUE(requests > 0 || std::string(row.name) == "vector math");
    if (HasFailure()) return;
  }
}

/// Names that need no row: they take no memory, no data and no handle, or have tests of their own.
const std::set<std::string> kOthers = {"QEL_Domatcopy",
                                       "pardisoinit",
                                       "qel_pardiso_set_progress",
                                       "DftiErrorClass",
                                       "qel_dfti_explain",
                                       "qel_dfti_message",
                                       "qel_dfti_pack_d",
                                       "qel_dfti_pack_s",
                                       "qel_dfti_unpack_d",
                                       "qel_dfti_unpack_s",
                                       "qel_dfti_validate",
                                       "QEL_FreeBuffers",
                                       "qel_clear_last_error",
                                       "qel_enable_native",
                                       "qel_get_num_threads",
                                       "qel_last_error",
                                       "qel_memory_stats",
                                       "qel_set_allocator",
                                       "qel_set_num_threads",
                                       "qel_set_num_threads_local",
                                       "qel_thread_free_buffers",
                                       "qel_verbose",
                                       "xerbla",
                                       "DftiCreateDescriptor_d_1d",
                                       "DftiCreateDescriptor_s_1d",
                                       "DftiCreateDescriptor_d_md",
                                       "DftiCreateDescriptor_s_md",
                                       "qel_ddnscsr"};

TEST(Tables, HaveEveryPublicEntry) {
  std::set<std::string> listed = kOthers;
  for (const entry_row& row : entry_rows())
    for (const char* letter = row.letters; *letter != '\0'; ++letter)
      listed.insert(entry_call(row, *letter, 4).name());
  for (const life_row& row : life_rows()) {
    std::istringstream names(row.covers);
    for (std::string name; names >> name;) listed.insert(name);
  }
  std::ifstream exports(QEL_EXPORTS);
  ASSERT_TRUE(exports);
  for (std::string name; std::getline(exports, name);) {
    if (name.empty() || name[0] == '#' || name.back() == '_') continue;
    EXPECT_TRUE(listed.count(name) == 1) << name;
  }
}

}  // namespace
}  // namespace qel::test
