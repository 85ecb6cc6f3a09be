// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "tavik/core/data_block.h"
#include "tavik/core/export.h"

namespace Tavik::Kernel {

using namespace Core;

/// The numeric entries under one name for all element types, with the entries' own arguments (qel/blas.h,
/// qel/lapack.h): addresses of letters, integers and scalars, pointers to elements, pivots one-based. Complex
/// routines that have a work array of a length lwork take neither of the two: the forwarder asks for the best
/// size and takes that much for the length of the call.
class TAVIK_API TavikForwarders {
 public:
  // Vectors.
  static void tavik_axpy(const int* n, const double* alpha, const double* x, const int* incx, double* y,
                         const int* incy);
  static void tavik_axpy(const int* n, const float* alpha, const float* x, const int* incx, float* y,
                         const int* incy);
  static void tavik_axpy(const int* n, const DoubleComplex* alpha, const DoubleComplex* x, const int* incx,
                         DoubleComplex* y, const int* incy);
  static void tavik_axpy(const int* n, const FloatComplex* alpha, const FloatComplex* x, const int* incx,
                         FloatComplex* y, const int* incy);
  static double tavik_dot(const int* n, const double* x, const int* incx, const double* y, const int* incy);
  static float tavik_dot(const int* n, const float* x, const int* incx, const float* y, const int* incy);
  static void tavik_dotu(DoubleComplex* result, const int* n, const DoubleComplex* x, const int* incx,
                         const DoubleComplex* y, const int* incy);
  static void tavik_dotu(FloatComplex* result, const int* n, const FloatComplex* x, const int* incx,
                         const FloatComplex* y, const int* incy);

  // Matrix and vector.
  static void tavik_gbmv(const char* trans, const int* m, const int* n, const int* kl, const int* ku,
                         const double* alpha, const double* a, const int* lda, const double* x,
                         const int* incx, const double* beta, double* y, const int* incy);
  static void tavik_gbmv(const char* trans, const int* m, const int* n, const int* kl, const int* ku,
                         const float* alpha, const float* a, const int* lda, const float* x, const int* incx,
                         const float* beta, float* y, const int* incy);
  static void tavik_gbmv(const char* trans, const int* m, const int* n, const int* kl, const int* ku,
                         const DoubleComplex* alpha, const DoubleComplex* a, const int* lda,
                         const DoubleComplex* x, const int* incx, const DoubleComplex* beta, DoubleComplex* y,
                         const int* incy);
  static void tavik_gbmv(const char* trans, const int* m, const int* n, const int* kl, const int* ku,
                         const FloatComplex* alpha, const FloatComplex* a, const int* lda,
                         const FloatComplex* x, const int* incx, const FloatComplex* beta, FloatComplex* y,
                         const int* incy);
  static void tavik_sbmv(const char* uplo, const int* n, const int* k, const double* alpha, const double* a,
                         const int* lda, const double* x, const int* incx, const double* beta, double* y,
                         const int* incy);
  static void tavik_sbmv(const char* uplo, const int* n, const int* k, const float* alpha, const float* a,
                         const int* lda, const float* x, const int* incx, const float* beta, float* y,
                         const int* incy);
  static void tavik_hbmv(const char* uplo, const int* n, const int* k, const DoubleComplex* alpha,
                         const DoubleComplex* a, const int* lda, const DoubleComplex* x, const int* incx,
                         const DoubleComplex* beta, DoubleComplex* y, const int* incy);
  static void tavik_hbmv(const char* uplo, const int* n, const int* k, const FloatComplex* alpha,
                         const FloatComplex* a, const int* lda, const FloatComplex* x, const int* incx,
                         const FloatComplex* beta, FloatComplex* y, const int* incy);
  static void tavik_spmv(const char* uplo, const int* n, const double* alpha, const double* ap,
                         const double* x, const int* incx, const double* beta, double* y, const int* incy);
  static void tavik_spmv(const char* uplo, const int* n, const float* alpha, const float* ap, const float* x,
                         const int* incx, const float* beta, float* y, const int* incy);
  static void tavik_spmv(const char* uplo, const int* n, const DoubleComplex* alpha, const DoubleComplex* ap,
                         const DoubleComplex* x, const int* incx, const DoubleComplex* beta, DoubleComplex* y,
                         const int* incy);
  static void tavik_spmv(const char* uplo, const int* n, const FloatComplex* alpha, const FloatComplex* ap,
                         const FloatComplex* x, const int* incx, const FloatComplex* beta, FloatComplex* y,
                         const int* incy);
  static void tavik_hpmv(const char* uplo, const int* n, const DoubleComplex* alpha, const DoubleComplex* ap,
                         const DoubleComplex* x, const int* incx, const DoubleComplex* beta, DoubleComplex* y,
                         const int* incy);
  static void tavik_hpmv(const char* uplo, const int* n, const FloatComplex* alpha, const FloatComplex* ap,
                         const FloatComplex* x, const int* incx, const FloatComplex* beta, FloatComplex* y,
                         const int* incy);
  static void tavik_tpmv(const char* uplo, const char* trans, const char* diag, const int* n,
                         const double* ap, double* x, const int* incx);
  static void tavik_tpmv(const char* uplo, const char* trans, const char* diag, const int* n, const float* ap,
                         float* x, const int* incx);
  static void tavik_tpmv(const char* uplo, const char* trans, const char* diag, const int* n,
                         const DoubleComplex* ap, DoubleComplex* x, const int* incx);
  static void tavik_tpmv(const char* uplo, const char* trans, const char* diag, const int* n,
                         const FloatComplex* ap, FloatComplex* x, const int* incx);
  static void tavik_trmv(const char* uplo, const char* trans, const char* diag, const int* n, const double* a,
                         const int* lda, double* x, const int* incx);
  static void tavik_trmv(const char* uplo, const char* trans, const char* diag, const int* n, const float* a,
                         const int* lda, float* x, const int* incx);
  static void tavik_trmv(const char* uplo, const char* trans, const char* diag, const int* n,
                         const DoubleComplex* a, const int* lda, DoubleComplex* x, const int* incx);
  static void tavik_trmv(const char* uplo, const char* trans, const char* diag, const int* n,
                         const FloatComplex* a, const int* lda, FloatComplex* x, const int* incx);

