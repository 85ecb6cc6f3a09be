// SPDX-License-Identifier: BSD-3-Clause
// C names of BLAS level 2 over the core; the shapes do the work.
#include "blas/level2/level2.h"

#include "dropin/cblas_names.h"
#include "dropin/cblas_shapes2.h"

namespace qel::dropin {

extern "C" {

void cblas_sgemv(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE trans, int m, int n, float alpha, const float* a,
                 int lda, const float* x, int incx, float beta, float* y, int incy) {
  gemv({"cblas_sgemv", layout}, core::sgemv, trans, m, n, &alpha, a, lda, x, incx, &beta, y, incy);
}
void cblas_dgemv(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE trans, int m, int n, double alpha, const double* a,
                 int lda, const double* x, int incx, double beta, double* y, int incy) {
  gemv({"cblas_dgemv", layout}, core::dgemv, trans, m, n, &alpha, a, lda, x, incx, &beta, y, incy);
}
void cblas_cgemv(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE trans, int m, int n, const complex8* alpha,
                 const complex8* a, int lda, const complex8* x, int incx, const complex8* beta, complex8* y,
                 int incy) {
  gemv({"cblas_cgemv", layout}, core::cgemv, trans, m, n, alpha, a, lda, x, incx, beta, y, incy);
}
void cblas_zgemv(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE trans, int m, int n, const complex16* alpha,
                 const complex16* a, int lda, const complex16* x, int incx, const complex16* beta,
                 complex16* y, int incy) {
  gemv({"cblas_zgemv", layout}, core::zgemv, trans, m, n, alpha, a, lda, x, incx, beta, y, incy);
}

void cblas_sgbmv(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE trans, int m, int n, int kl, int ku, float alpha,
                 const float* a, int lda, const float* x, int incx, float beta, float* y, int incy) {
  gbmv({"cblas_sgbmv", layout}, core::sgbmv, trans, m, n, kl, ku, &alpha, a, lda, x, incx, &beta, y, incy);
}
void cblas_dgbmv(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE trans, int m, int n, int kl, int ku, double alpha,
                 const double* a, int lda, const double* x, int incx, double beta, double* y, int incy) {
  gbmv({"cblas_dgbmv", layout}, core::dgbmv, trans, m, n, kl, ku, &alpha, a, lda, x, incx, &beta, y, incy);
}
void cblas_cgbmv(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE trans, int m, int n, int kl, int ku,
                 const complex8* alpha, const complex8* a, int lda, const complex8* x, int incx,
                 const complex8* beta, complex8* y, int incy) {
  gbmv({"cblas_cgbmv", layout}, core::cgbmv, trans, m, n, kl, ku, alpha, a, lda, x, incx, beta, y, incy);
}
void cblas_zgbmv(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE trans, int m, int n, int kl, int ku,
                 const complex16* alpha, const complex16* a, int lda, const complex16* x, int incx,
                 const complex16* beta, complex16* y, int incy) {
  gbmv({"cblas_zgbmv", layout}, core::zgbmv, trans, m, n, kl, ku, alpha, a, lda, x, incx, beta, y, incy);
}

void cblas_ssymv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, float alpha, const float* a, int lda,
                 const float* x, int incx, float beta, float* y, int incy) {
  symv({"cblas_ssymv", layout}, core::ssymv, uplo, n, &alpha, a, lda, x, incx, &beta, y, incy);
}
void cblas_dsymv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, double alpha, const double* a, int lda,
                 const double* x, int incx, double beta, double* y, int incy) {
  symv({"cblas_dsymv", layout}, core::dsymv, uplo, n, &alpha, a, lda, x, incx, &beta, y, incy);
}
void cblas_chemv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, const complex8* alpha, const complex8* a,
                 int lda, const complex8* x, int incx, const complex8* beta, complex8* y, int incy) {
  symv({"cblas_chemv", layout}, core::chemv, uplo, n, alpha, a, lda, x, incx, beta, y, incy);
}
void cblas_zhemv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, const complex16* alpha, const complex16* a,
                 int lda, const complex16* x, int incx, const complex16* beta, complex16* y, int incy) {
  symv({"cblas_zhemv", layout}, core::zhemv, uplo, n, alpha, a, lda, x, incx, beta, y, incy);
}

