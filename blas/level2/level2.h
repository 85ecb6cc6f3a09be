// SPDX-License-Identifier: BSD-3-Clause
// Level 2 of the core BLAS: matrix-vector operations, column-major, in Fortran argument order. Options are
// letters in either case: trans N, T, C; uplo U, L; diag U (ones, not read), N. Arguments are not tested
// here: callers run blas/checks.h first. x, y and A must not overlap where one of them is written. Called by
// the public entries, the drop-ins and lapack/plain_names.cpp.
#pragma once

#include "service/core_types.h"

namespace qel::core {

// gemv.cpp: y = alpha op(A) x + beta y, A m x n; gbmv: A with kl sub- and ku superdiagonals.
void sgemv(const char* trans, const core_int* m, const core_int* n, const float* alpha, const float* a,
           const core_int* lda, const float* x, const core_int* incx, const float* beta, float* y,
           const core_int* incy);
void dgemv(const char* trans, const core_int* m, const core_int* n, const double* alpha, const double* a,
           const core_int* lda, const double* x, const core_int* incx, const double* beta, double* y,
           const core_int* incy);
void cgemv(const char* trans, const core_int* m, const core_int* n, const complex8* alpha, const complex8* a,
           const core_int* lda, const complex8* x, const core_int* incx, const complex8* beta, complex8* y,
           const core_int* incy);
void zgemv(const char* trans, const core_int* m, const core_int* n, const complex16* alpha,
           const complex16* a, const core_int* lda, const complex16* x, const core_int* incx,
           const complex16* beta, complex16* y, const core_int* incy);

void sgbmv(const char* trans, const core_int* m, const core_int* n, const core_int* kl, const core_int* ku,
           const float* alpha, const float* a, const core_int* lda, const float* x, const core_int* incx,
           const float* beta, float* y, const core_int* incy);
void dgbmv(const char* trans, const core_int* m, const core_int* n, const core_int* kl, const core_int* ku,
           const double* alpha, const double* a, const core_int* lda, const double* x, const core_int* incx,
           const double* beta, double* y, const core_int* incy);
void cgbmv(const char* trans, const core_int* m, const core_int* n, const core_int* kl, const core_int* ku,
           const complex8* alpha, const complex8* a, const core_int* lda, const complex8* x,
           const core_int* incx, const complex8* beta, complex8* y, const core_int* incy);
void zgbmv(const char* trans, const core_int* m, const core_int* n, const core_int* kl, const core_int* ku,
           const complex16* alpha, const complex16* a, const core_int* lda, const complex16* x,
           const core_int* incx, const complex16* beta, complex16* y, const core_int* incy);

// symv.cpp: y = alpha A x + beta y, A symmetric or Hermitian of order n: one full triangle, banded, packed.
void ssymv(const char* uplo, const core_int* n, const float* alpha, const float* a, const core_int* lda,
           const float* x, const core_int* incx, const float* beta, float* y, const core_int* incy);
void dsymv(const char* uplo, const core_int* n, const double* alpha, const double* a, const core_int* lda,
           const double* x, const core_int* incx, const double* beta, double* y, const core_int* incy);
void chemv(const char* uplo, const core_int* n, const complex8* alpha, const complex8* a, const core_int* lda,
           const complex8* x, const core_int* incx, const complex8* beta, complex8* y, const core_int* incy);
void zhemv(const char* uplo, const core_int* n, const complex16* alpha, const complex16* a,
           const core_int* lda, const complex16* x, const core_int* incx, const complex16* beta, complex16* y,
           const core_int* incy);

void ssbmv(const char* uplo, const core_int* n, const core_int* k, const float* alpha, const float* a,
           const core_int* lda, const float* x, const core_int* incx, const float* beta, float* y,
           const core_int* incy);
void dsbmv(const char* uplo, const core_int* n, const core_int* k, const double* alpha, const double* a,
           const core_int* lda, const double* x, const core_int* incx, const double* beta, double* y,
           const core_int* incy);
void chbmv(const char* uplo, const core_int* n, const core_int* k, const complex8* alpha, const complex8* a,
           const core_int* lda, const complex8* x, const core_int* incx, const complex8* beta, complex8* y,
           const core_int* incy);
void zhbmv(const char* uplo, const core_int* n, const core_int* k, const complex16* alpha, const complex16* a,
           const core_int* lda, const complex16* x, const core_int* incx, const complex16* beta, complex16* y,
           const core_int* incy);

void sspmv(const char* uplo, const core_int* n, const float* alpha, const float* ap, const float* x,
           const core_int* incx, const float* beta, float* y, const core_int* incy);
void dspmv(const char* uplo, const core_int* n, const double* alpha, const double* ap, const double* x,
           const core_int* incx, const double* beta, double* y, const core_int* incy);
/// Symmetric, not Hermitian.
void cspmv(const char* uplo, const core_int* n, const complex8* alpha, const complex8* ap, const complex8* x,
           const core_int* incx, const complex8* beta, complex8* y, const core_int* incy);
void zspmv(const char* uplo, const core_int* n, const complex16* alpha, const complex16* ap,
           const complex16* x, const core_int* incx, const complex16* beta, complex16* y,
           const core_int* incy);
void chpmv(const char* uplo, const core_int* n, const complex8* alpha, const complex8* ap, const complex8* x,
           const core_int* incx, const complex8* beta, complex8* y, const core_int* incy);
void zhpmv(const char* uplo, const core_int* n, const complex16* alpha, const complex16* ap,
           const complex16* x, const core_int* incx, const complex16* beta, complex16* y,
           const core_int* incy);

// trmv.cpp: x = op(A) x, A triangular: full, banded with k diagonals beside the main one, packed.
void strmv(const char* uplo, const char* trans, const char* diag, const core_int* n, const float* a,
           const core_int* lda, float* x, const core_int* incx);
void dtrmv(const char* uplo, const char* trans, const char* diag, const core_int* n, const double* a,
           const core_int* lda, double* x, const core_int* incx);
void ctrmv(const char* uplo, const char* trans, const char* diag, const core_int* n, const complex8* a,
           const core_int* lda, complex8* x, const core_int* incx);
void ztrmv(const char* uplo, const char* trans, const char* diag, const core_int* n, const complex16* a,
           const core_int* lda, complex16* x, const core_int* incx);

void stbmv(const char* uplo, const char* trans, const char* diag, const core_int* n, const core_int* k,
           const float* a, const core_int* lda, float* x, const core_int* incx);
void dtbmv(const char* uplo, const char* trans, const char* diag, const core_int* n, const core_int* k,
           const double* a, const core_int* lda, double* x, const core_int* incx);
void ctbmv(const char* uplo, const char* trans, const char* diag, const core_int* n, const core_int* k,
           const complex8* a, const core_int* lda, complex8* x, const core_int* incx);
void ztbmv(const char* uplo, const char* trans, const char* diag, const core_int* n, const core_int* k,
           const complex16* a, const core_int* lda, complex16* x, const core_int* incx);

void stpmv(const char* uplo, const char* trans, const char* diag, const core_int* n, const float* ap,
           float* x, const core_int* incx);
void dtpmv(const char* uplo, const char* trans, const char* diag, const core_int* n, const double* ap,
           double* x, const core_int* incx);
void ctpmv(const char* uplo, const char* trans, const char* diag, const core_int* n, const complex8* ap,
           complex8* x, const core_int* incx);
void ztpmv(const char* uplo, const char* trans, const char* diag, const core_int* n, const complex16* ap,
           complex16* x, const core_int* incx);

// trsv.cpp: op(A) x = b, x over b; no test for a singular A.
void strsv(const char* uplo, const char* trans, const char* diag, const core_int* n, const float* a,
           const core_int* lda, float* x, const core_int* incx);
void dtrsv(const char* uplo, const char* trans, const char* diag, const core_int* n, const double* a,
           const core_int* lda, double* x, const core_int* incx);
void ctrsv(const char* uplo, const char* trans, const char* diag, const core_int* n, const complex8* a,
           const core_int* lda, complex8* x, const core_int* incx);
void ztrsv(const char* uplo, const char* trans, const char* diag, const core_int* n, const complex16* a,
           const core_int* lda, complex16* x, const core_int* incx);

void stbsv(const char* uplo, const char* trans, const char* diag, const core_int* n, const core_int* k,
           const float* a, const core_int* lda, float* x, const core_int* incx);
void dtbsv(const char* uplo, const char* trans, const char* diag, const core_int* n, const core_int* k,
           const double* a, const core_int* lda, double* x, const core_int* incx);
void ctbsv(const char* uplo, const char* trans, const char* diag, const core_int* n, const core_int* k,
           const complex8* a, const core_int* lda, complex8* x, const core_int* incx);
void ztbsv(const char* uplo, const char* trans, const char* diag, const core_int* n, const core_int* k,
           const complex16* a, const core_int* lda, complex16* x, const core_int* incx);

void stpsv(const char* uplo, const char* trans, const char* diag, const core_int* n, const float* ap,
           float* x, const core_int* incx);
void dtpsv(const char* uplo, const char* trans, const char* diag, const core_int* n, const double* ap,
           double* x, const core_int* incx);
void ctpsv(const char* uplo, const char* trans, const char* diag, const core_int* n, const complex8* ap,
           complex8* x, const core_int* incx);
void ztpsv(const char* uplo, const char* trans, const char* diag, const core_int* n, const complex16* ap,
           complex16* x, const core_int* incx);

// ger.cpp: A += alpha x y**T (ger, geru) or alpha x y**H (gerc).
void sger(const core_int* m, const core_int* n, const float* alpha, const float* x, const core_int* incx,
          const float* y, const core_int* incy, float* a, const core_int* lda);
void dger(const core_int* m, const core_int* n, const double* alpha, const double* x, const core_int* incx,
          const double* y, const core_int* incy, double* a, const core_int* lda);

void cgeru(const core_int* m, const core_int* n, const complex8* alpha, const complex8* x,
           const core_int* incx, const complex8* y, const core_int* incy, complex8* a, const core_int* lda);
void zgeru(const core_int* m, const core_int* n, const complex16* alpha, const complex16* x,
           const core_int* incx, const complex16* y, const core_int* incy, complex16* a, const core_int* lda);

void cgerc(const core_int* m, const core_int* n, const complex8* alpha, const complex8* x,
           const core_int* incx, const complex8* y, const core_int* incy, complex8* a, const core_int* lda);
void zgerc(const core_int* m, const core_int* n, const complex16* alpha, const complex16* x,
           const core_int* incx, const complex16* y, const core_int* incy, complex16* a, const core_int* lda);

// syr.cpp: one triangle of A += alpha x x**T (her, hpr: alpha real, x x**H), full or packed.
void ssyr(const char* uplo, const core_int* n, const float* alpha, const float* x, const core_int* incx,
          float* a, const core_int* lda);
void dsyr(const char* uplo, const core_int* n, const double* alpha, const double* x, const core_int* incx,
          double* a, const core_int* lda);
void cher(const char* uplo, const core_int* n, const float* alpha, const complex8* x, const core_int* incx,
          complex8* a, const core_int* lda);
void zher(const char* uplo, const core_int* n, const double* alpha, const complex16* x, const core_int* incx,
          complex16* a, const core_int* lda);

void sspr(const char* uplo, const core_int* n, const float* alpha, const float* x, const core_int* incx,
          float* ap);
void dspr(const char* uplo, const core_int* n, const double* alpha, const double* x, const core_int* incx,
          double* ap);
void chpr(const char* uplo, const core_int* n, const float* alpha, const complex8* x, const core_int* incx,
          complex8* ap);
void zhpr(const char* uplo, const core_int* n, const double* alpha, const complex16* x, const core_int* incx,
          complex16* ap);

// syr2.cpp: one triangle of A += alpha x y**T + alpha y x**T (her2, hpr2: alpha x y**H + conj(alpha) y x**H).
void ssyr2(const char* uplo, const core_int* n, const float* alpha, const float* x, const core_int* incx,
           const float* y, const core_int* incy, float* a, const core_int* lda);
void dsyr2(const char* uplo, const core_int* n, const double* alpha, const double* x, const core_int* incx,
           const double* y, const core_int* incy, double* a, const core_int* lda);
void cher2(const char* uplo, const core_int* n, const complex8* alpha, const complex8* x,
           const core_int* incx, const complex8* y, const core_int* incy, complex8* a, const core_int* lda);
void zher2(const char* uplo, const core_int* n, const complex16* alpha, const complex16* x,
           const core_int* incx, const complex16* y, const core_int* incy, complex16* a, const core_int* lda);

void sspr2(const char* uplo, const core_int* n, const float* alpha, const float* x, const core_int* incx,
           const float* y, const core_int* incy, float* ap);
void dspr2(const char* uplo, const core_int* n, const double* alpha, const double* x, const core_int* incx,
           const double* y, const core_int* incy, double* ap);
void chpr2(const char* uplo, const core_int* n, const complex8* alpha, const complex8* x,
           const core_int* incx, const complex8* y, const core_int* incy, complex8* ap);
void zhpr2(const char* uplo, const core_int* n, const complex16* alpha, const complex16* x,
           const core_int* incx, const complex16* y, const core_int* incy, complex16* ap);

}  // namespace qel::core
