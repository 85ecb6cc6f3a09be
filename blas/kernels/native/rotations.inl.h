// SPDX-License-Identifier: BSD-3-Clause
// Waves of plane rotations: neighbours (k, k + 1), one after the other, all over the columns or the rows of a
// matrix. What two rotations share stays in registers between them: each element is read and written once.
#pragma once

#include "blas/kernels/native/cholesky.inl.h"
#include "blas/kernels/native/reflect.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// kVectors vectors of each column, the last perhaps in part. Rotations go from the first pair of columns to
/// the last or back.
template <class R, int kVectors, bool kForward>
void rotate_strip(core_int columns, const R* cosines, const R* sines, R* a, core_int step, int last) {
  using V = vec<R>;
  using reg = typename V::reg;
  const bool part = last < V::kLanes;
  const auto load = [&](const R* p, int v) {
    return part && v == kVectors - 1 ? V::load_part(p + v * V::kLanes, last) : V::load(p + v * V::kLanes);
  };
  const auto store = [&](R* p, int v, reg value) {
    if (part && v == kVectors - 1) return V::store_part(p + v * V::kLanes, last, value);
    V::store(p + v * V::kLanes, value);
  };
  R* at = kForward ? a : a + (columns - 1) * step;
  reg held[kVectors];
#pragma GCC unroll 4
  for (int v = 0; v < kVectors; ++v) held[v] = load(at, v);
  for (core_int k = 0; k + 1 < columns; ++k) {
    const core_int pair = kForward ? k : columns - 2 - k;
    const R c = element_at(cosines + pair), s = element_at(sines + pair);
    R* const next = kForward ? at + step : at - step;
    if (c == 1 && s == 0) {
#pragma GCC unroll 4
      for (int v = 0; v < kVectors; ++v) {
        const reg other = load(next, v);
        store(at, v, held[v]);
        held[v] = other;
      }
    } else {
      // The column that is left behind, and the one that goes on: (c x + s y, c y - s x).
      const reg cosine = V::all(c), sine = V::all(kForward ? s : -s);
#pragma GCC unroll 4
      for (int v = 0; v < kVectors; ++v) {
        const reg other = load(next, v);
        store(at, v, V::fma(sine, other, V::mul(cosine, held[v])));
        held[v] = V::minus_fma(sine, held[v], V::mul(cosine, other));
      }
    }
    at = next;
  }
#pragma GCC unroll 4
  for (int v = 0; v < kVectors; ++v) store(at, v, held[v]);
}

/// The columns of a, of `rows` reals.
template <class R>
void rotate_columns(bool forward, core_int rows, core_int columns, const R* cosines, const R* sines, R* a,
                    core_int step) {
  constexpr int kLanes = vec<R>::kLanes, kStrip = 4 * kLanes;
  for (core_int i = 0; i < rows;) {
    const int left = static_cast<int>(rows - i < kStrip ? rows - i : kStrip);
    const int vectors = left >= kStrip ? 4 : left >= 2 * kLanes ? 2 : 1;
    const int taken = vectors * kLanes < left ? vectors * kLanes : left;
    const int last = taken - (vectors - 1) * kLanes;
    const auto strip = [&](auto* run) { run(columns, cosines, sines, a + i, step, last); };
    if (vectors == 4) strip(forward ? rotate_strip<R, 4, true> : rotate_strip<R, 4, false>);
    if (vectors == 2) strip(forward ? rotate_strip<R, 2, true> : rotate_strip<R, 2, false>);
    if (vectors == 1) strip(forward ? rotate_strip<R, 1, true> : rotate_strip<R, 1, false>);
    i += taken;
  }
}

/// The rows of a: a few columns at a time stand side by side in a panel, whose columns are a's rows.
template <class T, class R>
void rotate_rows(bool forward, core_int rows, core_int columns, const R* cosines, const R* sines, T* a,
                 core_int lda) {
  using shape = tile_shape<T>;
  constexpr int kParts = reals<T>::kCount;
  constexpr core_int kDepth = 64;
  alignas(64) T panel[kDepth * shape::kRows];
  for (core_int j = 0; j < columns; j += shape::kRows) {
    const core_int count = columns - j < shape::kRows ? columns - j : shape::kRows;
    const int width = vectors_of<T>(count) * shape::kLanes;
    // Neighbouring stretches of rows share one row, which the first leaves half rotated.
    const core_int stretches = (rows - 2) / (kDepth - 1) + 1;
    for (core_int k = 0; k < stretches; ++k) {
      const core_int first = (forward ? k : stretches - 1 - k) * (kDepth - 1);
      const core_int depth = rows - first < kDepth ? rows - first : kDepth;
      T* const at = a + first + j * lda;
      pack_rows(count, depth, panel_source<T>{at, lda, 1, false}, panel);
      rotate_columns(forward, core_int{width} * kParts, depth, cosines + first, sines + first,
                     reinterpret_cast<R*>(panel), core_int{width} * kParts);
      unpack(static_cast<int>(count), width, depth, panel, at, lda);
    }
  }
}

template <class T>
void rotate(bool left, bool forward, core_int m, core_int n, const typename reals<T>::type* cosines,
            const typename reals<T>::type* sines, T* a, core_int lda) {
  using R = typename reals<T>::type;
  constexpr int kParts = reals<T>::kCount;
  if (left) {
    rotate_rows(forward, m, n, cosines, sines, a, lda);
  } else {
    rotate_columns(forward, m * kParts, n, cosines, sines, reinterpret_cast<R*>(a), lda * kParts);
  }
}

template <class T>
constexpr factor_kernels<T> factor_table() {
  return {lu_panel<T>, cholesky<T>, invert_lu<T>, reflect_columns<T>, rotate<T>};
}

}  // namespace
}  // namespace qel::QEL_LEVEL
