// SPDX-License-Identifier: BSD-3-Clause
// Matrix product on tiles of 4 x 4 doubles: two registers of A times two pairs of B with their swapped
// copies. In single precision 4 x 8: one register of A and its swapped copy times four pairs. Complex tiles
// have half as many columns.
#pragma once

#include "blas/kernels/shared/gemm_blocks.inl.h"

namespace qel::QEL_LEVEL {

constinit const gemm_kernels<float> sgemm_panels =
    panel_kernels<float, pair_tile<float, swapped_factor::a>>();
constinit const gemm_kernels<double> dgemm_panels =
    panel_kernels<double, pair_tile<double, swapped_factor::b>>();
constinit const gemm_kernels<complex8> cgemm_panels =
    panel_kernels<complex8, pair_tile<complex8, swapped_factor::a>>();
constinit const gemm_kernels<complex16> zgemm_panels =
    panel_kernels<complex16, pair_tile<complex16, swapped_factor::b>>();

}  // namespace qel::QEL_LEVEL
