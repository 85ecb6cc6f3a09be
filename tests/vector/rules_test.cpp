// SPDX-License-Identifier: BSD-3-Clause
// When division is threaded: topology from CPUID, the length from which a fork pays, the size of the team.
#include <gtest/gtest.h>

#include <climits>

#include "vector/vml/rules.h"

namespace qel {
namespace {

struct processor {
  const char* vendor;  // EBX, EDX, ECX of leaf 0
  uint32_t logical_per_package, leaf4_cores, leaf8_cores;
};
constinit processor current{"GenuineIntel", 0, 0, 0};

cpuid_answer answer(uint32_t leaf, uint32_t) {
  const auto word = [](int at) {
    uint32_t value = 0;
    for (int i = 3; i >= 0; --i) value = value << 8 | static_cast<unsigned char>(current.vendor[at + i]);
    return value;
  };
  switch (leaf) {
    case 0:
      return {7, word(0), word(8), word(4)};
    case 1:
      return {0, current.logical_per_package << 16, 0, 0};
    case 4:
      return {(current.leaf4_cores - 1) << 26, 0, 0, 0};
    case 0x80000008:
      return {0, 0, current.leaf8_cores - 1, 0};
    default:
      return {};
  }
}

TEST(VmlTopology, ComesFromTheVendorsLeafUnlessItContradictsItself) {
  const struct {
    processor cpu;
    int logical;
    vml_topology want;
  } cases[] = {
      {{"GenuineIntel", 8, 4, 99}, 16, {16, 8, 2}},
      {{"AuthenticAMD", 8, 99, 4}, 16, {16, 8, 2}},
      {{"AuthenticAMD", 2, 1, 2}, 2, {2, 2, 1}},
      {{"GenuineIntel", 16, 8, 1}, 4, {4, 4, 4}},  // no whole package
      {{"GenuineIntel", 0, 8, 1}, 4, {4, 4, 4}},   // no answer
      {{"GenuineIntel", 4, 8, 1}, 4, {4, 4, 4}},   // more cores than processors
  };
  for (const auto& c : cases) {
    current = c.cpu;
    const vml_topology got = read_vml_topology(answer, c.logical);
    EXPECT_EQ(got.logical, c.want.logical);
    EXPECT_EQ(got.cores, c.want.cores) << c.cpu.vendor << c.logical;
    EXPECT_EQ(got.packages, c.want.packages) << c.cpu.vendor << c.logical;
  }
}

TEST(VmlForkLength, IsTheOverheadInElementsAndAtLeastAHundred) {
  const struct {
    vml_topology topology;
    vml_cost_row row;
    int type, want;
  } cases[] = {
      {{1, 1, 1}, kDivisionHa, 0, INT_MAX},  // one processor
      {{8, 4, 1}, kDivisionHa, 5, INT_MAX},  // cost 0
      {{2, 2, 1}, kDivisionHa, 0, 3498},     // 60000 / 17.15
      {{2, 2, 1}, kDivisionHa, 1, 1682},     // 60000 / 35.67
      {{2, 2, 1}, kDivisionLa, 4, 9389},     // 60000 / 6.39
      {{2, 1, 1}, kDivisionEp, 0, 29154},    // 500000 / 17.15
      {{2, 2, 2}, kDivisionHa, 0, 524},      // 9000 / 17.15
      {{4, 4, 4}, kDivisionHa, 1, 252},      // 9000 / 35.67
      {{4, 4, 2}, kDivisionHa, 0, 1516},     // (2/3) 9000 + (1/3) 60000
      {{8, 4, 1}, kDivisionHa, 0, 7163},     // (6/7) 60000 + (1/7) 500000
      {{2, 2, 1}, kDivisionHa, 6, 40960},    // native: by bytes
  };
  for (const auto& c : cases) {
    EXPECT_EQ(vml_fork_length(c.topology, c.row, c.type), c.want) << c.topology.logical << ' ' << c.type;
  }
}

TEST(VmlTeam, GrowsUntilItCostsAsMuchAsTheWork) {
  const struct {
    int threads;
    vml_topology topology;
    int type, n, want;
  } cases[] = {
      {8, {2, 2, 1}, 0, 3498, 1},     // the region alone costs as much
      {8, {2, 2, 1}, 0, 1000000, 2},  // as many as the machine has
      {8, {4, 4, 1}, 0, 5830, 2},     // 60000 / 17.15 = 3498; with three left + 40000: 5830; + 20000: 6997
      {8, {4, 4, 1}, 0, 5831, 3},    {8, {4, 4, 1}, 0, 6998, 4},
      {8, {4, 4, 1}, 0, 1000000, 4}, {3, {4, 4, 1}, 0, 1000000, 3},  // not more than the policy allows
      {0, {2, 2, 1}, 0, 10, 0},      {8, {8, 4, 1}, 5, INT_MAX, 1},  // never on this type
      {8, {8, 8, 1}, 6, 40960, 2},                                   // native
      {8, {8, 8, 1}, 7, 102400, 5},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(vml_refined_threads(c.threads, c.topology, kDivisionHa, c.type, c.n), c.want)
        << c.n << " of type " << c.type;
  }
}

TEST(StoreRule, SendsWhatNoCacheHoldsPastThem) {
  const char* const at = nullptr;
  const struct {
    store_facts facts;
    bool want;
  } cases[] = {
      {{6, 1001, 1000, false, at}, true},  {{7, 1001, 1000, false, at + 8}, true},
      {{6, 1000, 1000, false, at}, false}, {{5, 1001, 1000, false, at}, false},
      {{6, 1001, 1000, true, at}, false},  {{6, 1001, 1000, false, at + 4}, false},
  };
  for (const auto& c : cases) EXPECT_EQ(stores_past_caches(c.facts), c.want) << c.facts.type;
}

TEST(VmlPlan, KeepsResultsInHalfOfTheCache) {
  // 24 bytes an element.
  const struct {
    int n, type;
    bool divides, past_caches;
  } cases[] = {{200000, 6, false, false},
               {200001, 6, false, true},
               {200001, 7, true, true},
               {200001, 5, false, false}};
  for (const auto& c : cases) {
    const vml_plan plan =
        plan_vml({c.divides, kDivisionHa, c.n, c.type, 1, true, {2, 2, 1}, 9600000, false, nullptr});
    EXPECT_EQ(plan.past_caches, c.past_caches) << c.n;
    EXPECT_EQ(plan.threads, 1);
  }
}

}  // namespace
}  // namespace qel
