// SPDX-License-Identifier: BSD-3-Clause
// Core rank-k updates of a symmetric or Hermitian matrix. Arguments come by
// reference in Fortran order and go on by value; the header says what is computed and who calls.
#include "blas/level3/level3.h"
#include "blas/level3/native/level3_native.h"
#include "blas/level3/symmetric.h"

namespace qel::core {
namespace {

template <class T>
rank_update<T> syrk_of(bool hermitian, char uplo, char trans, core_int n, core_int k, T alpha, const T* a,
                       core_int lda, T beta, T* c, core_int ldc) {
  return {hermitian,
          blas::letter_is(uplo, 'U'),
          update_op<T>(hermitian, trans),
          n,
          k,
          alpha,
          a,
          lda,
          nullptr,
          0,
          beta,
          c,
          ldc};
}

}  // namespace

void ssyrk(const char* uplo, const char* trans, const core_int* n, const core_int* k, const float* alpha,
           const float* a, const core_int* lda, const float* beta, float* c, const core_int* ldc) {
  if (native::native_level3()) return native::syrk(*uplo, *trans, *n, *k, *alpha, a, *lda, *beta, c, *ldc);
  rank_update_driver(syrk_of(false, *uplo, *trans, *n, *k, *alpha, a, *lda, *beta, c, *ldc));
}
void dsyrk(const char* uplo, const char* trans, const core_int* n, const core_int* k, const double* alpha,
           const double* a, const core_int* lda, const double* beta, double* c, const core_int* ldc) {
  if (native::native_level3()) return native::syrk(*uplo, *trans, *n, *k, *alpha, a, *lda, *beta, c, *ldc);
  rank_update_driver(syrk_of(false, *uplo, *trans, *n, *k, *alpha, a, *lda, *beta, c, *ldc));
}
void csyrk(const char* uplo, const char* trans, const core_int* n, const core_int* k, const complex8* alpha,
           const complex8* a, const core_int* lda, const complex8* beta, complex8* c, const core_int* ldc) {
  if (native::native_level3()) return native::syrk(*uplo, *trans, *n, *k, *alpha, a, *lda, *beta, c, *ldc);
  rank_update_driver(syrk_of(false, *uplo, *trans, *n, *k, *alpha, a, *lda, *beta, c, *ldc));
}
void zsyrk(const char* uplo, const char* trans, const core_int* n, const core_int* k, const complex16* alpha,
           const complex16* a, const core_int* lda, const complex16* beta, complex16* c,
           const core_int* ldc) {
  if (native::native_level3()) return native::syrk(*uplo, *trans, *n, *k, *alpha, a, *lda, *beta, c, *ldc);
  rank_update_driver(syrk_of(false, *uplo, *trans, *n, *k, *alpha, a, *lda, *beta, c, *ldc));
}

void cherk(const char* uplo, const char* trans, const core_int* n, const core_int* k, const float* alpha,
           const complex8* a, const core_int* lda, const float* beta, complex8* c, const core_int* ldc) {
  if (native::native_level3()) return native::herk(*uplo, *trans, *n, *k, *alpha, a, *lda, *beta, c, *ldc);
  rank_update_driver(syrk_of(true, *uplo, *trans, *n, *k, from_real<complex8>(*alpha), a, *lda,
                             from_real<complex8>(*beta), c, *ldc));
}
void zherk(const char* uplo, const char* trans, const core_int* n, const core_int* k, const double* alpha,
           const complex16* a, const core_int* lda, const double* beta, complex16* c, const core_int* ldc) {
  if (native::native_level3()) return native::herk(*uplo, *trans, *n, *k, *alpha, a, *lda, *beta, c, *ldc);
  rank_update_driver(syrk_of(true, *uplo, *trans, *n, *k, from_real<complex16>(*alpha), a, *lda,
                             from_real<complex16>(*beta), c, *ldc));
}

}  // namespace qel::core
