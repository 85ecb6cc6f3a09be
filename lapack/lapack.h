// SPDX-License-Identifier: BSD-3-Clause
// LAPACK under private names, 64-bit: plain routines as their Fortran objects define them, and the
// library's own factorisations: every scalar by reference,
// the length of each option letter after the last argument, LOGICAL arrays of 8-byte elements. The entries
// and the dense and sparse drivers call these.
#pragma once

#include <stddef.h>

#include "service/core_types.h"

namespace qel::core {
extern "C" {

// Block sizes and other constants of the algorithms, by the routine's name
core_int qel_core_ilaenv_(const core_int* ispec, const char* name, const char* opts, const core_int* n1,
                          const core_int* n2, const core_int* n3, const core_int* n4, size_t name_length,
                          size_t opts_length);

// General and positive definite matrices
void qel_core_sgetrf_(const core_int* m, const core_int* n, float* a, const core_int* lda, core_int* ipiv,
                      core_int* info);
void qel_core_dgetrf_(const core_int* m, const core_int* n, double* a, const core_int* lda, core_int* ipiv,
                      core_int* info);
void qel_core_cgetrf_(const core_int* m, const core_int* n, complex8* a, const core_int* lda, core_int* ipiv,
                      core_int* info);
void qel_core_zgetrf_(const core_int* m, const core_int* n, complex16* a, const core_int* lda, core_int* ipiv,
                      core_int* info);
void qel_core_sgetrf2_(const core_int* m, const core_int* n, float* a, const core_int* lda, core_int* ipiv,
                       core_int* info);
void qel_core_dgetrf2_(const core_int* m, const core_int* n, double* a, const core_int* lda, core_int* ipiv,
                       core_int* info);
void qel_core_cgetrf2_(const core_int* m, const core_int* n, complex8* a, const core_int* lda, core_int* ipiv,
                       core_int* info);
void qel_core_zgetrf2_(const core_int* m, const core_int* n, complex16* a, const core_int* lda,
                       core_int* ipiv, core_int* info);
void qel_core_spotrf_(const char* uplo, const core_int* n, float* a, const core_int* lda, core_int* info,
                      size_t);
void qel_core_spotrf2_(const char* uplo, const core_int* n, float* a, const core_int* lda, core_int* info,
                       size_t);
void qel_core_dpotrf_(const char* uplo, const core_int* n, double* a, const core_int* lda, core_int* info,
                      size_t);
void qel_core_dpotrf2_(const char* uplo, const core_int* n, double* a, const core_int* lda, core_int* info,
                       size_t);
void qel_core_cpotrf_(const char* uplo, const core_int* n, complex8* a, const core_int* lda, core_int* info,
                      size_t);
void qel_core_cpotrf2_(const char* uplo, const core_int* n, complex8* a, const core_int* lda, core_int* info,
                       size_t);
void qel_core_zpotrf_(const char* uplo, const core_int* n, complex16* a, const core_int* lda, core_int* info,
                      size_t);
void qel_core_zpotrf2_(const char* uplo, const core_int* n, complex16* a, const core_int* lda, core_int* info,
                       size_t);
void qel_core_dpotrs_(const char* uplo, const core_int* n, const core_int* nrhs, const double* a,
                      const core_int* lda, double* b, const core_int* ldb, core_int* info, size_t);
void qel_core_dtrtrs_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                      const core_int* nrhs, const double* a, const core_int* lda, double* b,
                      const core_int* ldb, core_int* info, size_t, size_t, size_t);
void qel_core_sgetrs_(const char* trans, const core_int* n, const core_int* nrhs, const float* a,
                      const core_int* lda, const core_int* ipiv, float* b, const core_int* ldb,
                      core_int* info, size_t);
void qel_core_dgetrs_(const char* trans, const core_int* n, const core_int* nrhs, const double* a,
                      const core_int* lda, const core_int* ipiv, double* b, const core_int* ldb,
                      core_int* info, size_t);
void qel_core_cgetrs_(const char* trans, const core_int* n, const core_int* nrhs, const complex8* a,
                      const core_int* lda, const core_int* ipiv, complex8* b, const core_int* ldb,
                      core_int* info, size_t);
void qel_core_zgetrs_(const char* trans, const core_int* n, const core_int* nrhs, const complex16* a,
                      const core_int* lda, const core_int* ipiv, complex16* b, const core_int* ldb,
                      core_int* info, size_t);
void qel_core_sgetri_(const core_int* n, float* a, const core_int* lda, const core_int* ipiv, float* work,
                      const core_int* lwork, core_int* info);
void qel_core_dgetri_(const core_int* n, double* a, const core_int* lda, const core_int* ipiv, double* work,
                      const core_int* lwork, core_int* info);
void qel_core_cgetri_(const core_int* n, complex8* a, const core_int* lda, const core_int* ipiv,
                      complex8* work, const core_int* lwork, core_int* info);
void qel_core_zgetri_(const core_int* n, complex16* a, const core_int* lda, const core_int* ipiv,
                      complex16* work, const core_int* lwork, core_int* info);
void qel_core_dgesv_(const core_int* n, const core_int* nrhs, double* a, const core_int* lda, core_int* ipiv,
                     double* b, const core_int* ldb, core_int* info);
void qel_core_sgecon_(const char* norm, const core_int* n, const float* a, const core_int* lda,
                      const float* anorm, float* rcond, float* work, core_int* iwork, core_int* info, size_t);
void qel_core_dgecon_(const char* norm, const core_int* n, const double* a, const core_int* lda,
                      const double* anorm, double* rcond, double* work, core_int* iwork, core_int* info,
                      size_t);
void qel_core_cgecon_(const char* norm, const core_int* n, const complex8* a, const core_int* lda,
                      const float* anorm, float* rcond, complex8* work, float* rwork, core_int* info, size_t);
void qel_core_zgecon_(const char* norm, const core_int* n, const complex16* a, const core_int* lda,
                      const double* anorm, double* rcond, complex16* work, double* rwork, core_int* info,
                      size_t);
void qel_core_dposv_(const char* uplo, const core_int* n, const core_int* nrhs, double* a,
                     const core_int* lda, double* b, const core_int* ldb, core_int* info, size_t);

// Band and tridiagonal matrices
void qel_core_sgbtrf_(const core_int* m, const core_int* n, const core_int* kl, const core_int* ku, float* ab,
                      const core_int* ldab, core_int* ipiv, core_int* info);
void qel_core_dgbtrf_(const core_int* m, const core_int* n, const core_int* kl, const core_int* ku,
                      double* ab, const core_int* ldab, core_int* ipiv, core_int* info);
void qel_core_cgbtrf_(const core_int* m, const core_int* n, const core_int* kl, const core_int* ku,
                      complex8* ab, const core_int* ldab, core_int* ipiv, core_int* info);
void qel_core_zgbtrf_(const core_int* m, const core_int* n, const core_int* kl, const core_int* ku,
                      complex16* ab, const core_int* ldab, core_int* ipiv, core_int* info);
void qel_core_sgbtrs_(const char* trans, const core_int* n, const core_int* kl, const core_int* ku,
                      const core_int* nrhs, const float* ab, const core_int* ldab, const core_int* ipiv,
                      float* b, const core_int* ldb, core_int* info, size_t);
void qel_core_dgbtrs_(const char* trans, const core_int* n, const core_int* kl, const core_int* ku,
                      const core_int* nrhs, const double* ab, const core_int* ldab, const core_int* ipiv,
                      double* b, const core_int* ldb, core_int* info, size_t);
void qel_core_cgbtrs_(const char* trans, const core_int* n, const core_int* kl, const core_int* ku,
                      const core_int* nrhs, const complex8* ab, const core_int* ldab, const core_int* ipiv,
                      complex8* b, const core_int* ldb, core_int* info, size_t);
void qel_core_zgbtrs_(const char* trans, const core_int* n, const core_int* kl, const core_int* ku,
                      const core_int* nrhs, const complex16* ab, const core_int* ldab, const core_int* ipiv,
                      complex16* b, const core_int* ldb, core_int* info, size_t);
void qel_core_sgbcon_(const char* norm, const core_int* n, const core_int* kl, const core_int* ku,
                      const float* ab, const core_int* ldab, const core_int* ipiv, const float* anorm,
                      float* rcond, float* work, core_int* iwork, core_int* info, size_t);
void qel_core_dgbcon_(const char* norm, const core_int* n, const core_int* kl, const core_int* ku,
                      const double* ab, const core_int* ldab, const core_int* ipiv, const double* anorm,
                      double* rcond, double* work, core_int* iwork, core_int* info, size_t);
void qel_core_cgbcon_(const char* norm, const core_int* n, const core_int* kl, const core_int* ku,
                      const complex8* ab, const core_int* ldab, const core_int* ipiv, const float* anorm,
                      float* rcond, complex8* work, float* rwork, core_int* info, size_t);
void qel_core_zgbcon_(const char* norm, const core_int* n, const core_int* kl, const core_int* ku,
                      const complex16* ab, const core_int* ldab, const core_int* ipiv, const double* anorm,
                      double* rcond, complex16* work, double* rwork, core_int* info, size_t);
void qel_core_spbtrf_(const char* uplo, const core_int* n, const core_int* kd, float* ab,
                      const core_int* ldab, core_int* info, size_t);
void qel_core_dpbtrf_(const char* uplo, const core_int* n, const core_int* kd, double* ab,
                      const core_int* ldab, core_int* info, size_t);
void qel_core_cpbtrf_(const char* uplo, const core_int* n, const core_int* kd, complex8* ab,
                      const core_int* ldab, core_int* info, size_t);
void qel_core_zpbtrf_(const char* uplo, const core_int* n, const core_int* kd, complex16* ab,
                      const core_int* ldab, core_int* info, size_t);
void qel_core_spbtrs_(const char* uplo, const core_int* n, const core_int* kd, const core_int* nrhs,
                      const float* ab, const core_int* ldab, float* b, const core_int* ldb, core_int* info,
                      size_t);
void qel_core_dpbtrs_(const char* uplo, const core_int* n, const core_int* kd, const core_int* nrhs,
                      const double* ab, const core_int* ldab, double* b, const core_int* ldb, core_int* info,
                      size_t);
void qel_core_cpbtrs_(const char* uplo, const core_int* n, const core_int* kd, const core_int* nrhs,
                      const complex8* ab, const core_int* ldab, complex8* b, const core_int* ldb,
                      core_int* info, size_t);
void qel_core_zpbtrs_(const char* uplo, const core_int* n, const core_int* kd, const core_int* nrhs,
                      const complex16* ab, const core_int* ldab, complex16* b, const core_int* ldb,
                      core_int* info, size_t);
void qel_core_spbcon_(const char* uplo, const core_int* n, const core_int* kd, const float* ab,
                      const core_int* ldab, const float* anorm, float* rcond, float* work, core_int* iwork,
                      core_int* info, size_t);
void qel_core_dpbcon_(const char* uplo, const core_int* n, const core_int* kd, const double* ab,
                      const core_int* ldab, const double* anorm, double* rcond, double* work, core_int* iwork,
                      core_int* info, size_t);
void qel_core_cpbcon_(const char* uplo, const core_int* n, const core_int* kd, const complex8* ab,
                      const core_int* ldab, const float* anorm, float* rcond, complex8* work, float* rwork,
                      core_int* info, size_t);
void qel_core_zpbcon_(const char* uplo, const core_int* n, const core_int* kd, const complex16* ab,
                      const core_int* ldab, const double* anorm, double* rcond, complex16* work,
                      double* rwork, core_int* info, size_t);
void qel_core_sgttrf_(const core_int* n, float* dl, float* d, float* du, float* du2, core_int* ipiv,
                      core_int* info);
void qel_core_dgttrf_(const core_int* n, double* dl, double* d, double* du, double* du2, core_int* ipiv,
                      core_int* info);
void qel_core_cgttrf_(const core_int* n, complex8* dl, complex8* d, complex8* du, complex8* du2,
                      core_int* ipiv, core_int* info);
void qel_core_zgttrf_(const core_int* n, complex16* dl, complex16* d, complex16* du, complex16* du2,
                      core_int* ipiv, core_int* info);
void qel_core_sgttrs_(const char* trans, const core_int* n, const core_int* nrhs, const float* dl,
                      const float* d, const float* du, const float* du2, const core_int* ipiv, float* b,
                      const core_int* ldb, core_int* info, size_t);
void qel_core_dgttrs_(const char* trans, const core_int* n, const core_int* nrhs, const double* dl,
                      const double* d, const double* du, const double* du2, const core_int* ipiv, double* b,
                      const core_int* ldb, core_int* info, size_t);
void qel_core_cgttrs_(const char* trans, const core_int* n, const core_int* nrhs, const complex8* dl,
                      const complex8* d, const complex8* du, const complex8* du2, const core_int* ipiv,
                      complex8* b, const core_int* ldb, core_int* info, size_t);
void qel_core_zgttrs_(const char* trans, const core_int* n, const core_int* nrhs, const complex16* dl,
                      const complex16* d, const complex16* du, const complex16* du2, const core_int* ipiv,
                      complex16* b, const core_int* ldb, core_int* info, size_t);
void qel_core_sgtcon_(const char* norm, const core_int* n, const float* dl, const float* d, const float* du,
                      const float* du2, const core_int* ipiv, const float* anorm, float* rcond, float* work,
                      core_int* iwork, core_int* info, size_t);
void qel_core_dgtcon_(const char* norm, const core_int* n, const double* dl, const double* d,
                      const double* du, const double* du2, const core_int* ipiv, const double* anorm,
                      double* rcond, double* work, core_int* iwork, core_int* info, size_t);
void qel_core_cgtcon_(const char* norm, const core_int* n, const complex8* dl, const complex8* d,
                      const complex8* du, const complex8* du2, const core_int* ipiv, const float* anorm,
                      float* rcond, complex8* work, core_int* info, size_t);
void qel_core_zgtcon_(const char* norm, const core_int* n, const complex16* dl, const complex16* d,
                      const complex16* du, const complex16* du2, const core_int* ipiv, const double* anorm,
                      double* rcond, complex16* work, core_int* info, size_t);
void qel_core_dgtsv_(const core_int* n, const core_int* nrhs, double* dl, double* d, double* du, double* b,
                     const core_int* ldb, core_int* info);
void qel_core_spttrf_(const core_int* n, float* d, float* e, core_int* info);
void qel_core_dpttrf_(const core_int* n, double* d, double* e, core_int* info);
void qel_core_cpttrf_(const core_int* n, float* d, complex8* e, core_int* info);
void qel_core_zpttrf_(const core_int* n, double* d, complex16* e, core_int* info);
void qel_core_spttrs_(const core_int* n, const core_int* nrhs, const float* d, const float* e, float* b,
                      const core_int* ldb, core_int* info);
void qel_core_dpttrs_(const core_int* n, const core_int* nrhs, const double* d, const double* e, double* b,
                      const core_int* ldb, core_int* info);
void qel_core_cpttrs_(const char* uplo, const core_int* n, const core_int* nrhs, const float* d,
                      const complex8* e, complex8* b, const core_int* ldb, core_int* info, size_t);
void qel_core_zpttrs_(const char* uplo, const core_int* n, const core_int* nrhs, const double* d,
                      const complex16* e, complex16* b, const core_int* ldb, core_int* info, size_t);
void qel_core_sptcon_(const core_int* n, const float* d, const float* e, const float* anorm, float* rcond,
                      float* work, core_int* info);
void qel_core_dptcon_(const core_int* n, const double* d, const double* e, const double* anorm, double* rcond,
                      double* work, core_int* info);
void qel_core_cptcon_(const core_int* n, const float* d, const complex8* e, const float* anorm, float* rcond,
                      float* rwork, core_int* info);
void qel_core_zptcon_(const core_int* n, const double* d, const complex16* e, const double* anorm,
                      double* rcond, double* rwork, core_int* info);

// Packed and triangular matrices
void qel_core_spptrf_(const char* uplo, const core_int* n, float* ap, core_int* info, size_t);
void qel_core_dpptrf_(const char* uplo, const core_int* n, double* ap, core_int* info, size_t);
void qel_core_cpptrf_(const char* uplo, const core_int* n, complex8* ap, core_int* info, size_t);
void qel_core_zpptrf_(const char* uplo, const core_int* n, complex16* ap, core_int* info, size_t);
void qel_core_spptrs_(const char* uplo, const core_int* n, const core_int* nrhs, const float* ap, float* b,
                      const core_int* ldb, core_int* info, size_t);
void qel_core_dpptrs_(const char* uplo, const core_int* n, const core_int* nrhs, const double* ap, double* b,
                      const core_int* ldb, core_int* info, size_t);
void qel_core_cpptrs_(const char* uplo, const core_int* n, const core_int* nrhs, const complex8* ap,
                      complex8* b, const core_int* ldb, core_int* info, size_t);
void qel_core_zpptrs_(const char* uplo, const core_int* n, const core_int* nrhs, const complex16* ap,
                      complex16* b, const core_int* ldb, core_int* info, size_t);
void qel_core_spptri_(const char* uplo, const core_int* n, float* ap, core_int* info, size_t);
void qel_core_dpptri_(const char* uplo, const core_int* n, double* ap, core_int* info, size_t);
void qel_core_cpptri_(const char* uplo, const core_int* n, complex8* ap, core_int* info, size_t);
void qel_core_zpptri_(const char* uplo, const core_int* n, complex16* ap, core_int* info, size_t);
void qel_core_sppcon_(const char* uplo, const core_int* n, const float* ap, const float* anorm, float* rcond,
                      float* work, core_int* iwork, core_int* info, size_t);
void qel_core_dppcon_(const char* uplo, const core_int* n, const double* ap, const double* anorm,
                      double* rcond, double* work, core_int* iwork, core_int* info, size_t);
void qel_core_cppcon_(const char* uplo, const core_int* n, const complex8* ap, const float* anorm,
                      float* rcond, complex8* work, float* rwork, core_int* info, size_t);
void qel_core_zppcon_(const char* uplo, const core_int* n, const complex16* ap, const double* anorm,
                      double* rcond, complex16* work, double* rwork, core_int* info, size_t);
void qel_core_ssptrf_(const char* uplo, const core_int* n, float* ap, core_int* ipiv, core_int* info, size_t);
void qel_core_dsptrf_(const char* uplo, const core_int* n, double* ap, core_int* ipiv, core_int* info,
                      size_t);
void qel_core_csptrf_(const char* uplo, const core_int* n, complex8* ap, core_int* ipiv, core_int* info,
                      size_t);
void qel_core_zsptrf_(const char* uplo, const core_int* n, complex16* ap, core_int* ipiv, core_int* info,
                      size_t);
void qel_core_ssptrs_(const char* uplo, const core_int* n, const core_int* nrhs, const float* ap,
                      const core_int* ipiv, float* b, const core_int* ldb, core_int* info, size_t);
void qel_core_dsptrs_(const char* uplo, const core_int* n, const core_int* nrhs, const double* ap,
                      const core_int* ipiv, double* b, const core_int* ldb, core_int* info, size_t);
void qel_core_csptrs_(const char* uplo, const core_int* n, const core_int* nrhs, const complex8* ap,
                      const core_int* ipiv, complex8* b, const core_int* ldb, core_int* info, size_t);
void qel_core_zsptrs_(const char* uplo, const core_int* n, const core_int* nrhs, const complex16* ap,
                      const core_int* ipiv, complex16* b, const core_int* ldb, core_int* info, size_t);
void qel_core_ssptri_(const char* uplo, const core_int* n, float* ap, const core_int* ipiv, float* work,
                      core_int* info, size_t);
void qel_core_dsptri_(const char* uplo, const core_int* n, double* ap, const core_int* ipiv, double* work,
                      core_int* info, size_t);
void qel_core_csptri_(const char* uplo, const core_int* n, complex8* ap, const core_int* ipiv, complex8* work,
                      core_int* info, size_t);
void qel_core_zsptri_(const char* uplo, const core_int* n, complex16* ap, const core_int* ipiv,
                      complex16* work, core_int* info, size_t);
void qel_core_sspcon_(const char* uplo, const core_int* n, const float* ap, const core_int* ipiv,
                      const float* anorm, float* rcond, float* work, core_int* iwork, core_int* info, size_t);
void qel_core_dspcon_(const char* uplo, const core_int* n, const double* ap, const core_int* ipiv,
                      const double* anorm, double* rcond, double* work, core_int* iwork, core_int* info,
                      size_t);
void qel_core_cspcon_(const char* uplo, const core_int* n, const complex8* ap, const core_int* ipiv,
                      const float* anorm, float* rcond, complex8* work, core_int* info, size_t);
void qel_core_zspcon_(const char* uplo, const core_int* n, const complex16* ap, const core_int* ipiv,
                      const double* anorm, double* rcond, complex16* work, core_int* info, size_t);
void qel_core_chptrf_(const char* uplo, const core_int* n, complex8* ap, core_int* ipiv, core_int* info,
                      size_t);
void qel_core_zhptrf_(const char* uplo, const core_int* n, complex16* ap, core_int* ipiv, core_int* info,
                      size_t);
void qel_core_chptrs_(const char* uplo, const core_int* n, const core_int* nrhs, const complex8* ap,
                      const core_int* ipiv, complex8* b, const core_int* ldb, core_int* info, size_t);
void qel_core_zhptrs_(const char* uplo, const core_int* n, const core_int* nrhs, const complex16* ap,
                      const core_int* ipiv, complex16* b, const core_int* ldb, core_int* info, size_t);
void qel_core_chptri_(const char* uplo, const core_int* n, complex8* ap, const core_int* ipiv, complex8* work,
                      core_int* info, size_t);
void qel_core_zhptri_(const char* uplo, const core_int* n, complex16* ap, const core_int* ipiv,
                      complex16* work, core_int* info, size_t);
void qel_core_chpcon_(const char* uplo, const core_int* n, const complex8* ap, const core_int* ipiv,
                      const float* anorm, float* rcond, complex8* work, core_int* info, size_t);
void qel_core_zhpcon_(const char* uplo, const core_int* n, const complex16* ap, const core_int* ipiv,
                      const double* anorm, double* rcond, complex16* work, core_int* info, size_t);
void qel_core_stptrs_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                      const core_int* nrhs, const float* ap, float* b, const core_int* ldb, core_int* info,
                      size_t, size_t, size_t);
