// SPDX-License-Identifier: BSD-3-Clause
// QR factorisation by blocks of Householder reflectors, and products with its Q, in four types.
#pragma once

#include "lapack/orthogonal/plans.h"

namespace qel::lapack {

/// A = Q R in place as LAPACK stores it, m and n above 0. False without work memory; nothing is done then.
template <class T>
bool factor_qr_as_planned(const qr_plan& plan, core_int m, core_int n, T* a, core_int lda, T* tau);
template <class T>
bool geqrf(core_int m, core_int n, T* a, core_int lda, T* tau);

/// C = op(Q) C or C op(Q), op by `turned` the conjugate transpose; C is m x n, m, n and k above 0. False
/// without work memory; nothing is done then.
template <class T>
bool multiply_q_as_planned(const q_product_plan& plan, bool left, bool turned, core_int m, core_int n,
                           core_int k, const T* a, core_int lda, const T* tau, T* c, core_int ldc);
template <class T>
bool ormqr(bool left, bool turned, core_int m, core_int n, core_int k, const T* a, core_int lda, const T* tau,
           T* c, core_int ldc);

}  // namespace qel::lapack
