// SPDX-License-Identifier: BSD-3-Clause
// Core product of general matrices. Arguments come by reference in Fortran order; the header says what is
// computed and who calls.
#include "blas/level3/gemm_plan.h"
#include "blas/level3/level3.h"
#include "blas/level3/native/level3_native.h"

namespace qel::core {
namespace {

template <class T>
void gemm(char transa, char transb, core_int m, core_int n, core_int k, T alpha, const T* a, core_int lda,
          const T* b, core_int ldb, T beta, T* c, core_int ldc) {
  if (const auto* const kernels = native::native_kernels<T>()) {
    return native::gemm(*kernels, transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
  }
  gemm_driver<T>({op_of<T>(transa), op_of<T>(transb), m, n, k, alpha, a, lda, b, ldb, beta, c, ldc});
}

}  // namespace

void sgemm(const char* transa, const char* transb, const core_int* m, const core_int* n, const core_int* k,
           const float* alpha, const float* a, const core_int* lda, const float* b, const core_int* ldb,
           const float* beta, float* c, const core_int* ldc) {
  gemm(*transa, *transb, *m, *n, *k, *alpha, a, *lda, b, *ldb, *beta, c, *ldc);
}
void dgemm(const char* transa, const char* transb, const core_int* m, const core_int* n, const core_int* k,
           const double* alpha, const double* a, const core_int* lda, const double* b, const core_int* ldb,
           const double* beta, double* c, const core_int* ldc) {
  gemm(*transa, *transb, *m, *n, *k, *alpha, a, *lda, b, *ldb, *beta, c, *ldc);
}
void cgemm(const char* transa, const char* transb, const core_int* m, const core_int* n, const core_int* k,
           const complex8* alpha, const complex8* a, const core_int* lda, const complex8* b,
           const core_int* ldb, const complex8* beta, complex8* c, const core_int* ldc) {
  gemm(*transa, *transb, *m, *n, *k, *alpha, a, *lda, b, *ldb, *beta, c, *ldc);
}
void zgemm(const char* transa, const char* transb, const core_int* m, const core_int* n, const core_int* k,
           const complex16* alpha, const complex16* a, const core_int* lda, const complex16* b,
           const core_int* ldb, const complex16* beta, complex16* c, const core_int* ldc) {
  gemm(*transa, *transb, *m, *n, *k, *alpha, a, *lda, b, *ldb, *beta, c, *ldc);
}

}  // namespace qel::core
