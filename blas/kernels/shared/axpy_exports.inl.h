// SPDX-License-Identifier: BSD-3-Clause
// The kernels' names over axpy() of the file that includes this.
#pragma once

namespace qel::QEL_LEVEL {

void saxpy(const core_int* n, const float* alpha, const float* x, const core_int* incx, float* y,
           const core_int* incy) {
  axpy(*n, *alpha, x, *incx, y, *incy);
}
void daxpy(const core_int* n, const double* alpha, const double* x, const core_int* incx, double* y,
           const core_int* incy) {
  axpy(*n, *alpha, x, *incx, y, *incy);
}
void caxpy(const core_int* n, const complex8* alpha, const complex8* x, const core_int* incx, complex8* y,
           const core_int* incy) {
  axpy(*n, *alpha, x, *incx, y, *incy);
}
void zaxpy(const core_int* n, const complex16* alpha, const complex16* x, const core_int* incx, complex16* y,
           const core_int* incy) {
  axpy(*n, *alpha, x, *incx, y, *incy);
}

}  // namespace qel::QEL_LEVEL
