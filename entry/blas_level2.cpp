// SPDX-License-Identifier: BSD-3-Clause
// Entries of the matrix-vector operations: each checks its arguments, reports the first bad one and returns,
// else widens and calls. Complex symmetric packed products count as LAPACK's and install the error entry.
#include "blas/checks.h"
#include "blas/level2/level2.h"
#include "entry/shapes.h"
#include "qel/blas.h"

using qel::complex16;
using qel::complex8;
using qel::entry::call_checked;
using qel::entry::call_checked_hooked;
namespace core = qel::core;
namespace blas = qel::blas;

extern "C" {

void sgemv(const char* trans, const int* m, const int* n, const float* alpha, const float* a, const int* lda,
           const float* x, const int* incx, const float* beta, float* y, const int* incy) {
  call_checked(__func__, core::sgemv, blas::gemv_bad_argument, trans, m, n, alpha, a, lda, x, incx, beta, y,
               incy);
}
void dgemv(const char* trans, const int* m, const int* n, const double* alpha, const double* a,
           const int* lda, const double* x, const int* incx, const double* beta, double* y, const int* incy) {
  call_checked(__func__, core::dgemv, blas::gemv_bad_argument, trans, m, n, alpha, a, lda, x, incx, beta, y,
               incy);
}
void cgemv(const char* trans, const int* m, const int* n, const complex8* alpha, const complex8* a,
           const int* lda, const complex8* x, const int* incx, const complex8* beta, complex8* y,
           const int* incy) {
  call_checked(__func__, core::cgemv, blas::gemv_bad_argument, trans, m, n, alpha, a, lda, x, incx, beta, y,
               incy);
}
void zgemv(const char* trans, const int* m, const int* n, const complex16* alpha, const complex16* a,
           const int* lda, const complex16* x, const int* incx, const complex16* beta, complex16* y,
           const int* incy) {
  call_checked(__func__, core::zgemv, blas::gemv_bad_argument, trans, m, n, alpha, a, lda, x, incx, beta, y,
               incy);
}

void sgbmv(const char* trans, const int* m, const int* n, const int* kl, const int* ku, const float* alpha,
           const float* a, const int* lda, const float* x, const int* incx, const float* beta, float* y,
           const int* incy) {
  call_checked(__func__, core::sgbmv, blas::gbmv_bad_argument, trans, m, n, kl, ku, alpha, a, lda, x, incx,
               beta, y, incy);
}
void dgbmv(const char* trans, const int* m, const int* n, const int* kl, const int* ku, const double* alpha,
           const double* a, const int* lda, const double* x, const int* incx, const double* beta, double* y,
           const int* incy) {
  call_checked(__func__, core::dgbmv, blas::gbmv_bad_argument, trans, m, n, kl, ku, alpha, a, lda, x, incx,
               beta, y, incy);
}
void cgbmv(const char* trans, const int* m, const int* n, const int* kl, const int* ku, const complex8* alpha,
           const complex8* a, const int* lda, const complex8* x, const int* incx, const complex8* beta,
           complex8* y, const int* incy) {
  call_checked(__func__, core::cgbmv, blas::gbmv_bad_argument, trans, m, n, kl, ku, alpha, a, lda, x, incx,
               beta, y, incy);
}
void zgbmv(const char* trans, const int* m, const int* n, const int* kl, const int* ku,
           const complex16* alpha, const complex16* a, const int* lda, const complex16* x, const int* incx,
           const complex16* beta, complex16* y, const int* incy) {
  call_checked(__func__, core::zgbmv, blas::gbmv_bad_argument, trans, m, n, kl, ku, alpha, a, lda, x, incx,
               beta, y, incy);
}

void ssbmv(const char* uplo, const int* n, const int* k, const float* alpha, const float* a, const int* lda,
           const float* x, const int* incx, const float* beta, float* y, const int* incy) {
  call_checked(__func__, core::ssbmv, blas::sbmv_bad_argument, uplo, n, k, alpha, a, lda, x, incx, beta, y,
               incy);
}
void dsbmv(const char* uplo, const int* n, const int* k, const double* alpha, const double* a, const int* lda,
           const double* x, const int* incx, const double* beta, double* y, const int* incy) {
  call_checked(__func__, core::dsbmv, blas::sbmv_bad_argument, uplo, n, k, alpha, a, lda, x, incx, beta, y,
               incy);
}
void chbmv(const char* uplo, const int* n, const int* k, const complex8* alpha, const complex8* a,
           const int* lda, const complex8* x, const int* incx, const complex8* beta, complex8* y,
           const int* incy) {
  call_checked(__func__, core::chbmv, blas::sbmv_bad_argument, uplo, n, k, alpha, a, lda, x, incx, beta, y,
               incy);
}
void zhbmv(const char* uplo, const int* n, const int* k, const complex16* alpha, const complex16* a,
           const int* lda, const complex16* x, const int* incx, const complex16* beta, complex16* y,
           const int* incy) {
  call_checked(__func__, core::zhbmv, blas::sbmv_bad_argument, uplo, n, k, alpha, a, lda, x, incx, beta, y,
               incy);
}

void sspmv(const char* uplo, const int* n, const float* alpha, const float* ap, const float* x,
           const int* incx, const float* beta, float* y, const int* incy) {
  call_checked(__func__, core::sspmv, blas::spmv_bad_argument, uplo, n, alpha, ap, x, incx, beta, y, incy);
}
void dspmv(const char* uplo, const int* n, const double* alpha, const double* ap, const double* x,
           const int* incx, const double* beta, double* y, const int* incy) {
  call_checked(__func__, core::dspmv, blas::spmv_bad_argument, uplo, n, alpha, ap, x, incx, beta, y, incy);
}
void cspmv(const char* uplo, const int* n, const complex8* alpha, const complex8* ap, const complex8* x,
           const int* incx, const complex8* beta, complex8* y, const int* incy) {
  call_checked_hooked(__func__, core::cspmv, blas::spmv_bad_argument, uplo, n, alpha, ap, x, incx, beta, y,
                      incy);
}
void zspmv(const char* uplo, const int* n, const complex16* alpha, const complex16* ap, const complex16* x,
           const int* incx, const complex16* beta, complex16* y, const int* incy) {
  call_checked_hooked(__func__, core::zspmv, blas::spmv_bad_argument, uplo, n, alpha, ap, x, incx, beta, y,
                      incy);
}

void chpmv(const char* uplo, const int* n, const complex8* alpha, const complex8* ap, const complex8* x,
           const int* incx, const complex8* beta, complex8* y, const int* incy) {
  call_checked(__func__, core::chpmv, blas::spmv_bad_argument, uplo, n, alpha, ap, x, incx, beta, y, incy);
}
void zhpmv(const char* uplo, const int* n, const complex16* alpha, const complex16* ap, const complex16* x,
           const int* incx, const complex16* beta, complex16* y, const int* incy) {
  call_checked(__func__, core::zhpmv, blas::spmv_bad_argument, uplo, n, alpha, ap, x, incx, beta, y, incy);
}

void stpmv(const char* uplo, const char* trans, const char* diag, const int* n, const float* ap, float* x,
           const int* incx) {
  call_checked(__func__, core::stpmv, blas::tpmv_bad_argument, uplo, trans, diag, n, ap, x, incx);
}
void dtpmv(const char* uplo, const char* trans, const char* diag, const int* n, const double* ap, double* x,
           const int* incx) {
  call_checked(__func__, core::dtpmv, blas::tpmv_bad_argument, uplo, trans, diag, n, ap, x, incx);
}
void ctpmv(const char* uplo, const char* trans, const char* diag, const int* n, const complex8* ap,
           complex8* x, const int* incx) {
  call_checked(__func__, core::ctpmv, blas::tpmv_bad_argument, uplo, trans, diag, n, ap, x, incx);
}
void ztpmv(const char* uplo, const char* trans, const char* diag, const int* n, const complex16* ap,
           complex16* x, const int* incx) {
  call_checked(__func__, core::ztpmv, blas::tpmv_bad_argument, uplo, trans, diag, n, ap, x, incx);
}

void strmv(const char* uplo, const char* trans, const char* diag, const int* n, const float* a,
           const int* lda, float* x, const int* incx) {
  call_checked(__func__, core::strmv, blas::trmv_bad_argument, uplo, trans, diag, n, a, lda, x, incx);
}
void dtrmv(const char* uplo, const char* trans, const char* diag, const int* n, const double* a,
           const int* lda, double* x, const int* incx) {
  call_checked(__func__, core::dtrmv, blas::trmv_bad_argument, uplo, trans, diag, n, a, lda, x, incx);
}
void ctrmv(const char* uplo, const char* trans, const char* diag, const int* n, const complex8* a,
           const int* lda, complex8* x, const int* incx) {
  call_checked(__func__, core::ctrmv, blas::trmv_bad_argument, uplo, trans, diag, n, a, lda, x, incx);
}
void ztrmv(const char* uplo, const char* trans, const char* diag, const int* n, const complex16* a,
           const int* lda, complex16* x, const int* incx) {
  call_checked(__func__, core::ztrmv, blas::trmv_bad_argument, uplo, trans, diag, n, a, lda, x, incx);
}

// The Fortran names. Lengths of option letters, which Fortran passes behind the arguments, are not looked at.

QEL_API decltype(sgemv) sgemv_ __attribute__((alias("sgemv")));
QEL_API decltype(dgemv) dgemv_ __attribute__((alias("dgemv")));
QEL_API decltype(cgemv) cgemv_ __attribute__((alias("cgemv")));
QEL_API decltype(zgemv) zgemv_ __attribute__((alias("zgemv")));
QEL_API decltype(sgbmv) sgbmv_ __attribute__((alias("sgbmv")));
QEL_API decltype(dgbmv) dgbmv_ __attribute__((alias("dgbmv")));
QEL_API decltype(cgbmv) cgbmv_ __attribute__((alias("cgbmv")));
QEL_API decltype(zgbmv) zgbmv_ __attribute__((alias("zgbmv")));
QEL_API decltype(ssbmv) ssbmv_ __attribute__((alias("ssbmv")));
QEL_API decltype(dsbmv) dsbmv_ __attribute__((alias("dsbmv")));
QEL_API decltype(chbmv) chbmv_ __attribute__((alias("chbmv")));
QEL_API decltype(zhbmv) zhbmv_ __attribute__((alias("zhbmv")));
QEL_API decltype(sspmv) sspmv_ __attribute__((alias("sspmv")));
QEL_API decltype(dspmv) dspmv_ __attribute__((alias("dspmv")));
QEL_API decltype(cspmv) cspmv_ __attribute__((alias("cspmv")));
QEL_API decltype(zspmv) zspmv_ __attribute__((alias("zspmv")));
QEL_API decltype(chpmv) chpmv_ __attribute__((alias("chpmv")));
QEL_API decltype(zhpmv) zhpmv_ __attribute__((alias("zhpmv")));
QEL_API decltype(stpmv) stpmv_ __attribute__((alias("stpmv")));
QEL_API decltype(dtpmv) dtpmv_ __attribute__((alias("dtpmv")));
QEL_API decltype(ctpmv) ctpmv_ __attribute__((alias("ctpmv")));
QEL_API decltype(ztpmv) ztpmv_ __attribute__((alias("ztpmv")));
QEL_API decltype(strmv) strmv_ __attribute__((alias("strmv")));
QEL_API decltype(dtrmv) dtrmv_ __attribute__((alias("dtrmv")));
QEL_API decltype(ctrmv) ctrmv_ __attribute__((alias("ctrmv")));
QEL_API decltype(ztrmv) ztrmv_ __attribute__((alias("ztrmv")));

}  // extern "C"
