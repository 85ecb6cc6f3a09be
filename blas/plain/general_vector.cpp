// SPDX-License-Identifier: BSD-3-Clause
// Level 2 with a general m x n matrix, full or banded (row i, column j of a band at a[ku + i - j + j lda]).
// The matrix is read once, by columns: op = none adds columns to y, four at a time where y is contiguous; a
// transpose takes inner products of columns with x. No work memory.
#include "blas/letters.h"
#include "blas/plain/level2.h"
#include "blas/plain/strided_loops.h"

namespace qel::plain {

namespace {

/// y += alpha A x
template <class T>
void add_product(core_int m, core_int n, T alpha, const T* a, core_int lda, const T* x, core_int incx, T* y,
                 core_int incy) {
  core_int j = 0;
  if (incy == 1) {
    for (; j + 4 <= n; j += 4) {
      const T* xj = x + j * incx;
      const T t[4] = {alpha * xj[0], alpha * xj[incx], alpha * xj[2 * incx], alpha * xj[3 * incx]};
      add_four_columns(m, t, a + j * lda, lda, y);
    }
  }
  for (; j < n; ++j) add_multiple(m, alpha * x[j * incx], a + j * lda, 1, y, incy);
}

/// y += alpha A**T x, or A**H with kConjugate
template <bool kConjugate, class T>
void add_transposed_product(core_int m, core_int n, T alpha, const T* a, core_int lda, const T* x,
                            core_int incx, T* y, core_int incy) {
  for (core_int j = 0; j < n; ++j) {
    y[j * incy] += alpha * inner_product<kConjugate>(m, a + j * lda, 1, x, incx);
  }
}

/// As the two above, over the band of each column.
template <bool kConjugate, class T>
void add_band_product(bool transposed, core_int m, core_int n, core_int kl, core_int ku, T alpha, const T* a,
                      core_int lda, const T* x, core_int incx, T* y, core_int incy) {
  for (core_int j = 0; j < n; ++j) {
    const core_int first = j > ku ? j - ku : 0, last = m < j + kl + 1 ? m : j + kl + 1;
    if (first >= last) continue;
    const T* column = a + ku + j * (lda - 1) + first;
    if (transposed) {
      y[j * incy] += alpha * inner_product<kConjugate>(last - first, column, 1, x + first * incx, incx);
    } else {
      add_multiple(last - first, alpha * x[j * incx], column, 1, y + first * incy, incy);
    }
  }
}

template <bool kConjugate, class T>
void add_outer_product(core_int m, core_int n, T alpha, const T* x, core_int incx, const T* y, core_int incy,
                       T* a, core_int lda) {
  if (m <= 0 || n <= 0 || alpha == T{}) return;
  const T *x0 = first_element(x, m, incx), *y0 = first_element(y, n, incy);
  for (core_int j = 0; j < n; ++j) {
    const T yj = y0[j * incy];
    if (yj != T{}) add_multiple(m, alpha * conj_if<kConjugate>(yj), x0, incx, a + j * lda, 1);
  }
}

}  // namespace

template <class T>
void gemv(char trans, core_int m, core_int n, T alpha, const T* a, core_int lda, const T* x, core_int incx,
          T beta, T* y, core_int incy) {
  if (m == 0 || n == 0 || (alpha == T{} && beta == from_real<T>(1))) return;
  const bool transposed = !blas::letter_is(trans, 'N');
  T* y0 = first_element(y, transposed ? n : m, incy);
  scale_output(transposed ? n : m, beta, y0, incy);
  if (alpha == T{}) return;
  const T* x0 = first_element(x, transposed ? m : n, incx);
  if (!transposed) {
    add_product(m, n, alpha, a, lda, x0, incx, y0, incy);
  } else if (blas::letter_is(trans, 'C')) {
    add_transposed_product<true>(m, n, alpha, a, lda, x0, incx, y0, incy);
  } else {
    add_transposed_product<false>(m, n, alpha, a, lda, x0, incx, y0, incy);
  }
}

template <class T>
void gbmv(char trans, core_int m, core_int n, core_int kl, core_int ku, T alpha, const T* a, core_int lda,
          const T* x, core_int incx, T beta, T* y, core_int incy) {
  if (m == 0 || n == 0 || (alpha == T{} && beta == from_real<T>(1))) return;
  const bool transposed = !blas::letter_is(trans, 'N');
  T* y0 = first_element(y, transposed ? n : m, incy);
  scale_output(transposed ? n : m, beta, y0, incy);
  if (alpha == T{}) return;
  const T* x0 = first_element(x, transposed ? m : n, incx);
  if (blas::letter_is(trans, 'C')) {
    add_band_product<true>(true, m, n, kl, ku, alpha, a, lda, x0, incx, y0, incy);
  } else {
    add_band_product<false>(transposed, m, n, kl, ku, alpha, a, lda, x0, incx, y0, incy);
  }
}

template <class T>
void geru(core_int m, core_int n, T alpha, const T* x, core_int incx, const T* y, core_int incy, T* a,
          core_int lda) {
  add_outer_product<false>(m, n, alpha, x, incx, y, incy, a, lda);
}

template <class T>
void gerc(core_int m, core_int n, T alpha, const T* x, core_int incx, const T* y, core_int incy, T* a,
          core_int lda) {
  add_outer_product<true>(m, n, alpha, x, incx, y, incy, a, lda);
}

template void gemv(char, core_int, core_int, float, const float*, core_int, const float*, core_int, float,
                   float*, core_int);
template void gemv(char, core_int, core_int, double, const double*, core_int, const double*, core_int, double,
                   double*, core_int);
template void gemv(char, core_int, core_int, complex8, const complex8*, core_int, const complex8*, core_int,
                   complex8, complex8*, core_int);
template void gemv(char, core_int, core_int, complex16, const complex16*, core_int, const complex16*,
                   core_int, complex16, complex16*, core_int);
template void geru(core_int, core_int, float, const float*, core_int, const float*, core_int, float*,
                   core_int);
template void geru(core_int, core_int, double, const double*, core_int, const double*, core_int, double*,
                   core_int);
template void geru(core_int, core_int, complex8, const complex8*, core_int, const complex8*, core_int,
                   complex8*, core_int);
template void geru(core_int, core_int, complex16, const complex16*, core_int, const complex16*, core_int,
                   complex16*, core_int);
template void gerc(core_int, core_int, float, const float*, core_int, const float*, core_int, float*,
                   core_int);
template void gerc(core_int, core_int, double, const double*, core_int, const double*, core_int, double*,
                   core_int);
template void gerc(core_int, core_int, complex8, const complex8*, core_int, const complex8*, core_int,
                   complex8*, core_int);
template void gerc(core_int, core_int, complex16, const complex16*, core_int, const complex16*, core_int,
                   complex16*, core_int);
template void gbmv(char, core_int, core_int, core_int, core_int, float, const float*, core_int, const float*,
                   core_int, float, float*, core_int);
template void gbmv(char, core_int, core_int, core_int, core_int, double, const double*, core_int,
                   const double*, core_int, double, double*, core_int);
template void gbmv(char, core_int, core_int, core_int, core_int, complex8, const complex8*, core_int,
                   const complex8*, core_int, complex8, complex8*, core_int);
template void gbmv(char, core_int, core_int, core_int, core_int, complex16, const complex16*, core_int,
                   const complex16*, core_int, complex16, complex16*, core_int);

}  // namespace qel::plain
