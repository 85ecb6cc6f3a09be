// SPDX-License-Identifier: BSD-3-Clause
// LU factorisation with row interchanges, m x n, in four types.
#pragma once

#include <algorithm>

#include "lapack/factor/core_blas.h"
#include "lapack/factor/lu_panel.h"
#include "lapack/factor/plans.h"
#include "lapack/factor/row_swaps.h"

namespace qel::lapack {

/// Carries out a plan; m and n above 0. Returns the number of the first zero pivot, 0 if there is none.
template <class T>
core_int factor_lu_as_planned(const lu_plan& plan, core_int m, core_int n, T* a, core_int lda,
                              core_int* pivots);
/// Plans for this process and carries it out.
template <class T>
core_int getrf(core_int m, core_int n, T* a, core_int lda, core_int* pivots);

/// The way for a caller with no memory for all pivots: panels as wide as the `room` there is, whose pivots,
/// counted from the panel's first row, store(first, count, pivots) gets.
template <class T, class Store>
core_int factor_lu_in_panels(core_int m, core_int n, T* a, core_int lda, core_int* pivots, core_int room,
                             const Store& store) {
  core_int first_zero = 0;
  for (core_int first = 0, order = std::min(m, n); first < order; first += room) {
    const core_int width = std::min(room, order - first), behind = first + width;
    T *const panel = a + first * (lda + 1), *const beside = panel + width * lda;
    const core_int zero = factor_lu(m - first, width, panel, lda, pivots);
    if (first_zero == 0 && zero != 0) first_zero = first + zero;
    swap_rows(first, a + first, lda, 0, width, pivots);
    swap_rows(n - behind, beside, lda, 0, width, pivots);
    store(first, width, pivots);
    if (behind >= n) continue;
    solve('L', 'L', 'N', 'U', width, n - behind, panel, lda, beside, lda);
    if (behind >= m) continue;
    subtract_product('N', 'N', m - behind, n - behind, width, panel + width, lda, beside, lda, beside + width,
                     lda);
  }
  return first_zero;
}

/// 1-based position of the first bad argument, 0 if all are good.
constexpr int getrf_bad_argument(core_int m, core_int n, core_int lda) {
  if (m < 0) return 1;
  if (n < 0) return 2;
  return lda < (m > 1 ? m : 1) ? 4 : 0;
}

}  // namespace qel::lapack
