// SPDX-License-Identifier: BSD-3-Clause
// The decisions on lengths as tables.
#include "fft/planning/line_plan.h"

#include <gtest/gtest.h>

#include <vector>

namespace qel::fft {
namespace {

using enum line_method;

TEST(LinePlan, MethodFactorsAndWorkspace) {
  const struct {
    core_int length;
    line_method method;
    std::vector<int> factors;
    int workspace;
  } cases[] = {
      {1, kStraight, {}, 0},
      {15, kStraight, {}, 0},
      {16, kStraight, {}, 0},
      {17, kDirect, {}, 17 * 16 + 32},
      {32, kPowerOfTwo, {}, 0},
      {18, kMixed, {3, 3, 2}, 18 * 16 + 64},
      {24, kMixed, {2, 3, 4}, 24 * 16 + 64},
      {25, kMixed, {5, 5}, 25 * 16 + 64},
      {48, kMixed, {3, 4, 4}, 48 * 16 + 64},
      {26, kMixed, {13, 2}, (13 + 26) * 16 + 64},
      {143, kMixed, {11, 13}, (13 + 143) * 16 + 64},
      {149, kDirect, {}, 149 * 16 + 32},
      {151, kBluestein, {}, 512 * 32 + 32},
      {298, kMixed, {149, 2}, (149 + 298) * 16 + 64},
      {1920, kMixed, {2, 5, 4, 4, 3, 4}, 1920 * 16 + 64},
      {22650, kBluestein, {}, 65536 * 32 + 32},
      {32771, kBluestein, {}, 131072 * 16 + 32},
      {149 * 149, kMixed, {149, 149}, (149 + 149 * 149) * 16 + 64},
      {core_int{1} << 26, kPowerOfTwo, {}, 0},
      {core_int{1} << 27, kRefused, {}, 0},
      {(core_int{1} << 26) + 4, kRefused, {}, 0},
      {33554467, kRefused, {}, 0},
      {16777259, kBluestein, {}, (1 << 26) * 16 + 32},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.length);
    const line_plan plan = plan_line(c.length);
    EXPECT_EQ(plan.method, c.method);
    EXPECT_EQ(std::vector<int>(plan.factors, plan.factors + plan.factor_count), c.factors);
    EXPECT_EQ(plan.workspace_bytes, c.workspace);
  }
}

TEST(LinePlan, ScrambledOrder) {
  const struct {
    core_int length;
    bool scrambled;
    int workspace;
  } cases[] = {{16, false, 0},
               {32, false, 0},
               {64, true, 0},
               {4900, false, 4900 * 16 + 64},
               {5184, true, 0},
               {13 * 512, true, 13 * 16 + 64},
               {5003, false, 16384 * 32 + 32}};
  for (const auto& c : cases) {
    const line_plan plan = plan_line(c.length, true);
    EXPECT_EQ(plan.scrambled, c.scrambled) << c.length;
    EXPECT_EQ(plan.workspace_bytes, c.workspace) << c.length;
  }
}

TEST(LinePlan, PlanesAndTheirCachedBlocks) {
  const struct {
    core_int length;
    bool in_twos, in_fours;
    int cached_row;
  } cases[] = {{18, true, false, 0},   {20, true, true, 0},          {45, false, false, 0},
               {500, true, true, 0},   {506, true, false, 1},        {1000, true, true, 1},
               {46080, true, true, 4}, {4 * 3 * 149, true, true, 1}, {4 * 149 * 149, true, true, 1},
               {97, false, false, 0},  {128, false, false, 0}};
  for (const auto& c : cases) {
    const line_plan plan = plan_line(c.length);
    EXPECT_EQ(runs_in_planes(plan, 2), c.in_twos) << c.length;
    EXPECT_EQ(runs_in_planes(plan, 4), c.in_fours) << c.length;
    EXPECT_EQ(first_cached_row(plan), c.cached_row) << c.length;
  }
  EXPECT_FALSE(runs_in_planes(plan_line(5184, true), 2));
}

TEST(LinePlan, PassesOfPowersOfTwo) {
  const struct {
    int order;
    std::vector<int> radices;
  } cases[] = {
      {6, {8, 8}},           {7, {8, 4, 4}},        {8, {4, 8, 8}},           {9, {8, 8, 8}},
      {10, {8, 8, 4, 4}},    {11, {4, 8, 8, 8}},    {12, {8, 8, 8, 8}},       {13, {8, 8, 8, 4, 4}},
      {14, {8, 8, 8, 8, 4}}, {15, {8, 8, 8, 8, 8}}, {16, {8, 8, 8, 8, 4, 4}},
  };
  const auto radices = [](const pow2_passes& passes) {
    std::vector<int> result;
    for (int i = 0; i < passes.count; ++i) result.push_back(1 << passes.orders[i]);
    return result;
  };
  for (const auto& c : cases) EXPECT_EQ(radices(plan_pow2_passes(c.order)), c.radices) << c.order;
  EXPECT_EQ(radices(plan_combination(6)), (std::vector<int>{8, 8}));
  EXPECT_EQ(radices(plan_combination(8)), (std::vector<int>{8, 8, 4}));
}

TEST(LinePlan, SplitOfLongPowersOfTwo) {
  const int k[] = {6, 6, 6, 6, 8, 8, 8}, c[] = {10, 10, 12, 12, 12, 14, 14};
  for (int i = 0; i < 7; ++i) {
    const pow2_split split = plan_pow2_split(17 + i);
    EXPECT_EQ(split.k, k[i]) << 17 + i;
    EXPECT_EQ(split.c, c[i]) << 17 + i;
  }
}

}  // namespace
}  // namespace qel::fft
