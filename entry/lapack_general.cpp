// SPDX-License-Identifier: BSD-3-Clause
// Entries of the dense factorisations and solvers: info is narrowed back, pivots go through 64-bit copies.
#include <algorithm>

#include "entry/shapes.h"
#include "lapack/lapack.h"
#include "qel/lapack.h"

using qel::complex16;
using qel::complex8;
using qel::entry::call_info;
using qel::entry::in_ints;
using qel::entry::out_ints;
using qel::entry::work_ints;
namespace core = qel::core;

extern "C" {

int sgetrf(const int* m, const int* n, float* a, const int* lda, int* ipiv, int* info) {
  return call_info(__func__, core::qel_core_sgetrf_, info, m, n, a, lda, out_ints(ipiv, std::min(*m, *n)));
}
int dgetrf(const int* m, const int* n, double* a, const int* lda, int* ipiv, int* info) {
  return call_info(__func__, core::qel_core_dgetrf_, info, m, n, a, lda, out_ints(ipiv, std::min(*m, *n)));
}
int cgetrf(const int* m, const int* n, complex8* a, const int* lda, int* ipiv, int* info) {
  return call_info(__func__, core::qel_core_cgetrf_, info, m, n, a, lda, out_ints(ipiv, std::min(*m, *n)));
}
int zgetrf(const int* m, const int* n, complex16* a, const int* lda, int* ipiv, int* info) {
  return call_info(__func__, core::qel_core_zgetrf_, info, m, n, a, lda, out_ints(ipiv, std::min(*m, *n)));
}

int sgetrs(const char* trans, const int* n, const int* nrhs, const float* a, const int* lda, const int* ipiv,
           float* b, const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_sgetrs_, info, trans, n, nrhs, a, lda, in_ints(ipiv, *n), b, ldb);
}
int dgetrs(const char* trans, const int* n, const int* nrhs, const double* a, const int* lda, const int* ipiv,
           double* b, const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_dgetrs_, info, trans, n, nrhs, a, lda, in_ints(ipiv, *n), b, ldb);
}
int cgetrs(const char* trans, const int* n, const int* nrhs, const complex8* a, const int* lda,
           const int* ipiv, complex8* b, const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_cgetrs_, info, trans, n, nrhs, a, lda, in_ints(ipiv, *n), b, ldb);
}
int zgetrs(const char* trans, const int* n, const int* nrhs, const complex16* a, const int* lda,
           const int* ipiv, complex16* b, const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_zgetrs_, info, trans, n, nrhs, a, lda, in_ints(ipiv, *n), b, ldb);
}

int sgetri(const int* n, float* a, const int* lda, const int* ipiv, float* work, const int* lwork,
           int* info) {
  return call_info(__func__, core::qel_core_sgetri_, info, n, a, lda, in_ints(ipiv, *n), work, lwork);
}
int dgetri(const int* n, double* a, const int* lda, const int* ipiv, double* work, const int* lwork,
           int* info) {
  return call_info(__func__, core::qel_core_dgetri_, info, n, a, lda, in_ints(ipiv, *n), work, lwork);
}
int cgetri(const int* n, complex8* a, const int* lda, const int* ipiv, complex8* work, const int* lwork,
           int* info) {
  return call_info(__func__, core::qel_core_cgetri_, info, n, a, lda, in_ints(ipiv, *n), work, lwork);
}
int zgetri(const int* n, complex16* a, const int* lda, const int* ipiv, complex16* work, const int* lwork,
           int* info) {
  return call_info(__func__, core::qel_core_zgetri_, info, n, a, lda, in_ints(ipiv, *n), work, lwork);
}

int dgesv(const int* n, const int* nrhs, double* a, const int* lda, int* ipiv, double* b, const int* ldb,
          int* info) {
  return call_info(__func__, core::qel_core_dgesv_, info, n, nrhs, a, lda, out_ints(ipiv, *n), b, ldb);
}

int sgecon(const char* norm, const int* n, const float* a, const int* lda, const float* anorm, float* rcond,
           float* work, int*, int* info) {
  return call_info(__func__, core::qel_core_sgecon_, info, norm, n, a, lda, anorm, rcond, work,
                   work_ints(*n));
}
int dgecon(const char* norm, const int* n, const double* a, const int* lda, const double* anorm,
           double* rcond, double* work, int*, int* info) {
  return call_info(__func__, core::qel_core_dgecon_, info, norm, n, a, lda, anorm, rcond, work,
                   work_ints(*n));
}
int cgecon(const char* norm, const int* n, const complex8* a, const int* lda, const float* anorm,
           float* rcond, complex8* work, float* rwork, int* info) {
  return call_info(__func__, core::qel_core_cgecon_, info, norm, n, a, lda, anorm, rcond, work, rwork);
}
int zgecon(const char* norm, const int* n, const complex16* a, const int* lda, const double* anorm,
           double* rcond, complex16* work, double* rwork, int* info) {
  return call_info(__func__, core::qel_core_zgecon_, info, norm, n, a, lda, anorm, rcond, work, rwork);
}

int dposv(const char* uplo, const int* n, const int* nrhs, double* a, const int* lda, double* b,
          const int* ldb, int* info) {
  return call_info(__func__, core::qel_core_dposv_, info, uplo, n, nrhs, a, lda, b, ldb);
}

// The Fortran names. Lengths of option letters, which Fortran passes behind the arguments, are not looked at.

QEL_API decltype(sgetrf) sgetrf_ __attribute__((alias("sgetrf")));
QEL_API decltype(dgetrf) dgetrf_ __attribute__((alias("dgetrf")));
QEL_API decltype(cgetrf) cgetrf_ __attribute__((alias("cgetrf")));
QEL_API decltype(zgetrf) zgetrf_ __attribute__((alias("zgetrf")));
QEL_API decltype(sgetrs) sgetrs_ __attribute__((alias("sgetrs")));
QEL_API decltype(dgetrs) dgetrs_ __attribute__((alias("dgetrs")));
QEL_API decltype(cgetrs) cgetrs_ __attribute__((alias("cgetrs")));
QEL_API decltype(zgetrs) zgetrs_ __attribute__((alias("zgetrs")));
QEL_API decltype(sgetri) sgetri_ __attribute__((alias("sgetri")));
QEL_API decltype(dgetri) dgetri_ __attribute__((alias("dgetri")));
QEL_API decltype(cgetri) cgetri_ __attribute__((alias("cgetri")));
QEL_API decltype(zgetri) zgetri_ __attribute__((alias("zgetri")));
QEL_API decltype(dgesv) dgesv_ __attribute__((alias("dgesv")));
QEL_API decltype(sgecon) sgecon_ __attribute__((alias("sgecon")));
QEL_API decltype(dgecon) dgecon_ __attribute__((alias("dgecon")));
QEL_API decltype(cgecon) cgecon_ __attribute__((alias("cgecon")));
QEL_API decltype(zgecon) zgecon_ __attribute__((alias("zgecon")));
QEL_API decltype(dposv) dposv_ __attribute__((alias("dposv")));

}  // extern "C"
