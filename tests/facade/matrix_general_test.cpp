// SPDX-License-Identifier: BSD-3-Clause
// Factorisations and decompositions of MatrixDotNetBlas, by what they mean: residuals, orthogonality,
// permutations, blocks that aren't wanted, results of an iteration that breaks down.
#include <algorithm>
#include <cmath>

#include "tavik/kernel/matrix_dot_net_blas.h"
#include "tests/facade/dense.h"

namespace Tavik::test {
namespace {

Kernel::MatrixDotNetBlas matrices;

template <class T>
class General : public testing::Test {};
TYPED_TEST_SUITE(General, AllTypes);

template <class T>
DataBlock<T> room(int length) {
  return {Array<T>(length + 2), 2};
}
constexpr char adjoint_letter(bool complex) { return complex ? 'C' : 'T'; }

/// The upper triangle of the first n rows.
template <class T>
dense r_of(const DataBlock<T>& a, int m, int n) {
  return triangle(dense_of(a, n, n, m), true);
}

TYPED_TEST(General, QR) {
  using T = TypeParam;
  const int m = 9, n = 5;
  const dense a = random_dense<T>(m, n, 1);
  const DataBlock<T> qr = block_of<T>(a, m, 3), tau = room<T>(n);
  ASSERT_EQ(matrices.QRDecomp(m, n, qr, m, tau), 0);
  const dense r = r_of(qr, m, n);
  const DataBlock<T> q{copy_of(qr.Data), qr.Offset};
  ASSERT_EQ(matrices.GetQFromQR(m, n, n, q, m, tau), 0);
  const dense columns = dense_of(q, m, n, m);
  expect_close<T>(columns * r, a);
  expect_close<T>(adjoint(columns) * columns, identity(n));

  // Q^H A = R from the left; (A^H Q)^H = Q^H A from the right, at which the complex sizes differ.
  const struct {
    char side;
    int rows, cols;
  } cases[] = {{'L', m, n}, {'R', n, m}, {'l', m, n}};
  for (const auto& c : cases) {
    const bool left = c.side != 'R';
    const DataBlock<T> target = block_of<T>(left ? a : adjoint(a), c.rows, 1);
    ASSERT_EQ(matrices.MultiplyByQFromQR(c.side, left ? adjoint_letter(is_complex<T>) : 'N', c.rows, c.cols,
                                         n, qr, m, tau, target, c.rows),
              0);
    const dense got = dense_of(target, c.rows, c.cols, c.rows);
    const dense upper = left ? got : adjoint(got);
    expect_close<T>(made_of(m, n, [&](int i, int j) { return upper(i, j); }),
                    made_of(m, n, [&](int i, int j) { return i < n ? r(i, j) : wide(); }));
  }
}

TYPED_TEST(General, PivotedQR) {
  using T = TypeParam;
  const int m = 7, n = 4;
  dense a = random_dense<T>(m, n, 2);
  for (int i = 0; i < m; ++i) a(i, 2) *= 8;
  const DataBlock<T> qr = block_of<T>(a, m, 3), tau = room<T>(n);
  const Array<int> order{0, 1, 0, 0};  // column 1 goes to the front; the others are free
  ASSERT_EQ(matrices.QRDecompWithPivoting(m, n, qr, m, order, tau), 0);
  EXPECT_EQ(order[0], 1);
  EXPECT_EQ(order[1], 2) << "zero-based, the largest column next";
  const dense r = r_of(qr, m, n);
  ASSERT_EQ(matrices.GetQFromQR(m, n, n, qr, m, tau), 0);
  expect_close<T>(dense_of(qr, m, n, m) * r, made_of(m, n, [&](int i, int j) { return a(i, order[j]); }));
}

TEST(LeastSquares, OverPlainArrays) {
  for (const auto& [m, n, trans] : {std::tuple{8, 3, 'N'}, {3, 8, 'N'}, {3, 8, 'T'}}) {
    const dense a = random_dense<double>(m, n, 3), b = random_dense<double>(8, 2, 4);
    const Array<double> factors = block_of<double>(a, m, 0).Data, x = block_of<double>(b, 8, 0).Data;
    ASSERT_EQ(matrices.GeneralLinearLeastSq(trans, m, n, 2, factors, m, x, 8), 0);
    const dense op = trans == 'N' ? a : transposed(a);
    const dense sides = made_of(op.rows, 2, [&](int i, int j) { return b(i, j); });
    const dense solution = dense_of(DoubleDataBlock{x, 0}, op.cols, 2, 8);
    EXPECT_LT(largest(adjoint(op) * (op * solution - sides)), 1e-13);
  }
}

TYPED_TEST(General, SingularValues) {
  using T = TypeParam;
  using R = real_of<T>;
  for (const auto& [m, n] : {std::pair{7, 4}, {4, 7}, {5, 5}}) {
    const int k = std::min(m, n);
    const dense a = random_dense<T>(m, n, 5);
    const DataBlock<R> s = room<R>(k), s_alone = room<R>(k), s_divided = room<R>(k);
    const DataBlock<T> u = room<T>(m * m), vt = room<T>(n * n), none{};
    const auto sigma = [&](const DataBlock<R>& values) {
      return made_of(k, k, [&](int i, int j) { return i == j ? wide(values.Data[2 + i]) : wide(); });
    };
    ASSERT_EQ(matrices.SVDFromGeneral('S', 'S', m, n, block_of<T>(a, m, 1), m, s, u, m, vt, k), 0);
    const dense left = dense_of(u, m, k, m);
    expect_close<T>(left * sigma(s) * dense_of(vt, k, n, k), a);
    expect_close<T>(adjoint(left) * left, identity(k));
    // Not wanted: blocks without storage will do, and the leading dimensions don't count.
    for (const char job : {'N', 'n'}) {
      ASSERT_EQ(matrices.SVDFromGeneral(job, job, m, n, block_of<T>(a, m, 1), m, s_alone, none, 0, none, 0),
                0);
      for (int i = 0; i < k; ++i) EXPECT_NEAR(s_alone.Data[2 + i], s.Data[2 + i], 50 * kEpsilon<T>);
      ASSERT_EQ(matrices.SVDFromGeneralDC(job, m, n, block_of<T>(a, m, 1), m, s_alone, none, 0, none, 0), 0);
      for (int i = 0; i < k; ++i) EXPECT_NEAR(s_alone.Data[2 + i], s.Data[2 + i], 50 * kEpsilon<T>);
    }
    const DataBlock<T> over = block_of<T>(a, m, 1);
    ASSERT_EQ(matrices.SVDFromGeneral('O', 'A', m, n, over, m, s, none, 0, vt, n), 0);
    expect_close<T>(dense_of(over, m, k, m) * sigma(s) *
                        made_of(k, n, [&](int i, int j) { return dense_of(vt, n, n, n)(i, j); }),
                    a);
    ASSERT_EQ(matrices.SVDFromGeneralDC('A', m, n, block_of<T>(a, m, 1), m, s_divided, u, m, vt, n), 0);
    const dense all_left = dense_of(u, m, m, m), all_right = dense_of(vt, n, n, n);
    const dense padded =
        made_of(m, n, [&](int i, int j) { return i == j ? wide(s_divided.Data[2 + i]) : wide(); });
    expect_close<T>(all_left * padded * all_right, a);
    EXPECT_THROW(matrices.SVDFromGeneralDC('S', m, n, over, m, s, none, m, vt, n), std::out_of_range);
  }
}

/// A w, from either kind of result.
template <class T>
struct spectrum {
  std::vector<wide> values;
  dense right, left;
};
template <class T>
spectrum<T> decompose(const dense& a, int n) {
  using R = real_of<T>;
  const DataBlock<T> vl = room<T>(n * n), vr = room<T>(n * n);
  const DataBlock<R> rconde = room<R>(n), rcondv = room<R>(n);
  spectrum<T> result{std::vector<wide>(static_cast<size_t>(n)), dense(n, n), dense(n, n)};
  if constexpr (is_complex<T>) {
    const DataBlock<T> w = room<T>(n);
    EXPECT_EQ(matrices.GeneralEigDecomp('B', 'V', 'V', 'B', n, block_of<T>(a, n, 1), n, w, vl, n, vr, n,
                                        rconde, rcondv),
              0);
    for (int i = 0; i < n; ++i) result.values[static_cast<size_t>(i)] = widened(w.Data[2 + i]);
    result.right = dense_of(vr, n, n, n);
    result.left = dense_of(vl, n, n, n);
  } else {
    const DataBlock<T> wr = room<T>(n), wi = room<T>(n);
    EXPECT_EQ(matrices.GeneralEigDecomp('B', 'V', 'V', 'B', n, block_of<T>(a, n, 1), n, wr, wi, vl, n, vr, n,
                                        rconde, rcondv),
              0);
    for (int i = 0; i < n; ++i) {
      const double re = wr.Data[2 + i], im = wi.Data[2 + i];
      result.values[static_cast<size_t>(i)] = {re, im};
      // A pair shares two columns: real part, imaginary part.
      const int first = im < 0 ? i - 1 : i;
      const double sign = im > 0 ? 1 : im < 0 ? -1 : 0;
      for (int r = 0; r < n; ++r) {
        const auto part = [&](const DataBlock<T>& v, int j) {
          return double{v.Data[2 + r + std::min(j, n - 1) * n]};
        };
        result.right(r, i) = {part(vr, first), sign * part(vr, first + 1)};
        result.left(r, i) = {part(vl, first), sign * part(vl, first + 1)};
      }
    }
  }
  for (int i = 0; i < n; ++i) {
    EXPECT_GT(rconde.Data[2 + i], 0);
    EXPECT_GT(rcondv.Data[2 + i], 0);
  }
  return result;
}

TYPED_TEST(General, Eigenvalues) {
  using T = TypeParam;
  const int n = 6;
  const dense a = random_dense<T>(n, n, 6);
  const spectrum<T> found = decompose<T>(a, n);
  const dense lambda =
      made_of(n, n, [&](int i, int j) { return i == j ? found.values[static_cast<size_t>(i)] : wide(); });
  expect_close<T>(a * found.right, found.right * lambda);
  expect_close<T>(adjoint(found.left) * a, lambda * adjoint(found.left));
  // Values alone, with nothing in the blocks that are not wanted.
  const DataBlock<T> none{}, first = room<T>(n), second = room<T>(n);
  const DataBlock<real_of<T>> no_reals{};
  int info = -1;
  if constexpr (is_complex<T>) {
    info = matrices.GeneralEigDecomp('N', 'N', 'N', 'N', n, block_of<T>(a, n, 1), n, first, none, 1, none, 1,
                                     no_reals, no_reals);
  } else {
    info = matrices.GeneralEigDecomp('N', 'N', 'N', 'N', n, block_of<T>(a, n, 1), n, first, second, none, 1,
                                     none, 1, no_reals, no_reals);
  }
  EXPECT_EQ(info, 0);
  wide sum = 0, trace = 0;
  for (int i = 0; i < n; ++i) {
    sum += widened(first.Data[2 + i]);
    trace += a(i, i);
  }
  EXPECT_LT(std::abs(sum.real() - trace.real()), 100 * kEpsilon<T>);
  testing::internal::CaptureStdout();
  if constexpr (is_complex<T>) {
    info = matrices.GeneralEigDecomp('X', 'N', 'N', 'N', n, block_of<T>(a, n, 1), n, first, none, 1, none, 1,
                                     no_reals, no_reals);
  } else {
    info = matrices.GeneralEigDecomp('X', 'N', 'N', 'N', n, block_of<T>(a, n, 1), n, first, second, none, 1,
                                     none, 1, no_reals, no_reals);
  }
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(info, -1);
}

TYPED_TEST(General, TriangularProductStartsAtTheBlocksOffset) {
  using T = TypeParam;
  const int n = 5;
  const dense a = random_dense<T>(n, n, 7);
  for (const char uplo : {'U', 'l'}) {
    for (const char trans : {'N', 't', 'C'}) {
      for (const int inc : {1, 2, -1}) {
        const dense tri = triangle(a, uplo == 'U');
        const dense op = trans == 'N' ? tri : trans == 't' ? transposed(tri) : adjoint(tri);
        const vector_operand<T> x({50, inc}, 8);
        matrices.TriangularProduct(uplo, trans, n, block_of<T>(a, n, 1), n, x.block, inc);
        // Kept: with a negative stride element 0 lies at the end of what starts at the offset.
        const auto at = [&](int k) { return 50 + (inc > 0 ? k * inc : (n - 1 - k) * -inc); };
        for (int i = 0; i < n; ++i) {
          wide want = 0;
          for (int j = 0; j < n; ++j) want += op(i, j) * widened(x.before[static_cast<size_t>(at(j))]);
          EXPECT_LT(std::abs(widened(x.block.Data[at(i)]) - want), 200 * kEpsilon<T>);
        }
      }
    }
  }
}

TEST(SharedOperations, DoWhatThoseOfDotNetBlasDo) {
  const Array<double> a{3, 0, -6}, b{0, 0, 2}, c(3);
  matrices.SafeDivide(3, a, b, c);
  EXPECT_EQ(values_of(c), (std::vector<double>{3e9, 0, -3}));
  EXPECT_THROW(matrices.SafeDivide(4, a, b, c), ArgumentException);
  const DoubleDataBlock x{{3, 0, -6, 8}, 0}, y{{0, 2, 2, 4}, 0}, z{Array<double>(4), 0};
  matrices.SafeDivide(2, 2, x, 1, 2, y, 1, 2, z, 1, 2);
  EXPECT_EQ(values_of(z.Data), (std::vector<double>{3e9, 0, -3, 2}));
  matrices.SafeDivide(2, 2, x, 1, 2, y, 1, 2);
  EXPECT_EQ(values_of(x.Data), values_of(z.Data));
  matrices.MakeNonNegative(2, 2, x, 1, 2);
  EXPECT_EQ(values_of(x.Data), (std::vector<double>{3e9, 0, 0, 2}));
  matrices.FastDivide(2, {z.Data, 2}, {y.Data, 2}, x);
  EXPECT_EQ(x.Data[0], -1.5);
  const DoubleDataBlock s{{4, 0, 0, 9}, 0}, t{{8, 27}, 0};
  EXPECT_EQ(matrices.SolveSymPd('U', 2, 1, s, 2, t, 2), 0);
  EXPECT_EQ(values_of(t.Data), (std::vector<double>{2, 3}));
}

}  // namespace
}  // namespace Tavik::test
