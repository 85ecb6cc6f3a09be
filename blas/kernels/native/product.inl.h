// SPDX-License-Identifier: BSD-3-Clause
// Products of packed panels, and of small matrices as they lie in memory, on the register tile.
#pragma once

#include "blas/kernels/native/tile.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// The tile of an element type: with its sums it fills the registers.
template <class T>
struct tile_shape {
  using R = typename reals<T>::type;
#ifdef __AVX512F__
  static constexpr int kVectors = 3, kRealColumns = 8;
#else
  static constexpr int kVectors = 3, kRealColumns = 4;
#endif
  static constexpr int kLanes = vec<R>::kLanes / reals<T>::kCount;  ///< in elements
  static constexpr int kRows = kVectors * kLanes, kColumns = kRealColumns / reals<T>::kCount;
};

template <class T>
using packed_tile_fn = void(const finish<T>& how, core_int k, const T* a, const T* b, core_int rows, T* c,
                            core_int ldc);
template <class T>
using direct_tile_fn = void(const finish<T>& how, const direct_product<T>& what, const T* a, core_int lda,
                            const T* b, core_int rows, T* c);

template <class T, int kVectors, int kColumns>
void packed_tile(const finish<T>& how, core_int k, const T* a, const T* b, core_int rows, T* c,
                 core_int ldc) {
  using R = typename reals<T>::type;
  constexpr int kRealColumns = kColumns * reals<T>::kCount;
  constexpr int kLine = 64 / static_cast<int>(sizeof(T));
  for (int j = 0; j < kColumns; ++j) {
    for (core_int i = 0; i < kVectors * tile_shape<T>::kLanes; i += kLine)
      _mm_prefetch(c + i + j * ldc, _MM_HINT_T0);
  }
  finish_tile<T, kVectors, kRealColumns>(
      how,
      sum_tile<R, kVectors, kRealColumns>(k, packed_rows<R, kVectors>{reinterpret_cast<const R*>(a)},
                                          packed_columns<R, kRealColumns>{reinterpret_cast<const R*>(b)}),
      rows, c, ldc);
}

template <class T, int kVectors, int kColumns, bool kPart>
void direct_tile(const finish<T>& how, const direct_product<T>& what, const T* a, core_int lda, const T* b,
                 core_int rows, T* c) {
  using R = typename reals<T>::type;
  constexpr int kParts = reals<T>::kCount, kRealColumns = kColumns * kParts;
  const int last = static_cast<int>(rows) * kParts - (kVectors - 1) * vec<R>::kLanes;
  const direct_rows<R, kVectors, kPart> from_a{reinterpret_cast<const R*>(a), lda * kParts, last};
  const direct_columns<R, kParts> from_b{reinterpret_cast<const R*>(b), what.b_row_step * kParts,
                                         what.b_column_step * kParts};
  finish_tile<T, kVectors, kRealColumns>(how, sum_tile<R, kVectors, kRealColumns>(what.k, from_a, from_b),
                                         rows, c, what.ldc);
}

/// All heights and widths of a tile, [vectors - 1][columns - 1].
template <class T>
struct tile_tables {
  static constexpr int kVectors = tile_shape<T>::kVectors, kColumns = tile_shape<T>::kColumns;
  packed_tile_fn<T>* packed[kVectors][kColumns];
  direct_tile_fn<T>* direct[kVectors][kColumns];
  direct_tile_fn<T>* direct_part[kVectors][kColumns];
};
template <class T, int kVectors, int kColumns>
constexpr void enter_tile(tile_tables<T>& tables) {
  tables.packed[kVectors - 1][kColumns - 1] = packed_tile<T, kVectors, kColumns>;
  tables.direct[kVectors - 1][kColumns - 1] = direct_tile<T, kVectors, kColumns, false>;
  tables.direct_part[kVectors - 1][kColumns - 1] = direct_tile<T, kVectors, kColumns, true>;
  if constexpr (kColumns > 1) {
    enter_tile<T, kVectors, kColumns - 1>(tables);
  } else if constexpr (kVectors > 1) {
    enter_tile<T, kVectors - 1, tile_tables<T>::kColumns>(tables);
  }
}
template <class T>
constexpr tile_tables<T> make_tables() {
  tile_tables<T> tables{};
  enter_tile<T, tile_tables<T>::kVectors, tile_tables<T>::kColumns>(tables);
  return tables;
}
template <class T>
constexpr tile_tables<T> kTiles = make_tables<T>();

template <class T>
int vectors_of(core_int rows) {
  return static_cast<int>((rows + tile_shape<T>::kLanes - 1) / tile_shape<T>::kLanes);
}

