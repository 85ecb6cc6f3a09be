// SPDX-License-Identifier: BSD-3-Clause
// The core routines that factorisations call, over the four element types and by value.
#pragma once

#include "blas/level1/level1.h"
#include "blas/level2/level2.h"
#include "blas/level3/level3.h"
#include "service/complex_arithmetic.h"

namespace qel::lapack {

#define QEL_CALLS(T, letter, turned, ger_name, herk_name)                                                    \
  inline core_int amax(core_int n, const T* x) {                                                             \
    const core_int one = 1;                                                                                  \
    return core::i##letter##amax(&n, x, &one);                                                               \
  }                                                                                                          \
  inline void scal(core_int n, T alpha, T* x) {                                                              \
    const core_int one = 1;                                                                                  \
    core::letter##scal(&n, &alpha, x, &one);                                                                 \
  }                                                                                                          \
  /* A -= x y**T, y along a row */                                                                           \
  inline void subtract_outer(core_int m, core_int n, const T* x, const T* y, core_int incy, T* a,            \
                             core_int lda) {                                                                 \
    const core_int one = 1;                                                                                  \
    const T minus = from_real<T>(-1);                                                                        \
    core::ger_name(&m, &n, &minus, x, &one, y, &incy, a, &lda);                                              \
  }                                                                                                          \
  /* C -= op(A) op(B) */                                                                                     \
  inline void subtract_product(char transa, char transb, core_int m, core_int n, core_int k, const T* a,     \
                               core_int lda, const T* b, core_int ldb, T* c, core_int ldc) {                 \
    const T minus = from_real<T>(-1), plus = from_real<T>(1);                                                \
    core::letter##gemm(&transa, &transb, &m, &n, &k, &minus, a, &lda, b, &ldb, &plus, c, &ldc);              \
  }                                                                                                          \
  inline void solve(char side, char uplo, char trans, char diag, core_int m, core_int n, const T* a,         \
                    core_int lda, T* b, core_int ldb) {                                                      \
    const T one = from_real<T>(1);                                                                           \
    core::letter##trsm(&side, &uplo, &trans, &diag, &m, &n, &one, a, &lda, b, &ldb);                         \
  }                                                                                                          \
  /* One triangle of C -= A A**H (trans N), or A**H A */                                                     \
  inline void subtract_square(char uplo, bool plain, core_int n, core_int k, const T* a, core_int lda, T* c, \
                              core_int ldc) {                                                                \
    const real_of<T> minus = -1, plus = 1;                                                                   \
    const char trans = plain ? 'N' : turned;                                                                 \
    core::herk_name(&uplo, &trans, &n, &k, &minus, a, &lda, &plus, c, &ldc);                                 \
  }
QEL_CALLS(float, s, 'T', sger, ssyrk)
QEL_CALLS(double, d, 'T', dger, dsyrk)
QEL_CALLS(complex8, c, 'C', cgeru, cherk)
QEL_CALLS(complex16, z, 'C', zgeru, zherk)
#undef QEL_CALLS

}  // namespace qel::lapack
