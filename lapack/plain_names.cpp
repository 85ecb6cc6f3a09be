// SPDX-License-Identifier: BSD-3-Clause
// What plain LAPACK calls: each BLAS name tests its arguments as a Fortran BLAS does, reports the first bad
// one under its name padded to six letters and does nothing, or goes on to the core routine. Level 1 has no
// tests.
#include "lapack/plain_names.h"

#include "blas/checks.h"
#include "service/serv.h"

namespace qel {

namespace {

using namespace blas;

/// True if no argument is bad; else reports the position.
bool good(const char* name, int bad_argument) {
  if (bad_argument == 0) return true;
  serv_xerbla(name, &bad_argument, 6);
  return false;
}

}  // namespace

extern "C" {

void qel_core_xerbla_(const char* name, const core_int* info, size_t length) {
  const int code = static_cast<int>(*info);
  serv_xerbla(name, &code, static_cast<int>(length));
}

// Level 1

float qel_core_sdot_(const core_int* n, const float* x, const core_int* incx, const float* y,
                     const core_int* incy) {
  return core::sdot(n, x, incx, y, incy);
}
double qel_core_ddot_(const core_int* n, const double* x, const core_int* incx, const double* y,
                      const core_int* incy) {
  return core::ddot(n, x, incx, y, incy);
}

complex8 qel_core_cdotu_(const core_int* n, const complex8* x, const core_int* incx, const complex8* y,
                         const core_int* incy) {
  complex8 result;
  core::cdotu(&result, n, x, incx, y, incy);
  return result;
}
complex16 qel_core_zdotu_(const core_int* n, const complex16* x, const core_int* incx, const complex16* y,
                          const core_int* incy) {
  complex16 result;
  core::zdotu(&result, n, x, incx, y, incy);
  return result;
}
complex8 qel_core_cdotc_(const core_int* n, const complex8* x, const core_int* incx, const complex8* y,
                         const core_int* incy) {
  complex8 result;
  core::cdotc(&result, n, x, incx, y, incy);
  return result;
}
complex16 qel_core_zdotc_(const core_int* n, const complex16* x, const core_int* incx, const complex16* y,
                          const core_int* incy) {
  complex16 result;
  core::zdotc(&result, n, x, incx, y, incy);
  return result;
}

void qel_core_saxpy_(const core_int* n, const float* alpha, const float* x, const core_int* incx, float* y,
                     const core_int* incy) {
  core::saxpy(n, alpha, x, incx, y, incy);
}
void qel_core_daxpy_(const core_int* n, const double* alpha, const double* x, const core_int* incx, double* y,
                     const core_int* incy) {
  core::daxpy(n, alpha, x, incx, y, incy);
}
void qel_core_caxpy_(const core_int* n, const complex8* alpha, const complex8* x, const core_int* incx,
                     complex8* y, const core_int* incy) {
  core::caxpy(n, alpha, x, incx, y, incy);
}
void qel_core_zaxpy_(const core_int* n, const complex16* alpha, const complex16* x, const core_int* incx,
                     complex16* y, const core_int* incy) {
  core::zaxpy(n, alpha, x, incx, y, incy);
}

void qel_core_scopy_(const core_int* n, const float* x, const core_int* incx, float* y,
                     const core_int* incy) {
  core::scopy(n, x, incx, y, incy);
}
void qel_core_dcopy_(const core_int* n, const double* x, const core_int* incx, double* y,
                     const core_int* incy) {
  core::dcopy(n, x, incx, y, incy);
}
void qel_core_ccopy_(const core_int* n, const complex8* x, const core_int* incx, complex8* y,
                     const core_int* incy) {
  core::ccopy(n, x, incx, y, incy);
}
void qel_core_zcopy_(const core_int* n, const complex16* x, const core_int* incx, complex16* y,
                     const core_int* incy) {
  core::zcopy(n, x, incx, y, incy);
}

void qel_core_sswap_(const core_int* n, float* x, const core_int* incx, float* y, const core_int* incy) {
  core::sswap(n, x, incx, y, incy);
}
void qel_core_dswap_(const core_int* n, double* x, const core_int* incx, double* y, const core_int* incy) {
  core::dswap(n, x, incx, y, incy);
}
void qel_core_cswap_(const core_int* n, complex8* x, const core_int* incx, complex8* y,
                     const core_int* incy) {
  core::cswap(n, x, incx, y, incy);
}
void qel_core_zswap_(const core_int* n, complex16* x, const core_int* incx, complex16* y,
                     const core_int* incy) {
  core::zswap(n, x, incx, y, incy);
}

void qel_core_sscal_(const core_int* n, const float* alpha, float* x, const core_int* incx) {
  core::sscal(n, alpha, x, incx);
}
void qel_core_dscal_(const core_int* n, const double* alpha, double* x, const core_int* incx) {
  core::dscal(n, alpha, x, incx);
}
void qel_core_cscal_(const core_int* n, const complex8* alpha, complex8* x, const core_int* incx) {
  core::cscal(n, alpha, x, incx);
}
void qel_core_zscal_(const core_int* n, const complex16* alpha, complex16* x, const core_int* incx) {
  core::zscal(n, alpha, x, incx);
}
void qel_core_csscal_(const core_int* n, const float* alpha, complex8* x, const core_int* incx) {
  core::csscal(n, alpha, x, incx);
}
void qel_core_zdscal_(const core_int* n, const double* alpha, complex16* x, const core_int* incx) {
  core::zdscal(n, alpha, x, incx);
}

float qel_core_sasum_(const core_int* n, const float* x, const core_int* incx) {
  return core::sasum(n, x, incx);
}
double qel_core_dasum_(const core_int* n, const double* x, const core_int* incx) {
  return core::dasum(n, x, incx);
}
float qel_core_scasum_(const core_int* n, const complex8* x, const core_int* incx) {
  return core::scasum(n, x, incx);
}
double qel_core_dzasum_(const core_int* n, const complex16* x, const core_int* incx) {
  return core::dzasum(n, x, incx);
}

float qel_core_snrm2_(const core_int* n, const float* x, const core_int* incx) {
  return core::snrm2(n, x, incx);
}
double qel_core_dnrm2_(const core_int* n, const double* x, const core_int* incx) {
  return core::dnrm2(n, x, incx);
}
float qel_core_scnrm2_(const core_int* n, const complex8* x, const core_int* incx) {
  return core::scnrm2(n, x, incx);
}
double qel_core_dznrm2_(const core_int* n, const complex16* x, const core_int* incx) {
  return core::dznrm2(n, x, incx);
}

core_int qel_core_isamax_(const core_int* n, const float* x, const core_int* incx) {
  return core::isamax(n, x, incx);
}
core_int qel_core_idamax_(const core_int* n, const double* x, const core_int* incx) {
  return core::idamax(n, x, incx);
}
core_int qel_core_icamax_(const core_int* n, const complex8* x, const core_int* incx) {
  return core::icamax(n, x, incx);
}
core_int qel_core_izamax_(const core_int* n, const complex16* x, const core_int* incx) {
  return core::izamax(n, x, incx);
}

void qel_core_srot_(const core_int* n, float* x, const core_int* incx, float* y, const core_int* incy,
                    const float* c, const float* s) {
  core::srot(n, x, incx, y, incy, c, s);
}
void qel_core_drot_(const core_int* n, double* x, const core_int* incx, double* y, const core_int* incy,
                    const double* c, const double* s) {
  core::drot(n, x, incx, y, incy, c, s);
}
void qel_core_csrot_(const core_int* n, complex8* x, const core_int* incx, complex8* y, const core_int* incy,
                     const float* c, const float* s) {
  core::csrot(n, x, incx, y, incy, c, s);
}
void qel_core_zdrot_(const core_int* n, complex16* x, const core_int* incx, complex16* y,
                     const core_int* incy, const double* c, const double* s) {
  core::zdrot(n, x, incx, y, incy, c, s);
}

void qel_core_srotm_(const core_int* n, float* x, const core_int* incx, float* y, const core_int* incy,
                     const float* param) {
  core::srotm(n, x, incx, y, incy, param);
}
void qel_core_drotm_(const core_int* n, double* x, const core_int* incx, double* y, const core_int* incy,
                     const double* param) {
  core::drotm(n, x, incx, y, incy, param);
}

// Level 2

void qel_core_sgemv_(const char* trans, const core_int* m, const core_int* n, const float* alpha,
                     const float* a, const core_int* lda, const float* x, const core_int* incx,
                     const float* beta, float* y, const core_int* incy) {
  if (good("SGEMV ", gemv_bad_argument(trans, *m, *n, *lda, *incx, *incy)))
    core::sgemv(trans, m, n, alpha, a, lda, x, incx, beta, y, incy);
}
void qel_core_dgemv_(const char* trans, const core_int* m, const core_int* n, const double* alpha,
                     const double* a, const core_int* lda, const double* x, const core_int* incx,
                     const double* beta, double* y, const core_int* incy) {
  if (good("DGEMV ", gemv_bad_argument(trans, *m, *n, *lda, *incx, *incy)))
    core::dgemv(trans, m, n, alpha, a, lda, x, incx, beta, y, incy);
}
void qel_core_cgemv_(const char* trans, const core_int* m, const core_int* n, const complex8* alpha,
                     const complex8* a, const core_int* lda, const complex8* x, const core_int* incx,
                     const complex8* beta, complex8* y, const core_int* incy) {
  if (good("CGEMV ", gemv_bad_argument(trans, *m, *n, *lda, *incx, *incy)))
    core::cgemv(trans, m, n, alpha, a, lda, x, incx, beta, y, incy);
}
void qel_core_zgemv_(const char* trans, const core_int* m, const core_int* n, const complex16* alpha,
                     const complex16* a, const core_int* lda, const complex16* x, const core_int* incx,
                     const complex16* beta, complex16* y, const core_int* incy) {
  if (good("ZGEMV ", gemv_bad_argument(trans, *m, *n, *lda, *incx, *incy)))
    core::zgemv(trans, m, n, alpha, a, lda, x, incx, beta, y, incy);
}

void qel_core_sgbmv_(const char* trans, const core_int* m, const core_int* n, const core_int* kl,
                     const core_int* ku, const float* alpha, const float* a, const core_int* lda,
                     const float* x, const core_int* incx, const float* beta, float* y,
                     const core_int* incy) {
  if (good("SGBMV ", gbmv_bad_argument(trans, *m, *n, *kl, *ku, *lda, *incx, *incy)))
    core::sgbmv(trans, m, n, kl, ku, alpha, a, lda, x, incx, beta, y, incy);
}
void qel_core_dgbmv_(const char* trans, const core_int* m, const core_int* n, const core_int* kl,
                     const core_int* ku, const double* alpha, const double* a, const core_int* lda,
                     const double* x, const core_int* incx, const double* beta, double* y,
                     const core_int* incy) {
  if (good("DGBMV ", gbmv_bad_argument(trans, *m, *n, *kl, *ku, *lda, *incx, *incy)))
    core::dgbmv(trans, m, n, kl, ku, alpha, a, lda, x, incx, beta, y, incy);
}
void qel_core_cgbmv_(const char* trans, const core_int* m, const core_int* n, const core_int* kl,
                     const core_int* ku, const complex8* alpha, const complex8* a, const core_int* lda,
                     const complex8* x, const core_int* incx, const complex8* beta, complex8* y,
                     const core_int* incy) {
  if (good("CGBMV ", gbmv_bad_argument(trans, *m, *n, *kl, *ku, *lda, *incx, *incy)))
    core::cgbmv(trans, m, n, kl, ku, alpha, a, lda, x, incx, beta, y, incy);
}
void qel_core_zgbmv_(const char* trans, const core_int* m, const core_int* n, const core_int* kl,
                     const core_int* ku, const complex16* alpha, const complex16* a, const core_int* lda,
                     const complex16* x, const core_int* incx, const complex16* beta, complex16* y,
                     const core_int* incy) {
  if (good("ZGBMV ", gbmv_bad_argument(trans, *m, *n, *kl, *ku, *lda, *incx, *incy)))
    core::zgbmv(trans, m, n, kl, ku, alpha, a, lda, x, incx, beta, y, incy);
}

void qel_core_ssymv_(const char* uplo, const core_int* n, const float* alpha, const float* a,
                     const core_int* lda, const float* x, const core_int* incx, const float* beta, float* y,
                     const core_int* incy) {
  if (good("SSYMV ", symv_bad_argument(uplo, *n, *lda, *incx, *incy)))
    core::ssymv(uplo, n, alpha, a, lda, x, incx, beta, y, incy);
}
void qel_core_dsymv_(const char* uplo, const core_int* n, const double* alpha, const double* a,
                     const core_int* lda, const double* x, const core_int* incx, const double* beta,
                     double* y, const core_int* incy) {
  if (good("DSYMV ", symv_bad_argument(uplo, *n, *lda, *incx, *incy)))
    core::dsymv(uplo, n, alpha, a, lda, x, incx, beta, y, incy);
}
void qel_core_chemv_(const char* uplo, const core_int* n, const complex8* alpha, const complex8* a,
                     const core_int* lda, const complex8* x, const core_int* incx, const complex8* beta,
                     complex8* y, const core_int* incy) {
  if (good("CHEMV ", symv_bad_argument(uplo, *n, *lda, *incx, *incy)))
    core::chemv(uplo, n, alpha, a, lda, x, incx, beta, y, incy);
}
void qel_core_zhemv_(const char* uplo, const core_int* n, const complex16* alpha, const complex16* a,
                     const core_int* lda, const complex16* x, const core_int* incx, const complex16* beta,
                     complex16* y, const core_int* incy) {
  if (good("ZHEMV ", symv_bad_argument(uplo, *n, *lda, *incx, *incy)))
    core::zhemv(uplo, n, alpha, a, lda, x, incx, beta, y, incy);
}

void qel_core_ssbmv_(const char* uplo, const core_int* n, const core_int* k, const float* alpha,
                     const float* a, const core_int* lda, const float* x, const core_int* incx,
                     const float* beta, float* y, const core_int* incy) {
  if (good("SSBMV ", sbmv_bad_argument(uplo, *n, *k, *lda, *incx, *incy)))
    core::ssbmv(uplo, n, k, alpha, a, lda, x, incx, beta, y, incy);
}
void qel_core_dsbmv_(const char* uplo, const core_int* n, const core_int* k, const double* alpha,
                     const double* a, const core_int* lda, const double* x, const core_int* incx,
                     const double* beta, double* y, const core_int* incy) {
  if (good("DSBMV ", sbmv_bad_argument(uplo, *n, *k, *lda, *incx, *incy)))
    core::dsbmv(uplo, n, k, alpha, a, lda, x, incx, beta, y, incy);
}
void qel_core_chbmv_(const char* uplo, const core_int* n, const core_int* k, const complex8* alpha,
                     const complex8* a, const core_int* lda, const complex8* x, const core_int* incx,
                     const complex8* beta, complex8* y, const core_int* incy) {
  if (good("CHBMV ", sbmv_bad_argument(uplo, *n, *k, *lda, *incx, *incy)))
    core::chbmv(uplo, n, k, alpha, a, lda, x, incx, beta, y, incy);
}
void qel_core_zhbmv_(const char* uplo, const core_int* n, const core_int* k, const complex16* alpha,
                     const complex16* a, const core_int* lda, const complex16* x, const core_int* incx,
                     const complex16* beta, complex16* y, const core_int* incy) {
  if (good("ZHBMV ", sbmv_bad_argument(uplo, *n, *k, *lda, *incx, *incy)))
    core::zhbmv(uplo, n, k, alpha, a, lda, x, incx, beta, y, incy);
}

void qel_core_sspmv_(const char* uplo, const core_int* n, const float* alpha, const float* ap, const float* x,
                     const core_int* incx, const float* beta, float* y, const core_int* incy) {
  if (good("SSPMV ", spmv_bad_argument(uplo, *n, *incx, *incy)))
    core::sspmv(uplo, n, alpha, ap, x, incx, beta, y, incy);
}
void qel_core_dspmv_(const char* uplo, const core_int* n, const double* alpha, const double* ap,
                     const double* x, const core_int* incx, const double* beta, double* y,
                     const core_int* incy) {
  if (good("DSPMV ", spmv_bad_argument(uplo, *n, *incx, *incy)))
    core::dspmv(uplo, n, alpha, ap, x, incx, beta, y, incy);
}
void qel_core_chpmv_(const char* uplo, const core_int* n, const complex8* alpha, const complex8* ap,
                     const complex8* x, const core_int* incx, const complex8* beta, complex8* y,
                     const core_int* incy) {
  if (good("CHPMV ", spmv_bad_argument(uplo, *n, *incx, *incy)))
    core::chpmv(uplo, n, alpha, ap, x, incx, beta, y, incy);
}
void qel_core_zhpmv_(const char* uplo, const core_int* n, const complex16* alpha, const complex16* ap,
                     const complex16* x, const core_int* incx, const complex16* beta, complex16* y,
                     const core_int* incy) {
  if (good("ZHPMV ", spmv_bad_argument(uplo, *n, *incx, *incy)))
    core::zhpmv(uplo, n, alpha, ap, x, incx, beta, y, incy);
}

void qel_core_strmv_(const char* uplo, const char* trans, const char* diag, const core_int* n, const float* a,
                     const core_int* lda, float* x, const core_int* incx) {
  if (good("STRMV ", trmv_bad_argument(uplo, trans, diag, *n, *lda, *incx)))
    core::strmv(uplo, trans, diag, n, a, lda, x, incx);
}
void qel_core_dtrmv_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                     const double* a, const core_int* lda, double* x, const core_int* incx) {
  if (good("DTRMV ", trmv_bad_argument(uplo, trans, diag, *n, *lda, *incx)))
    core::dtrmv(uplo, trans, diag, n, a, lda, x, incx);
}
void qel_core_ctrmv_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                     const complex8* a, const core_int* lda, complex8* x, const core_int* incx) {
  if (good("CTRMV ", trmv_bad_argument(uplo, trans, diag, *n, *lda, *incx)))
    core::ctrmv(uplo, trans, diag, n, a, lda, x, incx);
}
void qel_core_ztrmv_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                     const complex16* a, const core_int* lda, complex16* x, const core_int* incx) {
  if (good("ZTRMV ", trmv_bad_argument(uplo, trans, diag, *n, *lda, *incx)))
    core::ztrmv(uplo, trans, diag, n, a, lda, x, incx);
}