  // Tridiagonal.
  static int tavik_gttrf(const int* n, double* dl, double* d, double* du, double* du2, int* ipiv, int* info);
  static int tavik_gttrf(const int* n, float* dl, float* d, float* du, float* du2, int* ipiv, int* info);
  static int tavik_gttrf(const int* n, DoubleComplex* dl, DoubleComplex* d, DoubleComplex* du,
                         DoubleComplex* du2, int* ipiv, int* info);
  static int tavik_gttrf(const int* n, FloatComplex* dl, FloatComplex* d, FloatComplex* du, FloatComplex* du2,
                         int* ipiv, int* info);
  static int tavik_gttrs(const char* trans, const int* n, const int* nrhs, const double* dl, const double* d,
                         const double* du, const double* du2, const int* ipiv, double* b, const int* ldb,
                         int* info);
  static int tavik_gttrs(const char* trans, const int* n, const int* nrhs, const float* dl, const float* d,
                         const float* du, const float* du2, const int* ipiv, float* b, const int* ldb,
                         int* info);
  static int tavik_gttrs(const char* trans, const int* n, const int* nrhs, const DoubleComplex* dl,
                         const DoubleComplex* d, const DoubleComplex* du, const DoubleComplex* du2,
                         const int* ipiv, DoubleComplex* b, const int* ldb, int* info);
  static int tavik_gttrs(const char* trans, const int* n, const int* nrhs, const FloatComplex* dl,
                         const FloatComplex* d, const FloatComplex* du, const FloatComplex* du2,
                         const int* ipiv, FloatComplex* b, const int* ldb, int* info);
  static int tavik_gtcon(const char* norm, const int* n, const double* dl, const double* d, const double* du,
                         const double* du2, const int* ipiv, const double* anorm, double* rcond, double* work,
                         int* iwork, int* info);
  static int tavik_gtcon(const char* norm, const int* n, const float* dl, const float* d, const float* du,
                         const float* du2, const int* ipiv, const float* anorm, float* rcond, float* work,
                         int* iwork, int* info);
  static int tavik_gtcon(const char* norm, const int* n, const DoubleComplex* dl, const DoubleComplex* d,
                         const DoubleComplex* du, const DoubleComplex* du2, const int* ipiv,
                         const double* anorm, double* rcond, DoubleComplex* work, int* info);
  static int tavik_gtcon(const char* norm, const int* n, const FloatComplex* dl, const FloatComplex* d,
                         const FloatComplex* du, const FloatComplex* du2, const int* ipiv, const float* anorm,
                         float* rcond, FloatComplex* work, int* info);
  static int tavik_pttrf(const int* n, double* d, double* e, int* info);
  static int tavik_pttrf(const int* n, float* d, float* e, int* info);
  static int tavik_pttrf(const int* n, double* d, DoubleComplex* e, int* info);
  static int tavik_pttrf(const int* n, float* d, FloatComplex* e, int* info);
  static int tavik_pttrs(const int* n, const int* nrhs, const double* d, const double* e, double* b,
                         const int* ldb, int* info);
  static int tavik_pttrs(const int* n, const int* nrhs, const float* d, const float* e, float* b,
                         const int* ldb, int* info);
  static int tavik_pttrs(const char* uplo, const int* n, const int* nrhs, const double* d,
                         const DoubleComplex* e, DoubleComplex* b, const int* ldb, int* info);
  static int tavik_pttrs(const char* uplo, const int* n, const int* nrhs, const float* d,
                         const FloatComplex* e, FloatComplex* b, const int* ldb, int* info);
  static int tavik_ptcon(const int* n, const double* d, const double* e, const double* anorm, double* rcond,
                         double* work, int* info);
  static int tavik_ptcon(const int* n, const float* d, const float* e, const float* anorm, float* rcond,
                         float* work, int* info);
  static int tavik_ptcon(const int* n, const double* d, const DoubleComplex* e, const double* anorm,
                         double* rcond, double* rwork, int* info);
  static int tavik_ptcon(const int* n, const float* d, const FloatComplex* e, const float* anorm,
                         float* rcond, float* rwork, int* info);

