// SPDX-License-Identifier: BSD-3-Clause
// Matrix product, SSE3: tiles of 4 x 4 doubles (8 x 4 floats), every number of B loaded into all lanes. One
// kernel per combination of what is known of a whole depth block, so that its loop has a constant length and
// its stores no tests, and one for all other depths. beta is applied here, by the first depth block.
#include "blas/kernels/kernel_prelude.h"
#include "blas/kernels/shared/gemm_blocks.inl.h"

namespace qel::QEL_LEVEL {
namespace {

template <class T>
using tile_of = broadcast_tile<T, 2, 4>;

template <class T, bool kWhole, class B, class How>
inline void row_of_tiles(core_int rows, core_int columns, core_int depth, const T* a, core_int a_stride,
                         const B& b, T* c, core_int ldc, const How& how) {
  constexpr core_int kRows = tile_of<T>::kRows;
  for (core_int i = 0; i < rows; i += kRows, a += a_stride) {
    tile_of<T> tile;
    tile.run(depth, reals(a), b);
    put_tile<false, kWhole>(tile, least(kRows, rows - i), columns, c + i, ldc, how);
  }
}

/// SSE3 loads one double into all lanes. With floats that takes a shuffle, so where many tiles follow, B's
/// numbers are spread once for all.
inline constexpr core_int kFewTiles = 2;

template <class T, bool kWhole, class B, class How>
inline void panel_of_tiles(core_int rows, core_int columns, core_int depth, const T* a, core_int a_stride,
                           const B& b, T* c, core_int ldc, const How& how) {
  using R = typename parts<T>::real;
  if constexpr (sizeof(R) == 4) {
    if (rows > kFewTiles * tile_of<T>::kRows && depth <= kSse3Depth) {
      alignas(64) R registers[kSse3Depth * 4 * lane_set<R>::kCount];
      spread<4>(depth, b, registers);
      row_of_tiles<T, kWhole>(rows, columns, depth, a, a_stride, spread_numbers<R, 4>{registers}, c, ldc,
                              how);
      return;
    }
  }
  row_of_tiles<T, kWhole>(rows, columns, depth, a, a_stride, b, c, ldc, how);
}

template <class T, bool kPacked, bool kWhole, class How>
inline void all_tiles(core_int rows, core_int columns, core_int depth, const T* a, core_int a_stride,
                      const T* b, core_int b_stride, T* c, core_int ldc, const How& how) {
  using packed = packed_numbers<typename parts<T>::real>;
  constexpr core_int kColumns = tile_of<T>::kColumns;
  for (core_int j = 0; j < columns;
       j += kColumns, c += kColumns * ldc, b += kPacked ? b_stride : kColumns * b_stride) {
    const core_int here = least(kColumns, columns - j);
    if constexpr (kPacked) {
      panel_of_tiles<T, kWhole>(rows, here, depth, a, a_stride, packed{reals(b)}, c, ldc, how);
    } else {
      panel_of_tiles<T, kWhole>(rows, here, depth, a, a_stride, column_numbers<T, 4>(b, b_stride, here), c,
                                ldc, how);
    }
  }
}

template <class T, bool kPacked, int kBeta, bool kWhole>
void whole_depth(core_int rows, core_int columns, core_int, const T* a, core_int a_stride, const T* b,
                 core_int b_stride, bool, const T* beta, T* c, core_int ldc) {
  if constexpr (kBeta == kBetaOne) {
    all_tiles<T, kPacked, kWhole>(rows, columns, kSse3Depth, a, a_stride, b, b_stride, c, ldc, add_to_c{});
  } else if constexpr (kBeta == kBetaZero) {
    all_tiles<T, kPacked, kWhole>(rows, columns, kSse3Depth, a, a_stride, b, b_stride, c, ldc, store_to_c{});
  } else {
    all_tiles<T, kPacked, kWhole>(rows, columns, kSse3Depth, a, a_stride, b, b_stride, c, ldc,
                                  add_to_multiple<T>{*beta});
  }
}

template <class T, class How>
inline void any_tiles(bool b_packed, core_int rows, core_int columns, core_int depth, const T* a,
                      core_int a_stride, const T* b, core_int b_stride, T* c, core_int ldc, const How& how) {
  if (b_packed) {
    all_tiles<T, true, false>(rows, columns, depth, a, a_stride, b, b_stride, c, ldc, how);
  } else {
    all_tiles<T, false, false>(rows, columns, depth, a, a_stride, b, b_stride, c, ldc, how);
  }
}

inline bool is_zero(float a) { return a == 0; }
inline bool is_zero(double a) { return a == 0; }
template <class C>
inline bool is_zero(C a) {
  return a.real == 0 && a.imag == 0;
}

template <class T>
void any_depth(core_int rows, core_int columns, core_int depth, const T* a, core_int a_stride, const T* b,
               core_int b_stride, bool b_packed, const T* beta, T* c, core_int ldc) {
  if (is_one(*beta)) {
    any_tiles(b_packed, rows, columns, depth, a, a_stride, b, b_stride, c, ldc, add_to_c{});
  } else if (is_zero(*beta)) {
    any_tiles(b_packed, rows, columns, depth, a, a_stride, b, b_stride, c, ldc, store_to_c{});
  } else {
    any_tiles(b_packed, rows, columns, depth, a, a_stride, b, b_stride, c, ldc, add_to_multiple<T>{*beta});
  }
}

template <class T>
constexpr gemm_sse3_kernels<T> sse3_kernels() {
  using Tile = tile_of<T>;
  gemm_sse3_kernels<T> set{
      Tile::kRows,
      Tile::kColumns,
      {},
      {},
      {{{whole_depth<T, false, kBetaOne, false>, whole_depth<T, false, kBetaOne, true>},
        {whole_depth<T, false, kBetaZero, false>, whole_depth<T, false, kBetaZero, true>},
        {whole_depth<T, false, kBetaOther, false>, whole_depth<T, false, kBetaOther, true>}},
       {{whole_depth<T, true, kBetaOne, false>, whole_depth<T, true, kBetaOne, true>},
        {whole_depth<T, true, kBetaZero, false>, whole_depth<T, true, kBetaZero, true>},
        {whole_depth<T, true, kBetaOther, false>, whole_depth<T, true, kBetaOther, true>}}},
      any_depth<T>};
  for (int op = 0; op < kGemmOps; ++op) {
    set.pack_a[op] = kPackRows<T, Tile::kRows>[op];
    set.pack_b[op] = kPackColumns<T, Tile::kColumns>[op];
  }
  return set;
}

}  // namespace

constinit const gemm_sse3_kernels<float> sgemm_panels = sse3_kernels<float>();
constinit const gemm_sse3_kernels<double> dgemm_panels = sse3_kernels<double>();
constinit const gemm_sse3_kernels<complex8> cgemm_panels = sse3_kernels<complex8>();
constinit const gemm_sse3_kernels<complex16> zgemm_panels = sse3_kernels<complex16>();

}  // namespace qel::QEL_LEVEL