void qel_core_stbmv_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                     const core_int* k, const float* a, const core_int* lda, float* x, const core_int* incx) {
  if (good("STBMV ", tbmv_bad_argument(uplo, trans, diag, *n, *k, *lda, *incx)))
    core::stbmv(uplo, trans, diag, n, k, a, lda, x, incx);
}
void qel_core_dtbmv_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                     const core_int* k, const double* a, const core_int* lda, double* x,
                     const core_int* incx) {
  if (good("DTBMV ", tbmv_bad_argument(uplo, trans, diag, *n, *k, *lda, *incx)))
    core::dtbmv(uplo, trans, diag, n, k, a, lda, x, incx);
}
void qel_core_ctbmv_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                     const core_int* k, const complex8* a, const core_int* lda, complex8* x,
                     const core_int* incx) {
  if (good("CTBMV ", tbmv_bad_argument(uplo, trans, diag, *n, *k, *lda, *incx)))
    core::ctbmv(uplo, trans, diag, n, k, a, lda, x, incx);
}
void qel_core_ztbmv_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                     const core_int* k, const complex16* a, const core_int* lda, complex16* x,
                     const core_int* incx) {
  if (good("ZTBMV ", tbmv_bad_argument(uplo, trans, diag, *n, *k, *lda, *incx)))
    core::ztbmv(uplo, trans, diag, n, k, a, lda, x, incx);
}

