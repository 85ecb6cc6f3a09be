// SPDX-License-Identifier: BSD-3-Clause
// Entries of the matrix-vector operations: each checks its arguments, reports the first bad one and returns,
// else widens and calls. Complex symmetric packed products are LAPACK's and are checked there.
#include "blas/checks.h"
#include "blas/level2/level2.h"
#include "entry/shapes.h"
#include "lapack/lapack.h"
#include "qel/blas.h"

using qel::complex16;
using qel::complex8;
using qel::entry::call_hooked;
using qel::entry::call_widened;
using qel::entry::reported;
namespace core = qel::core;
namespace blas = qel::blas;

namespace {

bool gemv_check(const char* name, const char* trans, const int* m, const int* n, const int* lda,
                const int* incx, const int* incy) {
  return reported(name, blas::gemv_bad_argument(trans, *m, *n, *lda, *incx, *incy));
}
bool gbmv_check(const char* name, const char* trans, const int* m, const int* n, const int* kl, const int* ku,
                const int* lda, const int* incx, const int* incy) {
  return reported(name, blas::gbmv_bad_argument(trans, *m, *n, *kl, *ku, *lda, *incx, *incy));
}
bool sbmv_check(const char* name, const char* uplo, const int* n, const int* k, const int* lda,
                const int* incx, const int* incy) {
  return reported(name, blas::sbmv_bad_argument(uplo, *n, *k, *lda, *incx, *incy));
}
bool spmv_check(const char* name, const char* uplo, const int* n, const int* incx, const int* incy) {
  return reported(name, blas::spmv_bad_argument(uplo, *n, *incx, *incy));
}
bool tpmv_check(const char* name, const char* uplo, const char* trans, const char* diag, const int* n,
                const int* incx) {
  return reported(name, blas::tpmv_bad_argument(uplo, trans, diag, *n, *incx));
}
bool trmv_check(const char* name, const char* uplo, const char* trans, const char* diag, const int* n,
                const int* lda, const int* incx) {
  return reported(name, blas::trmv_bad_argument(uplo, trans, diag, *n, *lda, *incx));
}

}  // namespace

