// SPDX-License-Identifier: BSD-3-Clause
// Level 2 with a triangular matrix, full, banded or packed: x = op(A) x and the solution of op(A) x = b in
// place. Panels of columns in the order in which x may be overwritten. Without a transpose columns are added
// to x, and a zero x_j leaves its column, and in a solution its division, out; with one, x_j takes the
// products of column j with x. A singular A is not detected.
#pragma once

#include "blas/kernels/shared/level2_blocks.inl.h"
#include "blas/kernels/shared/level2_triangles.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// The rows of columns j0 .. j1 - 1 off the panel's diagonal block, with factors factor(j); a column whose
/// factor is zero is left out.
template <class T, class Factor>
inline panel<const T, T> outside_panel(const stored_triangle<const T>& a, core_int j0, core_int j1,
                                       Factor factor) {
  panel<const T, T> p;
  for (core_int j = j0; j < j1; ++j) {
    const T f = factor(j);
    if (equals_real(f, 0)) continue;
    const row_range outside = rows_outside(a, j, j0, j1);
    p.add(column_of(a, j), outside.first, outside.last, f);
  }
  return p;
}
template <class T>
inline panel<const T, T> outside_panel(const stored_triangle<const T>& a, core_int j0, core_int j1) {
  return outside_panel(a, j0, j1, [](core_int) { return real_element<T>(1); });
}

/// Sums of the rows of columns j0 .. j1 - 1 off the panel's diagonal block with x.
template <bool kConjugate, class T>
inline void sum_outside(const stored_triangle<const T>& a, core_int j0, core_int j1, vector_view<T> x,
                        T* total) {
  if (j1 - j0 < a.n) return sum_panel<kConjugate>(outside_panel(a, j0, j1), {x.at, x.inc}, total);
  for (core_int k = 0; k < a.n; ++k) total[k] = real_element<T>(0);
}
/// Adds the columns' multiples to the same rows of x.
template <class T, class Factor>
inline void add_outside(const stored_triangle<const T>& a, core_int j0, core_int j1, vector_view<T> x,
                        Factor factor) {
  if (j1 - j0 == a.n) return;
  const auto p = outside_panel(a, j0, j1, factor);
  if (p.count > 0) add_panel(p, x);
}

/// A panel's columns times their factors. Complex ones are called: their loop needs all registers.
template <class T>
[[gnu::noinline]] void call_to_add_block(core_int rows, core_int row, const T* const* column, const T* factor,
                                         T* y) {
  add_columns<kBlock<T>>(rows, row, column, factor, y);
}
template <class T>
[[gnu::always_inline]] inline void add_block(row_range rows, const T* const* column, const T* factor, T* x) {
  const core_int count = rows.last - rows.first;
  if constexpr (kIsComplex<T>) return call_to_add_block(count, rows.first, column, factor, x + rows.first);
  add_columns<kBlock<T>>(count, rows.first, column, factor, x + rows.first);
}

/// The usual case without the general one's bookkeeping: a whole panel of a full or packed triangle, x
/// contiguous. Calls work(block, columns, rows), where rows are those of the panel off its diagonal block;
/// false if the case is another one, or work said so without having changed x.
template <class T, class Work>
[[gnu::always_inline]] inline bool on_usual_panel(const stored_triangle<const T>& a, core_int j0, core_int j1,
                                                  vector_view<T> x, Work work) {
  if (j1 - j0 < kBlock<T> || a.k < a.n || x.inc != 1) return false;
  const T* column[kBlock<T>];
#pragma GCC unroll 8
  for (int k = 0; k < kBlock<T>; ++k) column[k] = column_of(a, j0 + k);
  const row_range rows{a.upper ? 0 : j1, a.upper ? j0 : a.n};
  return on_block(a.upper, column, j0, x, [&](auto& block) { return work(block, column, rows); });
}
template <bool kConjugate, class T>
inline void sum_usual_panel(const T* const* column, row_range rows, const T* x, T* total) {
  for (int k = 0; k < kBlock<T>; ++k) total[k] = real_element<T>(0);
  for_stretches<T>(rows.first, rows.last, [&](core_int row, core_int m) {
    T sum[kBlock<T>];
    column_sums<kConjugate>(kBlock<T>, m, row, column, x + row, sum);
    for (int k = 0; k < kBlock<T>; ++k) total[k] = sum_of(total[k], sum[k]);
  });
}

