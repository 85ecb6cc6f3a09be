// SPDX-License-Identifier: BSD-3-Clause
// Factorisation of a supernode's diagonal block, w x w and column-major, with pivots from the block alone.
// Interchange lists: entry k is the row (column) that was swapped with k at step k, counted from 1, with a
// sign. Swaps run over the whole block, so that the triangles belong to the permuted block.
#pragma once

#include "service/complex_arithmetic.h"

namespace qel::pardiso {

/// What the pivots of blocks add up to.
struct pivot_counts {
  int perturbed = 0, positive = 0, negative = 0;
};

/// What a pivot whose modulus is at most the threshold becomes; zero counts as positive.
template <class T>
T perturbed_pivot(T pivot, real_of<T> threshold) {
  const real_of<T> size = threshold != 0 ? threshold : static_cast<real_of<T>>(1e-13);
  return from_real<T>(real_part(pivot) < 0 ? -size : size);
}

/// P A Q = L U by complete pivoting, the last one of equal candidates. rows, columns: interchanges, those of
/// rows negative where the pivot was perturbed.
template <class T>
void factor_lu_block(int w, T* a, core_int lda, real_of<T> threshold, int* columns, int* rows,
                     pivot_counts& counts);

/// P A P' = L D L' (or L**H) from the lower triangle. D stands on the diagonal; an entry of it below the
/// diagonal stands above, in the unused triangle, because L has a zero there. interchanges: both entries of
/// a 2-by-2 pivot are negative. Without search every pivot is the next diagonal element.
template <class T>
void factor_ldl_block(bool hermitian, bool search, int w, T* a, core_int lda, real_of<T> threshold,
                      int* interchanges, pivot_counts& counts);

/// Row of an entry of an interchange list, counted from 0.
constexpr int swapped_with(int entry) { return (entry < 0 ? -entry : entry) - 1; }

}  // namespace qel::pardiso
