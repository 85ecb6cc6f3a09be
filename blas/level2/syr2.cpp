// SPDX-License-Identifier: BSD-3-Clause
// Core rank-2 updates of a symmetric or Hermitian matrix, by the drivers. Arguments come by
// reference in Fortran order and go on by value; the header says what is computed and who calls.
#include "blas/level2/hermitian_drivers.h"
#include "blas/level2/level2.h"

namespace qel::core {

void ssyr2(const char* uplo, const core_int* n, const float* alpha, const float* x, const core_int* incx,
           const float* y, const core_int* incy, float* a, const core_int* lda) {
  level2::her2(*uplo, *n, *alpha, x, *incx, y, *incy, a, *lda);
}
void dsyr2(const char* uplo, const core_int* n, const double* alpha, const double* x, const core_int* incx,
           const double* y, const core_int* incy, double* a, const core_int* lda) {
  level2::her2(*uplo, *n, *alpha, x, *incx, y, *incy, a, *lda);
}
void cher2(const char* uplo, const core_int* n, const complex8* alpha, const complex8* x,
           const core_int* incx, const complex8* y, const core_int* incy, complex8* a, const core_int* lda) {
  level2::her2(*uplo, *n, *alpha, x, *incx, y, *incy, a, *lda);
}
void zher2(const char* uplo, const core_int* n, const complex16* alpha, const complex16* x,
           const core_int* incx, const complex16* y, const core_int* incy, complex16* a,
           const core_int* lda) {
  level2::her2(*uplo, *n, *alpha, x, *incx, y, *incy, a, *lda);
}

void sspr2(const char* uplo, const core_int* n, const float* alpha, const float* x, const core_int* incx,
           const float* y, const core_int* incy, float* ap) {
  level2::hpr2(*uplo, *n, *alpha, x, *incx, y, *incy, ap);
}
void dspr2(const char* uplo, const core_int* n, const double* alpha, const double* x, const core_int* incx,
           const double* y, const core_int* incy, double* ap) {
  level2::hpr2(*uplo, *n, *alpha, x, *incx, y, *incy, ap);
}
void chpr2(const char* uplo, const core_int* n, const complex8* alpha, const complex8* x,
           const core_int* incx, const complex8* y, const core_int* incy, complex8* ap) {
  level2::hpr2(*uplo, *n, *alpha, x, *incx, y, *incy, ap);
}
void zhpr2(const char* uplo, const core_int* n, const complex16* alpha, const complex16* x,
           const core_int* incx, const complex16* y, const core_int* incy, complex16* ap) {
  level2::hpr2(*uplo, *n, *alpha, x, *incx, y, *incy, ap);
}

}  // namespace qel::core
