// SPDX-License-Identifier: BSD-3-Clause
// Core products with a triangular matrix. Arguments come by reference in Fortran
// order and go on by value; the header says what is computed and who calls.
#include "blas/level3/level3.h"
#include "blas/level3/native/level3_native.h"
#include "blas/level3/triangular.h"

namespace qel::core {

void strmm(const char* side, const char* uplo, const char* transa, const char* diag, const core_int* m,
           const core_int* n, const float* alpha, const float* a, const core_int* lda, float* b,
           const core_int* ldb) {
  if (native::native_level3())
    return native::trmm(*side, *uplo, *transa, *diag, *m, *n, *alpha, a, *lda, b, *ldb);
  triangular_driver(
      make_triangular_call(false, *side, *uplo, *transa, *diag, *m, *n, *alpha, a, *lda, b, *ldb));
}
void dtrmm(const char* side, const char* uplo, const char* transa, const char* diag, const core_int* m,
           const core_int* n, const double* alpha, const double* a, const core_int* lda, double* b,
           const core_int* ldb) {
  if (native::native_level3())
    return native::trmm(*side, *uplo, *transa, *diag, *m, *n, *alpha, a, *lda, b, *ldb);
  triangular_driver(
      make_triangular_call(false, *side, *uplo, *transa, *diag, *m, *n, *alpha, a, *lda, b, *ldb));
}
void ctrmm(const char* side, const char* uplo, const char* transa, const char* diag, const core_int* m,
           const core_int* n, const complex8* alpha, const complex8* a, const core_int* lda, complex8* b,
           const core_int* ldb) {
  if (native::native_level3())
    return native::trmm(*side, *uplo, *transa, *diag, *m, *n, *alpha, a, *lda, b, *ldb);
  triangular_driver(
      make_triangular_call(false, *side, *uplo, *transa, *diag, *m, *n, *alpha, a, *lda, b, *ldb));
}
void ztrmm(const char* side, const char* uplo, const char* transa, const char* diag, const core_int* m,
           const core_int* n, const complex16* alpha, const complex16* a, const core_int* lda, complex16* b,
           const core_int* ldb) {
  if (native::native_level3())
    return native::trmm(*side, *uplo, *transa, *diag, *m, *n, *alpha, a, *lda, b, *ldb);
  triangular_driver(
      make_triangular_call(false, *side, *uplo, *transa, *diag, *m, *n, *alpha, a, *lda, b, *ldb));
}

}  // namespace qel::core