template <class T>
inline void multiply(const stored_triangle<const T>& a, bool unit, vector_view<T> x) {
  for_panels(0, a.n, panel_width(a, kBlock<T>), a.upper, [&](core_int j0, core_int j1) {
    const auto usual = [&](auto& block, const T* const* column, row_range rows) {
      if (block.has_zero()) return false;
      add_block(rows, column, block.x, x.at);
      block.multiply(unit);
      return true;
    };
    if (on_usual_panel(a, j0, j1, x, usual)) return;
    add_outside(a, j0, j1, x, [&](core_int j) { return x.get(j); });
    for_columns(j0, j1, a.upper, [&](core_int j) {
      const T factor = x.get(j);
      if (equals_real(factor, 0)) return;
      const T* column = column_of(a, j);
      const row_range inside = rows_inside(a, j, j0, j1);
      for (core_int i = inside.first; i < inside.last; ++i) {
        x.set(i, mul_add(factor, element_at(column + i), x.get(i)));
      }
      if (!unit) x.set(j, product_of(factor, element_at(column + j)));
    });
  });
}

template <bool kConjugate, class T>
inline void multiply_transposed(const stored_triangle<const T>& a, bool unit, vector_view<T> x) {
  for_panels(0, a.n, panel_width(a, kBlock<T>), !a.upper, [&](core_int j0, core_int j1) {
    T outside[kPanel];
    const auto usual = [&](auto& block, const T* const* column, row_range rows) {
      sum_usual_panel<kConjugate>(column, rows, x.at, outside);
      block.template multiply_transposed<kConjugate>(unit, outside);
      return true;
    };
    if (on_usual_panel(a, j0, j1, x, usual)) return;
    sum_outside<kConjugate>(a, j0, j1, x, outside);
    for_columns(j0, j1, !a.upper, [&](core_int j) {
      const T* column = column_of(a, j);
      T sum = x.get(j);
      if (!unit) sum = product_of(sum, conjugate_if<kConjugate>(element_at(column + j)));
      const row_range inside = rows_inside(a, j, j0, j1);
      for (core_int i = inside.first; i < inside.last; ++i) {
        sum = mul_add(conjugate_if<kConjugate>(element_at(column + i)), x.get(i), sum);
      }
      x.set(j, sum_of(sum, outside[j - j0]));
    });
  });
}

template <class T>
inline void solve(const stored_triangle<const T>& a, bool unit, vector_view<T> x) {
  for_panels(0, a.n, panel_width(a, kBlock<T>), !a.upper, [&](core_int j0, core_int j1) {
    bool done = false;
    const auto usual = [&](auto& block, const T* const* column, row_range rows) {
      block.solve(unit);
      done = !block.has_zero();
      if (!done) return true;
      T factor[kBlock<T>];
      for (int k = 0; k < kBlock<T>; ++k) factor[k] = negative(block.x[k]);
      add_block(rows, column, factor, x.at);
      return true;
    };
    if (!on_usual_panel(a, j0, j1, x, usual)) {
      for_columns(j0, j1, !a.upper, [&](core_int j) {
        T xj = x.get(j);
        if (equals_real(xj, 0)) return;
        const T* column = column_of(a, j);
        if (!unit) xj = quotient_of(xj, element_at(column + j));
        x.set(j, xj);
        const row_range inside = rows_inside(a, j, j0, j1);
        for (core_int i = inside.first; i < inside.last; ++i) {
          x.set(i, mul_add(negative(xj), element_at(column + i), x.get(i)));
        }
      });
    }
    if (!done) add_outside(a, j0, j1, x, [&](core_int j) { return negative(x.get(j)); });
  });
}

