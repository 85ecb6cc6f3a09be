// SPDX-License-Identifier: BSD-3-Clause
// Level 2 with a Hermitian or symmetric matrix of which one triangle is stored, full, banded or packed: the
// product y = alpha A x + beta y and the updates of rank 1 and 2, of all columns or some. One pass over the
// stored columns; a product uses each element as itself and as its mirror. y is scaled first. An update
// leaves columns alone whose factors are zero, but for the imaginary part of the diagonal.
#pragma once

#include "blas/kernels/shared/level2_triangles.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// The usual case without the general one's bookkeeping, and in the same order: a whole panel of a full or
/// packed triangle with contiguous vectors. False if the case is another one.
template <bool kHermitian, class T>
inline bool add_usual_panel(const stored_triangle<const T>& a, core_int j0, core_int j1, T alpha,
                            vector_view<const T> x, vector_view<T> y) {
  constexpr int kOrder = kBothAtOnce<T>;
  if (j1 - j0 < kOrder || a.k < a.n || x.inc != 1 || y.inc != 1) return false;
  const T* column[kOrder];
  T xs[kOrder], ys[kOrder], factor[kOrder], total[kOrder];
#pragma GCC unroll 4
  for (int k = 0; k < kOrder; ++k) {
    column[k] = column_of(a, j0 + k);
    xs[k] = x.get(j0 + k);
    factor[k] = product_of(alpha, xs[k]);
    total[k] = real_element<T>(0);
  }
  for_stretches<T>(a.upper ? 0 : j1, a.upper ? j0 : a.n, [&](core_int row, core_int m) {
    T sum[kOrder];
    add_and_sum_columns<kHermitian, kOrder>(m, row, column, factor, x.at + row, y.at + row, sum);
    for (int k = 0; k < kOrder; ++k) total[k] = sum_of(total[k], sum[k]);
  });
#pragma GCC unroll 4
  for (int k = 0; k < kOrder; ++k) ys[k] = y.get(j0 + k);
#pragma GCC unroll 4
  for (int c = 0; c < kOrder; ++c) {
#pragma GCC unroll 4
    for (int r = 0; r < kOrder; ++r) {
      if (r == c || a.upper != (r < c)) continue;
      const T element = element_at(column[c] + j0 + r);
      ys[r] = mul_add(factor[c], element, ys[r]);
      total[c] = mul_add(conjugate_if<kHermitian>(element), xs[r], total[c]);
    }
    T diagonal = element_at(column[c] + j0 + c);
    if constexpr (kHermitian) diagonal = real_element<T>(real_part(diagonal));
    ys[c] = mul_add(alpha, total[c], mul_add(diagonal, factor[c], ys[c]));
  }
#pragma GCC unroll 4
  for (int k = 0; k < kOrder; ++k) y.set(j0 + k, ys[k]);
  return true;
}

/// The stored columns first .. last - 1 with their mirror images.
template <bool kHermitian, class T>
inline void add_hermitian(const stored_triangle<const T>& a, T alpha, vector_view<const T> x,
                          vector_view<T> y, core_int first, core_int last) {
  for_panels(first, last, panel_width(a, kBothAtOnce<T>), true, [&](core_int j0, core_int j1) {
    if (add_usual_panel<kHermitian>(a, j0, j1, alpha, x, y)) return;
    panel<const T, T> p;
    for (core_int j = j0; j < j1; ++j) {
      const row_range outside = rows_outside(a, j, j0, j1);
      p.add(column_of(a, j), outside.first, outside.last, product_of(alpha, x.get(j)));
    }
    T mirrored[kPanel];
    add_and_sum_panel<kHermitian>(p, x, y, mirrored);
    for (core_int j = j0; j < j1; ++j) {
      const T* column = p.column[j - j0];
      const T factor = p.factor[j - j0];
      T sum = mirrored[j - j0];
      const row_range inside = rows_inside(a, j, j0, j1);
      for (core_int i = inside.first; i < inside.last; ++i) {
        const T element = element_at(column + i);
        y.set(i, mul_add(factor, element, y.get(i)));
        sum = mul_add(conjugate_if<kHermitian>(element), x.get(i), sum);
      }
      T diagonal = element_at(column + j);
      if constexpr (kHermitian) diagonal = real_element<T>(real_part(diagonal));
      y.set(j, mul_add(alpha, sum, mul_add(diagonal, factor, y.get(j))));
    }
  });
}

