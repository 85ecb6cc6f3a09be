// SPDX-License-Identifier: BSD-3-Clause
// Matrix product, SSE4.2: one register of A and its swapped copy times four pairs of B.
#include "blas/kernels/kernel_prelude.h"
#include "blas/kernels/shared/gemm_blocks.inl.h"

namespace qel::QEL_LEVEL {
namespace {
template <class T>
using tile_of = pair_tile<T, swapped_factor::a>;
}

constinit const gemm_kernels<float> sgemm_panels = panel_kernels<float, tile_of<float>>();
constinit const gemm_kernels<double> dgemm_panels = panel_kernels<double, tile_of<double>>();
constinit const gemm_kernels<complex8> cgemm_panels = panel_kernels<complex8, tile_of<complex8>>();
constinit const gemm_kernels<complex16> zgemm_panels = panel_kernels<complex16, tile_of<complex16>>();

}  // namespace qel::QEL_LEVEL
