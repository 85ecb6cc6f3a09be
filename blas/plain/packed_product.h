// SPDX-License-Identifier: BSD-3-Clause
// The one matrix product under all of level 3. Internal to this folder.
#pragma once

#include "blas/plain/operand.h"

namespace qel::plain {

/// C += alpha A B: A is m x k, B k x n as the views show them, C m x n column-major and apart from both.
/// Takes work memory for packed panels; where there is none, or too little to gain, goes without.
template <class T>
void multiply_add(core_int m, core_int n, core_int k, T alpha, const operand<T>& a, const operand<T>& b, T* c,
                  core_int ldc);

}  // namespace qel::plain
