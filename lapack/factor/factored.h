// SPDX-License-Identifier: BSD-3-Clause
// What is done with the factors of a matrix: solves and the inverse. Pivots are those of LU factorisations,
// 32-bit or 64-bit integers.
#pragma once

#include "blas/plain/scratch.h"
#include "lapack/factor/core_blas.h"
#include "lapack/factor/elements.h"
#include "lapack/factor/native_kernels.h"
#include "lapack/factor/plans.h"
#include "lapack/factor/row_swaps.h"
#include "service/serv.h"

namespace qel::lapack {

/// B = inv(op(A)) B, n and nrhs above 0; trans is N, T or C.
template <class T, class Pivot>
void solve_by_lu(char trans, core_int n, core_int nrhs, const T* a, core_int lda, const Pivot* pivots, T* b,
                 core_int ldb) {
  const triangle_use l = use_of<T>('L', trans, 'U'), u = use_of<T>('U', trans, 'N');
  if (trans == 'N') {
    swap_rows(nrhs, b, ldb, 0, n, pivots);
    if (native_solve(n, nrhs, a, lda, b, ldb, 2, l, u)) return;
    solve('L', 'L', 'N', 'U', n, nrhs, a, lda, b, ldb);
    solve('L', 'U', 'N', 'N', n, nrhs, a, lda, b, ldb);
  } else {
    if (!native_solve(n, nrhs, a, lda, b, ldb, 2, u, l)) {
      solve('L', 'U', trans, 'N', n, nrhs, a, lda, b, ldb);
      solve('L', 'L', trans, 'U', n, nrhs, a, lda, b, ldb);
    }
    swap_rows(nrhs, b, ldb, 0, n, pivots, true);
  }
}

template <class T>
void solve_by_cholesky(bool upper, core_int n, core_int nrhs, const T* a, core_int lda, T* b, core_int ldb) {
  const char uplo = upper ? 'U' : 'L', first = upper ? kTurnedLetter<T> : 'N',
             then = upper ? 'N' : kTurnedLetter<T>;
  if (native_solve(n, nrhs, a, lda, b, ldb, 2, use_of<T>(uplo, first, 'N'), use_of<T>(uplo, then, 'N'))) {
    return;
  }
  solve('L', uplo, first, 'N', n, nrhs, a, lda, b, ldb);
  solve('L', uplo, then, 'N', n, nrhs, a, lda, b, ldb);
}

/// Columns of a block of the inverse, for so many that the caller's work array has room for. Natively a
/// product with few columns would spend its time packing the other factor.
constexpr core_int inverse_block(core_int n, core_int room, bool native) {
  constexpr core_int kBlock = 64, kWide = 192;
  if (native && n > 2 * kWide) return kWide;
  return room < kBlock ? room : kBlock;
}

/// A = inv(A) from the LU factors in A, for small orders; false, with nothing done, if another way is to be
/// taken.
template <class T, class Pivot>
bool invert_small(core_int n, T* a, core_int lda, const Pivot* pivots) {
  const factor_kernels<T>* const kernels = native_factor_kernels<T>();
  if (kernels == nullptr || n > kInverseOrder) return false;
  // Column j of the product ends where the exchanges, undone from the last on, take it.
  core_int at[kInverseOrder], places[kInverseOrder];
  for (core_int j = 0; j < n; ++j) at[j] = j;
  for (core_int j = n - 1; j >= 0; --j) exchange(at + j, at + static_cast<core_int>(element(pivots + j)) - 1);
  for (core_int j = 0; j < n; ++j) places[at[j]] = j;
  return kernels->invert_lu(n, a, lda, places);
}

/// A = inv(U) inv(L), columns put back in their places, where A holds inv(U) and L. Blocks of columns from
/// the right; the work array (`length`, at least n) is used unless blocks are to be wider than it has room
/// for.
template <class T, class Pivot>
void finish_lu_inverse(core_int n, T* a, core_int lda, const Pivot* pivots, T* work, core_int length) {
  core_int most = inverse_block(n, length / n, native::native_level3());
  const plain::scratch<T> beside(most > length / n ? n * most : 0);
  if (beside.get() != nullptr) {
    work = beside.get();
  } else {
    most = most < length / n ? most : length / n;
  }
  const int parts = plan_column_moves(n, serv_threads_all());
  for (core_int end = n; end > 0;) {
    const core_int width = (end - 1) % most + 1, first = end - width;
#pragma omp parallel for num_threads(parts) schedule(static) if (parts > 1)
    for (core_int j = first; j < end; ++j) {
      T *const column = a + j * lda, *const kept = work + (j - first) * n;
      for (core_int i = j + 1; i < n; ++i) {
        set(kept + i, element(column + i));
        set(column + i, T{});
      }
    }
    T* const block = a + first * lda;
    if (end < n) subtract_product('N', 'N', n, width, n - end, a + end * lda, lda, work + end, n, block, lda);
    solve('R', 'L', 'N', 'U', n, width, work + first, n, block, lda);
    end = first;
  }
#pragma omp parallel for num_threads(parts) schedule(static, 1) if (parts > 1)
  for (int part = 0; part < parts; ++part) {
    const core_int begin = n * part / parts, behind = n * (part + 1) / parts;
    for (core_int j = n - 1; j >= 0; --j) {
      const core_int other = static_cast<core_int>(element(pivots + j)) - 1;
      if (other == j) continue;
      T *const own = a + j * lda, *const column = a + other * lda;
      for (core_int i = begin; i < behind; ++i) exchange(own + i, column + i);
    }
  }
}

}  // namespace qel::lapack