template <bool kConjugate, class T>
inline void solve_transposed(const stored_triangle<const T>& a, bool unit, vector_view<T> x) {
  for_panels(0, a.n, panel_width(a, kBlock<T>), a.upper, [&](core_int j0, core_int j1) {
    T outside[kPanel];
    const auto usual = [&](auto& block, const T* const* column, row_range rows) {
      sum_usual_panel<kConjugate>(column, rows, x.at, outside);
      block.template solve_transposed<kConjugate>(unit, outside);
      return true;
    };
    if (on_usual_panel(a, j0, j1, x, usual)) return;
    sum_outside<kConjugate>(a, j0, j1, x, outside);
    for_columns(j0, j1, a.upper, [&](core_int j) {
      const T* column = column_of(a, j);
      T rest = sum_of(x.get(j), negative(outside[j - j0]));
      const row_range inside = rows_inside(a, j, j0, j1);
      for (core_int i = inside.first; i < inside.last; ++i) {
        rest = mul_add(negative(conjugate_if<kConjugate>(element_at(column + i))), x.get(i), rest);
      }
      if (!unit) rest = quotient_of(rest, conjugate_if<kConjugate>(element_at(column + j)));
      x.set(j, rest);
    });
  });
}

template <class T, class Work>
[[gnu::noinline]] void with_copied_vector(core_int n, vector_view<T> x, const Work& work) {
  stretch_of<T> near;
  work(vector_view<T>{near.open(x, 0, n), 1});
  near.close(x, 0, n);
}
/// Calls work with x as a view: contiguous, by way of the stack, if that has room for it.
template <class T, class Work>
[[gnu::always_inline]] inline void with_near_vector(core_int n, T* x, core_int incx, const Work& work) {
  const auto view = view_of(x, n, incx);
  if (view.inc == 1 || n > kStretch<T>) return work(view);
  with_copied_vector(n, view, work);
}

template <class T>
void triangular_product(const stored_triangle<const T>& a, matrix_op op, bool unit, T* x, core_int incx) {
  if (a.n < 1) return;
  with_near_vector(a.n, x, incx, [&](vector_view<T> xs) {
    if (op == matrix_op::kNone) {
      multiply(a, unit, xs);
    } else if (kIsComplex<T> && op == matrix_op::kConjugated) {
      multiply_transposed<true>(a, unit, xs);
    } else {
      multiply_transposed<false>(a, unit, xs);
    }
  });
}

template <class T>
void triangular_solution(const stored_triangle<const T>& a, matrix_op op, bool unit, T* x, core_int incx) {
  if (a.n < 1) return;
  with_near_vector(a.n, x, incx, [&](vector_view<T> xs) {
    if (op == matrix_op::kNone) {
      solve(a, unit, xs);
    } else if (kIsComplex<T> && op == matrix_op::kConjugated) {
      solve_transposed<true>(a, unit, xs);
    } else {
      solve_transposed<false>(a, unit, xs);
    }
  });
}

template <class T>
void triangular_solution_part(const stored_triangle<const T>& a, matrix_op op, bool unit, T* x, core_int incx,
                              core_int first, core_int last) {
  const auto whole = view_of(x, a.n, incx);
  const core_int lowest = incx < 0 ? last - 1 : first;
  triangular_solution(block_of(a, first, last), op, unit, whole.at + lowest * incx, incx);
}

