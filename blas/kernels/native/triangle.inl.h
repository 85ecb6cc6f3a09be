// SPDX-License-Identifier: BSD-3-Clause
// Small triangles on the rows of a matrix, in place, for the native levels. Columns go in groups as wide as
// the register tile: what other groups add is one sum over the depth as in a product, what the group itself
// adds follows column by column. From the left the same runs on transposed panels of columns.
#pragma once

#include "blas/kernels/native/pack.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class R>
inline R divided(R a, R b) {
  return a / b;
}
template <class C, class R>
inline C smith_divided(C a, C b, R) {
  const R abs_real = b.real < 0 ? -b.real : b.real, abs_imag = b.imag < 0 ? -b.imag : b.imag;
  if (abs_real < abs_imag) {
    const R ratio = b.real / b.imag, denominator = b.real * ratio + b.imag;
    return {(a.real * ratio + a.imag) / denominator, (a.imag * ratio - a.real) / denominator};
  }
  const R ratio = b.imag / b.real, denominator = b.imag * ratio + b.real;
  return {(a.imag * ratio + a.real) / denominator, (a.imag - a.real * ratio) / denominator};
}
inline complex8 divided(complex8 a, complex8 b) { return smith_divided(a, b, 0.0F); }
inline complex16 divided(complex16 a, complex16 b) { return smith_divided(a, b, 0.0); }

/// v / pivot, lane by lane.
template <class T>
inline typename finish<T>::reg divided_lanes(typename finish<T>::reg v, T pivot) {
  using V = vec<typename reals<T>::type>;
  constexpr int kCount = V::kLanes / reals<T>::kCount;
  T lane[kCount];
  V::store(reinterpret_cast<typename reals<T>::type*>(lane), v);
  for (int i = 0; i < kCount; ++i) lane[i] = divided(lane[i], pivot);
  return V::load(reinterpret_cast<typename reals<T>::type*>(lane));
}

template <class T>
inline T negative(T v) {
  if constexpr (reals<T>::kCount == 1) {
    return -v;
  } else {
    return {-v.real, -v.imag};
  }
}

/// Columns [first, first + kColumns) of one strip of rows; `rows` elements, the last vector perhaps in part.
template <class T, int kVectors, int kColumns, bool kPart, bool kSolve>
void triangle_tile(const triangle_product<T>& what, core_int first, core_int rows, T* b) {
  using R = typename reals<T>::type;
  using V = vec<R>;
  using reg = typename V::reg;
  using F = finish<T>;
  constexpr int kParts = reals<T>::kCount;
  const int last = static_cast<int>(rows) * kParts - (kVectors - 1) * V::kLanes;
  const core_int from = what.upper ? 0 : first + kColumns, to = what.upper ? first : what.order;
  const T* t = what.t + first * kTriangleOrder;
  const direct_rows<R, kVectors, kPart> others{reinterpret_cast<const R*>(b + from * what.ldb),
                                               what.ldb * kParts, last};
  const direct_columns<R, kParts> factors{reinterpret_cast<const R*>(t + from), kParts,
                                          core_int{kTriangleOrder} * kParts};
  const tile_sums<R, kVectors, kColumns* kParts> sum =
      sum_tile<R, kVectors, kColumns * kParts>(to - from, others, factors);
  const reg real_signs = V::all(kSolve ? R(-1) : R(1));
  const reg imag_signs = kSolve ? V::pairs(1, -1) : V::pairs(-1, 1);
  const auto part = [&](int v) { return kPart && v == kVectors - 1; };

  reg value[kColumns][kVectors];
#pragma GCC unroll 8
  for (int j = 0; j < kColumns; ++j) {
    R* column = reinterpret_cast<R*>(b + (first + j) * what.ldb);
#pragma GCC unroll 4
    for (int v = 0; v < kVectors; ++v) {
      value[j][v] = part(v) ? V::load_part(column + v * V::kLanes, last) : V::load(column + v * V::kLanes);
    }
  }
  // A solve needs the finished columns of its group, a product the old ones: hence the order.
#pragma GCC unroll 8
  for (int step = 0; step < kColumns; ++step) {
    const int j = what.upper == kSolve ? step : kColumns - 1 - step;
    const T* column_of_t = t + j * kTriangleOrder;
    const T pivot = column_of_t[first + j];
    for (int v = 0; v < kVectors; ++v) {
      reg x = value[j][v];
      if (!kSolve && !what.unit) x = F::multiple(pivot, x);
      if constexpr (kParts == 1) {
        x = V::fma(real_signs, sum.of[j][v], x);
      } else {
        x = V::fma(real_signs, sum.of[2 * j][v], x);
        x = V::fma(imag_signs, V::swapped(sum.of[2 * j + 1][v]), x);
      }
      for (int i = what.upper ? 0 : j + 1; i < (what.upper ? j : kColumns); ++i) {
        const T factor = column_of_t[first + i];
        x = F::add_multiple(kSolve ? negative(factor) : factor, value[i][v], x);
      }
      if (kSolve && !what.unit) x = what.divide ? divided_lanes<T>(x, pivot) : F::multiple(pivot, x);
      value[j][v] = x;
    }
  }
#pragma GCC unroll 8
  for (int j = 0; j < kColumns; ++j) {
    R* column = reinterpret_cast<R*>(b + (first + j) * what.ldb);
#pragma GCC unroll 4
    for (int v = 0; v < kVectors; ++v) {
      if (part(v)) {
        V::store_part(column + v * V::kLanes, last, value[j][v]);
      } else {
        V::store(column + v * V::kLanes, value[j][v]);
      }
    }
  }
}

