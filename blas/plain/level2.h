// SPDX-License-Identifier: BSD-3-Clause
// Portable level 2 of the BLAS: templates over float, double, complex8, complex16 with arguments by value in
// Fortran order, instantiated in this folder. The Hermitian routines are the symmetric ones for real types.
// Option letters in either case, arguments already tested. The core routines in blas/level2 forward to them.
#pragma once

#include "service/complex_arithmetic.h"

namespace qel::plain {

// general_vector.cpp: y = alpha op(A) x + beta y; rank-1 updates of a general matrix.

template <class T>
void gemv(char trans, core_int m, core_int n, T alpha, const T* a, core_int lda, const T* x, core_int incx,
          T beta, T* y, core_int incy);
template <class T>
void gbmv(char trans, core_int m, core_int n, core_int kl, core_int ku, T alpha, const T* a, core_int lda,
          const T* x, core_int incx, T beta, T* y, core_int incy);
/// A += alpha x y**T
template <class T>
void geru(core_int m, core_int n, T alpha, const T* x, core_int incx, const T* y, core_int incy, T* a,
          core_int lda);
/// A += alpha x y**H
template <class T>
void gerc(core_int m, core_int n, T alpha, const T* x, core_int incx, const T* y, core_int incy, T* a,
          core_int lda);

// hermitian_vector.cpp: y = alpha A x + beta y and updates of one triangle.

template <class T>
void hemv(char uplo, core_int n, T alpha, const T* a, core_int lda, const T* x, core_int incx, T beta, T* y,
          core_int incy);
template <class T>
void hbmv(char uplo, core_int n, core_int k, T alpha, const T* a, core_int lda, const T* x, core_int incx,
          T beta, T* y, core_int incy);
template <class T>
void hpmv(char uplo, core_int n, T alpha, const T* ap, const T* x, core_int incx, T beta, T* y,
          core_int incy);
/// A += alpha x x**H
template <class T>
void her(char uplo, core_int n, real_of<T> alpha, const T* x, core_int incx, T* a, core_int lda);
template <class T>
void hpr(char uplo, core_int n, real_of<T> alpha, const T* x, core_int incx, T* ap);
/// A += alpha x y**H + conj(alpha) y x**H
template <class T>
void her2(char uplo, core_int n, T alpha, const T* x, core_int incx, const T* y, core_int incy, T* a,
          core_int lda);
template <class T>
void hpr2(char uplo, core_int n, T alpha, const T* x, core_int incx, const T* y, core_int incy, T* ap);

// triangular_vector.cpp: x = op(A) x (trmv, tbmv, tpmv); op(A) x = b with x over b (trsv, tbsv, tpsv).

template <class T>
void trmv(char uplo, char trans, char diag, core_int n, const T* a, core_int lda, T* x, core_int incx);
template <class T>
void tbmv(char uplo, char trans, char diag, core_int n, core_int k, const T* a, core_int lda, T* x,
          core_int incx);
template <class T>
void tpmv(char uplo, char trans, char diag, core_int n, const T* ap, T* x, core_int incx);
template <class T>
void trsv(char uplo, char trans, char diag, core_int n, const T* a, core_int lda, T* x, core_int incx);
template <class T>
void tbsv(char uplo, char trans, char diag, core_int n, core_int k, const T* a, core_int lda, T* x,
          core_int incx);
template <class T>
void tpsv(char uplo, char trans, char diag, core_int n, const T* ap, T* x, core_int incx);

}  // namespace qel::plain
