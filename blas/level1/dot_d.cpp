// SPDX-License-Identifier: BSD-3-Clause
// The core's ddot: on threads where they pay, else the kernel of the processor level, bound on first use.
#include "blas/level1/level1.h"
#include "blas/level1/level1_rows.h"
#include "blas/level1/slices.h"

namespace qel::core {

double ddot(const core_int* n, const double* x, const core_int* incx, const double* y, const core_int* incy) {
  return dot_driver(level1_member::ddot, n, x, incx, y, incy,
                    [=](const core_int* length, const double* xs, const double* ys) {
                      return call_kernel<kDdot>(length, xs, incx, ys, incy);
                    });
}

}  // namespace qel::core
