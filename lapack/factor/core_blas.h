// SPDX-License-Identifier: BSD-3-Clause
// The core routines that factorisations call, over the four element types and by value.
#pragma once

#include "blas/level1/level1.h"
#include "blas/level2/level2.h"
#include "blas/level3/level3.h"
#include "blas/level3/native/level3_native.h"
#include "service/complex_arithmetic.h"

namespace qel::lapack {

/// Whether so many columns at the right of a triangle of that order go as they lie, without packing.
constexpr bool is_narrow(core_int order, core_int count) {
  constexpr core_int kFew = 32;
  return order > 0 && order <= kTriangleOrder && count > 0 && count <= kFew;
}
/// B = inv(op(A)) B for one triangle of A, or for two one after the other; false if another way is to be
/// taken.
template <class T>
inline bool native_solve(core_int m, core_int n, const T* a, core_int lda, T* b, core_int ldb, int triangles,
                         const triangle_use& first, const triangle_use& then = {}) {
  if (!is_narrow(m, n)) return false;
  const level3_kernels<T>* const kernels = native::native_kernels<T>();
  if (kernels == nullptr) return false;
  kernels->solve_narrow({m, n, a, lda, triangles, {first, then}, b, ldb});
  return true;
}
/// A triangle by BLAS's letters.
template <class T>
constexpr triangle_use use_of(char uplo, char trans, char diag) {
  return {uplo == 'U', diag == 'U', trans != 'N', is_complex<T> && trans == 'C'};
}

#define QEL_CALLS(T, letter, turned, ger_name, gerc_name, herk_name, norm_name)                              \
  inline real_of<T> norm(core_int n, const T* x) {                                                           \
    const core_int one = 1;                                                                                  \
    return core::norm_name(&n, x, &one);                                                                     \
  }                                                                                                          \
  /* y += alpha x */                                                                                         \
  inline void axpy(core_int n, T alpha, const T* x, T* y) {                                                  \
    const core_int one = 1;                                                                                  \
    core::letter##axpy(&n, &alpha, x, &one, y, &one);                                                        \
  }                                                                                                          \
  /* y = A**H x */                                                                                           \
  inline void turned_times(core_int m, core_int n, const T* a, core_int lda, const T* x, T* y) {             \
    const core_int one = 1;                                                                                  \
    const T plus = from_real<T>(1), zero{};                                                                  \
    const char trans = turned;                                                                               \
    core::letter##gemv(&trans, &m, &n, &plus, a, &lda, x, &one, &zero, y, &one);                             \
  }                                                                                                          \
  /* A += alpha x y**H */                                                                                    \
  inline void add_outer(core_int m, core_int n, T alpha, const T* x, const T* y, T* a, core_int lda) {       \
    const core_int one = 1;                                                                                  \
    core::gerc_name(&m, &n, &alpha, x, &one, y, &one, a, &lda);                                              \
  }                                                                                                          \
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
  /* B = alpha inv(op(A)) B, or B inv(op(A)); few columns go without the machinery of many */                \
  inline void solve(char side, char uplo, char trans, char diag, core_int m, core_int n, const T* a,         \
                    core_int lda, T* b, core_int ldb, real_of<T> alpha = 1) {                                \
    const core_int one = 1;                                                                                  \
    const T factor = from_real<T>(alpha);                                                                    \
    if (side == 'L' && alpha == 1) {                                                                         \
      if (native_solve(m, n, a, lda, b, ldb, 1, use_of<T>(uplo, trans, diag))) return;                       \
      if (n == 1) return core::letter##trsv(&uplo, &trans, &diag, &m, a, &lda, b, &one);                     \
    }                                                                                                        \
    core::letter##trsm(&side, &uplo, &trans, &diag, &m, &n, &factor, a, &lda, b, &ldb);                      \
  }                                                                                                          \
  /* B = op(A) B, or B op(A) */                                                                              \
  inline void multiply_triangle(char side, char uplo, char trans, char diag, core_int m, core_int n,         \
                                const T* a, core_int lda, T* b, core_int ldb, real_of<T> alpha = 1) {        \
    const T factor = from_real<T>(alpha);                                                                    \
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
QEL_CALLS(float, s, 'T', sger, sger, ssyrk, snrm2)
QEL_CALLS(double, d, 'T', dger, dger, dsyrk, dnrm2)
QEL_CALLS(complex8, c, 'C', cgeru, cgerc, cherk, scnrm2)
QEL_CALLS(complex16, z, 'C', zgeru, zgerc, zherk, dznrm2)
#undef QEL_CALLS

// x**H y
inline float dot(core_int n, const float* x, const float* y) {
  const core_int one = 1;
  return core::sdot(&n, x, &one, y, &one);
}
inline double dot(core_int n, const double* x, const double* y) {
  const core_int one = 1;
  return core::ddot(&n, x, &one, y, &one);
}
inline complex8 dot(core_int n, const complex8* x, const complex8* y) {
  const core_int one = 1;
  complex8 sum{};
  core::cdotc(&sum, &n, x, &one, y, &one);
  return sum;
}
inline complex16 dot(core_int n, const complex16* x, const complex16* y) {
  const core_int one = 1;
  complex16 sum{};
  core::zdotc(&sum, &n, x, &one, y, &one);
  return sum;
}

/// The letter that turns a factor into its conjugate transpose.
template <class T>
inline constexpr char kTurnedLetter = is_complex<T> ? 'C' : 'T';

}  // namespace qel::lapack
