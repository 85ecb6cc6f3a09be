// SPDX-License-Identifier: BSD-3-Clause
// Scaled copy or transposition of a matrix out of place, in row or column order. Sizes and letters come by
// value. Called by the public entry, which tests the arguments first.
#pragma once

#include <stddef.h>

namespace qel::blas {

/// Position of the first bad argument of domatcopy, from 1, or 0.
int omatcopy_bad_argument(char ordering, char trans, size_t rows, size_t cols, size_t lda, size_t ldb);

}  // namespace qel::blas

namespace qel::core {

/// B = alpha op(A). ordering 'C' or 'R': lda and ldb are the distances of columns or of rows; trans 'N' and
/// 'R': op(A) = A, rows x cols; 'T' and 'C': its transpose. Letters in either case; b must not overlap a.
void domatcopy(char ordering, char trans, size_t rows, size_t cols, double alpha, const double* a, size_t lda,
               double* b, size_t ldb);

}  // namespace qel::core