/// A tile that the diagonal crosses: only vectors that reach into the triangle, finished beside C, and their
/// part of it copied back.
template <class T>
void crossing_tile(const finish<T>& how, const panel_product<T>& what, const T* a, const T* b, core_int i,
                   core_int rows, core_int j, core_int columns) {
  using shape = tile_shape<T>;
  using R = typename reals<T>::type;
  using V = vec<R>;
  constexpr int kParts = reals<T>::kCount;
  constexpr core_int kLanes = shape::kLanes;
  const bool upper = what.part == c_part::upper;
  const core_int below = what.below + i - j;  // of the tile's first row under its first column's diagonal
  const core_int width = vectors_of<T>(rows) * kLanes;
  const core_int first = upper || below > 0 ? 0 : -below / kLanes * kLanes;
  const core_int inside = upper && columns - below < rows ? columns - below : rows;
  const int vectors = vectors_of<T>(inside - first);
  R values[shape::kRows * shape::kColumns * kParts];
  const auto over_triangle = [&](const auto& step) {
    for (core_int s = 0; s < columns; ++s) {
      const core_int end = upper && s - below + 1 < inside ? s - below + 1 : inside;
      for (int v = 0; v < vectors; ++v) {
        const core_int row = first + v * kLanes, from = upper || s - below < row ? 0 : s - below - row,
                       to = end - row < kLanes ? end - row : kLanes;
        if (from >= to) continue;
        step(reinterpret_cast<R*>(what.c + i + row + (j + s) * what.ldc),
             values + (v * kLanes + s * shape::kRows) * kParts, static_cast<int>(from) * kParts,
             static_cast<int>(to) * kParts);
      }
    }
  };
  if (how.keeps_c()) {
    for (R& value : values) value = 0;
    over_triangle(
        [](const R* c, R* value, int from, int to) { V::store(value, V::load_between(c, from, to)); });
  }
  const direct_product<T> panels{inside - first, columns, what.k,  how.alpha, how.beta,
                                 nullptr,        width,   nullptr, columns,   1,
                                 false,          false,   false,   nullptr,   shape::kRows};
  kTiles<T>.direct[vectors - 1][columns - 1](how, panels, a + first, width, b, inside - first,
                                             reinterpret_cast<T*>(values));
  over_triangle(
      [](R* c, const R* value, int from, int to) { V::store_between(c, from, to, V::load(value)); });
}

/// One tile of the product, or the part of it inside the triangle.
template <class T>
void multiply_tile(const finish<T>& how, const panel_product<T>& what, core_int i, core_int rows, core_int j,
                   core_int columns) {
  const T *a = what.a + i * what.k, *b = what.b + j * what.k;
  if (what.part != c_part::whole) {
    const core_int below = what.below + i - j;
    const bool upper = what.part == c_part::upper;
    const core_int most_inside = upper ? below - (columns - 1) : -(below + rows - 1);
    const core_int least_inside = upper ? below + rows - 1 : columns - 1 - below;
    if (most_inside > 0) return;
    if (least_inside > 0) return crossing_tile(how, what, a, b, i, rows, j, columns);
  }
  kTiles<T>.packed[vectors_of<T>(rows) - 1][columns - 1](how, what.k, a, b, rows, what.c + i + j * what.ldc,
                                                         what.ldc);
}

template <class T>
void multiply(const panel_product<T>& what) {
  using shape = tile_shape<T>;
  const finish<T> how(what.alpha, what.beta, false, false);
  core_int rows = 0, columns = 0;
  if (what.columns_outside) {
    for (core_int j = 0; j < what.n; j += columns) {
      columns = panel_columns(what.n - j, shape::kColumns);
      for (core_int i = 0; i < what.m; i += rows) {
        rows = panel_rows(what.m - i, shape::kRows, shape::kLanes);
        multiply_tile(how, what, i, rows, j, columns);
      }
    }
  } else {
    for (core_int i = 0; i < what.m; i += rows) {
      rows = panel_rows(what.m - i, shape::kRows, shape::kLanes);
      for (core_int j = 0; j < what.n; j += columns) {
        columns = panel_columns(what.n - j, shape::kColumns);
        multiply_tile(how, what, i, rows, j, columns);
      }
    }
  }
}

template <class T>
void multiply_direct(const direct_product<T>& what) {
  using shape = tile_shape<T>;
  const finish<T> how(what.alpha, what.beta, what.a_conjugated, what.b_conjugated);
  const auto tile = [&](core_int i, core_int rows, core_int j, core_int columns) {
    const int vectors = vectors_of<T>(rows);
    const core_int width = vectors * shape::kLanes;
    const bool panels = what.lda == 0;
    const auto& tables = panels || rows == width ? kTiles<T>.direct : kTiles<T>.direct_part;
    const T* a = what.a + (panels ? i * what.k : i);
    tables[vectors - 1][columns - 1](how, what, a, panels ? width : what.lda, what.b + j * what.b_column_step,
                                     rows, what.c + i + j * what.ldc);
  };
  if (what.m <= shape::kRows && what.n <= shape::kColumns) return tile(0, what.m, 0, what.n);
  core_int rows = 0, columns = 0;
  if (what.columns_outside) {
    for (core_int j = 0; j < what.n; j += columns) {
      columns = panel_columns(what.n - j, shape::kColumns);
      for (core_int i = 0; i < what.m; i += rows) {
        rows = panel_rows(what.m - i, shape::kRows, shape::kLanes);
        tile(i, rows, j, columns);
      }
    }
  } else {
    for (core_int i = 0; i < what.m; i += rows) {
      rows = panel_rows(what.m - i, shape::kRows, shape::kLanes);
      for (core_int j = 0; j < what.n; j += columns) {
        columns = panel_columns(what.n - j, shape::kColumns);
        tile(i, rows, j, columns);
      }
    }
  }
}

}  // namespace
}  // namespace qel::QEL_LEVEL