void qel_core_dtptrs_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                      const core_int* nrhs, const double* ap, double* b, const core_int* ldb, core_int* info,
                      size_t, size_t, size_t);
void qel_core_ctptrs_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                      const core_int* nrhs, const complex8* ap, complex8* b, const core_int* ldb,
                      core_int* info, size_t, size_t, size_t);
void qel_core_ztptrs_(const char* uplo, const char* trans, const char* diag, const core_int* n,
                      const core_int* nrhs, const complex16* ap, complex16* b, const core_int* ldb,
                      core_int* info, size_t, size_t, size_t);
void qel_core_stptri_(const char* uplo, const char* diag, const core_int* n, float* ap, core_int* info,
                      size_t, size_t);
void qel_core_dtptri_(const char* uplo, const char* diag, const core_int* n, double* ap, core_int* info,
                      size_t, size_t);
void qel_core_ctptri_(const char* uplo, const char* diag, const core_int* n, complex8* ap, core_int* info,
                      size_t, size_t);
void qel_core_ztptri_(const char* uplo, const char* diag, const core_int* n, complex16* ap, core_int* info,
                      size_t, size_t);
void qel_core_stpcon_(const char* norm, const char* uplo, const char* diag, const core_int* n,
                      const float* ap, float* rcond, float* work, core_int* iwork, core_int* info, size_t,
                      size_t, size_t);