/// Elements first .. last - 1 of x += op(A) times elements from_first .. from_last - 1 of `from`, all of
/// which lie on the same side of the diagonal. Without a transpose zeros leave their columns out.
template <bool kNegative, class T>
inline void add_scaled(const stored_triangle<const T>& a, vector_view<const T> from, core_int from_first,
                       core_int from_last, vector_view<T> x, core_int first, core_int last) {
  for (core_int j = from_first; j < from_last;) {
    panel<const T, T> p;
    for (; j < from_last && p.count < kPanel; ++j) {
      const T factor = from.get(j);
      if (equals_real(factor, 0)) continue;
      const row_range rows = rows_among(a, j, first, last);
      p.add(column_of(a, j), rows.first, rows.last, kNegative ? negative(factor) : factor);
    }
    if (p.count > 0) add_panel(p, x);
  }
}
template <bool kNegative, bool kConjugate, class T>
inline void add_sums(const stored_triangle<const T>& a, vector_view<const T> from, core_int from_first,
                     core_int from_last, vector_view<T> x, core_int first, core_int last) {
  for (core_int j0 = first; j0 < last; j0 += kPanel) {
    panel<const T, T> p;
    for (core_int j = j0; j < last && j < j0 + kPanel; ++j) {
      const row_range rows = rows_among(a, j, from_first, from_last);
      p.add(column_of(a, j), rows.first, rows.last);
    }
    T sum[kPanel];
    sum_panel<kConjugate>(p, from, sum);
    for (int k = 0; k < p.count; ++k) {
      x.set(j0 + k, sum_of(x.get(j0 + k), kNegative ? negative(sum[k]) : sum[k]));
    }
  }
}
template <bool kNegative, class T>
inline void add_products(const stored_triangle<const T>& a, matrix_op op, vector_view<const T> from,
                         core_int from_first, core_int from_last, vector_view<T> x, core_int first,
                         core_int last) {
  if (op == matrix_op::kNone) {
    add_scaled<kNegative>(a, from, from_first, from_last, x, first, last);
  } else if (kIsComplex<T> && op == matrix_op::kConjugated) {
    add_sums<kNegative, true>(a, from, from_first, from_last, x, first, last);
  } else {
    add_sums<kNegative, false>(a, from, from_first, from_last, x, first, last);
  }
}

template <class T>
void triangular_reduction_part(const stored_triangle<const T>& a, matrix_op op, T* x, core_int incx,
                               core_int known_first, core_int known_last, core_int first, core_int last) {
  const auto xs = view_of(x, a.n, incx);
  add_products<true>(a, op, {xs.at, incx}, known_first, known_last, xs, first, last);
}

template <class T>
void triangular_product_part(const stored_triangle<const T>& a, matrix_op op, bool unit, const T* copy, T* x,
                             core_int incx, core_int first, core_int last) {
  if (first >= last) return;
  const auto xs = view_of(x, a.n, incx);
  // The diagonal block alone, then what lies beside it (no transpose) or above or below it.
  const auto block = block_of(a, first, last);
  const vector_view<T> part{xs.at + first * incx, incx};
  if (op == matrix_op::kNone) {
    multiply(block, unit, part);
  } else if (kIsComplex<T> && op == matrix_op::kConjugated) {
    multiply_transposed<true>(block, unit, part);
  } else {
    multiply_transposed<false>(block, unit, part);
  }
  const bool later = a.upper == (op == matrix_op::kNone);  // what the part takes more from
  const core_int begin = first > a.k ? first - a.k : 0, end = last + a.k < a.n ? last + a.k : a.n;
  add_products<false>(a, op, {copy, 1}, later ? last : begin, later ? end : first, xs, first, last);
}

}  // namespace

#define QEL_TABLE(letter, T)                                                                    \
  const triangular_kernels<T> triangular_##letter {                                             \
    triangular_product, triangular_product_part, triangular_solution, triangular_solution_part, \
        triangular_reduction_part                                                               \
  }
QEL_TABLE(s, float);
QEL_TABLE(d, double);
QEL_TABLE(c, complex8);
QEL_TABLE(z, complex16);
#undef QEL_TABLE

}  // namespace qel::QEL_LEVEL
