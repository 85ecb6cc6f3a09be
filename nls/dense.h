// SPDX-License-Identifier: BSD-3-Clause
// The dense operations of the solvers, by value.
#pragma once

#include <cmath>

#include "blas/level1/level1.h"
#include "blas/level2/level2.h"
#include "service/core_types.h"

namespace qel::nls {

inline constexpr core_int kOne = 1;

inline double norm(core_int n, const double* x) { return core::dnrm2(&n, x, &kOne); }
inline double dot(core_int n, const double* x, const double* y) { return core::ddot(&n, x, &kOne, y, &kOne); }
inline void axpy(core_int n, double a, const double* x, double* y) {
  core::daxpy(&n, &a, x, &kOne, y, &kOne);
}
inline void scale(core_int n, double a, double* x) { core::dscal(&n, &a, x, &kOne); }
inline void copy(core_int n, const double* x, double* y) { core::dcopy(&n, x, &kOne, y, &kOne); }
/// y = op(A) x with A m by n, lda m.
inline void product(char op, core_int m, core_int n, const double* a, const double* x, double* y) {
  const double one = 1, zero = 0;
  core::dgemv(&op, &m, &n, &one, a, &m, x, &kOne, &zero, y, &kOne);
}

}  // namespace qel::nls
