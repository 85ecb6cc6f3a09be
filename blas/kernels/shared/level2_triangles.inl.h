// SPDX-License-Identifier: BSD-3-Clause
// Triangles in panels of columns, whatever their storage: a panel has a small triangle of its own on the
// diagonal and, above or below it, rows that lie in no other diagonal block. Used by the Hermitian and the
// triangular kernels.
#pragma once

#include "blas/kernels/shared/level2_panels.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class E>
inline E* column_of(const stored_triangle<E>& a, core_int j) {
  return a.base + j * a.ld + a.growth * (j * (j + 1) / 2);
}
/// Rows and columns first .. last - 1 as a triangle.
template <class E>
inline stored_triangle<E> block_of(const stored_triangle<E>& a, core_int first, core_int last) {
  stored_triangle<E> block = a;
  block.base = column_of(a, first) + first;
  block.ld = a.ld + a.growth * first;
  block.n = last - first;
  if (block.k > block.n) block.k = block.n;
  return block;
}

/// Rows from first to last, last not included.
struct row_range {
  core_int first, last;
};
/// Rows of column j that lie off the diagonal block of columns j0 .. j1 - 1.
template <class E>
inline row_range rows_outside(const stored_triangle<E>& a, core_int j, core_int j0, core_int j1) {
  if (a.upper) {
    const core_int first = j > a.k ? j - a.k : 0;
    return {first, first > j0 ? first : j0};
  }
  const core_int last = j + a.k + 1 < a.n ? j + a.k + 1 : a.n;
  return {j1, last > j1 ? last : j1};
}
/// Rows of column j off the diagonal inside that block.
template <class E>
inline row_range rows_inside(const stored_triangle<E>& a, core_int j, core_int j0, core_int j1) {
  if (a.upper) {
    const core_int first = j > a.k ? j - a.k : 0;
    return {first > j0 ? first : j0, j};
  }
  const core_int last = j + a.k + 1;
  return {j + 1, last < j1 ? last : j1};
}

/// Rows of column j among first .. last - 1, all of which are on its stored side.
template <class E>
inline row_range rows_among(const stored_triangle<E>& a, core_int j, core_int first, core_int last) {
  if (a.upper) return {first > j - a.k ? first : j - a.k, last};
  return {first, last < j + a.k + 1 ? last : j + a.k + 1};
}

/// Columns of a panel; one if the band is narrow.
template <class E>
inline core_int panel_width(const stored_triangle<E>& a, int widest) {
  return a.k < 4 * widest && a.k < a.n ? 1 : widest;
}

/// Calls visit(j0, j1) for the panels of columns first .. last - 1, from the first or from the last.
template <class Visit>
inline void for_panels(core_int first, core_int last, core_int width, bool ascending, Visit visit) {
  for (core_int done = 0, n = last - first; done < n; done += width) {
    const core_int count = n - done < width ? n - done : width;
    const core_int j0 = ascending ? first + done : last - done - count;
    visit(j0, j0 + count);
  }
}
/// The columns of a panel in either order.
template <class Visit>
inline void for_columns(core_int j0, core_int j1, bool ascending, Visit visit) {
  if (ascending) {
    for (core_int j = j0; j < j1; ++j) visit(j);
  } else {
    for (core_int j = j1; j-- > j0;) visit(j);
  }
}

}  // namespace
}  // namespace qel::QEL_LEVEL
