// SPDX-License-Identifier: BSD-3-Clause
// Cholesky factorisation by halving: the whole of a small matrix, a diagonal tile of a large one.
#pragma once

#include "service/core_types.h"

namespace qel::lapack {

/// A = U**H U or L L**H in place, one triangle read and written, n above 0. Returns the order of the first
/// leading minor that is not positive (factored up to there), 0 if all are.
template <class T>
core_int factor_cholesky(bool upper, core_int n, T* a, core_int lda);

}  // namespace qel::lapack
