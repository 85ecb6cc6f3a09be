// SPDX-License-Identifier: BSD-3-Clause
// A triangle's inverse, and its product with its own conjugate transpose, in place by halving.
#pragma once

#include "service/core_types.h"

namespace qel::lapack {

/// A = inv(A), n above 0; of a unit triangle the diagonal is not touched. Returns the number of the first
/// zero on the diagonal, with nothing written, else 0.
template <class T>
core_int invert_triangle(bool upper, bool unit, core_int n, T* a, core_int lda);

/// A = U U**H (upper) or L**H L, n above 0; the diagonal counts as real.
template <class T>
void square_triangle(bool upper, core_int n, T* a, core_int lda);

}  // namespace qel::lapack
