// SPDX-License-Identifier: BSD-3-Clause
// gemm, symm, hemm: C is scaled by beta, then gains alpha times a product of two viewed factors.
#include "blas/plain/level3.h"
#include "blas/plain/packed_product.h"
#include "blas/plain/strided_loops.h"

namespace qel::plain {

namespace {

template <class T>
void scale_matrix(core_int m, core_int n, T beta, T* c, core_int ldc) {
  for (core_int j = 0; j < n; ++j) scale_output(m, beta, c + j * ldc, 1);
}

template <class T>
void structured_product(matrix_kind kind, char side, char uplo, core_int m, core_int n, T alpha, const T* a,
                        core_int lda, const T* b, core_int ldb, T beta, T* c, core_int ldc) {
  if (m == 0 || n == 0) return;
  scale_matrix(m, n, beta, c, ldc);
  if (alpha == T{}) return;
  const operand<T> structured{a, 1, lda, false, kind, blas::letter_is(uplo, 'U')};
  const operand<T> general = general_operand('N', b, ldb);
  if (blas::letter_is(side, 'L')) {
    multiply_add(m, n, m, alpha, structured, general, c, ldc);
  } else {
    multiply_add(m, n, n, alpha, general, structured, c, ldc);
  }
}

}  // namespace

template <class T>
void gemm(char transa, char transb, core_int m, core_int n, core_int k, T alpha, const T* a, core_int lda,
          const T* b, core_int ldb, T beta, T* c, core_int ldc) {
  if (m == 0 || n == 0) return;
  scale_matrix(m, n, beta, c, ldc);
  if (alpha == T{}) return;
  multiply_add(m, n, k, alpha, general_operand(transa, a, lda), general_operand(transb, b, ldb), c, ldc);
}

template <class T>
void symm(char side, char uplo, core_int m, core_int n, T alpha, const T* a, core_int lda, const T* b,
          core_int ldb, T beta, T* c, core_int ldc) {
  structured_product(matrix_kind::kSymmetric, side, uplo, m, n, alpha, a, lda, b, ldb, beta, c, ldc);
}

template <complex_pair T>
void hemm(char side, char uplo, core_int m, core_int n, T alpha, const T* a, core_int lda, const T* b,
          core_int ldb, T beta, T* c, core_int ldc) {
  structured_product(matrix_kind::kHermitian, side, uplo, m, n, alpha, a, lda, b, ldb, beta, c, ldc);
}

template void gemm(char, char, core_int, core_int, core_int, float, const float*, core_int, const float*,
                   core_int, float, float*, core_int);
template void gemm(char, char, core_int, core_int, core_int, double, const double*, core_int, const double*,
                   core_int, double, double*, core_int);
template void gemm(char, char, core_int, core_int, core_int, complex8, const complex8*, core_int,
                   const complex8*, core_int, complex8, complex8*, core_int);
template void gemm(char, char, core_int, core_int, core_int, complex16, const complex16*, core_int,
                   const complex16*, core_int, complex16, complex16*, core_int);
template void symm(char, char, core_int, core_int, float, const float*, core_int, const float*, core_int,
                   float, float*, core_int);
template void symm(char, char, core_int, core_int, double, const double*, core_int, const double*, core_int,
                   double, double*, core_int);
template void symm(char, char, core_int, core_int, complex8, const complex8*, core_int, const complex8*,
                   core_int, complex8, complex8*, core_int);
template void symm(char, char, core_int, core_int, complex16, const complex16*, core_int, const complex16*,
                   core_int, complex16, complex16*, core_int);
template void hemm(char, char, core_int, core_int, complex8, const complex8*, core_int, const complex8*,
                   core_int, complex8, complex8*, core_int);
template void hemm(char, char, core_int, core_int, complex16, const complex16*, core_int, const complex16*,
                   core_int, complex16, complex16*, core_int);

}  // namespace qel::plain
