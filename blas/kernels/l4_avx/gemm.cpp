// SPDX-License-Identifier: BSD-3-Clause
// Matrix product, AVX: two registers of A times four numbers of B; multiply, then add, never fused. Each
// panel of B is copied to the strip first.
#include "blas/kernels/kernel_prelude.h"
#include "blas/kernels/shared/gemm_blocks.inl.h"

namespace qel::QEL_LEVEL {

constinit const gemm_kernels<float> sgemm_panels = panel_kernels<float, broadcast_tile<float, 2, 4>>();
constinit const gemm_kernels<double> dgemm_panels = panel_kernels<double, broadcast_tile<double, 2, 4>>();
constinit const gemm_kernels<complex8> cgemm_panels =
    panel_kernels<complex8, broadcast_tile<complex8, 2, 4>>();
constinit const gemm_kernels<complex16> zgemm_panels =
    panel_kernels<complex16, broadcast_tile<complex16, 2, 4>>();

}  // namespace qel::QEL_LEVEL
