// SPDX-License-Identifier: BSD-3-Clause
// Packed and band matrices whose consecutive elements lie a stride apart.
#include "facade/calls.h"
#include "facade/views.h"
#include "tavik/kernel/matrix_dot_net_blas.h"

namespace Tavik::Kernel {
namespace {

/// Elements of the packed columns ahead of column j.
constexpr long packed_start(long j) { return j * (j + 1) / 2; }
/// Place of element (i, j), i <= j.
constexpr long packed_place(long i, long j) { return packed_start(j) + i; }

template <class T>
strided<T> packed_elements(int n, const DataBlock<T>& m, int incm) {
  return elements(packed_start(n), m, incm);
}

template <class T>
T conjugate(T v) {
  if constexpr (is_complex<T>) {
    return {v.Real, -v.Imag};
  } else {
    return v;
  }
}

/// Packed column j, as an entry takes it, with its j + 1 elements.
template <class T>
T* packed_column(const DataBlock<T>& ap, int incap, int j) {
  const int start = moved_offset(ap.Offset, static_cast<int>(packed_start(j)), incap);
  return &ap.Data[DotNetBlas::AdjustVectorOffset(j + 1, incap, start)];
}

template <class T>
void upper_product(int n, const DataBlock<T>& ap, int incap, const DataBlock<T>& x, int incx,
                   const DataBlock<T>& y) {
  constexpr int kContiguous = 1;
  const strided<T> from = elements(n, x, incx), to = elements(n, y, 1);
  for (int i = 0; i < n; ++i) to[i] = T(0);
  for (int j = 0; j < n; ++j) {
    call(entries<T>::axpy, j + 1, from[j], packed_column(ap, incap, j), incap, to.first, kContiguous);
  }
}

/// Row i of the lower triangle is the packed column i.
template <class T>
void lower_product(int n, const DataBlock<T>& ap, int incap, const DataBlock<T>& x, int incx,
                   const DataBlock<T>& y) {
  const strided<T> to = elements(n, y, 1);
  for (int i = 0; i < n; ++i) {
    to[i] = dot_product(i + 1, packed_column(ap, incap, i), incap, vector_pointer(i + 1, x, incx), incx);
  }
}

/// Row i: down column i to the diagonal, then along the row through the later columns. mirrored makes the
/// elements ahead of the diagonal from those of the column.
template <class T, class Mirrored>
void mirrored_product(int n, const DataBlock<T>& m, int incm, const DataBlock<T>& x, int incx,
                      const DataBlock<T>& y, const Mirrored& mirrored) {
  const strided<T> a = packed_elements(n, m, incm), from = elements(n, x, incx), to = elements(n, y, 1);
  for (int i = 0; i < n; ++i) {
    T sum(0);
    for (int j = 0; j < i; ++j) sum = sum + mirrored(a[packed_place(j, i)]) * from[j];
    for (int j = i; j < n; ++j) sum = sum + a[packed_place(i, j)] * from[j];
    to[i] = sum;
  }
}

/// The place of diagonal element k in packed form and in a band with hb elements ahead of each.
constexpr auto kPackedDiagonal = [](long k) { return packed_place(k, k); };
struct band_diagonal {
  long hb;
  long operator()(long k) const { return hb + k * (hb + 1); }
};

/// Copies n columns, which end with their diagonal elements, all others conjugated.
template <class T, class Diagonal>
void conjugate_columns(int n, const DataBlock<T>& m, int incm, const DataBlock<T>& t,
                       const Diagonal& diagonal) {
  const long count = n > 0 ? diagonal(n - 1) + 1 : 0;
  const strided<T> from = elements(count, m, incm), to = elements(count, t, 1);
  long place = 0;
  for (int k = 0; k < n; ++k) {
    for (; place < diagonal(k); ++place) to[place] = conjugate(from[place]);
    to[place] = from[place];
    ++place;
  }
}

/// op(imaginary part) of every diagonal element, until it says no.
template <class T, class Diagonal, class Op>
bool for_diagonal(int n, const DataBlock<T>& m, int incm, const Diagonal& diagonal, const Op& op) {
  const strided<T> a = elements(n > 0 ? diagonal(n - 1) + 1 : 0, m, incm);
  for (int k = 0; k < n; ++k) {
    if (!op(a[diagonal(k)].Imag)) return false;
  }
  return true;
}
constexpr auto kIsZero = [](auto& imaginary) { return imaginary == 0; };
constexpr auto kMakeZero = [](auto& imaginary) {
  imaginary = 0;
  return true;
};

}  // namespace

#define DEFINE(T)                                                                                         \
  void MatrixDotNetBlas::UpperTriangularProduct(int n, const DataBlock<T>& ap, int incap,                 \
                                                const DataBlock<T>& x, int incx, const DataBlock<T>& y) { \
    upper_product(n, ap, incap, x, incx, y);                                                              \
  }                                                                                                       \
  void MatrixDotNetBlas::LowerTriangularProduct(int n, const DataBlock<T>& ap, int incap,                 \
                                                const DataBlock<T>& x, int incx, const DataBlock<T>& y) { \
    lower_product(n, ap, incap, x, incx, y);                                                              \
  }
TAVIK_FOR_ALL(DEFINE)
#undef DEFINE

#define DEFINE(T)                                                                                        \
  void MatrixDotNetBlas::SymmetricProduct(int n, const DataBlock<T>& m, int incm, const DataBlock<T>& x, \
                                          int incx, const DataBlock<T>& y) {                             \
    mirrored_product(n, m, incm, x, incx, y, [](T v) { return v; });                                     \
  }
TAVIK_FOR_REALS(DEFINE)
#undef DEFINE

#define DEFINE(T)                                                                                           \
  void MatrixDotNetBlas::HermitianProduct(int n, const DataBlock<T>& m, int incm, const DataBlock<T>& x,    \
                                          int incx, const DataBlock<T>& y, bool flag) {                     \
    mirrored_product(n, m, incm, x, incx, y, [flag](T v) { return flag ? v : conjugate(v); });              \
  }                                                                                                         \
  void MatrixDotNetBlas::Transpose(int n, const DataBlock<T>& m, int incm, const DataBlock<T>& t) {         \
    conjugate_columns(n, m, incm, t, kPackedDiagonal);                                                      \
  }                                                                                                         \
  void MatrixDotNetBlas::Transpose(int o, const DataBlock<T>& m, int incm, int hb, const DataBlock<T>& t) { \
    conjugate_columns(o, m, incm, t, band_diagonal{hb});                                                    \
  }                                                                                                         \
  bool MatrixDotNetBlas::PackedIsDiagonalReal(int n, const DataBlock<T>& m, int incm) {                     \
    return for_diagonal(n, m, incm, kPackedDiagonal, kIsZero);                                              \
  }                                                                                                         \
  void MatrixDotNetBlas::PackedMakeDiagonalReal(int n, const DataBlock<T>& m, int incm) {                   \
    for_diagonal(n, m, incm, kPackedDiagonal, kMakeZero);                                                   \
  }                                                                                                         \
  bool MatrixDotNetBlas::BandedIsDiagonalReal(int n, const DataBlock<T>& m, int incm, int hb) {             \
    return for_diagonal(n, m, incm, band_diagonal{hb}, kIsZero);                                            \
  }                                                                                                         \
  void MatrixDotNetBlas::BandedMakeDiagonalReal(int n, const DataBlock<T>& m, int incm, int hb) {           \
    for_diagonal(n, m, incm, band_diagonal{hb}, kMakeZero);                                                 \
  }
TAVIK_FOR_COMPLEX(DEFINE)
#undef DEFINE

}  // namespace Tavik::Kernel
