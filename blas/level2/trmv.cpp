// SPDX-License-Identifier: BSD-3-Clause
// Core products of a triangular matrix with a vector, by the drivers. Arguments come by
// reference in Fortran order and go on by value; the header says what is computed and who calls.
#include "blas/level2/level2.h"
#include "blas/level2/triangular_drivers.h"

namespace qel::core {

void strmv(const char* uplo, const char* trans, const char* diag, const core_int* n, const float* a,
           const core_int* lda, float* x, const core_int* incx) {
  level2::trmv(*uplo, *trans, *diag, *n, a, *lda, x, *incx);
}
void dtrmv(const char* uplo, const char* trans, const char* diag, const core_int* n, const double* a,
           const core_int* lda, double* x, const core_int* incx) {
  level2::trmv(*uplo, *trans, *diag, *n, a, *lda, x, *incx);
}
void ctrmv(const char* uplo, const char* trans, const char* diag, const core_int* n, const complex8* a,
           const core_int* lda, complex8* x, const core_int* incx) {
  level2::trmv(*uplo, *trans, *diag, *n, a, *lda, x, *incx);
}
void ztrmv(const char* uplo, const char* trans, const char* diag, const core_int* n, const complex16* a,
           const core_int* lda, complex16* x, const core_int* incx) {
  level2::trmv(*uplo, *trans, *diag, *n, a, *lda, x, *incx);
}

void stbmv(const char* uplo, const char* trans, const char* diag, const core_int* n, const core_int* k,
           const float* a, const core_int* lda, float* x, const core_int* incx) {
  level2::tbmv(*uplo, *trans, *diag, *n, *k, a, *lda, x, *incx);
}
void dtbmv(const char* uplo, const char* trans, const char* diag, const core_int* n, const core_int* k,
           const double* a, const core_int* lda, double* x, const core_int* incx) {
  level2::tbmv(*uplo, *trans, *diag, *n, *k, a, *lda, x, *incx);
}
void ctbmv(const char* uplo, const char* trans, const char* diag, const core_int* n, const core_int* k,
           const complex8* a, const core_int* lda, complex8* x, const core_int* incx) {
  level2::tbmv(*uplo, *trans, *diag, *n, *k, a, *lda, x, *incx);
}
void ztbmv(const char* uplo, const char* trans, const char* diag, const core_int* n, const core_int* k,
           const complex16* a, const core_int* lda, complex16* x, const core_int* incx) {
  level2::tbmv(*uplo, *trans, *diag, *n, *k, a, *lda, x, *incx);
}

void stpmv(const char* uplo, const char* trans, const char* diag, const core_int* n, const float* ap,
           float* x, const core_int* incx) {
  level2::tpmv(*uplo, *trans, *diag, *n, ap, x, *incx);
}
void dtpmv(const char* uplo, const char* trans, const char* diag, const core_int* n, const double* ap,
           double* x, const core_int* incx) {
  level2::tpmv(*uplo, *trans, *diag, *n, ap, x, *incx);
}
void ctpmv(const char* uplo, const char* trans, const char* diag, const core_int* n, const complex8* ap,
           complex8* x, const core_int* incx) {
  level2::tpmv(*uplo, *trans, *diag, *n, ap, x, *incx);
}
void ztpmv(const char* uplo, const char* trans, const char* diag, const core_int* n, const complex16* ap,
           complex16* x, const core_int* incx) {
  level2::tpmv(*uplo, *trans, *diag, *n, ap, x, *incx);
}

}  // namespace qel::core
