// SPDX-License-Identifier: BSD-3-Clause
// Products of strided matrices: one call of gemm or gemv if everything is compact, else a dot product for
// each element of the result. Kept: the compact way accumulates, the other one overwrites.
#include <algorithm>

#include "facade/calls.h"
#include "facade/views.h"
#include "tavik/kernel/dot_net_blas.h"

namespace Tavik::Kernel {
namespace {

/// An operand: a block and its strides.
template <class T>
struct operand {
  const DataBlock<T>& block;
  int row_stride, col_stride;
  bool compact(int rows) const { return DotNetBlas::IsCompactStride(rows, row_stride, col_stride); }
};

template <class T>
void set_element(const operand<T>& c, int i, int j, T value) {
  c.block.Data[moved_offset(moved_offset(c.block.Offset, i, c.row_stride), j, c.col_stride)] = value;
}

/// C(i, j) := dot(row i of A, column j of B), k elements long; bases are adjusted with base_length.
template <class T, class Dot>
void product_by_dots(int m, int n, int k, int base_length, const operand<T>& a, const operand<T>& b,
                     const operand<T>& c, const Dot& dot) {
  for (int i = 0; i < m; ++i) {
    const T* row = column_pointer(base_length, a.block, i, a.col_stride, a.row_stride);
    for (int j = 0; j < n; ++j) {
      const T* col = column_pointer(base_length, b.block, j, b.row_stride, b.col_stride);
      set_element(c, i, j, dot(k, row, a.col_stride, col, b.row_stride));
    }
  }
}

bool transposes(char letter) { return letter == 'T' || letter == 't'; }

template <class T>
void product_with_gaps(int m, int n, int k, char transa, char transb, operand<T> a, operand<T> b,
                       const operand<T>& c) {
  // Kept: bases are found from m or n after a transpose, though the vectors are k long.
  int base_length = k;
  if (transposes(transa)) {
    std::swap(a.row_stride, a.col_stride);
    base_length = m;
  }
  if (transposes(transb)) {
    std::swap(b.row_stride, b.col_stride);
    base_length = n;
  }
  product_by_dots(m, n, k, base_length, a, b, c, dot_product<T>);
}

/// C += op(A) op(B), cleared first if asked for. All compact; letters and stored row counts as given.
template <class T>
void compact_product(char transa, char transb, int m, int n, int k, const operand<T>& a, int lda,
                     const operand<T>& b, int ldb, const operand<T>& c, int ldc, bool zero) {
  if (zero && n > 0) {
    const strided<T> cleared = elements(m * n, c.block, 1);
    std::fill_n(cleared.first, std::max(m * n, 0), T(0));
  }
  const T one(1);
  call(entries<T>::gemm, transa, transb, m, n, k, one, block_pointer(a.block), lda, block_pointer(b.block),
       ldb, one, block_pointer(c.block), ldc);
}

template <class T>
void any_product(char transa, char transb, int m, int n, int k, const operand<T>& a, const operand<T>& b,
                 const operand<T>& c, bool zero) {
  const int a_rows = transa == 'N' ? m : k, b_rows = transb == 'N' ? k : n;
  if (a.compact(a_rows) && b.compact(b_rows) && c.compact(m)) {
    return compact_product(transa, transb, m, n, k, a, a_rows, b, b_rows, c, m, zero);
  }
  if constexpr (is_complex<T>) {
    if (transa == 'C') {
      const operand<T> adjoint{a.block, a.col_stride, a.row_stride};
      return product_by_dots(m, n, k, k, adjoint, b, c, conjugated_dot<T>);
    }
  }
  product_with_gaps(m, n, k, transa, transb, a, b, c);
}

/// y_i := dot(line i of A, x), length elements long; lines lie line_stride apart and their elements inc.
template <class T, class Dot>
void matrix_vector_by_dots(int lines, int length, const DataBlock<T>& a, int line_stride, int inc, const T* x,
                           int incx, const DataBlock<T>& y, int incy, const Dot& dot) {
  for (int i = 0; i < lines; ++i) {
    const T* line = column_pointer(length, a, i, inc, line_stride);
    y.Data[moved_offset(y.Offset, i, incy)] = dot(length, line, inc, x, incx);
  }
}

template <class T>
void matrix_vector(char trans, int m, int n, const operand<T>& a, const DataBlock<T>& x, int incx,
                   const DataBlock<T>& y, int incy) {
  // Kept: one length finds the bases of both vectors, that of x.
  const int length = trans == 'N' ? n : m;
  const T* const x_base = vector_pointer(length, x, incx);
  T* const y_base = vector_pointer(length, y, incy);
  const T one(1);
  if (a.compact(m)) {
    call(entries<T>::gemv, trans, m, n, one, block_pointer(a.block), m, x_base, incx, one, y_base, incy);
  } else if (trans == 'N') {
    matrix_vector_by_dots(m, n, a.block, a.row_stride, a.col_stride, x_base, incx, y, incy, dot_product<T>);
  } else if constexpr (is_complex<T>) {
    matrix_vector_by_dots(n, m, a.block, a.col_stride, a.row_stride, x_base, incx, y, incy,
                          conjugated_dot<T>);
  }
}

}  // namespace

// A product under its name, with and without zeroC.
#define DEFINE_PRODUCT(T, Name, transa, transb)                                                            \
  void DotNetBlas::Name(int m, int n, int k, const DataBlock<T>& a, int aRowStride, int aColStride,        \
                        const DataBlock<T>& b, int bRowStride, int bColStride, const DataBlock<T>& c,      \
                        int cRowStride, int cColStride) {                                                  \
    Name(m, n, k, a, aRowStride, aColStride, b, bRowStride, bColStride, c, cRowStride, cColStride, false); \
  }                                                                                                        \
  void DotNetBlas::Name(int m, int n, int k, const DataBlock<T>& a, int aRowStride, int aColStride,        \
                        const DataBlock<T>& b, int bRowStride, int bColStride, const DataBlock<T>& c,      \
                        int cRowStride, int cColStride, bool zeroC) {                                      \
    any_product<T>(transa, transb, m, n, k, {a, aRowStride, aColStride}, {b, bRowStride, bColStride},      \
                   {c, cRowStride, cColStride}, zeroC);                                                    \
  }
#define DEFINE(T)                                                                               \
  DEFINE_PRODUCT(T, Product, 'N', 'N')                                                          \
  DEFINE_PRODUCT(T, TransposeProduct, 'T', 'N')                                                 \
  void DotNetBlas::Product(int m, int n, const DataBlock<T>& a, int aRowStride, int aColStride, \
                           const DataBlock<T>& x, int incx, const DataBlock<T>& y, int incy) {  \
    matrix_vector<T>('N', m, n, {a, aRowStride, aColStride}, x, incx, y, incy);                 \
  }
TAVIK_FOR_ALL(DEFINE)
#undef DEFINE

DEFINE_PRODUCT(double, ProductTranspose, 'N', 'T')

#define DEFINE(T)                                                                                            \
  DEFINE_PRODUCT(T, ConjTransposeProduct, 'C', 'N')                                                          \
  void DotNetBlas::ConjTransposeProduct(int m, int n, const DataBlock<T>& a, int aRowStride, int aColStride, \
                                        const DataBlock<T>& x, int incx, const DataBlock<T>& y, int incy) {  \
    matrix_vector<T>('C', m, n, {a, aRowStride, aColStride}, x, incx, y, incy);                              \
  }                                                                                                          \
  void DotNetBlas::NonCompactProduct(int m, int n, int k, char transa, char transb, const DataBlock<T>& a,   \
                                     int aRowStride, int aColStride, const DataBlock<T>& b, int bRowStride,  \
                                     int bColStride, const DataBlock<T>& c, int cRowStride, int cColStride,  \
                                     bool) {                                                                 \
    product_with_gaps<T>(m, n, k, transa, transb, {a, aRowStride, aColStride}, {b, bRowStride, bColStride},  \
                         {c, cRowStride, cColStride});                                                       \
  }
TAVIK_FOR_COMPLEX(DEFINE)
#undef DEFINE

#define DEFINE(T)                                                                                           \
  void DotNetBlas::NonCompactProduct(int m, int n, int k, char transa, char transb, const DataBlock<T>& a,  \
                                     int aRowStride, int aColStride, const DataBlock<T>& b, int bRowStride, \
                                     int bColStride, const DataBlock<T>& c, int cRowStride,                 \
                                     int cColStride) {                                                      \
    product_with_gaps<T>(m, n, k, transa, transb, {a, aRowStride, aColStride}, {b, bRowStride, bColStride}, \
                         {c, cRowStride, cColStride});                                                      \
  }
TAVIK_FOR_REALS(DEFINE)
#undef DEFINE
#undef DEFINE_PRODUCT

#define DEFINE(T, Name)                                                                               \
  void DotNetBlas::Name(int m, int n, const DataBlock<T>& a, int aRowStride, int aColStride,          \
                        const DataBlock<T>& x, int incx, const DataBlock<T>& y, int incy) {           \
    matrix_vector_by_dots(m, n, a, aRowStride, aColStride, vector_pointer(n, x, incx), incx, y, incy, \
                          dot_product<T>);                                                            \
  }
DEFINE(DoubleComplex, ProductUsingZdotu)
DEFINE(FloatComplex, ProductUsingCdotu)
#undef DEFINE

}  // namespace Tavik::Kernel
