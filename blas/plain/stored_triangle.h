// SPDX-License-Identifier: BSD-3-Clause
// One view of the three ways to store a triangle: full column-major, banded, packed. In each the stored part
// of column j is contiguous, so column(j)[i] is the element (i, j) of the matrix for every stored i, and one
// loop over columns serves all three. Used by the level 2 routines of this folder.
#pragma once

#include <algorithm>

#include "blas/letters.h"
#include "service/core_types.h"

namespace qel::plain {

/// E is T or const T.
template <class E>
struct stored_triangle {
  E* base;      ///< element (0, 0) if it were stored where the offsets below put it
  core_int n;   ///< order
  core_int k;   ///< diagonals beside the main one
  core_int ld;  ///< elements from (i, j) to (i, j + 1); unused if packed
  bool upper;
  bool packed;

  E* column(core_int j) const {
    return base + (!packed ? j * ld : upper ? j * (j + 1) / 2 : j * (2 * n - j - 1) / 2);
  }
  /// Rows of column j off the diagonal: [first(j), last(j)).
  core_int first(core_int j) const { return upper ? std::max<core_int>(0, j - k) : j + 1; }
  core_int last(core_int j) const { return upper ? j : std::min(n, j + k + 1); }
};

template <class E>
stored_triangle<E> full_triangle(char uplo, core_int n, E* a, core_int lda) {
  return {a, n, n, lda, blas::letter_is(uplo, 'U'), false};
}
/// Band storage: a diagonal is a row of the array, so columns are lda - 1 apart along a row of the matrix.
template <class E>
stored_triangle<E> banded_triangle(char uplo, core_int n, core_int k, E* a, core_int lda) {
  const bool upper = blas::letter_is(uplo, 'U');
  return {upper ? a + k : a, n, k, lda - 1, upper, false};
}
template <class E>
stored_triangle<E> packed_triangle(char uplo, core_int n, E* ap) {
  return {ap, n, n, 0, blas::letter_is(uplo, 'U'), true};
}

}  // namespace qel::plain
