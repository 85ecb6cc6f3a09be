// SPDX-License-Identifier: BSD-3-Clause
// Core products with a symmetric or Hermitian matrix. Arguments come by
// reference in Fortran order and go on by value; the header says what is computed and who calls.
#include "blas/level3/level3.h"
#include "blas/level3/native/level3_native.h"
#include "blas/level3/symmetric.h"

namespace qel::core {
namespace {

template <class T>
symm_call<T> symm_of(bool hermitian, char side, char uplo, core_int m, core_int n, T alpha, const T* a,
                     core_int lda, const T* b, core_int ldb, T beta, T* c, core_int ldc) {
  return {
      hermitian, blas::letter_is(side, 'L'), blas::letter_is(uplo, 'U'), m, n, alpha, a, lda, b, ldb, beta, c,
      ldc};
}

}  // namespace

void ssymm(const char* side, const char* uplo, const core_int* m, const core_int* n, const float* alpha,
           const float* a, const core_int* lda, const float* b, const core_int* ldb, const float* beta,
           float* c, const core_int* ldc) {
  if (native::native_level3())
    return native::symm(*side, *uplo, *m, *n, *alpha, a, *lda, b, *ldb, *beta, c, *ldc);
  symm_driver(symm_of(false, *side, *uplo, *m, *n, *alpha, a, *lda, b, *ldb, *beta, c, *ldc));
}
void dsymm(const char* side, const char* uplo, const core_int* m, const core_int* n, const double* alpha,
           const double* a, const core_int* lda, const double* b, const core_int* ldb, const double* beta,
           double* c, const core_int* ldc) {
  if (native::native_level3())
    return native::symm(*side, *uplo, *m, *n, *alpha, a, *lda, b, *ldb, *beta, c, *ldc);
  symm_driver(symm_of(false, *side, *uplo, *m, *n, *alpha, a, *lda, b, *ldb, *beta, c, *ldc));
}
void csymm(const char* side, const char* uplo, const core_int* m, const core_int* n, const complex8* alpha,
           const complex8* a, const core_int* lda, const complex8* b, const core_int* ldb,
           const complex8* beta, complex8* c, const core_int* ldc) {
  if (native::native_level3())
    return native::symm(*side, *uplo, *m, *n, *alpha, a, *lda, b, *ldb, *beta, c, *ldc);
  symm_driver(symm_of(false, *side, *uplo, *m, *n, *alpha, a, *lda, b, *ldb, *beta, c, *ldc));
}
void zsymm(const char* side, const char* uplo, const core_int* m, const core_int* n, const complex16* alpha,
           const complex16* a, const core_int* lda, const complex16* b, const core_int* ldb,
           const complex16* beta, complex16* c, const core_int* ldc) {
  if (native::native_level3())
    return native::symm(*side, *uplo, *m, *n, *alpha, a, *lda, b, *ldb, *beta, c, *ldc);
  symm_driver(symm_of(false, *side, *uplo, *m, *n, *alpha, a, *lda, b, *ldb, *beta, c, *ldc));
}

void chemm(const char* side, const char* uplo, const core_int* m, const core_int* n, const complex8* alpha,
           const complex8* a, const core_int* lda, const complex8* b, const core_int* ldb,
           const complex8* beta, complex8* c, const core_int* ldc) {
  if (native::native_level3())
    return native::hemm(*side, *uplo, *m, *n, *alpha, a, *lda, b, *ldb, *beta, c, *ldc);
  symm_driver(symm_of(true, *side, *uplo, *m, *n, *alpha, a, *lda, b, *ldb, *beta, c, *ldc));
}
void zhemm(const char* side, const char* uplo, const core_int* m, const core_int* n, const complex16* alpha,
           const complex16* a, const core_int* lda, const complex16* b, const core_int* ldb,
           const complex16* beta, complex16* c, const core_int* ldc) {
  if (native::native_level3())
    return native::hemm(*side, *uplo, *m, *n, *alpha, a, *lda, b, *ldb, *beta, c, *ldc);
  symm_driver(symm_of(true, *side, *uplo, *m, *n, *alpha, a, *lda, b, *ldb, *beta, c, *ldc));
}

}  // namespace qel::core
