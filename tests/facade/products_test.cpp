// SPDX-License-Identifier: BSD-3-Clause
// Products of strided matrices: the compact way accumulates, the one with gaps overwrites; forms, strides,
// and the bases that negative strides of a transposed operand get.
#include <functional>

#include "tests/facade/support.h"

namespace Tavik::test {
namespace {

Kernel::DotNetBlas blas;

template <class T>
class Products : public testing::Test {};
TYPED_TEST_SUITE(Products, AllTypes);

enum class form { plain, transposed, adjoint };
template <class T>
using product_fn = void (Kernel::DotNetBlas::*)(int, int, int, const DataBlock<T>&, int, int,
                                                const DataBlock<T>&, int, int, const DataBlock<T>&, int, int,
                                                bool);
template <class T>
using short_product_fn = void (Kernel::DotNetBlas::*)(int, int, int, const DataBlock<T>&, int, int,
                                                      const DataBlock<T>&, int, int, const DataBlock<T>&, int,
                                                      int);

wide element(form how, const auto& matrix, int i, int j) {
  return how == form::plain        ? matrix.was(i, j)
         : how == form::transposed ? matrix.was(j, i)
                                   : std::conj(matrix.was(j, i));
}

/// C is m x n, the depth k; gap is put between the columns of the operand of that number, -1 of none.
template <class T>
void expect_product(product_fn<T> product, short_product_fn<T> short_product, form of_a, form of_b,
                    const char* what) {
  for (const auto& [m, n, k] : {std::tuple{3, 4, 2}, {4, 4, 4}, {1, 1, 1}, {5, 2, 3}}) {
    for (const int gap : {-1, 0, 1, 2}) {
      for (const bool zero : {false, true}) {
        const auto place = [gap_at = gap](int which, int rows) {
          return matrix_placing{20 + which, 1, rows + (gap_at == which ? 2 : 0)};
        };
        const matrix_operand<T> a(place(0, of_a == form::plain ? m : k), 1),
            b(place(1, of_b == form::plain ? k : n), 2), c(place(2, m), 3);
        const auto run = [&](auto operation, auto... more) {
          (blas.*operation)(m, n, k, a.block, a.row_stride, a.col_stride, b.block, b.row_stride, b.col_stride,
                            c.block, c.row_stride, c.col_stride, more...);
        };
        if (zero) {
          run(product, true);
        } else {
          run(short_product);
        }
        const bool adds = gap == -1 && !zero;
        c.expect(
            m, n,
            [&](int i, int j) {
              wide sum = adds ? c.was(i, j) : 0;
              for (int l = 0; l < k; ++l) sum += element(of_a, a, i, l) * element(of_b, b, l, j);
              return sum;
            },
            0, what);
        if (testing::Test::HasFatalFailure()) return;
      }
    }
  }
}

TYPED_TEST(Products, AccumulateWhenCompactAndOverwriteWithGaps) {
  using T = TypeParam;
  using Blas = Kernel::DotNetBlas;
  expect_product<T>(&Blas::Product, &Blas::Product, form::plain, form::plain, "Product");
  expect_product<T>(&Blas::TransposeProduct, &Blas::TransposeProduct, form::transposed, form::plain,
                    "TransposeProduct");
  if constexpr (std::is_same_v<T, double>) {
    expect_product<T>(&Blas::ProductTranspose, &Blas::ProductTranspose, form::plain, form::transposed,
                      "ProductTranspose");
  }
  if constexpr (is_complex<T>) {
    expect_product<T>(&Blas::ConjTransposeProduct, &Blas::ConjTransposeProduct, form::adjoint, form::plain,
                      "ConjTransposeProduct");
  }
}

TYPED_TEST(Products, FollowAnyStrides) {
  using T = TypeParam;
  for (const matrix_placing pa : kMatrixPlacings) {
    for (const matrix_placing pb : {kMatrixPlacings[2], kMatrixPlacings[3], kMatrixPlacings[4]}) {
      const matrix_operand<T> a(pa, 1), b(pb, 2), c({100, -1, 9}, 3);
      blas.Product(5, 4, 3, a.block, a.row_stride, a.col_stride, b.block, b.row_stride, b.col_stride, c.block,
                   -1, 9, true);
      c.expect(
          5, 4,
          [&](int i, int j) {
            wide sum = 0;
            for (int l = 0; l < 3; ++l) sum += a.was(i, l) * b.was(l, j);
            return sum;
          },
          0, "any strides");
    }
  }
}

TYPED_TEST(Products, FindTransposedBasesFromTheOtherSize) {
  // Kept: with a negative stride the base of a transposed operand is found from m, though k elements follow.
  using T = TypeParam;
  const int m = 2, n = 1, k = 3;
  const matrix_operand<T> a({100, -1, 10}, 1), b({50, 1, 4}, 2), c({0, 1, 5}, 3);
  blas.TransposeProduct(m, n, k, a.block, -1, 10, b.block, 1, 4, c.block, 1, 5);
  c.expect(
      m, n,
      [&](int i, int) {
        // The lowest address is taken as that of the second element, so that the walk starts one too high.
        wide sum = 0;
        for (int l = 0; l < k; ++l) {
          sum += widened(a.before[static_cast<size_t>(100 + 1 - l + 10 * i)]) * b.was(l, 0);
        }
        return sum;
      },
      0, "bases");
}

TYPED_TEST(Products, OfAMatrixAndAVector) {
  using T = TypeParam;
  const int m = 4, n = 3;
  for (const bool compact : {true, false}) {
    for (const int incx : {1, 2, -1}) {
      const matrix_operand<T> a({30, 1, compact ? m : m + 1}, 1);
      const vector_operand<T> x({100, incx}, 2), y({50, 2}, 3);
      blas.Product(m, n, a.block, 1, a.col_stride, x.block, incx, y.block, 2);
      const auto want = [&](int i) {
        wide sum = compact ? y.was(i) : 0;
        for (int l = 0; l < n; ++l) sum += a.was(i, l) * x.was(l);
        return sum;
      };
      y.expect(m, want, 0, "matrix times vector");
      if constexpr (is_complex<T>) {
        const vector_operand<T> z({50, 2}, 3), u({100, incx}, 4);
        blas.ConjTransposeProduct(m, n, a.block, 1, a.col_stride, u.block, incx, z.block, 2);
        z.expect(
            n,
            [&](int j) {
              wide sum = compact ? z.was(j) : 0;
              for (int l = 0; l < m; ++l) sum += std::conj(a.was(l, j)) * u.was(l);
              return sum;
            },
            0, "adjoint times vector");
      }
    }
  }
}

TEST(ProductHelpers, ServeByThemselves) {
  const matrix_operand<DoubleComplex> a({30, 3, 20}, 1);
  const vector_operand<DoubleComplex> x({100, 1}, 2), y({50, 1}, 3);
  Kernel::DotNetBlas::ProductUsingZdotu(2, 3, a.block, 3, 20, x.block, 1, y.block, 1);
  y.expect(
      2, [&](int i) { return a.was(i, 0) * x.was(0) + a.was(i, 1) * x.was(1) + a.was(i, 2) * x.was(2); }, 0,
      "");
  const matrix_operand<FloatComplex> b({30, 3, 20}, 1), c({150, 1, 4}, 5);
  const vector_operand<FloatComplex> u({100, 1}, 2), v({50, 1}, 3);
  Kernel::DotNetBlas::ProductUsingCdotu(2, 1, b.block, 3, 20, u.block, 1, v.block, 1);
  v.expect(
      2, [&](int i) { return b.was(i, 0) * u.was(0); }, 0, "");
  Kernel::DotNetBlas::NonCompactProduct(1, 1, 2, 'n', 't', b.block, 3, 20, b.block, 3, 20, c.block, 1, 4,
                                        false);
  c.expect(
      1, 1, [&](int, int) { return b.was(0, 0) * b.was(0, 0) + b.was(0, 1) * b.was(0, 1); }, 0, "");
  const matrix_operand<double> d({30, 3, 20}, 1), e({150, 1, 4}, 5);
  Kernel::DotNetBlas::NonCompactProduct(1, 1, 2, 'T', 'N', d.block, 3, 20, d.block, 3, 20, e.block, 1, 4);
  e.expect(
      1, 1, [&](int, int) { return d.was(0, 0) * d.was(0, 0) + d.was(1, 0) * d.was(1, 0); }, 0, "");
}

}  // namespace
}  // namespace Tavik::test
