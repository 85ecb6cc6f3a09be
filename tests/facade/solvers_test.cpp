// SPDX-License-Identifier: BSD-3-Clause
// Direct solvers and norms of DotNetBlas, by residuals: pivots, offsets, results.
#include <cmath>

#include "tests/facade/dense.h"

namespace Tavik::test {
namespace {

Kernel::DotNetBlas blas;

template <class T>
class Solvers : public testing::Test {};
TYPED_TEST_SUITE(Solvers, AllTypes);

constexpr int kOrder = 7, kSides = 2, kAhead = 3;  // elements before each block

TYPED_TEST(Solvers, FactorSolveInvertAndEstimate) {
  using T = TypeParam;
  const dense a = heavy_dense<T>(kOrder, 1), b = random_dense<T>(kOrder, kSides, 2);
  const DataBlock<T> factors = block_of<T>(a, kOrder, kAhead), x = block_of<T>(b, kOrder, kAhead);
  const Array<int> pivots(kOrder);
  ASSERT_EQ(blas.LUFactorization(kOrder, kOrder, factors, pivots), 0);
  for (int i = 0; i < kOrder; ++i) EXPECT_TRUE(pivots[i] >= i && pivots[i] < kOrder) << "zero-based";
  const std::vector<int> kept = values_of(pivots);
  ASSERT_EQ(blas.LUSolve(kOrder, kSides, factors, kOrder, pivots, x, kOrder), 0);
  EXPECT_EQ(values_of(pivots), kept);
  expect_close<T>(a * dense_of(x, kOrder, kSides, kOrder), b);

  const auto anorm = static_cast<real_of<T>>(one_norm(a));
  const double rcond = blas.LUCond('1', kOrder, anorm, factors, kOrder);
  ASSERT_EQ(blas.LUInverse(kOrder, factors, kOrder, pivots), 0);
  EXPECT_EQ(values_of(pivots), kept);
  const dense inverse = dense_of(factors, kOrder, kOrder, kOrder);
  expect_close<T>(a * inverse, identity(kOrder));
  expect_condition(rcond, a, inverse);
}

TYPED_TEST(Solvers, TakeTheOffsetOfTheFactorsForBothBlocks) {
  // Kept: b is read from the offset of a in its array, whatever its own is.
  using T = TypeParam;
  const DataBlock<T> a{{T(1), T(2), T(4)}, 1}, b{{T(8), T(16), T(32)}, 2};
  const Array<int> pivots{0};
  ASSERT_EQ(blas.LUSolve(1, 1, a, 1, pivots, b, 1), 0);
  EXPECT_EQ(values_of(b.Data), (std::vector<T>{T(8), T(8), T(32)}));
}

TYPED_TEST(Solvers, PassInfoUp) {
  using T = TypeParam;
  const DataBlock<T> zeros{Array<T>(9), 0};
  const Array<int> pivots(3);
  EXPECT_EQ(blas.LUFactorization(3, 3, zeros, pivots), 1);
  testing::internal::CaptureStdout();
  EXPECT_EQ(blas.LUFactorization(-1, 3, zeros, pivots), -1);
  EXPECT_NE(testing::internal::GetCapturedStdout().find("Parameter 1"), std::string::npos);
  const Array<int> before{5, 6, 7};
  EXPECT_THROW(blas.LUSolve(3, 1, zeros, 3, before, DataBlock<T>{}, 3), std::out_of_range);
  EXPECT_EQ(values_of(before), (std::vector<int>{5, 6, 7}));
}

TYPED_TEST(Solvers, FindTheLeastSquaresOfAnyRank) {
  using T = TypeParam;
  const int m = 9, n = 5;
  dense a = random_dense<T>(m, n, 3);
  for (int i = 0; i < m; ++i) a(i, 4) = 2.0 * a(i, 1);  // rank 4
  const dense b = random_dense<T>(m, kSides, 4);
  const DataBlock<T> factors = block_of<T>(a, m, kAhead), x = block_of<T>(b, m, kAhead);
  const Array<int> permutation(n);
  EXPECT_EQ(blas.LeastSquareCO(m, n, kSides, factors, m, x, m, permutation, static_cast<real_of<T>>(1e-3)),
            4);
  std::vector<int> sorted = values_of(permutation);
  std::sort(sorted.begin(), sorted.end());
  EXPECT_EQ(sorted, (std::vector<int>{0, 1, 2, 3, 4})) << "zero-based";
  const dense solution = dense_of(x, n, kSides, m);
  EXPECT_LT(largest(adjoint(a) * (a * solution - b)), 200 * kEpsilon<T>) << "the residual is orthogonal to A";
  testing::internal::CaptureStdout();
  EXPECT_EQ(blas.LeastSquareCO(-1, n, kSides, factors, m, x, m, permutation, 0), -1);
  testing::internal::GetCapturedStdout();
}

TYPED_TEST(Solvers, SolveTriangles) {
  using T = TypeParam;
  for (const char uplo : {'U', 'l'}) {
    for (const char trans : {'N', 'T', 'c'}) {
      const dense a = triangle(positive_dense<T>(kOrder, 5), uplo == 'U'),
                  b = random_dense<T>(kOrder, kSides, 6);
      const DataBlock<T> x = block_of<T>(b, kOrder, kAhead);
      blas.SolveTriSystem(uplo, trans, kOrder, kSides, block_of<T>(a, kOrder, 1), kOrder, x, kOrder);
      const dense op = trans == 'N' ? a : trans == 'T' ? transposed(a) : adjoint(a);
      expect_close<T>(op * dense_of(x, kOrder, kSides, kOrder), b);
    }
  }
}

TYPED_TEST(Solvers, ComputeNorms) {
  using T = TypeParam;
  const int m = 4, n = 3, lda = 6;
  const dense a = random_dense<T>(m, n, 7);
  const DataBlock<T> block = block_of<T>(a, lda, kAhead);
  double most = 0, rows = 0, squares = 0;
  for (int i = 0; i < m; ++i) {
    double row = 0;
    for (int j = 0; j < n; ++j) {
      row += std::abs(a(i, j));
      most = std::max(most, std::abs(a(i, j)));
      squares += std::norm(a(i, j));
    }
    rows = std::max(rows, row);
  }
  const struct {
    const char* letters;
    double want;
  } cases[] = {{"Mm", most}, {"1Oo", one_norm(a)}, {"Ii", rows}, {"FfEe", std::sqrt(squares)}};
  for (const auto& c : cases) {
    for (const char* letter = c.letters; *letter; ++letter) {
      EXPECT_NEAR(blas.MatrixNorm(*letter, m, n, lda, block), c.want, 20 * kEpsilon<T>) << *letter;
    }
  }
  EXPECT_EQ(blas.FrobNorm(m, n, lda, block), blas.MatrixNorm('F', m, n, lda, block));
  if constexpr (std::is_same_v<T, double>) {
    EXPECT_EQ(blas.OneNorm(m, n, lda, block), blas.MatrixNorm('1', m, n, lda, block));
    EXPECT_EQ(blas.InfinityNorm(m, n, lda, block), blas.MatrixNorm('I', m, n, lda, block));
  }
}

TEST(DoubleSolvers, SolveInOneCall) {
  const dense a = heavy_dense<double>(kOrder, 8), b = random_dense<double>(kOrder, 1, 9);
  const DoubleDataBlock factors = block_of<double>(a, kOrder, kAhead), sides = block_of<double>(b, kOrder, 1),
                        x{Array<double>(20), 5};
  const Array<int> pivots(kOrder);
  ASSERT_EQ(blas.Solve(kOrder, factors, pivots, sides, x), 0);
  EXPECT_EQ(*std::max_element(&pivots[0], &pivots[0] + kOrder), kOrder) << "one-based";
  expect_close<double>(a * dense_of(x, kOrder, 1, kOrder), b);

  const dense positive = adjoint(a) * a, c = random_dense<double>(kOrder, kSides, 10);
  for (const char uplo : {'U', 'L'}) {
    const DoubleDataBlock y = block_of<double>(c, kOrder, kAhead);
    ASSERT_EQ(blas.SolveSymPd(uplo, kOrder, kSides, block_of<double>(positive, kOrder, 2), kOrder, y, kOrder),
              0);
    expect_close<double>(positive * dense_of(y, kOrder, kSides, kOrder), c);
  }

  dense band(kOrder, kOrder);
  DoubleDataBlock dl{Array<double>(kOrder), 1}, d{Array<double>(kOrder + 2), 2}, du{Array<double>(kOrder), 0};
  for (int i = 0; i < kOrder; ++i) {
    band(i, i) = d.Data[2 + i] = 4 + i;
    if (i + 1 < kOrder) {
      band(i + 1, i) = dl.Data[1 + i] = i - 2;
      band(i, i + 1) = du.Data[i] = 1.5 - i;
    }
  }
  const DoubleDataBlock z = block_of<double>(c, kOrder, kAhead);
  ASSERT_EQ(blas.SolveTriDiag(kOrder, kSides, dl, d, du, z, kOrder), 0);
  expect_close<double>(band * dense_of(z, kOrder, kSides, kOrder), c);
}

TEST(DoubleSolvers, FactorIntoQAndR) {
  const dense a = random_dense<double>(kOrder, kOrder, 11);
  const DoubleDataBlock qr = block_of<double>(a, kOrder, kAhead), tau{Array<double>(kOrder + 1), 1};
  ASSERT_EQ(blas.QRDecomp(kOrder, kOrder, qr, kOrder, tau), 0);
  // A = Q R: Q^T A = R, and Q R = A.
  const DoubleDataBlock r = block_of<double>(a, kOrder, 2);
  ASSERT_EQ(blas.QTransB(kOrder, kOrder, qr, kOrder, tau, r, kOrder), 0);
  const dense upper = triangle(dense_of(qr, kOrder, kOrder, kOrder), true);
  expect_close<double>(dense_of(r, kOrder, kOrder, kOrder), upper);
  const DoubleDataBlock back = block_of<double>(upper, kOrder, 0);
  ASSERT_EQ(blas.QB(kOrder, kOrder, qr, kOrder, tau, back, kOrder), 0);
  expect_close<double>(dense_of(back, kOrder, kOrder, kOrder), a);
  // Kept: the form with a permutation doesn't pivot.
  const DoubleDataBlock again = block_of<double>(a, kOrder, kAhead), tau2{Array<double>(kOrder), 0};
  const Array<int> permutation{7, 7, 7};
  ASSERT_EQ(blas.QRWithPivot(kOrder, kOrder, again, kOrder, permutation, tau2), 0);
  EXPECT_EQ(values_of(again.Data), values_of(qr.Data));
  EXPECT_EQ(values_of(permutation), (std::vector<int>{7, 7, 7}));
}

TEST(DoubleSolvers, FitLines) {
  for (const auto& [m, n] : {std::pair{8, 3}, {3, 8}}) {
    const dense a = random_dense<double>(m, n, 12), b = random_dense<double>(std::max(m, n), kSides, 13);
    const DoubleDataBlock x = block_of<double>(b, 8, kAhead);
    ASSERT_EQ(blas.LeastSqQRLQCalc(m, n, kSides, block_of<double>(a, m, 1), m, x, 8), 0);
    dense sides(m, kSides);
    for (int i = 0; i < m; ++i) sides(i, 0) = b(i, 0), sides(i, 1) = b(i, 1);
    EXPECT_LT(largest(adjoint(a) * (a * dense_of(x, n, kSides, 8) - sides)), 1e-13);
  }
}

}  // namespace
}  // namespace Tavik::test
