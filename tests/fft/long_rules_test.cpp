// SPDX-License-Identifier: BSD-3-Clause
// Decisions on long lines, blocks and native plans as tables.
#include "fft/planning/long_rules.h"

#include <gtest/gtest.h>

#include <set>

#include <vector>

#include "fft/planning/box_rules.h"
#include "fft/planning/driver_rules.h"
#include "fft/planning/native_plan.h"
#include "fft/spec/real_spec.h"
#include "qel/dfti.h"

namespace qel::fft {
namespace {

long_facts line(core_int n, int threads, int placement = DFTI_NOT_INPLACE, bool dynamic = false) {
  return {n, 1, DFTI_COMPLEX_COMPLEX, DFTI_ORDERED, placement, 1, 1, threads, 1, dynamic, false, false};
}

TEST(LongRules, TiersAndParts) {
  using enum long_tier;
  long_facts users = line(1 << 20, 4), scrambled = users, strided = users;
  users.user_threads = 2;
  scrambled.ordering = DFTI_BACKWARD_SCRAMBLED;
  const auto native = [](core_int n, int threads, bool single = false) {
    long_facts facts = line(n, threads);
    facts.native = true;
    facts.single = single;
    return facts;
  };
  strided.output_stride = 2;
  const struct {
    long_facts facts;
    long_tier tier;
    core_int rows;
    int parts;
  } cases[] = {
      {line(1 << 20, 1), kNone, 0, 0},
      {line(1 << 20, 4), kFixed, 1 << 10, 4},
      {line(1 << 20, 4, DFTI_INPLACE), kSplit, 1 << 10, 0},
      {line(1 << 20, 9), kSplit, 1 << 10, 0},
      {line(1 << 10, 8), kFixed, 1 << 5, 8},
      {line(1 << 16, 8, DFTI_NOT_INPLACE, true), kFixed, 1 << 8, 4},
      {line(1 << 17, 8, DFTI_NOT_INPLACE, true), kFixed, 1 << 8, 8},
      {line(1 << 14, 4, DFTI_NOT_INPLACE, true), kFixed, 1 << 7, 2},
      {line(1 << 9, 4), kNone, 0, 0},
      {line(1 << 15, 4, DFTI_INPLACE), kNone, 0, 0},
      {line(3 << 15, 3), kSplit, 192, 0},
      {line(3 << 14, 3), kNone, 0, 0},
      {line(65537, 3), kNone, 0, 0},
      {line(core_int{1} << 27, 3), kSplit, 1 << 13, 0},
      {users, kNone, 0, 0},
      {scrambled, kNone, 0, 0},
      {strided, kNone, 0, 0},
      {native(1 << 14, 4), kNone, 0, 0},
      {native(30030, 4), kShared, 0, 2},
      {native(65537, 4), kShared, 0, 4},
      {native(1 << 17, 3, true), kNone, 0, 0},
      {native(1 << 17, 4, true), kShared, 0, 4},
      {native(40000, 8, true), kNone, 0, 0},
      {native(50000, 8, true), kShared, 0, 4},
      {native(150000, 2, true), kShared, 0, 2},
      {native(1 << 20, 4, true), kShared, 0, 4},
      {native(1 << 26, 4), kShared, 0, 4},
      {native(core_int{1} << 27, 3), kSplit, 1 << 13, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.facts.length << " on " << c.facts.threads);
    const long_choice choice = choose_long_tier(c.facts);
    EXPECT_EQ(choice.tier, c.tier) << choice.reason;
    EXPECT_EQ(choice.rows, c.rows);
    EXPECT_EQ(choice.parts, c.parts);
  }
}

TEST(LongRules, FactorsOfASplit) {
  const struct {
    core_int length, rows;
  } cases[] = {{1 << 17, 256}, {100000, 250}, {65537, 1},
               {2 * 33331, 2}, {85085, 119},  {6 * 6 * 6 * 6 * 6 * 6, 216}};
  for (const auto& c : cases) {
    const line_split split = dfti_plan_split(c.length);
    EXPECT_EQ(split.rows, c.rows) << c.length;
    EXPECT_EQ(split.rows * split.columns, c.length);
  }
}

TEST(LongRules, ColumnsDealtToThreads) {
  const struct {
    core_int columns;
    int threads, count;
    core_int width;
  } cases[] = {{7, 4, 1, 7},   {64, 4, 4, 16}, {100, 4, 4, 24},   {16, 4, 2, 8},
               {40, 3, 3, 12}, {47, 3, 3, 12}, {1024, 11, 11, 92}};
  for (const auto& c : cases) {
    const column_groups groups = deal_columns(c.columns, c.threads);
    EXPECT_EQ(groups.count, c.count) << c.columns;
    EXPECT_EQ(groups.width, c.width) << c.columns;
  }
}

TEST(DriverRules, BlocksAndAxes) {
  const struct {
    std::vector<core_int> lengths;  // node 0 first
    core_int stride, width;
  } cases[] = {{{64, 64}, 1, 8},       {{64, 64}, 2, 1},       {{5, 64}, 1, 5},        {{4096, 32, 32}, 1, 4},
               {{4095, 32, 32}, 1, 8}, {{16, 16, 2049}, 1, 4}, {{16, 16, 2048}, 1, 8}, {{3, 3, 4000}, 1, 3}};
  for (const auto& c : cases) {
    EXPECT_EQ(block_width(static_cast<core_int>(c.lengths.size()), c.lengths.data(), c.stride), c.width)
        << c.lengths[0];
  }
  EXPECT_EQ(parallel_axis(2, 0), 1);
  EXPECT_EQ(parallel_axis(2, 1), 0);
  EXPECT_EQ(parallel_axis(4, 0), 3);
  EXPECT_EQ(parallel_axis(4, 2), 3);
  EXPECT_EQ(parallel_axis(4, 3), 2);
}

TEST(NativePlan, RadicesMultiplyToTheLength) {
  for (core_int n = 17; n < 3000; ++n) {
    const autosort_plan plan = plan_autosort(n);
    if (plan.count == 0) continue;
    core_int product = 1;
    for (int i = 0; i < plan.count; ++i) product *= plan.radices[i];
    EXPECT_EQ(product, n);
    EXPECT_GE(plan.count, 2);
    EXPECT_TRUE(has_autosort_pass(plan.radices[0]) && has_autosort_pass(plan.radices[plan.count - 1])) << n;
  }
  EXPECT_EQ(plan_autosort(2 * 151).count, 0);
}

TEST(NativePlan, OrderOfRadices) {
  const struct {
    core_int length;
    std::vector<int> radices;
  } cases[] = {{690, {10, 23, 3}},   {34, {2, 17, 1}},           {30030, {13, 11, 10, 7, 3}},
               {2187, {9, 9, 9, 3}}, {65520, {8, 7, 13, 9, 10}}, {17 * 19, {1, 17, 19, 1}},
               {738, {6, 41, 3}},    {8 * 9 * 31, {8, 31, 9}},   {7 * 11 * 29, {11, 29, 7}}};
  for (const auto& c : cases) {
    const autosort_plan plan = plan_autosort(c.length);
    EXPECT_EQ(std::vector<int>(plan.radices, plan.radices + plan.count), c.radices) << c.length;
  }
}

TEST(NativePlan, MethodsByLength) {
  using enum native_method;
  const struct {
    core_int length;
    native_method method;
    core_int rows, padded;
  } cases[] = {{64, kAutosort, 0, 0},     {37, kAutosort, 0, 0},        {149, kAutosort, 0, 0},
               {151, kRader, 0, 0},       {1009, kRader, 0, 0},         {65537, kRader, 0, 0},
               {167, kBluestein, 0, 384}, {1019, kBluestein, 0, 2048},  {152576, kLong, 256, 0},
               {65536, kAutosort, 0, 0},  {1 << 20, kLong, 1 << 10, 0}, {1000000, kLong, 1000, 0},
               {302, kBluestein, 0, 640}};
  for (const auto& c : cases) {
    const native_plan plan = plan_native_line(c.length);
    EXPECT_EQ(plan.method, c.method) << c.length;
    EXPECT_EQ(plan.rows, c.rows) << c.length;
    EXPECT_EQ(plan.padded, c.padded) << c.length;
  }
}

TEST(NativePlan, PrimitiveRoots) {
  for (const core_int prime : {3, 5, 7, 41, 151, 257, 1009, 2017}) {
    std::set<core_int> powers;
    const core_int root = primitive_root(prime);
    for (core_int k = 1, power = root; k < prime; ++k, power = power * root % prime) powers.insert(power);
    EXPECT_EQ(powers.size(), static_cast<size_t>(prime - 1)) << prime;
  }
  EXPECT_EQ(primitive_root(191), 19);
  EXPECT_EQ(primitive_root(786433), 10);
}

TEST(NativePlan, WholeLines) {
  using enum whole_line;
  const struct {
    core_int length;
    whole_line_plan plan;
  } cases[] = {{18, {kTwoSteps, 3, 6}},    {128, {kTwoSteps, 8, 16}},  {144, {kTwoSteps, 12, 12}},
               {256, {kTwoSteps, 16, 16}}, {121, {kTwoSteps, 11, 11}}, {34, {kPasses, 0, 0}},
               {250, {kPasses, 0, 0}},     {512, {kPasses, 0, 0}},     {17, {kSums, 0, 0}},
               {149, {kSums, 0, 0}},       {51, {kSums, 0, 0}},        {147, {kPasses, 0, 0}},
               {151, {kPasses, 0, 0}}};
  for (const auto& c : cases) {
    const whole_line_plan plan = plan_whole_line(c.length);
    EXPECT_EQ(plan.method, c.plan.method) << c.length;
    EXPECT_EQ(plan.rows, c.plan.rows) << c.length;
    EXPECT_EQ(plan.columns, c.plan.columns) << c.length;
  }
}

TEST(NativePlan, ThreadsMeetBeforeTheLastPassIfItsPointsAreTheSameForEach) {
  EXPECT_EQ(passes_after_meeting(8, 2), 1);
  EXPECT_EQ(passes_after_meeting(12, 3), 1);
  EXPECT_EQ(passes_after_meeting(12, 2), 2);
  EXPECT_EQ(passes_after_meeting(8, 3), 2);
  EXPECT_TRUE(hands_back_lines(8 << 20, 32 << 20));
  EXPECT_FALSE(hands_back_lines((8 << 20) + 16, 32 << 20));
}

TEST(RealPlan, MethodsByLength) {
  using enum real_method;
  const struct {
    core_int length;
    real_method method;
  } cases[] = {{16, kStraight}, {17, kDirect}, {18, kHalf},     {21, kWhole},
               {179, kDirect},  {181, kWhole}, {1 << 20, kHalf}};
  for (const auto& c : cases) EXPECT_EQ(choose_real_method(c.length, false), c.method) << c.length;
  EXPECT_EQ(choose_real_method(101, true), kWhole);
  EXPECT_EQ(choose_real_method(100, true), kHalf);
}

TEST(DriverRules, LargeBatchesAreAskedForAhead) {
  EXPECT_TRUE(asks_ahead(10000, 4096));
  EXPECT_FALSE(asks_ahead(1000, 4096)) << "fits a cache";
  EXPECT_FALSE(asks_ahead(100000, 256)) << "short enough to be foreseen";
  EXPECT_FALSE(asks_ahead(1000, 1 << 15)) << "a line would push itself out";
}

TEST(DriverRules, BlocksOfManyColumnsBeginWithACacheLine) {
  const struct {
    uintptr_t address;
    core_int bytes, count, first;
  } cases[] = {{4096, 16, 1024, 8},     {4096 + 16, 16, 1024, 3}, {4096 + 40, 8, 1024, 3},
               {4096 + 8, 16, 1024, 8}, {4096 + 16, 16, 100, 8},  {4096 + 16, 16, 5, 5}};
  for (const auto& c : cases)
    EXPECT_EQ(first_block(c.address, c.bytes, c.count), c.first) << c.address << ' ' << c.count;
}

TEST(BoxRules, NeighbouringAxesAreOne) {
  const struct {
    box_shape shape;
    int node;
    std::vector<core_int> extents, strides;
  } cases[] = {{{3, {4, 5, 6}, {1, 4, 20}}, 2, {20}, {1}},
               {{3, {4, 5, 6}, {1, 4, 20}}, 1, {4}, {1}},
               {{3, {4, 5, 6}, {1, 5, 25}}, 2, {4, 5}, {1, 5}},
               {{4, {4, 5, 6, 7}, {1, 5, 25, 150}}, 3, {4, 30}, {1, 5}},
               {{4, {4, 1, 6, 7}, {2, 9, 8, 60}}, 3, {24}, {2}}};
  for (const auto& c : cases) {
    const column_axes axes = columns_below(c.shape, c.node);
    EXPECT_EQ(std::vector<core_int>(axes.extent, axes.extent + axes.count), c.extents);
    EXPECT_EQ(std::vector<core_int>(axes.stride, axes.stride + axes.count), c.strides);
  }
}

TEST(BoxRules, EdgeColumnsAndThreads) {
  EXPECT_TRUE(joins_edge_columns(32, 8));
  EXPECT_FALSE(joins_edge_columns(40, 8)) << "the rest would not fill blocks";
  EXPECT_FALSE(joins_edge_columns(1024, 8)) << "one column of many";
  EXPECT_EQ(native_threads(64 * 64, 1, false, 4), 1);
  EXPECT_EQ(native_threads(64 * 64, 2, false, 4), 4);
  EXPECT_EQ(native_threads(64 * 64, 2, true, 4), 1);
}

}  // namespace
}  // namespace qel::fft