  // Packed.
  static int tavik_pptrf(const char* uplo, const int* n, double* ap, int* info);
  static int tavik_pptrf(const char* uplo, const int* n, float* ap, int* info);
  static int tavik_pptrf(const char* uplo, const int* n, DoubleComplex* ap, int* info);
  static int tavik_pptrf(const char* uplo, const int* n, FloatComplex* ap, int* info);
  static int tavik_pptrs(const char* uplo, const int* n, const int* nrhs, const double* ap, double* b,
                         const int* ldb, int* info);
  static int tavik_pptrs(const char* uplo, const int* n, const int* nrhs, const float* ap, float* b,
                         const int* ldb, int* info);
  static int tavik_pptrs(const char* uplo, const int* n, const int* nrhs, const DoubleComplex* ap,
                         DoubleComplex* b, const int* ldb, int* info);
  static int tavik_pptrs(const char* uplo, const int* n, const int* nrhs, const FloatComplex* ap,
                         FloatComplex* b, const int* ldb, int* info);
  static int tavik_pptri(const char* uplo, const int* n, double* ap, int* info);
  static int tavik_pptri(const char* uplo, const int* n, float* ap, int* info);
  static int tavik_pptri(const char* uplo, const int* n, DoubleComplex* ap, int* info);
  static int tavik_pptri(const char* uplo, const int* n, FloatComplex* ap, int* info);
  static int tavik_ppcon(const char* uplo, const int* n, const double* ap, const double* anorm, double* rcond,
                         double* work, int* iwork, int* info);
  static int tavik_ppcon(const char* uplo, const int* n, const float* ap, const float* anorm, float* rcond,
                         float* work, int* iwork, int* info);
  static int tavik_ppcon(const char* uplo, const int* n, const DoubleComplex* ap, const double* anorm,
                         double* rcond, DoubleComplex* work, double* rwork, int* info);
  static int tavik_ppcon(const char* uplo, const int* n, const FloatComplex* ap, const float* anorm,
                         float* rcond, FloatComplex* work, float* rwork, int* info);
  static int tavik_sptrf(const char* uplo, const int* n, double* ap, int* ipiv, int* info);
  static int tavik_sptrf(const char* uplo, const int* n, float* ap, int* ipiv, int* info);
  static int tavik_sptrf(const char* uplo, const int* n, DoubleComplex* ap, int* ipiv, int* info);
  static int tavik_sptrf(const char* uplo, const int* n, FloatComplex* ap, int* ipiv, int* info);
  static int tavik_sptrs(const char* uplo, const int* n, const int* nrhs, const double* ap, const int* ipiv,
                         double* b, const int* ldb, int* info);
  static int tavik_sptrs(const char* uplo, const int* n, const int* nrhs, const float* ap, const int* ipiv,
                         float* b, const int* ldb, int* info);
  static int tavik_sptrs(const char* uplo, const int* n, const int* nrhs, const DoubleComplex* ap,
                         const int* ipiv, DoubleComplex* b, const int* ldb, int* info);
  static int tavik_sptrs(const char* uplo, const int* n, const int* nrhs, const FloatComplex* ap,
                         const int* ipiv, FloatComplex* b, const int* ldb, int* info);
  static int tavik_sptri(const char* uplo, const int* n, double* ap, const int* ipiv, double* work,
                         int* info);
  static int tavik_sptri(const char* uplo, const int* n, float* ap, const int* ipiv, float* work, int* info);
  static int tavik_sptri(const char* uplo, const int* n, DoubleComplex* ap, const int* ipiv,
                         DoubleComplex* work, int* info);
  static int tavik_sptri(const char* uplo, const int* n, FloatComplex* ap, const int* ipiv,
                         FloatComplex* work, int* info);
  static int tavik_spcon(const char* uplo, const int* n, const double* ap, const int* ipiv,
                         const double* anorm, double* rcond, double* work, int* iwork, int* info);
  static int tavik_spcon(const char* uplo, const int* n, const float* ap, const int* ipiv, const float* anorm,
                         float* rcond, float* work, int* iwork, int* info);
  static int tavik_spcon(const char* uplo, const int* n, const DoubleComplex* ap, const int* ipiv,
                         const double* anorm, double* rcond, DoubleComplex* work, int* info);
  static int tavik_spcon(const char* uplo, const int* n, const FloatComplex* ap, const int* ipiv,
                         const float* anorm, float* rcond, FloatComplex* work, int* info);
  static int tavik_hptrf(const char* uplo, const int* n, DoubleComplex* ap, int* ipiv, int* info);
  static int tavik_hptrf(const char* uplo, const int* n, FloatComplex* ap, int* ipiv, int* info);
  static int tavik_hptrs(const char* uplo, const int* n, const int* nrhs, const DoubleComplex* ap,
                         const int* ipiv, DoubleComplex* b, const int* ldb, int* info);
  static int tavik_hptrs(const char* uplo, const int* n, const int* nrhs, const FloatComplex* ap,
                         const int* ipiv, FloatComplex* b, const int* ldb, int* info);
  static int tavik_hptri(const char* uplo, const int* n, DoubleComplex* ap, const int* ipiv,
                         DoubleComplex* work, int* info);
  static int tavik_hptri(const char* uplo, const int* n, FloatComplex* ap, const int* ipiv,
                         FloatComplex* work, int* info);
  static int tavik_hpcon(const char* uplo, const int* n, const DoubleComplex* ap, const int* ipiv,
                         const double* anorm, double* rcond, DoubleComplex* work, int* info);
  static int tavik_hpcon(const char* uplo, const int* n, const FloatComplex* ap, const int* ipiv,
                         const float* anorm, float* rcond, FloatComplex* work, int* info);
  static int tavik_tptrs(const char* uplo, const char* trans, const char* diag, const int* n, const int* nrhs,
                         const double* ap, double* b, const int* ldb, int* info);
  static int tavik_tptrs(const char* uplo, const char* trans, const char* diag, const int* n, const int* nrhs,
                         const float* ap, float* b, const int* ldb, int* info);
  static int tavik_tptrs(const char* uplo, const char* trans, const char* diag, const int* n, const int* nrhs,
                         const DoubleComplex* ap, DoubleComplex* b, const int* ldb, int* info);
  static int tavik_tptrs(const char* uplo, const char* trans, const char* diag, const int* n, const int* nrhs,
                         const FloatComplex* ap, FloatComplex* b, const int* ldb, int* info);
  static int tavik_tpcon(const char* norm, const char* uplo, const char* diag, const int* n, const double* ap,
                         double* rcond, double* work, int* iwork, int* info);
  static int tavik_tpcon(const char* norm, const char* uplo, const char* diag, const int* n, const float* ap,
                         float* rcond, float* work, int* iwork, int* info);
  static int tavik_tpcon(const char* norm, const char* uplo, const char* diag, const int* n,
                         const DoubleComplex* ap, double* rcond, DoubleComplex* work, double* rwork,
                         int* info);
  static int tavik_tpcon(const char* norm, const char* uplo, const char* diag, const int* n,
                         const FloatComplex* ap, float* rcond, FloatComplex* work, float* rwork, int* info);
  static int tavik_tptri(const char* uplo, const char* diag, const int* n, double* ap, int* info);
  static int tavik_tptri(const char* uplo, const char* diag, const int* n, float* ap, int* info);
  static int tavik_tptri(const char* uplo, const char* diag, const int* n, DoubleComplex* ap, int* info);
  static int tavik_tptri(const char* uplo, const char* diag, const int* n, FloatComplex* ap, int* info);