void qel_core_stpmv_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                     const float* ap, float* x, const core_int* incx) {
  if (good("STPMV ", tpmv_bad_argument(uplo, trans, diag, *n, *incx)))
    core::stpmv(uplo, trans, diag, n, ap, x, incx);
}
void qel_core_dtpmv_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                     const double* ap, double* x, const core_int* incx) {
  if (good("DTPMV ", tpmv_bad_argument(uplo, trans, diag, *n, *incx)))
    core::dtpmv(uplo, trans, diag, n, ap, x, incx);
}
void qel_core_ctpmv_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                     const complex8* ap, complex8* x, const core_int* incx) {
  if (good("CTPMV ", tpmv_bad_argument(uplo, trans, diag, *n, *incx)))
    core::ctpmv(uplo, trans, diag, n, ap, x, incx);
}
void qel_core_ztpmv_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                     const complex16* ap, complex16* x, const core_int* incx) {
  if (good("ZTPMV ", tpmv_bad_argument(uplo, trans, diag, *n, *incx)))
    core::ztpmv(uplo, trans, diag, n, ap, x, incx);
}

void qel_core_strsv_(const char* uplo, const char* trans, const char* diag, const core_int* n, const float* a,
                     const core_int* lda, float* x, const core_int* incx) {
  if (good("STRSV ", trmv_bad_argument(uplo, trans, diag, *n, *lda, *incx)))
    core::strsv(uplo, trans, diag, n, a, lda, x, incx);
}
void qel_core_dtrsv_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                     const double* a, const core_int* lda, double* x, const core_int* incx) {
  if (good("DTRSV ", trmv_bad_argument(uplo, trans, diag, *n, *lda, *incx)))
    core::dtrsv(uplo, trans, diag, n, a, lda, x, incx);
}
void qel_core_ctrsv_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                     const complex8* a, const core_int* lda, complex8* x, const core_int* incx) {
  if (good("CTRSV ", trmv_bad_argument(uplo, trans, diag, *n, *lda, *incx)))
    core::ctrsv(uplo, trans, diag, n, a, lda, x, incx);
}
void qel_core_ztrsv_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                     const complex16* a, const core_int* lda, complex16* x, const core_int* incx) {
  if (good("ZTRSV ", trmv_bad_argument(uplo, trans, diag, *n, *lda, *incx)))
    core::ztrsv(uplo, trans, diag, n, a, lda, x, incx);
}

