// SPDX-License-Identifier: BSD-3-Clause
// Row interchanges of an LU factorisation.
#pragma once

#include "lapack/factor/elements.h"

namespace qel::lapack {

/// Exchanges row i of the n columns of A with row pivots[i] - 1, for i from first to end - 1 in order, or
/// back from there. A few columns at a time, so that the rows met again are still in the cache.
template <class T, class Pivot>
void swap_rows(core_int n, T* a, core_int lda, core_int first, core_int end, const Pivot* pivots,
               bool backwards = false) {
  const auto swap_one = [=](core_int i, core_int columns, T* column) {
    const core_int other = static_cast<core_int>(element(pivots + i)) - 1;
    if (other == i) return;
    T *row = column + i, *pivot_row = column + other;
    exchange(row, pivot_row);
    for (core_int c = 1; c < columns; ++c) exchange(row += lda, pivot_row += lda);
  };
  constexpr core_int kColumns = 32;
  for (core_int j = 0; j < n; j += kColumns) {
    const core_int columns = n - j < kColumns ? n - j : kColumns;
    T* const column = a + j * lda;
    if (backwards) {
      for (core_int i = end - 1; i >= first; --i) swap_one(i, columns, column);
    } else {
      for (core_int i = first; i < end; ++i) swap_one(i, columns, column);
    }
  }
}

}  // namespace qel::lapack