void qel_core_dtpcon_(const char* norm, const char* uplo, const char* diag, const core_int* n,
                      const double* ap, double* rcond, double* work, core_int* iwork, core_int* info, size_t,
                      size_t, size_t);
void qel_core_ctpcon_(const char* norm, const char* uplo, const char* diag, const core_int* n,
                      const complex8* ap, float* rcond, complex8* work, float* rwork, core_int* info, size_t,
                      size_t, size_t);
void qel_core_ztpcon_(const char* norm, const char* uplo, const char* diag, const core_int* n,
                      const complex16* ap, double* rcond, complex16* work, double* rwork, core_int* info,
                      size_t, size_t, size_t);
void qel_core_strcon_(const char* norm, const char* uplo, const char* diag, const core_int* n, const float* a,
                      const core_int* lda, float* rcond, float* work, core_int* iwork, core_int* info, size_t,
                      size_t, size_t);
void qel_core_dtrcon_(const char* norm, const char* uplo, const char* diag, const core_int* n,
                      const double* a, const core_int* lda, double* rcond, double* work, core_int* iwork,
                      core_int* info, size_t, size_t, size_t);
void qel_core_spocon_(const char* uplo, const core_int* n, const float* a, const core_int* lda,
                      const float* anorm, float* rcond, float* work, core_int* iwork, core_int* info, size_t);
