// SPDX-License-Identifier: BSD-3-Clause
// Plans of native products: schemes by shape, and what every plan must keep: panels without gaps, cells for
// all threads, blocks that the caches hold.
#include <gtest/gtest.h>

#include <random>

#include "blas/level3/native/copies.h"
#include "blas/level3/native/plan.h"

namespace qel::native {
namespace {

product_facts facts(core_int m, core_int n, core_int k, int threads, bool wide = false) {
  return {m,
          n,
          k,
          8,
          1,
          wide ? 24 : 12,
          wide ? 8 : 4,
          wide ? 8 : 4,
          c_part::whole,
          true,
          false,
          false,
          {3, 32768, 1048576, 33554432, 0},
          threads};
}

/// The short way in integers is taken only where the long one would come to the same.
template <class T>
void expect_short_way_agrees() {
  for (const core_int m : {1, 8, 24, 50, 999, 200000}) {
    for (const core_int n : {1, 9, 31, 70, 1 << 20}) {
      for (const core_int k : {1, 7, 25, 64, 4096}) {
        const bool serial = !may_fork(m, n, k, kProductWeight<T>);
        EXPECT_EQ(goes_at_once<T>(m, n, k), serial && reads_in_place(m, n, k)) << m << ' ' << n << ' ' << k;
      }
    }
  }
}
TEST(NativePlan, SmallProductsGoAtOnce) {
  expect_short_way_agrees<float>();
  expect_short_way_agrees<double>();
  expect_short_way_agrees<complex8>();
  expect_short_way_agrees<complex16>();
}

TEST(NativePlan, CopiesForSmallProductsThatDontLieRight) {
  constexpr c_part kWhole = c_part::whole, kUpper = c_part::upper;
  const struct {
    core_int m, n, k;
    bool a_structured, a_turned, b_structured;
    c_part part;
    copy_plan plan;
  } cases[] = {
      {8, 8, 8, false, false, false, kWhole, {false, false, false, false}},  // nothing in the way
      {8, 8, 8, false, true, false, kWhole, {false, false, false, false}},
      {8, 5, 8, true, false, false, kWhole, {true, true, false, false}},
      {5, 8, 8, false, false, true, kWhole, {true, false, true, false}},
      {8, 8, 3, false, false, false, kUpper, {true, false, false, true}},
      {32, 32, 32, false, true, false, kUpper, {true, true, false, true}},
      {33, 33, 3, false, false, false, kUpper, {false, false, false, false}},
      {8, 33, 8, true, false, false, kWhole, {false, false, false, false}},
      {8, 8, 33, false, false, false, kUpper, {false, false, false, false}},
  };
  for (const auto& c : cases) {
    const copy_plan plan = plan_copies(c.m, c.n, c.k, c.a_structured, c.a_turned, c.b_structured, c.part);
    EXPECT_EQ(c.plan, plan) << c.m << ' ' << c.n << ' ' << c.k;
  }
  EXPECT_TRUE(fills_triangle(false, 32, 32));
  EXPECT_FALSE(fills_triangle(true, 4, 4));
  EXPECT_FALSE(fills_triangle(false, 33, 1));
  EXPECT_FALSE(fills_triangle(false, 1, 33));
}

TEST(NativePlan, SchemeByShape) {
  using s = product_scheme;
  const struct {
    core_int m, n, k;
    int threads;
    bool wide;
    s scheme;
    int used;
  } cases[] = {
      {8, 8, 8, 1, false, s::direct, 1},
      {100, 100, 100, 1, false, s::direct, 1},
      {30, 30, 30, 8, false, s::direct, 1},  // too little for a fork
      {100, 100, 100, 2, false, s::slabs, 2},
      {32, 4000, 1000, 1, false, s::a_packed, 1},  // A in the first cache
      {200, 4000, 1000, 1, false, s::packed, 1},   // it would not stay there
      {200, 4000, 1000, 1, true, s::a_packed, 1},  // in the second
      {4000, 32, 1000, 1, true, s::direct, 1},     // a wide tile's rows are whole cache lines
      {4000, 32, 1000, 1, false, s::packed, 1},
      {1000, 1000, 1000, 1, false, s::packed, 1},
      {1000, 1000, 1000, 6, false, s::packed, 6},
      {12, 4, 100000, 4, false, s::split_depth, 4},
  };
  for (const auto& c : cases) {
    const product_plan plan = plan_product(facts(c.m, c.n, c.k, c.threads, c.wide));
    EXPECT_EQ(plan.scheme, c.scheme) << c.m << ' ' << c.n << ' ' << c.k << ' ' << plan.reason;
    EXPECT_EQ(plan.threads, c.used) << c.m << ' ' << c.n << ' ' << c.k << ' ' << plan.reason;
  }
}

TEST(NativePlan, SlicesArePassesOverC) {
  const struct {
    core_int m, n, k;
    product_scheme scheme;
  } cases[] = {{1000, 1000, 1000, product_scheme::packed},  // 65 steps of A's rows fill the second cache
               {1000, 1000, 65, product_scheme::a_packed},
               {1000, 1000, 66, product_scheme::packed},
               {400, 1000, 1000, product_scheme::a_packed}};
  for (const auto& c : cases) EXPECT_EQ(plan_product(facts(c.m, c.n, c.k, 1, true)).scheme, c.scheme) << c.k;
}

TEST(NativePlan, TurnedAndStructuredFactorsArePacked) {
  product_facts f = facts(50, 50, 50, 1);
  f.a_turned = true;
  EXPECT_EQ(plan_product(f).scheme, product_scheme::a_packed);
  f.direct = false;
  EXPECT_EQ(plan_product(f).scheme, product_scheme::packed);
  f = facts(50, 50, 50, 1);
  f.part = c_part::upper;
  EXPECT_EQ(plan_product(f).scheme, product_scheme::packed);
}

TEST(NativePlan, EveryPlanCanBeCarriedOut) {
  std::mt19937 engine(7);
  const auto up_to = [&](core_int limit) {
    return std::max<core_int>(
        1, static_cast<core_int>(std::exp(std::uniform_real_distribution<>(0, std::log(limit))(engine))));
  };
  for (int repeat = 0; repeat < 20000; ++repeat) {
    product_facts f =
        facts(up_to(30000), up_to(30000), up_to(30000), static_cast<int>(up_to(64)), repeat % 2 == 0);
    f.part = static_cast<c_part>(engine() % 3);
    f.direct = engine() % 4 != 0;
    f.a_turned = engine() % 2 == 0;
    if (engine() % 3 == 0) f.caches[0] = 0;
    const product_plan plan = plan_product(f);
    ASSERT_TRUE(plan.depth >= 1 || plan.scheme == product_scheme::slabs);
    ASSERT_LE(plan.threads, f.threads);
    if (plan.scheme != product_scheme::split_depth) {
      ASSERT_EQ(plan.grid_rows * plan.grid_columns, plan.threads);
    }
    if (plan.scheme != product_scheme::packed) continue;
    ASSERT_EQ(plan.rows % f.tile_rows, 0);
    ASSERT_EQ(plan.columns % f.tile_columns, 0);
    ASSERT_GE(plan.columns_in_cache, f.tile_columns);
    const double panels =
        static_cast<double>(std::min(plan.rows, f.m) + f.tile_rows + std::min(plan.columns, f.n)) *
        static_cast<double>(plan.depth) * f.element_size;
    ASSERT_LE(panels, 64e6 + 2e6 * plan.threads) << f.m << ' ' << f.n << ' ' << f.k;
  }
}

TEST(NativePlan, PanelsFollowOneAnotherAsTheKernelsCutThem) {
  const struct {
    int rows, columns, lanes;
  } tiles[] = {{24, 4, 8},  {12, 4, 4}, {12, 2, 4}, {6, 2, 2},
               {48, 8, 16}, {24, 8, 8}, {24, 4, 8}, {12, 4, 4}};
  for (const auto& tile : tiles) {
    for (core_int count = 1; count < 200; ++count) {
      core_int at = 0, number = 0;
      while (at < count) {
        ASSERT_EQ(row_panel_begin(number, count, tile.rows, tile.lanes), at) << count;
        const core_int size = panel_rows(count - at, tile.rows, tile.lanes);
        ASSERT_GT(size, 0);
        ASSERT_LE(size, tile.rows);
        at += size;
        ++number;
        ASSERT_TRUE(at == count || at % tile.lanes == 0) << "a panel with zeros before the last";
      }
      ASSERT_EQ(number, row_panels(count, tile.rows));
      ASSERT_EQ(row_panel_begin(number, count, tile.rows, tile.lanes), count);
      for (at = number = 0; at < count; ++number) {
        ASSERT_EQ(column_panel_begin(number, count, tile.columns), at) << count;
        at += panel_columns(count - at, tile.columns);
      }
      ASSERT_EQ(at, count);
      ASSERT_EQ(number, column_panels(count, tile.columns));
    }
  }
}

TEST(NativePlan, TrianglesAreSharedOutEvenly) {
  for (const c_part part : {c_part::upper, c_part::lower}) {
    for (const int parts : {1, 2, 3, 7, 24}) {
      const core_int n = 1000;
      core_int next = 0;
      double largest = 0, total = 0;
      for (int t = 0; t < parts; ++t) {
        const panel_range range = triangle_part(n, n, 0, part, 4, parts, t);
        ASSERT_EQ(range.begin, next);
        ASSERT_GE(range.end, range.begin);
        next = range.end;
        double area = 0;
        for (core_int j = range.begin * 4; j < std::min(range.end * 4, n); ++j) {
          area += static_cast<double>(part == c_part::upper ? j + 1 : n - j);
        }
        largest = std::max(largest, area);
        total += area;
      }
      EXPECT_EQ(next, column_panels(n, 4));
      EXPECT_LE(largest, 1.15 * total / parts) << parts;
    }
  }
}

TEST(NativePlan, SlabsCoverAllRightHandSides) {
  for (const core_int count : {1, 7, 8, 33, 200, 1001}) {
    for (const int slabs : {1, 2, 5, 8}) {
      core_int next = 0;
      for (int s = 0; s < slabs; ++s) {
        const panel_range slab = even_slab(count, slabs, s);
        ASSERT_EQ(slab.begin, next);
        next = slab.end;
      }
      EXPECT_EQ(next, count);
    }
  }
  EXPECT_EQ(plan_slabs(1000, 1000, 1, 4), 4);
  EXPECT_EQ(plan_slabs(1000, 64, 1, 4), 2) << "a slab of less than 32 uses the caches badly";
  EXPECT_EQ(plan_slabs(10, 100, 1, 4), 1);
}

}  // namespace
}  // namespace qel::native
