// SPDX-License-Identifier: BSD-3-Clause
// The kernels' names over asum() of the file that includes this.
#pragma once

namespace qel::QEL_LEVEL {

float sasum(const core_int* n, const float* x, const core_int* incx) { return asum<float>(*n, x, *incx); }
double dasum(const core_int* n, const double* x, const core_int* incx) { return asum<double>(*n, x, *incx); }
float scasum(const core_int* n, const complex8* x, const core_int* incx) { return asum<float>(*n, x, *incx); }
double dzasum(const core_int* n, const complex16* x, const core_int* incx) {
  return asum<double>(*n, x, *incx);
}

}  // namespace qel::QEL_LEVEL
