// SPDX-License-Identifier: BSD-3-Clause
// What liblapack.so.3 takes from libblas.so.3 beside the BLAS: factorisations of the core, which lives there
// once for both. Arguments are tested already.
#pragma once

#include "service/core_types.h"

namespace qel::dropin {

extern "C" {

#pragma GCC visibility push(default)
#define QEL_FACTORISATIONS(T, s)                                                          \
  int qel_dropin_##s##getrf(const int* m, const int* n, T* a, const int* lda, int* ipiv); \
  int qel_dropin_##s##potrf(int upper, const int* n, T* a, const int* lda);
QEL_FACTORISATIONS(float, s)
QEL_FACTORISATIONS(double, d)
QEL_FACTORISATIONS(complex8, c)
QEL_FACTORISATIONS(complex16, z)
#undef QEL_FACTORISATIONS
#pragma GCC visibility pop

}  // extern "C"

}  // namespace qel::dropin