void qel_core_dpocon_(const char* uplo, const core_int* n, const double* a, const core_int* lda,
                      const double* anorm, double* rcond, double* work, core_int* iwork, core_int* info,
                      size_t);

// QR factorisation and least squares
void qel_core_sgeqrf_(const core_int* m, const core_int* n, float* a, const core_int* lda, float* tau,
                      float* work, const core_int* lwork, core_int* info);
void qel_core_dgeqrf_(const core_int* m, const core_int* n, double* a, const core_int* lda, double* tau,
                      double* work, const core_int* lwork, core_int* info);
void qel_core_cgeqrf_(const core_int* m, const core_int* n, complex8* a, const core_int* lda, complex8* tau,
                      complex8* work, const core_int* lwork, core_int* info);
void qel_core_zgeqrf_(const core_int* m, const core_int* n, complex16* a, const core_int* lda, complex16* tau,
                      complex16* work, const core_int* lwork, core_int* info);
void qel_core_sgeqp3_(const core_int* m, const core_int* n, float* a, const core_int* lda, core_int* jpvt,
                      float* tau, float* work, const core_int* lwork, core_int* info);
void qel_core_dgeqp3_(const core_int* m, const core_int* n, double* a, const core_int* lda, core_int* jpvt,
                      double* tau, double* work, const core_int* lwork, core_int* info);