void cblas_ssbmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, int k, float alpha, const float* a, int lda,
                 const float* x, int incx, float beta, float* y, int incy) {
  sbmv({"cblas_ssbmv", layout}, core::ssbmv, uplo, n, k, &alpha, a, lda, x, incx, &beta, y, incy);
}
void cblas_dsbmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, int k, double alpha, const double* a, int lda,
                 const double* x, int incx, double beta, double* y, int incy) {
  sbmv({"cblas_dsbmv", layout}, core::dsbmv, uplo, n, k, &alpha, a, lda, x, incx, &beta, y, incy);
}
void cblas_chbmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, int k, const complex8* alpha, const complex8* a,
                 int lda, const complex8* x, int incx, const complex8* beta, complex8* y, int incy) {
  sbmv({"cblas_chbmv", layout}, core::chbmv, uplo, n, k, alpha, a, lda, x, incx, beta, y, incy);
}
void cblas_zhbmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, int k, const complex16* alpha,
                 const complex16* a, int lda, const complex16* x, int incx, const complex16* beta,
                 complex16* y, int incy) {
  sbmv({"cblas_zhbmv", layout}, core::zhbmv, uplo, n, k, alpha, a, lda, x, incx, beta, y, incy);
}

void cblas_sspmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, float alpha, const float* ap, const float* x,
                 int incx, float beta, float* y, int incy) {
  spmv({"cblas_sspmv", layout}, core::sspmv, uplo, n, &alpha, ap, x, incx, &beta, y, incy);
}
void cblas_dspmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, double alpha, const double* ap, const double* x,
                 int incx, double beta, double* y, int incy) {
  spmv({"cblas_dspmv", layout}, core::dspmv, uplo, n, &alpha, ap, x, incx, &beta, y, incy);
}
void cblas_chpmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, const complex8* alpha, const complex8* ap,
                 const complex8* x, int incx, const complex8* beta, complex8* y, int incy) {
  spmv({"cblas_chpmv", layout}, core::chpmv, uplo, n, alpha, ap, x, incx, beta, y, incy);
}
void cblas_zhpmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, const complex16* alpha, const complex16* ap,
                 const complex16* x, int incx, const complex16* beta, complex16* y, int incy) {
  spmv({"cblas_zhpmv", layout}, core::zhpmv, uplo, n, alpha, ap, x, incx, beta, y, incy);
}

void cblas_strmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const float* a, int lda, float* x, int incx) {
  trmv({"cblas_strmv", layout}, core::strmv, uplo, trans, diag, n, a, lda, x, incx);
}
void cblas_dtrmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const double* a, int lda, double* x, int incx) {
  trmv({"cblas_dtrmv", layout}, core::dtrmv, uplo, trans, diag, n, a, lda, x, incx);
}
void cblas_ctrmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const complex8* a, int lda, complex8* x, int incx) {
  trmv({"cblas_ctrmv", layout}, core::ctrmv, uplo, trans, diag, n, a, lda, x, incx);
}
void cblas_ztrmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const complex16* a, int lda, complex16* x, int incx) {
  trmv({"cblas_ztrmv", layout}, core::ztrmv, uplo, trans, diag, n, a, lda, x, incx);
}
void cblas_strsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const float* a, int lda, float* x, int incx) {
  trmv({"cblas_strsv", layout}, core::strsv, uplo, trans, diag, n, a, lda, x, incx);
}
void cblas_dtrsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const double* a, int lda, double* x, int incx) {
  trmv({"cblas_dtrsv", layout}, core::dtrsv, uplo, trans, diag, n, a, lda, x, incx);
}
void cblas_ctrsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const complex8* a, int lda, complex8* x, int incx) {
  trmv({"cblas_ctrsv", layout}, core::ctrsv, uplo, trans, diag, n, a, lda, x, incx);
}
void cblas_ztrsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const complex16* a, int lda, complex16* x, int incx) {
  trmv({"cblas_ztrsv", layout}, core::ztrsv, uplo, trans, diag, n, a, lda, x, incx);
}

