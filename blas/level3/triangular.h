// SPDX-License-Identifier: BSD-3-Clause
// Triangular solves and products on the calling thread, and their driver.
#pragma once

#include "blas/level3/gemm_call.h"
#include "blas/level3/side_rules.h"

namespace qel {

/// B = alpha op(A)^-1 B or alpha op(A) B, or from the right. upper: the triangle that op(A) has.
template <class T>
struct triangular_call {
  bool solve, left, upper, unit;
  int op;
  core_int m, n;
  T alpha;
  const T* a;
  core_int lda;
  T* b;
  core_int ldb;
};
template <class T>
triangular_call<T> make_triangular_call(bool solve, char side, char uplo, char transa, char diag, core_int m,
                                        core_int n, T alpha, const T* a, core_int lda, T* b, core_int ldb) {
  const bool stored_upper = blas::letter_is(uplo, 'U'), turned = !blas::letter_is(transa, 'N');
  return {solve,
          blas::letter_is(side, 'L'),
          stored_upper != turned,
          blas::letter_is(diag, 'U'),
          op_of<T>(transa),
          m,
          n,
          alpha,
          a,
          lda,
          b,
          ldb};
}

template <class T>
void triangular_serial(const triangular_call<T>& call);
template <class T>
void triangular_driver(const triangular_call<T>& call);

}  // namespace qel