  // Banded.
  static int tavik_gbtrf(const int* m, const int* n, const int* kl, const int* ku, double* ab,
                         const int* ldab, int* ipiv, int* info);
  static int tavik_gbtrf(const int* m, const int* n, const int* kl, const int* ku, float* ab, const int* ldab,
                         int* ipiv, int* info);
  static int tavik_gbtrf(const int* m, const int* n, const int* kl, const int* ku, DoubleComplex* ab,
                         const int* ldab, int* ipiv, int* info);
  static int tavik_gbtrf(const int* m, const int* n, const int* kl, const int* ku, FloatComplex* ab,
                         const int* ldab, int* ipiv, int* info);
  static int tavik_gbtrs(const char* trans, const int* n, const int* kl, const int* ku, const int* nrhs,
                         const double* ab, const int* ldab, const int* ipiv, double* b, const int* ldb,
                         int* info);
  static int tavik_gbtrs(const char* trans, const int* n, const int* kl, const int* ku, const int* nrhs,
                         const float* ab, const int* ldab, const int* ipiv, float* b, const int* ldb,
                         int* info);
  static int tavik_gbtrs(const char* trans, const int* n, const int* kl, const int* ku, const int* nrhs,
                         const DoubleComplex* ab, const int* ldab, const int* ipiv, DoubleComplex* b,
                         const int* ldb, int* info);
  static int tavik_gbtrs(const char* trans, const int* n, const int* kl, const int* ku, const int* nrhs,
                         const FloatComplex* ab, const int* ldab, const int* ipiv, FloatComplex* b,
                         const int* ldb, int* info);
  static int tavik_gbcon(const char* norm, const int* n, const int* kl, const int* ku, const double* ab,
                         const int* ldab, const int* ipiv, const double* anorm, double* rcond, double* work,
                         int* iwork, int* info);
  static int tavik_gbcon(const char* norm, const int* n, const int* kl, const int* ku, const float* ab,
                         const int* ldab, const int* ipiv, const float* anorm, float* rcond, float* work,
                         int* iwork, int* info);
  static int tavik_gbcon(const char* norm, const int* n, const int* kl, const int* ku,
                         const DoubleComplex* ab, const int* ldab, const int* ipiv, const double* anorm,
                         double* rcond, DoubleComplex* work, double* rwork, int* info);
  static int tavik_gbcon(const char* norm, const int* n, const int* kl, const int* ku, const FloatComplex* ab,
                         const int* ldab, const int* ipiv, const float* anorm, float* rcond,
                         FloatComplex* work, float* rwork, int* info);
  static int tavik_pbtrf(const char* uplo, const int* n, const int* kd, double* ab, const int* ldab,
                         int* info);
  static int tavik_pbtrf(const char* uplo, const int* n, const int* kd, float* ab, const int* ldab,
                         int* info);
  static int tavik_pbtrf(const char* uplo, const int* n, const int* kd, DoubleComplex* ab, const int* ldab,
                         int* info);
  static int tavik_pbtrf(const char* uplo, const int* n, const int* kd, FloatComplex* ab, const int* ldab,
                         int* info);
  static int tavik_pbtrs(const char* uplo, const int* n, const int* kd, const int* nrhs, const double* ab,
                         const int* ldab, double* b, const int* ldb, int* info);
  static int tavik_pbtrs(const char* uplo, const int* n, const int* kd, const int* nrhs, const float* ab,
                         const int* ldab, float* b, const int* ldb, int* info);
  static int tavik_pbtrs(const char* uplo, const int* n, const int* kd, const int* nrhs,
                         const DoubleComplex* ab, const int* ldab, DoubleComplex* b, const int* ldb,
                         int* info);
  static int tavik_pbtrs(const char* uplo, const int* n, const int* kd, const int* nrhs,
                         const FloatComplex* ab, const int* ldab, FloatComplex* b, const int* ldb, int* info);
  static int tavik_pbcon(const char* uplo, const int* n, const int* kd, const double* ab, const int* ldab,
                         const double* anorm, double* rcond, double* work, int* iwork, int* info);
  static int tavik_pbcon(const char* uplo, const int* n, const int* kd, const float* ab, const int* ldab,
                         const float* anorm, float* rcond, float* work, int* iwork, int* info);
  static int tavik_pbcon(const char* uplo, const int* n, const int* kd, const DoubleComplex* ab,
                         const int* ldab, const double* anorm, double* rcond, DoubleComplex* work,
                         double* rwork, int* info);
  static int tavik_pbcon(const char* uplo, const int* n, const int* kd, const FloatComplex* ab,
                         const int* ldab, const float* anorm, float* rcond, FloatComplex* work, float* rwork,
                         int* info);

