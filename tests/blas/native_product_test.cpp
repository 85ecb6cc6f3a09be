// SPDX-License-Identifier: BSD-3-Clause
// Native products by every scheme, with blocks so small that all their edges are met, against long double;
// where NaN may go; what lies beside the operands. Skipped where the processor has no native level.
#include "blas/level3/native/level3_native.h"
#include "blas/level3/native/product.h"
#include "tests/blas/reference.h"
#include "tests/support/guarded.h"

namespace qel::test {
namespace {

using native::general_operand;
using native::product;
using native::product_plan;
using native::product_scheme;

template <class T>
class NativeProduct : public testing::Test {
 protected:
  void SetUp() override {
    if (!native::native_level3()) GTEST_SKIP() << "no native level";
  }
  random_source random_;
};
using element_types = testing::Types<float, double, complex8, complex16>;
TYPED_TEST_SUITE(NativeProduct, element_types);

/// Plans of all schemes for a tile, with blocks of one or two tiles.
std::vector<product_plan> small_blocked_plans(int tile_rows, int tile_columns) {
  std::vector<product_plan> plans;
  for (const bool columns_outside : {false, true}) {
    plans.push_back({product_scheme::direct, 1, 1, 1, 7, 0, 0, columns_outside, 0, ""});
    plans.push_back({product_scheme::a_packed, 1, 1, 1, 7, 0, 0, columns_outside, 0, ""});
    for (const auto& [rows, columns] : {std::pair{1, 1}, {1, 2}, {2, 1}}) {
      plans.push_back({product_scheme::packed, rows * columns, rows, columns, 16, 2 * tile_rows,
                       3 * tile_columns, columns_outside, 2 * tile_columns, ""});
    }
  }
  plans.push_back({product_scheme::slabs, 2, 2, 1, 0, 0, 0, false, 0, ""});
  plans.push_back({product_scheme::slabs, 2, 1, 2, 0, 0, 0, false, 0, ""});
  plans.push_back({product_scheme::split_depth, 2, 1, 1, 0, 0, 0, false, 0, ""});
  return plans;
}

template <class T>
void check_product(random_source& random, const product_plan& plan, char transa, char transb, core_int m,
                   core_int n, core_int k, T alpha, T beta) {
  matrix<T> a(transa == 'N' ? m : k, transa == 'N' ? k : m, 3, random);
  matrix<T> b(transb == 'N' ? k : n, transb == 'N' ? n : k, 1, random), c(m, n, 2, random);
  if (beta == T{}) c.fill(nan_element<T>());
  const dense left = op(transa, a.meaning(shape::kGeneral)), right = op(transb, b.meaning(shape::kGeneral));
  const dense before = c.meaning(shape::kGeneral);
  c.as_output();
  native::multiply_as_planned<T>({m, n, k, alpha, general_operand<T>(transa, a.data(), a.ld()),
                                  general_operand<T>(transb, b.data(), b.ld()), beta, c.data(), c.ld()},
                                 plan);
  int failures = 0;
  c.for_stored([&](core_int i, core_int j) {
    bounded want;
    if (!(beta == T{})) want.add(widen(beta) * before(i, j));
    add_product(want, widen(alpha), left, right, i, j);
    if (!close(c.at(i, j), want, k) && ++failures == 1) {
      ADD_FAILURE() << transa << transb << ' ' << m << ' ' << n << ' ' << k << " scheme "
                    << static_cast<int>(plan.scheme) << " (" << i << ", " << j << "): " << widen(c.at(i, j));
    }
  });
  EXPECT_TRUE(c.intact()) << transa << transb << ' ' << m << ' ' << n << ' ' << k;
}

TYPED_TEST(NativeProduct, EverySchemeAtEveryEdge) {
  using T = TypeParam;
  const auto& kernels = *native::native_kernels<T>();
  const core_int r = kernels.tile_rows, c = kernels.tile_columns, l = kernels.lanes;
  const core_int rows[] = {1,     l - 1, l,         l + 1, r - 1,     r,
                           r + 1, r + l, r + l + 1, 2 * r, 2 * r + 3, 4 * r + 1};
  const core_int columns[] = {1, 2, c, c + 1, 2 * c - 1, 3 * c, 3 * c + 1, 7 * c + 2};
  const core_int depths[] = {1, 2, 3, 4, 15, 16, 17, 33, 50};
  const T alphas[] = {from_real<T>(1), element<T>(-0.5, 2)},
          betas[] = {T{}, from_real<T>(1), element<T>(2, -1)};
  size_t turn = 0;
  for (const product_plan& plan : small_blocked_plans(kernels.tile_rows, kernels.tile_columns)) {
    for (const core_int m : rows) {
      for (const core_int n : columns) {
        const core_int k = depths[turn % std::size(depths)];
        const char transa = "NTC"[plan.scheme == product_scheme::direct ? 0 : turn / 2 % 3];
        const char transb = "NTC"[turn / 5 % 3];
        if (m <= 0) continue;
        check_product<T>(this->random_, plan, transa, transb, m, n, k, alphas[turn % 2], betas[turn % 3]);
        ++turn;
      }
    }
  }
}

/// Teams larger than the machine, and than the work.
TYPED_TEST(NativeProduct, ManyThreads) {
  using T = TypeParam;
  const auto& kernels = *native::native_kernels<T>();
  const T one = from_real<T>(1);
  for (const auto& [rows, columns] : {std::pair{2, 3}, {8, 1}, {4, 6}}) {
    const product_plan grid{product_scheme::packed,
                            rows * columns,
                            rows,
                            columns,
                            16,
                            2 * kernels.tile_rows,
                            3 * kernels.tile_columns,
                            false,
                            2 * kernels.tile_columns,
                            ""};
    check_product<T>(this->random_, grid, 'T', 'N', 70, 30, 40, one, one);
    const product_plan split{product_scheme::split_depth, rows * columns, 1, 1, 0, 0, 0, false, 0, ""};
    check_product<T>(this->random_, split, 'N', 'C', 9, 5, 50, one, one);
    const product_plan slabs{product_scheme::slabs, rows * columns, rows, columns, 0, 0, 0, false, 0, ""};
    check_product<T>(this->random_, slabs, 'N', 'N', 33, 17, 8, one, T{});
  }
}

/// A NaN in one row of A reaches that row of C and no other, whatever tile or panel the row is in; likewise a
/// column of B.
TYPED_TEST(NativeProduct, NanStaysInItsRowAndColumn) {
  using T = TypeParam;
  const auto& kernels = *native::native_kernels<T>();
  const core_int m = 2 * kernels.tile_rows + 1, n = 2 * kernels.tile_columns + 1, k = 9;
  matrix<T> a(m, k, 1, this->random_), b(k, n, 1, this->random_), c(m, n, 1, this->random_);
  for (const product_plan& plan : small_blocked_plans(kernels.tile_rows, kernels.tile_columns)) {
    for (core_int at = 0; at < std::max(m, n); ++at) {
      matrix<T> bad_a = a, bad_b = b;
      const core_int row = at % m, column = at % n;
      bad_a.set(row, at % k, nan_element<T>());
      bad_b.set(at % k, column, nan_element<T>());
      native::multiply_as_planned<T>(
          {m, n, k, from_real<T>(1), general_operand<T>('N', bad_a.data(), bad_a.ld()),
           general_operand<T>('N', bad_b.data(), bad_b.ld()), T{}, c.data(), c.ld()},
          plan);
      c.for_stored([&](core_int i, core_int j) {
        ASSERT_EQ(is_nan(widen(c.at(i, j))), i == row || j == column)
            << i << ' ' << j << " scheme " << static_cast<int>(plan.scheme) << " NaN at " << row << ' '
            << column;
      });
    }
  }
}

/// Operands that end at a page that can't be touched, and begin behind one.
TYPED_TEST(NativeProduct, StaysInsideItsOperands) {
  using T = TypeParam;
  const auto& kernels = *native::native_kernels<T>();
  const auto plans = small_blocked_plans(kernels.tile_rows, kernels.tile_columns);
  for (core_int m = 1; m <= kernels.tile_rows + kernels.lanes + 1; m += 1 + m / 16) {
    for (const core_int n : {1, kernels.tile_columns, kernels.tile_columns + 1}) {
      for (const core_int k : {1, 5, 18}) {
        for (const char trans : {'N', 'T'}) {
          guarded<T> a(static_cast<size_t>(m * k)), b(static_cast<size_t>(k * n)),
              c(static_cast<size_t>(m * n));
          std::fill_n(a.data(), a.size(), from_real<T>(1));
          std::fill_n(b.data(), b.size(), from_real<T>(2));
          for (const product_plan& plan : plans) {
            if (plan.threads > 1 || (plan.scheme == product_scheme::direct && trans == 'T')) continue;
            native::multiply_as_planned<T>(
                {m, n, k, from_real<T>(1), general_operand<T>(trans, a.data(), trans == 'N' ? m : k),
                 general_operand<T>(trans, b.data(), trans == 'N' ? k : n), T{}, c.data(), m},
                plan);
            for (size_t i = 0; i < c.size(); ++i) {
              ASSERT_EQ(widen(c.data()[i]), wide(static_cast<long double>(2 * k)));
            }
          }
        }
      }
    }
  }
}

/// Triangles: what is outside stays, what is inside is the product, for every position of tiles on the
/// diagonal.
TYPED_TEST(NativeProduct, WritesOneTriangle) {
  using T = TypeParam;
  const auto& kernels = *native::native_kernels<T>();
  const core_int k = 20;
  for (const core_int n : {1, 5, kernels.tile_rows + 1, 3 * kernels.tile_rows + 2}) {
    for (const product_plan& plan : small_blocked_plans(kernels.tile_rows, kernels.tile_columns)) {
      if (plan.scheme != product_scheme::packed || plan.grid_rows > 1) continue;
      for (const c_part part : {c_part::upper, c_part::lower}) {
        matrix<T> a(n, k, 1, this->random_), c(n, n, 1, this->random_, part == c_part::upper ? 'U' : 'L');
        const dense left = a.meaning(shape::kGeneral), right = op('T', left);
        const T beta = from_real<T>(2);
        const dense before = c.meaning(shape::kTriangular);
        c.as_output();
        product<T> what{n,
                        n,
                        k,
                        from_real<T>(1),
                        general_operand<T>('N', a.data(), a.ld()),
                        general_operand<T>('T', a.data(), a.ld()),
                        beta,
                        c.data(),
                        c.ld(),
                        part};
        native::multiply_as_planned(what, plan);
        c.for_stored([&](core_int i, core_int j) {
          bounded want;
          want.add(widen(beta) * before(i, j));
          add_product(want, 1, left, right, i, j);
          EXPECT_TRUE(close(c.at(i, j), want, k)) << n << " (" << i << ", " << j << ")";
        });
        EXPECT_TRUE(c.intact()) << n;
      }
    }
  }
}

/// Pivots whose reciprocal overflows are divided by; columns of B do not touch one another.
TYPED_TEST(NativeProduct, SolvesWithTinyPivots) {
  using T = TypeParam;
  using R = real_of<T>;
  const core_int n = 7, columns = 5;
  const R tiny = std::numeric_limits<R>::denorm_min() * 16;
  for (const char side : {'L', 'R'}) {
    const core_int m = side == 'L' ? n : columns, count = side == 'L' ? columns : n;
    std::vector<T> t(static_cast<size_t>(n * n)), b(static_cast<size_t>(n * columns));
    for (core_int i = 0; i < n; ++i) t[static_cast<size_t>(i + i * n)] = from_real<T>(tiny);
    for (size_t i = 0; i < b.size(); ++i) b[i] = from_real<T>(tiny * static_cast<R>(i % 5));
    native::trsm<T>(side, 'L', 'N', 'N', m, count, from_real<T>(1), t.data(), n, b.data(), m);
    for (size_t i = 0; i < b.size(); ++i) {
      EXPECT_EQ(widen(b[i]), wide(static_cast<long double>(i % 5))) << side << i;
    }
  }
}

}  // namespace
}  // namespace qel::test