void qel_core_cgeqp3_(const core_int* m, const core_int* n, complex8* a, const core_int* lda, core_int* jpvt,
                      complex8* tau, complex8* work, const core_int* lwork, float* rwork, core_int* info);
void qel_core_zgeqp3_(const core_int* m, const core_int* n, complex16* a, const core_int* lda, core_int* jpvt,
                      complex16* tau, complex16* work, const core_int* lwork, double* rwork, core_int* info);
void qel_core_sormqr_(const char* side, const char* trans, const core_int* m, const core_int* n,
                      const core_int* k, float* a, const core_int* lda, const float* tau, float* c,
                      const core_int* ldc, float* work, const core_int* lwork, core_int* info, size_t,
                      size_t);
void qel_core_dormqr_(const char* side, const char* trans, const core_int* m, const core_int* n,
                      const core_int* k, double* a, const core_int* lda, const double* tau, double* c,
                      const core_int* ldc, double* work, const core_int* lwork, core_int* info, size_t,
                      size_t);
void qel_core_cunmqr_(const char* side, const char* trans, const core_int* m, const core_int* n,
                      const core_int* k, complex8* a, const core_int* lda, const complex8* tau, complex8* c,
                      const core_int* ldc, complex8* work, const core_int* lwork, core_int* info, size_t,
                      size_t);
