// SPDX-License-Identifier: BSD-3-Clause
// Cholesky factorisation of order n, in four types.
#pragma once

#include "blas/letters.h"
#include "lapack/factor/plans.h"

namespace qel::lapack {

/// Carries out a plan; n above 0. Returns the order of the first leading minor that is not positive, else 0.
template <class T>
core_int factor_cholesky_as_planned(const cholesky_plan& plan, bool upper, core_int n, T* a, core_int lda);
/// Plans for this process and carries it out.
template <class T>
core_int potrf(bool upper, core_int n, T* a, core_int lda);

/// 1-based position of the first bad argument, 0 if all are good.
constexpr int potrf_bad_argument(char uplo, core_int n, core_int lda) {
  if (!blas::letter_is(uplo, 'U') && !blas::letter_is(uplo, 'L')) return 1;
  if (n < 0) return 2;
  return lda < (n > 1 ? n : 1) ? 4 : 0;
}

}  // namespace qel::lapack
