// SPDX-License-Identifier: BSD-3-Clause
#include "blas/kernels/kernel_prelude.h"
#include "blas/kernels/level3_native.h"
#include "blas/kernels/native/narrow.inl.h"

namespace qel::QEL_LEVEL {
const level3_kernels<double> dlevel3 = level3_table<double>();
}
