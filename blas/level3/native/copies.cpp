// SPDX-License-Identifier: BSD-3-Clause
#include "blas/level3/native/copies.h"

#include <algorithm>

#include "blas/level3/native/level3_native.h"

namespace qel::native {

namespace {

template <class T>
struct stack_copy {
  T element[kCopiedOrder * kCopiedOrder];
};

/// A general factor, its columns contiguous.
template <class T>
void take_general(const operand<T>& from, core_int rows, core_int columns, T* to) {
  for (core_int i = 0; i < rows; ++i) {
    const T* at = from.address(i, 0);
    for (core_int j = 0; j < columns; ++j, at += from.column_step) {
      to[i + j * rows] = from.conjugated ? conj(*at) : *at;
    }
  }
}
/// Both triangles of a structured factor.
template <class T>
void take_structured(const operand<T>& from, core_int order, T* to) {
  const bool hermitian = from.kind == matrix_kind::kHermitian;
  for (core_int j = 0; j < order; ++j) {
    const core_int first = from.upper ? 0 : j + 1, last = from.upper ? j : order;
    const T* at = from.address(first, j);
    for (core_int i = first; i < last; ++i, at += from.row_step) {
      to[i + j * order] = *at;
      to[j + i * order] = hermitian ? conj(*at) : *at;
    }
    to[j + j * order] = from.at(j, j);
  }
}
template <class T>
void take(const operand<T>& from, core_int rows, core_int columns, T* to) {
  if (from.kind == matrix_kind::kGeneral) return take_general(from, rows, columns, to);
  take_structured(from, rows, to);
}
/// op(A) with zeros beside its triangle.
template <class T>
void take_filled(const operand<T>& from, bool unit, core_int order, T* to) {
  const auto value = [&](const T* at) { return from.conjugated ? conj(*at) : *at; };
  for (core_int j = 0; j < order; ++j, to += order) {
    const core_int first = from.upper ? 0 : j + 1, last = from.upper ? j : order;
    const T* const column = from.address(0, j);
    std::fill(to, to + first, T{});
    if (from.row_step == 1 && !from.conjugated) {
      std::copy(column + first, column + last, to + first);
    } else {
      for (core_int i = first; i < last; ++i) to[i] = value(column + i * from.row_step);
    }
    std::fill(to + last, to + order, T{});
    to[j] = unit ? from_real<T>(1) : value(column + j * from.row_step);
  }
}

/// One triangle of C = computed + beta C; beta 0 does not read it.
template <class T>
void put_triangle(bool upper, core_int n, const T* computed, T beta, T* c, core_int ldc) {
  for (core_int j = 0; j < n; ++j) {
    const core_int first = upper ? 0 : j, last = upper ? j + 1 : n;
    const T* from = computed + j * n;
    T* to = c + j * ldc;
    if (beta == T{}) {
      for (core_int i = first; i < last; ++i) to[i] = from[i];
    } else if (beta == from_real<T>(1)) {
      for (core_int i = first; i < last; ++i) to[i] += from[i];
    } else {
      for (core_int i = first; i < last; ++i) to[i] = from[i] + beta * to[i];
    }
  }
}

template <class T>
bool all_finite(const T* element, core_int count) {
  using R = real_of<T>;
  const R* part = reinterpret_cast<const R*>(element);
  const core_int parts = count * core_int{sizeof(T) / sizeof(R)};
  R marks[4] = {};
  core_int i = 0;
  for (; i + 4 <= parts; i += 4) {
    for (int l = 0; l < 4; ++l) marks[l] += part[i + l] * 0;
  }
  for (; i < parts; ++i) marks[0] += part[i] * 0;
  return marks[0] + marks[1] + marks[2] + marks[3] == 0;
}

}  // namespace

template <class T>
void multiply_on_copies(const product<T>& what, const copy_plan& plan, const level3_kernels<T>& kernels) {
  const core_int m = what.m, n = what.n, k = what.k;
  stack_copy<T> a, b, c;
  if (plan.a) take(what.a, m, k, a.element);
  if (plan.b) take(what.b, k, n, b.element);
  kernels.multiply_direct({m, n, k, what.alpha, plan.c ? T{} : what.beta, plan.a ? a.element : what.a.data,
                           plan.a ? m : what.a.column_step, plan.b ? b.element : what.b.data,
                           plan.b ? 1 : what.b.row_step, plan.b ? k : what.b.column_step,
                           !plan.a && what.a.conjugated, !plan.b && what.b.conjugated, true,
                           plan.c ? c.element : what.c, plan.c ? m : what.ldc});
  if (plan.c) put_triangle(what.part == c_part::upper, n, c.element, what.beta, what.c, what.ldc);
}

template <class T>
bool multiply_by_filled_triangle(bool left, const operand<T>& a, bool unit, core_int m, core_int n, T alpha,
                                 T* b, core_int ldb, const level3_kernels<T>& kernels) {
  const core_int order = left ? m : n;
  stack_copy<T> filled, result;
  take_filled(a, unit, order, filled.element);
  const T* const first = left ? filled.element : b;
  const T* const second = left ? b : filled.element;
  kernels.multiply_direct({m, n, order, alpha, T{}, first, left ? order : ldb, second, 1, left ? ldb : order,
                           false, false, true, result.element, m});
  if (!all_finite(result.element, m * n)) return false;
  for (core_int j = 0; j < n; ++j) std::copy_n(result.element + j * m, m, b + j * ldb);
  return true;
}

#define QEL_INSTANTIATE(T)                                                                            \
  template void multiply_on_copies(const product<T>&, const copy_plan&, const level3_kernels<T>&);    \
  template bool multiply_by_filled_triangle(bool, const operand<T>&, bool, core_int, core_int, T, T*, \
                                            core_int, const level3_kernels<T>&);
QEL_INSTANTIATE(float)
QEL_INSTANTIATE(double)
QEL_INSTANTIATE(complex8)
QEL_INSTANTIATE(complex16)
#undef QEL_INSTANTIATE

}  // namespace qel::native
