// SPDX-License-Identifier: BSD-3-Clause
// Core rank-1 updates of a symmetric or Hermitian matrix, by the drivers. Arguments come by
// reference in Fortran order and go on by value; the header says what is computed and who calls.
#include "blas/level2/hermitian_drivers.h"
#include "blas/level2/level2.h"

namespace qel::core {

void ssyr(const char* uplo, const core_int* n, const float* alpha, const float* x, const core_int* incx,
          float* a, const core_int* lda) {
  level2::her(*uplo, *n, *alpha, x, *incx, a, *lda);
}
void dsyr(const char* uplo, const core_int* n, const double* alpha, const double* x, const core_int* incx,
          double* a, const core_int* lda) {
  level2::her(*uplo, *n, *alpha, x, *incx, a, *lda);
}
void cher(const char* uplo, const core_int* n, const float* alpha, const complex8* x, const core_int* incx,
          complex8* a, const core_int* lda) {
  level2::her(*uplo, *n, *alpha, x, *incx, a, *lda);
}
void zher(const char* uplo, const core_int* n, const double* alpha, const complex16* x, const core_int* incx,
          complex16* a, const core_int* lda) {
  level2::her(*uplo, *n, *alpha, x, *incx, a, *lda);
}

void sspr(const char* uplo, const core_int* n, const float* alpha, const float* x, const core_int* incx,
          float* ap) {
  level2::hpr(*uplo, *n, *alpha, x, *incx, ap);
}
void dspr(const char* uplo, const core_int* n, const double* alpha, const double* x, const core_int* incx,
          double* ap) {
  level2::hpr(*uplo, *n, *alpha, x, *incx, ap);
}
void chpr(const char* uplo, const core_int* n, const float* alpha, const complex8* x, const core_int* incx,
          complex8* ap) {
  level2::hpr(*uplo, *n, *alpha, x, *incx, ap);
}
void zhpr(const char* uplo, const core_int* n, const double* alpha, const complex16* x, const core_int* incx,
          complex16* ap) {
  level2::hpr(*uplo, *n, *alpha, x, *incx, ap);
}

}  // namespace qel::core
