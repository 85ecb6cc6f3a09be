// SPDX-License-Identifier: BSD-3-Clause
#include "fft/planning/fast_plan_rules.h"

#include <gtest/gtest.h>

#include <cmath>

namespace qel::fft {
namespace {

line_facts line(core_int n, double forward = 1, double backward = 1, bool single = false,
                bool native = false) {
  return {n, 1, 39, 43, 1, 1, 0, 0, forward, backward, single, native};
}

TEST(FastPlanRules, LengthAndScalesDecide) {
  const struct {
    line_facts facts;
    bool straight;
    int flag;
  } cases[] = {
      {line(8), true, 8},
      {line(1), false, 8},
      {line(128), true, 8},
      {line(128, 1, 1, true), false, 8},
      {line(64, 1, 1, true), true, 8},
      {line(256), false, 8},
      {line(16, 1, 1, false, true), true, 8},
      {line(64, 1, 1, false, true), true, 0},
      {line(128, 1, 1, false, true), false, 0},
      {line(32, 1, 1, false, true), true, 8},
      {line(56, 1, 1, false, true), true, 8},
      {line(57, 1, 1, false, true), false, 0},
      {line(112, 1, 1, true, true), false, 8},
      {line(113, 1, 1, true, true), false, 0},
      {line(128, 1, 1, true), false, 8},
      {line(125), false, 8},
      {line(129), false, 0},
      {line(15, 1, 1, false, true), true, 8},
      {line(15), false, 8},
      {line(17, 1, 1, false, true), false, 8},
      {line(60, 1, 1, true, true), true, 8},
      {line(4096), false, 8},
      {line(4097), false, 0},
      {line(8, 0.125), false, 1},
      {line(8, 0.5), false, 0},
      {line(8, 0.3), false, 0},
      {line(10, 1, 1 / 10.0), false, 2},
      {line(10, 1, static_cast<double>(1 / 10.0F), true), false, 2},
      {line(10, 1, static_cast<double>(1 / 10.0F)), false, 0},
      {line(9, 1 / 3.0, 1 / 3.0), false, 4},
      {line(9, 1 / 3.0), false, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.facts.length << ' ' << c.facts.forward_scale << ' '
                                    << c.facts.single);
    EXPECT_EQ(takes_straight_kernel(c.facts), c.straight);
    EXPECT_EQ(small_plan_flag(c.facts), c.flag);
  }
}

TEST(FastPlanRules, ShortUnscaledSmallPlansAreOneKernel) {
  EXPECT_TRUE(is_straight_small_plan(line(2)));
  EXPECT_TRUE(is_straight_small_plan(line(15)));
  EXPECT_TRUE(is_straight_small_plan(line(16, 1, 1, true)));
  EXPECT_FALSE(is_straight_small_plan(line(1)));
  EXPECT_FALSE(is_straight_small_plan(line(17)));
  EXPECT_FALSE(is_straight_small_plan(line(10, 1, 1 / 10.0)));
  EXPECT_FALSE(is_straight_small_plan(line(8, 0.5)));
}

TEST(FastPlanRules, OnlyPlainLines) {
  const auto changed = [](auto change) {
    line_facts facts = line(8);
    change(facts);
    return is_plain_line(facts);
  };
  EXPECT_FALSE(changed([](line_facts& f) { f.transforms = 2; }));
  EXPECT_FALSE(changed([](line_facts& f) { f.complex_storage = 42; }));
  EXPECT_FALSE(changed([](line_facts& f) { f.input_stride = 2; }));
  EXPECT_FALSE(changed([](line_facts& f) { f.input_offset = 1; }));
  EXPECT_TRUE(changed([](line_facts& f) { f.output_stride = 2, f.output_offset = 3; }));
  EXPECT_FALSE(changed([](line_facts& f) { f.placement = 44, f.output_stride = 2; }));
  EXPECT_FALSE(changed([](line_facts& f) { f.placement = 44, f.output_offset = 1; }));
}

}  // namespace
}  // namespace qel::fft
