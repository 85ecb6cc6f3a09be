// SPDX-License-Identifier: BSD-3-Clause
// The thirteen arguments of a matrix product as one record, and its parts.
#pragma once

#include "blas/kernels/gemm_kernels.h"
#include "blas/letters.h"
#include "service/complex_arithmetic.h"

namespace qel {

/// op for an option letter; C is T for real types.
template <class T>
constexpr int op_of(char letter) {
  if (blas::letter_is(letter, 'N')) return kNoTranspose;
  return is_complex<T> && blas::letter_is(letter, 'C') ? kConjugateTranspose : kTranspose;
}

/// C = alpha op(A) op(B) + beta C, column-major.
template <class T>
struct gemm_call {
  int op_a, op_b;
  core_int m, n, k;
  T alpha;
  const T* a;
  core_int lda;
  const T* b;
  core_int ldb;
  T beta;
  T* c;
  core_int ldc;

  const T* a_at(core_int i, core_int l) const {
    return op_a == kNoTranspose ? a + i + l * lda : a + l + i * lda;
  }
  const T* b_at(core_int l, core_int j) const {
    return op_b == kNoTranspose ? b + l + j * ldb : b + j + l * ldb;
  }
  /// The product of some rows, columns and steps of the depth.
  gemm_call rows(core_int i, core_int count) const {
    gemm_call part = *this;
    part.m = count;
    part.a = a_at(i, 0);
    part.c = c + i;
    return part;
  }
  gemm_call columns(core_int j, core_int count) const {
    gemm_call part = *this;
    part.n = count;
    part.b = b_at(0, j);
    part.c = c + j * ldc;
    return part;
  }
  gemm_call depth(core_int l, core_int count) const {
    gemm_call part = *this;
    part.k = count;
    part.a = a_at(0, l);
    part.b = b_at(l, 0);
    return part;
  }
  gemm_call with_beta(T other) const {
    gemm_call part = *this;
    part.beta = other;
    return part;
  }
};

}  // namespace qel
