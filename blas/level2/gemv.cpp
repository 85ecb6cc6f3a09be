// SPDX-License-Identifier: BSD-3-Clause
// Core products of a general matrix, full or banded, with a vector, by the drivers. Arguments
// come by reference in Fortran order and go on by value; the header says what is computed and who calls.
#include "blas/level2/drivers.h"
#include "blas/level2/level2.h"

namespace qel::core {

void sgemv(const char* trans, const core_int* m, const core_int* n, const float* alpha, const float* a,
           const core_int* lda, const float* x, const core_int* incx, const float* beta, float* y,
           const core_int* incy) {
  level2::gemv(*trans, *m, *n, *alpha, a, *lda, x, *incx, *beta, y, *incy);
}
void dgemv(const char* trans, const core_int* m, const core_int* n, const double* alpha, const double* a,
           const core_int* lda, const double* x, const core_int* incx, const double* beta, double* y,
           const core_int* incy) {
  level2::gemv(*trans, *m, *n, *alpha, a, *lda, x, *incx, *beta, y, *incy);
}
void cgemv(const char* trans, const core_int* m, const core_int* n, const complex8* alpha, const complex8* a,
           const core_int* lda, const complex8* x, const core_int* incx, const complex8* beta, complex8* y,
           const core_int* incy) {
  level2::gemv(*trans, *m, *n, *alpha, a, *lda, x, *incx, *beta, y, *incy);
}
void zgemv(const char* trans, const core_int* m, const core_int* n, const complex16* alpha,
           const complex16* a, const core_int* lda, const complex16* x, const core_int* incx,
           const complex16* beta, complex16* y, const core_int* incy) {
  level2::gemv(*trans, *m, *n, *alpha, a, *lda, x, *incx, *beta, y, *incy);
}

void sgbmv(const char* trans, const core_int* m, const core_int* n, const core_int* kl, const core_int* ku,
           const float* alpha, const float* a, const core_int* lda, const float* x, const core_int* incx,
           const float* beta, float* y, const core_int* incy) {
  level2::gbmv(*trans, *m, *n, *kl, *ku, *alpha, a, *lda, x, *incx, *beta, y, *incy);
}
void dgbmv(const char* trans, const core_int* m, const core_int* n, const core_int* kl, const core_int* ku,
           const double* alpha, const double* a, const core_int* lda, const double* x, const core_int* incx,
           const double* beta, double* y, const core_int* incy) {
  level2::gbmv(*trans, *m, *n, *kl, *ku, *alpha, a, *lda, x, *incx, *beta, y, *incy);
}
void cgbmv(const char* trans, const core_int* m, const core_int* n, const core_int* kl, const core_int* ku,
           const complex8* alpha, const complex8* a, const core_int* lda, const complex8* x,
           const core_int* incx, const complex8* beta, complex8* y, const core_int* incy) {
  level2::gbmv(*trans, *m, *n, *kl, *ku, *alpha, a, *lda, x, *incx, *beta, y, *incy);
}
void zgbmv(const char* trans, const core_int* m, const core_int* n, const core_int* kl, const core_int* ku,
           const complex16* alpha, const complex16* a, const core_int* lda, const complex16* x,
           const core_int* incx, const complex16* beta, complex16* y, const core_int* incy) {
  level2::gbmv(*trans, *m, *n, *kl, *ku, *alpha, a, *lda, x, *incx, *beta, y, *incy);
}

}  // namespace qel::core
