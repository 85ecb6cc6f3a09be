// SPDX-License-Identifier: BSD-3-Clause
// Matrix product, SSSE3.
#include "blas/kernels/kernel_prelude.h"
#include "blas/kernels/shared/gemm_square.inl.h"
