// SPDX-License-Identifier: BSD-3-Clause
// Matrix product, SSE2: one register of A times up to 12 real columns of B. Every number of a strip of B is
// first stored in all lanes of a register, so that the inner loop needs no shuffle. And tiles of packed
// panels for the family of processors that prefers them.
#include "blas/kernels/kernel_prelude.h"
#include "blas/kernels/shared/gemm_square.inl.h"

namespace qel::QEL_LEVEL {
namespace {

/// The strip's numbers for a step: real columns in order, the parts of a complex column side by side.
template <class T, bool kTogether, bool kConjugate>
void make_strip(core_int columns, core_int depth, core_int padded, const T* b, core_int ldb, T* strip) {
  using R = typename parts<T>::real;
  using L = lane_set<R>;
  const core_int column_step = kTogether ? 1 : ldb, depth_step = kTogether ? ldb : 1;
  R* out = reals(strip);
  for (core_int l = 0; l < depth; ++l, b += depth_step) {
    for (core_int j = 0; j < columns; ++j) {
      T value = element_at(b + j * column_step);
      if (kConjugate) value = conjugate(value);
      R number[parts<T>::kCount];
      __builtin_memcpy(number, &value, sizeof value);
      for (int p = 0; p < parts<T>::kCount; ++p, out += L::kCount) L::store(out, L::all(number[p]));
    }
  }
  for (core_int i = (padded - depth) * columns * parts<T>::kCount; i > 0; --i, out += L::kCount)
    L::store(out, L::zero());
}

template <class T, int kReals, core_int kDepth>
inline void strip_tiles(core_int rows, core_int depth, const T* a, core_int a_stride, const T* strip, T* c,
                        core_int ldc) {
  using R = typename parts<T>::real;
  using Tile = broadcast_tile<T, 1, kReals>;
  for (core_int i = 0; i < rows; i += Tile::kRows, a += a_stride) {
    Tile tile;
    tile.run(kDepth > 0 ? kDepth : depth, reals(a), spread_numbers<R, kReals>{reals(strip)});
    put_tile<false, true>(tile, Tile::kRows, Tile::kColumns, c + i, ldc, add_to_c{});
  }
}

template <class T, core_int kDepth>
void strip_block(core_int rows, core_int columns, core_int depth, const T* a, core_int a_stride,
                 const T* strip, T* c, core_int ldc) {
  switch (columns * parts<T>::kCount) {
    case 12:
      return strip_tiles<T, 12, kDepth>(rows, depth, a, a_stride, strip, c, ldc);
    case 8:
      return strip_tiles<T, 8, kDepth>(rows, depth, a, a_stride, strip, c, ldc);
    case 4:
      return strip_tiles<T, 4, kDepth>(rows, depth, a, a_stride, strip, c, ldc);
    default:
      return strip_tiles<T, 2, kDepth>(rows, depth, a, a_stride, strip, c, ldc);
  }
}

template <class T>
constexpr gemm_strip_kernels<T> strip_kernels() {
  constexpr int kRows = broadcast_tile<T, 1, kStripWidth>::kRows;
  gemm_strip_kernels<T> set{
      kRows,
      {},
      {make_strip<T, false, false>, make_strip<T, true, false>, make_strip<T, true, parts<T>::kCount == 2>},
      strip_block<T, kStripDepth>,
      strip_block<T, 0>};
  for (int op = 0; op < kGemmOps; ++op) set.pack_a[op] = kPackRows<T, kRows>[op];
  return set;
}

}  // namespace

constinit const gemm_strip_kernels<float> sgemm_strips = strip_kernels<float>();
constinit const gemm_strip_kernels<double> dgemm_strips = strip_kernels<double>();
constinit const gemm_strip_kernels<complex8> cgemm_strips = strip_kernels<complex8>();
constinit const gemm_strip_kernels<complex16> zgemm_strips = strip_kernels<complex16>();

}  // namespace qel::QEL_LEVEL
