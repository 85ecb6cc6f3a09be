// SPDX-License-Identifier: BSD-3-Clause
#include "lapack/factor/cholesky_block.h"

#include <algorithm>
#include <cmath>

#include "lapack/factor/core_blas.h"

namespace qel::lapack {

namespace {

/// Order of the triangles that are worked on element by element.
constexpr core_int kNarrow = 16;

/// False if the pivot is not positive; a NaN is not. It stays as it is then.
template <class T>
bool take_root(real_of<T> pivot, T& diagonal) {
  if (!(pivot > 0)) {
    diagonal = from_real<T>(pivot);
    return false;
  }
  diagonal = from_real<T>(std::sqrt(pivot));
  return true;
}

template <class T>
core_int factor_narrow_upper(core_int n, T* a, core_int lda) {
  for (core_int j = 0; j < n; ++j) {
    T* const column = a + j * lda;
    real_of<T> pivot = real_part(column[j]);
    for (core_int i = 0; i < j; ++i) {
      const T* const other = a + i * lda;
      T sum = column[i];
      for (core_int k = 0; k < i; ++k) sum -= conj(other[k]) * column[k];
      column[i] = (1 / real_part(other[i])) * sum;
      pivot -= real_part(conj(column[i]) * column[i]);
    }
    if (!take_root(pivot, column[j])) return j + 1;
  }
  return 0;
}

template <class T>
core_int factor_narrow_lower(core_int n, T* a, core_int lda) {
  for (core_int j = 0; j < n; ++j) {
    T* const column = a + j * lda;
    for (core_int k = 0; k < j; ++k) {
      const T* const other = a + k * lda;
      const T factor = conj(other[j]);
      for (core_int i = j; i < n; ++i) column[i] -= factor * other[i];
    }
    if (!take_root(real_part(column[j]), column[j])) return j + 1;
    const real_of<T> reciprocal = 1 / real_part(column[j]);
    for (core_int i = j + 1; i < n; ++i) column[i] = reciprocal * column[i];
  }
  return 0;
}

}  // namespace

template <class T>
core_int factor_cholesky(bool upper, core_int n, T* a, core_int lda) {
  if (n <= kNarrow) return upper ? factor_narrow_upper(n, a, lda) : factor_narrow_lower(n, a, lda);
  const core_int half = (n / 2 + 7) / 8 * 8, rest = n - half;
  if (const core_int minor = factor_cholesky(upper, half, a, lda)) return minor;
  T *const beside = upper ? a + half * lda : a + half, *const below = a + half * (lda + 1);
  const char turned = is_complex<T> ? 'C' : 'T';
  if (upper) {
    solve('L', 'U', turned, 'N', half, rest, a, lda, beside, lda);
  } else {
    solve('R', 'L', turned, 'N', rest, half, a, lda, beside, lda);
  }
  subtract_square(upper ? 'U' : 'L', !upper, rest, half, beside, lda, below, lda);
  const core_int minor = factor_cholesky(upper, rest, below, lda);
  return minor == 0 ? 0 : minor + half;
}

#define QEL_INSTANTIATE(T) template core_int factor_cholesky(bool, core_int, T*, core_int);
QEL_INSTANTIATE(float)
QEL_INSTANTIATE(double)
QEL_INSTANTIATE(complex8)
QEL_INSTANTIATE(complex16)
#undef QEL_INSTANTIATE

}  // namespace qel::lapack
