// SPDX-License-Identifier: BSD-3-Clause
// gemm, symm, hemm and the rank-k updates of one triangle, as products of viewed factors.
#include <algorithm>

#include "blas/level3/native/level3_native.h"
#include "blas/level3/native/product.h"

namespace qel::native {

namespace {

template <class T>
void structured_product(matrix_kind kind, char side, char uplo, core_int m, core_int n, T alpha, const T* a,
                        core_int lda, const T* b, core_int ldb, T beta, T* c, core_int ldc) {
  const operand<T> structured{a, 1, lda, false, kind, blas::letter_is(uplo, 'U')};
  const operand<T> general = general_operand('N', b, ldb);
  if (blas::letter_is(side, 'L')) {
    multiply<T>({m, n, m, alpha, structured, general, beta, c, ldc});
  } else {
    multiply<T>({m, n, n, alpha, general, structured, beta, c, ldc});
  }
}

c_part part_of(char uplo) { return blas::letter_is(uplo, 'U') ? c_part::upper : c_part::lower; }

template <class T>
void make_diagonal_real(core_int n, T* c, core_int ldc) {
  for (core_int i = 0; i < n; ++i) c[i + i * ldc].imag = 0;
}

/// The n x k factor that op shows, and the k x n one that closes the product: `closing` is T or C.
template <class T>
operand<T> left_factor(char trans, char closing, const T* a, core_int lda) {
  return general_operand(blas::letter_is(trans, 'N') ? 'N' : closing, a, lda);
}
template <class T>
operand<T> right_factor(char trans, char closing, const T* a, core_int lda) {
  return general_operand(blas::letter_is(trans, 'N') ? closing : 'N', a, lda);
}

}  // namespace

template <class T>
void planned_gemm(char transa, char transb, core_int m, core_int n, core_int k, T alpha, const T* a,
                  core_int lda, const T* b, core_int ldb, T beta, T* c, core_int ldc) {
  multiply<T>(
      {m, n, k, alpha, general_operand(transa, a, lda), general_operand(transb, b, ldb), beta, c, ldc});
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

template <class T>
void syrk(char uplo, char trans, core_int n, core_int k, T alpha, const T* a, core_int lda, T beta, T* c,
          core_int ldc) {
  multiply<T>({n, n, k, alpha, left_factor(trans, 'T', a, lda), right_factor(trans, 'T', a, lda), beta, c,
               ldc, part_of(uplo)});
}

template <complex_pair T>
void herk(char uplo, char trans, core_int n, core_int k, real_of<T> alpha, const T* a, core_int lda,
          real_of<T> beta, T* c, core_int ldc) {
  const bool nothing = (alpha == 0 || k == 0) && beta == 1;
  if (n <= 0 || nothing) return;
  // An imaginary part of C's diagonal counts as zero, so it must not meet an infinite beta.
  if (beta != 0) make_diagonal_real(n, c, ldc);
  multiply<T>({n, n, k, from_real<T>(alpha), left_factor(trans, 'C', a, lda),
               right_factor(trans, 'C', a, lda), from_real<T>(beta), c, ldc, part_of(uplo)});
  make_diagonal_real(n, c, ldc);
}

template <class T>
void syr2k(char uplo, char trans, core_int n, core_int k, T alpha, const T* a, core_int lda, const T* b,
           core_int ldb, T beta, T* c, core_int ldc) {
  const c_part part = part_of(uplo);
  multiply<T>({n, n, k, alpha, left_factor(trans, 'T', a, lda), right_factor(trans, 'T', b, ldb), beta, c,
               ldc, part});
  if (alpha == T{} || k <= 0) return;
  multiply<T>({n, n, k, alpha, left_factor(trans, 'T', b, ldb), right_factor(trans, 'T', a, lda),
               from_real<T>(1), c, ldc, part});
}

template <complex_pair T>
void her2k(char uplo, char trans, core_int n, core_int k, T alpha, const T* a, core_int lda, const T* b,
           core_int ldb, real_of<T> beta, T* c, core_int ldc) {
  const bool nothing = (alpha == T{} || k == 0) && beta == 1;
  if (n <= 0 || nothing) return;
  const c_part part = part_of(uplo);
  if (beta != 0) make_diagonal_real(n, c, ldc);
  multiply<T>({n, n, k, alpha, left_factor(trans, 'C', a, lda), right_factor(trans, 'C', b, ldb),
               from_real<T>(beta), c, ldc, part});
  if (!(alpha == T{}) && k > 0) {
    multiply<T>({n, n, k, conj(alpha), left_factor(trans, 'C', b, ldb), right_factor(trans, 'C', a, lda),
                 from_real<T>(1), c, ldc, part});
  }
  make_diagonal_real(n, c, ldc);
}

#define QEL_INSTANTIATE(T)                                                                              \
  template void planned_gemm(char, char, core_int, core_int, core_int, T, const T*, core_int, const T*, \
                             core_int, T, T*, core_int);                                                \
  template void symm(char, char, core_int, core_int, T, const T*, core_int, const T*, core_int, T, T*,  \
                     core_int);                                                                         \
  template void syrk(char, char, core_int, core_int, T, const T*, core_int, T, T*, core_int);           \
  template void syr2k(char, char, core_int, core_int, T, const T*, core_int, const T*, core_int, T, T*, \
                      core_int);
#define QEL_INSTANTIATE_COMPLEX(T)                                                                           \
  template void hemm(char, char, core_int, core_int, T, const T*, core_int, const T*, core_int, T, T*,       \
                     core_int);                                                                              \
  template void herk(char, char, core_int, core_int, real_of<T>, const T*, core_int, real_of<T>, T*,         \
                     core_int);                                                                              \
  template void her2k(char, char, core_int, core_int, T, const T*, core_int, const T*, core_int, real_of<T>, \
                      T*, core_int);
QEL_INSTANTIATE(float)
QEL_INSTANTIATE(double)
QEL_INSTANTIATE(complex8)
QEL_INSTANTIATE(complex16)
QEL_INSTANTIATE_COMPLEX(complex8)
QEL_INSTANTIATE_COMPLEX(complex16)
#undef QEL_INSTANTIATE
#undef QEL_INSTANTIATE_COMPLEX

}  // namespace qel::native
