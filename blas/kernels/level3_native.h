// SPDX-License-Identifier: BSD-3-Clause
// What a native level offers to level 3: a register tile with its packing, products over packed panels and in
// place, and triangular kernels. One table per element type and level.
//
// Panels: `width` rows of A (columns of B) side by side for each step of the depth. Rows come in panels of
// tile_rows, the last one or two lower (panel_rows), rounded up to whole vectors with zeros; columns in
// panels of tile_columns, the last one or two narrower (panel_columns).
#pragma once

#include "service/core_types.h"

namespace qel {

/// Which part of C a product writes. The diagonal is that of the whole matrix, not of the block.
enum class c_part : int { whole, upper, lower };

/// One factor as it lies in memory: element (i, p), i along the panel's width, p along the depth, stands at
/// data[i * width_step + p * depth_step]; one of the steps is 1.
template <class T>
struct panel_source {
  const T* data;
  core_int width_step, depth_step;
  bool conjugated;
};

/// C = alpha A B + beta C over packed panels; beta 0 does not read C.
template <class T>
struct panel_product {
  core_int m, n, k;
  T alpha, beta;
  const T *a, *b;  ///< panels, on a vector's boundary (A) and anywhere (B)
  T* c;
  core_int ldc;
  c_part part;
  bool columns_outside;  ///< order of the loops: which factor is gone through once, in the outer loop
  core_int below;  ///< how many rows this block's first row lies below its first column's diagonal element
};

/// C = alpha op(A) op(B) + beta C with B as it lies in memory, and A too (then its columns are contiguous) or
/// in panels.
template <class T>
struct direct_product {
  core_int m, n, k;
  T alpha, beta;
  const T* a;
  core_int lda;  ///< 0: panels
  const T* b;
  core_int b_row_step, b_column_step;
  bool a_conjugated, b_conjugated;
  bool columns_outside;
  T* c;
  core_int ldc;
};

/// Largest order of a triangle that the kernels take.
inline constexpr int kTriangleOrder = 64;

/// B = B T or B = B inv(T) for a dense triangle, in place; `columns` of B for T from the left, B = T**T B.
template <class T>
struct triangle_product {
  core_int order;  ///< of T, at most kTriangleOrder
  core_int count;  ///< rows of B, or its columns
  const T* t;  ///< column-major, leading dimension kTriangleOrder; a solve finds pivots' reciprocals on the
               ///< diagonal
  bool upper, unit;
  bool divide;  ///< solves only: the diagonal holds the pivots themselves
  T* b;
  core_int ldb;
};

/// A triangle of a stored matrix and its op: transposed if turned, conjugated if conjugated.
struct triangle_use {
  bool upper, unit;  ///< as it is stored
  bool turned, conjugated;
};
/// B = inv(op(T)) B for a triangle where it lies and few columns of B, or for two triangles of one matrix,
/// one after the other.
template <class T>
struct narrow_solve {
  core_int order;  ///< of T, at most kTriangleOrder
  core_int count;  ///< columns of B
  const T* t;
  core_int ldt;
  int triangles;  ///< 1 or 2
  triangle_use triangle[2];
  T* b;
  core_int ldb;
};

template <class T>
struct level3_kernels {
  int tile_rows, tile_columns;
  int lanes;  ///< elements of a vector
  void (*pack_rows)(core_int count, core_int depth, const panel_source<T>& from, T* out);
  void (*pack_columns)(core_int count, core_int depth, const panel_source<T>& from, T* out);
  void (*multiply)(const panel_product<T>& what);
  void (*multiply_direct)(const direct_product<T>& what);
  void (*triangle_rows)(const triangle_product<T>& what, bool solve);     ///< B has `count` rows
  void (*triangle_columns)(const triangle_product<T>& what, bool solve);  ///< B has `count` columns
  void (*solve_narrow)(const narrow_solve<T>& what);
};

/// Rows of the next panel when `left` are to come: whole tiles, but no last panel of a single vector behind a
/// whole one, because a tile that low cannot keep the multipliers busy.
constexpr core_int panel_rows(core_int left, int tile_rows, int lanes) {
  if (left > tile_rows && left <= tile_rows + lanes) return (tile_rows / lanes + 1) / 2 * lanes;
  return left < tile_rows ? left : tile_rows;
}
/// The same for columns: the last two panels share evenly what would leave a narrow one.
constexpr core_int panel_columns(core_int left, int tile_columns) {
  if (left > tile_columns && left < tile_columns + tile_columns / 2) return (left + 1) / 2;
  return left < tile_columns ? left : tile_columns;
}

namespace l5_avx2 {
extern const level3_kernels<float> slevel3;
extern const level3_kernels<double> dlevel3;
extern const level3_kernels<complex8> clevel3;
extern const level3_kernels<complex16> zlevel3;
}  // namespace l5_avx2

namespace l6_avx512 {
extern const level3_kernels<float> slevel3;
extern const level3_kernels<double> dlevel3;
extern const level3_kernels<complex8> clevel3;
extern const level3_kernels<complex16> zlevel3;
}  // namespace l6_avx512

}  // namespace qel
