// SPDX-License-Identifier: BSD-3-Clause
#include "lapack/factor/cholesky_block.h"

#include <algorithm>
#include <cmath>

#include "lapack/factor/core_blas.h"
#include "lapack/factor/elements.h"
#include "lapack/factor/native_kernels.h"
#include "lapack/four_types.h"

namespace qel::lapack {

namespace {

/// Order of the triangles that are worked on column by column.
constexpr core_int kNarrow = 16;
/// Order of the upper triangles that are worked on as lower ones: columns of a lower triangle are updated by
/// whole vectors, those of an upper one would need sums.
constexpr core_int kTurned = 32;

template <class T>
core_int factor_narrow(core_int n, T* a, core_int lda) {
  for (core_int j = 0; j < n; ++j) {
    T* const column = a + j * lda;
    for (core_int k = 0; k < j; ++k) {
      const T* const other = a + k * lda;
      const T factor = conj(element(other + j));
      for (core_int i = j; i < n; ++i) set(column + i, element(column + i) - factor * element(other + i));
    }
    const real_of<T> pivot = real_part(element(column + j));
    set(column + j, from_real<T>(pivot));
    if (!(pivot > 0)) return j + 1;  // nor is a NaN
    const real_of<T> root = std::sqrt(pivot), reciprocal = 1 / root;
    set(column + j, from_real<T>(root));
    for (core_int i = j + 1; i < n; ++i) set(column + i, reciprocal * element(column + i));
  }
  return 0;
}

template <class T>
core_int factor_turned(core_int n, T* a, core_int lda) {
  T lower[kTurned * kTurned];
  for (core_int j = 0; j < n; ++j) {
    for (core_int i = 0; i <= j; ++i) lower[j + i * kTurned] = conj(element(a + i + j * lda));
  }
  const core_int minor = factor_cholesky(false, n, lower, kTurned);
  for (core_int j = 0; j < n; ++j) {
    for (core_int i = 0; i <= j; ++i) set(a + i + j * lda, conj(lower[j + i * kTurned]));
  }
  return minor;
}

}  // namespace

template <class T>
core_int factor_cholesky(bool upper, core_int n, T* a, core_int lda) {
  if (const factor_kernels<T>* native = native_factor_kernels<T>()) {
    if (n <= kCholeskyOrder<T>) return native->cholesky(upper, n, a, lda);
  } else if (upper && n <= kTurned) {
    return factor_turned(n, a, lda);
  } else if (n <= kNarrow) {
    return factor_narrow(n, a, lda);
  }
  const core_int half = (n / 2 + 7) / 8 * 8, rest = n - half;
  if (const core_int minor = factor_cholesky(upper, half, a, lda)) return minor;
  T *const beside = upper ? a + half * lda : a + half, *const below = a + half * (lda + 1);
  if (upper) {
    solve('L', 'U', kTurnedLetter<T>, 'N', half, rest, a, lda, beside, lda);
  } else {
    solve('R', 'L', kTurnedLetter<T>, 'N', rest, half, a, lda, beside, lda);
  }
  subtract_square(upper ? 'U' : 'L', !upper, rest, half, beside, lda, below, lda);
  const core_int minor = factor_cholesky(upper, rest, below, lda);
  return minor == 0 ? 0 : minor + half;
}

#define QEL_INSTANTIATE(T) template core_int factor_cholesky(bool, core_int, T*, core_int);
QEL_FOUR_TYPES(QEL_INSTANTIATE)
#undef QEL_INSTANTIATE

}  // namespace qel::lapack
