// SPDX-License-Identifier: BSD-3-Clause
// LU factorisation with row interchanges, m x n, in four types.
#pragma once

#include "lapack/factor/plans.h"

namespace qel::lapack {

/// Carries out a plan; m and n above 0. Returns the number of the first zero pivot, 0 if there is none.
template <class T>
core_int factor_lu_as_planned(const lu_plan& plan, core_int m, core_int n, T* a, core_int lda,
                              core_int* pivots);
/// Plans for this process and carries it out.
template <class T>
core_int getrf(core_int m, core_int n, T* a, core_int lda, core_int* pivots);

/// 1-based position of the first bad argument, 0 if all are good.
constexpr int getrf_bad_argument(core_int m, core_int n, core_int lda) {
  if (m < 0) return 1;
  if (n < 0) return 2;
  return lda < (m > 1 ? m : 1) ? 4 : 0;
}

}  // namespace qel::lapack