void cblas_stbmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n, int k,
                 const float* a, int lda, float* x, int incx) {
  tbmv({"cblas_stbmv", layout}, core::stbmv, uplo, trans, diag, n, k, a, lda, x, incx);
}
void cblas_dtbmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n, int k,
                 const double* a, int lda, double* x, int incx) {
  tbmv({"cblas_dtbmv", layout}, core::dtbmv, uplo, trans, diag, n, k, a, lda, x, incx);
}
void cblas_ctbmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n, int k,
                 const complex8* a, int lda, complex8* x, int incx) {
  tbmv({"cblas_ctbmv", layout}, core::ctbmv, uplo, trans, diag, n, k, a, lda, x, incx);
}
void cblas_ztbmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n, int k,
                 const complex16* a, int lda, complex16* x, int incx) {
  tbmv({"cblas_ztbmv", layout}, core::ztbmv, uplo, trans, diag, n, k, a, lda, x, incx);
}
void cblas_stbsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n, int k,
                 const float* a, int lda, float* x, int incx) {
  tbmv({"cblas_stbsv", layout}, core::stbsv, uplo, trans, diag, n, k, a, lda, x, incx);
}
void cblas_dtbsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n, int k,
                 const double* a, int lda, double* x, int incx) {
  tbmv({"cblas_dtbsv", layout}, core::dtbsv, uplo, trans, diag, n, k, a, lda, x, incx);
}
void cblas_ctbsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n, int k,
                 const complex8* a, int lda, complex8* x, int incx) {
  tbmv({"cblas_ctbsv", layout}, core::ctbsv, uplo, trans, diag, n, k, a, lda, x, incx);
}
void cblas_ztbsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n, int k,
                 const complex16* a, int lda, complex16* x, int incx) {
  tbmv({"cblas_ztbsv", layout}, core::ztbsv, uplo, trans, diag, n, k, a, lda, x, incx);
}

void cblas_stpmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const float* ap, float* x, int incx) {
  tpmv({"cblas_stpmv", layout}, core::stpmv, uplo, trans, diag, n, ap, x, incx);
}
void cblas_dtpmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const double* ap, double* x, int incx) {
  tpmv({"cblas_dtpmv", layout}, core::dtpmv, uplo, trans, diag, n, ap, x, incx);
}
void cblas_ctpmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const complex8* ap, complex8* x, int incx) {
  tpmv({"cblas_ctpmv", layout}, core::ctpmv, uplo, trans, diag, n, ap, x, incx);
}
void cblas_ztpmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const complex16* ap, complex16* x, int incx) {
  tpmv({"cblas_ztpmv", layout}, core::ztpmv, uplo, trans, diag, n, ap, x, incx);
}
void cblas_stpsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const float* ap, float* x, int incx) {
  tpmv({"cblas_stpsv", layout}, core::stpsv, uplo, trans, diag, n, ap, x, incx);
}
void cblas_dtpsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const double* ap, double* x, int incx) {
  tpmv({"cblas_dtpsv", layout}, core::dtpsv, uplo, trans, diag, n, ap, x, incx);
}
void cblas_ctpsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const complex8* ap, complex8* x, int incx) {
  tpmv({"cblas_ctpsv", layout}, core::ctpsv, uplo, trans, diag, n, ap, x, incx);
}
void cblas_ztpsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, int n,
                 const complex16* ap, complex16* x, int incx) {
  tpmv({"cblas_ztpsv", layout}, core::ztpsv, uplo, trans, diag, n, ap, x, incx);
}

void cblas_sger(CBLAS_LAYOUT layout, int m, int n, float alpha, const float* x, int incx, const float* y,
                int incy, float* a, int lda) {
  ger({"cblas_sger", layout}, core::sger, m, n, &alpha, x, incx, y, incy, a, lda);
}
void cblas_dger(CBLAS_LAYOUT layout, int m, int n, double alpha, const double* x, int incx, const double* y,
                int incy, double* a, int lda) {
  ger({"cblas_dger", layout}, core::dger, m, n, &alpha, x, incx, y, incy, a, lda);
}
void cblas_cgeru(CBLAS_LAYOUT layout, int m, int n, const complex8* alpha, const complex8* x, int incx,
                 const complex8* y, int incy, complex8* a, int lda) {
  ger({"cblas_cgeru", layout}, core::cgeru, m, n, alpha, x, incx, y, incy, a, lda);
}
void cblas_zgeru(CBLAS_LAYOUT layout, int m, int n, const complex16* alpha, const complex16* x, int incx,
                 const complex16* y, int incy, complex16* a, int lda) {
  ger({"cblas_zgeru", layout}, core::zgeru, m, n, alpha, x, incx, y, incy, a, lda);
}
void cblas_cgerc(CBLAS_LAYOUT layout, int m, int n, const complex8* alpha, const complex8* x, int incx,
                 const complex8* y, int incy, complex8* a, int lda) {
  gerc({"cblas_cgerc", layout}, core::cgerc, core::cgeru, m, n, alpha, x, incx, y, incy, a, lda);
}
void cblas_zgerc(CBLAS_LAYOUT layout, int m, int n, const complex16* alpha, const complex16* x, int incx,
                 const complex16* y, int incy, complex16* a, int lda) {
  gerc({"cblas_zgerc", layout}, core::zgerc, core::zgeru, m, n, alpha, x, incx, y, incy, a, lda);
}

