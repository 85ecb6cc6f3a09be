// SPDX-License-Identifier: BSD-3-Clause
// The one product under native level 3.
#pragma once

#include "blas/level3/native/operand.h"
#include "blas/level3/native/plan.h"

namespace qel::native {

/// C = alpha A B + beta C, or one triangle of it: A m x k, B k x n as the views show them, C column-major and
/// apart from both. beta 0 does not read C; alpha 0 reads neither A nor B.
template <class T>
struct product {
  core_int m, n, k;
  T alpha;
  operand<T> a, b;
  T beta;
  T* c;
  core_int ldc;
  c_part part = c_part::whole;
};

/// On up to `threads` threads; 0 asks the policy.
template <class T>
void multiply(const product<T>& what, int threads = 0);
/// By a plan, for a product with something to do (m, n, k above 0, alpha not 0).
template <class T>
void multiply_as_planned(const product<T>& what, const product_plan& plan);

}  // namespace qel::native
