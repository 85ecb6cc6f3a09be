// SPDX-License-Identifier: BSD-3-Clause
// The thread rules of level 1 on native levels. A region costs 2 to 3 microseconds while its threads are
// awake, much more while they sleep, so a vector is cut only from a length on whose serial time is 5 to 8
// microseconds: measured with two threads of an AVX2 processor, vectors in the second cache. Since all types
// move about as many bytes in that time, the rules are in bytes of one vector.
#include <algorithm>
#include <iterator>

#include "blas/level1/thread_rules.h"

namespace qel {
namespace {

// Bytes of a vector from which two threads pay.
constexpr core_int kPairs = 320 * 1024;       // two vectors, of which one changes or none
constexpr core_int kTwoChanged = 224 * 1024;  // two vectors that both change
constexpr core_int kOne = 576 * 1024;         // one vector
constexpr core_int kSearch = 512 * 1024;      // the one vector of a search

struct native_rule {
  const char* name;
  core_int fork_bytes, element_bytes;
  constexpr core_int fork_length() const { return fork_bytes / element_bytes; }
};
// In the order of level1_member.
constexpr native_rule kRules[] = {
    {"sdot", kPairs, 4},       {"ddot", kPairs, 8},        {"cdotc", kPairs, 8},
    {"saxpy", kPairs, 4},      {"daxpy", kPairs, 8},       {"caxpy", kPairs, 8},
    {"scopy", kPairs, 4},      {"dcopy", kPairs, 8},       {"ccopy", kPairs, 8},
    {"zaxpy", kPairs, 16},     {"zcopy", kPairs, 16},      {"cdotu", kPairs, 8},
    {"zdotu", kPairs, 16},     {"zdotc", kPairs, 16},      {"sscal", kOne, 4},
    {"dscal", kOne, 8},        {"cscal", kOne, 8},         {"zscal", kOne, 16},
    {"csscal", kOne, 8},       {"zdscal", kOne, 16},       {"sswap", kTwoChanged, 4},
    {"dswap", kTwoChanged, 8}, {"cswap", kTwoChanged, 8},  {"zswap", kTwoChanged, 16},
    {"sasum", kOne, 4},        {"dasum", kOne, 8},         {"scasum", kOne, 8},
    {"dzasum", kOne, 16},      {"snrm2", kOne, 4},         {"dnrm2", kOne, 8},
    {"scnrm2", kOne, 8},       {"dznrm2", kOne, 16},       {"isamax", kSearch, 4},
    {"idamax", kSearch, 8},    {"icamax", kSearch, 8},     {"izamax", kSearch, 16},
    {"isamin", kSearch, 4},    {"idamin", kSearch, 8},     {"icamin", kSearch, 8},
    {"izamin", kSearch, 16},   {"srot", kTwoChanged, 4},   {"drot", kTwoChanged, 8},
    {"csrot", kTwoChanged, 8}, {"zdrot", kTwoChanged, 16}, {"srotm", kTwoChanged, 4},
    {"drotm", kTwoChanged, 8},
};
static_assert(std::size(kRules) == kLevel1Members);

constexpr core_int shortest_fork() {
  core_int shortest = kRules[0].fork_length();
  for (const native_rule& rule : kRules) shortest = std::min(shortest, rule.fork_length());
  return shortest;
}
static_assert(shortest_fork() == kShortestNativeFork);

const native_rule& rule_of(level1_member member) { return kRules[static_cast<int>(member)]; }

}  // namespace

const char* name_of(level1_member member) { return rule_of(member).name; }

core_int native_fork_length(level1_member member) { return rule_of(member).fork_length(); }

level1_choice choose_native_level1_threads(const level1_facts& facts) {
  const core_int fork_length = native_fork_length(facts.member);
  if (facts.n < fork_length) return {1, "short vector"};
  if (facts.incx == 0 || facts.incy == 0) return {1, "stride 0"};
  if (facts.threads <= 1) return {1, "one thread in the domain"};
  if (!facts.dynamic) return {facts.threads, "all threads, no dynamic adjustment"};
  // Two at the shortest length; every further thread wants half as much again.
  const core_int paying = facts.n / (fork_length / 2);
  if (paying < facts.threads) return {static_cast<int>(paying), "as many threads as pay for this length"};
  return {facts.threads, "all threads of the domain"};
}

}  // namespace qel
