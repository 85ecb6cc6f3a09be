// SPDX-License-Identifier: BSD-3-Clause
// QR factorisations and products with their Q on every path: A = Q R with Q built from the reflectors one by
// one, and products against that Q. The decisions as tables.
#include "lapack/orthogonal/qr.h"

#include "tests/lapack/wide_matrix.h"

namespace qel::lapack {
namespace {

TEST(qr_plan, block_by_facts) {
  const struct {
    core_int m, n;
    int level;
    core_int block;
  } rows[] = {{1000, 1000, 3, 32}, {1000, 40, 3, 32}, {1000, 32, 3, 1},    {100, 100, 5, 16},
              {5, 100, 5, 1},      {500, 500, 5, 32}, {2000, 9000, 6, 64}, {4000, 4000, 5, 96},
              {64, 64, 5, 1},      {64, 64, 3, 32},   {1000, 40, 5, 16},   {65, 65, 5, 16}};
  for (const auto& row : rows) {
    EXPECT_EQ(plan_qr({'D', row.m, row.n, {row.level, 0}}).block, row.block) << row.m << ' ' << row.n;
  }
}
TEST(qr_plan, columns_without_halving) {
  const struct {
    char type;
    core_int rows;
    int level;
    core_int columns;
  } cases[] = {{'D', 100, 3, 8},  {'D', 100, 5, 32}, {'D', 240, 5, 32}, {'D', 300, 5, 25},
               {'D', 5000, 5, 8}, {'Z', 112, 6, 32}, {'Z', 200, 6, 18}, {'S', 496, 6, 32}};
  for (const auto& row : cases) {
    EXPECT_EQ(plan_qr_panel(row.type, row.rows, row.level), row.columns) << row.type << row.rows;
  }
}
TEST(q_product_plan, block_and_slices_by_facts) {
  const struct {
    bool left;
    core_int m, n, k;
    int threads, level;
    core_int block;
    int slices;
  } rows[] = {
      {true, 1000, 1, 1000, 8, 5, 1, 1},  // one column
      {true, 60, 900, 8, 1, 5, 1, 1},     // few short reflectors
      {true, 1000, 1000, 1000, 1, 5, 64, 1}, {true, 1000, 1000, 1000, 8, 5, 64, 8},
      {true, 1000, 20, 1000, 8, 3, 32, 2},  // no thinner slices
      {false, 1000, 20, 20, 8, 3, 20, 8},    {false, 20, 1000, 1000, 8, 3, 32, 2},
      {true, 20, 20, 20, 8, 3, 20, 1},  // little work
  };
  for (const auto& row : rows) {
    const q_product_plan plan =
        plan_q_product({'Z', row.left, row.m, row.n, row.k, row.threads, {row.level, 0}});
    EXPECT_EQ(plan.block, row.block) << plan.reason;
    EXPECT_EQ(plan.slices, row.slices) << plan.reason;
  }
}

/// H1 H2 .. Hk from what a factorisation left.
template <class T>
wide_matrix q_of(const matrix<T>& f, const std::vector<T>& tau, core_int k) {
  wide_matrix q = identity(f.m);
  for (core_int step = 0; step < k; ++step) {
    const core_int i = k - 1 - step;
    const auto v = [&](core_int row) { return row == i ? wide(1) : widened(f(row, i)); };
    for (core_int j = 0; j < f.m; ++j) {
      wide sum = 0;
      for (core_int row = i; row < f.m; ++row) sum += std::conj(v(row)) * q(row, j);
      sum *= widened(tau[static_cast<size_t>(i)]);
      for (core_int row = i; row < f.m; ++row) q(row, j) -= sum * v(row);
    }
  }
  return q;
}
template <class T>
wide_matrix r_of(const matrix<T>& f) {
  return filled(f.m, f.n, [&](core_int i, core_int j) { return i <= j ? widened(f(i, j)) : wide(); });
}

constexpr double kMost = 10;

template <class T>
class qr : public testing::Test {};
TYPED_TEST_SUITE(qr, element_types);

TYPED_TEST(qr, factors_of_every_shape) {
  using T = TypeParam;
  const core_int shapes[][2] = {{1, 1},   {1, 5},   {5, 1},   {8, 8},   {9, 8},   {10, 50}, {50, 10},
                                {17, 17}, {33, 20}, {20, 33}, {50, 50}, {70, 64}, {64, 70}, {90, 90}};
  for (const auto& [m, n] : shapes) {
    for (const core_int block : {1, 3, 16, 32, 90}) {
      SCOPED_TRACE(testing::Message() << m << " x " << n << " block " << block);
      const core_int order = std::min(m, n);
      const matrix<T> a = random_matrix<T>(m, n, 5);
      matrix<T> f = a;
      std::vector<T> tau(static_cast<size_t>(order));
      ASSERT_TRUE(factor_qr_as_planned<T>({std::min(block, order), ""}, m, n, f.data(), f.lda, tau.data()));
      const wide_matrix q = q_of(f, tau, order);
      EXPECT_LT(apart<T>(turned(q, true) * q, identity(m), 1), kMost);
      EXPECT_LT(apart<T>(q * r_of(f), whole(a), largest(whole(a)) * static_cast<double>(n)), kMost);
      for (core_int i = 0; i < order; ++i) EXPECT_EQ(widened(f(i, i)).imag(), 0) << i;
      for (core_int j = 0; j < n; ++j) {
        for (core_int i = m; i < f.lda; ++i) ASSERT_TRUE(f(i, j) == a(i, j)) << "outside the matrix";
      }
    }
  }
}

// What the kernels leave to others in the middle of a matrix: columns with nothing below their diagonal, or
// too little for squares.
TYPED_TEST(qr, columns_of_zeros_and_of_little) {
  using T = TypeParam;
  using R = real_of<T>;
  const core_int m = 19, n = 13;
  for (const core_int fault : {0, 4, 12}) {
    for (const R factor : {R(0), std::numeric_limits<R>::min()}) {
      matrix<T> a = random_matrix<T>(m, n, 9);
      for (core_int j = 0; j <= fault; ++j) {
        for (core_int i = j == fault ? 0 : j + 1; i < m; ++i) a(i, j) = from_real<T>(factor) * a(i, j);
      }
      matrix<T> f = a;
      std::vector<T> tau(static_cast<size_t>(n));
      ASSERT_TRUE(geqrf(m, n, f.data(), f.lda, tau.data()));
      const wide_matrix q = q_of(f, tau, n);
      EXPECT_LT(apart<T>(turned(q, true) * q, identity(m), 1), kMost) << fault << ' ' << factor;
      EXPECT_LT(apart<T>(q * r_of(f), whole(a), largest(whole(a)) * static_cast<double>(n)), kMost);
      if (factor == 0) {
        EXPECT_TRUE(tau[static_cast<size_t>(fault)] == T{});
      }
    }
  }
}

TYPED_TEST(qr, products_with_q) {
  using T = TypeParam;
  const core_int order = 60, k = 45, others = 33;
  const matrix<T> a = random_matrix<T>(order, k, 6);
  matrix<T> f = a;
  std::vector<T> tau(static_cast<size_t>(k));
  ASSERT_TRUE(geqrf(order, k, f.data(), f.lda, tau.data()));
  const wide_matrix q = q_of(f, tau, k);
  for (const bool left : {false, true}) {
    for (const bool turn : {false, true}) {
      for (const core_int block : {1, 7, 32, 45}) {
        for (const int slices : {1, 3}) {
          if (block == 1 && !left) continue;
          const core_int rows = left ? order : others, columns = left ? others : order;
          const matrix<T> c = random_matrix<T>(rows, columns, 7);
          matrix<T> product = c;
          ASSERT_TRUE(multiply_q_as_planned<T>({block, slices, ""}, left, turn, rows, columns, k, f.data(),
                                               f.lda, tau.data(), product.data(), product.lda));
          const wide_matrix op = turn ? turned(q, true) : q;
          const wide_matrix expected = left ? op * whole(c) : whole(c) * op;
          EXPECT_LT(apart<T>(whole(product), expected, largest(whole(c))), kMost)
              << (left ? "left " : "right ") << turn << " block " << block << " slices " << slices;
        }
      }
    }
  }
}

TYPED_TEST(qr, tiny_and_huge_columns) {
  using T = TypeParam;
  using R = real_of<T>;
  for (const R scale : {std::numeric_limits<R>::denorm_min() * 64, std::numeric_limits<R>::min(),
                        std::numeric_limits<R>::max() / 256}) {
    const matrix<T> unscaled = random_matrix<T>(12, 5, 8);
    matrix<T> a = unscaled;
    for (T& cell : a.cells) cell = from_real<T>(scale) * cell;
    matrix<T> f = a;
    std::vector<T> tau(5);
    ASSERT_TRUE(geqrf(12, 5, f.data(), f.lda, tau.data()));
    const wide_matrix q = q_of(f, tau, 5);
    EXPECT_LT(apart<T>(turned(q, true) * q, identity(12), 1), kMost) << scale;
  }
}

}  // namespace
}  // namespace qel::lapack
