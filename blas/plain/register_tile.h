// SPDX-License-Identifier: BSD-3-Clause
// The innermost step of the matrix product: the product of a packed row panel of A and a packed column panel
// of B over k steps, summed in registers. Panels are laid out step by step along k: for each step the tile's
// rows of A (columns of B), a complex type with all real parts first, then all imaginary ones. Vectors of 16
// bytes, what every x86-64 processor has. Included by packed_product.cpp only.
#pragma once

#include "service/complex_arithmetic.h"

namespace qel::plain {

/// Shape of a tile: one or two vectors of rows, four columns; with the sums, that fills the 16 registers.
template <class T>
struct tile_shape {
  static constexpr int kLanes = 16 / static_cast<int>(sizeof(real_of<T>));
  static constexpr int kVectors = is_complex<T> ? 1 : 2;
  static constexpr int kRows = kLanes * kVectors;
  static constexpr int kColumns = 4;
  static constexpr int kSize = kRows * kColumns;
};

/// tile = A panel * B panel, tile column-major with kRows rows.
template <class T>
void real_tile_product(core_int k, const T* a, const T* b, T* tile) {
  typedef T vec __attribute__((vector_size(16)));
  constexpr int kVectors = tile_shape<T>::kVectors, kColumns = tile_shape<T>::kColumns;
  vec sum[kColumns][kVectors] = {};
  const vec* rows = reinterpret_cast<const vec*>(a);
  for (; k > 0; --k, rows += kVectors, b += kColumns) {
    for (int j = 0; j < kColumns; ++j) {
      for (int v = 0; v < kVectors; ++v) sum[j][v] += rows[v] * b[j];
    }
  }
  for (int j = 0; j < kColumns; ++j) {
    for (int v = 0; v < kVectors; ++v) reinterpret_cast<vec*>(tile)[j * kVectors + v] = sum[j][v];
  }
}

/// As above for complex T; real and imaginary sums are kept apart until the end.
template <complex_pair T>
void complex_tile_product(core_int k, const real_of<T>* a, const real_of<T>* b, T* tile) {
  using R = real_of<T>;
  typedef R vec __attribute__((vector_size(16)));
  constexpr int kLanes = tile_shape<T>::kLanes, kColumns = tile_shape<T>::kColumns;
  vec real[kColumns] = {}, imag[kColumns] = {};
  const vec* rows = reinterpret_cast<const vec*>(a);
  for (; k > 0; --k, rows += 2, b += 2 * kColumns) {
    for (int j = 0; j < kColumns; ++j) {
      real[j] += rows[0] * b[j];
      imag[j] += rows[1] * b[j];
      real[j] -= rows[1] * b[kColumns + j];
      imag[j] += rows[0] * b[kColumns + j];
    }
  }
  for (int j = 0; j < kColumns; ++j) {
    for (int l = 0; l < kLanes; ++l) tile[j * kLanes + l] = {real[j][l], imag[j][l]};
  }
}

template <class T>
void tile_product(core_int k, const real_of<T>* a, const real_of<T>* b, T* tile) {
  if constexpr (is_complex<T>) {
    complex_tile_product<T>(k, a, b, tile);
  } else {
    real_tile_product<T>(k, a, b, tile);
  }
}

}  // namespace qel::plain