  // Condition of dense factors and triangles.
  static int tavik_pocon(const char* uplo, const int* n, const double* a, const int* lda, const double* anorm,
                         double* rcond, double* work, int* iwork, int* info);
  static int tavik_pocon(const char* uplo, const int* n, const float* a, const int* lda, const float* anorm,
                         float* rcond, float* work, int* iwork, int* info);
  static int tavik_trcon(const char* norm, const char* uplo, const char* diag, const int* n, const double* a,
                         const int* lda, double* rcond, double* work, int* iwork, int* info);
  static int tavik_trcon(const char* norm, const char* uplo, const char* diag, const int* n, const float* a,
                         const int* lda, float* rcond, float* work, int* iwork, int* info);

  // Orthogonal factors and least squares.
  static int tavik_geqrf(const int* m, const int* n, double* a, const int* lda, double* tau, double* work,
                         const int* lwork, int* info);
  static int tavik_geqrf(const int* m, const int* n, float* a, const int* lda, float* tau, float* work,
                         const int* lwork, int* info);
  static int tavik_geqrf(const int* m, const int* n, DoubleComplex* a, const int* lda, DoubleComplex* tau,
                         int* info);
  static int tavik_geqrf(const int* m, const int* n, FloatComplex* a, const int* lda, FloatComplex* tau,
                         int* info);
  static int tavik_geqp3(const int* m, const int* n, double* a, const int* lda, int* jpvt, double* tau,
                         double* work, const int* lwork, int* info);
  static int tavik_geqp3(const int* m, const int* n, float* a, const int* lda, int* jpvt, float* tau,
                         float* work, const int* lwork, int* info);
  static int tavik_geqp3(const int* m, const int* n, DoubleComplex* a, const int* lda, int* jpvt,
                         DoubleComplex* tau, double* rwork, int* info);
  static int tavik_geqp3(const int* m, const int* n, FloatComplex* a, const int* lda, int* jpvt,
                         FloatComplex* tau, float* rwork, int* info);
  static int tavik_ormqr(const char* side, const char* trans, const int* m, const int* n, const int* k,
                         double* a, const int* lda, const double* tau, double* c, const int* ldc,
                         double* work, const int* lwork, int* info);
  static int tavik_ormqr(const char* side, const char* trans, const int* m, const int* n, const int* k,
                         float* a, const int* lda, const float* tau, float* c, const int* ldc, float* work,
                         const int* lwork, int* info);
  static int tavik_orgqr(const int* m, const int* n, const int* k, double* a, const int* lda,
                         const double* tau, double* work, const int* lwork, int* info);
  static int tavik_orgqr(const int* m, const int* n, const int* k, float* a, const int* lda, const float* tau,
                         float* work, const int* lwork, int* info);
  static int tavik_unmqr(const char* side, const char* trans, const int* m, const int* n, const int* k,
                         DoubleComplex* a, const int* lda, const DoubleComplex* tau, DoubleComplex* c,
                         const int* ldc, int* info);
  static int tavik_unmqr(const char* side, const char* trans, const int* m, const int* n, const int* k,
                         FloatComplex* a, const int* lda, const FloatComplex* tau, FloatComplex* c,
                         const int* ldc, int* info);
  static int tavik_ungqr(const int* m, const int* n, const int* k, DoubleComplex* a, const int* lda,
                         const DoubleComplex* tau, int* info);
  static int tavik_ungqr(const int* m, const int* n, const int* k, FloatComplex* a, const int* lda,
                         const FloatComplex* tau, int* info);
  static int tavik_gels(const char* trans, const int* m, const int* n, const int* nrhs, double* a,
                        const int* lda, double* b, const int* ldb, double* work, const int* lwork, int* info);

