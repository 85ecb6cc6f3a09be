// SPDX-License-Identifier: BSD-3-Clause
// LU factorisation with row interchanges by halving the columns: the whole of a small matrix, a panel of a
// large one.
#pragma once

#include "service/core_types.h"

namespace qel::lapack {

/// A = P L U in place, m x n, m and n above 0; pivots[i] is the row, counted from 1, that row i was exchanged
/// with. Returns the number of the first pivot that is zero, 0 if none is; the factors are whole either way.
template <class T>
core_int factor_lu(core_int m, core_int n, T* a, core_int lda, core_int* pivots);

}  // namespace qel::lapack
