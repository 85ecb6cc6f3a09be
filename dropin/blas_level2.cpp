// SPDX-License-Identifier: BSD-3-Clause
// Fortran names of BLAS level 2 over the core: arguments are tested, then the integers widened. One shape
// per argument pattern serves all element types.
#include "blas/level2/level2.h"

#include "blas/checks.h"
#include "dropin/blas_names.h"
#include "dropin/widened_call.h"

namespace qel::dropin {

namespace {

template <class Routine, class T>
void gemv(const char* name, Routine* routine, const char* trans, const int* m, const int* n, const T* alpha,
          const T* a, const int* lda, const T* x, const int* incx, const T* beta, T* y, const int* incy) {
  if (refused(name, blas::gemv_bad_argument(trans, *m, *n, *lda, *incx, *incy))) return;
  call(routine, trans, m, n, alpha, a, lda, x, incx, beta, y, incy);
}
template <class Routine, class T>
void gbmv(const char* name, Routine* routine, const char* trans, const int* m, const int* n, const int* kl,
          const int* ku, const T* alpha, const T* a, const int* lda, const T* x, const int* incx,
          const T* beta, T* y, const int* incy) {
  if (refused(name, blas::gbmv_bad_argument(trans, *m, *n, *kl, *ku, *lda, *incx, *incy))) return;
  call(routine, trans, m, n, kl, ku, alpha, a, lda, x, incx, beta, y, incy);
}

// symv and hemv, and so on for the packed and banded forms
template <class Routine, class T>
void symv(const char* name, Routine* routine, const char* uplo, const int* n, const T* alpha, const T* a,
          const int* lda, const T* x, const int* incx, const T* beta, T* y, const int* incy) {
  if (refused(name, blas::symv_bad_argument(uplo, *n, *lda, *incx, *incy))) return;
  call(routine, uplo, n, alpha, a, lda, x, incx, beta, y, incy);
}
template <class Routine, class T>
void sbmv(const char* name, Routine* routine, const char* uplo, const int* n, const int* k, const T* alpha,
          const T* a, const int* lda, const T* x, const int* incx, const T* beta, T* y, const int* incy) {
  if (refused(name, blas::sbmv_bad_argument(uplo, *n, *k, *lda, *incx, *incy))) return;
  call(routine, uplo, n, k, alpha, a, lda, x, incx, beta, y, incy);
}
template <class Routine, class T>
void spmv(const char* name, Routine* routine, const char* uplo, const int* n, const T* alpha, const T* ap,
          const T* x, const int* incx, const T* beta, T* y, const int* incy) {
  if (refused(name, blas::spmv_bad_argument(uplo, *n, *incx, *incy))) return;
  call(routine, uplo, n, alpha, ap, x, incx, beta, y, incy);
}

// products and solves
template <class Routine, class T>
void trmv(const char* name, Routine* routine, const char* uplo, const char* trans, const char* diag,
          const int* n, const T* a, const int* lda, T* x, const int* incx) {
  if (refused(name, blas::trmv_bad_argument(uplo, trans, diag, *n, *lda, *incx))) return;
  call(routine, uplo, trans, diag, n, a, lda, x, incx);
}
template <class Routine, class T>
void tbmv(const char* name, Routine* routine, const char* uplo, const char* trans, const char* diag,
          const int* n, const int* k, const T* a, const int* lda, T* x, const int* incx) {
  if (refused(name, blas::tbmv_bad_argument(uplo, trans, diag, *n, *k, *lda, *incx))) return;
  call(routine, uplo, trans, diag, n, k, a, lda, x, incx);
}
template <class Routine, class T>
void tpmv(const char* name, Routine* routine, const char* uplo, const char* trans, const char* diag,
          const int* n, const T* ap, T* x, const int* incx) {
  if (refused(name, blas::tpmv_bad_argument(uplo, trans, diag, *n, *incx))) return;
  call(routine, uplo, trans, diag, n, ap, x, incx);
}

// alpha of the Hermitian rank-1 updates is real, hence its own type
template <class Routine, class T>
void ger(const char* name, Routine* routine, const int* m, const int* n, const T* alpha, const T* x,
         const int* incx, const T* y, const int* incy, T* a, const int* lda) {
  if (refused(name, blas::ger_bad_argument(*m, *n, *incx, *incy, *lda))) return;
  call(routine, m, n, alpha, x, incx, y, incy, a, lda);
}
template <class Routine, class Alpha, class T>
void syr(const char* name, Routine* routine, const char* uplo, const int* n, const Alpha* alpha, const T* x,
         const int* incx, T* a, const int* lda) {
  if (refused(name, blas::syr_bad_argument(uplo, *n, *incx, *lda))) return;
  call(routine, uplo, n, alpha, x, incx, a, lda);
}
template <class Routine, class Alpha, class T>
void spr(const char* name, Routine* routine, const char* uplo, const int* n, const Alpha* alpha, const T* x,
         const int* incx, T* ap) {
  if (refused(name, blas::spr_bad_argument(uplo, *n, *incx))) return;
  call(routine, uplo, n, alpha, x, incx, ap);
}
template <class Routine, class T>
void syr2(const char* name, Routine* routine, const char* uplo, const int* n, const T* alpha, const T* x,
          const int* incx, const T* y, const int* incy, T* a, const int* lda) {
  if (refused(name, blas::syr2_bad_argument(uplo, *n, *incx, *incy, *lda))) return;
  call(routine, uplo, n, alpha, x, incx, y, incy, a, lda);
}
template <class Routine, class T>
void spr2(const char* name, Routine* routine, const char* uplo, const int* n, const T* alpha, const T* x,
          const int* incx, const T* y, const int* incy, T* ap) {
  if (refused(name, blas::spr2_bad_argument(uplo, *n, *incx, *incy))) return;
  call(routine, uplo, n, alpha, x, incx, y, incy, ap);
}

}  // namespace

extern "C" {

void sgemv_(const char* trans, const int* m, const int* n, const float* alpha, const float* a, const int* lda,
            const float* x, const int* incx, const float* beta, float* y, const int* incy) {
  gemv("SGEMV ", core::sgemv, trans, m, n, alpha, a, lda, x, incx, beta, y, incy);
}
void dgemv_(const char* trans, const int* m, const int* n, const double* alpha, const double* a,
            const int* lda, const double* x, const int* incx, const double* beta, double* y,
            const int* incy) {
  gemv("DGEMV ", core::dgemv, trans, m, n, alpha, a, lda, x, incx, beta, y, incy);
}
void cgemv_(const char* trans, const int* m, const int* n, const complex8* alpha, const complex8* a,
            const int* lda, const complex8* x, const int* incx, const complex8* beta, complex8* y,
            const int* incy) {
  gemv("CGEMV ", core::cgemv, trans, m, n, alpha, a, lda, x, incx, beta, y, incy);
}
void zgemv_(const char* trans, const int* m, const int* n, const complex16* alpha, const complex16* a,
            const int* lda, const complex16* x, const int* incx, const complex16* beta, complex16* y,
            const int* incy) {
  gemv("ZGEMV ", core::zgemv, trans, m, n, alpha, a, lda, x, incx, beta, y, incy);
}

void sgbmv_(const char* trans, const int* m, const int* n, const int* kl, const int* ku, const float* alpha,
            const float* a, const int* lda, const float* x, const int* incx, const float* beta, float* y,
            const int* incy) {
  gbmv("SGBMV ", core::sgbmv, trans, m, n, kl, ku, alpha, a, lda, x, incx, beta, y, incy);
}
void dgbmv_(const char* trans, const int* m, const int* n, const int* kl, const int* ku, const double* alpha,
            const double* a, const int* lda, const double* x, const int* incx, const double* beta, double* y,
            const int* incy) {
  gbmv("DGBMV ", core::dgbmv, trans, m, n, kl, ku, alpha, a, lda, x, incx, beta, y, incy);
}
void cgbmv_(const char* trans, const int* m, const int* n, const int* kl, const int* ku,
            const complex8* alpha, const complex8* a, const int* lda, const complex8* x, const int* incx,
            const complex8* beta, complex8* y, const int* incy) {
  gbmv("CGBMV ", core::cgbmv, trans, m, n, kl, ku, alpha, a, lda, x, incx, beta, y, incy);
}
void zgbmv_(const char* trans, const int* m, const int* n, const int* kl, const int* ku,
            const complex16* alpha, const complex16* a, const int* lda, const complex16* x, const int* incx,
            const complex16* beta, complex16* y, const int* incy) {
  gbmv("ZGBMV ", core::zgbmv, trans, m, n, kl, ku, alpha, a, lda, x, incx, beta, y, incy);
}

void ssymv_(const char* uplo, const int* n, const float* alpha, const float* a, const int* lda,
            const float* x, const int* incx, const float* beta, float* y, const int* incy) {
  symv("SSYMV ", core::ssymv, uplo, n, alpha, a, lda, x, incx, beta, y, incy);
}
void dsymv_(const char* uplo, const int* n, const double* alpha, const double* a, const int* lda,
            const double* x, const int* incx, const double* beta, double* y, const int* incy) {
  symv("DSYMV ", core::dsymv, uplo, n, alpha, a, lda, x, incx, beta, y, incy);
}
void chemv_(const char* uplo, const int* n, const complex8* alpha, const complex8* a, const int* lda,
            const complex8* x, const int* incx, const complex8* beta, complex8* y, const int* incy) {
  symv("CHEMV ", core::chemv, uplo, n, alpha, a, lda, x, incx, beta, y, incy);
}
void zhemv_(const char* uplo, const int* n, const complex16* alpha, const complex16* a, const int* lda,
            const complex16* x, const int* incx, const complex16* beta, complex16* y, const int* incy) {
  symv("ZHEMV ", core::zhemv, uplo, n, alpha, a, lda, x, incx, beta, y, incy);
}

void ssbmv_(const char* uplo, const int* n, const int* k, const float* alpha, const float* a, const int* lda,
            const float* x, const int* incx, const float* beta, float* y, const int* incy) {
  sbmv("SSBMV ", core::ssbmv, uplo, n, k, alpha, a, lda, x, incx, beta, y, incy);
}
void dsbmv_(const char* uplo, const int* n, const int* k, const double* alpha, const double* a,
            const int* lda, const double* x, const int* incx, const double* beta, double* y,
            const int* incy) {
  sbmv("DSBMV ", core::dsbmv, uplo, n, k, alpha, a, lda, x, incx, beta, y, incy);
}
void chbmv_(const char* uplo, const int* n, const int* k, const complex8* alpha, const complex8* a,
            const int* lda, const complex8* x, const int* incx, const complex8* beta, complex8* y,
            const int* incy) {
  sbmv("CHBMV ", core::chbmv, uplo, n, k, alpha, a, lda, x, incx, beta, y, incy);
}
void zhbmv_(const char* uplo, const int* n, const int* k, const complex16* alpha, const complex16* a,
            const int* lda, const complex16* x, const int* incx, const complex16* beta, complex16* y,
            const int* incy) {
  sbmv("ZHBMV ", core::zhbmv, uplo, n, k, alpha, a, lda, x, incx, beta, y, incy);
}

void sspmv_(const char* uplo, const int* n, const float* alpha, const float* ap, const float* x,
            const int* incx, const float* beta, float* y, const int* incy) {
  spmv("SSPMV ", core::sspmv, uplo, n, alpha, ap, x, incx, beta, y, incy);
}
void dspmv_(const char* uplo, const int* n, const double* alpha, const double* ap, const double* x,
            const int* incx, const double* beta, double* y, const int* incy) {
  spmv("DSPMV ", core::dspmv, uplo, n, alpha, ap, x, incx, beta, y, incy);
}
void chpmv_(const char* uplo, const int* n, const complex8* alpha, const complex8* ap, const complex8* x,
            const int* incx, const complex8* beta, complex8* y, const int* incy) {
  spmv("CHPMV ", core::chpmv, uplo, n, alpha, ap, x, incx, beta, y, incy);
}
void zhpmv_(const char* uplo, const int* n, const complex16* alpha, const complex16* ap, const complex16* x,
            const int* incx, const complex16* beta, complex16* y, const int* incy) {
  spmv("ZHPMV ", core::zhpmv, uplo, n, alpha, ap, x, incx, beta, y, incy);
}

void strmv_(const char* uplo, const char* trans, const char* diag, const int* n, const float* a,
            const int* lda, float* x, const int* incx) {
  trmv("STRMV ", core::strmv, uplo, trans, diag, n, a, lda, x, incx);
}
void dtrmv_(const char* uplo, const char* trans, const char* diag, const int* n, const double* a,
            const int* lda, double* x, const int* incx) {
  trmv("DTRMV ", core::dtrmv, uplo, trans, diag, n, a, lda, x, incx);
}
void ctrmv_(const char* uplo, const char* trans, const char* diag, const int* n, const complex8* a,
            const int* lda, complex8* x, const int* incx) {
  trmv("CTRMV ", core::ctrmv, uplo, trans, diag, n, a, lda, x, incx);
}
void ztrmv_(const char* uplo, const char* trans, const char* diag, const int* n, const complex16* a,
            const int* lda, complex16* x, const int* incx) {
  trmv("ZTRMV ", core::ztrmv, uplo, trans, diag, n, a, lda, x, incx);
}
void strsv_(const char* uplo, const char* trans, const char* diag, const int* n, const float* a,
            const int* lda, float* x, const int* incx) {
  trmv("STRSV ", core::strsv, uplo, trans, diag, n, a, lda, x, incx);
}
void dtrsv_(const char* uplo, const char* trans, const char* diag, const int* n, const double* a,
            const int* lda, double* x, const int* incx) {
  trmv("DTRSV ", core::dtrsv, uplo, trans, diag, n, a, lda, x, incx);
}
void ctrsv_(const char* uplo, const char* trans, const char* diag, const int* n, const complex8* a,
            const int* lda, complex8* x, const int* incx) {
  trmv("CTRSV ", core::ctrsv, uplo, trans, diag, n, a, lda, x, incx);
}
void ztrsv_(const char* uplo, const char* trans, const char* diag, const int* n, const complex16* a,
            const int* lda, complex16* x, const int* incx) {
  trmv("ZTRSV ", core::ztrsv, uplo, trans, diag, n, a, lda, x, incx);
}

void stbmv_(const char* uplo, const char* trans, const char* diag, const int* n, const int* k, const float* a,
            const int* lda, float* x, const int* incx) {
  tbmv("STBMV ", core::stbmv, uplo, trans, diag, n, k, a, lda, x, incx);
}
void dtbmv_(const char* uplo, const char* trans, const char* diag, const int* n, const int* k,
            const double* a, const int* lda, double* x, const int* incx) {
  tbmv("DTBMV ", core::dtbmv, uplo, trans, diag, n, k, a, lda, x, incx);
}
void ctbmv_(const char* uplo, const char* trans, const char* diag, const int* n, const int* k,
            const complex8* a, const int* lda, complex8* x, const int* incx) {
  tbmv("CTBMV ", core::ctbmv, uplo, trans, diag, n, k, a, lda, x, incx);
}
void ztbmv_(const char* uplo, const char* trans, const char* diag, const int* n, const int* k,
            const complex16* a, const int* lda, complex16* x, const int* incx) {
  tbmv("ZTBMV ", core::ztbmv, uplo, trans, diag, n, k, a, lda, x, incx);
}
void stbsv_(const char* uplo, const char* trans, const char* diag, const int* n, const int* k, const float* a,
            const int* lda, float* x, const int* incx) {
  tbmv("STBSV ", core::stbsv, uplo, trans, diag, n, k, a, lda, x, incx);
}
void dtbsv_(const char* uplo, const char* trans, const char* diag, const int* n, const int* k,
            const double* a, const int* lda, double* x, const int* incx) {
  tbmv("DTBSV ", core::dtbsv, uplo, trans, diag, n, k, a, lda, x, incx);
}
void ctbsv_(const char* uplo, const char* trans, const char* diag, const int* n, const int* k,
            const complex8* a, const int* lda, complex8* x, const int* incx) {
  tbmv("CTBSV ", core::ctbsv, uplo, trans, diag, n, k, a, lda, x, incx);
}
void ztbsv_(const char* uplo, const char* trans, const char* diag, const int* n, const int* k,
            const complex16* a, const int* lda, complex16* x, const int* incx) {
  tbmv("ZTBSV ", core::ztbsv, uplo, trans, diag, n, k, a, lda, x, incx);
}

void stpmv_(const char* uplo, const char* trans, const char* diag, const int* n, const float* ap, float* x,
            const int* incx) {
  tpmv("STPMV ", core::stpmv, uplo, trans, diag, n, ap, x, incx);
}
void dtpmv_(const char* uplo, const char* trans, const char* diag, const int* n, const double* ap, double* x,
            const int* incx) {
  tpmv("DTPMV ", core::dtpmv, uplo, trans, diag, n, ap, x, incx);
}
void ctpmv_(const char* uplo, const char* trans, const char* diag, const int* n, const complex8* ap,
            complex8* x, const int* incx) {
  tpmv("CTPMV ", core::ctpmv, uplo, trans, diag, n, ap, x, incx);
}
void ztpmv_(const char* uplo, const char* trans, const char* diag, const int* n, const complex16* ap,
            complex16* x, const int* incx) {
  tpmv("ZTPMV ", core::ztpmv, uplo, trans, diag, n, ap, x, incx);
}
void stpsv_(const char* uplo, const char* trans, const char* diag, const int* n, const float* ap, float* x,
            const int* incx) {
  tpmv("STPSV ", core::stpsv, uplo, trans, diag, n, ap, x, incx);
}
void dtpsv_(const char* uplo, const char* trans, const char* diag, const int* n, const double* ap, double* x,
            const int* incx) {
  tpmv("DTPSV ", core::dtpsv, uplo, trans, diag, n, ap, x, incx);
}
void ctpsv_(const char* uplo, const char* trans, const char* diag, const int* n, const complex8* ap,
            complex8* x, const int* incx) {
  tpmv("CTPSV ", core::ctpsv, uplo, trans, diag, n, ap, x, incx);
}
void ztpsv_(const char* uplo, const char* trans, const char* diag, const int* n, const complex16* ap,
            complex16* x, const int* incx) {
  tpmv("ZTPSV ", core::ztpsv, uplo, trans, diag, n, ap, x, incx);
}

void sger_(const int* m, const int* n, const float* alpha, const float* x, const int* incx, const float* y,
           const int* incy, float* a, const int* lda) {
  ger("SGER  ", core::sger, m, n, alpha, x, incx, y, incy, a, lda);
}
void dger_(const int* m, const int* n, const double* alpha, const double* x, const int* incx, const double* y,
           const int* incy, double* a, const int* lda) {
  ger("DGER  ", core::dger, m, n, alpha, x, incx, y, incy, a, lda);
}
void cgeru_(const int* m, const int* n, const complex8* alpha, const complex8* x, const int* incx,
            const complex8* y, const int* incy, complex8* a, const int* lda) {
  ger("CGERU ", core::cgeru, m, n, alpha, x, incx, y, incy, a, lda);
}
void zgeru_(const int* m, const int* n, const complex16* alpha, const complex16* x, const int* incx,
            const complex16* y, const int* incy, complex16* a, const int* lda) {
  ger("ZGERU ", core::zgeru, m, n, alpha, x, incx, y, incy, a, lda);
}
void cgerc_(const int* m, const int* n, const complex8* alpha, const complex8* x, const int* incx,
            const complex8* y, const int* incy, complex8* a, const int* lda) {
  ger("CGERC ", core::cgerc, m, n, alpha, x, incx, y, incy, a, lda);
}
void zgerc_(const int* m, const int* n, const complex16* alpha, const complex16* x, const int* incx,
            const complex16* y, const int* incy, complex16* a, const int* lda) {
  ger("ZGERC ", core::zgerc, m, n, alpha, x, incx, y, incy, a, lda);
}

void ssyr_(const char* uplo, const int* n, const float* alpha, const float* x, const int* incx, float* a,
           const int* lda) {
  syr("SSYR  ", core::ssyr, uplo, n, alpha, x, incx, a, lda);
}
void dsyr_(const char* uplo, const int* n, const double* alpha, const double* x, const int* incx, double* a,
           const int* lda) {
  syr("DSYR  ", core::dsyr, uplo, n, alpha, x, incx, a, lda);
}
void cher_(const char* uplo, const int* n, const float* alpha, const complex8* x, const int* incx,
           complex8* a, const int* lda) {
  syr("CHER  ", core::cher, uplo, n, alpha, x, incx, a, lda);
}
void zher_(const char* uplo, const int* n, const double* alpha, const complex16* x, const int* incx,
           complex16* a, const int* lda) {
  syr("ZHER  ", core::zher, uplo, n, alpha, x, incx, a, lda);
}

void sspr_(const char* uplo, const int* n, const float* alpha, const float* x, const int* incx, float* ap) {
  spr("SSPR  ", core::sspr, uplo, n, alpha, x, incx, ap);
}
void dspr_(const char* uplo, const int* n, const double* alpha, const double* x, const int* incx,
           double* ap) {
  spr("DSPR  ", core::dspr, uplo, n, alpha, x, incx, ap);
}
void chpr_(const char* uplo, const int* n, const float* alpha, const complex8* x, const int* incx,
           complex8* ap) {
  spr("CHPR  ", core::chpr, uplo, n, alpha, x, incx, ap);
}
void zhpr_(const char* uplo, const int* n, const double* alpha, const complex16* x, const int* incx,
           complex16* ap) {
  spr("ZHPR  ", core::zhpr, uplo, n, alpha, x, incx, ap);
}

void ssyr2_(const char* uplo, const int* n, const float* alpha, const float* x, const int* incx,
            const float* y, const int* incy, float* a, const int* lda) {
  syr2("SSYR2 ", core::ssyr2, uplo, n, alpha, x, incx, y, incy, a, lda);
}
void dsyr2_(const char* uplo, const int* n, const double* alpha, const double* x, const int* incx,
            const double* y, const int* incy, double* a, const int* lda) {
  syr2("DSYR2 ", core::dsyr2, uplo, n, alpha, x, incx, y, incy, a, lda);
}
void cher2_(const char* uplo, const int* n, const complex8* alpha, const complex8* x, const int* incx,
            const complex8* y, const int* incy, complex8* a, const int* lda) {
  syr2("CHER2 ", core::cher2, uplo, n, alpha, x, incx, y, incy, a, lda);
}
void zher2_(const char* uplo, const int* n, const complex16* alpha, const complex16* x, const int* incx,
            const complex16* y, const int* incy, complex16* a, const int* lda) {
  syr2("ZHER2 ", core::zher2, uplo, n, alpha, x, incx, y, incy, a, lda);
}

void sspr2_(const char* uplo, const int* n, const float* alpha, const float* x, const int* incx,
            const float* y, const int* incy, float* ap) {
  spr2("SSPR2 ", core::sspr2, uplo, n, alpha, x, incx, y, incy, ap);
}
void dspr2_(const char* uplo, const int* n, const double* alpha, const double* x, const int* incx,
            const double* y, const int* incy, double* ap) {
  spr2("DSPR2 ", core::dspr2, uplo, n, alpha, x, incx, y, incy, ap);
}
void chpr2_(const char* uplo, const int* n, const complex8* alpha, const complex8* x, const int* incx,
            const complex8* y, const int* incy, complex8* ap) {
  spr2("CHPR2 ", core::chpr2, uplo, n, alpha, x, incx, y, incy, ap);
}
void zhpr2_(const char* uplo, const int* n, const complex16* alpha, const complex16* x, const int* incx,
            const complex16* y, const int* incy, complex16* ap) {
  spr2("ZHPR2 ", core::zhpr2, uplo, n, alpha, x, incx, y, incy, ap);
}

}  // extern "C"

}  // namespace qel::dropin