void qel_core_stbsv_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                     const core_int* k, const float* a, const core_int* lda, float* x, const core_int* incx) {
  if (good("STBSV ", tbmv_bad_argument(uplo, trans, diag, *n, *k, *lda, *incx)))
    core::stbsv(uplo, trans, diag, n, k, a, lda, x, incx);
}
void qel_core_dtbsv_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                     const core_int* k, const double* a, const core_int* lda, double* x,
                     const core_int* incx) {
  if (good("DTBSV ", tbmv_bad_argument(uplo, trans, diag, *n, *k, *lda, *incx)))
    core::dtbsv(uplo, trans, diag, n, k, a, lda, x, incx);
}
void qel_core_ctbsv_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                     const core_int* k, const complex8* a, const core_int* lda, complex8* x,
                     const core_int* incx) {
  if (good("CTBSV ", tbmv_bad_argument(uplo, trans, diag, *n, *k, *lda, *incx)))
    core::ctbsv(uplo, trans, diag, n, k, a, lda, x, incx);
}
void qel_core_ztbsv_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                     const core_int* k, const complex16* a, const core_int* lda, complex16* x,
                     const core_int* incx) {
  if (good("ZTBSV ", tbmv_bad_argument(uplo, trans, diag, *n, *k, *lda, *incx)))
    core::ztbsv(uplo, trans, diag, n, k, a, lda, x, incx);
}

