// SPDX-License-Identifier: BSD-3-Clause
// Kernels of the matrix product and of small triangles: function types, the sets of them that a processor
// level has, and their declarations. A set belongs to one element type; the drivers and the blocked loops are
// in blas/level3.
//
// Packed panels: `width` lines (rows of A, columns of B) side by side for each step of the depth, one panel
// after the other at a stride in elements; what is missing in lines or depth is zero.
#pragma once

#include "service/core_types.h"

namespace qel {

/// op of a factor, also the index of its pack routine.
enum gemm_op : int { kNoTranspose = 0, kTranspose = 1, kConjugateTranspose = 2 };
inline constexpr int kGemmOps = 3;

/// Packs lines x depth elements, times *factor if that is not null; writes padded >= depth steps.
template <class T>
using gemm_pack_fn = void(core_int lines, core_int depth, core_int padded, const T* source, core_int ld,
                          const T* factor, T* panels, core_int panel_stride);
/// C += A B for packed panels of both; rows is a multiple of the panel's width. strip: room for one panel of
/// B, or more, as the level needs.
template <class T>
using gemm_block_fn = void(core_int rows, core_int columns, core_int depth, const T* a, core_int a_stride,
                           const T* b, core_int b_stride, T* strip, T* c, core_int ldc);
/// C += alpha op(A) op(B) without work memory.
template <class T>
using gemm_small_fn = void(int op_a, int op_b, core_int m, core_int n, core_int k, const T* alpha, const T* a,
                           core_int lda, const T* b, core_int ldb, T* c, core_int ldc);
/// C = beta C; beta 0 writes without reading.
template <class T>
using gemm_scale_fn = void(core_int m, core_int n, const T* beta, T* c, core_int ldc);

/// Levels 2 to 4, and one family of level 0: both factors packed.
template <class T>
struct gemm_kernels {
  core_int mr, nr;  ///< widths of the panels of A and B
  int c_alignment;  ///< bytes to which C and its columns are aligned for block[1]
  gemm_pack_fn<T>*pack_a[kGemmOps], *pack_b[kGemmOps];
  gemm_block_fn<T>* block[2];
};

/// Level 1: C = A B + beta C over one depth block.
template <class T>
using gemm_sse3_fn = void(core_int rows, core_int columns, core_int depth, const T* a, core_int a_stride,
                          const T* b, core_int b_stride, bool b_packed, const T* beta, T* c, core_int ldc);
enum gemm_beta : int { kBetaOne = 0, kBetaZero = 1, kBetaOther = 2 };
inline constexpr int kGemmBetas = 3;
inline constexpr core_int kSse3Depth = 112;
template <class T>
struct gemm_sse3_kernels {
  core_int mr, nr;
  gemm_pack_fn<T>*pack_a[kGemmOps], *pack_b[kGemmOps];
  gemm_sse3_fn<T>* whole_depth[2][kGemmBetas][2];  ///< B packed; beta; rows and columns multiples of 4
  gemm_sse3_fn<T>* any_depth;
};

/// Level 0: B goes in strips of up to kStripWidth real columns, every number as often as a register has
/// lanes.
inline constexpr core_int kStripWidth = 12, kStripDepth = 128;
template <class T>
using gemm_strip_fn = void(core_int columns, core_int depth, core_int padded, const T* b, core_int ldb,
                           T* strip);
/// C += A strip; columns as the strip was made.
template <class T>
using gemm_strip_block_fn = void(core_int rows, core_int columns, core_int depth, const T* a,
                                 core_int a_stride, const T* strip, T* c, core_int ldc);
template <class T>
struct gemm_strip_kernels {
  core_int mr;
  gemm_pack_fn<T>* pack_a[kGemmOps];
  gemm_strip_fn<T>* make_strip[kGemmOps];
  gemm_strip_block_fn<T>*whole_depth, *any_depth;
};

/// A diagonal block of a triangular matrix as its kernels see it: only the triangle is read, the diagonal not
/// if it is of ones.
template <class T>
struct triangle_block {
  const T* element;
  core_int ld, order;
  bool upper, unit;
};
/// X = X T, or X T^-1 if `solve`, for rows of X.
template <class T>
using triangle_rows_fn = void(bool solve, const triangle_block<T>& t, core_int rows, T* x, core_int ldx);

namespace l0_generic {
triangle_rows_fn<double> dtriangle_rows;
triangle_rows_fn<complex16> ztriangle_rows;
extern const gemm_strip_kernels<float> sgemm_strips;
extern const gemm_strip_kernels<double> dgemm_strips;
extern const gemm_strip_kernels<complex8> cgemm_strips;
extern const gemm_strip_kernels<complex16> zgemm_strips;
extern const gemm_kernels<float> sgemm_panels;
extern const gemm_kernels<double> dgemm_panels;
extern const gemm_kernels<complex8> cgemm_panels;
extern const gemm_kernels<complex16> zgemm_panels;
gemm_small_fn<float> sgemm_small;
gemm_small_fn<double> dgemm_small;
gemm_small_fn<complex8> cgemm_small;
gemm_small_fn<complex16> zgemm_small;
gemm_scale_fn<float> sgemm_scale;
gemm_scale_fn<double> dgemm_scale;
gemm_scale_fn<complex8> cgemm_scale;
gemm_scale_fn<complex16> zgemm_scale;
}  // namespace l0_generic

namespace l1_sse3 {
extern const gemm_sse3_kernels<float> sgemm_panels;
extern const gemm_sse3_kernels<double> dgemm_panels;
extern const gemm_sse3_kernels<complex8> cgemm_panels;
extern const gemm_sse3_kernels<complex16> zgemm_panels;
}  // namespace l1_sse3

namespace l2_ssse3 {
extern const gemm_kernels<float> sgemm_panels;
extern const gemm_kernels<double> dgemm_panels;
extern const gemm_kernels<complex8> cgemm_panels;
extern const gemm_kernels<complex16> zgemm_panels;
}  // namespace l2_ssse3

namespace l3_sse42 {
extern const gemm_kernels<float> sgemm_panels;
extern const gemm_kernels<double> dgemm_panels;
extern const gemm_kernels<complex8> cgemm_panels;
extern const gemm_kernels<complex16> zgemm_panels;
}  // namespace l3_sse42

namespace l4_avx {
triangle_rows_fn<double> dtriangle_rows;
triangle_rows_fn<complex16> ztriangle_rows;
extern const gemm_kernels<float> sgemm_panels;
extern const gemm_kernels<double> dgemm_panels;
extern const gemm_kernels<complex8> cgemm_panels;
extern const gemm_kernels<complex16> zgemm_panels;
}  // namespace l4_avx

}  // namespace qel
