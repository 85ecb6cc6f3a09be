// SPDX-License-Identifier: BSD-3-Clause
// Level 2 with a general matrix, full or banded: y = alpha op(A) x + beta y and A += alpha x y**T. The matrix
// is read once. y is scaled first (beta 0 writes it without reading), then, without a transpose, columns
// times alpha x_j are added from the left; with one, alpha times the product of each column with x. A column
// counts whatever x_j is, so a NaN in A always shows; an update leaves columns with y_j = 0 alone.
#pragma once

#include "blas/kernels/shared/level2_panels.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// Addresses of columns j .. j + count - 1.
template <class T>
[[gnu::always_inline]] inline void point_at_columns(int count, T* a, core_int lda, core_int j, T** column) {
#pragma GCC unroll 8
  for (int k = 0; k < count; ++k) column[k] = a + (j + k) * lda;
}

template <class T>
inline void add_full(core_int m, core_int n, T alpha, const T* a, core_int lda, vector_view<const T> x,
                     vector_view<T> y) {
  constexpr int kAtOnce = kAddedAtOnce<T>;
  const T* column[kAtOnce];
  T factor[kAtOnce];
  stretch_of<T> ys;
  for_stretches<T>(0, m, [&](core_int row, core_int rows) {
    T* at = ys.open(y, row, rows);
    core_int j = 0;
    for (; j + kAtOnce <= n; j += kAtOnce) {
      point_at_columns(kAtOnce, a, lda, j, column);
      for (int k = 0; k < kAtOnce; ++k) factor[k] = product_of(alpha, x.get(j + k));
      add_columns<kAtOnce>(rows, row, column, factor, at);
    }
    if (j < n) {
      const int count = static_cast<int>(n - j);
      point_at_columns(count, a, lda, j, column);
      for (int k = 0; k < count; ++k) factor[k] = product_of(alpha, x.get(j + k));
      add_columns(count, rows, row, column, factor, at);
    }
    ys.close(y, row, rows);
  });
}

template <bool kConjugate, class T>
inline void add_full_transposed(core_int m, core_int n, T alpha, const T* a, core_int lda,
                                vector_view<const T> x, vector_view<T> y) {
  constexpr int kAtOnce = kSummedAtOnce;
  const T* column[kAtOnce];
  T sum[kAtOnce];
  stretch_of<T> xs;
  for_stretches<T>(0, m, [&](core_int row, core_int rows) {
    const T* at = xs.read(x, row, rows);
    const auto add_sums = [&](int count, core_int j) {
      for (int k = 0; k < count; ++k) y.set(j + k, mul_add(alpha, sum[k], y.get(j + k)));
    };
    core_int j = 0;
    for (; j + kAtOnce <= n; j += kAtOnce) {
      point_at_columns(kAtOnce, a, lda, j, column);
      column_sums<kConjugate, kAtOnce>(rows, row, column, at, sum);
      add_sums(kAtOnce, j);
    }
    if (j < n) {
      const int count = static_cast<int>(n - j);
      point_at_columns(count, a, lda, j, column);
      column_sums<kConjugate>(count, rows, row, column, at, sum);
      add_sums(count, j);
    }
  });
}

template <class T>
void gemv(matrix_op op, core_int m, core_int n, T alpha, const T* a, core_int lda, const T* x, core_int incx,
          T beta, T* y, core_int incy) {
  if (m < 1 || n < 1) return;
  const bool transposed = op != matrix_op::kNone;
  const auto ys = view_of(y, transposed ? n : m, incy);
  const auto xs = view_of(x, transposed ? m : n, incx);
  scale(transposed ? n : m, beta, ys);
  if (equals_real(alpha, 0)) return;
  if (!transposed) {
    add_full(m, n, alpha, a, lda, xs, ys);
  } else if (kIsComplex<T> && op == matrix_op::kConjugated) {
    add_full_transposed<true>(m, n, alpha, a, lda, xs, ys);
  } else {
    add_full_transposed<false>(m, n, alpha, a, lda, xs, ys);
  }
}

/// Columns of a band that are taken together: one if few rows would be shared.
inline int banded_panel(core_int rows) { return rows < 4 * kPanel ? 1 : kPanel; }

template <class T>
void gbmv(matrix_op op, core_int m, core_int n, core_int kl, core_int ku, T alpha, const T* a, core_int lda,
          const T* x, core_int incx, T beta, T* y, core_int incy) {
  if (m < 1 || n < 1) return;
  const bool transposed = op != matrix_op::kNone;
  const auto ys = view_of(y, transposed ? n : m, incy);
  const auto xs = view_of(x, transposed ? m : n, incx);
  scale(transposed ? n : m, beta, ys);
  if (equals_real(alpha, 0)) return;
  const int width = banded_panel(kl + ku + 1 < m ? kl + ku + 1 : m);
  const core_int columns = n < m + ku ? n : m + ku;  // those further right hold nothing
  for (core_int j0 = 0; j0 < columns; j0 += width) {
    panel<const T, T> p;
    for (core_int j = j0; j < j0 + width && j < columns; ++j) {
      p.add(a + ku + j * (lda - 1), j > ku ? j - ku : 0, m < j + kl + 1 ? m : j + kl + 1);
    }
    if (!transposed) {
      for (int k = 0; k < p.count; ++k) p.factor[k] = product_of(alpha, xs.get(j0 + k));
      add_panel(p, ys);
      continue;
    }
    T sum[kPanel];
    if (kIsComplex<T> && op == matrix_op::kConjugated) {
      sum_panel<true>(p, xs, sum);
    } else {
      sum_panel<false>(p, xs, sum);
    }
    for (int k = 0; k < p.count; ++k) {
      ys.set(j0 + k, mul_add(alpha, sum[k], ys.get(j0 + k)));
    }
  }
}

template <class T>
void ger(bool conjugated, core_int m, core_int n, T alpha, const T* x, core_int incx, const T* y,
         core_int incy, T* a, core_int lda) {
  if (m < 1 || n < 1 || equals_real(alpha, 0)) return;
  const vector_view<const T> xs[1] = {view_of(x, m, incx)};
  const auto ys = view_of(y, n, incy);
  stretch_of<T> copy;
  for_stretches<T>(0, m, [&](core_int row, core_int rows) {
    const T* at[1] = {copy.read(xs[0], row, rows)};
    for (core_int j = 0; j < n;) {
      T *column[kUpdatedAtOnce], factor[kUpdatedAtOnce];
      int count = 0;
      for (; j < n && count < kUpdatedAtOnce; ++j) {
        const T yj = ys.get(j);
        if (equals_real(yj, 0)) continue;
        column[count] = a + j * lda;
        factor[count++] = product_of(alpha, conjugated ? conjugate_if<true>(yj) : yj);
      }
      update_columns<1>(count, rows, row, column, factor, at);
    }
  });
}

}  // namespace

const general_kernels<float> general_s{gemv, gbmv, ger};
const general_kernels<double> general_d{gemv, gbmv, ger};
const general_kernels<complex8> general_c{gemv, gbmv, ger};
const general_kernels<complex16> general_z{gemv, gbmv, ger};

}  // namespace qel::QEL_LEVEL
