// SPDX-License-Identifier: BSD-3-Clause
// Updates of one triangle of C. On the calling thread: the triangle is halved until a diagonal block is
// small, the rectangle between the halves is a general product, a small diagonal block is made in full beside
// C and its triangle added. The other triangle is never touched; a Hermitian diagonal is taken and left real.
// On threads: pieces of whole columns. Diagonal blocks and the rectangles beside them go out largest first.
#include <algorithm>

#include "blas/level3/gemm_partition.h"
#include "blas/level3/gemm_serial.h"
#include "blas/level3/symmetric.h"

namespace qel {
namespace {

constexpr core_int kDiagonalBlock = 32;

/// C += the update's rows x columns block at (i, j).
template <class T>
void add_rectangle(const rank_update<T>& u, core_int i, core_int j, core_int rows, core_int columns, T* c,
                   core_int ldc) {
  if (rows < 1 || columns < 1) return;
  const int prime = u.hermitian ? op_of<T>('C') : kTranspose;
  const int op_left = u.op, op_right = u.op == kNoTranspose ? prime : kNoTranspose;
  const auto at = [&](const T* a, core_int ld, core_int row) {
    return u.op == kNoTranspose ? a + row : a + row * ld;
  };
  const T one = from_real<T>(1);
  const bool two = u.b != nullptr;
  const T* right = two ? u.b : u.a;
  const core_int ld_right = two ? u.ldb : u.lda;
  gemm_serial<T>({op_left, op_right, rows, columns, u.k, u.alpha, at(u.a, u.lda, i), u.lda,
                  at(right, ld_right, j), ld_right, one, c, ldc});
  if (!two) return;
  gemm_serial<T>({op_left, op_right, rows, columns, u.k, u.hermitian ? conj(u.alpha) : u.alpha,
                  at(u.b, u.ldb, i), u.ldb, at(u.a, u.lda, j), u.lda, one, c, ldc});
}

template <class T>
void update_diagonal(const rank_update<T>& u, core_int start, core_int order) {
  T full[kDiagonalBlock * kDiagonalBlock];
  std::fill(full, full + order * kDiagonalBlock, T{});
  add_rectangle(u, start, start, order, order, full, kDiagonalBlock);
  for (core_int j = 0; j < order; ++j) {
    T* const column = u.c + start + (start + j) * u.ldc;
    for (core_int i = u.upper ? 0 : j; i < (u.upper ? j + 1 : order); ++i) {
      column[i] = column[i] + full[i + j * kDiagonalBlock];
    }
    if (u.hermitian) column[j] = from_real<T>(real_part(column[j]));
  }
}

/// The rectangle of the stored triangle between rows (columns) [start, start + half) and the rest.
template <class T>
void update_beside(const rank_update<T>& u, core_int start, core_int size, core_int other,
                   core_int other_size) {
  const core_int row = u.upper ? start : other, column = u.upper ? other : start;
  add_rectangle(u, row, column, u.upper ? size : other_size, u.upper ? other_size : size,
                u.c + row + column * u.ldc, u.ldc);
}

template <class T>
void update_triangle(const rank_update<T>& u, core_int start, core_int order) {
  if (order <= kDiagonalBlock) return update_diagonal(u, start, order);
  const core_int half = (order / 2 + kDiagonalBlock - 1) / kDiagonalBlock * kDiagonalBlock;
  update_triangle(u, start, half);
  update_beside(u, start, half, start + half, order - half);
  update_triangle(u, start + half, order - half);
}

/// Columns of the triangle by beta.
template <class T>
void scale_columns(const rank_update<T>& u, core_int first, core_int count) {
  if (u.beta == from_real<T>(1)) return;
  for (core_int j = first; j < first + count; ++j) {
    T* const column = u.c + j * u.ldc;
    const core_int top = u.upper ? 0 : j, rows = u.upper ? j + 1 : u.n - j;
    if (u.hermitian) {
      // A real factor, and an imaginary part of the diagonal that counts as zero.
      using R = real_of<T>;
      constexpr core_int kParts = is_complex<T> ? 2 : 1;
      column[j] = from_real<T>(real_part(column[j]));
      gemm_scale<R>(kParts * rows, 1, real_part(u.beta), reinterpret_cast<R*>(column + top), kParts * u.ldc);
    } else {
      gemm_scale(rows, 1, u.beta, column + top, u.ldc);
    }
  }
}

/// Columns first .. first + count - 1 with all that the triangle has in them.
template <class T>
void update_columns(const rank_update<T>& u, core_int first, core_int count) {
  scale_columns(u, first, count);
  if (u.k == 0 || u.alpha == T{}) return;
  if (u.upper) {
    add_rectangle(u, 0, first, first, count, u.c + first * u.ldc, u.ldc);
  } else {
    const core_int below = first + count;
    add_rectangle(u, below, first, u.n - below, count, u.c + below + first * u.ldc, u.ldc);
  }
  update_triangle(u, first, count);
}

/// Blocks of columns as pieces of work: block b's rectangle, and its diagonal block. The block at the point
/// has no rectangle, and shares its piece with its neighbour's, which is the smallest.
template <class T>
void update_by_blocks(const rank_update<T>& u, const syrk_choice& choice) {
  const core_int blocks = 2 * choice.threads, rectangles = blocks - 1;
  const auto block = [&](core_int b) {
    const core_int start = b * choice.chunk;
    return index_range{start, b < blocks - 1 ? choice.chunk : u.n - start};
  };
  // Block number by distance from the side where rectangles are longest.
  const auto rectangle = [&](core_int rank) {
    const index_range columns = block(u.upper ? blocks - 1 - rank : rank);
    T* const c = u.c + columns.start * u.ldc;
    if (u.upper) {
      add_rectangle(u, 0, columns.start, columns.start, columns.length, c, u.ldc);
    } else {
      const core_int below = columns.start + columns.length;
      add_rectangle(u, below, columns.start, u.n - below, columns.length, c + below, u.ldc);
    }
  };
  const auto diagonal = [&](core_int b) {
    const index_range columns = block(b);
    update_triangle(u, columns.start, columns.length);
  };
  const core_int at_point = u.upper ? 0 : blocks - 1;
  const auto team = static_cast<int>(choice.threads);
#pragma omp parallel for num_threads(team) schedule(static, 1)
  for (core_int t = 0; t < blocks; ++t) {
    const index_range columns = block(t);
    scale_columns(u, columns.start, columns.length);
  }
  if (u.k == 0 || u.alpha == T{}) return;
#pragma omp parallel for num_threads(team) schedule(dynamic, 1)
  for (core_int item = 0; item < choice.items; ++item) {
    if (item < rectangles) {
      rectangle(item);
      if (item == rectangles - 1) diagonal(at_point);
    } else {
      const core_int other = item - rectangles;  // the diagonal blocks but the one at the point
      diagonal(u.upper ? other + 1 : other);
    }
  }
}

}  // namespace

template <class T>
void rank_update_driver(const rank_update<T>& u) {
  const bool one = u.beta == from_real<T>(1), changes_nothing = one && (u.k == 0 || u.alpha == T{});
  const syrk_choice choice = choose_syrk(syrk_facts_now(u.n, u.k, changes_nothing));
  switch (choice.scheme) {
    case syrk_scheme::nothing:
      return;
    case syrk_scheme::slices: {
      const auto team = static_cast<int>(choice.threads);
#pragma omp parallel for num_threads(team) schedule(static, 1)
      for (core_int t = 0; t < choice.threads; ++t) {
        const core_int start = t * choice.chunk;
        update_columns(u, start, t < choice.threads - 1 ? choice.chunk : u.n - start);
      }
      return;
    }
    case syrk_scheme::triangle_blocks:
      return update_by_blocks(u, choice);
    default:
      return update_columns(u, 0, u.n);
  }
}

template void rank_update_driver(const rank_update<float>&);
template void rank_update_driver(const rank_update<double>&);
template void rank_update_driver(const rank_update<complex8>&);
template void rank_update_driver(const rank_update<complex16>&);

}  // namespace qel
