// SPDX-License-Identifier: BSD-3-Clause
// Core copy and exchange of vectors, on the portable templates. Arguments come by reference in Fortran
// order and go on by value; the header says what is computed and who calls.
#include "blas/level1/level1.h"
#include "blas/plain/level1.h"

namespace qel::core {

void scopy(const core_int* n, const float* x, const core_int* incx, float* y, const core_int* incy) {
  plain::copy(*n, x, *incx, y, *incy);
}
void dcopy(const core_int* n, const double* x, const core_int* incx, double* y, const core_int* incy) {
  plain::copy(*n, x, *incx, y, *incy);
}
void ccopy(const core_int* n, const complex8* x, const core_int* incx, complex8* y, const core_int* incy) {
  plain::copy(*n, x, *incx, y, *incy);
}
void zcopy(const core_int* n, const complex16* x, const core_int* incx, complex16* y, const core_int* incy) {
  plain::copy(*n, x, *incx, y, *incy);
}

void sswap(const core_int* n, float* x, const core_int* incx, float* y, const core_int* incy) {
  plain::swap(*n, x, *incx, y, *incy);
}
void dswap(const core_int* n, double* x, const core_int* incx, double* y, const core_int* incy) {
  plain::swap(*n, x, *incx, y, *incy);
}
void cswap(const core_int* n, complex8* x, const core_int* incx, complex8* y, const core_int* incy) {
  plain::swap(*n, x, *incx, y, *incy);
}
void zswap(const core_int* n, complex16* x, const core_int* incx, complex16* y, const core_int* incy) {
  plain::swap(*n, x, *incx, y, *incy);
}

}  // namespace qel::core
