// SPDX-License-Identifier: BSD-3-Clause
// The core's ddot: binds to the processor level's kernel on first use.
#include "blas/kernels/kernel_names.h"
#include "blas/level1/dot_rows.h"
#include "blas/level1/level1.h"

namespace qel {

constinit bind_slot<ddot_fn> ddot_slot{nullptr};

double core::ddot(const core_int* n, const double* x, const core_int* incx, const double* y,
                  const core_int* incy) {
  return call_bound<ddot_slot, kDdot>(n, x, incx, y, incy);
}

}  // namespace qel
