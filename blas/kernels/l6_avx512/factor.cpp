// SPDX-License-Identifier: BSD-3-Clause
#include "blas/kernels/factor_native.h"
#include "blas/kernels/kernel_prelude.h"
#include "blas/kernels/level3_native.h"
#include "blas/kernels/native/rotations.inl.h"

namespace qel::QEL_LEVEL {
const factor_kernels<float> sfactor = factor_table<float>();
const factor_kernels<double> dfactor = factor_table<double>();
const factor_kernels<complex8> cfactor = factor_table<complex8>();
const factor_kernels<complex16> zfactor = factor_table<complex16>();
}  // namespace qel::QEL_LEVEL