void qel_core_zunmqr_(const char* side, const char* trans, const core_int* m, const core_int* n,
                      const core_int* k, complex16* a, const core_int* lda, const complex16* tau,
                      complex16* c, const core_int* ldc, complex16* work, const core_int* lwork,
                      core_int* info, size_t, size_t);
void qel_core_sorgqr_(const core_int* m, const core_int* n, const core_int* k, float* a, const core_int* lda,
                      const float* tau, float* work, const core_int* lwork, core_int* info);
void qel_core_dorgqr_(const core_int* m, const core_int* n, const core_int* k, double* a, const core_int* lda,
                      const double* tau, double* work, const core_int* lwork, core_int* info);
void qel_core_cungqr_(const core_int* m, const core_int* n, const core_int* k, complex8* a,
                      const core_int* lda, const complex8* tau, complex8* work, const core_int* lwork,
                      core_int* info);
void qel_core_zungqr_(const core_int* m, const core_int* n, const core_int* k, complex16* a,
                      const core_int* lda, const complex16* tau, complex16* work, const core_int* lwork,
                      core_int* info);
void qel_core_dgels_(const char* trans, const core_int* m, const core_int* n, const core_int* nrhs, double* a,
                     const core_int* lda, double* b, const core_int* ldb, double* work, const core_int* lwork,
                     core_int* info, size_t);
void qel_core_sgelsy_(const core_int* m, const core_int* n, const core_int* nrhs, float* a,
                      const core_int* lda, float* b, const core_int* ldb, core_int* jpvt, const float* rcond,
                      core_int* rank, float* work, const core_int* lwork, core_int* info);
