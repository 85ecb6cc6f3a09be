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
  /* C = alpha op(A) op(B) + beta C */                                                                       \
  inline void product(char transa, char transb, core_int m, core_int n, core_int k, real_of<T> alpha,        \
                      const T* a, core_int lda, const T* b, core_int ldb, real_of<T> beta, T* c,             \
                      core_int ldc) {                                                                        \
    const T factor = from_real<T>(alpha), kept = from_real<T>(beta);                                         \
    core::letter##gemm(&transa, &transb, &m, &n, &k, &factor, a, &lda, b, &ldb, &kept, c, &ldc);             \
  }                                                                                                          \
  /* C -= op(A) op(B) */                                                                                     \
  inline void subtract_product(char transa, char transb, core_int m, core_int n, core_int k, const T* a,     \
                               core_int lda, const T* b, core_int ldb, T* c, core_int ldc) {                 \
    product(transa, transb, m, n, k, -1, a, lda, b, ldb, 1, c, ldc);                                         \
  }                                                                                                          \
  /* B = alpha inv(op(A)) B, or B inv(op(A)); one column goes without the machinery of many */               \
  inline void solve(char side, char uplo, char trans, char diag, core_int m, core_int n, const T* a,         \
                    core_int lda, T* b, core_int ldb, real_of<T> alpha = 1) {                                \
    const core_int one = 1;                                                                                  \
    const T factor = from_real<T>(alpha);                                                                    \
    if (side == 'L' && n == 1 && alpha == 1) {                                                               \
      return core::letter##trsv(&uplo, &trans, &diag, &m, a, &lda, b, &one);                                 \
    }                                                                                                        \
    core::letter##trsm(&side, &uplo, &trans, &diag, &m, &n, &factor, a, &lda, b, &ldb);                      \
  }                                                                                                          \
  /* B = op(A) B, or B op(A) */                                                                              \
  inline void multiply_triangle(char side, char uplo, char trans, char diag, core_int m, core_int n,         \
                                const T* a, core_int lda, T* b, core_int ldb) {                              \
    const T factor = from_real<T>(1);                                                                        \
    core::letter##trmm(&side, &uplo, &trans, &diag, &m, &n, &factor, a, &lda, b, &ldb);                      \
  }                                                                                                          \
  /* One triangle of C += alpha A A**H (trans N), or A**H A */                                               \
  inline void add_square(char uplo, bool plain, core_int n, core_int k, real_of<T> alpha, const T* a,        \
                         core_int lda, T* c, core_int ldc) {                                                 \
    const real_of<T> plus = 1;                                                                               \
    const char trans = plain ? 'N' : turned;                                                                 \
    core::herk_name(&uplo, &trans, &n, &k, &alpha, a, &lda, &plus, c, &ldc);                                 \
  }                                                                                                          \
  inline void subtract_square(char uplo, bool plain, core_int n, core_int k, const T* a, core_int lda, T* c, \
                              core_int ldc) {                                                                \
    add_square(uplo, plain, n, k, -1, a, lda, c, ldc);                                                       \
  }
QEL_CALLS(float, s, 'T', sger, ssyrk)
QEL_CALLS(double, d, 'T', dger, dsyrk)
QEL_CALLS(complex8, c, 'C', cgeru, cherk)
QEL_CALLS(complex16, z, 'C', zgeru, zherk)
#undef QEL_CALLS

/// The letter that turns a factor into its conjugate transpose.
template <class T>
inline constexpr char kTurnedLetter = is_complex<T> ? 'C' : 'T';

}  // namespace qel::lapack
