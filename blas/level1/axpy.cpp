// SPDX-License-Identifier: BSD-3-Clause
// Core y += alpha x, on the portable template. Arguments come by reference in Fortran order and go on by
// value; the header says what is computed and who calls.
#include "blas/level1/level1.h"
#include "blas/plain/level1.h"

namespace qel::core {

void saxpy(const core_int* n, const float* alpha, const float* x, const core_int* incx, float* y,
           const core_int* incy) {
  plain::axpy(*n, *alpha, x, *incx, y, *incy);
}
void daxpy(const core_int* n, const double* alpha, const double* x, const core_int* incx, double* y,
           const core_int* incy) {
  plain::axpy(*n, *alpha, x, *incx, y, *incy);
}
void caxpy(const core_int* n, const complex8* alpha, const complex8* x, const core_int* incx, complex8* y,
           const core_int* incy) {
  plain::axpy(*n, *alpha, x, *incx, y, *incy);
}
void zaxpy(const core_int* n, const complex16* alpha, const complex16* x, const core_int* incx, complex16* y,
           const core_int* incy) {
  plain::axpy(*n, *alpha, x, *incx, y, *incy);
}

}  // namespace qel::core