template <class T>
inline void add_part(const stored_triangle<const T>& a, bool symmetric, T alpha, vector_view<const T> x,
                     vector_view<T> y, core_int first, core_int last) {
  if (equals_real(alpha, 0)) return;
  if (kIsComplex<T> && !symmetric) {
    add_hermitian<true>(a, alpha, x, y, first, last);
  } else {
    add_hermitian<false>(a, alpha, x, y, first, last);
  }
}

template <class T>
void hermitian_product(const stored_triangle<const T>& a, bool symmetric, T alpha, const T* x, core_int incx,
                       T beta, T* y, core_int incy) {
  if (a.n < 1) return;
  const auto ys = view_of(y, a.n, incy);
  scale(a.n, beta, ys);
  add_part(a, symmetric, alpha, view_of(x, a.n, incx), ys, 0, a.n);
}

template <class T>
void hermitian_product_part(const stored_triangle<const T>& a, bool symmetric, T alpha, const T* x,
                            core_int incx, T* sums, core_int first, core_int last) {
  add_part(a, symmetric, alpha, view_of(x, a.n, incx), {sums, 1}, first, last);
}

/// A += the outer products of vectors with the factors that factors_of(j, factor) sets for column j; false
/// there means that all are zero.
template <int kVectors, class T, class FactorsOf>
inline void update_triangle(const stored_triangle<T>& a, core_int first, core_int last,
                            const vector_view<const T> (&x)[kVectors], FactorsOf factors_of) {
  for_panels(first, last, kUpdatedAtOnce, true, [&](core_int j0, core_int j1) {
    panel<T, T, kVectors> p;
    for (core_int j = j0; j < j1; ++j) {
      T* column = column_of(a, j);
      T diagonal = real_element<T>(real_part(element_at(column + j)));
      T* factor = p.factor + p.count * kVectors;
      if (factors_of(j, factor)) {
        const row_range inside = rows_inside(a, j, j0, j1);
        for (core_int i = inside.first; i < inside.last; ++i) {
          T element = element_at(column + i);
          for (int v = 0; v < kVectors; ++v) element = mul_add(factor[v], x[v].get(i), element);
          set_element(column + i, element);
        }
        for (int v = 0; v < kVectors; ++v) diagonal = mul_add(factor[v], x[v].get(j), diagonal);
        const row_range outside = rows_outside(a, j, j0, j1);
        p.add(column, outside.first, outside.last);
      }
      set_element(column + j, real_element<T>(real_part(diagonal)));
    }
    if (p.count > 0) update_panel(p, x);
  });
}

template <class T, class R>
void hermitian_update(const stored_triangle<T>& a, R alpha, const T* x, core_int incx, core_int first,
                      core_int last) {
  if (a.n < 1 || alpha == 0) return;
  const vector_view<const T> xs[1] = {view_of(x, a.n, incx)};
  update_triangle(a, first, last, xs, [&](core_int j, T* factor) {
    const T xj = xs[0].get(j);
    if (equals_real(xj, 0)) return false;
    factor[0] = conjugate_if<true>(xj);
    if constexpr (kIsComplex<T>) {
      factor[0] = {alpha * factor[0].real, alpha * factor[0].imag};
    } else {
      factor[0] *= alpha;
    }
    return true;
  });
}

template <class T>
void hermitian_update2(const stored_triangle<T>& a, T alpha, const T* x, core_int incx, const T* y,
                       core_int incy, core_int first, core_int last) {
  if (a.n < 1 || equals_real(alpha, 0)) return;
  const vector_view<const T> both[2] = {view_of(x, a.n, incx), view_of(y, a.n, incy)};
  update_triangle(a, first, last, both, [&](core_int j, T* factor) {
    const T xj = both[0].get(j), yj = both[1].get(j);
    if (equals_real(xj, 0) && equals_real(yj, 0)) return false;
    factor[0] = product_of(alpha, conjugate_if<true>(yj));
    factor[1] = conjugate_if<true>(product_of(alpha, xj));
    return true;
  });
}

}  // namespace

#define QEL_TABLE(letter, T, R)                                                    \
  const hermitian_kernels<T, R> hermitian_##letter {                               \
    hermitian_product, hermitian_product_part, hermitian_update, hermitian_update2 \
  }
QEL_TABLE(s, float, float);
QEL_TABLE(d, double, double);
QEL_TABLE(c, complex8, float);
QEL_TABLE(z, complex16, double);
#undef QEL_TABLE

}  // namespace qel::QEL_LEVEL
