// SPDX-License-Identifier: BSD-3-Clause
#include "lapack/factor/lu_panel.h"

#include <algorithm>
#include <limits>

#include "lapack/factor/core_blas.h"
#include "lapack/factor/native_kernels.h"
#include "lapack/factor/plans.h"
#include "lapack/factor/row_swaps.h"
#include "lapack/four_types.h"

namespace qel::lapack {

namespace {

/// Of halves of columns: whole narrow panels.
constexpr core_int kNarrow = 8;

template <class T>
void divide_column(core_int rows, T pivot, T* column) {
  // Below it the reciprocal overflows.
  constexpr real_of<T> kSafeMinimum = std::numeric_limits<real_of<T>>::min();
  if (abs1(pivot) >= kSafeMinimum) return scal(rows, from_real<T>(1) / pivot, column);
  for (core_int i = 0; i < rows; ++i) set(column + i, element(column + i) / pivot);
}

template <class T>
core_int factor_narrow(core_int m, core_int n, T* a, core_int lda, core_int* pivots) {
  core_int first_zero = 0;
  for (core_int j = 0; j < std::min(m, n); ++j) {
    T* const diagonal = a + j * (lda + 1);
    const core_int pivot = j + amax(m - j, diagonal) - 1;
    pivots[j] = pivot + 1;
    if (element(a + pivot + j * lda) == T{}) {
      if (first_zero == 0) first_zero = j + 1;
      continue;
    }
    if (pivot != j) {
      for (core_int c = 0; c < n; ++c) exchange(a + j + c * lda, a + pivot + c * lda);
    }
    if (j + 1 == m) break;
    divide_column(m - j - 1, element(diagonal), diagonal + 1);
    if (j + 1 < n)
      subtract_outer(m - j - 1, n - j - 1, diagonal + 1, diagonal + lda, lda, diagonal + lda + 1, lda);
  }
  return first_zero;
}

}  // namespace

template <class T>
core_int factor_lu(core_int m, core_int n, T* a, core_int lda, core_int* pivots) {
  const core_int order = std::min(m, n);
  const factor_kernels<T>* const native = native_factor_kernels<T>();
  if (n <= plan_lu_panel(type_letter<T>, m, serv_cpu_level()) || (m == 1 && native == nullptr)) {
    return native != nullptr ? native->lu(m, n, a, lda, pivots) : factor_narrow(m, n, a, lda, pivots);
  }
  // Whole narrow panels to the left, so that the recursion ends in them.
  const core_int half = (std::min(order, n - 1) / 2 + kNarrow - 1) / kNarrow * kNarrow;
  const core_int left = n > m && m > kNarrow ? m : std::max(half, kNarrow);
  const core_int width = std::min(left, order), right = n - left;
  T* const beside = a + left * lda;
  const core_int zero_left = factor_lu(m, left, a, lda, pivots);
  swap_rows(right, beside, lda, 0, width, pivots);
  solve('L', 'L', 'N', 'U', width, right, a, lda, beside, lda);
  if (width == m) return zero_left;
  subtract_product('N', 'N', m - width, right, width, a + width, lda, beside, lda, beside + width, lda);
  const core_int zero_right = factor_lu(m - width, right, beside + width, lda, pivots + width);
  for (core_int i = width; i < order; ++i) pivots[i] += width;
  swap_rows(left, a, lda, width, order, pivots);
  if (zero_left != 0 || zero_right == 0) return zero_left;
  return zero_right + width;
}

#define QEL_INSTANTIATE(T) template core_int factor_lu(core_int, core_int, T*, core_int, core_int*);
QEL_FOUR_TYPES(QEL_INSTANTIATE)
#undef QEL_INSTANTIATE

}  // namespace qel::lapack
