// SPDX-License-Identifier: BSD-3-Clause
// Products with a symmetric or Hermitian matrix and rank-k and rank-2k updates of one, on the calling thread,
// and their drivers.
#pragma once

#include "blas/level3/gemm_call.h"
#include "blas/level3/side_rules.h"

namespace qel {

/// C = alpha A B + beta C (left) or alpha B A + beta C, A stored in one triangle.
template <class T>
struct symm_call {
  bool hermitian, left, upper;
  core_int m, n;
  T alpha;
  const T* a;
  core_int lda;
  const T* b;
  core_int ldb;
  T beta;
  T* c;
  core_int ldc;
};
template <class T>
void symm_driver(const symm_call<T>& call);

/// One triangle of C = alpha op(A) op(A)' + beta C; with b: alpha op(A) op(B)' + alpha' op(B) op(A)' + beta
/// C. The prime is a transpose, for a Hermitian C a conjugate one, and alpha' then conj(alpha).
template <class T>
struct rank_update {
  bool hermitian, upper;
  int op;  ///< kNoTranspose: A is n x k, else k x n
  core_int n, k;
  T alpha;
  const T* a;
  core_int lda;
  const T* b;  ///< null for rank k
  core_int ldb;
  T beta;  ///< real if Hermitian
  T* c;
  core_int ldc;
};
template <class T>
void rank_update_driver(const rank_update<T>& call);
/// trans N: the outer product, anything else its counterpart.
template <class T>
int update_op(bool hermitian, char trans) {
  if (blas::letter_is(trans, 'N')) return kNoTranspose;
  return hermitian ? op_of<T>('C') : kTranspose;
}

}  // namespace qel
