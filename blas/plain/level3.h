// SPDX-License-Identifier: BSD-3-Clause
// Portable level 3 of the BLAS: templates over float, double, complex8, complex16 with arguments by value in
// Fortran order, instantiated in this folder (hemm, herk, her2k for complex types only). Option letters in
// either case, arguments already tested. The core routines in blas/level3 forward to them.
#pragma once

#include "service/complex_arithmetic.h"

namespace qel::plain {

// matrix_product.cpp

/// C = alpha op(A) op(B) + beta C
template <class T>
void gemm(char transa, char transb, core_int m, core_int n, core_int k, T alpha, const T* a, core_int lda,
          const T* b, core_int ldb, T beta, T* c, core_int ldc);
/// C = alpha A B + beta C (side L) or alpha B A + beta C (side R), A symmetric
template <class T>
void symm(char side, char uplo, core_int m, core_int n, T alpha, const T* a, core_int lda, const T* b,
          core_int ldb, T beta, T* c, core_int ldc);
/// As symm, A Hermitian
template <complex_pair T>
void hemm(char side, char uplo, core_int m, core_int n, T alpha, const T* a, core_int lda, const T* b,
          core_int ldb, T beta, T* c, core_int ldc);

// rank_k_update.cpp: one triangle of C is read and written.

/// C = alpha A A**T + beta C, or alpha A**T A + beta C
template <class T>
void syrk(char uplo, char trans, core_int n, core_int k, T alpha, const T* a, core_int lda, T beta, T* c,
          core_int ldc);
/// C = alpha A A**H + beta C, or alpha A**H A + beta C
template <complex_pair T>
void herk(char uplo, char trans, core_int n, core_int k, real_of<T> alpha, const T* a, core_int lda,
          real_of<T> beta, T* c, core_int ldc);
/// C = alpha (A B**T + B A**T) + beta C, or alpha (A**T B + B**T A) + beta C
template <class T>
void syr2k(char uplo, char trans, core_int n, core_int k, T alpha, const T* a, core_int lda, const T* b,
           core_int ldb, T beta, T* c, core_int ldc);
/// C = alpha A B**H + conj(alpha) B A**H + beta C, or alpha A**H B + conj(alpha) B**H A + beta C
template <complex_pair T>
void her2k(char uplo, char trans, core_int n, core_int k, T alpha, const T* a, core_int lda, const T* b,
           core_int ldb, real_of<T> beta, T* c, core_int ldc);

// triangular_matrix.cpp

/// B = alpha op(A) B (side L) or alpha B op(A) (side R), A triangular
template <class T>
void trmm(char side, char uplo, char transa, char diag, core_int m, core_int n, T alpha, const T* a,
          core_int lda, T* b, core_int ldb);
/// op(A) X = alpha B (side L) or X op(A) = alpha B (side R), X over B
template <class T>
void trsm(char side, char uplo, char transa, char diag, core_int m, core_int n, T alpha, const T* a,
          core_int lda, T* b, core_int ldb);

}  // namespace qel::plain
