// SPDX-License-Identifier: BSD-3-Clause
// Core products of a symmetric or Hermitian matrix with a vector, by the drivers. Arguments come
// by reference in Fortran order and go on by value; the header says what is computed and who calls.
#include "blas/level2/hermitian_drivers.h"
#include "blas/level2/level2.h"

namespace qel::core {

void ssymv(const char* uplo, const core_int* n, const float* alpha, const float* a, const core_int* lda,
           const float* x, const core_int* incx, const float* beta, float* y, const core_int* incy) {
  level2::hemv(*uplo, *n, *alpha, a, *lda, x, *incx, *beta, y, *incy);
}
void dsymv(const char* uplo, const core_int* n, const double* alpha, const double* a, const core_int* lda,
           const double* x, const core_int* incx, const double* beta, double* y, const core_int* incy) {
  level2::hemv(*uplo, *n, *alpha, a, *lda, x, *incx, *beta, y, *incy);
}
void chemv(const char* uplo, const core_int* n, const complex8* alpha, const complex8* a, const core_int* lda,
           const complex8* x, const core_int* incx, const complex8* beta, complex8* y, const core_int* incy) {
  level2::hemv(*uplo, *n, *alpha, a, *lda, x, *incx, *beta, y, *incy);
}
void zhemv(const char* uplo, const core_int* n, const complex16* alpha, const complex16* a,
           const core_int* lda, const complex16* x, const core_int* incx, const complex16* beta, complex16* y,
           const core_int* incy) {
  level2::hemv(*uplo, *n, *alpha, a, *lda, x, *incx, *beta, y, *incy);
}

void ssbmv(const char* uplo, const core_int* n, const core_int* k, const float* alpha, const float* a,
           const core_int* lda, const float* x, const core_int* incx, const float* beta, float* y,
           const core_int* incy) {
  level2::hbmv(*uplo, *n, *k, *alpha, a, *lda, x, *incx, *beta, y, *incy);
}
void dsbmv(const char* uplo, const core_int* n, const core_int* k, const double* alpha, const double* a,
           const core_int* lda, const double* x, const core_int* incx, const double* beta, double* y,
           const core_int* incy) {
  level2::hbmv(*uplo, *n, *k, *alpha, a, *lda, x, *incx, *beta, y, *incy);
}
void chbmv(const char* uplo, const core_int* n, const core_int* k, const complex8* alpha, const complex8* a,
           const core_int* lda, const complex8* x, const core_int* incx, const complex8* beta, complex8* y,
           const core_int* incy) {
  level2::hbmv(*uplo, *n, *k, *alpha, a, *lda, x, *incx, *beta, y, *incy);
}
void zhbmv(const char* uplo, const core_int* n, const core_int* k, const complex16* alpha, const complex16* a,
           const core_int* lda, const complex16* x, const core_int* incx, const complex16* beta, complex16* y,
           const core_int* incy) {
  level2::hbmv(*uplo, *n, *k, *alpha, a, *lda, x, *incx, *beta, y, *incy);
}

void sspmv(const char* uplo, const core_int* n, const float* alpha, const float* ap, const float* x,
           const core_int* incx, const float* beta, float* y, const core_int* incy) {
  level2::hpmv(*uplo, *n, *alpha, ap, x, *incx, *beta, y, *incy);
}
void dspmv(const char* uplo, const core_int* n, const double* alpha, const double* ap, const double* x,
           const core_int* incx, const double* beta, double* y, const core_int* incy) {
  level2::hpmv(*uplo, *n, *alpha, ap, x, *incx, *beta, y, *incy);
}
void cspmv(const char* uplo, const core_int* n, const complex8* alpha, const complex8* ap, const complex8* x,
           const core_int* incx, const complex8* beta, complex8* y, const core_int* incy) {
  level2::spmv(*uplo, *n, *alpha, ap, x, *incx, *beta, y, *incy);
}
void zspmv(const char* uplo, const core_int* n, const complex16* alpha, const complex16* ap,
           const complex16* x, const core_int* incx, const complex16* beta, complex16* y,
           const core_int* incy) {
  level2::spmv(*uplo, *n, *alpha, ap, x, *incx, *beta, y, *incy);
}
void chpmv(const char* uplo, const core_int* n, const complex8* alpha, const complex8* ap, const complex8* x,
           const core_int* incx, const complex8* beta, complex8* y, const core_int* incy) {
  level2::hpmv(*uplo, *n, *alpha, ap, x, *incx, *beta, y, *incy);
}
void zhpmv(const char* uplo, const core_int* n, const complex16* alpha, const complex16* ap,
           const complex16* x, const core_int* incx, const complex16* beta, complex16* y,
           const core_int* incy) {
  level2::hpmv(*uplo, *n, *alpha, ap, x, *incx, *beta, y, *incy);
}

}  // namespace qel::core
