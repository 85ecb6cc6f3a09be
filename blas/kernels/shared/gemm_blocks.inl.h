// SPDX-License-Identifier: BSD-3-Clause
// Loops of register tiles over packed blocks: all rows of A pass by one panel of B before the next.
#pragma once

#include "blas/kernels/shared/gemm_pack.inl.h"
#include "blas/kernels/shared/gemm_tiles.inl.h"

namespace qel::QEL_LEVEL {
namespace {

inline core_int least(core_int a, core_int b) { return a < b ? a : b; }

/// A tile's column, or what of it lies in C. kWhole: all of it does.
template <bool kAligned, bool kWhole, class T, class Reg, class How, int kRegisters>
inline void put_column(const Reg (&column)[kRegisters], core_int rows, T* c, const How& how) {
  constexpr int kInRegister = lane_set<typename parts<T>::real>::kCount / parts<T>::kCount;
#pragma GCC unroll 2
  for (int r = 0; r < kRegisters; ++r) {
    const core_int left = rows - r * kInRegister;
    if (kWhole || left >= kInRegister) {
      put_rows<kAligned>(c + r * kInRegister, column[r], how);
    } else if (left > 0) {
      put_part(c + r * kInRegister, left, column[r], how);
    }
  }
}

template <bool kAligned, bool kWhole, class T, int kA, int kB, class How>
inline void put_tile(const broadcast_tile<T, kA, kB>& tile, core_int rows, core_int columns, T* c,
                     core_int ldc, const How& how) {
  using Tile = broadcast_tile<T, kA, kB>;
#pragma GCC unroll 12
  for (int j = 0; j < Tile::kColumns; ++j) {
    if (!kWhole && j >= columns) break;
    typename Tile::reg column[kA];
#pragma GCC unroll 2
    for (int r = 0; r < kA; ++r) column[r] = tile.column(j, r);
    put_column<kAligned, kWhole>(column, rows, c + j * ldc, how);
  }
}

#ifndef QEL_LEVEL_l4_avx
template <bool kAligned, bool kWhole, class T, int kA, int kB, class How>
inline void put_tile(const shuffle_tile<T, kA, kB>& tile, core_int rows, core_int columns, T* c, core_int ldc,
                     const How& how) {
  using Tile = shuffle_tile<T, kA, kB>;
#pragma GCC unroll 4
  for (int q = 0; q < kB; ++q) {
    typename Tile::reg sorted[kA][Tile::kColumnsOfB];
    tile.columns(q, sorted);
#pragma GCC unroll 4
    for (int j = 0; j < Tile::kColumnsOfB; ++j) {
      const int at = q * Tile::kColumnsOfB + j;
      if (!kWhole && at >= columns) return;
      typename Tile::reg column[kA];
#pragma GCC unroll 2
      for (int r = 0; r < kA; ++r) column[r] = sorted[r][j];
      put_column<kAligned, kWhole>(column, rows, c + at * ldc, how);
    }
  }
}

/// B's panel for a shuffle_tile.
template <class T, int kA, int kB>
inline const typename parts<T>::real* numbers_of(const shuffle_tile<T, kA, kB>&, const T* b) {
  return reals(b);
}
#endif
template <class T, int kA, int kB>
inline packed_numbers<T, kB> numbers_of(const broadcast_tile<T, kA, kB>&, const T* b) {
  return {reals(b)};
}

template <class T, class Tile, bool kAligned, bool kCopyStrip>
void multiply_block(core_int rows, core_int columns, core_int depth, const T* a, core_int a_stride,
                    const T* b, core_int b_stride, [[maybe_unused]] T* strip, T* c, core_int ldc) {
  for (core_int j = 0; j < columns; j += Tile::kColumns, b += b_stride, c += Tile::kColumns * ldc) {
    const core_int here = least(Tile::kColumns, columns - j);
    const T* panel_b = b;
    if constexpr (kCopyStrip) {
      // One panel side by side with nothing else, so that it stays in the first cache.
      for (core_int l = 0; l < depth * Tile::kColumns; ++l) strip[l] = b[l];
      panel_b = strip;
    }
    const T* panel_a = a;
    for (core_int i = 0; i < rows; i += Tile::kRows, panel_a += a_stride) {
      for (core_int q = 0; q < here; ++q)
        _mm_prefetch(reinterpret_cast<const char*>(c + i + q * ldc) + 16, _MM_HINT_T0);
      Tile tile;
      tile.run(depth, reals(panel_a), numbers_of(tile, panel_b));
      if (here == Tile::kColumns) {
        put_tile<kAligned, true>(tile, Tile::kRows, here, c + i, ldc, add_to_c{});
      } else {
        put_tile<kAligned, false>(tile, Tile::kRows, here, c + i, ldc, add_to_c{});
      }
    }
  }
}

template <class T, class Tile, bool kCopyStrip>
constexpr gemm_kernels<T> panel_kernels() {
  gemm_kernels<T> set{
      Tile::kRows,
      Tile::kColumns,
      static_cast<int>(sizeof(typename Tile::reg)),
      {},
      {},
      {multiply_block<T, Tile, false, kCopyStrip>, multiply_block<T, Tile, true, kCopyStrip>}};
  for (int op = 0; op < kGemmOps; ++op) {
    set.pack_a[op] = kPackRows<T, Tile::kRows>[op];
    set.pack_b[op] = kPackColumns<T, Tile::kColumns>[op];
  }
  return set;
}

}  // namespace
}  // namespace qel::QEL_LEVEL
