// SPDX-License-Identifier: BSD-3-Clause
// Level 3 on the native processor levels: every routine ends in one product of two viewed factors
// (product.cpp), planned by plan.h, or in triangular kernels between such products (triangle.cpp).
// Arguments by value in Fortran order, tested already. The core routines come here on native levels.
#pragma once

#include "blas/kernels/level3_native.h"
#include "blas/letters.h"
#include "blas/level3/native/plan.h"
#include "service/complex_arithmetic.h"
#include "service/dispatch.h"
#include "service/native_level.h"

namespace qel::native {

template <class T>
struct kernels_of_level;
template <>
struct kernels_of_level<float> {
  static constexpr const level3_kernels<float>* row[kLevels] = {
      nullptr, nullptr, nullptr, nullptr, nullptr, &l5_avx2::slevel3, &l6_avx512::slevel3};
};
template <>
struct kernels_of_level<double> {
  static constexpr const level3_kernels<double>* row[kLevels] = {
      nullptr, nullptr, nullptr, nullptr, nullptr, &l5_avx2::dlevel3, &l6_avx512::dlevel3};
};
template <>
struct kernels_of_level<complex8> {
  static constexpr const level3_kernels<complex8>* row[kLevels] = {
      nullptr, nullptr, nullptr, nullptr, nullptr, &l5_avx2::clevel3, &l6_avx512::clevel3};
};
template <>
struct kernels_of_level<complex16> {
  static constexpr const level3_kernels<complex16>* row[kLevels] = {
      nullptr, nullptr, nullptr, nullptr, nullptr, &l5_avx2::zlevel3, &l6_avx512::zlevel3};
};

/// The kernels of this process's level, or null below the native levels.
template <class T>
inline const level3_kernels<T>* native_kernels() {
  return kernels_of_level<T>::row[serv_cpu_level()];
}

/// Whether the process runs on a native level.
inline bool native_level3() { return serv_cpu_level() >= kFirstNativeLevel; }

template <class T>
void planned_gemm(char transa, char transb, core_int m, core_int n, core_int k, T alpha, const T* a,
                  core_int lda, const T* b, core_int ldb, T beta, T* c, core_int ldc);
/// Small products come in great numbers: they go the shortest way to the kernel, without a plan. `kernels`
/// are this process's.
template <class T>
inline void gemm(const level3_kernels<T>& kernels, char transa, char transb, core_int m, core_int n,
                 core_int k, T alpha, const T* a, core_int lda, const T* b, core_int ldb, T beta, T* c,
                 core_int ldc) {
  if (blas::letter_is(transa, 'N') && m > 0 && n > 0 && k > 0 && goes_at_once<T>(m, n, k) &&
      !(alpha == T{})) {
    const bool plain_b = blas::letter_is(transb, 'N');
    return kernels.multiply_direct({m, n, k, alpha, beta, a, lda, b, plain_b ? 1 : ldb, plain_b ? ldb : 1,
                                    false, blas::letter_is(transb, 'C'), true, c, ldc});
  }
  planned_gemm(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
template <class T>
void symm(char side, char uplo, core_int m, core_int n, T alpha, const T* a, core_int lda, const T* b,
          core_int ldb, T beta, T* c, core_int ldc);
template <complex_pair T>
void hemm(char side, char uplo, core_int m, core_int n, T alpha, const T* a, core_int lda, const T* b,
          core_int ldb, T beta, T* c, core_int ldc);
template <class T>
void syrk(char uplo, char trans, core_int n, core_int k, T alpha, const T* a, core_int lda, T beta, T* c,
          core_int ldc);
template <complex_pair T>
void herk(char uplo, char trans, core_int n, core_int k, real_of<T> alpha, const T* a, core_int lda,
          real_of<T> beta, T* c, core_int ldc);
template <class T>
void syr2k(char uplo, char trans, core_int n, core_int k, T alpha, const T* a, core_int lda, const T* b,
           core_int ldb, T beta, T* c, core_int ldc);
template <complex_pair T>
void her2k(char uplo, char trans, core_int n, core_int k, T alpha, const T* a, core_int lda, const T* b,
           core_int ldb, real_of<T> beta, T* c, core_int ldc);
template <class T>
void trmm(char side, char uplo, char transa, char diag, core_int m, core_int n, T alpha, const T* a,
          core_int lda, T* b, core_int ldb);
template <class T>
void trsm(char side, char uplo, char transa, char diag, core_int m, core_int n, T alpha, const T* a,
          core_int lda, T* b, core_int ldb);

}  // namespace qel::native
