// SPDX-License-Identifier: BSD-3-Clause
// Level 1 updates of vectors: y += alpha x, copies, exchanges, scaling. Each has a contiguous loop and a
// strided one; stride 0 works on the one element n times over.
#include <string.h>

#include <utility>

#include "blas/plain/level1.h"
#include "blas/plain/strided_loops.h"

namespace qel::plain {

template <class T>
void axpy(core_int n, T alpha, const T* x, core_int incx, T* y, core_int incy) {
  if (n <= 0 || alpha == T{}) return;
  add_multiple(n, alpha, first_element(x, n, incx), incx, first_element(y, n, incy), incy);
}

template <class T>
void copy(core_int n, const T* x, core_int incx, T* y, core_int incy) {
  if (n <= 0) return;
  if (incx == incy && (incx == 1 || incx == -1)) {
    // memmove, since LAPACK may copy a vector onto itself.
    memmove(y, x, static_cast<size_t>(n) * sizeof(T));
    return;
  }
  const T* x0 = first_element(x, n, incx);
  T* y0 = first_element(y, n, incy);
  for (core_int i = 0; i < n; ++i) y0[i * incy] = x0[i * incx];
}

template <class T>
void swap(core_int n, T* x, core_int incx, T* y, core_int incy) {
  if (n <= 0) return;
  T *x0 = first_element(x, n, incx), *y0 = first_element(y, n, incy);
  turn_forward(n, x0, incx, y0, incy);
  if (incx == 1 && incy == 1) {
    for (core_int i = 0; i < n; ++i) std::swap(x0[i], y0[i]);
    return;
  }
  for (core_int i = 0; i < n; ++i) std::swap(x0[i * incx], y0[i * incy]);
}

template <class T>
void scal(core_int n, T alpha, T* x, core_int incx) {
  if (n <= 0 || alpha == from_real<T>(1)) return;
  if (incx == 1 || incx == -1) {
    for (core_int i = 0; i < n; ++i) x[i] = alpha * x[i];
    return;
  }
  T* x0 = first_element(x, n, incx);
  for (core_int i = 0; i < n; ++i) x0[i * incx] = alpha * x0[i * incx];
}

template <class T>
void real_scal(core_int n, real_of<T> alpha, T* x, core_int incx) {
  if (n <= 0 || alpha == 1) return;
  if (incx == 1 || incx == -1) {
    real_of<T>* numbers = as_reals(x);
    for (core_int i = 0; i < n * kRealsOf<T>; ++i) numbers[i] = alpha * numbers[i];
    return;
  }
  T* x0 = first_element(x, n, incx);
  for (core_int i = 0; i < n; ++i) x0[i * incx] = alpha * x0[i * incx];
}

template void axpy(core_int, float, const float*, core_int, float*, core_int);
template void axpy(core_int, double, const double*, core_int, double*, core_int);
template void axpy(core_int, complex8, const complex8*, core_int, complex8*, core_int);
template void axpy(core_int, complex16, const complex16*, core_int, complex16*, core_int);
template void copy(core_int, const float*, core_int, float*, core_int);
template void copy(core_int, const double*, core_int, double*, core_int);
template void copy(core_int, const complex8*, core_int, complex8*, core_int);
template void copy(core_int, const complex16*, core_int, complex16*, core_int);
template void swap(core_int, float*, core_int, float*, core_int);
template void swap(core_int, double*, core_int, double*, core_int);
template void swap(core_int, complex8*, core_int, complex8*, core_int);
template void swap(core_int, complex16*, core_int, complex16*, core_int);
template void scal(core_int, float, float*, core_int);
template void scal(core_int, double, double*, core_int);
template void scal(core_int, complex8, complex8*, core_int);
template void scal(core_int, complex16, complex16*, core_int);
template void real_scal(core_int, float, complex8*, core_int);
template void real_scal(core_int, double, complex16*, core_int);

}  // namespace qel::plain
