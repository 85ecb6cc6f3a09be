// SPDX-License-Identifier: BSD-3-Clause
// The thread rules of level 1: vector lengths by routine, tuned one by one, and the decision over them. Each
// count of threads pays from some length on, which on SSSE3 processors depends on the second cache.
#include "blas/level1/thread_rules.h"

#include "service/serv.h"

namespace qel {
namespace {

constexpr core_int kNone = 0;  // no such rule: as an upper limit nothing lies below it

/// All values are vector lengths in elements.
struct thread_rule {
  core_int fork_from, fork_from_ssse3;                        // shorter vectors run serially
  core_int four_below, two_from;                              // SSE4.2 and later
  core_int small_four_below, small_16_below, small_two_from;  // SSSE3, second cache up to 3 MiB
  core_int large_two_below, large_four_below;                 // SSSE3, larger or unknown
};

// The values are uneven because each routine was tuned alone; keep them as they are.
// clang-format off
//                            |----- SSE4.2 -----|  |-- second cache <= 3 MiB --|  |---- larger ----|
//                fork   SSSE3    4 thr   2 thr     4 thr   16 thr   2 thr     2 thr   4 thr
//                from    from    below    from     below    below    from     below   below
constexpr thread_rule kRules[] = {
  /* sdot  */   {  5001,  kNone,   30000,  kNone,   35000,   60000,   6000,    8000,  20000 },
  /* ddot  */   {  2501,  kNone,   20000,  kNone,   15000,   40000,   3000,    5000,  10000 },
  /* cdotc */   {  2001,   3001,   20000,   2500,   25000,   40000,   4000,    4000,  15000 },
  /* saxpy */   {  4001,   4901,   25000,   6000,   30000,   55000,   5000,    6000,  18000 },
  /* daxpy */   {  2001,   2501,   15000,   4000,   25000,   35000,   3000,    2900,  15000 },  // 2900 under 3000: tuned so
  /* caxpy */   {  2001,   3001,   20000,   3000,   20000,   40000,   3000,    5000,  15000 },
  /* scopy */   {  5001,   6001,   45000,  kNone,   55000,   kNone,   6000,    8000,  20000 },
  /* dcopy */   {  2001,   3001,   20000,   2500,   25000,   30000,   3000,    4000,  10000 },
  /* ccopy */   {  2501,   3001,   20000,  kNone,   25000,   kNone,   3000,    4000,   8000 },
};
// clang-format on
constexpr core_int kZaxpyForkFrom = 2001, kZcopyForkFrom = 1601;
constexpr int kSmallCache = 0x300000;

constexpr core_int shortest_fork() {
  core_int shortest = kZaxpyForkFrom < kZcopyForkFrom ? kZaxpyForkFrom : kZcopyForkFrom;
  for (const thread_rule& rule : kRules) {
    if (rule.fork_from < shortest) shortest = rule.fork_from;
  }
  return shortest;
}
static_assert(shortest_fork() == kShortestFork);

bool forks_natively_only(level1_member member) { return member > level1_member::zcopy; }
bool forks_to_two_only(level1_member member) {
  return member == level1_member::zaxpy || member == level1_member::zcopy;
}
const thread_rule& rule_of(level1_member member) { return kRules[static_cast<int>(member)]; }
core_int fork_length(level1_member member) {
  if (member == level1_member::zaxpy) return kZaxpyForkFrom;
  if (member == level1_member::zcopy) return kZcopyForkFrom;
  return rule_of(member).fork_from;
}

level1_choice limited_on_sse42(const thread_rule& rule, core_int n, int threads) {
  if (n < rule.four_below && threads > 4) return {4, "at most 4 threads for this length"};
  if (n < rule.two_from && threads == 2) return {1, "two threads don't pay for this length"};
  return {threads, "all threads of the domain"};
}

level1_choice limited_on_ssse3(const thread_rule& rule, core_int n, int threads, const int caches[5]) {
  if (caches[0] != 0 && caches[2] <= kSmallCache) {
    if (n < rule.small_four_below) {
      if (threads > 4) return {4, "at most 4 threads for this length"};
    } else if (n < rule.small_16_below && threads > 16) {
      return {16, "at most 16 threads for this length"};
    }
    if (n < rule.small_two_from && threads == 2) return {1, "two threads don't pay for this length"};
  } else if (n < rule.large_two_below) {
    if (threads >= 3) return {2, "at most 2 threads for this length"};
  } else if (n < rule.large_four_below && threads > 4) {
    return {4, "at most 4 threads for this length"};
  }
  return {threads, "all threads of the domain"};
}

}  // namespace

level1_choice choose_level1_threads(const level1_facts& facts) {
  if (facts.level > 4) return choose_native_level1_threads(facts);
  const core_int n = facts.n;
  if (forks_natively_only(facts.member)) return {1, "no threads on this processor level"};
  if (n < fork_length(facts.member)) return {1, "short vector"};
  // Level 4 is asked for rather than found, and was never tuned.
  const bool is_sse42 = facts.level == 3;
  if (!is_sse42 && facts.level != 2) return {1, "no threads on this processor level"};
  const bool two_only = forks_to_two_only(facts.member);
  if (!two_only && !is_sse42 && n < rule_of(facts.member).fork_from_ssse3) return {1, "short vector"};
  if (facts.incx == 0 || facts.incy == 0) return {1, "stride 0"};
  if (facts.threads <= 1) return {1, "one thread in the domain"};
  if (two_only) {
    // Kept: without dynamic adjustment these two run serially, while all others then take every thread.
    if (!facts.dynamic) return {1, "no dynamic adjustment"};
    return {2, "two threads"};
  }
  if (!facts.dynamic) return {facts.threads, "all threads, no dynamic adjustment"};
  if (is_sse42) return limited_on_sse42(rule_of(facts.member), n, facts.threads);
  return limited_on_ssse3(rule_of(facts.member), n, facts.threads, facts.caches);
}

level1_choice explain_level1_threads(level1_member member, core_int n, core_int incx, core_int incy) {
  level1_facts facts{member, n, incx, incy, serv_cpu_level(), 1, false, {}};
  // What is not needed is not asked for: levels without threads stay without thread and cache queries.
  const bool native = facts.level > 4;
  const bool forks = native || facts.level == 2 || facts.level == 3;
  if (forks && (native || !forks_natively_only(member)) &&
      n >= (native ? native_fork_length(member) : fork_length(member))) {
    facts.threads = serv_threads_for_domain(1);
    facts.dynamic = serv_threads_dynamic() == 1;
    if (facts.level == 2 && facts.dynamic) serv_cache_sizes(facts.caches);
  }
  return choose_level1_threads(facts);
}

}  // namespace qel
