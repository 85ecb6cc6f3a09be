// SPDX-License-Identifier: BSD-3-Clause
// Level 3 of the core BLAS: matrix-matrix operations, column-major, in Fortran argument order. Options are
// letters in either case: trans N, T, C; side L, R; uplo U, L; diag U (ones, not read), N. Arguments are not
// tested here: callers run blas/checks.h first. The written matrix must not overlap the others.
// Called by the public entries, the drop-ins and lapack/plain_names.cpp.
#pragma once

#include "service/core_types.h"

namespace qel::core {

// gemm.cpp: C = alpha op(A) op(B) + beta C, C m x n, inner size k.
void sgemm(const char* transa, const char* transb, const core_int* m, const core_int* n, const core_int* k,
           const float* alpha, const float* a, const core_int* lda, const float* b, const core_int* ldb,
           const float* beta, float* c, const core_int* ldc);
void dgemm(const char* transa, const char* transb, const core_int* m, const core_int* n, const core_int* k,
           const double* alpha, const double* a, const core_int* lda, const double* b, const core_int* ldb,
           const double* beta, double* c, const core_int* ldc);
void cgemm(const char* transa, const char* transb, const core_int* m, const core_int* n, const core_int* k,
           const complex8* alpha, const complex8* a, const core_int* lda, const complex8* b,
           const core_int* ldb, const complex8* beta, complex8* c, const core_int* ldc);
void zgemm(const char* transa, const char* transb, const core_int* m, const core_int* n, const core_int* k,
           const complex16* alpha, const complex16* a, const core_int* lda, const complex16* b,
           const core_int* ldb, const complex16* beta, complex16* c, const core_int* ldc);

// symm.cpp: C = alpha A B + beta C (side L) or alpha B A + beta C (side R), A symmetric or Hermitian.
void ssymm(const char* side, const char* uplo, const core_int* m, const core_int* n, const float* alpha,
           const float* a, const core_int* lda, const float* b, const core_int* ldb, const float* beta,
           float* c, const core_int* ldc);
void dsymm(const char* side, const char* uplo, const core_int* m, const core_int* n, const double* alpha,
           const double* a, const core_int* lda, const double* b, const core_int* ldb, const double* beta,
           double* c, const core_int* ldc);
void csymm(const char* side, const char* uplo, const core_int* m, const core_int* n, const complex8* alpha,
           const complex8* a, const core_int* lda, const complex8* b, const core_int* ldb,
           const complex8* beta, complex8* c, const core_int* ldc);
void zsymm(const char* side, const char* uplo, const core_int* m, const core_int* n, const complex16* alpha,
           const complex16* a, const core_int* lda, const complex16* b, const core_int* ldb,
           const complex16* beta, complex16* c, const core_int* ldc);

void chemm(const char* side, const char* uplo, const core_int* m, const core_int* n, const complex8* alpha,
           const complex8* a, const core_int* lda, const complex8* b, const core_int* ldb,
           const complex8* beta, complex8* c, const core_int* ldc);
void zhemm(const char* side, const char* uplo, const core_int* m, const core_int* n, const complex16* alpha,
           const complex16* a, const core_int* lda, const complex16* b, const core_int* ldb,
           const complex16* beta, complex16* c, const core_int* ldc);

// syrk.cpp: one triangle of C = alpha A A' + beta C (trans N) or alpha A' A + beta C; herk with real factors.
void ssyrk(const char* uplo, const char* trans, const core_int* n, const core_int* k, const float* alpha,
           const float* a, const core_int* lda, const float* beta, float* c, const core_int* ldc);
void dsyrk(const char* uplo, const char* trans, const core_int* n, const core_int* k, const double* alpha,
           const double* a, const core_int* lda, const double* beta, double* c, const core_int* ldc);
void csyrk(const char* uplo, const char* trans, const core_int* n, const core_int* k, const complex8* alpha,
           const complex8* a, const core_int* lda, const complex8* beta, complex8* c, const core_int* ldc);
void zsyrk(const char* uplo, const char* trans, const core_int* n, const core_int* k, const complex16* alpha,
           const complex16* a, const core_int* lda, const complex16* beta, complex16* c, const core_int* ldc);

void cherk(const char* uplo, const char* trans, const core_int* n, const core_int* k, const float* alpha,
           const complex8* a, const core_int* lda, const float* beta, complex8* c, const core_int* ldc);
void zherk(const char* uplo, const char* trans, const core_int* n, const core_int* k, const double* alpha,
           const complex16* a, const core_int* lda, const double* beta, complex16* c, const core_int* ldc);

// syr2k.cpp: one triangle of C = alpha (A B' + B A') + beta C, or with A' B + B' A; her2k with conj(alpha) on
// the second product and a real beta.
void ssyr2k(const char* uplo, const char* trans, const core_int* n, const core_int* k, const float* alpha,
            const float* a, const core_int* lda, const float* b, const core_int* ldb, const float* beta,
            float* c, const core_int* ldc);
void dsyr2k(const char* uplo, const char* trans, const core_int* n, const core_int* k, const double* alpha,
            const double* a, const core_int* lda, const double* b, const core_int* ldb, const double* beta,
            double* c, const core_int* ldc);
void csyr2k(const char* uplo, const char* trans, const core_int* n, const core_int* k, const complex8* alpha,
            const complex8* a, const core_int* lda, const complex8* b, const core_int* ldb,
            const complex8* beta, complex8* c, const core_int* ldc);
void zsyr2k(const char* uplo, const char* trans, const core_int* n, const core_int* k, const complex16* alpha,
            const complex16* a, const core_int* lda, const complex16* b, const core_int* ldb,
            const complex16* beta, complex16* c, const core_int* ldc);

void cher2k(const char* uplo, const char* trans, const core_int* n, const core_int* k, const complex8* alpha,
            const complex8* a, const core_int* lda, const complex8* b, const core_int* ldb, const float* beta,
            complex8* c, const core_int* ldc);
void zher2k(const char* uplo, const char* trans, const core_int* n, const core_int* k, const complex16* alpha,
            const complex16* a, const core_int* lda, const complex16* b, const core_int* ldb,
            const double* beta, complex16* c, const core_int* ldc);

// trmm.cpp: B = alpha op(A) B (side L) or alpha B op(A) (side R), A triangular.
void strmm(const char* side, const char* uplo, const char* transa, const char* diag, const core_int* m,
           const core_int* n, const float* alpha, const float* a, const core_int* lda, float* b,
           const core_int* ldb);
void dtrmm(const char* side, const char* uplo, const char* transa, const char* diag, const core_int* m,
           const core_int* n, const double* alpha, const double* a, const core_int* lda, double* b,
           const core_int* ldb);
void ctrmm(const char* side, const char* uplo, const char* transa, const char* diag, const core_int* m,
           const core_int* n, const complex8* alpha, const complex8* a, const core_int* lda, complex8* b,
           const core_int* ldb);
void ztrmm(const char* side, const char* uplo, const char* transa, const char* diag, const core_int* m,
           const core_int* n, const complex16* alpha, const complex16* a, const core_int* lda, complex16* b,
           const core_int* ldb);

// trsm.cpp: op(A) X = alpha B (side L) or X op(A) = alpha B (side R), X over B; no test for a singular A.
void strsm(const char* side, const char* uplo, const char* transa, const char* diag, const core_int* m,
           const core_int* n, const float* alpha, const float* a, const core_int* lda, float* b,
           const core_int* ldb);
void dtrsm(const char* side, const char* uplo, const char* transa, const char* diag, const core_int* m,
           const core_int* n, const double* alpha, const double* a, const core_int* lda, double* b,
           const core_int* ldb);
void ctrsm(const char* side, const char* uplo, const char* transa, const char* diag, const core_int* m,
           const core_int* n, const complex8* alpha, const complex8* a, const core_int* lda, complex8* b,
           const core_int* ldb);
void ztrsm(const char* side, const char* uplo, const char* transa, const char* diag, const core_int* m,
           const core_int* n, const complex16* alpha, const complex16* a, const core_int* lda, complex16* b,
           const core_int* ldb);

}  // namespace qel::core