void cblas_ssyr(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, float alpha, const float* x, int incx, float* a,
                int lda) {
  syr({"cblas_ssyr", layout}, core::ssyr, uplo, n, &alpha, x, incx, a, lda);
}
void cblas_dsyr(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, double alpha, const double* x, int incx,
                double* a, int lda) {
  syr({"cblas_dsyr", layout}, core::dsyr, uplo, n, &alpha, x, incx, a, lda);
}
void cblas_cher(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, float alpha, const complex8* x, int incx,
                complex8* a, int lda) {
  syr({"cblas_cher", layout}, core::cher, uplo, n, &alpha, x, incx, a, lda);
}
void cblas_zher(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, double alpha, const complex16* x, int incx,
                complex16* a, int lda) {
  syr({"cblas_zher", layout}, core::zher, uplo, n, &alpha, x, incx, a, lda);
}

void cblas_sspr(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, float alpha, const float* x, int incx,
                float* ap) {
  spr({"cblas_sspr", layout}, core::sspr, uplo, n, &alpha, x, incx, ap);
}
void cblas_dspr(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, double alpha, const double* x, int incx,
                double* ap) {
  spr({"cblas_dspr", layout}, core::dspr, uplo, n, &alpha, x, incx, ap);
}
void cblas_chpr(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, float alpha, const complex8* x, int incx,
                complex8* ap) {
  spr({"cblas_chpr", layout}, core::chpr, uplo, n, &alpha, x, incx, ap);
}
void cblas_zhpr(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, double alpha, const complex16* x, int incx,
                complex16* ap) {
  spr({"cblas_zhpr", layout}, core::zhpr, uplo, n, &alpha, x, incx, ap);
}

void cblas_ssyr2(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, float alpha, const float* x, int incx,
                 const float* y, int incy, float* a, int lda) {
  syr2({"cblas_ssyr2", layout}, core::ssyr2, uplo, n, &alpha, x, incx, y, incy, a, lda);
}
void cblas_dsyr2(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, double alpha, const double* x, int incx,
                 const double* y, int incy, double* a, int lda) {
  syr2({"cblas_dsyr2", layout}, core::dsyr2, uplo, n, &alpha, x, incx, y, incy, a, lda);
}
void cblas_cher2(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, const complex8* alpha, const complex8* x,
                 int incx, const complex8* y, int incy, complex8* a, int lda) {
  syr2({"cblas_cher2", layout}, core::cher2, uplo, n, alpha, x, incx, y, incy, a, lda);
}
void cblas_zher2(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, const complex16* alpha, const complex16* x,
                 int incx, const complex16* y, int incy, complex16* a, int lda) {
  syr2({"cblas_zher2", layout}, core::zher2, uplo, n, alpha, x, incx, y, incy, a, lda);
}

void cblas_sspr2(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, float alpha, const float* x, int incx,
                 const float* y, int incy, float* ap) {
  spr2({"cblas_sspr2", layout}, core::sspr2, uplo, n, &alpha, x, incx, y, incy, ap);
}
void cblas_dspr2(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, double alpha, const double* x, int incx,
                 const double* y, int incy, double* ap) {
  spr2({"cblas_dspr2", layout}, core::dspr2, uplo, n, &alpha, x, incx, y, incy, ap);
}
void cblas_chpr2(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, const complex8* alpha, const complex8* x,
                 int incx, const complex8* y, int incy, complex8* ap) {
  spr2({"cblas_chpr2", layout}, core::chpr2, uplo, n, alpha, x, incx, y, incy, ap);
}
void cblas_zhpr2(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, int n, const complex16* alpha, const complex16* x,
                 int incx, const complex16* y, int incy, complex16* ap) {
  spr2({"cblas_zhpr2", layout}, core::zhpr2, uplo, n, alpha, x, incx, y, incy, ap);
}

}  // extern "C"

}  // namespace qel::dropin