void qel_core_stpsv_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                     const float* ap, float* x, const core_int* incx) {
  if (good("STPSV ", tpmv_bad_argument(uplo, trans, diag, *n, *incx)))
    core::stpsv(uplo, trans, diag, n, ap, x, incx);
}
void qel_core_dtpsv_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                     const double* ap, double* x, const core_int* incx) {
  if (good("DTPSV ", tpmv_bad_argument(uplo, trans, diag, *n, *incx)))
    core::dtpsv(uplo, trans, diag, n, ap, x, incx);
}
void qel_core_ctpsv_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                     const complex8* ap, complex8* x, const core_int* incx) {
  if (good("CTPSV ", tpmv_bad_argument(uplo, trans, diag, *n, *incx)))
    core::ctpsv(uplo, trans, diag, n, ap, x, incx);
}
void qel_core_ztpsv_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                     const complex16* ap, complex16* x, const core_int* incx) {
  if (good("ZTPSV ", tpmv_bad_argument(uplo, trans, diag, *n, *incx)))
    core::ztpsv(uplo, trans, diag, n, ap, x, incx);
}

void qel_core_sger_(const core_int* m, const core_int* n, const float* alpha, const float* x,
                    const core_int* incx, const float* y, const core_int* incy, float* a,
                    const core_int* lda) {
  if (good("SGER  ", ger_bad_argument(*m, *n, *incx, *incy, *lda)))
    core::sger(m, n, alpha, x, incx, y, incy, a, lda);
}
void qel_core_dger_(const core_int* m, const core_int* n, const double* alpha, const double* x,
                    const core_int* incx, const double* y, const core_int* incy, double* a,
                    const core_int* lda) {
  if (good("DGER  ", ger_bad_argument(*m, *n, *incx, *incy, *lda)))
    core::dger(m, n, alpha, x, incx, y, incy, a, lda);
}

void qel_core_cgeru_(const core_int* m, const core_int* n, const complex8* alpha, const complex8* x,
                     const core_int* incx, const complex8* y, const core_int* incy, complex8* a,
                     const core_int* lda) {
  if (good("CGERU ", ger_bad_argument(*m, *n, *incx, *incy, *lda)))
    core::cgeru(m, n, alpha, x, incx, y, incy, a, lda);
}
void qel_core_zgeru_(const core_int* m, const core_int* n, const complex16* alpha, const complex16* x,
                     const core_int* incx, const complex16* y, const core_int* incy, complex16* a,
                     const core_int* lda) {
  if (good("ZGERU ", ger_bad_argument(*m, *n, *incx, *incy, *lda)))
    core::zgeru(m, n, alpha, x, incx, y, incy, a, lda);
}

void qel_core_cgerc_(const core_int* m, const core_int* n, const complex8* alpha, const complex8* x,
                     const core_int* incx, const complex8* y, const core_int* incy, complex8* a,
                     const core_int* lda) {
  if (good("CGERC ", ger_bad_argument(*m, *n, *incx, *incy, *lda)))
    core::cgerc(m, n, alpha, x, incx, y, incy, a, lda);
}
void qel_core_zgerc_(const core_int* m, const core_int* n, const complex16* alpha, const complex16* x,
                     const core_int* incx, const complex16* y, const core_int* incy, complex16* a,
                     const core_int* lda) {
  if (good("ZGERC ", ger_bad_argument(*m, *n, *incx, *incy, *lda)))
    core::zgerc(m, n, alpha, x, incx, y, incy, a, lda);
}

