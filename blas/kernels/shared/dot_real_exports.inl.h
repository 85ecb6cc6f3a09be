// SPDX-License-Identifier: BSD-3-Clause
// The kernels' names over dot_real() of the file that includes this.
#pragma once

namespace qel::QEL_LEVEL {

float sdot(const core_int* n, const float* x, const core_int* incx, const float* y, const core_int* incy) {
  return dot_real(*n, x, *incx, y, *incy);
}
double ddot(const core_int* n, const double* x, const core_int* incx, const double* y, const core_int* incy) {
  return dot_real(*n, x, *incx, y, *incy);
}

}  // namespace qel::QEL_LEVEL