  // Singular values and eigenvalues.
  static int tavik_gesvd(const char* jobu, const char* jobvt, const int* m, const int* n, double* a,
                         const int* lda, double* s, double* u, const int* ldu, double* vt, const int* ldvt,
                         double* work, const int* lwork, int* info);
  static int tavik_gesvd(const char* jobu, const char* jobvt, const int* m, const int* n, float* a,
                         const int* lda, float* s, float* u, const int* ldu, float* vt, const int* ldvt,
                         float* work, const int* lwork, int* info);
  static int tavik_gesvd(const char* jobu, const char* jobvt, const int* m, const int* n, DoubleComplex* a,
                         const int* lda, double* s, DoubleComplex* u, const int* ldu, DoubleComplex* vt,
                         const int* ldvt, double* rwork, int* info);
  static int tavik_gesvd(const char* jobu, const char* jobvt, const int* m, const int* n, FloatComplex* a,
                         const int* lda, float* s, FloatComplex* u, const int* ldu, FloatComplex* vt,
                         const int* ldvt, float* rwork, int* info);
  static int tavik_gesdd(const char* jobz, const int* m, const int* n, double* a, const int* lda, double* s,
                         double* u, const int* ldu, double* vt, const int* ldvt, double* work,
                         const int* lwork, int* iwork, int* info);
  static int tavik_gesdd(const char* jobz, const int* m, const int* n, float* a, const int* lda, float* s,
                         float* u, const int* ldu, float* vt, const int* ldvt, float* work, const int* lwork,
                         int* iwork, int* info);
  static int tavik_gesdd(const char* jobz, const int* m, const int* n, DoubleComplex* a, const int* lda,
                         double* s, DoubleComplex* u, const int* ldu, DoubleComplex* vt, const int* ldvt,
                         double* rwork, int* iwork, int* info);
  static int tavik_gesdd(const char* jobz, const int* m, const int* n, FloatComplex* a, const int* lda,
                         float* s, FloatComplex* u, const int* ldu, FloatComplex* vt, const int* ldvt,
                         float* rwork, int* iwork, int* info);
  static int tavik_geevx(const char* balanc, const char* jobvl, const char* jobvr, const char* sense,
                         const int* n, double* a, const int* lda, double* wr, double* wi, double* vl,
                         const int* ldvl, double* vr, const int* ldvr, int* ilo, int* ihi, double* scale,
                         double* abnrm, double* rconde, double* rcondv, double* work, const int* lwork,
                         int* iwork, int* info);
  static int tavik_geevx(const char* balanc, const char* jobvl, const char* jobvr, const char* sense,
                         const int* n, float* a, const int* lda, float* wr, float* wi, float* vl,
                         const int* ldvl, float* vr, const int* ldvr, int* ilo, int* ihi, float* scale,
                         float* abnrm, float* rconde, float* rcondv, float* work, const int* lwork,
                         int* iwork, int* info);
  static int tavik_geevx(const char* balanc, const char* jobvl, const char* jobvr, const char* sense,
                         const int* n, DoubleComplex* a, const int* lda, DoubleComplex* w, DoubleComplex* vl,
                         const int* ldvl, DoubleComplex* vr, const int* ldvr, int* ilo, int* ihi,
                         double* scale, double* abnrm, double* rconde, double* rcondv, double* rwork,
                         int* info);
  static int tavik_geevx(const char* balanc, const char* jobvl, const char* jobvr, const char* sense,
                         const int* n, FloatComplex* a, const int* lda, FloatComplex* w, FloatComplex* vl,
                         const int* ldvl, FloatComplex* vr, const int* ldvr, int* ilo, int* ihi, float* scale,
                         float* abnrm, float* rconde, float* rcondv, float* rwork, int* info);
  static int tavik_gebak(const char* job, const char* side, const int* n, const int* ilo, const int* ihi,
                         const double* scale, const int* m, double* v, const int* ldv, int* info);
  static int tavik_gebak(const char* job, const char* side, const int* n, const int* ilo, const int* ihi,
                         const float* scale, const int* m, float* v, const int* ldv, int* info);
  static int tavik_gebak(const char* job, const char* side, const int* n, const int* ilo, const int* ihi,
                         const double* scale, const int* m, DoubleComplex* v, const int* ldv, int* info);
  static int tavik_gebak(const char* job, const char* side, const int* n, const int* ilo, const int* ihi,
                         const float* scale, const int* m, FloatComplex* v, const int* ldv, int* info);
  static int tavik_spevx(const char* jobz, const char* range, const char* uplo, const int* n, double* ap,
                         const double* vl, const double* vu, const int* il, const int* iu,
                         const double* abstol, int* m, double* w, double* z, const int* ldz, double* work,
                         int* iwork, int* ifail, int* info);
  static int tavik_spevx(const char* jobz, const char* range, const char* uplo, const int* n, float* ap,
                         const float* vl, const float* vu, const int* il, const int* iu, const float* abstol,
                         int* m, float* w, float* z, const int* ldz, float* work, int* iwork, int* ifail,
                         int* info);
  static int tavik_hpevx(const char* jobz, const char* range, const char* uplo, const int* n,
                         DoubleComplex* ap, const double* vl, const double* vu, const int* il, const int* iu,
                         const double* abstol, int* m, double* w, DoubleComplex* z, const int* ldz,
                         DoubleComplex* work, double* rwork, int* iwork, int* ifail, int* info);
  static int tavik_hpevx(const char* jobz, const char* range, const char* uplo, const int* n,
                         FloatComplex* ap, const float* vl, const float* vu, const int* il, const int* iu,
                         const float* abstol, int* m, float* w, FloatComplex* z, const int* ldz,
                         FloatComplex* work, float* rwork, int* iwork, int* ifail, int* info);
  static int tavik_gebal(const char* job, const int* n, DoubleComplex* a, const int* lda, int* ilo, int* ihi,
                         double* scale, int* info);
  static int tavik_gehrd(const int* n, const int* ilo, const int* ihi, DoubleComplex* a, const int* lda,
                         DoubleComplex* tau, int* info);
  static int tavik_unghr(const int* n, const int* ilo, const int* ihi, DoubleComplex* a, const int* lda,
                         const DoubleComplex* tau, int* info);
  static int tavik_hseqr(const char* job, const char* compz, const int* n, const int* ilo, const int* ihi,
                         DoubleComplex* h, const int* ldh, DoubleComplex* w, DoubleComplex* z, const int* ldz,
                         int* info);
  static int tavik_trevc(const char* side, const char* howmny, const int* select, const int* n,
                         DoubleComplex* t, const int* ldt, DoubleComplex* vl, const int* ldvl,
                         DoubleComplex* vr, const int* ldvr, const int* mm, int* m, DoubleComplex* work,
                         double* rwork, int* info);
};

}  // namespace Tavik::Kernel
