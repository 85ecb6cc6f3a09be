// SPDX-License-Identifier: BSD-3-Clause
// Many threads at once, places of the user's threads, data at any address, the text of a plan.
#include <atomic>
#include <cstring>
#include <random>
#include <thread>

#include "fft/descriptor/dfti_node.h"
#include "qel/service.h"
#include "service/native_level.h"
#include "service/serv.h"
#include "tests/fft/reference.h"
#include "tests/fft/support.h"
#include "tests/support/guarded.h"

namespace qel::test {
namespace {

template <class R>
constexpr int kPrecision = sizeof(R) == sizeof(double) ? DFTI_DOUBLE : DFTI_SINGLE;

/// A forward transform from creation to release; the line, transformed.
template <class R>
std::vector<std::complex<R>> transform_alone(int n, bool scrambled) {
  owned_descriptor d(kPrecision<R>, DFTI_COMPLEX, {n});
  if (scrambled) DftiSetValue(d.handle, DFTI_ORDERING, DFTI_BACKWARD_SCRAMBLED);
  DftiSetValue(d.handle, DFTI_BACKWARD_SCALE, 0.5);
  EXPECT_EQ(DftiCommitDescriptor(d.handle), 0);
  auto x = random_line<R>(static_cast<std::size_t>(n), static_cast<unsigned>(n));
  EXPECT_EQ(DftiComputeForward(d.handle, x.data()), 0);
  return x;
}

TEST(Concurrency, SixteenThreadsPlanComputeAndRelease) {
  qel_set_num_threads(1);
  const int lengths[] = {1, 8, 37, 60, 128, 151, 1000, 1009, 4096, 5184, 1 << 14, 1 << 17};
  std::vector<std::vector<std::complex<double>>> alone;
  for (const int n : lengths) alone.push_back(transform_alone<double>(n, n > 4096));
  std::atomic<int> wrong{0};
  std::vector<std::thread> threads;
  for (unsigned t = 0; t < 16; ++t) {
    threads.emplace_back([&, t] {
      std::mt19937 choose(t);
      for (int i = 0; i < 12; ++i) {
        const std::size_t which = choose() % std::size(lengths);
        if (transform_alone<double>(lengths[which], lengths[which] > 4096) != alone[which]) ++wrong;
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
}

TEST(Concurrency, NoFreePlaceIsAStatus) {
  for (const int domain : {DFTI_COMPLEX, DFTI_REAL}) {
    const owned_descriptor d(DFTI_DOUBLE, domain, {100});
    DftiSetValue(d.handle, DFTI_NUMBER_OF_USER_THREADS, 2);
    DftiSetValue(d.handle, DFTI_FORWARD_SCALE, 0.3);  // a fast plan needs no places
    ASSERT_EQ(DftiCommitDescriptor(d.handle), 0);
    auto* node = reinterpret_cast<fft::dfti_node*>(d.handle);
    const auto before = random_line<double>(101, 1);
    auto x = before;
    node->user_thread_busy[0] = node->user_thread_busy[1] = 1;
    EXPECT_EQ(DftiComputeForward(d.handle, x.data()), 8);
    EXPECT_EQ(x, before);
    node->user_thread_busy[1] = 0;
    EXPECT_EQ(DftiComputeForward(d.handle, x.data()), 0);
    EXPECT_EQ(node->user_thread_busy[1], 0) << "the place was not given back";
  }
}

/// Forward, then backward in place, on so many threads.
template <class R>
std::vector<std::complex<R>> there_and_back(int n, int threads) {
  qel_set_num_threads(threads);
  const owned_descriptor out(kPrecision<R>, DFTI_COMPLEX, {n}), in_place(kPrecision<R>, DFTI_COMPLEX, {n});
  DftiSetValue(out.handle, DFTI_PLACEMENT, DFTI_NOT_INPLACE);
  DftiSetValue(in_place.handle, DFTI_BACKWARD_SCALE, 0.7);
  EXPECT_EQ(DftiCommitDescriptor(out.handle), 0);
  EXPECT_EQ(DftiCommitDescriptor(in_place.handle), 0);
  qel_set_num_threads(1);
  const bool long_enough = sizeof(R) == sizeof(double) || n >= 150000 || (threads > 3 && n > 50000);
  EXPECT_EQ(reinterpret_cast<fft::dfti_node*>(out.handle)->threads > 1, threads > 1 && long_enough) << n;
  const auto size = static_cast<std::size_t>(n);
  auto x = random_line<R>(size, 3);
  guarded<std::complex<R>> y(size);
  EXPECT_EQ(DftiComputeForward(out.handle, x.data(), y.data()), 0);
  std::memcpy(x.data(), y.data(), size * sizeof x[0]);
  EXPECT_EQ(DftiComputeBackward(in_place.handle, y.data()), 0);
  x.insert(x.end(), y.data(), y.data() + size);
  return x;
}

TEST(Concurrency, NativeLinesHaveTheSameBitsOnAnyNumberOfThreads) {
  if (serv_cpu_level() < kFirstNativeLevel) GTEST_SKIP() << "other levels split lines in ways of their own";
  serv_set_dynamic(0);  // more threads than there are processors, too
  // Passes, some of them of any radix, then convolutions, rows times columns.
  for (const int n :
       {1 << 15, 30030, 37 * 1024, 149 * 149 * 2, 65520, 1 << 16, 65537, 65539, 150001, 1 << 18, 163841}) {
    const auto wide = there_and_back<double>(n, 1);
    const auto narrow = there_and_back<float>(n, 1);
    for (const int threads : {2, 3, 5}) {
      EXPECT_EQ(there_and_back<double>(n, threads), wide) << n << " on " << threads;
      EXPECT_EQ(there_and_back<float>(n, threads), narrow) << n << " on " << threads;
    }
  }
  serv_set_dynamic(1);
}

/// The same bits at any address, nothing touched outside.
template <class R>
void check_alignments(int domain, const std::vector<int>& lengths, bool in_place) {
  SCOPED_TRACE(testing::Message() << testing::PrintToString(lengths) << " domain " << domain);
  const owned_descriptor d(kPrecision<R>, domain, lengths);
  DftiSetValue(d.handle, DFTI_PLACEMENT, in_place ? DFTI_INPLACE : DFTI_NOT_INPLACE);
  DftiSetValue(d.handle, DFTI_PACKED_FORMAT, DFTI_PACK_FORMAT);
  ASSERT_EQ(DftiCommitDescriptor(d.handle), 0);
  std::size_t reals = domain == DFTI_COMPLEX ? 2 : 1;
  for (const int n : lengths) reals *= static_cast<std::size_t>(n);
  std::vector<R> x(reals), first(reals);
  for (std::size_t i = 0; i < reals; ++i) x[i] = static_cast<R>(std::sin(static_cast<double>(i * i)));
  for (const std::size_t misalignment : {0, 1, 4, 8, 12}) {
    for (auto* compute : {DftiComputeForward, DftiComputeBackward}) {
      guarded<R> in(reals, misalignment), out(reals, 15 - misalignment);
      in.assign(x);
      ASSERT_EQ(compute(d.handle, in.data(), out.data()), 0);
      const R* result = in_place ? in.data() : out.data();
      if (misalignment == 0 && compute == DftiComputeForward)
        std::memcpy(first.data(), result, reals * sizeof(R));
      if (compute == DftiComputeForward) {
        EXPECT_EQ(std::memcmp(result, first.data(), reals * sizeof(R)), 0) << misalignment;
      }
    }
  }
}

TEST(Concurrency, SameBitsAtAnyAddress) {
  for (const bool in_place : {true, false}) {
    for (const int n :
         {1, 5, 8, 16, 17, 32, 60, 64, 100, 101, 128, 625, 1009, 2048, 1 << 14, 1 << 17, 30030}) {
      check_alignments<double>(DFTI_COMPLEX, {n}, in_place);
      check_alignments<float>(DFTI_COMPLEX, {n}, in_place);
      check_alignments<double>(DFTI_REAL, {n}, in_place);
      check_alignments<float>(DFTI_REAL, {n}, in_place);
    }
    for (const auto& lengths : std::vector<std::vector<int>>{{9, 20}, {33, 8}, {4, 5, 6}}) {
      check_alignments<double>(DFTI_COMPLEX, lengths, in_place);
      check_alignments<float>(DFTI_REAL, lengths, in_place);
    }
  }
}

TEST(Explain, NamesThePlan) {
  const owned_descriptor d(DFTI_DOUBLE, DFTI_COMPLEX, {5, 149});
  char text[400] = "?", cut[10];
  EXPECT_EQ(qel_dfti_explain(d.handle, text, sizeof text), 2);
  EXPECT_EQ(qel_dfti_explain(nullptr, text, sizeof text), 5);
  ASSERT_EQ(DftiCommitDescriptor(d.handle), 0);
  EXPECT_EQ(qel_dfti_explain(d.handle, nullptr, 5), 3);
  ASSERT_EQ(qel_dfti_explain(d.handle, text, sizeof text), 0);
  for (const char* part :
       {"precision double", "plan general", "line_149 ", "line_5 straight-line kernel", "flops "}) {
    EXPECT_NE(std::strstr(text, part), nullptr) << part << " in\n" << text;
  }
  ASSERT_EQ(qel_dfti_explain(d.handle, cut, sizeof cut), 0);
  EXPECT_EQ(std::strlen(cut), 9u);
}

}  // namespace
}  // namespace qel::test
