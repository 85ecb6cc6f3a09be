// SPDX-License-Identifier: BSD-3-Clause
// A factor of a matrix product as the product sees it: op already applied, so that element (i, j) stands at
// data + i row_step + j column_step, conjugated if asked. A symmetric or Hermitian factor has one stored
// triangle; an element of the other is its mirror, and a Hermitian diagonal counts as real.
// Packing and the loops without work memory read factors through this view.
#pragma once

#include "blas/letters.h"
#include "service/complex_arithmetic.h"

namespace qel::native {

enum class matrix_kind { kGeneral, kSymmetric, kHermitian };

template <class T>
struct operand {
  const T* data;
  core_int row_step;
  core_int column_step;
  bool conjugated;  ///< general factors only
  matrix_kind kind;
  bool upper;  ///< which triangle of this view is stored, unless general

  bool stores(core_int i, core_int j) const { return upper ? i <= j : i >= j; }
  const T* address(core_int i, core_int j) const { return data + i * row_step + j * column_step; }

  /// The mirrored part of a symmetric or Hermitian factor as a general one.
  operand mirrored() const {
    return {data, column_step, row_step, kind == matrix_kind::kHermitian, matrix_kind::kGeneral, false};
  }
  /// The stored part as a general factor.
  operand direct() const { return {data, row_step, column_step, false, matrix_kind::kGeneral, false}; }
  operand transposed() const { return {data, column_step, row_step, conjugated, kind, !upper}; }
  /// The factor without its first rows and columns; of a structured one only diagonal blocks make sense.
  operand from(core_int i, core_int j) const {
    return {address(i, j), row_step, column_step, conjugated, kind, upper};
  }

  T at(core_int i, core_int j) const {
    if (kind == matrix_kind::kGeneral) return conjugated ? conj(*address(i, j)) : *address(i, j);
    if (kind == matrix_kind::kHermitian) {
      if (i == j) return from_real<T>(real_part(*address(i, i)));
      return stores(i, j) ? *address(i, j) : conj(*address(j, i));
    }
    return stores(i, j) ? *address(i, j) : *address(j, i);
  }
};

/// op(A) for an option letter N, T or C.
template <class T>
operand<T> general_operand(char trans, const T* a, core_int lda) {
  if (blas::letter_is(trans, 'N')) return {a, 1, lda, false, matrix_kind::kGeneral, false};
  return {a, lda, 1, is_complex<T> && blas::letter_is(trans, 'C'), matrix_kind::kGeneral, false};
}

}  // namespace qel::native
