// SPDX-License-Identifier: BSD-3-Clause
// When level-1 routines fork, as a table: both sides of every length, on every level, without any thread.
#include "blas/level1/thread_rules.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace qel {
namespace {

using enum level1_member;

/// What the decision sees of the second cache.
enum class cache { kSmall, kAtLimit, kLarge, kUnknown };
level1_facts facts_of(level1_member member, core_int n, int level, int threads, cache second) {
  level1_facts facts{member, n, 1, 1, level, threads, true, {2, 32768, 0x300000, 0, 0}};
  if (second == cache::kSmall) facts.caches[2] = 0x40000;
  if (second == cache::kLarge) facts.caches[2] = 0x300001;
  if (second == cache::kUnknown) facts.caches[0] = facts.caches[2] = 0;
  return facts;
}

constexpr core_int kNo = -1;
constexpr core_int kFar = 1'000'000;

/// Lengths from which something changes; kNo where nothing does.
struct member_lengths {
  const char* name;
  level1_member member;
  core_int fork, fork_ssse3, four, two, small_four, small_16, small_two, large_two, large_four;
};
// clang-format off
constexpr member_lengths kMembers[] = {
    {"sdot",  sdot,  5001,  kNo, 30000,  kNo, 35000, 60000, 6000, 8000, 20000},
    {"ddot",  ddot,  2501,  kNo, 20000,  kNo, 15000, 40000, 3000, 5000, 10000},
    {"cdotc", cdotc, 2001, 3001, 20000, 2500, 25000, 40000, 4000, 4000, 15000},
    {"saxpy", saxpy, 4001, 4901, 25000, 6000, 30000, 55000, 5000, 6000, 18000},
    {"daxpy", daxpy, 2001, 2501, 15000, 4000, 25000, 35000, 3000, 2900, 15000},
    {"caxpy", caxpy, 2001, 3001, 20000, 3000, 20000, 40000, 3000, 5000, 15000},
    {"scopy", scopy, 5001, 6001, 45000,  kNo, 55000,   kNo, 6000, 8000, 20000},
    {"dcopy", dcopy, 2001, 3001, 20000, 2500, 25000, 30000, 3000, 4000, 10000},
    {"ccopy", ccopy, 2501, 3001, 20000,  kNo, 25000,   kNo, 3000, 4000,  8000},
};
// clang-format on
constexpr level1_member kPairMembers[] = {zaxpy, zcopy};
constexpr int kCounts[] = {1, 2, 3, 4, 5, 16, 17, 40};

int choice(level1_member member, core_int n, int level, int threads, cache second = cache::kSmall) {
  return choose_level1_threads(facts_of(member, n, level, threads, second)).threads;
}

struct limit_case {
  int asked, wanted;
};
void expect_limits(const std::string& what, level1_member member, core_int n, int level, cache second,
                   std::initializer_list<limit_case> cases) {
  for (const auto& [asked, wanted] : cases) {
    EXPECT_EQ(wanted, choice(member, n, level, asked, second))
        << what << " n " << n << " level " << level << " of " << asked;
  }
}

TEST(Level1Threads, LengthsOfSse42) {
  for (const member_lengths& m : kMembers) {
    const auto at = [&](core_int n, std::initializer_list<limit_case> cases) {
      expect_limits(m.name, m.member, n, 3, cache::kUnknown, cases);
    };
    at(m.fork - 1, {{2, 1}, {3, 1}, {40, 1}});
    at(m.fork, {{1, 1}, {3, 3}, {4, 4}, {5, 4}, {16, 4}, {40, 4}});
    at(m.four - 1, {{4, 4}, {5, 4}, {17, 4}});
    at(m.four, {{2, 2}, {5, 5}, {17, 17}, {40, 40}});
    if (m.two != kNo) {
      at(m.two - 1, {{2, 1}, {3, 3}});
      at(m.two, {{2, 2}});
    } else {
      at(m.fork, {{2, 2}});
    }
  }
}

/// Lengths from which members of one kind fork natively, by size of their elements.
struct native_lengths {
  core_int four_bytes, eight_bytes, sixteen_bytes;
  std::vector<level1_member> fours, eights, sixteens;
};
const native_lengths kNativeMembers[] = {
    {81920,
     40960,
     20480,
     {sdot, saxpy, scopy},
     {ddot, cdotc, cdotu, daxpy, caxpy, dcopy, ccopy},
     {zdotu, zdotc, zaxpy, zcopy}},
    {57344, 28672, 14336, {sswap, srot, srotm}, {dswap, cswap, drot, csrot, drotm}, {zswap, zdrot}},
    {147456,
     73728,
     36864,
     {sscal, sasum, snrm2},
     {dscal, cscal, csscal, dasum, scasum, dnrm2, scnrm2},
     {zscal, zdscal, dzasum, dznrm2}},
    {131072, 65536, 32768, {isamax, isamin}, {idamax, idamin, icamax, icamin}, {izamax, izamin}},
};

TEST(Level1Threads, LengthsOfNativeLevels) {
  int seen = 0;
  const auto check = [&](core_int fork, const std::vector<level1_member>& members) {
    for (const level1_member member : members) {
      ++seen;
      for (const int level : {5, 6}) {
        const auto at = [&](core_int n, std::initializer_list<limit_case> cases) {
          expect_limits(name_of(member), member, n, level, cache::kUnknown, cases);
        };
        at(4096, {{2, 1}, {40, 1}});
        at(fork - 1, {{2, 1}, {40, 1}});
        at(fork, {{1, 1}, {2, 2}, {3, 2}, {40, 2}});
        at(fork / 2 * 3 - 1, {{3, 2}});
        at(fork / 2 * 3, {{2, 2}, {3, 3}, {40, 3}});
        at(20 * fork, {{17, 17}, {40, 40}, {41, 40}});
      }
      EXPECT_EQ(fork, native_fork_length(member)) << name_of(member);
    }
  };
  for (const native_lengths& kind : kNativeMembers) {
    check(kind.four_bytes, kind.fours);
    check(kind.eight_bytes, kind.eights);
    check(kind.sixteen_bytes, kind.sixteens);
  }
  EXPECT_EQ(kLevel1Members, seen);
}

TEST(Level1Threads, LengthsOfSsse3WithSmallSecondCache) {
  for (const member_lengths& m : kMembers) {
    const core_int fork = m.fork_ssse3 == kNo ? m.fork : m.fork_ssse3;
    for (const cache second : {cache::kSmall, cache::kAtLimit}) {
      const auto at = [&](core_int n, std::initializer_list<limit_case> cases) {
        expect_limits(m.name, m.member, n, 2, second, cases);
      };
      at(fork - 1, {{2, 1}, {3, 1}, {40, 1}});
      at(fork, {{1, 1}, {3, 3}, {4, 4}, {5, 4}, {40, 4}});
      at(m.small_four - 1, {{4, 4}, {5, 4}, {17, 4}});
      if (m.small_16 == kNo) {
        at(m.small_four, {{5, 5}, {17, 17}, {40, 40}});
      } else {
        at(m.small_four, {{5, 5}, {16, 16}, {17, 16}, {40, 16}});
        at(m.small_16 - 1, {{16, 16}, {17, 16}});
        at(m.small_16, {{17, 17}, {40, 40}});
      }
      at(m.small_two - 1, {{2, 1}});
      at(std::max(m.small_two, fork), {{2, 2}});
    }
  }
}

TEST(Level1Threads, LengthsOfSsse3WithLargeOrUnknownSecondCache) {
  for (const member_lengths& m : kMembers) {
    const core_int fork = m.fork_ssse3 == kNo ? m.fork : m.fork_ssse3;
    for (const cache second : {cache::kLarge, cache::kUnknown}) {
      const auto at = [&](core_int n, std::initializer_list<limit_case> cases) {
        expect_limits(m.name, m.member, n, 2, second, cases);
      };
      at(fork - 1, {{2, 1}, {40, 1}});
      at(fork, {{1, 1}, {2, 2}, {3, 2}, {4, 2}, {40, 2}});
      at(m.large_two - 1, {{2, 2}, {3, 2}, {17, 2}});
      at(m.large_two, {{2, 2}, {3, 3}, {4, 4}, {5, 4}, {40, 4}});
      at(m.large_four - 1, {{5, 4}});
      at(m.large_four, {{5, 5}, {17, 17}, {40, 40}});
    }
  }
}

// daxpy has two-thread limits on both sides of its large-cache length, in the order opposite to the others'.
TEST(Level1Threads, KeepsUnevenDaxpyLengths) {
  EXPECT_EQ(2, choice(daxpy, 2899, 2, 5, cache::kLarge));
  EXPECT_EQ(4, choice(daxpy, 2900, 2, 5, cache::kLarge));
  EXPECT_EQ(1, choice(daxpy, 2999, 2, 2, cache::kSmall));
  EXPECT_EQ(2, choice(daxpy, 2999, 2, 2, cache::kLarge));
}

TEST(Level1Threads, EveryThreadWithoutDynamicAdjustment) {
  for (const member_lengths& m : kMembers) {
    for (const int level : {2, 3, 5, 6}) {
      for (const int threads : kCounts) {
        const core_int fork = level > 4                           ? native_fork_length(m.member)
                              : level == 2 && m.fork_ssse3 != kNo ? m.fork_ssse3
                                                                  : m.fork;
        level1_facts facts = facts_of(m.member, fork, level, threads, cache::kSmall);
        facts.dynamic = false;
        EXPECT_EQ(threads, choose_level1_threads(facts).threads) << m.name << ' ' << level;
        facts.n = fork - 1;
        EXPECT_EQ(1, choose_level1_threads(facts).threads) << m.name << ' ' << level;
      }
    }
  }
}

TEST(Level1Threads, OtherLevelsAndZeroStridesNeverFork) {
  const auto serial = [](level1_facts facts) {
    for (const bool dynamic : {false, true}) {
      facts.dynamic = dynamic;
      EXPECT_EQ(1, choose_level1_threads(facts).threads)
          << static_cast<int>(facts.member) << ' ' << facts.level;
    }
  };
  for (int member = 0; member < kLevel1Members; ++member) {
    const auto each = static_cast<level1_member>(member);
    for (const int level : {0, 1, 4}) serial(facts_of(each, kFar, level, 8, cache::kSmall));
    for (const int level : {2, 3, 5}) {
      if (each > zcopy && level < 5) {
        serial(facts_of(each, kFar, level, 8, cache::kSmall));
        continue;
      }
      level1_facts facts = facts_of(each, kFar, level, 8, cache::kSmall);
      facts.incx = 0;
      serial(facts);
      facts.incx = -1;
      facts.incy = 0;
      serial(facts);
      facts.incy = -3;
      facts.dynamic = true;
      EXPECT_GT(choose_level1_threads(facts).threads, 1);
    }
  }
}

TEST(Level1Threads, KeepsSerialZaxpyAndZcopyWithoutDynamicAdjustment) {
  for (const level1_member member : kPairMembers) {
    const core_int fork = member == zaxpy ? 2001 : 1601;
    for (const int level : {2, 3}) {
      for (const int threads : kCounts) {
        level1_facts facts = facts_of(member, fork, level, threads, cache::kUnknown);
        EXPECT_EQ(threads < 2 ? 1 : 2, choose_level1_threads(facts).threads);
        facts.n = kFar;
        EXPECT_EQ(threads < 2 ? 1 : 2, choose_level1_threads(facts).threads);
        facts.dynamic = false;
        EXPECT_EQ(1, choose_level1_threads(facts).threads);
        EXPECT_EQ(1, choice(member, fork - 1, level, threads));
      }
    }
  }
}

}  // namespace
}  // namespace qel
