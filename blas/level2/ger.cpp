// SPDX-License-Identifier: BSD-3-Clause
// Core rank-1 updates of a general matrix, by the drivers. Arguments come by reference in
// Fortran order and go on by value; the header says what is computed and who calls.
#include "blas/level2/drivers.h"
#include "blas/level2/level2.h"

namespace qel::core {

void sger(const core_int* m, const core_int* n, const float* alpha, const float* x, const core_int* incx,
          const float* y, const core_int* incy, float* a, const core_int* lda) {
  level2::geru(*m, *n, *alpha, x, *incx, y, *incy, a, *lda);
}
void dger(const core_int* m, const core_int* n, const double* alpha, const double* x, const core_int* incx,
          const double* y, const core_int* incy, double* a, const core_int* lda) {
  level2::geru(*m, *n, *alpha, x, *incx, y, *incy, a, *lda);
}

void cgeru(const core_int* m, const core_int* n, const complex8* alpha, const complex8* x,
           const core_int* incx, const complex8* y, const core_int* incy, complex8* a, const core_int* lda) {
  level2::geru(*m, *n, *alpha, x, *incx, y, *incy, a, *lda);
}
void zgeru(const core_int* m, const core_int* n, const complex16* alpha, const complex16* x,
           const core_int* incx, const complex16* y, const core_int* incy, complex16* a,
           const core_int* lda) {
  level2::geru(*m, *n, *alpha, x, *incx, y, *incy, a, *lda);
}

void cgerc(const core_int* m, const core_int* n, const complex8* alpha, const complex8* x,
           const core_int* incx, const complex8* y, const core_int* incy, complex8* a, const core_int* lda) {
  level2::gerc(*m, *n, *alpha, x, *incx, y, *incy, a, *lda);
}
void zgerc(const core_int* m, const core_int* n, const complex16* alpha, const complex16* x,
           const core_int* incx, const complex16* y, const core_int* incy, complex16* a,
           const core_int* lda) {
  level2::gerc(*m, *n, *alpha, x, *incx, y, *incy, a, *lda);
}

}  // namespace qel::core