void qel_core_ssyr_(const char* uplo, const core_int* n, const float* alpha, const float* x,
                    const core_int* incx, float* a, const core_int* lda) {
  if (good("SSYR  ", syr_bad_argument(uplo, *n, *incx, *lda))) core::ssyr(uplo, n, alpha, x, incx, a, lda);
}
void qel_core_dsyr_(const char* uplo, const core_int* n, const double* alpha, const double* x,
                    const core_int* incx, double* a, const core_int* lda) {
  if (good("DSYR  ", syr_bad_argument(uplo, *n, *incx, *lda))) core::dsyr(uplo, n, alpha, x, incx, a, lda);
}
void qel_core_cher_(const char* uplo, const core_int* n, const float* alpha, const complex8* x,
                    const core_int* incx, complex8* a, const core_int* lda) {
  if (good("CHER  ", syr_bad_argument(uplo, *n, *incx, *lda))) core::cher(uplo, n, alpha, x, incx, a, lda);
}
void qel_core_zher_(const char* uplo, const core_int* n, const double* alpha, const complex16* x,
                    const core_int* incx, complex16* a, const core_int* lda) {
  if (good("ZHER  ", syr_bad_argument(uplo, *n, *incx, *lda))) core::zher(uplo, n, alpha, x, incx, a, lda);
}

void qel_core_sspr_(const char* uplo, const core_int* n, const float* alpha, const float* x,
                    const core_int* incx, float* ap) {
  if (good("SSPR  ", spr_bad_argument(uplo, *n, *incx))) core::sspr(uplo, n, alpha, x, incx, ap);
}
void qel_core_dspr_(const char* uplo, const core_int* n, const double* alpha, const double* x,
                    const core_int* incx, double* ap) {
  if (good("DSPR  ", spr_bad_argument(uplo, *n, *incx))) core::dspr(uplo, n, alpha, x, incx, ap);
}
void qel_core_chpr_(const char* uplo, const core_int* n, const float* alpha, const complex8* x,
                    const core_int* incx, complex8* ap) {
  if (good("CHPR  ", spr_bad_argument(uplo, *n, *incx))) core::chpr(uplo, n, alpha, x, incx, ap);
}
void qel_core_zhpr_(const char* uplo, const core_int* n, const double* alpha, const complex16* x,
                    const core_int* incx, complex16* ap) {
  if (good("ZHPR  ", spr_bad_argument(uplo, *n, *incx))) core::zhpr(uplo, n, alpha, x, incx, ap);
}

void qel_core_ssyr2_(const char* uplo, const core_int* n, const float* alpha, const float* x,
                     const core_int* incx, const float* y, const core_int* incy, float* a,
                     const core_int* lda) {
  if (good("SSYR2 ", syr2_bad_argument(uplo, *n, *incx, *incy, *lda)))
    core::ssyr2(uplo, n, alpha, x, incx, y, incy, a, lda);
}
void qel_core_dsyr2_(const char* uplo, const core_int* n, const double* alpha, const double* x,
                     const core_int* incx, const double* y, const core_int* incy, double* a,
                     const core_int* lda) {
  if (good("DSYR2 ", syr2_bad_argument(uplo, *n, *incx, *incy, *lda)))
    core::dsyr2(uplo, n, alpha, x, incx, y, incy, a, lda);
}
void qel_core_cher2_(const char* uplo, const core_int* n, const complex8* alpha, const complex8* x,
                     const core_int* incx, const complex8* y, const core_int* incy, complex8* a,
                     const core_int* lda) {
  if (good("CHER2 ", syr2_bad_argument(uplo, *n, *incx, *incy, *lda)))
    core::cher2(uplo, n, alpha, x, incx, y, incy, a, lda);
}
void qel_core_zher2_(const char* uplo, const core_int* n, const complex16* alpha, const complex16* x,
                     const core_int* incx, const complex16* y, const core_int* incy, complex16* a,
                     const core_int* lda) {
  if (good("ZHER2 ", syr2_bad_argument(uplo, *n, *incx, *incy, *lda)))
    core::zher2(uplo, n, alpha, x, incx, y, incy, a, lda);
}

void qel_core_sspr2_(const char* uplo, const core_int* n, const float* alpha, const float* x,
                     const core_int* incx, const float* y, const core_int* incy, float* ap) {
  if (good("SSPR2 ", spr2_bad_argument(uplo, *n, *incx, *incy)))
    core::sspr2(uplo, n, alpha, x, incx, y, incy, ap);
}
void qel_core_dspr2_(const char* uplo, const core_int* n, const double* alpha, const double* x,
                     const core_int* incx, const double* y, const core_int* incy, double* ap) {
  if (good("DSPR2 ", spr2_bad_argument(uplo, *n, *incx, *incy)))
    core::dspr2(uplo, n, alpha, x, incx, y, incy, ap);
}
void qel_core_chpr2_(const char* uplo, const core_int* n, const complex8* alpha, const complex8* x,
                     const core_int* incx, const complex8* y, const core_int* incy, complex8* ap) {
  if (good("CHPR2 ", spr2_bad_argument(uplo, *n, *incx, *incy)))
    core::chpr2(uplo, n, alpha, x, incx, y, incy, ap);
}
void qel_core_zhpr2_(const char* uplo, const core_int* n, const complex16* alpha, const complex16* x,
                     const core_int* incx, const complex16* y, const core_int* incy, complex16* ap) {
  if (good("ZHPR2 ", spr2_bad_argument(uplo, *n, *incx, *incy)))
    core::zhpr2(uplo, n, alpha, x, incx, y, incy, ap);
}

