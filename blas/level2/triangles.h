// SPDX-License-Identifier: BSD-3-Clause
// From a routine's arguments to what the kernels take: option letters, and the three ways to store a triangle
// as one record.
#pragma once

#include "blas/kernels/level2_kernels.h"
#include "blas/letters.h"

namespace qel {

inline matrix_op op_of(char trans) {
  if (blas::letter_is(trans, 'N')) return matrix_op::kNone;
  return blas::letter_is(trans, 'C') ? matrix_op::kConjugated : matrix_op::kTransposed;
}

template <class E>
stored_triangle<E> full_triangle(char uplo, core_int n, E* a, core_int lda) {
  return {a, n, n, lda, 0, blas::letter_is(uplo, 'U')};
}
/// Band storage: a diagonal is a row of the array, so columns are lda - 1 apart along a row of the matrix.
template <class E>
stored_triangle<E> banded_triangle(char uplo, core_int n, core_int k, E* a, core_int lda) {
  const bool upper = blas::letter_is(uplo, 'U');
  return {upper ? a + k : a, n, k, lda - 1, 0, upper};
}
template <class E>
stored_triangle<E> packed_triangle(char uplo, core_int n, E* ap) {
  const bool upper = blas::letter_is(uplo, 'U');
  return {ap, n, n, upper ? 0 : n, upper ? 1 : -1, upper};
}

}  // namespace qel
