// SPDX-License-Identifier: BSD-3-Clause
// Matrix product, SSE4.2: one register of A, its permuted copies and four (single: two) registers of B.
#include "blas/kernels/kernel_prelude.h"
#include "blas/kernels/shared/gemm_blocks.inl.h"

namespace qel::QEL_LEVEL {

constinit const gemm_kernels<float> sgemm_panels = panel_kernels<float, shuffle_tile<float, 1, 2>, false>();
constinit const gemm_kernels<double> dgemm_panels =
    panel_kernels<double, shuffle_tile<double, 1, 4>, false>();
constinit const gemm_kernels<complex8> cgemm_panels =
    panel_kernels<complex8, shuffle_tile<complex8, 1, 2>, false>();
constinit const gemm_kernels<complex16> zgemm_panels =
    panel_kernels<complex16, shuffle_tile<complex16, 1, 4>, false>();

}  // namespace qel::QEL_LEVEL
