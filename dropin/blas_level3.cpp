// SPDX-License-Identifier: BSD-3-Clause
// Fortran names of BLAS level 3 over the core: arguments are tested, then the integers widened. One shape
// per argument pattern serves all element types.
#include "blas/level3/level3.h"

#include "blas/checks.h"
#include "dropin/blas_names.h"
#include "dropin/update_letters.h"
#include "dropin/widened_call.h"

namespace qel::dropin {

namespace {

template <class Routine, class T>
void gemm(const char* name, Routine* routine, const char* transa, const char* transb, const int* m,
          const int* n, const int* k, const T* alpha, const T* a, const int* lda, const T* b, const int* ldb,
          const T* beta, T* c, const int* ldc) {
  if (refused(name, blas::gemm_bad_argument(transa, transb, *m, *n, *k, *lda, *ldb, *ldc))) return;
  call(routine, transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
template <class Routine, class T>
void symm(const char* name, Routine* routine, const char* side, const char* uplo, const int* m, const int* n,
          const T* alpha, const T* a, const int* lda, const T* b, const int* ldb, const T* beta, T* c,
          const int* ldc) {
  if (refused(name, blas::symm_bad_argument(side, uplo, *m, *n, *lda, *ldb, *ldc))) return;
  call(routine, side, uplo, m, n, alpha, a, lda, b, ldb, beta, c, ldc);
}
template <class Routine, class Scalar, class T>
void syrk(const char* name, Routine* routine, const char* uplo, const char* trans, const int* n, const int* k,
          const Scalar* alpha, const T* a, const int* lda, const Scalar* beta, T* c, const int* ldc) {
  if (refused(name, blas::syrk_bad_argument(letters_of<T, Scalar>, uplo, trans, *n, *k, *lda, *ldc))) return;
  call(routine, uplo, trans, n, k, alpha, a, lda, beta, c, ldc);
}
template <class Routine, class T, class Beta>
void syr2k(const char* name, Routine* routine, const char* uplo, const char* trans, const int* n,
           const int* k, const T* alpha, const T* a, const int* lda, const T* b, const int* ldb,
           const Beta* beta, T* c, const int* ldc) {
  if (refused(name, blas::syr2k_bad_argument(letters_of<T, Beta>, uplo, trans, *n, *k, *lda, *ldb, *ldc))) {
    return;
  }
  call(routine, uplo, trans, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
// products and solves
template <class Routine, class T>
void trmm(const char* name, Routine* routine, const char* side, const char* uplo, const char* transa,
          const char* diag, const int* m, const int* n, const T* alpha, const T* a, const int* lda, T* b,
          const int* ldb) {
  if (refused(name, blas::trmm_bad_argument(side, uplo, transa, diag, *m, *n, *lda, *ldb))) return;
  call(routine, side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}

}  // namespace

extern "C" {

void sgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
            const float* alpha, const float* a, const int* lda, const float* b, const int* ldb,
            const float* beta, float* c, const int* ldc) {
  gemm("SGEMM ", core::sgemm, transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
void dgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
            const double* alpha, const double* a, const int* lda, const double* b, const int* ldb,
            const double* beta, double* c, const int* ldc) {
  gemm("DGEMM ", core::dgemm, transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
void cgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
            const complex8* alpha, const complex8* a, const int* lda, const complex8* b, const int* ldb,
            const complex8* beta, complex8* c, const int* ldc) {
  gemm("CGEMM ", core::cgemm, transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
void zgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
            const complex16* alpha, const complex16* a, const int* lda, const complex16* b, const int* ldb,
            const complex16* beta, complex16* c, const int* ldc) {
  gemm("ZGEMM ", core::zgemm, transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}

void ssymm_(const char* side, const char* uplo, const int* m, const int* n, const float* alpha,
            const float* a, const int* lda, const float* b, const int* ldb, const float* beta, float* c,
            const int* ldc) {
  symm("SSYMM ", core::ssymm, side, uplo, m, n, alpha, a, lda, b, ldb, beta, c, ldc);
}
void dsymm_(const char* side, const char* uplo, const int* m, const int* n, const double* alpha,
            const double* a, const int* lda, const double* b, const int* ldb, const double* beta, double* c,
            const int* ldc) {
  symm("DSYMM ", core::dsymm, side, uplo, m, n, alpha, a, lda, b, ldb, beta, c, ldc);
}
void csymm_(const char* side, const char* uplo, const int* m, const int* n, const complex8* alpha,
            const complex8* a, const int* lda, const complex8* b, const int* ldb, const complex8* beta,
            complex8* c, const int* ldc) {
  symm("CSYMM ", core::csymm, side, uplo, m, n, alpha, a, lda, b, ldb, beta, c, ldc);
}
void zsymm_(const char* side, const char* uplo, const int* m, const int* n, const complex16* alpha,
            const complex16* a, const int* lda, const complex16* b, const int* ldb, const complex16* beta,
            complex16* c, const int* ldc) {
  symm("ZSYMM ", core::zsymm, side, uplo, m, n, alpha, a, lda, b, ldb, beta, c, ldc);
}
void chemm_(const char* side, const char* uplo, const int* m, const int* n, const complex8* alpha,
            const complex8* a, const int* lda, const complex8* b, const int* ldb, const complex8* beta,
            complex8* c, const int* ldc) {
  symm("CHEMM ", core::chemm, side, uplo, m, n, alpha, a, lda, b, ldb, beta, c, ldc);
}
void zhemm_(const char* side, const char* uplo, const int* m, const int* n, const complex16* alpha,
            const complex16* a, const int* lda, const complex16* b, const int* ldb, const complex16* beta,
            complex16* c, const int* ldc) {
  symm("ZHEMM ", core::zhemm, side, uplo, m, n, alpha, a, lda, b, ldb, beta, c, ldc);
}

void ssyrk_(const char* uplo, const char* trans, const int* n, const int* k, const float* alpha,
            const float* a, const int* lda, const float* beta, float* c, const int* ldc) {
  syrk("SSYRK ", core::ssyrk, uplo, trans, n, k, alpha, a, lda, beta, c, ldc);
}
void dsyrk_(const char* uplo, const char* trans, const int* n, const int* k, const double* alpha,
            const double* a, const int* lda, const double* beta, double* c, const int* ldc) {
  syrk("DSYRK ", core::dsyrk, uplo, trans, n, k, alpha, a, lda, beta, c, ldc);
}
void csyrk_(const char* uplo, const char* trans, const int* n, const int* k, const complex8* alpha,
            const complex8* a, const int* lda, const complex8* beta, complex8* c, const int* ldc) {
  syrk("CSYRK ", core::csyrk, uplo, trans, n, k, alpha, a, lda, beta, c, ldc);
}
void zsyrk_(const char* uplo, const char* trans, const int* n, const int* k, const complex16* alpha,
            const complex16* a, const int* lda, const complex16* beta, complex16* c, const int* ldc) {
  syrk("ZSYRK ", core::zsyrk, uplo, trans, n, k, alpha, a, lda, beta, c, ldc);
}
void cherk_(const char* uplo, const char* trans, const int* n, const int* k, const float* alpha,
            const complex8* a, const int* lda, const float* beta, complex8* c, const int* ldc) {
  syrk("CHERK ", core::cherk, uplo, trans, n, k, alpha, a, lda, beta, c, ldc);
}
void zherk_(const char* uplo, const char* trans, const int* n, const int* k, const double* alpha,
            const complex16* a, const int* lda, const double* beta, complex16* c, const int* ldc) {
  syrk("ZHERK ", core::zherk, uplo, trans, n, k, alpha, a, lda, beta, c, ldc);
}

void ssyr2k_(const char* uplo, const char* trans, const int* n, const int* k, const float* alpha,
             const float* a, const int* lda, const float* b, const int* ldb, const float* beta, float* c,
             const int* ldc) {
  syr2k("SSYR2K", core::ssyr2k, uplo, trans, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
void dsyr2k_(const char* uplo, const char* trans, const int* n, const int* k, const double* alpha,
             const double* a, const int* lda, const double* b, const int* ldb, const double* beta, double* c,
             const int* ldc) {
  syr2k("DSYR2K", core::dsyr2k, uplo, trans, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
void csyr2k_(const char* uplo, const char* trans, const int* n, const int* k, const complex8* alpha,
             const complex8* a, const int* lda, const complex8* b, const int* ldb, const complex8* beta,
             complex8* c, const int* ldc) {
  syr2k("CSYR2K", core::csyr2k, uplo, trans, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
void zsyr2k_(const char* uplo, const char* trans, const int* n, const int* k, const complex16* alpha,
             const complex16* a, const int* lda, const complex16* b, const int* ldb, const complex16* beta,
             complex16* c, const int* ldc) {
  syr2k("ZSYR2K", core::zsyr2k, uplo, trans, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
void cher2k_(const char* uplo, const char* trans, const int* n, const int* k, const complex8* alpha,
             const complex8* a, const int* lda, const complex8* b, const int* ldb, const float* beta,
             complex8* c, const int* ldc) {
  syr2k("CHER2K", core::cher2k, uplo, trans, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
void zher2k_(const char* uplo, const char* trans, const int* n, const int* k, const complex16* alpha,
             const complex16* a, const int* lda, const complex16* b, const int* ldb, const double* beta,
             complex16* c, const int* ldc) {
  syr2k("ZHER2K", core::zher2k, uplo, trans, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}

void strmm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
            const int* n, const float* alpha, const float* a, const int* lda, float* b, const int* ldb) {
  trmm("STRMM ", core::strmm, side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}
void dtrmm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
            const int* n, const double* alpha, const double* a, const int* lda, double* b, const int* ldb) {
  trmm("DTRMM ", core::dtrmm, side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}
void ctrmm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
            const int* n, const complex8* alpha, const complex8* a, const int* lda, complex8* b,
            const int* ldb) {
  trmm("CTRMM ", core::ctrmm, side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}
void ztrmm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
            const int* n, const complex16* alpha, const complex16* a, const int* lda, complex16* b,
            const int* ldb) {
  trmm("ZTRMM ", core::ztrmm, side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}
void strsm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
            const int* n, const float* alpha, const float* a, const int* lda, float* b, const int* ldb) {
  trmm("STRSM ", core::strsm, side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}
void dtrsm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
            const int* n, const double* alpha, const double* a, const int* lda, double* b, const int* ldb) {
  trmm("DTRSM ", core::dtrsm, side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}
void ctrsm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
            const int* n, const complex8* alpha, const complex8* a, const int* lda, complex8* b,
            const int* ldb) {
  trmm("CTRSM ", core::ctrsm, side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}
void ztrsm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
            const int* n, const complex16* alpha, const complex16* a, const int* lda, complex16* b,
            const int* ldb) {
  trmm("ZTRSM ", core::ztrsm, side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}

}  // extern "C"

}  // namespace qel::dropin
