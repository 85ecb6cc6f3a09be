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

template <bool kAligned, bool kWhole, class Tile, class T, class How>
inline void put_tile(const Tile& tile, core_int rows, core_int columns, T* c, core_int ldc, const How& how) {
#pragma GCC unroll 12
  for (int j = 0; j < Tile::kColumns; ++j) {
    if (!kWhole && j >= columns) break;
    typename Tile::reg column[Tile::kRegisters];
#pragma GCC unroll 2
    for (int r = 0; r < Tile::kRegisters; ++r) column[r] = tile.column(j, r);
    put_column<kAligned, kWhole>(column, rows, c + j * ldc, how);
  }
}

/// All rows of A by one panel of B.
template <class Tile, bool kAligned, class T, class B>
inline void multiply_panel(core_int rows, core_int columns, core_int depth, const T* a, core_int a_stride,
                           const B& b, T* c, core_int ldc) {
  for (core_int i = 0; i < rows; i += Tile::kRows, a += a_stride) {
    for (core_int j = 0; j < columns; ++j)
      _mm_prefetch(reinterpret_cast<const char*>(c + i + j * ldc) + 16, _MM_HINT_T0);
    Tile tile;
    tile.run(depth, reals(a), b);
    if (columns == Tile::kColumns) {
      put_tile<kAligned, true>(tile, Tile::kRows, columns, c + i, ldc, add_to_c{});
    } else {
      put_tile<kAligned, false>(tile, Tile::kRows, columns, c + i, ldc, add_to_c{});
    }
  }
}

#ifdef QEL_LEVEL_l4_avx
/// One panel side by side with nothing else, so that it stays in the first cache.
template <class Tile, bool kAligned, class T>
inline void multiply_by_panel(core_int rows, core_int columns, core_int depth, const T* a, core_int a_stride,
                              const T* b, T* strip, T* c, core_int ldc) {
  using R = typename parts<T>::real;
  using L = lane_set<R>;
  for (core_int l = 0; l < depth * Tile::kColumns * parts<T>::kCount; l += L::kCount)
    L::store(reals(strip) + l, L::load(reals(b) + l));
  multiply_panel<Tile, kAligned>(rows, columns, depth, a, a_stride, typename Tile::packed{reals(strip)}, c,
                                 ldc);
}
#else
inline constexpr core_int kSpreadDepth = 256;  ///< of a panel that is spread before it is used
inline constexpr core_int kSpreadTiles = 8;    ///< which pays from so many tiles on

template <class Tile, bool kAligned, class T>
inline void multiply_by_panel(core_int rows, core_int columns, core_int depth, const T* a, core_int a_stride,
                              const T* b, T*, T* c, core_int ldc) {
  using R = typename parts<T>::real;
  const typename Tile::packed numbers{reals(b)};
  if constexpr (Tile::kSpreads) {
    if (depth <= kSpreadDepth && rows >= kSpreadTiles * Tile::kRows) {
      alignas(64) R registers[kSpreadDepth * 4 * lane_set<R>::kCount];
      spread<4>(depth, numbers, registers);
      multiply_panel<Tile, kAligned>(rows, columns, depth, a, a_stride, spread_numbers<R, 4>{registers}, c,
                                     ldc);
      return;
    }
  }
  multiply_panel<Tile, kAligned>(rows, columns, depth, a, a_stride, numbers, c, ldc);
}
#endif

template <class T, class Tile, bool kAligned>
void multiply_block(core_int rows, core_int columns, core_int depth, const T* a, core_int a_stride,
                    const T* b, core_int b_stride, T* strip, T* c, core_int ldc) {
  for (core_int j = 0; j < columns; j += Tile::kColumns, b += b_stride, c += Tile::kColumns * ldc) {
    multiply_by_panel<Tile, kAligned>(rows, least(Tile::kColumns, columns - j), depth, a, a_stride, b, strip,
                                      c, ldc);
  }
}

template <class T, class Tile>
constexpr gemm_kernels<T> panel_kernels() {
  gemm_kernels<T> set{Tile::kRows,
                      Tile::kColumns,
                      static_cast<int>(sizeof(typename Tile::reg)),
                      {},
                      {},
                      {multiply_block<T, Tile, false>, multiply_block<T, Tile, true>}};
  for (int op = 0; op < kGemmOps; ++op) {
    set.pack_a[op] = kPackRows<T, Tile::kRows>[op];
    set.pack_b[op] = kPackColumns<T, Tile::kColumns>[op];
  }
  return set;
}

}  // namespace
}  // namespace qel::QEL_LEVEL
