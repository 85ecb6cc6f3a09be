// SPDX-License-Identifier: BSD-3-Clause
// Element-wise operations, in the facade's own loops.
#include "facade/calls.h"
#include "facade/views.h"
#include "tavik/kernel/dot_net_blas.h"

namespace Tavik::Kernel {
namespace {

/// x / y: for complex numbers with one shared denominator and no scaling.
template <class T>
T quotient(T x, T y) {
  if constexpr (is_complex<T>) {
    const auto d = y.Imag * y.Imag + y.Real * y.Real;
    return {(y.Real * x.Real + y.Imag * x.Imag) / d, (y.Real * x.Imag - y.Imag * x.Real) / d};
  } else {
    return x / y;
  }
}
/// a / x for a real a.
template <class R>
Complex<R> real_over(R a, Complex<R> x) {
  const R d = x.Imag * x.Imag + x.Real * x.Real;
  return {x.Real * a / d, -(x.Imag * a) / d};
}

// The operations, by what they make of elements.
constexpr auto kIncrement = [](auto& x) { x += 1; };
constexpr auto kDecrement = [](auto& x) { x -= 1; };
constexpr auto kMultiplySecond = [](const auto& x, auto& y) { y = x * y; };
constexpr auto kMultiply = [](const auto& x, const auto& y, auto& z) { z = x * y; };
constexpr auto kDivideFirst = [](auto& x, const auto& y) { x = quotient(x, y); };
constexpr auto kDivide = [](const auto& x, const auto& y, auto& z) { z = quotient(x, y); };

template <class Op, class T>
void apply(const Op& op, int n, const DataBlock<T>& x, int incx) {
  for_each_element(n, op, elements(n, x, incx));
}
template <class Op, class T>
void apply(const Op& op, int n, const DataBlock<T>& x, int incx, const DataBlock<T>& y, int incy) {
  for_each_element(n, op, elements(n, x, incx), elements(n, y, incy));
}
template <class Op, class T>
void apply(const Op& op, int n, const DataBlock<T>& x, int incx, const DataBlock<T>& y, int incy,
           const DataBlock<T>& z, int incz) {
  for_each_element(n, op, elements(n, x, incx), elements(n, y, incy), elements(n, z, incz));
}

/// A matrix of rows rows.
template <class T>
struct matrix_view {
  const DataBlock<T>& block;
  int row_stride, col_stride;
  strided<T> operator()(int rows, int j) const { return column(rows, block, j, row_stride, col_stride); }
};
template <class Op, class... T>
void apply_to_matrices(const Op& op, int rows, int cols, const matrix_view<T>&... matrices) {
  for (int j = 0; j < cols; ++j) for_each_element(rows, op, matrices(rows, j)...);
}

}  // namespace

#define DEFINE(T)                                                                                          \
  void DotNetBlas::Multiply(int n, const DataBlock<T>& x, int xStride, const DataBlock<T>& y, int yStride, \
                            const DataBlock<T>& z, int zStride) {                                          \
    apply(kMultiply, n, x, xStride, y, yStride, z, zStride);                                               \
  }                                                                                                        \
  void DotNetBlas::Multiply(int rows, int cols, const DataBlock<T>& AData, int ARowStride, int AColStride, \
                            const DataBlock<T>& BData, int BRowStride, int BColStride) {                   \
    apply_to_matrices(kMultiplySecond, rows, cols, matrix_view<T>{AData, ARowStride, AColStride},          \
                      matrix_view<T>{BData, BRowStride, BColStride});                                      \
  }                                                                                                        \
  void DotNetBlas::Multiply(int rows, int cols, const DataBlock<T>& AData, int ARowStride, int AColStride, \
                            const DataBlock<T>& BData, int BRowStride, int BColStride,                     \
                            const DataBlock<T>& CData, int CRowStride, int CColStride) {                   \
    apply_to_matrices(kMultiply, rows, cols, matrix_view<T>{AData, ARowStride, AColStride},                \
                      matrix_view<T>{BData, BRowStride, BColStride},                                       \
                      matrix_view<T>{CData, CRowStride, CColStride});                                      \
  }                                                                                                        \
  void DotNetBlas::Divide(int n, const DataBlock<T>& x, int incx, const DataBlock<T>& y, int incy) {       \
    apply(kDivideFirst, n, x, incx, y, incy);                                                              \
  }                                                                                                        \
  void DotNetBlas::Divide(int n, const DataBlock<T>& x, int incx, const DataBlock<T>& y, int incy,         \
                          const DataBlock<T>& z, int incz) {                                               \
    apply(kDivide, n, x, incx, y, incy, z, incz);                                                          \
  }                                                                                                        \
  void DotNetBlas::Divide(int rows, int cols, const DataBlock<T>& AData, int ARowStride, int AColStride,   \
                          const DataBlock<T>& BData, int BRowStride, int BColStride) {                     \
    apply_to_matrices(kDivideFirst, rows, cols, matrix_view<T>{AData, ARowStride, AColStride},             \
                      matrix_view<T>{BData, BRowStride, BColStride});                                      \
  }                                                                                                        \
  void DotNetBlas::Divide(int rows, int cols, const DataBlock<T>& AData, int ARowStride, int AColStride,   \
                          const DataBlock<T>& BData, int BRowStride, int BColStride,                       \
                          const DataBlock<T>& CData, int CRowStride, int CColStride) {                     \
    apply_to_matrices(kDivide, rows, cols, matrix_view<T>{AData, ARowStride, AColStride},                  \
                      matrix_view<T>{BData, BRowStride, BColStride},                                       \
                      matrix_view<T>{CData, CRowStride, CColStride});                                      \
  }
TAVIK_FOR_ALL(DEFINE)
#undef DEFINE

#define DEFINE(T)                                                                                            \
  void DotNetBlas::Multiply(int n, const DataBlock<T>& x, int xStride, const DataBlock<T>& y, int yStride) { \
    apply(kMultiplySecond, n, x, xStride, y, yStride);                                                       \
  }
DEFINE(double)
TAVIK_FOR_COMPLEX(DEFINE)
#undef DEFINE

#define DEFINE(T)                                                                                           \
  void DotNetBlas::Increment(int n, const DataBlock<T>& x, int stride) { apply(kIncrement, n, x, stride); } \
  void DotNetBlas::Increment(int rows, int cols, const DataBlock<T>& AData, int ARowStride,                 \
                             int AColStride) {                                                              \
    apply_to_matrices(kIncrement, rows, cols, matrix_view<T>{AData, ARowStride, AColStride});               \
  }                                                                                                         \
  void DotNetBlas::Decrement(int n, const DataBlock<T>& x, int stride) { apply(kDecrement, n, x, stride); } \
  void DotNetBlas::Decrement(int rows, int cols, const DataBlock<T>& AData, int ARowStride,                 \
                             int AColStride) {                                                              \
    apply_to_matrices(kDecrement, rows, cols, matrix_view<T>{AData, ARowStride, AColStride});               \
  }
TAVIK_FOR_REALS(DEFINE)
#undef DEFINE

// Kept: a complex a is the denominator, a real one the numerator.
#define DEFINE(T)                                                                                           \
  void DotNetBlas::Multiply(int n, T a, const DataBlock<T>& x, int incx) {                                  \
    apply([a](T& v) { v = a * v; }, n, x, incx);                                                            \
  }                                                                                                         \
  void DotNetBlas::Multiply(int n, T a, const DataBlock<T>& x, int incx, const DataBlock<T>& y, int incy) { \
    apply([a](const T& v, T& w) { w = a * v; }, n, x, incx, y, incy);                                       \
  }                                                                                                         \
  void DotNetBlas::Divide(int n, T a, const DataBlock<T>& x, int incx) {                                    \
    apply([a](T& v) { v = quotient(v, a); }, n, x, incx);                                                   \
  }                                                                                                         \
  void DotNetBlas::Divide(int n, real_of<T> a, const DataBlock<T>& x, int incx) {                           \
    apply([a](T& v) { v = real_over(a, v); }, n, x, incx);                                                  \
  }
TAVIK_FOR_COMPLEX(DEFINE)
#undef DEFINE

}  // namespace Tavik::Kernel
