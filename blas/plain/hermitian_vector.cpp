// SPDX-License-Identifier: BSD-3-Clause
// Level 2 with a Hermitian (real: symmetric) matrix of which one triangle is stored, full, banded or packed:
// the product y = alpha A x + beta y and the updates of rank 1 and 2. One pass over the stored columns; a
// product uses each element twice, as itself and as its mirror. Imaginary parts on the diagonal are taken as
// zero and stored as zero. No work memory.
#include "blas/plain/level2.h"
#include "blas/plain/stored_triangle.h"
#include "blas/plain/strided_loops.h"

namespace qel::plain {

namespace {

template <class T>
void product(const stored_triangle<const T>& a, T alpha, const T* x, core_int incx, T beta, T* y,
             core_int incy) {
  const core_int n = a.n;
  if (n == 0 || (alpha == T{} && beta == from_real<T>(1))) return;
  T* y0 = first_element(y, n, incy);
  scale_output(n, beta, y0, incy);
  if (alpha == T{}) return;
  const T* x0 = first_element(x, n, incx);
  for (core_int j = 0; j < n; ++j) {
    const T* column = a.column(j);
    const core_int first = a.first(j), last = a.last(j);
    const T t = alpha * x0[j * incx];
    const T mirrored = add_multiple_and_product(last - first, t, column + first, x0 + first * incx, incx,
                                                y0 + first * incy, incy);
    y0[j * incy] += real_part(column[j]) * t + alpha * mirrored;
  }
}

template <class T>
void update(const stored_triangle<T>& a, real_of<T> alpha, const T* x, core_int incx) {
  if (a.n == 0 || alpha == 0) return;
  const T* x0 = first_element(x, a.n, incx);
  for (core_int j = 0; j < a.n; ++j) {
    T* column = a.column(j);
    const T xj = x0[j * incx];
    T diagonal = from_real<T>(real_part(column[j]));
    if (xj != T{}) {
      const T t = alpha * conj(xj);
      const core_int first = a.first(j);
      add_multiple(a.last(j) - first, t, x0 + first * incx, incx, column + first, 1);
      diagonal += from_real<T>(real_part(xj * t));
    }
    column[j] = diagonal;
  }
}

template <class T>
void update2(const stored_triangle<T>& a, T alpha, const T* x, core_int incx, const T* y, core_int incy) {
  if (a.n == 0 || alpha == T{}) return;
  const T *x0 = first_element(x, a.n, incx), *y0 = first_element(y, a.n, incy);
  for (core_int j = 0; j < a.n; ++j) {
    T* column = a.column(j);
    const T xj = x0[j * incx], yj = y0[j * incy];
    T diagonal = from_real<T>(real_part(column[j]));
    if (xj != T{} || yj != T{}) {
      const T along_x = alpha * conj(yj), along_y = conj(alpha * xj);
      const core_int first = a.first(j), count = a.last(j) - first;
      add_multiple(count, along_x, x0 + first * incx, incx, column + first, 1);
      add_multiple(count, along_y, y0 + first * incy, incy, column + first, 1);
      diagonal += from_real<T>(real_part(xj * along_x + yj * along_y));
    }
    column[j] = diagonal;
  }
}

}  // namespace

template <class T>
void hemv(char uplo, core_int n, T alpha, const T* a, core_int lda, const T* x, core_int incx, T beta, T* y,
          core_int incy) {
  product(full_triangle(uplo, n, a, lda), alpha, x, incx, beta, y, incy);
}
template <class T>
void hbmv(char uplo, core_int n, core_int k, T alpha, const T* a, core_int lda, const T* x, core_int incx,
          T beta, T* y, core_int incy) {
  product(banded_triangle(uplo, n, k, a, lda), alpha, x, incx, beta, y, incy);
}
template <class T>
void hpmv(char uplo, core_int n, T alpha, const T* ap, const T* x, core_int incx, T beta, T* y,
          core_int incy) {
  product(packed_triangle(uplo, n, ap), alpha, x, incx, beta, y, incy);
}

template <class T>
void her(char uplo, core_int n, real_of<T> alpha, const T* x, core_int incx, T* a, core_int lda) {
  update(full_triangle(uplo, n, a, lda), alpha, x, incx);
}
template <class T>
void hpr(char uplo, core_int n, real_of<T> alpha, const T* x, core_int incx, T* ap) {
  update(packed_triangle(uplo, n, ap), alpha, x, incx);
}
template <class T>
void her2(char uplo, core_int n, T alpha, const T* x, core_int incx, const T* y, core_int incy, T* a,
          core_int lda) {
  update2(full_triangle(uplo, n, a, lda), alpha, x, incx, y, incy);
}
template <class T>
void hpr2(char uplo, core_int n, T alpha, const T* x, core_int incx, const T* y, core_int incy, T* ap) {
  update2(packed_triangle(uplo, n, ap), alpha, x, incx, y, incy);
}

template void hemv(char, core_int, float, const float*, core_int, const float*, core_int, float, float*,
                   core_int);
template void hemv(char, core_int, double, const double*, core_int, const double*, core_int, double, double*,
                   core_int);
template void hemv(char, core_int, complex8, const complex8*, core_int, const complex8*, core_int, complex8,
                   complex8*, core_int);
template void hemv(char, core_int, complex16, const complex16*, core_int, const complex16*, core_int,
                   complex16, complex16*, core_int);
template void hbmv(char, core_int, core_int, float, const float*, core_int, const float*, core_int, float,
                   float*, core_int);
template void hbmv(char, core_int, core_int, double, const double*, core_int, const double*, core_int, double,
                   double*, core_int);
template void hbmv(char, core_int, core_int, complex8, const complex8*, core_int, const complex8*, core_int,
                   complex8, complex8*, core_int);
template void hbmv(char, core_int, core_int, complex16, const complex16*, core_int, const complex16*,
                   core_int, complex16, complex16*, core_int);
template void hpmv(char, core_int, float, const float*, const float*, core_int, float, float*, core_int);
template void hpmv(char, core_int, double, const double*, const double*, core_int, double, double*, core_int);
template void hpmv(char, core_int, complex8, const complex8*, const complex8*, core_int, complex8, complex8*,
                   core_int);
template void hpmv(char, core_int, complex16, const complex16*, const complex16*, core_int, complex16,
                   complex16*, core_int);
template void her(char, core_int, float, const float*, core_int, float*, core_int);
template void her(char, core_int, double, const double*, core_int, double*, core_int);
template void her(char, core_int, float, const complex8*, core_int, complex8*, core_int);
template void her(char, core_int, double, const complex16*, core_int, complex16*, core_int);
template void hpr(char, core_int, float, const float*, core_int, float*);
template void hpr(char, core_int, double, const double*, core_int, double*);
template void hpr(char, core_int, float, const complex8*, core_int, complex8*);
template void hpr(char, core_int, double, const complex16*, core_int, complex16*);
template void her2(char, core_int, float, const float*, core_int, const float*, core_int, float*, core_int);
template void her2(char, core_int, double, const double*, core_int, const double*, core_int, double*,
                   core_int);
template void her2(char, core_int, complex8, const complex8*, core_int, const complex8*, core_int, complex8*,
                   core_int);
template void her2(char, core_int, complex16, const complex16*, core_int, const complex16*, core_int,
                   complex16*, core_int);
template void hpr2(char, core_int, float, const float*, core_int, const float*, core_int, float*);
template void hpr2(char, core_int, double, const double*, core_int, const double*, core_int, double*);
template void hpr2(char, core_int, complex8, const complex8*, core_int, const complex8*, core_int, complex8*);
template void hpr2(char, core_int, complex16, const complex16*, core_int, const complex16*, core_int,
                   complex16*);

}  // namespace qel::plain
