// SPDX-License-Identifier: BSD-3-Clause
// Entries of the matrix products and triangular solves: each checks its arguments, reports the first bad one
// and returns, else widens and calls.
#include "blas/checks.h"
#include "blas/level3/level3.h"
#include "entry/shapes.h"
#include "qel/blas.h"

using qel::complex16;
using qel::complex8;
using qel::entry::call_checked;
namespace core = qel::core;
namespace blas = qel::blas;

extern "C" {

void sgemm(const char* transa, const char* transb, const int* m, const int* n, const int* k,
           const float* alpha, const float* a, const int* lda, const float* b, const int* ldb,
           const float* beta, float* c, const int* ldc) {
  call_checked(__func__, core::sgemm, blas::gemm_bad_argument, transa, transb, m, n, k, alpha, a, lda, b, ldb,
               beta, c, ldc);
}
void dgemm(const char* transa, const char* transb, const int* m, const int* n, const int* k,
           const double* alpha, const double* a, const int* lda, const double* b, const int* ldb,
           const double* beta, double* c, const int* ldc) {
  call_checked(__func__, core::dgemm, blas::gemm_bad_argument, transa, transb, m, n, k, alpha, a, lda, b, ldb,
               beta, c, ldc);
}
void cgemm(const char* transa, const char* transb, const int* m, const int* n, const int* k,
           const complex8* alpha, const complex8* a, const int* lda, const complex8* b, const int* ldb,
           const complex8* beta, complex8* c, const int* ldc) {
  call_checked(__func__, core::cgemm, blas::gemm_bad_argument, transa, transb, m, n, k, alpha, a, lda, b, ldb,
               beta, c, ldc);
}
void zgemm(const char* transa, const char* transb, const int* m, const int* n, const int* k,
           const complex16* alpha, const complex16* a, const int* lda, const complex16* b, const int* ldb,
           const complex16* beta, complex16* c, const int* ldc) {
  call_checked(__func__, core::zgemm, blas::gemm_bad_argument, transa, transb, m, n, k, alpha, a, lda, b, ldb,
               beta, c, ldc);
}

void strsm(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
           const int* n, const float* alpha, const float* a, const int* lda, float* b, const int* ldb) {
  call_checked(__func__, core::strsm, blas::trmm_bad_argument, side, uplo, transa, diag, m, n, alpha, a, lda,
               b, ldb);
}
void dtrsm(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
           const int* n, const double* alpha, const double* a, const int* lda, double* b, const int* ldb) {
  call_checked(__func__, core::dtrsm, blas::trmm_bad_argument, side, uplo, transa, diag, m, n, alpha, a, lda,
               b, ldb);
}
void ctrsm(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
           const int* n, const complex8* alpha, const complex8* a, const int* lda, complex8* b,
           const int* ldb) {
  call_checked(__func__, core::ctrsm, blas::trmm_bad_argument, side, uplo, transa, diag, m, n, alpha, a, lda,
               b, ldb);
}
void ztrsm(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
           const int* n, const complex16* alpha, const complex16* a, const int* lda, complex16* b,
           const int* ldb) {
  call_checked(__func__, core::ztrsm, blas::trmm_bad_argument, side, uplo, transa, diag, m, n, alpha, a, lda,
               b, ldb);
}

// The Fortran names. Lengths of option letters, which Fortran passes behind the arguments, are not looked at.

QEL_API decltype(sgemm) sgemm_ __attribute__((alias("sgemm")));
QEL_API decltype(dgemm) dgemm_ __attribute__((alias("dgemm")));
QEL_API decltype(cgemm) cgemm_ __attribute__((alias("cgemm")));
QEL_API decltype(zgemm) zgemm_ __attribute__((alias("zgemm")));
QEL_API decltype(strsm) strsm_ __attribute__((alias("strsm")));
QEL_API decltype(dtrsm) dtrsm_ __attribute__((alias("dtrsm")));
QEL_API decltype(ctrsm) ctrsm_ __attribute__((alias("ctrsm")));
QEL_API decltype(ztrsm) ztrsm_ __attribute__((alias("ztrsm")));

}  // extern "C"
