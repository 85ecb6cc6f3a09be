// SPDX-License-Identifier: BSD-3-Clause
// Band, tridiagonal and packed matrices of MatrixDotNetBlas: factors, solutions, condition numbers, inverses
// and products against the dense matrices that they stand for; pivots and signs of results.
#include <cmath>

#include "tavik/kernel/matrix_dot_net_blas.h"
#include "tests/facade/dense.h"

namespace Tavik::test {
namespace {

Kernel::MatrixDotNetBlas matrices;

template <class T>
class Structured : public testing::Test {};
TYPED_TEST_SUITE(Structured, AllTypes);

constexpr int n = 8, kSides = 2;

/// Elements within the band only.
dense banded(const dense& a, int kl, int ku) {
  return made_of(a.rows, a.cols, [&](int i, int j) { return j - i <= ku && i - j <= kl ? a(i, j) : wide(); });
}
/// Band storage with `above` rows ahead of the diagonal's.
template <class T>
DataBlock<T> band_block(const dense& a, int above, int ld, int ahead) {
  DataBlock<T> block{Array<T>(ahead + ld * a.cols), ahead};
  for (int j = 0; j < a.cols; ++j) {
    for (int i = 0; i < a.rows; ++i) {
      const int row = above + i - j;
      if (row >= 0 && row < ld) block.Data[ahead + row + j * ld] = narrowed<T>(a(i, j));
    }
  }
  return block;
}
/// The packed upper triangle by columns.
template <class T>
DataBlock<T> packed_block(const dense& a, int ahead) {
  DataBlock<T> block{Array<T>(ahead + a.cols * (a.cols + 1) / 2), ahead};
  int next = ahead;
  for (int j = 0; j < a.cols; ++j) {
    for (int i = 0; i <= j; ++i) block.Data[next++] = narrowed<T>(a(i, j));
  }
  return block;
}
template <class T>
dense packed_dense(const DataBlock<T>& block, int order) {
  return made_of(order, order, [&](int i, int j) {
    return i <= j ? widened(block.Data[block.Offset + i + j * (j + 1) / 2]) : wide();
  });
}
/// The matrix whose upper triangle this is.
template <class T>
dense mirrored(const dense& upper) {
  return made_of(upper.rows, upper.cols,
                 [&](int i, int j) { return i <= j ? upper(i, j) : std::conj(upper(j, i)); });
}
dense symmetric_of(const dense& upper) {
  return made_of(upper.rows, upper.cols, [&](int i, int j) { return i <= j ? upper(i, j) : upper(j, i); });
}
template <class T>
real_of<T> norm_of(const dense& a) {
  return static_cast<real_of<T>>(one_norm(a));
}

TYPED_TEST(Structured, BandLU) {
  using T = TypeParam;
  const int kl = 2, ku = 1, ld = 2 * kl + ku + 1;
  const dense a = banded(heavy_dense<T>(n, 1), kl, ku), b = random_dense<T>(n, kSides, 2);
  const DataBlock<T> ab = band_block<T>(a, kl + ku, ld, 3);
  const Array<int> pivots(n);
  ASSERT_EQ(matrices.BandedFact(n, n, kl, ku, ab, ld, pivots), 0);
  const std::vector<int> kept = values_of(pivots);
  for (int i = 0; i < n; ++i) EXPECT_TRUE(pivots[i] >= i && pivots[i] < n);
  for (const char trans : {'N', 'T', 'C'}) {
    const DataBlock<T> x = block_of<T>(b, n, 1);
    ASSERT_EQ(matrices.SolveFromBandFact(trans, n, kl, ku, kSides, ab, ld, pivots, x, n), 0);
    const dense op = trans == 'N' ? a : trans == 'T' ? transposed(a) : adjoint(a);
    expect_close<T>(op * dense_of(x, n, kSides, n), b);
  }
  expect_condition(matrices.CondNumberFromBandFact('1', n, kl, ku, ab, ld, pivots, norm_of<T>(a)), a,
                   inverse_of(a));
  EXPECT_EQ(values_of(pivots), kept);
  testing::internal::CaptureStdout();
  EXPECT_EQ(matrices.CondNumberFromBandFact('X', n, kl, ku, ab, ld, pivots, 1), -1) << "info as a number";
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(values_of(pivots), kept);
}

TYPED_TEST(Structured, BandCholesky) {
  using T = TypeParam;
  const int kd = 2;
  const dense a = banded(positive_dense<T>(n, 3), kd, kd), b = random_dense<T>(n, kSides, 4);
  const DataBlock<T> ab = band_block<T>(a, kd, kd + 1, 3), x = block_of<T>(b, n, 1);
  ASSERT_EQ(matrices.SymPDBandFact(n, kd, ab, kd + 1), 0);
  ASSERT_EQ(matrices.SolveFromSymPDBandFact(n, kd, kSides, ab, kd + 1, x, n), 0);
  expect_close<T>(a * dense_of(x, n, kSides, n), b);
  expect_condition(matrices.CondNumberFromSymPDBandFact(n, kd, ab, kd + 1, norm_of<T>(a)), a, inverse_of(a));
}

TYPED_TEST(Structured, BandProducts) {
  using T = TypeParam;
  const int kl = 2, ku = 1;
  const dense a = banded(random_dense<T>(n, n, 5), kl, ku);
  const DataBlock<T> ab = band_block<T>(a, ku, kl + ku + 1, 2);
  for (const char trans : {'N', 't', 'C'}) {
    for (const int incx : {1, -2}) {
      const vector_operand<T> x({100, incx}, 6), y({60, -3}, 7);
      matrices.BandedProduct(trans, n, n, kl, ku, ab, x.block, incx, y.block, -3);
      const dense op = trans == 'N' ? a : trans == 't' ? transposed(a) : adjoint(a);
      y.expect(
          n,
          [&](int i) {
            wide sum = y.was(i);
            for (int j = 0; j < n; ++j) sum += op(i, j) * x.was(j);
            return sum;
          },
          1000 * kEpsilon<T>, "BandedProduct");
    }
  }
  const int k = 2;
  const dense s = banded(positive_dense<T>(n, 8), k, k);
  const vector_operand<T> x({100, 2}, 6), y({60, -3}, 7);
  if constexpr (is_complex<T>) {
    matrices.HermitianBandedProduct(n, k, band_block<T>(s, k, k + 1, 2), x.block, 2, y.block, -3);
  } else {
    matrices.SymBandedProduct(n, k, band_block<T>(s, k, k + 1, 2), x.block, 2, y.block, -3);
  }
  y.expect(
      n,
      [&](int i) {
        wide sum = y.was(i);
        for (int j = 0; j < n; ++j) sum += s(i, j) * x.was(j);
        return sum;
      },
      1000 * kEpsilon<T>, "symmetric band");
}

/// The diagonal of a that starts at (row, 0) or (0, -row).
template <class T>
DataBlock<T> diagonal_block(const dense& a, int row, int ahead) {
  const int length = n - std::abs(row);
  DataBlock<T> block{Array<T>(ahead + n), ahead};
  for (int i = 0; i < length; ++i)
    block.Data[ahead + i] = narrowed<T>(a(i + std::max(row, 0), i + std::max(-row, 0)));
  return block;
}

TYPED_TEST(Structured, Tridiagonal) {
  using T = TypeParam;
  using R = real_of<T>;
  const dense a = banded(heavy_dense<T>(n, 9), 1, 1), b = random_dense<T>(n, kSides, 10);
  const DataBlock<T> dl = diagonal_block<T>(a, 1, 1), d = diagonal_block<T>(a, 0, 2),
                     du = diagonal_block<T>(a, -1, 0), du2{Array<T>(n), 1}, x = block_of<T>(b, n, 1);
  const Array<int> pivots(n);
  ASSERT_EQ(matrices.TriDiagLUFact(n, dl, d, du, du2, pivots), 0);
  const std::vector<int> kept = values_of(pivots);
  for (int i = 0; i < n; ++i) EXPECT_TRUE(pivots[i] == i || pivots[i] == i + 1);
  ASSERT_EQ(matrices.SolveTriDiagFromLUFact(n, kSides, dl, d, du, du2, pivots, x, n), 0);
  expect_close<T>(a * dense_of(x, n, kSides, n), b);
  expect_condition(matrices.CondNumberFromTriDiagLU('1', n, dl, d, du, du2, pivots, norm_of<T>(a)), a,
                   inverse_of(a));
  EXPECT_EQ(values_of(pivots), kept);

  const dense p = banded(positive_dense<T>(n, 11), 1, 1);
  const DataBlock<R> on = diagonal_block<R>(p, 0, 1);
  const DataBlock<T> below = diagonal_block<T>(p, 1, 2), y = block_of<T>(b, n, 1);
  ASSERT_EQ(matrices.SymPDTriDiagFact(n, on, below), 0);
  ASSERT_EQ(matrices.SolveSymPDTriDiagFromFact(n, kSides, on, below, y, n), 0);
  expect_close<T>(p * dense_of(y, n, kSides, n), b);
  expect_condition(matrices.CondNumberFromSymPDTriDiagFact(n, on, below, norm_of<T>(p)), p, inverse_of(p));
  EXPECT_EQ(matrices.SymPDTriDiagFact(2, DataBlock<R>{{R(-1), R(1)}, 0}, DataBlock<T>{{T(0)}, 0}), 1);
}

TYPED_TEST(Structured, PackedIndefinite) {
  using T = TypeParam;
  dense a = mirrored<T>(random_dense<T>(n, n, 12));
  for (int i = 0; i < n; ++i) a(i, i) = 0;  // blocks of order 2
  const dense b = random_dense<T>(n, kSides, 13);
  const DataBlock<T> ap = packed_block<T>(a, 2), x = block_of<T>(b, n, 1);
  const Array<int> pivots(n);
  ASSERT_EQ(matrices.SymFact(n, ap, pivots), 0);
  int negative = 0;
  for (int i = 0; i < n; ++i) {
    EXPECT_NE(pivots[i], 0) << "one-based";
    negative += pivots[i] < 0;
  }
  EXPECT_GT(negative, 0);
  ASSERT_EQ(matrices.SolveSymFromFact(n, kSides, ap, pivots, x, n), 0);
  expect_close<T>(a * dense_of(x, n, kSides, n), b);

  // Condition and inverse: for complex types those of a complex symmetric matrix with the same factors, which
  // are here those of a diagonal one, where it can be told apart: D is real for a Hermitian matrix.
  dense diagonal = identity(n);
  for (int i = 0; i < n; ++i) diagonal(i, i) = wide(i + 1, is_complex<T> ? 1 : 0);
  const DataBlock<T> dp = packed_block<T>(diagonal, 1);
  const Array<int> straight{1, 2, 3, 4, 5, 6, 7, 8};
  EXPECT_NEAR(matrices.CondNumberFromSymFact(n, dp, straight, norm_of<T>(diagonal)),
              1 / (one_norm(diagonal) * one_norm(inverse_of(diagonal))), 1e-5);
  ASSERT_EQ(matrices.InverseFromSymFact(n, dp, straight), 0);
  expect_close<T>(packed_dense(dp, n), inverse_of(diagonal));
}

TYPED_TEST(Structured, PackedCholesky) {
  using T = TypeParam;
  const dense a = positive_dense<T>(n, 14), b = random_dense<T>(n, kSides, 15);
  const DataBlock<T> ap = packed_block<T>(a, 2), x = block_of<T>(b, n, 1);
  ASSERT_EQ(matrices.SymPDFact(n, ap), 0);
  ASSERT_EQ(matrices.SolveSymPDFromFact(n, kSides, ap, x, n), 0);
  expect_close<T>(a * dense_of(x, n, kSides, n), b);
  expect_condition(matrices.CondNumberFromSymPDFact(n, ap, norm_of<T>(a)), a, inverse_of(a));
  ASSERT_EQ(matrices.InverseFromSymPDFact(n, ap), 0);
  expect_close<T>(mirrored<T>(packed_dense(ap, n)), inverse_of(a));
  testing::internal::CaptureStdout();
  EXPECT_EQ(matrices.CondNumberFromSymPDFact(-1, ap, 1), -2);
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(matrices.SymPDFact(n, packed_block<T>(made_of(n, n, [](int, int) { return wide(-1); }), 0)), 1);
}

TYPED_TEST(Structured, PackedTriangles) {
  using T = TypeParam;
  const dense upper = triangle(positive_dense<T>(n, 16), true), lower = transposed(upper),
              b = random_dense<T>(n, kSides, 17);
  const DataBlock<T> ap = packed_block<T>(upper, 2), x = block_of<T>(b, n, 1), y = block_of<T>(b, n, 1);
  ASSERT_EQ(matrices.SolvePackedUpperTriSystem(n, kSides, ap, x, n), 0);
  expect_close<T>(upper * dense_of(x, n, kSides, n), b);
  ASSERT_EQ(matrices.SolvePackedLowerTriSystem(n, kSides, ap, y, n), 0);
  expect_close<T>(lower * dense_of(y, n, kSides, n), b);

  const real_of<T> rcond = matrices.ConditionNumOfPackedUpperTriMat('1', n, ap);
  expect_condition(rcond, upper, inverse_of(upper));
  EXPECT_EQ(matrices.ConditionNumOfPackedLowerTriMat('1', n, ap), rcond) << "the same letters";
  testing::internal::CaptureStdout();
  EXPECT_EQ(matrices.ConditionNumOfPackedUpperTriMat('X', n, ap), 1) << "a positive number";
  testing::internal::GetCapturedStdout();

  for (const int inc : {1, -2}) {
    const vector_operand<T> u({100, inc}, 18), l({100, inc}, 19);
    matrices.UpperTriangularProduct(n, ap, u.block, inc);
    matrices.LowerTriangularProduct(n, ap, l.block, inc);
    const auto product = [](const dense& a, const vector_operand<T>& v) {
      return [&](int i) {
        wide sum = 0;
        for (int j = 0; j < n; ++j) sum += a(i, j) * v.was(j);
        return sum;
      };
    };
    u.expect(n, product(upper, u), 1000 * kEpsilon<T>, "upper");
    l.expect(n, product(lower, l), 1000 * kEpsilon<T>, "lower");
  }
  const DataBlock<T> other{copy_of(ap.Data), ap.Offset};
  ASSERT_EQ(matrices.InverseOfPackedUpperTriSystem(n, ap), 0);
  expect_close<T>(packed_dense(ap, n), inverse_of(upper));
  ASSERT_EQ(matrices.InverseOfPackedLowerTriSystem(n, other), 0);
  EXPECT_EQ(values_of(other.Data), values_of(ap.Data));
}

TYPED_TEST(Structured, PackedProductsOverwrite) {
  using T = TypeParam;
  const dense a = positive_dense<T>(n, 20);
  const DataBlock<T> ap = packed_block<T>(a, 2), y{exact_numbers<T>(n + 2, 21), 1};
  const vector_operand<T> x({100, -2}, 22);
  if constexpr (is_complex<T>) {
    matrices.HermitianProduct(n, ap, x.block, -2, y);
  } else {
    matrices.SymmetricProduct(n, ap, x.block, -2, y);
  }
  for (int i = 0; i < n; ++i) {
    wide sum = 0;
    for (int j = 0; j < n; ++j) sum += a(i, j) * x.was(j);
    EXPECT_LT(std::abs(widened(y.Data[1 + i]) - sum), 1000 * kEpsilon<T>);
  }
}

TYPED_TEST(Structured, PackedEigenvalues) {
  using T = TypeParam;
  using R = real_of<T>;
  const dense a = positive_dense<T>(n, 23);
  const DataBlock<R> w{Array<R>(n + 1), 1}, few{Array<R>(n), 0};
  const DataBlock<T> z{Array<T>(n * n + 3), 3};
  const Array<int> failed(n);
  ASSERT_EQ(
      matrices.SymmetricPackedEigDecomp('V', 'A', n, packed_block<T>(a, 2), 0, 0, 0, 0, 0, w, z, n, failed),
      0);
  const dense vectors = dense_of(z, n, n, n);
  expect_close<T>(a * vectors, vectors * made_of(n, n, [&](int i, int j) {
                                 return i == j ? wide(w.Data[1 + i]) : wide();
                               }));
  expect_close<T>(adjoint(vectors) * vectors, identity(n));
  // The second to the fourth, alone.
  ASSERT_EQ(
      matrices.SymmetricPackedEigDecomp('N', 'I', n, packed_block<T>(a, 2), 0, 0, 2, 4, 0, few, {}, 1, {}),
      0);
  for (int i = 0; i < 3; ++i) EXPECT_NEAR(few.Data[i], w.Data[2 + i], 200 * kEpsilon<T>);
}

/// The elements of a block, inc apart in a larger one.
template <class T>
DataBlock<T> spread(const DataBlock<T>& block, int inc) {
  const int count = block.Data.Length() - block.Offset;
  DataBlock<T> wide_block{exact_numbers<T>(count * std::abs(inc) + 4, 30), inc > 0 ? 3 : count * -inc + 1};
  for (int k = 0; k < count; ++k) wide_block.Data[wide_block.Offset + k * inc] = block.Data[block.Offset + k];
  return wide_block;
}

TYPED_TEST(Structured, PackedMatricesWithGaps) {
  using T = TypeParam;
  const dense upper = triangle(random_dense<T>(n, n, 24), true);
  for (const int inc : {1, 3, -2}) {
    const DataBlock<T> ap = spread(packed_block<T>(upper, 0), inc), y{exact_numbers<T>(n + 2, 25), 1};
    for (const int incx : {1, -2}) {
      const vector_operand<T> x({100, incx}, 26);
      const auto expect_product = [&](const dense& a, const char* what) {
        for (int i = 0; i < n; ++i) {
          wide sum = 0;
          for (int j = 0; j < n; ++j) sum += a(i, j) * x.was(j);
          EXPECT_LT(std::abs(widened(y.Data[1 + i]) - sum), 1000 * kEpsilon<T>) << what << inc;
        }
      };
      matrices.UpperTriangularProduct(n, ap, inc, x.block, incx, y);
      expect_product(upper, "upper");
      matrices.LowerTriangularProduct(n, ap, inc, x.block, incx, y);
      expect_product(transposed(upper), "lower");
      if constexpr (is_complex<T>) {
        matrices.HermitianProduct(n, ap, inc, x.block, incx, y, false);
        expect_product(mirrored<T>(upper), "Hermitian");
        matrices.HermitianProduct(n, ap, inc, x.block, incx, y, true);
        expect_product(symmetric_of(upper), "with flag");
      } else {
        matrices.SymmetricProduct(n, ap, inc, x.block, incx, y);
        expect_product(symmetric_of(upper), "symmetric");
      }
    }
  }
}

template <class T>
class Diagonals : public testing::Test {};
TYPED_TEST_SUITE(Diagonals, ComplexTypes);

TYPED_TEST(Diagonals, AreFoundInPackedAndBandForm) {
  using T = TypeParam;
  const auto conjugated = [](T v) { return T(v.Real, -v.Imag); };
  const int packed_count = 10, hb = 2, columns = 4, band_count = columns * (hb + 1);
  for (const int inc : {1, 3, -2}) {
    const DataBlock<T> packed = spread(DataBlock<T>{exact_numbers<T>(packed_count, 27), 0}, inc),
                       band = spread(DataBlock<T>{exact_numbers<T>(band_count, 28), 0}, inc);
    const DataBlock<T> t{exact_numbers<T>(20, 29), 2};
    const T after = t.Data[2 + packed_count];
    matrices.Transpose(4, packed, inc, t);
    for (int k = 0; k < packed_count; ++k) {
      const T from = packed.Data[packed.Offset + k * inc];
      const bool diagonal = k == 0 || k == 2 || k == 5 || k == 9;
      EXPECT_EQ(t.Data[2 + k], diagonal ? from : conjugated(from)) << k;
    }
    EXPECT_EQ(t.Data[2 + packed_count], after);
    matrices.Transpose(columns, band, inc, hb, t);
    for (int k = 0; k < band_count; ++k) {
      const T from = band.Data[band.Offset + k * inc];
      EXPECT_EQ(t.Data[2 + k], k % (hb + 1) == hb ? from : conjugated(from)) << k;
    }
    EXPECT_FALSE(matrices.PackedIsDiagonalReal(4, packed, inc));
    matrices.PackedMakeDiagonalReal(4, packed, inc);
    EXPECT_TRUE(matrices.PackedIsDiagonalReal(4, packed, inc));
    EXPECT_EQ(packed.Data[packed.Offset + 9 * inc].Imag, 0);
    EXPECT_NE(packed.Data[packed.Offset + 8 * inc].Imag, 0);
    EXPECT_FALSE(matrices.BandedIsDiagonalReal(columns, band, inc, hb));
    matrices.BandedMakeDiagonalReal(columns, band, inc, hb);
    EXPECT_TRUE(matrices.BandedIsDiagonalReal(columns, band, inc, hb));
    EXPECT_EQ(band.Data[band.Offset + 11 * inc].Imag, 0);
    EXPECT_NE(band.Data[band.Offset + 10 * inc].Imag, 0);
    EXPECT_TRUE(matrices.PackedIsDiagonalReal(0, DataBlock<T>{}, inc));
  }
}

}  // namespace
}  // namespace Tavik::test