void qel_core_dgelsy_(const core_int* m, const core_int* n, const core_int* nrhs, double* a,
                      const core_int* lda, double* b, const core_int* ldb, core_int* jpvt,
                      const double* rcond, core_int* rank, double* work, const core_int* lwork,
                      core_int* info);
void qel_core_cgelsy_(const core_int* m, const core_int* n, const core_int* nrhs, complex8* a,
                      const core_int* lda, complex8* b, const core_int* ldb, core_int* jpvt,
                      const float* rcond, core_int* rank, complex8* work, const core_int* lwork, float* rwork,
                      core_int* info);
void qel_core_zgelsy_(const core_int* m, const core_int* n, const core_int* nrhs, complex16* a,
                      const core_int* lda, complex16* b, const core_int* ldb, core_int* jpvt,
                      const double* rcond, core_int* rank, complex16* work, const core_int* lwork,
                      double* rwork, core_int* info);

// Singular values and eigenvalues
void qel_core_sgesvd_(const char* jobu, const char* jobvt, const core_int* m, const core_int* n, float* a,
                      const core_int* lda, float* s, float* u, const core_int* ldu, float* vt,
                      const core_int* ldvt, float* work, const core_int* lwork, core_int* info, size_t,
                      size_t);
void qel_core_dgesvd_(const char* jobu, const char* jobvt, const core_int* m, const core_int* n, double* a,
                      const core_int* lda, double* s, double* u, const core_int* ldu, double* vt,
                      const core_int* ldvt, double* work, const core_int* lwork, core_int* info, size_t,
                      size_t);
void qel_core_cgesvd_(const char* jobu, const char* jobvt, const core_int* m, const core_int* n, complex8* a,
                      const core_int* lda, float* s, complex8* u, const core_int* ldu, complex8* vt,
                      const core_int* ldvt, complex8* work, const core_int* lwork, float* rwork,
                      core_int* info, size_t, size_t);
void qel_core_zgesvd_(const char* jobu, const char* jobvt, const core_int* m, const core_int* n, complex16* a,
                      const core_int* lda, double* s, complex16* u, const core_int* ldu, complex16* vt,
                      const core_int* ldvt, complex16* work, const core_int* lwork, double* rwork,
                      core_int* info, size_t, size_t);
void qel_core_sgesdd_(const char* jobz, const core_int* m, const core_int* n, float* a, const core_int* lda,
                      float* s, float* u, const core_int* ldu, float* vt, const core_int* ldvt, float* work,
                      const core_int* lwork, core_int* iwork, core_int* info, size_t);
void qel_core_dgesdd_(const char* jobz, const core_int* m, const core_int* n, double* a, const core_int* lda,
                      double* s, double* u, const core_int* ldu, double* vt, const core_int* ldvt,
                      double* work, const core_int* lwork, core_int* iwork, core_int* info, size_t);
void qel_core_cgesdd_(const char* jobz, const core_int* m, const core_int* n, complex8* a,
                      const core_int* lda, float* s, complex8* u, const core_int* ldu, complex8* vt,
                      const core_int* ldvt, complex8* work, const core_int* lwork, float* rwork,
                      core_int* iwork, core_int* info, size_t);
void qel_core_zgesdd_(const char* jobz, const core_int* m, const core_int* n, complex16* a,
                      const core_int* lda, double* s, complex16* u, const core_int* ldu, complex16* vt,
                      const core_int* ldvt, complex16* work, const core_int* lwork, double* rwork,
                      core_int* iwork, core_int* info, size_t);
void qel_core_sgeevx_(const char* balanc, const char* jobvl, const char* jobvr, const char* sense,
                      const core_int* n, float* a, const core_int* lda, float* wr, float* wi, float* vl,
                      const core_int* ldvl, float* vr, const core_int* ldvr, core_int* ilo, core_int* ihi,
                      float* scale, float* abnrm, float* rconde, float* rcondv, float* work,
                      const core_int* lwork, core_int* iwork, core_int* info, size_t, size_t, size_t, size_t);
void qel_core_dgeevx_(const char* balanc, const char* jobvl, const char* jobvr, const char* sense,
                      const core_int* n, double* a, const core_int* lda, double* wr, double* wi, double* vl,
                      const core_int* ldvl, double* vr, const core_int* ldvr, core_int* ilo, core_int* ihi,
                      double* scale, double* abnrm, double* rconde, double* rcondv, double* work,
                      const core_int* lwork, core_int* iwork, core_int* info, size_t, size_t, size_t, size_t);
void qel_core_cgeevx_(const char* balanc, const char* jobvl, const char* jobvr, const char* sense,
                      const core_int* n, complex8* a, const core_int* lda, complex8* w, complex8* vl,
                      const core_int* ldvl, complex8* vr, const core_int* ldvr, core_int* ilo, core_int* ihi,
                      float* scale, float* abnrm, float* rconde, float* rcondv, complex8* work,
                      const core_int* lwork, float* rwork, core_int* info, size_t, size_t, size_t, size_t);