extern "C" {

void sgemv(const char* trans, const int* m, const int* n, const float* alpha, const float* a, const int* lda,
           const float* x, const int* incx, const float* beta, float* y, const int* incy) {
  if (gemv_check("SGEMV ", trans, m, n, lda, incx, incy)) return;
  call_widened(core::sgemv, trans, m, n, alpha, a, lda, x, incx, beta, y, incy);
}
void dgemv(const char* trans, const int* m, const int* n, const double* alpha, const double* a,
           const int* lda, const double* x, const int* incx, const double* beta, double* y, const int* incy) {
  if (gemv_check("DGEMV ", trans, m, n, lda, incx, incy)) return;
  call_widened(core::dgemv, trans, m, n, alpha, a, lda, x, incx, beta, y, incy);
}
void cgemv(const char* trans, const int* m, const int* n, const complex8* alpha, const complex8* a,
           const int* lda, const complex8* x, const int* incx, const complex8* beta, complex8* y,
           const int* incy) {
  if (gemv_check("CGEMV ", trans, m, n, lda, incx, incy)) return;
  call_widened(core::cgemv, trans, m, n, alpha, a, lda, x, incx, beta, y, incy);
}
void zgemv(const char* trans, const int* m, const int* n, const complex16* alpha, const complex16* a,
           const int* lda, const complex16* x, const int* incx, const complex16* beta, complex16* y,
           const int* incy) {
  if (gemv_check("ZGEMV ", trans, m, n, lda, incx, incy)) return;
  call_widened(core::zgemv, trans, m, n, alpha, a, lda, x, incx, beta, y, incy);
}

void sgbmv(const char* trans, const int* m, const int* n, const int* kl, const int* ku, const float* alpha,
           const float* a, const int* lda, const float* x, const int* incx, const float* beta, float* y,
           const int* incy) {
  if (gbmv_check("SGBMV ", trans, m, n, kl, ku, lda, incx, incy)) return;
  call_widened(core::sgbmv, trans, m, n, kl, ku, alpha, a, lda, x, incx, beta, y, incy);
}
void dgbmv(const char* trans, const int* m, const int* n, const int* kl, const int* ku, const double* alpha,
           const double* a, const int* lda, const double* x, const int* incx, const double* beta, double* y,
           const int* incy) {
  if (gbmv_check("DGBMV ", trans, m, n, kl, ku, lda, incx, incy)) return;
  call_widened(core::dgbmv, trans, m, n, kl, ku, alpha, a, lda, x, incx, beta, y, incy);
}
void cgbmv(const char* trans, const int* m, const int* n, const int* kl, const int* ku, const complex8* alpha,
           const complex8* a, const int* lda, const complex8* x, const int* incx, const complex8* beta,
           complex8* y, const int* incy) {
  if (gbmv_check("CGBMV ", trans, m, n, kl, ku, lda, incx, incy)) return;
  call_widened(core::cgbmv, trans, m, n, kl, ku, alpha, a, lda, x, incx, beta, y, incy);
}
void zgbmv(const char* trans, const int* m, const int* n, const int* kl, const int* ku,
           const complex16* alpha, const complex16* a, const int* lda, const complex16* x, const int* incx,
           const complex16* beta, complex16* y, const int* incy) {
  if (gbmv_check("ZGBMV ", trans, m, n, kl, ku, lda, incx, incy)) return;
  call_widened(core::zgbmv, trans, m, n, kl, ku, alpha, a, lda, x, incx, beta, y, incy);
}

void ssbmv(const char* uplo, const int* n, const int* k, const float* alpha, const float* a, const int* lda,
           const float* x, const int* incx, const float* beta, float* y, const int* incy) {
  if (sbmv_check("SSBMV ", uplo, n, k, lda, incx, incy)) return;
  call_widened(core::ssbmv, uplo, n, k, alpha, a, lda, x, incx, beta, y, incy);
}
void dsbmv(const char* uplo, const int* n, const int* k, const double* alpha, const double* a, const int* lda,
           const double* x, const int* incx, const double* beta, double* y, const int* incy) {
  if (sbmv_check("DSBMV ", uplo, n, k, lda, incx, incy)) return;
  call_widened(core::dsbmv, uplo, n, k, alpha, a, lda, x, incx, beta, y, incy);
}
void chbmv(const char* uplo, const int* n, const int* k, const complex8* alpha, const complex8* a,
           const int* lda, const complex8* x, const int* incx, const complex8* beta, complex8* y,
           const int* incy) {
  if (sbmv_check("CHBMV ", uplo, n, k, lda, incx, incy)) return;
  call_widened(core::chbmv, uplo, n, k, alpha, a, lda, x, incx, beta, y, incy);
}
void zhbmv(const char* uplo, const int* n, const int* k, const complex16* alpha, const complex16* a,
           const int* lda, const complex16* x, const int* incx, const complex16* beta, complex16* y,
           const int* incy) {
  if (sbmv_check("ZHBMV ", uplo, n, k, lda, incx, incy)) return;
  call_widened(core::zhbmv, uplo, n, k, alpha, a, lda, x, incx, beta, y, incy);
}

void sspmv(const char* uplo, const int* n, const float* alpha, const float* ap, const float* x,
           const int* incx, const float* beta, float* y, const int* incy) {
  if (spmv_check("SSPMV ", uplo, n, incx, incy)) return;
  call_widened(core::sspmv, uplo, n, alpha, ap, x, incx, beta, y, incy);
}
void dspmv(const char* uplo, const int* n, const double* alpha, const double* ap, const double* x,
           const int* incx, const double* beta, double* y, const int* incy) {
  if (spmv_check("DSPMV ", uplo, n, incx, incy)) return;
  call_widened(core::dspmv, uplo, n, alpha, ap, x, incx, beta, y, incy);
}
void cspmv(const char* uplo, const int* n, const complex8* alpha, const complex8* ap, const complex8* x,
           const int* incx, const complex8* beta, complex8* y, const int* incy) {
  call_hooked(core::qel_core_cspmv_, uplo, n, alpha, ap, x, incx, beta, y, incy);
}
void zspmv(const char* uplo, const int* n, const complex16* alpha, const complex16* ap, const complex16* x,
           const int* incx, const complex16* beta, complex16* y, const int* incy) {
  call_hooked(core::qel_core_zspmv_, uplo, n, alpha, ap, x, incx, beta, y, incy);
}

void chpmv(const char* uplo, const int* n, const complex8* alpha, const complex8* ap, const complex8* x,
           const int* incx, const complex8* beta, complex8* y, const int* incy) {
  if (spmv_check("CHPMV ", uplo, n, incx, incy)) return;
  call_widened(core::chpmv, uplo, n, alpha, ap, x, incx, beta, y, incy);
}
void zhpmv(const char* uplo, const int* n, const complex16* alpha, const complex16* ap, const complex16* x,
           const int* incx, const complex16* beta, complex16* y, const int* incy) {
  if (spmv_check("ZHPMV ", uplo, n, incx, incy)) return;
  call_widened(core::zhpmv, uplo, n, alpha, ap, x, incx, beta, y, incy);
}

void stpmv(const char* uplo, const char* trans, const char* diag, const int* n, const float* ap, float* x,
           const int* incx) {
  if (tpmv_check("STPMV ", uplo, trans, diag, n, incx)) return;
  call_widened(core::stpmv, uplo, trans, diag, n, ap, x, incx);
}
void dtpmv(const char* uplo, const char* trans, const char* diag, const int* n, const double* ap, double* x,
           const int* incx) {
  if (tpmv_check("DTPMV ", uplo, trans, diag, n, incx)) return;
  call_widened(core::dtpmv, uplo, trans, diag, n, ap, x, incx);
}
void ctpmv(const char* uplo, const char* trans, const char* diag, const int* n, const complex8* ap,
           complex8* x, const int* incx) {
  if (tpmv_check("CTPMV ", uplo, trans, diag, n, incx)) return;
  call_widened(core::ctpmv, uplo, trans, diag, n, ap, x, incx);
}
void ztpmv(const char* uplo, const char* trans, const char* diag, const int* n, const complex16* ap,
           complex16* x, const int* incx) {
  if (tpmv_check("ZTPMV ", uplo, trans, diag, n, incx)) return;
  call_widened(core::ztpmv, uplo, trans, diag, n, ap, x, incx);
}

void strmv(const char* uplo, const char* trans, const char* diag, const int* n, const float* a,
           const int* lda, float* x, const int* incx) {
  if (trmv_check("STRMV ", uplo, trans, diag, n, lda, incx)) return;
  call_widened(core::strmv, uplo, trans, diag, n, a, lda, x, incx);
}
void dtrmv(const char* uplo, const char* trans, const char* diag, const int* n, const double* a,
           const int* lda, double* x, const int* incx) {
  if (trmv_check("DTRMV ", uplo, trans, diag, n, lda, incx)) return;
  call_widened(core::dtrmv, uplo, trans, diag, n, a, lda, x, incx);
}
void ctrmv(const char* uplo, const char* trans, const char* diag, const int* n, const complex8* a,
           const int* lda, complex8* x, const int* incx) {
  if (trmv_check("CTRMV ", uplo, trans, diag, n, lda, incx)) return;
  call_widened(core::ctrmv, uplo, trans, diag, n, a, lda, x, incx);
}
void ztrmv(const char* uplo, const char* trans, const char* diag, const int* n, const complex16* a,
           const int* lda, complex16* x, const int* incx) {
  if (trmv_check("ZTRMV ", uplo, trans, diag, n, lda, incx)) return;
  call_widened(core::ztrmv, uplo, trans, diag, n, a, lda, x, incx);
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
