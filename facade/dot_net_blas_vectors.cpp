// SPDX-License-Identifier: BSD-3-Clause
// Operations over level-1 entries: vectors, and matrices column by column.
#include "facade/calls.h"
#include "qel/service.h"
#include "tavik/kernel/dot_net_blas.h"

namespace Tavik::Kernel {
namespace {

/// op(column pointer of every matrix...) for every column. at(j) gives a column's pointer.
template <class Op, class... At>
void for_each_column(int cols, const Op& op, const At&... at) {
  for (int j = 0; j < cols; ++j) op(at(j)...);
}
/// The columns of a matrix.
template <class T>
auto columns(int rows, const DataBlock<T>& block, int rowStride, int colStride, int offset = 0) {
  return [=, &block](int j) { return column_pointer(rows, block, j, rowStride, colStride, offset); };
}

template <class T>
void copy_vector(int n, const T* x, int incx, T* y, int incy) {
  call(entries<T>::copy, n, x, incx, y, incy);
}
template <class T>
void add_multiple(int n, T a, const T* x, int incx, T* y, int incy) {
  call(entries<T>::axpy, n, a, x, incx, y, incy);
}

/// The first vector of an update a x + y, and its target.
template <class T>
void update(int n, T a, const DataBlock<T>& x, int incx, const DataBlock<T>& y, int incy) {
  // Kept: single precision has no test of its own and looks at the blocks even when there is nothing to do.
  if (n < 1 && !std::is_same_v<T, float>) return;
  add_multiple(n, a, vector_pointer(n, x, incx), incx, vector_pointer(n, y, incy), incy);
}

constexpr int kContiguous = 1;

}  // namespace

#define DEFINE(T)                                                                                         \
  void DotNetBlas::copy(int n, const DataBlock<T>& x, int incx, const DataBlock<T>& y, int incy) {        \
    copy(n, x, 0, incx, y, 0, incy);                                                                      \
  }                                                                                                       \
  void DotNetBlas::copy(int n, const DataBlock<T>& x, int xOffset, int incx, const DataBlock<T>& y,       \
                        int yOffset, int incy) {                                                          \
    if (n <= 0) return;                                                                                   \
    copy_vector(n, vector_pointer(n, x, incx, xOffset), incx, vector_pointer(n, y, incy, yOffset), incy); \
  }                                                                                                       \
  void DotNetBlas::axpy(int n, T a, const DataBlock<T>& x, int incx, const DataBlock<T>& y, int incy) {   \
    update<T>(n, a, x, incx, y, incy);                                                                    \
  }                                                                                                       \
  T DotNetBlas::dot(int n, const DataBlock<T>& x, int incx, const DataBlock<T>& y, int incy) {            \
    return dot_product(n, vector_pointer(n, x, incx), incx, vector_pointer(n, y, incy), incy);            \
  }                                                                                                       \
  int DotNetBlas::amax(int n, const DataBlock<T>& x, int incx) {                                          \
    return call(entries<T>::amax, n, vector_pointer(n, x, incx), incx) - 1;                               \
  }                                                                                                       \
  int DotNetBlas::amin(int n, const DataBlock<T>& x, int incx) {                                          \
    return call(entries<T>::amin, n, vector_pointer(n, x, incx), incx) - 1;                               \
  }                                                                                                       \
  real_of<T> DotNetBlas::asum(int n, const DataBlock<T>& x, int incx) {                                   \
    return call(entries<T>::asum, n, vector_pointer(n, x, incx), incx);                                   \
  }                                                                                                       \
  void DotNetBlas::Negate(int n, const DataBlock<T>& x, int stride) { Multiply(n, T(-1), x, stride); }    \
  void DotNetBlas::Negate(int n, const DataBlock<T>& x, int incx, const DataBlock<T>& y, int incy) {      \
    Multiply(n, T(-1), x, incx, y, incy);                                                                 \
  }                                                                                                       \
  void DotNetBlas::Add(int n, const DataBlock<T>& x, int incx, const DataBlock<T>& y, int incy) {         \
    update<T>(n, 1, x, incx, y, incy);                                                                    \
  }                                                                                                       \
  void DotNetBlas::Add(int n, const DataBlock<T>& x, int incx, const DataBlock<T>& y, int incy,           \
                       const DataBlock<T>& z, int incz) {                                                 \
    copy(n, y, incy, z, incz);                                                                            \
    update<T>(n, 1, x, incx, z, incz);                                                                    \
  }                                                                                                       \
  void DotNetBlas::Subtract(int n, const DataBlock<T>& x, int incx, const DataBlock<T>& y, int incy) {    \
    update<T>(n, -1, y, incy, x, incx);                                                                   \
  }                                                                                                       \
  void DotNetBlas::Subtract(int n, const DataBlock<T>& x, int incx, const DataBlock<T>& y, int incy,      \
                            const DataBlock<T>& z, int incz) {                                            \
    copy(n, x, incx, z, incz);                                                                            \
    update<T>(n, -1, y, incy, z, incz);                                                                   \
  }
TAVIK_FOR_ALL(DEFINE)
#undef DEFINE

#define DEFINE(T)                                                                                           \
  void DotNetBlas::Scale(int n, T a, const DataBlock<T>& x, int incx) {                                     \
    if (n >= 1) Multiply(n, a, x, incx);                                                                    \
  }                                                                                                         \
  void DotNetBlas::Multiply(int n, T s, const DataBlock<T>& x, int incx) {                                  \
    call(entries<T>::scal, n, s, vector_pointer(n, x, incx), incx);                                         \
  }                                                                                                         \
  void DotNetBlas::Multiply(int n, T s, const DataBlock<T>& x, int incx, const DataBlock<T>& y, int incy) { \
    copy(n, x, incx, y, incy);                                                                              \
    Scale(n, s, y, incy);                                                                                   \
  }
TAVIK_FOR_REALS(DEFINE)
#undef DEFINE

#define DEFINE(T)                                                                                  \
  void DotNetBlas::scal(int n, real_of<T> a, const DataBlock<T>& x, int incx) {                    \
    call(entries<T>::scal_by_real, n, a, vector_pointer(n, x, incx), incx);                        \
  }                                                                                                \
  T DotNetBlas::conjdot(int n, const DataBlock<T>& x, int incx, const DataBlock<T>& y, int incy) { \
    return conjugated_dot(n, vector_pointer(n, x, incx), incx, vector_pointer(n, y, incy), incy);  \
  }
TAVIK_FOR_COMPLEX(DEFINE)
#undef DEFINE

// Plain arrays.
#define DEFINE(T)                                                        \
  int DotNetBlas::amax(int n, const Array<T>& x) {                       \
    return call(entries<T>::amax, n, array_pointer(x), kContiguous) - 1; \
  }                                                                      \
  int DotNetBlas::amin(int n, const Array<T>& x) {                       \
    return call(entries<T>::amin, n, array_pointer(x), kContiguous) - 1; \
  }                                                                      \
  double DotNetBlas::asum(int n, const Array<T>& x) {                    \
    return call(entries<T>::asum, n, array_pointer(x), kContiguous);     \
  }                                                                      \
  double DotNetBlas::nrm2(int n, const Array<T>& x) {                    \
    return call(entries<T>::nrm2, n, array_pointer(x), kContiguous);     \
  }
DEFINE(double)
DEFINE(DoubleComplex)
#undef DEFINE

// Matrices.
#define DEFINE(T)                                                                                            \
  void DotNetBlas::Scale(int rows, int cols, T a, const DataBlock<T>& AData, int ARowStride,                 \
                         int AColStride) {                                                                   \
    for_each_column(                                                                                         \
        cols, [&](T* x) { call(entries<T>::scal, rows, a, x, ARowStride); },                                 \
        columns(rows, AData, ARowStride, AColStride));                                                       \
  }                                                                                                          \
  void DotNetBlas::Scale(int rows, int cols, T a, const DataBlock<T>& AData, int ARowStride, int AColStride, \
                         const DataBlock<T>& BData, int BRowStride, int BColStride) {                        \
    for_each_column(                                                                                         \
        cols,                                                                                                \
        [&](T* x, T* y) {                                                                                    \
          copy_vector(rows, x, ARowStride, y, BRowStride);                                                   \
          call(entries<T>::scal, rows, a, y, BRowStride);                                                    \
        },                                                                                                   \
        columns(rows, AData, ARowStride, AColStride), columns(rows, BData, BRowStride, BColStride));         \
  }                                                                                                          \
  void DotNetBlas::Add(int rows, int cols, const DataBlock<T>& AData, int ARowStride, int AColStride,        \
                       const DataBlock<T>& BData, int BRowStride, int BColStride) {                          \
    for_each_column(                                                                                         \
        cols, [&](T* x, T* y) { add_multiple(rows, T(1), x, ARowStride, y, BRowStride); },                   \
        columns(rows, AData, ARowStride, AColStride), columns(rows, BData, BRowStride, BColStride));         \
  }                                                                                                          \
  void DotNetBlas::Add(int rows, int cols, const DataBlock<T>& AData, int ARowStride, int AColStride,        \
                       const DataBlock<T>& BData, int BRowStride, int BColStride, const DataBlock<T>& CData, \
                       int CRowStride, int CColStride) {                                                     \
    for_each_column(                                                                                         \
        cols,                                                                                                \
        [&](T* x, T* y, T* z) {                                                                              \
          copy_vector(rows, y, BRowStride, z, CRowStride);                                                   \
          add_multiple(rows, T(1), x, ARowStride, z, CRowStride);                                            \
        },                                                                                                   \
        columns(rows, AData, ARowStride, AColStride), columns(rows, BData, BRowStride, BColStride),          \
        columns(rows, CData, CRowStride, CColStride));                                                       \
  }                                                                                                          \
  void DotNetBlas::Subtract(int rows, int cols, const DataBlock<T>& AData, int ARowStride, int AColStride,   \
                            const DataBlock<T>& BData, int BRowStride, int BColStride) {                     \
    for_each_column(                                                                                         \
        cols, [&](T* x, T* y) { add_multiple(rows, T(-1), y, BRowStride, x, ARowStride); },                  \
        columns(rows, AData, ARowStride, AColStride), columns(rows, BData, BRowStride, BColStride));         \
  }                                                                                                          \
  void DotNetBlas::Subtract(int rows, int cols, const DataBlock<T>& AData, int ARowStride, int AColStride,   \
                            const DataBlock<T>& BData, int BRowStride, int BColStride,                       \
                            const DataBlock<T>& CData, int CRowStride, int CColStride) {                     \
    for_each_column(                                                                                         \
        cols,                                                                                                \
        [&](T* x, T* y, T* z) {                                                                              \
          copy_vector(rows, x, ARowStride, z, CRowStride);                                                   \
          add_multiple(rows, T(-1), y, BRowStride, z, CRowStride);                                           \
        },                                                                                                   \
        columns(rows, AData, ARowStride, AColStride), columns(rows, BData, BRowStride, BColStride),          \
        columns(rows, CData, CRowStride, CColStride));                                                       \
  }                                                                                                          \
  void DotNetBlas::Copy(int rows, int cols, const DataBlock<T>& AData, int ARowStride, int AColStride,       \
                        const DataBlock<T>& BData, int BRowStride, int BColStride) {                         \
    Copy(rows, cols, AData, 0, 0, ARowStride, AColStride, BData, 0, 0, BRowStride, BColStride);              \
  }                                                                                                          \
  void DotNetBlas::Copy(int rows, int cols, const DataBlock<T>& AData, int ARowOffset, int AColOffset,       \
                        int ARowStride, int AColStride, const DataBlock<T>& BData, int BRowOffset,           \
                        int BColOffset, int BRowStride, int BColStride) {                                    \
    for_each_column(                                                                                         \
        cols, [&](T* x, T* y) { copy_vector(rows, x, ARowStride, y, BRowStride); },                          \
        columns(rows, AData, ARowStride, AColStride, ARowOffset + AColOffset),                               \
        columns(rows, BData, BRowStride, BColStride, BRowOffset + BColOffset));                              \
  }
TAVIK_FOR_ALL(DEFINE)
#undef DEFINE

void DotNetBlas::QelFreeBuffers() { QEL_FreeBuffers(); }

}  // namespace Tavik::Kernel
