// SPDX-License-Identifier: BSD-3-Clause
// Updates of one triangle of C by products of n x k factors with their own transposes: syrk, herk, syr2k,
// her2k. The triangle is halved until a diagonal block is small; the rectangles between the halves take the
// general product, a diagonal block is made in full beside C and its triangle added. The other triangle is
// never touched. A Hermitian diagonal is taken and left real.
#include <algorithm>

#include "blas/plain/level3.h"
#include "blas/plain/packed_product.h"
#include "blas/plain/strided_loops.h"

namespace qel::plain {

namespace {

constexpr core_int kDiagonalBlock = 32;

/// Scales the stored triangle by beta, which is real if the matrix is Hermitian.
template <bool kHermitian, class Beta, class T>
void scale_triangle(bool upper, core_int n, Beta beta, T* c, core_int ldc) {
  if (beta == from_real<Beta>(1)) return;
  for (core_int j = 0; j < n; ++j) {
    T* column = c + j * ldc;
    if constexpr (kHermitian) column[j] = from_real<T>(real_part(column[j]));
    const core_int first = upper ? 0 : j, count = upper ? j + 1 : n - j;
    scale_output(count, beta, column + first, 1);
  }
}

/// Adds to the triangle of order n that starts at (first, first) of the update; c is the address of its
/// corner. add_block(i, j, rows, columns, block, ld) adds that block of the full update to a rectangle.
template <bool kHermitian, class T, class AddBlock>
void update_triangle(bool upper, core_int first, core_int n, const AddBlock& add_block, T* c, core_int ldc) {
  if (n > kDiagonalBlock) {
    const core_int half = (n / 2 + kDiagonalBlock - 1) / kDiagonalBlock * kDiagonalBlock, rest = n - half;
    update_triangle<kHermitian>(upper, first, half, add_block, c, ldc);
    if (upper) {
      add_block(first, first + half, half, rest, c + half * ldc, ldc);
    } else {
      add_block(first + half, first, rest, half, c + half, ldc);
    }
    update_triangle<kHermitian>(upper, first + half, rest, add_block, c + half + half * ldc, ldc);
    return;
  }
  T block[kDiagonalBlock * kDiagonalBlock];
  std::fill(block, block + n * kDiagonalBlock, T{});
  add_block(first, first, n, n, block, kDiagonalBlock);
  for (core_int j = 0; j < n; ++j) {
    T* column = c + j * ldc;
    for (core_int i = upper ? 0 : j; i < (upper ? j + 1 : n); ++i) column[i] += block[i + j * kDiagonalBlock];
    if constexpr (kHermitian) column[j] = from_real<T>(real_part(column[j]));
  }
}

/// The n x k factor as op shows it, and the k x n one that closes the product.
template <bool kHermitian, class T>
operand<T> outer_factor(char trans, const T* a, core_int lda) {
  return general_operand(blas::letter_is(trans, 'N') ? 'N' : kHermitian ? 'C' : 'T', a, lda);
}
template <bool kHermitian, class T>
operand<T> closing_factor(const operand<T>& outer) {
  operand<T> closing = outer.transposed();
  if constexpr (kHermitian) closing.conjugated = !outer.conjugated;
  return closing;
}

template <bool kHermitian, class Beta, class T>
void rank_k(char uplo, char trans, core_int n, core_int k, T alpha, const T* a, core_int lda, Beta beta, T* c,
            core_int ldc) {
  const bool upper = blas::letter_is(uplo, 'U');
  scale_triangle<kHermitian>(upper, n, beta, c, ldc);
  if (n == 0 || k == 0 || alpha == T{}) return;
  const operand<T> left = outer_factor<kHermitian>(trans, a, lda), right = closing_factor<kHermitian>(left);
  const auto add = [&](core_int i, core_int j, core_int rows, core_int columns, T* block, core_int ld) {
    multiply_add(rows, columns, k, alpha, left.from(i, 0), right.from(0, j), block, ld);
  };
  update_triangle<kHermitian>(upper, 0, n, add, c, ldc);
}

template <bool kHermitian, class Beta, class T>
void rank_2k(char uplo, char trans, core_int n, core_int k, T alpha, const T* a, core_int lda, const T* b,
             core_int ldb, Beta beta, T* c, core_int ldc) {
  const bool upper = blas::letter_is(uplo, 'U');
  scale_triangle<kHermitian>(upper, n, beta, c, ldc);
  if (n == 0 || k == 0 || alpha == T{}) return;
  const operand<T> left_a = outer_factor<kHermitian>(trans, a, lda),
                   right_a = closing_factor<kHermitian>(left_a);
  const operand<T> left_b = outer_factor<kHermitian>(trans, b, ldb),
                   right_b = closing_factor<kHermitian>(left_b);
  const auto add = [&](core_int i, core_int j, core_int rows, core_int columns, T* block, core_int ld) {
    multiply_add(rows, columns, k, alpha, left_a.from(i, 0), right_b.from(0, j), block, ld);
    multiply_add(rows, columns, k, conj_if<kHermitian>(alpha), left_b.from(i, 0), right_a.from(0, j), block,
                 ld);
  };
  update_triangle<kHermitian>(upper, 0, n, add, c, ldc);
}

}  // namespace

template <class T>
void syrk(char uplo, char trans, core_int n, core_int k, T alpha, const T* a, core_int lda, T beta, T* c,
          core_int ldc) {
  rank_k<false>(uplo, trans, n, k, alpha, a, lda, beta, c, ldc);
}

template <complex_pair T>
void herk(char uplo, char trans, core_int n, core_int k, real_of<T> alpha, const T* a, core_int lda,
          real_of<T> beta, T* c, core_int ldc) {
  rank_k<true>(uplo, trans, n, k, from_real<T>(alpha), a, lda, beta, c, ldc);
}

template <class T>
void syr2k(char uplo, char trans, core_int n, core_int k, T alpha, const T* a, core_int lda, const T* b,
           core_int ldb, T beta, T* c, core_int ldc) {
  rank_2k<false>(uplo, trans, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}

template <complex_pair T>
void her2k(char uplo, char trans, core_int n, core_int k, T alpha, const T* a, core_int lda, const T* b,
           core_int ldb, real_of<T> beta, T* c, core_int ldc) {
  rank_2k<true>(uplo, trans, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}

template void syrk(char, char, core_int, core_int, float, const float*, core_int, float, float*, core_int);
template void syrk(char, char, core_int, core_int, double, const double*, core_int, double, double*,
                   core_int);
template void syrk(char, char, core_int, core_int, complex8, const complex8*, core_int, complex8, complex8*,
                   core_int);
template void syrk(char, char, core_int, core_int, complex16, const complex16*, core_int, complex16,
                   complex16*, core_int);
template void herk(char, char, core_int, core_int, float, const complex8*, core_int, float, complex8*,
                   core_int);
template void herk(char, char, core_int, core_int, double, const complex16*, core_int, double, complex16*,
                   core_int);
template void syr2k(char, char, core_int, core_int, float, const float*, core_int, const float*, core_int,
                    float, float*, core_int);
template void syr2k(char, char, core_int, core_int, double, const double*, core_int, const double*, core_int,
                    double, double*, core_int);
template void syr2k(char, char, core_int, core_int, complex8, const complex8*, core_int, const complex8*,
                    core_int, complex8, complex8*, core_int);
template void syr2k(char, char, core_int, core_int, complex16, const complex16*, core_int, const complex16*,
                    core_int, complex16, complex16*, core_int);
template void her2k(char, char, core_int, core_int, complex8, const complex8*, core_int, const complex8*,
                    core_int, float, complex8*, core_int);
template void her2k(char, char, core_int, core_int, complex16, const complex16*, core_int, const complex16*,
                    core_int, double, complex16*, core_int);

}  // namespace qel::plain
