// SPDX-License-Identifier: BSD-3-Clause
// Matrix product on tiles of 4 x 4 real numbers: two registers of A with their permuted copies times two of
// B. In single precision one register of A makes the eight sums. Complex tiles have half as many columns.
#pragma once

#include "blas/kernels/shared/gemm_blocks.inl.h"

namespace qel::QEL_LEVEL {

constinit const gemm_kernels<float> sgemm_panels = panel_kernels<float, shuffle_tile<float, 1, 2>, false>();
constinit const gemm_kernels<double> dgemm_panels =
    panel_kernels<double, shuffle_tile<double, 2, 2>, false>();
constinit const gemm_kernels<complex8> cgemm_panels =
    panel_kernels<complex8, shuffle_tile<complex8, 1, 2>, false>();
constinit const gemm_kernels<complex16> zgemm_panels =
    panel_kernels<complex16, shuffle_tile<complex16, 2, 2>, false>();

}  // namespace qel::QEL_LEVEL