template <class T>
using triangle_tile_fn = void(const triangle_product<T>& what, core_int first, core_int rows, T* b);

/// [vectors - 1][columns - 1][last vector a part]
template <class T, bool kSolve>
struct triangle_table {
  triangle_tile_fn<T>* tile[tile_shape<T>::kVectors][tile_shape<T>::kColumns][2];
};
template <class T, bool kSolve, int kVectors, int kColumns>
constexpr void enter_triangle(triangle_table<T, kSolve>& table) {
  table.tile[kVectors - 1][kColumns - 1][0] = triangle_tile<T, kVectors, kColumns, false, kSolve>;
  table.tile[kVectors - 1][kColumns - 1][1] = triangle_tile<T, kVectors, kColumns, true, kSolve>;
  if constexpr (kColumns > 1) {
    enter_triangle<T, kSolve, kVectors, kColumns - 1>(table);
  } else if constexpr (kVectors > 1) {
    enter_triangle<T, kSolve, kVectors - 1, tile_shape<T>::kColumns>(table);
  }
}
template <class T, bool kSolve>
constexpr triangle_table<T, kSolve> make_triangle_table() {
  triangle_table<T, kSolve> table{};
  enter_triangle<T, kSolve, tile_shape<T>::kVectors, tile_shape<T>::kColumns>(table);
  return table;
}
template <class T, bool kSolve>
constexpr triangle_table<T, kSolve> kTriangles = make_triangle_table<T, kSolve>();

/// One strip of rows, no more than a tile has.
template <bool kSolve, class T>
void triangle_strip(const triangle_product<T>& what, core_int rows, T* b) {
  constexpr int kColumns = tile_shape<T>::kColumns;
  const int vectors = vectors_of<T>(rows);
  const int part = rows != vectors * tile_shape<T>::kLanes;
  const auto& tiles = kTriangles<T, kSolve>.tile[vectors - 1];
  if (what.upper == kSolve) {
    for (core_int j = 0; j < what.order; j += kColumns) {
      const core_int columns = what.order - j < kColumns ? what.order - j : kColumns;
      tiles[columns - 1][part](what, j, rows, b);
    }
  } else {
    core_int columns = (what.order - 1) % kColumns + 1;
    for (core_int j = what.order - columns; j >= 0; j -= columns) {
      tiles[columns - 1][part](what, j, rows, b);
      columns = kColumns;
    }
  }
}

template <bool kSolve, class T>
void triangle_on_rows(const triangle_product<T>& what) {
  core_int rows = 0;
  for (core_int i = 0; i < what.count; i += rows) {
    rows = panel_rows(what.count - i, tile_shape<T>::kRows, tile_shape<T>::kLanes);
    triangle_strip<kSolve>(what, rows, what.b + i);
  }
}

/// The transpose of a panel: to[p + i * step] = panel[p * width + i].
template <class T>
void unpack(int count, int width, core_int depth, const T* panel, T* to, core_int step) {
  core_int p = 0;
  for (; p + 4 <= depth; p += 4) {
    int i = 0;
    for (; i + 4 <= count; i += 4) transpose4(panel + p * width + i, width, to + p + i * step, step);
    for (; i < count; ++i) {
      for (core_int q = p; q < p + 4; ++q) to[q + i * step] = panel[q * width + i];
    }
  }
  for (; p < depth; ++p) {
    for (int i = 0; i < count; ++i) to[p + i * step] = panel[p * width + i];
  }
}

template <bool kSolve, class T>
void triangle_on_columns(const triangle_product<T>& what) {
  using shape = tile_shape<T>;
  alignas(64) T panel[kTriangleOrder * shape::kRows];
  core_int columns = 0;
  for (core_int j = 0; j < what.count; j += columns) {
    columns = panel_rows(what.count - j, shape::kRows, shape::kLanes);
    const int width = vectors_of<T>(columns) * shape::kLanes;
    T* b = what.b + j * what.ldb;
    pack_rows(columns, what.order, panel_source<T>{b, what.ldb, 1, false}, panel);
    triangle_product<T> on_panel = what;
    on_panel.ldb = width;
    triangle_strip<kSolve>(on_panel, width, panel);
    unpack(static_cast<int>(columns), width, what.order, panel, b, what.ldb);
  }
}

template <class T>
void triangle_rows(const triangle_product<T>& what, bool solve) {
  if (solve) {
    triangle_on_rows<true>(what);
  } else {
    triangle_on_rows<false>(what);
  }
}
template <class T>
void triangle_columns(const triangle_product<T>& what, bool solve) {
  if (solve) {
    triangle_on_columns<true>(what);
  } else {
    triangle_on_columns<false>(what);
  }
}

}  // namespace
}  // namespace qel::QEL_LEVEL