// Level 3

void qel_core_sgemm_(const char* transa, const char* transb, const core_int* m, const core_int* n,
                     const core_int* k, const float* alpha, const float* a, const core_int* lda,
                     const float* b, const core_int* ldb, const float* beta, float* c, const core_int* ldc) {
  if (good("SGEMM ", gemm_bad_argument(transa, transb, *m, *n, *k, *lda, *ldb, *ldc)))
    core::sgemm(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
void qel_core_dgemm_(const char* transa, const char* transb, const core_int* m, const core_int* n,
                     const core_int* k, const double* alpha, const double* a, const core_int* lda,
                     const double* b, const core_int* ldb, const double* beta, double* c,
                     const core_int* ldc) {
  if (good("DGEMM ", gemm_bad_argument(transa, transb, *m, *n, *k, *lda, *ldb, *ldc)))
    core::dgemm(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
void qel_core_cgemm_(const char* transa, const char* transb, const core_int* m, const core_int* n,
                     const core_int* k, const complex8* alpha, const complex8* a, const core_int* lda,
                     const complex8* b, const core_int* ldb, const complex8* beta, complex8* c,
                     const core_int* ldc) {
  if (good("CGEMM ", gemm_bad_argument(transa, transb, *m, *n, *k, *lda, *ldb, *ldc)))
    core::cgemm(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
void qel_core_zgemm_(const char* transa, const char* transb, const core_int* m, const core_int* n,
                     const core_int* k, const complex16* alpha, const complex16* a, const core_int* lda,
                     const complex16* b, const core_int* ldb, const complex16* beta, complex16* c,
                     const core_int* ldc) {
  if (good("ZGEMM ", gemm_bad_argument(transa, transb, *m, *n, *k, *lda, *ldb, *ldc)))
    core::zgemm(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}

void qel_core_ssymm_(const char* side, const char* uplo, const core_int* m, const core_int* n,
                     const float* alpha, const float* a, const core_int* lda, const float* b,
                     const core_int* ldb, const float* beta, float* c, const core_int* ldc) {
  if (good("SSYMM ", symm_bad_argument(side, uplo, *m, *n, *lda, *ldb, *ldc)))
    core::ssymm(side, uplo, m, n, alpha, a, lda, b, ldb, beta, c, ldc);
}
void qel_core_dsymm_(const char* side, const char* uplo, const core_int* m, const core_int* n,
                     const double* alpha, const double* a, const core_int* lda, const double* b,
                     const core_int* ldb, const double* beta, double* c, const core_int* ldc) {
  if (good("DSYMM ", symm_bad_argument(side, uplo, *m, *n, *lda, *ldb, *ldc)))
    core::dsymm(side, uplo, m, n, alpha, a, lda, b, ldb, beta, c, ldc);
}

void qel_core_chemm_(const char* side, const char* uplo, const core_int* m, const core_int* n,
                     const complex8* alpha, const complex8* a, const core_int* lda, const complex8* b,
                     const core_int* ldb, const complex8* beta, complex8* c, const core_int* ldc) {
  if (good("CHEMM ", symm_bad_argument(side, uplo, *m, *n, *lda, *ldb, *ldc)))
    core::chemm(side, uplo, m, n, alpha, a, lda, b, ldb, beta, c, ldc);
}
void qel_core_zhemm_(const char* side, const char* uplo, const core_int* m, const core_int* n,
                     const complex16* alpha, const complex16* a, const core_int* lda, const complex16* b,
                     const core_int* ldb, const complex16* beta, complex16* c, const core_int* ldc) {
  if (good("ZHEMM ", symm_bad_argument(side, uplo, *m, *n, *lda, *ldb, *ldc)))
    core::zhemm(side, uplo, m, n, alpha, a, lda, b, ldb, beta, c, ldc);
}

void qel_core_ssyrk_(const char* uplo, const char* trans, const core_int* n, const core_int* k,
                     const float* alpha, const float* a, const core_int* lda, const float* beta, float* c,
                     const core_int* ldc) {
  if (good("SSYRK ", syrk_bad_argument(update_letters::kNtc, uplo, trans, *n, *k, *lda, *ldc)))
    core::ssyrk(uplo, trans, n, k, alpha, a, lda, beta, c, ldc);
}
void qel_core_dsyrk_(const char* uplo, const char* trans, const core_int* n, const core_int* k,
                     const double* alpha, const double* a, const core_int* lda, const double* beta, double* c,
                     const core_int* ldc) {
  if (good("DSYRK ", syrk_bad_argument(update_letters::kNtc, uplo, trans, *n, *k, *lda, *ldc)))
    core::dsyrk(uplo, trans, n, k, alpha, a, lda, beta, c, ldc);
}

void qel_core_cherk_(const char* uplo, const char* trans, const core_int* n, const core_int* k,
                     const float* alpha, const complex8* a, const core_int* lda, const float* beta,
                     complex8* c, const core_int* ldc) {
  if (good("CHERK ", syrk_bad_argument(update_letters::kNc, uplo, trans, *n, *k, *lda, *ldc)))
    core::cherk(uplo, trans, n, k, alpha, a, lda, beta, c, ldc);
}
void qel_core_zherk_(const char* uplo, const char* trans, const core_int* n, const core_int* k,
                     const double* alpha, const complex16* a, const core_int* lda, const double* beta,
                     complex16* c, const core_int* ldc) {
  if (good("ZHERK ", syrk_bad_argument(update_letters::kNc, uplo, trans, *n, *k, *lda, *ldc)))
    core::zherk(uplo, trans, n, k, alpha, a, lda, beta, c, ldc);
}

void qel_core_ssyr2k_(const char* uplo, const char* trans, const core_int* n, const core_int* k,
                      const float* alpha, const float* a, const core_int* lda, const float* b,
                      const core_int* ldb, const float* beta, float* c, const core_int* ldc) {
  if (good("SSYR2K", syr2k_bad_argument(update_letters::kNtc, uplo, trans, *n, *k, *lda, *ldb, *ldc)))
    core::ssyr2k(uplo, trans, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
void qel_core_dsyr2k_(const char* uplo, const char* trans, const core_int* n, const core_int* k,
                      const double* alpha, const double* a, const core_int* lda, const double* b,
                      const core_int* ldb, const double* beta, double* c, const core_int* ldc) {
  if (good("DSYR2K", syr2k_bad_argument(update_letters::kNtc, uplo, trans, *n, *k, *lda, *ldb, *ldc)))
    core::dsyr2k(uplo, trans, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}

void qel_core_cher2k_(const char* uplo, const char* trans, const core_int* n, const core_int* k,
                      const complex8* alpha, const complex8* a, const core_int* lda, const complex8* b,
                      const core_int* ldb, const float* beta, complex8* c, const core_int* ldc) {
  if (good("CHER2K", syr2k_bad_argument(update_letters::kNc, uplo, trans, *n, *k, *lda, *ldb, *ldc)))
    core::cher2k(uplo, trans, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
void qel_core_zher2k_(const char* uplo, const char* trans, const core_int* n, const core_int* k,
                      const complex16* alpha, const complex16* a, const core_int* lda, const complex16* b,
                      const core_int* ldb, const double* beta, complex16* c, const core_int* ldc) {
  if (good("ZHER2K", syr2k_bad_argument(update_letters::kNc, uplo, trans, *n, *k, *lda, *ldb, *ldc)))
    core::zher2k(uplo, trans, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}

void qel_core_strmm_(const char* side, const char* uplo, const char* transa, const char* diag,
                     const core_int* m, const core_int* n, const float* alpha, const float* a,
                     const core_int* lda, float* b, const core_int* ldb) {
  if (good("STRMM ", trmm_bad_argument(side, uplo, transa, diag, *m, *n, *lda, *ldb)))
    core::strmm(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}
void qel_core_dtrmm_(const char* side, const char* uplo, const char* transa, const char* diag,
                     const core_int* m, const core_int* n, const double* alpha, const double* a,
                     const core_int* lda, double* b, const core_int* ldb) {
  if (good("DTRMM ", trmm_bad_argument(side, uplo, transa, diag, *m, *n, *lda, *ldb)))
    core::dtrmm(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}
void qel_core_ctrmm_(const char* side, const char* uplo, const char* transa, const char* diag,
                     const core_int* m, const core_int* n, const complex8* alpha, const complex8* a,
                     const core_int* lda, complex8* b, const core_int* ldb) {
  if (good("CTRMM ", trmm_bad_argument(side, uplo, transa, diag, *m, *n, *lda, *ldb)))
    core::ctrmm(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}
void qel_core_ztrmm_(const char* side, const char* uplo, const char* transa, const char* diag,
                     const core_int* m, const core_int* n, const complex16* alpha, const complex16* a,
                     const core_int* lda, complex16* b, const core_int* ldb) {
  if (good("ZTRMM ", trmm_bad_argument(side, uplo, transa, diag, *m, *n, *lda, *ldb)))
    core::ztrmm(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}

void qel_core_strsm_(const char* side, const char* uplo, const char* transa, const char* diag,
                     const core_int* m, const core_int* n, const float* alpha, const float* a,
                     const core_int* lda, float* b, const core_int* ldb) {
  if (good("STRSM ", trmm_bad_argument(side, uplo, transa, diag, *m, *n, *lda, *ldb)))
    core::strsm(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}
void qel_core_dtrsm_(const char* side, const char* uplo, const char* transa, const char* diag,
                     const core_int* m, const core_int* n, const double* alpha, const double* a,
                     const core_int* lda, double* b, const core_int* ldb) {
  if (good("DTRSM ", trmm_bad_argument(side, uplo, transa, diag, *m, *n, *lda, *ldb)))
    core::dtrsm(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}
void qel_core_ctrsm_(const char* side, const char* uplo, const char* transa, const char* diag,
                     const core_int* m, const core_int* n, const complex8* alpha, const complex8* a,
                     const core_int* lda, complex8* b, const core_int* ldb) {
  if (good("CTRSM ", trmm_bad_argument(side, uplo, transa, diag, *m, *n, *lda, *ldb)))
    core::ctrsm(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}
void qel_core_ztrsm_(const char* side, const char* uplo, const char* transa, const char* diag,
                     const core_int* m, const core_int* n, const complex16* alpha, const complex16* a,
                     const core_int* lda, complex16* b, const core_int* ldb) {
  if (good("ZTRSM ", trmm_bad_argument(side, uplo, transa, diag, *m, *n, *lda, *ldb)))
    core::ztrsm(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}

}  // extern "C"

}  // namespace qel