void qel_core_zgeevx_(const char* balanc, const char* jobvl, const char* jobvr, const char* sense,
                      const core_int* n, complex16* a, const core_int* lda, complex16* w, complex16* vl,
                      const core_int* ldvl, complex16* vr, const core_int* ldvr, core_int* ilo, core_int* ihi,
                      double* scale, double* abnrm, double* rconde, double* rcondv, complex16* work,
                      const core_int* lwork, double* rwork, core_int* info, size_t, size_t, size_t, size_t);
void qel_core_sgebak_(const char* job, const char* side, const core_int* n, const core_int* ilo,
                      const core_int* ihi, const float* scale, const core_int* m, float* v,
                      const core_int* ldv, core_int* info, size_t, size_t);
void qel_core_dgebak_(const char* job, const char* side, const core_int* n, const core_int* ilo,
                      const core_int* ihi, const double* scale, const core_int* m, double* v,
                      const core_int* ldv, core_int* info, size_t, size_t);
void qel_core_cgebak_(const char* job, const char* side, const core_int* n, const core_int* ilo,
                      const core_int* ihi, const float* scale, const core_int* m, complex8* v,
                      const core_int* ldv, core_int* info, size_t, size_t);
void qel_core_zgebak_(const char* job, const char* side, const core_int* n, const core_int* ilo,
                      const core_int* ihi, const double* scale, const core_int* m, complex16* v,
                      const core_int* ldv, core_int* info, size_t, size_t);
void qel_core_sspevx_(const char* jobz, const char* range, const char* uplo, const core_int* n, float* ap,
                      const float* vl, const float* vu, const core_int* il, const core_int* iu,
                      const float* abstol, core_int* m, float* w, float* z, const core_int* ldz, float* work,
                      core_int* iwork, core_int* ifail, core_int* info, size_t, size_t, size_t);
void qel_core_dspevx_(const char* jobz, const char* range, const char* uplo, const core_int* n, double* ap,
                      const double* vl, const double* vu, const core_int* il, const core_int* iu,
                      const double* abstol, core_int* m, double* w, double* z, const core_int* ldz,
                      double* work, core_int* iwork, core_int* ifail, core_int* info, size_t, size_t, size_t);
void qel_core_chpevx_(const char* jobz, const char* range, const char* uplo, const core_int* n, complex8* ap,
                      const float* vl, const float* vu, const core_int* il, const core_int* iu,
                      const float* abstol, core_int* m, float* w, complex8* z, const core_int* ldz,
                      complex8* work, float* rwork, core_int* iwork, core_int* ifail, core_int* info, size_t,
                      size_t, size_t);
void qel_core_zhpevx_(const char* jobz, const char* range, const char* uplo, const core_int* n, complex16* ap,
                      const double* vl, const double* vu, const core_int* il, const core_int* iu,
                      const double* abstol, core_int* m, double* w, complex16* z, const core_int* ldz,
                      complex16* work, double* rwork, core_int* iwork, core_int* ifail, core_int* info,
                      size_t, size_t, size_t);
void qel_core_zgebal_(const char* job, const core_int* n, complex16* a, const core_int* lda, core_int* ilo,
                      core_int* ihi, double* scale, core_int* info, size_t);
void qel_core_zgehrd_(const core_int* n, const core_int* ilo, const core_int* ihi, complex16* a,
                      const core_int* lda, complex16* tau, complex16* work, const core_int* lwork,
                      core_int* info);
void qel_core_zunghr_(const core_int* n, const core_int* ilo, const core_int* ihi, complex16* a,
                      const core_int* lda, const complex16* tau, complex16* work, const core_int* lwork,
                      core_int* info);
void qel_core_zhseqr_(const char* job, const char* compz, const core_int* n, const core_int* ilo,
                      const core_int* ihi, complex16* h, const core_int* ldh, complex16* w, complex16* z,
                      const core_int* ldz, complex16* work, const core_int* lwork, core_int* info, size_t,
                      size_t);
void qel_core_ztrevc_(const char* side, const char* howmny, const core_int* select, const core_int* n,
                      complex16* t, const core_int* ldt, complex16* vl, const core_int* ldvl, complex16* vr,
                      const core_int* ldvr, const core_int* mm, core_int* m, complex16* work, double* rwork,
                      core_int* info, size_t, size_t);

float qel_core_slange_(const char* norm, const core_int* m, const core_int* n, const float* a,
                       const core_int* lda, float* work, size_t);
double qel_core_dlange_(const char* norm, const core_int* m, const core_int* n, const double* a,
                        const core_int* lda, double* work, size_t);
float qel_core_clange_(const char* norm, const core_int* m, const core_int* n, const complex8* a,
                       const core_int* lda, float* work, size_t);
double qel_core_zlange_(const char* norm, const core_int* m, const core_int* n, const complex16* a,
                        const core_int* lda, double* work, size_t);
}  // extern "C"
}  // namespace qel::core
