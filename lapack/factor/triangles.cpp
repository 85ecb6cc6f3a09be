// SPDX-License-Identifier: BSD-3-Clause
#include "lapack/factor/triangles.h"

#include "lapack/factor/core_blas.h"
#include "lapack/factor/elements.h"
#include "lapack/factor/plans.h"
#include "lapack/four_types.h"
#include "service/serv.h"

namespace qel::lapack {

namespace {

/// Order of the triangles that are worked on column by column.
constexpr core_int kNarrow = 16;

/// Below it nobody is asked for threads.
constexpr core_int kNeverThreads = 128;

constexpr core_int first_half(core_int n) { return (n / 2 + 7) / 8 * 8; }

/// x[begin, end) += factor * from[begin, end)
template <class T>
void add_multiple(core_int begin, core_int end, T factor, const T* from, T* x) {
  for (core_int i = begin; i < end; ++i) set(x + i, element(x + i) + factor * element(from + i));
}
template <class T>
void scale(core_int begin, core_int end, T factor, T* x) {
  for (core_int i = begin; i < end; ++i) set(x + i, factor * element(x + i));
}

/// Column by column: the part of the inverse that is there already times the column, times the negative
/// reciprocal of its pivot.
template <class T>
void invert_narrow(bool upper, bool unit, core_int n, T* a, core_int lda) {
  for (core_int step = 0; step < n; ++step) {
    const core_int j = upper ? step : n - 1 - step;
    T* const x = a + j * lda;
    T factor = from_real<T>(-1);
    if (!unit) {
      const T reciprocal = from_real<T>(1) / element(x + j);
      set(x + j, reciprocal);
      factor = -reciprocal;
    }
    for (core_int s = 0; s < step; ++s) {
      const core_int k = upper ? s : n - 1 - s;
      const T* const column = a + k * lda;
      const T value = element(x + k);
      add_multiple(upper ? 0 : k + 1, upper ? k : n, value, column, x);
      if (!unit) set(x + k, value * element(column + k));
    }
    scale(upper ? 0 : j + 1, upper ? j : n, factor, x);
  }
}

template <class T>
void invert_by_halves(bool upper, bool unit, core_int n, T* a, core_int lda, int threads) {
  if (n <= kNarrow) return invert_narrow(upper, unit, n, a, lda);
  const core_int half = first_half(n), rest = n - half;
  T *const beside = upper ? a + half * lda : a + half, *const below = a + half * (lda + 1);
  const char uplo = upper ? 'U' : 'L', diag = unit ? 'U' : 'N';
  if (upper) {
    solve('L', uplo, 'N', diag, half, rest, a, lda, beside, lda, -1);
    solve('R', uplo, 'N', diag, half, rest, below, lda, beside, lda);
  } else {
    solve('L', uplo, 'N', diag, rest, half, below, lda, beside, lda, -1);
    solve('R', uplo, 'N', diag, rest, half, a, lda, beside, lda);
  }
  const bool at_once = inverts_halves_at_once(n, threads);
#pragma omp parallel for num_threads(2) schedule(static, 1) if (at_once)
  for (int h = 0; h < 2; ++h) {
    invert_by_halves(upper, unit, h == 0 ? half : rest, h == 0 ? a : below, lda, at_once ? 1 : threads);
  }
}

template <class T>
void square_narrow(bool upper, core_int n, T* a, core_int lda) {
  for (core_int j = 0; j < n; ++j) {
    T* const own = a + j * lda;
    const real_of<T> pivot = real_part(element(own + j));
    if (upper) {
      // Columns behind, each times an element of row j.
      scale(0, j, from_real<T>(pivot), own);
      real_of<T> diagonal = pivot * pivot;
      for (core_int k = j + 1; k < n; ++k) {
        const T* const column = a + k * lda;
        const T factor = conj(element(column + j));
        add_multiple(0, j, factor, column, own);
        diagonal += real_part(factor * conj(factor));
      }
      set(own + j, from_real<T>(diagonal));
    } else {
      // Row j from the rows below it.
      for (core_int c = 0; c < j; ++c) {
        const T* const column = a + c * lda;
        T sum = from_real<T>(pivot) * element(column + j);
        for (core_int k = j + 1; k < n; ++k) sum += conj(element(own + k)) * element(column + k);
        set(a + j + c * lda, sum);
      }
      real_of<T> diagonal = pivot * pivot;
      for (core_int k = j + 1; k < n; ++k) {
        diagonal += real_part(conj(element(own + k)) * element(own + k));
      }
      set(own + j, from_real<T>(diagonal));
    }
  }
}

}  // namespace

template <class T>
core_int invert_triangle(bool upper, bool unit, core_int n, T* a, core_int lda) {
  if (!unit) {
    for (core_int j = 0; j < n; ++j) {
      if (element(a + j * (lda + 1)) == T{}) return j + 1;
    }
  }
  invert_by_halves(upper, unit, n, a, lda, n < kNeverThreads ? 1 : serv_threads_all());
  return 0;
}

template <class T>
void square_triangle(bool upper, core_int n, T* a, core_int lda) {
  if (n <= kNarrow) return square_narrow(upper, n, a, lda);
  const core_int half = first_half(n), rest = n - half;
  T *const beside = upper ? a + half * lda : a + half, *const below = a + half * (lda + 1);
  const char uplo = upper ? 'U' : 'L';
  square_triangle(upper, half, a, lda);
  add_square(uplo, upper, half, rest, 1, beside, lda, a, lda);
  if (upper) {
    multiply_triangle('R', uplo, kTurnedLetter<T>, 'N', half, rest, below, lda, beside, lda);
  } else {
    multiply_triangle('L', uplo, kTurnedLetter<T>, 'N', rest, half, below, lda, beside, lda);
  }
  square_triangle(upper, rest, below, lda);
}

#define QEL_INSTANTIATE(T)                                               \
  template core_int invert_triangle(bool, bool, core_int, T*, core_int); \
  template void square_triangle(bool, core_int, T*, core_int);
QEL_FOUR_TYPES(QEL_INSTANTIATE)
#undef QEL_INSTANTIATE

}  // namespace qel::lapack
