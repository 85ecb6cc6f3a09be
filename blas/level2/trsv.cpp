// SPDX-License-Identifier: BSD-3-Clause
// Core solutions of triangular systems, by the drivers. Arguments come by reference in Fortran
// order and go on by value; the header says what is computed and who calls.
#include "blas/level2/level2.h"
#include "blas/level2/triangular_drivers.h"

namespace qel::core {

void strsv(const char* uplo, const char* trans, const char* diag, const core_int* n, const float* a,
           const core_int* lda, float* x, const core_int* incx) {
  level2::trsv(*uplo, *trans, *diag, *n, a, *lda, x, *incx);
}
void dtrsv(const char* uplo, const char* trans, const char* diag, const core_int* n, const double* a,
           const core_int* lda, double* x, const core_int* incx) {
  level2::trsv(*uplo, *trans, *diag, *n, a, *lda, x, *incx);
}
void ctrsv(const char* uplo, const char* trans, const char* diag, const core_int* n, const complex8* a,
           const core_int* lda, complex8* x, const core_int* incx) {
  level2::trsv(*uplo, *trans, *diag, *n, a, *lda, x, *incx);
}
void ztrsv(const char* uplo, const char* trans, const char* diag, const core_int* n, const complex16* a,
           const core_int* lda, complex16* x, const core_int* incx) {
  level2::trsv(*uplo, *trans, *diag, *n, a, *lda, x, *incx);
}

void stbsv(const char* uplo, const char* trans, const char* diag, const core_int* n, const core_int* k,
           const float* a, const core_int* lda, float* x, const core_int* incx) {
  level2::tbsv(*uplo, *trans, *diag, *n, *k, a, *lda, x, *incx);
}
void dtbsv(const char* uplo, const char* trans, const char* diag, const core_int* n, const core_int* k,
           const double* a, const core_int* lda, double* x, const core_int* incx) {
  level2::tbsv(*uplo, *trans, *diag, *n, *k, a, *lda, x, *incx);
}
void ctbsv(const char* uplo, const char* trans, const char* diag, const core_int* n, const core_int* k,
           const complex8* a, const core_int* lda, complex8* x, const core_int* incx) {
  level2::tbsv(*uplo, *trans, *diag, *n, *k, a, *lda, x, *incx);
}
void ztbsv(const char* uplo, const char* trans, const char* diag, const core_int* n, const core_int* k,
           const complex16* a, const core_int* lda, complex16* x, const core_int* incx) {
  level2::tbsv(*uplo, *trans, *diag, *n, *k, a, *lda, x, *incx);
}

void stpsv(const char* uplo, const char* trans, const char* diag, const core_int* n, const float* ap,
           float* x, const core_int* incx) {
  level2::tpsv(*uplo, *trans, *diag, *n, ap, x, *incx);
}
void dtpsv(const char* uplo, const char* trans, const char* diag, const core_int* n, const double* ap,
           double* x, const core_int* incx) {
  level2::tpsv(*uplo, *trans, *diag, *n, ap, x, *incx);
}
void ctpsv(const char* uplo, const char* trans, const char* diag, const core_int* n, const complex8* ap,
           complex8* x, const core_int* incx) {
  level2::tpsv(*uplo, *trans, *diag, *n, ap, x, *incx);
}
void ztpsv(const char* uplo, const char* trans, const char* diag, const core_int* n, const complex16* ap,
           complex16* x, const core_int* incx) {
  level2::tpsv(*uplo, *trans, *diag, *n, ap, x, *incx);
}

}  // namespace qel::core
