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
  constexpr core_int kColumns = 32;
  for (core_int j = 0; j < n; j += kColumns) {
    const core_int columns = n - j < kColumns ? n - j : kColumns;
    for (core_int step = first; step < end; ++step) {
      const core_int i = backwards ? end - 1 - (step - first) : step;
      const core_int other = static_cast<core_int>(element(pivots + i)) - 1;
      if (other == i) continue;
      T *row = a + j * lda + i, *pivot_row = a + j * lda + other;
      for (core_int c = 0; c < columns; ++c) exchange(row + c * lda, pivot_row + c * lda);
    }
  }
}

}  // namespace qel::lapack
